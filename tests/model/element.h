// What the rules say of elements: navigation, editing of children, groups, and what the schema
// tells of them. Each rule is written down step by step, in the order in which its checks show.
#pragma once

#include "model/attributes.h"
#include "model/declarations.h"
#include "model/tree.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kx::model {

/// What all elements of one message share.
struct Context {
  Store* store = nullptr;
  const Declaration* schema = nullptr;
  std::map<std::string, const Declaration*> index;  ///< element types by name in lower case

  Context(Store& messageStore, const Declaration& messageSchema);
  /// Raises: InvalidCall.
  [[nodiscard]] const Declaration& TypeOf(const std::string& name) const;
};

/// A new element with its minimum content, in the namespace of `parent` in lower case; in
/// `rootSpace` without one. Raises: InvalidCall, kxMsgErrorUnknownAttribute.
[[nodiscard]] Node* BuildContent(const Context& context, const Node* parent,
                                 const Declaration& type, const std::string& rootSpace = {});
[[nodiscard]] Attribute* BuildAttribute(Store& store, Node* owner, const Declaration& type,
                                        const Declaration& declaration);
/// True for an attribute that is required or has a default.
/// Raises: ObjectNotSet when only the type could tell, and there is none.
[[nodiscard]] bool IsAttributeFixed(const Declaration& declaration, const Declaration* type);

/// A position or a name.
struct Key {
  bool numeric = false;
  double position = 0;
  std::string text;  ///< as an error shows it
};

struct ElementInfo {
  const Context* context;
  const Node* node;
  const Declaration* type;

  [[nodiscard]] std::int32_t MaxOccurrences() const;
  [[nodiscard]] std::int32_t MinOccurrences() const;
  /// All properties in one line.
  [[nodiscard]] std::string Describe() const;
};

/// The elements that a declaration, an element type or a group, allows.
class ValidElements {
 public:
  ValidElements(const Context& context, const Node& parent, const Declaration& declaration);
  [[nodiscard]] std::int32_t Count() const;
  [[nodiscard]] bool Exists(const std::string& name) const;
  [[nodiscard]] ElementInfo Element(const Key& key) const;

 private:
  const Context* context_;
  const Node* parent_;
  const Declaration* declaration_;
  Node* scratch_;
};

class Element;
using ElementPtr = std::shared_ptr<Element>;

class Element {
 public:
  Element(const Context& context, Node* node, const Declaration* type)
      : context_(&context), node_(node), type_(type) {}

  [[nodiscard]] Node& GetNode() const { return *node_; }
  [[nodiscard]] const Declaration& Type() const { return *type_; }
  [[nodiscard]] const Context& GetContext() const { return *context_; }

  [[nodiscard]] ElementPtr Parent() const;
  [[nodiscard]] ElementPtr ChildElements(const Key& key) const;
  [[nodiscard]] std::int32_t Count() const;
  [[nodiscard]] bool Exists(const std::string& path) const;
  /// The list that an enumeration goes through.
  [[nodiscard]] std::vector<ElementPtr> Enumerate();
  [[nodiscard]] Attributes& GetAttributes();

  [[nodiscard]] ElementPtr AddChild(std::string& name);
  void RemoveChildKey(const Key& key);
  void RemoveChild(const Element* child);
  [[nodiscard]] ElementPtr InsertChild(const Element* child);
  [[nodiscard]] ElementPtr ReplaceChild(const Element* replacement, std::int32_t occurrence);

  [[nodiscard]] std::int32_t GroupNumber() const;
  [[nodiscard]] std::int32_t NumberOfGroups() const;
  [[nodiscard]] std::int32_t CurrentGroup() const;
  [[nodiscard]] ValidElements KnownGroupElements(std::int32_t number) const;
  void ReplaceGroup(std::int32_t number);

  [[nodiscard]] ElementInfo Info() const { return {context_, node_, type_}; }
  [[nodiscard]] ValidElements KnownValidChildren() const { return {*context_, *node_, *type_}; }
  [[nodiscard]] std::string Xml() const { return XmlOf(*node_); }

 private:
  [[nodiscard]] ElementPtr Wrap(Node* node) const;
  [[nodiscard]] bool CanContainChildren() const;
  [[nodiscard]] const Declaration* DeclarationOf(const std::string& name) const;
  [[nodiscard]] bool IsFull(const Declaration& declaration, const std::string& name) const;
  void CheckNotRequired(const std::string& name) const;
  [[nodiscard]] bool IsForeign(const Element& child) const;
  [[nodiscard]] Node* AppendNew(const std::string& name) const;

  const Context* context_;
  Node* node_;
  const Declaration* type_;
  std::optional<std::vector<ElementPtr>> snapshot_;
  std::unique_ptr<Attributes> attributes_;
};

}  // namespace kx::model
