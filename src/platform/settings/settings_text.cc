// See settings_text.h.
#include "platform/settings/settings_text.h"

#include "platform/text/compare.h"
#include "platform/text/unicode.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace kx::settings {
namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool IsControl(char c) { return (c >= '\0' && c < ' ') || c == '\x7F'; }

bool HoldsControl(std::string_view text) {
  return std::any_of(text.begin(), text.end(), IsControl);
}

// ---- Quoted text --------------------------------------------------------------------------------

// What a letter after a backslash stands for, "x" excepted; NUL for none.
char EscapedCharacter(char letter) {
  switch (letter) {
    case '\\':
    case '"':
      return letter;
    case 'n':
      return '\n';
    case 'r':
      return '\r';
    case 't':
      return '\t';
    default:
      return '\0';
  }
}

// Reads the escape at the start of `rest`, which begins after the backslash; the number of
// characters read, 0 for a bad one.
std::size_t ReadEscape(std::string_view rest, std::string& out) {
  if (rest.empty()) return 0;
  if (rest[0] != 'x') {
    const char c = EscapedCharacter(rest[0]);
    if (c == '\0') return 0;
    out += c;
    return 1;
  }
  if (rest.size() < 3) return 0;
  const int high = text::HexDigitValue(static_cast<unsigned char>(rest[1]));
  const int low = text::HexDigitValue(static_cast<unsigned char>(rest[2]));
  if (high < 0 || low < 0) return 0;
  out += static_cast<char>(high * 16 + low);
  return 3;
}

// Reads a text in quotes at the start of `text`; the number of characters with both quotes, 0 when
// it is not well formed.
std::size_t ReadQuoted(std::string_view text, std::string& out) {
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (text[i] == '"') return i + 1;
    if (text[i] != '\\') {
      out += text[i];
      continue;
    }
    const std::size_t length = ReadEscape(text.substr(i + 1), out);
    if (length == 0) return 0;
    i += length;
  }
  return 0;
}

// A whole token, quoted or plain; false when it is not well formed.
bool ReadToken(std::string_view token, std::string& out) {
  if (!token.starts_with('"')) {
    out = token;
    return true;
  }
  return ReadQuoted(token, out) == token.size();
}

// Writes a character that cannot stand for itself in quotes.
void AppendEscape(std::string& out, char c) {
  constexpr std::string_view kNamed = "\\\"\n\r\t";
  constexpr std::string_view kLetters = "\\\"nrt";
  const std::size_t named = kNamed.find(c);
  if (named != std::string_view::npos) {
    out += {'\\', kLetters[named]};
    return;
  }
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const auto code = static_cast<unsigned char>(c);
  out += {'\\', 'x', kDigits[code >> 4U], kDigits[code & 15U]};
}

std::string Quoted(std::string_view text) {
  const bool isUtf8 = text::IsValidUtf8(text);
  std::string out = "\"";
  for (const char c : text) {
    const bool isUpper = static_cast<unsigned char>(c) >= 0x80;
    if (c == '\\' || c == '"' || IsControl(c) || (isUpper && !isUtf8)) {
      AppendEscape(out, c);
    } else {
      out += c;
    }
  }
  return out + "\"";
}

bool NeedsQuotes(std::string_view text) {
  return Trim(text).size() != text.size() || text.starts_with('"') || HoldsControl(text) ||
         !text::IsValidUtf8(text);
}

std::string ValueToken(std::string_view value) {
  return NeedsQuotes(value) ? Quoted(value) : std::string(value);
}

std::string SectionLine(std::string_view section) {
  const bool quotes = section.empty() || NeedsQuotes(section);
  return "[" + (quotes ? Quoted(section) : std::string(section)) + "]";
}

std::string NameToken(std::string_view name) {
  constexpr std::string_view kLineMarks = "#;[";
  const bool marks = name.empty() || kLineMarks.find(name.front()) != std::string_view::npos ||
                     name.find('=') != std::string_view::npos;
  return marks || NeedsQuotes(name) ? Quoted(name) : std::string(name);
}

std::string EntryLine(std::string_view name, std::string_view value) {
  std::string line = NameToken(name) + " =";
  if (!value.empty()) line += " " + ValueToken(value);
  return line;
}

// ---- Lines --------------------------------------------------------------------------------------

// Splits an entry into its name and the trimmed text after the equals sign; a reason when it is
// none.
const char* ReadEntry(std::string_view line, std::string& name, std::string_view& rest) {
  if (line.starts_with('"')) {
    const std::size_t length = ReadQuoted(line, name);
    if (length == 0) return "a name's quotes or escapes are not well formed";
    rest = Trim(line.substr(length));
    if (!rest.starts_with('=')) return "no equals sign follows the name";
    rest = Trim(rest.substr(1));
    return nullptr;
  }
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return "neither a comment, a section nor an entry";
  name = Trim(line.substr(0, equals));
  if (name.empty()) return "an entry without a name";
  rest = Trim(line.substr(equals + 1));
  return nullptr;
}

using Names = std::unordered_set<std::string, text::CaselessHash, text::CaselessEqual>;

}  // namespace

const char* SettingsText::ParseLine(std::string_view raw, Line& line) {
  line.raw = raw;
  for (const char c : raw) {
    if (IsControl(c) && c != '\t') return "a control character";
  }
  if (!text::IsValidUtf8(raw)) return "not UTF-8";
  const std::string_view content = Trim(raw);
  if (content.empty() || content.front() == '#' || content.front() == ';') return nullptr;
  if (content.front() == '[') {
    line.kind = Kind::kSection;
    if (!content.ends_with(']')) return "a section without its closing bracket";
    const std::string_view token = Trim(content.substr(1, content.size() - 2));
    return ReadToken(token, line.name) ? nullptr : "a section's quotes are not well formed";
  }
  line.kind = Kind::kEntry;
  std::string_view value;
  const char* const reason = ReadEntry(content, line.name, value);
  if (reason != nullptr) return reason;
  return ReadToken(value, line.value) ? nullptr : "a value's quotes or escapes are not well formed";
}

std::optional<SettingsText> SettingsText::Parse(std::string_view text, SettingsDamage& damage) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  SettingsText result;
  Names sections;
  Names entries;
  for (damage = {1, nullptr}; !text.empty(); ++damage.line) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view raw = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (raw.ends_with('\r')) raw.remove_suffix(1);
    Line line;
    damage.reason = ParseLine(raw, line);
    if (line.kind == Kind::kSection && damage.reason == nullptr) {
      entries.clear();
      if (!sections.insert(line.name).second) damage.reason = "a section given twice";
    }
    if (line.kind == Kind::kEntry && damage.reason == nullptr) {
      if (sections.empty()) damage.reason = "an entry before any section";
      if (!entries.insert(line.name).second) damage.reason = "a name given twice";
    }
    if (damage.reason != nullptr) return std::nullopt;
    result.lines_.push_back(std::move(line));
  }
  return result;
}

std::size_t SettingsText::FindSection(std::string_view section) const {
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const bool isSection = lines_[i].kind == Kind::kSection;
    if (isSection && text::EqualsCaseless(lines_[i].name, section)) return i;
  }
  return kNone;
}

std::size_t SettingsText::FindEntry(std::size_t sectionLine, std::string_view name) const {
  for (std::size_t i = sectionLine + 1; i < lines_.size(); ++i) {
    if (lines_[i].kind == Kind::kSection) return kNone;
    const bool isEntry = lines_[i].kind == Kind::kEntry;
    if (isEntry && text::EqualsCaseless(lines_[i].name, name)) return i;
  }
  return kNone;
}

// Behind the last line of the section that is not blank.
std::size_t SettingsText::InsertionPoint(std::size_t sectionLine) const {
  std::size_t point = sectionLine + 1;
  for (std::size_t i = sectionLine + 1; i < lines_.size(); ++i) {
    if (lines_[i].kind == Kind::kSection) break;
    if (!Trim(lines_[i].raw).empty()) point = i + 1;
  }
  return point;
}

std::optional<std::string> SettingsText::Find(std::string_view section,
                                              std::string_view name) const {
  const std::size_t sectionLine = FindSection(section);
  if (sectionLine == kNone) return std::nullopt;
  const std::size_t entry = FindEntry(sectionLine, name);
  if (entry == kNone) return std::nullopt;
  return lines_[entry].value;
}

void SettingsText::Set(std::string_view section, std::string_view name, std::string_view value) {
  std::size_t sectionLine = FindSection(section);
  if (sectionLine == kNone) {
    if (!lines_.empty()) lines_.push_back({});
    sectionLine = lines_.size();
    lines_.push_back({Kind::kSection, SectionLine(section), std::string(section), {}});
  }
  const std::size_t entry = FindEntry(sectionLine, name);
  if (entry != kNone) {
    Line& line = lines_[entry];
    line.raw = EntryLine(line.name, value);  // the name stays as it was spelled
    line.value = value;
    return;
  }
  Line line{Kind::kEntry, EntryLine(name, value), std::string(name), std::string(value)};
  lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(InsertionPoint(sectionLine)),
                std::move(line));
}

std::string SettingsText::Text() const {
  std::string text;
  for (const Line& line : lines_) text.append(line.raw).append("\n");
  return text;
}

}  // namespace kx::settings
