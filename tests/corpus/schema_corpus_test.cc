// Real schemas as messages use them: the index of each, and the minimum content of every element
// type, which is what a naive construction gives, or the error that it ends with.
#include "platform/dom/document.h"
#include "schema/default_content.h"
#include "schema/element_type_index.h"
#include "schema/naive_content.h"
#include "schema/schema_texts.h"
#include "support/documents.h"

#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <string>

namespace kx::schema {
namespace {

constexpr std::size_t kMostElements = 20'000;
constexpr std::uint32_t kMostDepth = 200;

/// What became of the element types of all schemas, by the number of the error.
using Outcomes = std::map<std::int64_t, int>;

void BuildEachType(const ElementTypeIndex& index, Outcomes& outcomes) {
  const ContentBuild build{{kMostElements, kMostDepth, 1U << 20U}, nullptr};
  for (std::int32_t i = 1; i <= index.Count(); ++i) {
    SCOPED_TRACE(index.At(i).GetAttribute("name").value_or(""));
    const dom::Document document = dom::NewDomDocument();
    const dom::Node parent = document.CreateElement("parent");
    std::string xml;
    const Failure failure = FailureOf(
        [&] { xml = BuildDefaultContent(document, parent, index.At(i), index, "", build).Xml(); });
    const NaiveContent expected =
        BuildNaively(index.SchemaDocument(), index.At(i), kMostDepth, kMostElements);
    EXPECT_EQ(failure.number, expected.error) << failure.description;
    EXPECT_EQ(xml, expected.xml);
    ++outcomes[failure.number];
  }
}

TEST(SchemaCorpus, EverySchemaIsIndexedAndEveryElementTypeBuilt) {
  const std::filesystem::path folder = test::SharedFolder() / "corpus" / "schemas";
  KX_NEED_FOLDER(folder);
  int indexed = 0;
  int noDocuments = 0;
  int faulty = 0;
  Outcomes outcomes;
  for (const std::filesystem::path& path : test::FilesBelow(folder)) {
    SCOPED_TRACE(path.filename().string());
    const dom::Document document = dom::NewDomDocument();
    if (!document.LoadBytes(test::ReadFile(path))) {
      ++noDocuments;
      continue;
    }
    ElementTypeIndex index;
    const Failure failure = FailureOf([&] { IndexElementTypes(document, index); });
    if (failure.number != 0) {
      ++faulty;
      std::cout << path.filename().string() << ": " << failure.description << "\n";
    } else {
      ++indexed;
      BuildEachType(index, outcomes);
    }
  }
  int built = 0;
  std::string failed;
  for (const auto& [number, count] : outcomes) {
    if (number == 0) built = count;
    if (number != 0) failed += ", " + std::to_string(count) + " with " + std::to_string(number);
  }
  std::cout << "schemas: " << indexed << " indexed, " << faulty << " with a fault, " << noDocuments
            << " no documents; element types: " << built << " built" << failed << std::endl;
  EXPECT_GT(indexed, 20);
  EXPECT_GT(built, 500);
}

}  // namespace
}  // namespace kx::schema
