// Editing beside a naive model of its rules, over schemas made at random and over real ones.
#include "kxmessage/error.h"
#include "kxmessage/schema.h"

#include "model/contest.h"
#include "support/documents.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <iostream>
#include <string>

namespace kx::model {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kOperationsOfRun = 60;

bool IsLarge() {
  const char* large = std::getenv("KX_LARGE");
  return large != nullptr && std::string(large) == "1";
}

// True when the two sides agreed.
bool Agree(const Start& start, const std::vector<Operation>& operations, Duel::Tallies& tallies) {
  const std::optional<Finding> finding = Run(start, operations, &tallies);
  if (finding) ADD_FAILURE() << Report(start, Shrunk(start, *finding));
  return !finding;
}

void Print(const Duel::Tallies& tallies) {
  for (const auto& [kind, tally] : tallies) {
    std::cout << kind << ": " << tally.results << " results, " << tally.errors << " errors\n";
  }
}

TEST(EditingModel, AgreesWithTheLibraryOnSchemasMadeAtRandom) {
  const int runs = IsLarge() ? 3400 : 60;
  const char* const given = std::getenv("KX_MODEL_SEED");
  Duel::Tallies tallies;
  int findings = 0;
  for (int i = 0; i < runs && findings < 5; ++i) {
    const std::uint32_t seed = given != nullptr ? static_cast<std::uint32_t>(std::stoul(given))
                                                : static_cast<std::uint32_t>(i) + 1;
    Chance chance(seed);
    const Start start = RandomStart(chance);
    SCOPED_TRACE("KX_MODEL_SEED=" + std::to_string(seed));
    if (!Agree(start, RandomOperations(chance, kOperationsOfRun), tallies)) ++findings;
    if (given != nullptr) return;
  }
  if (IsLarge()) Print(tallies);
  for (const auto& [kind, tally] : tallies) {
    EXPECT_GT(tally.results, 10) << kind << " is hardly ever done";
  }
}

// The element types of a real schema of which the library makes messages; in the short run some.
void TryEach(const SchemaOfDuel& schema, Chance& chance, Duel::Tallies& tallies, int& types) {
  const std::size_t operations = IsLarge() ? 200 : 20;
  const Start random = RandomStart(chance);
  for (const Declaration* type : ChildrenOf(schema.schema, "ElementType")) {
    if (!IsLarge() && !chance.OneIn(20)) continue;
    Start start{schema, random.second, chance.Number()};
    start.first.root = Property(type, "name");
    try {
      SCOPED_TRACE(schema.file + " " + start.first.root);
      ++types;
      if (!Agree(start, RandomOperations(chance, operations), tallies)) return;
    } catch (const UnsuitableSchema&) {
      --types;
    }
  }
}

TEST(EditingModel, AgreesWithTheLibraryOnRealSchemas) {
  const fs::path folder = test::SharedFolder() / "corpus" / "schemas";
  KX_NEED_FOLDER(folder);
  Duel::Tallies tallies;
  Chance chance(7);
  int types = 0;
  for (const fs::path& path : test::FilesBelow(folder)) {
    SchemaOfDuel schema;
    schema.file = path.filename().string();
    schema.text = test::ReadFile(path);
    schema.schema = ReadSchema(schema.text);
    TryEach(schema, chance, tallies, types);
  }
  std::cout << types << " element types\n";
  if (IsLarge()) Print(tallies);
  EXPECT_GT(types, IsLarge() ? 1500 : 70);
}

TEST(EditingModel, ReadsTheSchemasThatItWrites) {
  for (std::uint32_t seed = 1; seed <= 100; ++seed) {
    Chance chance(seed);
    const Start start = RandomStart(chance);
    EXPECT_EQ(ReadSchema(start.first.text), start.first.schema);
  }
}

}  // namespace
}  // namespace kx::model
