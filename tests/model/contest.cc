// See contest.h.
#include "model/contest.h"

#include "kxmessage/error.h"

#include "model/schema_maker.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace kx::model {

namespace {

constexpr int kMaxReplays = 600;
constexpr std::size_t kMaxShown = 4000;

// Whether messages can be made of both schemas.
bool IsSuitable(const Start& start) {
  try {
    const Duel duel(start);
    return true;
  } catch (const UnsuitableSchema&) {
    return false;
  } catch (const Mismatch&) {
    return true;  // for the run to tell
  }
}

// Real schemas and their messages are too long to be read in a report.
std::string Short(const std::string& text) {
  return text.size() <= kMaxShown ? text : text.substr(0, kMaxShown) + "...";
}

Declaration RandomSchema(Chance& chance, Letters letters) {
  return SchemaMaker(chance, letters).Make();
}

SchemaOfDuel RandomNamed(Chance& chance, const char* file, Letters letters) {
  Declaration schema = RandomSchema(chance, letters);
  std::string root = Property(ElementTypesOf(schema).back(), "name");
  return Named(file, std::move(schema), std::move(root));
}

}  // namespace

std::optional<Finding> Run(const Start& start, const std::vector<Operation>& operations,
                           Duel::Tallies* tallies) {
  std::unique_ptr<Duel> duel;
  std::size_t done = 0;
  try {
    duel = std::make_unique<Duel>(start);
    for (; done < operations.size(); ++done) duel->Do(operations[done]);
  } catch (const Mismatch& mismatch) {
    Finding finding;
    finding.operations.assign(
        operations.begin(),
        operations.begin() + static_cast<std::ptrdiff_t>(std::min(done + 1, operations.size())));
    if (duel) finding.log = duel->Log();
    finding.mismatch = mismatch;
    return finding;
  }
  if (tallies != nullptr) duel->AddTo(*tallies);
  return std::nullopt;
}

// Leaves out ever smaller parts for as long as something is found without them.
Finding Shrunk(const Start& start, Finding finding) {
  int replays = 0;
  for (std::size_t part = finding.operations.size() / 2; part > 0; part /= 2) {
    for (std::size_t at = 0; at < finding.operations.size() && replays < kMaxReplays;) {
      std::vector<Operation> fewer = finding.operations;
      const auto from = fewer.begin() + static_cast<std::ptrdiff_t>(at);
      fewer.erase(from, from + static_cast<std::ptrdiff_t>(std::min(part, fewer.size() - at)));
      ++replays;
      if (std::optional<Finding> found = Run(start, fewer)) {
        finding = std::move(*found);
      } else {
        at += part;
      }
    }
  }
  return finding;
}

std::string Report(const Start& start, const Finding& finding) {
  std::string text;
  for (const SchemaOfDuel* schema : {&start.first, &start.second}) {
    text += schema->file + " (" + schema->root + "): " + Short(schema->text) + "\n";
  }
  for (const std::string& line : finding.log) text += "  " + Short(line) + "\n";
  return text + "at:      " + finding.mismatch.operation +
         "\nlibrary: " + finding.mismatch.library + "\nmodel:   " + finding.mismatch.model + "\n";
}

SchemaOfDuel Named(std::string file, Declaration schema, std::string root) {
  SchemaOfDuel named{std::move(file), {}, std::move(schema), std::move(root)};
  named.text = SchemaText(named.schema);
  return named;
}

Start RandomStart(Chance& chance) {
  while (true) {
    Start start;
    start.first = RandomNamed(chance, "one.xml", Letters::kSmall);
    start.second = RandomNamed(chance, "two.xml", Letters::kSomeCapitals);
    start.seed = chance.Number();
    if (IsSuitable(start)) return start;
  }
}

// Half of the operations are done on the element that the one before them was done on.
std::vector<Operation> RandomOperations(Chance& chance, std::size_t count) {
  std::vector<Operation> operations;
  while (operations.size() < count) {
    Operation operation = MakeOperation(chance);
    if (!operations.empty() && chance.OneIn(2)) operation.a = operations.back().a;
    operations.push_back(operation);
  }
  return operations;
}

}  // namespace kx::model
