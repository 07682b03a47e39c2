// Compiled patterns by their text: a few dozen of those asked last, so that a query from a text
// that was asked before costs one look-up.
//
// Invariants:
//   - Bounded: at most kSets * kWays patterns of at most kLongestText bytes each; the one of a set
//     that was asked longest ago makes room.
//   - Belongs to whoever asks (a message, a transform) and, like it, is for one thread at a time.
#pragma once

#include "platform/patterns/pattern.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace kx::patterns {

class PatternCache {
 public:
  static constexpr std::size_t kSets = 16;
  static constexpr std::size_t kWays = 4;
  static constexpr std::size_t kLongestText = 1024;

  /// The compiled form of `text`, which must give nodes; valid until the next call. Raises: as
  /// Compile; a failure is not kept.
  [[nodiscard]] const Pattern& Get(std::string_view text);
  /// How many patterns are kept.
  [[nodiscard]] std::size_t Size() const noexcept;

 private:
  struct Entry {
    std::size_t hash = 0;
    std::uint64_t asked = 0;  // by the count of all questions
    Pattern pattern;
  };
  using Entries = std::array<Entry, kSets * kWays>;

  std::unique_ptr<Entries> entries_;  // made by the first pattern kept
  std::size_t last_ = 0;              // the one asked last
  std::uint64_t questions_ = 0;
  Pattern tooLong_;  // the last one that was not kept
};

}  // namespace kx::patterns
