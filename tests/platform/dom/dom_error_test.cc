#include "platform/dom/dom_error.h"

#include "dom_test.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::dom {
namespace {

struct TextCase {
  DomCode code;
  const char* text;
};
constexpr TextCase kTexts[] = {
    {DomCode::kInvalidParameter, "The parameter is incorrect.\r\n"},
    {DomCode::kDataTypeParse, "Error parsing 'one' as two datatype.\r\n"},
    {DomCode::kInsertPositionNotFound, "Insert position node not found\r\n"},
    {DomCode::kBadNodeType, "This operation can not be performed with a Node of type one.\r\n"},
    {DomCode::kInsertUnderItself,
     "Inserting a Node or its ancestor under itself is not allowed.\r\n"},
    {DomCode::kPositionNotAChild,
     "Insert position Node must be a Child of the Node to insert under.\r\n"},
    {DomCode::kAttributesNotAllowed, "Attributes are not allowed on Nodes of type 'one'.\r\n"},
    {DomCode::kNotAChild, "The parameter Node is not a child of this Node.\r\n"},
    {DomCode::kNameRequired, "createNode requires a name for given NodeType.\r\n"},
    {DomCode::kAccessDenied, "Access denied.\r\n"},
    {DomCode::kAttributeInUse,
     "Attributes must be removed before adding them to a different node.\r\n"},
    {DomCode::kInvalidData, "Invalid data for a node of type 'one'.\r\n"},
    {DomCode::kBadOffset,
     "The offset must be 0 or a positive number that is not greater than the number of characters "
     "in the data.\r\n"},
    {DomCode::kNotItsAttribute, "The provided node is not a specified attribute on this node.\r\n"},
    {DomCode::kDataTypeNotSupported, "Datatype 'one' is not supported.\r\n"},
};

TEST(DomError, HasThePublishedTextForEachCode) {
  for (const TextCase& row : kTexts) {
    EXPECT_EQ(DomErrorText(row.code, {"one", "two"}), row.text);
  }
}

TEST(DomError, TakesMissingArgumentsForEmptyOnes) {
  EXPECT_EQ(DomErrorText(DomCode::kDataTypeParse, {"x"}), "Error parsing 'x' as  datatype.\r\n");
}

TEST(DomError, CarriesStatusSourceAndText) {
  EXPECT_EQ(RaisedBy([]() -> int { RaiseDomFailure(DomCode::kAccessDenied); }),
            Fail("Access denied."));
  EXPECT_EQ(RaisedBy([]() -> int { RaiseDomArgument(); }), BadArgument());
  EXPECT_EQ(RaisedBy([]() -> int { RaiseDomFailure(ParseCode::kMultipleRoots); }),
            Fail("Only one top level element is allowed in an XML document."));
  EXPECT_EQ(kStatusFail, -2147467259);
  EXPECT_EQ(kStatusInvalidArgument, -2147024809);
}

struct TypeCase {
  int number;
  const char* name;
  const char* capitals;
};
constexpr TypeCase kTypes[] = {
    {1, "element", "ELEMENT"},
    {2, "attribute", "ATTRIBUTE"},
    {3, "text", "TEXT"},
    {4, "cdatasection", "CDATASECTION"},
    {5, "entityreference", "ENTITYREFERENCE"},
    {6, "entity", "ENTITY"},
    {7, "processinginstruction", "PROCESSINGINSTRUCTION"},
    {8, "comment", "COMMENT"},
    {9, "document", "DOCUMENT"},
    {10, "documenttype", "DOCUMENTTYPE"},
    {11, "documentfragment", "DOCUMENTFRAGMENT"},
    {12, "notation", "NOTATION"},
};

TEST(DomError, NamesEachKindOfNodes) {
  for (const TypeCase& row : kTypes) {
    EXPECT_EQ(NodeTypeName(static_cast<NodeType>(row.number)), row.name);
    EXPECT_EQ(NodeTypeCapitals(static_cast<NodeType>(row.number)), row.capitals);
  }
}

}  // namespace
}  // namespace kx::dom
