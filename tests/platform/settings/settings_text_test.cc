// Reading and writing the text of a settings file, damaged ones included.
#include "platform/settings/settings_text.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::settings {
namespace {

using namespace std::string_literals;

SettingsText Parsed(std::string_view text) {
  SettingsDamage damage;
  std::optional<SettingsText> result = SettingsText::Parse(text, damage);
  EXPECT_TRUE(result.has_value()) << "line " << damage.line << ": " << damage.reason;
  return result.value_or(SettingsText());
}

struct ReadCase {
  std::string text;
  const char* value;  // of "n" in section "s"; null for none
  const char* why;
};

TEST(SettingsText, ReadsPlainAndQuotedEntries) {
  const ReadCase cases[] = {
      {"", nullptr, "an empty file"},
      {"[s]\nn=v\n", "v", "the plainest"},
      {"[s]\nn=v", "v", "the last line end may be missing"},
      {"[s]\r\nn = v\r\n", "v", "CR LF, and blanks around"},
      {"\xEF\xBB\xBF[s]\nn=v\n", "v", "a byte-order mark"},
      {" [ s ] \n\t n\t=\tv \n", "v", "blanks everywhere"},
      {"# c\n; c\n\n[s]\n# n=x\nn=v\n", "v", "comments and blank lines"},
      {"[S]\nN=v\n", "v", "another case"},
      {"[t]\nn=x\n[s]\nn=v\n", "v", "another section"},
      {"[s]\nm=x\n[t]\nn=v\n", nullptr, "the section ends with the next"},
      {"[s]\nn=\n", "", "an empty value"},
      {"[s]\nn=\"\"\n", "", "an empty value in quotes"},
      {"[s]\nn=a=b\n", "a=b", "an equals sign in a value"},
      {"[s]\nn=C:\\new\\table\\\n", "C:\\new\\table\\", "a plain backslash is one"},
      {"[s]\nn=a # b ; c\n", "a # b ; c", "no comment after a value"},
      {"[s]\nn=a\"b\"\n", "a\"b\"", "quotes inside a plain value"},
      {"[s]\nn=\" a \"\n", " a ", "blanks in quotes"},
      {"[s]\nn=\"\\\\\\\"\\n\\r\\t\\x41\\xe4\"\n", "\\\"\n\r\tA\xE4", "every escape"},
      {"[s]\n\"n\"=v\n", "v", "a name in quotes"},
      {"[s]\n\"\\x6E\" = v\n", "v", "an escape in a name"},
      {"[\"s\"]\nn=v\n", "v", "a section in quotes"},
      {"[s]\nn=\xC3\xA4\n", "\xC3\xA4", "UTF-8"},
  };
  for (const ReadCase& row : cases) {
    SCOPED_TRACE(row.why);
    const std::optional<std::string> value = Parsed(row.text).Find("s", "n");
    ASSERT_EQ(value.has_value(), row.value != nullptr);
    EXPECT_EQ(value.value_or(""), row.value == nullptr ? "" : row.value);
  }
}

struct DamageCase {
  std::string text;
  std::size_t line;
  const char* reason;
};

TEST(SettingsText, RefusesADamagedFileAndSaysWhere) {
  const DamageCase cases[] = {
      {"[s]\nn\n", 2, "neither a comment, a section nor an entry"},
      {"n=v\n", 1, "an entry before any section"},
      {"# c\n[s\n", 2, "a section without its closing bracket"},
      {"[s] x\n", 1, "a section without its closing bracket"},
      {"[\"s]\n", 1, "a section's quotes are not well formed"},
      {"[s]\n=v\n", 2, "an entry without a name"},
      {"[s]\nn=\"v\n", 2, "a value's quotes or escapes are not well formed"},
      {"[s]\nn=\"v\" x\n", 2, "a value's quotes or escapes are not well formed"},
      {"[s]\nn=\"\\q\"\n", 2, "a value's quotes or escapes are not well formed"},
      {"[s]\nn=\"\\x4\"\n", 2, "a value's quotes or escapes are not well formed"},
      {"[s]\nn=\"\\x4g\"\n", 2, "a value's quotes or escapes are not well formed"},
      {"[s]\nn=\"\\\n", 2, "a value's quotes or escapes are not well formed"},
      {"[s]\n\"n=v\n", 2, "a name's quotes or escapes are not well formed"},
      {"[s]\n\"n\" v\n", 2, "no equals sign follows the name"},
      {"[s]\nn=1\nN=2\n", 3, "a name given twice"},
      {"[s]\n\n[S]\n", 3, "a section given twice"},
      {"[s]\nn=a\0b\n"s, 2, "a control character"},
      {"[s]\nn=a\x01\n", 2, "a control character"},
      {"[s]\nn=a\rb\n", 2, "a control character"},
      {"[s]\nn=\xFF\n", 2, "not UTF-8"},
      {"\0\0\0\0"s, 1, "a control character"},
  };
  for (const DamageCase& row : cases) {
    SCOPED_TRACE(row.text);
    SettingsDamage damage;
    EXPECT_FALSE(SettingsText::Parse(row.text, damage).has_value());
    EXPECT_EQ(damage.line, row.line);
    EXPECT_STREQ(damage.reason, row.reason);
  }
}

TEST(SettingsText, WritesPlainWhatCanBePlain) {
  SettingsText text;
  text.Set("App", "path", "C:\\x\\");
  text.Set("App", "empty", "");
  text.Set("App", " odd=", " odd\n\xC3\xA4");
  text.Set("Other", "x", "\xFF");
  EXPECT_EQ(text.Text(),
            "[App]\n"
            "path = C:\\x\\\n"
            "empty =\n"
            "\" odd=\" = \" odd\\n\xC3\xA4\"\n"
            "\n"
            "[Other]\n"
            "x = \"\\xFF\"\n");
}

TEST(SettingsText, KeepsWhatAUserWroteWhenAnEntryChanges) {
  SettingsText text = Parsed(
      "# mine\n"
      "[App]\n"
      "  First=1  \n"
      "second = 2\n"
      "\n"
      "\n"
      "[Other]\n"
      "; end\n");
  text.Set("app", "SECOND", "3");
  text.Set("app", "third", "4");
  text.Set("OTHER", "x", "5");
  EXPECT_EQ(text.Text(),
            "# mine\n"
            "[App]\n"
            "  First=1  \n"
            "second = 3\n"
            "third = 4\n"
            "\n"
            "\n"
            "[Other]\n"
            "; end\n"
            "x = 5\n");
}

TEST(SettingsText, IsReadBackAsItWasWritten) {
  SettingsText text;
  for (int c = 1; c < 256; ++c) {
    const std::string odd = std::string(1, static_cast<char>(c)) + "x" + static_cast<char>(c);
    text.Set(odd, odd + "n", odd + "v");
  }
  const SettingsText again = Parsed(text.Text());
  EXPECT_EQ(again.Text(), text.Text());
  for (int c = 1; c < 256; ++c) {
    const std::string odd = std::string(1, static_cast<char>(c)) + "x" + static_cast<char>(c);
    if (c >= 'a' && c <= 'z') continue;  // the section of the upper-case letter
    EXPECT_EQ(again.Find(odd, odd + "n").value_or("missing").size(), odd.size() + 1) << c;
  }
}

TEST(SettingsText, TakesManyEntriesInOneSection) {
  std::string text = "[s]\n";
  for (int i = 0; i < 50000; ++i) text += "n" + std::to_string(i) + "=v\n";
  EXPECT_EQ(Parsed(text).Find("s", "n49999"), "v");
}

}  // namespace
}  // namespace kx::settings
