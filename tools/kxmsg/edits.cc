// See edits.h.
#include "kxmsg/edits.h"

#include "kxmessage/attributes.h"
#include "kxmessage/error.h"
#include "kxmessage/error_codes.h"

namespace kxmsg {

namespace {

// A read-only attribute refuses every value, its own too: one that was just added has it already.
bool HasItAlready(const kx::KXMsgAttribute& added, const std::string& value) {
  const kx::KXMsgAttributeInfo info = added.Info();
  return info.ReadOnly() && info.DefaultValue() == value;
}

void RemoveElement(const kx::KXMsgElement& element) {
  const kx::KXMsgElement parent = element.Parent();
  if (!parent) {
    throw kx::Error(kx::kxMsgErrorRequiredChild, "kxmsg", "The content root cannot be removed.");
  }
  parent.RemoveChild(element);
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

void AddChild(const kx::KXMsgElement& parent, const std::string& name,
              const std::optional<std::string>& value) {
  const kx::KXMsgElement child = parent.AddChild(std::string_view(name));
  if (value) child.Value(*value);
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
