// KXMsgValidElements: the children that a declaration allows.
#include "kxmessage/valid_elements.h"

#include "kxmessage/error_codes.h"

#include "support/bare_element.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kx {
namespace {

using test::ErrorOf;
using test::RuntimeError;

constexpr std::uint32_t Code(std::int32_t code) { return static_cast<std::uint32_t>(code); }

class ValidElementsTest : public testing::Test {
 protected:
  ValidElementsTest() {
    world_.AddSchema(
        "s.xml",
        "<ElementType name='A' content='textOnly' dt:type='int'/>"
        "<ElementType name='B' content='eltOnly'><element type='A'/></ElementType>"
        "<ElementType name='G' content='textOnly'/>"
        "<ElementType name='R' content='eltOnly'>"
        "<element type='A' minOccurs='0' maxOccurs='*'/><element type='B' minOccurs='0'/>"
        "<group order='seq' minOccurs='0'><element type='G'/></group></ElementType>");
    message_ = world_.Loaded("s", "<R><A>1</A></R>");
    valid_ = message_.RootElement().KnownValidChildren();
  }

  test::MessageWorld world_;
  KXMessage message_ = nullptr;
  KXMsgValidElements valid_;
};

TEST_F(ValidElementsTest, AreTheDirectDeclarationsAndNotThoseOfGroups) {
  EXPECT_EQ(valid_.Count(), 2);
  EXPECT_TRUE(valid_.Exists("A"));
  EXPECT_TRUE(valid_.Exists("B"));
  EXPECT_FALSE(valid_.Exists("G"));
  EXPECT_FALSE(valid_.Exists("a"));
  EXPECT_EQ(message_.RootElement().ChildElements(1).KnownValidChildren().Count(), 0);
}

TEST_F(ValidElementsTest, AreFoundByPositionAndByName) {
  EXPECT_EQ(valid_.Element(1).Name(), "A");
  EXPECT_EQ(valid_["2"].Name(), "B");
  EXPECT_EQ(valid_.Element("B").Name(), "B");
  EXPECT_NE(valid_.Element(1), valid_.Element(1));
}

TEST_F(ValidElementsTest, TellWhatTheSchemaSaysOfTheChild) {
  const KXMsgElementInfo info = valid_.Element("A");
  EXPECT_EQ(info.DataType(), "int");
  EXPECT_EQ(info.MaxOccurrences(), -1);
  EXPECT_EQ(info.MinOccurrences(), 0);
  EXPECT_TRUE(valid_.Element("B").CanHaveChildren());
}

TEST_F(ValidElementsTest, WhatIsNotThereIsNoChild) {
  struct {
    Variant key;
    std::uint32_t error;
    const char* description;
  } const rows[] = {
      {0, Code(kxMsgErrorNoChild), "Child 0 does not exist."},
      {3, Code(kxMsgErrorNoChild), "Child 3 does not exist."},
      {"G", Code(kxMsgErrorNoChild), "Child G does not exist."},
      {"", Code(kxMsgErrorNoChild), "Child  does not exist."},
      {Variant::Null(), RuntimeError(94), "Invalid use of Null"},
  };
  for (const auto& row : rows) {
    std::string description;
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(valid_.Element(row.key)); }, &description), row.error)
        << row.description;
    EXPECT_EQ(description, row.description);
  }
}

// An item is a new element of its type; what keeps that from being built is told.
TEST_F(ValidElementsTest, AnElementThatCannotBeBuiltIsTheErrorOfItsConstruction) {
  struct {
    const char* declarations;
    std::uint32_t error;
  } const rows[] = {
      {"", RuntimeError(5)},
      {"<ElementType name='C'><attribute type='gone'/></ElementType>",
       Code(kxMsgErrorUnknownAttribute)},
      {"<ElementType name='C'><element type='Gone'/></ElementType>", RuntimeError(5)},
      {"<ElementType name='C'><element type='C'/></ElementType>", RuntimeError(28)},
  };
  for (const auto& row : rows) {
    const test::BareElement bare(
        world_,
        row.declarations + std::string("<ElementType name='R' content='eltOnly'>"
                                       "<element type='C'/></ElementType>"),
        "R", "<R/>");
    const KXMsgValidElements valid = bare.Element().KnownValidChildren();
    EXPECT_TRUE(valid.Exists("C"));
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(valid.Element("C")); }), row.error)
        << row.declarations;
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(valid.begin()); }), row.error) << row.declarations;
    EXPECT_EQ(bare.Xml(), "<R/>");
  }
}

TEST_F(ValidElementsTest, ANameThatEndsItsQuotesIsTheQuerysError) {
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(valid_.Exists("a'b")); }), 0x80004005U);
  EXPECT_FALSE(valid_.Exists("a\"b"));
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(valid_.Element("a\"b")); }), 0x80004005U);
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(valid_.Element("a'b")); }), Code(kxMsgErrorNoChild));
}

TEST_F(ValidElementsTest, EnumerationsShowTheSameObjectsEachTime) {
  std::vector<KXMsgElementInfo> first(valid_.begin(), valid_.end());
  std::vector<KXMsgElementInfo> second(valid_.begin(), valid_.end());
  ASSERT_EQ(first.size(), 2U);
  EXPECT_EQ(first[1].Name(), "B");
  EXPECT_EQ(first, second);
}

TEST_F(ValidElementsTest, ChangeNothingInTheMessage) {
  const std::string before = message_.XML();
  for (const KXMsgElementInfo& info : valid_) static_cast<void>(info.MaxOccurrences());
  static_cast<void>(valid_.Element("B"));
  EXPECT_EQ(message_.XML(), before);
}

}  // namespace
}  // namespace kx
