// The object behind KXMsgFoundElements.
#pragma once

#include "kxmessage/variant.h"

#include "core/snapshot.h"
#include "platform/dom/node_list.h"
#include "platform/runtime/counted.h"
#include "schema/element_context.h"

#include <cstdint>
#include <utility>

namespace kx::element {
class ElementImpl;
}

namespace kx::content {

class FoundElementsImpl final : public runtime::PlainObject, private runtime::LiveObject {
 public:
  FoundElementsImpl(schema::SharedContext context, dom::NodeList nodes) noexcept
      : context_(std::move(context)), nodes_(std::move(nodes)) {}

  // See KXMsgFoundElements.
  [[nodiscard]] std::int32_t Count() const { return nodes_.Length(); }
  [[nodiscard]] runtime::Counted<element::ElementImpl> FindFoundElement(const Variant& key) const;
  [[nodiscard]] core::SharedSnapshot EnumerationList();

 private:
  schema::SharedContext context_;
  dom::NodeList nodes_;
  core::SharedSnapshot snapshot_;
};

}  // namespace kx::content
