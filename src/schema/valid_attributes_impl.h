// The object behind KXMsgValidAttributes.
#pragma once

#include "kxmessage/variant.h"

#include "core/snapshot.h"
#include "platform/dom/node.h"
#include "platform/dom/node_list.h"
#include "platform/runtime/counted.h"
#include "schema/attribute_info_impl.h"
#include "schema/element_context.h"

#include <cstdint>
#include <string_view>
#include <utility>

namespace kx::schema {

class ValidAttributesImpl final : public runtime::PlainObject, private runtime::LiveObject {
 public:
  /// The attributes declared directly in `elementType`.
  ValidAttributesImpl(SharedContext context, dom::Node elementType) noexcept
      : context_(std::move(context)), elementType_(std::move(elementType)) {}

  // See KXMsgValidAttributes.
  [[nodiscard]] std::int32_t Count() const;
  [[nodiscard]] bool Exists(std::string_view name) const;
  [[nodiscard]] runtime::Counted<AttributeInfoImpl> Attrib(const Variant& key) const;
  [[nodiscard]] const core::SharedSnapshot& EnumerationList();

 private:
  [[nodiscard]] const dom::NodeList& Declarations() const;
  [[nodiscard]] dom::Node FindDeclaration(const Variant& key) const;
  [[nodiscard]] runtime::Counted<AttributeInfoImpl> Describe(const dom::Node& declaration) const;

  SharedContext context_;
  dom::Node elementType_;
  mutable dom::NodeList declarations_;  // of a schema, which never changes
  core::SharedSnapshot snapshot_;
};

}  // namespace kx::schema
