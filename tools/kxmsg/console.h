// Standard output for results, standard error for messages, and what is known of both.
#pragma once

#include "kxmsg/arguments.h"
#include "kxmsg/failure.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace kxmsg {

enum class Style : unsigned char { kPlain, kName, kType, kValue, kAbsent, kBad };

/// See above. For one thread.
class Console {
 public:
  /// `quiet`: warnings and the progress bar are left out.
  Console(Color color, bool quiet);

  /// Writes to standard output. Raises: OutputFailure.
  void Print(std::string_view text);
  /// Hands everything to the system. Raises: OutputFailure.
  void Flush();
  /// `text` between the terminal's codes for `style`, where there are colours.
  [[nodiscard]] std::string Styled(Style style, std::string_view text) const;
  /// True when people read standard output.
  [[nodiscard]] bool IsOutputATerminal() const noexcept { return isOutputATerminal_; }

  /// "kxmsg: TEXT" on standard error.
  void PrintMessage(std::string_view text);
  /// The same in the form of all errors.
  void PrintFailure(std::string_view name, const Failure& failure);
  /// "kxmsg: NAME: warning: TEXT", unless quiet.
  void PrintWarning(std::string_view name, std::string_view text);

  /// Draws how much is done, when people read standard error and `total` is many.
  void ShowProgress(std::size_t done, std::size_t total);
  void ClearProgress();

 private:
  bool isOutputATerminal_;
  bool isErrorATerminal_;
  bool hasColors_;
  bool quiet_;
  std::size_t shownPart_ = 0;  // of the bar, plus 1; 0 when none is drawn
};

}  // namespace kxmsg
