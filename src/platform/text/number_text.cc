// Writing goes through the shortest exact road, std::to_chars with a fixed number of digits;
// reading takes a text apart first and computes afterwards. Every pass is linear in the text.
#include "platform/text/number_text.h"

#include "platform/text/unicode.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>

namespace kx::text {
namespace {

// Far beyond the exponent of any double, and small enough that sums with lengths never overflow.
constexpr std::int64_t kMaxExponent = 1'000'000'000'000;

// ---- Writing ------------------------------------------------------------------------------------

struct Scientific {
  bool negative = false;
  std::string digits;  // without point and without zeros at the end; the first is not 0
  int exponent = 0;    // of the first digit
};

// `value` is finite and not 0.
template <typename Floating>
Scientific ToScientific(Floating value, int precision) {
  std::array<char, 64> buffer{};
  const std::to_chars_result written =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::abs(value),
                    std::chars_format::scientific, precision - 1);
  const std::string_view text(buffer.data(), static_cast<std::size_t>(written.ptr - buffer.data()));
  const std::size_t e = text.find('e');
  Scientific result{value < 0, std::string(1, text[0]), 0};
  if (e > 2) result.digits += text.substr(2, e - 2);
  result.digits.erase(result.digits.find_last_not_of('0') + 1);
  const std::string_view power = text.substr(text[e + 1] == '+' ? e + 2 : e + 1);
  std::from_chars(power.data(), power.data() + power.size(), result.exponent);
  return result;
}

std::string WritePlain(const Scientific& number) {
  const int count = static_cast<int>(number.digits.size());
  if (number.exponent < 0) {
    return "0." + std::string(static_cast<std::size_t>(-number.exponent - 1), '0') + number.digits;
  }
  if (count <= number.exponent + 1) {
    return number.digits + std::string(static_cast<std::size_t>(number.exponent + 1 - count), '0');
  }
  const auto whole = static_cast<std::size_t>(number.exponent + 1);
  return number.digits.substr(0, whole) + "." + number.digits.substr(whole);
}

std::string WriteWithExponent(const Scientific& number) {
  std::string out = number.digits.substr(0, 1);
  if (number.digits.size() > 1) out += "." + number.digits.substr(1);
  out += number.exponent < 0 ? "E-" : "E+";
  const std::string power = std::to_string(std::abs(number.exponent));
  return out + (power.size() < 2 ? "0" : "") + power;
}

// How many digits stand behind the point in plain form, when there is no digit before it.
int LeadingZerosAndDigits(const Scientific& number) {
  return -number.exponent - 1 + static_cast<int>(number.digits.size());
}

template <typename Floating>
std::string FormatFloating(Floating value, int precision) {
  if (std::isnan(value)) return std::signbit(value) ? "-1.#IND" : "1.#QNAN";
  if (std::isinf(value)) return value < 0 ? "-1.#INF" : "1.#INF";
  if (value == 0) return "0";
  const Scientific number = ToScientific(value, precision);
  const bool plain = number.exponent < 0 ? LeadingZerosAndDigits(number) <= precision
                                         : number.exponent < precision;
  return (number.negative ? "-" : "") + (plain ? WritePlain(number) : WriteWithExponent(number));
}

// ---- Reading ------------------------------------------------------------------------------------

// True when the magnitude is 1 or more: the first digit that is not 0 stands before the point, once
// the exponent has moved it.
bool IsAtLeastOne(std::string_view digits, std::int64_t exponent) {
  const std::size_t point = std::min(digits.find('.'), digits.size());
  const std::size_t first = digits.find_first_of("123456789");
  const std::int64_t place = first < point ? static_cast<std::int64_t>(point - first)
                                           : -static_cast<std::int64_t>(first - point - 1);
  return place + exponent > 0;
}

// The grammar, one method for each of its stages. Each leaves `at_` behind what it took.
class NumberParser {
 public:
  explicit NumberParser(std::string_view text) : text_(text) {}

  std::optional<ParsedNumber> Parse() {
    TakeFront();
    const bool taken = StartsHexOrOctal() ? TakeHexOrOctal() : TakeDecimal();
    if (!taken) return std::nullopt;
    TakeEnd();
    if (at_ != text_.size() || parenthesis_ == Parenthesis::kOpen) return std::nullopt;
    result_.negative = minus_ || parenthesis_ == Parenthesis::kClosed;
    return std::move(result_);
  }

 private:
  enum class Parenthesis { kNone, kOpen, kClosed };

  [[nodiscard]] char Peek(std::size_t ahead = 0) const {
    return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
  }

  bool TakeSpace() {
    const char c = Peek();
    if (c == ' ' || (c >= '\t' && c <= '\r')) {
      ++at_;
      return true;
    }
    if (text_.substr(at_, 2) == "\xC2\xA0") {
      at_ += 2;
      return true;
    }
    return false;
  }

  bool TakeOnce(char wanted, bool& seen) {
    if (Peek() != wanted || seen) return false;
    seen = true;
    ++at_;
    return true;
  }

  bool TakeOpenParenthesis() {
    if (Peek() != '(' || parenthesis_ != Parenthesis::kNone) return false;
    parenthesis_ = Parenthesis::kOpen;
    ++at_;
    return true;
  }

  void TakeFront() {
    while (TakeSpace() || TakeOnce('+', plus_) || TakeOnce('-', minus_) || TakeOnce('$', dollar_) ||
           TakeOpenParenthesis()) {
    }
  }

  [[nodiscard]] bool StartsHexOrOctal() const { return Peek() == '&' && !dollar_; }

  bool TakeHexOrOctal() {
    const char letter = AsciiToUpper(Peek(1));
    if (letter != 'H' && letter != 'O') return false;
    at_ += 2;
    const unsigned base = letter == 'H' ? 16 : 8;
    const std::size_t begin = at_;
    for (;; ++at_) {
      const int digit = HexDigitValue(static_cast<unsigned char>(Peek()));
      if (digit < 0 || static_cast<unsigned>(digit) >= base) break;
      if (result_.bits > (std::numeric_limits<std::uint64_t>::max() / base)) {
        result_.tooManyBits = true;
      }
      result_.bits = result_.bits * base + static_cast<unsigned>(digit);
    }
    result_.hexOrOctal = true;
    return at_ > begin;
  }

  bool TakeDecimal() {
    bool digitSeen = false;
    bool pointSeen = false;
    for (;; ++at_) {
      const char c = Peek();
      if (IsAsciiDigit(static_cast<unsigned char>(c))) {
        digitSeen = true;
        result_.digits.push_back(c);
      } else if (c == '.' && !pointSeen) {
        pointSeen = true;
        result_.digits.push_back(c);
      } else if (c != ',' || !digitSeen) {
        break;
      }
    }
    return digitSeen && TakeExponent();
  }

  bool TakeExponent() {
    const char letter = AsciiToUpper(Peek());
    if (dollar_ || (letter != 'E' && letter != 'D')) return true;
    ++at_;
    const bool negative = Peek() == '-';
    if (negative || Peek() == '+') ++at_;
    const std::size_t begin = at_;
    for (; IsAsciiDigit(static_cast<unsigned char>(Peek())); ++at_) {
      result_.exponent = std::min(result_.exponent * 10 + (Peek() - '0'), kMaxExponent);
    }
    if (negative) result_.exponent = -result_.exponent;
    return at_ > begin;
  }

  bool TakeEndSign() {
    if (plus_ || minus_) return false;
    return TakeOnce('+', plus_) || TakeOnce('-', minus_);
  }

  bool TakeCloseParenthesis() {
    if (Peek() != ')' || parenthesis_ != Parenthesis::kOpen) return false;
    parenthesis_ = Parenthesis::kClosed;
    ++at_;
    return true;
  }

  bool TakeEndDollar() {
    if (Peek() != '$') return false;
    ++at_;
    return true;
  }

  void TakeEnd() {
    while (TakeSpace() || TakeEndSign() || TakeCloseParenthesis() || TakeEndDollar()) {
    }
  }

  std::string_view text_;
  std::size_t at_ = 0;
  bool plus_ = false;
  bool minus_ = false;
  bool dollar_ = false;
  Parenthesis parenthesis_ = Parenthesis::kNone;
  ParsedNumber result_;
};

// Collects the digits of a scaled number: whole ones first, then what decides the rounding.
class ScaledDigits {
 public:
  // False when the whole part no longer fits.
  bool AddWhole(unsigned digit) {
    if (value_ > (kLimit - digit) / 10) return false;
    value_ = value_ * 10 + digit;
    return true;
  }

  void AddBehind(unsigned digit) {
    if (!firstBehind_) {
      firstBehind_ = digit;
    } else if (digit != 0) {
      restIsNotZero_ = true;
    }
  }

  [[nodiscard]] std::optional<std::uint64_t> Rounded() const {
    const unsigned behind = firstBehind_.value_or(0);
    const bool odd = value_ % 2 == 1;
    const bool up = behind > 5 || (behind == 5 && (restIsNotZero_ || odd));
    if (up && value_ == kLimit) return std::nullopt;
    return value_ + (up ? 1 : 0);
  }

 private:
  static constexpr std::uint64_t kLimit = std::uint64_t{1} << 63;

  std::uint64_t value_ = 0;
  std::optional<unsigned> firstBehind_;
  bool restIsNotZero_ = false;
};

}  // namespace

std::string FormatDouble(double value) { return FormatFloating(value, 15); }

std::string FormatSingle(float value) { return FormatFloating(value, 7); }

std::string FormatCurrency(std::int64_t tenThousandths) {
  const bool negative = tenThousandths < 0;
  const auto bits = static_cast<std::uint64_t>(tenThousandths);
  const std::uint64_t magnitude = negative ? 0 - bits : bits;
  std::string out = (negative ? "-" : "") + std::to_string(magnitude / 10000);
  if (magnitude % 10000 == 0) return out;
  std::string decimals = std::to_string(10000 + magnitude % 10000).substr(1);
  decimals.erase(decimals.find_last_not_of('0') + 1);
  return out + "." + decimals;
}

std::string FormatInteger(std::int64_t value) { return std::to_string(value); }

std::string FormatInteger(std::uint64_t value) { return std::to_string(value); }

DecimalValue ReadDecimal(std::string_view digits, std::int64_t exponent) {
  if (digits.find_first_of("123456789") == std::string_view::npos) return {};
  const std::string text = std::string(digits) + "e" + std::to_string(exponent);
  DecimalValue result;
  const std::from_chars_result read =
      std::from_chars(text.data(), text.data() + text.size(), result.value);
  const bool outside = read.ec == std::errc::result_out_of_range || std::isinf(result.value);
  if (!outside) return result;
  if (!IsAtLeastOne(digits, exponent)) return {};
  return {std::numeric_limits<double>::infinity(), DecimalStatus::kTooLarge};
}

std::optional<ParsedNumber> ParseNumber(std::string_view text) {
  return NumberParser(text).Parse();
}

bool IsNumberText(std::string_view text) { return ParseNumber(text).has_value(); }

std::optional<std::uint64_t> ReadScaled(std::string_view digits, std::int64_t exponent,
                                        int decimals) {
  const std::size_t point = std::min(digits.find('.'), digits.size());
  // The number of digits before the point once exponent and decimals have moved it.
  const std::int64_t whole = static_cast<std::int64_t>(point) + exponent + decimals;
  ScaledDigits scaled;
  if (whole < 0) scaled.AddBehind(0);
  std::int64_t place = 0;
  bool anyDigit = false;
  for (const char c : digits) {
    if (c == '.') continue;
    const auto digit = static_cast<unsigned>(c - '0');
    anyDigit = anyDigit || digit != 0;
    if (place++ >= whole) {
      scaled.AddBehind(digit);
    } else if (!scaled.AddWhole(digit)) {
      return std::nullopt;
    }
  }
  for (; anyDigit && place < whole; ++place) {
    if (!scaled.AddWhole(0)) return std::nullopt;
  }
  return scaled.Rounded();
}

DecimalValue ValueOf(const ParsedNumber& number) {
  DecimalValue result;
  if (!number.hexOrOctal) {
    result = ReadDecimal(number.digits, number.exponent);
  } else if (number.tooManyBits) {
    result = {std::numeric_limits<double>::infinity(), DecimalStatus::kTooLarge};
  } else {
    result.value = static_cast<double>(number.bits);
  }
  if (number.negative && result.value != 0) result.value = -result.value;
  return result;
}

}  // namespace kx::text
