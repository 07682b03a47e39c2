// See pattern.h.
#include "platform/patterns/pattern.h"

#include "platform/dom/dom_error.h"
#include "platform/patterns/pattern_parser.h"

namespace kx::patterns {

namespace {

runtime::Counted<Code> ParseNotNull(std::string_view text,
                                    std::span<const NamespacePrefix> prefixes) {
  if (text.data() == nullptr) dom::RaiseDomArgument();
  return ParsePattern(text, prefixes);
}

}  // namespace

Pattern Compile(std::string_view text, std::span<const NamespacePrefix> prefixes) {
  runtime::Counted<Code> code = ParseNotNull(text, prefixes);
  if (code->result != PatternResult::kNodes) {
    RaisePatternError(PatternFault::kNotANodeSet, text, {0, text.size()});
  }
  return Pattern(std::move(code));
}

Pattern CompileCondition(std::string_view text, std::span<const NamespacePrefix> prefixes) {
  return Pattern(ParseNotNull(text, prefixes));
}

}  // namespace kx::patterns
