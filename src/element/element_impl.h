// The object behind KXMsgElement: a wrapper of one element's node.
//
// Invariants:
//   - It refers to its node, its element type and the message's context, never to another wrapper
//     but the children in its own snapshot, so references cannot form a circle.
//   - What a wrapper may have but is seldom asked for (the information object, the snapshot) is
//     made when it is asked for.
#pragma once

#include "kxmessage/variant.h"

#include "core/snapshot.h"
#include "platform/dom/cursor.h"
#include "platform/dom/node.h"
#include "platform/runtime/counted.h"
#include "schema/element_context.h"
#include "schema/element_info_impl.h"
#include "schema/valid_elements_impl.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kx::element {

class ElementImpl final : public runtime::PlainObject, private runtime::LiveObject {
 public:
  /// A wrapper of `element` by its own definition.
  /// Raises: 91 for nothing, and for a node that has no declaration.
  [[nodiscard]] static runtime::Counted<ElementImpl> Wrap(const schema::SharedContext& context,
                                                          const dom::Node& element);
  /// The same by a given element type, a node of the context's schema document.
  [[nodiscard]] static runtime::Counted<ElementImpl> Wrap(const schema::SharedContext& context,
                                                          const dom::Node& element,
                                                          const dom::Node& elementType);

  /// `otherSchema` keeps `elementType` when that is not of the context's schema document.
  ElementImpl(schema::SharedContext context, dom::Node element, dom::Cursor elementType,
              xdr::SharedSchema otherSchema = nullptr) noexcept;

  [[nodiscard]] const schema::SharedContext& Context() const noexcept { return context_; }
  [[nodiscard]] const dom::Node& GetElementNode() const noexcept { return node_; }
  [[nodiscard]] dom::Node ElementType() const { return dom::Node(elementType_); }

  // See KXMsgElement.
  [[nodiscard]] runtime::Counted<ElementImpl> Parent() const;
  [[nodiscard]] runtime::Counted<ElementImpl> LookupChild(const Variant& key) const;
  [[nodiscard]] std::int32_t Count() const;
  [[nodiscard]] bool Exists(std::string_view childName) const;
  [[nodiscard]] const runtime::Counted<schema::ElementInfoImpl>& Info();
  [[nodiscard]] std::string Xml() const;
  [[nodiscard]] Variant Value() const;
  void Value(const Variant& value);
  [[nodiscard]] std::string TextValue() const;
  runtime::Counted<ElementImpl> AddChild(std::string& name);
  void RemoveChildKey(const Variant& key);
  void RemoveChild(const ElementImpl* argument);
  runtime::Counted<ElementImpl> InsertChild(const ElementImpl* argument);
  runtime::Counted<ElementImpl> ReplaceChild(const ElementImpl* argument, std::int32_t occurrence);
  [[nodiscard]] std::int16_t GroupNumber() const;
  [[nodiscard]] std::int16_t NumberOfGroups() const;
  [[nodiscard]] std::int16_t CurrentGroup() const;
  [[nodiscard]] runtime::Counted<schema::ValidElementsImpl> KnownGroupElements(
      std::int16_t groupNumber) const;
  void ReplaceGroup(std::int16_t groupNumber) const;

  /// Where the attribute collection is kept, once it was asked for.
  [[nodiscard]] ObjectRef& KeptAttributes() noexcept { return attributes_; }
  /// The list for an enumeration; kept when it is not empty.
  [[nodiscard]] core::SharedSnapshot EnumerationList();

 private:
  [[nodiscard]] static runtime::Counted<ElementImpl> WrapAs(const schema::SharedContext& context,
                                                            const dom::Node& element,
                                                            const dom::Node& declared);
  [[nodiscard]] std::string BaseName() const;
  [[nodiscard]] runtime::Counted<ElementImpl> ChildAt(std::int32_t zeroBased) const;
  [[nodiscard]] runtime::Counted<ElementImpl> ChildNamed(const std::string& name,
                                                         const Variant& key) const;
  [[nodiscard]] runtime::Counted<ElementImpl> CreateChild(const std::string& name) const;
  dom::Node AppendNew(const dom::Node& elementType) const;
  [[nodiscard]] std::string NameOfOnlyChild() const;
  void CheckCanHaveChildren() const;
  void CheckNotPresent(const dom::Node& declaration, const std::string& name) const;
  [[nodiscard]] dom::Node FindOccurrence(const std::string& name, std::int32_t occurrence) const;
  void CheckNotRequired(const dom::Node& declaration, const std::string& name) const;
  [[nodiscard]] bool IsForeign(const ElementImpl& child) const;
  void CheckForeign(const std::string& name) const;
  void Remove(const dom::Node& child);
  [[nodiscard]] runtime::Counted<schema::ValidElementsImpl> ElementsOf(
      const dom::Node& group) const;
  [[nodiscard]] core::SharedSnapshot BuildChildSnapshot() const;
  void CheckHasValue() const;
  [[nodiscard]] bool StoreValue(const Variant& value, bool typed) const;
  void RestoreChildren() const;

  schema::SharedContext context_;
  dom::Node node_;
  dom::Cursor elementType_;
  xdr::SharedSchema otherSchema_;
  runtime::Counted<schema::ElementInfoImpl> info_;
  ObjectRef attributes_;
  core::SharedSnapshot childSnapshot_;
};

}  // namespace kx::element
