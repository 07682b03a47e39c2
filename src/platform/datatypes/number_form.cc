// See number_form.h.
#include "platform/datatypes/number_form.h"

#include <charconv>
#include <system_error>

namespace kx::datatypes {

namespace {

bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

// What a decimal number consists of, without its value.
struct DecimalShape {
  std::string_view unsignedText;  ///< without sign
  bool negative = false;
  bool isZero = true;
  std::int64_t power = 0;  ///< of ten, of the first digit that is not 0; clamped
};

constexpr std::int64_t kHugePower = 1'000'000'000;

// Reads an exponent after its "e"; false when there is no digit.
bool ReadExponent(std::string_view text, std::int64_t& exponent) noexcept {
  bool negative = false;
  if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  if (text.empty()) return false;
  exponent = 0;
  for (const char c : text) {
    if (!IsDigit(c)) return false;
    if (exponent < kHugePower) exponent = exponent * 10 + (c - '0');
  }
  if (negative) exponent = -exponent;
  return true;
}

std::optional<DecimalShape> ReadShape(std::string_view text) noexcept {
  DecimalShape shape;
  if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
    shape.negative = text.front() == '-';
    text.remove_prefix(1);
  }
  shape.unsignedText = text;
  std::size_t at = 0;
  std::size_t digits = 0;
  std::int64_t whole = 0;    // digits before the point, from the first that is not 0
  std::int64_t leading = 0;  // zeros behind the point before such a digit
  bool point = false;
  for (; at < text.size(); ++at) {
    const char c = text[at];
    if (c == '.') {
      if (point) return std::nullopt;
      point = true;
      continue;
    }
    if (!IsDigit(c)) break;
    ++digits;
    if (shape.isZero && c != '0') shape.isZero = false;
    if (!point && !shape.isZero) ++whole;
    if (point && shape.isZero) ++leading;
  }
  if (digits == 0) return std::nullopt;
  std::int64_t exponent = 0;
  if (at < text.size()) {
    if (text[at] != 'e' && text[at] != 'E') return std::nullopt;
    if (!ReadExponent(text.substr(at + 1), exponent)) return std::nullopt;
  }
  shape.power = exponent + (whole != 0 ? whole - 1 : -leading - 1);
  return shape;
}

template <class Number>
std::optional<Number> ReadNumber(std::string_view text, std::int64_t mostPower) noexcept {
  const auto shape = ReadShape(text);
  if (!shape) return std::nullopt;
  Number value = 0;
  if (!shape->isZero) {
    const char* const end = shape->unsignedText.data() + shape->unsignedText.size();
    const auto read = std::from_chars(shape->unsignedText.data(), end, value);
    if (read.ec == std::errc::result_out_of_range) {
      if (shape->power >= mostPower) return std::nullopt;
      value = 0;
    }
  }
  return shape->negative ? -value : value;
}

}  // namespace

IntegerRange RangeOf(DataType type) noexcept {
  switch (type) {
    case DataType::kI1:
      return {128, 127};
    case DataType::kI2:
      return {32768, 32767};
    case DataType::kI8:
      return {std::uint64_t{1} << 63U, (std::uint64_t{1} << 63U) - 1};
    case DataType::kUi1:
      return {0, 255};
    case DataType::kUi2:
      return {0, 65535};
    case DataType::kUi4:
      return {0, 4294967295U};
    case DataType::kUi8:
      return {0, ~std::uint64_t{0}};
    default:
      return {2147483648U, 2147483647U};
  }
}

std::optional<Integer> IntegerValue(std::string_view text) noexcept {
  Integer value;
  if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
    value.negative = text.front() == '-';
    text.remove_prefix(1);
  }
  if (text.empty()) return std::nullopt;
  for (const char c : text) {
    if (!IsDigit(c)) return std::nullopt;
    const auto digit = static_cast<std::uint64_t>(c - '0');
    if (value.magnitude > (~std::uint64_t{0} - digit) / 10) return std::nullopt;
    value.magnitude = value.magnitude * 10 + digit;
  }
  return value;
}

bool IsIntegerText(DataType type, std::string_view text) noexcept {
  // Few digits without sign fit every type but the small ones.
  if (text.size() <= 9 && (type == DataType::kInt || type == DataType::kI4) && !text.empty()) {
    unsigned most = 0;
    for (const char c : text) {
      const auto digit = static_cast<unsigned char>(c - '0');
      most = digit > most ? digit : most;
    }
    if (most <= 9) return true;
  }
  const auto value = IntegerValue(text);
  if (!value) return false;
  const IntegerRange range = RangeOf(type);
  if (!value->negative) return value->magnitude <= range.above;
  return range.below != 0 && value->magnitude <= range.below;
}

bool IsNumberOf(DataType type, std::string_view text) noexcept {
  const auto shape = ReadShape(text);
  if (!shape) return false;
  if (shape->isZero) return true;
  // Far from the limits the shape alone tells.
  const std::int64_t safePower = type == DataType::kR4 ? 37 : 307;
  if (shape->power <= safePower) return true;
  return type == DataType::kR4 ? SingleValue(text).has_value() : DoubleValue(text).has_value();
}

std::optional<double> DoubleValue(std::string_view text) noexcept {
  return ReadNumber<double>(text, 300);
}

std::optional<float> SingleValue(std::string_view text) noexcept {
  return ReadNumber<float>(text, 30);
}

bool IsFixedText(std::string_view text) noexcept {
  // Up to fourteen digits and a point before the last four of them: in range whatever they are.
  constexpr std::size_t kSafe = 15;
  std::size_t at = 0;
  while (at < text.size() && IsDigit(text[at])) ++at;
  if (at != 0 && at <= kSafe - 5) {
    if (at == text.size()) return true;
    const std::size_t point = at;
    if (text[point] == '.') {
      ++at;
      while (at < text.size() && IsDigit(text[at])) ++at;
      if (at == text.size() && at - point <= 5) return true;
    }
  }
  return FixedValue(text).has_value();
}

std::optional<std::int64_t> FixedValue(std::string_view text) noexcept {
  const bool negative = !text.empty() && text.front() == '-';
  if (negative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
  constexpr std::uint64_t kLimit = std::uint64_t{1} << 63U;
  std::uint64_t value = 0;
  int decimals = -1;  // before the point
  bool digits = false;
  for (const char c : text) {
    if (c == '.' && decimals < 0) {
      decimals = 0;
      continue;
    }
    if (!IsDigit(c) || decimals == 4) return std::nullopt;
    if (decimals >= 0) ++decimals;
    digits = true;
    value = value * 10 + static_cast<std::uint64_t>(c - '0');
    if (value > kLimit) return std::nullopt;
  }
  if (!digits) return std::nullopt;
  for (int i = decimals < 0 ? 0 : decimals; i < 4; ++i) {
    if (value > kLimit / 10) return std::nullopt;
    value *= 10;
  }
  if (value > kLimit - (negative ? 0 : 1)) return std::nullopt;
  return static_cast<std::int64_t>(negative ? 0 - value : value);
}

}  // namespace kx::datatypes
