// Asking patterns of nodes: what selectNodes and selectSingleNode do.
//
// A text is compiled each time, unless the caller keeps a PatternCache; each message and each
// transform has one of its own, so shared schema documents are asked from many threads without
// locks.
#pragma once

#include "platform/dom/node.h"
#include "platform/dom/node_list.h"
#include "platform/patterns/pattern.h"
#include "platform/patterns/pattern_cache.h"
#include "platform/patterns/query_options.h"

#include <string_view>

namespace kx::patterns {

/// The nodes that `pattern` gives from `start`, in document order, each once. The list keeps what
/// it was given: later edits neither add nor remove members.
/// Raises: the run-time error 91 for a start of nothing.
[[nodiscard]] dom::NodeList SelectNodes(const dom::Node& start, const Pattern& pattern,
                                        const QueryOptions& options = {});
/// The first of those nodes; nothing when there is none.
[[nodiscard]] dom::Node SelectSingleNode(const dom::Node& start, const Pattern& pattern,
                                         const QueryOptions& options = {});

/// The same from the text of a pattern, which is read completely before anything is looked for.
/// Raises: E_INVALIDARG for null; E_FAIL for a text that is no pattern, saying where.
[[nodiscard]] dom::NodeList SelectNodes(const dom::Node& start, std::string_view text,
                                        const QueryOptions& options = {});
[[nodiscard]] dom::Node SelectSingleNode(const dom::Node& start, std::string_view text,
                                         const QueryOptions& options = {});
/// The same with the compiled form kept in `cache`.
[[nodiscard]] dom::NodeList SelectNodes(const dom::Node& start, std::string_view text,
                                        PatternCache& cache, const QueryOptions& options = {});
[[nodiscard]] dom::Node SelectSingleNode(const dom::Node& start, std::string_view text,
                                         PatternCache& cache, const QueryOptions& options = {});

/// The truth of a pattern at a node: of one that gives nodes, whether there are any.
[[nodiscard]] bool Holds(const dom::Node& node, const Pattern& condition,
                         const QueryOptions& options = {});
/// True when `pattern`, asked from some node above `node` (from the document for a leading slash),
/// gives it: how style sheets choose their templates.
[[nodiscard]] bool Matches(const dom::Node& node, const Pattern& pattern,
                           const QueryOptions& options = {});

}  // namespace kx::patterns
