// The children that a declaration allows.
#pragma once

#include "kxmessage/element_info.h"
#include "kxmessage/export.h"
#include "kxmessage/handle.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace kx {

/// The elements that an element type, or one group of it, declares: those directly in it, not those
/// of the groups inside. From KXMsgElement::KnownValidChildren; for one thread at a time.
class KX_EXPORT KXMsgValidElements : public Handle {
 public:
  using Iterator = EnumerationIterator<KXMsgElementInfo>;

  KXMsgValidElements() noexcept = default;        ///< Nothing.
  KXMsgValidElements(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)

  /// How many elements are declared.
  [[nodiscard]] std::int32_t Count() const;
  /// What the schema says of one of them, in a new object each time. `Key`: a position from 1 (a
  /// number, or a text that reads as one), or a name.
  /// Raises: kxMsgErrorNoChild with the key; the errors of building the element's minimum content.
  [[nodiscard]] KXMsgElementInfo Element(const Variant& Key) const;
  [[nodiscard]] KXMsgElementInfo operator[](const Variant& Key) const { return Element(Key); }
  /// True when an element of that name is declared. Raises: E_FAIL of the query for a name that
  /// cannot stand in one, such as a name with an apostrophe.
  [[nodiscard]] bool Exists(std::string_view Name) const;

  /// One KXMsgElementInfo for each declaration, in order; made by the first enumeration and kept.
  /// Raises: 6 for more than 32,767; as Element.
  [[nodiscard]] Iterator begin() const;
  [[nodiscard]] Iterator end() const noexcept { return {}; }

 private:
  friend class HandleAccess;
  explicit KXMsgValidElements(ObjectRef object) noexcept : Handle(std::move(object)) {}
};

}  // namespace kx
