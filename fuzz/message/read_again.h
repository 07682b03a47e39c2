// What must hold of a message whatever was done to it.
#pragma once

#include "kxmessage/message.h"

namespace kx::fuzz {

/// Ends the process unless the text of the message's tree is read as the same tree, and is judged,
/// with validation, as the tree itself is.
void CheckReadsAgain(const KXMessage& message);

}  // namespace kx::fuzz
