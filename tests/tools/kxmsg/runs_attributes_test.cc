// Attributes in kxmsg show, get and set: what is there, and what is declared and not there.
#include "tools/kxmsg/run_program.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kxmsg {
namespace {

using KxmsgAttributes = ProgramTest;
using Words = std::vector<std::string>;

TEST_F(KxmsgAttributes, ShowPrintsThemBelowTheirElement) {
  const std::string before = Read("order.xml");
  const std::string output = Run({"show", "order.xml"}).output;
  for (const char* part : {
           "Order: elements\n"
           "  @number: string = \"A-20417\"\n"
           "  @currency: enumeration = \"EUR\"\n"
           "  @status: enumeration = \"new\"\n"
           "  Header: elements\n",
           "    Item: elements [1..*]\n"
           "      @sku: string = \"LMP-100\"\n"
           "      @unit: enumeration = \"each\"\n"
           "      - @gift, optional\n"
           "      Description: string = \"Deck lamp, brass\"\n",
           "      @sku: string = \"BLB-007\"\n"
           "      @unit: enumeration = \"box\"\n"
           "      @gift: boolean = \"1\"\n"
           "      Description",
       }) {
    EXPECT_NE(output.find(part), std::string::npos) << part << output;
  }
  EXPECT_EQ(Read("order.xml"), before);
}

TEST_F(KxmsgAttributes, ShowKnowsEveryKindOfAttribute) {
  Write("schemas/kinds.xdr", R"(<Schema xmlns="urn:schemas-microsoft-com:xml-data"
    xmlns:dt="urn:schemas-microsoft-com:datatypes">
  <AttributeType name="plain"/>
  <AttributeType name="count" dt:type="i4"/>
  <AttributeType name="fixed" dt:type="string" default="1" required="yes"/>
  <AttributeType name="free" dt:type="date"/>
  <ElementType name="r" content="textOnly" model="open">
    <attribute type="plain"/><attribute type="count"/><attribute type="fixed"/>
    <attribute type="free"/></ElementType></Schema>)");
  Write("case.xml",
        "<r xmlns=\"x-schema:kinds.xdr\" xmlns:q=\"urn:q\" q:far=\"f\" q:plain=\"p\" "
        "count=\"7\" plain=\"a&#10;b\">v</r>");
  const RunResult result = Run({"show", "case.xml"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(result.output,
            "r: text = \"v\"\n"
            "  @plain = \"a\\nb\"\n"
            "  @count: i4 = \"7\"\n"
            "  @fixed: string = \"1\"\n"
            "  (3 more, with a prefix or declaring a namespace)\n"
            "  - @free, optional\n");
}

TEST_F(KxmsgAttributes, ShowTellsThoseThatAreThereFromThoseThatAreNotWhateverTheirNumber) {
  constexpr int kMany = 300;
  std::string types;
  std::string uses;
  std::string values;
  std::string present;
  std::string absent;
  for (int i = 0; i < kMany; ++i) {
    const std::string name = "a" + std::to_string(i);
    types += "<AttributeType name=\"" + name + "\" dt:type=\"i4\"/>";
    uses += "<attribute type=\"" + name + "\"/>";
    if (i % 3 == 0) {
      absent += "  - @" + name + ", optional\n";
    } else {
      values += ' ' + name + "=\"7\"";
      present += "  @" + name + ": i4 = \"7\"\n";
    }
  }
  Write("schemas/many.xdr",
        "<Schema xmlns=\"urn:schemas-microsoft-com:xml-data\" "
        "xmlns:dt=\"urn:schemas-microsoft-com:datatypes\">" +
            types + "<ElementType name=\"r\" content=\"empty\" model=\"closed\">" + uses +
            "</ElementType></Schema>");
  Write("case.xml", "<r xmlns=\"x-schema:many.xdr\"" + values + "/>");
  EXPECT_EQ(Run({"show", "case.xml"}).output, "r: empty\n" + present + absent);
}

TEST_F(KxmsgAttributes, ShowCutsTheirLongValuesToo) {
  Write("case.xml", Replaced(OrderText("A"), "LMP-100", std::string(100, 'n')));
  const std::string cut = "@sku: string = \"" + std::string(60, 'n') + "...\"";
  EXPECT_NE(Run({"show", "case.xml"}).output.find(cut), std::string::npos);
  EXPECT_NE(Run({"show", "--full", "case.xml"}).output.find('"' + std::string(100, 'n') + '"'),
            std::string::npos);
}

TEST_F(KxmsgAttributes, GetPrintsTheirValues) {
  const struct {
    Words words;
    std::string output;
    const char* why;
  } rows[] = {
      {{"get", "order.xml", "@number"}, "A-20417\n", "of the content root"},
      {{"get", "order.xml", "Items/Item/@sku"}, "LMP-100\nRPE-025\nBLB-007\n", "of every element"},
      {{"get", "order.xml", "//@sku"}, "LMP-100\nRPE-025\nBLB-007\n", "at any depth"},
      {{"get", "order.xml", "Items//@unit"}, "each\nmetre\nbox\n", "below"},
      {{"get", "order.xml", "Items/Item[Quantity > 3]/@unit"}, "each\nmetre\n", "a condition"},
      {{"get", "order.xml", "//@sku[. = 'RPE-025']"}, "RPE-025\n", "a condition on itself"},
      {{"get", "order.xml", "Items/Item/@gift"}, "1\n", "only those that are there"},
      {{"get", "order.xml", "(Items | Items/Item)/@unit"}, "each\nmetre\nbox\n", "a union"},
      {{"get", "order.xml", "Items/Item[@gift]/Quantity"}, "2\n", "elements by their attribute"},
      {{"get", "-0", "order.xml", "@number"}, std::string("A-20417\0", 8), "NUL behind it"},
  };
  for (const auto& row : rows) {
    const RunResult result = Run(row.words);
    EXPECT_EQ(result.output, row.output) << row.why;
    EXPECT_EQ(result.status, 0) << row.why << result.errors;
  }
}

TEST_F(KxmsgAttributes, GetFailsWhereNoneIsFoundOrThePatternIsMoreThanOnePath) {
  const struct {
    Words words;
    int status;
    const char* told;
    const char* why;
  } rows[] = {
      {{"get", "order.xml", "Items/Item/@nobody"},
       1,
       "kxmsg: order.xml: error 0x8004099B: The pattern \"Items/Item/@nobody\" finds nothing.\n",
       "none"},
      {{"get", "order.xml", "Items/@gift"},
       1,
       "kxmsg: order.xml: error 0x8004099B: ",
       "not on this one"},
      {{"get", "order.xml", "Items/Item/@*"},
       1,
       "kxmsg: order.xml: error 0x800A005B: The pattern \"Items/Item/@*\" finds what is no element",
       "all attributes"},
      {{"get", "order.xml", "@number | @status"},
       1,
       "kxmsg: order.xml: error 0x800A005B: The pattern",
       "two paths"},
      {{"get", "order.xml", "/KXMessage/@tag"},
       1,
       "kxmsg: order.xml: error 0x800A005B: The pattern",
       "of the envelope"},
      {{"get", "order.xml", "@number/@x"}, 1, "kxmsg: order.xml: error 0x80004005: ", "no pattern"},
      {{"get", "order.xml", "@number[x[]]"},
       1,
       "kxmsg: order.xml: error 0x80004005: Expected token 'NAME' found ']'. @number[x[-->]<--]\n",
       "no pattern, told as it was given"},
      {{"get", "--xml", "order.xml", "@number"},
       2,
       "kxmsg: error: --xml prints elements",
       "as XML"},
  };
  for (const auto& row : rows) {
    const RunResult result = Run(row.words);
    EXPECT_EQ(result.status, row.status) << row.why;
    EXPECT_EQ(result.output, "") << row.why;
    EXPECT_EQ(result.errors.substr(0, std::string(row.told).size()), row.told) << row.why;
  }
}

TEST_F(KxmsgAttributes, SetChangesThoseThatAreThereAndCreateAddsTheOthers) {
  EXPECT_EQ(Run({"set", "order.xml", "Items/Item/@gift", "0"}).status, 0);
  EXPECT_EQ(Run({"get", "order.xml", "Items/Item/@gift"}).output, "0\n");
  EXPECT_EQ(Run({"set", "order.xml", "Items/Item/@gift", "1", "--create"}).status, 0);
  EXPECT_EQ(Run({"get", "order.xml", "Items/Item/@gift"}).output, "1\n1\n1\n");
  EXPECT_EQ(Run({"set", "order.xml", "//@sku", "Caf\xC3\xA9 1"}).status, 0);
  EXPECT_EQ(Run({"get", "order.xml", "//@sku"}).output,
            "Caf\xC3\xA9 1\nCaf\xC3\xA9 1\nCaf\xC3\xA9 1\n");
  EXPECT_EQ(Run({"check", "order.xml"}).status, 0);
}

TEST_F(KxmsgAttributes, WhatGetPrintsSetTakes) {
  const struct {
    const char* path;
    const char* other;
  } rows[] = {{"@number", "B-777"},
              {"@status", "shipped"},
              {"Items/Item[2]/@gift", "0"},
              {"Items/Item[1]/@unit", "box"}};
  for (const auto& row : rows) {
    const std::string printed = Run({"get", "order.xml", row.path}).output;
    const std::string value = printed.substr(0, printed.size() - 1);
    ASSERT_NE(value, row.other);
    EXPECT_EQ(Run({"set", "order.xml", row.path, row.other}).status, 0) << row.path;
    EXPECT_EQ(Run({"get", "order.xml", row.path}).output, std::string(row.other) + '\n');
    EXPECT_EQ(Run({"set", "order.xml", row.path, value}).status, 0) << row.path;
    EXPECT_EQ(Run({"get", "order.xml", row.path}).output, printed) << row.path;
  }
}

TEST_F(KxmsgAttributes, TheirTextIsThatOfTheMessageWhateverTheirType) {
  const struct {
    const char* type;
    const char* text;
    const char* other;
  } rows[] = {{"boolean", "0", "1"},
              {"i4", "+07", "8"},
              {"i8", "9007199254740993", "-1"},
              {"r8", "1.50E2", "0.5"},
              {"fixed.14.4", "129.5000", "1.2"},
              {"date", "2024-05-17", "1999-12-31"},
              {"dateTime.tz", "2024-05-17T09:30:00+02:00", "2024-05-17T09:30:01+02:00"},
              {"time", "09:30:00", "23:59:59"},
              {"bin.base64", "QUJD", "REVG"},
              {"bin.hex", "414243", "444546"},
              {"char", "x", "y"},
              {"string", " s  t ", "u"}};
  for (const auto& row : rows) {
    Write("schemas/typed.xdr", Replaced(R"(<Schema xmlns="urn:schemas-microsoft-com:xml-data"
      xmlns:dt="urn:schemas-microsoft-com:datatypes"><AttributeType name="a" dt:type="@"/>
      <ElementType name="r" content="textOnly" model="closed"><attribute type="a"/></ElementType>
      </Schema>)",
                                        "@", row.type));
    Write("case.xml", Replaced("<r xmlns=\"x-schema:typed.xdr\" a=\"@\"/>", "@", row.text));
    const std::string line = std::string(row.text) + '\n';
    EXPECT_EQ(Run({"get", "case.xml", "@a"}).output, line) << row.type;
    EXPECT_EQ(Run({"set", "case.xml", "@a", row.other}).status, 0) << row.type;
    EXPECT_NE(Run({"get", "case.xml", "@a"}).output, line) << row.type;
    EXPECT_EQ(Run({"set", "case.xml", "@a", row.text}).status, 0) << row.type;
    EXPECT_EQ(Run({"get", "case.xml", "@a"}).output, line) << row.type;
    const std::string shown = std::string("@a: ") + row.type + " = \"" + row.text + "\"\n";
    EXPECT_NE(Run({"show", "case.xml"}).output.find(shown), std::string::npos) << row.type;
  }
}

TEST_F(KxmsgAttributes, WhatSetRefusesLeavesTheFileAsItWas) {
  const std::string before = Read("order.xml");
  const struct {
    Words words;
    const char* error;
    const char* why;
  } rows[] = {
      {{"set", "order.xml", "@status", "lost"}, "0x800409A8", "outside the enumeration"},
      {{"set", "order.xml", "Items/Item/@nobody", "1"}, "0x8004099B", "nothing found"},
      {{"set", "order.xml", "Header/@gift", "1"}, "0x8004099B", "nothing found on this element"},
      {{"set", "order.xml", "Header/@gift", "1", "--create"}, "0x800409A6", "not declared"},
      {{"set", "order.xml", "Nobody/@gift", "1", "--create"}, "0x8004099B", "no element"},
      {{"set", "order.xml", "//@nobody", "1", "--create"}, "0x8004099B", "at no certain place"},
      {{"set", "order.xml", "@number", "1"}, "0x8004099D", "too short, found when it is loaded"},
  };
  for (const auto& row : rows) {
    const RunResult result = Run(row.words);
    EXPECT_EQ(result.status, 1) << row.why;
    EXPECT_NE(result.errors.find(std::string("error ") + row.error + ": "), std::string::npos)
        << row.why << result.errors;
    EXPECT_EQ(Read("order.xml"), before) << row.why;
  }
}

}  // namespace
}  // namespace kxmsg
