// The edits of the tree: where nodes may go, what is refused, and what the tree is afterwards.
#include "dom_test.h"
#include "platform/dom/attribute_map.h"
#include "platform/dom/node.h"
#include "platform/dom/node_list.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kx::dom {
namespace {

Raised BadKind(const std::string& type) {
  return Fail("This operation can not be performed with a Node of type " + type + ".");
}

// Every kind of node that there is, on a document.
struct Kinds {
  Document document = Parsed("<!DOCTYPE a [<!ENTITY e 'v'>]><a x='1'>&e;<b/></a>");
  Node Of(NodeType type) const {
    switch (type) {
      case NodeType::kElement:
        return document.CreateElement("n");
      case NodeType::kAttribute:
        return document.CreateAttribute("n");
      case NodeType::kText:
        return document.CreateTextNode("n");
      case NodeType::kCData:
        return document.CreateCDataSection("n");
      case NodeType::kEntityReference:
        return document.CreateEntityReference("e");
      case NodeType::kProcessingInstruction:
        return document.CreateProcessingInstruction("n", "d");
      case NodeType::kComment:
        return document.CreateComment("n");
      case NodeType::kDocument:
        return NewDomDocument().AsNode();
      case NodeType::kDocumentType:
        return document.Doctype();
      default:
        return document.CreateDocumentFragment();
    }
  }
};

constexpr NodeType kAllKinds[] = {
    NodeType::kElement,         NodeType::kAttribute,       NodeType::kText,
    NodeType::kCData,           NodeType::kEntityReference, NodeType::kProcessingInstruction,
    NodeType::kComment,         NodeType::kDocument,        NodeType::kDocumentType,
    NodeType::kDocumentFragment};

struct AllowedCase {
  NodeType parent;
  std::vector<NodeType> children;
};

TEST(AppendChild, TakesExactlyTheKindsThatMayStandThere) {
  const NodeType e = NodeType::kElement;
  const NodeType t = NodeType::kText;
  const NodeType c = NodeType::kCData;
  const NodeType r = NodeType::kEntityReference;
  const NodeType p = NodeType::kProcessingInstruction;
  const NodeType m = NodeType::kComment;
  const NodeType f = NodeType::kDocumentFragment;
  const AllowedCase rows[] = {
      {NodeType::kElement, {e, t, c, r, p, m, f}},
      {NodeType::kDocumentFragment, {e, t, c, r, p, m, f}},
      {NodeType::kDocument, {e, p, m, f}},
      {NodeType::kAttribute, {t, r, f}},
      {NodeType::kText, {}},
      {NodeType::kCData, {}},
      {NodeType::kComment, {}},
      {NodeType::kProcessingInstruction, {}},
      {NodeType::kEntityReference, {}},
      {NodeType::kDocumentType, {}},
  };
  for (const AllowedCase& row : rows) {
    for (const NodeType kind : kAllKinds) {
      const Kinds kinds;
      const Node parent = kinds.Of(row.parent);
      const Node child = kinds.Of(kind);
      const bool allowed =
          std::find(row.children.begin(), row.children.end(), kind) != row.children.end();
      const Raised raised = RaisedBy([&] { return parent.AppendChild(child); });
      const bool parentIsWrong = row.children.empty();
      const Raised expected =
          allowed ? Raised()
                  : BadKind(std::string(NodeTypeCapitals(parentIsWrong ? row.parent : kind)));
      EXPECT_EQ(raised, expected) << NodeTypeName(kind) << " in " << NodeTypeName(row.parent);
      if (allowed && kind != f) {
        EXPECT_EQ(parent.LastChild(), child);
      }
      if (!allowed) {
        EXPECT_NE(child.ParentNode(), parent);
      }
    }
  }
}

TEST(AppendChild, ReturnsTheNodeAndPutsItLast) {
  const Document document = Parsed("<a><b/></a>");
  const Node root = document.DocumentElement();
  const Node added = document.CreateElement("c");
  EXPECT_FALSE(added.ParentNode());
  EXPECT_EQ(added.OwnerDocument(), document);
  EXPECT_EQ(root.AppendChild(added), added);
  EXPECT_EQ(added.ParentNode(), root);
  EXPECT_EQ(XmlOf(document), "<a><b/><c/></a>");
}

TEST(AppendChild, MovesFromAnotherParentAndWithinItsOwn) {
  const Document document = Parsed("<a><b><c/>t</b><d/></a>");
  const Node root = document.DocumentElement();
  root.AppendChild(Named(document, "c"));
  EXPECT_EQ(XmlOf(document), "<a><b>t</b><d/><c/></a>");
  root.AppendChild(Named(document, "b"));
  EXPECT_EQ(XmlOf(document), "<a><d/><c/><b>t</b></a>");
  root.AppendChild(root.LastChild());
  EXPECT_EQ(XmlOf(document), "<a><d/><c/><b>t</b></a>");
}

TEST(AppendChild, PutsNodesBehindATextThatTheElementKeepsItself) {
  const Document document = Parsed("<a>t</a>");
  document.DocumentElement().AppendChild(document.CreateElement("b"));
  document.DocumentElement().AppendChild(document.CreateTextNode("u"));
  EXPECT_EQ(XmlOf(document), "<a>t<b/>u</a>");
}

TEST(AppendChild, TakesANodeOfAnotherDocument) {
  const Document target = Parsed("<a/>");
  const Document source = Parsed("<x xmlns='u' xmlns:p='v'><p:y p:z='1'>t<w/></p:y></x>");
  const Node moved = Named(source, "p:y");
  const Node inner = Named(source, "w");
  const Node attribute = moved.GetAttributeNode("p:z");
  EXPECT_EQ(target.DocumentElement().AppendChild(moved), moved);
  EXPECT_EQ(XmlOf(source), "<x xmlns=\"u\" xmlns:p=\"v\"></x>");
  EXPECT_EQ(moved.OwnerDocument(), target);
  EXPECT_EQ(inner.OwnerDocument(), target);
  EXPECT_EQ(attribute.OwnerDocument(), target);
  EXPECT_EQ(moved.NamespaceUri(), "v");
  EXPECT_EQ(inner.NamespaceUri(), "u");
  EXPECT_EQ(moved, target.DocumentElement().FirstChild());
  EXPECT_EQ(inner.ParentNode(), moved);
  EXPECT_EQ(attribute, moved.GetAttributeNode("p:z"));
  inner.SetText("changed");
  EXPECT_EQ(XmlOf(target), "<a><p:y xmlns:p=\"v\" p:z=\"1\">t<w xmlns=\"u\">changed</w></p:y></a>");
}

TEST(AppendChild, MovesTheChildrenOfAFragmentInOrder) {
  const Document document = Parsed("<a><z/></a>");
  const Node fragment = document.CreateDocumentFragment();
  fragment.AppendChild(document.CreateElement("b"));
  fragment.AppendChild(document.CreateTextNode("t"));
  fragment.AppendChild(document.CreateComment("c"));
  EXPECT_EQ(document.DocumentElement().AppendChild(fragment), fragment);
  EXPECT_FALSE(fragment.HasChildNodes());
  EXPECT_EQ(XmlOf(document), "<a><z/><b/>t<!--c--></a>");
  document.DocumentElement().AppendChild(fragment);
  EXPECT_EQ(XmlOf(document), "<a><z/><b/>t<!--c--></a>");
}

TEST(AppendChild, MovesAFragmentOfAnotherDocumentBehindAnInlineText) {
  const Document target = Parsed("<a>t</a>");
  const Document source = Parsed("<x/>");
  const Node fragment = source.CreateDocumentFragment();
  fragment.SetText("text of the fragment");
  target.DocumentElement().AppendChild(fragment);
  for (int i = 0; i < 3; ++i) fragment.AppendChild(source.CreateElement("e"));
  target.DocumentElement().AppendChild(fragment);
  EXPECT_EQ(XmlOf(target), "<a>ttext of the fragment<e/><e/><e/></a>");
  EXPECT_EQ(fragment.OwnerDocument(), source);
}

TEST(AppendChild, ChecksAllOfAFragmentBeforeAnyOfItMoves) {
  const Document document = Parsed("<a/>");
  const Node fragment = document.CreateDocumentFragment();
  fragment.AppendChild(document.CreateComment("c"));
  fragment.AppendChild(document.CreateTextNode("t"));
  EXPECT_EQ(RaisedBy([&] { return document.AsNode().AppendChild(fragment); }), BadKind("TEXT"));
  EXPECT_EQ(fragment.ChildNodes().Length(), 2);
  EXPECT_EQ(XmlOf(document), "<a/>");
}

struct RootCase {
  const char* why;
  const char* xml;
  std::function<void(const Document&)> edit;
  bool accepted;
  const char* after;
};

TEST(AppendChild, KeepsADocumentAtOneRoot) {
  const RootCase rows[] = {
      {"a second root", "<a/>",
       [](const Document& d) { d.AsNode().AppendChild(d.CreateElement("b")); }, false, "<a/>\r\n"},
      {"a first root", "", [](const Document& d) { d.AsNode().AppendChild(d.CreateElement("b")); },
       true, "<b/>\r\n"},
      {"the root itself", "<a/><!--c-->",
       [](const Document& d) { d.AsNode().AppendChild(d.DocumentElement()); }, true,
       "<!--c-->\r\n<a/>\r\n"},
      {"a comment", "<a/>", [](const Document& d) { d.AsNode().AppendChild(d.CreateComment("c")); },
       true, "<a/>\r\n<!--c-->\r\n"},
      {"a child of the root", "<a><b/></a>",
       [](const Document& d) { d.AsNode().AppendChild(Named(d, "b")); }, false, "<a><b/></a>\r\n"},
      {"a fragment with an element beside a root", "<a/>",
       [](const Document& d) {
         const Node fragment = d.CreateDocumentFragment();
         fragment.AppendChild(d.CreateElement("b"));
         d.AsNode().AppendChild(fragment);
       },
       false, "<a/>\r\n"},
      {"a fragment with two elements", "",
       [](const Document& d) {
         const Node fragment = d.CreateDocumentFragment();
         fragment.AppendChild(d.CreateElement("b"));
         fragment.AppendChild(d.CreateElement("c"));
         d.AsNode().AppendChild(fragment);
       },
       false, ""},
      {"an element in place of the root", "<a/><!--c-->",
       [](const Document& d) {
         d.AsNode().ReplaceChild(d.CreateElement("b"), d.DocumentElement());
       },
       true, "<b/>\r\n<!--c-->\r\n"},
      {"a child of the root in place of the root", "<a><b/></a>",
       [](const Document& d) { d.AsNode().ReplaceChild(Named(d, "b"), d.DocumentElement()); }, true,
       "<b/>\r\n"},
      {"an element in place of a comment", "<a/><!--c-->",
       [](const Document& d) {
         d.AsNode().ReplaceChild(d.CreateElement("b"), d.AsNode().LastChild());
       },
       false, "<a/>\r\n<!--c-->\r\n"},
  };
  for (const RootCase& row : rows) {
    SCOPED_TRACE(row.why);
    const Document document = *row.xml == '\0' ? NewDomDocument() : Parsed(row.xml);
    const Raised raised = RaisedBy([&] { return row.edit(document), 0; });
    EXPECT_EQ(raised, row.accepted
                          ? Raised()
                          : Fail("Only one top level element is allowed in an XML document."));
    EXPECT_EQ(document.Xml(), row.after);
  }
}

TEST(AppendChild, RefusesANodeOrItsAncestorUnderItself) {
  const Raised expected = Fail("Inserting a Node or its ancestor under itself is not allowed.");
  const Document document = Parsed("<a><b><c><d/></c></b></a>");
  const Node root = document.DocumentElement();
  const Node c = Named(document, "c");
  EXPECT_EQ(RaisedBy([&] { return c.AppendChild(root); }), expected);
  EXPECT_EQ(RaisedBy([&] { return c.AppendChild(Named(document, "b")); }), expected);
  EXPECT_EQ(RaisedBy([&] { return c.AppendChild(c); }), expected);
  EXPECT_EQ(RaisedBy([&] { return c.ReplaceChild(root, c.FirstChild()); }), expected);
  EXPECT_EQ(RaisedBy([&] { return c.InsertBefore(c, c.FirstChild()); }), expected);
  const Node fragment = document.CreateDocumentFragment();
  EXPECT_EQ(RaisedBy([&] { return fragment.AppendChild(fragment); }), expected);
  EXPECT_EQ(XmlOf(document), "<a><b><c><d/></c></b></a>");
}

TEST(AppendChild, RefusesNothing) {
  const Document document = Parsed("<a/>");
  EXPECT_EQ(RaisedBy([&] { return document.DocumentElement().AppendChild(Node()); }),
            BadArgument());
  EXPECT_EQ(RaisedBy([&] { return document.AsNode().AppendChild(Node()); }), BadArgument());
}

TEST(InsertBefore, PutsTheNodeInFrontOfTheReference) {
  const Document document = Parsed("<a><b/><c/></a>");
  const Node root = document.DocumentElement();
  const Node added = document.CreateElement("n");
  EXPECT_EQ(root.InsertBefore(added, root.FirstChild()), added);
  EXPECT_EQ(XmlOf(document), "<a><n/><b/><c/></a>");
  root.InsertBefore(added, root.LastChild());
  EXPECT_EQ(XmlOf(document), "<a><b/><n/><c/></a>");
  root.InsertBefore(added, Node());
  EXPECT_EQ(XmlOf(document), "<a><b/><c/><n/></a>");
  root.InsertBefore(added, added);
  EXPECT_EQ(XmlOf(document), "<a><b/><c/><n/></a>");
}

TEST(InsertBefore, WorksInFrontOfATextThatTheElementKeepsItself) {
  const Document document = Parsed("<a>t</a>");
  const Node root = document.DocumentElement();
  root.InsertBefore(document.CreateElement("b"), root.FirstChild());
  EXPECT_EQ(XmlOf(document), "<a><b/>t</a>");
}

TEST(InsertBefore, RefusesAReferenceThatIsNoChild) {
  const Raised expected =
      BadArgument("Insert position Node must be a Child of the Node to insert under.");
  const Document document = Parsed("<a x='1'><b><c/></b></a>");
  const Node root = document.DocumentElement();
  const Node added = document.CreateElement("n");
  EXPECT_EQ(RaisedBy([&] { return root.InsertBefore(added, Named(document, "c")); }), expected);
  EXPECT_EQ(RaisedBy([&] { return root.InsertBefore(added, root.GetAttributeNode("x")); }),
            expected);
  EXPECT_EQ(RaisedBy([&] { return root.InsertBefore(added, added); }), expected);
  EXPECT_EQ(RaisedBy([&] { return root.InsertBefore(added, Parsed("<a/>").DocumentElement()); }),
            expected);
  EXPECT_FALSE(added.ParentNode());
}

TEST(RemoveChild, ReturnsTheNodeDetached) {
  const Document document = Parsed("<a><b>t</b><c/></a>");
  const Node root = document.DocumentElement();
  const Node b = root.FirstChild();
  EXPECT_EQ(root.RemoveChild(b), b);
  EXPECT_FALSE(b.ParentNode());
  EXPECT_FALSE(b.NextSibling());
  EXPECT_EQ(b.Xml(), "<b>t</b>");
  EXPECT_EQ(b.OwnerDocument(), document);
  EXPECT_EQ(XmlOf(document), "<a><c/></a>");
}

TEST(RemoveChild, RefusesWhatIsNoDirectChild) {
  const Raised expected = BadArgument("The parameter Node is not a child of this Node.");
  const Document document = Parsed("<a x='1'><b><c/></b></a>");
  const Node root = document.DocumentElement();
  const Node b = root.FirstChild();
  EXPECT_EQ(RaisedBy([&] { return root.RemoveChild(Named(document, "c")); }), expected);
  EXPECT_EQ(RaisedBy([&] { return root.RemoveChild(Node()); }), expected);
  EXPECT_EQ(RaisedBy([&] { return root.RemoveChild(root); }), expected);
  EXPECT_EQ(RaisedBy([&] { return root.RemoveChild(root.GetAttributeNode("x")); }), expected);
  root.RemoveChild(b);
  EXPECT_EQ(RaisedBy([&] { return root.RemoveChild(b); }), expected) << "removed already";
}

TEST(RemoveChild, KeepsADocumentType) {
  const Document document = Parsed("<!DOCTYPE a><a/>");
  EXPECT_EQ(RaisedBy([&] { return document.AsNode().RemoveChild(document.Doctype()); }),
            BadKind("DOCUMENTTYPE"));
  EXPECT_EQ(RaisedBy([&] {
              return document.AsNode().ReplaceChild(document.CreateComment("c"),
                                                    document.Doctype());
            }),
            BadKind("DOCUMENTTYPE"));
  EXPECT_EQ(document.Xml(), "<!DOCTYPE a>\r\n<a/>\r\n");
}

TEST(RemoveChild, LeavesAnEmptyDocumentWithoutRoot) {
  const Document document = Parsed("<a/>");
  document.AsNode().RemoveChild(document.DocumentElement());
  EXPECT_FALSE(document.DocumentElement());
  EXPECT_EQ(document.Xml(), "");
}

TEST(ReplaceChild, PutsTheNewNodeInThePlaceOfTheOldOne) {
  const Document document = Parsed("<a><b/><c/><d/></a>");
  const Node root = document.DocumentElement();
  const Node c = Named(document, "c");
  EXPECT_EQ(root.ReplaceChild(document.CreateElement("n"), c), c);
  EXPECT_FALSE(c.ParentNode());
  EXPECT_EQ(XmlOf(document), "<a><b/><n/><d/></a>");
  root.ReplaceChild(Named(document, "d"), Named(document, "b"));
  EXPECT_EQ(XmlOf(document), "<a><d/><n/></a>");
  root.ReplaceChild(Named(document, "d"), Named(document, "n"));
  EXPECT_EQ(XmlOf(document), "<a><d/></a>");
}

TEST(ReplaceChild, OfANodeByItselfChangesNothing) {
  const Document document = Parsed("<!DOCTYPE a><a><b/><c/></a>");
  const Node b = Named(document, "b");
  EXPECT_EQ(document.DocumentElement().ReplaceChild(b, b), b);
  EXPECT_EQ(document.AsNode().ReplaceChild(document.Doctype(), document.Doctype()),
            document.Doctype());
  EXPECT_EQ(document.DocumentElement().Xml(), "<a><b/><c/></a>");
}

TEST(ReplaceChild, PutsAWholeFragmentInThePlace) {
  const Document document = Parsed("<a><b/><c/></a>");
  const Node fragment = document.CreateDocumentFragment();
  fragment.AppendChild(document.CreateElement("x"));
  fragment.AppendChild(document.CreateElement("y"));
  document.DocumentElement().ReplaceChild(fragment, Named(document, "b"));
  EXPECT_EQ(XmlOf(document), "<a><x/><y/><c/></a>");
}

TEST(ReplaceChild, TakesANodeOfAnotherDocument) {
  const Document document = Parsed("<a><b/></a>");
  const Node foreign = Parsed("<x><y>t</y></x>").DocumentElement();
  document.DocumentElement().ReplaceChild(foreign, Named(document, "b"));
  EXPECT_EQ(XmlOf(document), "<a><x><y>t</y></x></a>");
  EXPECT_EQ(foreign.OwnerDocument(), document);
}

TEST(ReplaceChild, RefusesNothingAndStrangers) {
  const Document document = Parsed("<a><b><c/></b></a>");
  const Node root = document.DocumentElement();
  const Node n = document.CreateElement("n");
  EXPECT_EQ(RaisedBy([&] { return root.ReplaceChild(Node(), root.FirstChild()); }), BadArgument());
  const Raised stranger = BadArgument("The parameter Node is not a child of this Node.");
  EXPECT_EQ(RaisedBy([&] { return root.ReplaceChild(n, Node()); }), stranger);
  EXPECT_EQ(RaisedBy([&] { return root.ReplaceChild(n, Named(document, "c")); }), stranger);
  EXPECT_EQ(RaisedBy([&] { return root.ReplaceChild(n, n); }), stranger);
  EXPECT_EQ(XmlOf(document), "<a><b><c/></b></a>");
}

struct CloneCase {
  const char* why;
  const char* xml;
  CloneDepth depth;
  const char* copy;
};
constexpr CloneCase kClones[] = {
    {"deep", "<a x=\"1\" xmlns:p=\"u\"><p:b>t<!--c--></p:b><c></c><d/></a>", CloneDepth::kDeep,
     "<a x=\"1\" xmlns:p=\"u\"><p:b>t<!--c--></p:b><c></c><d/></a>"},
    {"shallow keeps attributes only", "<a x=\"1\">t<b/></a>", CloneDepth::kShallow,
     "<a x=\"1\"></a>"},
    {"shallow drops an inline text", "<a x=\"1\">t</a>", CloneDepth::kShallow, "<a x=\"1\"></a>"},
    {"the short form is copied", "<a/>", CloneDepth::kShallow, "<a/>"},
    {"the full form is copied", "<a></a>", CloneDepth::kDeep, "<a></a>"},
};

TEST(CloneNode, CopiesWithoutParent) {
  for (const CloneCase& row : kClones) {
    SCOPED_TRACE(row.why);
    const Document document = Parsed(row.xml);
    const Node root = document.DocumentElement();
    const Node copy = root.CloneNode(row.depth);
    EXPECT_EQ(copy.Xml(), row.copy);
    EXPECT_FALSE(copy.ParentNode());
    EXPECT_NE(copy, root);
    EXPECT_EQ(copy.OwnerDocument(), document);
    EXPECT_EQ(XmlOf(document), row.xml);
    copy.SetText("changed");
    EXPECT_EQ(XmlOf(document), row.xml);
  }
}

TEST(CloneNode, KeepsNamespacesOfInnerNodes) {
  const Document document = Parsed("<a xmlns='u' xmlns:p='v'><b p:x='1'/></a>");
  const Node copy = Named(document, "b").CloneNode(CloneDepth::kDeep);
  EXPECT_EQ(copy.NamespaceUri(), "u");
  EXPECT_EQ(copy.GetAttributeNode("p:x").NamespaceUri(), "v");
  EXPECT_EQ(copy.Xml(), "<b xmlns=\"u\" xmlns:p=\"v\" p:x=\"1\"/>");
}

TEST(CloneNode, WorksForEveryKind) {
  const Kinds kinds;
  for (const NodeType kind : kAllKinds) {
    if (kind == NodeType::kDocument || kind == NodeType::kDocumentType) continue;
    const Node original = kinds.Of(kind);
    const Node copy = original.CloneNode(CloneDepth::kDeep);
    EXPECT_EQ(copy.Type(), kind);
    EXPECT_EQ(copy.NodeName(), original.NodeName());
    EXPECT_EQ(copy.NodeValue(), original.NodeValue());
    EXPECT_EQ(copy.Text(), original.Text());
    EXPECT_NE(copy, original);
  }
}

TEST(CloneNode, OfAnAttributeAlwaysHasItsValue) {
  const Document document = Parsed("<a b='1'/>");
  const Node copy =
      document.DocumentElement().GetAttributeNode("b").CloneNode(CloneDepth::kShallow);
  EXPECT_EQ(copy.Text(), "1");
  EXPECT_EQ(RaisedBy([&] { return document.DocumentElement().SetAttributeNode(copy); }), Raised());
}

struct NormalizeCase {
  const char* why;
  std::vector<const char*> texts;
  const char* after;
  int children;
};

TEST(Normalize, JoinsNeighbouringTextsAndDropsEmptyOnes) {
  const NormalizeCase rows[] = {
      {"neighbours", {"a", "b", "c"}, "abc", 1},
      {"empty ones", {"", "a", "", "b", ""}, "ab", 1},
      {"nothing but empty ones", {"", ""}, "", 0},
      {"a single one", {"a"}, "a", 1},
  };
  for (const NormalizeCase& row : rows) {
    SCOPED_TRACE(row.why);
    const Document document = Parsed("<a><b/></a>");
    const Node inner = Named(document, "b");
    for (const char* text : row.texts) inner.AppendChild(document.CreateTextNode(text));
    document.DocumentElement().Normalize();
    EXPECT_EQ(inner.Text(), row.after);
    EXPECT_EQ(inner.ChildNodes().Length(), row.children);
  }
}

TEST(Normalize, KeepsWhatStandsBetweenTexts) {
  const Document document = Parsed("<a>1<!--c-->2<![CDATA[3]]>4<b>5</b>6</a>");
  document.DocumentElement().InsertBefore(document.CreateTextNode("0"),
                                          document.DocumentElement().FirstChild());
  document.DocumentElement().Normalize();
  EXPECT_EQ(XmlOf(document), "<a>01<!--c-->2<![CDATA[3]]>4<b>5</b>6</a>");
  EXPECT_EQ(document.DocumentElement().ChildNodes().Length(), 7);
}

}  // namespace
}  // namespace kx::dom
