// What a new element is filled with.
#include "schema/default_content.h"

#include "kxmessage/error_codes.h"

#include "platform/dom/attribute_map.h"
#include "platform/host/memory/memory_host.h"
#include "schema/declarations.h"
#include "schema_texts.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::schema {
namespace {

using dom::Node;

/// Builds an element of the type `root` in a new document, as the content root of a schema "S.XML".
class Building {
 public:
  explicit Building(std::string_view declarations, ContentLimits limits = {})
      : index_(IndexOf(SchemaDocument(declarations))), build_{limits, &host_} {}

  [[nodiscard]] Node Root(std::string_view root = "r") {
    return BuildDefaultContent(document_, {}, index_.RequireElementType(root), index_, "S.XML",
                               build_);
  }
  /// The XML text of the new element, without the namespace, which is checked.
  [[nodiscard]] std::string Xml(std::string_view root = "r") {
    std::string text = Root(root).Xml();
    const std::string uri = " xmlns=\"x-schema:s.xml\"";
    const std::size_t at = text.find(uri);
    return at == std::string::npos ? "no namespace: " + text : text.erase(at, uri.size());
  }
  [[nodiscard]] Failure FailureOfRoot(std::string_view root = "r") {
    return FailureOf([&] { static_cast<void>(Root(root)); });
  }
  [[nodiscard]] const dom::Document& Document() const { return document_; }
  [[nodiscard]] const ElementTypeIndex& Index() const { return index_; }
  [[nodiscard]] int Breaths() const { return host_.YieldCount(); }

 private:
  host::MemoryHost host_;
  dom::Document document_ = dom::NewDomDocument();
  ElementTypeIndex index_;
  ContentBuild build_;
};

constexpr const char* kLeaves =
    "<ElementType name='a'/><ElementType name='b'/><ElementType name='c'/>";

struct ContentCase {
  const char* why;
  const char* declarations;
  const char* xml;
};

TEST(BuildDefaultContent, GivesTheMinimumOfChildren) {
  const ContentCase rows[] = {
      {"no declarations", "<ElementType name='r'/>", "<r/>"},
      {"no text, whatever the type", "<ElementType name='r' content='textOnly' dt:type='int'/>",
       "<r/>"},
      {"mandatory children in the order of the schema",
       "<ElementType name='r'><element type='b'/><element type='a'/></ElementType>",
       "<r><b/><a/></r>"},
      {"without minOccurs a child is mandatory, only the exact text 0 makes it optional",
       "<ElementType name='r'><element type='a' minOccurs=''/><element type='b' minOccurs='0'/>"
       "<element type='c' minOccurs='00'/></ElementType>",
       "<r><a/><c/></r>"},
      {"one instance satisfies every number",
       "<ElementType name='r'><element type='a' minOccurs='3' maxOccurs='*'/></ElementType>",
       "<r><a/></r>"},
      {"a declaration is asked each time it stands there",
       "<ElementType name='r'><element type='a'/><element type='a'/></ElementType>",
       "<r><a/><a/></r>"},
      {"a declaration without type gives nothing",
       "<ElementType name='r'><element/><element type=''/><element type='a'/></ElementType>",
       "<r><a/></r>"},
      {"of two groups only the first",
       "<ElementType name='r'><group><element type='a'/></group><group><element type='b'/></group>"
       "</ElementType>",
       "<r><a/></r>"},
      {"members of a group with minOccurs 0 are left out, whatever the group says",
       "<ElementType name='r'><group minOccurs='0'><element type='a' minOccurs='0'/>"
       "<element type='b'/></group></ElementType>",
       "<r><b/></r>"},
      {"a choice gets all its mandatory alternatives",
       "<ElementType name='r'><group order='one'><element type='a'/><element type='b'/></group>"
       "</ElementType>",
       "<r><a/><b/></r>"},
      {"a choice of the type itself as well",
       "<ElementType name='r' order='one'><element type='a'/><element type='b'/></ElementType>",
       "<r><a/><b/></r>"},
      {"the group comes before the direct children, wherever it stands",
       "<ElementType name='r'><element type='a'/><group><element type='b'/></group>"
       "<element type='c'/></ElementType>",
       "<r><b/><a/><c/></r>"},
      {"groups within the group give nothing",
       "<ElementType name='r'><group><group><element type='a'/></group><element type='b'/></group>"
       "</ElementType>",
       "<r><b/></r>"},
      {"types are found without regard to case and give their own names",
       "<ElementType name='r'><element type='A'/></ElementType>", "<r><a/></r>"},
      {"children are filled too",
       "<ElementType name='r'><element type='s'/><element type='a'/></ElementType>"
       "<ElementType name='s'><element type='b'/><group><element type='t'/></group></ElementType>"
       "<ElementType name='t'><element type='c'/></ElementType>",
       "<r><s><t><c/></t><b/></s><a/></r>"},
      {"an optional child of its own type ends the recursion",
       "<ElementType name='r'><element type='r' minOccurs='0'/><element type='a'/></ElementType>",
       "<r><a/></r>"},
  };
  for (const ContentCase& row : rows) {
    Building building(std::string(row.declarations) + kLeaves);
    EXPECT_EQ(building.Xml(), row.xml) << row.why;
  }
}

TEST(BuildDefaultContent, GivesRequiredAndDefaultedAttributes) {
  const ContentCase rows[] = {
      {"an optional one with a default",
       "<AttributeType name='k' default='x'/><ElementType name='r'><attribute type='k'/>"
       "</ElementType>",
       "<r k=\"x\"/>"},
      {"a required one without default has an empty text",
       "<AttributeType name='k' required='yes'/><ElementType name='r'><attribute type='k'/>"
       "</ElementType>",
       "<r k=\"\"/>"},
      {"a required enumeration has its first value",
       "<AttributeType name='k' dt:type='enumeration' dt:values='red green'/>"
       "<ElementType name='r'><attribute type='k' required='yes'/></ElementType>",
       "<r k=\"red\"/>"},
      {"values are split at each blank, so the first may be empty",
       "<AttributeType name='k' dt:type='enumeration' dt:values=' red' required='yes'/>"
       "<ElementType name='r'><attribute type='k'/></ElementType>",
       "<r k=\"\"/>"},
      {"an enumeration without values",
       "<AttributeType name='k' dt:type='enumeration' required='yes'/>"
       "<ElementType name='r'><attribute type='k'/></ElementType>",
       "<r k=\"\"/>"},
      {"values of another type are no defaults",
       "<AttributeType name='k' dt:type='nmtoken' dt:values='red' required='yes'/>"
       "<ElementType name='r'><attribute type='k'/></ElementType>",
       "<r k=\"\"/>"},
      {"an optional enumeration without default is not there",
       "<AttributeType name='k' dt:type='enumeration' dt:values='red green'/>"
       "<ElementType name='r'><attribute type='k'/></ElementType>",
       "<r/>"},
      {"the type's default comes before the declaration's",
       "<AttributeType name='k' default='a'/><ElementType name='r'>"
       "<attribute type='k' default='b'/></ElementType>",
       "<r k=\"a\"/>"},
      {"the declaration's default where the type has none",
       "<AttributeType name='k' default=''/><ElementType name='r'>"
       "<attribute type='k' default='b'/></ElementType>",
       "<r k=\"b\"/>"},
      {"a local attribute type comes before the global one",
       "<AttributeType name='k' default='global'/><ElementType name='r'><attribute type='k'/>"
       "<AttributeType name='k' default='local'/></ElementType>",
       "<r k=\"local\"/>"},
      {"in the order of the declarations",
       "<AttributeType name='k' default='1'/><AttributeType name='j' default='2'/>"
       "<ElementType name='r'><attribute type='j'/><attribute type='k'/></ElementType>",
       "<r j=\"2\" k=\"1\"/>"},
      {"declared twice, the later one takes the place of the first",
       "<AttributeType name='k' required='yes'/><AttributeType name='j' default='2'/>"
       "<ElementType name='r'><attribute type='k' default='1'/><attribute type='j'/>"
       "<attribute type='k' default='3'/></ElementType>",
       "<r k=\"3\" j=\"2\"/>"},
      {"an attribute type alone gives nothing",
       "<ElementType name='r'><AttributeType name='k' default='x'/></ElementType>", "<r/>"},
      {"attributes of children",
       "<AttributeType name='k' default='x'/><ElementType name='s'><attribute type='k'/>"
       "</ElementType><ElementType name='r'><element type='s'/><element type='s'/></ElementType>",
       "<r><s k=\"x\"/><s k=\"x\"/></r>"},
  };
  for (const ContentCase& row : rows) {
    EXPECT_EQ(Building(row.declarations).Xml(), row.xml) << row.why;
  }
}

struct FailureCase {
  const char* why;
  const char* declarations;
  std::int64_t number;
  const char* description;
};

TEST(BuildDefaultContent, FailsWithTheFirstFaultInItsOwnOrder) {
  const std::int64_t unknown = static_cast<std::uint32_t>(kxMsgErrorUnknownAttribute);
  const char* const noSuchK = "An AttributeType named \"k\" does not exist in schema.";
  const char* const noKey = "Invalid procedure call or argument";
  const FailureCase rows[] = {
      {"an attribute that would be created",
       "<ElementType name='r'><attribute type='k' required='yes'/></ElementType>", unknown,
       noSuchK},
      {"an attribute that would not be created",
       "<ElementType name='r'><attribute type='k'/></ElementType>", unknown, noSuchK},
      {"an attribute without type", "<ElementType name='r'><attribute/></ElementType>", unknown,
       "An AttributeType named \"\" does not exist in schema."},
      {"an attribute type of another element type",
       "<ElementType name='r'><attribute type='k'/></ElementType>"
       "<ElementType name='s'><AttributeType name='k'/></ElementType>",
       unknown, noSuchK},
      {"an attribute of a child",
       "<ElementType name='r'><element type='s'/></ElementType>"
       "<ElementType name='s'><attribute type='k'/></ElementType>",
       unknown, noSuchK},
      {"a mandatory child that is not declared",
       "<ElementType name='r'><element type='none'/></ElementType>", 5, noKey},
      {"the group is read before the attributes",
       "<ElementType name='r'><attribute type='k'/><group><element type='none'/></group>"
       "</ElementType>",
       5, noKey},
      {"the attributes are read before the children",
       "<ElementType name='r'><element type='none'/><attribute type='k'/></ElementType>", unknown,
       noSuchK},
      {"a child of a group is complete before the attributes are read",
       "<ElementType name='r'><attribute type='j'/><group><element type='s'/></group>"
       "</ElementType><ElementType name='s'><attribute type='k'/></ElementType>",
       unknown, noSuchK},
      {"a name that ends its literal",
       "<ElementType name='r'><attribute type=\"a'b\"/></ElementType>", 0x80004005, nullptr},
      {"a child's name that is none",
       "<ElementType name='r'><element type='s p'/></ElementType><ElementType name='s p'/>",
       0x80004005, nullptr},
      {"an attribute type without name that a pattern leads to",
       "<ElementType name='r'><AttributeType default='x'/><attribute type=\"' || @default='x\"/>"
       "</ElementType>",
       91, "Object variable or With block variable not set"},
  };
  for (const FailureCase& row : rows) {
    SCOPED_TRACE(row.why);
    const Failure failure = Building(row.declarations).FailureOfRoot();
    EXPECT_EQ(failure.number, row.number);
    if (row.description != nullptr) {
      EXPECT_EQ(failure.description, row.description);
    }
  }
}

TEST(BuildDefaultContent, AnUndeclaredOptionalChildIsNotAskedFor) {
  EXPECT_EQ(
      Building("<ElementType name='r'><element type='none' minOccurs='0'/></ElementType>").Xml(),
      "<r/>");
}

// Namespaces --------------------------------------------------------------------------------------

constexpr const char* kNamespaces =
    "<AttributeType name='k' default='x'/>"
    "<ElementType name='r'><attribute type='k'/><element type='s'/></ElementType>"
    "<ElementType name='s'><attribute type='k'/></ElementType>";

TEST(BuildDefaultContent, AContentRootIsInTheLowerCasedNamespaceOfItsSchema) {
  Building building(kNamespaces);
  const Node root = building.Root();
  const Node child = root.FirstChild();
  for (const Node& node : {root, root.GetAttributeNode("k"), child, child.GetAttributeNode("k")}) {
    EXPECT_EQ(node.NamespaceUri(), "x-schema:s.xml") << node.NodeName();
    EXPECT_EQ(node.Prefix(), std::nullopt);
  }
  EXPECT_EQ(root.OwnerDocument(), building.Document());
  EXPECT_FALSE(root.ParentNode());
}

TEST(BuildDefaultContent, AChildIsInTheLowerCasedNamespaceOfItsParent) {
  Building building(kNamespaces);
  const Node parent =
      building.Document().CreateNode(dom::NodeType::kElement, "p", "X-Schema:\xC3\x84.XML");
  const Node element =
      BuildDefaultContent(building.Document(), parent, building.Index().RequireElementType("r"),
                          building.Index(), "ignored");
  EXPECT_EQ(element.NamespaceUri(), "x-schema:\xC3\xA4.xml");
  EXPECT_EQ(element.GetAttributeNode("k").NamespaceUri(), "x-schema:\xC3\xA4.xml");
  EXPECT_EQ(element.FirstChild().NamespaceUri(), "x-schema:\xC3\xA4.xml");
  EXPECT_FALSE(parent.HasChildNodes()) << "the new element is not inserted";
}

TEST(CreateTypedElement, TakesItsNamespaceFromParentSchemaNameOrSchemaDocument) {
  dom::Document schema = SchemaDocument(kNamespaces);
  schema.SetUrl("C:\\Schemas\\Order.XML");
  const Node type = IndexOf(schema).RequireElementType("r");
  const dom::Document document = dom::NewDomDocument();
  const Node none = document.CreateElement("p");
  const Node parent = document.CreateNode(dom::NodeType::kElement, "p", "U");
  struct {
    const char* why;
    Node parent;
    const char* schemaName;
    std::optional<std::string> uri;
  } const rows[] = {
      {"a schema name", {}, "D:\\Other.XML", "x-schema:d:\\other.xml"},
      {"no schema name: the document's URL", {}, "", "x-schema:c:\\schemas\\order.xml"},
      {"a parent", parent, "", "u"},
      {"a parent comes first", parent, "D:\\Other.XML", "u"},
      {"a parent without namespace", none, "D:\\Other.XML", std::nullopt},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.why);
    const Node element = CreateTypedElement(document, row.parent, type, row.schemaName);
    EXPECT_EQ(element.NodeName(), "r");
    EXPECT_EQ(element.NamespaceUri(), row.uri);
    EXPECT_FALSE(element.HasChildNodes());
    EXPECT_EQ(element.Attributes().Length(), 0);
    const Node attribute =
        CreateDefaultAttribute(document, row.parent, FindAttributeType("k", schema, type),
                               FindAttributeDeclaration(type, "k"), row.schemaName);
    EXPECT_EQ(attribute.NodeName(), "k");
    EXPECT_EQ(attribute.Text(), "x");
    EXPECT_EQ(attribute.NamespaceUri(), row.uri);
  }
}

TEST(CreateTypedElement, ASchemaWithoutLocationGivesTheBarePrefix) {
  const Node type = IndexOf(SchemaDocument(kNamespaces)).RequireElementType("r");
  const Node element = CreateTypedElement(dom::NewDomDocument(), {}, type, "");
  EXPECT_EQ(element.NamespaceUri(), "x-schema:");
}

TEST(CreateTypedElement, OfATypeWithoutNameIsObjectNotSet) {
  const dom::Document document = dom::NewDomDocument();
  const Node unnamed = SchemaDocument("<ElementType/>").DocumentElement().FirstChild();
  const auto number = [&](const Node& type) {
    return FailureOf([&] { static_cast<void>(CreateTypedElement(document, {}, type, "s")); })
        .number;
  };
  EXPECT_EQ(number(unnamed), 91);
  EXPECT_EQ(number(Node()), 91);
}

// Bounds ------------------------------------------------------------------------------------------

TEST(BuildDefaultContent, ATypeThatMustContainItselfIsOutOfStackSpace) {
  const char* const rows[] = {
      "<ElementType name='r'><element type='r'/></ElementType>",
      ("<ElementType name='r'><element type='s'/></ElementType>"
       "<ElementType name='s'><group><element type='R'/></group></ElementType>"),
      "<ElementType name='r'><element type='r'/><element type='r'/></ElementType>",
  };
  for (const char* declarations : rows) {
    const Failure failure = Building(declarations).FailureOfRoot();
    EXPECT_EQ(failure.number, 28) << declarations;
    EXPECT_EQ(failure.description, "Out of stack space");
  }
}

std::string Chain(int length) {
  std::string declarations;
  for (int i = 0; i < length; ++i) {
    declarations += "<ElementType name='t" + std::to_string(i) + "'>";
    if (i + 1 < length) declarations += "<element type='t" + std::to_string(i + 1) + "'/>";
    declarations += "</ElementType>";
  }
  return declarations;
}

TEST(BuildDefaultContent, TheDepthIsBoundedExactly) {
  EXPECT_EQ(Building(Chain(12), {100, 12, 100}).FailureOfRoot("t0").number, 0);
  EXPECT_EQ(Building(Chain(12), {100, 11, 100}).FailureOfRoot("t0").number, 28);
  EXPECT_EQ(Building(Chain(12), {100, 11, 100}).FailureOfRoot("t1").number, 0);
}

TEST(BuildDefaultContent, DepthTakesNoStack) {
  constexpr int kDepth = 300'000;
  Building building(Chain(kDepth), {kDepth, kDepth, 1});
  Node at = building.Root("t0");
  int depth = 0;
  for (; at; at = at.FirstChild()) ++depth;
  EXPECT_EQ(depth, kDepth);
}

// Types that each hold two of the next.
std::string Bomb(int length) {
  std::string declarations;
  for (int i = 0; i < length; ++i) {
    const std::string next = "<element type='t" + std::to_string(i + 1) + "'/>";
    declarations += "<ElementType name='t" + std::to_string(i) + "'>";
    declarations += next + next;
    declarations += "</ElementType>";
  }
  return declarations + "<ElementType name='t" + std::to_string(length) + "'/>";
}

TEST(BuildDefaultContent, TheNumberOfElementsIsBoundedExactly) {
  const Failure failure = Building(Bomb(60)).FailureOfRoot("t0");
  EXPECT_EQ(failure.number, 7);
  EXPECT_EQ(failure.description, "Out of memory");
  EXPECT_EQ(Building(Bomb(3), {15, 10, 1}).FailureOfRoot("t0").number, 0) << "1 + 2 + 4 + 8";
  EXPECT_EQ(Building(Bomb(3), {14, 10, 1}).FailureOfRoot("t0").number, 7);
}

TEST(BuildDefaultContent, TheAmountOfTextIsBounded) {
  const std::string long1k(1000, 'x');
  const std::string declarations = "<AttributeType name='k' default='" + long1k +
                                   "'/><ElementType name='t3'><attribute type='k'/></ElementType>";
  const auto number = [&](std::size_t bytes) {
    std::string bomb = Bomb(3);
    bomb.resize(bomb.rfind("<ElementType"));
    return Building(declarations + bomb, {100, 10, bytes}).FailureOfRoot("t0").number;
  };
  constexpr std::size_t kEightAttributes = 8008;  // of a name of one byte and a thousand
  EXPECT_EQ(number(kEightAttributes), 0);
  EXPECT_EQ(number(kEightAttributes - 1), 7);
}

TEST(BuildDefaultContent, ManyAttributesAndManyElementsOfOneTypeAreCheap) {
  // Each element costs what it gets; that the type declares much more is read once.
  std::string declarations;
  std::string uses;
  for (int i = 0; i < 20'000; ++i) {
    const std::string name = "k" + std::to_string(i);
    declarations += "<AttributeType name='" + name + "'/>";
    uses.append("<attribute type='").append(name).append("'/><element type='").append(name);
    uses += "' minOccurs='0'/>";
  }
  std::string bomb = Bomb(15);
  bomb.resize(bomb.rfind("<ElementType"));
  declarations += bomb + "<ElementType name='t15'>" + uses + "</ElementType>";
  Building building(declarations);
  EXPECT_EQ(building.FailureOfRoot("t0").number, 0);
}

TEST(BuildDefaultContent, AnElementOfManyAttributesIsNotQuadratic) {
  constexpr int kAttributes = 300'000;
  std::string declarations = "<ElementType name='r'>";
  for (int i = 0; i < kAttributes; ++i) {
    const std::string name = "k" + std::to_string(i);
    declarations += "<AttributeType name='" + name + "' default='1'/>";
    declarations += "<attribute type='" + name + "'/>";
  }
  Building building(declarations + "</ElementType>");
  EXPECT_EQ(building.Root().Attributes().Length(), kAttributes);
}

TEST(BuildDefaultContent, TheUserInterfaceGetsABreathAfterEachDeclarationThatGaveSomething) {
  Building building(
      "<AttributeType name='k' default='x'/><AttributeType name='j'/><ElementType name='a'/>"
      "<ElementType name='r'><attribute type='k'/><attribute type='j'/><group><element type='a'/>"
      "</group><element type='a'/><element type='a' minOccurs='0'/></ElementType>");
  EXPECT_EQ(building.Xml(), "<r k=\"x\"><a/><a/></r>");
  EXPECT_EQ(building.Breaths(), 3);
}

}  // namespace
}  // namespace kx::schema
