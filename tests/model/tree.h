// The document of the model: nodes in one store that frees nothing before the end, so that plain
// pointers serve and a removed node is simply one without parent.
#pragma once

#include "model/declarations.h"

#include <cstddef>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kx::model {

struct Node;

struct Attribute {
  std::string name;
  std::string value;
  bool written = true;    ///< false for one that the parse supplied: no text shows it
  Node* owner = nullptr;  ///< null once it was removed: then it has no data type any more
};

enum class Kind : unsigned char { kDocument, kEnvelope, kElement, kText, kComment };

struct Node {
  Kind kind = Kind::kElement;
  std::string name;
  std::string space;  ///< the namespace, letter for letter
  std::string text;   ///< of a text or comment
  std::vector<Attribute*> attributes;
  std::vector<Node*> children;
  Node* parent = nullptr;

  [[nodiscard]] bool IsElement() const { return kind == Kind::kElement || kind == Kind::kEnvelope; }
};

/// All nodes of all messages, and the schemas that they may be bound to.
class Store {
 public:
  [[nodiscard]] Node* NewNode(Kind kind, std::string name, std::string space = {});
  [[nodiscard]] Attribute* NewAttribute(Node* owner, std::string name, std::string value);
  /// A deep copy without parent.
  [[nodiscard]] Node* Copy(const Node& node);

  /// `location`: in any letter case, of which none counts.
  void AddSchema(std::string_view location, const Declaration* schema);
  /// The schema of a namespace; null for none.
  [[nodiscard]] const Declaration* SchemaOf(const Node& node) const;
  /// The element type that a node is bound to, by namespace and name; null for none.
  [[nodiscard]] const Declaration* DefinitionOf(const Node& node) const;
  /// The data type that an attribute is bound to; "string" without one.
  [[nodiscard]] std::string DataTypeOf(const Attribute& attribute) const;
  /// The default that the document supplies where an attribute is not written: that of the
  /// declaration first. Empty for none.
  [[nodiscard]] std::string DefaultOf(const Node& node, const std::string& attribute) const;

 private:
  // The attribute type that an attribute of a node is bound to; null for none.
  [[nodiscard]] const Declaration* AttributeTypeOf(const Node& node,
                                                   const std::string& attribute) const;

  std::deque<Node> nodes_;
  std::deque<Attribute> attributes_;
  std::map<std::string, const Declaration*> schemas_;
};

[[nodiscard]] Attribute* FindAttribute(const Node& node, std::string_view name);
[[nodiscard]] std::vector<Node*> ElementsOf(const Node& node);
[[nodiscard]] std::vector<Node*> ElementsOf(const Node& node, std::string_view name);
[[nodiscard]] std::size_t CountNodes(const Node& node);
void Append(Node& parent, Node* child);
/// Raises: NotAChild.
void Remove(Node& parent, Node* child);

/// The first element that a path of names finds: "a", "*", "..", "." or a chain of those.
[[nodiscard]] Node* FindFirst(Node& from, std::string_view path);

/// The text of an element, the namespaces in the form that does not depend on where schemas lie.
/// An element without content is written with both tags.
[[nodiscard]] std::string XmlOf(const Node& node);
/// A text of the library in the same form.
[[nodiscard]] std::string WithBothTags(std::string_view xml);

}  // namespace kx::model
