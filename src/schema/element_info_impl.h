// The object behind KXMsgElementInfo.
#pragma once

#include "platform/dom/node.h"
#include "platform/runtime/counted.h"
#include "schema/element_context.h"

#include <utility>

namespace kx::schema {

class ElementInfoImpl final : public runtime::PlainObject, private runtime::LiveObject {
 public:
  /// `element` may be detached; `elementType` is its ElementType.
  ElementInfoImpl(SharedContext context, dom::Node element, dom::Node elementType) noexcept
      : context_(std::move(context)),
        element_(std::move(element)),
        elementType_(std::move(elementType)) {}

  [[nodiscard]] const dom::Node& Element() const noexcept { return element_; }
  [[nodiscard]] const dom::Node& ElementType() const noexcept { return elementType_; }

 private:
  SharedContext context_;  // keeps the schema
  dom::Node element_;
  dom::Node elementType_;
};

}  // namespace kx::schema
