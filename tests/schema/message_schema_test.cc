// How a message comes to hold its schema.
#include "schema/message_schema.h"

#include "kxmessage/error_codes.h"

#include "platform/host/memory/memory_host.h"
#include "platform/settings/memory_settings_store.h"
#include "platform/xdr/parse_binder.h"
#include "platform/xdr/typing.h"
#include "schema_texts.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::schema {
namespace {

std::int64_t Code(std::int32_t code) { return static_cast<std::uint32_t>(code); }

std::string NameOf(const dom::Node& node) {
  return node ? node.GetAttribute("name").value_or("(no name)") : "(nothing)";
}

constexpr const char* kBase = "C:\\Program Files\\Halcyra\\KXMessageSchemas\\";

class MessageSchemaTest : public testing::Test {
 protected:
  MessageSchemaTest() { settings_.SetApplicationName("test"); }

  void Put(const std::string& name, std::string_view declarations) {
    source_.Put(kBase + name, SchemaText(declarations));
  }
  [[nodiscard]] SchemaServices Services() { return {locations_, loader_, host_, {}}; }
  NewMessage Create(std::string_view location, std::string_view root = {}) {
    return CreateFromSchema(Services(), location, root, schema_);
  }
  Failure FailureOfCreate(std::string_view location, std::string_view root = {}) {
    return FailureOf([&] { static_cast<void>(Create(location, root)); });
  }

  host::MemoryHost host_;
  settings::MemorySettingsStore settings_;
  core::Locations locations_{host_, settings_, *text::FindCodePage(text::kCodePageWindows1252)};
  MemorySource source_;
  xdr::SchemaCache cache_;
  SchemaLoader loader_{source_, cache_};
  MessageSchema schema_;
};

TEST_F(MessageSchemaTest, ANewMessageIsTheEnvelopeAroundTheMinimumContent) {
  Put("Order.xml",
      "<ElementType name='Item'/><AttributeType name='k' default='x'/>"
      "<ElementType name='Order'><attribute type='k'/><element type='Item'/></ElementType>");
  const NewMessage message = Create("Order");
  EXPECT_EQ(message.document.Xml(),
            "<KXMessage version=\"1.0.0\" msgType=\"Order\" "
            "uniqueID=\"00000000-0000-4000-8000-000000000001\" subType=\"\" "
            "timeStamp=\"2008-03-14 09:05:07\" schemaURL=\"Order\" deliveryOptions=\"0\" "
            "deliveryResult=\"0\" tag=\"\" class=\"Order\" encoding=\"iso-8859-1\">"
            "<Order xmlns=\"x-schema:c:\\program files\\halcyra\\kxmessageschemas\\order.xml\" "
            "k=\"x\"><Item/></Order></KXMessage>\r\n");
  EXPECT_EQ(message.schemaUri, "x-schema:c:\\program files\\halcyra\\kxmessageschemas\\order.xml");
  EXPECT_EQ(NameOf(schema_.rootElementType), "Order");
  EXPECT_EQ(schema_.elementTypes.Count(), 2);
  EXPECT_EQ(schema_.elementTypes.SchemaDocument(), schema_.schemaDocument);
}

TEST_F(MessageSchemaTest, TheRootIsTheNamedTypeOrTheLastAtTheTop) {
  Put("s.xml",
      "<ElementType name='first'/><ElementType name='last'><ElementType name='nested'/>"
      "</ElementType><AttributeType name='k'/>");
  Create("s");
  EXPECT_EQ(NameOf(schema_.rootElementType), "last") << "not the nested one";
  EXPECT_EQ(schema_.topLevelElementTypes.Length(), 2);
  Create("s", "First");
  EXPECT_EQ(NameOf(schema_.rootElementType), "first") << "without regard to case";
  Create("s", "nested");
  EXPECT_EQ(NameOf(schema_.rootElementType), "nested");
}

TEST_F(MessageSchemaTest, ANewMessageIsBoundToItsSchemaWhenItIsParsedAgain) {
  Put("s.xml",
      "<ElementType name='Item'/><ElementType name='Order'><element type='Item'/>"
      "</ElementType>");
  const NewMessage message = Create("s.xml");
  const int reads = source_.Reads();
  const xdr::PlainProvider plain(source_);
  const KnownSchemaProvider provider(message.schemaUri, message.schema, plain);
  const xdr::BindingService service(provider);
  const dom::Document document = dom::NewDomDocument();
  document.EditSettings().schemaService = &service;
  ASSERT_TRUE(document.LoadXml(message.document.Xml())) << document.LastError().reason;
  EXPECT_EQ(source_.Reads(), reads) << "no second look-up";
  const dom::Node root = document.DocumentElement().FirstChild();
  EXPECT_EQ(xdr::Definition(root), schema_.rootElementType);

  MessageSchema loaded;
  TakeSchemaOfRoot(root, loaded);
  EXPECT_EQ(loaded.schemaDocument, schema_.schemaDocument);
  EXPECT_EQ(loaded.rootElementType, schema_.rootElementType);
  EXPECT_EQ(loaded.elementTypes.GetElementType("item"),
            schema_.elementTypes.GetElementType("Item"));
}

TEST_F(MessageSchemaTest, AMinimumContentThatIsNotValidIsMadeAllTheSame) {
  Put("s.xml",
      "<ElementType name='a'/><ElementType name='b'/><ElementType name='r' content='eltOnly'>"
      "<group order='one'><element type='a'/><element type='b'/></group></ElementType>");
  const NewMessage message = Create("s");
  const dom::Node root = message.document.DocumentElement().FirstChild();
  EXPECT_EQ(root.FirstChild().NodeName(), "a");
  EXPECT_EQ(root.LastChild().NodeName(), "b");
  EXPECT_TRUE(message.schema.group) << "what refuses it is the parse that follows";
}

struct FailureCase {
  const char* why;
  const char* text;
  const char* root;
  std::int64_t number;
  std::string description;
};

TEST_F(MessageSchemaTest, FailsWithTheErrorsOfSchemas) {
  const std::string head = "<Schema xmlns='urn:schemas-microsoft-com:xml-data'>";
  const FailureCase rows[] = {
      {"not well-formed", "<Schema>\n<x></Schema>", "", Code(kxMsgErrorLoadingSchema),
       "Error loading Schema: Error -1072896659, End tag 'Schema' does not match the start tag "
       "'x'.\r\n  Line 2, Pos 6, Source:<x></Schema>"},
      {"two names that differ in case alone",
       "<Schema><ElementType name='Order'/><ElementType name='order'/></Schema>", "",
       Code(kxMsgErrorDuplicateSchema), "Bad schema.  ElementType 'order' exists more than once"},
      {"the duplicate is found before the root is looked up",
       "<Schema><ElementType name='a'/><ElementType name='a'/></Schema>", "none",
       Code(kxMsgErrorDuplicateSchema), "Bad schema.  ElementType 'a' exists more than once"},
      {"a root that is not declared", "<Schema><ElementType name='a'/></Schema>", "Order",
       Code(kxMsgErrorUnknownElement), "An ElementType named \"Order\" does not exist in schema."},
      {"a root of a schema without element types", "<Schema/>", "Order",
       Code(kxMsgErrorUnknownElement), "An ElementType named \"Order\" does not exist in schema."},
      {"no element types", "<Schema/>", "", Code(kxMsgErrorInvalidSchema),
       "Invalid schema.  No ElementType definitions found."},
      {"none at the top", "<Schema><description><ElementType name='a'/></description></Schema>", "",
       Code(kxMsgErrorInvalidSchema), "Invalid schema.  No ElementType definitions found."},
      {"only with a prefix",
       "<s:Schema xmlns:s='urn:schemas-microsoft-com:xml-data'><s:ElementType name='a'/>"
       "</s:Schema>",
       "", Code(kxMsgErrorInvalidSchema), "Invalid schema.  No ElementType definitions found."},
      {"an attribute type that is not there",
       "<Schema><ElementType name='a'><attribute type='k'/></ElementType></Schema>", "",
       Code(kxMsgErrorUnknownAttribute), "An AttributeType named \"k\" does not exist in schema."},
      {"a type that must contain itself",
       "<Schema><ElementType name='a'><element type='a'/></ElementType></Schema>", "", 28,
       "Out of stack space"},
      {"a child that is not there",
       "<Schema><ElementType name='a'><element type='b'/></ElementType></Schema>", "", 5,
       "Invalid procedure call or argument"},
  };
  for (const FailureCase& row : rows) {
    SCOPED_TRACE(row.why);
    source_.Put(std::string(kBase) + "s.xml", row.text);
    const Failure failure = FailureOfCreate("s", row.root);
    EXPECT_EQ(failure.number, row.number);
    EXPECT_EQ(failure.description, row.description);
    MessageSchema other;
    const Failure ofText = FailureOf([&] {
      static_cast<void>(CreateFromSchemaText(Services(), "t", row.text, row.root, other));
    });
    EXPECT_EQ(ofText.number, row.number);
    EXPECT_EQ(ofText.description, row.description);
  }
}

TEST_F(MessageSchemaTest, ASchemaThatIsNotThereGivesTheFiveValuesOfItsLoad) {
  const Failure failure = FailureOfCreate("Order");
  EXPECT_EQ(failure.number, Code(kxMsgErrorLoadingSchema));
  EXPECT_EQ(failure.description,
            "Error loading Schema: Error -2146697210, The system cannot locate the object "
            "specified.\r\n  Line 0, Pos 0, Source:");
}

TEST_F(MessageSchemaTest, AFailureKeepsTheFieldsSetBeforeIt) {
  Put("good.xml", "<ElementType name='a'/>");
  Create("good");
  const dom::Document good = schema_.schemaDocument;
  FailureOfCreate("none");
  EXPECT_EQ(schema_.schemaDocument, good);
  Put("two.xml", "<ElementType name='x'/><ElementType name='b'/><ElementType name='B'/>");
  FailureOfCreate("two");
  EXPECT_FALSE(schema_.schemaDocument == good);
  EXPECT_EQ(schema_.elementTypes.Count(), 2);
  EXPECT_EQ(NameOf(schema_.rootElementType), "a");
  Put("self.xml", "<ElementType name='c'><element type='c'/></ElementType>");
  FailureOfCreate("self");
  EXPECT_EQ(NameOf(schema_.rootElementType), "c");
}

TEST_F(MessageSchemaTest, TheLocationIsCompletedAndTheBaseStored) {
  Put("Order.xml", "<ElementType name='a'/>");
  EXPECT_EQ(settings_.Read("SchemaPath", "(nothing)"), "(nothing)");
  Create("Order");
  EXPECT_EQ(settings_.Read("SchemaPath", "(nothing)"), kBase);
  source_.Put("C:\\x\\S.XML", SchemaText("<ElementType name='b'/>"));
  EXPECT_EQ(Create("C:\\x\\S.XML").schemaUri, "x-schema:c:\\x\\s.xml");
}

TEST_F(MessageSchemaTest, TheTextOfASchemaStandsForItsLocation) {
  const NewMessage message =
      CreateFromSchemaText(Services(), "Order", SchemaText("<ElementType name='t'/>"), "", schema_);
  EXPECT_EQ(source_.Reads(), 0);
  const dom::Node envelope = message.document.DocumentElement();
  EXPECT_EQ(envelope.GetAttribute("schemaURL"), "Order");
  EXPECT_EQ(envelope.FirstChild().NamespaceUri(),
            "x-schema:c:\\program files\\halcyra\\kxmessageschemas\\order.xml");
  EXPECT_TRUE(message.schema.group);
}

// A loaded message --------------------------------------------------------------------------------

class TakeSchemaOfRootTest : public MessageSchemaTest {
 protected:
  dom::Node Load(std::string_view schema, std::string_view text) {
    source_.Put("s.xml", std::string(schema));
    document_.EditSettings().schemaService = &service_;
    EXPECT_TRUE(document_.LoadXml(text)) << document_.LastError().reason;
    return document_.DocumentElement();
  }

  xdr::PlainProvider provider_{source_};
  xdr::BindingService service_{provider_};
  dom::Document document_ = dom::NewDomDocument();
};

TEST_F(TakeSchemaOfRootTest, TheDefinitionLeadsToSchemaIndexAndType) {
  const dom::Node root = Load(SchemaText("<ElementType name='a'/><ElementType name='b'/>"),
                              "<a xmlns='x-schema:s.xml'/>");
  TakeSchemaOfRoot(root, schema_);
  EXPECT_EQ(NameOf(schema_.rootElementType), "a");
  EXPECT_EQ(schema_.rootElementType.OwnerDocument(), schema_.schemaDocument);
  EXPECT_EQ(schema_.elementTypes.Count(), 2);
  EXPECT_EQ(schema_.elementTypes.GetElementType("a"), schema_.rootElementType);
}

TEST_F(TakeSchemaOfRootTest, FailsWithTheErrorsOfTheIndex) {
  struct {
    const char* why;
    std::string schema;
    const char* text;
    std::int64_t number;
  } const rows[] = {
      {"names that differ in case alone, which a parse takes for two",
       SchemaText("<ElementType name='a'/><ElementType name='A'/>"), "<a xmlns='x-schema:s.xml'/>",
       Code(kxMsgErrorDuplicateSchema)},
      {"written with a prefix, which a parse understands and the index does not",
       "<s:Schema xmlns:s='urn:schemas-microsoft-com:xml-data'><s:ElementType name='a'/>"
       "</s:Schema>",
       "<a xmlns='x-schema:s.xml'/>", Code(kxMsgErrorInvalidSchema)},
      {"a root that nothing declares", "<x/>", "<a xmlns='u'/>", 91},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.why);
    const dom::Node root = Load(row.schema, row.text);
    EXPECT_EQ(FailureOf([&] { TakeSchemaOfRoot(root, schema_); }).number, row.number);
  }
}

}  // namespace
}  // namespace kx::schema
