// Queries as the object model asks them: XSL Patterns over nodes that know their schemas, so that a
// comparison sees the types that a schema declares.
//
// Patterns know no schema and schemas know no pattern; the two meet here.
#pragma once

#include "platform/dom/node.h"
#include "platform/dom/node_list.h"
#include "platform/patterns/pattern.h"
#include "platform/patterns/query_options.h"

#include <string_view>

namespace kx::core {

/// The types and IDs that schemas and dt:dt attributes give the nodes of a document. Never changes;
/// for any thread.
[[nodiscard]] const patterns::NodeTyping& SchemaTyping() noexcept;

/// What every query of the object model is asked with.
[[nodiscard]] patterns::QueryOptions ObjectQueryOptions() noexcept;

/// The nodes that the pattern `text` gives from `start`, in document order; nothing is left of it
/// when the document changes later but the list itself. The compiled forms of the last few dozen
/// texts are kept, each thread its own.
/// Raises: E_INVALIDARG for null; E_FAIL for a text that is no pattern, saying where; the run-time
/// error 91 for a start of nothing.
[[nodiscard]] dom::NodeList SelectNodes(const dom::Node& start, std::string_view text);
/// The first of those nodes; nothing when there is none. Raises: as SelectNodes.
[[nodiscard]] dom::Node SelectSingleNode(const dom::Node& start, std::string_view text);

/// The same for a pattern that is compiled already, which costs no look-up.
/// Raises: the run-time error 91 for a start of nothing.
[[nodiscard]] dom::NodeList SelectNodes(const dom::Node& start, const patterns::Pattern& pattern);
[[nodiscard]] dom::Node SelectSingleNode(const dom::Node& start, const patterns::Pattern& pattern);

}  // namespace kx::core
