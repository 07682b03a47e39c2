// What the rules say of attributes: the collection of an element, one attribute, and what the
// schema tells of them.
#pragma once

#include "model/declarations.h"
#include "model/tree.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kx::model {

struct Context;
struct Key;

struct AttributeInfo {
  const Declaration* declaration;    ///< in the element type; null for none
  const Declaration* attributeType;  ///< null for none

  AttributeInfo(const Context& context, const Declaration& elementType, const std::string& name);
  [[nodiscard]] std::string Name() const;
  [[nodiscard]] bool Required() const;
  [[nodiscard]] std::string DefaultValue() const;
  [[nodiscard]] bool ReadOnly() const;
  [[nodiscard]] std::string DataType() const;
  [[nodiscard]] std::vector<std::string> Values() const;
  /// Raises: kxMsgErrorAttributeReadOnly unless that is waived; kxMsgErrorBadAttributeValue.
  void Check(const std::string& value, bool waivesReadOnly) const;
};

class AttributeObject {
 public:
  AttributeObject(const Context& context, const Node& node, const Declaration& elementType,
                  const std::string& name);
  [[nodiscard]] std::string Name() const;
  [[nodiscard]] std::string Value() const;
  void Value(const std::string& value) const;
  [[nodiscard]] AttributeInfo Info() const;
  /// The data type of its text; "" when the model does not know how values of it are read.
  [[nodiscard]] bool HasKnownType() const;

 private:
  [[nodiscard]] Attribute& Get() const;
  [[nodiscard]] std::string DataType() const;

  const Context* context_;
  const Declaration* elementType_;
  Attribute* attribute_;
};
using AttributePtr = std::shared_ptr<AttributeObject>;

class Attributes {
 public:
  Attributes(const Context& context, Node* node, const Declaration* elementType)
      : context_(&context), node_(node), elementType_(elementType) {}

  [[nodiscard]] std::int32_t Count() const;
  /// Null when the attribute could not be added.
  [[nodiscard]] AttributePtr Attrib(const Key& key) const;
  [[nodiscard]] bool Exists(const std::string& name) const;
  [[nodiscard]] AttributePtr AddAttribute(const std::string& name, std::string& value) const;
  void RemoveAttribute(const Key& key);
  [[nodiscard]] std::vector<AttributePtr> Enumerate();

  [[nodiscard]] std::int32_t CountKnown() const;
  [[nodiscard]] bool IsKnown(const std::string& name) const;
  [[nodiscard]] AttributeInfo Known(const Key& key) const;

 private:
  [[nodiscard]] AttributePtr Make(const std::string& name) const;

  const Context* context_;
  Node* node_;
  const Declaration* elementType_;
  std::optional<std::vector<AttributePtr>> snapshot_;
};

}  // namespace kx::model
