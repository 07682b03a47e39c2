// What the code pages need from the host: conversion of the encodings for which this folder has no
// tables of its own (the double-byte pages of East Asia, KOI8, the DOS pages). The folder of the
// host implements it; nothing here calls the operating system.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kx::text {

/// What a conversion gave: the converted start of the input and, when it stopped early, where.
struct HostConversion {
  std::string output;
  /// Byte offset into the input of the first sequence that cannot be converted; nothing when all
  /// of it was.
  std::optional<std::size_t> badOffset;
};

/// The encodings that the host knows. Each call stands for itself (no state between calls), may be
/// made from any thread, and raises nothing for bad input.
class HostCodec {
 public:
  virtual ~HostCodec() = default;

  /// True when the host converts the encoding of this name, in any case. The name holds only
  /// ASCII letters, digits, and ". _ : -".
  [[nodiscard]] virtual bool Knows(std::string_view name) const = 0;

  /// Bytes in the encoding `name` to UTF-8. Stops at the first invalid, undefined or cut-off
  /// sequence.
  [[nodiscard]] virtual HostConversion ToUtf8(std::string_view name,
                                              std::string_view bytes) const = 0;

  /// Well-formed UTF-8 to bytes in the encoding `name`, without a byte-order mark, exactly (no
  /// transliteration). Stops at the first character that the encoding lacks.
  [[nodiscard]] virtual HostConversion FromUtf8(std::string_view name,
                                                std::string_view text) const = 0;
};

}  // namespace kx::text
