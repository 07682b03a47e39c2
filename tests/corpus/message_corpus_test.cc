// Real schemas as the schemas of messages: a new message of every element type at the top, printed,
// loaded again from its text and printed again. One line a schema, and a closing count.
#include "kxmessage/element.h"
#include "kxmessage/error.h"
#include "kxmessage/message.h"
#include "kxmessage/schema.h"

#include "support/documents.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <string>

namespace kx {
namespace {

namespace fs = std::filesystem;

std::string Hex(std::int32_t code) {
  char text[16];
  std::snprintf(text, sizeof text, "%08X", static_cast<unsigned>(code));
  return text;
}

// What became of the element types of one schema.
struct Outcome {
  int same = 0;
  std::map<std::string, std::string> failed;  // by element type: the error
};

// The message of one element type; the error's number, or nothing when its text came back the same.
std::string RoundTrip(const std::string& schema, const std::string& root, const Options& options) {
  try {
    const KXMessage message(options);
    message.InitMessage(schema, root);
    const std::string text = message.XML();
    const KXMessage again(options);
    again.LoadMessageFromString(text);
    EXPECT_EQ(again.XML(), text) << schema << " " << root;
    return {};
  } catch (const Error& error) {
    return Hex(error.Number());
  }
}

Outcome TryAll(const std::string& name, const Options& options) {
  Outcome outcome;
  for (const SchemaElement& element : Schema::Load(name, options).Elements()) {
    if (!element.topLevel) continue;
    const std::string failure = RoundTrip(name, element.name, options);
    if (failure.empty()) {
      ++outcome.same;
    } else {
      outcome.failed[element.name] = failure;
    }
  }
  return outcome;
}

TEST(MessageCorpus, NewMessagesOfEveryElementTypeComeBackFromTheirText) {
  const fs::path folder = test::SharedFolder() / "corpus" / "schemas";
  KX_NEED_FOLDER(folder);
  Options options;
  options.schemaBase = fs::absolute(folder).lexically_normal().string() + "/";
  int same = 0;
  int refusedSchemas = 0;
  std::map<std::string, int> failures;
  for (const fs::path& path : test::FilesBelow(folder)) {
    const std::string name = path.filename().string();
    try {
      const Outcome outcome = TryAll(name, options);
      std::cout << name << ": " << outcome.same << " come back";
      for (const auto& [element, error] : outcome.failed) {
        std::cout << ", " << element << " " << error;
        ++failures[error];
      }
      std::cout << std::endl;
      same += outcome.same;
    } catch (const Error& error) {
      std::cout << name << ": " << Hex(error.Number()) << " " << error.Description() << std::endl;
      ++refusedSchemas;
    }
  }
  std::cout << "element types: " << same << " come back";
  for (const auto& [error, count] : failures) std::cout << ", " << count << " " << error;
  std::cout << "; schemas refused: " << refusedSchemas << std::endl;
  EXPECT_GT(same, 200);
}

}  // namespace
}  // namespace kx
