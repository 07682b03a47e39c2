// The answer to a query.
#pragma once

#include "kxmessage/element.h"
#include "kxmessage/export.h"
#include "kxmessage/handle.h"

#include <cstddef>
#include <cstdint>
#include <utility>

namespace kx {

/// The nodes that a query found, in document order. Its elements are those of the message itself:
/// what is changed through them changes the message. From KXMsgElement::FindElements; for one
/// thread at a time.
class KX_EXPORT KXMsgFoundElements : public Handle {
 public:
  using Iterator = EnumerationIterator<KXMsgElement>;

  KXMsgFoundElements() noexcept = default;        ///< Nothing.
  KXMsgFoundElements(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)

  /// How many nodes were found, of whatever kind.
  [[nodiscard]] std::int32_t Count() const;
  /// One of them, in a new object each time. `Key`: a position from 1 (a number, or a text that
  /// reads as one), or the name of the first one meant, letter case included.
  /// Raises: kxMsgErrorNoChild with the key; 91 for a node that has no declaration, such as an
  /// attribute or a text.
  [[nodiscard]] KXMsgElement Element(const Variant& Key) const;
  [[nodiscard]] KXMsgElement operator[](const Variant& Key) const { return Element(Key); }

  /// The found elements; their objects are made by the first enumeration and kept.
  /// Raises: 6 for more than 32,767; as Element.
  [[nodiscard]] Iterator begin() const;
  [[nodiscard]] Iterator end() const noexcept { return {}; }

 private:
  friend class HandleAccess;
  explicit KXMsgFoundElements(ObjectRef object) noexcept : Handle(std::move(object)) {}
};

}  // namespace kx
