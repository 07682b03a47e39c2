// See text_runs.h.
#include "platform/patterns/text_runs.h"

#include "platform/text/unicode.h"

#include <algorithm>
#include <functional>

namespace kx::patterns {

namespace {

constexpr bool IsBlank(char c) { return text::IsXmlSpace(static_cast<unsigned char>(c)); }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

TextRuns::TextRuns(std::string_view text) : text_(text) {
  const auto add = [](Runs& runs, std::size_t at) {
    if (runs.empty() || runs.back().end != at) runs.push_back({at, at});
    ++runs.back().end;
  };
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (IsBlank(c)) add(blanks_, at);
    if (IsDigit(c)) add(digits_, at);
    if (c == '0') add(zeros_, at);
  }
}

bool TextRuns::Covers(std::string_view part) const noexcept {
  const std::less_equal<const char*> notBehind;
  return !text_.empty() && notBehind(text_.data(), part.data()) &&
         notBehind(part.data() + part.size(), text_.data() + text_.size());
}

// The run that the character at `at` belongs to, or null.
const TextRuns::Run* TextRuns::RunAt(const Runs& runs, std::size_t at) noexcept {
  const auto behind = std::upper_bound(runs.begin(), runs.end(), at,
                                       [](std::size_t p, const Run& run) { return p < run.end; });
  return behind == runs.end() || behind->begin > at ? nullptr : &*behind;
}

std::size_t TextRuns::EndIn(const Runs& runs, std::string_view part,
                            std::size_t at) const noexcept {
  const auto offset = static_cast<std::size_t>(part.data() - text_.data());
  const Run* const run = at < part.size() ? RunAt(runs, offset + at) : nullptr;
  return run == nullptr ? at : std::min(part.size(), run->end - offset);
}

std::size_t TextRuns::DigitsEnd(std::string_view part, std::size_t at) const noexcept {
  return EndIn(digits_, part, at);
}

std::size_t TextRuns::ZerosEnd(std::string_view part, std::size_t at) const noexcept {
  return EndIn(zeros_, part, at);
}

std::size_t TextRuns::BlanksEnd(std::string_view part, std::size_t at) const noexcept {
  return EndIn(blanks_, part, at);
}

std::size_t TextRuns::BlanksBegin(std::string_view part, std::size_t at) const noexcept {
  const auto offset = static_cast<std::size_t>(part.data() - text_.data());
  const Run* const run = at > 0 ? RunAt(blanks_, offset + at - 1) : nullptr;
  if (run == nullptr) return at;
  return run->begin > offset ? run->begin - offset : 0;
}

}  // namespace kx::patterns
