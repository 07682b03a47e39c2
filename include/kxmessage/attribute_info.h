// What the schema says of one attribute.
#pragma once

#include "kxmessage/export.h"
#include "kxmessage/handle.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace kx {

/// What the schema says of one attribute of an element: the `attribute` declaration in its element
/// type, and the AttributeType that this one names. Every property reads the schema when it is
/// asked. From KXMsgAttribute::Info and KXMsgValidAttributes; for one thread at a time.
///
/// An attribute that the schema does not declare, as an open model allows, has no information: the
/// properties raise the run-time error 91.
class KX_EXPORT KXMsgAttributeInfo : public Handle {
 public:
  KXMsgAttributeInfo() noexcept = default;        ///< Nothing.
  KXMsgAttributeInfo(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)

  /// The name of this attribute. Raises: 91 without an AttributeType.
  [[nodiscard]] std::string Name() const;
  /// True when `required` is exactly "yes": that of the declaration, or, where it is absent or
  /// empty, that of the AttributeType. Raises: 91 without a declaration.
  [[nodiscard]] bool Required() const;
  /// The `default` of the declaration, or, where it is absent or empty, that of the AttributeType;
  /// "" when neither has one. Raises: 91 without a declaration.
  [[nodiscard]] std::string DefaultValue() const;
  /// True when the attribute is required and has a default: it then never has another value.
  /// Raises: as Required and DefaultValue.
  [[nodiscard]] bool ReadOnly() const;
  /// The data type (dt:type of the AttributeType), "none" when there is none.
  /// Raises: 91 without an AttributeType.
  [[nodiscard]] std::string DataType() const;
  /// The values that an enumeration allows (dt:values), as they are parted by single blanks: two
  /// blanks in a row give an empty value. Raises: 91 without an AttributeType.
  [[nodiscard]] std::vector<std::string> Values() const;

 private:
  friend class HandleAccess;
  template <typename T>
  friend class EnumerationIterator;
  explicit KXMsgAttributeInfo(ObjectRef object) noexcept : Handle(std::move(object)) {}
};

}  // namespace kx
