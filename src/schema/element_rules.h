// What an element type says of its elements, as the library reads it: exact texts with a default
// for each property. An attribute that is absent and one that is empty both give the default.
#pragma once

#include "platform/dom/node.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kx::schema {

/// True unless `content` is "empty" or "textOnly".
/// Deliberate: an absent `content` reads as "textOnly" here and as "empty" in CanHaveValue, so such
/// an element can have neither children nor a value.
[[nodiscard]] bool CanHaveChildren(const dom::Node& elementType);
/// True unless `content` is "eltOnly" or "empty".
[[nodiscard]] bool CanHaveValue(const dom::Node& elementType);
/// True for exactly the content "mixed".
[[nodiscard]] bool IsMixed(const dom::Node& elementType);
/// True when `model` is "closed". Deliberate: an absent `model` counts as closed.
[[nodiscard]] bool IsClosedModel(const dom::Node& elementType);
/// "dt:minLength" or "dt:maxLength"; -1 when it is absent. Raises: 13 for what is no number.
[[nodiscard]] double LengthBound(const dom::Node& elementType, std::string_view attribute);
/// The text of the first `description` child; "" when there is none.
[[nodiscard]] std::string DescriptionOf(const dom::Node& elementType);
/// The dt:type, or `defaultText`.
[[nodiscard]] std::string SchemaDataType(const dom::Node& elementType,
                                         std::string_view defaultText = "none");

/// How often `element` may, and must, occur in the element that it stands in, by that one's own
/// declaration of it. 1 where there is no such declaration: for the content root, below an element
/// without definition, for a child declared in a group. -1 for no maximum.
/// Note: any text but "*" counts by its leading number, 0 when it has none.
[[nodiscard]] std::int32_t MaxOccurrences(const dom::Node& element);
[[nodiscard]] std::int32_t MinOccurrences(const dom::Node& element);

}  // namespace kx::schema
