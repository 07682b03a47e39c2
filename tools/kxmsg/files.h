// From a name on the command line to a message, a schema's location, or a file to write.
//
// A name is a file of the current folder and goes to the library as a complete location. What the
// library cannot be asked for by location is read and written here, by the same code page: a file
// whose name has no extension (the library would add one), a path of more than 259 characters, a
// pipe.
#pragma once

#include "kxmessage/message.h"

#include "kxmsg/arguments.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace kxmsg {

class Console;

/// The name in messages: "standard input" for "-".
[[nodiscard]] std::string ShownName(std::string_view name);

/// Loads the message that `name` stands for. `warning` becomes what its user should know of the way
/// in which it is read, or empty, also when loading fails. Safe for threads, each with a name of
/// its own. Raises: kx::Error.
[[nodiscard]] kx::KXMessage LoadMessage(const std::string& name, const Arguments& arguments,
                                        std::string& warning);
/// The same; the warning is printed.
[[nodiscard]] kx::KXMessage LoadMessage(const std::string& name, const Arguments& arguments,
                                        Console& console);

/// Writes `message` to what `name` stands for: as the library saves it, or as UTF-8 to standard
/// output. Nothing of an existing regular file is lost when that fails. Warns of characters that
/// the code page of a file lacks. Raises: OutputFailure.
void SaveMessage(const kx::KXMessage& message, const std::string& name, const Arguments& arguments,
                 Console& console);

/// Writes a message that was changed back to its file, or to what -o names, if its text loads again
/// or --force is given. Raises: kx::Error of that load; as SaveMessage.
void SaveChange(const kx::KXMessage& message, const Arguments& arguments, Console& console);

/// The bytes of a file of the current folder, or of standard input for "-".
/// Raises: kx::Error, also when they are more than `most`.
[[nodiscard]] std::string ReadBytes(const std::string& name, std::size_t most);

/// The location of the schema that `name` stands for. Raises: kx::Error for standard input, and for
/// an existing file without extension.
[[nodiscard]] std::string SchemaLocation(const std::string& name, const Arguments& arguments);

/// A folder or URL as the library's options and settings take it: a relative folder becomes one of
/// the current folder.
[[nodiscard]] std::string BaseLocation(const std::string& name);

}  // namespace kxmsg
