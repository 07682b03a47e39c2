// KXMsgValidAttributes: the attributes that an element type declares.
#include "kxmessage/valid_attributes.h"

#include "kxmessage/attributes.h"
#include "kxmessage/error_codes.h"

#include "support/message_world.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kx {
namespace {

using test::ErrorOf;
using test::RuntimeError;

constexpr std::uint32_t Code(std::int32_t code) { return static_cast<std::uint32_t>(code); }

class ValidAttributesTest : public testing::Test {
 protected:
  ValidAttributesTest() {
    world_.AddSchema("s.xml",
                     "<AttributeType name='a' dt:type='int'/><AttributeType name='b'/>"
                     "<AttributeType name='c'/>"
                     "<ElementType name='P' content='empty'/>"
                     "<ElementType name='R' content='eltOnly' model='open'>"
                     "<AttributeType name='b' dt:type='date'/>"
                     "<attribute type='b'/><attribute type='a' default='7'/>"
                     "<element type='P' minOccurs='0'/></ElementType>");
    message_ = world_.Loaded("s", "<R xmlns:p='urn:p' p:c='1'><P/></R>");
    valid_ = message_.RootElement().Attributes().KnownValidAttributes();
  }

  test::MessageWorld world_;
  KXMessage message_ = nullptr;
  KXMsgValidAttributes valid_;
};

TEST_F(ValidAttributesTest, AreThoseThatTheElementTypeDeclares) {
  EXPECT_EQ(valid_.Count(), 2);
  EXPECT_TRUE(valid_.Exists("a"));
  EXPECT_TRUE(valid_.Exists("b"));
  EXPECT_FALSE(valid_.Exists("c"));
  EXPECT_FALSE(valid_.Exists("A"));
  EXPECT_FALSE(valid_.Exists("2"));
  EXPECT_FALSE(valid_.Exists(""));
  EXPECT_EQ(message_.RootElement().ChildElements(1).Attributes().KnownValidAttributes().Count(), 0);
}

TEST_F(ValidAttributesTest, AreFoundByPositionAndByName) {
  EXPECT_EQ(valid_.Attrib(1).Name(), "b");
  EXPECT_EQ(valid_["2"].Name(), "a");
  EXPECT_EQ(valid_[1.4].Name(), "b");
  EXPECT_EQ(valid_.Attrib("a").DataType(), "int");
  EXPECT_EQ(valid_.Attrib("a").DefaultValue(), "7");
  EXPECT_EQ(valid_.Attrib("b").DataType(), "date");
  EXPECT_NE(valid_.Attrib(1), valid_.Attrib(1));
}

TEST_F(ValidAttributesTest, ThoseThatAreNotDeclaredDoNotExist) {
  struct {
    Variant key;
    std::uint32_t error;
    const char* description;
  } const rows[] = {
      {0, Code(kxMsgErrorNoAttribute), "Attribute '0' does not exist."},
      {3, Code(kxMsgErrorNoAttribute), "Attribute '3' does not exist."},
      {"-1", Code(kxMsgErrorNoAttribute), "Attribute '-1' does not exist."},
      {1e300, Code(kxMsgErrorNoAttribute), "Attribute '1E+300' does not exist."},
      {"c", Code(kxMsgErrorNoAttribute), "Attribute 'c' does not exist."},
      {"A", Code(kxMsgErrorNoAttribute), "Attribute 'A' does not exist."},
      {"it's", Code(kxMsgErrorNoAttribute), "Attribute 'it's' does not exist."},
      {"", Code(kxMsgErrorNoAttribute), "Attribute '' does not exist."},
      {0.5, Code(kxMsgErrorNoAttribute), "Attribute '0.5' does not exist."},
      {true, Code(kxMsgErrorNoAttribute), "Attribute 'True' does not exist."},
      {Variant::Null(), RuntimeError(94), "Invalid use of Null"},
      {Variant::Missing(), RuntimeError(13), "Type mismatch"},
  };
  for (const auto& row : rows) {
    std::string description;
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(valid_.Attrib(row.key)); }, &description), row.error)
        << row.description;
    EXPECT_EQ(description, row.description);
  }
}

// Each question puts the name between its own kind of quotes.
TEST_F(ValidAttributesTest, ANameThatEndsItsQuotesIsTheQuerysError) {
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(valid_.Exists("it's")); }), 0x80004005U);
  EXPECT_FALSE(valid_.Exists("\""));
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(valid_.Attrib("\"")); }), 0x80004005U);
}

TEST_F(ValidAttributesTest, AnEnumerationGoesThroughTheDeclarationsInOrder) {
  std::vector<std::string> names;
  for (const KXMsgAttributeInfo& info : valid_) names.push_back(info.Name());
  EXPECT_EQ(names, (std::vector<std::string>{"b", "a"}));
  EXPECT_EQ(*valid_.begin(), *valid_.begin());
  EXPECT_NE(*valid_.begin(), valid_.Attrib(1));
}

TEST_F(ValidAttributesTest, AHandleOfNothingRaisesObjectNotSet) {
  const KXMsgValidAttributes nothing;
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(nothing.Count()); }), RuntimeError(91));
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(nothing.begin()); }), RuntimeError(91));
}

}  // namespace
}  // namespace kx
