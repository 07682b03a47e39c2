// One element of a message's content.
#pragma once

#include "kxmessage/element_info.h"
#include "kxmessage/export.h"
#include "kxmessage/handle.h"
#include "kxmessage/valid_elements.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace kx {

class KXMsgFoundElements;

/// One element of a message's content, seen through a wrapper of its node. Each navigation makes a
/// new wrapper. It stays usable after its node was removed from the message, and keeps the content
/// alive. For one thread at a time, with all that belongs to its message.
class KX_EXPORT KXMsgElement : public Handle {
 public:
  using Iterator = EnumerationIterator<KXMsgElement>;

  KXMsgElement() noexcept = default;        ///< Nothing.
  KXMsgElement(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)

  // Navigation -----------------------------------------------------------------------------------

  /// The element that this one stands in; nothing for the content root.
  /// Raises: 91 for an element that was removed.
  [[nodiscard]] KXMsgElement Parent() const;
  /// One child. `Key`: a position from 1 (a number, or a text that reads as one), or else an XSL
  /// Pattern, most often a plain name, which gives the first node that it finds.
  /// Raises: kxMsgErrorNoChild with the key, for a position outside and for a name of which there
  /// is no child; 91 for a position beyond the last element but not beyond the last node, and for
  /// a node without declaration; E_FAIL for what is no pattern.
  /// Note: a name of which there is no child, but which the schema declares with minOccurs "0" or
  /// maxOccurs "*", is not missing: reading it appends a child with its minimum content.
  [[nodiscard]] KXMsgElement ChildElements(const Variant& Key) const;
  [[nodiscard]] KXMsgElement operator[](const Variant& Key) const { return ChildElements(Key); }
  /// The number of child elements.
  [[nodiscard]] std::int32_t Count() const;
  /// True when the XSL Pattern `ChildName`, most often a name, finds a node from here.
  /// Raises: E_FAIL for what is no pattern.
  [[nodiscard]] bool Exists(std::string_view ChildName) const;
  /// The nodes that the XSL Pattern `XSLQueryString` finds from here. Include found_elements.h.
  /// Raises: E_FAIL for what is no pattern.
  [[nodiscard]] KXMsgFoundElements FindElements(std::string_view XSLQueryString) const;

  /// The child elements, in order. The first enumeration makes their list, which is kept until a
  /// child is added, removed, inserted or replaced through this object; a list of none is not kept.
  /// Raises: 6 for more than 32,767 children; as ChildElements.
  [[nodiscard]] Iterator begin() const;
  [[nodiscard]] Iterator end() const noexcept { return {}; }

  // What the schema says -------------------------------------------------------------------------

  /// What the schema says of this element; the same object each time.
  [[nodiscard]] KXMsgElementInfo Info() const;
  /// The child elements that the schema allows here; a new object each time.
  [[nodiscard]] KXMsgValidElements KnownValidChildren() const;

  // Value and text -------------------------------------------------------------------------------

  /// The value, of the type that the schema gives it; empty when there is none.
  /// Raises: kxMsgErrorNoValue when the schema allows no text here; E_FAIL when the text is none of
  /// the type.
  [[nodiscard]] Variant Value() const;
  /// Replaces the value. The child elements of a mixed element come back after the new text.
  /// Raises: kxMsgErrorNoValue when the schema allows no text here; kxMsgErrorInvalidValue with the
  /// data type when the value is none of it; 94 in its place for an element that had no type of its
  /// own until now, which then has it. Nothing but the data type has changed then.
  /// Note: lengths and enumerated values are not checked.
  void Value(const Variant& NewValue) const;
  /// The text of the element and all below it. Raises: kxMsgErrorNoValue as Value.
  [[nodiscard]] std::string TextValue() const;
  /// The XML text, with the namespaces in the form that does not depend on where schemas lie
  /// ("ref-schema:"). Raises: kxMsgErrorNoSchema for an element with a namespace that is no schema.
  [[nodiscard]] std::string XML() const;

 private:
  friend class HandleAccess;
  template <typename T>
  friend class EnumerationIterator;
  explicit KXMsgElement(ObjectRef object) noexcept : Handle(std::move(object)) {}
};

}  // namespace kx
