// One attribute of an element.
#pragma once

#include "kxmessage/attribute_info.h"
#include "kxmessage/export.h"
#include "kxmessage/handle.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace kx {

/// One attribute of an element of a message. It keeps the attribute that it found when it was made:
/// one that was removed since still has its name and its value. From KXMsgAttributes; for one
/// thread at a time, with all that belongs to its message.
///
/// Note: an attribute with a prefix that was asked for by its position is looked for by its name
/// without prefix, as all are. Where there is none of that name, every member raises the run-time
/// error 91.
class KX_EXPORT KXMsgAttribute : public Handle {
 public:
  KXMsgAttribute() noexcept = default;        ///< Nothing.
  KXMsgAttribute(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)

  /// The name, without prefix.
  [[nodiscard]] std::string Name() const;
  /// The value: that of the data type, as text. A boolean reads "True" or "False".
  /// Raises: E_FAIL when the text is none of the type; 94 for an empty text where the type wants
  /// one, and for the types i8 and ui8, which have no typed value.
  [[nodiscard]] std::string Value() const;
  /// Replaces the value.
  /// Raises: kxMsgErrorAttributeReadOnly with name and default for a read-only attribute, whatever
  /// the value; kxMsgErrorBadAttributeValue with name, value and data type for an empty value of
  /// type nmtoken or nmtokens and for a value that its enumeration does not have (letter case does
  /// not count); 91 for an attribute that the schema does not declare; E_FAIL for a value that is
  /// none of the data type. Nothing has changed then.
  void Value(std::string_view NewValue) const;
  /// The text as the message has it, whatever the type: what Value takes. Beyond the published
  /// members, for tools: the text form of a date or of bytes does not lead back to them.
  [[nodiscard]] std::string TextValue() const;
  /// What the schema says of this attribute; the same object each time.
  [[nodiscard]] KXMsgAttributeInfo Info() const;

 private:
  friend class HandleAccess;
  template <typename T>
  friend class EnumerationIterator;
  explicit KXMsgAttribute(ObjectRef object) noexcept : Handle(std::move(object)) {}
};

}  // namespace kx
