// What a Variant holds, and its conversions from every type to every other.
#include "kxmessage/variant.h"

#include "platform/runtime/expect_error.h"
#include "platform/runtime/test_objects.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace kx {
namespace {

using runtime::ErrorOf;
using runtime::MakePlainThing;
using runtime::MakeValuedThing;
using Bytes = Variant::Bytes;

struct TypeCase {
  const char* name;
  Variant value;
  VariantType type;
  bool integer;
  bool number;
};

std::vector<TypeCase> TypeCases() {
  return {
      {"empty", Variant(), VariantType::kEmpty, false, false},
      {"Null", Variant::Null(), VariantType::kNull, false, false},
      {"a literal", "x", VariantType::kText, false, false},
      {"a string", std::string("x"), VariantType::kText, false, false},
      {"a view", std::string_view("x"), VariantType::kText, false, false},
      {"bool", true, VariantType::kBoolean, false, false},
      {"8 bits", std::int8_t{1}, VariantType::kInteger8, true, true},
      {"16 bits", std::int16_t{1}, VariantType::kInteger16, true, true},
      {"32 bits", 1, VariantType::kInteger32, true, true},
      {"64 bits", std::int64_t{1}, VariantType::kInteger64, true, true},
      {"long long", 1LL, VariantType::kInteger64, true, true},
      {"a byte", std::uint8_t{1}, VariantType::kUnsigned8, true, true},
      {"unsigned 16 bits", std::uint16_t{1}, VariantType::kUnsigned16, true, true},
      {"unsigned 32 bits", 1U, VariantType::kUnsigned32, true, true},
      {"unsigned 64 bits", 1ULL, VariantType::kUnsigned64, true, true},
      {"single", 1.0F, VariantType::kSingle, false, true},
      {"double", 1.0, VariantType::kDouble, false, true},
      {"currency", Currency{1}, VariantType::kCurrency, false, true},
      {"date", Date{1}, VariantType::kDate, false, false},
      {"bytes", Bytes{1}, VariantType::kBytes, false, false},
      {"an error value", ErrorValue{5}, VariantType::kError, false, false},
      {"missing", Variant::Missing(), VariantType::kError, false, false},
      {"nothing", Variant::Nothing(), VariantType::kObject, false, false},
      {"an object", MakePlainThing(), VariantType::kObject, false, false},
  };
}

TEST(Variant, TellsItsType) {
  for (const TypeCase& row : TypeCases()) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.value.Type(), row.type);
    EXPECT_EQ(row.value.IsInteger(), row.integer);
    EXPECT_EQ(row.value.IsNumber(), row.number);
    EXPECT_EQ(row.value.IsEmpty(), row.type == VariantType::kEmpty);
    EXPECT_EQ(row.value.IsNull(), row.type == VariantType::kNull);
    EXPECT_EQ(row.value.IsText(), row.type == VariantType::kText);
    EXPECT_EQ(row.value.IsBoolean(), row.type == VariantType::kBoolean);
    EXPECT_EQ(row.value.IsBytes(), row.type == VariantType::kBytes);
    EXPECT_EQ(row.value.IsDate(), row.type == VariantType::kDate);
    EXPECT_EQ(row.value.IsCurrency(), row.type == VariantType::kCurrency);
    EXPECT_EQ(row.value.IsObject(), row.type == VariantType::kObject);
    EXPECT_EQ(row.value.IsError(), row.type == VariantType::kError);
  }
  EXPECT_TRUE(Variant::Missing().IsMissing());
  EXPECT_FALSE(Variant(ErrorValue{5}).IsMissing());
  EXPECT_TRUE(Variant::Nothing().IsNothing());
  EXPECT_FALSE(MakePlainThing().IsNothing());
  EXPECT_FALSE(Variant().IsNothing());
}

TEST(Variant, ShowsWhatItHoldsByTypeOnly) {
  EXPECT_EQ(*Variant("x").IfText(), "x");
  EXPECT_EQ(Variant(1).IfText(), nullptr);
  EXPECT_EQ(*Variant(Bytes{1, 2}).IfBytes(), (Bytes{1, 2}));
  EXPECT_EQ(Variant("x").IfBytes(), nullptr);
  EXPECT_EQ(Variant(Date{2}).IfDate()->value, 2);
  EXPECT_EQ(Variant(2.0).IfDate(), nullptr);
  EXPECT_EQ(Variant(Currency{3}).IfCurrency()->tenThousandths, 3);
  EXPECT_EQ(*Variant(true).IfBoolean(), true);
  EXPECT_EQ(Variant(1).IfBoolean(), nullptr);
  EXPECT_EQ(Variant::Missing().IfError()->code, -2147352572);
  EXPECT_EQ(Variant::Nothing().IfObject(), nullptr);
  EXPECT_EQ(Variant(1).IfObject(), nullptr);
  EXPECT_NE(MakePlainThing().IfObject(), nullptr);
}

TEST(Variant, EqualsOnlyTheSameTypeAndContent) {
  const std::vector<TypeCase> all = TypeCases();
  const Variant object = MakePlainThing();
  EXPECT_EQ(object, Variant(object));
  EXPECT_NE(object, MakePlainThing()) << "objects compare by identity";
  EXPECT_NE(Variant(1), Variant(1.0));
  EXPECT_NE(Variant(1), Variant(2));
  EXPECT_NE(Variant("a"), Variant("A"));
  EXPECT_NE(Variant(), Variant::Null());
  EXPECT_NE(Variant(std::nan("")), Variant(std::nan("")));
  for (const TypeCase& row : all) EXPECT_EQ(row.value, Variant(row.value)) << row.name;
}

// One row per source type; 0 in an error column means the conversion succeeds.
struct ConversionCase {
  const char* name;
  Variant value;
  std::int32_t integer;
  std::int32_t integerError;
  double number;
  std::int32_t numberError;
  const char* text;
  std::int32_t textError;
  bool boolean;
  std::int32_t booleanError;
};

TEST(Variant, ConvertsToIntegerNumberTextAndBoolean) {
  const ConversionCase cases[] = {
      {"empty", Variant(), 0, 0, 0, 0, "", 0, false, 0},
      {"Null", Variant::Null(), 0, 94, 0, 94, "", 94, false, 94},
      {"True", true, -1, 0, -1, 0, "True", 0, true, 0},
      {"False", false, 0, 0, 0, 0, "False", 0, false, 0},
      {"8 bits", std::int8_t{-128}, -128, 0, -128, 0, "-128", 0, true, 0},
      {"16 bits", std::int16_t{-32768}, -32768, 0, -32768, 0, "-32768", 0, true, 0},
      {"32 bits", 2147483647, 2147483647, 0, 2147483647, 0, "2147483647", 0, true, 0},
      {"64 bits", std::int64_t{5}, 5, 0, 5, 0, "5", 0, true, 0},
      {"64 bits too large", std::int64_t{1} << 40, 0, 6, 1099511627776.0, 0, "1099511627776", 0,
       true, 0},
      {"a byte", std::uint8_t{255}, 255, 0, 255, 0, "255", 0, true, 0},
      {"unsigned 16 bits", std::uint16_t{65535}, 65535, 0, 65535, 0, "65535", 0, true, 0},
      {"unsigned 32 bits", 4294967295U, 0, 6, 4294967295.0, 0, "4294967295", 0, true, 0},
      {"unsigned 64 bits", std::numeric_limits<std::uint64_t>::max(), 0, 6, 18446744073709551615.0,
       0, "18446744073709551615", 0, true, 0},
      {"single", 2.5F, 2, 0, 2.5, 0, "2.5", 0, true, 0},
      {"a single of 7 digits", 0.1F, 0, 0, 0.10000000149011612, 0, "0.1", 0, true, 0},
      {"double", -1.5, -2, 0, -1.5, 0, "-1.5", 0, true, 0},
      {"a small double", 0.1, 0, 0, 0.1, 0, "0.1", 0, true, 0},
      {"a large double", 1e15, 0, 6, 1e15, 0, "1E+15", 0, true, 0},
      {"negative zero", -0.0, 0, 0, 0, 0, "0", 0, false, 0},
      {"currency", Currency{25000}, 2, 0, 2.5, 0, "2.5", 0, true, 0},
      {"date", Date{39521.5}, 39522, 0, 39521.5, 0, "3/14/2008 12:00:00 PM", 0, true, 0},
      {"day 0", Date{0}, 0, 0, 0, 0, "12:00:00 AM", 0, false, 0},
      {"a date outside the calendar", Date{1e9}, 1000000000, 0, 1e9, 0, "", 5, true, 0},
      {"a numeric text", " 1,000.5 ", 1000, 0, 1000.5, 0, " 1,000.5 ", 0, true, 0},
      {"zero as text", "0", 0, 0, 0, 0, "0", 0, false, 0},
      {"the text True", "true", 0, 13, 0, 13, "true", 0, true, 0},
      {"the text False", "FALSE", 0, 13, 0, 13, "FALSE", 0, false, 0},
      {"another text", "abc", 0, 13, 0, 13, "abc", 0, false, 13},
      {"the empty text", "", 0, 13, 0, 13, "", 0, false, 13},
      {"a huge text", "1e400", 0, 6, 0, 6, "1e400", 0, false, 6},
      {"bytes", Bytes{0x41, 0, 0x42}, 0, 13, 0, 13, "A", 0, false, 13},
      {"no bytes", Bytes{}, 0, 13, 0, 13, "", 0, false, 13},
      {"missing", Variant::Missing(), 0, 13, 0, 13, "Error 448", 0, false, 13},
      {"a run-time error value", ErrorValue{runtime::StatusOfRuntimeError(2001)}, 0, 13, 0, 13,
       "Error 2001", 0, false, 13},
      {"another error value", ErrorValue{-2147467259}, 0, 13, 0, 13, "Error -2147467259", 0, false,
       13},
      {"nothing", Variant::Nothing(), 0, 91, 0, 91, "", 91, false, 91},
      {"an object without value", MakePlainThing(), 0, 438, 0, 438, "", 438, false, 438},
      {"an object with a value", MakeValuedThing("7"), 7, 0, 7, 0, "7", 0, true, 0},
      {"an object with Null", MakeValuedThing(Variant::Null()), 0, 94, 0, 94, "", 94, false, 94},
  };
  for (const ConversionCase& row : cases) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(ErrorOf([&] { return row.value.ToInteger(); }), row.integerError);
    EXPECT_EQ(ErrorOf([&] { return row.value.ToNumber(); }), row.numberError);
    EXPECT_EQ(ErrorOf([&] { return row.value.ToText(); }), row.textError);
    EXPECT_EQ(ErrorOf([&] { return row.value.ToBoolean(); }), row.booleanError);
    if (row.integerError == 0) {
      EXPECT_EQ(row.value.ToInteger(), row.integer);
    }
    if (row.numberError == 0) {
      EXPECT_EQ(row.value.ToNumber(), row.number);
    }
    if (row.textError == 0) {
      EXPECT_EQ(row.value.ToText(), row.text);
    }
    if (row.booleanError == 0) {
      EXPECT_EQ(row.value.ToBoolean(), row.boolean);
    }
  }
}

TEST(ToInteger16, HasTheLimitsOf16Bits) {
  EXPECT_EQ(Variant(32767.49).ToInteger16(), 32767);
  EXPECT_EQ(ErrorOf([] { return Variant(32767.5).ToInteger16(); }), 6);
  EXPECT_EQ(ErrorOf([] { return Variant(40000).ToInteger16(); }), 6);
  EXPECT_EQ(Variant("&HFFFF").ToInteger16(), -1);
  EXPECT_EQ(ErrorOf([] { return Variant("x").ToInteger16(); }), 13);
  EXPECT_EQ(ErrorOf([] { return Variant::Null().ToInteger16(); }), 94);
}

TEST(ToSingle, OverflowsBeyondItsRange) {
  EXPECT_EQ(Variant(0.1).ToSingle(), 0.1F);
  EXPECT_EQ(Variant(2.5F).ToSingle(), 2.5F);
  EXPECT_EQ(ErrorOf([] { return Variant(1e39).ToSingle(); }), 6);
  EXPECT_EQ(ErrorOf([] { return Variant("-1e39").ToSingle(); }), 6);
  EXPECT_EQ(Variant(1e-60).ToSingle(), 0);
}

TEST(ToCurrency, RoundsToFourDecimals) {
  EXPECT_EQ(Variant(1.5).ToCurrency(), Currency{15000});
  EXPECT_EQ(Variant("1.23456").ToCurrency(), Currency{12346});
  EXPECT_EQ(Variant(0.00005).ToCurrency(), Currency{0});
  EXPECT_EQ(Variant(true).ToCurrency(), Currency{-10000});
  EXPECT_EQ(Variant(Currency{7}).ToCurrency(), Currency{7});
  EXPECT_EQ(Variant("922337203685477.5807").ToCurrency(),
            Currency{std::numeric_limits<std::int64_t>::max()});
  EXPECT_EQ(ErrorOf([] { return Variant(1e15).ToCurrency().tenThousandths; }), 6);
  EXPECT_EQ(ErrorOf([] { return Variant(-1e15).ToCurrency().tenThousandths; }), 6);
  EXPECT_EQ(ErrorOf([] { return Variant("x").ToCurrency().tenThousandths; }), 13);
}

TEST(ToDate, TakesDatesNumbersAndTexts) {
  struct Case {
    const char* name;
    Variant value;
    double date;
    std::int32_t error;
  };
  const Case cases[] = {
      {"a date keeps its double", Date{0.1}, 0.1, 0},
      {"a number is the double", 41408.08625, 41408.08625, 0},
      {"an integer", 2, 2, 0},
      {"True", true, -1, 0},
      {"empty is day 0", Variant(), 0, 0},
      {"a text", "12/31/1899", 1, 0},
      {"the text 1", "1", 1, 0},
      {"the text 0", "0", 0, 13},
      {"another text", "abc", 0, 13},
      {"Null", Variant::Null(), 0, 94},
      {"missing", Variant::Missing(), 0, 13},
      {"bytes", Bytes{1}, 0, 13},
      {"the first day", -657434, -657434, 0},
      {"before it", -657435, 0, 6},
      {"the last day", 2958465.9, 2958465.9, 0},
      {"behind it", 2958466, 0, 6},
      {"no number", std::nan(""), 0, 6},
      {"nothing", Variant::Nothing(), 0, 91},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(ErrorOf([&] { return row.value.ToDate(); }), row.error);
    if (row.error == 0) {
      EXPECT_EQ(row.value.ToDate().value, row.date);
    }
  }
}

TEST(ToBytes, TakesBytesAndTexts) {
  EXPECT_EQ(Variant(Bytes{1, 2}).ToBytes(), (Bytes{1, 2}));
  EXPECT_EQ(Variant("AB").ToBytes(), (Bytes{0x41, 0, 0x42, 0}));
  EXPECT_EQ(Variant("").ToBytes(), Bytes{});
  EXPECT_EQ(MakeValuedThing("A").ToBytes(), (Bytes{0x41, 0}));
  EXPECT_EQ(ErrorOf([] { return Variant::Null().ToBytes(); }), 94);
  EXPECT_EQ(ErrorOf([] { return Variant().ToBytes(); }), 13);
  EXPECT_EQ(ErrorOf([] { return Variant(5).ToBytes(); }), 13);
  EXPECT_EQ(ErrorOf([] { return Variant::Missing().ToBytes(); }), 13);
}

TEST(ToBoolean, KnowsTheNamesOfBothValues) {
  for (const char* text : {"True", "TRUE", "true", "#TRUE#", "1", "-0.5"}) {
    EXPECT_TRUE(Variant(text).ToBoolean()) << text;
  }
  for (const char* text : {"False", "FALSE", "#FALSE#", "0", "0.0"}) {
    EXPECT_FALSE(Variant(text).ToBoolean()) << text;
  }
  for (const char* text : {"yes", " True", "T", "#true"}) {
    EXPECT_EQ(ErrorOf([&] { return Variant(text).ToBoolean(); }), 13) << text;
  }
}

TEST(VariantType, HasTheNumbersOfAutomation) {
  struct Case {
    VariantType type;
    int number;
  };
  constexpr Case kCases[] = {
      {VariantType::kEmpty, 0},       {VariantType::kNull, 1},       {VariantType::kInteger16, 2},
      {VariantType::kInteger32, 3},   {VariantType::kSingle, 4},     {VariantType::kDouble, 5},
      {VariantType::kCurrency, 6},    {VariantType::kDate, 7},       {VariantType::kText, 8},
      {VariantType::kObject, 9},      {VariantType::kError, 10},     {VariantType::kBoolean, 11},
      {VariantType::kInteger8, 16},   {VariantType::kUnsigned8, 17}, {VariantType::kUnsigned16, 18},
      {VariantType::kUnsigned32, 19}, {VariantType::kInteger64, 20}, {VariantType::kUnsigned64, 21},
      {VariantType::kBytes, 8209}};
  for (const Case& row : kCases) EXPECT_EQ(static_cast<int>(row.type), row.number);
}

}  // namespace
}  // namespace kx
