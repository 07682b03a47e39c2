// Documents and patterns for comparing the two evaluators: all small ones, and random ones by a
// seed. The same call always gives the same.
#pragma once

#include "platform/dom/document.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kx::patterns {

/// Small numbers that look random, the same everywhere.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) noexcept : state_(seed * 2 + 1) {}
  /// From 0 to `sides` - 1.
  std::uint32_t Roll(std::uint32_t sides) noexcept {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<std::uint32_t>(state_ >> 33U) % sides;
  }
  template <std::size_t N>
  const char* Pick(const char* const (&list)[N]) noexcept {
    return list[Roll(N)];
  }

 private:
  std::uint64_t state_;
};

/// The texts of all documents of up to `elements` elements named a or b; some have an attribute k.
[[nodiscard]] std::vector<std::string> AllSmallDocuments(int elements);
/// Patterns of one and two steps, each step with any of a list of filters or one of both with it.
[[nodiscard]] std::vector<std::string> AllSmallPatterns();

/// A document of elements, attributes, texts, CDATA, comments and instructions.
[[nodiscard]] std::string RandomDocument(Dice& dice);
/// Moves, adds and removes some nodes of a document.
void EditAtRandom(const dom::Document& document, Dice& dice);
/// A correct pattern that gives nodes.
[[nodiscard]] std::string RandomPattern(Dice& dice);

}  // namespace kx::patterns
