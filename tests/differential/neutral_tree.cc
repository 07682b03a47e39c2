// See neutral_tree.h.
#include "differential/neutral_tree.h"

#include <algorithm>

namespace kx::test {

namespace {

// The form in which a name stands in a line: two names are equal exactly when their forms are.
std::string FormOf(const NeutralTree::Name& name) {
  return "{" + name.uri + "}" + name.prefix + ":" + name.local;
}

void AppendEscaped(std::string_view text, std::string& out) {
  for (const char c : text) {
    if (c == '\n') {
      out += "\\n";
    } else if (c == '\\') {
      out += "\\\\";
    } else {
      out += c;
    }
  }
}

}  // namespace

void NeutralTree::Line(char kind, std::string_view text) {
  lines_ += kind;
  lines_ += ' ';
  AppendEscaped(text, lines_);
  lines_ += '\n';
}

void NeutralTree::Flush() {
  std::sort(items_.begin(), items_.end());
  for (const std::string& item : items_) Line(item.front(), std::string_view(item).substr(1));
  items_.clear();
  if (!text_.empty()) Line('T', text_);
  text_.clear();
}

void NeutralTree::StartElement(const Name& name) {
  Flush();
  Line('<', FormOf(name));
}

void NeutralTree::Declaration(std::string_view prefix, std::string_view uri) {
  if (prefix == "xml") return;  // always bound; not every parser tells that it was declared
  items_.push_back("N" + std::string(prefix) + "=" + std::string(uri));
}

void NeutralTree::Attribute(const Name& name, std::string_view value) {
  items_.push_back("A" + FormOf(name) + "=" + std::string(value));
}

void NeutralTree::EndElement() {
  Flush();
  lines_ += ">\n";
}

void NeutralTree::Text(std::string_view text) { text_ += text; }

void NeutralTree::Comment(std::string_view text) {
  Flush();
  Line('C', text);
}

void NeutralTree::Instruction(std::string_view target, std::string_view data) {
  Flush();
  Line('P', std::string(target) + " " + std::string(data));
}

std::string NeutralTree::Take() {
  Flush();
  return std::move(lines_);
}

}  // namespace kx::test
