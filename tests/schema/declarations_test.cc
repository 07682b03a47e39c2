// From names to declarations: hashed look-ups that answer exactly as the patterns do.
#include "schema/declarations.h"

#include "core/queries.h"
#include "schema_texts.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kx::schema {
namespace {

using dom::Node;

constexpr const char* kDeclarations =
    "<AttributeType name='k' default='global'/><AttributeType name='g'/>"
    "<ElementType name='T'>"
    "  <AttributeType name='k' default='local'/>"
    "  <element type='a'/><element type='b' minOccurs='0'/><element type='c' maxOccurs='*'/>"
    "  <element type='a' minOccurs='0'/><element type='d' minOccurs='1' maxOccurs='2'/>"
    "  <element type='z' minOccurs='00'/><element/><element type=''/>"
    "  <attribute type='k'/><attribute type='u'/><attribute type='k' default='second'/>"
    "  <group><element type='m'/><group><element type='deep'/></group></group>"
    "  <group><element type='n'/><element type='m'/></group>"
    "  <x:element type='a' xmlns:x='urn:schemas-microsoft-com:xml-data'/>"
    "</ElementType>"
    "<ElementType name='k'/>";

class Declarations : public testing::Test {
 protected:
  Declarations() : document_(SchemaDocument(kDeclarations)), index_(IndexOf(document_)) {
    type_ = index_.GetElementType("T");
  }
  /// Every node whose children may be asked about.
  [[nodiscard]] std::vector<Node> Places() const {
    std::vector<Node> places{document_.DocumentElement(), type_};
    const dom::NodeList groups = core::SelectNodes(document_.AsNode(), "//group");
    for (std::int32_t i = 0; i < groups.Length(); ++i) places.push_back(groups.Item(i));
    return places;
  }

  dom::Document document_;
  ElementTypeIndex index_;
  Node type_;
};

constexpr const char* kNames[] = {"a", "b", "c", "d", "z", "m", "n", "k", "u", "g", "T", "deep",
                                  "A", "none", "x:a",
                                  // Texts that are no XML names go through the pattern engine.
                                  "", " a", "a ", "1", "a b", "\"", "&lt;"};

std::string Quoted(const char* before, const std::string& name, const char* after) {
  return std::string(before) + name + after;
}

TEST_F(Declarations, AreFoundAsThePatternsFindThem) {
  for (const Node& place : Places()) {
    for (const std::string name : kNames) {
      SCOPED_TRACE(place.NodeName() + " " + name);
      const auto ask = [&](const char* before, const char* after) {
        return core::SelectSingleNode(place, Quoted(before, name, after));
      };
      EXPECT_EQ(FindElementDeclaration(place, name), ask("element[@type='", "']"));
      EXPECT_EQ(FindOptionalDeclaration(place, name),
                ask("element[@type='", "' && (@minOccurs='0' || @maxOccurs='*')]"));
      EXPECT_EQ(FindAttributeDeclaration(place, name), ask("attribute[@type='", "']"));
      EXPECT_EQ(FindGroupOf(place, name), ask("group[element[@type='", "']]"));
      if (name == "\"") continue;
      EXPECT_EQ(FindElementDeclaration(place, name, Quotes::kDouble),
                ask("element[@type=\"", "\"]"));
      EXPECT_EQ(FindAttributeDeclaration(place, name, Quotes::kDouble),
                ask("attribute[@type=\"", "\"]"));
    }
  }
}

TEST_F(Declarations, OfDocumentsThatMayChangeAreFoundByThePatternsThemselves) {
  const dom::Document open = SchemaDocument(kDeclarations);
  ASSERT_FALSE(open.Frozen());
  const Node type = core::SelectSingleNode(open.AsNode(), "*/ElementType[@name='T']");
  ASSERT_TRUE(type);
  EXPECT_TRUE(FindElementDeclaration(type, "a"));
  type.RemoveChild(FindElementDeclaration(type, "b"));
  EXPECT_FALSE(FindElementDeclaration(type, "b"));
}

TEST_F(Declarations, TheFirstOfSeveralIsFound) {
  EXPECT_EQ(FindElementDeclaration(type_, "a").GetAttribute("minOccurs"), std::nullopt);
  EXPECT_EQ(FindOptionalDeclaration(type_, "a").GetAttribute("minOccurs"), "0");
  EXPECT_EQ(FindAttributeDeclaration(type_, "k").GetAttribute("default"), std::nullopt);
  EXPECT_EQ(FindGroupOf(type_, "m"), Groups(type_).Item(0));
  EXPECT_EQ(FindGroupOf(type_, "n"), Groups(type_).Item(1));
}

TEST_F(Declarations, OnlyTheExactTextsMakeAChildOptionalOrRepeatable) {
  EXPECT_TRUE(FindOptionalDeclaration(type_, "b"));
  EXPECT_TRUE(FindOptionalDeclaration(type_, "c"));
  EXPECT_FALSE(FindOptionalDeclaration(type_, "d")) << "maxOccurs is a number";
  EXPECT_FALSE(FindOptionalDeclaration(type_, "z")) << "00 is not 0";
}

TEST_F(Declarations, ThoseInGroupsAreNotFoundFromTheType) {
  EXPECT_FALSE(FindElementDeclaration(type_, "m"));
  EXPECT_TRUE(FindElementDeclaration(Groups(type_).Item(0), "m"));
  EXPECT_FALSE(FindGroupOf(type_, "deep")) << "only the group that declares it directly";
  EXPECT_TRUE(FindGroupOf(Groups(type_).Item(0), "deep"));
}

TEST_F(Declarations, AreListedWithoutThoseOfGroups) {
  EXPECT_EQ(ElementDeclarations(type_).Length(), 8);
  EXPECT_EQ(ElementDeclarations(Groups(type_).Item(1)).Length(), 2);
  EXPECT_EQ(AttributeDeclarations(type_).Length(), 3);
  EXPECT_EQ(Groups(type_).Length(), 2);
}

struct BadCase {
  const char* name;
  Quotes quotes;
  bool bad;
};

TEST_F(Declarations, ANameThatEndsItsLiteralRaisesThePatternsOwnError) {
  const BadCase rows[] = {{"O'Neill", Quotes::kSingle, true},
                          {"O'Neill", Quotes::kDouble, false},
                          {"say \"x\"", Quotes::kDouble, true},
                          {"say \"x\"", Quotes::kSingle, false},
                          {"'", Quotes::kSingle, true}};
  for (const BadCase& row : rows) {
    SCOPED_TRACE(row.name);
    const Failure element =
        FailureOf([&] { static_cast<void>(FindElementDeclaration(type_, row.name, row.quotes)); });
    EXPECT_EQ(element.number, row.bad ? 0x80004005 : 0);
    if (row.bad) {
      EXPECT_EQ(element.source, "msxml3.dll");
    }
    EXPECT_EQ(FailureOf([&] {
                static_cast<void>(FindAttributeDeclaration(type_, row.name, row.quotes));
              }).number,
              row.bad ? 0x80004005 : 0);
  }
  EXPECT_EQ(
      FailureOf([&] { static_cast<void>(FindAttributeType("a'b", document_, type_)); }).number,
      0x80004005);
}

TEST_F(Declarations, ANameThatContinuesThePatternIsPartOfIt) {
  EXPECT_EQ(FindElementDeclaration(type_, "none' || @type='b"), FindElementDeclaration(type_, "b"));
  EXPECT_EQ(FindAttributeType("none' || @name='g", document_, type_),
            FindAttributeType("g", document_, type_));
}

TEST_F(Declarations, AnAttributeTypeInTheElementTypeComesBeforeTheGlobalOne) {
  EXPECT_EQ(FindAttributeType("k", document_, type_).GetAttribute("default"), "local");
  EXPECT_EQ(FindAttributeType("k", document_, Node()).GetAttribute("default"), "global");
  EXPECT_EQ(FindAttributeType("k", document_, index_.GetElementType("k")).GetAttribute("default"),
            "global");
  EXPECT_EQ(FindAttributeType("g", document_, type_).ParentNode(), document_.DocumentElement());
  EXPECT_FALSE(FindAttributeType("u", document_, type_));
  EXPECT_FALSE(FindAttributeType("K", document_, type_)) << "names compare exactly";
}

TEST_F(Declarations, OfNothingAreObjectNotSet) {
  const Node nothing;
  EXPECT_EQ(FailureOf([&] { static_cast<void>(FindElementDeclaration(nothing, "a")); }).number, 91);
  EXPECT_EQ(FailureOf([&] { static_cast<void>(FindGroupOf(nothing, "a")); }).number, 91);
  EXPECT_EQ(FailureOf([&] { static_cast<void>(ElementDeclarations(nothing)); }).number, 91);
  EXPECT_EQ(FailureOf([&] {
              static_cast<void>(FindAttributeType("a", dom::Document(), nothing));
            }).number,
            91);
}

struct FixedCase {
  const char* why;
  const char* declaration;
  const char* type;
  bool fixed;
};

TEST(IsAttributeFixed, IsTrueForARequiredOrDefaultedAttribute) {
  const FixedCase rows[] = {
      {"neither", "", "", false},
      {"required, no default", "required='yes'", "", true},
      {"not required, default", "required='no' default='x'", "", true},
      {"not required, no default", "required='no'", "", false},
      {"required by the type", "", "required='yes'", true},
      {"an empty required falls back to the type", "required=''", "required='yes'", true},
      {"the declaration's no wins", "required='no'", "required='yes'", false},
      {"only the exact text", "required='Yes'", "", false},
      {"default of the type", "", "default='x'", true},
      {"an empty default falls back", "default=''", "default='x'", true},
      {"empty defaults are none", "default=''", "default=''", false},
      {"the declaration's no, the type's default", "required='no'", "required='yes' default='x'",
       true},
  };
  for (const FixedCase& row : rows) {
    const dom::Document document =
        SchemaDocument("<attribute " + std::string(row.declaration) + "/><AttributeType " +
                       std::string(row.type) + "/>");
    const Node declaration = document.DocumentElement().FirstChild();
    EXPECT_EQ(IsAttributeFixed(declaration, declaration.NextSibling()), row.fixed) << row.why;
  }
}

}  // namespace
}  // namespace kx::schema
