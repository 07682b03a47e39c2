// Message files: 8-bit text by the code page, read line by line and written with a line end. They
// may be read from http servers.
#pragma once

#include "core/environment.h"

#include <string>
#include <string_view>

namespace kx::core {

/// The text of the message file at a complete location: every CR and CR LF is a CR LF, and so is
/// the end of the last line; bytes are characters of the code page.
/// Raises: 53, 76, 75, 52, 55 of the file; 7 for one longer than a document may be; of a URL 53,
/// 70, 7, and 68 for a server that cannot be reached or gives no good answer.
[[nodiscard]] std::string ReadMessageFile(const Environment& environment,
                                          std::string_view location);

/// Writes `text` and a CR LF to the file at a complete location, by the code page: "?" for what
/// that lacks. A regular file is replaced as a whole or not at all.
/// Raises: 76, 75, 70, 61, 57, 52, 55 of the file.
void WriteMessageFile(const Environment& environment, std::string_view location,
                      std::string_view text);

/// Puts `text` and a CR LF into a new file in the folder of the process that nobody else may read,
/// and returns its name. Raises: 75 when there can be none; as WriteMessageFile.
[[nodiscard]] std::string WriteTemporaryFile(const Environment& environment, std::string_view text);

}  // namespace kx::core
