// kxmsg edit: what a script does to a message, and that one that fails does nothing.
#include "kxmsg/manual.h"
#include "tools/kxmsg/run_program.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kxmsg {
namespace {

using KxmsgScript = ProgramTest;
using Words = std::vector<std::string>;

constexpr const char* kPaymentSchema = R"(<Schema xmlns="urn:schemas-microsoft-com:xml-data"
    xmlns:dt="urn:schemas-microsoft-com:datatypes">
  <AttributeType name="version" default="1.0" required="yes"/>
  <AttributeType name="note"/>
  <ElementType name="Card" content="textOnly" model="closed"/>
  <ElementType name="Expiry" content="textOnly" model="closed"/>
  <ElementType name="Iban" content="textOnly" model="closed"/>
  <ElementType name="Part" content="eltOnly" model="closed" order="many">
    <attribute type="version"/><attribute type="note"/>
    <element type="Part" minOccurs="0" maxOccurs="*"/></ElementType>
  <ElementType name="Payment" content="eltOnly" model="closed" order="one">
    <group order="seq"><element type="Card"/><element type="Expiry"/></group>
    <group order="seq"><element type="Iban"/></group></ElementType>
  <ElementType name="Bill" content="eltOnly" model="closed" order="seq">
    <element type="Payment" minOccurs="0" maxOccurs="*"/>
    <element type="Part" minOccurs="0" maxOccurs="*"/></ElementType></Schema>)";

std::string BillText(const std::string& content) {
  return "<Bill xmlns=\"x-schema:payment.xdr\">" + content + "</Bill>";
}

TEST_F(KxmsgScript, TheSampleOfTheManualDoesWhatItSays) {
  std::string sample;
  for (const CommandText& command : Commands()) {
    if (command.command == Command::kEdit) sample = command.sample;
  }
  Write("changes.txt", sample);
  const RunResult result = Run({"edit", "order.xml", "changes.txt"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(Run({"get", "order.xml", "Items/Item/Description"}).output,
            "Deck lamp, brass\nSpare bulbs\nStorm lantern, 12\"\n");
  EXPECT_EQ(Run({"get", "order.xml", "Items/Item[end()]/*"}).output,
            "Storm lantern, 12\"\n4\n39.50\nHandle with care.\n");
  EXPECT_EQ(Run({"get", "order.xml", "Items/Item/@sku"}).output, "LMP-100\nBLB-007\nLAN-012\n");
  EXPECT_EQ(Run({"get", "order.xml", "Items/Item/@unit"}).output, "each\neach\neach\n");
  EXPECT_EQ(Run({"get", "order.xml", "Items/Item/@gift"}).status, 1);
  EXPECT_EQ(Run({"check", "order.xml"}).status, 0);
}

TEST_F(KxmsgScript, CommandsWorkOnEverythingThatTheirPatternFinds) {
  const struct {
    const char* script;
    const char* pattern;
    const char* printed;
    const char* why;
  } rows[] = {
      {"set Items/Item/Quantity 7", "Items/Item/Quantity", "7\n7\n7\n", "set"},
      {"set Items/Item/@unit box", "Items/Item/@unit", "box\nbox\nbox\n", "set of attributes"},
      {"set Items/Item/@gift 0", "Items/Item/@gift", "0\n", "set adds none"},
      {"attr Items/Item gift 0", "Items/Item/@gift", "0\n0\n0\n", "attr adds some"},
      {"attr Items/Item unit", "Items/Item/@unit", "each\nmetre\nbox\n", "attr without value"},
      {"add Items/Item Note x", "Items/Item/Note",
       "x\nCut into two pieces.\nx\nWrap <separately>.\nx\n", "add"},
      {"add Items\nadd Items", "Items/Item/@sku", "LMP-100\nRPE-025\nBLB-007\n\n\n",
       "add of the only child"},
      {"add Items/Item[0] Note ''", "Items/Item[0]/Note", "\n", "add of nothing"},
      {"remove Items/Item[Quantity < 10]", "Items/Item/@sku", "RPE-025\n", "remove"},
      {"remove //Note\nadd Items/Item Note y", "//Note", "y\ny\ny\n", "remove at any depth"},
      {"remove Items/Item[0]\nremove Items/Item[0]", "Items/Item/@sku", "BLB-007\n",
       "positions count anew"},
      {"remove Items/Item/@gift\nattr Items/Item[1] gift 1", "Items/Item[@gift]/@sku", "RPE-025\n",
       "remove of attributes"},
      {"attr . status shipped", "@status", "shipped\n", "the content root itself"},
      {"set Header/Customer \"Caf\xC3\xA9 \\\"\\u{20AC}\\\"\"", "Header/Customer",
       "Caf\xC3\xA9 \"\xE2\x82\xAC\"\n", "letters beyond ASCII"},
  };
  const std::string order = Read("order.xml");
  for (const auto& row : rows) {
    Write("case.xml", order);
    const RunResult result = Run({"edit", "case.xml"}, {.input = row.script});
    EXPECT_EQ(result.status, 0) << row.why << ": " << result.errors;
    EXPECT_EQ(Run({"get", "case.xml", row.pattern}).output, row.printed) << row.why;
    EXPECT_EQ(Run({"check", "case.xml"}).status, 0) << row.why;
  }
}

TEST_F(KxmsgScript, GroupPutsOneAlternativeInThePlaceOfAnother) {
  Write("schemas/payment.xdr", kPaymentSchema);
  Write("bill.xml", BillText("<Payment><Card>1</Card><Expiry>2</Expiry></Payment>"
                             "<Payment><Iban>3</Iban></Payment>"));
  const RunResult result = Run({"edit", "bill.xml", "-e", "group Payment 2", "-e",
                                "set Payment[0]/Iban DE00", "-e", "group Payment[1] 1"});
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_EQ(Run({"get", "bill.xml", "Payment/*"}).output, "DE00\n\n\n");
  EXPECT_EQ(Run({"get", "bill.xml", "Payment/Card"}).output, "\n");
}

TEST_F(KxmsgScript, RemoveTakesWhatStandsInAnotherThatIsRemoved) {
  Write("schemas/payment.xdr", kPaymentSchema);
  Write("bill.xml", BillText("<Part><Part><Part/></Part><Part/></Part><Part/>"));
  EXPECT_EQ(Run({"edit", "bill.xml", "-e", "remove //Part"}).status, 0);
  EXPECT_EQ(Run({"get", "bill.xml", "//Part"}).status, 1);
  EXPECT_EQ(Run({"check", "bill.xml"}).status, 0);
}

TEST_F(KxmsgScript, ReadOnlyAttributesKeepTheirValue) {
  Write("schemas/payment.xdr", kPaymentSchema);
  Write("bill.xml", BillText("<Part/>"));
  EXPECT_EQ(Run({"edit", "bill.xml", "-e", "add . Part", "-e", "attr Part note a"}).status, 0);
  EXPECT_EQ(Run({"get", "bill.xml", "Part/@version"}).output, "1.0\n1.0\n");
  EXPECT_EQ(Run({"get", "bill.xml", "Part/@note"}).output, "a\na\n");
  for (const char* value : {"1.0", "2.0"}) {
    const RunResult result =
        Run({"edit", "bill.xml", "-e", "set Part/@version " + std::string(value)});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors,
              "kxmsg: -e:1:19: error 0x800409A9: Attribute 'version' is read-only and must contain "
              "the value '1.0.'\n");
  }
}

TEST_F(KxmsgScript, AReadOnlyAttributeThatIsAbsentIsAddedWithItsOwnValueOnly) {
  Write("schemas/first.xdr", R"(<Schema xmlns="urn:schemas-microsoft-com:xml-data">
  <AttributeType name="version" default="1.0" required="yes"/>
  <ElementType name="r" content="eltOnly" model="open"/>
  <ElementType name="top" content="eltOnly" model="open" order="many">
    <element type="r" minOccurs="0"/></ElementType></Schema>)");
  Write("schemas/second.xdr", R"(<Schema xmlns="urn:schemas-microsoft-com:xml-data">
  <AttributeType name="version"/>
  <ElementType name="r" content="eltOnly" model="open"><attribute type="version"/></ElementType>
  </Schema>)");
  const std::string text =
      "<top xmlns=\"x-schema:first.xdr\"><r xmlns=\"x-schema:second.xdr\"/></top>";
  const struct {
    const char* command;
    const char* error;  // empty: it is added
  } rows[] = {{"attr r version 1.0", ""},
              {"attr r version", ""},
              {"attr r version 2.0", "kxmsg: -e:1:16: error 0x800409A9: "},
              {"attr r version ''", "kxmsg: -e:1:16: error 0x800409A9: "}};
  for (const auto& row : rows) {
    Write("case.xml", text);
    const RunResult result = Run({"edit", "case.xml", "-e", row.command});
    const std::string error = row.error;
    EXPECT_EQ(result.status, error.empty() ? 0 : 1) << row.command;
    EXPECT_EQ(result.errors.substr(0, error.size()), error) << row.command << result.errors;
    EXPECT_EQ(Run({"get", "case.xml", "r/@version"}).output, error.empty() ? "1.0\n" : "");
  }
}

TEST_F(KxmsgScript, AttributesWithAPrefixAreReadAndNotChanged) {
  Write("schemas/open.xdr", R"(<Schema xmlns="urn:schemas-microsoft-com:xml-data">
  <AttributeType name="note"/><ElementType name="r" content="textOnly" model="open">
    <attribute type="note"/></ElementType></Schema>)");
  Write("case.xml", "<r xmlns=\"x-schema:open.xdr\" xmlns:q=\"urn:q\" note=\"a\" q:note=\"b\"/>");
  EXPECT_EQ(Run({"get", "case.xml", "@q:note"}).output, "b\n");
  const std::string before = Read("case.xml");
  for (const char* command : {"remove @q:note", "set @q:note c", "attr . q:note c",
                              "remove @xmlns:q", "remove @xmlns", "set @xmlns c"}) {
    const RunResult result = Run({"edit", "case.xml", "-e", command});
    EXPECT_EQ(result.status, 1) << command;
    EXPECT_NE(result.errors.find("error 0x800409A6: "), std::string::npos) << result.errors;
    EXPECT_EQ(Read("case.xml"), before) << command;
  }
  EXPECT_EQ(Run({"edit", "case.xml", "-e", "remove @note"}).status, 0);
  EXPECT_EQ(Run({"get", "case.xml", "@q:note"}).output, "b\n");
  EXPECT_EQ(Run({"get", "case.xml", "@note"}).status, 1);
}

TEST_F(KxmsgScript, WhatFailsIsToldWithItsPlaceAndLeavesTheFileAsItWas) {
  const std::string before = Read("order.xml");
  const struct {
    const char* line;
    const char* told;  // behind the name and the line of the script
    const char* why;
  } rows[] = {
      {"set Nobody 1", "5: error 0x8004099B: The pattern \"Nobody\" finds nothing.",
       "nothing found"},
      {"set Items/Item/@nobody 1",
       "5: error 0x8004099B: The pattern \"Items/Item/@nobody\" finds nothing.",
       "no attribute found"},
      {"set Items/Item[ ] 1", "5: error 0x80004005: ", "no pattern"},
      {"remove Items/Item/text()",
       "8: error 0x800A005B: The pattern \"Items/Item/text()\" finds what is no element", "texts"},
      {"set Items/Item/Quantity many", "25: error 0x80040997: ", "a value of another type"},
      {"set Header x", "12: error 0x80040996: ", "an element without a value"},
      {"add Header Nobody", "12: error 0x8004099A: Invalid child 'Nobody'", "an undeclared child"},
      {"add Header", "5: error 0x8004099A: Invalid child '<Unspecified>'", "several are declared"},
      {"add Header Rush 1", "17: error 0x80040999: ", "a second one"},
      {"add Header/Customer Rush", "21: error 0x80040998: ", "an element without children"},
      {"add Items/Item/@sku Note", "5: error 0x80040998: The pattern finds attributes; ",
       "an attribute has no children"},
      {"attr Items/Item nobody 1", "24: error 0x800409A6: ", "an undeclared attribute"},
      {"attr Items/Item unit furlong", "22: error 0x800409A8: ", "a value outside the enumeration"},
      {"attr Items/Item gift perhaps", "22: error 0x80004005: ", "a value of another type"},
      {"remove Header/Customer", "8: error 0x8004099C: ", "a required child"},
      {"remove Items/Item", "8: error 0x8004099C: ", "the last of a required child"},
      {"remove .", "8: error 0x8004099C: The content root cannot be removed.", "the content root"},
      {"remove Items/Item/@sku", "8: error 0x800409AB: ", "a required attribute"},
      {"remove @currency", "8: error 0x800409AB: ", "an attribute with a default"},
      {"group Header 1", "14: error 0x8004099E: ", "a group that is not there"},
      {"frob Items", "1: error 0x800A0005: There is no command \"frob\"", "no command"},
  };
  for (const auto& row : rows) {
    Write("changes.txt", std::string("set Items/Item/Quantity 7\n# changes\n") + row.line + '\n');
    const RunResult result = Run({"edit", "order.xml", "changes.txt"});
    EXPECT_EQ(result.status, 1) << row.why;
    EXPECT_EQ(result.output, "") << row.why;
    const std::string start = std::string("kxmsg: changes.txt:3:") + row.told;
    EXPECT_EQ(result.errors.substr(0, start.size()), start) << row.why;
    EXPECT_EQ(result.errors.find('\n'), result.errors.size() - 1) << row.why;
    EXPECT_EQ(Read("order.xml"), before) << row.why;
  }
}

TEST_F(KxmsgScript, AMessageThatWouldNotLoadAgainIsNotWritten) {
  const std::string before = Read("order.xml");
  const Words words = {"edit", "order.xml", "-e", "attr . number X1"};  // two letters too few
  const RunResult result = Run(words);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.errors.substr(0, 17), "kxmsg: order.xml:") << result.errors;
  EXPECT_NE(result.errors.find("error 0x8004099D: "), std::string::npos) << result.errors;
  EXPECT_EQ(Read("order.xml"), before);
  Words forced = words;
  forced.insert(forced.begin() + 1, "--force");
  EXPECT_EQ(Run(forced).status, 0);
  EXPECT_NE(Read("order.xml").find("number=\"X1\""), std::string::npos);
}

TEST_F(KxmsgScript, WhatARunAddsIsBounded) {
  Write("schemas/payment.xdr", R"(<Schema xmlns="urn:schemas-microsoft-com:xml-data">
  <ElementType name="Leaf" content="textOnly" model="closed"/>
  <ElementType name="Pair" content="eltOnly" model="closed" order="seq">
    <element type="Leaf" minOccurs="1" maxOccurs="1"/><element type="Leaf2"/></ElementType>
  <ElementType name="Leaf2" content="textOnly" model="closed"/>
  <ElementType name="Choice" content="eltOnly" model="closed" order="one">
    <group order="seq"><element type="Leaf"/></group>
    <group order="seq"><element type="Pair"/></group></ElementType>
  <ElementType name="Part" content="mixed" model="closed" order="many">
    <element type="Part" minOccurs="0" maxOccurs="*"/>
    <element type="Pair" minOccurs="0" maxOccurs="*"/></ElementType>
  <ElementType name="Bill" content="eltOnly" model="closed" order="many">
    <element type="Part" minOccurs="0" maxOccurs="*"/>
    <element type="Choice" minOccurs="0" maxOccurs="*"/></ElementType></Schema>)");
  const std::string bill = BillText("<Part/><Choice><Leaf/></Choice>");
  const std::string thirtyNine = [] {
    std::string lines;
    for (int i = 0; i < 39; ++i) lines += "add .//Part Part\n";
    return lines;
  }();
  const std::string twenty =
      "add . Part\nadd .//Part Part\nadd .//Part Part\nadd .//Part Part\nadd . Part\nadd . Part\n"
      "add . Part\nadd . Part\n";
  const std::string adds = "error 0x800A0007: The script adds more than 20 elements; ";
  const std::string finds = "error 0x800A0007: The pattern finds more than 20 elements; ";
  const std::string values = "error 0x800A0007: The values that the script gives are longer than ";
  const struct {
    std::string script;
    std::string told;  // behind the name of the script; empty when it is done
    const char* why;
  } rows[] = {
      {"add Part Part\nadd .//Part Part\nadd .//Part Part\nadd .//Part Part", "", "1 + 2 + 4 + 8"},
      {thirtyNine, "5:5: " + adds, "1 + 2 + 4 + 8 + 16"},
      {"add Part Pair\nadd Part Pair\nadd Part Pair\nadd Part Pair\nadd Part Pair\nadd Part Pair",
       "", "6 times a pair of 2"},
      {"add Part Pair\nadd Part Pair\nadd Part Pair\nadd Part Pair\nadd Part Pair\nadd Part Pair\n"
       "add Part Pair",
       "7:10: " + adds, "7 times a pair of 2"},
      {"group Choice 2\ngroup Choice 1\ngroup Choice 2\ngroup Choice 1\ngroup Choice 2\n"
       "group Choice 1\ngroup Choice 2\ngroup Choice 2\ngroup Choice 2",
       "", "the group that is there adds nothing"},
      {"group Choice 2\ngroup Choice 1\ngroup Choice 2\ngroup Choice 1\ngroup Choice 2\n"
       "group Choice 1\ngroup Choice 2\ngroup Choice 1\ngroup Choice 2\ngroup Choice 1\n"
       "group Choice 2",
       "11:14: " + adds, "what a group removes is not given back"},
      {twenty + "set .//Part ''", "", "20 are found"},
      {twenty + "add . Part\nset (.//Part) ''", "10:5: " + finds, "21 are found"},
      {"set Part " + std::string(3000, 'x') + "\nset Part " + std::string(2000, 'x'),
       "2:5: " + values + "4000 bytes together; ", "values"},
      {"add Part Part\nadd Part Part\nset .//Part " + std::string(1500, 'x'),
       "3:5: " + values + "4000 bytes together; ", "a value for three elements"},
  };
  for (const auto& row : rows) {
    Write("bill.xml", bill);
    const RunResult result =
        Run({"edit", "--max-elements", "20", "--max-document-bytes", "4000", "bill.xml"},
            {.input = row.script + '\n'});
    EXPECT_EQ(result.status, row.told.empty() ? 0 : 1) << row.why << result.errors;
    const std::string start = row.told.empty() ? "" : "kxmsg: standard input:" + row.told;
    EXPECT_EQ(result.errors.substr(0, start.size()), start) << row.why << result.errors;
    EXPECT_EQ(Read("bill.xml") == bill, !row.told.empty()) << row.why;
  }
}

TEST_F(KxmsgScript, ComesFromAFileFromTheCommandLineOrFromStandardInput) {
  const std::string order = OrderText("A");
  const std::string script = "set Header/Customer B\nset Items/Item/Quantity 9\n";
  Write("changes", script);
  const struct {
    Words words;
    std::string input;
    const char* why;
  } rows[] = {
      {{"edit", "case.xml", "changes"}, "", "a file"},
      {{"edit", "case.xml"}, script, "standard input"},
      {{"edit", "case.xml", "-"}, script, "standard input by name"},
      {{"edit", "case.xml", "-e", "set Header/Customer B", "-e", "set Items/Item/Quantity 9"},
       "",
       "two commands"},
      {{"edit", "case.xml", "--edit", script}, "", "two lines in one"},
      {{"edit", "-", "changes", "-o", "case.xml"}, order, "the message from standard input"},
      {{"edit", "-", "-e", script, "-o", "case.xml"}, order, "the message, too"},
  };
  for (const auto& row : rows) {
    Write("case.xml", order);
    const RunResult result = Run(row.words, {.input = row.input});
    EXPECT_EQ(result.status, 0) << row.why << ": " << result.errors;
    EXPECT_EQ(result.output, "") << row.why;
    EXPECT_EQ(Run({"get", "case.xml", "Header/Customer | Items/Item/Quantity"}).output, "B\n9\n")
        << row.why;
  }
  const RunResult piped = Run({"edit", "-", "changes"}, {.input = order});
  EXPECT_EQ(piped.status, 0);
  EXPECT_EQ(Run({"get", "-", "Header/Customer"}, {.input = piped.output}).output, "B\n");
  Write("case.xml", order);
  EXPECT_EQ(Run({"edit", "case.xml", "changes", "-o", "-"}).output, piped.output);
  EXPECT_EQ(Read("case.xml"), order);
}

TEST_F(KxmsgScript, WhatCannotBeTheScriptIsRefused) {
  Write("case.xml", OrderText("A"));
  for (const Words& words : {Words{"edit", "-"}, Words{"edit", "-", "-"},
                             Words{"edit", "case.xml", "-", "-e", "remove a"},
                             Words{"edit", "case.xml", "changes", "-e", "remove a"}}) {
    const RunResult result = Run(words, {.input = OrderText("A")});
    EXPECT_EQ(result.status, 2) << words.size();
    EXPECT_EQ(result.errors.substr(0, 14), "kxmsg: error: ");
  }
  const struct {
    const char* script;
    const char* told;
  } rows[] = {
      {"nobody.txt", "kxmsg: nobody.txt: error 0x800A0035: "},
      {"schemas", "kxmsg: schemas: error 0x800A004B: "},
      {"/dev/zero", "kxmsg: /dev/zero: error 0x800A0007: Longer than 16777216 bytes.\n"},
      {"bad", "kxmsg: bad:2:1: error 0x800A0005: "},
  };
  Write("bad", "remove Items\nfrob\n");
  for (const auto& row : rows) {
    // Also before the message is looked for.
    for (const char* message : {"case.xml", "missing.xml"}) {
      const RunResult result = Run({"edit", message, row.script});
      EXPECT_EQ(result.status, 1) << row.script;
      EXPECT_EQ(result.errors.substr(0, std::string(row.told).size()), row.told);
    }
  }
  const RunResult second = Run({"edit", "case.xml", "-e", "remove Delivery/Pickup", "-e", "x"});
  EXPECT_EQ(second.errors.substr(0, 36), "kxmsg: -e:2:1: error 0x800A0005: The");
  const RunResult input = Run({"edit", "case.xml"}, {.input = "x"});
  EXPECT_EQ(input.errors.substr(0, 28), "kxmsg: standard input:1:1: e");
  EXPECT_EQ(Read("case.xml"), OrderText("A"));
}

TEST_F(KxmsgScript, AScriptWithoutCommandsChangesNothing) {
  for (const char* script : {"", "\r\n# nothing\r\n", "\xEF\xBB\xBF"}) {
    EXPECT_EQ(Run({"edit", "order.xml"}, {.input = script}).status, 0);
    EXPECT_EQ(Run({"get", "order.xml", "Items/Item/Quantity"}).output, "4\n60\n2\n");
  }
}

}  // namespace
}  // namespace kxmsg
