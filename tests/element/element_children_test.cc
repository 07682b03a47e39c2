// Adding, removing, inserting and replacing the children of an element.
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
constexpr std::uint32_t kBadPattern = 0x80004005U;
constexpr std::uint32_t kNotAChild = 0x80070057U;

class ElementChildrenTest : public testing::Test {
 protected:
  ElementChildrenTest() {
    world_.AddSchema(
        "s.xml",
        "<ElementType name='Leaf' content='textOnly'/>"
        "<ElementType name='Part' content='eltOnly'><element type='Leaf'/></ElementType>"
        "<ElementType name='One' content='eltOnly' model='open'><element type='Leaf' "
        "minOccurs='0'/></ElementType>"
        "<ElementType name='Many' content='eltOnly'><element type='Leaf' minOccurs='0' "
        "maxOccurs='*'/><element type='Part' minOccurs='0' maxOccurs='1'/></ElementType>"
        "<ElementType name='Bare'/>"
        "<ElementType name='Empty' content='empty'/>"
        "<ElementType name='Grouped' content='eltOnly' model='open'>"
        "<element type='Leaf' minOccurs='0'/>"
        "<group order='one'><element type='Part' minOccurs='0'/><element type='Empty' "
        "minOccurs='0'/></group></ElementType>"
        "<ElementType name='Root' content='eltOnly' model='open'>"
        "<element type='Leaf' minOccurs='0' maxOccurs='1'/>"
        "<element type='Part' minOccurs='0' maxOccurs='*'/>"
        "<element type='One' minOccurs='0' maxOccurs='*'/>"
        "<element type='Many' minOccurs='0'/><element type='Bare' minOccurs='0'/>"
        "<element type='Empty' minOccurs='0'/><element type='Grouped' minOccurs='0'/>"
        "</ElementType>"
        "<ElementType name='Repeat' content='eltOnly'><element type='Leaf' maxOccurs='*'/>"
        "<element type='Part' minOccurs='0'/></ElementType>");
    world_.AddSchema("other.xml",
                     "<ElementType name='Leaf' content='textOnly'/>"
                     "<ElementType name='Part' content='eltOnly'><element type='Leaf' "
                     "minOccurs='0'/></ElementType>");
  }

  [[nodiscard]] KXMsgElement Root(std::string_view content) {
    message_ = world_.Loaded("s", content);
    return message_.RootElement();
  }
  /// The content root of another message, which is kept by it.
  [[nodiscard]] KXMsgElement Other(std::string_view schema, std::string_view content) {
    return world_.Loaded(schema, content).RootElement();
  }
  [[nodiscard]] static std::vector<std::string> Names(const KXMsgElement& element) {
    std::vector<std::string> names;
    for (const KXMsgElement& child : element) names.push_back(child.Info().Name());
    return names;
  }
  /// The names and texts of the children, as XML without namespaces.
  [[nodiscard]] static std::string Inside(const KXMsgElement& element) {
    const std::string kNamespace = " xmlns=\"ref-schema:\"";
    std::string text = element.XML();
    const std::size_t at = text.find(kNamespace);
    if (at != std::string::npos) text.erase(at, kNamespace.size());
    return text;
  }

  test::MessageWorld world_;
  KXMessage message_ = nullptr;
};

// ---- AddChild -----------------------------------------------------------------------------------

TEST_F(ElementChildrenTest, AnEmptyNameStandsForTheOnlyDeclaredChild) {
  const KXMsgElement one = Root("<Root><One/></Root>")["One"];
  std::string name;
  const KXMsgElement added = one.AddChild(name);
  EXPECT_EQ(name, "Leaf");
  EXPECT_EQ(added.Info().Name(), "Leaf");
  // Deliberate: for an empty name the number of children is not checked.
  one.AddChild();
  EXPECT_EQ(Inside(one), "<One><Leaf/><Leaf/></One>");
  EXPECT_EQ(ErrorOf([&] { one.AddChild("Leaf"); }), Code(kxMsgErrorOneElement));
}

TEST_F(ElementChildrenTest, AnEmptyNameAmongSeveralDeclaredChildrenIsUnspecified) {
  const KXMsgElement root = Root("<Root><Many/></Root>");
  for (const KXMsgElement& element : {root, root["Many"]}) {
    std::string name;
    std::string description;
    EXPECT_EQ(ErrorOf([&] { element.AddChild(name); }, &description), Code(kxMsgErrorInvalidChild));
    EXPECT_EQ(description, "Invalid child '<Unspecified>'");
    EXPECT_EQ(name, "");
  }
}

TEST_F(ElementChildrenTest, OnlyAMaxOccursOfExactlyOneLimits) {
  struct {
    const char* occurrences;
    bool limited;
  } const rows[] = {{"", true},
                    {"maxOccurs='1'", true},
                    {"maxOccurs=''", true},
                    {"maxOccurs='2'", false},
                    {"maxOccurs='*'", false},
                    {"maxOccurs='01'", false},
                    {"maxOccurs='0'", false}};
  for (const auto& row : rows) {
    const test::BareElement bare(world_,
                                 "<ElementType name='L'/><ElementType name='E' content='eltOnly'>"
                                 "<element type='L' " +
                                     std::string(row.occurrences) + "/></ElementType>",
                                 "E", "<E/>");
    // Nothing binds the element, so the new child has a wrapper by its own type alone.
    bare.Element().AddChild("L");
    std::string description;
    EXPECT_EQ(ErrorOf([&] { bare.Element().AddChild("L"); }, &description),
              row.limited ? Code(kxMsgErrorOneElement) : 0U)
        << row.occurrences;
    if (row.limited) {
      EXPECT_EQ(description, "Only one element of this type is allowed.");
    }
    EXPECT_EQ(bare.Element().Count(), row.limited ? 1 : 2);
  }
}

TEST_F(ElementChildrenTest, ANewChildComesBehindAllOthersWithItsMinimumContent) {
  const KXMsgElement root = Root("<Root><Part><Leaf/></Part><Empty/></Root>");
  root.AddChild("Leaf");
  const KXMsgElement part = root.AddChild("Part");
  EXPECT_EQ(Inside(root), "<Root><Part><Leaf/></Part><Empty/><Leaf/><Part><Leaf/></Part></Root>");
  part["Leaf"].Value("x");
  EXPECT_EQ(root[4]["Leaf"].TextValue(), "x");
}

TEST_F(ElementChildrenTest, WhatCannotBeAdded) {
  const KXMsgElement root =
      Root("<Root><Leaf>x</Leaf><Bare/><Empty/><Grouped><Empty/></Grouped></Root>");
  struct {
    KXMsgElement parent;
    const char* name;
    std::uint32_t error;
    const char* description;
  } const rows[] = {
      {root["Leaf"], "Leaf", Code(kxMsgErrorNoChildren), "This element cannot contain children."},
      {root["Bare"], "Leaf", Code(kxMsgErrorNoChildren), "This element cannot contain children."},
      {root["Empty"], "", Code(kxMsgErrorNoChildren), "This element cannot contain children."},
      {root, "Leaf", Code(kxMsgErrorOneElement), "Only one element of this type is allowed."},
      {root, "Nobody", Code(kxMsgErrorInvalidChild), "Invalid child 'Nobody'"},
      {root, "leaf", Code(kxMsgErrorInvalidChild), "Invalid child 'leaf'"},
      {root, "Root", Code(kxMsgErrorInvalidChild), "Invalid child 'Root'"},
      {root, "Part/Leaf", Code(kxMsgErrorInvalidChild), "Invalid child 'Part/Leaf'"},
      {root["Grouped"], "Part", Code(kxMsgErrorInvalidChild), "Invalid child 'Part'"},
  };
  const std::string before = message_.XML();
  for (const auto& row : rows) {
    std::string description;
    EXPECT_EQ(ErrorOf([&] { row.parent.AddChild(row.name); }, &description), row.error) << row.name;
    EXPECT_EQ(description, row.description);
  }
  EXPECT_EQ(ErrorOf([&] { root.AddChild("it's"); }), kBadPattern);
  EXPECT_EQ(message_.XML(), before);
}

TEST_F(ElementChildrenTest, ADeclaredTypeThatTheSchemaDoesNotHaveIsTheIndexsError) {
  const test::BareElement bare(world_,
                               "<ElementType name='E' content='eltOnly'><element type='Gone'/>"
                               "</ElementType>",
                               "E", "<E/>");
  std::string name;
  EXPECT_EQ(ErrorOf([&] { bare.Element().AddChild(name); }), RuntimeError(5));
  EXPECT_EQ(name, "Gone");
  EXPECT_EQ(bare.Element().Count(), 0);
}

TEST_F(ElementChildrenTest, AnEditDropsTheListOfItsOwnObject) {
  const KXMsgElement root = Root("<Root><Leaf/></Root>");
  const KXMsgElement other = message_.RootElement().ChildElements("Leaf").Parent();
  EXPECT_EQ(Names(root), std::vector<std::string>{"Leaf"});
  EXPECT_EQ(Names(other), std::vector<std::string>{"Leaf"});
  const KXMsgElement part = root.AddChild("Part");
  EXPECT_EQ(Names(root), (std::vector<std::string>{"Leaf", "Part"}));
  EXPECT_EQ(Names(other), std::vector<std::string>{"Leaf"});
  root.InsertChild(part);
  EXPECT_EQ(Names(root), (std::vector<std::string>{"Leaf", "Part", "Part"}));
  const KXMsgElement before = *root.begin();
  root.ReplaceChild(part);
  EXPECT_NE(*root.begin(), before);
  root.RemoveChildKey("Leaf");
  EXPECT_EQ(Names(root), (std::vector<std::string>{"Part", "Part"}));
  root.RemoveChild(root[1]);
  EXPECT_EQ(Names(root), std::vector<std::string>{"Part"});
}

// ---- RemoveChildKey -----------------------------------------------------------------------------

TEST_F(ElementChildrenTest, OnlyAMinOccursOfExactlyOneRequires) {
  struct {
    const char* occurrences;
    bool required;
  } const rows[] = {{"", true},
                    {"minOccurs='1'", true},
                    {"minOccurs=''", true},
                    {"minOccurs='0'", false},
                    {"minOccurs='2'", false},
                    {"minOccurs='01'", false},
                    {"minOccurs='*'", false}};
  for (const auto& row : rows) {
    const test::BareElement bare(world_,
                                 "<ElementType name='L'/><ElementType name='E' content='eltOnly'>"
                                 "<element type='L' maxOccurs='*' " +
                                     std::string(row.occurrences) + "/></ElementType>",
                                 "E", "<E/>");
    const KXMsgElement first = bare.Element().AddChild("L");
    const KXMsgElement second = bare.Element().AddChild("L");
    bare.Element().RemoveChild(first);
    std::string description;
    EXPECT_EQ(ErrorOf([&] { bare.Element().RemoveChild(second); }, &description),
              row.required ? Code(kxMsgErrorRequiredChild) : 0U)
        << row.occurrences;
    if (row.required) {
      EXPECT_EQ(description, "This child is required.");
    }
    EXPECT_EQ(bare.Element().Count(), row.required ? 1 : 0);
  }
}

TEST_F(ElementChildrenTest, AChildIsRemovedByPositionAndByName) {
  const KXMsgElement repeat = Root("<Repeat><Leaf>1</Leaf><Leaf>2</Leaf><Leaf>3</Leaf></Repeat>");
  repeat.RemoveChildKey("Leaf");
  EXPECT_EQ(Inside(repeat), "<Repeat><Leaf>2</Leaf><Leaf>3</Leaf></Repeat>");
  repeat.RemoveChildKey(2);
  EXPECT_EQ(Inside(repeat), "<Repeat><Leaf>2</Leaf></Repeat>");
  for (const Variant& key : {Variant("Leaf"), Variant(1), Variant("1")}) {
    std::string description;
    EXPECT_EQ(ErrorOf([&] { repeat.RemoveChildKey(key); }, &description),
              Code(kxMsgErrorRequiredChild));
    EXPECT_EQ(description, "This child is required.");
  }
  EXPECT_EQ(Inside(repeat), "<Repeat><Leaf>2</Leaf></Repeat>");
}

TEST_F(ElementChildrenTest, WhateverTheLookUpRaisesIsAMissingChild) {
  const KXMsgElement root = Root("<Root><Part><Leaf>x</Leaf></Part> <!--c--></Root>");
  struct {
    Variant key;
    std::uint32_t error;
    const char* description;
  } const rows[] = {
      {0, Code(kxMsgErrorNoChild), "Child 0 does not exist."},
      {9, Code(kxMsgErrorNoChild), "Child 9 does not exist."},
      {2, Code(kxMsgErrorNoChild), "Child 2 does not exist."},
      {1.5, Code(kxMsgErrorNoChild), "Child 1.5 does not exist."},
      {"Nobody", Code(kxMsgErrorNoChild), "Child Nobody does not exist."},
      {"it's", Code(kxMsgErrorNoChild), "Child it's does not exist."},
      {"Part/Leaf/text()", Code(kxMsgErrorNoChild), "Child Part/Leaf/text() does not exist."},
      {Variant(), Code(kxMsgErrorNoChild), "Child  does not exist."},
      {Variant::Null(), RuntimeError(94), "Invalid use of Null"},
  };
  const std::string before = message_.XML();
  for (const auto& row : rows) {
    std::string description;
    EXPECT_EQ(ErrorOf([&] { root.RemoveChildKey(row.key); }, &description), row.error)
        << row.description;
    EXPECT_EQ(description, row.description);
  }
  EXPECT_EQ(message_.XML(), before);
}

TEST_F(ElementChildrenTest, AnOptionalChildThatIsNotThereIsCreatedAndRemovedAgain) {
  const KXMsgElement root = Root("<Root><Part><Leaf/></Part></Root>");
  const std::string before = message_.XML();
  root.RemoveChildKey("Many");
  EXPECT_EQ(message_.XML(), before);
}

TEST_F(ElementChildrenTest, ARequiredRepeatableChildThatIsNotThereIsCreatedAndStays) {
  const KXMsgElement repeat = Root("<Repeat><Leaf/></Repeat>");
  auto& impl = HandleAccess::Of<element::ElementImpl>(repeat);
  impl.GetElementNode().RemoveChild(impl.GetElementNode().FirstChild());
  EXPECT_EQ(repeat.Count(), 0);
  EXPECT_EQ(ErrorOf([&] { repeat.RemoveChildKey("Leaf"); }), Code(kxMsgErrorRequiredChild));
  EXPECT_EQ(Inside(repeat), "<Repeat><Leaf/></Repeat>");
}

TEST_F(ElementChildrenTest, AKeyThatLeadsToAnElementElsewhereIsTheDocumentsError) {
  const KXMsgElement root =
      Root("<Root><Part><Leaf/></Part><Part><Leaf/></Part><Many><Leaf/></Many></Root>");
  EXPECT_EQ(ErrorOf([&] { root.RemoveChildKey("Many/Leaf"); }), kNotAChild);
  EXPECT_EQ(ErrorOf([&] { root["Many"].RemoveChildKey(".."); }), kNotAChild);
  // By the name of what was found, not by where it is.
  EXPECT_EQ(ErrorOf([&] { root["Part"].RemoveChildKey("../Many/Leaf"); }),
            Code(kxMsgErrorRequiredChild));
  EXPECT_EQ(root.Count(), 3);
}

TEST_F(ElementChildrenTest, AChildThatIsNotDeclaredIsRemovedWithoutAQuestion) {
  const KXMsgElement one = Root("<Root><One><Part><Leaf/></Part></One></Root>")["One"];
  one.RemoveChildKey("Part");
  EXPECT_EQ(Inside(one), "<One></One>");
}

TEST_F(ElementChildrenTest, AChildOfAGroupIsRemovedWithoutAQuestion) {
  const KXMsgElement grouped = Root("<Root><Grouped><Empty/></Grouped></Root>")["Grouped"];
  grouped.RemoveChildKey("Empty");
  EXPECT_EQ(grouped.Count(), 0);
}

// ---- RemoveChild --------------------------------------------------------------------------------

TEST_F(ElementChildrenTest, RemovingAChildGivesNothing) {
  const KXMsgElement root = Root("<Root><Leaf>x</Leaf></Root>");
  const KXMsgElement leaf = root["Leaf"];
  EXPECT_FALSE(root.RemoveChild(leaf));
  EXPECT_EQ(root.Count(), 0);
  EXPECT_EQ(leaf.TextValue(), "x");
  EXPECT_EQ(leaf.Info().Name(), "Leaf");
}

TEST_F(ElementChildrenTest, WhatCannotBeRemoved) {
  const KXMsgElement root =
      Root("<Root><Leaf>x</Leaf><Part><Leaf/></Part><One><Part><Leaf/></Part></One></Root>");
  const KXMsgElement detached = root["One"]["Part"];
  root["One"].RemoveChild(detached);
  const KXMsgElement foreign = Other("s", "<Root><Leaf/><Empty/></Root>");
  struct {
    KXMsgElement parent;
    KXMsgElement child;
    std::uint32_t error;
    const char* description;
  } const rows[] = {
      {root["Leaf"], root["Part"], Code(kxMsgErrorNoChildren),
       "This element cannot contain children."},
      {root["Leaf"], nullptr, Code(kxMsgErrorNoChildren), "This element cannot contain children."},
      {root["Part"], root["Part"]["Leaf"], Code(kxMsgErrorRequiredChild),
       "This child is required."},
      {root["One"], root["Part"], Code(kxMsgErrorInvalidChild), "Invalid child 'Part'"},
      {root["One"], detached, Code(kxMsgErrorInvalidChild), "Invalid child 'Part'"},
      {root["One"], foreign["Empty"], Code(kxMsgErrorInvalidChild), "Invalid child 'Empty'"},
      {root, root, Code(kxMsgErrorInvalidChild), "Invalid child 'Root'"},
      {root, detached, kNotAChild, nullptr},
      {root, foreign["Leaf"], kNotAChild, nullptr},
      {root, nullptr, RuntimeError(91), nullptr},
  };
  const std::string before = message_.XML();
  for (const auto& row : rows) {
    std::string description;
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(row.parent.RemoveChild(row.child)); }, &description),
              row.error);
    if (row.description != nullptr) {
      EXPECT_EQ(description, row.description);
    }
  }
  EXPECT_EQ(message_.XML(), before);
}

TEST_F(ElementChildrenTest, AChildThatIsNotDeclaredMayBeRemoved) {
  const KXMsgElement one = Root("<Root><One><Part><Leaf/></Part></One></Root>")["One"];
  EXPECT_FALSE(one.RemoveChild(one["Part"]));
  EXPECT_EQ(one.Count(), 0);
}

// ---- InsertChild --------------------------------------------------------------------------------

TEST_F(ElementChildrenTest, AnInsertedElementIsACopy) {
  const KXMsgElement root = Root("<Root><Part><Leaf>1</Leaf></Part></Root>");
  const KXMsgElement source = Other("s", "<Root><Part><Leaf>2</Leaf></Part></Root>")["Part"];
  const KXMsgElement inserted = root.InsertChild(source);
  EXPECT_NE(inserted, source);
  inserted["Leaf"].Value("3");
  EXPECT_EQ(source["Leaf"].TextValue(), "2");
  source["Leaf"].Value("4");
  EXPECT_EQ(Inside(root), "<Root><Part><Leaf>1</Leaf></Part><Part><Leaf>3</Leaf></Part></Root>");
  EXPECT_EQ(source.Parent().Info().Name(), "Root");
  EXPECT_EQ(inserted.Parent().Count(), 2);
}

TEST_F(ElementChildrenTest, AnElementMayBeCopiedIntoItself) {
  const test::BareElement bare(world_,
                               "<ElementType name='E' content='eltOnly'><element type='E' "
                               "maxOccurs='*'/></ElementType>",
                               "E", "<E><E/></E>");
  // The copy has no declaration of its own: it is in place, and has no wrapper.
  EXPECT_EQ(ErrorOf([&] { bare.Element().InsertChild(bare.Element()); }), RuntimeError(91));
  EXPECT_EQ(bare.Xml(), "<E><E/><E><E/></E></E>");
}

TEST_F(ElementChildrenTest, AReplacementWithoutDeclarationIsInPlaceAndHasNoWrapper) {
  const test::BareElement bare(world_,
                               "<ElementType name='L'/><ElementType name='E' content='eltOnly'>"
                               "<element type='L'/></ElementType>",
                               "E", "<E><L>1</L><L>2</L></E>");
  const test::BareElement leaf(world_, "<ElementType name='L'/>", "L", "<L>new</L>");
  EXPECT_EQ(ErrorOf([&] { bare.Element().ReplaceChild(leaf.Element(), 2); }), RuntimeError(91));
  EXPECT_EQ(bare.Xml(), "<E><L>1</L><L>new</L></E>");
}

TEST_F(ElementChildrenTest, OnlyAModelThatIsExactlyClosedOrAbsentRefusesAnotherNamespace) {
  struct {
    const char* model;
    bool refused;
  } const rows[] = {{"", true},
                    {"model=''", true},
                    {"model='closed'", true},
                    {"model='open'", false},
                    {"model='Closed'", false},
                    {"model='x'", false}};
  for (const auto& row : rows) {
    const test::BareElement bare(
        world_, "<ElementType name='E' content='eltOnly' " + std::string(row.model) + "/>", "E",
        "<E><Part/></E>");
    const KXMsgElement foreign = Other("other", "<Part/>");
    const std::uint32_t expected = row.refused ? Code(kxMsgErrorWrongNameSpace) : 0;
    EXPECT_EQ(ErrorOf([&] { bare.Element().InsertChild(foreign); }), expected) << row.model;
    EXPECT_EQ(ErrorOf([&] { bare.Element().ReplaceChild(foreign); }), expected) << row.model;
    EXPECT_EQ(bare.Element().Count(), row.refused ? 1 : 2) << row.model;
  }
}

TEST_F(ElementChildrenTest, OldWrappersEditTheContentThatALoadReplaced) {
  const KXMsgElement root = Root("<Root><Part><Leaf/></Part></Root>");
  const KXMsgElement part = root["Part"];
  message_.LoadMessageFromString(message_.XML());
  root.AddChild("Part");
  root.InsertChild(part);
  root.ReplaceChild(part, 2);
  root.RemoveChild(part);
  EXPECT_EQ(root.Count(), 2);
  EXPECT_EQ(message_.RootElement().Count(), 1);
  message_.RootElement().InsertChild(part);
  message_ = nullptr;
  root.RemoveChildKey(1);
  EXPECT_EQ(Inside(root), "<Root><Part><Leaf/></Part></Root>");
}

// Its types are looked for in the schema of the message, where a name may mean something else.
TEST_F(ElementChildrenTest, AnElementOfAnotherSchemaIsEditedByTheTypesOfTheMessagesSchema) {
  world_.AddSchema("third.xml",
                   "<AttributeType name='own' dt:type='int'/>"
                   "<ElementType name='Only' content='textOnly'/>"
                   "<ElementType name='Leaf' content='empty'/>"
                   "<ElementType name='Third' content='eltOnly'>"
                   "<attribute type='own'/><element type='Only' minOccurs='0'/>"
                   "<element type='Leaf' minOccurs='0'/></ElementType>");
  const KXMsgElement third = Root("<Root/>").InsertChild(Other("third", "<Third own='1'/>"));
  EXPECT_EQ(ErrorOf([&] { third.AddChild("Only"); }), RuntimeError(5));
  EXPECT_EQ(third.AddChild("Leaf").Info().CanHaveValue(), true);
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(third.KnownValidChildren()[1]); }), RuntimeError(5));
  EXPECT_EQ(third.KnownValidChildren()[2].Name(), "Leaf");
  const KXMsgAttributes attributes = third.Attributes();
  EXPECT_EQ(attributes["own"].Value(), "1");
  EXPECT_EQ(ErrorOf([&] { attributes["own"].Value("2"); }), RuntimeError(91));
  EXPECT_EQ(ErrorOf([&] { attributes.RemoveAttribute("own"); }), RuntimeError(91));
}

TEST_F(ElementChildrenTest, WhatCannotBeInserted) {
  const KXMsgElement root =
      Root("<Root><Leaf>x</Leaf><Part><Leaf/></Part><Many/><Bare/><Empty/></Root>");
  const KXMsgElement foreign = Other("other", "<Part><Leaf/></Part>");
  struct {
    KXMsgElement parent;
    KXMsgElement child;
    std::uint32_t error;
    const char* description;
  } const rows[] = {
      {root["Leaf"], root["Part"], Code(kxMsgErrorNoChildren),
       "This element cannot contain children."},
      {root["Bare"], root["Part"], Code(kxMsgErrorNoChildren),
       "This element cannot contain children."},
      {root["Bare"], nullptr, Code(kxMsgErrorNoChildren), "This element cannot contain children."},
      {root["Part"], foreign, Code(kxMsgErrorWrongNameSpace),
       "Child 'Part' has a different namespace/schema than element 'Part'."},
      {root["Many"], foreign["Leaf"], Code(kxMsgErrorWrongNameSpace),
       "Child 'Leaf' has a different namespace/schema than element 'Many'."},
      {root["Many"], root["Empty"], Code(kxMsgErrorInvalidChild), "Invalid child 'Empty'"},
      {root, root, Code(kxMsgErrorInvalidChild), "Invalid child 'Root'"},
      {root, root["Leaf"], Code(kxMsgErrorOneElement), "Only one element of this type is allowed."},
      {root, nullptr, RuntimeError(91), "Object variable or With block variable not set"},
  };
  const std::string before = message_.XML();
  for (const auto& row : rows) {
    std::string description;
    EXPECT_EQ(ErrorOf([&] { row.parent.InsertChild(row.child); }, &description), row.error)
        << row.description;
    EXPECT_EQ(description, row.description);
  }
  EXPECT_EQ(message_.XML(), before);
}

TEST_F(ElementChildrenTest, AnOpenElementTakesAnyElementOfAnotherSchema) {
  const KXMsgElement root = Root("<Root><Leaf>x</Leaf></Root>");
  const KXMsgElement foreign = Other("other", "<Part><Leaf>y</Leaf></Part>");
  const KXMsgElement part = root.InsertChild(foreign);
  const KXMsgElement leaf = root.InsertChild(foreign["Leaf"]);
  EXPECT_EQ(root.Count(), 3);
  EXPECT_EQ(leaf.TextValue(), "y");
  EXPECT_EQ(part.KnownValidChildren().Element("Leaf").MinOccurrences(), 0);
  part.RemoveChildKey("Leaf");
  EXPECT_EQ(part.Count(), 0);
}

TEST_F(ElementChildrenTest, AnElementOfTheMainSchemaInsideAnotherSchemaIsReadAgainAsOneOfThat) {
  world_.AddSchema("guest.xml",
                   "<ElementType name='Leaf' content='textOnly' dt:type='string'/>"
                   "<ElementType name='Host' content='eltOnly' model='open'/>");
  const KXMsgElement root = Root("<Root><Leaf>x</Leaf></Root>");
  const KXMsgElement host = root.InsertChild(Other("guest", "<Host/>"));
  EXPECT_EQ(host.InsertChild(root["Leaf"]).Info().DataType(), "none");
  EXPECT_EQ(root.XML(),
            "<Root xmlns=\"ref-schema:\"><Leaf>x</Leaf>"
            "<Host xmlns=\"ref-schema:guest.xml\"><Leaf>x</Leaf></Host></Root>");
  const KXMessage again = world_.NewMessage();
  again.LoadMessageFromString(message_.XML());
  EXPECT_EQ(again.RootElement()["Host"]["Leaf"].Info().DataType(), "string");
}

TEST_F(ElementChildrenTest, AnInsertedElementOutlivesTheMessageThatItCameFrom) {
  const KXMsgElement root = Root("<Root/>");
  root.InsertChild(Other("other", "<Part><Leaf>y</Leaf></Part>"));
  EXPECT_EQ(root[1]["Leaf"].TextValue(), "y");
  KXMessage again = world_.NewMessage();
  again.LoadMessageFromString(message_.XML());
  EXPECT_EQ(again.RootElement()[1]["Leaf"].TextValue(), "y");
}

// ---- ReplaceChild -------------------------------------------------------------------------------

TEST_F(ElementChildrenTest, TheReplacementTakesThePlaceOfTheOldChild) {
  const KXMsgElement root =
      Root("<Root><Part><Leaf>1</Leaf></Part><Empty/><Part><Leaf>2</Leaf></Part><Leaf/></Root>");
  const KXMsgElement old = root[3];
  const KXMsgElement source = Other("s", "<Root><Part><Leaf>new</Leaf></Part></Root>")["Part"];
  const KXMsgElement copy = root.ReplaceChild(source, 2);
  EXPECT_EQ(Inside(root),
            "<Root><Part><Leaf>1</Leaf></Part><Empty/><Part><Leaf>new</Leaf></Part><Leaf/></Root>");
  EXPECT_NE(copy, source);
  EXPECT_EQ(old["Leaf"].TextValue(), "2");
  EXPECT_EQ(source["Leaf"].TextValue(), "new");
  root.ReplaceChild(source);
  EXPECT_EQ(root[1]["Leaf"].TextValue(), "new");
}

TEST_F(ElementChildrenTest, AChildMayBeReplacedByItself) {
  const KXMsgElement root = Root("<Root><Part><Leaf>1</Leaf></Part></Root>");
  const KXMsgElement part = root["Part"];
  const KXMsgElement copy = root.ReplaceChild(part);
  copy["Leaf"].Value("2");
  EXPECT_EQ(part["Leaf"].TextValue(), "1");
  EXPECT_EQ(Inside(root), "<Root><Part><Leaf>2</Leaf></Part></Root>");
}

TEST_F(ElementChildrenTest, WhatCannotBeReplaced) {
  const KXMsgElement root =
      Root("<Root><Leaf>x</Leaf><Part><Leaf/></Part><Many><Leaf/></Many><Empty/></Root>");
  const KXMsgElement foreign = Other("other", "<Part><Leaf/></Part>");
  struct {
    KXMsgElement parent;
    KXMsgElement child;
    std::int32_t occurrence;
    std::uint32_t error;
    const char* description;
  } const rows[] = {
      {root["Leaf"], root["Part"], 1, Code(kxMsgErrorNoChildren),
       "This element cannot contain children."},
      {root["Leaf"], nullptr, 1, Code(kxMsgErrorNoChildren),
       "This element cannot contain children."},
      {root["Many"], foreign["Leaf"], 1, Code(kxMsgErrorWrongNameSpace),
       "Child 'Leaf' has a different namespace/schema than element 'Many'."},
      {root["Many"], root["Empty"], 1, Code(kxMsgErrorNoChild), "Child Empty does not exist."},
      {root, root["Part"], 2, Code(kxMsgErrorInvalidOccurrence),
       "Occurrence 2 of child 'Part' does not exist."},
      {root, root["Part"], 0, Code(kxMsgErrorInvalidOccurrence),
       "Occurrence 0 of child 'Part' does not exist."},
      {root, root["Part"], -1, Code(kxMsgErrorInvalidOccurrence),
       "Occurrence -1 of child 'Part' does not exist."},
      {root["Many"], root["Part"], 1, Code(kxMsgErrorInvalidOccurrence),
       "Occurrence 1 of child 'Part' does not exist."},
      {root, foreign, 2, Code(kxMsgErrorInvalidOccurrence),
       "Occurrence 2 of child 'Part' does not exist."},
      {root, nullptr, 1, RuntimeError(91), "Object variable or With block variable not set"},
  };
  const std::string before = message_.XML();
  for (const auto& row : rows) {
    std::string description;
    EXPECT_EQ(ErrorOf([&] { row.parent.ReplaceChild(row.child, row.occurrence); }, &description),
              row.error)
        << row.description;
    EXPECT_EQ(description, row.description);
  }
  EXPECT_EQ(message_.XML(), before);
}

TEST_F(ElementChildrenTest, AnOpenElementReplacesByOneOfAnotherSchema) {
  const KXMsgElement root = Root("<Root><Part><Leaf/></Part><Leaf/></Root>");
  const KXMsgElement foreign = Other("other", "<Part/>");
  EXPECT_EQ(root.ReplaceChild(foreign).KnownValidChildren().Element(1).MinOccurrences(), 0);
  EXPECT_EQ(root[1].Count(), 0);
  EXPECT_EQ(root.Count(), 2);
}

}  // namespace
}  // namespace kx
