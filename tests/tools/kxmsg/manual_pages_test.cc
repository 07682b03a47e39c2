// The manual: one text in three forms.
#include "kxmsg/manual_pages.h"

#include "kxmsg/arguments.h"
#include "kxmsg/grammar.h"
#include "kxmsg/manual.h"
#include "kxmsg/text_form.h"

#include <CLI/CLI.hpp>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

namespace kxmsg {
namespace {

std::string FileText(const std::string& name) {
  std::ifstream file(std::string(KX_SOURCE_DIR) + '/' + name);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(ManualPages, TheDocumentIsWhatTheProgramWouldWrite) {
  EXPECT_EQ(FileText("docs/kxmsg.md"), MarkdownPage()) << "build the target kxmsg_docs";
}

TEST(ManualPages, EveryCommandAndOptionIsInAllForms) {
  Arguments arguments;
  const auto grammar = BuildGrammar(arguments);
  const std::string man = ManPage();
  const std::string markdown = MarkdownPage();
  for (const CommandText& text : Commands()) {
    CLI::App* const command = grammar->get_subcommand(std::string(text.name));
    const std::string help = command->help();
    EXPECT_NE(OneLine(help).find(OneLine(text.description)), std::string::npos) << text.name;
    for (const Example& example : text.examples) {
      EXPECT_NE(help.find(example.line), std::string::npos) << example.line;
      EXPECT_NE(markdown.find(example.line), std::string::npos) << example.line;
    }
    for (const Term& term : text.terms) {
      EXPECT_NE(OneLine(help).find(OneLine(term.meaning)), std::string::npos) << term.term;
      EXPECT_NE(markdown.find("`" + std::string(term.term) + "`"), std::string::npos) << term.term;
    }
    EXPECT_NE(OneLine(help).find(OneLine(text.sample)), std::string::npos) << text.name;
    EXPECT_NE(markdown.find(text.sample), std::string::npos) << text.name;
    for (const CLI::Option* const option : command->get_options()) {
      const std::string description = option->get_description();
      EXPECT_FALSE(description.empty()) << option->get_name();
      EXPECT_NE(markdown.find(option->get_name()), std::string::npos) << option->get_name();
    }
  }
  EXPECT_NE(man.find("\\-\\-code\\-page NUMBER"), std::string::npos);
  EXPECT_NE(markdown.find("`--code-page NUMBER`"), std::string::npos);
}

TEST(ManualPages, NoLineOfTheManPageIsTakenForARequest) {
  // Requests that the writer makes; a text that began with a full stop would be another.
  const std::string known[] = {".TH", ".SH", ".SS", ".PP", ".TP", ".B",
                               ".RS", ".RE", ".nf", ".fi", ".br"};
  const std::string page = ManPage();
  for (std::size_t at = 0; at < page.size(); at = page.find('\n', at) + 1) {
    if (page[at] != '.' && page[at] != '\'') continue;
    const std::string request = page.substr(at, page.find_first_of(" \n", at) - at);
    EXPECT_NE(std::find(std::begin(known), std::end(known), request), std::end(known)) << request;
  }
}

}  // namespace
}  // namespace kxmsg
