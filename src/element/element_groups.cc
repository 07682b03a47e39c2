// The groups of an element type; see element_impl.h. Groups inside groups are neither counted nor
// searched.
#include "kxmessage/error_codes.h"

#include "core/msg_error.h"
#include "core/queries.h"
#include "element/element_impl.h"
#include "platform/dom/node_list.h"
#include "platform/xdr/typing.h"
#include "schema/declarations.h"

#include <string>

namespace kx::element {

using runtime::Counted;
using schema::ValidElementsImpl;

namespace {

// The name of an element that a group declares. Reading it can fail: it is that of a new one.
std::string NameOf(const ValidElementsImpl& elements, std::int32_t position) {
  return elements.Element(position)->Element().BaseName().value_or(std::string());
}

}  // namespace

std::int16_t ElementImpl::GroupNumber() const {
  const dom::Node parent = node_.ParentNode();
  if (!parent) return 0;
  const dom::Node parentType = xdr::Definition(parent);
  if (!parentType) return 0;
  const dom::Node group = schema::FindGroupOf(parentType, BaseName());
  if (!group) return 0;
  const dom::NodeList groups = schema::Groups(parentType);
  const std::int32_t count = groups.Length();
  std::int32_t position = 1;
  while (position < count && groups.Item(position - 1) != group) ++position;
  return core::SnapshotCount(position);
}

std::int16_t ElementImpl::NumberOfGroups() const {
  return core::SnapshotCount(schema::Groups(ElementType()).Length());
}

Counted<ValidElementsImpl> ElementImpl::KnownGroupElements(std::int16_t groupNumber) const {
  if (groupNumber < 1 || groupNumber > NumberOfGroups()) {
    core::RaiseMsgError(kxMsgErrorInvalidGroup);
  }
  return ElementsOf(schema::Groups(ElementType()).Item(groupNumber - 1));
}

Counted<ValidElementsImpl> ElementImpl::ElementsOf(const dom::Node& group) const {
  return runtime::MakeCounted<ValidElementsImpl>(context_, node_, group);
}

std::int16_t ElementImpl::CurrentGroup() const {
  const dom::NodeList groups = schema::Groups(ElementType());
  const std::int16_t count = core::SnapshotCount(groups.Length());
  for (std::int16_t group = 1; group <= count; ++group) {
    const Counted<ValidElementsImpl> elements = ElementsOf(groups.Item(group - 1));
    for (std::int32_t i = 1; i <= elements->Count(); ++i) {
      if (Exists(NameOf(*elements, i))) return group;
    }
  }
  return 0;
}

void ElementImpl::ReplaceGroup(std::int16_t groupNumber) const {
  const std::int16_t current = CurrentGroup();
  if (groupNumber == current) return;
  if (groupNumber < 1 || groupNumber > NumberOfGroups()) {
    core::RaiseMsgError(kxMsgErrorInvalidGroup);
  }
  const Counted<ValidElementsImpl> former = KnownGroupElements(current);
  context_->document.ValidateOnParse(false);
  // 1. All children of the former group go, however many must be there.
  for (std::int32_t i = 1; i <= former->Count(); ++i) {
    const dom::NodeList children = core::SelectNodes(node_, NameOf(*former, i));
    for (std::int32_t child = 0; child < children.Length(); ++child) {
      node_.RemoveChild(children.Item(child));
    }
  }
  // 2. One of each element of the new group comes, an optional one too.
  const Counted<ValidElementsImpl> next = KnownGroupElements(groupNumber);
  for (std::int32_t i = 1; i <= next->Count(); ++i) {
    AppendNew(context_->elementTypes.RequireElementType(NameOf(*next, i)));
  }
  // Deliberate: whatever it was before. An error above leaves it switched off, and what was done.
  context_->document.ValidateOnParse(true);
}

}  // namespace kx::element
