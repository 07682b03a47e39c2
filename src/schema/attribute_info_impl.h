// The object behind KXMsgAttributeInfo, and the one check that a value passes before it is written.
#pragma once

#include "platform/dom/node.h"
#include "platform/runtime/collection.h"
#include "platform/runtime/counted.h"
#include "schema/element_context.h"

#include <string>
#include <string_view>
#include <vector>

namespace kx::schema {

/// What a refused value does.
enum class Refusal : unsigned char { kAnswer, kRaise };
/// Whether a read-only attribute refuses every value.
enum class ReadOnlyRule : unsigned char { kWaived, kInForce };

class AttributeInfoImpl final : public runtime::PlainObject, private runtime::LiveObject {
 public:
  /// The attribute `name` of elements of `elementType`; what the schema does not declare of it is
  /// nothing. Raises: E_FAIL of the query for a name that cannot stand in one.
  AttributeInfoImpl(SharedContext context, const dom::Node& elementType, std::string_view name);

  // See KXMsgAttributeInfo.
  [[nodiscard]] std::string Name() const;
  [[nodiscard]] bool Required() const;
  [[nodiscard]] std::string DefaultText() const;
  [[nodiscard]] bool ReadOnly() const;
  [[nodiscard]] std::string DataType() const;
  [[nodiscard]] std::vector<std::string> Values() const;

  /// The AttributeType, and the `attribute` declaration in the element type.
  [[nodiscard]] const dom::Node& GetAttributeType() const noexcept { return attributeType_; }
  [[nodiscard]] const dom::Node& GetAttributeDecl() const noexcept { return declaration_; }

  /// True when the attribute may be given `value`: it is not read-only, an nmtoken or nmtokens
  /// value is not empty, an enumerated one is in its list, letter case aside. Other types are not
  /// looked at.
  /// Raises: kxMsgErrorAttributeReadOnly with name and default, or kxMsgErrorBadAttributeValue with
  /// name, value and data type, where a refusal is to be raised; 457 for an enumeration that lists
  /// a value twice; 91 as the properties.
  [[nodiscard]] bool ValidateValue(const std::string& value, Refusal refusal, ReadOnlyRule rule);

 private:
  [[nodiscard]] bool IsAccepted(const std::string& value, std::string_view dataType);
  [[nodiscard]] bool IsEnumerated(const std::string& value);

  SharedContext context_;  // keeps the schema
  dom::Node attributeType_;
  dom::Node declaration_;
  runtime::Counted<runtime::KeyedCollection<std::string>> enumeration_;
};

}  // namespace kx::schema
