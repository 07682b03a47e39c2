// See script.h.
//
// Words end at blanks. A word in "..." has escapes, one in '...' has none. A pattern that is not
// quoted is read with its brackets, so that blanks and quotation marks in them are its own.
#include "kxmsg/script.h"

#include "kxmsg/text_form.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace kxmsg {

namespace {

constexpr std::int32_t kBadScript = static_cast<std::int32_t>(0x800A0005);
constexpr std::size_t kMostQuoted = 60;  // characters of a word in a message
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string Named(std::string_view word) { return Quoted(Shortened(word, kMostQuoted)); }

// What is wrong with a line, and at which byte.
struct LineFault {
  std::size_t at = 0;
  std::string text;
};

// ---- Words -------------------------------------------------------------------------------------

enum class WordKind : unsigned char { kPlain, kPattern };

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

void AppendUtf8(std::string& text, char32_t c) {
  const auto byte = [&text](char32_t bits) { text += static_cast<char>(bits); };
  const auto tail = [&byte, c](unsigned shift) { byte(0x80U | ((c >> shift) & 0x3FU)); };
  if (c < 0x80) {
    byte(c);
  } else if (c < 0x800) {
    byte(0xC0U | (c >> 6U));
    tail(0);
  } else if (c < 0x10000) {
    byte(0xE0U | (c >> 12U));
    tail(6);
    tail(0);
  } else {
    byte(0xF0U | (c >> 18U));
    tail(12);
    tail(6);
    tail(0);
  }
}

// Cuts a line, which is UTF-8 without NUL, into words.
class LineCutter {
 public:
  explicit LineCutter(std::string_view line) : line_(line) {}

  // False at the end of the line, or of what is no comment.
  [[nodiscard]] bool HasMore() {
    while (at_ < line_.size() && IsBlank(line_[at_])) ++at_;
    return at_ < line_.size() && line_[at_] != '#';
  }

  // The next word, where HasMore says that there is one.
  [[nodiscard]] Word Next(WordKind kind) {
    const std::size_t start = at_;
    std::string text;
    if (line_[at_] == '"') {
      text = Escaped();
    } else if (line_[at_] == '\'') {
      const std::size_t end = EndOfQuotation();
      text = line_.substr(at_ + 1, end - at_ - 1);
      at_ = end + 1;
    } else {
      text = kind == WordKind::kPattern ? Pattern() : Plain();
      return {std::move(text), PositionOf(start)};
    }
    if (at_ < line_.size() && !IsBlank(line_[at_])) {
      throw LineFault{at_, "A blank belongs behind the quotation mark that closes a word."};
    }
    return {std::move(text), PositionOf(start)};
  }

  [[nodiscard]] std::size_t At() const noexcept { return at_; }
  [[nodiscard]] std::int32_t PositionOf(std::size_t at) {
    counted_ += CharacterCount(line_.substr(countedTo_, at - countedTo_));
    countedTo_ = at;
    return static_cast<std::int32_t>(counted_ + 1);
  }

 private:
  [[nodiscard]] std::size_t EndOfQuotation() const {
    const std::size_t end = line_.find(line_[at_], at_ + 1);
    if (end == std::string_view::npos) {
      throw LineFault{at_, "A quotation mark without its counterpart."};
    }
    return end;
  }

  std::string Plain() {
    const std::size_t start = at_;
    while (at_ < line_.size() && !IsBlank(line_[at_])) ++at_;
    return std::string(line_.substr(start, at_ - start));
  }

  std::string Pattern() {
    const std::size_t start = at_;
    std::size_t depth = 0;
    std::size_t outermost = 0;
    for (; at_ < line_.size(); ++at_) {
      const char c = line_[at_];
      if (depth == 0 && IsBlank(c)) break;
      if (c == '[' || c == '(') {
        if (depth == 0) outermost = at_;
        ++depth;
      } else if ((c == ']' || c == ')') && depth > 0) {
        --depth;
      } else if ((c == '"' || c == '\'') && depth > 0) {
        at_ = EndOfQuotation();
      }
    }
    if (depth > 0) throw LineFault{outermost, "A bracket without its counterpart."};
    return std::string(line_.substr(start, at_ - start));
  }

  std::string Escaped() {
    const std::size_t start = at_;
    std::string text;
    for (++at_; at_ < line_.size() && line_[at_] != '"'; ++at_) {
      if (line_[at_] == '\\') {
        AppendEscape(text);
      } else {
        text += line_[at_];
      }
    }
    if (at_ == line_.size()) throw LineFault{start, "A quotation mark without its counterpart."};
    ++at_;
    return text;
  }

  // Stands on the backslash, and then on the last character of the escape.
  void AppendEscape(std::string& text) {
    const std::size_t start = at_++;
    const char c = at_ < line_.size() ? line_[at_] : '\0';
    constexpr std::string_view kEscapes = "\"'\\ntr";
    constexpr std::string_view kMeanings = "\"'\\\n\t\r";
    const std::size_t found = kEscapes.find(c);
    if (found != std::string_view::npos) {
      text += kMeanings[found];
    } else if (c == 'x') {
      AppendCode(text, start, ReadHex(2, 2), 0x7F);
    } else if (c == 'u' && at_ + 1 < line_.size() && line_[at_ + 1] == '{') {
      ++at_;
      const std::optional<char32_t> code = ReadHex(1, 6);
      const bool isClosed = at_ + 1 < line_.size() && line_[at_ + 1] == '}';
      ++at_;
      AppendCode(text, start, isClosed ? code : std::nullopt, 0x10FFFF);
    } else {
      RefuseEscape(start);
    }
  }

  // The digits behind the place where this stands; then stands on the last one.
  std::optional<char32_t> ReadHex(std::size_t least, std::size_t most) {
    char32_t code = 0;
    std::size_t count = 0;
    while (count < most && at_ + 1 < line_.size() && HexDigit(line_[at_ + 1]) >= 0) {
      code = code * 16 + static_cast<char32_t>(HexDigit(line_[++at_]));
      ++count;
    }
    return count < least ? std::nullopt : std::optional(code);
  }

  static void AppendCode(std::string& text, std::size_t start, std::optional<char32_t> code,
                         char32_t greatest) {
    const bool isCharacter =
        code && *code != 0 && *code <= greatest && (*code < 0xD800 || *code > 0xDFFF);
    if (!isCharacter) RefuseEscape(start);
    AppendUtf8(text, *code);
  }

  [[noreturn]] static void RefuseEscape(std::size_t start) {
    throw LineFault{
        start, "No escape: \\\" \\' \\\\ \\n \\t \\r \\x1F and \\u{20AC} are; '...' needs none."};
  }

  std::string_view line_;
  std::size_t at_ = 0;
  std::size_t countedTo_ = 0;  // of the line, for positions, which only grow
  std::size_t counted_ = 0;
};

// ---- Commands ----------------------------------------------------------------------------------

struct VerbForm {
  std::string_view name;
  Verb verb;
  std::size_t least;  // words behind it
  std::size_t most;
  std::string_view words;
};

constexpr VerbForm kVerbs[] = {
    {"add", Verb::kAdd, 1, 3, "PATTERN [NAME [VALUE]]"}, {"set", Verb::kSet, 2, 2, "PATTERN VALUE"},
    {"attr", Verb::kAttr, 2, 3, "PATTERN NAME [VALUE]"}, {"remove", Verb::kRemove, 1, 1, "PATTERN"},
    {"group", Verb::kGroup, 2, 2, "PATTERN NUMBER"},
};

const VerbForm& FormOf(const Word& word, std::size_t at) {
  for (const VerbForm& form : kVerbs) {
    if (form.name == word.text) return form;
  }
  throw LineFault{at, "There is no command " + Named(word.text) +
                          "; there are add, set, attr, remove and group."};
}

// Names reach the library's queries as they stand, so that only what can be one is let through.
bool IsName(std::string_view text) {
  if (text.empty()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const bool starts = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
                        static_cast<unsigned char>(c) >= 0x80U;
    const bool follows = (c >= '0' && c <= '9') || c == '-' || c == '.' || c == ':';
    if (!starts && (i == 0 || !follows)) return false;
  }
  return true;
}

std::int16_t GroupNumberOf(const Word& word, std::size_t at) {
  std::int16_t number = 0;
  const char* const end = word.text.data() + word.text.size();
  const auto result = std::from_chars(word.text.data(), end, number);
  if (result.ec != std::errc() || result.ptr != end || number < 1) {
    throw LineFault{at, Named(word.text) + " is no number of a group."};
  }
  return number;
}

Step ReadStep(LineCutter& cutter) {
  const std::size_t verbAt = cutter.At();
  const VerbForm& form = FormOf(cutter.Next(WordKind::kPlain), verbAt);
  Step step;
  step.verb = form.verb;
  for (std::size_t count = 0;; ++count) {
    const bool hasMore = cutter.HasMore();
    if (hasMore ? count == form.most : count < form.least) {
      throw LineFault{hasMore ? cutter.At() : verbAt,
                      "The words of a command are: " + std::string(form.name) + ' ' +
                          std::string(form.words) + ". Quote what has blanks in it."};
    }
    if (!hasMore) return step;
    const std::size_t at = cutter.At();
    Word word = cutter.Next(count == 0 ? WordKind::kPattern : WordKind::kPlain);
    if (count == 0) {
      step.pattern = std::move(word);
    } else if (step.verb == Verb::kGroup) {
      step.groupNumber = GroupNumberOf(word, at);
      step.group = std::move(word);
    } else if (step.verb == Verb::kSet || count == 2) {
      step.value = std::move(word);
    } else if (IsName(word.text)) {
      step.name = std::move(word);
    } else {
      throw LineFault{at, Named(word.text) + " is no name."};
    }
  }
}

void CheckCharacters(std::string_view line) {
  if (line.size() > kMostLineBytes) {
    throw LineFault{0, "Longer than " + std::to_string(kMostLineBytes) + " bytes."};
  }
  const std::size_t nul = line.find('\0');
  if (nul != std::string_view::npos) throw LineFault{nul, "A NUL; scripts are UTF-8."};
  const std::size_t good = Utf8Length(line);
  if (good < line.size()) throw LineFault{good, "Not UTF-8."};
}

std::optional<Step> ReadLine(std::string_view line) {
  CheckCharacters(line);
  LineCutter cutter(line);
  if (!cutter.HasMore()) return std::nullopt;
  return ReadStep(cutter);
}

}  // namespace

ScriptReader::ScriptReader(std::string_view text, std::string name)
    : rest_(text), name_(std::move(name)) {
  if (rest_.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
    rest_.remove_prefix(kByteOrderMark.size());
  }
}

std::optional<Step> ScriptReader::Next() {
  while (!rest_.empty()) {
    const std::size_t end = rest_.find('\n');
    std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
    ++line_;
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    try {
      if (std::optional<Step> step = ReadLine(line)) {
        step->line = line_;
        return step;
      }
    } catch (const LineFault& fault) {
      Failure failure;
      failure.number = kBadScript;
      failure.text = fault.text;
      failure.line = line_;
      const std::size_t at = std::min(Utf8Length(line), fault.at);
      failure.position = static_cast<std::int32_t>(CharacterCount(line.substr(0, at)) + 1);
      throw ScriptFailure{name_, std::move(failure)};
    }
  }
  return std::nullopt;
}

}  // namespace kxmsg
