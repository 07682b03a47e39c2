// What all element objects of one message share: the message document, the schema document, the
// index of its element types, and what the message stands on.
#pragma once

#include "core/environment.h"
#include "platform/dom/document.h"
#include "platform/runtime/counted.h"
#include "schema/default_content.h"
#include "schema/element_type_index.h"

namespace kx::schema {

/// See above. Never changed once it is shared; wrappers keep it, it keeps the documents.
struct ElementContext final : public runtime::PlainCounted {
  dom::Document document;
  dom::Document schemaDocument;
  ElementTypeIndex elementTypes;
  runtime::Counted<const core::Environment> environment;
};
using SharedContext = runtime::Counted<const ElementContext>;

/// How new elements of the message are filled.
[[nodiscard]] inline ContentBuild BuildBounds(const ElementContext& context) {
  const Options& options = context.environment->Settings();
  ContentBuild build;
  build.limits.maxElements = options.maxDefaultElements;
  build.limits.maxDepth = options.maxDefaultDepth;
  build.host = &context.environment->Host();
  return build;
}

}  // namespace kx::schema
