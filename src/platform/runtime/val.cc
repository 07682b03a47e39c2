// Val: the number at the start of a text. It reads in one pass and never builds the text without
// its blanks; what follows the number is not looked at.
#include "platform/runtime/conversions.h"
#include "platform/runtime/error.h"
#include "platform/text/number_text.h"
#include "platform/text/unicode.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace kx::runtime {
namespace {

// Reads the leading number; blanks, tabs and LF are invisible to it.
class LeadingNumber {
 public:
  explicit LeadingNumber(std::string_view text) : text_(text) {}

  double Read() {
    const bool negative = Peek() == '-';
    if (negative || Peek() == '+') Take();
    const double magnitude = Peek() == '&' ? ReadBits() : ReadDecimal();
    return negative && magnitude != 0 ? -magnitude : magnitude;
  }

 private:
  [[nodiscard]] static bool IsInvisible(char c) { return c == ' ' || c == '\t' || c == '\n'; }

  char Peek() {
    while (at_ < text_.size() && IsInvisible(text_[at_])) ++at_;
    return at_ < text_.size() ? text_[at_] : '\0';
  }

  char Take() {
    const char c = Peek();
    ++at_;
    return c;
  }

  [[nodiscard]] bool AtDigit() { return text::IsAsciiDigit(static_cast<unsigned char>(Peek())); }

  double ReadBits() {
    Take();
    const char letter = text::AsciiToUpper(Take());
    if (letter != 'H' && letter != 'O') return 0;
    const int base = letter == 'H' ? 16 : 8;
    double exact = 0;
    for (int digit = NextDigit(base); digit >= 0; digit = NextDigit(base)) {
      exact = exact * base + digit;
      Take();
    }
    if (!std::isfinite(exact)) RaiseRuntimeError(kOverflow);
    return WithTypeOfBits(exact);
  }

  int NextDigit(int base) {
    const int digit = text::HexDigitValue(static_cast<unsigned char>(Peek()));
    return digit < base ? digit : -1;
  }

  // Up to 16 bits are a signed 16-bit number unless "&" asks for 32, up to 32 a signed 32-bit one.
  double WithTypeOfBits(double value) {
    if (value >= 0x8000 && value <= 0xFFFF && Peek() != '&') return value - 0x10000;
    if (value >= 0x80000000 && value <= 0xFFFFFFFF) return value - 4294967296.0;
    return value;
  }

  double ReadDecimal() {
    std::string digits;
    bool pointSeen = false;
    for (; AtDigit() || (Peek() == '.' && !pointSeen); digits.push_back(Take())) {
      pointSeen = pointSeen || Peek() == '.';
    }
    if (digits.empty() || digits == ".") return 0;
    const text::DecimalValue value = text::ReadDecimal(digits, ReadExponent());
    if (value.status == text::DecimalStatus::kTooLarge) RaiseRuntimeError(kOverflow);
    return value.value;
  }

  // 0 when the letter is not followed by digits.
  std::int64_t ReadExponent() {
    constexpr std::int64_t kLimit = 1'000'000'000'000;
    const char letter = text::AsciiToUpper(Peek());
    if (letter != 'E' && letter != 'D') return 0;
    Take();
    const bool negative = Peek() == '-';
    if (negative || Peek() == '+') Take();
    std::int64_t exponent = 0;
    while (AtDigit()) exponent = std::min(exponent * 10 + (Take() - '0'), kLimit);
    return negative ? -exponent : exponent;
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace

double Val(std::string_view text) { return LeadingNumber(text).Read(); }

}  // namespace kx::runtime
