// Queries of the object model: patterns over nodes that know their schemas.
#include "core/queries.h"

#include "platform/dom/document.h"
#include "platform/patterns/select.h"
#include "platform/runtime/error.h"
#include "platform/xdr/parse_binder.h"
#include "platform/xdr/schema_group.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

namespace kx::core {
namespace {

/// One schema, at any location.
class OneSchema final : public xdr::SchemaSource {
 public:
  [[nodiscard]] xdr::SchemaText Read(std::string_view location,
                                     std::string_view /*base*/) const override {
    xdr::SchemaText text;
    text.url = location;
    text.bytes =
        "<Schema xmlns='urn:schemas-microsoft-com:xml-data' "
        "xmlns:dt='urn:schemas-microsoft-com:datatypes'>"
        "<AttributeType name='n' dt:type='int'/><AttributeType name='key' dt:type='id'/>"
        "<ElementType name='yes' dt:type='boolean'/>"
        "<ElementType name='item'><attribute type='n'/><attribute type='key'/></ElementType>"
        "<ElementType name='list'/></Schema>";
    return text;
  }
};

class Queries : public testing::Test {
 protected:
  Queries() {
    document_.EditSettings().schemaService = &service_;
    EXPECT_TRUE(
        document_.LoadXml("<list xmlns='x-schema:s'><item n=' 7' key='k1'/>"
                          "<item n='10' key='k2'/><yes>true</yes><yes>0</yes></list>"))
        << document_.LastError().reason;
  }
  [[nodiscard]] std::int32_t Count(std::string_view text) const {
    return SelectNodes(document_.AsNode(), text).Length();
  }

  OneSchema source_;
  xdr::PlainProvider provider_{source_};
  xdr::BindingService service_{provider_};
  dom::Document document_ = dom::NewDomDocument();
};

TEST_F(Queries, ComparisonsSeeTheTypesThatTheSchemaDeclares) {
  EXPECT_EQ(Count("//item[@n = 7]"), 1);
  EXPECT_EQ(Count("//yes[. = 1]"), 1) << "true is 1 only for a boolean";
  EXPECT_EQ(Count("//yes[. = 0]"), 1);
  EXPECT_EQ(patterns::SelectNodes(document_.AsNode(), "//yes[. = 1]").Length(), 0)
      << "without types the text decides";
}

TEST_F(Queries, IdentifiersAreThoseThatTheSchemaDeclares) {
  const dom::Node found = SelectSingleNode(document_.AsNode(), "id('k2')");
  ASSERT_TRUE(found);
  EXPECT_EQ(found.GetAttribute("n"), "10");
  EXPECT_FALSE(patterns::SelectSingleNode(document_.AsNode(), "id('k2')"));
}

TEST_F(Queries, TheTypingIsThatOfSchemas) {
  const dom::Node item = SelectSingleNode(document_.AsNode(), "//item");
  EXPECT_EQ(SchemaTyping().TypeOf(item.GetAttributeNode("n").At()), datatypes::DataType::kInt);
  EXPECT_EQ(SchemaTyping().TypeOf(item.At()), datatypes::DataType::kNone);
  EXPECT_TRUE(SchemaTyping().IsId(item.GetAttributeNode("key").At()));
  EXPECT_FALSE(SchemaTyping().IsId(item.GetAttributeNode("n").At()));
}

TEST_F(Queries, TheFirstNodeIsTheFirstOfTheList) {
  const dom::Node root = document_.DocumentElement();
  EXPECT_EQ(SelectSingleNode(root, "item"), SelectNodes(root, "item").Item(0));
  EXPECT_FALSE(SelectSingleNode(root, "none"));
  EXPECT_EQ(SelectNodes(root, "none").Length(), 0);
}

TEST_F(Queries, CompiledPatternsGiveTheSameAsTheirTexts) {
  const dom::Node root = document_.DocumentElement();
  const patterns::Pattern pattern = patterns::Compile("item[@n = 10]");
  EXPECT_EQ(core::SelectNodes(root, pattern).Length(), 1);
  EXPECT_EQ(core::SelectSingleNode(root, pattern), SelectSingleNode(root, "item[@n = 10]"));
}

TEST_F(Queries, FailuresAreThoseOfThePatterns) {
  const auto failure = [](const dom::Node& start, std::string_view text) -> std::string {
    try {
      static_cast<void>(SelectSingleNode(start, text));
    } catch (const Error& error) {
      return std::to_string(static_cast<std::uint32_t>(error.Number())) + " " + error.Source();
    }
    return "none";
  };
  const dom::Node root = document_.DocumentElement();
  EXPECT_EQ(failure(root, "a["), std::to_string(0x80004005U) + " msxml3.dll");
  EXPECT_EQ(failure(root, ""), std::to_string(0x80004005U) + " msxml3.dll");
  EXPECT_EQ(failure(root, {}), std::to_string(0x80070057U) + " msxml3.dll");
  EXPECT_EQ(failure(dom::Node(), "a"), std::to_string(0x800A005BU) + " KXXMLMessageLib");
}

TEST_F(Queries, ManyThreadsMayAskAFrozenDocument) {
  document_.Freeze();
  std::vector<std::thread> threads;
  std::vector<int> found(8, 0);
  for (std::size_t t = 0; t < found.size(); ++t) {
    threads.emplace_back([this, &found, t] {
      for (int i = 0; i < 200; ++i) {
        // More texts than a thread keeps.
        const std::string text = "//item[@n = " + std::to_string(i) + "]";
        found[t] += SelectNodes(document_.AsNode(), text).Length();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(found, std::vector<int>(8, 2));
}

}  // namespace
}  // namespace kx::core
