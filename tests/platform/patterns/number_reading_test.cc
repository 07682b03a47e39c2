#include "platform/patterns/number_reading.h"

#include "platform/patterns/generators.h"
#include "platform/patterns/text_runs.h"

#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

namespace kx::patterns {
namespace {

struct Row {
  const char* text;
  double number;
};

TEST(ReadNumber, ReadsDigitsWithSignFractionAndExponent) {
  const Row rows[] = {
      {"0", 0},
      {"12", 12},
      {"-12", -12},
      {"+12", 12},
      {" \t\r\n12 ", 12},
      {"1.5", 1.5},
      {".5", 0.5},
      {"5.", 5},
      {"-.25", -0.25},
      {"1e3", 1000},
      {"1E-3", 0.001},
      {"1.5e+2", 150},
      {"0001", 1},
      {"0.1", 0.1},
      {"9007199254740993", 9007199254740992},
      {"1e400", HUGE_VAL},
      {"-1e400", -HUGE_VAL},
      {"1e-400", 0},
      {"0e99999999999999999999", 0},
      {"1e-99999999999999999999", 0},
      {"1e00000000000000000000000000000001", 10},
      {"4.9e-324", 4.9e-324},
      {"1.7976931348623157e308", 1.7976931348623157e308},
  };
  for (const Row& row : rows) EXPECT_EQ(ReadNumber(row.text), row.number) << row.text;
}

TEST(ReadNumber, ReadsNothingElse) {
  for (const char* text : {"", " ", "-", ".", "-.", "e1", "1e", "1e+", "1 2", "1,2", "0x10", "--1",
                           "+-1", "1.2.3", "INF", "NaN", "1-", "1e5.5", "\xC2\xA0\x31"}) {
    EXPECT_TRUE(std::isnan(ReadNumber(text))) << '"' << text << '"';
  }
}

TEST(ReadNumber, RoundsLongTextsAsWholeOnes) {
  const std::string zeros(5000, '0');
  EXPECT_EQ(ReadNumber(zeros + "7" + zeros + "e-5000"), 7);
  EXPECT_EQ(ReadNumber("0." + zeros + "7e5001"), 7);
  EXPECT_EQ(ReadNumber("7." + zeros), 7);
  // Half way between two doubles: what comes far behind decides.
  const std::string half = "9007199254740993";
  EXPECT_EQ(ReadNumber(half + "." + zeros), 9007199254740992.0);
  EXPECT_EQ(ReadNumber(half + "." + zeros + "1"), 9007199254740994.0);
  EXPECT_EQ(ReadNumber(half + zeros + "1e-5001"), 9007199254740994.0);
  EXPECT_EQ(ReadNumber(std::string(400, '9')), HUGE_VAL);
}

// A text of characters that matter to numbers, most of them in runs.
std::string RandomText(Dice& dice) {
  static constexpr const char* kParts[] = {"0", "7",  "00000", "123", ".",    " ",     "\n  ",  "-",
                                           "e", "E+", "x",     "1.5", "9e-2", "00012", "      "};
  std::string text;
  for (std::uint32_t parts = dice.Roll(12); parts > 0; --parts) text += dice.Pick(kParts);
  return text;
}

TEST(ReadNumber, WithRunsReadsEveryPartOfATextTheSame) {
  Dice dice(7);
  for (int i = 0; i < 400; ++i) {
    const std::string text = RandomText(dice);
    const TextRuns runs(text);
    for (std::size_t begin = 0; begin <= text.size(); ++begin) {
      for (std::size_t length = 0; length <= text.size() - begin; ++length) {
        const std::string_view part = std::string_view(text).substr(begin, length);
        const double plain = ReadNumber(part);
        const double byRuns = ReadNumber(part, runs);
        ASSERT_TRUE(plain == byRuns || (std::isnan(plain) && std::isnan(byRuns))) << part;
      }
    }
  }
}

TEST(ReadNumber, AgreesWithTheStandardLibrary) {
  Dice dice(8);
  for (int i = 0; i < 20'000; ++i) {
    std::string text = std::to_string(dice.Roll(1000)) + ".";
    for (std::uint32_t digits = dice.Roll(30); digits > 0; --digits) {
      text += static_cast<char>('0' + dice.Roll(10));
    }
    text += "e" + std::to_string(static_cast<int>(dice.Roll(640)) - 320);
    ASSERT_EQ(ReadNumber(text), std::strtod(text.c_str(), nullptr)) << text;
  }
}

}  // namespace
}  // namespace kx::patterns
