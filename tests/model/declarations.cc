// See declarations.h.
#include "model/declarations.h"

#include <stdexcept>
#include <utility>

namespace kx::model {

namespace {

std::string Escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '"':
        result += "&quot;";
        break;
      default:
        result += c;
    }
  }
  return result;
}

void Write(const Declaration& declaration, std::string& out) {
  out += "<" + declaration.tag;
  for (const auto& [name, value] : declaration.attributes) {
    out += " " + name + "=\"" + Escaped(value) + "\"";
  }
  out += ">" + Escaped(declaration.text);
  for (const Declaration& child : declaration.children) Write(child, out);
  out += "</" + declaration.tag + ">";
}

class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {
    if (rest_.substr(0, 3) == "\xEF\xBB\xBF") rest_.remove_prefix(3);
  }

  Declaration Document() {
    PassOver();
    if (!Take("<")) throw std::runtime_error("a schema begins with an element");
    return Element();
  }

 private:
  bool Take(std::string_view token) {
    if (rest_.substr(0, token.size()) != token) return false;
    rest_.remove_prefix(token.size());
    return true;
  }
  std::string_view Until(std::string_view token) {
    const std::size_t at = rest_.find(token);
    if (at == std::string_view::npos) {
      throw std::runtime_error("a schema ends before " + std::string(token));
    }
    const std::string_view found = rest_.substr(0, at);
    rest_.remove_prefix(at + token.size());
    return found;
  }
  void SkipBlanks() {
    const std::size_t at = rest_.find_first_not_of(" \t\r\n");
    rest_.remove_prefix(at == std::string_view::npos ? rest_.size() : at);
  }
  // Everything between two tags that is neither a tag nor text.
  bool PassOne() {
    if (Take("<!--")) return Until("-->"), true;
    if (Take("<?")) return Until("?>"), true;
    if (Take("<!DOCTYPE")) return Until(">"), true;
    return false;
  }
  void PassOver() {
    do SkipBlanks();
    while (PassOne());
  }
  std::string Name() {
    const std::string_view found = rest_.substr(0, rest_.find_first_of(" \t\r\n=/>"));
    rest_.remove_prefix(found.size());
    return std::string(found);
  }
  static std::string Decoded(std::string_view text) {
    static const std::map<std::string, char, std::less<>> kEntities = {
        {"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}};
    std::string result;
    while (!text.empty()) {
      const std::size_t semicolon = text.find(';');
      if (text.front() != '&' || semicolon == std::string_view::npos) {
        result += text.front();
        text.remove_prefix(1);
        continue;
      }
      const std::string_view entity = text.substr(1, semicolon - 1);
      const auto known = kEntities.find(entity);
      if (known != kEntities.end()) {
        result += known->second;
      } else if (entity.substr(0, 1) == "#") {
        result += static_cast<char>(std::stoi(std::string(entity.substr(1))));
      } else {
        throw std::runtime_error("an entity that the model does not know");
      }
      text.remove_prefix(semicolon + 1);
    }
    return result;
  }

  Declaration Element() {
    Declaration element;
    element.tag = Name();
    for (SkipBlanks(); !rest_.empty() && rest_[0] != '>' && rest_[0] != '/'; SkipBlanks()) {
      const std::string name = Name();
      SkipBlanks();
      if (!Take("=")) throw std::runtime_error("an attribute without value");
      SkipBlanks();
      const std::string quote(rest_.substr(0, 1));
      rest_.remove_prefix(1);
      element.attributes[name] = Decoded(Until(quote));
    }
    if (Take("/>")) return element;
    if (!Take(">")) throw std::runtime_error("a start tag without end");
    while (true) {
      const std::string_view text = rest_.substr(0, rest_.find('<'));
      element.text += Decoded(text);
      rest_.remove_prefix(text.size());
      if (Take("</")) return Until(">"), element;
      if (PassOne()) continue;
      if (!Take("<")) throw std::runtime_error("an element without end");
      element.children.push_back(Element());
    }
  }

  std::string_view rest_;
};

void AddElementTypes(const Declaration& declaration, std::vector<const Declaration*>& found) {
  for (const Declaration& child : declaration.children) {
    if (child.tag == "ElementType") found.push_back(&child);
    AddElementTypes(child, found);
  }
}

}  // namespace

std::string Property(const Declaration* declaration, const std::string& name,
                     std::string_view fallback) {
  if (declaration == nullptr) return std::string(fallback);
  const auto found = declaration->attributes.find(name);
  const bool there = found != declaration->attributes.end() && !found->second.empty();
  return there ? found->second : std::string(fallback);
}

std::vector<const Declaration*> ChildrenOf(const Declaration& declaration, std::string_view tag) {
  std::vector<const Declaration*> found;
  for (const Declaration& child : declaration.children) {
    if (child.tag == tag) found.push_back(&child);
  }
  return found;
}

const Declaration* FindChild(const Declaration& declaration, std::string_view tag,
                             const std::string& name, std::string_view value) {
  for (const Declaration* child : ChildrenOf(declaration, tag)) {
    const auto found = child->attributes.find(name);
    if (found != child->attributes.end() && found->second == value) return child;
  }
  return nullptr;
}

std::vector<const Declaration*> ElementTypesOf(const Declaration& schema) {
  std::vector<const Declaration*> found;
  AddElementTypes(schema, found);
  return found;
}

const Declaration* FindElementType(const Declaration& schema, std::string_view name) {
  for (const Declaration* type : ElementTypesOf(schema)) {
    if (Property(type, "name") == name) return type;
  }
  return nullptr;
}

const Declaration* FindAttributeType(std::string_view name, const Declaration& schema,
                                     const Declaration& elementType) {
  const Declaration* const local = FindChild(elementType, "AttributeType", "name", name);
  return local != nullptr ? local : FindChild(schema, "AttributeType", "name", name);
}

std::string SchemaText(const Declaration& schema) {
  std::string text;
  Write(schema, text);
  return text;
}

Declaration ReadSchema(std::string_view text) { return Reader(text).Document(); }

std::string Lower(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

}  // namespace kx::model
