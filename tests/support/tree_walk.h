// Walks a document's tree without recursion, for the writers that tests have of their own.
#pragma once

#include "platform/dom/cursor.h"

namespace kx::test {

/// Calls `enter` for each node below `root` in document order, and `leave` for each once all that
/// is below it has been entered. Attributes are not visited.
template <class Enter, class Leave>
void WalkBelow(dom::Cursor root, const Enter& enter, const Leave& leave) {
  dom::Cursor at = root.FirstChild();
  while (at) {
    enter(at);
    if (dom::Cursor child = at.FirstChild()) {
      at = child;
      continue;
    }
    leave(at);
    while (!at.Next()) {
      at = at.Parent();
      if (!at || at == root) return;
      leave(at);
    }
    at = at.Next();
  }
}

}  // namespace kx::test
