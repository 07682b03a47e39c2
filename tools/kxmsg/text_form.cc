// See text_form.h.
#include "kxmsg/text_form.h"

#include <algorithm>

namespace kxmsg {

namespace {

struct Character {
  char32_t code = 0;
  std::size_t length = 0;  // 0: ill formed
};

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

// The character at `at`. Overlong forms, surrogates and what lies beyond U+10FFFF are ill formed.
Character CharacterAt(std::string_view text, std::size_t at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  if (lead < 0x80U) return {lead, 1};
  std::size_t length = 0;
  if (lead >= 0xC2U && lead <= 0xDFU) length = 2;
  if (lead >= 0xE0U && lead <= 0xEFU) length = 3;
  if (lead >= 0xF0U && lead <= 0xF4U) length = 4;
  if (length == 0 || text.size() - at < length) return {};
  char32_t code = lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if (!IsContinuation(text[at + i])) return {};
    code = (code << 6U) | (static_cast<unsigned char>(text[at + i]) & 0x3FU);
  }
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool wellFormed =
      code >= kLeast[length] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
  return wellFormed ? Character{code, length} : Character{};
}

bool SteersATerminal(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x200E || c == 0x200F ||
         (c >= 0x2028 && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069) || c == 0xFEFF;
}

std::string Hex(std::uint32_t number, std::size_t digits) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (; number != 0 || text.size() < digits; number >>= 4U) text += kDigits[number & 0xFU];
  std::reverse(text.begin(), text.end());
  return text;
}

void AppendEscape(std::string& out, char32_t c) {
  if (c == '\n') {
    out += "\\n";
  } else if (c == '\r') {
    out += "\\r";
  } else if (c == '\t') {
    out += "\\t";
  } else if (c < 0x80) {
    out += "\\x" + Hex(c, 2);
  } else {
    out += "\\u{" + Hex(c, 1) + "}";
  }
}

enum class Escape : unsigned char { kControls, kControlsButLines, kControlsAndQuotes };

bool NeedsEscape(char32_t c, Escape escape) {
  if (escape == Escape::kControlsButLines && (c == '\n' || c == '\t')) return false;
  return SteersATerminal(c);
}

std::string Escaped(std::string_view text, Escape escape) {
  std::string out;
  for (std::size_t at = 0; at < text.size();) {
    const Character c = CharacterAt(text, at);
    if (c.length == 0) {
      out += "\\x" + Hex(static_cast<unsigned char>(text[at]), 2);
      ++at;
      continue;
    }
    const bool isMark = c.code == '"' || c.code == '\\';
    if (isMark && escape == Escape::kControlsAndQuotes) out += '\\';
    if (NeedsEscape(c.code, escape)) {
      AppendEscape(out, c.code);
    } else {
      out += text.substr(at, c.length);
    }
    at += c.length;
  }
  return out;
}

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

}  // namespace

std::size_t Utf8Length(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    const Character c = CharacterAt(text, at);
    if (c.length == 0) break;
    at += c.length;
  }
  return at;
}

bool IsUtf8(std::string_view text) { return Utf8Length(text) == text.size(); }

std::size_t CharacterCount(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return !IsContinuation(c); }));
}

std::string Printable(std::string_view text) { return Escaped(text, Escape::kControls); }

std::string PrintableLines(std::string_view text) {
  return Escaped(text, Escape::kControlsButLines);
}

std::string Quoted(std::string_view text) {
  return '"' + Escaped(text, Escape::kControlsAndQuotes) + '"';
}

std::string Shortened(std::string_view text, std::size_t most) {
  std::size_t at = 0;
  for (std::size_t count = 0; at < text.size() && count < most; ++count) {
    ++at;
    while (at < text.size() && IsContinuation(text[at])) ++at;
  }
  std::string cut(text.substr(0, at));
  if (at < text.size()) cut += "...";
  return cut;
}

std::string OneLine(std::string_view text) {
  std::string line;
  for (const char c : text) {
    if (!IsBlank(c)) {
      line += c;
    } else if (!line.empty() && line.back() != ' ') {
      line += ' ';
    }
  }
  if (!line.empty() && line.back() == ' ') line.pop_back();
  return line;
}

std::string CodePointName(std::string_view text, std::size_t at) {
  while (at > 0 && IsContinuation(text[at])) --at;
  const Character c = CharacterAt(text, at);
  const int digits = c.code > 0xFFFFF ? 6 : (c.code > 0xFFFF ? 5 : 4);
  return "U+" + Hex(c.code, digits);
}

std::string JsonText(std::string_view text) {
  std::string out = "\"";
  for (std::size_t at = 0; at < text.size();) {
    const Character c = CharacterAt(text, at);
    if (c.length == 0) {
      out += "\xEF\xBF\xBD";
      ++at;
      continue;
    }
    if (c.code == '"' || c.code == '\\') {
      out += '\\';
      out += text[at];
    } else if (c.code < 0x20 || c.code == 0x7F) {
      out += "\\u" + Hex(c.code, 4);
    } else {
      out += text.substr(at, c.length);
    }
    at += c.length;
  }
  return out + '"';
}

std::string HexNumber(std::int32_t number) {
  return "0x" + Hex(static_cast<std::uint32_t>(number), 8);
}

std::string WithUtf8Declaration(std::string text, std::string_view encoding) {
  const std::string start = "<?xml version=\"1.0\" encoding=\"";
  if (text.compare(0, start.size(), start) == 0 &&
      text.compare(start.size(), encoding.size(), encoding) == 0) {
    text.replace(start.size(), encoding.size(), "UTF-8");
  }
  return text;
}

bool SameName(std::string_view a, std::string_view b) {
  const auto lower = [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [lower](char x, char y) { return lower(x) == lower(y); });
}

}  // namespace kxmsg
