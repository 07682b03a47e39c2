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
#include <utility>

namespace kx::element {

using runtime::Counted;
using schema::ValidElementsImpl;

namespace {

// The names of the elements that a group declares, one after the other: reading one can fail.
class GroupNames {
 public:
  explicit GroupNames(Counted<ValidElementsImpl> elements)
      : elements_(std::move(elements)), declarations_(elements_->Declarations()) {}

  [[nodiscard]] std::int32_t Count() const { return declarations_.Length(); }
  [[nodiscard]] std::string At(std::int32_t index) const {
    const Counted<schema::ElementInfoImpl> info = elements_->Describe(declarations_.Item(index));
    return info->Element().BaseName().value_or(std::string());
  }

 private:
  Counted<ValidElementsImpl> elements_;
  dom::NodeList declarations_;
};

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
  return runtime::MakeCounted<ValidElementsImpl>(
      context_, node_, schema::Groups(ElementType()).Item(groupNumber - 1));
}

std::int16_t ElementImpl::CurrentGroup() const {
  const std::int16_t groups = NumberOfGroups();
  for (std::int16_t group = 1; group <= groups; ++group) {
    const GroupNames names(KnownGroupElements(group));
    for (std::int32_t i = 0; i < names.Count(); ++i) {
      if (Exists(names.At(i))) return group;
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
  const GroupNames former(KnownGroupElements(current));
  context_->document.ValidateOnParse(false);
  // 1. All children of the former group go, however many must be there.
  for (std::int32_t i = 0; i < former.Count(); ++i) {
    const dom::NodeList children = core::SelectNodes(node_, former.At(i));
    for (std::int32_t child = 0; child < children.Length(); ++child) {
      node_.RemoveChild(children.Item(child));
    }
  }
  // 2. One of each element of the new group comes, an optional one too.
  const GroupNames next(KnownGroupElements(groupNumber));
  for (std::int32_t i = 0; i < next.Count(); ++i) {
    AppendNew(context_->elementTypes.RequireElementType(next.At(i)));
  }
  // Deliberate: whatever it was before. An error above leaves it switched off, and what was done.
  context_->document.ValidateOnParse(true);
}

}  // namespace kx::element
