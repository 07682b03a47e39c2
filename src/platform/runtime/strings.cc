// The string functions. Texts of ASCII, where a unit is a byte, are cut directly; others go through
// UTF-16. Searches run on UTF-8, whose order of characters is the same.
#include "platform/runtime/strings.h"

#include "platform/runtime/error.h"
#include "platform/text/unicode.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

namespace kx::runtime {
namespace {

// `count` units from unit `first` (from 0) on. In a text of ASCII units are bytes; elsewhere the
// cut is made in UTF-16, where it may fall inside a pair.
std::string CutUnits(std::string_view text, std::size_t first, std::size_t count) {
  if (text::IsAscii(text)) {
    return std::string(text.substr(std::min(first, text.size()), count));
  }
  const std::u16string units = text::ToUtf16(text);
  return text::ToUtf8(std::u16string_view(units).substr(std::min(first, units.size()), count));
}

std::int32_t PositionOfOffset(std::string_view text, std::size_t offset) {
  return static_cast<std::int32_t>(text::CountUtf16Units(text.substr(0, offset))) + 1;
}

// The text in which to search: upper-casing keeps every unit at its position.
std::string Folded(std::string_view text, TextComparison comparison) {
  return comparison == TextComparison::kCaseless ? text::UpperCase(text) : std::string(text);
}

// ---- Like ---------------------------------------------------------------------------------------

// One element of a pattern that stands for exactly one unit.
struct ListRange {
  char16_t first;
  char16_t last;
};

struct PatternElement {
  enum class Kind { kUnit, kAnyUnit, kAnyRun, kDigit, kList };
  Kind kind = Kind::kUnit;
  char16_t unit = 0;
  bool inverted = false;
  std::vector<ListRange> ranges;

  [[nodiscard]] bool Matches(char16_t candidate) const {
    switch (kind) {
      case Kind::kUnit:
        return candidate == unit;
      case Kind::kDigit:
        return text::IsAsciiDigit(candidate);
      case Kind::kList:
        return inverted != std::any_of(ranges.begin(), ranges.end(), [candidate](ListRange range) {
                 return candidate >= range.first && candidate <= range.last;
               });
      case Kind::kAnyUnit:
      case Kind::kAnyRun:
        return true;
    }
    return false;
  }
};

class PatternReader {
 public:
  explicit PatternReader(std::u16string_view pattern) : pattern_(pattern) {}

  std::vector<PatternElement> Read() {
    std::vector<PatternElement> elements;
    while (at_ < pattern_.size()) {
      std::optional<PatternElement> element = ReadElement();
      if (element) elements.push_back(std::move(*element));
    }
    return elements;
  }

 private:
  using Kind = PatternElement::Kind;

  // Nothing for "[]", which stands for no unit at all.
  std::optional<PatternElement> ReadElement() {
    const char16_t unit = pattern_[at_++];
    switch (unit) {
      case u'?':
        return PatternElement{Kind::kAnyUnit, 0, false, {}};
      case u'*':
        return PatternElement{Kind::kAnyRun, 0, false, {}};
      case u'#':
        return PatternElement{Kind::kDigit, 0, false, {}};
      case u'[':
        return ReadList();
      default:
        return PatternElement{Kind::kUnit, unit, false, {}};
    }
  }

  std::optional<PatternElement> ReadList() {
    const std::size_t end = pattern_.find(u']', at_);
    if (end == std::u16string_view::npos) RaiseRuntimeError(kInvalidPatternString);
    std::u16string_view list = pattern_.substr(at_, end - at_);
    at_ = end + 1;
    if (list.empty()) return std::nullopt;
    PatternElement element{Kind::kList, 0, false, {}};
    // "!" alone is an ordinary unit: there is nothing to be none of.
    if (list.front() == u'!' && list.size() > 1) {
      element.inverted = true;
      list.remove_prefix(1);
    }
    for (std::size_t i = 0; i < list.size();) {
      // "-" between two units makes a range; at either end it stands for itself.
      const bool range = i + 2 < list.size() && list[i + 1] == u'-';
      const ListRange entry{list[i], range ? list[i + 2] : list[i]};
      if (entry.first > entry.last) RaiseRuntimeError(kInvalidPatternString);
      element.ranges.push_back(entry);
      i += range ? 3 : 1;
    }
    return element;
  }

  std::u16string_view pattern_;
  std::size_t at_ = 0;
};

// Goes back to the last "*" only: a later one can take over whatever an earlier one could have.
bool MatchElements(std::u16string_view text, const std::vector<PatternElement>& pattern) {
  std::size_t at = 0;
  std::size_t element = 0;
  std::optional<std::pair<std::size_t, std::size_t>> lastRun;  // element behind it, text taken
  while (at < text.size() || element < pattern.size()) {
    if (element < pattern.size() && pattern[element].kind == PatternElement::Kind::kAnyRun) {
      lastRun = {++element, at};
      continue;
    }
    if (element < pattern.size() && at < text.size() && pattern[element].Matches(text[at])) {
      ++element;
      ++at;
      continue;
    }
    if (!lastRun || lastRun->second == text.size()) return false;
    element = lastRun->first;
    at = ++lastRun->second;
  }
  return true;
}

}  // namespace

std::int32_t Len(std::string_view text) {
  return static_cast<std::int32_t>(text::CountUtf16Units(text));
}

std::string Mid(std::string_view text, std::int32_t start, std::int32_t length) {
  if (start < 1 || length < 0) RaiseRuntimeError(kInvalidProcedureCall);
  return CutUnits(text, static_cast<std::size_t>(start) - 1, static_cast<std::size_t>(length));
}

std::string Left(std::string_view text, std::int32_t length) {
  if (length < 0) RaiseRuntimeError(kInvalidProcedureCall);
  return CutUnits(text, 0, static_cast<std::size_t>(length));
}

std::string Right(std::string_view text, std::int32_t length) {
  if (length < 0) RaiseRuntimeError(kInvalidProcedureCall);
  const std::size_t count = text::CountUtf16Units(text);
  const auto wanted = std::min(static_cast<std::size_t>(length), count);
  return CutUnits(text, count - wanted, wanted);
}

std::int32_t InStr(std::int32_t start, std::string_view text, std::string_view wanted,
                   TextComparison comparison) {
  if (start < 1) RaiseRuntimeError(kInvalidProcedureCall);
  if (start > Len(text)) return 0;
  if (wanted.empty()) return start;
  const std::string searched = Folded(text, comparison);
  std::size_t from = text::OffsetOfUtf16Unit(searched, static_cast<std::size_t>(start) - 1);
  // A start inside a surrogate pair leaves the pair behind.
  if (PositionOfOffset(searched, from) < start) from += text::DecodeUtf8(searched, from).length;
  const std::size_t found = searched.find(Folded(wanted, comparison), from);
  return found == std::string::npos ? 0 : PositionOfOffset(searched, found);
}

std::int32_t InStrRev(std::string_view text, std::string_view wanted, std::int32_t start,
                      TextComparison comparison) {
  if (start == 0 || start < -1) RaiseRuntimeError(kInvalidProcedureCall);
  const std::int32_t length = Len(text);
  const std::int32_t last = start == -1 ? length : start;
  if (length == 0 || last > length) return 0;
  if (wanted.empty()) return last;
  const std::string searched = Folded(text, comparison);
  const std::string sought = Folded(wanted, comparison);
  const std::size_t end = text::OffsetOfUtf16Unit(searched, static_cast<std::size_t>(last));
  if (sought.size() > end) return 0;
  const std::size_t found = searched.rfind(sought, end - sought.size());
  return found == std::string::npos ? 0 : PositionOfOffset(searched, found);
}

std::string Replace(std::string_view text, std::string_view wanted, std::string_view replacement) {
  if (wanted.empty()) return std::string(text);
  std::string out;
  std::size_t from = 0;
  for (std::size_t found = text.find(wanted); found != std::string_view::npos;
       found = text.find(wanted, from)) {
    out.append(text, from, found - from);
    out.append(replacement);
    from = found + wanted.size();
  }
  return out.append(text, from);
}

std::vector<std::string> Split(std::string_view text, std::string_view delimiter) {
  std::vector<std::string> pieces;
  if (text.empty()) return pieces;
  if (delimiter.empty()) return {std::string(text)};
  std::size_t from = 0;
  for (std::size_t found = text.find(delimiter); found != std::string_view::npos;
       found = text.find(delimiter, from)) {
    pieces.emplace_back(text.substr(from, found - from));
    from = found + delimiter.size();
  }
  pieces.emplace_back(text.substr(from));
  return pieces;
}

std::string_view Trim(std::string_view text) noexcept { return LTrim(RTrim(text)); }

std::string_view LTrim(std::string_view text) noexcept {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  return text;
}

std::string_view RTrim(std::string_view text) noexcept {
  const std::size_t last = text.find_last_not_of(' ');
  return text.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

std::string LCase(std::string_view text) { return text::LowerCase(text); }

std::string UCase(std::string_view text) { return text::UpperCase(text); }

bool Like(std::string_view text, std::string_view pattern) {
  const std::u16string units = text::ToUtf16(pattern);
  return MatchElements(text::ToUtf16(text), PatternReader(units).Read());
}

}  // namespace kx::runtime
