// The storage below nodes: links, texts, copies, and what is reused. The rules of editing are
// tested with the nodes that keep them.
#include "platform/dom/document_data.h"

#include "platform/dom/cursor.h"
#include "platform/dom/parser.h"
#include "platform/dom/writer.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace kx::dom {
namespace {

constexpr NodeId kDocument = kDocumentNode;

void Load(DocumentData& document, std::string_view text) {
  ParseError error;
  ASSERT_TRUE(ParseText(document, text, {}, error)) << error.reason;
}

std::string XmlOf(const DocumentData& document, NodeId id) {
  return WriteXml(Cursor(&document, id));
}

NodeId NewElement(DocumentData& document, std::string_view name) {
  return document.NewNode(NodeType::kElement, document.Names().InternName(name, kNoUri));
}

NodeId ChildAt(const DocumentData& document, NodeId parent, int index) {
  Cursor at = Cursor(&document, parent).FirstChild();
  while (index-- > 0) at = at.Next();
  return at.Id();
}

// The children's names from the first on, and from the last back, which must be the reverse.
std::string ChildNames(const DocumentData& document, NodeId parent) {
  std::string forward;
  std::string backward;
  for (Cursor at = Cursor(&document, parent).FirstChild(); at; at = at.Next()) {
    forward += at.QualifiedName();
  }
  for (Cursor at = Cursor(&document, parent).LastChild(); at; at = at.Previous()) {
    backward.insert(0, at.QualifiedName());
  }
  EXPECT_EQ(forward, backward);
  return forward;
}

std::string AttributeNames(const DocumentData& document, NodeId element) {
  std::string names;
  for (Cursor at = Cursor(&document, element).FirstAttribute(); at; at = at.Next()) {
    EXPECT_EQ(at.Parent().Id(), element);
    names += at.QualifiedName();
  }
  return names;
}

// Links ------------------------------------------------------------------------------------------

TEST(DocumentData, ANewOneHasNothingButItsDocumentNode) {
  const DocumentData document(nullptr);
  EXPECT_EQ(document.Record(kDocument).type, NodeType::kDocument);
  EXPECT_EQ(document.DocumentElement(), kNoNode);
  EXPECT_FALSE(Cursor(&document, kDocument).FirstChild());
  EXPECT_EQ(document.Counters().nodeRecords, 1U);
}

struct InsertCase {
  const char* name;
  int before;  // the child's index; -1: at the end
  const char* children;
};

TEST(DocumentData, PutsChildrenWhereTheyAreTold) {
  DocumentData document(nullptr);
  const NodeId root = NewElement(document, "r");
  constexpr InsertCase kSteps[] = {
      {"b", -1, "b"}, {"d", -1, "bd"}, {"a", 0, "abd"}, {"c", 2, "abcd"}, {"e", -1, "abcde"}};
  for (const InsertCase& step : kSteps) {
    const NodeId before = step.before < 0 ? kNoNode : ChildAt(document, root, step.before);
    document.InsertChild(root, NewElement(document, step.name), before);
    EXPECT_EQ(ChildNames(document, root), step.children);
  }
}

struct RemoveCase {
  int index;
  const char* children;
};

TEST(DocumentData, TakesChildrenOutFromAnyPlace) {
  constexpr RemoveCase kCases[] = {{0, "bc"}, {1, "ac"}, {2, "ab"}};
  for (const RemoveCase& row : kCases) {
    DocumentData document(nullptr);
    Load(document, "<r><a/><b/><c/></r>");
    const NodeId root = document.DocumentElement();
    const NodeId child = ChildAt(document, root, row.index);
    document.RemoveChild(child);
    EXPECT_EQ(ChildNames(document, root), row.children);
    EXPECT_EQ(document.Record(child).parent, kNoNode);
    EXPECT_EQ(document.Record(child).next, kNoNode);
    EXPECT_EQ(document.Record(child).prev, kNoNode);
    document.InsertChild(root, child, kNoNode);
    EXPECT_EQ(ChildNames(document, root).size(), 3U);
  }
}

TEST(DocumentData, PutsAttributesInOrderAndTakesThemOut) {
  for (const char* text : {"<r a='' b='' c=''/>", "<r/>"}) {
    DocumentData document(nullptr);
    Load(document, text);
    const NodeId root = document.DocumentElement();
    for (const char* name : {"x", "y"}) {
      const NodeId attribute =
          document.NewNode(NodeType::kAttribute, document.Names().InternName(name, kNoUri));
      document.AppendAttribute(root, attribute);
    }
    const std::string all = AttributeNames(document, root);
    EXPECT_TRUE(all.ends_with("xy")) << all;
    for (std::size_t i = 0; i < all.size(); ++i) {
      const NodeId first = document.Record(root).firstAttribute;
      document.RemoveAttribute(first);
      EXPECT_EQ(AttributeNames(document, root), all.substr(i + 1));
      EXPECT_EQ(document.Record(first).parent, kNoNode);
    }
  }
}

TEST(DocumentData, TakesTheMiddleAndTheLastAttributeOut) {
  DocumentData document(nullptr);
  Load(document, "<r a='' b='' c=''/>");
  const NodeId root = document.DocumentElement();
  const Cursor first = Cursor(&document, root).FirstAttribute();
  document.RemoveAttribute(first.Next().Id());
  EXPECT_EQ(AttributeNames(document, root), "ac");
  document.RemoveAttribute(first.Next().Id());
  EXPECT_EQ(AttributeNames(document, root), "a");
  const NodeId added = document.NewNode(NodeType::kAttribute, document.Names().InternName("d", 0));
  document.InsertAttribute(root, added, first.Id());
  EXPECT_EQ(AttributeNames(document, root), "da");
}

// Texts ------------------------------------------------------------------------------------------

TEST(DocumentData, AnElementKeepsItsOnlyTextInItself) {
  DocumentData document(nullptr);
  Load(document, "<r>text</r>");
  const NodeId root = document.DocumentElement();
  const std::size_t records = document.Counters().nodeRecords;
  const Cursor text = Cursor(&document, root).FirstChild();
  EXPECT_TRUE(IsInlineTextId(text.Id()));
  EXPECT_EQ(text.Type(), NodeType::kText);
  EXPECT_EQ(text.OwnText(), "text");
  EXPECT_EQ(text.Parent().Id(), root);
  const NodeId own = document.MaterializeInlineText(root);
  EXPECT_EQ(document.Counters().nodeRecords, records + 1);
  EXPECT_EQ(document.OwnText(own), "text");
  EXPECT_EQ(ChildAt(document, root, 0), own);
  EXPECT_EQ(XmlOf(document, root), "<r>text</r>");
}

TEST(DocumentData, AChildBesideAnInlineTextGivesTheTextItsOwnRecord) {
  DocumentData document(nullptr);
  Load(document, "<r>text</r>");
  const NodeId root = document.DocumentElement();
  document.InsertChild(root, NewElement(document, "b"), InlineTextOf(root));
  document.InsertChild(root, NewElement(document, "c"), kNoNode);
  EXPECT_EQ(XmlOf(document, root), "<r><b/>text<c/></r>");
}

TEST(DocumentData, SetsTextsThatMayLieInTheDocument) {
  DocumentData document(nullptr);
  Load(document, "<r a='value'>some text</r>");
  const NodeId root = document.DocumentElement();
  const NodeId attribute = document.Record(root).firstAttribute;
  document.SetOwnText(root, document.OwnText(root).substr(5));
  EXPECT_EQ(XmlOf(document, root), "<r a=\"value\">text</r>");
  document.SetOwnText(root, document.OwnText(root).substr(1, 2));
  EXPECT_EQ(XmlOf(document, root), "<r a=\"value\">ex</r>");
  document.SetOwnText(attribute, document.OwnText(root));
  EXPECT_EQ(XmlOf(document, root), "<r a=\"ex\">ex</r>");
  document.SetOwnText(root, "");
  EXPECT_FALSE(Cursor(&document, root).FirstChild()) << "no text child for the empty text";
  EXPECT_EQ(XmlOf(document, root), "<r a=\"ex\"></r>");
}

TEST(DocumentData, RemovesAllChildrenAtOnce) {
  for (const char* text : {"<r a='1'>text</r>", "<r a='1'><b/>text<c/></r>", "<r a='1'/>"}) {
    DocumentData document(nullptr);
    Load(document, text);
    const NodeId root = document.DocumentElement();
    document.RemoveChildren(root);
    EXPECT_FALSE(Cursor(&document, root).FirstChild()) << text;
    EXPECT_EQ(AttributeNames(document, root), "a");
  }
}

// Order and versions -----------------------------------------------------------------------------

TEST(DocumentData, KnowsWhetherIdentifiersFollowTheDocument) {
  DocumentData document(nullptr);
  Load(document, "<r><a/><b/></r>");
  EXPECT_TRUE(document.IdsFollowDocumentOrder());
  const NodeId root = document.DocumentElement();
  document.SetOwnText(ChildAt(document, root, 0), "text");
  EXPECT_TRUE(document.IdsFollowDocumentOrder()) << "a text moves nothing";
  const NodeId moved = ChildAt(document, root, 0);
  document.RemoveChild(moved);
  document.InsertChild(root, moved, kNoNode);
  EXPECT_FALSE(document.IdsFollowDocumentOrder());
}

TEST(DocumentData, EveryStructuralEditChangesTheVersion) {
  DocumentData document(nullptr);
  Load(document, "<r a='1'><b/></r>");
  const NodeId root = document.DocumentElement();
  std::uint64_t version = document.EditVersion();
  const auto expectChanged = [&](const char* what) {
    EXPECT_NE(document.EditVersion(), version) << what;
    version = document.EditVersion();
  };
  const NodeId child = ChildAt(document, root, 0);
  document.RemoveChild(child);
  expectChanged("a removed child");
  document.InsertChild(root, child, kNoNode);
  expectChanged("an inserted child");
  const NodeId attribute = document.Record(root).firstAttribute;
  document.RemoveAttribute(attribute);
  expectChanged("a removed attribute");
  document.AppendAttribute(root, attribute);
  expectChanged("an appended attribute");
  document.RemoveChildren(root);
  expectChanged("removed children");
  document.SetOwnText(root, "text");
  expectChanged("a text where none was");
}

// Copies -----------------------------------------------------------------------------------------

constexpr const char* kCopied[] = {
    "<r/>",
    "<r></r>",
    "<r>text</r>",
    "<r a=\"1\" b=\"x y\">text<b c=\"2\"><d/></b><!--e--><?f g?><![CDATA[h]]></r>",
    "<p:r xmlns:p=\"u\" p:a=\"1\"><b xmlns=\"v\"/></p:r>",
};

TEST(DocumentData, CopiesASubtreeWithinADocumentAndToAnother) {
  for (const char* text : kCopied) {
    DocumentData document(nullptr);
    Load(document, text);
    const NodeId root = document.DocumentElement();
    const NodeId copy = document.CopySubtree(document, root, true);
    EXPECT_EQ(document.Record(copy).parent, kNoNode);
    EXPECT_EQ(XmlOf(document, copy), text);
    DocumentData other(nullptr);
    Load(other, "<x y='z'>w</x>");
    const NodeId imported = other.CopySubtree(document, root, true);
    EXPECT_EQ(XmlOf(other, imported), text);
    EXPECT_EQ(XmlOf(other, other.DocumentElement()), "<x y=\"z\">w</x>");
    EXPECT_EQ(Cursor(&other, imported).NamespaceUri(), Cursor(&document, root).NamespaceUri());
  }
}

TEST(DocumentData, AShallowCopyHasTheAttributesAlone) {
  DocumentData document(nullptr);
  Load(document, "<r a=\"1\" b=\"2\">text<c/></r>");
  const NodeId copy = document.CopySubtree(document, document.DocumentElement(), false);
  EXPECT_EQ(AttributeNames(document, copy), "ab");
  EXPECT_FALSE(Cursor(&document, copy).FirstChild());
}

TEST(DocumentData, ACopyDoesNotFollowItsOriginal) {
  DocumentData document(nullptr);
  Load(document, "<r a=\"1\">text<b/></r>");
  const NodeId root = document.DocumentElement();
  const NodeId copy = document.CopySubtree(document, root, true);
  document.SetOwnText(ChildAt(document, root, 0), "other");
  document.SetOwnText(document.Record(root).firstAttribute, "2");
  document.RemoveChild(ChildAt(document, root, 1));
  EXPECT_EQ(XmlOf(document, copy), "<r a=\"1\">text<b/></r>");
}

TEST(DocumentData, CopiesTheWholeContent) {
  for (const char* text : kCopied) {
    DocumentData document(nullptr);
    Load(document, text);
    document.SetOwnText(document.DocumentElement(), "");
    Load(document, text);
    DocumentData copy(nullptr);
    copy.CopyContent(document);
    EXPECT_EQ(XmlOf(copy, copy.DocumentElement()), XmlOf(document, document.DocumentElement()));
    copy.SetOwnText(copy.DocumentElement(), "");
    EXPECT_EQ(XmlOf(document, document.DocumentElement()), text);
  }
}

TEST(DocumentData, ACopyOfTheWholeContentCollectsWhatWasDetached) {
  DocumentData document(nullptr);
  Load(document, "<r><a><b/></a><c/></r>");
  const NodeId root = document.DocumentElement();
  document.RemoveChild(ChildAt(document, root, 0));
  DocumentData copy(nullptr);
  copy.CopyContent(document);
  EXPECT_EQ(XmlOf(copy, copy.DocumentElement()), "<r><c/></r>");
  copy.Collect();
  EXPECT_EQ(copy.Counters().nodeRecords, 3U);
}

// Reuse ------------------------------------------------------------------------------------------

TEST(DocumentData, CollectsWhatIsDetachedAndNotHeld) {
  DocumentData document(nullptr);
  Load(document, "<r><a><b c='1'>text</b></a><d><e/></d></r>");
  const NodeId root = document.DocumentElement();
  const NodeId a = ChildAt(document, root, 0);
  const NodeId d = ChildAt(document, root, 1);
  const NodeId e = ChildAt(document, d, 0);
  const std::size_t before = document.Counters().nodeRecords;
  document.Hold(e);
  document.RemoveChild(a);
  document.RemoveChild(d);
  document.Collect();
  EXPECT_EQ(document.Counters().nodeRecords, before - 3) << "a, b and c are gone";
  EXPECT_EQ(XmlOf(document, d), "<d><e/></d>") << "all of a tree lives while a part is held";
  document.Release(e);
  document.Collect();
  EXPECT_EQ(document.Counters().nodeRecords, before - 5);
  EXPECT_EQ(XmlOf(document, root), "<r></r>");
}

TEST(DocumentData, AMillionEditsLeaveMemoryFlat) {
  DocumentData document(nullptr);
  Load(document, "<r></r>");
  const NodeId root = document.DocumentElement();
  const auto edit = [&](int i) {
    const NodeId child = NewElement(document, "item");
    document.InsertChild(root, child, kNoNode);
    document.SetOwnText(child, "text of length " + std::to_string(i % 1000));
    document.RemoveChild(child);
  };
  for (int i = 0; i < 10'000; ++i) edit(i);
  const StorageCounters before = document.Counters();
  for (int i = 0; i < 1'000'000; ++i) edit(i);
  const StorageCounters after = document.Counters();
  EXPECT_EQ(after.totalBytes, before.totalBytes);
  EXPECT_EQ(after.nodeCapacity, before.nodeCapacity);
  EXPECT_EQ(after.heapCapacityBytes, before.heapCapacityBytes);
}

TEST(DocumentData, ReplacingOneTextAMillionTimesLeavesMemoryFlat) {
  DocumentData document(nullptr);
  Load(document, "<r a='1'>text</r>");
  const NodeId root = document.DocumentElement();
  const auto replace = [&](int i) {
    document.SetOwnText(root, std::string(static_cast<std::size_t>(i % 100), 'x'));
  };
  for (int i = 0; i < 1000; ++i) replace(i);
  const std::size_t before = document.Counters().totalBytes;
  for (int i = 0; i < 1'000'000; ++i) replace(i);
  EXPECT_EQ(document.Counters().totalBytes, before);
}

TEST(DocumentData, ANodeMayBeHeldMoreOftenThanARecordCounts) {
  DocumentData document(nullptr);
  Load(document, "<r><a/></r>");
  const NodeId child = ChildAt(document, document.DocumentElement(), 0);
  constexpr int kHandles = 200'000;
  for (int i = 0; i < kHandles; ++i) document.Hold(child);
  document.RemoveChild(child);
  for (int i = 0; i < kHandles - 1; ++i) document.Release(child);
  document.Collect();
  EXPECT_EQ(document.Record(child).type, NodeType::kElement) << "one handle is left";
  document.Release(child);
  document.Collect();
  EXPECT_EQ(document.Record(child).type, NodeType::kFree);
}

TEST(DocumentData, ADeepTreeIsCopiedAndCollectedWithoutRecursion) {
  constexpr int kDepth = 1'000'000;
  DocumentData document(nullptr);
  ParseOptions options;
  options.maxDepth = kDepth;
  std::string text;
  for (int i = 0; i < kDepth; ++i) text += "<a>";
  for (int i = 0; i < kDepth; ++i) text += "</a>";
  ParseError error;
  ASSERT_TRUE(ParseText(document, text, options, error)) << error.reason;
  DocumentData other(nullptr);
  const NodeId copy = other.CopySubtree(document, document.DocumentElement(), true);
  EXPECT_EQ(XmlOf(other, copy), text);
  other.Collect();
  EXPECT_EQ(other.Counters().nodeRecords, 1U);
  DocumentData whole(nullptr);
  whole.CopyContent(document);
  EXPECT_EQ(XmlOf(whole, whole.DocumentElement()), text);
}

/// Counts those that exist.
class Noted final : public DerivedData {
 public:
  explicit Noted(int& alive) : alive_(alive) { ++alive_; }
  Noted(const Noted&) = delete;
  Noted& operator=(const Noted&) = delete;

 private:
  ~Noted() override { --alive_; }
  int& alive_;
};

TEST(DocumentData, WhatAReaderWorkedOutIsKeptWithAFrozenContentUntilItsEnd) {
  int alive = 0;
  {
    DocumentData document(nullptr);
    Load(document, "<r/>");
    document.Freeze();
    EXPECT_EQ(document.Derived(), nullptr);
    const DerivedData& first = document.KeepDerived(runtime::MakeCounted<Noted>(alive));
    EXPECT_EQ(document.Derived(), &first);
    EXPECT_EQ(alive, 1);
    EXPECT_EQ(&document.KeepDerived(runtime::MakeCounted<Noted>(alive)), &first)
        << "the first one stays";
    EXPECT_EQ(alive, 1) << "and the second one goes";
    DocumentData copy(nullptr);
    copy.CopyContent(document);
    EXPECT_EQ(copy.Derived(), nullptr) << "a copy may be edited";
  }
  EXPECT_EQ(alive, 0);
}

}  // namespace
}  // namespace kx::dom
