// See number_reading.h.
#include "platform/patterns/number_reading.h"

#include "platform/text/number_text.h"
#include "platform/text/unicode.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace kx::patterns {

namespace {

constexpr bool IsBlank(char c) { return text::IsXmlSpace(static_cast<unsigned char>(c)); }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsZero(char c) { return c == '0'; }

// Finds the ends of runs character by character.
struct Scanner {
  template <class Test>
  static std::size_t End(std::string_view text, std::size_t at, const Test& test) {
    while (at < text.size() && test(text[at])) ++at;
    return at;
  }
  static std::size_t DigitsEnd(std::string_view text, std::size_t at) {
    return End(text, at, IsDigit);
  }
  static std::size_t ZerosEnd(std::string_view text, std::size_t at) {
    return End(text, at, IsZero);
  }
  static std::size_t BlanksEnd(std::string_view text, std::size_t at) {
    return End(text, at, IsBlank);
  }
};

// Digits that decide which double is the nearest one: of any more it only counts whether all of
// them are zeros.
constexpr std::size_t kDecidingDigits = 800;
// An exponent of more digits is far outside the range of a double, whatever the digits before it.
constexpr std::size_t kMostExponentDigits = 18;
// The digits of a text on their own may number up to 2^31 or so; this is beyond all of that.
constexpr std::int64_t kEndlessExponent = 1'000'000'000'000;

struct Part {
  std::size_t begin = 0;
  std::size_t end = 0;
  [[nodiscard]] std::size_t Length() const { return end - begin; }
};

// What a text that reads as a number is made of.
struct Shape {
  bool negative = false;
  Part whole;
  Part fraction;
  bool down = false;  // the exponent is negative
  Part exponent;
};

template <class Runs>
class Reader {
 public:
  Reader(std::string_view text, const Runs& runs) : text_(text), runs_(runs) {}

  double Read() {
    Shape shape;
    if (!ReadShape(shape)) return kUnreadable;
    const double magnitude = MagnitudeOf(shape);
    return shape.negative ? -magnitude : magnitude;
  }

 private:
  [[nodiscard]] bool At(std::size_t at, char a, char b) const {
    return at < text_.size() && (text_[at] == a || text_[at] == b);
  }
  Part TakeDigits(std::size_t& at) const {
    const std::size_t begin = at;
    at = runs_.DigitsEnd(text_, at);
    return {begin, at};
  }
  // True when a sign was taken and is a minus.
  bool TakeSign(std::size_t& at) const {
    if (!At(at, '-', '+')) return false;
    return text_[at++] == '-';
  }

  bool ReadShape(Shape& shape) const {
    std::size_t at = runs_.BlanksEnd(text_, 0);
    shape.negative = TakeSign(at);
    shape.whole = TakeDigits(at);
    if (At(at, '.', '.')) {
      ++at;
      shape.fraction = TakeDigits(at);
    }
    if (shape.whole.Length() + shape.fraction.Length() == 0) return false;
    if (At(at, 'e', 'E')) {
      ++at;
      shape.down = TakeSign(at);
      shape.exponent = TakeDigits(at);
      if (shape.exponent.Length() == 0) return false;
    }
    return runs_.BlanksEnd(text_, at) == text_.size();
  }

  [[nodiscard]] std::int64_t ExponentOf(const Shape& shape) const {
    Part digits = shape.exponent;
    digits.begin = std::min(digits.end, runs_.ZerosEnd(text_, digits.begin));
    std::int64_t exponent = 0;
    if (digits.Length() > kMostExponentDigits) {
      exponent = kEndlessExponent;
    } else {
      for (std::size_t i = digits.begin; i < digits.end; ++i) {
        exponent = exponent * 10 + (text_[i] - '0');
      }
    }
    exponent = std::min(exponent, kEndlessExponent);
    return shape.down ? -exponent : exponent;
  }

  [[nodiscard]] double MagnitudeOf(const Shape& shape) const {
    if (shape.exponent.Length() == 0) {
      if (const std::optional<double> value = ReadShort(shape)) return *value;
    }
    std::int64_t exponent = ExponentOf(shape);
    Part whole = shape.whole;
    Part fraction = shape.fraction;
    whole.begin = std::min(whole.end, runs_.ZerosEnd(text_, whole.begin));
    if (whole.Length() == 0) {
      const std::size_t first = std::min(fraction.end, runs_.ZerosEnd(text_, fraction.begin));
      exponent -= static_cast<std::int64_t>(first - fraction.begin);
      fraction.begin = first;
    }
    std::string digits;
    exponent += static_cast<std::int64_t>(Take(whole, digits));
    if (whole.Length() == 0) {
      exponent -= static_cast<std::int64_t>(std::min(fraction.Length(), Room(digits)));
      Take(fraction, digits);
    }
    if (digits.empty()) return 0;
    if (!IsAllZeros(whole) || !IsAllZeros(fraction)) {
      digits += '1';
      --exponent;
    }
    return text::ReadDecimal(digits, exponent).value;
  }

  static std::size_t Room(const std::string& digits) { return kDecidingDigits - digits.size(); }
  // Moves digits from the front of `part` to the end of `digits`; how many had no room and stay.
  std::size_t Take(Part& part, std::string& digits) const {
    const std::size_t taken = std::min(part.Length(), Room(digits));
    digits += text_.substr(part.begin, taken);
    part.begin += taken;
    return part.Length();
  }
  [[nodiscard]] bool IsAllZeros(const Part& part) const {
    return part.Length() == 0 || runs_.ZerosEnd(text_, part.begin) >= part.end;
  }

  // Up to fifteen digits and a division by a power of ten: both are exact as doubles, so the result
  // is the nearest one. Nothing for longer ones.
  [[nodiscard]] std::optional<double> ReadShort(const Shape& shape) const {
    constexpr double kPowers[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                  1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    if (shape.whole.Length() + shape.fraction.Length() > 15) return std::nullopt;
    std::int64_t value = 0;
    for (const Part& part : {shape.whole, shape.fraction}) {
      for (std::size_t i = part.begin; i < part.end; ++i) value = value * 10 + (text_[i] - '0');
    }
    return static_cast<double>(value) / kPowers[shape.fraction.Length()];
  }

  std::string_view text_;
  const Runs& runs_;
};

}  // namespace

double ReadNumber(std::string_view text) { return Reader(text, Scanner()).Read(); }

double ReadNumber(std::string_view text, const TextRuns& runs) { return Reader(text, runs).Read(); }

}  // namespace kx::patterns
