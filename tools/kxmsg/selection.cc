// See selection.h.
#include "kxmsg/selection.h"

#include "kxmessage/error.h"
#include "kxmessage/error_codes.h"
#include "kxmessage/found_elements.h"

#include "kxmsg/failure.h"
#include "kxmsg/text_form.h"

#include <cstdint>
#include <optional>

namespace kxmsg {

namespace {

constexpr std::int32_t kObjectNotSet = static_cast<std::int32_t>(0x800A005B);
constexpr std::size_t kMostQuoted = 200;  // characters of a pattern in a message

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool IsNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '-' || c == '.' || c == ':' || static_cast<unsigned char>(c) >= 0x80U;
}

// The place behind the bracket that closes the one at `at`; npos when none does.
std::size_t EndOfBrackets(std::string_view pattern, std::size_t at) {
  std::size_t depth = 0;
  for (; at < pattern.size(); ++at) {
    const char c = pattern[at];
    if (c == '"' || c == '\'') {
      at = pattern.find(c, at + 1);
      if (at == std::string_view::npos) return at;
    } else if (c == '[' || c == '(') {
      ++depth;
    } else if ((c == ']' || c == ')') && --depth == 0) {
      return at + 1;
    }
  }
  return std::string_view::npos;
}

// The place of the "@" outside all brackets; nothing when there is none, and for what is no single
// path.
std::optional<std::size_t> FindAttributeMark(std::string_view pattern) {
  std::optional<std::size_t> mark;
  for (std::size_t at = 0; at < pattern.size();) {
    const char c = pattern[at];
    if (c == '[' || c == '(') {
      at = EndOfBrackets(pattern, at);
      if (at == std::string_view::npos) return std::nullopt;
      continue;
    }
    const bool isMark = c == '@' && !mark;
    if (!isMark && c != '/' && c != '*' && !IsNameCharacter(c)) return std::nullopt;
    if (isMark) mark = at;
    ++at;
  }
  return mark;
}

// Finds the elements above the "@", which a single slash parts from them.
std::string OwnersBefore(std::string_view path) {
  if (path.empty()) return ".";
  if (path.back() != '/') return {};
  path.remove_suffix(1);
  const bool isPlain = !path.empty() && path.back() != '/';
  return isPlain ? std::string(path) : std::string();
}

std::vector<kx::KXMsgElement> FindElements(const kx::KXMessage& message, const std::string& query,
                                           std::size_t most) {
  const kx::KXMsgFoundElements found = message.RootElement().FindElements(query);
  std::vector<kx::KXMsgElement> elements;
  const std::int32_t count = found.Count();
  if (static_cast<std::size_t>(count) > most) {
    RaiseTooMuch("The pattern finds more than " + std::to_string(most) +
                 " elements; --max-elements sets the bound.");
  }
  for (std::int32_t i = 1; i <= count; ++i) elements.push_back(found.Element(i));
  return elements;
}

std::string Named(const std::string& pattern) { return Quoted(Shortened(pattern, kMostQuoted)); }

}  // namespace

AttributePath AttributePathOf(std::string_view pattern) {
  pattern = Trimmed(pattern);
  const std::optional<std::size_t> mark = FindAttributeMark(pattern);
  if (!mark) return {};
  std::size_t end = *mark + 1;
  while (end < pattern.size() && IsNameCharacter(pattern[end])) ++end;
  const std::string name(pattern.substr(*mark + 1, end - *mark - 1));
  if (name.empty() || (end < pattern.size() && pattern[end] != '[')) return {};
  return {name, end == pattern.size() ? OwnersBefore(pattern.substr(0, *mark)) : std::string()};
}

Selection Select(const kx::KXMessage& message, const std::string& pattern, std::size_t most) {
  Selection selection;
  selection.attribute = AttributePathOf(pattern).name;
  try {
    if (selection.attribute.empty()) {
      selection.elements = FindElements(message, pattern, most);
    } else if (message.RootElement().FindElements(pattern).Count() > 0) {
      // The parent of an attribute is its element. Asked for itself first, a pattern that is none
      // is told as it was given.
      selection.elements = FindElements(message, '(' + pattern + ")/..", most);
    }
  } catch (const kx::Error& error) {
    if (error.Number() != kObjectNotSet) throw;
    throw kx::Error(kObjectNotSet, error.Source(),
                    "The pattern " + Named(pattern) +
                        " finds what is no element of a schema; an attribute is found by a "
                        "pattern that ends in /@NAME.");
  }
  return selection;
}

Selection SelectSome(const kx::KXMessage& message, const std::string& pattern, std::size_t most) {
  Selection selection = Select(message, pattern, most);
  if (selection.elements.empty()) {
    throw kx::Error(kx::kxMsgErrorNoChild, "kxmsg",
                    "The pattern " + Named(pattern) + " finds nothing.");
  }
  return selection;
}

}  // namespace kxmsg
