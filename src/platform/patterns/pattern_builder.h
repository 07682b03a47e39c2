// Puts the compiled form of a pattern together while the parser reads it: lists, paths and filters
// from their parts, and what is known of an expression from what is known of those.
//
// Parts of what is being read stand aside, one list above the other, as what they hold may have
// parts of its own. Whoever begins a list remembers where.
#pragma once

#include "platform/patterns/pattern_code.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kx::patterns {

class PatternBuilder {
 public:
  /// `code` outlives this.
  explicit PatternBuilder(Code& code) noexcept : code_(code) {}

  [[nodiscard]] const Expr& At(ExprId id) const { return code_.exprs[id]; }

  // Values and conditions

  ExprId AddNumber(double number);
  /// The number of a literal.
  std::uint32_t AddLiteralText(TextRange content);
  ExprId AddLiteral(TextRange content);
  ExprId AddNot(ExprId inner);
  /// A comparison whose operands and operator are set.
  ExprId AddComparison(Expr expr);
  /// A method whose kind of answer, nodes and argument are set.
  ExprId AddInfo(Expr expr);

  /// Members of "and", "or" and unions.
  [[nodiscard]] std::size_t BeginMembers() const noexcept { return membersAside_.size(); }
  void AddMember(ExprId member) { membersAside_.push_back(member); }
  ExprId FinishMembers(ExprKind kind, std::size_t begin);

  // Paths

  void SetName(NodeTest& test, NameRule rule, TextRange name);
  void SetNamespace(NodeTest& test, std::string uri);

  [[nodiscard]] std::size_t BeginFilters() const noexcept { return filtersAside_.size(); }
  void AddFilter(const Filter& filter) { filtersAside_.push_back(filter); }
  void FinishFilters(Step& step, std::size_t begin);

  [[nodiscard]] std::size_t BeginSteps() const noexcept { return stepsAside_.size(); }
  void AddStep(const Step& step) { stepsAside_.push_back(step); }
  ExprId FinishPath(bool absolute, std::size_t begin);
  /// True for ".": asking a method of it is asking it of the context node.
  [[nodiscard]] bool IsContextNode(ExprId id) const;

 private:
  ExprId AddExpr(const Expr& expr);
  void DropLeadingContext(bool absolute, std::size_t begin);
  void SetDirection(Expr& path, std::size_t begin) const;
  [[nodiscard]] bool BeginsAnywhere(const Step& step) const;

  Code& code_;
  std::vector<Step> stepsAside_;
  std::vector<Filter> filtersAside_;
  std::vector<ExprId> membersAside_;
};

}  // namespace kx::patterns
