// The attributes of an element.
#pragma once

#include "kxmessage/attribute.h"
#include "kxmessage/export.h"
#include "kxmessage/handle.h"
#include "kxmessage/valid_attributes.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace kx {

/// The attributes of one element of a message, live. A declaration of the default namespace
/// ("xmlns") that is written first does not count as one. From KXMsgElement::Attributes; for one
/// thread at a time, with all that belongs to its message.
class KX_EXPORT KXMsgAttributes : public Handle {
 public:
  using Iterator = EnumerationIterator<KXMsgAttribute>;

  KXMsgAttributes() noexcept = default;        ///< Nothing.
  KXMsgAttributes(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)

  /// The attributes that the schema declares for the element; the same object each time.
  [[nodiscard]] KXMsgValidAttributes KnownValidAttributes() const;

  /// Adds the declared attribute `Name`, which the element must not have yet. An empty `Value`
  /// stands for the default, and becomes it.
  /// Raises: kxMsgErrorUnknownAttribute with the name when it is not declared;
  /// kxMsgErrorAttributeExists with the name; kxMsgErrorBadAttributeValue as KXMsgAttribute::Value;
  /// E_FAIL of the query for a name that cannot stand in one. Nothing is added then.
  /// Note: the new attribute has the text of its default, or the first value of its enumeration.
  /// `Value` is checked and not stored: set the Value of the result.
  KXMsgAttribute AddAttribute(std::string_view Name, std::string& Value) const;
  /// The same for callers who do not need to know the default.
  KXMsgAttribute AddAttribute(std::string_view Name, std::string_view Value = {}) const {
    std::string value(Value);
    return AddAttribute(Name, value);
  }
  /// Takes an attribute out. `Key` as for Attrib, which finds it, and may add it first.
  /// Raises: as Attrib; kxMsgErrorUnknownAttribute with the name when the schema does not declare
  /// it; kxMsgErrorAttributeRequired with the name when it is required or has a default; 91 when
  /// there is none.
  void RemoveAttribute(const Variant& Key) const;

  /// The number of attributes.
  [[nodiscard]] std::int32_t Count() const;
  /// One attribute, in a new object each time. `Key`: a position from 1 (a number, or a text that
  /// reads as one), or a name as it is written, prefix included.
  /// Raises: kxMsgErrorNoAttribute with the key for a position outside and for a name that is
  /// neither there nor declared.
  /// Note: a declared attribute that is not there is not missing: reading it adds it, with its
  /// default. When it cannot be added, the result is nothing.
  [[nodiscard]] KXMsgAttribute Attrib(const Variant& Key) const;
  [[nodiscard]] KXMsgAttribute operator[](const Variant& Key) const { return Attrib(Key); }
  /// True when the element has the attribute of that name, as it is written. Adds nothing.
  [[nodiscard]] bool Exists(std::string_view Name) const;

  /// The attributes, in order. The first enumeration makes their list, which is kept until
  /// RemoveAttribute of this object takes one out; values are read live.
  /// Raises: as Attrib.
  [[nodiscard]] Iterator begin() const;
  [[nodiscard]] Iterator end() const noexcept { return {}; }

 private:
  friend class HandleAccess;
  explicit KXMsgAttributes(ObjectRef object) noexcept : Handle(std::move(object)) {}
};

}  // namespace kx
