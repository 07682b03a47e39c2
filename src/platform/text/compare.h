// Comparison and hashing of text without regard to case: each character is replaced by its simple
// upper-case form, accents count, and no locale is asked. Keys of collections, file names and the
// "x-schema:" look-ups compare so.
//
// The hash is keyed with numbers drawn once per process, so that nobody can prepare names that all
// fall into one bucket. Its values must not be stored or shown.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kx::text {

/// True when the texts are equal but for the case of their characters.
[[nodiscard]] bool EqualsCaseless(std::string_view a, std::string_view b) noexcept;

/// Order by the upper-cased code points; equal exactly when EqualsCaseless is true.
[[nodiscard]] std::strong_ordering CompareCaseless(std::string_view a, std::string_view b) noexcept;

/// Hash that is equal for texts that EqualsCaseless calls equal.
[[nodiscard]] std::size_t HashCaseless(std::string_view text) noexcept;

/// Hash of the bytes as they are, under the process's key.
[[nodiscard]] std::size_t HashExact(std::string_view text) noexcept;

/// SipHash-1-3 of `bytes` under the key (`key0`, `key1`); what the others are made of.
[[nodiscard]] std::uint64_t SipHash13(std::string_view bytes, std::uint64_t key0,
                                      std::uint64_t key1) noexcept;

/// Function objects for unordered containers, transparent: look up by std::string_view.
struct CaselessHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const noexcept { return HashCaseless(text); }
};
struct CaselessEqual {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const noexcept {
    return EqualsCaseless(a, b);
  }
};
struct CaselessLess {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const noexcept {
    return CompareCaseless(a, b) < 0;
  }
};
struct ExactHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const noexcept { return HashExact(text); }
};

}  // namespace kx::text
