// kx::Schema: a schema as tools show it.
#include "kxmessage/parse_error.h"
#include "kxmessage/schema.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

namespace kx {
namespace {

// A folder of the system with one schema in it, which goes with the test.
class SchemaViewTest : public testing::Test {
 protected:
  SchemaViewTest() {
    std::filesystem::create_directories(folder_);
    options_.schemaBase = folder_.string();
  }
  ~SchemaViewTest() override { std::filesystem::remove_all(folder_); }

  [[nodiscard]] Schema Load(const std::string& declarations) {
    std::ofstream(folder_ / "s.xdr", std::ios::binary)
        << "<Schema xmlns='urn:schemas-microsoft-com:xml-data' "
           "xmlns:dt='urn:schemas-microsoft-com:datatypes'>"
        << declarations << "</Schema>";
    return Schema::Load("s.xdr", options_);
  }

  std::filesystem::path folder_ =
      std::filesystem::temp_directory_path() / ("kx-view-" + std::to_string(::getpid()));
  Options options_;
};

TEST_F(SchemaViewTest, ElementTypesStandInTheOrderOfTheSchemaWithWhatXdrMakesOfThem) {
  const Schema schema = Load(
      "<description>Orders</description><ElementType name='A' dt:type='int'/>"
      "<ElementType name='B' content='eltOnly' model='closed'><description>A b.</description>"
      "<element type='A' minOccurs='0' maxOccurs='*'/></ElementType>"
      "<ElementType name='C' content='textOnly' dt:type='string' dt:minLength='1' "
      "dt:maxLength='9'/>");
  EXPECT_EQ(schema.Location(), (folder_ / "s.xdr").string());
  EXPECT_EQ(schema.Description(), "Orders");
  const std::vector<SchemaElement> elements = schema.Elements();
  ASSERT_EQ(elements.size(), 3U);
  EXPECT_EQ(elements[0].name, "A");
  EXPECT_EQ(elements[0].content, "textOnly");
  EXPECT_TRUE(elements[0].open);
  EXPECT_EQ(elements[1].description, "A b.");
  EXPECT_FALSE(elements[1].open);
  EXPECT_EQ(elements[1].order, "seq");
  ASSERT_EQ(elements[1].children.size(), 1U);
  EXPECT_EQ(elements[1].children[0].minOccurs, "0");
  EXPECT_EQ(elements[1].children[0].maxOccurs, "*");
  EXPECT_EQ(elements[2].minLength, 1);
  EXPECT_EQ(elements[2].maxLength, 9);
  EXPECT_EQ(elements[1].maxLength, std::nullopt);
}

TEST_F(SchemaViewTest, AttributesInheritFromTheirType) {
  const Schema schema = Load(
      "<AttributeType name='g' dt:type='enumeration' dt:values='a b' required='yes' default='a'/>"
      "<ElementType name='E'><AttributeType name='l' dt:type='int'/>"
      "<attribute type='g' default='b'/><attribute type='l'/></ElementType>");
  const std::optional<SchemaElement> element = schema.FindElement("E");
  ASSERT_TRUE(element);
  ASSERT_EQ(element->attributes.size(), 2U);
  EXPECT_TRUE(element->attributes[0].required);
  EXPECT_EQ(element->attributes[0].defaultText, "b");
  EXPECT_EQ(element->attributes[0].values, (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(element->attributes[1].dataType, "int");
  EXPECT_FALSE(element->attributes[1].required);
  EXPECT_FALSE(schema.FindElement("e"));
}

TEST_F(SchemaViewTest, ChildrenOfGroupsHaveTheirGroupsNumber) {
  const Schema schema = Load(
      "<ElementType name='A'/><ElementType name='B'/><ElementType name='C'/>"
      "<ElementType name='E' content='eltOnly'><element type='A'/>"
      "<group order='one' minOccurs='0'><element type='B'/>"
      "<group order='many'><element type='C'/></group><element type='A'/></group>"
      "<element type='C'/></ElementType>");
  const std::optional<SchemaElement> element = schema.FindElement("E");
  ASSERT_TRUE(element);
  ASSERT_EQ(element->groups.size(), 2U);
  EXPECT_EQ(element->groups[0].order, "one");
  EXPECT_EQ(element->groups[0].minOccurs, "0");
  EXPECT_EQ(element->groups[1].order, "many");
  std::string children;
  for (const SchemaChild& child : element->children) {
    children += child.name + std::to_string(child.group) + " ";
  }
  EXPECT_EQ(children, "A0 B1 C2 A1 C0 ");
}

TEST_F(SchemaViewTest, ABadSchemaIsALoadError) {
  for (const char* declarations : {"<ElementType/>", "<ElementType name='A' content='x'/>", "<"}) {
    EXPECT_THROW(static_cast<void>(Load(declarations)), Error) << declarations;
  }
  EXPECT_THROW(static_cast<void>(Schema::Load("none.xdr", options_)), ParseError);
  EXPECT_THROW(static_cast<void>(Schema().Location()), Error);
}

}  // namespace
}  // namespace kx
