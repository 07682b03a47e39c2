// kxmsg, the command line.
#include "kxmessage/error.h"
#include "kxmessage/options.h"

#include "kxmsg/command_line.h"
#include "kxmsg/commands.h"
#include "kxmsg/console.h"
#include "kxmsg/terminal.h"
#include "kxmsg/text_form.h"

#include <string>
#include <vector>

namespace kxmsg {

namespace {

// What precedes the command itself.
struct Start {
  Arguments arguments;
  CommandLine line;
};

Start ReadStart(const std::vector<std::string>& words) {
  Start start;
  try {
    start.arguments.options = kx::Options::OfProcess();
    start.line = ReadCommandLine(words, start.arguments);
  } catch (const kx::Error& error) {
    start.line = {CommandLine::Outcome::kRefuse, error.Description()};
  }
  return start;
}

ExitStatus Print(const std::string& text, Console& console) {
  try {
    console.Print(text);
    console.Flush();
    return ExitStatus::kDone;
  } catch (const OutputFailure& failure) {
    console.PrintFailure(failure.name, failure.failure);
    return ExitStatus::kNoOutput;
  }
}

ExitStatus Run(const std::vector<std::string>& words) {
  const Start start = ReadStart(words);
  Console console(start.arguments.color, start.arguments.quiet);
  switch (start.line.outcome) {
    case CommandLine::Outcome::kRefuse:
      console.PrintMessage("error: " + Printable(OneLine(start.line.text)) +
                           " (kxmsg --help tells more)");
      return ExitStatus::kUsage;
    case CommandLine::Outcome::kPrint:
      return Print(start.line.text, console);
    case CommandLine::Outcome::kRun:
      break;
  }
  return RunCommand(start.arguments, console);
}

}  // namespace

}  // namespace kxmsg

int main(int argc, char* argv[]) {
  kxmsg::UseBinaryStreams();
  return static_cast<int>(kxmsg::Run(std::vector<std::string>(argv + 1, argv + argc)));
}
