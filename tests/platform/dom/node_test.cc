#include "platform/dom/node.h"

#include "kxmessage/variant.h"

#include "dom_test.h"
#include "platform/dom/attribute_map.h"
#include "platform/dom/node_list.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kx::dom {
namespace {

// Names ------------------------------------------------------------------------------------------

struct NameCase {
  const char* why;
  const char* xml;
  const char* attribute;  // of the element <*x>, or null for the element itself
  const char* nodeName;
  const char* baseName;
  const char* prefix;
  const char* uri;
};
constexpr NameCase kNames[] = {
    {"a prefixed element", "<p:x xmlns:p='u'/>", nullptr, "p:x", "x", "p", "u"},
    {"a default namespace", "<x xmlns='u'/>", nullptr, "x", "x", "null", "u"},
    {"no namespace", "<x/>", nullptr, "x", "x", "null", "null"},
    {"an attribute", "<x d='1'/>", "d", "d", "d", "null", "null"},
    {"an attribute has no default namespace", "<x xmlns='u' d='1'/>", "d", "d", "d", "null",
     "null"},
    {"a prefixed attribute", "<x xmlns:ns='u' ns:b='1'/>", "ns:b", "ns:b", "b", "ns", "u"},
    {"a default declaration", "<x xmlns='u'/>", "xmlns", "xmlns", "", "xmlns", ""},
    {"a prefix declaration", "<x xmlns:p='u'/>", "xmlns:p", "xmlns:p", "p", "xmlns", ""},
    {"xml:lang", "<x xml:lang='en'/>", "xml:lang", "xml:lang", "lang", "xml",
     "http://www.w3.org/XML/1998/namespace"},
};

TEST(Node, HasTheNamesOfItsKind) {
  for (const NameCase& row : kNames) {
    SCOPED_TRACE(row.why);
    const Document document = Parsed(row.xml);
    Node node = document.DocumentElement();
    if (row.attribute != nullptr) node = node.GetAttributeNode(row.attribute);
    ASSERT_TRUE(node);
    EXPECT_EQ(node.NodeName(), row.nodeName);
    EXPECT_EQ(OrNull(node.BaseName()), row.baseName);
    EXPECT_EQ(OrNull(node.Prefix()), row.prefix);
    EXPECT_EQ(OrNull(node.NamespaceUri()), row.uri);
  }
}

TEST(Node, HasNoNamespaceBelowAnEmptyDeclaration) {
  const Document document = Parsed("<a xmlns='u'><b xmlns=''><c/></b></a>");
  EXPECT_EQ(Named(document, "a").NamespaceUri(), "u");
  EXPECT_EQ(Named(document, "b").NamespaceUri(), std::nullopt);
  EXPECT_EQ(Named(document, "c").NamespaceUri(), std::nullopt);
}

struct KindCase {
  const char* why;
  const char* xml;  // the node is the first child of the root
  int type;
  const char* typeName;
  const char* nodeName;
  const char* baseName;
  const char* value;
  const char* text;
};
constexpr KindCase kKinds[] = {
    {"element", "<a><b>t</b></a>", 1, "element", "b", "b", "null", "t"},
    {"text", "<a>t<b/></a>", 3, "text", "#text", "null", "t", "t"},
    {"text kept in its element", "<a>t</a>", 3, "text", "#text", "null", "t", "t"},
    {"CDATA", "<a><![CDATA[<t>]]></a>", 4, "cdatasection", "#cdata-section", "null", "<t>", "<t>"},
    {"comment", "<a><!--t--></a>", 8, "comment", "#comment", "null", "t", "t"},
    {"instruction", "<a><?p d e?></a>", 7, "processinginstruction", "p", "p", "d e", "d e"},
};

TEST(Node, HasTheValueOfItsKind) {
  for (const KindCase& row : kKinds) {
    SCOPED_TRACE(row.why);
    const Node node = Parsed(row.xml).DocumentElement().FirstChild();
    ASSERT_TRUE(node);
    EXPECT_EQ(static_cast<int>(node.Type()), row.type);
    EXPECT_EQ(node.TypeName(), row.typeName);
    EXPECT_EQ(node.NodeName(), row.nodeName);
    EXPECT_EQ(OrNull(node.BaseName()), row.baseName);
    EXPECT_EQ(OrNull(node.Prefix()), "null");
    EXPECT_EQ(OrNull(node.NamespaceUri()), "null");
    EXPECT_EQ(OrNull(node.NodeValue()), row.value);
    EXPECT_EQ(node.Text(), row.text);
    EXPECT_TRUE(node.Specified());
  }
}

TEST(Node, OfADocumentHasFixedNames) {
  const Document document = Parsed("<!DOCTYPE a [<!ENTITY e 'v'>]><a>&e;</a>");
  const Node top = document.AsNode();
  EXPECT_EQ(top.TypeName(), "document");
  EXPECT_EQ(top.NodeName(), "#document");
  EXPECT_EQ(top.BaseName(), std::nullopt);
  EXPECT_EQ(top.NodeValue(), std::nullopt);
  EXPECT_EQ(document.CreateDocumentFragment().NodeName(), "#document-fragment");
  EXPECT_EQ(document.Doctype().NodeName(), "a");
  EXPECT_EQ(document.Doctype().TypeName(), "documenttype");
  EXPECT_EQ(document.Doctype().NodeValue(), std::nullopt);
  const Node reference = document.DocumentElement().FirstChild();
  EXPECT_EQ(reference.TypeName(), "entityreference");
  EXPECT_EQ(reference.NodeName(), "e");
  EXPECT_EQ(reference.NodeValue(), std::nullopt);
  EXPECT_EQ(reference.Text(), "v");
}

TEST(Node, TellsWhetherAnAttributeWasWritten) {
  const Document document = Parsed("<!DOCTYPE a [<!ATTLIST a d CDATA 'v' e CDATA 'w'>]><a e='x'/>");
  const Node root = document.DocumentElement();
  EXPECT_FALSE(root.GetAttributeNode("d").Specified());
  EXPECT_TRUE(root.GetAttributeNode("e").Specified());
  root.SetAttribute("d", "v");
  EXPECT_TRUE(root.GetAttributeNode("d").Specified());
  EXPECT_EQ(root.Xml(), "<a e=\"x\" d=\"v\"/>");
}

// Text -------------------------------------------------------------------------------------------

struct TextCase {
  const char* why;
  const char* xml;
  const char* kept;     // with white space preserved
  const char* trimmed;  // without
};
constexpr TextCase kTexts[] = {
    {"text is neither trimmed nor collapsed", "<a> a<b>  </b>c  </a>", " a  c  ", "ac"},
    {"all text below, in document order", "<a>1<b>2<c>3</c></b>4</a>", "1234", "1234"},
    {"CDATA is text", "<a>1<![CDATA[<2>]]>3</a>", "1<2>3", "1<2>3"},
    {"comments and instructions add nothing", "<a>1<!--x-->2<?p x?>3</a>", "123", "123"},
    {"white space at the ends of CDATA stays", "<a> <![CDATA[ x ]]> </a>", "  x  ", " x "},
    {"text beyond CDATA is trimmed", "<a> 1 <![CDATA[ x ]]> 2 </a>", " 1  x  2 ", "1  x  2"},
    {"an empty CDATA section protects nothing", "<a> 1 <![CDATA[]]> 2 </a>", " 1  2 ", "1  2"},
    {"tabs and line ends are white space", "<a>\n\t x \r\n</a>", "\n\t x \n", "x"},
    {"other blanks are not", "<a>\xC2\xA0x\xC2\xA0</a>", "\xC2\xA0x\xC2\xA0", "\xC2\xA0x\xC2\xA0"},
    {"xml:space keeps it", "<a xml:space='preserve'> x </a>", " x ", " x "},
    {"an empty element", "<a/>", "", ""},
};

TEST(Node, TextIsTrimmedOnlyWithoutPreservedWhiteSpace) {
  for (const TextCase& row : kTexts) {
    SCOPED_TRACE(row.why);
    const Document kept = Parsed(row.xml);
    EXPECT_EQ(kept.DocumentElement().Text(), row.kept);
    EXPECT_EQ(kept.AsNode().Text(), row.kept);
    Document trimmed = Document::Create();
    trimmed.PreserveWhiteSpace(false);
    ASSERT_TRUE(trimmed.LoadXml(row.xml));
    EXPECT_EQ(trimmed.DocumentElement().Text(), row.trimmed);
  }
}

TEST(Node, TextFollowsTheSettingAtOnceWhileWhiteSpaceNodesStay) {
  const Document document = Parsed("<a> <b/> x </a>");
  document.PreserveWhiteSpace(false);
  EXPECT_EQ(document.DocumentElement().Text(), "x");
  EXPECT_EQ(document.DocumentElement().ChildNodes().Length(), 3);
  EXPECT_EQ(document.DocumentElement().LastChild().Text(), "x");
  EXPECT_EQ(document.DocumentElement().LastChild().NodeValue(), " x ");
  document.PreserveWhiteSpace(true);
  EXPECT_EQ(document.DocumentElement().Text(), "  x ");
}

TEST(Node, DroppedWhiteSpaceDoesNotComeBack) {
  Document document = Document::Create();
  ASSERT_TRUE(document.LoadXml("<a> <b/> </a>"));
  document.PreserveWhiteSpace(true);
  EXPECT_EQ(document.DocumentElement().ChildNodes().Length(), 1);
}

TEST(Node, TextOfAnAttributeIsItsValueUntrimmed) {
  Document document = Document::Create();
  ASSERT_TRUE(document.LoadXml("<a b=' x '/>"));
  EXPECT_EQ(document.DocumentElement().GetAttributeNode("b").Text(), " x ");
}

TEST(Node, TextOfEntityReferencesIsTheirReplacement) {
  const Document document =
      Parsed("<!DOCTYPE a [<!ENTITY e 'in<b>ner</b>'><!ENTITY v 'val'>]><a c='x&v;y'>1&e;2</a>");
  EXPECT_EQ(document.DocumentElement().Text(), "1inner2");
  EXPECT_EQ(document.DocumentElement().GetAttribute("c"), "xvaly");
  EXPECT_EQ(document.DocumentElement().Xml(), "<a c=\"x&v;y\">1&e;2</a>");
}

struct WriteCase {
  const char* why;
  const char* xml;
  const char* text;
  const char* after;
};
constexpr WriteCase kTextWrites[] = {
    {"all children go", "<a>1<b/>2</a>", "x", "<a>x</a>"},
    {"an inline text is replaced", "<a>1</a>", "x", "<a>x</a>"},
    {"an empty text leaves no child", "<a>1<b/></a>", "", "<a></a>"},
    {"the short form stays", "<a/>", "", "<a/>"},
    {"line ends become LF", "<a/>", "1\r\n2\r3\n4", "<a>1\r\n2\r\n3\r\n4</a>"},
    {"attributes stay", "<a b=\"1\">1</a>", "<&>", "<a b=\"1\">&lt;&amp;&gt;</a>"},
};

TEST(Node, SetTextOfAnElementReplacesItsChildren) {
  for (const WriteCase& row : kTextWrites) {
    SCOPED_TRACE(row.why);
    const Document document = Parsed(row.xml);
    document.DocumentElement().SetText(row.text);
    EXPECT_EQ(XmlOf(document), row.after);
    EXPECT_EQ(document.DocumentElement().HasChildNodes(), *row.text != '\0');
  }
}

TEST(Node, SetTextFoldsLineEndsInEveryKind) {
  const Document document = Parsed("<a b='1'>t<![CDATA[c]]><!--m--><?p d?></a>");
  const Node root = document.DocumentElement();
  const NodeList children = root.ChildNodes();
  for (int i = 0; i < children.Length(); ++i) {
    children.Item(i).SetText("x\r\ny\rz");
    EXPECT_EQ(children.Item(i).NodeValue(), "x\ny\nz");
  }
  root.GetAttributeNode("b").SetText("x\r\ny\rz");
  EXPECT_EQ(root.GetAttribute("b"), "x\ny\nz");
}

TEST(Node, SetTextTakesATextOfTheDocumentItself) {
  const Document document = Parsed("<a b='value'><c>first</c><d/>tail</a>");
  const Node root = document.DocumentElement();
  const Cursor inner = Named(document, "c").At();
  root.SetText(inner.OwnText());
  EXPECT_EQ(root.Text(), "first");
  root.SetText(root.At().OwnText().substr(1, 3));
  EXPECT_EQ(root.Text(), "irs");
  root.SetText(root.At().OwnText());
  EXPECT_EQ(root.Text(), "irs");
}

TEST(Node, OldChildrenLiveOnDetachedAfterSetText) {
  const Document document = Parsed("<a>old<b>in</b></a>");
  const Node root = document.DocumentElement();
  const Node text = root.FirstChild();
  const Node element = root.LastChild();
  root.SetText("new");
  EXPECT_EQ(text.Text(), "old");
  EXPECT_EQ(element.Xml(), "<b>in</b>");
  EXPECT_FALSE(text.ParentNode());
  EXPECT_FALSE(text.NextSibling());
  text.SetText("changed");
  EXPECT_EQ(XmlOf(document), "<a>new</a>");
}

TEST(Node, AHandleOfTheTextOfAnElementEditsTheElement) {
  const Document document = Parsed("<a b='1'><c>t</c></a>");
  const Node text = Named(document, "c").FirstChild();
  const Node value = document.DocumentElement().GetAttributeNode("b").FirstChild();
  ASSERT_TRUE(value);
  text.SetText("u");
  value.SetText("2");
  EXPECT_EQ(XmlOf(document), "<a b=\"2\"><c>u</c></a>");
  EXPECT_EQ(text, Named(document, "c").FirstChild());
  EXPECT_EQ(text.ParentNode(), Named(document, "c"));
  EXPECT_EQ(value.ParentNode(), document.DocumentElement().GetAttributeNode("b"));
}

TEST(Node, TwoCursorsOfOneInlineTextGiveOneNode) {
  const Document document = Parsed("<a>t</a>");
  const Cursor text = document.Root().FirstChild();
  const Node first(text);
  const Node second(text);
  EXPECT_EQ(first, second);
  EXPECT_EQ(document.DocumentElement().ChildNodes().Length(), 1);
}

// Values -----------------------------------------------------------------------------------------

struct ValueCase {
  const char* why;
  Variant value;
  const char* text;
};

TEST(Node, SetNodeValueConvertsAsTheRunTimeDoes) {
  const ValueCase rows[] = {
      {"a number", Variant(99), "99"},
      {"a boolean", Variant(true), "True"},
      {"empty", Variant(), ""},
      {"a double", Variant(0.5), "0.5"},
      {"a text", Variant("x"), "x"},
      {"a date and time", Variant(Date{39521.37855324074}), "3/14/2008 9:05:07 AM"},
      {"midnight has no time", Variant(Date{39521.0}), "3/14/2008"},
      {"day 0 has no date", Variant(Date{0.5}), "12:00:00 PM"},
  };
  const Document document = Parsed("<a b='1'/>");
  const Node attribute = document.DocumentElement().GetAttributeNode("b");
  for (const ValueCase& row : rows) {
    SCOPED_TRACE(row.why);
    attribute.SetNodeValueFrom(row.value);
    EXPECT_EQ(attribute.NodeValue(), row.text);
  }
  EXPECT_EQ(RaisedBy([&] { return attribute.SetNodeValueFrom(Variant::Null()), 0; }),
            BadArgument());
}

TEST(Node, KindsWithoutValueRefuseOne) {
  const Document document = Parsed("<!DOCTYPE a [<!ENTITY e 'v'>]><a>&e;</a>");
  struct Row {
    Node node;
    const char* type;
  };
  const Row rows[] = {
      {document.AsNode(), "DOCUMENT"},
      {document.DocumentElement(), "ELEMENT"},
      {document.CreateDocumentFragment(), "DOCUMENTFRAGMENT"},
      {document.DocumentElement().FirstChild(), "ENTITYREFERENCE"},
      {document.Doctype(), "DOCUMENTTYPE"},
  };
  for (const Row& row : rows) {
    const Raised expected = Fail("This operation can not be performed with a Node of type " +
                                 std::string(row.type) + ".");
    EXPECT_EQ(row.node.NodeValue(), std::nullopt);
    EXPECT_EQ(RaisedBy([&] { return row.node.SetNodeValue("x"), 0; }), expected);
    EXPECT_EQ(RaisedBy([&] { return row.node.SetNodeValueFrom(Variant(1)), 0; }), expected);
  }
}

TEST(Node, SetTextIsRefusedWhereThereIsNone) {
  const Document document = Parsed("<!DOCTYPE a [<!ENTITY e 'v'>]><a>&e;</a>");
  const std::string before = document.Xml();
  EXPECT_EQ(RaisedBy([&] { return document.AsNode().SetText("x"), 0; }),
            Fail("This operation can not be performed with a Node of type DOCUMENT."));
  EXPECT_EQ(RaisedBy([&] { return document.Doctype().SetText("x"), 0; }),
            Fail("This operation can not be performed with a Node of type DOCUMENTTYPE."));
  const Node reference = document.DocumentElement().FirstChild();
  EXPECT_EQ(RaisedBy([&] { return reference.SetText("x"), 0; }),
            Fail("This operation can not be performed with a Node of type ENTITYREFERENCE."));
  EXPECT_EQ(RaisedBy([&] { return reference.FirstChild().SetText("x"), 0; }),
            Fail("This operation can not be performed with a Node of type ENTITYREFERENCE."));
  EXPECT_EQ(document.Xml(), before);
}

struct BadTextCase {
  const char* why;
  std::string text;
};

TEST(Node, CharactersThatXmlForbidsAreRefusedInEveryWrite) {
  const BadTextCase rows[] = {
      {"a control character", "a\x01"},
      {"a null character", std::string("a\0b", 3)},
      {"a vertical tab", "\x0B"},
      {"U+FFFE", "\xEF\xBF\xBE"},
      {"U+FFFF", "\xEF\xBF\xBF"},
      {"a lone high surrogate", "\xED\xA0\x80"},
      {"a lone low surrogate", "\xED\xBF\xBF"},
      {"a byte that is no UTF-8", "\xFF"},
      {"a cut-off character", "x\xC3"},
  };
  const Raised expected = Fail("An invalid character was found in text content.");
  const Document document = Parsed("<a b=\"1\">t<![CDATA[c]]><!--m--><?p d?></a>");
  const std::string before = document.Xml();
  const Node root = document.DocumentElement();
  for (const BadTextCase& row : rows) {
    SCOPED_TRACE(row.why);
    const std::string& text = row.text;
    EXPECT_EQ(RaisedBy([&] { return root.SetText(text), 0; }), expected);
    for (int i = 0; i < 4; ++i) {
      EXPECT_EQ(RaisedBy([&] { return root.ChildNodes().Item(i).SetText(text), 0; }), expected);
      EXPECT_EQ(RaisedBy([&] { return root.ChildNodes().Item(i).SetNodeValue(text), 0; }),
                expected);
    }
    EXPECT_EQ(RaisedBy([&] { return root.SetAttribute("b", text), 0; }), expected);
    EXPECT_EQ(RaisedBy([&] { return root.SetAttribute("new", text), 0; }), expected);
    EXPECT_EQ(RaisedBy([&] { return root.GetAttributeNode("b").SetText(text), 0; }), expected);
    EXPECT_EQ(RaisedBy([&] { return root.FirstChild().AppendData(text), 0; }), expected);
    EXPECT_EQ(RaisedBy([&] { return root.FirstChild().InsertData(0, text), 0; }), expected);
    EXPECT_EQ(RaisedBy([&] { return document.CreateTextNode(text); }), expected);
    EXPECT_EQ(RaisedBy([&] { return document.CreateComment(text); }), expected);
    EXPECT_EQ(RaisedBy([&] { return document.CreateCDataSection(text); }), expected);
    EXPECT_EQ(RaisedBy([&] { return document.CreateProcessingInstruction("p", text); }), expected);
    EXPECT_EQ(RaisedBy([&] { return document.CreateNode(NodeType::kElement, "x", text); }),
              expected);
    EXPECT_EQ(document.Xml(), before);
  }
}

TEST(Node, CharactersAtTheEdgeOfWhatXmlAllowsAreTaken) {
  const Document document = Parsed("<a/>");
  const std::string text =
      "\t\n \xEE\x80\x80\xED\x9F\xBF\xEF\xBF\xBD\xF0\x90\x80\x80\xF4\x8F\xBF\xBF";
  document.DocumentElement().SetText(text);
  EXPECT_EQ(document.DocumentElement().Text(), text);
}

TEST(Node, CommentsAndInstructionsRefuseTheirOwnEnd) {
  const Document document = Parsed("<a><!--m--><?p d?></a>");
  const std::string before = document.Xml();
  const Node comment = document.DocumentElement().FirstChild();
  const Node instruction = document.DocumentElement().LastChild();
  const Raised badComment = BadArgument("Invalid data for a node of type 'COMMENT'.");
  const Raised badData = BadArgument("Invalid data for a node of type 'PROCESSINGINSTRUCTION'.");
  EXPECT_EQ(RaisedBy([&] { return comment.SetText("a-->b"), 0; }), badComment);
  EXPECT_EQ(RaisedBy([&] { return comment.AppendData("-->"), 0; }), badComment);
  EXPECT_EQ(RaisedBy([&] { return document.CreateComment("-->"); }), badComment);
  EXPECT_EQ(RaisedBy([&] { return instruction.SetNodeValue("?>"), 0; }), badData);
  EXPECT_EQ(RaisedBy([&] { return document.CreateProcessingInstruction("p", "a?>"); }), badData);
  EXPECT_EQ(document.Xml(), before);
  comment.SetText("?>");
  instruction.SetText("-->");
  EXPECT_EQ(XmlOf(document), "<a><!--?>--><?p -->?></a>");
}

// Navigation -------------------------------------------------------------------------------------

TEST(Node, NavigatesAsWritten) {
  const Document document = Parsed("<a x='1'><b/>t<c/></a>");
  const Node root = document.DocumentElement();
  EXPECT_EQ(root.ParentNode(), document.AsNode());
  EXPECT_FALSE(document.AsNode().ParentNode());
  EXPECT_FALSE(document.AsNode().OwnerDocument());
  EXPECT_EQ(root.OwnerDocument(), document);
  EXPECT_EQ(root.FirstChild().NodeName(), "b");
  EXPECT_EQ(root.LastChild().NodeName(), "c");
  EXPECT_EQ(root.FirstChild().NextSibling().NodeName(), "#text");
  EXPECT_EQ(root.LastChild().PreviousSibling().NodeName(), "#text");
  EXPECT_FALSE(root.FirstChild().PreviousSibling());
  EXPECT_FALSE(root.LastChild().NextSibling());
  EXPECT_TRUE(root.HasChildNodes());
  EXPECT_FALSE(root.FirstChild().HasChildNodes());
  EXPECT_FALSE(root.FirstChild().FirstChild());
}

TEST(Node, AttributesHaveATextChildAndNeitherParentNorSiblings) {
  const Document document = Parsed("<a x='1' y='' z='3'/>");
  const Node x = document.DocumentElement().GetAttributeNode("x");
  EXPECT_FALSE(x.ParentNode());
  EXPECT_FALSE(x.NextSibling());
  EXPECT_FALSE(x.PreviousSibling());
  EXPECT_EQ(x.OwnerDocument(), document);
  ASSERT_TRUE(x.FirstChild());
  EXPECT_EQ(x.FirstChild().TypeName(), "text");
  EXPECT_EQ(x.FirstChild().NodeValue(), "1");
  EXPECT_EQ(x.FirstChild(), x.LastChild());
  EXPECT_EQ(x.FirstChild().ParentNode(), x);
  EXPECT_FALSE(document.DocumentElement().GetAttributeNode("y").HasChildNodes());
}

TEST(Node, AttributeWithReferencesHasThemAsChildren) {
  const Document document = Parsed("<!DOCTYPE a [<!ENTITY e 'v'>]><a b='x&e;y'/>");
  const Node attribute = document.DocumentElement().GetAttributeNode("b");
  const NodeList children = attribute.ChildNodes();
  ASSERT_EQ(children.Length(), 3);
  EXPECT_EQ(children.Item(0).NodeValue(), "x");
  EXPECT_EQ(children.Item(1).TypeName(), "entityreference");
  EXPECT_EQ(children.Item(2).NodeValue(), "y");
  attribute.SetText("plain");
  EXPECT_EQ(document.DocumentElement().Xml(), "<a b=\"plain\"/>");
  EXPECT_EQ(attribute.ChildNodes().Length(), 1);
}

TEST(Node, OfNothingRaisesObjectNotSet) {
  const Node nothing;
  EXPECT_FALSE(nothing);
  EXPECT_EQ(nothing, Node());
  EXPECT_EQ(RaisedBy([&] { return nothing.NodeName(); }), ObjectNotSet());
  EXPECT_EQ(RaisedBy([&] { return nothing.FirstChild(); }), ObjectNotSet());
  EXPECT_EQ(RaisedBy([&] { return nothing.SetText("x"), 0; }), ObjectNotSet());
  EXPECT_EQ(RaisedBy([&] { return nothing.AppendChild(Parsed("<a/>").DocumentElement()); }),
            ObjectNotSet());
  EXPECT_EQ(RaisedBy([&] { return nothing.Attributes(); }), ObjectNotSet());
}

TEST(Node, EqualityIsIdentityOfTheNode) {
  const Document document = Parsed("<a><b/><b/></a>");
  const Node root = document.DocumentElement();
  EXPECT_EQ(root.FirstChild(), root.FirstChild());
  EXPECT_NE(root.FirstChild(), root.LastChild());
  EXPECT_NE(root, Node());
  EXPECT_NE(root, Parsed("<a/>").DocumentElement());
}

TEST(Node, KeepsItsDocumentAlive) {
  Node node;
  Document owner;
  {
    const Document document = Parsed("<a><b>t</b></a>");
    node = document.DocumentElement().FirstChild();
  }
  EXPECT_EQ(node.Xml(), "<b>t</b>");
  EXPECT_EQ(node.ParentNode().NodeName(), "a");
  owner = node.OwnerDocument();
  node = Node();
  EXPECT_EQ(XmlOf(owner), "<a><b>t</b></a>");
}

}  // namespace
}  // namespace kx::dom
