// See message_schema.h.
#include "schema/message_schema.h"

#include "core/envelope.h"
#include "core/load_error.h"
#include "core/msg_error.h"
#include "core/queries.h"
#include "platform/runtime/strings.h"
#include "platform/xdr/typing.h"
#include "schema/schema_index.h"

#include <utility>

namespace kx::schema {

namespace {

void ChooseRoot(std::string_view rootName, MessageSchema& schema) {
  if (!rootName.empty()) {
    dom::Node named = schema.elementTypes.GetElementType(rootName);
    if (!named) core::RaiseMsgError(kxMsgErrorUnknownElement, {rootName});
    schema.rootElementType = std::move(named);
    return;
  }
  static const patterns::Pattern topLevel = patterns::Compile("*/ElementType");
  schema.topLevelElementTypes = core::SelectNodes(schema.schemaDocument.AsNode(), topLevel);
  const std::int32_t count = schema.topLevelElementTypes.Length();
  if (count == 0) core::RaiseMsgError(kxMsgErrorInvalidSchema);
  schema.rootElementType = schema.topLevelElementTypes.Item(count - 1);
}

// A document with the content root alone.
dom::Document NewContent(const SchemaServices& services, const std::string& schemaName,
                         const MessageSchema& schema) {
  ContentTemplates& templates = SchemaIndex::Of(schema.schemaDocument.Data()).Templates();
  const ContentTemplates::Key key{schema.rootElementType.At().Id(), schemaName, services.limits};
  if (dom::Document copy = templates.Copy(key)) return copy;
  dom::Document document = dom::NewDomDocument();
  document.AsNode().AppendChild(BuildDefaultContent(document, {}, schema.rootElementType,
                                                    schema.elementTypes, schemaName,
                                                    {services.limits, &services.host}));
  templates.Keep(key, document);
  return document;
}

NewMessage Create(const SchemaServices& services, std::string_view schemaLocation,
                  const std::string& resolved, LoadedSchema loaded, std::string_view rootName,
                  MessageSchema& schema) {
  if (loaded.error) core::RaiseLoadError(kxMsgErrorLoadingSchema, loaded.error);
  schema.schemaDocument = std::move(loaded.document);
  IndexElementTypes(schema.schemaDocument, schema.elementTypes);
  ChooseRoot(rootName, schema);
  NewMessage message;
  message.document = NewContent(services, resolved, schema);
  core::EnsureEnvelope(message.document, schemaLocation, services.host);
  message.schemaUri = "x-schema:" + runtime::LCase(resolved);
  message.schema = std::move(loaded.compiled);
  return message;
}

}  // namespace

NewMessage CreateFromSchema(const SchemaServices& services, std::string_view schemaLocation,
                            std::string_view rootName, MessageSchema& schema) {
  const std::string resolved = services.locations.ResolveSchemaLocation(schemaLocation);
  return Create(services, schemaLocation, resolved, services.loader.Load(resolved), rootName,
                schema);
}

NewMessage CreateFromSchemaText(const SchemaServices& services, std::string_view schemaLocation,
                                std::string_view schemaText, std::string_view rootName,
                                MessageSchema& schema) {
  const std::string resolved = services.locations.ResolveSchemaLocation(schemaLocation);
  return Create(services, schemaLocation, resolved, services.loader.LoadText(schemaText, resolved),
                rootName, schema);
}

void TakeSchemaOfRoot(const dom::Node& contentRoot, MessageSchema& schema) {
  const dom::Node definition = xdr::Definition(contentRoot);
  schema.schemaDocument = definition.OwnerDocument();
  IndexElementTypes(schema.schemaDocument, schema.elementTypes);
  CheckNotEmpty(schema.elementTypes);
  schema.rootElementType = definition;
}

}  // namespace kx::schema
