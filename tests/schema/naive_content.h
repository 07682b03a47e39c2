// The minimum content of a new element, written down as the rules say it: slow, recursive, every
// question a pattern, nothing shared. The real construction is compared with it.
#pragma once

#include "platform/dom/document.h"
#include "platform/dom/node.h"

#include <cstddef>
#include <string>

namespace kx::schema {

/// What building an element of `elementType` must give: its XML text in no namespace, or the number
/// of the error (28 beyond `maxDepth`, 7 beyond `maxElements`).
struct NaiveContent {
  std::string xml;
  std::int64_t error = 0;
};
[[nodiscard]] NaiveContent BuildNaively(const dom::Document& schemaDocument,
                                        const dom::Node& elementType, std::size_t maxDepth,
                                        std::size_t maxElements);

}  // namespace kx::schema
