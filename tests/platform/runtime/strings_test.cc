// String functions by UTF-16 positions.
#include "platform/runtime/strings.h"

#include "platform/runtime/expect_error.h"

#include <gtest/gtest.h>

namespace kx::runtime {
namespace {

// e acute, euro sign and a face: 2, 3 and 4 bytes; 1, 1 and 2 units.
const std::string kMixed = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z";
constexpr std::int32_t kAll = std::numeric_limits<std::int32_t>::max();

struct MidCase {
  std::string text;
  std::int32_t start;
  std::int32_t length;
  std::string result;
  std::int32_t error;
  const char* why;
};

const MidCase kMids[] = {
    {"abcdef", 1, 3, "abc", 0, "from the first"},
    {"abcdef", 3, 2, "cd", 0, "within"},
    {"abcdef", 3, kAll, "cdef", 0, "to the end"},
    {"abcdef", 6, 10, "f", 0, "length beyond the end"},
    {"abcdef", 7, 1, "", 0, "just behind the end"},
    {"abcdef", 100, 1, "", 0, "far behind the end"},
    {"abcdef", 3, 0, "", 0, "no length"},
    {"abcdef", 0, 1, "", 5, "start 0"},
    {"abcdef", -1, 1, "", 5, "a negative start"},
    {"abcdef", 1, -1, "", 5, "a negative length"},
    {"abcdef", 100, -1, "", 5, "a negative length behind the end"},
    {"", 1, 1, "", 0, "empty"},
    {kMixed, 2, 2, "\xC3\xA9\xE2\x82\xAC", 0, "units, not bytes"},
    {kMixed, 4, 2, "\xF0\x9F\x98\x80", 0, "a pair is two units"},
    {kMixed, 6, 1, "z", 0, "behind the pair"},
    {kMixed, 4, 1, "\xEF\xBF\xBD", 0, "half a pair"},
    {kMixed, 5, 2, "\xEF\xBF\xBDz", 0, "the other half"},
};

TEST(Mid, CutsByUnits) {
  for (const MidCase& row : kMids) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(ErrorOf([&] { return Mid(row.text, row.start, row.length); }), row.error);
    if (row.error == 0) {
      EXPECT_EQ(Mid(row.text, row.start, row.length), row.result);
    }
  }
}

TEST(LeftAndRight, CutByUnitsAtTheEnds) {
  EXPECT_EQ(Left("abc", 2), "ab");
  EXPECT_EQ(Left("abc", 0), "");
  EXPECT_EQ(Left("abc", 9), "abc");
  EXPECT_EQ(Left(kMixed, 3), "a\xC3\xA9\xE2\x82\xAC");
  EXPECT_EQ(ErrorOf([] { return Left("abc", -1); }), 5);
  EXPECT_EQ(Right("abc", 2), "bc");
  EXPECT_EQ(Right("abc", 0), "");
  EXPECT_EQ(Right("abc", 9), "abc");
  EXPECT_EQ(Right(kMixed, 3), "\xF0\x9F\x98\x80z");
  EXPECT_EQ(ErrorOf([] { return Right("abc", -1); }), 5);
  EXPECT_EQ(Len(kMixed), 6);
  EXPECT_EQ(Len(""), 0);
}

struct InStrCase {
  std::int32_t start;
  std::string text;
  std::string wanted;
  TextComparison comparison;
  std::int32_t position;
  std::int32_t error;
  const char* why;
};

constexpr TextComparison kBinary = TextComparison::kBinary;
constexpr TextComparison kCaseless = TextComparison::kCaseless;

const InStrCase kInStrs[] = {
    {1, "abcabc", "bc", kBinary, 2, 0, "the first"},
    {3, "abcabc", "bc", kBinary, 5, 0, "from a start"},
    {2, "abcabc", "bc", kBinary, 2, 0, "at the start"},
    {6, "abcabc", "bc", kBinary, 0, 0, "no more"},
    {1, "abc", "x", kBinary, 0, 0, "not there"},
    {1, "abc", "abcd", kBinary, 0, 0, "longer than the text"},
    {1, "", "x", kBinary, 0, 0, "empty text"},
    {1, "", "", kBinary, 0, 0, "both empty"},
    {2, "abc", "", kBinary, 2, 0, "nothing wanted: the start"},
    {4, "abc", "", kBinary, 0, 0, "nothing wanted behind the end"},
    {4, "abc", "c", kBinary, 0, 0, "start behind the end"},
    {0, "abc", "c", kBinary, 0, 5, "start 0"},
    {-1, "abc", "c", kBinary, 0, 5, "a negative start"},
    {1, "ABC", "b", kBinary, 0, 0, "case counts"},
    {1, "ABC", "b", kCaseless, 2, 0, "unless told otherwise"},
    {1, "\xC9\x90\xC9\x90x", "X", kCaseless, 3, 0, "capitals of other length in bytes"},
    {1, kMixed, "z", kBinary, 6, 0, "positions are units"},
    {6, kMixed, "z", kBinary, 6, 0, "starts too"},
    {4, kMixed, "\xF0\x9F\x98\x80", kBinary, 4, 0, "a pair at its first unit"},
    {5, kMixed, "\xF0\x9F\x98\x80", kBinary, 0, 0, "a start inside a pair passes it"},
    {5, kMixed, "z", kBinary, 6, 0, "and finds what follows"},
};

TEST(InStr, FindsTheFirstAtOrAfterTheStart) {
  for (const InStrCase& row : kInStrs) {
    SCOPED_TRACE(row.why);
    const auto find = [&] { return InStr(row.start, row.text, row.wanted, row.comparison); };
    EXPECT_EQ(ErrorOf(find), row.error);
    if (row.error == 0) {
      EXPECT_EQ(find(), row.position);
    }
  }
  EXPECT_EQ(InStr("abc", "c"), 3);
}

const InStrCase kInStrRevs[] = {
    {-1, "abcabc", "bc", kBinary, 5, 0, "the last"},
    {5, "abcabc", "bc", kBinary, 2, 0, "that ends at or before the start"},
    {6, "abcabc", "bc", kBinary, 5, 0, "the start is the end"},
    {2, "abcabc", "bc", kBinary, 0, 0, "none before it"},
    {7, "abcabc", "bc", kBinary, 0, 0, "start behind the end"},
    {-1, "abc", "x", kBinary, 0, 0, "not there"},
    {-1, "", "x", kBinary, 0, 0, "empty text"},
    {-1, "", "", kBinary, 0, 0, "both empty"},
    {-1, "abc", "", kBinary, 3, 0, "nothing wanted: the end"},
    {2, "abc", "", kBinary, 2, 0, "nothing wanted: the start"},
    {0, "abc", "c", kBinary, 0, 5, "start 0"},
    {-2, "abc", "c", kBinary, 0, 5, "start below -1"},
    {-1, "abc", "abcd", kBinary, 0, 0, "longer than the text"},
    {-1, "aBa", "b", kBinary, 0, 0, "case counts"},
    {-1, "aBa", "b", kCaseless, 2, 0, "unless told otherwise"},
    {-1, kMixed + kMixed, "\xC3\xA9", kBinary, 8, 0, "positions are units"},
    {-1, "a/b/c.xml", "/", kBinary, 4, 0, "the last separator of a path"},
};

TEST(InStrRev, FindsTheLastBeforeTheStart) {
  for (const InStrCase& row : kInStrRevs) {
    SCOPED_TRACE(row.why);
    const auto find = [&] { return InStrRev(row.text, row.wanted, row.start, row.comparison); };
    EXPECT_EQ(ErrorOf(find), row.error);
    if (row.error == 0) {
      EXPECT_EQ(find(), row.position);
    }
  }
}

struct ReplaceCase {
  const char* text;
  const char* wanted;
  const char* replacement;
  const char* result;
  const char* why;
};

constexpr ReplaceCase kReplaces[] = {
    {"aXbXc", "X", "-", "a-b-c", "all occurrences"},
    {"XX", "X", "XX", "XXXX", "never inside what was put in"},
    {"aaa", "aa", "b", "ba", "left to right"},
    {"abc", "B", "x", "abc", "case counts"},
    {"abc", "", "x", "abc", "nothing wanted"},
    {"", "a", "x", "", "empty text"},
    {"abc", "b", "", "ac", "taken out"},
    {"x", "x", "", "", "nothing left"},
};

TEST(Replace, ReplacesEveryOccurrence) {
  for (const ReplaceCase& row : kReplaces) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(Replace(row.text, row.wanted, row.replacement), row.result);
  }
}

struct SplitCase {
  const char* text;
  const char* delimiter;
  std::vector<std::string> pieces;
  const char* why;
};

TEST(Split, CutsAtEverySingleDelimiter) {
  const SplitCase cases[] = {
      {"a b c", " ", {"a", "b", "c"}, "blanks"},   {"", " ", {}, "an empty text has no pieces"},
      {" ", " ", {"", ""}, "only a delimiter"},    {"a  b", " ", {"a", "", "b"}, "two in a row"},
      {" a ", " ", {"", "a", ""}, "at both ends"}, {"abc", " ", {"abc"}, "none"},
      {"a\tb", " ", {"a\tb"}, "a tab is none"},    {"a, b,c", ", ", {"a", "b,c"}, "a longer one"},
      {"abc", "", {"abc"}, "an empty one"},
  };
  for (const SplitCase& row : cases) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(Split(row.text, row.delimiter), row.pieces);
  }
}

TEST(Trim, RemovesBlanksAndNothingElse) {
  EXPECT_EQ(Trim("  a b  "), "a b");
  EXPECT_EQ(Trim("\t a\n "), "\t a\n");
  EXPECT_EQ(Trim("\xC2\xA0"
                 "a "),
            "\xC2\xA0"
            "a");
  EXPECT_EQ(Trim("   "), "");
  EXPECT_EQ(Trim(""), "");
  EXPECT_EQ(LTrim("  a "), "a ");
  EXPECT_EQ(RTrim(" a  "), " a");
  EXPECT_EQ(LTrim("   "), "");
  EXPECT_EQ(RTrim("   "), "");
}

TEST(LCaseAndUCase, KeepTheNumberOfUnits) {
  EXPECT_EQ(UCase("stra\xC3\x9F"
                  "e"),
            "STRA\xC3\x9F"
            "E");
  EXPECT_EQ(LCase("\xC3\x84"
                  "B"),
            "\xC3\xA4"
            "b");
}

struct LikeCase {
  const char* text;
  const char* pattern;
  bool matches;
  std::int32_t error;
  const char* why;
};

constexpr LikeCase kLikes[] = {
    {"a", "[abc]", true, 0, "one of a list"},
    {"d", "[abc]", false, 0, "none of it"},
    {"ab", "[abc]", false, 0, "exactly one"},
    {"", "[abc]", false, 0, "not none"},
    {"?", "[?*[]", true, 0, "the question mark is itself inside"},
    {"*", "[?*[]", true, 0, "so is the star"},
    {"[", "[?*[]", true, 0, "and the bracket"},
    {"x", "[?*[]", false, 0, "they stand for nothing else"},
    {"#", "[#]", true, 0, "and the number sign"},
    {"5", "[#]", false, 0, "which means no digit there"},
    {"m", "[a-z]", true, 0, "a range"},
    {"M", "[a-z]", false, 0, "case counts"},
    {"-", "[a-]", true, 0, "a hyphen at the end"},
    {"-", "[-a]", true, 0, "a hyphen at the start"},
    {"b", "[a-cx-z]", true, 0, "several ranges"},
    {"y", "[a-cx-z]", true, 0, "the second of them"},
    {"d", "[!a-c]", true, 0, "none of a list"},
    {"b", "[!a-c]", false, 0, "one of it"},
    {"!", "[!]", true, 0, "nothing to be none of"},
    {"!", "[a!]", true, 0, "only in front it is special"},
    {"ab", "a[]b", true, 0, "an empty list is nothing"},
    {"a", "[z-a]", false, 93, "a range in wrong order"},
    {"a", "[abc", false, 93, "a list without end"},
    {"]", "]", true, 0, "a closing bracket alone"},
    {"abc", "a*c", true, 0, "any run"},
    {"ac", "a*c", true, 0, "also an empty one"},
    {"abcd", "a*c", false, 0, "but then the rest must match"},
    {"axbxc", "*x*c", true, 0, "several runs"},
    {"abc", "a?c", true, 0, "any one"},
    {"ac", "a?c", false, 0, "not none"},
    {"a5", "a#", true, 0, "a digit"},
    {"ax", "a#", false, 0, "no digit"},
    {"", "", true, 0, "nothing matches nothing"},
    {"", "*", true, 0, "and any run"},
    {"a", "", false, 0, "nothing else does"},
    {"\xC3\xA9", "[\xC3\xA0-\xC3\xBF]", true, 0, "a range beyond ASCII"},
    {"\xC3\xA9", "?", true, 0, "one unit of two bytes"},
};

TEST(Like, MatchesTheWholeText) {
  for (const LikeCase& row : kLikes) {
    SCOPED_TRACE(std::string(row.text) + " like " + row.pattern + ": " + row.why);
    EXPECT_EQ(ErrorOf([&] { return Like(row.text, row.pattern); }), row.error);
    if (row.error == 0) {
      EXPECT_EQ(Like(row.text, row.pattern), row.matches);
    }
  }
}

TEST(Like, DoesNotMultiplyRuns) {
  EXPECT_FALSE(Like(std::string(5000, 'a'), "*a*a*a*a*a*a*a*a*a*a*a*a*b"));
  EXPECT_TRUE(Like(std::string(5000, 'a') + "b", "*a*a*a*a*a*a*a*a*a*a*a*a*b"));
}

}  // namespace
}  // namespace kx::runtime
