// From a pattern's text to its compiled form, by recursive descent. All of a pattern is read and
// checked before anything of it is asked, so a malformed one fails on every document alike.
//
// From the loosest: "or", "and", "not", union, comparison, quantifier, path, "!", filter, group.
#pragma once

#include "platform/patterns/pattern.h"
#include "platform/patterns/pattern_code.h"
#include "platform/runtime/counted.h"

#include <span>
#include <string_view>

namespace kx::patterns {

/// Raises: E_FAIL, with the place of the fault.
[[nodiscard]] runtime::Counted<Code> ParsePattern(std::string_view text,
                                                  std::span<const NamespacePrefix> prefixes);

}  // namespace kx::patterns
