// See quick_check.h.
#include "platform/xdr/quick_check.h"

#include <array>
#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace kx::xdr {

using datatypes::DataType;

namespace {

constexpr std::uint32_t kMostShort = 16;  // bytes that one block holds
constexpr std::uint32_t kNoBound = 0xFFFFFFFFU;

// All of the conditions hold; all are looked at, so that nothing is branched on.
template <class... Conditions>
constexpr bool All(Conditions... conditions) noexcept {
  return (static_cast<unsigned>(conditions) & ...) != 0;
}

// Bit i is set when byte i of the sixteen at `p` is from `low` to `high`, both ASCII.
std::uint32_t BitsBetween(const char* p, char low, char high) noexcept {
#if defined(__SSE2__)
  const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
  const __m128i from = _mm_cmpgt_epi8(block, _mm_set1_epi8(static_cast<char>(low - 1)));
  const __m128i to = _mm_cmplt_epi8(block, _mm_set1_epi8(static_cast<char>(high + 1)));
  return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_and_si128(from, to)));
#else
  std::uint32_t bits = 0;
  for (std::uint32_t i = 0; i < 16; ++i) {
    bits |= static_cast<std::uint32_t>(p[i] >= low && p[i] <= high) << i;
  }
  return bits;
#endif
}

std::uint32_t DigitBits(const char* p) noexcept { return BitsBetween(p, '0', '9'); }

// The lowest `length` bits, at most 16.
std::uint32_t LowBits(std::uint32_t length) noexcept { return (1U << length) - 1U; }

bool AreDigits(const char* p, std::uint32_t length) noexcept {
  const std::uint32_t all = LowBits(length);
  return (DigitBits(p) & all) == all;
}

// At least one digit, at most one point and at most `decimals` digits behind it.
bool IsDecimal(const char* p, std::uint32_t length, std::uint32_t decimals) noexcept {
  const std::uint32_t all = LowBits(length);
  const std::uint32_t digits = DigitBits(p) & all;
  const std::uint32_t points = BitsBetween(p, '.', '.') & all;
  const bool known = All((digits | points) == all, digits != 0, (points & (points - 1)) == 0);
  if (points == 0) return known;
  const auto place = static_cast<std::uint32_t>(std::countr_zero(points));
  return All(known, length - 1 - place <= decimals);
}

std::uint32_t TwoDigits(const char* p) noexcept {
  return static_cast<std::uint32_t>(p[0] - '0') * 10 + static_cast<std::uint32_t>(p[1] - '0');
}

// The first ten characters are a day that every month has. `digits` tells where digits are.
bool IsCommonDay(const char* p, std::uint32_t digits) noexcept {
  constexpr std::uint32_t kDigits = 0b11'0110'1111;
  const bool shaped = All((digits & kDigits) == kDigits, p[4] == '-', p[7] == '-');
  return All(shaped, TwoDigits(p + 5) - 1 < 12, TwoDigits(p + 8) - 1 < 28,
             std::memcmp(p, "0000", 4) != 0);
}

// yyyy-mm-ddThh:mm:ss; `p` has nineteen characters.
bool IsCommonMoment(const char* p) noexcept {
  constexpr std::uint32_t kHourAndMinute = 0b1101'1000'0000'0000;
  const std::uint32_t digits = DigitBits(p);
  const std::uint32_t later = DigitBits(p + 3);  // its last two are the seconds
  const bool shaped = All((digits & kHourAndMinute) == kHourAndMinute, (later >> 14U) == 3U,
                          p[10] == 'T', p[13] == ':', p[16] == ':');
  return All(IsCommonDay(p, digits), shaped, TwoDigits(p + 11) < 24, p[14] <= '5', p[17] <= '5');
}

// Hexadecimal digits in either case, with hyphens. `p` has thirty-six characters.
bool IsUuidWithHyphens(const char* p) noexcept {
  const auto hexBits = [](const char* at) {
    return DigitBits(at) | BitsBetween(at, 'a', 'f') | BitsBetween(at, 'A', 'F');
  };
  constexpr std::uint32_t kFirst = 0xFFFFU & ~(1U << 8U | 1U << 13U);
  constexpr std::uint32_t kSecond = 0xFFFFU & ~(1U << 2U | 1U << 7U);
  constexpr std::uint32_t kLast = 0xFFFFU & ~(1U << 3U);
  return All(hexBits(p) == kFirst, hexBits(p + 16) == kSecond, hexBits(p + 20) == kLast,
             p[8] == '-', p[13] == '-', p[18] == '-', p[23] == '-');
}

constexpr std::array<std::uint64_t, 9> kFirstBytes = {0,
                                                      0xFF,
                                                      0xFFFF,
                                                      0xFFFFFF,
                                                      0xFFFFFFFF,
                                                      0xFFFFFFFFFF,
                                                      0xFFFFFFFFFFFF,
                                                      0xFFFFFFFFFFFFFF,
                                                      0xFFFFFFFFFFFFFFFF};

std::uint64_t Word(const char* p) noexcept {
  std::uint64_t word = 0;
  std::memcpy(&word, p, 8);
  if constexpr (std::endian::native == std::endian::big) {
    std::uint64_t turned = 0;
    for (int i = 0; i < 8; ++i, word >>= 8U) turned = turned << 8U | (word & 0xFFU);
    return turned;
  }
  return word;
}

// How many digits fit the type whatever they are.
std::uint32_t SafeDigits(DataType type) noexcept {
  switch (type) {
    case DataType::kI1:
    case DataType::kUi1:
      return 2;
    case DataType::kI2:
    case DataType::kUi2:
      return 4;
    case DataType::kInt:
    case DataType::kI4:
    case DataType::kUi4:
      return 9;
    case DataType::kI8:
    case DataType::kUi8:
      return kMostShort;
    default:
      return 0;
  }
}

}  // namespace

QuickCheck::QuickCheck(DataType type, std::uint32_t minLength, std::uint32_t maxLength,
                       std::span<const std::string> values) {
  const bool bounded = minLength != 0 || maxLength != kNoBound;
  most_ = kMostShort;
  switch (type) {
    case DataType::kNone:
    case DataType::kString:
      // A 16-bit unit takes at most three bytes, and no character has fewer bytes than units.
      form_ = minLength <= maxLength / 3 ? Form::kString : Form::kUnknown;
      fewest_ = minLength <= maxLength / 3 ? minLength * 3 : 0;
      most_ = maxLength;
      break;
    case DataType::kUri:
      form_ = Form::kString;
      fewest_ = 0;
      most_ = kNoBound;
      break;
    case DataType::kFixed144:
      form_ = Form::kDecimal;
      decimals_ = 4;
      most_ = 14;
      break;
    case DataType::kNumber:
    case DataType::kFloat:
    case DataType::kR4:
    case DataType::kR8:
      // Lengths bound a number's text too.
      form_ = bounded && type == DataType::kNumber ? Form::kUnknown : Form::kDecimal;
      decimals_ = kMostShort;
      break;
    case DataType::kBoolean:
      form_ = Form::kBoolean;
      break;
    case DataType::kDate:
      form_ = Form::kDate;
      break;
    case DataType::kDateTime:
    case DataType::kDateTimeTz:
      form_ = Form::kDateTime;
      break;
    case DataType::kUuid:
      form_ = Form::kUuid;
      break;
    case DataType::kEnumeration:
      form_ = Form::kListed;
      for (const std::string& value : values) {
        if (value.size() > kMostShort) continue;
        char bytes[kMostShort] = {};
        value.copy(bytes, kMostShort);
        listed_.push_back({Word(bytes), Word(bytes + 8)});
      }
      // A long list is searched by halves.
      if (listed_.size() > 16) form_ = Form::kUnknown;
      break;
    default:
      most_ = SafeDigits(type);
      form_ = most_ != 0 ? Form::kDigits : Form::kUnknown;
      break;
  }
}

bool QuickCheck::Lists(const char* text, std::uint32_t length) const noexcept {
  const std::uint64_t low = Word(text) & kFirstBytes[length < 8 ? length : 8];
  const std::uint64_t high = Word(text + 8) & kFirstBytes[length < 8 ? 0 : length - 8];
  bool found = false;
  for (const Listed& value : listed_) found |= All(value.low == low, value.high == high);
  return found;
}

bool QuickCheck::TakesOther(const char* text, std::uint32_t length) const noexcept {
  const bool isShort = length - 1 < most_;  // not empty
  switch (form_) {
    case Form::kDigits:
      return isShort && AreDigits(text, length);
    case Form::kDecimal:
      return isShort && IsDecimal(text, length, decimals_);
    case Form::kBoolean:
      return length == 1 && (*text == '0' || *text == '1');
    case Form::kDate:
      return length == 10 && IsCommonDay(text, DigitBits(text));
    case Form::kDateTime:
      return length == 19 ? IsCommonMoment(text)
                          : length == 10 && IsCommonDay(text, DigitBits(text));
    case Form::kUuid:
      return length == 36 && IsUuidWithHyphens(text);
    case Form::kListed:
      return isShort && Lists(text, length);
    default:
      return false;
  }
}

}  // namespace kx::xdr
