// See pattern_lexer.h.
#include "platform/patterns/pattern_lexer.h"

#include "platform/dom/xml_names.h"
#include "platform/text/number_text.h"
#include "platform/text/unicode.h"

#include <limits>

namespace kx::patterns {

namespace {

constexpr bool IsBlank(char c) { return text::IsXmlSpace(static_cast<unsigned char>(c)); }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsQuote(char c) { return c == '\'' || c == '"'; }
constexpr bool Separates(char c) {
  return IsBlank(c) || IsQuote(c) || c == '[' || c == ']' || c == '(' || c == ')';
}

struct Keyword {
  std::string_view text;
  TokenKind kind;
  Comparison comparison = Comparison::kEqual;
  CaseRule caseRule = CaseRule::kExact;
};

constexpr Keyword kKeywords[] = {
    {"$and$", TokenKind::kAnd},
    {"$or$", TokenKind::kOr},
    {"$not$", TokenKind::kNot},
    {"$any$", TokenKind::kAny},
    {"$all$", TokenKind::kAll},
    {"$eq$", TokenKind::kCompare, Comparison::kEqual},
    {"$ne$", TokenKind::kCompare, Comparison::kNotEqual},
    {"$lt$", TokenKind::kCompare, Comparison::kLess},
    {"$le$", TokenKind::kCompare, Comparison::kLessOrEqual},
    {"$gt$", TokenKind::kCompare, Comparison::kGreater},
    {"$ge$", TokenKind::kCompare, Comparison::kGreaterOrEqual},
    {"$ieq$", TokenKind::kCompare, Comparison::kEqual, CaseRule::kIgnored},
    {"$ine$", TokenKind::kCompare, Comparison::kNotEqual, CaseRule::kIgnored},
    {"$ilt$", TokenKind::kCompare, Comparison::kLess, CaseRule::kIgnored},
    {"$ile$", TokenKind::kCompare, Comparison::kLessOrEqual, CaseRule::kIgnored},
    {"$igt$", TokenKind::kCompare, Comparison::kGreater, CaseRule::kIgnored},
    {"$ige$", TokenKind::kCompare, Comparison::kGreaterOrEqual, CaseRule::kIgnored},
};

}  // namespace

void PatternLexer::SkipBlanks() noexcept {
  while (at_ < text_.size() && IsBlank(text_[at_])) ++at_;
}

bool PatternLexer::StandsAlone(TextRange range) const noexcept {
  const std::size_t end = range.begin + range.length;
  return (range.begin == 0 || Separates(text_[range.begin - 1])) &&
         (end == text_.size() || Separates(text_[end]));
}

void PatternLexer::RaiseUnexpected(std::size_t length) const {
  RaisePatternError(PatternFault::kUnexpectedCharacter, text_, {at_, length});
}

Token PatternLexer::Next() {
  SkipBlanks();
  if (at_ == text_.size()) return Take(TokenKind::kEnd, 0);
  const char c = text_[at_];
  if (IsQuote(c)) return TakeLiteral();
  if (IsDigit(c) || (c == '-' && IsDigit(Peek(1)))) return TakeNumber();
  if (c == '$') return TakeKeyword();
  if (NameEnd(at_) != at_) return TakeName();
  return TakePunctuation();
}

Token PatternLexer::Take(TokenKind kind, std::size_t length) noexcept {
  Token token;
  token.kind = kind;
  token.where = {at_, length};
  at_ += length;
  return token;
}

Token PatternLexer::TakeComparison(Comparison comparison, std::size_t length) noexcept {
  Token token = Take(TokenKind::kCompare, length);
  token.comparison = comparison;
  return token;
}

Token PatternLexer::TakePunctuation() {
  const char next = Peek(1);
  switch (text_[at_]) {
    case '/':
      return next == '/' ? Take(TokenKind::kSlashSlash, 2) : Take(TokenKind::kSlash, 1);
    case '.':
      return next == '.' ? Take(TokenKind::kDotDot, 2) : Take(TokenKind::kDot, 1);
    case '*':
      return Take(TokenKind::kStar, 1);
    case '@':
      return Take(TokenKind::kAt, 1);
    case '(':
      return Take(TokenKind::kOpen, 1);
    case ')':
      return Take(TokenKind::kClose, 1);
    case '[':
      return Take(TokenKind::kOpenBracket, 1);
    case ']':
      return Take(TokenKind::kCloseBracket, 1);
    case ',':
      return Take(TokenKind::kComma, 1);
    case ':':
      return Take(TokenKind::kColon, 1);
    case '|':
      return next == '|' ? Take(TokenKind::kOr, 2) : Take(TokenKind::kBar, 1);
    case '&':
      if (next == '&') return Take(TokenKind::kAnd, 2);
      break;
    case '!':
      return next == '=' ? TakeComparison(Comparison::kNotEqual, 2) : Take(TokenKind::kBang, 1);
    case '=':
      return TakeComparison(Comparison::kEqual, 1);
    case '<':
      return next == '=' ? TakeComparison(Comparison::kLessOrEqual, 2)
                         : TakeComparison(Comparison::kLess, 1);
    case '>':
      return next == '=' ? TakeComparison(Comparison::kGreaterOrEqual, 2)
                         : TakeComparison(Comparison::kGreater, 1);
    default:
      break;
  }
  RaiseUnexpected(text::DecodeUtf8(text_, at_).length);
}

Token PatternLexer::TakeLiteral() {
  const std::size_t end = text_.find(text_[at_], at_ + 1);
  if (end == std::string_view::npos) {
    RaisePatternError(PatternFault::kUnterminatedLiteral, text_, {at_, text_.size() - at_});
  }
  const TextRange content{at_ + 1, end - at_ - 1};
  Token token = Take(TokenKind::kLiteral, content.length + 2);
  token.content = content;
  return token;
}

Token PatternLexer::TakeNumber() {
  std::size_t end = at_ + (text_[at_] == '-' ? 1 : 0);
  const std::size_t digits = end;
  while (end < text_.size() && IsDigit(text_[end])) ++end;
  bool isInteger = true;
  if (end + 1 < text_.size() && text_[end] == '.' && IsDigit(text_[end + 1])) {
    isInteger = false;
    ++end;
    while (end < text_.size() && IsDigit(text_[end])) ++end;
  }
  const double magnitude = text::ReadDecimal(text_.substr(digits, end - digits), 0).value;
  const bool negative = digits != at_;
  Token token = Take(TokenKind::kNumber, end - at_);
  token.number = negative ? -magnitude : magnitude;
  token.isInteger = isInteger;
  return token;
}

// Where the name without colon that begins at `begin` ends; `begin` itself when none does.
std::size_t PatternLexer::NameEnd(std::size_t begin) const noexcept {
  std::size_t end = begin;
  while (end < text_.size()) {
    const char c = text_[end];
    if (c == ':') break;
    const text::Utf8Char next = text::DecodeUtf8(text_, end);
    if (!next.valid) break;
    const bool belongs = end == begin ? dom::IsNameStartCodePoint(next.codePoint)
                                      : dom::IsNameCodePoint(next.codePoint);
    if (!belongs) break;
    end += next.length;
  }
  return end;
}

Token PatternLexer::TakeName() {
  std::size_t end = NameEnd(at_);
  std::size_t prefixLength = 0;
  bool anyLocalName = false;
  if (end + 1 < text_.size() && text_[end] == ':') {
    const std::size_t local = end + 1;
    const std::size_t localEnd = text_[local] == '*' ? local + 1 : NameEnd(local);
    if (localEnd != local) {
      prefixLength = end - at_;
      anyLocalName = text_[local] == '*';
      end = localEnd;
    }
  }
  Token token = Take(TokenKind::kName, end - at_);
  token.prefixLength = prefixLength;
  token.anyLocalName = anyLocalName;
  SkipBlanks();
  token.isCall = Peek() == '(';
  return token;
}

Token PatternLexer::TakeKeyword() {
  for (const Keyword& keyword : kKeywords) {
    if (text_.substr(at_, keyword.text.size()) != keyword.text) continue;
    Token token = Take(keyword.kind, keyword.text.size());
    token.comparison = keyword.comparison;
    token.caseRule = keyword.caseRule;
    return token;
  }
  const std::size_t close = text_.find('$', at_ + 1);
  const std::size_t wordEnd = NameEnd(at_ + 1);
  RaiseUnexpected(close == wordEnd && close != std::string_view::npos ? close + 1 - at_ : 1);
}

}  // namespace kx::patterns
