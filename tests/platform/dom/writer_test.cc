#include "platform/dom/writer.h"

#include "platform/dom/parser.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace kx::dom {
namespace {

// A document made from text, or from nothing by the edits of a program.
class TestDocument {
 public:
  TestDocument() : data_(std::make_unique<DocumentData>(nullptr)) {}
  explicit TestDocument(std::string_view text, const ParseOptions& options = {}) : TestDocument() {
    ParseError error;
    EXPECT_TRUE(ParseText(*data_, text, options, error)) << error.reason << text;
  }

  DocumentData& Data() { return *data_; }
  [[nodiscard]] Cursor Document() const { return {data_.get(), kDocumentNode}; }
  [[nodiscard]] Cursor Root() const { return {data_.get(), data_->DocumentElement()}; }
  [[nodiscard]] Cursor At(NodeId id) const { return {data_.get(), id}; }
  [[nodiscard]] std::string Xml() const { return WriteXml(Document()); }

  NodeId Element(NodeId parent, std::string_view name, std::string_view uri = {}) {
    return Add(parent, NodeType::kElement, name, uri);
  }
  NodeId Add(NodeId parent, NodeType type, std::string_view name, std::string_view uri = {}) {
    const NodeId id = data_->NewNode(type, Name(name, uri));
    if (parent != kNoNode) data_->InsertChild(parent, id, kNoNode);
    return id;
  }
  NodeId Text(NodeId parent, NodeType type, std::string_view text, std::string_view name = {}) {
    const NodeId id = Add(parent, type, name);
    data_->SetOwnText(id, text);
    return id;
  }
  NodeId Attribute(NodeId element, std::string_view name, std::string_view value,
                   std::string_view uri = {}) {
    const NodeId id = data_->NewNode(NodeType::kAttribute, Name(name, uri));
    if (name == "xmlns" || name.substr(0, 6) == "xmlns:") {
      data_->Record(id).flags |= kNamespaceDeclaration;
    }
    data_->SetOwnText(id, value);
    data_->AppendAttribute(element, id);
    return id;
  }

 private:
  NameId Name(std::string_view name, std::string_view uri) {
    if (name.empty()) return 0;
    return data_->Names().InternName(name, uri.empty() ? kNoUri : data_->Names().InternUri(uri));
  }

  std::unique_ptr<DocumentData> data_;
};

struct RoundCase {
  const char* text;
  const char* xml;
  const char* why;
};

// Documents
// ----------------------------------------------------------------------------------------

constexpr RoundCase kDocumentCases[] = {
    {"<a/>", "<a/>\r\n", "each child of the document is followed by a line end"},
    {"<a>text</a>", "<a>text</a>\r\n", "so is a root with text"},
    {"<?xml version=\"1.0\"?><a/>", "<?xml version=\"1.0\"?>\r\n<a/>\r\n", "and a declaration"},
    {"<!--c--><?p d?>\n\n<a/>  <!--e-->", "<!--c-->\r\n<?p d?>\r\n<a/>\r\n<!--e-->\r\n",
     "white space between the children of the document is no node"},
    {"<a></a>", "<a></a>\r\n", "the form with two tags is remembered"},
    {"<a><b/><c></c></a>", "<a><b/><c></c></a>\r\n", "for each element by itself"},
    {"<a ></a >", "<a></a>\r\n", "white space in tags is not"},
    {"<a b='1'/>", "<a b=\"1\"/>\r\n", "values stand between double quotes"},
    {"<Sub val = 'A'  />", "<Sub val=\"A\"/>\r\n", "one blank before an attribute, none after"},
    {"<a\tb='1'\n c='2'></a>", "<a b=\"1\" c=\"2\"></a>\r\n", "whatever stood between them"},
    {"<a b='&quot;&apos;'/>", "<a b=\"&quot;'\"/>\r\n", "only the double quote is escaped"},
    {"<a b='\"'/>", "<a b=\"&quot;\"/>\r\n", "also one that needed no escape in the source"},
    {"<a b='&lt;&gt;&amp;>'/>", "<a b=\"&lt;&gt;&amp;&gt;\"/>\r\n", "markup in a value"},
    {"<a>&lt;&gt;&amp;&quot;&apos;></a>", "<a>&lt;&gt;&amp;\"'&gt;</a>\r\n",
     "quotes are data in text"},
    {"<a>&amp;lt;</a>", "<a>&amp;lt;</a>\r\n", "data that looks like a reference"},
    {"<a>&#65;&#x42;</a>", "<a>AB</a>\r\n", "character references are what they stand for"},
    {"<a>x\ny\r\nz\rw</a>", "<a>x\r\ny\r\nz\r\nw</a>\r\n", "every line end is CR LF"},
    {"<a>\n\r\n\r\r\n</a>", "<a>\r\n\r\n\r\n\r\n</a>\r\n", "four line ends of all kinds"},
    {"<a b='x\ny'/>", "<a b=\"x\r\ny\"/>\r\n", "in values too"},
    {"<a b='v\r\na\rl\nu\te'/>", "<a b=\"v\r\na\r\nl\r\nu\te\"/>\r\n", "and a tab stays a tab"},
    {"<a>&#13;&#13;&#10;</a>", "<a>&#13;&#13;\r\n</a>\r\n", "a carriage return of the data"},
    {"<a b='&#13;&#10;'/>", "<a b=\"&#13;\r\n\"/>\r\n", "in a value"},
    {"<a> b <c>  </c>d  </a>", "<a> b <c>  </c>d  </a>\r\n", "white space of the content stays"},
    {"<a>\n  <b/>\n</a>", "<a>\r\n  <b/>\r\n</a>\r\n", "and nothing is indented"},
    {"<a><![CDATA[<&>\"\n]]></a>", "<a><![CDATA[<&>\"\r\n]]></a>\r\n", "CDATA sections stay"},
    {"<a><![CDATA[]]></a>", "<a><![CDATA[]]></a>\r\n", "an empty one too"},
    {"<a><!--<&>\n--></a>", "<a><!--<&>\r\n--></a>\r\n", "nothing is escaped in comments"},
    {"<a><!----></a>", "<a><!----></a>\r\n", "an empty comment"},
    {"<a><?p <&>\n x?></a>", "<a><?p <&>\r\n x?></a>\r\n", "nor in processing instructions"},
    {"<a><?p?></a>", "<a><?p?></a>\r\n", "an instruction without data"},
    {"<a><?p   d  ?></a>", "<a><?p d  ?></a>\r\n", "one blank stands before the data"},
    {"<a>\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80</a>",
     "<a>\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80</a>\r\n",
     "characters beyond ASCII stand as they are"},
    {"<\xC3\xA9t\xC3\xA9 \xC3\xA0='1'/>", "<\xC3\xA9t\xC3\xA9 \xC3\xA0=\"1\"/>\r\n",
     "in names too"},
    {"<an-element-name-of-more-than-sixteen.bytes another_long:one='1' xmlns:another_long='u'/>",
     "<an-element-name-of-more-than-sixteen.bytes another_long:one=\"1\" "
     "xmlns:another_long=\"u\"/>\r\n",
     "names of any length"},
};

TEST(WriteXml, GivesADocumentAsItWasRead) {
  for (const RoundCase& row : kDocumentCases) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(TestDocument(row.text).Xml(), row.xml);
  }
}

TEST(WriteXml, GivesTheSameTextForWhatItWrote) {
  for (const RoundCase& row : kDocumentCases) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(TestDocument(row.xml).Xml(), row.xml);
  }
}

struct DeclarationCase {
  const char* text;
  const char* xml;
  const char* saved;
  const char* why;
};

constexpr DeclarationCase kDeclarationCases[] = {
    {"<?xml version='1.0'?><a/>", "<?xml version=\"1.0\"?>\r\n<a/>\r\n",
     "<?xml version=\"1.0\"?>\r\n<a/>\r\n", "nothing to leave out"},
    {"<?xml version='1.0' encoding='UTF-8'?><a/>", "<?xml version=\"1.0\"?>\r\n<a/>\r\n",
     "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<a/>\r\n",
     "a text has no encoding, what is saved has one"},
    {"<?xml version='1.0' encoding='windows-1252' standalone='yes'?><a/>",
     "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<a/>\r\n",
     "<?xml version=\"1.0\" encoding=\"windows-1252\" standalone=\"yes\"?>\r\n<a/>\r\n",
     "standalone stays"},
    {"<?xml version='1.0' encoding='UTF-16'?><a/>",
     "<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n<a/>\r\n",
     "<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n<a/>\r\n", "UTF-16 is true of a text"},
    {"<?xml version='1.0' encoding='utf-16'?><a/>",
     "<?xml version=\"1.0\" encoding=\"utf-16\"?>\r\n<a/>\r\n",
     "<?xml version=\"1.0\" encoding=\"utf-16\"?>\r\n<a/>\r\n",
     "names of encodings compare without regard to case"},
};

TEST(WriteXml, LeavesTheEncodingOutExceptWhenSaving) {
  for (const DeclarationCase& row : kDeclarationCases) {
    SCOPED_TRACE(row.why);
    const TestDocument document(row.text);
    EXPECT_EQ(document.Xml(), row.xml);
    EXPECT_EQ(WriteXml(document.Document(), DeclaredEncoding::kKeep), row.saved);
  }
}

TEST(WriteXml, GivesTheDeclarationNodeAlone) {
  const TestDocument document("<?xml version='1.0' encoding='UTF-8'?><a/>");
  const Cursor declaration = document.Document().FirstChild();
  EXPECT_EQ(WriteXml(declaration), "<?xml version=\"1.0\"?>");
  EXPECT_EQ(WriteXml(declaration, DeclaredEncoding::kKeep),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
}

// Document types
// -----------------------------------------------------------------------------------

constexpr RoundCase kDocumentTypeCases[] = {
    {"<!DOCTYPE a><a/>", "<!DOCTYPE a>\r\n<a/>\r\n", "a name"},
    {"<!DOCTYPE a SYSTEM 'x.dtd'><a/>", "<!DOCTYPE a SYSTEM 'x.dtd'>\r\n<a/>\r\n",
     "the text stays as it was written"},
    {"<!DOCTYPE a [<!ENTITY e 'v'>]><a>x&e;y</a>",
     "<!DOCTYPE a [<!ENTITY e 'v'>]>\r\n<a>x&e;y</a>\r\n", "a reference is written as one"},
    {"<!DOCTYPE a [<!ENTITY e '<b/>'>]><a>&e;</a>",
     "<!DOCTYPE a [<!ENTITY e '<b/>'>]>\r\n<a>&e;</a>\r\n", "also one that holds elements"},
    {"<!DOCTYPE a [<!ENTITY e 'v'>]><a b='x&e;y\"'/>",
     "<!DOCTYPE a [<!ENTITY e 'v'>]>\r\n<a b=\"x&e;y&quot;\"/>\r\n", "and one in a value"},
    {"<!DOCTYPE a [\n<!ATTLIST a b CDATA 'd' c CDATA 'e'>\n]><a c='1'/>",
     "<!DOCTYPE a [\r\n<!ATTLIST a b CDATA 'd' c CDATA 'e'>\r\n]>\r\n<a c=\"1\"/>\r\n",
     "attributes that the declaration supplied are left out"},
};

TEST(WriteXml, GivesDocumentTypesAndReferencesAsTheyWereRead) {
  for (const RoundCase& row : kDocumentTypeCases) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(TestDocument(row.text).Xml(), row.xml);
    EXPECT_EQ(TestDocument(row.xml).Xml(), row.xml);
  }
}

// Single nodes
// -------------------------------------------------------------------------------------

TEST(WriteXml, GivesNodesOtherThanTheDocumentWithoutALineEnd) {
  TestDocument made;
  const NodeId root = made.Element(kDocumentNode, "a");
  struct NodeCase {
    NodeId node;
    const char* xml;
    const char* why;
  };
  const NodeId references = made.Attribute(root, "r", "");
  made.Data().InsertChild(references, made.Text(kNoNode, NodeType::kText, "x<\"\n"), kNoNode);
  made.Data().InsertChild(references, made.Add(kNoNode, NodeType::kEntityReference, "e"), kNoNode);
  const NodeId fragment = made.Add(kNoNode, NodeType::kDocumentFragment, {});
  made.Text(made.Element(fragment, "f", "u"), NodeType::kText, "1");
  made.Text(fragment, NodeType::kText, "<");
  made.Element(fragment, "g", "u");
  const NodeId inlineOwner = made.Element(root, "i");
  made.Data().SetOwnText(inlineOwner, "a<b\"");
  const NodeId inlineAttribute = made.Attribute(root, "ia", "<\"");
  const NodeCase cases[] = {
      {made.Element(root, "b"), "<b/>", "an element without content"},
      {made.Attribute(root, "c", "v<\"'\n"), "c=\"v&lt;&quot;'\r\n\"", "an attribute"},
      {made.Attribute(root, "p:d", "v", "u"), "p:d=\"v\"", "an attribute's prefix is not declared"},
      {made.Attribute(root, "e", ""), "e=\"\"", "an empty attribute"},
      {references, "r=\"x&lt;&quot;\r\n&e;\"", "an attribute of texts and references"},
      {made.Text(root, NodeType::kText, "a<b>&\"'\n"), "a&lt;b&gt;&amp;\"'\r\n", "a text"},
      {made.Text(root, NodeType::kText, ""), "", "an empty text"},
      {made.Text(root, NodeType::kCData, "a<b"), "<![CDATA[a<b]]>", "a CDATA section"},
      {made.Text(root, NodeType::kCData, "a]]>b]]>]]"),
       "<![CDATA[a]]]]><![CDATA[>b]]]]><![CDATA[>]]]]>", "one whose data holds the end of one"},
      {made.Text(root, NodeType::kComment, "a<b\n"), "<!--a<b\r\n-->", "a comment"},
      {made.Text(root, NodeType::kProcessingInstruction, "d", "p"), "<?p d?>", "an instruction"},
      {made.Text(root, NodeType::kProcessingInstruction, "", "p"), "<?p?>", "one without data"},
      {made.Add(root, NodeType::kEntityReference, "e"), "&e;", "a reference"},
      {fragment, "<f xmlns=\"u\">1</f>&lt;<g xmlns=\"u\"/>", "a fragment is its children"},
      {made.Add(kNoNode, NodeType::kDocumentFragment, {}), "", "an empty fragment"},
      {InlineTextOf(inlineOwner), "a&lt;b\"", "the text that an element keeps in itself"},
      {InlineTextOf(inlineAttribute), "&lt;\"", "the text of an attribute is a text"},
  };
  for (const NodeCase& row : cases) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(WriteXml(made.At(row.node)), row.xml);
  }
  EXPECT_EQ(WriteXml(Cursor()), "") << "nothing";
}

TEST(WriteXml, RemembersTheFormOfElementsWithoutContent) {
  TestDocument document("<a></a>");
  const NodeId root = document.Root().Id();
  document.Data().SetOwnText(root, "text");
  EXPECT_EQ(WriteXml(document.Root()), "<a>text</a>");
  document.Data().RemoveChildren(root);
  EXPECT_EQ(WriteXml(document.Root()), "<a></a>");
  const NodeId copy = document.Data().CopySubtree(document.Data(), root, true);
  EXPECT_EQ(WriteXml(document.At(copy)), "<a></a>");

  TestDocument made;
  const NodeId element = made.Element(kDocumentNode, "a");
  EXPECT_EQ(WriteXml(made.Root()), "<a/>");
  made.Text(element, NodeType::kText, "");
  EXPECT_EQ(WriteXml(made.Root()), "<a></a>") << "an empty text is content";
}

// Namespaces
// ---------------------------------------------------------------------------------------

constexpr RoundCase kExplicitCases[] = {
    {"<a xmlns='u'><b/></a>", "<a xmlns=\"u\"><b/></a>\r\n", "a default namespace"},
    {"<p:a xmlns:p='u'><p:b/></p:a>", "<p:a xmlns:p=\"u\"><p:b/></p:a>\r\n", "a prefix"},
    {"<a b='1' xmlns='u' c='2'/>", "<a b=\"1\" xmlns=\"u\" c=\"2\"/>\r\n",
     "declarations stay where they stand"},
    {"<a xmlns:n='u'><b n:x='v' xmlns:n='u'/></a>",
     "<a xmlns:n=\"u\"><b n:x=\"v\" xmlns:n=\"u\"/></a>\r\n", "also those that say nothing new"},
    {"<a xmlns='u'><b xmlns=''><c/></b></a>", "<a xmlns=\"u\"><b xmlns=\"\"><c/></b></a>\r\n",
     "also the one that takes the default away"},
    {"<a xmlns=''/>", "<a xmlns=\"\"/>\r\n", "even where there is none"},
    {"<p:a xmlns:p='u'><p:a xmlns:p='v'><p:a/></p:a><p:a/></p:a>",
     "<p:a xmlns:p=\"u\"><p:a xmlns:p=\"v\"><p:a/></p:a><p:a/></p:a>\r\n",
     "one prefix, two namespaces"},
    {"<a xmlns='u'><a xmlns='v'><a/></a><a/></a>",
     "<a xmlns=\"u\"><a xmlns=\"v\"><a/></a><a/></a>\r\n", "one name, two default namespaces"},
    {"<a xml:lang='en' xml:space='preserve'/>", "<a xml:lang=\"en\" xml:space=\"preserve\"/>\r\n",
     "the prefix xml needs no declaration"},
    {"<a xmlns:p='&lt;\"&quot;&amp;'/>", "<a xmlns:p=\"&lt;&quot;&quot;&amp;\"/>\r\n",
     "a namespace is escaped like any value"},
    {"<a xmlns:p='u' xmlns:q='u'><p:b/><q:b q:c='1' p:d='2'/></a>",
     "<a xmlns:p=\"u\" xmlns:q=\"u\"><p:b/><q:b q:c=\"1\" p:d=\"2\"/></a>\r\n",
     "two prefixes of one namespace"},
};

TEST(WriteXml, AddsNoDeclarationToWhatWasRead) {
  for (const RoundCase& row : kExplicitCases) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(TestDocument(row.text).Xml(), row.xml);
    EXPECT_EQ(TestDocument(row.xml).Xml(), row.xml);
  }
}

TEST(WriteXml, DeclaresTheNamespacesOfCreatedElementsOnce) {
  TestDocument made;
  const NodeId root = made.Element(kDocumentNode, "e1", "u");
  const NodeId same = made.Element(root, "e2", "u");
  made.Element(same, "e3", "u");
  const NodeId other = made.Element(root, "p:e4", "v");
  made.Element(other, "p:e5", "v");
  made.Element(other, "p:e6", "w");
  made.Element(root, "p:e7", "v");
  EXPECT_EQ(WriteXml(made.Root()),
            "<e1 xmlns=\"u\"><e2><e3/></e2><p:e4 xmlns:p=\"v\"><p:e5/><p:e6 xmlns:p=\"w\"/></p:e4>"
            "<p:e7 xmlns:p=\"v\"/></e1>");
  EXPECT_EQ(WriteXml(made.At(same)), "<e2 xmlns=\"u\"><e3/></e2>") << "alone it declares its own";
  EXPECT_EQ(made.Root().FirstAttribute(), Cursor()) << "the declaration is in the text only";
}

TEST(WriteXml, TakesTheDefaultNamespaceAwayFromElementsWithoutOne) {
  TestDocument made;
  const NodeId root = made.Element(kDocumentNode, "e1", "u");
  const NodeId none = made.Element(root, "e2");
  made.Attribute(none, "xmlns:ns", "uri");
  made.Attribute(none, "attr", "value");
  const NodeId inner = made.Element(none, "e3");
  made.Element(inner, "e4", "u");
  made.Element(none, "e3");
  EXPECT_EQ(WriteXml(made.Root()),
            "<e1 xmlns=\"u\"><e2 xmlns=\"\" xmlns:ns=\"uri\" attr=\"value\"><e3><e4 xmlns=\"u\"/>"
            "</e3><e3/></e2></e1>");
  EXPECT_EQ(WriteXml(made.At(none)),
            "<e2 xmlns:ns=\"uri\" attr=\"value\"><e3><e4 xmlns=\"u\"/></e3><e3/></e2>")
      << "alone there is no default namespace to take away";
}

TEST(WriteXml, StartsAnInnerElementWithNothingDeclared) {
  const TestDocument document(
      "<a xmlns='u' xmlns:p='v' xmlns:q='w'><b p:x='1' q:y='2' p:z='3'/>"
      "<q:c><q:d/></q:c></a>");
  const Cursor b = document.Root().FirstChild();
  EXPECT_EQ(WriteXml(b),
            "<b xmlns=\"u\" xmlns:p=\"v\" xmlns:q=\"w\" p:x=\"1\" q:y=\"2\" p:z=\"3\"/>");
  EXPECT_EQ(WriteXml(b.Next()), "<q:c xmlns:q=\"w\"><q:d/></q:c>");
}

TEST(WriteXml, DeclaresAtTheFirstElementThatNeedsARemovedDeclaration) {
  TestDocument document("<a xmlns:ns='u'><b><c ns:y='2'/></b><d ns:z='3'/></a>");
  document.Data().RemoveAttribute(document.Root().FindAttribute("xmlns:ns").Id());
  EXPECT_EQ(WriteXml(document.Root()),
            "<a><b><c xmlns:ns=\"u\" ns:y=\"2\"/></b><d xmlns:ns=\"u\" ns:z=\"3\"/></a>");

  TestDocument needed("<a ns:x='1' xmlns:ns='u'/>");
  needed.Data().RemoveAttribute(needed.Root().FindAttribute("xmlns:ns").Id());
  EXPECT_EQ(WriteXml(needed.Root()), "<a xmlns:ns=\"u\" ns:x=\"1\"/>");
}

TEST(WriteXml, LeavesAnExplicitDeclarationAloneThatContradictsTheName) {
  TestDocument made;
  const NodeId root = made.Element(kDocumentNode, "a");
  made.Attribute(root, "xmlns", "u");
  const NodeId child = made.Element(root, "a");
  made.Element(child, "a");
  made.Element(root, "a");
  EXPECT_EQ(WriteXml(made.Root()), "<a xmlns=\"u\"><a xmlns=\"\"><a/></a><a xmlns=\"\"/></a>");
}

TEST(WriteXml, SeesAContradictingDeclarationAlsoWhereTheNameWasInScopeBefore) {
  TestDocument made;
  const NodeId root = made.Element(kDocumentNode, "r");
  made.Element(root, "a");
  const NodeId contradicting = made.Element(root, "a");
  made.Attribute(contradicting, "xmlns", "u");
  made.Element(contradicting, "a");
  made.Element(root, "a");
  EXPECT_EQ(WriteXml(made.Root()), "<r><a/><a xmlns=\"u\"><a xmlns=\"\"/></a><a/></r>");
}

TEST(WriteXml, NeverDeclaresOnePrefixTwiceOnOneElement) {
  TestDocument made;
  const NodeId root = made.Element(kDocumentNode, "p:a", "u");
  made.Attribute(root, "p:b", "1", "v");
  made.Attribute(root, "q:c", "2", "v");
  made.Attribute(root, "q:d", "3", "w");
  made.Element(root, "p:a", "u");
  EXPECT_EQ(WriteXml(made.Root()),
            "<p:a xmlns:p=\"u\" xmlns:q=\"v\" p:b=\"1\" q:c=\"2\" q:d=\"3\"><p:a/></p:a>");
}

struct MadeNameCase {
  const char* name;
  const char* uri;
  const char* attribute;
  const char* attributeUri;
  const char* xml;
  const char* why;
};

constexpr MadeNameCase kMadeNameCases[] = {
    {"a", "", "b", "u", "<a b=\"\"/>", "an attribute without prefix cannot show its namespace"},
    {"a", "u", "b", "u", "<a xmlns=\"u\" b=\"\"/>", "nor when it is the default one"},
    {"p:a", "", "b", "", "<p:a b=\"\"/>", "a prefix without namespace cannot be declared"},
    {"a", "", "p:b", "", "<a p:b=\"\"/>", "an attribute's neither"},
    {"a", "", "p:b", "u", "<a xmlns:p=\"u\" p:b=\"\"/>", "an attribute's prefix is declared"},
    {"a", "u", "p:b", "v", "<a xmlns=\"u\" xmlns:p=\"v\" p:b=\"\"/>", "the element's own first"},
    {"p:a", "u", "p:b", "u", "<p:a xmlns:p=\"u\" p:b=\"\"/>", "one declaration serves both"},
    {"a", "", "xml:b", "http://www.w3.org/XML/1998/namespace", "<a xml:b=\"\"/>",
     "the prefix xml is always declared"},
    {"p:a", "<\"&\n>", "b", "", "<p:a xmlns:p=\"&lt;&quot;&amp;\r\n&gt;\" b=\"\"/>",
     "a declaration that is added is escaped"},
    {"name-of-more-than-16-bytes:a", "u", "b", "",
     "<name-of-more-than-16-bytes:a xmlns:name-of-more-than-16-bytes=\"u\" b=\"\"/>",
     "a long prefix"},
};

TEST(WriteXml, DeclaresWhatTheNamesOfAnElementNeed) {
  for (const MadeNameCase& row : kMadeNameCases) {
    SCOPED_TRACE(row.why);
    TestDocument made;
    const NodeId root = made.Element(kDocumentNode, row.name, row.uri);
    made.Attribute(root, row.attribute, "", row.attributeUri);
    EXPECT_EQ(WriteXml(made.Root()), row.xml);
  }
}

TEST(WriteXml, TreatsElementsAndAttributesOfOneNameApart) {
  TestDocument made;
  const NodeId root = made.Element(kDocumentNode, "r", "u");
  made.Attribute(root, "x", "1");
  made.Element(root, "x");
  made.Element(root, "r", "u");
  EXPECT_EQ(WriteXml(made.Root()), "<r xmlns=\"u\" x=\"1\"><x xmlns=\"\"/><r/></r>");
}

TEST(WriteXml, DeclaresANamespaceThatOnlyTheDocumentTypeDeclared) {
  const TestDocument document("<!DOCTYPE a [<!ATTLIST a xmlns CDATA 'u'>]><a><b/></a>");
  EXPECT_EQ(WriteXml(document.Root()), "<a xmlns=\"u\"><b/></a>");
}

// Whatever the edits, the text that is written binds every element and attribute with a prefix to
// the namespace that it has, as far as a declaration can say so.
TEST(WriteXml, WritesTextThatBindsEveryNameToItsNamespace) {
  std::mt19937 random(1);
  const std::vector<std::string_view> names = {"a", "b", "p:a", "p:b", "q:a", "q:b"};
  const std::vector<std::string_view> uris = {"u", "v", "w"};
  const auto pick = [&random](const auto& from) { return from[random() % from.size()]; };
  for (int round = 0; round < 300; ++round) {
    TestDocument made;
    std::vector<NodeId> elements = {made.Element(kDocumentNode, "root")};
    for (int i = 0; i < 30; ++i) {
      const std::string_view name = pick(names);
      const bool bare = name.size() == 1 && random() % 3 == 0;
      const NodeId element = made.Element(pick(elements), name, bare ? "" : pick(uris));
      elements.push_back(element);
      const std::string_view prefix = made.At(element).Prefix();
      const std::string_view other = prefix == "p" ? "q:c" : "p:c";
      if (random() % 2 == 0) made.Attribute(element, other, "1", pick(uris));
      if (random() % 4 == 0) made.Attribute(element, "xmlns:r", pick(uris));
    }
    const std::string xml = made.Xml();
    const TestDocument again(xml);
    Cursor wanted = made.Root();
    Cursor found = again.Root();
    while (wanted && found) {
      ASSERT_EQ(found.QualifiedName(), wanted.QualifiedName()) << xml;
      ASSERT_EQ(found.NamespaceUri(), wanted.NamespaceUri()) << xml;
      const Cursor attribute = wanted.FindAttribute(wanted.Prefix() == "p" ? "q:c" : "p:c");
      if (attribute) {
        ASSERT_EQ(found.FindAttribute(attribute.QualifiedName()).NamespaceUri(),
                  attribute.NamespaceUri())
            << xml;
      }
      wanted = wanted.NextInTree(made.Root());
      found = found.NextInTree(again.Root());
    }
    EXPECT_EQ(static_cast<bool>(wanted), static_cast<bool>(found));
    EXPECT_EQ(again.Xml(), xml);
  }
}

// Size and depth
// -----------------------------------------------------------------------------------

TEST(WriteXml, WritesAMillionLevelsWithoutTheStack) {
  constexpr std::size_t kLevels = 1'000'000;
  std::string text;
  for (std::size_t i = 0; i < kLevels; ++i) text += "<a>";
  text += "x";
  for (std::size_t i = 0; i < kLevels; ++i) text += "</a>";
  ParseOptions options;
  options.maxDepth = kLevels;
  const TestDocument document(text, options);
  EXPECT_TRUE(document.Xml() == text + "\r\n");
}

TEST(WriteXml, WritesAHundredThousandLevelsThatEachDeclareAPrefix) {
  constexpr std::size_t kLevels = 100'000;
  std::string text;
  for (std::size_t i = 0; i < kLevels; ++i) {
    text += "<a xmlns:p" + std::to_string(i % 5000) + "=\"u" + std::to_string(i) + "\">";
  }
  for (std::size_t i = 0; i < kLevels; ++i) text += "</a>";
  ParseOptions options;
  options.maxDepth = kLevels;
  const TestDocument document(text, options);
  EXPECT_TRUE(document.Xml() == text + "\r\n");
}

TEST(WriteXml, WritesAnElementWithTenThousandPrefixedAttributes) {
  constexpr int kAttributes = 10'000;
  std::string text = "<a";
  for (int i = 0; i < kAttributes; ++i) {
    const std::string n = std::to_string(i);
    text.append(" xmlns:p").append(n).append("=\"u").append(n);
    text.append("\" p").append(n).append(":x=\"1\"");
  }
  const TestDocument document(text + "/>");
  EXPECT_TRUE(document.Xml() == text + "/>\r\n");
}

TEST(WriteXml, WritesTextsLongerThanAnyPieceOfTheOutput) {
  const std::string plain(100'000, 'x');
  std::string escaped;
  std::string special;
  for (int i = 0; i < 20'000; ++i) {
    special += "a&b";
    escaped += "a&amp;b";
  }
  const std::string text = "<a b=\"" + plain + "\" c=\"" + escaped + "\">" + plain + "<!--" +
                           plain + "-->" + escaped + "<![CDATA[" + special + "]]></a>";
  EXPECT_TRUE(TestDocument(text).Xml() == text + "\r\n");
}

}  // namespace
}  // namespace kx::dom
