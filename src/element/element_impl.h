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

  /// The list for an enumeration; kept when it is not empty.
  [[nodiscard]] core::SharedSnapshot EnumerationList();
  /// A child was added, removed, inserted or replaced: the next enumeration makes its list anew.
  void ReleaseChildSnapshot() noexcept { childSnapshot_.Reset(); }

 private:
  [[nodiscard]] runtime::Counted<ElementImpl> ChildAt(std::int32_t zeroBased) const;
  [[nodiscard]] runtime::Counted<ElementImpl> ChildNamed(const std::string& name,
                                                         const Variant& key) const;
  [[nodiscard]] runtime::Counted<ElementImpl> CreateChild(const std::string& name) const;
  [[nodiscard]] core::SharedSnapshot BuildChildSnapshot() const;
  void CheckHasValue() const;
  [[nodiscard]] bool StoreValue(const Variant& value, bool typed) const;
  void RestoreChildren() const;

  schema::SharedContext context_;
  dom::Node node_;
  dom::Cursor elementType_;
  xdr::SharedSchema otherSchema_;
  runtime::Counted<schema::ElementInfoImpl> info_;
  core::SharedSnapshot childSnapshot_;
};

}  // namespace kx::element
