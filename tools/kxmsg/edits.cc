// See edits.h.
#include "kxmsg/edits.h"

#include "kxmessage/attributes.h"
#include "kxmessage/error.h"
#include "kxmessage/error_codes.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace kxmsg {

namespace {

// A read-only attribute refuses every value, its own too: one that was just added has it already.
// Loading a message adds those of its schemas, but for an element of a second one whose attribute
// has the name of a read-only one of the first.
bool HasItAlready(const kx::KXMsgAttribute& added, const std::string& value) {
  return added.Info().ReadOnly() && added.TextValue() == value;
}

void RemoveElement(const kx::KXMsgElement& element) {
  const kx::KXMsgElement parent = element.Parent();
  if (!parent) {
    throw kx::Error(kx::kxMsgErrorRequiredChild, "kxmsg", "The content root cannot be removed.");
  }
  parent.RemoveChild(element);
}

// All of them, and what is below them. They are new, so that the library bounds their number.
std::size_t CountElements(std::vector<kx::KXMsgElement> open) {
  std::size_t count = 0;
  while (!open.empty()) {
    const kx::KXMsgElement element = std::move(open.back());
    open.pop_back();
    ++count;
    const std::int32_t children = element.Count();
    for (std::int32_t i = 1; i <= children; ++i) open.push_back(element.ChildElements(i));
  }
  return count;
}

// The library looks for what it removes by the name without prefix, which may be another
// attribute's.
void RemoveAttribute(const kx::KXMsgElement& element, const std::string& name) {
  if (name.find(':') != std::string::npos) {
    throw kx::Error(kx::kxMsgErrorUnknownAttribute, "kxmsg",
                    "An attribute with a prefix is none of the schema and cannot be removed.");
  }
  element.Attributes().RemoveAttribute(name);
}

}  // namespace

void SetValues(const Selection& selection, const std::string& value) {
  for (const kx::KXMsgElement& element : selection.elements) {
    if (selection.attribute.empty()) {
      element.Value(value);
    } else {
      PutAttribute(element, selection.attribute, value);
    }
  }
}

std::size_t AddChild(const kx::KXMsgElement& parent, const std::string& name,
                     const std::optional<std::string>& value) {
  const kx::KXMsgElement child = parent.AddChild(std::string_view(name));
  if (value) child.Value(*value);
  return CountElements({child});
}

std::size_t ReplaceGroup(const kx::KXMsgElement& element, std::int16_t number) {
  const bool isThere = element.CurrentGroup() == number;
  element.ReplaceGroup(number);
  if (isThere) return 0;
  // One child for each that the group declares, behind all others.
  const std::int32_t last = element.Count();
  const std::int32_t made = std::min(last, element.KnownGroupElements(number).Count());
  std::vector<kx::KXMsgElement> children;
  for (std::int32_t i = last - made + 1; i <= last; ++i) {
    children.push_back(element.ChildElements(i));
  }
  return CountElements(std::move(children));
}

void PutAttribute(const kx::KXMsgElement& element, const std::string& name,
                  const std::optional<std::string>& value) {
  const kx::KXMsgAttributes attributes = element.Attributes();
  // An attribute that is there and not declared is refused by AddAttribute, with a text that says
  // so.
  if (attributes.Exists(name) && attributes.KnownValidAttributes().Exists(name)) {
    if (value) attributes.Attrib(name).Value(*value);
    return;
  }
  std::string checked = value.value_or("");
  const kx::KXMsgAttribute added = attributes.AddAttribute(name, checked);
  if (value && !HasItAlready(added, *value)) added.Value(*value);
}

void Remove(const Selection& selection) {
  for (auto element = selection.elements.rbegin(); element != selection.elements.rend();
       ++element) {
    if (selection.attribute.empty()) {
      RemoveElement(*element);
    } else {
      RemoveAttribute(*element, selection.attribute);
    }
  }
}

}  // namespace kxmsg
