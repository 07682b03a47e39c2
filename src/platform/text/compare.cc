// Caseless comparison walks both texts once, without copies; the hash walks the same characters, so
// that equal texts hash alike.
#include "platform/text/compare.h"

#include "platform/text/unicode.h"

#include <bit>
#include <chrono>
#include <exception>
#include <functional>
#include <random>

namespace kx::text {
namespace {

// Walks a text as upper-cased code points; ill-formed bytes are kept apart from each other and from
// every character by numbers above the last code point, so that equality stays exact.
class UpperCursor {
 public:
  explicit UpperCursor(std::string_view text) noexcept : text_(text) {}

  [[nodiscard]] bool AtEnd() const noexcept { return offset_ >= text_.size(); }

  char32_t Next() noexcept {
    const auto byte = static_cast<unsigned char>(text_[offset_]);
    if (byte < 0x80) {
      ++offset_;
      return static_cast<unsigned char>(AsciiToUpper(static_cast<char>(byte)));
    }
    const Utf8Char c = DecodeUtf8(text_, offset_);
    if (!c.valid) {
      ++offset_;
      return kMaxCodePoint + 1 + byte;
    }
    offset_ += c.length;
    return ToUpper(c.codePoint);
  }

 private:
  std::string_view text_;
  std::size_t offset_ = 0;
};

// SipHash-1-3 (Aumasson and Bernstein): a keyed hash whose collisions cannot be prepared without
// the key. Fed with 64-bit words; the last one carries the length in its top byte.
class SipState {
 public:
  SipState(std::uint64_t key0, std::uint64_t key1) noexcept
      : v0_(key0 ^ 0x736f6d6570736575U),
        v1_(key1 ^ 0x646f72616e646f6dU),
        v2_(key0 ^ 0x6c7967656e657261U),
        v3_(key1 ^ 0x7465646279746573U) {}

  void Add(std::uint64_t word) noexcept {
    v3_ ^= word;
    Round();
    v0_ ^= word;
  }

  [[nodiscard]] std::uint64_t Finish() noexcept {
    v2_ ^= 0xFF;
    Round();
    Round();
    Round();
    return v0_ ^ v1_ ^ v2_ ^ v3_;
  }

 private:
  void Round() noexcept {
    v0_ += v1_;
    v1_ = std::rotl(v1_, 13) ^ v0_;
    v0_ = std::rotl(v0_, 32);
    v2_ += v3_;
    v3_ = std::rotl(v3_, 16) ^ v2_;
    v0_ += v3_;
    v3_ = std::rotl(v3_, 21) ^ v0_;
    v2_ += v1_;
    v1_ = std::rotl(v1_, 17) ^ v2_;
    v2_ = std::rotl(v2_, 32);
  }

  std::uint64_t v0_;
  std::uint64_t v1_;
  std::uint64_t v2_;
  std::uint64_t v3_;
};

std::uint64_t LastWord(std::uint64_t rest, std::size_t length) noexcept {
  return rest | (static_cast<std::uint64_t>(length & 0xFF) << 56);
}

struct HashKey {
  std::uint64_t first;
  std::uint64_t second;
};

// Drawn once per process, before the first hash.
const HashKey& ProcessKey() noexcept {
  static const HashKey key = [] {
    std::random_device source;
    const auto draw = [&source] { return (static_cast<std::uint64_t>(source()) << 32) | source(); };
    return HashKey{draw(), draw()};
  }();
  return key;
}

}  // namespace

bool EqualsCaseless(std::string_view a, std::string_view b) noexcept {
  return CompareCaseless(a, b) == 0;
}

std::strong_ordering CompareCaseless(std::string_view a, std::string_view b) noexcept {
  UpperCursor left(a);
  UpperCursor right(b);
  while (!left.AtEnd() && !right.AtEnd()) {
    const auto order = left.Next() <=> right.Next();
    if (order != 0) return order;
  }
  return right.AtEnd() <=> left.AtEnd();
}

std::size_t HashCaseless(std::string_view text) noexcept {
  SipState state(ProcessKey().first, ProcessKey().second);
  UpperCursor cursor(text);
  std::uint64_t word = 0;
  std::size_t count = 0;
  while (!cursor.AtEnd()) {
    word = (word << 32) | cursor.Next();
    if (++count % 2 == 0) {
      state.Add(word);
      word = 0;
    }
  }
  state.Add(LastWord(word, count));
  return static_cast<std::size_t>(state.Finish());
}

std::uint64_t SipHash13(std::string_view bytes, std::uint64_t key0, std::uint64_t key1) noexcept {
  SipState state(key0, key1);
  std::uint64_t word = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    word |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[i])) << (8 * (i % 8));
    if (i % 8 == 7) {
      state.Add(word);
      word = 0;
    }
  }
  state.Add(LastWord(word, bytes.size()));
  return state.Finish();
}

std::size_t HashExact(std::string_view text) noexcept {
  return static_cast<std::size_t>(SipHash13(text, ProcessKey().first, ProcessKey().second));
}

}  // namespace kx::text
