// The text form of nodes, as the `xml` property of the DOM gives it. Nothing is indented: white
// space comes from text nodes alone. A document is its children, each followed by CR LF; whatever
// else is written has no line end of its own after it.
//
// What lives elsewhere: where the text is collected and escaped (text_output.h), which prefixes
// are bound (namespace_context.h).
#pragma once

#include "platform/dom/cursor.h"

#include <string>

namespace kx::dom {

/// What happens to the encoding that an XML declaration names.
enum class DeclaredEncoding : unsigned char {
  kLeaveOut,  ///< only UTF-16 is written: the result is a text, whose encoding is not that of bytes
  kKeep,      ///< written as it is: for saving
};

/// The text of `node` and all below it, UTF-8, in one pass over the nodes that takes no more stack
/// for deep documents than for flat ones.
///
/// Names are written as they are spelled. An element whose prefix is not bound to its namespace by
/// its own attributes or by what this call has written around it gets the declaration right after
/// its name; then the prefixes of its attributes. A declaration is never written twice on one
/// element, and none can be written for a prefix without namespace. Attributes that a document
/// type declaration supplied are left out.
/// Raises: std::bad_alloc.
std::string WriteXml(const Cursor& node, DeclaredEncoding encoding = DeclaredEncoding::kLeaveOut);

}  // namespace kx::dom
