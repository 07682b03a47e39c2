// See grammar.h. The words of the manual are in manual.cc; an option's own are here.
#include "kxmsg/grammar.h"

#include "kxmsg/manual.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <string_view>

namespace kxmsg {

namespace {

constexpr int kMostJobs = 1024;

void AddOutput(CLI::App& command, Arguments& arguments, const std::string& what) {
  command
      .add_option_function<std::string>(
          "-o,--output",
          [&arguments](const std::string& name) {
            arguments.output = name;
            arguments.hasOutput = true;
          },
          what)
      ->type_name("FILE");
}

void AddForce(CLI::App& command, Arguments& arguments) {
  command.add_flag("--force", arguments.force, "Writes a message that would not load again, too");
}

void AddFile(CLI::App& command, Arguments& arguments) {
  command.add_option("FILE", arguments.file, "The message; \"-\" is standard input")
      ->required()
      ->type_name("");
}

template <typename T>
void AddBound(CLI::App& command, const std::string& name, T& value, const std::string& what) {
  command.add_option(name, value, what + " (" + std::to_string(value) + ")")
      ->type_name("N")
      ->transform(CLI::AsSizeValue(false).description(""));
}

void AddNew(CLI::App& command, Arguments& arguments) {
  command.add_option("SCHEMA", arguments.schema, "The schema")->required()->type_name("");
  command.add_option("--root", arguments.root, "The content root (the schema's last element type)")
      ->type_name("NAME");
  AddOutput(command, arguments, "The file to write; \"-\" is standard output");
}

void AddCheck(CLI::App& command, Arguments& arguments) {
  command.add_option("FILE", arguments.files, "The messages; \"-\" is standard input")
      ->required()
      ->type_name("");
  command.add_flag("--json", arguments.json, "One array of JSON objects");
  command
      .add_option("-j,--jobs", arguments.jobs, "Messages at a time (1); 0: one for each processor")
      ->type_name("N")
      ->check(CLI::Range(0, kMostJobs).description(""));
}

void AddShow(CLI::App& command, Arguments& arguments) {
  AddFile(command, arguments);
  command.add_flag("--full", arguments.full, "Values whole, not their first 60 characters");
}

void AddGet(CLI::App& command, Arguments& arguments) {
  AddFile(command, arguments);
  command.add_option("PATTERN", arguments.pattern, "An XSL Pattern")->required()->type_name("");
  command.add_flag("--xml", arguments.xml,
                   "The elements as XML, not their text; not of attributes");
  command.add_flag("-0,--null", arguments.nullEnds, "A NUL after each instead of a line end");
}

void AddSet(CLI::App& command, Arguments& arguments) {
  AddFile(command, arguments);
  command.add_option("PATTERN", arguments.pattern, "An XSL Pattern")->required()->type_name("");
  command.add_option("VALUE", arguments.value, "The value, as the schema types it")
      ->required()
      ->type_name("");
  AddOutput(command, arguments, "The file to write instead; \"-\" is standard output");
  command.add_flag(
      "--create", arguments.create,
      "Adds what may be there and is not: the child that PATTERN, a plain name, names; "
      "the attribute NAME where PATTERN ends in /@NAME");
  AddForce(command, arguments);
}

void AddEdit(CLI::App& command, Arguments& arguments) {
  AddFile(command, arguments);
  command
      .add_option_function<std::string>(
          "SCRIPT",
          [&arguments](const std::string& name) {
            arguments.script = name;
            arguments.hasScript = true;
          },
          "The script's file; \"-\", or none and no -e, is standard input")
      ->type_name("");
  command
      .add_option("-e,--edit", arguments.scriptLines,
                  "A command of the script; may be given again, each is a line")
      ->type_name("COMMAND")
      ->allow_extra_args(false);
  AddOutput(command, arguments, "The file to write instead; \"-\" is standard output");
  AddForce(command, arguments);
  AddBound(command, "--max-elements", arguments.maxElements,
           "Elements that a command may find, and all of them may add");
}

void AddSchema(CLI::App& command, Arguments& arguments) {
  command.add_option("SCHEMA", arguments.schema, "The schema")->required()->type_name("");
  command.add_flag("--json", arguments.json, "One JSON object");
}

void AddHeader(CLI::App& command, Arguments& arguments) {
  AddFile(command, arguments);
  command.add_option("NAME[=VALUE]", arguments.headerItems, "Properties to print, or to change")
      ->type_name("");
  AddOutput(command, arguments, "The file to write instead; \"-\" is standard output");
  AddForce(command, arguments);
}

void AddConfig(CLI::App& command, Arguments& arguments) {
  command
      .add_option_function<std::string>(
          "NAME",
          [&arguments](const std::string& name) {
            arguments.settingName = name;
            arguments.hasSettingName = true;
          },
          "The setting")
      ->type_name("");
  command
      .add_option_function<std::string>(
          "VALUE",
          [&arguments](const std::string& value) {
            arguments.settingValue = value;
            arguments.hasSettingValue = true;
          },
          "The folder or URL to store")
      ->type_name("");
}

// ---- What all commands have --------------------------------------------------------------------

void AddLocations(CLI::App& command, Arguments& arguments) {
  kx::Options& options = arguments.options;
  command.add_flag("--base", arguments.base,
                   "Completes names against SchemaPath and MsgPath, not the current folder");
  command.add_option("--schema-base", options.schemaBase, "In the place of the setting SchemaPath")
      ->type_name("FOLDER|URL");
  command.add_option("--message-base", options.messageBase, "In the place of the setting MsgPath")
      ->type_name("FOLDER|URL");
  command
      .add_option("--default-schema", arguments.defaultSchema,
                  "The schema of messages that name none")
      ->type_name("SCHEMA");
  command
      .add_option("--drive", arguments.drives,
                  "The folder that stands for a drive; may be given again")
      ->type_name("LETTER=FOLDER")
      ->allow_extra_args(false);
  command.add_option("--code-page", options.codePage, "How files are read and written (1252)")
      ->type_name("NUMBER");
}

void AddAccess(CLI::App& command, Arguments& arguments) {
  command
      .add_option("--allow-prefix", arguments.options.allowedPrefixes,
                  "A URL under which messages may name schemas; may be given again")
      ->type_name("URL")
      ->allow_extra_args(false);
  command
      .add_option("--schema-folder", arguments.options.schemaFolders,
                  "Messages may name schemas in such folders only; may be given again")
      ->type_name("FOLDER")
      ->allow_extra_args(false);
}

void AddBounds(CLI::App& command, kx::Options& options) {
  AddBound(command, "--max-document-bytes", options.maxDocumentBytes, "Bytes of a message");
  AddBound(command, "--max-depth", options.maxDepth, "Levels of a message");
  AddBound(command, "--max-entity-bytes", options.maxEntityBytes, "Bytes that entities make");
  AddBound(command, "--max-default-elements", options.maxDefaultElements,
           "Elements that a new one is filled with");
  AddBound(command, "--max-default-depth", options.maxDefaultDepth, "Levels of these");
  AddBound(command, "--max-schema-bytes", options.maxSchemaBytes, "Bytes of a schema");
  AddBound(command, "--max-download-bytes", options.maxDownloadBytes, "Bytes of a download");
  AddBound(command, "--download-seconds", options.downloadSeconds, "Seconds for a download");
  AddBound(command, "--max-redirects", options.maxRedirects, "Redirections of a download");
}

void AddCommon(CLI::App& command, Arguments& arguments) {
  AddLocations(command, arguments);
  AddAccess(command, arguments);
  AddBounds(command, arguments.options);
  command.add_flag("-q,--quiet", arguments.quiet,
                   "No warnings, no progress bar, and of check only what is bad");
  const std::map<std::string, Color> colors = {
      {"auto", Color::kAuto}, {"always", Color::kAlways}, {"never", Color::kNever}};
  command.add_option("--color", arguments.color, "Colours: auto, always or never (auto)")
      ->type_name("WHEN")
      ->transform(CLI::CheckedTransformer(colors).description(""));
}

using AddOptions = void (*)(CLI::App&, Arguments&);

AddOptions OptionsOf(Command command) {
  switch (command) {
    case Command::kNew:
      return AddNew;
    case Command::kCheck:
      return AddCheck;
    case Command::kShow:
      return AddShow;
    case Command::kGet:
      return AddGet;
    case Command::kSet:
      return AddSet;
    case Command::kEdit:
      return AddEdit;
    case Command::kSchema:
      return AddSchema;
    case Command::kHeader:
      return AddHeader;
    case Command::kConfig:
      return AddConfig;
  }
  return AddConfig;
}

// The text in lines that a terminal shows whole.
std::string Wrapped(std::string_view text, std::size_t width = 79) {
  std::string lines;
  std::size_t lineLength = 0;
  while (!text.empty()) {
    const std::size_t end = text.find_first_of(" \n");
    const std::string_view word = text.substr(0, end);
    if (lineLength != 0 && lineLength + 1 + word.size() > width) {
      lines += '\n';
      lineLength = 0;
    } else if (lineLength != 0) {
      lines += ' ';
      ++lineLength;
    }
    lines += word;
    lineLength += word.size();
    if (end == std::string_view::npos) break;
    if (text[end] == '\n') {
      lines += "\n\n";
      lineLength = 0;
    }
    text.remove_prefix(end + 1);
  }
  return lines;
}

// The lines behind so many blanks.
std::string Indented(std::string_view lines, std::size_t blanks) {
  std::string text;
  while (!lines.empty()) {
    const std::size_t end = std::min(lines.find('\n'), lines.size());
    if (end != 0) text += std::string(blanks, ' ') + std::string(lines.substr(0, end));
    text += '\n';
    lines.remove_prefix(std::min(end + 1, lines.size()));
  }
  return text;
}

std::string ExamplesText(const CommandText& command) {
  std::string text = "Examples:";
  for (const Example& example : command.examples) {
    text += "\n  " + std::string(example.line) + "\n      " + std::string(example.what);
  }
  return text;
}

std::string LanguageText(const CommandText& command) {
  std::string text;
  for (const Term& term : command.terms) {
    text += "  " + std::string(term.term) + '\n' + Indented(Wrapped(term.meaning, 73), 6);
  }
  if (!command.sample.empty()) text += "\n" + Indented(command.sample, 2);
  return text.empty() ? text : text + '\n';
}

std::string GeneralFooter() {
  std::string text;
  for (const std::string_view paragraph : GeneralText()) text += Wrapped(paragraph) + "\n\n";
  text += "Exit status:";
  for (const Term& term : ExitStatusText()) {
    text += "\n  " + std::string(term.term) + "  " + std::string(term.meaning);
  }
  text += "\n\nEnvironment:";
  for (const Term& term : EnvironmentText()) {
    text += "\n  " + std::string(term.term) + "\n      " + std::string(term.meaning);
  }
  text += "\n\nExamples:";
  for (const CommandText& command : Commands()) {
    const Example& example = command.examples.front();
    text += "\n  " + std::string(example.line) + "\n      " + std::string(example.what);
  }
  return text + "\n\n\"kxmsg COMMAND --help\" tells of one command.";
}

}  // namespace

std::shared_ptr<CLI::App> BuildGrammar(Arguments& arguments) {
  auto app = std::make_shared<CLI::App>("kxmsg " + std::string(kSummary), "kxmsg");
  app->require_subcommand(1);
  app->set_version_flag("--version", "kxmsg " KXMSG_VERSION);
  app->footer(GeneralFooter());
  for (const CommandText& text : Commands()) {
    CLI::App* const command =
        app->add_subcommand(std::string(text.name), std::string(text.summary));
    command->allow_windows_style_options(false);
    OptionsOf(text.command)(*command, arguments);
    AddCommon(*command, arguments);
    command->footer(Wrapped(text.description) + "\n\n" + LanguageText(text) + ExamplesText(text) +
                    "\n\nNames, standard input, exit status: kxmsg --help");
    command->callback([&arguments, kind = text.command] { arguments.command = kind; });
  }
  return app;
}

}  // namespace kxmsg
