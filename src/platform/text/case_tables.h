// The ranges of characters that have a simple upper- or lower-case form.
#pragma once

#include <cstdint>
#include <span>

namespace kx::text {

/// The characters `first`, `first` + `step`, ... `last` map to themselves plus `difference`.
struct CaseRange {
  char32_t first;
  char32_t last;
  std::int32_t difference;
  std::uint8_t step;
};

/// In ascending order, without overlap, ASCII left out.
[[nodiscard]] std::span<const CaseRange> UpperCaseRanges() noexcept;
[[nodiscard]] std::span<const CaseRange> LowerCaseRanges() noexcept;

}  // namespace kx::text
