// How far two parts of one long text are the same, without going through them: stretches of the
// text are compared by their prints, numbers that differ for different stretches but for a chance
// of less than one in 2^30 for a text of gigabytes. What the numbers are depends on a key, so that
// no text can be written that has equal ones.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kx::patterns {

class TextPrints {
 public:
  /// Of `text`, which outlives this.
  TextPrints(std::string_view text, std::uint64_t key);
  /// A key that nobody can foresee.
  [[nodiscard]] static std::uint64_t NewKey();

  /// How many bytes are the same from offset `a` on and from offset `b` on, `most` at most; neither
  /// part ends behind the text.
  [[nodiscard]] std::size_t SameLength(std::size_t a, std::size_t b, std::size_t most) const;

 private:
  /// Of the text up to an offset.
  [[nodiscard]] std::uint64_t PrintOf(std::size_t end) const;
  /// Whether the stretches of 2^`power` bytes from two offsets on have the same prints.
  [[nodiscard]] bool IsSame(std::size_t a, std::size_t b, std::size_t power) const;

  std::string_view text_;
  std::uint64_t key_;
  std::vector<std::uint64_t> prints_;       // of the text up to each full block
  std::array<std::uint64_t, 64> powers_{};  // of the key: to the power of 2^i
};

}  // namespace kx::patterns
