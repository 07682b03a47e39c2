// See console.h.
#include "kxmsg/console.h"

#include "kxmsg/terminal.h"
#include "kxmsg/text_form.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace kxmsg {

namespace {

constexpr std::size_t kManyFiles = 20;
constexpr std::size_t kBarLength = 40;

bool WantsColors(Color color, bool isTerminal) {
  if (color != Color::kAuto) return color == Color::kAlways;
  const char* const none = std::getenv("NO_COLOR");
  const char* const terminal = std::getenv("TERM");
  const bool refused = none != nullptr && *none != '\0';
  const bool dumb = terminal == nullptr || std::strcmp(terminal, "dumb") == 0;
  return isTerminal && !refused && !dumb;
}

const char* CodeOf(Style style) {
  switch (style) {
    case Style::kPlain:
      return "";
    case Style::kName:
      return "\x1b[1m";
    case Style::kType:
      return "\x1b[36m";
    case Style::kValue:
      return "\x1b[32m";
    case Style::kAbsent:
      return "\x1b[2m";
    case Style::kBad:
      return "\x1b[31m";
  }
  return "";
}

[[noreturn]] void RaiseOutputFailure() {
  try {
    RaiseSystemError(errno);
  } catch (const kx::Error& error) {
    throw OutputFailure{"standard output", DescribeError(error)};
  }
}

}  // namespace

Console::Console(Color color, bool quiet)
    : isOutputATerminal_(IsTerminal(Stream::kOutput)),
      isErrorATerminal_(IsTerminal(Stream::kError)),
      hasColors_(WantsColors(color, isOutputATerminal_)),
      quiet_(quiet) {}

void Console::Print(std::string_view text) {
  if (isOutputATerminal_) ClearProgress();
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) RaiseOutputFailure();
}

void Console::Flush() {
  if (std::fflush(stdout) != 0) RaiseOutputFailure();
}

std::string Console::Styled(Style style, std::string_view text) const {
  if (!hasColors_ || style == Style::kPlain) return std::string(text);
  return CodeOf(style) + std::string(text) + "\x1b[0m";
}

void Console::PrintMessage(std::string_view text) {
  ClearProgress();
  const std::string line = "kxmsg: " + std::string(text) + '\n';
  // Where standard error takes nothing there is nobody left to tell.
  static_cast<void>(std::fwrite(line.data(), 1, line.size(), stderr));
}

void Console::PrintFailure(std::string_view name, const Failure& failure) {
  PrintMessage(FailureLine(name, failure));
}

void Console::PrintWarning(std::string_view name, std::string_view text) {
  if (!quiet_) PrintMessage(Printable(name) + ": warning: " + std::string(text));
}

void Console::ShowProgress(std::size_t done, std::size_t total) {
  if (quiet_ || !isErrorATerminal_ || total < kManyFiles) return;
  const std::size_t part = done * kBarLength / total;
  if (part + 1 == shownPart_) return;
  shownPart_ = part + 1;
  const std::string bar = "\r[" + std::string(part, '#') + std::string(kBarLength - part, ' ') +
                          "] " + std::to_string(done) + " of " + std::to_string(total);
  static_cast<void>(std::fwrite(bar.data(), 1, bar.size(), stderr));
}

void Console::ClearProgress() {
  if (shownPart_ == 0) return;
  shownPart_ = 0;
  std::fputs("\r\x1b[K", stderr);
}

}  // namespace kxmsg
