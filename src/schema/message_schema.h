// How a message comes to hold its schema: a new one from a schema that the caller names, a loaded
// one from what its content root is bound to.
#pragma once

#include "core/locations.h"
#include "platform/dom/document.h"
#include "platform/dom/node.h"
#include "platform/dom/node_list.h"
#include "platform/host/host.h"
#include "schema/default_content.h"
#include "schema/element_type_index.h"
#include "schema/schema_loader.h"

#include <string>
#include <string_view>

namespace kx::schema {

/// What a message holds of its schema.
struct MessageSchema {
  dom::Document schemaDocument;
  dom::Node rootElementType;  ///< of the content root
  ElementTypeIndex elementTypes;
  /// The element types at the schema's top, when the content root was chosen among them.
  dom::NodeList topLevelElementTypes;
};

/// What making a message of a schema needs from around it.
struct SchemaServices {
  const core::Locations& locations;
  const SchemaLoader& loader;
  host::Host& host;
  ContentLimits limits = {};
};

/// A message as its schema makes it, before it is parsed again from its own text.
struct NewMessage {
  dom::Document document;  ///< the envelope around the content root
  /// The namespace of the content root, which is lower-cased, and the schema that serves it: for a
  /// KnownSchemaProvider of that parse.
  std::string schemaUri;
  xdr::LoadedGroup schema;
};

/// Makes a message document of the schema at `schemaLocation`, which is completed against the
/// schema base: the content root with its minimum content, in the envelope. `rootName` names the
/// element type of the content root; empty stands for the last one at the schema's top.
/// The fields of `schema` are set one after the other and keep what they have got when it fails.
/// Raises, in this order: the errors of the settings; kxMsgErrorLoadingSchema when the schema is
/// not well-formed or cannot be read; kxMsgErrorDuplicateSchema; kxMsgErrorUnknownElement with
/// `rootName`; kxMsgErrorInvalidSchema when there is no element type at the top; as
/// BuildDefaultContent.
/// Note: the envelope's "schemaURL" is the location as the caller gave it; the namespace of the
/// content root has the completed one.
[[nodiscard]] NewMessage CreateFromSchema(const SchemaServices& services,
                                          std::string_view schemaLocation,
                                          std::string_view rootName, MessageSchema& schema);
/// The same with the text of the schema in the place of what stands at the location.
[[nodiscard]] NewMessage CreateFromSchemaText(const SchemaServices& services,
                                              std::string_view schemaLocation,
                                              std::string_view schemaText,
                                              std::string_view rootName, MessageSchema& schema);

/// Takes the schema of a loaded message from its content root: the document of its definition, the
/// index of that, and the definition itself as the root's element type.
/// Raises: the run-time error 91 for a root that is bound to no declaration;
/// kxMsgErrorDuplicateSchema; kxMsgErrorInvalidSchema for a schema that the index finds no element
/// type in (one written with prefixes).
void TakeSchemaOfRoot(const dom::Node& contentRoot, MessageSchema& schema);

}  // namespace kx::schema
