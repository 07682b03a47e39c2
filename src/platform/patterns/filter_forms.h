// Filters in the fastest form that means the same: a place, the last place, an attribute that is
// there, an attribute that equals a literal; any other expression as it is.
#pragma once

#include "platform/patterns/pattern_code.h"

#include <cstdint>

namespace kx::patterns {

/// A whole number as a place, cut to what a filter holds.
[[nodiscard]] std::int32_t ToPosition(double number) noexcept;
/// The filter "[n]" of a whole number.
[[nodiscard]] Filter FilterAtPosition(double number) noexcept;
/// The filter of an expression of `code`.
[[nodiscard]] Filter FilterOf(const Code& code, ExprId id);

}  // namespace kx::patterns
