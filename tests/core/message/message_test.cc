// KXMessage: the ways to fill it, its header, its text and its files.
#include "kxmessage/message.h"

#include "kxmessage/error_codes.h"
#include "kxmessage/parse_error.h"

#include "support/message_world.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace kx {
namespace {

using test::ErrorOf;
using test::RuntimeError;

constexpr const char* kOrder =
    "<AttributeType name='no' required='yes'/>"
    "<AttributeType name='state' dt:type='enumeration' dt:values='new old' default='new'/>"
    "<ElementType name='Qty' content='textOnly' dt:type='int'/>"
    "<ElementType name='Note' content='textOnly'/>"
    "<ElementType name='Item' content='eltOnly' model='closed'>"
    "<element type='Qty'/><element type='Note' minOccurs='0'/></ElementType>"
    "<ElementType name='Order' content='eltOnly' model='closed'>"
    "<attribute type='no'/><attribute type='state'/>"
    "<element type='Item' maxOccurs='*'/></ElementType>";

constexpr std::uint32_t Code(std::int32_t code) { return static_cast<std::uint32_t>(code); }

class MessageTest : public testing::Test {
 protected:
  MessageTest() { world_.AddSchema("Order.xml", kOrder); }

  [[nodiscard]] KXMessage FromSchema(std::string_view root = {}) {
    KXMessage message = world_.NewMessage();
    message.InitMessage("Order", root);
    return message;
  }
  [[nodiscard]] KXMessage FromText(std::string_view text) {
    KXMessage message = world_.NewMessage();
    message.LoadMessageFromString(text);
    return message;
  }
  [[nodiscard]] std::uint32_t LoadError(std::string_view text, std::string* description = nullptr) {
    return ErrorOf([&] { static_cast<void>(FromText(text)); }, description);
  }
  [[nodiscard]] std::string File(const std::string& path) {
    return world_.Host().Memory().Content(path).value_or("(none)");
  }

  test::MessageWorld world_;
};

constexpr const char* kContent =
    "<Order xmlns=\"x-schema:Order.xml\" no=\"7\"><Item><Qty>2</Qty></Item></Order>";

// Empty messages -------------------------------------------------------------------------------

TEST_F(MessageTest, AnEmptyMessageHasNoHeaderTextAndRoot) {
  const KXMessage message = world_.NewMessage();
  const std::vector<std::function<void()>> members = {
      [&] { static_cast<void>(message.Version()); },
      [&] { message.Version("1"); },
      [&] { static_cast<void>(message.MsgType()); },
      [&] { message.MsgType("a"); },
      [&] { message.MsgType("a:b"); },
      [&] { static_cast<void>(message.SubType()); },
      [&] { message.SubType("a"); },
      [&] { static_cast<void>(message.Class()); },
      [&] { message.Class("a"); },
      [&] { static_cast<void>(message.Encoding()); },
      [&] { message.Encoding("a"); },
      [&] { static_cast<void>(message.TimeStamp()); },
      [&] { static_cast<void>(message.UniqueID()); },
      [&] { static_cast<void>(message.SchemaFile()); },
      [&] { static_cast<void>(message.DeliveryOptions()); },
      [&] { message.DeliveryOptions(1); },
      [&] { static_cast<void>(message.DeliveryResult()); },
      [&] { message.DeliveryResult(1); },
      [&] { static_cast<void>(message.Tag()); },
      [&] { message.Tag("a"); },
      [&] { static_cast<void>(message.XML()); }};
  for (std::size_t i = 0; i < members.size(); ++i) {
    EXPECT_EQ(ErrorOf(members[i]), Code(kxMsgErrorNotInitialized)) << i;
  }
  EXPECT_FALSE(message.RootElement());
  EXPECT_EQ(ErrorOf([&] { message.SaveMessage("a"); }), RuntimeError(91));
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(message.CloneMessage()); }), RuntimeError(91));
  EXPECT_EQ(message.SchemaPath(), "C:\\s\\");
  EXPECT_EQ(message.MsgPath(), "C:\\m\\");
}

TEST_F(MessageTest, AHandleOfNothingRaisesObjectNotSet) {
  const KXMessage nothing(nullptr);
  EXPECT_FALSE(nothing);
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(nothing.XML()); }), RuntimeError(91));
  EXPECT_EQ(ErrorOf([&] { world_.NewMessage().LoadMessageFromElement(nullptr); }),
            RuntimeError(91));
}

TEST_F(MessageTest, CopiesOfAHandleShareTheMessage) {
  const KXMessage message = FromSchema();
  const KXMessage copy = message;  // NOLINT(performance-unnecessary-copy-initialization)
  copy.Tag("shared");
  EXPECT_EQ(message.Tag(), "shared");
  EXPECT_EQ(message, copy);
  EXPECT_NE(message, FromSchema());
}

// New messages ---------------------------------------------------------------------------------

TEST_F(MessageTest, ANewMessageIsTheEnvelopeAroundTheMinimumContent) {
  EXPECT_EQ(FromSchema().XML(),
            "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>"
            "<KXMessage version=\"1.0.0\" msgType=\"Order\" "
            "uniqueID=\"00000000-0000-4000-8000-000000000001\" subType=\"\" "
            "timeStamp=\"2008-03-14 09:05:07\" schemaURL=\"Order\" deliveryOptions=\"0\" "
            "deliveryResult=\"0\" tag=\"\" class=\"Order\" encoding=\"iso-8859-1\">"
            "<Order xmlns=\"ref-schema:\" no=\"\" state=\"new\"><Item><Qty/></Item></Order>"
            "</KXMessage>");
}

TEST_F(MessageTest, TheRootIsTheNamedTypeOrTheLastOneAtTheTop) {
  EXPECT_EQ(FromSchema().RootElement().Info().Name(), "Order");
  EXPECT_EQ(FromSchema("Item").RootElement().Info().Name(), "Item");
  EXPECT_EQ(FromSchema("iTEM").RootElement().Info().Name(), "Item");
}

TEST_F(MessageTest, TheNamespaceOfANewRootIsLowerCased) {
  EXPECT_EQ(FromSchema().RootElement().XML().find("Order.xml"), std::string::npos);
  KXMessage other = world_.NewMessage();
  world_.AddSchema("UPPER.XDR", kOrder);
  other.InitMessage("C:\\s\\UPPER.XDR");
  EXPECT_EQ(other.SchemaFile(), "C:\\s\\UPPER.XDR");
  EXPECT_EQ(other.RootElement().XML(),
            "<Order xmlns=\"ref-schema:\" no=\"\" state=\"new\"><Item><Qty/></Item></Order>");
}

TEST_F(MessageTest, InitFailuresAreThoseOfTheSchema) {
  world_.AddSchema("twice.xml", "<ElementType name='Order'/><ElementType name='order'/>");
  world_.AddSchema("none.xml", "");
  world_.AddSchema("self.xml",
                   "<ElementType name='A' content='eltOnly'><element type='A'/></ElementType>");
  world_.AddSchema("choice.xml",
                   "<ElementType name='X'/><ElementType name='Y'/>"
                   "<ElementType name='A' content='eltOnly' order='one' model='closed'>"
                   "<element type='X'/><element type='Y'/></ElementType>");
  world_.AddSchema("attribute.xml", "<ElementType name='A'><attribute type='gone'/></ElementType>");
  world_.Host().Memory().AddFile("/c/s/broken.xml", "<Schema>");
  struct {
    const char* schema;
    const char* root;
    std::uint32_t error;
    const char* why;
  } const rows[] = {
      {"missing", "", Code(kxMsgErrorLoadingSchema), "no such file"},
      {"broken", "", Code(kxMsgErrorLoadingSchema), "no document"},
      {"twice", "", Code(kxMsgErrorDuplicateSchema), "names that differ in case alone"},
      {"none", "", Code(kxMsgErrorInvalidSchema), "no element type"},
      {"Order", "Nobody", Code(kxMsgErrorUnknownElement), "a root that is not declared"},
      {"self", "", RuntimeError(28), "a type that must contain itself"},
      {"choice", "", Code(kxMsgErrorLoadingSchema), "a minimum content that is not valid"},
      {"attribute", "", Code(kxMsgErrorUnknownAttribute), "an attribute type that is not declared"},
  };
  for (const auto& row : rows) {
    const KXMessage message = world_.NewMessage();
    EXPECT_EQ(ErrorOf([&] { message.InitMessage(row.schema, row.root); }), row.error) << row.why;
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(message.XML()); }), Code(kxMsgErrorNotInitialized))
        << row.why;
  }
}

TEST_F(MessageTest, AFailedInitLeavesTheHeaderOfTheNewMessageAndTheFormerRoot) {
  world_.AddSchema("choice.xml",
                   "<ElementType name='X'/><ElementType name='Y'/>"
                   "<ElementType name='A' content='eltOnly' order='one' model='closed'>"
                   "<element type='X'/><element type='Y'/></ElementType>");
  world_.AddSchema("attribute.xml", "<ElementType name='A'><attribute type='gone'/></ElementType>");
  const KXMessage message = FromSchema();
  EXPECT_EQ(ErrorOf([&] { message.InitMessage("attribute"); }), Code(kxMsgErrorUnknownAttribute));
  EXPECT_EQ(message.SchemaFile(), "Order");
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(message.CloneMessage()); }), RuntimeError(91));
  EXPECT_EQ(ErrorOf([&] { message.InitMessage("choice"); }), Code(kxMsgErrorLoadingSchema));
  EXPECT_EQ(message.MsgType(), "A");
  EXPECT_EQ(message.SchemaFile(), "choice");
  EXPECT_NE(message.XML().find("<A xmlns=\"ref-schema:\"><X/><Y/></A>"), std::string::npos);
  EXPECT_EQ(message.RootElement().Info().Name(), "Order");
}

TEST_F(MessageTest, SchemaTextsThatFollowEachOtherAreNotTakenForOneAnother) {
  for (const char* type : {"i4", "r4", "i2"}) {
    const KXMessage message = world_.NewMessage();
    message.InitMessageFromString(test::MessageWorld::SchemaText(
        "<ElementType name='N' content='textOnly' dt:type='" + std::string(type) + "'/>"));
    EXPECT_EQ(message.RootElement().Info().DataType(), type);
    message.RootElement().Value(1);
  }
  EXPECT_EQ(xdr::SchemaCache::OfProcess().Size(), 0U);
}

TEST_F(MessageTest, ATextLongerThanADocumentMayBeIsALoadError) {
  Options options;
  options.maxDocumentBytes = 1000;
  const KXMessage message = world_.NewMessage(options);
  try {
    message.LoadMessageFromString("<Order xmlns=\"x-schema:Order.xml\" no=\"" +
                                  std::string(1000, 'x') + "\"/>");
    FAIL() << "nothing was raised";
  } catch (const ParseError& error) {
    EXPECT_EQ(static_cast<std::uint32_t>(error.Code()), 0x8007000EU);
  }
}

TEST_F(MessageTest, AForeignNamespaceLoadsInAnOpenModelAndHasNoText) {
  world_.AddSchema("open.xml", "<ElementType name='E' content='mixed' model='open'/>");
  const KXMessage message = world_.NewMessage();
  message.LoadMessageFromString("<E xmlns=\"x-schema:open.xml\"><z xmlns='urn:z'/></E>");
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(message.XML()); }), Code(kxMsgErrorNoSchema));
  EXPECT_EQ(ErrorOf([&] { message.SaveMessage("a"); }), Code(kxMsgErrorNoSchema));
}

TEST_F(MessageTest, AFailureAfterTheParseLeavesTheFormerRoot) {
  const KXMessage message = FromText(kContent);
  const KXMsgElement root = message.RootElement();
  EXPECT_EQ(ErrorOf([&] {
              message.LoadMessageFromString(
                  "<KXMessage tag=\"new\"><Order>"
                  "<Item xmlns=\"x-schema:Order.xml\"><Qty/></Item>"
                  "</Order></KXMessage>");
            }),
            Code(kxMsgErrorNoSchema));
  EXPECT_EQ(message.Tag(), "new");
  EXPECT_EQ(message.RootElement(), root);
}

TEST_F(MessageTest, ALoadFailureTellsItsPlace) {
  world_.Host().Memory().AddFile("/c/s/broken.xml", "<Schema>\n</Other>");
  try {
    world_.NewMessage().InitMessage("broken");
    FAIL() << "nothing was raised";
  } catch (const ParseError& error) {
    EXPECT_EQ(error.Number(), kxMsgErrorLoadingSchema);
    EXPECT_EQ(error.Line(), 2);
    EXPECT_EQ(error.SourceText(), "</Other>");
  }
}

TEST_F(MessageTest, ASchemaTextIsUsedThroughATemporaryFileThatIsGoneAfterwards) {
  const KXMessage message = world_.NewMessage();
  message.InitMessageFromString(test::MessageWorld::SchemaText(kOrder), "Item");
  EXPECT_EQ(message.RootElement().Info().Name(), "Item");
  const std::string name = message.SchemaFile();
  EXPECT_EQ(name.substr(name.size() - 4), ".tmp");
  EXPECT_EQ(File(name), "(none)");
  // What the message knows of its schema does not depend on the file.
  EXPECT_EQ(message.CloneMessage().XML(), message.XML());
  message.RootElement().ChildElements("Note").Value("x");
}

TEST_F(MessageTest, ASchemaTextThatFailsLeavesItsTemporaryFile) {
  EXPECT_EQ(ErrorOf([&] { world_.NewMessage().InitMessageFromString("<Schema>"); }),
            Code(kxMsgErrorLoadingSchema));
  const std::vector<std::string> files = world_.Host().Memory().AllFiles();
  EXPECT_TRUE(std::any_of(files.begin(), files.end(), [](const std::string& file) {
    return file.find("MSG") != std::string::npos;
  }));
}

// Loading --------------------------------------------------------------------------------------

TEST_F(MessageTest, ABareContentRootIsWrappedWithDefaultHeaderValues) {
  const KXMessage message = FromText(kContent);
  EXPECT_EQ(message.Version(), "1.0.0");
  EXPECT_EQ(message.MsgType(), "Order");
  EXPECT_EQ(message.Class(), "Order");
  EXPECT_EQ(message.SubType(), "");
  EXPECT_EQ(message.Encoding(), "iso-8859-1");
  EXPECT_EQ(message.DeliveryOptions(), 0);
  EXPECT_EQ(message.DeliveryResult(), 0);
  EXPECT_EQ(message.Tag(), "");
  EXPECT_EQ(message.SchemaFile(), "Order.xml");
  EXPECT_EQ(message.RootElement().Info().Name(), "Order");
}

TEST_F(MessageTest, AnEnvelopeWithoutMsgTypeGetsItsOwnName) {
  const KXMessage message = FromText("<KXMessage>" + std::string(kContent) + "</KXMessage>");
  EXPECT_EQ(message.MsgType(), "KXMessage");
  EXPECT_EQ(message.Class(), "KXMessage");
}

TEST_F(MessageTest, AnEnvelopeOfTheFormerNameIsRenamed) {
  const KXMessage message =
      FromText("<ZDKMessage tag=\"t\">" + std::string(kContent) + "</ZDKMessage>");
  EXPECT_NE(message.XML().find("<KXMessage tag=\"t\""), std::string::npos);
  EXPECT_EQ(message.XML().find("ZDK"), std::string::npos);
}

TEST_F(MessageTest, ATextWithoutNamespaceNeedsADefaultSchema) {
  const char* const text = "<Order no='1'><Item><Qty/></Item></Order>";
  EXPECT_EQ(LoadError(text), Code(kxMsgErrorNoSchema));
  EXPECT_EQ(world_.Loaded("Order", text).XML().substr(43, 10), "<KXMessage");
  EXPECT_EQ(world_.Loaded("Order", text).RootElement().Count(), 1);
}

TEST_F(MessageTest, LoadFailuresHaveTheirNumbers) {
  struct {
    const char* text;
    std::int32_t error;
    const char* why;
  } const rows[] = {
      {"", kxMsgErrorNoSchema, "an empty text"},
      {"<Order xmlns=\"x-schema:Order.xml\"", kxMsgErrorLoadingXML, "a text that ends too soon"},
      {"<Order xmlns=\"x-schema:Order.xml\"/>", kxMsgErrorLoadingXML, "a required attribute"},
      {"<Other xmlns=\"x-schema:Order.xml\"/>", kxMsgErrorLoadingXML, "an undeclared root"},
      {"<Order xmlns=\"x-schema:none.xml\"/>", kxMsgErrorLoadingXML, "a schema that is missing"},
      {"<Order xmlns=\"urn:other\"/>", kxMsgErrorNoSchema, "another kind of namespace"},
      {"<Order xmlns=\"x-schema:Order.xml/>", kxMsgErrorNoSchema, "no closing quote"},
      {"<K schemaURL=\"a><Order xmlns='x-schema:Order.xml'/></K>", kxMsgErrorNoSchema,
       "no declaration that counts"},
      {"<ZDKMessage><Order xmlns=\"x-schema:Order.xml\"/>", kxMsgErrorInvalidMessage,
       "the former envelope without its end"},
      {"<p:KXMessage xmlns:p=\"u\"><Order xmlns=\"x-schema:Order.xml\" no=\"\"><Item><Qty/></Item>"
       "</Order></p:KXMessage>",
       kxMsgErrorInvalidMessage, "an envelope with a prefix"},
      {"<KXMessage><Order><Item xmlns=\"x-schema:Order.xml\"><Qty/></Item></Order></KXMessage>",
       kxMsgErrorNoSchema, "a content root without schema"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(LoadError(row.text), Code(row.error)) << row.why;
  }
}

TEST_F(MessageTest, AFailedLoadLeavesTheFormerHeaderAndRoot) {
  const KXMessage message = FromText(kContent);
  const KXMsgElement root = message.RootElement();
  EXPECT_EQ(ErrorOf([&] { message.LoadMessageFromString("<a xmlns=\"x-schema:Order.xml\"/>"); }),
            Code(kxMsgErrorLoadingXML));
  EXPECT_EQ(message.RootElement(), root);
  EXPECT_EQ(message.MsgType(), "Order");
}

TEST_F(MessageTest, MessageFilesAreCompletedAgainstTheMessageBase) {
  world_.Host().Memory().AddFile("/c/m/One.xml", kContent);
  const KXMessage message = world_.NewMessage();
  message.LoadMessage("One");
  EXPECT_EQ(message.RootElement().Count(), 1);
  EXPECT_EQ(ErrorOf([&] { message.LoadMessage("Two"); }), RuntimeError(53));
  EXPECT_EQ(ErrorOf([&] { message.LoadMessage("C:\\none\\Two"); }), RuntimeError(76));
  EXPECT_EQ(ErrorOf([&] { message.LoadMessage(""); }), RuntimeError(75));
}

TEST_F(MessageTest, AMessageFileIsReadByTheCodePageWhateverItDeclares) {
  world_.Host().Memory().AddFile(
      "/c/m/u.xml",
      "<?xml version=\"1.0\" encoding=\"utf-8\"?><Order xmlns=\"x-schema:Order.xml\" "
      "no=\"\xC3\xA9\"><Item><Qty/></Item></Order>");
  const KXMessage message = world_.NewMessage();
  message.LoadMessage("u");
  EXPECT_NE(message.XML().find("no=\"\u00C3\u00A9\""), std::string::npos);
  Options options;
  options.codePage = 65001;
  const KXMessage unicode = world_.NewMessage(options);
  unicode.LoadMessage("u");
  EXPECT_NE(unicode.XML().find("no=\"\u00E9\""), std::string::npos);
}

TEST_F(MessageTest, LoadingAgainGivesTheSameText) {
  const std::string text = FromText(kContent).XML();
  EXPECT_EQ(FromText(text).XML(), text);
}

// From an element, and clones ------------------------------------------------------------------

TEST_F(MessageTest, AMessageFromAnElementHasItsCopyAsContentAndAHeaderOfItsOwn) {
  const KXMessage source = FromText(kContent);
  source.SubType("sub");
  source.Tag("kept");
  const KXMessage message = world_.NewMessage();
  message.LoadMessageFromElement(source.RootElement().ChildElements(1));
  EXPECT_EQ(message.RootElement().Info().Name(), "Item");
  EXPECT_EQ(message.MsgType(), "Item");
  EXPECT_EQ(message.SubType(), "");
  EXPECT_EQ(message.Tag(), "kept");
  EXPECT_EQ(message.Class(), "Order");
  EXPECT_NE(message.UniqueID(), source.UniqueID());
  EXPECT_EQ(message.UniqueID().size(), 36U);
  message.RootElement().ChildElements("Qty").Value(9);
  EXPECT_EQ(source.RootElement().ChildElements(1).ChildElements("Qty").Value(), Variant(2));
  EXPECT_EQ(source.RootElement().Count(), 1);
}

TEST_F(MessageTest, ACloneSharesNothingButTheSchema) {
  const KXMessage source = FromText(kContent);
  source.DefaultSchemaURL("d");
  const KXMessage clone = source.CloneMessage();
  EXPECT_EQ(clone.XML(), source.XML());
  EXPECT_EQ(clone.DefaultSchemaURL(), "d");
  EXPECT_EQ(clone.UniqueID(), source.UniqueID());
  clone.Tag("changed");
  clone.RootElement().ChildElements(1).ChildElements("Qty").Value(9);
  EXPECT_EQ(source.Tag(), "");
  EXPECT_EQ(source.RootElement().ChildElements(1).ChildElements("Qty").Value(), Variant(2));
}

TEST_F(MessageTest, AnElementOutlivesItsMessage) {
  KXMsgElement element;
  {
    const KXMessage message = FromText(kContent);
    element = message.RootElement().ChildElements(1);
  }
  EXPECT_EQ(element.Parent().Info().Name(), "Order");
  element.ChildElements("Note").Value("still here");
  EXPECT_EQ(element.ChildElements("Note").TextValue(), "still here");
}

// Header ---------------------------------------------------------------------------------------

TEST_F(MessageTest, HeaderPropertiesReadAndWriteTheirAttribute) {
  const KXMessage message = FromSchema();
  message.Version("2");
  message.MsgType("type");
  message.SubType("sub");
  message.Class("class");
  message.Encoding("UTF-8");
  message.DeliveryOptions(-2147483647 - 1);
  message.DeliveryResult(2147483647);
  message.Tag("<&>");
  EXPECT_EQ(message.XML().substr(0, 38), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
  EXPECT_NE(message.XML().find("<KXMessage version=\"2\" msgType=\"type\" uniqueID="),
            std::string::npos);
  EXPECT_NE(message.XML().find("subType=\"sub\" "), std::string::npos);
  EXPECT_NE(message.XML().find("deliveryOptions=\"-2147483648\" deliveryResult=\"2147483647\" "
                               "tag=\"&lt;&amp;&gt;\" class=\"class\" encoding=\"UTF-8\""),
            std::string::npos)
      << message.XML();
  EXPECT_EQ(message.DeliveryOptions(), -2147483647 - 1);
  EXPECT_EQ(message.Tag(), "<&>");
}

TEST_F(MessageTest, TypesWithCharactersThatFileNamesMayNotHaveAreRefused) {
  const KXMessage message = FromSchema();
  std::string description;
  EXPECT_EQ(ErrorOf([&] { message.MsgType("Order/New"); }, &description),
            Code(kxMsgErrorInvalidMsgType));
  EXPECT_EQ(description, "Invalid characters found in MsgType.");
  EXPECT_EQ(message.MsgType(), "Order");
  EXPECT_EQ(ErrorOf([&] { message.SubType("a\tb"); }, &description),
            Code(kxMsgErrorInvalidMsgType));
  EXPECT_EQ(description, "Invalid characters found in SubType.");
  message.MsgType("");
  EXPECT_EQ(message.MsgType(), "");
  message.Class("a/b");
}

TEST_F(MessageTest, TheTimeStampIsADate) {
  EXPECT_NEAR(FromSchema().TimeStamp().value, 39521.378553, 1e-5);
  const auto stamped = [&](const char* text) {
    return FromText("<KXMessage timeStamp=\"" + std::string(text) + "\">" + kContent +
                    "</KXMessage>");
  };
  EXPECT_EQ(stamped("1999-12-31").TimeStamp().value, 36525.0);
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(stamped("noon").TimeStamp()); }), RuntimeError(13));
}

TEST_F(MessageTest, DeliveryNumbersThatAreNoneRaiseTheConversionsError) {
  const auto delivered = [&](const char* text) {
    return FromText("<KXMessage deliveryOptions=\"" + std::string(text) + "\">" + kContent +
                    "</KXMessage>");
  };
  EXPECT_EQ(delivered(" 12 ").DeliveryOptions(), 12);
  EXPECT_EQ(delivered("1.5").DeliveryOptions(), 2);
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(delivered("x").DeliveryOptions()); }),
            RuntimeError(13));
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(delivered("2147483648").DeliveryOptions()); }),
            RuntimeError(6));
}

TEST_F(MessageTest, MessagesMadeInARowHaveDifferentIdentifiers) {
  std::set<std::string> identifiers;
  for (int i = 0; i < 20; ++i) identifiers.insert(FromSchema().UniqueID());
  EXPECT_EQ(identifiers.size(), 20U);
}

// Saving ---------------------------------------------------------------------------------------

TEST_F(MessageTest, SavingWritesTheTextAndALineEndUnderTheMessageBase) {
  const KXMessage message = FromSchema();
  message.SaveMessage("Order");
  EXPECT_EQ(File("/c/m/Order.xml"), message.XML() + "\r\n");
  message.Tag("second");
  message.SaveMessage("Order");
  EXPECT_EQ(File("/c/m/Order.xml"), message.XML() + "\r\n");
  const KXMessage again = world_.NewMessage();
  again.LoadMessage("Order");
  EXPECT_EQ(again.XML(), message.XML());
}

TEST_F(MessageTest, AFileIsWrittenByTheCodePageWhateverTheEncodingSays) {
  const KXMessage message = FromSchema();
  message.Encoding("UTF-8");
  message.Tag("\u00E9\u20AC\u0416");
  message.SaveMessage("x");
  EXPECT_NE(File("/c/m/x.xml").find("tag=\"\xE9\x80?\""), std::string::npos);
}

TEST_F(MessageTest, SavingWhereNothingCanBeWrittenIsTheFilesError) {
  const KXMessage message = FromSchema();
  EXPECT_EQ(ErrorOf([&] { message.SaveMessage(""); }), RuntimeError(75));
  EXPECT_EQ(ErrorOf([&] { message.SaveMessage("C:\\none\\a"); }), RuntimeError(76));
  world_.Host().Memory().AddFile("/c/m/old.xml", "old");
  world_.Host().Memory().SetFreeBytes(10);
  EXPECT_EQ(ErrorOf([&] { message.SaveMessage("old"); }), RuntimeError(61));
  EXPECT_EQ(File("/c/m/old.xml"), "old");
}

}  // namespace
}  // namespace kx
