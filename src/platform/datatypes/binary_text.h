// Bytes as hexadecimal digits and as base64. White space between the digits does not count.
#pragma once

#include "kxmessage/variant.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kx::datatypes {

/// The number of bytes that `text` stands for; nothing for a character that is no digit, or an odd
/// number of digits.
[[nodiscard]] std::optional<std::size_t> CountHexBytes(std::string_view text) noexcept;
/// The same for base64; padding may be missing, but not be wrong. Nothing for a single left-over
/// digit.
[[nodiscard]] std::optional<std::size_t> CountBase64Bytes(std::string_view text) noexcept;

[[nodiscard]] std::optional<Variant::Bytes> DecodeHex(std::string_view text);
[[nodiscard]] std::optional<Variant::Bytes> DecodeBase64(std::string_view text);

/// Two lower-case digits a byte, nothing between.
[[nodiscard]] std::string EncodeHex(const Variant::Bytes& bytes);
/// The standard alphabet with padding, no line ends whatever the length.
[[nodiscard]] std::string EncodeBase64(const Variant::Bytes& bytes);

}  // namespace kx::datatypes
