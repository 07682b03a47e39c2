// The library's own errors: their numbers, texts and placeholders.
#include "core/msg_error.h"

#include "platform/runtime/counted.h"
#include "platform/runtime/error.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kx::core {
namespace {

struct CodeCase {
  std::int32_t code;
  std::uint32_t published;
  const char* text;
};

constexpr CodeCase kCodesInUse[] = {
    {kxMsgErrorNotInitialized, 0x80040992U, "Message not initialized."},
    {kxMsgErrorNoSchema, 0x80040993U, "XML document must supply a schema."},
    {kxMsgErrorLoadingSchema, 0x80040994U,
     "Error loading Schema: Error %%0, %%1  Line %%2, Pos %%3, Source:%%4"},
    {kxMsgErrorInvalidMessage, 0x80040995U,
     "The KXMessage tag is not valid for an KX message.  All required attributes must exist."},
    {kxMsgErrorNoValue, 0x80040996U, "Element does not have a value."},
    {kxMsgErrorInvalidValue, 0x80040997U, "Value does not conform to data type '%%0'."},
    {kxMsgErrorNoChildren, 0x80040998U, "This element cannot contain children."},
    {kxMsgErrorOneElement, 0x80040999U, "Only one element of this type is allowed."},
    {kxMsgErrorInvalidChild, 0x8004099AU, "Invalid child '%%0'"},
    {kxMsgErrorNoChild, 0x8004099BU, "Child %%0 does not exist."},
    {kxMsgErrorRequiredChild, 0x8004099CU, "This child is required."},
    {kxMsgErrorLoadingXML, 0x8004099DU,
     "Error loading XML document: Error %%0, %%1  Line %%2, Pos %%3, Source:%%4"},
    {kxMsgErrorInvalidGroup, 0x8004099EU, "Invalid group number specified."},
    {kxMsgErrorUnknownElement, 0x8004099FU,
     "An ElementType named \"%%0\" does not exist in schema."},
    {kxMsgErrorInvalidSchema, 0x800409A0U, "Invalid schema.  No ElementType definitions found."},
    {kxMsgErrorBadBinary, 0x800409A1U,
     "Error accessing binary data in element \"%%0\".  Either element is empty or is not a "
     "compatible data type."},
    {kxMsgErrorWrongNameSpace, 0x800409A2U,
     "Child '%%0' has a different namespace/schema than element '%%1'."},
    {kxMsgErrorInvalidOccurrence, 0x800409A3U, "Occurrence %%0 of child '%%1' does not exist."},
    {kxMsgErrorDuplicateSchema, 0x800409A4U,
     "Bad schema.  ElementType '%%0' exists more than once"},
    {kxMsgErrorInvalidMsgType, 0x800409A5U, "Invalid characters found in %%0."},
    {kxMsgErrorUnknownAttribute, 0x800409A6U,
     "An AttributeType named \"%%0\" does not exist in schema."},
    {kxMsgErrorNoAttribute, 0x800409A7U, "Attribute '%%0' does not exist."},
    {kxMsgErrorBadAttributeValue, 0x800409A8U,
     "Attribute '%%0' cannot have value '%%1' as it does not correspond to type '%%2.'"},
    {kxMsgErrorAttributeReadOnly, 0x800409A9U,
     "Attribute '%%0' is read-only and must contain the value '%%1.'"},
    {kxMsgErrorAttributeExists, 0x800409AAU, "Attribute '%%0' already exists."},
    {kxMsgErrorAttributeRequired, 0x800409ABU, "Attribute '%%0' is required."},
};

TEST(MsgError, EveryCodeInUseHasItsPublishedNumberAndText) {
  std::uint32_t expected = 0x80040992U;
  for (const CodeCase& row : kCodesInUse) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(static_cast<std::uint32_t>(row.code), row.published);
    EXPECT_EQ(row.published, expected++);
    EXPECT_EQ(MsgTextOf(row.code), row.text);
  }
  EXPECT_EQ(expected, 0x800409ACU);
}

TEST(MsgError, TheEarlierNumberingKeepsItsValues) {
  constexpr std::int32_t kEarlier[] = {
      kxMsgErrNotInitialized,  kxMsgErrNoSchema,       kxMsgErrLoadingSchema,
      kxMsgErrInvalidMessage,  kxMsgErrNoValue,        kxMsgErrInvalidValue,
      kxMsgErrNoChildren,      kxMsgErrOneElement,     kxMsgErrInvalidChild,
      kxMsgErrNoChild,         kxMsgErrRequiredChild,  kxMsgErrLoadingXML,
      kxMsgErrInvalidGroup,    kxMsgErrUnknownElement, kxMsgErrInvalidSchema,
      kxMsgErrBadBinary,       kxMsgErrWrongNameSpace, kxMsgErrInvalidOccurrence,
      kxMsgErrDuplicateSchema, kxMsgErrInvalidMsgType,
  };
  std::uint32_t expected = 0x80040000U;
  for (const std::int32_t code : kEarlier) {
    EXPECT_EQ(static_cast<std::uint32_t>(code), expected++);
    EXPECT_EQ(MsgTextOf(code), "");
  }
  EXPECT_EQ(expected, 0x80040014U);
}

struct RaiseCase {
  const char* why;
  std::int32_t code;
  std::vector<Variant> arguments;
  const char* description;
};

TEST(MsgError, RaisingGivesTheNumberTheSourceAndTheFilledText) {
  const RaiseCase rows[] = {
      {"a text without placeholders", kxMsgErrorNoSchema, {}, "XML document must supply a schema."},
      {"a parse error, no blank after Source:",
       kxMsgErrorLoadingXML,
       {-5, "bad", 2, 7, "x"},
       "Error loading XML document: Error -5, bad  Line 2, Pos 7, Source:x"},
      {"the reason keeps its line end",
       kxMsgErrorLoadingSchema,
       {-1072896658, "why\r\n", 1, 2, ""},
       "Error loading Schema: Error -1072896658, why\r\n  Line 1, Pos 2, Source:"},
      {"a code of the earlier numbering", kxMsgErrNoSchema, {"x"}, ""},
      {"just below the codes in use", kxMsgErrorNotInitialized - 1, {}, ""},
      {"just above the codes in use", kxMsgErrorAttributeRequired + 1, {}, ""},
      {"zero", 0, {}, ""},
      {"a positive number", 2147483647, {1}, ""},
      {"the placeholder between quotes",
       kxMsgErrorUnknownElement,
       {"Item"},
       "An ElementType named \"Item\" does not exist in schema."},
  };
  for (const RaiseCase& row : rows) {
    SCOPED_TRACE(row.why);
    try {
      RaiseMsgError(row.code, row.arguments);
      FAIL() << "nothing was raised";
    } catch (const MsgError& error) {
      EXPECT_EQ(error.Number(), row.code);
      EXPECT_EQ(error.Source(), "KXMessages");
      EXPECT_EQ(error.Description(), row.description);
    }
  }
}

struct FormatCase {
  const char* why;
  const char* text;
  std::vector<Variant> arguments;
  const char* formatted;
};

TEST(MsgError, FormattingFillsTheFirstOccurrenceOfEachPlaceholder) {
  const FormatCase rows[] = {
      {"no arguments leave the text", "Child %%0 does not exist.", {}, "Child %%0 does not exist."},
      {"two placeholders",
       "Occurrence %%0 of child '%%1' does not exist.",
       {3, "Item"},
       "Occurrence 3 of child 'Item' does not exist."},
      {"a missing argument leaves its placeholder", "%%0 Line %%2", {"a", "b"}, "a Line %%2"},
      {"surplus arguments are ignored", "%%0", {"a", "b", "c"}, "a"},
      {"only the first occurrence", "%%0 %%0", {"a"}, "a %%0"},
      {"a placeholder inside an argument is filled next",
       "%%0 and %%1",
       {"<%%1>", "b"},
       "<b> and %%1"},
      {"an argument is not searched for its own placeholder", "%%0", {"%%0"}, "%%0"},
      {"order of arguments, not of places", "%%1 %%0", {"a", "b"}, "b a"},
      {"an empty argument", "[%%0]", {""}, "[]"},
      {"an empty variant is the empty text", "[%%0]", {Variant()}, "[]"},
      {"numbers have no leading blank", "%%0,%%1", {1, -2}, "1,-2"},
      {"a fraction", "%%0", {0.5}, "0.5"},
      {"a boolean", "%%0", {true}, "True"},
      {"the token of 1 is found in that of 10", "%%10", {"a", "b"}, "b0"},
      {"text without placeholders", "plain", {"a"}, "plain"},
      {"a single percent sign is none", "%0 %%0", {"a"}, "%0 a"},
      {"an empty text", "", {"a"}, ""},
  };
  for (const FormatCase& row : rows) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(FormatMsgText(row.text, row.arguments), row.formatted);
  }
}

TEST(MsgError, AnArgumentWithoutTextFormGivesTheConversionsOwnError) {
  const Variant arguments[] = {Variant::Null()};
  try {
    RaiseMsgError(kxMsgErrorNoChild, arguments);
    FAIL() << "nothing was raised";
  } catch (const HostError& error) {
    EXPECT_EQ(error.Number(), static_cast<std::int32_t>(0x800A005EU));
  }
  const Variant nothing[] = {Variant::Nothing()};
  EXPECT_THROW(RaiseMsgError(kxMsgErrorNoChild, nothing), HostError);
}

}  // namespace
}  // namespace kx::core
