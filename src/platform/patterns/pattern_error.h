// The failures of a pattern's text, as a caller sees them: the status E_FAIL, the source
// "msxml3.dll", and a sentence followed by the pattern with the offending part between --> and <--.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kx::patterns {

/// The part of a pattern's text that is at fault; of no length at its end.
struct TextRange {
  std::size_t begin = 0;
  std::size_t length = 0;
};

enum class PatternFault : unsigned char {
  kUnknownMethod,
  kUnexpectedCharacter,
  kUnterminatedLiteral,
  kNotANodeSet,
  kTooDeep,  ///< nested more than kMostNesting times
};

/// Levels of groups, filters and arguments that a pattern may have inside one another.
inline constexpr int kMostNesting = 256;

/// Raises: DomError, E_FAIL.
[[noreturn]] void RaisePatternError(PatternFault fault, std::string_view pattern, TextRange where);
/// The same where the token `expected` was due and `found` stands.
[[noreturn]] void RaiseUnexpectedToken(std::string_view expected, std::string_view found,
                                       std::string_view pattern, TextRange where);

}  // namespace kx::patterns
