// Bytes that are read as a list of things to do.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace kx::fuzz {

/// The bytes that are left; behind the last one there are zeros.
class Script {
 public:
  Script(const std::uint8_t* bytes, std::size_t size) : bytes_(bytes), end_(bytes + size) {}
  [[nodiscard]] bool AtEnd() const { return bytes_ == end_; }
  std::uint8_t Byte() { return AtEnd() ? 0 : *bytes_++; }
  /// Up to 11 characters of ASCII.
  std::string Text() {
    std::string text;
    for (std::uint8_t left = Byte() % 12; left > 0 && !AtEnd(); --left) {
      text += static_cast<char>(Byte() & 0x7FU);
    }
    return text;
  }

 private:
  const std::uint8_t* bytes_;
  const std::uint8_t* end_;
};

}  // namespace kx::fuzz
