// The commands: each does its work with values, and returns the exit status.
#pragma once

#include "kxmsg/arguments.h"
#include "kxmsg/console.h"

namespace kxmsg {

/// Each raises kx::Error for a message, schema or setting that is bad, which PrintFailure tells
/// with the name of what it works on; and OutputFailure. RunEdit raises ScriptFailure too.
[[nodiscard]] ExitStatus RunNew(const Arguments& arguments, Console& console);
[[nodiscard]] ExitStatus RunCheck(const Arguments& arguments, Console& console);
[[nodiscard]] ExitStatus RunShow(const Arguments& arguments, Console& console);
[[nodiscard]] ExitStatus RunGet(const Arguments& arguments, Console& console);
[[nodiscard]] ExitStatus RunSet(const Arguments& arguments, Console& console);
[[nodiscard]] ExitStatus RunEdit(const Arguments& arguments, Console& console);
[[nodiscard]] ExitStatus RunSchema(const Arguments& arguments, Console& console);
[[nodiscard]] ExitStatus RunHeader(const Arguments& arguments, Console& console);
[[nodiscard]] ExitStatus RunConfig(const Arguments& arguments, Console& console);

/// Runs the command that `arguments` say. Failures are told on standard error.
[[nodiscard]] ExitStatus RunCommand(const Arguments& arguments, Console& console);

/// A command line that is well formed and asks for what cannot be.
struct UsageFailure {
  std::string text;
};

}  // namespace kxmsg
