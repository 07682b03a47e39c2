// What is a pattern and what is not: every refusal says where, and nothing is refused silently.
#include "platform/patterns/pattern.h"

#include "platform/dom/dom_error.h"
#include "platform/patterns/pattern_test.h"

namespace kx::patterns {
namespace {

struct Refused {
  const char* pattern;
  const char* text;
  const char* why;
};

constexpr Refused kRefused[] = {
    {"", "Expected token 'NAME' found 'eof'.\r\n\r\n--><--", "nothing at all"},
    {"a[", "Expected token 'NAME' found 'eof'.\r\n\r\na[--><--", "an open bracket"},
    {"a[]", "Expected token 'NAME' found ']'.\r\n\r\na[-->]<--", "an empty filter"},
    {"a]", "Expected token 'eof' found ']'.\r\n\r\na-->]<--", "text left"},
    {"a b", "Expected token 'eof' found 'NAME'.\r\n\r\na -->b<--", "text left"},
    {"a/", "Expected token 'NAME' found 'eof'.\r\n\r\na/--><--", "half a path"},
    {"//", "Expected token 'NAME' found 'eof'.\r\n\r\n//--><--", "half a path"},
    {"a[b=", "Expected token 'NAME' found 'eof'.\r\n\r\na[b=--><--", "half a comparison"},
    {"a['x'=b]", "Expected token 'NAME' found 'STRING'.\r\n\r\na[-->'x'<--=b]",
     "a literal on the left"},
    {"a[1=b]", "Expected token ']' found '='.\r\n\r\na[1-->=<--b]", "a number on the left"},
    {"a[b=c=d]", "Expected token ']' found '='.\r\n\r\na[b=c-->=<--d]", "a chain"},
    {"a[$any$ b]", "Expected token '=' found ']'.\r\n\r\na[$any$ b-->]<--", "nothing compared"},
    {"a[$to$ 3]", "Unexpected character in query string.\r\n\r\na[-->$to$<-- 3]", "no keyword"},
    {"a[$AND$ b]", "Unexpected character in query string.\r\n\r\na[-->$AND$<-- b]",
     "keywords are lower case"},
    {"a $union$ b", "Unexpected character in query string.\r\n\r\na -->$union$<-- b",
     "not of this language"},
    {"a[0 $to$ 3]", "Unexpected character in query string.\r\n\r\na[0 -->$to$<-- 3]", "no range"},
    {"a[0,3]", "Expected token ']' found ','.\r\n\r\na[0-->,<--3]", "no list"},
    {"a[1.5]", "Expected token 'NAME' found 'NUMBER'.\r\n\r\na[-->1.5<--]", "no place"},
    {"a#b", "Unexpected character in query string.\r\n\r\na-->#<--b", "begins no token"},
    {"a[b='x]", "Unterminated string constant.\r\n\r\na[b=-->'x]<--", "no closing quote"},
    {"element[@type='O'Brien']",
     "Expected token ']' found 'NAME'.\r\n\r\nelement[@type='O'-->Brien<--']",
     "an apostrophe ends the literal"},
    {"count()", "Unknown method.\r\n\r\n-->count<--()", "an unknown method"},
    {"a[position() = 1]", "Unknown method.\r\n\r\na[-->position<--() = 1]", "another language's"},
    {"a[last()]", "Unknown method.\r\n\r\na[-->last<--()]", "another language's"},
    {"Element()", "Unknown method.\r\n\r\n-->Element<--()", "with case"},
    {"a!foo()", "Unknown method.\r\n\r\na!-->foo<--()", "an unknown method"},
    {"a!element()", "Unknown method.\r\n\r\na!-->element<--()", "no information"},
    {"a/index()", "Unknown method.\r\n\r\na/-->index<--()", "no step"},
    {"attribute(id)", "Expected token 'STRING' found 'NAME'.\r\n\r\nattribute(-->id<--)",
     "a name without quotes"},
    {"element(a)", "Expected token 'STRING' found 'NAME'.\r\n\r\nelement(-->a<--)",
     "a name without quotes"},
    {"node('a')", "Expected token ')' found 'STRING'.\r\n\r\nnode(-->'a'<--)", "no argument"},
    {"a[index(1)]", "Expected token ')' found 'NUMBER'.\r\n\r\na[index(-->1<--)]", "no argument"},
    {"a/@b/c", "Expected token 'eof' found '/'.\r\n\r\na/@b-->/<--c", "behind an attribute"},
    {"a/@b//c", "Expected token 'eof' found '//'.\r\n\r\na/@b-->//<--c", "behind an attribute"},
    {"a = 'x'", "Query must evaluate to a node-set.\r\n\r\n-->a = 'x'<--", "a bare comparison"},
    {"index()", "Query must evaluate to a node-set.\r\n\r\n-->index()<--", "a bare value"},
    {"not(a)", "Query must evaluate to a node-set.\r\n\r\n-->not(a)<--", "a bare truth"},
    {"(a = 'x')/b", "Query must evaluate to a node-set.\r\n\r\n-->(a = 'x')<--/b", "no nodes"},
    {"(a = 'x')[0]", "Query must evaluate to a node-set.\r\n\r\n-->(a = 'x')<--[0]", "no nodes"},
    {"(a = 'x') | b", "Query must evaluate to a node-set.\r\n\r\n-->(a = 'x')<-- | b", "no nodes"},
    {"*:a", "Expected token 'eof' found ':'.\r\n\r\n*-->:<--a", "no name of any prefix"},
    {"child::a", "Expected token 'eof' found ':'.\r\n\r\nchild-->:<--:a", "no axes"},
    {"$x", "Unexpected character in query string.\r\n\r\n-->$<--x", "no variables"},
    {"a + b", "Unexpected character in query string.\r\n\r\na -->+<-- b", "no arithmetic"},
    {"/r[@k", "Expected token ']' found 'eof'.\r\n\r\n/r[@k--><--", "an open filter"},
};

TEST(Pattern, ThatIsNoneIsRefusedAndSaysWhere) {
  const dom::Document document = Parsed("<r/>");
  for (const Refused& row : kRefused) {
    try {
      static_cast<void>(SelectNodes(document.AsNode(), row.pattern));
      ADD_FAILURE() << row.pattern << ": " << row.why;
    } catch (const Error& error) {
      EXPECT_EQ(error.Number(), dom::kStatusFail) << row.pattern;
      EXPECT_EQ(error.Source(), "msxml3.dll") << row.pattern;
      EXPECT_EQ(error.Description(), row.text) << row.pattern << ": " << row.why;
    }
  }
}

TEST(Pattern, OfNullIsABadArgument) {
  const dom::Node start = Parsed("<r/>").AsNode();
  try {
    static_cast<void>(SelectNodes(start, std::string_view()));
    ADD_FAILURE() << "nothing was raised";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), dom::kStatusInvalidArgument);
  }
}

TEST(Pattern, MayBeNestedDeeplyButNotWithoutEnd) {
  const auto nested = [](std::size_t levels) {
    return std::string(levels, '(') + "a" + std::string(levels, ')');
  };
  EXPECT_NO_THROW(static_cast<void>(Compile(nested(200))));
  for (const std::size_t levels : {300U, 3'000'000U}) {
    EXPECT_THROW(static_cast<void>(Compile(nested(levels))), Error);
  }
  std::string filters;
  for (int i = 0; i < 100'000; ++i) filters += "a[";
  EXPECT_THROW(static_cast<void>(Compile(filters)), Error);
  std::string negations;
  for (int i = 0; i < 1'000'001; ++i) negations += "$not$ ";
  EXPECT_TRUE(Holds(Parsed("<r/>").AsNode(), CompileCondition(negations + "a")));
}

TEST(Pattern, MayBeLong) {
  std::string text = "a0";
  for (int i = 1; i < 20'000; ++i) text += " | a" + std::to_string(i);
  EXPECT_EQ(Found(Parsed("<r><a7/><b/><a19999/></r>").DocumentElement(), text), "a7 a19999");
}

TEST(Pattern, AsAConditionTellsItsTruth) {
  const dom::Node root = Parsed("<r k='1'><a/></r>").DocumentElement();
  EXPECT_TRUE(Holds(root, CompileCondition("@k = 1")));
  EXPECT_FALSE(Holds(root, CompileCondition("@k = 2")));
  EXPECT_TRUE(Holds(root, CompileCondition("a")));
  EXPECT_FALSE(Holds(root, CompileCondition("b")));
  EXPECT_EQ(CompileCondition("@k = 1").Result(), PatternResult::kTruth);
  EXPECT_EQ(CompileCondition("@k").Result(), PatternResult::kNodes);
}

}  // namespace
}  // namespace kx::patterns
