// Comparisons with $any$ and $all$ whose right side differs by candidate, and places in groups: the
// same with tables from the start as without any, beside what is expected.
#include "platform/patterns/evaluator.h"
#include "platform/patterns/pattern_test.h"

#include <limits>

namespace kx::patterns {
namespace {

constexpr std::uint64_t kEndless = std::numeric_limits<std::uint64_t>::max();

struct Row {
  const char* document;
  const char* pattern;
  const char* found;
  const char* why;
};

constexpr const char* kTyped =
    "<r xmlns:d='urn:schemas-microsoft-com:datatypes'>"
    "<g n='1'><x><m d:dt='i4'>10</m><m>z</m></x><l d:dt='i4'>9</l></g>"
    "<g n='2'><x><m d:dt='i4'>10</m></x><l>9</l></g>"
    "<g n='3'><x><m d:dt='r8'>1e1</m></x><l d:dt='i4'>010</l></g>"
    "<g n='4'><x><m d:dt='date'>2000-01-02</m></x><l d:dt='dateTime'>2000-01-02T00:00:00</l></g>"
    "<g n='5'><x><m d:dt='date'>2000-01-02</m></x><l d:dt='i4'>36527</l></g>"
    "<g n='6'><x><m d:dt='i4'>none</m></x><l d:dt='i4'>10</l></g>"
    "<g n='7'><x/><l>1</l></g><g n='8'><x><m>1</m></x></g></r>";
constexpr const char* kPlain =
    "<r><g n='1'><x><m>a</m><m>B</m></x><l>b</l></g><g n='2'><x><m>b</m><y><m>c</m></y></x>"
    "<l>b</l></g><g n='3'><x><m>12</m><m> 7 </m></x><l>7.0</l></g><g n='4'><x/><l>1</l></g></r>";

constexpr Row kRows[] = {
    {kPlain, "//g[$any$ .//m = l]", "g#2", "some text equals"},
    {kPlain, "//g[$any$ .//m $ieq$ l]", "g#1 g#2", "case left out of account"},
    {kPlain, "//g[$all$ .//m != l]", "g#1 g#3 g#4", "none equals, nor is there any in the last"},
    {kPlain, "//g[$any$ .//m > l]", "g#2", "c is above b"},
    {kPlain, "//g[$all$ .//m < l]", "g#1 g#3 g#4", "a and B are below b, 12 and 7 below 7.0"},
    {kPlain, "//g[$all$ .//m $ile$ l]", "g#1 g#3 g#4", "B equals b"},
    {kPlain, "//g[$any$ .//m = l!number()]", "g#3", "numbers, blanks aside"},
    {kPlain, "//g[$all$ .//m != l!number()]", "g#1 g#2 g#4", "what is no number is unequal"},
    {kPlain, "//g[$any$ .//m!number() = l!number()]", "g#3", "both made numbers"},
    {kPlain, "//g[$all$ .//m!number() $ge$ l!number()]", "g#3 g#4", "all or none"},
    {kPlain, "//g[$any$ .//m!nodeName() != l!nodeName()]", "g#1 g#2 g#3", "names"},
    {kPlain, "//g[$any$ .//m!nodeName() = none]", "", "nothing to compare with"},
    {kPlain, "//g[$all$ .//m!nodeName() = none]", "g#4", "nothing on either side"},
    {kPlain, "//g[$any$ ../g/l = .//m]", "g#2", "shared by all: their first m is b"},
    {kPlain, "//g[$any$ (.//m)[. > 'a'] = l]", "g#2", "a filtered group"},
    {kPlain, "//g[$any$ (.//m | .//l)!value() = l]", "g#1 g#2 g#3 g#4", "a union has l itself"},
    {kPlain, "//g[$any$ //y/m > l]", "g#1 g#2 g#3 g#4", "the same for all: c"},
    {kPlain, "//g[$any$ .//x//m = l]", "g#2", "twice any depth"},
    {kPlain, "//g[$any$ .//m!index() = @n]", "g#1", "0 and 1 against the text of n"},
    {kPlain, "//g[$any$ .//m!index() = @n!number()]", "g#1", "and against its number"},
    {kPlain, "//g[$all$ .//m!index() < @n]", "g#2 g#3 g#4", "places below n"},
    {kPlain, "//g[$any$ .//m!end() = 1]", "g#1 g#2 g#3", "where there are any, one is the last"},
    {kPlain, "//g[$all$ .//m!end() = 1]", "g#4", "of two only one is"},
    {kTyped, "//g[$any$ .//m > l]", "g#1 g#6",
     "10 above 9 as numbers, z and none above them as texts"},
    {kTyped, "//g[$any$ .//m = l]", "g#3 g#4", "equal as numbers, equal as dates"},
    {kTyped, "//g[$any$ .//m != l]", "g#1 g#2 g#5 g#6", "a date and a number compare as texts"},
    {kTyped, "//g[$all$ .//m > l]", "g#1 g#6 g#7", "a text that is no i4 is a text"},
    {kTyped, "//g[$any$ .//m = l!number()]", "g#3 g#4 g#5", "a date is its day number"},
    {kTyped, "//g[$any$ .//m!date() = l!date()]", "g#4", "dates"},
    {kTyped, "//g[$all$ .//m!date() != l!date()]", "g#1 g#2 g#3 g#5 g#6 g#7", "no dates"},
    {kTyped, "//g[$all$ .//m!number(none) = l]", "g#7", "a value that is not there"},
};

std::string FoundAfter(const dom::Document& document, const char* pattern, std::uint64_t patience) {
  QueryOptions options;
  options.patience = patience;
  return Found(document.AsNode(), pattern, options);
}

TEST(AnyAndAll, AreTheSameWithTablesAsWithout) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(std::string(row.pattern) + ": " + row.why);
    const dom::Document document = Parsed(row.document);
    EXPECT_EQ(FoundAfter(document, row.pattern, kEndless), row.found);
    EXPECT_EQ(FoundAfter(document, row.pattern, 0), row.found);
  }
}

// Texts order places differently: 10 stands before 2.
TEST(AnyAndAll, ComparePlacesAsNumbersAndAsTexts) {
  for (const int count : {0, 1, 2, 5, 9, 10, 11, 12, 95, 100, 101, 130}) {
    std::string xml = "<r><x>";
    for (int i = 0; i < count; ++i) xml += "<m/>";
    xml += "</x>";
    for (const char* text : {"0", "1", "5", "8", "9", "10", "11", "94", "99", "100", "128", "9a",
                             "", "-1", "0.5", "01", "x"}) {
      xml += "<l>" + std::string(text) + "</l>";
    }
    const dom::Document document = Parsed(xml + "</r>");
    for (const char* quantifier : {"$any$ ", "$all$ "}) {
      for (const char* comparison : {"=", "!=", "<", "<=", ">", ">="}) {
        for (const char* method : {"index()", "end()"}) {
          for (const char* right : {" .", " number()"}) {
            std::string pattern = "//l[";
            for (const char* part : {quantifier, "../x//m!", method, comparison, right, "]"}) {
              pattern += part;
            }
            SCOPED_TRACE(pattern + " of " + std::to_string(count));
            EXPECT_EQ(FoundAfter(document, pattern.c_str(), 0),
                      FoundAfter(document, pattern.c_str(), kEndless));
          }
        }
      }
    }
  }
}

TEST(PlacesInGroups, AreTheSameFarFromTheEnds) {
  std::string xml;
  for (int i = 0; i < 120; ++i) xml += "<a n='" + std::to_string(i) + "'><b/><c/>";
  for (int i = 0; i < 120; ++i) xml += "</a>";
  const dom::Document document = Parsed("<r>" + xml + "</r>");
  for (const char* group :
       {"(.//b)", "(.//a)", "(a//b)", "(../a//c)", "(.//node())", "(.//a | .//b)", "(.//a//b)",
        "((.//b)[not(x)])", "(.//a)[@n > 9]", "(//b)", "(..//b)"}) {
    for (const char* place : {"[0]", "[63]", "[64]", "[65]", "[99]", "[-65]", "[-100]", "[end()]",
                              "[index() = 70]", "[100][0]"}) {
      const std::string pattern = "//*[" + std::string(group) + place + "]";
      SCOPED_TRACE(pattern);
      const std::string found = FoundAfter(document, pattern.c_str(), 0);
      EXPECT_EQ(found, FoundAfter(document, pattern.c_str(), kEndless));
      EXPECT_NE(found, "");
    }
  }
}

}  // namespace
}  // namespace kx::patterns
