// From names to numbers: what a schema is asked for each name of a document. Hashed with a key that
// is drawn once per process, so that nobody can prepare names which share a slot.
#pragma once

#include "platform/dom/name_table.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kx::xdr {

class NameIndex {
 public:
  static constexpr std::uint32_t kNone = 0xFFFFFFFFU;

  /// The number of `name`, or kNone.
  [[nodiscard]] std::uint32_t Find(std::string_view name) const noexcept {
    return Find(dom::NameTable::KeyOf(name), name);
  }
  /// The same for a name whose key is known already.
  [[nodiscard]] std::uint32_t Find(const dom::NameKey& key, std::string_view name) const noexcept;
  /// Enters `name` under `value` unless it is there; returns the number that it has.
  std::uint32_t Insert(std::string_view name, std::uint32_t value);
  [[nodiscard]] std::size_t Size() const noexcept { return entries_.size(); }

 private:
  struct Entry {
    dom::NameKey key;
    std::uint32_t length = 0;
    std::uint32_t value = 0;
    std::uint32_t next = kNone;  ///< of the same slot
  };
  [[nodiscard]] static std::size_t Hash(const dom::NameKey& key, std::uint32_t length,
                                        std::string_view name) noexcept;
  void Grow();

  std::vector<Entry> entries_;
  std::vector<std::string> names_;  // those that do not fit a key; else empty
  std::vector<std::uint32_t> slots_;
};

}  // namespace kx::xdr
