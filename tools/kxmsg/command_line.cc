// See command_line.h.
#include "kxmsg/command_line.h"

#include "kxmsg/files.h"
#include "kxmsg/grammar.h"
#include "kxmsg/manual.h"
#include "kxmsg/text_form.h"

#include <CLI/CLI.hpp>
#include <algorithm>

namespace kxmsg {

namespace {

// Stands before a word whose first character the parser would take for syntax of its own: a
// negative number for an option, brackets for a list, an empty word for a missing one.
constexpr char kMark = '\x01';

// `command` is the first word of the line: only get has an option that looks like a number.
bool NeedsMark(const std::string& word, const std::string& command) {
  if (word.empty()) return true;
  if (word == "-0" && command == "get") return false;
  const char first = word.front();
  if (first == '-')
    return word.size() > 1 && (word[1] == '.' || (word[1] >= '0' && word[1] <= '9'));
  return first == '[' || first == '{' || first == '%' || first == kMark;
}

void RemoveMark(std::string& word) {
  if (!word.empty() && word.front() == kMark) word.erase(0, 1);
}

void RemoveMarks(Arguments& arguments) {
  for (std::string* const word :
       {&arguments.file, &arguments.schema, &arguments.root, &arguments.pattern, &arguments.value,
        &arguments.script, &arguments.output, &arguments.settingName, &arguments.settingValue,
        &arguments.defaultSchema, &arguments.options.schemaBase, &arguments.options.messageBase}) {
    RemoveMark(*word);
  }
  for (std::vector<std::string>* const words :
       {&arguments.files, &arguments.scriptLines, &arguments.headerItems, &arguments.drives,
        &arguments.options.allowedPrefixes, &arguments.options.schemaFolders}) {
    for (std::string& word : *words) RemoveMark(word);
  }
}

// The parser's own words for this name no command.
std::string CheckCommand(const std::vector<std::string>& words) {
  if (words.empty()) return "a command is required";
  const std::string& word = words.front();
  if (!word.empty() && word.front() == '-') return {};
  for (const CommandText& command : Commands()) {
    if (command.name == word) return {};
  }
  return "there is no command " + Quoted(word);
}

// ---- What the parser cannot check --------------------------------------------------------------

std::string ReadDrive(const std::string& text, kx::Options& options) {
  const bool wellFormed =
      text.size() > 2 && text[1] == '=' &&
      ((text[0] >= 'a' && text[0] <= 'z') || (text[0] >= 'A' && text[0] <= 'Z'));
  if (!wellFormed) return "--drive: " + Quoted(text) + " is not LETTER=FOLDER";
  const char letter = text[0] >= 'a' ? static_cast<char>(text[0] - 'a' + 'A') : text[0];
  options.driveFolders[letter] = BaseLocation(text.substr(2));
  return {};
}

std::string CheckTexts(const Arguments& arguments) {
  const struct {
    const char* name;
    const std::string& text;
  } rows[] = {{"--root", arguments.root},
              {"PATTERN", arguments.pattern},
              {"VALUE", arguments.value},
              {"VALUE", arguments.settingValue}};
  for (const auto& row : rows) {
    if (!IsUtf8(row.text)) return std::string(row.name) + ": " + Quoted(row.text) + " is not UTF-8";
  }
  for (const std::string& item : arguments.headerItems) {
    if (!IsUtf8(item)) return "NAME=VALUE: " + Quoted(item) + " is not UTF-8";
  }
  return {};
}

// Makes of the words what the commands work with. Returns what is wrong with them.
std::string Complete(Arguments& arguments) {
  RemoveMarks(arguments);
  for (const std::string& drive : arguments.drives) {
    if (std::string fault = ReadDrive(drive, arguments.options); !fault.empty()) return fault;
  }
  for (std::string* const base : {&arguments.options.schemaBase, &arguments.options.messageBase}) {
    if (!base->empty()) *base = BaseLocation(*base);
  }
  for (std::string& folder : arguments.options.schemaFolders) folder = BaseLocation(folder);
  return CheckTexts(arguments);
}

std::string WithoutMarks(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), kMark), text.end());
  return text;
}

}  // namespace

CommandLine ReadCommandLine(const std::vector<std::string>& words, Arguments& arguments) {
  if (std::string fault = CheckCommand(words); !fault.empty()) {
    return {CommandLine::Outcome::kRefuse, std::move(fault)};
  }
  const std::shared_ptr<CLI::App> app = BuildGrammar(arguments);
  // The parser takes its words from the end.
  std::vector<std::string> reversed;
  for (auto word = words.rbegin(); word != words.rend(); ++word) {
    reversed.push_back(NeedsMark(*word, words.front()) ? kMark + *word : *word);
  }
  try {
    app->parse(std::move(reversed));
  } catch (const CLI::CallForHelp&) {
    return {CommandLine::Outcome::kPrint, app->help()};
  } catch (const CLI::CallForVersion& version) {
    return {CommandLine::Outcome::kPrint, std::string(version.what()) + '\n'};
  } catch (const CLI::ParseError& error) {
    return {CommandLine::Outcome::kRefuse, WithoutMarks(error.what())};
  }
  std::string fault = Complete(arguments);
  if (fault.empty()) return {};
  return {CommandLine::Outcome::kRefuse, std::move(fault)};
}

}  // namespace kxmsg
