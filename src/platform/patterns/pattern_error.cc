// See pattern_error.h.
#include "platform/patterns/pattern_error.h"

#include "platform/dom/dom_error.h"
#include "platform/runtime/error.h"

namespace kx::patterns {

namespace {

std::string_view SentenceOf(PatternFault fault) {
  switch (fault) {
    case PatternFault::kUnknownMethod:
      return "Unknown method.";
    case PatternFault::kUnexpectedCharacter:
      return "Unexpected character in query string.";
    case PatternFault::kUnterminatedLiteral:
      return "Unterminated string constant.";
    case PatternFault::kNotANodeSet:
      return "Query must evaluate to a node-set.";
    case PatternFault::kTooDeep:
      break;
  }
  return "The query is nested too deeply.";
}

[[noreturn]] void Raise(std::string text, std::string_view pattern, TextRange where) {
  text += "\r\n\r\n";
  text += pattern.substr(0, where.begin);
  text += "-->";
  text += pattern.substr(where.begin, where.length);
  text += "<--";
  text += pattern.substr(where.begin + where.length);
  throw DomError(dom::kStatusFail, std::string(dom::kDomErrorSource), text);
}

}  // namespace

void RaisePatternError(PatternFault fault, std::string_view pattern, TextRange where) {
  Raise(std::string(SentenceOf(fault)), pattern, where);
}

void RaiseUnexpectedToken(std::string_view expected, std::string_view found,
                          std::string_view pattern, TextRange where) {
  std::string text = "Expected token '";
  text += expected;
  text += "' found '";
  text += found;
  text += "'.";
  Raise(std::move(text), pattern, where);
}

}  // namespace kx::patterns
