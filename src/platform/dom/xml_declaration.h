// The XML declaration as a node: a processing instruction named "xml" that has its pseudo
// attributes as attributes beside its data. What lives here keeps the two in step; whatever is
// made of a declaration is one that a parse accepts.
#pragma once

#include "platform/dom/cursor.h"

#include <string_view>

namespace kx::dom {

/// True for an instruction named "xml".
[[nodiscard]] bool IsXmlDeclaration(const Cursor& at) noexcept;

/// Gives the instruction `id` the data `text` and the attributes that it says.
/// Raises: E_FAIL, with the reason that a parse would give, and changes nothing.
void SetXmlDeclaration(DocumentData& data, NodeId id, std::string_view text);

/// Gives the pseudo attribute `attribute` the value `text`, and its declaration the data of it.
/// Raises: as SetXmlDeclaration.
void SetXmlDeclarationValue(DocumentData& data, NodeId attribute, std::string_view text);

/// Takes a pseudo attribute out. Raises: as SetXmlDeclaration.
void RemoveXmlDeclarationAttribute(DocumentData& data, NodeId attribute);

}  // namespace kx::dom
