// Schemas as people and programs read them.
#pragma once

#include "kxmessage/schema.h"

#include <string>
#include <string_view>

namespace kxmsg {

/// "[0..*]"; empty for what occurs once.
[[nodiscard]] std::string OccurrenceText(std::string_view least, std::string_view most);

/// The lines that tell of one element type.
[[nodiscard]] std::string SchemaElementText(const kx::SchemaElement& element);

/// The same as a JSON object.
[[nodiscard]] std::string SchemaElementJson(const kx::SchemaElement& element);

}  // namespace kxmsg
