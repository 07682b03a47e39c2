// The lines of a script, as commands or as what is wrong with them.
#include "kxmsg/script.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace kxmsg {
namespace {

std::string Told(const Word& word) {
  return "<" + word.text + ">@" + std::to_string(word.position);
}

// "LINE VERB <PATTERN>@POSITION" and so on, a semicolon behind each.
std::string Dump(const Step& step) {
  constexpr const char* kNames[] = {"add", "set", "attr", "remove", "group"};
  std::string text = std::to_string(step.line) + ' ' + kNames[static_cast<int>(step.verb)];
  text += ' ' + Told(step.pattern);
  if (step.name) text += " name " + Told(*step.name);
  if (step.group) text += " group " + std::to_string(step.groupNumber);
  if (step.value) text += " value " + Told(*step.value);
  return text + ';';
}

std::string Read(std::string_view text) {
  ScriptReader reader(text, "s");
  std::string dump;
  try {
    while (const std::optional<Step> step = reader.Next()) dump += Dump(*step);
  } catch (const ScriptFailure& failure) {
    EXPECT_EQ(failure.name, "s");
    EXPECT_EQ(static_cast<std::uint32_t>(failure.failure.number), 0x800A0005U);
    dump += std::to_string(failure.failure.line) + ':' + std::to_string(failure.failure.position) +
            ": " + failure.failure.text;
  }
  return dump;
}

struct Row {
  std::string script;
  const char* dump;
  const char* why;
};

TEST(ScriptReader, EachLineIsACommand) {
  const Row rows[] = {
      {"", "", "nothing"},
      {"\n \n\t\n", "", "blank lines"},
      {"# remove Items\n  # set\n", "", "comments"},
      {"add Items", "1 add <Items>@5;", "the only child"},
      {"add Items Item", "1 add <Items>@5 name <Item>@11;", "a child"},
      {"add a b c", "1 add <a>@5 name <b>@7 value <c>@9;", "a child with its value"},
      {"set a b", "1 set <a>@5 value <b>@7;", "a value"},
      {"attr a b", "1 attr <a>@6 name <b>@8;", "an attribute"},
      {"attr a p:b.c-d_1 v", "1 attr <a>@6 name <p:b.c-d_1>@8 value <v>@18;", "any name"},
      {"remove a", "1 remove <a>@8;", "an element"},
      {"group a 2", "1 group <a>@7 group 2;", "a group"},
      {"group a 32767", "1 group <a>@7 group 32767;", "the last group that may be"},
      {"  remove\t a \t", "1 remove <a>@11;", "blanks around words"},
      {"remove a # all of them", "1 remove <a>@8;", "a comment behind a command"},
      {"\n\nremove a\n\nremove b", "3 remove <a>@8;5 remove <b>@8;", "lines count"},
      {"remove a\r\nremove b\r\n", "1 remove <a>@8;2 remove <b>@8;", "line ends of two characters"},
      {"\xEF\xBB\xBFremove a", "1 remove <a>@8;", "a byte-order mark"},
      {"set \xC3\xA9 v", "1 set <\xC3\xA9>@5 value <v>@7;", "positions count characters"},
  };
  for (const Row& row : rows) EXPECT_EQ(Read(row.script), row.dump) << row.why;
}

TEST(ScriptReader, PatternsAreReadWithTheirBrackets) {
  const Row rows[] = {
      {"remove a[b = 0]", "1 remove <a[b = 0]>@8;", "blanks in brackets"},
      {"remove a[b = 'x ] y'] # c", "1 remove <a[b = 'x ] y']>@8;", "a bracket in quotation marks"},
      {"remove a[b = \"it's ]\"]", "1 remove <a[b = \"it's ]\"]>@8;", "one quotation in another"},
      {"remove a[b[c = 1] # 2]/d", "1 remove <a[b[c = 1] # 2]/d>@8;", "brackets in brackets"},
      {"remove (a | b)/c", "1 remove <(a | b)/c>@8;", "parentheses"},
      {"set a[b='1']/c v", "1 set <a[b='1']/c>@5 value <v>@16;", "a word behind brackets"},
      {"remove \"a | b\"", "1 remove <a | b>@8;", "a quoted pattern"},
      {"remove 'a[b = \"c\"]'", "1 remove <a[b = \"c\"]>@8;", "quotation marks in one"},
      {"remove a]b", "1 remove <a]b>@8;", "what closes nothing is the pattern's own mistake"},
      {"remove a\\b", "1 remove <a\\b>@8;", "a backslash in a pattern is itself"},
      {"remove a#b", "1 remove <a#b>@8;", "no comment begins in a word"},
  };
  for (const Row& row : rows) EXPECT_EQ(Read(row.script), row.dump) << row.why;
}

TEST(ScriptReader, ValuesAreWordsOrQuoted) {
  const Row rows[] = {
      {"set a O'Brien", "1 set <a>@5 value <O'Brien>@7;", "a quotation mark in a word"},
      {"set a [(", "1 set <a>@5 value <[(>@7;", "brackets in a value"},
      {"set a C:\\new", "1 set <a>@5 value <C:\\new>@7;", "a backslash in a word"},
      {"set a -5", "1 set <a>@5 value <-5>@7;", "a sign"},
      {"set a ''", "1 set <a>@5 value <>@7;", "nothing"},
      {"set a \"\"", "1 set <a>@5 value <>@7;", "nothing, too"},
      {"set a 'x  y'", "1 set <a>@5 value <x  y>@7;", "blanks"},
      {"set a '\\n\"'", "1 set <a>@5 value <\\n\">@7;", "no escapes in single marks"},
      {R"(set a "\"\'\\")", "1 set <a>@5 value <\"'\\>@7;", "marks"},
      {R"(set a "\n\r\t")", "1 set <a>@5 value <\n\r\t>@7;", "line ends and tab"},
      {R"(set a "\x41\u{41}\u{20AC}\u{1f600}\u{e9}")",
       "1 set <a>@5 value <AA\xE2\x82\xAC\xF0\x9F\x98\x80\xC3\xA9>@7;", "characters by number"},
      {"set a \"#b\" # c", "1 set <a>@5 value <#b>@7;", "the mark of comments"},
      {"set a 'b'\t", "1 set <a>@5 value <b>@7;", "a blank at the end"},
  };
  for (const Row& row : rows) EXPECT_EQ(Read(row.script), row.dump) << row.why;
}

TEST(ScriptReader, WhatIsNoCommandIsToldWithItsPlace) {
  const std::string quote = "A quotation mark without its counterpart.";
  const std::string blank = "A blank belongs behind the quotation mark that closes a word.";
  const std::string bracket = "A bracket without its counterpart.";
  const std::string escape =
      "No escape: \\\" \\' \\\\ \\n \\t \\r \\x1F and \\u{20AC} are; '...' needs none.";
  const struct {
    std::string script;
    std::string dump;
  } rows[] = {
      {"ad a", "1:1: There is no command \"ad\"; there are add, set, attr, remove and group."},
      {"ADD a", "1:1: There is no command \"ADD\"; there are add, set, attr, remove and group."},
      {"remove a\n\n  \x1B[2J",
       "1 remove <a>@8;3:3: There is no command \"\\x1B[2J\"; there are add, set, attr, remove and "
       "group."},
      {" add",
       "1:2: The words of a command are: add PATTERN [NAME [VALUE]]. Quote what has blanks "
       "in it."},
      {"set a # b",
       "1:1: The words of a command are: set PATTERN VALUE. Quote what has blanks in it."},
      {"set a b c",
       "1:9: The words of a command are: set PATTERN VALUE. Quote what has blanks in it."},
      {"remove a b",
       "1:10: The words of a command are: remove PATTERN. Quote what has blanks in "
       "it."},
      {"attr a",
       "1:1: The words of a command are: attr PATTERN NAME [VALUE]. Quote what has blanks "
       "in it."},
      {"group a",
       "1:1: The words of a command are: group PATTERN NUMBER. Quote what has blanks in "
       "it."},
      {"group a 0", "1:9: \"0\" is no number of a group."},
      {"group a -1", "1:9: \"-1\" is no number of a group."},
      {"group a 2x", "1:9: \"2x\" is no number of a group."},
      {"group a 32768", "1:9: \"32768\" is no number of a group."},
      {"add a 4b", "1:7: \"4b\" is no name."},
      {"add a b/c", "1:7: \"b/c\" is no name."},
      {"add a ''", "1:7: \"\" is no name."},
      {"attr a @b", "1:8: \"@b\" is no name."},
      {"attr a \"b' or '1\"", "1:8: \"b' or '1\" is no name."},
      {"set a 'b", "1:7: " + quote},
      {"set a \"b", "1:7: " + quote},
      {"set a \"b\\\"", "1:7: " + quote},
      {"set \xC3\xA9 'b", "1:7: " + quote},
      {"remove a[b = 'c]", "1:14: " + quote},
      {"remove a[b", "1:9: " + bracket},
      {"remove a[b]((c)", "1:12: " + bracket},
      {"set a 'b'c", "1:10: " + blank},
      {"set 'a'b c", "1:8: " + blank},
      {"'set'a b", "1:6: " + blank},
      {R"(set a "\q")", "1:8: " + escape},
      {R"(set a "\")", "1:7: " + quote},
      {R"(set a "b\)", "1:9: " + escape},
      {R"(set a "\x4")", "1:8: " + escape},
      {R"(set a "\x80")", "1:8: " + escape},
      {R"(set a "\x00")", "1:8: " + escape},
      {R"(set a "\u41")", "1:8: " + escape},
      {R"(set a "\u{}")", "1:8: " + escape},
      {R"(set a "\u{D800}")", "1:8: " + escape},
      {R"(set a "\u{110000}")", "1:8: " + escape},
      {R"(set a "\u{1234567}")", "1:8: " + escape},
      {R"(set a "\u{41")", "1:8: " + escape},
      {std::string("remove a\0b", 10), "1:9: A NUL; scripts are UTF-8."},
      {std::string("r\0e\0", 4), "1:2: A NUL; scripts are UTF-8."},
      {"remove \xC3\xA9\xFF", "1:9: Not UTF-8."},
      {"\xFF\xFEr", "1:1: Not UTF-8."},
      {"# \xED\xA0\x80", "1:3: Not UTF-8."},
      {"remove a\rremove b",
       "1:17: The words of a command are: remove PATTERN. Quote what has "
       "blanks in it."},
  };
  for (const auto& row : rows) EXPECT_EQ(Read(row.script), row.dump) << row.script;
}

TEST(ScriptReader, LinesAreBounded) {
  const std::string longest = "set a " + std::string(kMostLineBytes - 6, 'x');
  EXPECT_EQ(Read(longest + '\n').size(), longest.size() + 17) << "the longest line";
  EXPECT_EQ(Read("remove a\n" + longest + "x\n"), "1 remove <a>@8;2:1: Longer than 1048576 bytes.");
  EXPECT_EQ(Read("#" + longest), "1:1: Longer than 1048576 bytes.");
}

TEST(ScriptReader, NoLineTakesLongerThanItsLengthDemands) {
  // Were brackets, quotations or positions looked for again and again, this would not end.
  const std::size_t many = kMostLineBytes / 2 - 100;
  std::string dump = Read("remove " + std::string(many, '(') + std::string(many, ')'));
  EXPECT_EQ(dump.size(), 2 * many + 14);
  EXPECT_EQ(Read("remove " + std::string(many, '[')), "1:8: A bracket without its counterpart.");
  std::string quotations = "remove [";
  for (std::size_t i = 0; i < many / 2; ++i) quotations += "'\"'";
  EXPECT_EQ(Read(quotations + ']').size(), quotations.size() + 8);
  std::string lines;
  for (int i = 0; i < 100'000; ++i) lines += "# a\n";
  EXPECT_EQ(Read(lines + "remove a"), "100001 remove <a>@8;");
}

}  // namespace
}  // namespace kxmsg
