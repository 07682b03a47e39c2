// A compiled XSL Pattern. Compile once, ask as often as wanted, of any document.
//
// What lives here: the handle and its making. What lives elsewhere: asking a pattern (select.h),
// keeping compiled patterns by their text (pattern_cache.h), the language itself
// (pattern_parser.h).
#pragma once

#include "platform/patterns/pattern_code.h"
#include "platform/runtime/counted.h"

#include <span>
#include <string_view>

namespace kx::patterns {

/// A prefix that a pattern may use for a namespace, whatever prefix a document uses for it.
struct NamespacePrefix {
  std::string_view prefix;
  std::string_view uri;
};

/// A compiled pattern, or nothing. Copies share it; it never changes and may be used by many
/// threads.
class Pattern {
 public:
  Pattern() noexcept = default;

  explicit operator bool() const noexcept { return static_cast<bool>(code_); }
  [[nodiscard]] std::string_view Text() const noexcept { return code_->text; }
  /// Whether it gives nodes or, as a condition, only a truth.
  [[nodiscard]] PatternResult Result() const noexcept { return code_->result; }
  /// For the evaluator.
  [[nodiscard]] const Code& GetCode() const noexcept { return *code_; }

 private:
  friend Pattern Compile(std::string_view text, std::span<const NamespacePrefix> prefixes);
  friend Pattern CompileCondition(std::string_view text, std::span<const NamespacePrefix> prefixes);
  explicit Pattern(runtime::Counted<const Code> code) noexcept : code_(std::move(code)) {}

  runtime::Counted<const Code> code_;
};

/// Compiles a pattern that gives nodes. A prefix that `prefixes` does not list stands for itself,
/// as written in the documents.
/// Raises: E_INVALIDARG for null; E_FAIL for what is no pattern or gives no nodes.
[[nodiscard]] Pattern Compile(std::string_view text,
                              std::span<const NamespacePrefix> prefixes = {});
/// The same for a pattern that may also be a condition, such as a bare comparison.
[[nodiscard]] Pattern CompileCondition(std::string_view text,
                                       std::span<const NamespacePrefix> prefixes = {});

}  // namespace kx::patterns
