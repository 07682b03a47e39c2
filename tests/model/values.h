// The few data types of attributes whose values the model reads and checks.
#pragma once

#include <string>
#include <vector>

namespace kx::model {

/// The parts of a text between single blanks; none for the empty text.
[[nodiscard]] std::vector<std::string> SplitAtBlanks(const std::string& text);

[[nodiscard]] bool IsKnownType(const std::string& dataType);
/// The value of a text as a text. Raises: InvalidNull for an empty number or boolean,
/// UnsuitableText for what is none.
[[nodiscard]] std::string ReadTyped(const std::string& text, const std::string& dataType);
/// Raises: UnsuitableText for a text that is none of the type. The empty text suits every type, and
/// any name token an enumeration: its values are not looked at here.
void CheckTyped(const std::string& text, const std::string& dataType);

}  // namespace kx::model
