// Reading the command line.
#pragma once

#include "kxmsg/arguments.h"

#include <string>
#include <vector>

namespace kxmsg {

/// What reading a command line gave.
struct CommandLine {
  enum class Outcome : unsigned char { kRun, kPrint, kRefuse };
  Outcome outcome = Outcome::kRun;
  std::string text;  ///< to print, or why it was refused
};

/// Reads what follows the program's name into `arguments`, whose options are the defaults.
[[nodiscard]] CommandLine ReadCommandLine(const std::vector<std::string>& words,
                                          Arguments& arguments);

}  // namespace kxmsg
