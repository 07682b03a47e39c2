// Documents for comparing parsers: well-formed ones over the whole of XML (declarations, document
// types, entities, namespaces, CDATA, encodings), and damaged copies of them. The same seed gives
// the same document on every machine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kx::test {

/// Numbers that depend on the seed alone (SplitMix64).
class Random {
 public:
  explicit Random(std::uint64_t seed) noexcept : state_(seed) {}

  std::uint64_t Next() noexcept;
  /// A number below `bound`, which is not 0.
  std::size_t Below(std::size_t bound) noexcept { return Next() % bound; }
  /// True `percent` times of a hundred.
  bool Chance(unsigned percent) noexcept { return Below(100) < percent; }

  template <std::size_t kCount>
  std::string_view Pick(const std::string_view (&choices)[kCount]) noexcept {
    return choices[Below(kCount)];
  }

 private:
  std::uint64_t state_;
};

enum class Damage : unsigned char { kNone, kSome };

/// The document of `seed`, as bytes in the encoding that it declares.
[[nodiscard]] std::string GenerateDocument(std::uint64_t seed, Damage damage);

}  // namespace kx::test
