// See manual_pages.h.
//
// Both pages have the same parts in the same order; a Writer knows how its language says them.
#include "kxmsg/manual_pages.h"

#include "kxmsg/grammar.h"
#include "kxmsg/manual.h"

#include <CLI/CLI.hpp>
#include <functional>
#include <string_view>
#include <vector>

namespace kxmsg {

namespace {

std::string Replaced(std::string text, std::string_view what, std::string_view by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size()) {
    text.replace(at, what.size(), by);
  }
  return text;
}

std::vector<std::string_view> Paragraphs(std::string_view text) {
  std::vector<std::string_view> paragraphs;
  while (true) {
    const std::size_t end = text.find('\n');
    paragraphs.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return paragraphs;
    text.remove_prefix(end + 1);
  }
}

// What a page is made of.
class Writer {
 public:
  Writer() = default;
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;
  virtual ~Writer() = default;
  virtual void Title() = 0;
  virtual void Section(std::string_view title) = 0;
  virtual void Command(const CommandText& command) = 0;
  virtual void Paragraph(std::string_view text) = 0;
  virtual void Item(std::string_view term, std::string_view meaning) = 0;
  virtual void ExampleLine(const Example& example) = 0;
  virtual void Lines(std::string_view text) = 0;
  virtual void EndList() {}
  [[nodiscard]] const std::string& Text() const noexcept { return text_; }

 protected:
  void Add(std::string_view text) { text_ += text; }

 private:
  std::string text_;
};

class ManWriter final : public Writer {
 public:
  void Title() override {
    Add(".TH KXMSG 1 \"\" \"kxmsg " KXMSG_VERSION "\" \"User Commands\"\n.SH NAME\nkxmsg \\- ");
    Add(Plain(kSummary) + "\n.SH SYNOPSIS\n");
    for (const CommandText& command : Commands()) {
      Add(".B kxmsg " + Plain(command.name) + "\n" + Plain(command.arguments) + "\n.br\n");
    }
  }
  void Section(std::string_view title) override {
    std::string capitals(title);
    for (char& c : capitals) {
      if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    Add(".SH " + capitals + '\n');
  }
  void Command(const CommandText& command) override {
    Add(".SS kxmsg " + Plain(command.name) + " \\- " + Plain(command.summary) + '\n');
  }
  void Paragraph(std::string_view text) override { Add(".PP\n" + Plain(text) + '\n'); }
  void Item(std::string_view term, std::string_view meaning) override {
    Add(".TP\n.B " + Plain(term) + '\n' + Plain(meaning) + '\n');
  }
  void ExampleLine(const Example& example) override {
    Add(".PP\n.RS\n.nf\n" + Plain(example.line) + "\n.fi\n.RE\n" + Plain(example.what) + ".\n");
  }
  void Lines(std::string_view text) override {
    Add(".PP\n.RS\n.nf\n");
    for (const std::string_view line : Paragraphs(text)) Add(Plain(line) + '\n');
    Add(".fi\n.RE\n");
  }

 private:
  // A backslash and a dash mean themselves; a line must not begin as a request does.
  static std::string Plain(std::string_view text) {
    std::string plain = Replaced(std::string(text), "\\", "\\e");
    plain = Replaced(std::move(plain), "-", "\\-");
    const bool isRequest = !plain.empty() && (plain[0] == '.' || plain[0] == '\'');
    return isRequest ? "\\&" + plain : plain;
  }
};

class MarkdownWriter final : public Writer {
 public:
  void Title() override {
    Add("<!-- Made from tools/kxmsg/manual.cc and command_line.cc: build the target kxmsg_docs. "
        "-->\n");
    Add("# kxmsg\n\n`kxmsg` " + std::string(kSummary) + ". The same text is its man page and ");
    Add("`kxmsg --help`.\n");
  }
  void Section(std::string_view title) override { Add("\n## " + std::string(title) + '\n'); }
  void Command(const CommandText& command) override {
    Add("\n### kxmsg " + std::string(command.name) + "\n\n`kxmsg " + std::string(command.name) +
        ' ' + std::string(command.arguments) + "`: " + std::string(command.summary) + ".\n");
  }
  void Paragraph(std::string_view text) override { Add('\n' + Plain(text) + '\n'); }
  void Item(std::string_view term, std::string_view meaning) override {
    if (!inList_) Add("\n| | |\n| --- | --- |\n");
    inList_ = true;
    Add("| `" + Replaced(std::string(term), "|", "\\|") + "` | " +
        Replaced(Plain(meaning), "|", "\\|") + " |\n");
  }
  void ExampleLine(const Example& example) override {
    Add("\n```sh\n" + std::string(example.line) + "   # " + std::string(example.what) + "\n```\n");
  }
  void Lines(std::string_view text) override { Add("\n```\n" + std::string(text) + "\n```\n"); }
  void EndList() override { inList_ = false; }

 private:
  static std::string Plain(std::string_view text) {
    std::string plain = Replaced(std::string(text), "\\", "\\\\");
    plain = Replaced(std::move(plain), "<", "\\<");
    return Replaced(std::move(plain), "_", "\\_");
  }

  bool inList_ = false;
};

std::string TermOf(const CLI::Option& option) {
  if (option.get_positional()) return option.get_name(true);
  std::string term = Replaced(option.get_name(false, true), ",", ", ");
  const std::string type = option.get_type_name();
  if (option.get_items_expected_max() > 0 && !type.empty()) term += ' ' + type;
  return term;
}

bool IsCommon(const std::string& name, const CLI::App& grammar) {
  for (const CLI::App* const command : grammar.get_subcommands(nullptr)) {
    if (command->get_option_no_throw(name) == nullptr) return false;
  }
  return true;
}

void WriteOptions(Writer& writer, const CLI::App& command,
                  const std::function<bool(const CLI::Option&)>& isWanted) {
  for (const CLI::Option* const option : command.get_options()) {
    if (isWanted(*option)) writer.Item(TermOf(*option), option->get_description());
  }
  writer.EndList();
}

std::string NameOf(const CLI::Option& option) {
  return option.get_positional() ? option.get_name(true) : option.get_name(false, false);
}

void WriteCommands(Writer& writer, const CLI::App& grammar) {
  writer.Section("Commands");
  for (const CommandText& text : Commands()) {
    writer.Command(text);
    for (const std::string_view paragraph : Paragraphs(text.description)) {
      writer.Paragraph(paragraph);
    }
    for (const Term& term : text.terms) writer.Item(term.term, term.meaning);
    writer.EndList();
    if (!text.sample.empty()) writer.Lines(text.sample);
    const CLI::App* const command = grammar.get_subcommand(std::string(text.name));
    WriteOptions(writer, *command, [&grammar](const CLI::Option& option) {
      return option.get_positional() || !IsCommon(NameOf(option), grammar);
    });
    for (const Example& example : text.examples) writer.ExampleLine(example);
  }
  writer.Section("Options of all commands");
  const CLI::App* const first = grammar.get_subcommand(std::string(Commands().front().name));
  WriteOptions(writer, *first, [&grammar](const CLI::Option& option) {
    return !option.get_positional() && IsCommon(NameOf(option), grammar);
  });
}

void WriteTerms(Writer& writer, std::string_view title, std::span<const Term> terms) {
  writer.Section(title);
  for (const Term& term : terms) writer.Item(term.term, term.meaning);
  writer.EndList();
}

std::string Write(Writer& writer) {
  Arguments arguments;
  const std::shared_ptr<CLI::App> grammar = BuildGrammar(arguments);
  writer.Title();
  writer.Section("Description");
  for (const std::string_view paragraph : GeneralText()) writer.Paragraph(paragraph);
  WriteCommands(writer, *grammar);
  WriteTerms(writer, "Exit status", ExitStatusText());
  WriteTerms(writer, "Environment", EnvironmentText());
  return writer.Text();
}

}  // namespace

std::string ManPage() {
  ManWriter writer;
  return Write(writer);
}

std::string MarkdownPage() {
  MarkdownWriter writer;
  return Write(writer);
}

}  // namespace kxmsg
