// Typed values: from the text of a node to a value and back. Where the text is and how it is
// stored is the business of whoever has the node.
//
// Twins: ReadTyped in typed_value.cc and WriteTyped in typed_write.cc; what a type reads is what it
// writes.
#pragma once

#include "kxmessage/variant.h"

#include "platform/datatypes/data_type.h"

#include <optional>
#include <string>
#include <string_view>

namespace kx::datatypes {

/// The value of a text that is not empty: numbers, dates, bytes; Null for i8 and ui8, which have no
/// value of their own; the code of a char; the text itself for the types that are text (number, uri
/// and uuid trimmed). Nothing when the text is none of the type.
[[nodiscard]] std::optional<Variant> ReadTyped(DataType type, std::string_view text);

/// The text by which `value` is stored in a node of `type`; kNone is a node without type. Nothing
/// when the value cannot be coerced to the type. A text must be one of the type and is taken as it
/// is; empty and Null give the empty text, which every type takes.
[[nodiscard]] std::optional<std::string> WriteTyped(DataType type, const Variant& value);

/// The text that a failure to write `value` quotes.
[[nodiscard]] std::string QuotedValue(const Variant& value);

}  // namespace kx::datatypes
