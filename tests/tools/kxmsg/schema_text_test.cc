// Schemas as people and programs read them.
#include "kxmsg/schema_text.h"

#include <gtest/gtest.h>

namespace kxmsg {
namespace {

kx::SchemaElement Example() {
  kx::SchemaElement element;
  element.name = "Order";
  element.description = "The\n whole \"order\".";
  element.content = "eltOnly";
  element.order = "seq";
  element.open = false;
  element.attributes = {{"currency", "enumeration", false, "EUR", {"EUR", "GBP"}},
                        {"number", "", true, "", {}}};
  element.groups = {{"one", "0", "1"}, {"seq", "1", "1"}};
  element.children = {
      {"Header", "1", "1", 0}, {"Item", "0", "*", 0}, {"A", "1", "1", 1}, {"B", "1", "2", 2}};
  return element;
}

TEST(SchemaText, TellsAllThatAnElementTypeDeclares) {
  EXPECT_EQ(SchemaElementText(Example()),
            "Order: elements, seq, closed\n"
            "  \"The whole \"order\".\"\n"
            "  @currency: enumeration (EUR GBP), default \"EUR\"\n"
            "  @number: string, required\n"
            "  Header\n"
            "  Item [0..*]\n"
            "  A, in group 1 (one [0..1])\n"
            "  B [1..2], in group 2 (seq)\n");
}

TEST(SchemaText, TellsWhatTextsMayBe) {
  kx::SchemaElement element;
  element.name = "Customer";
  element.content = "textOnly";
  element.dataType = "string";
  element.minLength = 1;
  element.maxLength = 60;
  EXPECT_EQ(SchemaElementText(element),
            "Customer: string, open, at least 1 long, at most 60 long\n");
  element.dataType = "";
  element.minLength = element.maxLength = std::nullopt;
  element.topLevel = false;
  EXPECT_EQ(SchemaElementText(element), "Customer: text, open, inside another element type\n");
  element.content = "mixed";
  element.topLevel = true;
  EXPECT_EQ(SchemaElementText(element), "Customer: mixed, open\n");
}

TEST(SchemaText, JsonHasEveryMember) {
  EXPECT_EQ(SchemaElementJson(Example()),
            "{\"name\": \"Order\", \"description\": \"The\\u000A whole \\\"order\\\".\", "
            "\"content\": \"eltOnly\", \"order\": \"seq\", \"open\": false, \"topLevel\": true, "
            "\"dataType\": \"\", \"minLength\": null, \"maxLength\": null, "
            "\"attributes\": [{\"name\": \"currency\", \"dataType\": \"enumeration\", "
            "\"required\": false, \"default\": \"EUR\", \"values\": [\"EUR\", \"GBP\"]}, "
            "{\"name\": \"number\", \"dataType\": \"\", \"required\": true, \"default\": \"\", "
            "\"values\": []}], "
            "\"groups\": [{\"order\": \"one\", \"minOccurs\": \"0\", \"maxOccurs\": \"1\"}, "
            "{\"order\": \"seq\", \"minOccurs\": \"1\", \"maxOccurs\": \"1\"}], "
            "\"children\": [{\"name\": \"Header\", \"minOccurs\": \"1\", \"maxOccurs\": \"1\", "
            "\"group\": 0}, {\"name\": \"Item\", \"minOccurs\": \"0\", \"maxOccurs\": \"*\", "
            "\"group\": 0}, {\"name\": \"A\", \"minOccurs\": \"1\", \"maxOccurs\": \"1\", "
            "\"group\": 1}, {\"name\": \"B\", \"minOccurs\": \"1\", \"maxOccurs\": \"2\", "
            "\"group\": 2}]}");
}

TEST(SchemaText, OccurrencesAreToldUnlessOnce) {
  EXPECT_EQ(OccurrenceText("1", "1"), "");
  EXPECT_EQ(OccurrenceText("0", "1"), "[0..1]");
  EXPECT_EQ(OccurrenceText("1", "*"), "[1..*]");
}

}  // namespace
}  // namespace kxmsg
