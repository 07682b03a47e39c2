// A pattern's text as tokens, one at a time. Blanks separate tokens and mean nothing else; none
// stands inside a name, a number or a $...$ keyword. The longest token wins.
#pragma once

#include "platform/patterns/pattern_code.h"
#include "platform/patterns/pattern_error.h"

#include <cstddef>
#include <string_view>

namespace kx::patterns {

enum class TokenKind : unsigned char {
  kEnd,
  kName,     ///< name, p:name, p:*
  kLiteral,  ///< in either kind of quotes
  kNumber,
  kSlash,
  kSlashSlash,
  kDot,
  kDotDot,
  kStar,
  kAt,
  kOpen,
  kClose,
  kOpenBracket,
  kCloseBracket,
  kComma,
  kColon,
  kBar,
  kBang,
  kCompare,
  kAnd,  ///< $and$ and &&; the bare word is a name
  kOr,   ///< $or$ and ||; the bare word is a name
  kNot,  ///< $not$
  kAny,  ///< $any$
  kAll,  ///< $all$
};

struct Token {
  TokenKind kind = TokenKind::kEnd;
  TextRange where;    ///< the whole token, quotes included
  TextRange content;  ///< of a literal: without its quotes
  // Of a name:
  std::size_t prefixLength = 0;  ///< bytes before the colon; 0 without one
  bool anyLocalName = false;     ///< p:*
  bool isCall = false;           ///< an opening parenthesis comes next
  // Of a number:
  double number = 0;
  bool isInteger = false;
  // Of a comparison:
  Comparison comparison = Comparison::kEqual;
  CaseRule caseRule = CaseRule::kExact;
};

class PatternLexer {
 public:
  /// `text` outlives the lexer.
  explicit PatternLexer(std::string_view text) noexcept : text_(text) {}

  /// The next token; kEnd at the end, again and again.
  /// Raises: E_FAIL for what begins no token and for a literal without its closing quote.
  Token Next();

  [[nodiscard]] std::string_view Text() const noexcept { return text_; }
  [[nodiscard]] std::string_view TextOf(TextRange range) const noexcept {
    return text_.substr(range.begin, range.length);
  }
  /// True when a blank, quote, bracket, parenthesis or an end of the text stands on both sides:
  /// what makes the words "and" and "or" operators.
  [[nodiscard]] bool StandsAlone(TextRange range) const noexcept;

 private:
  [[nodiscard]] char Peek(std::size_t ahead = 0) const noexcept {
    return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
  }
  void SkipBlanks() noexcept;
  [[nodiscard]] std::size_t NameEnd(std::size_t begin) const noexcept;
  Token Take(TokenKind kind, std::size_t length) noexcept;
  Token TakeComparison(Comparison comparison, std::size_t length) noexcept;
  Token TakePunctuation();
  Token TakeLiteral();
  Token TakeNumber();
  Token TakeName();
  Token TakeKeyword();
  [[noreturn]] void RaiseUnexpected(std::size_t length) const;

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace kx::patterns
