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

class KXMsgAttributes;
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

  // Attributes -----------------------------------------------------------------------------------

  /// The attributes; the same object each time. Include attributes.h.
  [[nodiscard]] KXMsgAttributes Attributes() const;

  // Editing the children -------------------------------------------------------------------------
  //
  // Each checks by the schema first and changes the message last, with one exception: what
  // RemoveChildKey looks for may be created by that. "Declared" means directly in the element type,
  // not in a group of it.

  /// Adds a new child with its minimum content behind all children, wherever the schema declares
  /// it. An empty name stands for the only child that is declared, and becomes its name.
  /// Raises: kxMsgErrorNoChildren when the content allows none; kxMsgErrorInvalidChild with the
  /// name when it is not declared, with "<Unspecified>" when the name is empty and not exactly one
  /// child is declared; kxMsgErrorOneElement for a second one where maxOccurs is "1" or absent (no
  /// other number is checked, and none for an empty name); 5 for a type that the schema of the
  /// message does not have; the errors of building the content; E_FAIL for a name that is no
  /// pattern.
  KXMsgElement AddChild(std::string& NodeName) const;
  /// The same for callers who know the name.
  KXMsgElement AddChild(std::string_view NodeName = {}) const {
    std::string name(NodeName);
    return AddChild(name);
  }
  /// Removes a child. `Key` as for ChildElements, which finds it, and may create it first.
  /// Raises: kxMsgErrorNoChild with the key, whatever it was that ChildElements raised;
  /// kxMsgErrorRequiredChild for the only child of a name whose minOccurs is "1" (or absent);
  /// E_INVALIDARG of the DOM when `Key` leads to an element that is no child.
  void RemoveChildKey(const Variant& Key) const;
  /// Removes the child `Child`. The result is always nothing.
  /// Raises: kxMsgErrorNoChildren when the content allows none; kxMsgErrorInvalidChild with the
  /// name of an element that is neither declared nor a child; kxMsgErrorRequiredChild as
  /// RemoveChildKey; E_INVALIDARG of the DOM for an element that is declared and no child; 91 for
  /// nothing.
  KXMsgElement RemoveChild(const KXMsgElement& Child) const;
  /// Adds a copy of `Child`, which may be of another message, behind all children, and returns it.
  /// Raises: kxMsgErrorNoChildren when the content allows none; kxMsgErrorWrongNameSpace with both
  /// names for another namespace, unless `model` is neither absent nor "closed" (nothing else is
  /// checked then); kxMsgErrorInvalidChild with the name when it is not declared;
  /// kxMsgErrorOneElement as AddChild; 91 for nothing, and, with the copy in place, for an element
  /// that has no declaration.
  /// Note: the message is not validated by this; it is when it is loaded.
  KXMsgElement InsertChild(const KXMsgElement& Child) const;
  /// Puts a copy of `ReplacementChild` in the place of the child number `Occurrence` of the same
  /// name, counted from 1, and returns it. Objects of the old child keep it.
  /// Raises: kxMsgErrorNoChildren; kxMsgErrorWrongNameSpace as InsertChild; kxMsgErrorNoChild with
  /// the name when it is not declared; kxMsgErrorInvalidOccurrence with number and name; 91 as
  /// InsertChild.
  KXMsgElement ReplaceChild(const KXMsgElement& ReplacementChild,
                            std::int32_t Occurrence = 1) const;

  // Groups ---------------------------------------------------------------------------------------
  //
  // The groups directly in an element type, numbered from 1 in the order of the schema. More than
  // 32,767 of them raise the run-time error 6.

  /// The number of the group, in the type of the parent, that declares this element; 0 for none.
  [[nodiscard]] std::int16_t GroupNumber() const;
  /// The number of groups that the type of this element has.
  [[nodiscard]] std::int16_t NumberOfGroups() const;
  /// The first group of which an element is there; 0 when there is none.
  /// Raises: the errors of building the minimum content of the elements that it looks for.
  [[nodiscard]] std::int16_t CurrentGroup() const;
  /// The elements that a group declares; a new object each time.
  /// Raises: kxMsgErrorInvalidGroup for a number outside.
  [[nodiscard]] KXMsgValidElements KnownGroupElements(std::int16_t GroupNumber) const;
  /// Removes all children that the current group declares, and adds one new child, with its minimum
  /// content, for each that the group `GroupNumber` declares, behind all others. Nothing happens
  /// when that is the current group.
  /// Raises: kxMsgErrorInvalidGroup for a number outside, and when no group is current; the errors
  /// of building the content, with what was done until then left as it is.
  /// Note: an enumeration of this object keeps showing the former children.
  void ReplaceGroup(std::int16_t GroupNumber) const;

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
