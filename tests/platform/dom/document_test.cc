#include "platform/dom/document.h"

#include "dom_test.h"
#include "platform/dom/attribute_map.h"
#include "platform/dom/node_list.h"

#include <gtest/gtest.h>
#include <map>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace kx::dom {
namespace {

// Settings ---------------------------------------------------------------------------------------

TEST(Document, HasThePlatformsDefaultsUnlessTheLibraryMadeIt) {
  const Document plain = Document::Create();
  EXPECT_TRUE(plain.Async());
  EXPECT_TRUE(plain.ValidateOnParse());
  EXPECT_TRUE(plain.ResolveExternals());
  EXPECT_FALSE(plain.PreserveWhiteSpace());
  EXPECT_EQ(plain.Settings().selectionLanguage, "XSLPattern");
  EXPECT_EQ(plain.Settings().maxElementDepth, 5000U);
  const Document own = NewDomDocument();
  EXPECT_FALSE(own.Async());
  EXPECT_TRUE(own.ValidateOnParse());
  EXPECT_TRUE(own.ResolveExternals());
  EXPECT_TRUE(own.PreserveWhiteSpace());
}

TEST(Document, SettingsSurviveEveryLoad) {
  const Document document = NewDomDocument();
  document.ValidateOnParse(false);
  document.ResolveExternals(false);
  document.EditSettings().maxElementDepth = 7;
  for (const char* xml : {"<a/>", "<a", ""}) {
    document.LoadXml(xml);
    EXPECT_FALSE(document.ValidateOnParse());
    EXPECT_FALSE(document.ResolveExternals());
    EXPECT_TRUE(document.PreserveWhiteSpace());
    EXPECT_EQ(document.Settings().maxElementDepth, 7U);
  }
}

struct SpaceCase {
  const char* why;
  const char* xml;
  const char* kept;
  const char* dropped;
};
constexpr SpaceCase kSpaces[] = {
    {"between elements", "<a> <b/> </a>", "<a> <b/> </a>", "<a><b/></a>"},
    {"outside the root never", "  <a/>  ", "<a/>", "<a/>"},
    {"the only text", "<a> </a>", "<a> </a>", "<a></a>"},
    {"beside other text it stays", "<a> x </a>", "<a> x </a>", "<a> x </a>"},
};

TEST(Document, KeepsWhiteSpaceBetweenElementsWhenItPreservesIt) {
  for (const SpaceCase& row : kSpaces) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(XmlOf(Parsed(row.xml)), row.kept);
    const Document document = Document::Create();
    ASSERT_TRUE(document.LoadXml(row.xml));
    EXPECT_EQ(XmlOf(document), row.dropped);
  }
}

TEST(Document, FoldsLineEndsEverywhere) {
  const Document document =
      Parsed("<a b='\n\r\n\r\n\r'>\n\r\n\r\n\r<!--\r\n\r--><![CDATA[\r\n\r]]><?p \r\nx\ry?></a>");
  const Node root = document.DocumentElement();
  EXPECT_EQ(root.GetAttribute("b"), "\n\n\n\n");
  EXPECT_EQ(root.FirstChild().NodeValue(), "\n\n\n\n");
  EXPECT_EQ(root.ChildNodes().Item(1).NodeValue(), "\n\n");
  EXPECT_EQ(root.ChildNodes().Item(2).NodeValue(), "\n\n");
  EXPECT_EQ(root.ChildNodes().Item(3).NodeValue(), "x\ny");
}

TEST(Document, KeepsWhiteSpaceInAttributeValues) {
  const Document document = Parsed("<a b='v\r\na\rl\nu\te'/>");
  EXPECT_EQ(document.DocumentElement().GetAttribute("b"), "v\na\nl\nu\te");
}

TEST(Document, HasTheXmlDeclarationAsItsFirstChild) {
  const Document document = Parsed("<?xml version='1.0' encoding='windows-1252'?><!--c--><a/>");
  const Node first = document.AsNode().FirstChild();
  EXPECT_EQ(first.TypeName(), "processinginstruction");
  EXPECT_EQ(first.NodeName(), "xml");
  EXPECT_EQ(first.Text(), "version='1.0' encoding='windows-1252'");
  EXPECT_EQ(document.Xml(), "<?xml version=\"1.0\"?>\r\n<!--c-->\r\n<a/>\r\n");
}

// Loading ----------------------------------------------------------------------------------------

void ExpectEmpty(const Document& document) {
  EXPECT_FALSE(document.DocumentElement());
  EXPECT_FALSE(document.AsNode().HasChildNodes());
  EXPECT_EQ(document.AsNode().ChildNodes().Length(), 0);
  EXPECT_EQ(document.Xml(), "");
  EXPECT_EQ(document.Url(), std::nullopt);
}

TEST(Document, IsEmptyWhenNewAndAfterAFailedLoad) {
  const Document document = NewDomDocument();
  ExpectEmpty(document);
  EXPECT_EQ(document.LastError().code, 0);
  for (const char* xml : {"<a><b></a>", "", " ", "text", "<a/><b/>"}) {
    SCOPED_TRACE(xml);
    ASSERT_TRUE(document.LoadXml("<old/>"));
    EXPECT_FALSE(document.LoadXml(xml));
    EXPECT_NE(document.LastError().code, 0);
    EXPECT_EQ(document.LastError().url, "");
    ExpectEmpty(document);
  }
  EXPECT_FALSE(document.LoadXml(std::string_view()));
  ExpectEmpty(document);
  EXPECT_TRUE(document.LoadXml("<a/>"));
  EXPECT_EQ(document.LastError().code, 0);
  EXPECT_EQ(document.LastError().reason, "");
}

TEST(Document, LoadXmlIgnoresTheDeclaredEncoding) {
  const Document document = NewDomDocument();
  EXPECT_TRUE(document.LoadXml("<?xml version='1.0' encoding='windows-1252'?><a>\xC3\xA4</a>"));
  EXPECT_EQ(document.DocumentElement().Text(), "\xC3\xA4");
  EXPECT_TRUE(document.LoadXml("<?xml version='1.0' encoding='UTF-16'?><a/>"));
  EXPECT_TRUE(document.LoadXml("\xEF\xBB\xBF<a/>"));
  for (const char* space : {" ", "\n", "\r", "\r\n", "\t"}) {
    EXPECT_FALSE(document.LoadXml(std::string(space) + "<?xml version='1.0'?><a/>"));
    EXPECT_TRUE(document.LoadXml(std::string(space) + "<a/>"));
  }
}

TEST(Document, LoadBytesDecodesByTheDeclaredEncoding) {
  const Document document = NewDomDocument();
  EXPECT_TRUE(document.LoadBytes("<?xml version='1.0' encoding='windows-1252'?><a>\xE4</a>"));
  EXPECT_EQ(document.DocumentElement().Text(), "\xC3\xA4");
  EXPECT_TRUE(document.LoadBytes("<a>\xC3\xA4</a>"));
  EXPECT_EQ(document.DocumentElement().Text(), "\xC3\xA4");
  EXPECT_FALSE(document.LoadBytes("<a>\xE4</a>"));
  EXPECT_FALSE(document.LoadBytes("<?xml version='1.0' encoding='windows-936'?><a/>"));
  EXPECT_EQ(document.LastError().code, static_cast<std::int32_t>(0xC00CE56E));
}

class MemoryReader final : public ResourceReader {
 public:
  [[nodiscard]] Resource Read(std::string_view location) const override {
    const auto found = files.find(location);
    if (found != files.end())
      return {ParseCode::kNone, found->second, "file:///full/" + found->first};
    return {location == "secret" ? ParseCode::kAccessDenied : ParseCode::kObjectNotFound, {}, {}};
  }
  std::map<std::string, std::string, std::less<>> files;
};

TEST(Document, LoadReadsThroughItsReader) {
  MemoryReader reader;
  reader.files["a.xml"] = "<?xml version='1.0' encoding='iso-8859-1'?><a>\xE4</a>";
  reader.files["bad.xml"] = "<a>\n  <b></a>";
  const Document document = NewDomDocument();
  document.EditSettings().reader = &reader;
  ASSERT_TRUE(document.Load("a.xml"));
  EXPECT_EQ(document.Url(), "file:///full/a.xml");
  EXPECT_EQ(document.DocumentElement().Text(), "\xC3\xA4");
  EXPECT_EQ(document.LastError().url, "");

  EXPECT_FALSE(document.Load("bad.xml"));
  EXPECT_EQ(document.LastError().url, "bad.xml");
  EXPECT_EQ(document.LastError().line, 2);
  ExpectEmpty(document);

  ASSERT_TRUE(document.Load("a.xml"));
  EXPECT_FALSE(document.Load("missing.xml"));
  EXPECT_EQ(document.LastError().code, static_cast<std::int32_t>(0x800C0006));
  EXPECT_EQ(document.LastError().reason, "The system cannot locate the object specified.\r\n");
  EXPECT_EQ(document.LastError().url, "missing.xml");
  EXPECT_EQ(document.LastError().line, 0);
  EXPECT_EQ(document.LastError().linePos, 0);
  EXPECT_EQ(document.LastError().srcText, "");
  ExpectEmpty(document);
  EXPECT_FALSE(document.Load("secret"));
  EXPECT_EQ(document.LastError().reason, "Access is denied.\r\n");

  ASSERT_TRUE(document.Load("a.xml"));
  ASSERT_TRUE(document.LoadXml("<b/>"));
  EXPECT_EQ(document.Url(), std::nullopt);
  EXPECT_EQ(RaisedBy([&] { return document.Load(std::string_view()); }), BadArgument());
}

TEST(Document, WithoutReaderEveryLocationIsMissing) {
  const Document document = NewDomDocument();
  EXPECT_FALSE(document.Load("a.xml"));
  EXPECT_EQ(document.LastError().code, static_cast<std::int32_t>(0x800C0006));
}

TEST(Document, LoadOfAnotherDocumentTakesItsText) {
  const Document source = Parsed("<a> <b/> </a>");
  const Document document = Document::Create();
  EXPECT_TRUE(document.Load(source));
  EXPECT_EQ(XmlOf(document), "<a><b/></a>");
  EXPECT_EQ(XmlOf(source), "<a> <b/> </a>");
  EXPECT_EQ(RaisedBy([&] { return document.Load(Document()); }), BadArgument());
  EXPECT_TRUE(source.Load(source));
  EXPECT_EQ(XmlOf(source), "<a> <b/> </a>");
}

TEST(Document, NodesOfTheFormerContentLiveOn) {
  const Document document = Parsed("<a><b c='1'>t</b></a>");
  const Node top = document.AsNode();
  const Node root = document.DocumentElement();
  const Node b = root.FirstChild();
  const Node attribute = b.GetAttributeNode("c");
  ASSERT_TRUE(document.LoadXml("<new/>"));
  EXPECT_EQ(root.Xml(), "<a><b c=\"1\">t</b></a>");
  EXPECT_EQ(attribute.Text(), "1");
  EXPECT_EQ(b.OwnerDocument(), document);
  EXPECT_EQ(b.OwnerDocument().DocumentElement().NodeName(), "new");
  EXPECT_EQ(b.ParentNode(), root);
  EXPECT_FALSE(root.ParentNode()) << "it is not in the document any more";
  EXPECT_EQ(top, document.AsNode());
  EXPECT_EQ(top.FirstChild().NodeName(), "new");
  EXPECT_FALSE(document.LoadXml("<"));
  EXPECT_FALSE(top.HasChildNodes());
  b.SetText("changed");
  EXPECT_EQ(root.Xml(), "<a><b c=\"1\">changed</b></a>");
}

TEST(Document, NodesOfTheFormerContentMayComeBack) {
  const Document document = Parsed("<a><b>t</b></a>");
  const Node b = Named(document, "b");
  const Node created = document.CreateElement("c");
  ASSERT_TRUE(document.LoadXml("<new/>"));
  document.DocumentElement().AppendChild(b);
  document.DocumentElement().AppendChild(created);
  EXPECT_EQ(XmlOf(document), "<new><b>t</b><c/></new>");
  EXPECT_EQ(b, document.DocumentElement().FirstChild());
}

// Content ----------------------------------------------------------------------------------------

TEST(Document, DocumentElementIsReplacedInPlaceOrAppended) {
  const Document document = Parsed("<!--1--><a/><!--2-->");
  document.DocumentElement(document.CreateElement("b"));
  EXPECT_EQ(document.Xml(), "<!--1-->\r\n<b/>\r\n<!--2-->\r\n");
  const Document empty = NewDomDocument();
  empty.DocumentElement(empty.CreateElement("c"));
  EXPECT_EQ(empty.Xml(), "<c/>\r\n");
  EXPECT_EQ(RaisedBy([&] { return empty.DocumentElement(Node()), 0; }), BadArgument());
  EXPECT_EQ(RaisedBy([&] { return empty.DocumentElement(empty.CreateComment("x")), 0; }),
            Fail("This operation can not be performed with a Node of type COMMENT."));
  empty.DocumentElement(document.DocumentElement());
  EXPECT_EQ(XmlOf(empty), "<b/>");
  EXPECT_FALSE(document.DocumentElement());
}

TEST(Document, TellsWhatItsDocumentTypeDeclares) {
  const Document document = Parsed(
      "<!DOCTYPE a [<!ENTITY e 'v'><!NOTATION n SYSTEM 's'><!ENTITY u SYSTEM 'x' NDATA n>]><a/>");
  EXPECT_EQ(document.Doctype().NodeName(), "a");
  ASSERT_NE(document.Declarations(), nullptr);
  EXPECT_EQ(document.Declarations()->name, "a");
  ASSERT_EQ(document.Declarations()->entityOrder.size(), 2U);
  EXPECT_EQ(document.Declarations()->entities.at("e").replacement, "v");
  EXPECT_EQ(document.Declarations()->entities.at("u").notation, "n");
  ASSERT_EQ(document.Declarations()->notations.size(), 1U);
  EXPECT_EQ(document.Declarations()->notations[0].systemId, "s");
  EXPECT_FALSE(Parsed("<a/>").Doctype());
  EXPECT_EQ(Parsed("<a/>").Declarations(), nullptr);
}

TEST(Document, OfNothingRaisesObjectNotSet) {
  const Document nothing;
  EXPECT_FALSE(nothing);
  EXPECT_EQ(RaisedBy([&] { return nothing.Xml(); }), ObjectNotSet());
  EXPECT_EQ(RaisedBy([&] { return nothing.LoadXml("<a/>"); }), ObjectNotSet());
  EXPECT_EQ(RaisedBy([&] { return nothing.CreateElement("a"); }), ObjectNotSet());
}

// Copies -----------------------------------------------------------------------------------------

TEST(Document, CloneIsANewDocumentWithTheSameSettings) {
  const Document document =
      Parsed("<?xml version=\"1.0\"?><!DOCTYPE a [<!ENTITY e 'v'>]><a b=\"1\">x&e;<c></c></a>");
  document.ValidateOnParse(false);
  const Node held = Named(document, "c");
  const Document copy = document.Clone(CloneDepth::kDeep);
  EXPECT_NE(copy, document);
  EXPECT_EQ(copy.Xml(), document.Xml());
  EXPECT_FALSE(copy.ValidateOnParse());
  EXPECT_TRUE(copy.PreserveWhiteSpace());
  EXPECT_NE(copy.DocumentElement(), document.DocumentElement());
  EXPECT_EQ(copy.DocumentElement().OwnerDocument(), copy);
  EXPECT_NE(copy.Declarations(), nullptr);
  held.SetText("changed");
  copy.DocumentElement().SetAttribute("b", "2");
  EXPECT_EQ(document.DocumentElement().Xml(), "<a b=\"1\">x&e;<c>changed</c></a>");
  EXPECT_EQ(copy.DocumentElement().Xml(), "<a b=\"2\">x&e;<c></c></a>");
}

TEST(Document, ShallowCloneIsEmpty) {
  const Document document = Parsed("<!DOCTYPE a><a/>");
  const Document copy = document.Clone(CloneDepth::kShallow);
  ExpectEmpty(copy);
  EXPECT_TRUE(copy.PreserveWhiteSpace());
  const Node node = document.AsNode().CloneNode(CloneDepth::kDeep);
  EXPECT_EQ(node.TypeName(), "document");
  EXPECT_EQ(node.Xml(), document.Xml());
  EXPECT_NE(node, document.AsNode());
}

TEST(Document, CloneDoesNotKeepWhatHandlesOfTheOriginalKept) {
  const Document document = Parsed("<a><b><c/></b></a>");
  const Node b = Named(document, "b");
  document.DocumentElement().RemoveChild(b);
  const Document other = Parsed("<x/>");
  const Node c = b.FirstChild();
  other.DocumentElement().AppendChild(c);
  const Document copy = document.Clone(CloneDepth::kDeep);
  copy.Data().Collect();
  EXPECT_EQ(copy.Data().Counters().nodeRecords, 2U) << "the document and <a>";
  EXPECT_EQ(XmlOf(copy), "<a></a>");
  EXPECT_EQ(XmlOf(other), "<x><c/></x>");
}

TEST(Document, ImportNodeCopiesFromAnyDocument) {
  const Document source = Parsed("<a xmlns='u'><b c='1'>t<d/></b></a>");
  const Document target = Parsed("<x/>");
  const Node deep = target.ImportNode(Named(source, "b"), CloneDepth::kDeep);
  EXPECT_EQ(deep.OwnerDocument(), target);
  EXPECT_FALSE(deep.ParentNode());
  EXPECT_EQ(deep.Xml(), "<b xmlns=\"u\" c=\"1\">t<d/></b>");
  EXPECT_EQ(target.ImportNode(Named(source, "b"), CloneDepth::kShallow).Xml(),
            "<b xmlns=\"u\" c=\"1\"></b>");
  EXPECT_EQ(XmlOf(source), "<a xmlns=\"u\"><b c=\"1\">t<d/></b></a>");
  EXPECT_EQ(RaisedBy([&] { return target.ImportNode(Node(), CloneDepth::kDeep); }), BadArgument());
  EXPECT_EQ(RaisedBy([&] { return target.ImportNode(source.AsNode(), CloneDepth::kDeep); }),
            Fail("This operation can not be performed with a Node of type DOCUMENT."));
}

// Frozen documents -------------------------------------------------------------------------------

TEST(Document, FrozenRefusesEveryChange) {
  const Document document = Parsed("<a b=\"1\"><c>t</c><d/></a>");
  const Node loose = document.CreateElement("x");
  document.Freeze();
  const Raised denied = Fail("Access denied.");
  const Node root = document.DocumentElement();
  const Document other = Parsed("<y/>");
  EXPECT_TRUE(document.Frozen());
  EXPECT_EQ(RaisedBy([&] { return root.SetText("x"), 0; }), denied);
  EXPECT_EQ(RaisedBy([&] { return root.FirstChild().FirstChild().SetNodeValue("x"), 0; }), denied);
  EXPECT_EQ(RaisedBy([&] { return root.AppendChild(loose); }), denied);
  EXPECT_EQ(RaisedBy([&] { return root.RemoveChild(root.FirstChild()); }), denied);
  EXPECT_EQ(RaisedBy([&] { return root.ReplaceChild(loose, root.FirstChild()); }), denied);
  EXPECT_EQ(RaisedBy([&] { return root.CloneNode(CloneDepth::kDeep); }), denied);
  EXPECT_EQ(RaisedBy([&] { return root.Normalize(), 0; }), denied);
  EXPECT_EQ(RaisedBy([&] { return root.SetAttribute("b", "2"), 0; }), denied);
  EXPECT_EQ(RaisedBy([&] { return root.RemoveAttribute("b"); }), denied);
  EXPECT_EQ(RaisedBy([&] { return root.Attributes().RemoveNamedItem("b"); }), denied);
  EXPECT_EQ(RaisedBy([&] { return root.RemoveAttributeNode(root.GetAttributeNode("b")); }), denied);
  EXPECT_EQ(RaisedBy([&] { return root.FirstChild().FirstChild().AppendData("x"), 0; }), denied);
  EXPECT_EQ(RaisedBy([&] { return root.FirstChild().FirstChild().SplitText(0); }), denied);
  EXPECT_EQ(RaisedBy([&] { return other.DocumentElement().AppendChild(root); }), denied);
  EXPECT_EQ(RaisedBy([&] { return document.CreateElement("z"); }), denied);
  EXPECT_EQ(RaisedBy([&] { return document.LoadXml("<z/>"); }), denied);
  EXPECT_EQ(RaisedBy([&] { return document.PreserveWhiteSpace(false), 0; }), denied);
  EXPECT_EQ(RaisedBy([&] { return document.DocumentElement(loose), 0; }), denied);
  EXPECT_EQ(XmlOf(document), "<a b=\"1\"><c>t</c><d/></a>");
}

TEST(Document, FrozenCanBeReadAndCopied) {
  const Document document = Parsed("<a b='1'><c>t</c><d/></a>");
  document.Freeze();
  const Node root = document.DocumentElement();
  const Node text = root.FirstChild().FirstChild();
  EXPECT_EQ(text.NodeValue(), "t");
  EXPECT_EQ(text.TypeName(), "text");
  EXPECT_EQ(text.ParentNode().NodeName(), "c");
  EXPECT_EQ(text, root.FirstChild().LastChild());
  EXPECT_EQ(root.GetAttributeNode("b").FirstChild().NodeValue(), "1");
  EXPECT_EQ(root.FirstChild().ChildNodes().Item(0), text);
  EXPECT_EQ(text.Xml(), "t");
  const Document copy = document.Clone(CloneDepth::kDeep);
  EXPECT_FALSE(copy.Frozen());
  copy.DocumentElement().SetAttribute("b", "2");
  EXPECT_EQ(XmlOf(copy), "<a b=\"2\"><c>t</c><d/></a>");
  EXPECT_EQ(copy.ImportNode(text, CloneDepth::kDeep).NodeValue(), "t");
  EXPECT_EQ(copy.ImportNode(root, CloneDepth::kDeep).Xml(), "<a b=\"1\"><c>t</c><d/></a>");
}

TEST(Document, FrozenIsReadByManyThreads) {
  Document document = Parsed("<a><b c='1'>t</b><b c='2'>u</b></a>");
  document.Freeze();
  std::vector<std::thread> threads;
  threads.reserve(4);
  std::vector<int> counts(4, 0);
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([document, thread, &counts] {
      for (int round = 0; round < 2000; ++round) {
        Document own;
        own = document;  // each round makes and drops handles
        for (Node at = own.DocumentElement().FirstChild(); at; at = at.NextSibling()) {
          const Node text = at.FirstChild();
          counts[static_cast<std::size_t>(thread)] +=
              text.Text().size() + at.GetAttribute("c")->size() == 2 &&
                      text.ParentNode().OwnerDocument() == own
                  ? 1
                  : 0;
        }
      }
    });
  }
  document = Document();  // the threads keep it
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(counts, std::vector<int>(4, 4000));
}

}  // namespace
}  // namespace kx::dom
