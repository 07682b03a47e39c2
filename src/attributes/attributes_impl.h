// The objects behind KXMsgAttributes and KXMsgAttribute: views of an element's attributes in the
// DOM. Neither holds data of its own.
#pragma once

#include "kxmessage/variant.h"

#include "core/snapshot.h"
#include "platform/dom/attribute_map.h"
#include "platform/dom/node.h"
#include "platform/runtime/counted.h"
#include "schema/attribute_info_impl.h"
#include "schema/element_context.h"
#include "schema/valid_attributes_impl.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace kx::runtime {
struct PositionOrName;
}

namespace kx::attributes {

class AttributeImpl final : public runtime::PlainObject, private runtime::LiveObject {
 public:
  /// `attribute` may be nothing. It is not looked for again.
  AttributeImpl(schema::SharedContext context, dom::Node elementType, dom::Node attribute) noexcept
      : context_(std::move(context)),
        elementType_(std::move(elementType)),
        attribute_(std::move(attribute)) {}

  // See KXMsgAttribute.
  [[nodiscard]] std::string Name() const;
  [[nodiscard]] std::string Value() const;
  void Value(const std::string& value);
  [[nodiscard]] std::string TextValue() const;
  [[nodiscard]] const runtime::Counted<schema::AttributeInfoImpl>& Info();

 private:
  schema::SharedContext context_;
  dom::Node elementType_;
  dom::Node attribute_;
  runtime::Counted<schema::AttributeInfoImpl> info_;
};

class AttributesImpl final : public runtime::PlainObject, private runtime::LiveObject {
 public:
  AttributesImpl(schema::SharedContext context, const dom::Node& element, dom::Node elementType);

  // See KXMsgAttributes.
  [[nodiscard]] const runtime::Counted<schema::ValidAttributesImpl>& KnownValidAttributes();
  runtime::Counted<AttributeImpl> AddAttribute(const std::string& name, std::string& value);
  void RemoveAttribute(const Variant& key);
  [[nodiscard]] std::int32_t Count() const;
  [[nodiscard]] runtime::Counted<AttributeImpl> LookupAttribute(const Variant& key);
  [[nodiscard]] bool Exists(std::string_view name) const;
  [[nodiscard]] const core::SharedSnapshot& EnumerationList();

 private:
  [[nodiscard]] bool FirstAttributeIsNameless() const;
  [[nodiscard]] runtime::Counted<AttributeImpl> AttributeAt(const runtime::PositionOrName& place,
                                                            const Variant& key) const;
  [[nodiscard]] runtime::Counted<AttributeImpl> AttributeNamed(const std::string& name,
                                                               const Variant& key);
  [[nodiscard]] bool IsKnown(std::string_view name);
  [[nodiscard]] dom::Node FindByBaseName(const dom::Node& item) const;
  [[nodiscard]] runtime::Counted<AttributeImpl> Wrap(dom::Node attribute) const;
  [[nodiscard]] core::SharedSnapshot BuildAttributeSnapshot() const;

  schema::SharedContext context_;
  dom::Node element_;
  dom::Node elementType_;
  dom::AttributeMap map_;
  runtime::Counted<schema::ValidAttributesImpl> validAttributes_;
  core::SharedSnapshot snapshot_;
};

}  // namespace kx::attributes
