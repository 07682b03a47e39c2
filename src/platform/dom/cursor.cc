// See cursor.h.
#include "platform/dom/cursor.h"

namespace kx::dom {

Cursor Cursor::FindAttribute(std::string_view qualifiedName) const noexcept {
  const std::uint32_t qname = data_->Names().FindQName(qualifiedName);
  if (qname == 0) return {};
  Cursor at = FirstAttribute();
  while (at && data_->Names().QNameOf(at.Name()) != qname) at = at.Next();
  return at;
}

Cursor Cursor::NextInTree(const Cursor& root) const noexcept {
  if (const Cursor child = FirstChild()) return child;
  Cursor at = *this;
  while (!(at == root)) {
    if (const Cursor next = at.Next()) return next;
    at = at.Parent();
  }
  return {};
}

void Cursor::AppendText(std::string& out) const {
  if (HasWholeText()) {
    out.append(OwnText());
    return;
  }
  for (Cursor at = FirstChild(); at; at = at.NextInTree(*this)) {
    if (at.IsText()) out.append(at.OwnText());
  }
}

}  // namespace kx::dom
