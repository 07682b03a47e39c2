// See generators.h.
#include "platform/patterns/generators.h"

#include "platform/runtime/error.h"

#include <array>
#include <functional>
#include <initializer_list>
#include <string_view>

namespace kx::patterns {

namespace {

std::string Joined(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) text += part;
  return text;
}

// All ordered trees of `size` nodes as nested parentheses around a sequence of trees.
std::vector<std::string> Forests(int size) {
  if (size == 0) return {""};
  std::vector<std::string> forests;
  for (int first = 1; first <= size; ++first) {
    for (const std::string& below : Forests(first - 1)) {
      for (const std::string& rest : Forests(size - first)) {
        forests.push_back(Joined({"(", below, ")", rest}));
      }
    }
  }
  return forests;
}

// The shape with names by the bits of `names`; some elements have an attribute, some of them a
// text.
std::string Dress(const std::string& shape, unsigned names) {
  std::string text;
  std::vector<char> open;
  unsigned number = 0;
  for (const char c : shape) {
    if (c == ')') {
      if (text.back() == '>' && text[text.size() - 2] == open.back() && number % 2 == 0)
        text += "1";
      text += std::string("</") + open.back() + ">";
      open.pop_back();
      continue;
    }
    open.push_back((names >> number & 1U) != 0 ? 'b' : 'a');
    text += std::string("<") + open.back();
    if ((names + number) % 3 == 1) text += number % 2 == 0 ? " k='1'" : " k='2'";
    text += ">";
    ++number;
  }
  return text;
}

constexpr const char* kSmallSteps[] = {"a", "b", "*", ".", "..", "node()"};
constexpr const char* kSmallFilters[] = {"",
                                         "[0]",
                                         "[1]",
                                         "[end()]",
                                         "[-1]",
                                         "[@k]",
                                         "[@k='1']",
                                         "[a]",
                                         "[../b]",
                                         "[.//a]",
                                         "[ancestor(a)]",
                                         "[* = '1']",
                                         "[a//b]",
                                         "[//b = .]",
                                         "[$all$ .//b = '1']",
                                         "[$any$ .//* = b]",
                                         "[$all$ ../* != b]",
                                         "[(.//a)[1]]",
                                         "[$any$ .//b!index() = a]",
                                         "[index() > 0]",
                                         "[not(b/a)]"};
constexpr const char* kSmallStarts[] = {"", "/", "//", ".//"};

const std::string kNames[] = {"a", "b", "c", "p:a"};

}  // namespace

std::vector<std::string> AllSmallDocuments(int elements) {
  std::vector<std::string> documents;
  for (int size = 1; size <= elements; ++size) {
    for (const std::string& below : Forests(size - 1)) {
      for (unsigned names = 0; names < 1U << static_cast<unsigned>(size); ++names) {
        documents.push_back(Dress("(" + below + ")", names));
      }
    }
  }
  return documents;
}

std::vector<std::string> AllSmallPatterns() {
  std::vector<std::string> patterns;
  for (const std::string start : kSmallStarts) {
    for (const std::string step : kSmallSteps) {
      for (const std::string filter : kSmallFilters) {
        patterns.push_back(Joined({start, step, filter}));
        patterns.push_back(Joined({start, "@k", filter}));
        patterns.push_back(Joined({"(", start, step, ")", filter}));
        for (const std::string second : kSmallSteps) {
          for (const std::string slash : {"/", "//"}) {
            patterns.push_back(Joined({start, step, filter, slash, second}));
            patterns.push_back(Joined({start, step, slash, second, filter}));
          }
        }
      }
    }
  }
  return patterns;
}

// Documents --------------------------------------------------------------------------------------

namespace {

void AppendContent(std::string& text, Dice& dice, int& budget) {
  static constexpr const char* kTexts[] = {"1", "2", "x", "X", " 2 ", "12", "-1.5", "\n"};
  while (budget > 0 && dice.Roll(4) != 0) {
    --budget;
    switch (dice.Roll(10)) {
      case 0:
        text += std::string("<![CDATA[") + dice.Pick(kTexts) + "]]>";
        break;
      case 1:
        text += "<!--x-->";
        break;
      case 2:
        text += "<?t x?>";
        break;
      case 3:
      case 4:
        text += dice.Pick(kTexts);
        break;
      default: {
        const std::string& name = kNames[dice.Roll(4)];
        text += "<" + name;
        if (dice.Roll(2) == 0) text += std::string(" k='") + dice.Pick(kTexts) + "'";
        if (dice.Roll(3) == 0) text += std::string(" j='") + dice.Pick(kTexts) + "'";
        if (dice.Roll(6) == 0) text += std::string(" p:k='") + dice.Pick(kTexts) + "'";
        text += ">";
        AppendContent(text, dice, budget);
        text += "</" + name + ">";
      }
    }
  }
}

std::vector<dom::Node> AllNodes(const dom::Document& document) {
  std::vector<dom::Node> nodes;
  const dom::Cursor root(&document.Data(), dom::kDocumentNode);
  std::vector<dom::NodeId> ids;
  for (dom::Cursor at = root; at; at = at.NextInTree(root)) ids.push_back(at.Id());
  nodes.reserve(ids.size());
  for (const dom::NodeId id : ids) nodes.emplace_back(dom::Cursor(&document.Data(), id));
  return nodes;
}

}  // namespace

std::string RandomDocument(Dice& dice) {
  std::string text = dice.Roll(2) == 0 ? "<?xml version='1.0'?><!--top-->" : "";
  text += "<a xmlns:p='urn:p'>";
  int budget = static_cast<int>(5 + dice.Roll(30));
  while (budget > 0) AppendContent(text, dice, budget);
  return text + "</a>";
}

void EditAtRandom(const dom::Document& document, Dice& dice) {
  for (int i = 0; i < 6; ++i) {
    const std::vector<dom::Node> nodes = AllNodes(document);
    const auto pick = [&] { return nodes[dice.Roll(static_cast<std::uint32_t>(nodes.size()))]; };
    try {
      switch (dice.Roll(4)) {
        case 0:
          static_cast<void>(pick().AppendChild(pick()));
          break;
        case 1: {
          const dom::Node before = pick();
          static_cast<void>(before.ParentNode().InsertBefore(pick(), before));
          break;
        }
        case 2:
          pick().SetAttribute("k", "2");
          break;
        default:
          static_cast<void>(pick().AppendChild(document.CreateElement(kNames[dice.Roll(3)])));
          break;
      }
    } catch (const kx::Error&) {
      continue;  // not every node may go everywhere: another one is tried
    }
  }
}

// Patterns ---------------------------------------------------------------------------------------

namespace {

class PatternWriter {
 public:
  explicit PatternWriter(Dice& dice) : dice_(dice) {}

  std::string Nodes(int depth) {
    std::string text = Path(depth);
    while (dice_.Roll(8) == 0) text += " | " + Path(depth);
    return text;
  }

 private:
  std::string Path(int depth) {
    static constexpr const char* kStarts[] = {"", "", "", "", "/", "//", ".//", "//", "../"};
    std::string text = dice_.Pick(kStarts);
    if (text.empty() && depth > 0 && dice_.Roll(8) == 0) {
      text = dice_.Roll(3) == 0 ? "context()" : "ancestor(" + Nodes(depth - 1) + ")";
      text += Filters(depth);
      if (dice_.Roll(2) == 0) return text;
      text += Slash();
    }
    for (std::uint32_t steps = dice_.Roll(3); steps > 0; --steps) {
      text += Step(depth) + Filters(depth) + Slash();
    }
    if (dice_.Roll(6) == 0) {
      static constexpr const char* kAttributes[] = {"@k", "@j", "@*", "@p:k"};
      return text + dice_.Pick(kAttributes) + Filters(depth);
    }
    return text + Step(depth) + Filters(depth);
  }
  const char* Slash() { return dice_.Roll(3) == 0 ? "//" : "/"; }

  std::string Step(int depth) {
    static constexpr const char* kSteps[] = {"a",          "a",
                                             "b",          "b",
                                             "c",          "*",
                                             "*",          ".",
                                             "..",         "p:a",
                                             "p:*",        "node()",
                                             "text()",     "comment()",
                                             "textnode()", "cdata()",
                                             "pi()",       "element('a')",
                                             "element()",  "attribute('k')",
                                             "attribute()"};
    if (depth > 0 && dice_.Roll(8) == 0) return "(" + Nodes(depth - 1) + ")";
    return dice_.Pick(kSteps);
  }

  std::string Filters(int depth) {
    if (depth == 0) return "";
    std::string text;
    while (dice_.Roll(3) == 0) text += "[" + Filter(depth - 1) + "]";
    return text;
  }

  std::string Filter(int depth) {
    static constexpr const char* kPlaces[] = {
        "0", "1", "2", "-1", "-2", "end()", "index() = '1'", "index() $ge$ 1", "not(end())"};
    return dice_.Roll(4) == 0 ? dice_.Pick(kPlaces) : Condition(depth);
  }

  std::string Condition(int depth) {
    if (depth > 0) {
      switch (dice_.Roll(8)) {
        case 0:
          return Condition(depth - 1) + " && " + Condition(depth - 1);
        case 1:
          return Condition(depth - 1) + " or " + Condition(depth - 1);
        case 2:
          return "not(" + Condition(depth - 1) + ")";
        case 3:
          return "$not$ (" + Condition(depth - 1) + ")";
        default:
          break;
      }
    }
    return dice_.Roll(2) == 0 ? Nodes(depth > 0 ? depth - 1 : 0) : Comparison(depth);
  }

  std::string Comparison(int depth) {
    static constexpr const char* kQuantifiers[] = {"", "", "$any$ ", "$all$ "};
    static constexpr const char* kOperators[] = {
        " = ", " != ", " < ", " <= ", " > ", " >= ", " $ieq$ ", " $igt$ "};
    static constexpr const char* kConstants[] = {"'1'", "'2'", "'x'", "1", "2", "-1.5", "''", "12"};
    static constexpr const char* kMethods[] = {"!nodeName()", "!nodeType()", "!index()",
                                               "!value()",    "!number()",   "!end()"};
    static constexpr const char* kOwnMethods[] = {"index()", "nodeName()", "nodeType()",
                                                  "value()", "number()",   "end()"};
    const int below = depth > 0 ? depth - 1 : 0;
    std::string left;
    switch (dice_.Roll(5)) {
      case 0:
        left = dice_.Pick(kOwnMethods);
        break;
      case 1:
        left = Path(below) + dice_.Pick(kMethods);
        break;
      default:
        left = Path(below);
        break;
    }
    const std::string right = dice_.Roll(3) == 0 ? Path(below) : dice_.Pick(kConstants);
    return dice_.Pick(kQuantifiers) + left + dice_.Pick(kOperators) + right;
  }

  Dice& dice_;
};

}  // namespace

std::string RandomPattern(Dice& dice) { return PatternWriter(dice).Nodes(2); }

}  // namespace kx::patterns
