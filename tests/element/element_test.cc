// KXMsgElement: navigation.
#include "kxmessage/element.h"

#include "kxmessage/error_codes.h"
#include "kxmessage/found_elements.h"

#include "element/element_impl.h"
#include "support/message_world.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kx {
namespace {

using test::ErrorOf;
using test::RuntimeError;

constexpr std::uint32_t Code(std::int32_t code) { return static_cast<std::uint32_t>(code); }

class ElementTest : public testing::Test {
 protected:
  ElementTest() {
    world_.AddSchema(
        "s.xml",
        "<ElementType name='Leaf' content='textOnly'/>"
        "<ElementType name='Bare'/>"
        "<ElementType name='Empty' content='empty'/>"
        "<ElementType name='Part' content='eltOnly'><element type='Leaf' minOccurs='0'/>"
        "</ElementType>"
        "<ElementType name='Mixed' content='mixed'><element type='Leaf' minOccurs='0' "
        "maxOccurs='*'/></ElementType>"
        "<ElementType name='Root' content='eltOnly' model='open'>"
        "<element type='Leaf' minOccurs='0'/><element type='Part' maxOccurs='*' minOccurs='0'/>"
        "<element type='Mixed' minOccurs='0' maxOccurs='*'/><element type='Bare' minOccurs='0'/>"
        "<element type='Empty' minOccurs='0'/></ElementType>"
        "<ElementType name='Strict' content='eltOnly' model='closed'>"
        "<element type='Leaf'/><element type='Part' minOccurs='0'/></ElementType>");
  }

  [[nodiscard]] KXMsgElement Root(std::string_view content) {
    message_ = world_.Loaded("s", content);
    return message_.RootElement();
  }
  [[nodiscard]] static std::vector<std::string> Names(const KXMsgElement& element) {
    std::vector<std::string> names;
    for (const KXMsgElement& child : element) names.push_back(child.Info().Name());
    return names;
  }

  test::MessageWorld world_;
  KXMessage message_ = nullptr;
};

TEST_F(ElementTest, TheContentRootHasNoParent) {
  const KXMsgElement root = Root("<Root><Part><Leaf/></Part></Root>");
  EXPECT_FALSE(root.Parent());
  EXPECT_EQ(root.ChildElements("Part").Parent().Info().Name(), "Root");
  EXPECT_EQ(root.ChildElements("Part").ChildElements(1).Parent().Info().Name(), "Part");
}

TEST_F(ElementTest, EveryNavigationGivesANewObject) {
  const KXMsgElement root = Root("<Root><Part/></Root>");
  EXPECT_NE(root.ChildElements(1), root.ChildElements(1));
  EXPECT_NE(root.ChildElements("Part"), root.ChildElements("Part"));
  EXPECT_NE(root.ChildElements(1).Parent(), root);
  EXPECT_EQ(root, message_.RootElement());
}

TEST_F(ElementTest, PositionsCountFromOneAndPassOverOtherNodes) {
  const KXMsgElement root = Root("<Root> <?p i?><!--c--><Leaf>a</Leaf> <Part/> </Root>");
  EXPECT_EQ(root.Count(), 2);
  EXPECT_EQ(root.ChildElements(1).Info().Name(), "Leaf");
  EXPECT_EQ(root[2].Info().Name(), "Part");
  EXPECT_EQ(root.ChildElements("2").Info().Name(), "Part");
  EXPECT_EQ(root.ChildElements(1.0).Info().Name(), "Leaf");
}

TEST_F(ElementTest, PositionsOutsideAreNoChild) {
  const KXMsgElement root = Root("<Root><!--c--><Leaf>a</Leaf> <Part/> </Root>");
  struct {
    Variant key;
    std::uint32_t error;
    const char* description;
    const char* why;
  } const rows[] = {
      {0, Code(kxMsgErrorNoChild), "Child 0 does not exist.", "below the first"},
      {-1, Code(kxMsgErrorNoChild), "Child -1 does not exist.", "negative"},
      {"0", Code(kxMsgErrorNoChild), "Child 0 does not exist.", "a text that reads as a number"},
      {6, Code(kxMsgErrorNoChild), "Child 6 does not exist.", "beyond all nodes"},
      {1e300, Code(kxMsgErrorNoChild), "Child 1E+300 does not exist.", "far beyond"},
      {3, RuntimeError(91), "Object variable or With block variable not set",
       "beyond the elements, not beyond the nodes"},
      {5, RuntimeError(91), "Object variable or With block variable not set", "the last such one"},
      {Variant(), Code(kxMsgErrorNoChild), "Child  does not exist.", "empty counts as 0"},
      {Variant::Null(), RuntimeError(94), "Invalid use of Null", "Null"},
      {Variant::Missing(), RuntimeError(13), "Type mismatch", "no key at all"},
  };
  for (const auto& row : rows) {
    std::string description;
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(root.ChildElements(row.key)); }, &description),
              row.error)
        << row.why;
    EXPECT_EQ(description, row.description) << row.why;
  }
}

TEST_F(ElementTest, ANameGivesTheFirstChildOfThatName) {
  const KXMsgElement root =
      Root("<Root><Part><Leaf>1</Leaf></Part><Part><Leaf>2</Leaf></Part></Root>");
  EXPECT_EQ(root.ChildElements("Part").ChildElements("Leaf").TextValue(), "1");
  EXPECT_EQ(root.ChildElements("Part[1]/Leaf").TextValue(), "2");
}

TEST_F(ElementTest, ReadingAnOptionalChildThatIsNotThereCreatesIt) {
  const KXMsgElement root = Root("<Root/>");
  EXPECT_FALSE(root.Exists("Leaf"));
  root.ChildElements("Leaf").Value("made");
  EXPECT_EQ(root.Count(), 1);
  EXPECT_EQ(root.ChildElements("Leaf").TextValue(), "made");
  EXPECT_EQ(root.Count(), 1);
  EXPECT_EQ(root.ChildElements("Part").Count(), 0);
  EXPECT_EQ(Names(root), (std::vector<std::string>{"Leaf", "Part"}));
}

TEST_F(ElementTest, OnlyTheExactTextsOfItsOccurrencesLetAChildBeCreatedByReading) {
  struct {
    const char* occurrences;
    bool created;
  } const rows[] = {{"", false},
                    {"minOccurs='1' maxOccurs='1'", false},
                    {"minOccurs='00'", false},
                    {"minOccurs='0'", true},
                    {"maxOccurs='*'", true}};
  for (const auto& row : rows) {
    world_.AddSchema("t.xml",
                     "<ElementType name='A' content='textOnly'/>"
                     "<ElementType name='B' content='textOnly'/>"
                     "<ElementType name='R' content='eltOnly' order='one'>"
                     "<element type='A'/><element type='B' " +
                         std::string(row.occurrences) + "/></ElementType>");
    const KXMsgElement root = world_.Loaded("t", "<R><A/></R>").RootElement();
    std::string description;
    const std::uint32_t error =
        ErrorOf([&] { static_cast<void>(root.ChildElements("B")); }, &description);
    EXPECT_EQ(error, row.created ? 0U : Code(kxMsgErrorNoChild)) << row.occurrences;
    EXPECT_EQ(description, row.created ? "" : "Child B does not exist.") << row.occurrences;
    EXPECT_EQ(root.Count(), row.created ? 2 : 1) << row.occurrences;
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(root.ChildElements("Nobody")); }),
              Code(kxMsgErrorNoChild));
  }
}

TEST_F(ElementTest, APositionBetweenTwoElementsIsThatOfNone) {
  const KXMsgElement root = Root("<Root><Leaf/><Part/></Root>");
  for (const Variant& key : {Variant(1.5), Variant("1.5"), Variant(1.4), Variant("1.999")}) {
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(root.ChildElements(key)); }), RuntimeError(91));
  }
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(root.ChildElements(0.5)); }), Code(kxMsgErrorNoChild));
  EXPECT_EQ(root.ChildElements("1.0").Info().Name(), "Leaf");
}

TEST_F(ElementTest, ListsOfChildrenInsideListsEndWithoutTheStack) {
  Options options;
  options.maxDepth = 300'000;
  world_.AddSchema("deep.xml",
                   "<ElementType name='A' content='eltOnly'><element type='A' minOccurs='0'/>"
                   "</ElementType>");
  std::string text;
  for (int i = 0; i < 200'000; ++i) text += "<A>";
  for (int i = 0; i < 200'000; ++i) text += "</A>";
  const KXMessage message = world_.NewMessage(options);
  message.DefaultSchemaURL("deep");
  message.LoadMessageFromString(text);
  KXMsgElement element = message.RootElement();
  for (auto child = element.begin(); child != element.end(); child = element.begin()) {
    element = *child;
  }
  EXPECT_EQ(element.Count(), 0);
}

TEST_F(ElementTest, AnElementThatWasTakenOutHasNoParent) {
  const KXMsgElement root = Root("<Root><Mixed>a<Leaf/></Mixed></Root>");
  const KXMsgElement leaf = root["Mixed"]["Leaf"];
  HandleAccess::Of<element::ElementImpl>(root["Mixed"])
      .GetElementNode()
      .RemoveChild(HandleAccess::Of<element::ElementImpl>(leaf).GetElementNode());
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(leaf.Parent()); }), RuntimeError(91));
  EXPECT_EQ(leaf.Info().Name(), "Leaf");
}

TEST_F(ElementTest, ANameThatIsNoPatternIsTheQuerysError) {
  const KXMsgElement root = Root("<Root/>");
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(root.Exists({})); }), 0x80004005U);
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(root.FindElements({})); }), 0x80004005U);
  for (const char* name : {"", "a b", "'", "a[", "//"}) {
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(root.ChildElements(name)); }), 0x80004005U) << name;
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(root.Exists(name)); }), 0x80004005U) << name;
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(root.FindElements(name)); }), 0x80004005U) << name;
  }
}

TEST_F(ElementTest, AnUndeclaredChildHasNoWrapper) {
  const KXMsgElement root = Root("<Root><Leaf/></Root>");
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(root.ChildElements("Leaf/text()")); }),
            Code(kxMsgErrorNoChild));
  const KXMsgElement filled = Root("<Root><Leaf>x</Leaf></Root>");
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(filled.ChildElements("Leaf/text()")); }),
            RuntimeError(91));
}

TEST_F(ElementTest, ExistsAsksAnyPattern) {
  const KXMsgElement root = Root("<Root><Part><Leaf>5</Leaf></Part></Root>");
  EXPECT_TRUE(root.Exists("Part"));
  EXPECT_TRUE(root.Exists("Part/Leaf"));
  EXPECT_TRUE(root.Exists("//Leaf[. = '5']"));
  EXPECT_FALSE(root.Exists("Part/Nobody"));
  EXPECT_FALSE(root.Exists("Leaf"));
}

TEST_F(ElementTest, AnEnumerationKeepsItsListUntilAChildIsEdited) {
  const KXMsgElement root = Root("<Root><Leaf/></Root>");
  EXPECT_EQ(Names(root), std::vector<std::string>{"Leaf"});
  EXPECT_EQ(*root.begin(), *root.begin());
  static_cast<void>(root.ChildElements("Part"));
  EXPECT_EQ(root.Count(), 2);
  // Deliberate: creation on read does not drop the list.
  EXPECT_EQ(Names(root), std::vector<std::string>{"Leaf"});
}

TEST_F(ElementTest, AnEmptyListIsNotKept) {
  const KXMsgElement root = Root("<Root/>");
  EXPECT_EQ(Names(root), std::vector<std::string>{});
  static_cast<void>(root.ChildElements("Part"));
  EXPECT_EQ(Names(root), std::vector<std::string>{"Part"});
}

TEST_F(ElementTest, MoreThan32767ChildrenAreCountedButNotEnumerated) {
  std::string text = "<Root>";
  for (int i = 0; i < 32767; ++i) text += "<Part/>";
  EXPECT_EQ(Names(Root(text + "</Root>")).size(), 32767U);
  const KXMsgElement root = Root(text + "<Part/></Root>");
  EXPECT_EQ(root.Count(), 32768);
  EXPECT_EQ(root.ChildElements(32768).Info().Name(), "Part");
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(root.begin()); }), RuntimeError(6));
}

TEST_F(ElementTest, InfoIsTheSameObjectEachTime) {
  const KXMsgElement root = Root("<Root/>");
  EXPECT_EQ(root.Info(), root.Info());
  EXPECT_NE(root.KnownValidChildren(), root.KnownValidChildren());
}

TEST_F(ElementTest, TheTextOfAnElementIsCanonical) {
  const KXMsgElement root = Root("<Root><Part><Leaf>&lt;</Leaf></Part></Root>");
  EXPECT_EQ(root.XML(), "<Root xmlns=\"ref-schema:\"><Part><Leaf>&lt;</Leaf></Part></Root>");
  EXPECT_EQ(root.ChildElements("Part").XML(),
            "<Part xmlns=\"ref-schema:\"><Leaf>&lt;</Leaf></Part>");
}

TEST_F(ElementTest, AHandleOfNothingRaisesObjectNotSet) {
  const KXMsgElement nothing;
  EXPECT_FALSE(nothing);
  EXPECT_EQ(nothing, KXMsgElement(nullptr));
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(nothing.Count()); }), RuntimeError(91));
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(nothing.begin()); }), RuntimeError(91));
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(nothing.FindElements("a")); }), RuntimeError(91));
}

}  // namespace
}  // namespace kx
