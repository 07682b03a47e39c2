// The names of a pattern as the numbers that a document has given them, found once for each query,
// so that a test of a name is a comparison of two numbers.
#pragma once

#include "platform/dom/name_table.h"
#include "platform/patterns/pattern_code.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kx::patterns {

/// A name that no node of the document has.
inline constexpr std::uint32_t kUnknownName = 0xFFFFFFFFU;

class BoundNames {
 public:
  BoundNames(const Code& code, const dom::NameTable& names) {
    const std::size_t count = code.names.size();
    std::uint32_t* to = few_.data();
    if (count > few_.size()) {
      many_.resize(count);
      to = many_.data();
    }
    for (std::size_t i = 0; i < count; ++i) {
      const std::uint32_t name = names.FindQName(code.Name(static_cast<std::uint32_t>(i)));
      to[i] = name == 0 ? kUnknownName : name;
    }
  }

  /// The number of the qualified name that stands at `index` among the pattern's names.
  [[nodiscard]] std::uint32_t operator[](std::uint32_t index) const noexcept {
    return many_.empty() ? few_[index] : many_[index];
  }

 private:
  std::array<std::uint32_t, 12> few_;
  std::vector<std::uint32_t> many_;
};

}  // namespace kx::patterns
