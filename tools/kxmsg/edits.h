// The edits that commands and scripts ask for, by the rules of the library: each raises what the
// library raises, and what was done before stays done.
#pragma once

#include "kxmessage/element.h"
#include "kxmessage/message.h"

#include "kxmsg/selection.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace kxmsg {

/// Gives every element of the selection, or the attribute of every one, the value.
void SetValues(const Selection& selection, const std::string& value);

/// Adds a child to `parent`, the only one that is declared when `name` is empty, and gives it the
/// value if there is one. Returns how many elements that made, its minimum content included.
std::size_t AddChild(const kx::KXMsgElement& parent, const std::string& name,
                     const std::optional<std::string>& value);

/// Puts a group in the place of the one that is there. Returns how many elements that made.
std::size_t ReplaceGroup(const kx::KXMsgElement& element, std::int16_t number);

/// Gives `element` the attribute: adds it where it is absent, and sets the value if there is one.
void PutAttribute(const kx::KXMsgElement& element, const std::string& name,
                  const std::optional<std::string>& value);

/// Removes what was selected, the last one first: what stands in another one that was selected
/// goes before that. Raises: kxMsgErrorRequiredChild, with a text of its own, for the content root.
void Remove(const Selection& selection);

}  // namespace kxmsg
