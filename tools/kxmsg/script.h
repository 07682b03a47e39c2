// The language of kxmsg edit: one command to a line. manual.cc tells its users of it.
//
// A script may come from anywhere: it is read line by line, nothing is kept of a line that was
// read, and lines and scripts are bounded.
#pragma once

#include "kxmsg/failure.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kxmsg {

inline constexpr std::size_t kMostScriptBytes = std::size_t{16} << 20U;
inline constexpr std::size_t kMostLineBytes = std::size_t{1} << 20U;

/// A word, and the number of the character, from 1, with which it begins in its line.
struct Word {
  std::string text;
  std::int32_t position = 0;
};

enum class Verb : unsigned char { kAdd, kSet, kAttr, kRemove, kGroup };

/// A command.
struct Step {
  Verb verb = Verb::kAdd;
  std::int32_t line = 0;
  Word pattern;
  std::optional<Word> name;   ///< of add and attr
  std::optional<Word> value;  ///< of set, add and attr
  std::optional<Word> group;  ///< of group: its number, as it is written
  std::int16_t groupNumber = 0;
};

/// A line that is no command, or a command that failed. It is told with its place in the script.
struct ScriptFailure {
  std::string name;
  Failure failure;
};

/// Reads the commands of a script. See above.
class ScriptReader {
 public:
  /// `text` must outlive this; `name` is what failures call it.
  ScriptReader(std::string_view text, std::string name);

  /// The next command; nothing behind the last one. Raises: ScriptFailure.
  [[nodiscard]] std::optional<Step> Next();

 private:
  std::string_view rest_;
  std::string name_;
  std::int32_t line_ = 0;
};

}  // namespace kxmsg
