// Reading schema nodes: a property by its name, an attribute with a default. Absent, unreadable and
// empty all give the default; that is how every rule of a schema is read.
#pragma once

#include "platform/dom/node.h"

#include <string>
#include <string_view>

namespace kx::schema {

/// The property of `node` that is called `propertyName`, as text: a member of the node's DOM
/// interface, in any letter case ("text", "baseName", "nodeName", ...; "" stands for "text").
/// `defaultText` when the node is nothing, when it has no such property, when the value has no text
/// form, and when the value is the empty text. Raises nothing.
[[nodiscard]] std::string NodeProperty(const dom::Node& node, std::string_view defaultText = {},
                                       std::string_view propertyName = {});

/// The text of the attribute of that written name ("minOccurs", "dt:type"), or `defaultText` when
/// it is absent or empty: NodeProperty of the attribute node.
/// Raises: the run-time error 91 for a node of nothing.
[[nodiscard]] std::string AttributeText(const dom::Node& node, std::string_view name,
                                        std::string_view defaultText = {});

}  // namespace kx::schema
