// See tree.h.
#include "model/tree.h"

#include "model/failure.h"

#include <algorithm>
#include <utility>

namespace kx::model {

namespace {

constexpr std::string_view kSchemaPrefix = "x-schema:";

std::string Escaped(std::string_view text, bool inAttribute) {
  std::string result;
  for (const char c : text) {
    if (c == '&') {
      result += "&amp;";
    } else if (c == '<') {
      result += "&lt;";
    } else if (c == '>') {
      result += "&gt;";
    } else if (c == '"' && inAttribute) {
      result += "&quot;";
    } else if (c == '\n') {
      result += "\r\n";
    } else {
      result += c;
    }
  }
  return result;
}

// Writes elements, and declares namespaces as the text of a message does.
class Writer {
 public:
  std::string out;

  void Write(const Node& node, const std::string& space) {
    if (node.kind == Kind::kText) {
      out += Escaped(node.text, false);
      return;
    }
    if (node.kind == Kind::kComment) {
      out += "<!--" + node.text + "-->";
      return;
    }
    out += "<" + node.name;
    if (node.space != space && FindAttribute(node, "xmlns") == nullptr) Declare(node.space);
    for (const Attribute* attribute : node.attributes) {
      if (attribute->name == "xmlns") {
        Declare(attribute->value);
      } else if (attribute->written) {
        out += " " + attribute->name + "=\"" + Escaped(attribute->value, true) + "\"";
      }
    }
    out += ">";
    for (const Node* child : node.children) Write(*child, node.space);
    out += "</" + node.name + ">";
  }

 private:
  // The first declaration names the main schema, and becomes the bare mark. A later one of the same
  // schema goes; another file of the same folder is named by its file name.
  void Declare(std::string_view space) {
    const std::string location(space.substr(kSchemaPrefix.size()));
    if (main_.empty()) {
      main_ = location;
      out += " xmlns=\"ref-schema:\"";
      return;
    }
    if (Lower(main_) == Lower(location)) return;
    const std::size_t file = location.rfind('\\') + 1;
    const bool sameFolder =
        Lower(location.substr(0, file)) == Lower(main_.substr(0, main_.rfind('\\') + 1));
    out += " xmlns=\"ref-schema:" + (sameFolder ? location.substr(file) : location) + "\"";
  }

  std::string main_;
};

std::vector<Node*> Step(Node& from, std::string_view step) {
  if (step == ".") return {&from};
  if (step == "..") return from.parent == nullptr ? std::vector<Node*>{} : std::vector{from.parent};
  return step == "*" ? ElementsOf(from) : ElementsOf(from, step);
}

}  // namespace

Node* Store::NewNode(Kind kind, std::string name, std::string space) {
  Node& node = nodes_.emplace_back();
  node.kind = kind;
  node.name = std::move(name);
  node.space = std::move(space);
  return &node;
}

Attribute* Store::NewAttribute(Node* owner, std::string name, std::string value) {
  Attribute& attribute = attributes_.emplace_back();
  attribute.name = std::move(name);
  attribute.value = std::move(value);
  attribute.owner = owner;
  return &attribute;
}

Node* Store::Copy(const Node& node) {
  Node* const copy = NewNode(node.kind, node.name, node.space);
  copy->text = node.text;
  for (const Attribute* attribute : node.attributes) {
    copy->attributes.push_back(NewAttribute(copy, attribute->name, attribute->value));
    copy->attributes.back()->written = attribute->written;
  }
  for (const Node* child : node.children) Append(*copy, Copy(*child));
  return copy;
}

void Store::AddSchema(std::string_view location, const Declaration* schema) {
  schemas_[Lower(location)] = schema;
}

const Declaration* Store::SchemaOf(const Node& node) const {
  if (node.space.substr(0, kSchemaPrefix.size()) != kSchemaPrefix) return nullptr;
  const auto found = schemas_.find(Lower(node.space.substr(kSchemaPrefix.size())));
  return found == schemas_.end() ? nullptr : found->second;
}

const Declaration* Store::DefinitionOf(const Node& node) const {
  const Declaration* const schema = SchemaOf(node);
  return schema == nullptr ? nullptr : FindElementType(*schema, node.name);
}

const Declaration* Store::AttributeTypeOf(const Node& node, const std::string& attribute) const {
  const Declaration* const type = DefinitionOf(node);
  if (type == nullptr || FindChild(*type, "attribute", "type", attribute) == nullptr)
    return nullptr;
  return FindAttributeType(attribute, *SchemaOf(node), *type);
}

std::string Store::DataTypeOf(const Attribute& attribute) const {
  if (attribute.owner == nullptr) return "string";
  const Declaration* const type = AttributeTypeOf(*attribute.owner, attribute.name);
  // A schema may bind the prefix to something else: its types are no data types then.
  const bool typed = type != nullptr && Property(SchemaOf(*attribute.owner), "xmlns:dt") ==
                                            "urn:schemas-microsoft-com:datatypes";
  return typed ? Property(type, "dt:type", "string") : "string";
}

std::string Store::DefaultOf(const Node& node, const std::string& attribute) const {
  const Declaration* const attributeType = AttributeTypeOf(node, attribute);
  if (attributeType == nullptr) return {};
  return Property(FindChild(*DefinitionOf(node), "attribute", "type", attribute), "default",
                  Property(attributeType, "default"));
}

Attribute* FindAttribute(const Node& node, std::string_view name) {
  for (Attribute* attribute : node.attributes) {
    if (attribute->name == name) return attribute;
  }
  return nullptr;
}

std::vector<Node*> ElementsOf(const Node& node) {
  std::vector<Node*> found;
  for (Node* child : node.children) {
    if (child->IsElement()) found.push_back(child);
  }
  return found;
}

std::vector<Node*> ElementsOf(const Node& node, std::string_view name) {
  std::vector<Node*> found = ElementsOf(node);
  std::erase_if(found, [&](const Node* child) { return child->name != name; });
  return found;
}

std::size_t CountNodes(const Node& node) {
  std::size_t count = 1;
  for (const Node* child : node.children) count += CountNodes(*child);
  return count;
}

void Append(Node& parent, Node* child) {
  child->parent = &parent;
  parent.children.push_back(child);
}

void Remove(Node& parent, Node* child) {
  if (child->parent != &parent) throw NotAChild();
  std::erase(parent.children, child);
  child->parent = nullptr;
}

Node* FindFirst(Node& from, std::string_view path) {
  std::vector<Node*> found = {&from};
  while (!path.empty()) {
    const std::string_view step = path.substr(0, path.find('/'));
    path.remove_prefix(std::min(step.size() + 1, path.size()));
    std::vector<Node*> next;
    for (Node* node : found) {
      for (Node* hit : Step(*node, step)) next.push_back(hit);
    }
    found = std::move(next);
  }
  return found.empty() ? nullptr : found.front();
}

std::string XmlOf(const Node& node) {
  Writer writer;
  writer.Write(node, "");
  return std::move(writer.out);
}

std::string WithBothTags(std::string_view xml) {
  std::string result;
  while (!xml.empty()) {
    const std::size_t end = xml.find("/>");
    if (end == std::string_view::npos) break;
    const std::string_view start = xml.substr(0, end);
    const std::string_view tag = start.substr(start.rfind('<') + 1);
    result += start;
    result += "></" + std::string(tag.substr(0, tag.find(' '))) + ">";
    xml.remove_prefix(end + 2);
  }
  return result + std::string(xml);
}

}  // namespace kx::model
