// See text_prints.h. A print is the text read as a number whose base is the key, in arithmetic
// modulo the prime 2^61 - 1.
#include "platform/patterns/text_prints.h"

#include <chrono>
#include <functional>

namespace kx::patterns {

namespace {

constexpr std::size_t kBlock = 16;
constexpr std::uint64_t kPrime = (std::uint64_t{1} << 61U) - 1;

constexpr std::uint64_t Reduced(std::uint64_t number) {
  number = (number & kPrime) + (number >> 61U);
  return number >= kPrime ? number - kPrime : number;
}

// Of two numbers below the prime. Their halves are multiplied, and 2^61 is 1.
constexpr std::uint64_t Product(std::uint64_t a, std::uint64_t b) {
  constexpr std::uint64_t k31Bits = (std::uint64_t{1} << 31U) - 1;
  constexpr std::uint64_t k30Bits = (std::uint64_t{1} << 30U) - 1;
  const std::uint64_t middle = (a & k31Bits) * (b >> 31U) + (a >> 31U) * (b & k31Bits);
  return Reduced((a >> 31U) * (b >> 31U) * 2 + (middle >> 30U) + ((middle & k30Bits) << 31U) +
                 (a & k31Bits) * (b & k31Bits));
}

constexpr std::uint64_t Added(std::uint64_t print, std::uint64_t key, char c) {
  return Reduced(Product(print, key) + static_cast<unsigned char>(c) + 1);
}

}  // namespace

std::uint64_t TextPrints::NewKey() {
  static constexpr char kSomewhere = 0;
  const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
  std::uint64_t key = static_cast<std::uint64_t>(now) ^ std::hash<const void*>()(&kSomewhere);
  for (int i = 0; i < 3; ++i) key = (key ^ (key >> 29U)) * 0x9E3779B97F4A7C15U;
  return key;
}

TextPrints::TextPrints(std::string_view text, std::uint64_t key)
    : text_(text), key_(Reduced(key | (std::uint64_t{1} << 40U))) {
  prints_.reserve(text.size() / kBlock + 1);
  prints_.push_back(0);
  std::uint64_t print = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    print = Added(print, key_, text[at]);
    if ((at + 1) % kBlock == 0) prints_.push_back(print);
  }
  powers_[0] = key_;
  for (std::size_t i = 1; i < powers_.size(); ++i) {
    powers_[i] = Product(powers_[i - 1], powers_[i - 1]);
  }
}

std::uint64_t TextPrints::PrintOf(std::size_t end) const {
  std::uint64_t print = prints_[end / kBlock];
  for (std::size_t at = end / kBlock * kBlock; at < end; ++at) {
    print = Added(print, key_, text_[at]);
  }
  return print;
}

bool TextPrints::IsSame(std::size_t a, std::size_t b, std::size_t power) const {
  const std::size_t length = std::size_t{1} << power;
  const auto print = [&](std::size_t begin) {
    return Reduced(PrintOf(begin + length) + kPrime - Product(PrintOf(begin), powers_[power]));
  };
  return print(a) == print(b);
}

// By stretches that double until one differs or does not fit, then halve; the last few bytes are
// compared.
std::size_t TextPrints::SameLength(std::size_t a, std::size_t b, std::size_t most) const {
  if (a == b) return most;
  std::size_t same = 0;
  const auto fits = [&](std::size_t power) {
    const std::size_t length = std::size_t{1} << power;
    return length <= most - same && IsSame(a + same, b + same, power);
  };
  constexpr std::size_t kLeast = 4;
  std::size_t power = kLeast;
  while (fits(power)) same += std::size_t{1} << power++;
  while (power-- > kLeast) {
    if (fits(power)) same += std::size_t{1} << power;
  }
  while (same < most && text_[a + same] == text_[b + same]) ++same;
  return same;
}

}  // namespace kx::patterns
