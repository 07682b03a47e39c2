// Reading properties and attributes with a default.
#include "schema/node_property.h"

#include "platform/dom/document.h"
#include "schema_texts.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::schema {
namespace {

dom::Node Root(std::string_view text) {
  const dom::Document document = dom::NewDomDocument();
  EXPECT_TRUE(document.LoadXml(text)) << text;
  return document.DocumentElement();
}

struct PropertyCase {
  const char* why;
  const char* property;
  const char* value;
};

TEST(NodeProperty, ReadsAPropertyOfTheNodeByItsName) {
  const dom::Node node = Root("<p:a xmlns:p='u' x='1'>t<b>u</b></p:a>");
  const PropertyCase rows[] = {
      {"an empty name means the text", "", "tu"},
      {"the text", "text", "tu"},
      {"names ignore case, as late-bound ones do", "TEXT", "tu"},
      {"the local name", "baseName", "a"},
      {"the written name", "nodeName", "p:a"},
      {"the written name of an element", "tagName", "p:a"},
      {"the prefix", "prefix", "p"},
      {"the namespace", "namespaceURI", "u"},
      {"a number", "nodeType", "1"},
      {"the name of the kind", "nodeTypeString", "element"},
      {"a truth", "specified", "True"},
      {"the typed value of an untyped node is its text", "nodeTypedValue", "tu"},
      {"the XML text", "xml", "<p:a xmlns:p=\"u\" x=\"1\">t<b>u</b></p:a>"},
      {"a value that is null", "nodeValue", "default"},
      {"no data type", "dataType", "default"},
      {"a member of other kinds of nodes", "value", "default"},
      {"a member whose value is an object", "parentNode", "default"},
      {"no member", "colour", "default"},
  };
  for (const PropertyCase& row : rows) {
    EXPECT_EQ(NodeProperty(node, "default", row.property), row.value) << row.why;
  }
}

TEST(NodeProperty, ReadsTheMembersOfAttributes) {
  const dom::Node attribute = Root("<a x='1'/>").GetAttributeNode("x");
  EXPECT_EQ(NodeProperty(attribute), "1");
  EXPECT_EQ(NodeProperty(attribute, "d", "name"), "x");
  EXPECT_EQ(NodeProperty(attribute, "d", "value"), "1");
  EXPECT_EQ(NodeProperty(attribute, "d", "tagName"), "d");
}

TEST(NodeProperty, GivesTheDefaultForNothingForAnEmptyValueAndForAFailedRead) {
  EXPECT_EQ(NodeProperty(dom::Node(), "d"), "d");
  EXPECT_EQ(NodeProperty(dom::Node()), "");
  EXPECT_EQ(NodeProperty(Root("<a x=''/>").GetAttributeNode("x"), "d"), "d");
  EXPECT_EQ(NodeProperty(Root("<a/>"), "d", "namespaceURI"), "d");
  const dom::Node typed =
      Root("<a xmlns:dt='urn:schemas-microsoft-com:datatypes' dt:dt='int'>x</a>");
  EXPECT_EQ(NodeProperty(typed, "d", "dataType"), "int");
  EXPECT_EQ(NodeProperty(typed, "d", "nodeTypedValue"), "d") << "x is no int";
}

TEST(AttributeText, AnEmptyAttributeCountsAsAnAbsentOne) {
  const dom::Node node = Root("<a x='1' e='' p:x='2' xmlns:p='u'>t</a>");
  EXPECT_EQ(AttributeText(node, "x", "d"), "1");
  EXPECT_EQ(AttributeText(node, "e", "d"), "d");
  EXPECT_EQ(AttributeText(node, "none", "d"), "d");
  EXPECT_EQ(AttributeText(node, "none"), "");
  EXPECT_EQ(AttributeText(node, "p:x", "d"), "2") << "names are compared as written";
  EXPECT_EQ(AttributeText(node, "X", "d"), "d") << "with their case";
}

TEST(AttributeText, KeepsBlanksAndJoinsPieces) {
  const dom::Node node = Root("<!DOCTYPE a [<!ENTITY e 'two'>]><a x=' one &e; &#65;'/>");
  EXPECT_EQ(AttributeText(node, "x"), " one two A");
}

TEST(AttributeText, OfNothingIsObjectNotSet) {
  EXPECT_EQ(FailureOf([] { static_cast<void>(AttributeText(dom::Node(), "x")); }).number, 91);
}

}  // namespace
}  // namespace kx::schema
