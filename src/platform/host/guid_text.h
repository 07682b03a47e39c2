// The text form of identifiers.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace kx::host {

using GuidBytes = std::array<std::uint8_t, 16>;

/// The bytes as 32 lower-case hexadecimal digits in groups of 8, 4, 4, 4 and 12, in their order.
[[nodiscard]] std::string GuidText(const GuidBytes& bytes);

/// The same for random bytes: those bits are set that mark a random identifier (version 4 of the
/// usual layout).
[[nodiscard]] std::string RandomGuidText(GuidBytes bytes);

}  // namespace kx::host
