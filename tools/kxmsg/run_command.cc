// Runs a command, and turns what it raises into one line on standard error and an exit status.
#include "kxmessage/error.h"

#include "kxmsg/commands.h"
#include "kxmsg/files.h"
#include "kxmsg/script.h"
#include "kxmsg/text_form.h"

#include <exception>
#include <new>

namespace kxmsg {

namespace {

using Run = ExitStatus (*)(const Arguments&, Console&);

Run RunOf(Command command) {
  switch (command) {
    case Command::kNew:
      return RunNew;
    case Command::kCheck:
      return RunCheck;
    case Command::kShow:
      return RunShow;
    case Command::kGet:
      return RunGet;
    case Command::kSet:
      return RunSet;
    case Command::kEdit:
      return RunEdit;
    case Command::kSchema:
      return RunSchema;
    case Command::kHeader:
      return RunHeader;
    case Command::kConfig:
      return RunConfig;
  }
  return RunConfig;
}

// What a failure is told of: the file, the schema or the setting.
std::string SubjectOf(const Arguments& arguments) {
  switch (arguments.command) {
    case Command::kNew:
    case Command::kSchema:
      return ShownName(arguments.schema);
    case Command::kConfig:
      return arguments.hasSettingName ? arguments.settingName : "settings";
    default:
      return ShownName(arguments.file);
  }
}

// A failure of the message itself comes after what was printed before it.
ExitStatus RunAndTell(const Arguments& arguments, Console& console) {
  ExitStatus status = ExitStatus::kBad;
  try {
    status = RunOf(arguments.command)(arguments, console);
  } catch (const kx::Error& error) {
    console.PrintFailure(SubjectOf(arguments), DescribeError(error));
  } catch (const ScriptFailure& failure) {
    console.PrintFailure(failure.name, failure.failure);
  }
  console.Flush();
  return status;
}

}  // namespace

ExitStatus RunCommand(const Arguments& arguments, Console& console) {
  try {
    return RunAndTell(arguments, console);
  } catch (const UsageFailure& failure) {
    console.PrintMessage("error: " + failure.text);
    return ExitStatus::kUsage;
  } catch (const OutputFailure& failure) {
    console.PrintFailure(failure.name, failure.failure);
    return ExitStatus::kNoOutput;
  } catch (const std::bad_alloc&) {
    console.PrintMessage("error: out of memory");
    return ExitStatus::kInternal;
  } catch (const std::exception& error) {
    console.PrintMessage("error: " + Printable(error.what()));
    return ExitStatus::kInternal;
  }
}

}  // namespace kxmsg
