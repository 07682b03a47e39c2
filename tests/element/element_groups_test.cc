// The groups of an element type.
#include "kxmessage/element.h"
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

constexpr const char* kDeclarations =
    "<ElementType name='A' content='textOnly'/><ElementType name='B' content='textOnly'/>"
    "<ElementType name='C' content='textOnly'/>"
    "<ElementType name='D' content='eltOnly'><element type='A'/></ElementType>"
    "<ElementType name='N' content='textOnly'/>"
    "<ElementType name='Plain' content='eltOnly'><element type='A' minOccurs='0'/></ElementType>"
    "<ElementType name='R' content='eltOnly' model='open'>"
    "<group order='seq' minOccurs='0' maxOccurs='*'><element type='A'/>"
    "<element type='B' minOccurs='0' maxOccurs='*'/></group>"
    "<group order='seq' minOccurs='0' maxOccurs='*'><element type='C' minOccurs='0'/>"
    "<element type='D'/><group minOccurs='0'><element type='N'/></group></group>"
    "<element type='Plain' minOccurs='0' maxOccurs='*'/></ElementType>";

class ElementGroupsTest : public testing::Test {
 protected:
  ElementGroupsTest() { world_.AddSchema("s.xml", kDeclarations); }

  [[nodiscard]] KXMsgElement Root(std::string_view content) {
    message_ = world_.Loaded("s", content);
    return message_.RootElement();
  }
  [[nodiscard]] static std::string Inside(const KXMsgElement& element) {
    const std::string kNamespace = " xmlns=\"ref-schema:\"";
    std::string text = element.XML();
    return text.erase(text.find(kNamespace), kNamespace.size());
  }
  [[nodiscard]] const dom::Document& Document() const {
    return HandleAccess::Of<element::ElementImpl>(message_.RootElement()).Context()->document;
  }

  test::MessageWorld world_;
  KXMessage message_ = nullptr;
};

TEST_F(ElementGroupsTest, AnElementTypeWithoutGroupsHasNone) {
  const KXMsgElement plain = Root("<R><A/><Plain><A/></Plain></R>")["Plain"];
  EXPECT_EQ(plain.NumberOfGroups(), 0);
  EXPECT_EQ(plain.CurrentGroup(), 0);
  EXPECT_EQ(plain["A"].GroupNumber(), 0);
  std::string description;
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(plain.KnownGroupElements(1)); }, &description),
            Code(kxMsgErrorInvalidGroup));
  EXPECT_EQ(description, "Invalid group number specified.");
}

TEST_F(ElementGroupsTest, AnElementKnowsTheGroupThatDeclaresIt) {
  const KXMsgElement root = Root("<R><A/><B/><C/><D><A/></D><N/><Plain/></R>");
  EXPECT_EQ(root.NumberOfGroups(), 2);
  EXPECT_EQ(root.GroupNumber(), 0);
  struct {
    const char* name;
    std::int16_t group;
  } const rows[] = {{"A", 1}, {"B", 1}, {"C", 2}, {"D", 2}, {"D/A", 0}, {"N", 0}, {"Plain", 0}};
  for (const auto& row : rows) EXPECT_EQ(root[row.name].GroupNumber(), row.group) << row.name;
}

TEST_F(ElementGroupsTest, AnElementWithoutParentOrDeclarationIsInNoGroup) {
  const KXMsgElement root = Root("<R><A/><B/></R>");
  const KXMsgElement b = root["B"];
  EXPECT_EQ(b.GroupNumber(), 1);
  root.RemoveChildKey("B");
  EXPECT_EQ(b.GroupNumber(), 0);
  EXPECT_EQ(test::BareElement(world_, kDeclarations, "R", "<R/>").Element().GroupNumber(), 0);
}

TEST_F(ElementGroupsTest, AGroupTellsItsElementsInOrder) {
  const KXMsgElement root = Root("<R><A/></R>");
  const KXMsgValidElements second = root.KnownGroupElements(2);
  EXPECT_EQ(second.Count(), 2);
  EXPECT_EQ(second[1].Name(), "C");
  EXPECT_EQ(second[2].Name(), "D");
  EXPECT_FALSE(second.Exists("N"));
  EXPECT_NE(root.KnownGroupElements(2), second);
  constexpr std::int16_t kNone[] = {-1, 0, 3, 32767};
  for (const std::int16_t number : kNone) {
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(root.KnownGroupElements(number)); }),
              Code(kxMsgErrorInvalidGroup));
  }
}

TEST_F(ElementGroupsTest, TheLowestGroupWithAnElementIsTheCurrentOne) {
  struct {
    const char* content;
    std::int16_t group;
  } const rows[] = {{"<R/>", 0},
                    {"<R><Plain/></R>", 0},
                    {"<R><A/></R>", 1},
                    {"<R><D><A/></D></R>", 2},
                    {"<R><C/><D><A/></D></R>", 2},
                    {"<R><D><A/></D><A/></R>", 1},
                    {"<R><A/><B/></R>", 1}};
  for (const auto& row : rows)
    EXPECT_EQ(Root(row.content).CurrentGroup(), row.group) << row.content;
}

TEST_F(ElementGroupsTest, ReplacingAGroupRemovesItAndAddsOneOfEachOfTheNewOne) {
  const KXMsgElement root = Root("<R><A>1</A><B/><B/><A>2</A><B/><Plain/></R>");
  root.ReplaceGroup(2);
  EXPECT_EQ(Inside(root), "<R><Plain/><C/><D><A/></D></R>");
  EXPECT_EQ(root.CurrentGroup(), 2);
  EXPECT_TRUE(Document().ValidateOnParse());
  root.ReplaceGroup(1);
  EXPECT_EQ(Inside(root), "<R><Plain/><A/><B/></R>");
}

TEST_F(ElementGroupsTest, TheElementsOfOtherGroupsStay) {
  const KXMsgElement root = Root("<R><D><A/></D><A/></R>");
  root.ReplaceGroup(2);
  EXPECT_EQ(Inside(root), "<R><D><A/></D><C/><D><A/></D></R>");
}

TEST_F(ElementGroupsTest, AnElementOfBothGroupsKeepsTheFirstOneCurrent) {
  const test::BareElement bare(world_,
                               "<ElementType name='A'/><ElementType name='B'/>"
                               "<ElementType name='R' content='eltOnly'>"
                               "<group><element type='A'/></group>"
                               "<group><element type='A'/><element type='B'/></group>"
                               "</ElementType>",
                               "R", "<R><A>x</A></R>");
  bare.Element().ReplaceGroup(2);
  EXPECT_EQ(bare.Xml(), "<R><A/><B/></R>");
  EXPECT_EQ(bare.Element().CurrentGroup(), 1);
  bare.Element().ReplaceGroup(2);
  EXPECT_EQ(bare.Xml(), "<R><B/><A/><B/></R>");
}

TEST_F(ElementGroupsTest, ReplacingTheCurrentGroupChangesNothing) {
  const KXMsgElement none = Root("<R><Plain/></R>");
  none.ReplaceGroup(0);
  EXPECT_EQ(Inside(none), "<R><Plain/></R>");
  const KXMsgElement first = Root("<R><A>1</A></R>");
  Document().ValidateOnParse(false);
  first.ReplaceGroup(1);
  EXPECT_EQ(Inside(first), "<R><A>1</A></R>");
  EXPECT_FALSE(Document().ValidateOnParse());
  first.ReplaceGroup(2);
  EXPECT_TRUE(Document().ValidateOnParse());
}

TEST_F(ElementGroupsTest, OnlyAGroupThatIsThereIsReplacedByOneThatIsDeclared) {
  struct {
    const char* content;
    std::int16_t number;
  } const rows[] = {{"<R/>", 1},        {"<R/>", 2},        {"<R/>", 3},        {"<R/>", -1},
                    {"<R><A/></R>", 0}, {"<R><A/></R>", 3}, {"<R><A/></R>", -1}};
  for (const auto& row : rows) {
    const KXMsgElement root = Root(row.content);
    std::string description;
    EXPECT_EQ(ErrorOf([&] { root.ReplaceGroup(row.number); }, &description),
              Code(kxMsgErrorInvalidGroup));
    EXPECT_EQ(description, "Invalid group number specified.");
    EXPECT_EQ(Inside(root), Inside(Root(row.content)));
    EXPECT_TRUE(Document().ValidateOnParse());
  }
}

TEST_F(ElementGroupsTest, AnEnumerationKeepsShowingTheFormerGroup) {
  const KXMsgElement root = Root("<R><A/></R>");
  EXPECT_EQ((*root.begin()).Info().Name(), "A");
  root.ReplaceGroup(2);
  EXPECT_EQ((*root.begin()).Info().Name(), "A");
  EXPECT_EQ(root[1].Info().Name(), "C");
}

TEST_F(ElementGroupsTest, AnErrorInTheMiddleLeavesWhatWasDone) {
  const test::BareElement bare(world_,
                               "<ElementType name='A'/><ElementType name='B'/>"
                               "<ElementType name='R' content='eltOnly'>"
                               "<group><element type='A'/></group>"
                               "<group><element type='B'/><element type='Gone'/></group>"
                               "</ElementType>",
                               "R", "<R><A/><A/></R>");
  EXPECT_EQ(ErrorOf([&] { bare.Element().ReplaceGroup(2); }), RuntimeError(5));
  EXPECT_EQ(bare.Xml(), "<R><B/></R>");
  EXPECT_FALSE(bare.Document().ValidateOnParse());
}

TEST_F(ElementGroupsTest, MoreGroupsThanASixteenBitNumberHoldsAreAnOverflow) {
  std::string declarations = "<ElementType name='A'/><ElementType name='R' content='eltOnly'>";
  for (int i = 0; i < 32768; ++i) declarations += "<group/>";
  const test::BareElement bare(world_, declarations + "</ElementType>", "R", "<R/>");
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(bare.Element().NumberOfGroups()); }), RuntimeError(6));
}

}  // namespace
}  // namespace kx
