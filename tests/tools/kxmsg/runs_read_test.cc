// kxmsg show, get, schema and header without a change: what they print, and that they only read.
#include "tools/kxmsg/run_program.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kxmsg {
namespace {

using KxmsgRead = ProgramTest;
using Words = std::vector<std::string>;

TEST_F(KxmsgRead, ShowPrintsTheTreeAndWhatIsNotThere) {
  Write("case.xml", OrderText("Harbour \"Lights\""));
  const std::string before = Read("case.xml");
  const RunResult result = Run({"show", "case.xml"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(result.output,
            "Order: elements\n"
            "  @number: string = \"A-20417\"\n"
            "  @currency: enumeration = \"EUR\"\n"
            "  @status: enumeration = \"new\"\n"
            "  Header: elements\n"
            "    Placed: dateTime = \"2024-05-17T09:30:00\"\n"
            "    Customer: string = \"Harbour \\\"Lights\\\"\"\n"
            "    - WantedBy [0..1], optional\n"
            "    - Rush [0..1], optional\n"
            "  Delivery: elements\n"
            "    Pickup: string [0..1] = \"Depot\"\n"
            "    - Courier, alternative\n"
            "  Items: elements\n"
            "    Item: elements [1..*]\n"
            "      @sku: string = \"LMP-100\"\n"
            "      @unit: enumeration = \"each\"\n"
            "      - @gift, optional\n"
            "      Description: string = \"Deck lamp\"\n"
            "      Quantity: int = \"4\"\n"
            "      Price: fixed.14.4 = \"129.5000\"\n"
            "      - Serial [0..*], optional\n"
            "      - Note [0..*], optional\n");
  EXPECT_EQ(Read("case.xml"), before);
}

TEST_F(KxmsgRead, ShowHasColoursWherePeopleReadIt) {
  RunOptions terminal;
  terminal.onTerminal = true;
  const auto hasColours = [](const RunResult& result) {
    EXPECT_EQ(result.status, 0);
    return result.output.find("\x1b[") != std::string::npos;
  };
  EXPECT_FALSE(hasColours(Run({"show", "order.xml"})));
  EXPECT_TRUE(hasColours(Run({"show", "--color", "always", "order.xml"})));
  EXPECT_TRUE(hasColours(Run({"show", "order.xml"}, terminal)));
  EXPECT_FALSE(hasColours(Run({"show", "--color", "never", "order.xml"}, terminal)));
  terminal.environment = {"NO_COLOR=1"};
  EXPECT_FALSE(hasColours(Run({"show", "order.xml"}, terminal)));
  EXPECT_TRUE(hasColours(Run({"show", "--color", "always", "order.xml"}, terminal)));
  terminal.environment = {"TERM=dumb"};
  EXPECT_FALSE(hasColours(Run({"show", "order.xml"}, terminal)));
}

TEST_F(KxmsgRead, ShowCutsLongValuesUnlessAskedForAll) {
  const std::string name(100, 'n');
  Write("case.xml", Replaced(OrderText("A"), "Depot", name));
  const std::string cut = "\"" + name.substr(0, 60) + "...\"";
  EXPECT_NE(Run({"show", "case.xml"}).output.find(cut), std::string::npos);
  EXPECT_NE(Run({"show", "--full", "case.xml"}).output.find('"' + name + '"'), std::string::npos);
}

TEST_F(KxmsgRead, ShowKnowsEveryKindOfContent) {
  Write("schemas/kinds.xdr", R"(<Schema xmlns="urn:schemas-microsoft-com:xml-data"
    xmlns:dt="urn:schemas-microsoft-com:datatypes">
  <ElementType name="e" content="empty" model="closed"/>
  <ElementType name="t" content="textOnly" model="closed"/>
  <ElementType name="n" content="textOnly" model="closed" dt:type="i4"/>
  <ElementType name="m" content="mixed" model="closed"><element type="t" minOccurs="0"/></ElementType>
  <ElementType name="g" content="eltOnly" model="closed" order="seq">
    <group order="one"><element type="e"/><element type="t"/></group>
    <group order="seq" minOccurs="0"><element type="n"/></group>
  </ElementType>
  <ElementType name="r" content="eltOnly" model="closed" order="seq">
    <element type="e"/><element type="t"/><element type="n"/><element type="m" maxOccurs="*"/>
    <element type="g"/>
  </ElementType></Schema>)");
  Write("case.xml",
        "<r xmlns=\"x-schema:kinds.xdr\"><e/><t>a&#10;b</t><n>7</n><m>x<t>y</t></m><m>z</m>"
        "<g><t/></g></r>");
  EXPECT_EQ(Run({"show", "case.xml"}).output,
            "r: elements\n"
            "  e: empty\n"
            "  t: text = \"a\\nb\"\n"
            "  n: i4 = \"7\"\n"
            "  m: mixed [1..*]\n"
            "    t: text [0..1] = \"y\"\n"
            "  m: mixed [1..*] = \"z\"\n"
            "    - t [0..1], optional\n"
            "  g: elements\n"
            "    t: text = \"\"\n"
            "    - e, alternative\n"
            "    - n, optional\n");
}

TEST_F(KxmsgRead, ShowTellsWhatItCannotKnowOfAnotherSchemasElements) {
  Write("schemas/a.xdr", R"(<Schema xmlns="urn:schemas-microsoft-com:xml-data">
  <ElementType name="o" content="textOnly" model="closed"/>
  <ElementType name="r" content="eltOnly" model="open"><element type="o" minOccurs="0"/></ElementType>
  <ElementType name="top" content="eltOnly" model="open" order="many">
    <element type="r" minOccurs="0"/></ElementType></Schema>)");
  Write("schemas/b.xdr", R"(<Schema xmlns="urn:schemas-microsoft-com:xml-data">
  <ElementType name="q" content="textOnly" model="closed"/>
  <ElementType name="r" content="eltOnly" model="closed">
    <element type="q" minOccurs="0" maxOccurs="*"/></ElementType></Schema>)");
  Write("case.xml", "<top xmlns=\"x-schema:a.xdr\"><r/><r xmlns=\"x-schema:b.xdr\"/></top>");
  const RunResult result = Run({"show", "case.xml"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(result.output,
            "top: elements\n"
            "  r: elements [0..1]\n"
            "    - o [0..1], optional\n"
            "  r: elements [0..1]\n"
            "    - child 1, not known: error 0x800A0005: Invalid procedure call or argument\n");
}

TEST_F(KxmsgRead, ShowTellsOfElementsThatNoSchemaDeclares) {
  Write("schemas/open.xdr", R"(<Schema xmlns="urn:schemas-microsoft-com:xml-data">
  <ElementType name="t" content="textOnly" model="closed"/>
  <ElementType name="e" content="eltOnly" model="open" order="many">
    <element type="t" minOccurs="0"/></ElementType>
  <ElementType name="r" content="mixed" model="open">
    <element type="e" maxOccurs="*"/></ElementType></Schema>)");
  Write("case.xml",
        "<r xmlns=\"x-schema:open.xdr\" xmlns:q=\"urn:q\">a<q:z>b<q:y/></q:z><e><q:z/></e><q:z/>"
        "<e><t>c</t></e>d<q:x/></r>");
  const std::string before = Read("case.xml");
  const RunResult result = Run({"show", "case.xml"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(result.output,
            "r: mixed\n"
            "  (1 more, with a prefix or declaring a namespace)\n"
            "  (child 1, not declared)\n"
            "  e: elements [1..*]\n"
            "    (child 1, not declared)\n"
            "    - t [0..1], optional\n"
            "  (child 3, not declared)\n"
            "  e: elements [1..*]\n"
            "    t: text [0..1] = \"c\"\n"
            "  (child 5, not declared)\n");
  EXPECT_EQ(Read("case.xml"), before);
}

TEST_F(KxmsgRead, GetPrintsWhatThePatternFinds) {
  const struct {
    Words words;
    std::string output;
    const char* why;
  } rows[] = {
      {{"get", "order.xml", "Header/Customer"}, "Harbour Lights & Sons\n", "one"},
      {{"get", "order.xml", "Items/Item/Quantity"}, "4\n60\n2\n", "several, in order"},
      {{"get", "order.xml", "Items/Item[@sku='RPE-025']/Note"},
       "Cut into two pieces.\n",
       "a condition"},
      {{"get", "order.xml", "//Serial"}, "0c9d2f1e-77aa-4b0e-8f6d-3b1c5a9e4d20\n", "anywhere"},
      {{"get", "--null", "order.xml", "Items/Item/Quantity"},
       std::string("4\0"
                   "60\0"
                   "2\0",
                   7),
       "NUL between them"},
      {{"get", "--xml", "order.xml", "Header/Rush"},
       "<Rush xmlns=\"ref-schema:\">1</Rush>\n",
       "the element"},
  };
  for (const auto& row : rows) {
    const RunResult result = Run(row.words);
    EXPECT_EQ(result.output, row.output) << row.why;
    EXPECT_EQ(result.status, 0) << row.why << result.errors;
    EXPECT_EQ(result.errors, "") << row.why;
  }
}

TEST_F(KxmsgRead, GetFailsWhereNothingIsFoundOrThePatternIsNone) {
  const RunResult none = Run({"get", "order.xml", "Header/Nobody"});
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(none.output, "");
  EXPECT_EQ(none.errors,
            "kxmsg: order.xml: error 0x8004099B: The pattern \"Header/Nobody\" finds nothing.\n");
  const RunResult wrong = Run({"get", "order.xml", "Header["});
  EXPECT_EQ(wrong.status, 1);
  EXPECT_EQ(wrong.errors.substr(0, 36), "kxmsg: order.xml: error 0x80004005: ") << wrong.errors;
  const RunResult noValue = Run({"get", "order.xml", "Header"});
  EXPECT_EQ(noValue.status, 1);
  EXPECT_EQ(noValue.errors.substr(0, 36), "kxmsg: order.xml: error 0x80040996: ") << noValue.errors;
  const RunResult bad = Run({"get", "order.xdr", "x"});
  EXPECT_EQ(bad.status, 1);
  EXPECT_EQ(bad.output, "");
}

TEST_F(KxmsgRead, GetGivesUtf8AndShowsATerminalNothingThatSteersIt) {
  Write("case.xml", OrderText("Caf\xE9 \x9B[31m"));
  EXPECT_EQ(Run({"get", "case.xml", "Header/Customer"}).output, "Caf\xC3\xA9 \xE2\x80\xBA[31m\n");
  Write("c1.xml", OrderText("\x90 a"));
  EXPECT_EQ(Run({"get", "c1.xml", "Header/Customer"}).output, "\xC2\x90 a\n");
  RunOptions terminal;
  terminal.onTerminal = true;
  EXPECT_EQ(Run({"get", "c1.xml", "Header/Customer"}, terminal).output, "\\u{90} a\n");
}

TEST_F(KxmsgRead, SchemaListsWhatItDeclares) {
  const RunResult result = Run({"schema", "order.xdr"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.errors, "");
  for (const char* part :
       {"Placed: dateTime, closed\n", "Customer: string, closed, at most 60 long\n",
        "Delivery: elements, one, closed\n  Courier\n  Pickup [0..1]\n",
        "  @currency: enumeration (EUR GBP SEK USD), default \"EUR\"\n", "  Serial [0..*]\n",
        "Order: elements, seq, closed\n  \"The whole order.\"\n"}) {
    EXPECT_NE(result.output.find(part), std::string::npos) << part << result.output;
  }
  const RunResult json = Run({"schema", "--json", "order.xdr"});
  EXPECT_EQ(json.status, 0);
  EXPECT_EQ(json.output.substr(0, 14), "{\"location\": \"");
  EXPECT_EQ(json.output.substr(json.output.size() - 4), "\n]}\n");
}

TEST_F(KxmsgRead, SchemasThatAreNoneAreRefused) {
  Write("bad.xdr", "<Schema");
  Write("none.xdr", "<a/>");
  Write("plain", "<a/>");
  const struct {
    Words words;
    const char* start;
  } rows[] = {
      {{"schema", "missing.xdr"}, "kxmsg: missing.xdr"},
      {{"schema", "bad.xdr"}, "kxmsg: bad.xdr:1:"},
      {{"schema", "none.xdr"}, "kxmsg: none.xdr"},
      {{"schema", "plain"}, "kxmsg: plain: error 0x800A0034: "},
      {{"schema", "-"}, "kxmsg: standard input: error 0x800A0034: "},
      {{"schema", "schemas"}, "kxmsg: schemas: error "},
      {{"new", "missing.xdr"}, "kxmsg: missing.xdr"},
      {{"new", "order.xdr", "--root", "Nobody"}, "kxmsg: order.xdr: error 0x8004099F: "},
  };
  for (const auto& row : rows) {
    const RunResult result = Run(row.words);
    EXPECT_EQ(result.status, 1) << row.start;
    EXPECT_EQ(result.output, "") << row.start;
    EXPECT_EQ(result.errors.substr(0, std::string(row.start).size()), row.start);
    EXPECT_NE(result.errors.find(": error 0x"), std::string::npos) << result.errors;
  }
}

TEST_F(KxmsgRead, HeaderListsAllPropertiesOrThoseThatAreNamed) {
  const RunResult all = Run({"header", "order.xml"});
  EXPECT_EQ(all.status, 0);
  EXPECT_EQ(all.output,
            "Version=1.0.0\nMsgType=Order\nSubType=\nClass=Order\nEncoding=iso-8859-1\n"
            "TimeStamp=2024-05-17 09:30:00\nUniqueID=5b0e64f2-8a1d-4c37-9e55-0d7c21b8a6f3\n"
            "SchemaFile=order.xdr\nDeliveryOptions=0\nDeliveryResult=0\nTag=\n");
  EXPECT_EQ(Run({"header", "order.xml", "uniqueid", "Version"}).output,
            "5b0e64f2-8a1d-4c37-9e55-0d7c21b8a6f3\n1.0.0\n");
}

TEST_F(KxmsgRead, AHeaderThatCannotBeReadKeepsNothingElseFromBeingListed) {
  Write("case.xml", Replaced(OrderText("A"), "deliveryOptions=\"0\"", "deliveryOptions=\"many\""));
  const RunResult result = Run({"header", "case.xml"});
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.output.find("\nDeliveryResult=0\n"), std::string::npos);
  EXPECT_EQ(result.output.find("DeliveryOptions"), std::string::npos);
  EXPECT_EQ(result.errors.substr(0, 35), "kxmsg: case.xml: error 0x800A000D: ") << result.errors;
}

}  // namespace
}  // namespace kxmsg
