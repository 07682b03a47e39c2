#include "platform/dom/xml_declaration.h"

#include "dom_test.h"
#include "platform/dom/attribute_map.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::dom {
namespace {

TEST(XmlDeclaration, IsMadeAsAnInstructionAndHasAttributes) {
  const Document document = NewDomDocument();
  const Node declaration =
      document.CreateProcessingInstruction("xml", "version='1.0' encoding=\"UTF-8\"");
  document.AsNode().AppendChild(declaration);
  document.AsNode().AppendChild(document.CreateElement("a"));
  EXPECT_EQ(declaration.Attributes().Length(), 2);
  EXPECT_EQ(declaration.Attributes().GetNamedItem("encoding").Text(), "UTF-8");
  EXPECT_EQ(declaration.Text(), "version='1.0' encoding=\"UTF-8\"");
  EXPECT_EQ(document.Xml(), "<?xml version=\"1.0\"?>\r\n<a/>\r\n");
  EXPECT_EQ(document.SaveText(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<a/>\r\n");
}

TEST(XmlDeclaration, KeepsDataAndAttributesInStep) {
  const Document document = Parsed("<?xml version='1.0' encoding='UTF-8'?><a/>");
  const Node declaration = document.AsNode().FirstChild();
  const AttributeMap map = declaration.Attributes();
  map.GetNamedItem("encoding").SetText("windows-1252");
  EXPECT_EQ(declaration.Text(), "version=\"1.0\" encoding=\"windows-1252\"");
  declaration.SetText("version=\"1.0\" standalone=\"yes\"");
  EXPECT_EQ(map.Length(), 2);
  EXPECT_EQ(map.Item(1).Text(), "yes");
  EXPECT_TRUE(map.RemoveNamedItem("standalone"));
  EXPECT_EQ(declaration.NodeValue(), "version=\"1.0\"");
  EXPECT_EQ(document.SaveText(), "<?xml version=\"1.0\"?>\r\n<a/>\r\n");
}

TEST(XmlDeclaration, RefusesWhatNoParseAccepts) {
  const Document document = Parsed("<?xml version=\"1.0\" encoding=\"UTF-8\"?><a/>");
  const std::string before = document.SaveText();
  const Node declaration = document.AsNode().FirstChild();
  const Node version = declaration.Attributes().GetNamedItem("version");
  EXPECT_EQ(RaisedBy([&] { return declaration.SetText("version='2.0'"), 0; }),
            Fail("Invalid version number."));
  EXPECT_EQ(RaisedBy([&] { return declaration.SetText(""), 0; }).status, kStatusFail);
  EXPECT_EQ(RaisedBy([&] { return version.SetText("1.1"), 0; }), Fail("Invalid version number."));
  EXPECT_EQ(RaisedBy([&] { return declaration.Attributes().RemoveNamedItem("version"); }).status,
            kStatusFail);
  EXPECT_EQ(RaisedBy([&] { return version.FirstChild().SetText("1.1"), 0; }),
            Fail("Access denied."));
  EXPECT_EQ(RaisedBy([&] {
              return declaration.Attributes().SetNamedItem(document.CreateAttribute("x"));
            }),
            Fail("Attributes are not allowed on Nodes of type 'PROCESSINGINSTRUCTION'."));
  EXPECT_EQ(RaisedBy([&] { return document.CreateProcessingInstruction("xml", "x"); }).status,
            kStatusFail);
  EXPECT_EQ(document.SaveText(), before);
}

TEST(XmlDeclaration, IsAnInstructionOfThatNameOnly) {
  const Document document = Parsed("<?xml version='1.0'?><a><?xmlish x?></a>");
  EXPECT_TRUE(IsXmlDeclaration(document.AsNode().FirstChild().At()));
  EXPECT_FALSE(IsXmlDeclaration(document.DocumentElement().FirstChild().At()));
  EXPECT_FALSE(IsXmlDeclaration(document.Root()));
  EXPECT_FALSE(IsXmlDeclaration(Cursor()));
}

}  // namespace
}  // namespace kx::dom
