// The attributes that an element type declares.
#pragma once

#include "kxmessage/attribute_info.h"
#include "kxmessage/export.h"
#include "kxmessage/handle.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace kx {

/// The attributes that an element's type declares, whether the element has them or not. From
/// KXMsgAttributes::KnownValidAttributes; for one thread at a time.
class KX_EXPORT KXMsgValidAttributes : public Handle {
 public:
  using Iterator = EnumerationIterator<KXMsgAttributeInfo>;

  KXMsgValidAttributes() noexcept = default;        ///< Nothing.
  KXMsgValidAttributes(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)

  /// How many attributes are declared.
  [[nodiscard]] std::int32_t Count() const;
  /// What the schema says of one of them, in a new object each time. `Key`: a position from 1 (a
  /// number, or a text that reads as one), or a name.
  /// Raises: kxMsgErrorNoAttribute with the key; E_FAIL of the query for a name that cannot stand
  /// in one, such as a name with a quotation mark.
  [[nodiscard]] KXMsgAttributeInfo Attrib(const Variant& Key) const;
  [[nodiscard]] KXMsgAttributeInfo operator[](const Variant& Key) const { return Attrib(Key); }
  /// True when an attribute of that name is declared. Raises: E_FAIL of the query for a name that
  /// cannot stand in one, such as a name with an apostrophe.
  [[nodiscard]] bool Exists(std::string_view Name) const;

  /// One KXMsgAttributeInfo for each declaration, in order; made by the first enumeration and kept.
  [[nodiscard]] Iterator begin() const;
  [[nodiscard]] Iterator end() const noexcept { return {}; }

 private:
  friend class HandleAccess;
  explicit KXMsgValidAttributes(ObjectRef object) noexcept : Handle(std::move(object)) {}
};

}  // namespace kx
