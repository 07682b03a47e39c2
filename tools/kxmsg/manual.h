// The words of the manual. --help, the man page and docs/kxmsg.md are made of these and of the
// options' own descriptions in command_line.cc, so that they cannot differ.
#pragma once

#include "kxmsg/arguments.h"

#include <span>
#include <string_view>

namespace kxmsg {

/// One command line as somebody would type it, and what it does.
struct Example {
  std::string_view line;
  std::string_view what;
};

/// A term and its meaning.
struct Term {
  std::string_view term;
  std::string_view meaning;
};

/// A command.
struct CommandText {
  Command command;
  std::string_view name;
  std::string_view arguments;    ///< as in "kxmsg NAME ARGUMENTS"
  std::string_view summary;      ///< one line
  std::string_view description;  ///< paragraphs, separated by a line end
  std::span<const Example> examples;
  std::span<const Term> terms = {};  ///< the words of its language, if it has one
  std::string_view sample = {};      ///< lines in it
};

inline constexpr std::string_view kSummary = "works on XML messages bound to XDR schemas";

/// The commands, in the order in which they are listed.
[[nodiscard]] std::span<const CommandText> Commands();
/// What is true of all commands: paragraphs.
[[nodiscard]] std::span<const std::string_view> GeneralText();
[[nodiscard]] std::span<const Term> ExitStatusText();
[[nodiscard]] std::span<const Term> EnvironmentText();

}  // namespace kxmsg
