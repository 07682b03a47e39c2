// New elements with the minimum content that their declaration demands: every mandatory child,
// recursively, and every attribute that is required or has a default. Text is never filled in.
//
// The order is fixed: the mandatory members of the first group, the attributes, the mandatory
// direct children, each in the order of the schema. One instance satisfies a declaration, whatever
// its numbers; only the exact text "0" of minOccurs makes a child optional.
//
// The construction uses no stack by the depth of what it builds, and is bounded in depth, number of
// elements and amount of text, because a few lines of schema can demand a content without end.
#pragma once

#include "platform/dom/document.h"
#include "platform/dom/node.h"
#include "schema/element_type_index.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kx::host {
class Host;
}

namespace kx::schema {

/// What bounds the content of one new element.
struct ContentLimits {
  std::size_t maxElements = 100'000;                  ///< the new element included
  std::uint32_t maxDepth = 1000;                      ///< the new element counts as 1
  std::size_t maxTextBytes = std::size_t{64} << 20U;  ///< names and values of attributes
};

/// How an element is built: its bounds, and the host whose user interface gets a breath after each
/// declaration that gave something; null for none.
struct ContentBuild {
  ContentLimits limits = {};
  host::Host* host = nullptr;
};

/// A new element, detached and empty: its tag is the `name` of `elementType`, its namespace that of
/// `parent` in lower case. Without parent it is "x-schema:" followed by `schemaName`, or, when that
/// is empty, by the URL of the document that `elementType` belongs to, in lower case.
/// Raises: the run-time error 91 for an element type of nothing or without name; DomError for a
/// name that is none.
[[nodiscard]] dom::Node CreateTypedElement(const dom::Document& document, const dom::Node& parent,
                                           const dom::Node& elementType,
                                           std::string_view schemaName);

/// A new attribute, detached: its name is that of `attributeType`, its namespace by the rule of
/// CreateTypedElement. Its text is the `default` of `attributeType`, else that of
/// `attributeDeclaration`, else, for the dt:type "enumeration", the first of the dt:values.
/// Raises: as CreateTypedElement.
/// Note: the type's default comes first here, the declaration's in what is told of an attribute.
[[nodiscard]] dom::Node CreateDefaultAttribute(const dom::Document& document,
                                               const dom::Node& parent,
                                               const dom::Node& attributeType,
                                               const dom::Node& attributeDeclaration,
                                               std::string_view schemaName);

/// A new element of `elementType` with its minimum content, detached. `parent` gives the namespace
/// and may be nothing; `schemaName` is empty except for a message's content root.
/// Raises: kxMsgErrorUnknownAttribute with the name of an attribute type that is not declared, also
/// for an attribute that would not be created; the run-time error 5 of the collection for a
/// mandatory child whose type is not in `elementTypes`; 28 beyond the depth, as of a type that must
/// contain itself; 7 beyond the number of elements and the amount of text; DomError for names that
/// are none. What was built by then is dropped.
[[nodiscard]] dom::Node BuildDefaultContent(const dom::Document& document, const dom::Node& parent,
                                            const dom::Node& elementType,
                                            const ElementTypeIndex& elementTypes,
                                            std::string_view schemaName,
                                            const ContentBuild& build = {});

}  // namespace kx::schema
