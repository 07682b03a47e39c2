// A failure of the library as the tool tells it.
#pragma once

#include "kxmessage/error.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kxmsg {

struct Failure {
  std::int32_t number = 0;
  std::string source;
  std::string text;
  std::int32_t line = 0;  ///< 0: it has no place
  std::int32_t position = 0;
  std::int32_t code = 0;  ///< the parser's own number; 0 for what is no failure of loading
  std::string reason;
  std::string sourceText;
};

/// What was to be written could not be: a file, or standard output.
struct OutputFailure {
  std::string name;
  Failure failure;
};

/// All that `error` tells.
[[nodiscard]] Failure DescribeError(const kx::Error& error);

/// A failure of a file with the number of the run-time error `n`, as the library would raise it.
[[noreturn]] void RaiseFileError(int n, std::string text);

/// The same for a failure of the system, by its errno number.
[[noreturn]] void RaiseSystemError(int number);

/// The run-time error 7, for more than a bound allows.
[[noreturn]] void RaiseTooMuch(std::string text);

/// "NAME:LINE:POSITION: error NUMBER: TEXT" on one line, the text cut when it is very long.
[[nodiscard]] std::string FailureLine(std::string_view name, const Failure& failure);

/// The members of a JSON object after the file's name: "ok": false and so on.
[[nodiscard]] std::string FailureJson(const Failure& failure);

}  // namespace kxmsg
