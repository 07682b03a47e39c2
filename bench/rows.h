// The rows of the table, by what they measure. To add one: write the library's task and the
// peers', and append a Row to a list here.
#pragma once

#include "kxmessage/message.h"

#include "contest.h"

#include <vector>

namespace kx::bench {

/// Rows of the document object model: parse, serialise, copy, walk.
std::vector<Row> DomRows();
/// Rows of binding and validation: bind, validate, schema.
std::vector<Row> XdrRows();
/// Rows of messages: load, xml, clone, init, child, childat, position, enumerate, each-at, value.
std::vector<Row> MessageRows();

/// Rows of editing: add, add-only, remove-at, insert, replace, attribute, group.
std::vector<Row> EditRows();
/// An empty message that finds the schemas beside the benchmarks; the first one that is filled by a
/// schema compiles that.
KXMessage NewMessage();

/// Rows of queries: query, path, path-list.
std::vector<Row> QueryRows();

}  // namespace kx::bench
