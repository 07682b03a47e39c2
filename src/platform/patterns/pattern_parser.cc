// See pattern_parser.h.
#include "platform/patterns/pattern_parser.h"

#include "platform/patterns/filter_forms.h"
#include "platform/patterns/pattern_builder.h"
#include "platform/patterns/pattern_lexer.h"
#include "platform/patterns/pattern_methods.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace kx::patterns {

namespace {

std::string_view NameOf(TokenKind kind) {
  switch (kind) {
    case TokenKind::kEnd:
      return "eof";
    case TokenKind::kName:
      return "NAME";
    case TokenKind::kLiteral:
      return "STRING";
    case TokenKind::kNumber:
      return "NUMBER";
    case TokenKind::kOpen:
      return "(";
    case TokenKind::kClose:
      return ")";
    case TokenKind::kOpenBracket:
      return "[";
    case TokenKind::kCloseBracket:
      return "]";
    case TokenKind::kCompare:
      return "=";
    default:
      return {};  // never expected, and found ones are shown as written
  }
}

// What an operand is worth: a path or union gives nodes; a comparison, "not", "and" and "or" a
// truth; an information method a value.
enum class Worth : unsigned char { kNodes, kTruth, kValue };

struct Operand {
  ExprId expr = kNoExpr;
  Worth worth = Worth::kNodes;
  TextRange where;
};

class PatternParser {
 public:
  PatternParser(Code& code, std::span<const NamespacePrefix> prefixes)
      : code_(code), builder_(code), prefixes_(prefixes), lexer_(code.text) {
    Advance();
  }

  void ParseAll() {
    const Operand all = ParseOr();
    Require(TokenKind::kEnd);
    code_.root = all.expr;
    code_.result = all.worth == Worth::kNodes ? PatternResult::kNodes : PatternResult::kTruth;
  }

 private:
  // Tokens ---------------------------------------------------------------------------------------

  void Advance() {
    lastEnd_ = token_.where.begin + token_.where.length;
    token_ = lexer_.Next();
  }
  bool Accept(TokenKind kind) {
    if (token_.kind != kind) return false;
    Advance();
    return true;
  }
  void Require(TokenKind kind) {
    if (token_.kind != kind) RaiseExpected(NameOf(kind));
  }
  void Expect(TokenKind kind) {
    Require(kind);
    Advance();
  }
  [[noreturn]] void RaiseExpected(std::string_view expected) const {
    const std::string_view name = NameOf(token_.kind);
    const bool named = token_.kind == TokenKind::kEnd || token_.kind == TokenKind::kName ||
                       token_.kind == TokenKind::kLiteral || token_.kind == TokenKind::kNumber;
    RaiseUnexpectedToken(expected, named ? name : lexer_.TextOf(token_.where), lexer_.Text(),
                         token_.where);
  }
  [[noreturn]] void RaiseAt(PatternFault fault, TextRange where) const {
    RaisePatternError(fault, lexer_.Text(), where);
  }
  [[nodiscard]] TextRange Since(std::size_t begin) const { return {begin, lastEnd_ - begin}; }
  void RequireNodes(const Operand& operand) const {
    if (operand.worth != Worth::kNodes) RaiseAt(PatternFault::kNotANodeSet, operand.where);
  }

  // Conditions -----------------------------------------------------------------------------------

  Operand ParseOr() {
    if (++depth_ > kMostNesting) RaiseAt(PatternFault::kTooDeep, token_.where);
    const Operand result = ParseList(ExprKind::kOr);
    --depth_;
    return result;
  }

  Operand ParseMember(ExprKind list) {
    switch (list) {
      case ExprKind::kOr:
        return ParseList(ExprKind::kAnd);
      case ExprKind::kAnd:
        return ParseNot();
      default:
        return ParseComparison();
    }
  }

  bool AcceptListOperator(ExprKind list) {
    switch (list) {
      case ExprKind::kOr:
        return Accept(TokenKind::kOr) || AcceptWord("or");
      case ExprKind::kAnd:
        return Accept(TokenKind::kAnd) || AcceptWord("and");
      default:
        return Accept(TokenKind::kBar);
    }
  }

  bool AcceptWord(std::string_view word) {
    if (token_.kind != TokenKind::kName || lexer_.TextOf(token_.where) != word) return false;
    if (!lexer_.StandsAlone(token_.where)) return false;
    Advance();
    return true;
  }

  // Members of one kind side by side become one expression, however many there are.
  Operand ParseList(ExprKind kind) {
    const std::size_t begin = token_.where.begin;
    const Operand first = ParseMember(kind);
    if (!AcceptListOperator(kind)) return first;
    const std::size_t base = builder_.BeginMembers();
    AddMember(kind, first);
    do {
      AddMember(kind, ParseMember(kind));
    } while (AcceptListOperator(kind));
    const ExprId expr = builder_.FinishMembers(kind, base);
    return {expr, kind == ExprKind::kUnion ? Worth::kNodes : Worth::kTruth, Since(begin)};
  }

  void AddMember(ExprKind kind, const Operand& member) {
    if (kind == ExprKind::kUnion) RequireNodes(member);
    builder_.AddMember(member.expr);
  }

  Operand ParseNot() {
    const std::size_t begin = token_.where.begin;
    std::size_t negations = 0;
    while (Accept(TokenKind::kNot)) ++negations;
    Operand operand;
    if (token_.kind == TokenKind::kName && token_.isCall && lexer_.TextOf(token_.where) == "not") {
      Advance();
      Expect(TokenKind::kOpen);
      operand = ParseOr();
      Expect(TokenKind::kClose);
      ++negations;
    } else {
      operand = ParseList(ExprKind::kUnion);
    }
    if (negations == 0) return operand;
    // Two of them cancel out, but what is left is a truth.
    operand.expr = builder_.AddNot(operand.expr);
    if (negations % 2 == 0) operand.expr = builder_.AddNot(operand.expr);
    return {operand.expr, Worth::kTruth, Since(begin)};
  }

  Operand ParseComparison() {
    const std::size_t begin = token_.where.begin;
    Quantifier quantifier = Quantifier::kFirst;
    if (Accept(TokenKind::kAny)) {
      quantifier = Quantifier::kAny;
    } else if (Accept(TokenKind::kAll)) {
      quantifier = Quantifier::kAll;
    }
    const Operand left = ParsePath();
    if (token_.kind != TokenKind::kCompare) {
      if (quantifier != Quantifier::kFirst) Require(TokenKind::kCompare);
      return left;
    }
    if (left.worth == Worth::kTruth) RaiseAt(PatternFault::kNotANodeSet, left.where);
    Expr expr;
    expr.quantifier = quantifier;
    expr.comparison = token_.comparison;
    expr.caseRule = token_.caseRule;
    Advance();
    expr.left = left.expr;
    expr.right = ParseRightOperand();
    return {builder_.AddComparison(expr), Worth::kTruth, Since(begin)};
  }

  ExprId ParseRightOperand() {
    if (token_.kind == TokenKind::kLiteral) return TakeLiteral();
    if (token_.kind == TokenKind::kNumber) {
      const ExprId expr = builder_.AddNumber(token_.number);
      Advance();
      return expr;
    }
    const Operand right = ParsePath();
    if (right.worth == Worth::kTruth) RaiseAt(PatternFault::kNotANodeSet, right.where);
    return right.expr;
  }

  ExprId TakeLiteral() {
    const ExprId expr = builder_.AddLiteral(token_.content);
    Advance();
    return expr;
  }

  // Paths ----------------------------------------------------------------------------------------

  [[nodiscard]] bool AtStep() const {
    switch (token_.kind) {
      case TokenKind::kDot:
      case TokenKind::kDotDot:
      case TokenKind::kStar:
      case TokenKind::kAt:
      case TokenKind::kName:
      case TokenKind::kOpen:
        return true;
      default:
        return false;
    }
  }
  [[nodiscard]] bool AtSlash() const {
    return token_.kind == TokenKind::kSlash || token_.kind == TokenKind::kSlashSlash;
  }

  Operand ParsePath() {
    const std::size_t begin = token_.where.begin;
    const bool absolute = AtSlash();
    if (!absolute) {
      if (const std::optional<Operand> value = ParseValueOrGroup()) return *value;
    }
    const std::size_t base = builder_.BeginSteps();
    if (!absolute || token_.kind == TokenKind::kSlashSlash) {
      ParseStep(absolute ? TakeSlash() : Descent::kNo, absolute);
    } else {
      Advance();
      if (AtStep()) ParseStep(Descent::kNo, true);
    }
    while (AtSlash()) {
      RefuseBehindAttribute(base);
      ParseStep(TakeSlash(), true);
    }
    const ExprId expr = builder_.FinishPath(absolute, base);
    if (token_.kind == TokenKind::kBang) return ParseBang(expr, begin);
    return {expr, Worth::kNodes, Since(begin)};
  }

  enum class Descent : unsigned char { kNo, kYes };
  Descent TakeSlash() {
    const bool descends = token_.kind == TokenKind::kSlashSlash;
    Advance();
    return descends ? Descent::kYes : Descent::kNo;
  }

  // Nothing may follow an attribute's name in a path.
  void RefuseBehindAttribute(std::size_t base) const {
    if (builder_.BeginSteps() > base && attributeName_) RaiseExpected("eof");
  }

  // An information method, or a group that no filter or path makes a step of. The group is then
  // what stands in it.
  std::optional<Operand> ParseValueOrGroup() {
    if (token_.kind == TokenKind::kName && token_.isCall) {
      const InfoMethodEntry* entry = FindMethod(kInfoMethods, lexer_.TextOf(token_.where));
      if (entry == nullptr) return std::nullopt;
      const std::size_t begin = token_.where.begin;
      const ExprId expr = ParseInfo(*entry, kNoExpr);
      return Operand{expr, Worth::kValue, Since(begin)};
    }
    if (token_.kind != TokenKind::kOpen) return std::nullopt;
    const Operand inner = ParseGroup();
    if (!AtSlash() && token_.kind != TokenKind::kOpenBracket && token_.kind != TokenKind::kBang) {
      return inner;
    }
    RequireNodes(inner);
    openGroup_ = inner.expr;
    return std::nullopt;
  }

  Operand ParseGroup() {
    const std::size_t begin = token_.where.begin;
    Advance();
    const Operand inner = ParseOr();
    Expect(TokenKind::kClose);
    return {inner.expr, inner.worth, Since(begin)};
  }

  Operand ParseBang(ExprId path, std::size_t begin) {
    Advance();
    Require(TokenKind::kName);
    const InfoMethodEntry* entry = FindMethod(kInfoMethods, lexer_.TextOf(token_.where));
    if (entry == nullptr || !token_.isCall) RaiseAt(PatternFault::kUnknownMethod, token_.where);
    const ExprId expr = ParseInfo(*entry, builder_.IsContextNode(path) ? kNoExpr : path);
    return {expr, Worth::kValue, Since(begin)};
  }

  ExprId ParseInfo(const InfoMethodEntry& entry, ExprId target) {
    Advance();
    Expect(TokenKind::kOpen);
    Expr expr;
    expr.method = entry.method;
    expr.left = target;
    if (entry.argument != InfoArgument::kNone && token_.kind != TokenKind::kClose) {
      expr.right = ParseInfoArgument(entry.argument);
    }
    Expect(TokenKind::kClose);
    return builder_.AddInfo(expr);
  }

  ExprId ParseInfoArgument(InfoArgument argument) {
    if (argument == InfoArgument::kNodesOrLiteral && token_.kind == TokenKind::kLiteral) {
      return TakeLiteral();
    }
    const Operand nodes = ParseOr();
    RequireNodes(nodes);
    return nodes.expr;
  }

  // Steps ----------------------------------------------------------------------------------------

  // `inPath`: a slash stands before it.
  void ParseStep(Descent descent, bool inPath) {
    Step step;
    step.descend = descent == Descent::kYes;
    const bool isAttribute = token_.kind == TokenKind::kAt && openGroup_ == kNoExpr;
    ParseTerm(step, inPath);
    const std::size_t base = builder_.BeginFilters();
    while (Accept(TokenKind::kOpenBracket)) builder_.AddFilter(ParseFilter());
    builder_.FinishFilters(step, base);
    builder_.AddStep(step);
    attributeName_ = isAttribute;
  }

  void ParseTerm(Step& step, bool inPath) {
    if (openGroup_ != kNoExpr) {
      step.axis = Axis::kGroup;
      step.expr = std::exchange(openGroup_, kNoExpr);
      return;
    }
    switch (token_.kind) {
      case TokenKind::kDot:
        step.axis = Axis::kSelf;
        return Advance();
      case TokenKind::kDotDot:
        step.axis = Axis::kParent;
        return Advance();
      case TokenKind::kAt:
        Advance();
        step.axis = Axis::kAttribute;
        step.test.types = kAttributes;
        if (token_.kind == TokenKind::kName && token_.isCall) {
          RaiseAt(PatternFault::kUnknownMethod, token_.where);
        }
        return ParseNameTest(step.test);
      case TokenKind::kOpen: {
        const Operand inner = ParseGroup();
        RequireNodes(inner);
        step.axis = Axis::kGroup;
        step.expr = inner.expr;
        return;
      }
      default:
        if (token_.kind == TokenKind::kName && token_.isCall) return ParseCall(step, inPath);
        step.test.types = kElements;
        return ParseNameTest(step.test);
    }
  }

  void ParseNameTest(NodeTest& test) {
    if (Accept(TokenKind::kStar)) return;
    Require(TokenKind::kName);
    const TextRange where = token_.where;
    if (token_.prefixLength == 0) {
      builder_.SetName(test, NameRule::kWritten, where);
    } else {
      ParsePrefixedName(test);
    }
    Advance();
  }

  void ParsePrefixedName(NodeTest& test) {
    const TextRange where = token_.where;
    const TextRange prefix{where.begin, token_.prefixLength};
    const NamespacePrefix* known = FindPrefix(lexer_.TextOf(prefix));
    if (known == nullptr) {
      return token_.anyLocalName ? builder_.SetName(test, NameRule::kPrefix, prefix)
                                 : builder_.SetName(test, NameRule::kWritten, where);
    }
    builder_.SetNamespace(test, std::string(known->uri));
    if (token_.anyLocalName) return;
    const std::size_t skip = prefix.length + 1;
    builder_.SetName(test, NameRule::kNamespaceName, {where.begin + skip, where.length - skip});
  }

  [[nodiscard]] const NamespacePrefix* FindPrefix(std::string_view prefix) const {
    const auto found = std::find_if(prefixes_.begin(), prefixes_.end(),
                                    [prefix](const auto& entry) { return entry.prefix == prefix; });
    return found == prefixes_.end() ? nullptr : &*found;
  }

  void ParseCall(Step& step, bool inPath) {
    const std::string_view name = lexer_.TextOf(token_.where);
    if (const CollectionMethod* method = FindMethod(kCollectionMethods, name)) {
      return ParseCollectionCall(step, *method);
    }
    const bool isContextCall = name == "ancestor" || name == "context" || name == "id";
    if (!isContextCall || inPath) RaiseAt(PatternFault::kUnknownMethod, token_.where);
    Advance();
    Expect(TokenKind::kOpen);
    if (name == "ancestor") {
      step.axis = Axis::kAncestor;
      step.expr = ParseNodesArgument();
    } else if (name == "context") {
      ParseContextArgument(step);
    } else {
      ParseIdArgument(step);
    }
    Expect(TokenKind::kClose);
  }

  void ParseCollectionCall(Step& step, const CollectionMethod& method) {
    Advance();
    Expect(TokenKind::kOpen);
    step.axis = method.axis;
    step.test.types = method.types;
    if (method.argument == NameArgument::kAllowed && token_.kind != TokenKind::kClose) {
      Require(TokenKind::kLiteral);
      builder_.SetName(step.test, NameRule::kWritten, token_.content);
      Advance();
    }
    Expect(TokenKind::kClose);
  }

  ExprId ParseNodesArgument() {
    const Operand nodes = ParseOr();
    RequireNodes(nodes);
    return nodes.expr;
  }

  void ParseContextArgument(Step& step) {
    step.axis = Axis::kContext;
    step.number = -1;
    if (token_.kind != TokenKind::kNumber || !token_.isInteger) return;
    step.number = ToPosition(token_.number);
    Advance();
  }

  void ParseIdArgument(Step& step) {
    if (token_.kind == TokenKind::kLiteral) {
      step.axis = Axis::kIdText;
      step.literal = builder_.AddLiteralText(token_.content);
      Advance();
    } else {
      step.axis = Axis::kIdNodes;
      step.expr = ParseNodesArgument();
    }
  }

  // Filters --------------------------------------------------------------------------------------

  Filter ParseFilter() {
    Filter filter;
    if (token_.kind == TokenKind::kNumber && token_.isInteger) {
      filter = FilterAtPosition(token_.number);
      Advance();
    } else {
      filter = FilterOf(code_, ParseOr().expr);
    }
    Expect(TokenKind::kCloseBracket);
    return filter;
  }

  Code& code_;
  PatternBuilder builder_;
  std::span<const NamespacePrefix> prefixes_;
  PatternLexer lexer_;
  Token token_;
  std::size_t lastEnd_ = 0;  // of the token before
  int depth_ = 0;
  ExprId openGroup_ = kNoExpr;  // a group already read that the next step is
  bool attributeName_ = false;  // the last step was "@name"
};

}  // namespace

runtime::Counted<Code> ParsePattern(std::string_view text,
                                    std::span<const NamespacePrefix> prefixes) {
  runtime::Counted<Code> code = runtime::MakeCounted<Code>();
  code->text = text;
  PatternParser(*code, prefixes).ParseAll();
  return code;
}

}  // namespace kx::patterns
