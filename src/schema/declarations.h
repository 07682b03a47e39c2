// From a name to its declaration in a schema: child declarations, attribute declarations, attribute
// types, groups.
//
// Each question is defined as an XSL Pattern with the name pasted in as it stands. A name that is
// an XML name takes a hashed look-up with the same result; any other text goes through the pattern
// engine, so that a name with an apostrophe raises the pattern's own error. Names compare exactly.
//
// All raise the run-time error 91 for a node of nothing, and the engine's E_FAIL for a name that
// makes the pattern a bad one.
#pragma once

#include "platform/dom/document.h"
#include "platform/dom/node.h"
#include "platform/dom/node_list.h"

#include <string_view>

namespace kx::schema {

/// Between which quotes a name is put in its pattern; tells which names are bad patterns.
enum class Quotes : unsigned char { kSingle, kDouble };

/// The `element` children of an ElementType or group ("element").
[[nodiscard]] dom::NodeList ElementDeclarations(const dom::Node& declarationNode);
/// The `attribute` children of an ElementType ("attribute").
[[nodiscard]] dom::NodeList AttributeDeclarations(const dom::Node& elementTypeNode);
/// The `group` children of an ElementType ("group").
[[nodiscard]] dom::NodeList Groups(const dom::Node& elementTypeNode);

/// The first `element` child of that type ("element[@type='name']"); nothing when there is none.
/// `declarationNode` is an ElementType or a group; declarations in groups below it are not found.
[[nodiscard]] dom::Node FindElementDeclaration(const dom::Node& declarationNode,
                                               std::string_view name,
                                               Quotes quotes = Quotes::kSingle);
/// The first one of them that is optional or repeatable by the exact texts of its occurrences
/// ("element[@type='name' && (@minOccurs='0' || @maxOccurs='*')]").
[[nodiscard]] dom::Node FindOptionalDeclaration(const dom::Node& elementTypeNode,
                                                std::string_view name);
/// The first `attribute` child of that type ("attribute[@type='name']").
[[nodiscard]] dom::Node FindAttributeDeclaration(const dom::Node& elementTypeNode,
                                                 std::string_view name,
                                                 Quotes quotes = Quotes::kSingle);
/// The first `group` child that directly declares the element ("group[element[@type='name']]").
[[nodiscard]] dom::Node FindGroupOf(const dom::Node& elementTypeNode, std::string_view name);

/// The AttributeType of that name ("AttributeType[@name='name']"): the one inside
/// `elementTypeNode`, unless that is nothing or has none, else the global one of the schema.
[[nodiscard]] dom::Node FindAttributeType(std::string_view name,
                                          const dom::Document& schemaDocument,
                                          const dom::Node& elementTypeNode);

/// True when a new element receives the attribute: it is required ("yes"), or has a default. What
/// the `attribute` declaration leaves out or empty is read from the AttributeType.
/// Note: an optional attribute with a default counts, and so does a required one without.
[[nodiscard]] bool IsAttributeFixed(const dom::Node& attributeDeclaration,
                                    const dom::Node& attributeType);

}  // namespace kx::schema
