// The canonical form in which the W3C suite states what a document says: attributes in order of
// their names, references resolved, comments and declarations left out ("Canonical XML" of the
// suite's author), with the notations that the document declares (its second form).
#pragma once

#include "platform/dom/document_data.h"

#include <string>

namespace kx::test {

enum class Notations : unsigned char { kLeaveOut, kDeclare };

/// The first form, or with `kDeclare` the second one (the same for documents without notations).
[[nodiscard]] std::string CanonicalForm(const dom::DocumentData& document, Notations notations);

}  // namespace kx::test
