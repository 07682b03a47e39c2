// What words become.
#include "kxmsg/command_line.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kxmsg {
namespace {

using Words = std::vector<std::string>;

Arguments Read(const Words& words) {
  Arguments arguments;
  const CommandLine line = ReadCommandLine(words, arguments);
  EXPECT_EQ(line.outcome, CommandLine::Outcome::kRun) << line.text;
  return arguments;
}

std::string Refusal(const Words& words) {
  Arguments arguments;
  const CommandLine line = ReadCommandLine(words, arguments);
  EXPECT_EQ(line.outcome, CommandLine::Outcome::kRefuse);
  return line.text;
}

TEST(CommandLineOf, EachCommandHasItsWords) {
  EXPECT_EQ(Read({"new", "order.xdr"}).command, Command::kNew);
  EXPECT_EQ(Read({"check", "a", "b"}).files, (Words{"a", "b"}));
  EXPECT_EQ(Read({"show", "a"}).command, Command::kShow);
  EXPECT_EQ(Read({"schema", "a"}).command, Command::kSchema);
  EXPECT_EQ(Read({"header", "a", "Tag", "Class"}).headerItems, (Words{"Tag", "Class"}));
  EXPECT_FALSE(Read({"config"}).hasSettingName);
  const Arguments config = Read({"config", "SchemaPath", "x"});
  EXPECT_TRUE(config.hasSettingName);
  EXPECT_TRUE(config.hasSettingValue);
  EXPECT_EQ(config.settingValue, "x");
  const Arguments get = Read({"get", "a", "b"});
  EXPECT_EQ(get.command, Command::kGet);
  EXPECT_EQ(get.file, "a");
  EXPECT_EQ(get.pattern, "b");
  EXPECT_FALSE(get.hasOutput);
  const Arguments edit = Read({"edit", "a", "b", "-e", "[c]", "--edit", "set d -5", "-e", ""});
  EXPECT_EQ(edit.file, "a");
  EXPECT_TRUE(edit.hasScript);
  EXPECT_EQ(edit.script, "b");
  EXPECT_EQ(edit.scriptLines, (Words{"[c]", "set d -5", ""}));
  EXPECT_FALSE(Read({"edit", "-", "-e", "remove a"}).hasScript);
  const Arguments set = Read({"set", "a", "b", "c", "-o", "-"});
  EXPECT_EQ(set.value, "c");
  EXPECT_TRUE(set.hasOutput);
  EXPECT_EQ(set.output, "-");
}

TEST(CommandLineOf, AWordThatLooksLikeSyntaxIsTakenAsItIs) {
  for (const char* word :
       {"-5", "-.5", "", "[a,b]", "{}", "%%", "-", "get", "a=b", "\x01x", "+1"}) {
    EXPECT_EQ(Read({"set", "a.xml", "Quantity", word}).value, word);
    EXPECT_EQ(Read({"get", "a.xml", word}).pattern, word);
  }
  EXPECT_EQ(Read({"check", "[a,b]", "header", "-"}).files, (Words{"[a,b]", "header", "-"}));
  EXPECT_EQ(Read({"set", "a.xml", "P", "--", "-x"}).value, "-x");
  EXPECT_EQ(Read({"new", "s", "--root", "[x]"}).root, "[x]");
}

TEST(CommandLineOf, TheOptionThatLooksLikeANumberIsOneOfGetAlone) {
  EXPECT_TRUE(Read({"get", "-0", "a.xml", "b"}).nullEnds);
  EXPECT_EQ(Read({"set", "a.xml", "b", "-0"}).value, "-0");
}

TEST(CommandLineOf, OptionsMayStandAnywhereBehindTheCommand) {
  const Arguments arguments =
      Read({"check", "--jobs", "4", "a", "--json", "b", "-q", "--color", "never"});
  EXPECT_EQ(arguments.files, (Words{"a", "b"}));
  EXPECT_EQ(arguments.jobs, 4);
  EXPECT_TRUE(arguments.json);
  EXPECT_TRUE(arguments.quiet);
  EXPECT_EQ(arguments.color, Color::kNever);
}

TEST(CommandLineOf, OptionsOfTheLibraryReachIt) {
  const Arguments arguments = Read({"show",
                                    "a",
                                    "--code-page",
                                    "65001",
                                    "--schema-base",
                                    "C:\\s",
                                    "--message-base",
                                    "http://h/m",
                                    "--allow-prefix",
                                    "http://a/",
                                    "--allow-prefix",
                                    "http://b/",
                                    "--schema-folder",
                                    "/one",
                                    "--schema-folder",
                                    "two",
                                    "--drive",
                                    "d=/x",
                                    "--drive",
                                    "E=y",
                                    "--max-document-bytes",
                                    "1k",
                                    "--max-depth",
                                    "7",
                                    "--max-entity-bytes",
                                    "2MB",
                                    "--max-default-elements",
                                    "3",
                                    "--max-default-depth",
                                    "4",
                                    "--max-schema-bytes",
                                    "5",
                                    "--max-download-bytes",
                                    "6",
                                    "--download-seconds",
                                    "8",
                                    "--max-redirects",
                                    "0",
                                    "--default-schema",
                                    "order",
                                    "--base"});
  const kx::Options& options = arguments.options;
  const std::string here = std::filesystem::current_path().string() + "/";
  EXPECT_EQ(options.codePage, 65001);
  EXPECT_EQ(options.schemaBase, "C:\\s");
  EXPECT_EQ(options.messageBase, "http://h/m");
  EXPECT_EQ(options.allowedPrefixes, (Words{"http://a/", "http://b/"}));
  EXPECT_EQ(options.schemaFolders, (Words{"/one", here + "two"}));
  EXPECT_EQ(options.driveFolders.at('D'), "/x");
  EXPECT_EQ(options.driveFolders.at('E'), here + "y");
  EXPECT_EQ(options.maxDocumentBytes, 1024U);
  EXPECT_EQ(options.maxDepth, 7U);
  EXPECT_EQ(options.maxEntityBytes, 2U << 20U);
  EXPECT_EQ(options.maxDefaultElements, 3U);
  EXPECT_EQ(options.maxDefaultDepth, 4U);
  EXPECT_EQ(options.maxSchemaBytes, 5U);
  EXPECT_EQ(options.maxDownloadBytes, 6U);
  EXPECT_EQ(options.downloadSeconds, 8U);
  EXPECT_EQ(options.maxRedirects, 0U);
  EXPECT_EQ(arguments.defaultSchema, "order");
  EXPECT_TRUE(arguments.base);
}

TEST(CommandLineOf, WhatIsWrongIsRefused) {
  const struct {
    Words words;
    const char* named;
    const char* why;
  } rows[] = {
      {{}, "command", "no command"},
      {{"frobnicate"}, "frobnicate", "no such command"},
      {{"show"}, "FILE", "no file"},
      {{"show", "a", "b"}, "b", "a file too many"},
      {{"set", "a", "b"}, "VALUE", "no value"},
      {{"show", "a", "--json"}, "--json", "an option of another command"},
      {{"show", "a", "--no-such"}, "--no-such", "an option of none"},
      {{"check", "a", "--jobs", "-1"}, "--jobs", "less than no jobs"},
      {{"check", "a", "--jobs", "1025"}, "--jobs", "too many jobs"},
      {{"check", "a", "--jobs", "x"}, "--jobs", "no number"},
      {{"check", "a", "--color", "blue"}, "--color", "no such way of colours"},
      {{"check", "a", "--max-depth", "-1"}, "--max-depth", "a bound below nothing"},
      {{"check", "a", "--max-depth", "99999999999"}, "--max-depth", "a bound beyond all"},
      {{"check", "a", "--drive", "CC=x"}, "--drive", "two letters"},
      {{"check", "a", "--drive", "C="}, "--drive", "no folder"},
      {{"check", "a", "--drive", "1=x"}, "--drive", "no letter"},
      {{"get", "a", "\xFF"}, "UTF-8", "a pattern that is no text"},
      {{"set", "a", "b", "\xFF"}, "UTF-8", "a value that is no text"},
      {{"new", "a", "--root", "\xFF"}, "UTF-8", "a name that is no text"},
      {{"header", "a", "Tag=\xFF"}, "UTF-8", "a header that is no text"},
      {{"config", "SchemaPath", "\xFF"}, "UTF-8", "a setting that is no text"},
      {{"config", "SchemaPath", "x", "y"}, "y", "a word too many"},
  };
  for (const auto& row : rows) {
    const std::string text = Refusal(row.words);
    EXPECT_NE(text.find(row.named), std::string::npos) << row.why << ": " << text;
  }
}

TEST(CommandLineOf, HelpIsOfTheCommandThatItStandsBehind) {
  Arguments arguments;
  const CommandLine all = ReadCommandLine({"--help"}, arguments);
  const CommandLine one = ReadCommandLine({"set", "--help"}, arguments);
  const CommandLine early = ReadCommandLine({"set", "a", "-h"}, arguments);
  EXPECT_EQ(all.outcome, CommandLine::Outcome::kPrint);
  EXPECT_NE(all.text.find("Exit status:"), std::string::npos);
  for (const char* part :
       {"new", "check", "show", "get", "set", "edit", "schema", "header", "config"}) {
    EXPECT_NE(all.text.find(std::string("\n  ") + part + ' '), std::string::npos) << part;
  }
  EXPECT_EQ(one.outcome, CommandLine::Outcome::kPrint);
  EXPECT_NE(one.text.find("Examples:"), std::string::npos);
  EXPECT_NE(one.text.find("--create"), std::string::npos);
  EXPECT_EQ(early.text, one.text);
}

}  // namespace
}  // namespace kxmsg
