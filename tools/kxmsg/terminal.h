// Whether people read what the program writes. The only question that the tool asks the system
// itself.
#pragma once

namespace kxmsg {

enum class Stream : unsigned char { kOutput, kError };

[[nodiscard]] bool IsTerminal(Stream stream);

/// Standard input and output carry bytes as they are. Does something on Windows only.
void UseBinaryStreams();

}  // namespace kxmsg
