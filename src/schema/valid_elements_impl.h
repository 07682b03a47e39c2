// The object behind KXMsgValidElements.
#pragma once

#include "kxmessage/variant.h"

#include "core/snapshot.h"
#include "platform/dom/node.h"
#include "platform/dom/node_list.h"
#include "platform/runtime/counted.h"
#include "schema/element_context.h"
#include "schema/element_info_impl.h"

#include <cstdint>
#include <string_view>
#include <utility>

namespace kx::schema {

class ValidElementsImpl final : public runtime::PlainObject, private runtime::LiveObject {
 public:
  /// The elements declared directly in `declaration`, an ElementType or a group, for children of
  /// `parent`.
  ValidElementsImpl(SharedContext context, dom::Node parent, dom::Node declaration) noexcept
      : context_(std::move(context)),
        parent_(std::move(parent)),
        declaration_(std::move(declaration)) {}

  // See KXMsgValidElements.
  [[nodiscard]] std::int32_t Count() const;
  [[nodiscard]] bool Exists(std::string_view name) const;
  [[nodiscard]] runtime::Counted<ElementInfoImpl> Element(const Variant& key) const;
  [[nodiscard]] const core::SharedSnapshot& EnumerationList();

 private:
  [[nodiscard]] const dom::NodeList& Declarations() const;
  [[nodiscard]] runtime::Counted<ElementInfoImpl> Describe(const dom::Node& declaration) const;
  [[nodiscard]] dom::Node FindDeclaration(const Variant& key) const;

  SharedContext context_;
  dom::Node parent_;
  dom::Node declaration_;
  mutable dom::NodeList declarations_;  // of a schema, which never changes
  core::SharedSnapshot snapshot_;
};

}  // namespace kx::schema
