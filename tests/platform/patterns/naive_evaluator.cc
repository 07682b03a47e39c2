// See naive_evaluator.h.
#include "platform/patterns/naive_evaluator.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <stdexcept>
#include <utility>

namespace kx::patterns::naive {

using dom::NodeType;

// Kinds: path (absolute, steps), union, and, or, not, compare (op, quantifier, left, right), info
// (name, [target], [argument]), text, number, and the steps of a path: step (name, descend,
// filters, [argument]).
struct Ast {
  std::string kind;
  std::string name;
  std::string quantifier;
  bool flag = false;  // absolute path; step behind "//"
  bool caseless = false;
  std::vector<std::unique_ptr<Ast>> parts;
  std::vector<std::unique_ptr<Ast>> filters;
  std::unique_ptr<Ast> target;    // of an information method
  std::unique_ptr<Ast> argument;  // of a call
};

namespace {

using Part = std::unique_ptr<Ast>;
using Set = std::set<int>;

Part Make(std::string kind, std::string name = {}) {
  auto ast = std::make_unique<Ast>();
  ast->kind = std::move(kind);
  ast->name = std::move(name);
  return ast;
}

bool Contains(std::initializer_list<std::string_view> list, std::string_view wanted) {
  return std::find(list.begin(), list.end(), wanted) != list.end();
}

// Parser -----------------------------------------------------------------------------------------

class Parser {
 public:
  explicit Parser(std::string_view text) : text_(text) {}

  Part Parse() {
    Part all = Or();
    if (!Peek("")) throw std::logic_error("naive parser: text left of " + std::string(text_));
    return all;
  }

 private:
  void Blanks() {
    while (at_ < text_.size() && std::isspace(static_cast<unsigned char>(text_[at_])) != 0) ++at_;
  }
  // Is `token` next? The empty token stands for the end.
  bool Peek(std::string_view token) {
    Blanks();
    return token.empty() ? at_ == text_.size() : text_.substr(at_, token.size()) == token;
  }
  bool Take(std::string_view token) {
    if (!Peek(token)) return false;
    at_ += token.size();
    return true;
  }
  bool TakeOne(std::initializer_list<std::string_view> tokens) {
    return std::any_of(tokens.begin(), tokens.end(), [this](auto token) { return Take(token); });
  }
  void Must(std::string_view token) {
    if (!Take(token)) throw std::logic_error("naive parser: no " + std::string(token));
  }
  std::string Name() {
    Blanks();
    const std::size_t begin = at_;
    while (at_ < text_.size() && (std::isalnum(static_cast<unsigned char>(text_[at_])) != 0 ||
                                  Contains({"_", "-", ":"}, text_.substr(at_, 1)))) {
      ++at_;
    }
    if (at_ > begin && text_[at_ - 1] == ':' && Peek("*")) ++at_;
    return std::string(text_.substr(begin, at_ - begin));
  }
  std::string PeekName() {
    const std::size_t before = at_;
    std::string name = Name();
    nextIsCall_ = Peek("(");
    at_ = before;
    return name;
  }

  Part Or() {
    Part left = And();
    while (TakeOne({"||", "$or$", "or "})) left = Join("or", std::move(left), And());
    return left;
  }
  Part And() {
    Part left = Not();
    while (TakeOne({"&&", "$and$", "and "})) left = Join("and", std::move(left), Not());
    return left;
  }
  static Part Join(std::string kind, Part left, Part right) {
    Part joined = Make(std::move(kind));
    joined->parts.push_back(std::move(left));
    joined->parts.push_back(std::move(right));
    return joined;
  }
  Part Not() {
    Part negation = Make("not");
    if (Take("$not$")) {
      negation->parts.push_back(Not());
      return negation;
    }
    if (PeekName() == "not" && nextIsCall_) {
      Name();
      Must("(");
      negation->parts.push_back(Or());
      Must(")");
      return negation;
    }
    Part left = Comparison();
    while (Peek("|") && !Peek("||")) {
      Take("|");
      left = Join("union", std::move(left), Comparison());
    }
    return left;
  }

  Part Comparison() {
    Part compare = Make("compare");
    if (Take("$any$")) compare->quantifier = "any";
    if (Take("$all$")) compare->quantifier = "all";
    Part left = Path();
    static constexpr std::pair<std::string_view, std::string_view> kOperators[] = {
        {"$eq$", "="},    {"$ne$", "!="},  {"$le$", "<="},   {"$lt$", "<"},    {"$ge$", ">="},
        {"$gt$", ">"},    {"$ieq$", "i="}, {"$ine$", "i!="}, {"$ile$", "i<="}, {"$ilt$", "i<"},
        {"$ige$", "i>="}, {"$igt$", "i>"}, {"!=", "!="},     {"<=", "<="},     {">=", ">="},
        {"=", "="},       {"<", "<"},      {">", ">"}};
    for (const auto& [token, meaning] : kOperators) {
      if (!Take(token)) continue;
      compare->caseless = meaning[0] == 'i';
      compare->name = compare->caseless ? meaning.substr(1) : meaning;
      compare->parts.push_back(std::move(left));
      compare->parts.push_back(Right());
      return compare;
    }
    return left;
  }
  Part Right() {
    if (Peek("'") || Peek("\"")) return Literal();
    if (at_ < text_.size() &&
        (Peek("-") || std::isdigit(static_cast<unsigned char>(text_[at_])) != 0)) {
      return Number();
    }
    return Path();
  }
  Part Literal() {
    const char quote = text_[at_];
    const std::size_t end = text_.find(quote, at_ + 1);
    Part literal = Make("text", std::string(text_.substr(at_ + 1, end - at_ - 1)));
    at_ = end + 1;
    return literal;
  }
  Part Number() {
    Blanks();
    const std::size_t begin = at_++;
    while (at_ < text_.size() &&
           (std::isdigit(static_cast<unsigned char>(text_[at_])) != 0 || text_[at_] == '.')) {
      ++at_;
    }
    return Make("number", std::string(text_.substr(begin, at_ - begin)));
  }

  static bool IsInfo(std::string_view name) {
    return Contains(
        {"index", "end", "nodeName", "nodeType", "nodeTypeString", "value", "number", "date"},
        name);
  }

  Part Path() {
    if (IsInfo(PeekName()) && nextIsCall_) return Info(nullptr);
    Part path = Make("path");
    if (Take("//")) {
      path->flag = true;
      path->parts.push_back(Step(true));
    } else if (Take("/")) {
      path->flag = true;
      if (!AtStep()) return Bang(std::move(path));
      path->parts.push_back(Step(false));
    } else if (Take("(")) {
      Part inner = Or();
      Must(")");
      if (!Peek("[") && !Peek("/") && !IsBang()) return inner;
      Part step = Make("step", "group");
      step->argument = std::move(inner);
      Filters(*step);
      path->parts.push_back(std::move(step));
    } else {
      path->parts.push_back(Step(false));
    }
    while (Peek("/")) {
      const bool descend = Take("//");
      if (!descend) Take("/");
      path->parts.push_back(Step(descend));
    }
    return Bang(std::move(path));
  }
  bool IsBang() { return Peek("!") && !Peek("!="); }
  Part Bang(Part path) {
    if (!IsBang()) return path;
    Take("!");
    return Info(std::move(path));
  }
  Part Info(Part target) {
    Part info = Make("info", Name());
    info->target = std::move(target);
    Must("(");
    if (!Peek(")")) info->argument = Peek("'") ? Literal() : Or();
    Must(")");
    return info;
  }
  bool AtStep() { return Peek(".") || Peek("*") || Peek("@") || Peek("(") || !PeekName().empty(); }
  Part Step(bool descend) {
    Part step = Term();
    step->flag = descend;
    Filters(*step);
    return step;
  }
  void Filters(Ast& step) {
    while (Take("[")) {
      const bool number = Peek("-") || std::isdigit(static_cast<unsigned char>(text_[at_])) != 0;
      step.filters.push_back(number ? Number() : Or());
      Must("]");
    }
  }
  Part Term() {
    if (Take("..")) return Make("step", "..");
    if (Take(".")) return Make("step", ".");
    if (Take("*")) return Make("step", "*");
    if (Take("@")) return Take("*") ? Make("step", "@*") : Make("step", "@" + Name());
    if (Take("(")) {
      Part step = Make("step", "group");
      step->argument = Or();
      Must(")");
      return step;
    }
    std::string name = Name();
    if (!Take("(")) return Make("step", name);
    Part step = Make("step", name + "()");
    if (Peek("'")) {
      step->argument = Literal();
    } else if (Peek("-") || std::isdigit(static_cast<unsigned char>(text_[at_])) != 0) {
      step->argument = Number();
    } else if (!Peek(")")) {
      step->argument = Or();
    }
    Must(")");
    return step;
  }

  std::string_view text_;
  std::size_t at_ = 0;
  bool nextIsCall_ = false;
};

// Evaluation -------------------------------------------------------------------------------------

struct Candidate {
  int node;
  int index = 0;
  int count = 1;
};

struct Value {
  enum Kind { kNothing, kNode, kText, kNumber, kTruth } kind = kNothing;
  int node = -1;
  std::string text;
  double number = 0;
};

std::string Upper(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

template <class T>
bool Holds(const std::string& op, const T& a, const T& b) {
  if (op == "=") return a == b;
  if (op == "!=") return a != b;
  if (op == "<") return a < b;
  if (op == "<=") return a <= b;
  if (op == ">") return a > b;
  return a >= b;
}

double ToNumber(std::string text) {
  const auto blank = [](char c) { return c == ' ' || c == '\n'; };
  while (!text.empty() && blank(text.back())) text.pop_back();
  while (!text.empty() && blank(text.front())) text.erase(0, 1);
  if (text.empty() || text.find_first_not_of("0123456789.-+") != std::string::npos) return NAN;
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  return *end == '\0' ? number : NAN;
}

std::string FromNumber(double number) {
  char text[40];
  std::snprintf(text, sizeof(text), "%.15G", number);
  return text;
}

class Evaluation {
 public:
  Evaluation(const Tree& tree, int start) : tree_(tree), start_(start) {}

  Set Nodes(const Ast& ast, int context) {
    if (ast.kind == "union") {
      Set all = Nodes(*ast.parts[0], context);
      all.merge(Nodes(*ast.parts[1], context));
      return all;
    }
    if (ast.kind != "path") throw std::logic_error("naive evaluator: no nodes: " + ast.kind);
    Set set = {ast.flag ? 0 : context};
    for (const Part& step : ast.parts) {
      if (step->flag) set = WithAllBelow(set);
      Set next;
      for (const int node : set) next.merge(Step(*step, node));
      set = next;
    }
    return set;
  }

  bool Matches(const Ast& pattern, int node) {
    if (pattern.kind == "union") {
      return Matches(*pattern.parts[0], node) || Matches(*pattern.parts[1], node);
    }
    if (pattern.flag) return Nodes(pattern, 0).count(node) != 0;
    for (int above = At(node).parent; above >= 0; above = At(above).parent) {
      if (Nodes(pattern, above).count(node) != 0) return true;
    }
    return false;
  }

 private:
  const Tree::Node& At(int node) const { return tree_.nodes[static_cast<std::size_t>(node)]; }

  void AddBelow(int node, Set& set) {
    set.insert(node);
    for (const int child : At(node).children) AddBelow(child, set);
  }
  Set WithAllBelow(const Set& set) {
    Set all;
    for (const int node : set) AddBelow(node, all);
    return all;
  }

  std::vector<int> Children(int node, std::initializer_list<NodeType> types) {
    std::vector<int> list;
    for (const int child : At(node).children) {
      if (std::find(types.begin(), types.end(), At(child).type) != types.end())
        list.push_back(child);
    }
    return list;
  }
  std::vector<int> Named(const std::vector<int>& list, const std::string& name) {
    const bool anyLocal = name.size() > 2 && name.substr(name.size() - 2) == ":*";
    const std::string prefix = anyLocal ? name.substr(0, name.size() - 1) : "";
    std::vector<int> found;
    for (const int node : list) {
      const std::string& own = At(node).name;
      if (anyLocal ? own.substr(0, prefix.size()) == prefix : own == name) found.push_back(node);
    }
    return found;
  }
  std::vector<int> MaybeNamed(const std::vector<int>& list, const Ast& step) {
    return step.argument ? Named(list, step.argument->name) : list;
  }
  std::vector<int> Attributes(int node) {
    return At(node).type == NodeType::kElement ? At(node).attributes : std::vector<int>{};
  }

  std::vector<int> Candidates(const Ast& step, int node) {
    const std::string& name = step.name;
    if (name == ".") return {node};
    if (name == "..")
      return At(node).parent < 0 ? std::vector<int>{} : std::vector{At(node).parent};
    if (name == "*") return Children(node, {NodeType::kElement});
    if (name == "@*") return Attributes(node);
    if (name[0] == '@') return Named(Attributes(node), name.substr(1));
    if (name == "group") {
      const Set set = Nodes(*step.argument, node);
      return {set.begin(), set.end()};
    }
    if (name == "element()") return MaybeNamed(Children(node, {NodeType::kElement}), step);
    if (name == "attribute()") return MaybeNamed(Attributes(node), step);
    if (name == "node()") return At(node).children;
    if (name == "pi()") {
      return MaybeNamed(Children(node, {NodeType::kProcessingInstruction}), step);
    }
    if (name == "comment()") return Children(node, {NodeType::kComment});
    if (name == "textnode()") return Children(node, {NodeType::kText});
    if (name == "cdata()") return Children(node, {NodeType::kCData});
    if (name == "text()") return Children(node, {NodeType::kText, NodeType::kCData});
    if (name == "ancestor()") return NearestAncestor(*step.argument, node);
    if (name == "context()") {
      const int number = step.argument ? std::stoi(step.argument->name) : -1;
      return number == 0 || number == -1 ? std::vector{start_} : std::vector<int>{};
    }
    return Named(Children(node, {NodeType::kElement}), name);
  }

  std::vector<int> NearestAncestor(const Ast& pattern, int node) {
    for (int above = At(node).parent; above >= 0; above = At(above).parent) {
      if (Matches(pattern, above)) return {above};
    }
    return {};
  }

  Set Step(const Ast& step, int node) {
    std::vector<int> list = Candidates(step, node);
    for (const Part& filter : step.filters) {
      std::vector<int> kept;
      for (std::size_t i = 0; i < list.size(); ++i) {
        const Candidate candidate{list[i], static_cast<int>(i), static_cast<int>(list.size())};
        if (Passes(*filter, candidate)) kept.push_back(list[i]);
      }
      list = kept;
    }
    return {list.begin(), list.end()};
  }

  bool Passes(const Ast& filter, const Candidate& candidate) {
    if (filter.kind != "number") return Truth(filter, candidate);
    const int number = std::stoi(filter.name);
    return candidate.index == (number < 0 ? candidate.count + number : number);
  }

  bool Truth(const Ast& ast, const Candidate& candidate) {
    if (ast.kind == "or") {
      return Truth(*ast.parts[0], candidate) || Truth(*ast.parts[1], candidate);
    }
    if (ast.kind == "and") {
      return Truth(*ast.parts[0], candidate) && Truth(*ast.parts[1], candidate);
    }
    if (ast.kind == "not") return !Truth(*ast.parts[0], candidate);
    if (ast.kind == "compare") return Compare(ast, candidate);
    if (ast.kind != "info") return !Nodes(ast, candidate.node).empty();
    const Value value = Info(ast, candidate);
    switch (value.kind) {
      case Value::kNothing:
        return false;
      case Value::kNode:
      case Value::kText:
        return !Text(value).empty();
      default:
        return value.number != 0 && !std::isnan(value.number);
    }
  }

  // All values of a left operand: the nodes of a set, the method's answer for each node of a set.
  std::vector<Value> Values(const Ast& ast, const Candidate& candidate) {
    std::vector<Value> values;
    if (ast.kind == "info" && !(ast.target && !IsSelf(*ast.target))) {
      values.push_back(Info(ast, candidate));
      return values;
    }
    const Set set = Nodes(ast.kind == "info" ? *ast.target : ast, candidate.node);
    int index = 0;
    for (const int node : set) {
      const Candidate member{node, index++, static_cast<int>(set.size())};
      values.push_back(ast.kind == "info" ? Method(ast, member) : NodeValue(node));
    }
    return values;
  }
  static Value NodeValue(int node) { return {Value::kNode, node, {}, 0}; }
  static bool IsSelf(const Ast& path) {
    return !path.flag && path.parts.size() == 1 && path.parts[0]->name == "." &&
           path.parts[0]->filters.empty();
  }

  bool Compare(const Ast& ast, const Candidate& candidate) {
    const std::vector<Value> left = Values(*ast.parts[0], candidate);
    const Value right = Operand(*ast.parts[1], candidate);
    const auto holds = [&](const Value& value) { return HoldsFor(ast, value, right); };
    if (ast.quantifier == "any") return std::any_of(left.begin(), left.end(), holds);
    if (ast.quantifier == "all") return std::all_of(left.begin(), left.end(), holds);
    return !left.empty() && holds(left.front());
  }

  Value Operand(const Ast& ast, const Candidate& candidate) {
    if (ast.kind == "text") return {Value::kText, -1, ast.name, 0};
    if (ast.kind == "number") return {Value::kNumber, -1, {}, std::stod(ast.name)};
    const std::vector<Value> values = Values(ast, candidate);
    return values.empty() ? Value{} : values.front();
  }

  bool HoldsFor(const Ast& ast, const Value& left, const Value& right) {
    if (left.kind == Value::kNothing || right.kind == Value::kNothing) return false;
    if (left.kind == Value::kNumber && std::isnan(left.number)) return ast.name == "!=";
    if (right.kind == Value::kNumber || right.kind == Value::kTruth) {
      const double number = left.kind == Value::kNumber || left.kind == Value::kTruth
                                ? left.number
                                : ToNumber(Text(left));
      return Holds(ast.name, number, right.number);
    }
    if (ast.caseless) return Holds(ast.name, Upper(Text(left)), Upper(Text(right)));
    return Holds(ast.name, Text(left), Text(right));
  }

  std::string Text(const Value& value) {
    if (value.kind == Value::kNode) return TextOf(value.node);
    return value.kind == Value::kText ? value.text : FromNumber(value.number);
  }
  std::string TextOf(int node) {
    const NodeType type = At(node).type;
    if (type == NodeType::kDocumentType) return {};
    if (type != NodeType::kElement && type != NodeType::kDocument && type != NodeType::kAttribute) {
      return At(node).ownText;
    }
    std::string text;
    for (const int child : At(node).children) {
      const NodeType kind = At(child).type;
      const bool counts = kind == NodeType::kElement || kind == NodeType::kText ||
                          kind == NodeType::kCData || kind == NodeType::kEntityReference;
      if (counts) text += TextOf(child);
    }
    return text;
  }

  Value Info(const Ast& ast, const Candidate& candidate) {
    if (!ast.target || IsSelf(*ast.target)) return Method(ast, candidate);
    const std::vector<Value> values = Values(ast, candidate);
    return values.empty() ? Value{} : values.front();
  }

  Value Method(const Ast& ast, const Candidate& subject) {
    const Tree::Node& node = At(subject.node);
    if (ast.name == "index") return {Value::kNumber, -1, {}, static_cast<double>(subject.index)};
    if (ast.name == "end") {
      return {Value::kTruth, -1, {}, subject.index + 1 == subject.count ? 1.0 : 0.0};
    }
    if (ast.name == "nodeType") return {Value::kNumber, -1, {}, static_cast<double>(node.type)};
    if (ast.name == "nodeName") return {Value::kText, -1, node.name, 0};
    if (ast.name == "value") return NodeValue(subject.node);
    if (ast.name != "number") throw std::logic_error("naive evaluator: no " + ast.name);
    if (!ast.argument) return {Value::kNumber, -1, {}, ToNumber(TextOf(subject.node))};
    const Set set = Nodes(*ast.argument, subject.node);
    if (set.empty()) return {};
    return {Value::kNumber, -1, {}, ToNumber(TextOf(*set.begin()))};
  }

  const Tree& tree_;
  int start_;
};

std::string NodeName(const dom::Cursor& at) {
  switch (at.Type()) {
    case NodeType::kText:
      return "#text";
    case NodeType::kCData:
      return "#cdata-section";
    case NodeType::kComment:
      return "#comment";
    case NodeType::kDocument:
      return "#document";
    default:
      return std::string(at.QualifiedName());
  }
}

}  // namespace

Tree::Tree(const dom::DocumentData& data) { Add({&data, dom::kDocumentNode}, -1); }

int Tree::Add(const dom::Cursor& at, int parent) {
  const int index = static_cast<int>(nodes.size());
  nodes.push_back({at.Id(), at.Type(), NodeName(at), std::string(at.OwnText()), parent, {}, {}});
  for (dom::Cursor attribute = at.FirstAttribute(); attribute; attribute = attribute.Next()) {
    const int added = Add(attribute, index);
    nodes[static_cast<std::size_t>(index)].attributes.push_back(added);
  }
  for (dom::Cursor child = at.FirstChild(); child; child = child.Next()) {
    const int added = Add(child, index);
    nodes[static_cast<std::size_t>(index)].children.push_back(added);
  }
  return index;
}

int Tree::Find(dom::NodeId id) const {
  const auto found =
      std::find_if(nodes.begin(), nodes.end(), [id](const Node& node) { return node.id == id; });
  return static_cast<int>(found - nodes.begin());
}

Query::Query(std::string_view text) : root_(Parser(text).Parse()) {}
Query::~Query() = default;

std::vector<dom::NodeId> Query::Select(const Tree& tree, dom::NodeId start) const {
  const int context = tree.Find(start);
  std::vector<dom::NodeId> ids;
  for (const int node : Evaluation(tree, context).Nodes(*root_, context)) {
    ids.push_back(tree.nodes[static_cast<std::size_t>(node)].id);
  }
  return ids;
}

bool Query::Matches(const Tree& tree, dom::NodeId node) const {
  const int context = tree.Find(node);
  return Evaluation(tree, context).Matches(*root_, context);
}

}  // namespace kx::patterns::naive
