// The ways to fill a message, and its text form; see message_impl.h.
#include "core/message/message_impl.h"

#include "core/envelope.h"
#include "core/load_error.h"
#include "core/message_files.h"
#include "core/msg_error.h"
#include "core/queries.h"
#include "core/text_form.h"
#include "platform/host/files.h"
#include "platform/runtime/error.h"
#include "platform/xdr/parse_binder.h"
#include "schema/element_context.h"
#include "schema/schema_loader.h"

#include <utility>

namespace kx::core {

namespace {

using runtime::Counted;

constexpr std::string_view kSchemaPrefix = "x-schema:";

dom::Node FirstChildElement(const dom::Node& node) {
  return dom::Node(node.At().FirstChildElement());
}

bool NamesSchema(const dom::Node& root) {
  return root && root.At().NamespaceUri().find(kSchemaPrefix) != std::string_view::npos;
}

}  // namespace

void MessageImpl::CheckInitialized() const {
  if (!initialized_) RaiseMsgError(kxMsgErrorNotInitialized);
}

const dom::Node& MessageImpl::Envelope() const {
  CheckInitialized();
  return envelope_;
}

// Filling ----------------------------------------------------------------------------------------

void MessageImpl::InitMessage(std::string_view schemaUrl, std::string_view rootElementName) {
  InitFrom(schemaUrl, rootElementName, xdr::SchemaCache::OfProcess());
}

// The message that the schema makes is parsed again from its own text, which binds and validates
// it. The schema is at hand already, so that parse looks nothing up for it.
void MessageImpl::InitFrom(std::string_view schemaUrl, std::string_view rootElementName,
                           xdr::SchemaCache& cache) {
  schema::NewMessage made = Create(schemaUrl, rootElementName, cache);
  document_ = environment_->NewDomDocument();
  envelope_ = made.document.DocumentElement();
  const schema::KnownSchemaProvider provider(std::move(made.schemaUri), std::move(made.schema),
                                             environment_->MessagesSchemas());
  if (!ParseBy(provider, made.document.Xml())) {
    RaiseLoadError(kxMsgErrorLoadingSchema, document_.LastError());
  }
  envelope_ = document_.DocumentElement();
  TakeContentRoot(FirstChildElement(envelope_));
}

schema::NewMessage MessageImpl::Create(std::string_view schemaUrl, std::string_view rootElementName,
                                       xdr::SchemaCache& cache) {
  const core::Locations locations = environment_->Locations();
  const schema::SchemaLoader loader(environment_->CallersSchemas(), cache,
                                    environment_->SchemaLimits());
  const schema::ContentLimits limits{environment_->Settings().maxDefaultElements,
                                     environment_->Settings().maxDefaultDepth};
  schema_.rootElementType = {};
  try {
    return schema::CreateFromSchema({locations, loader, environment_->Host(), limits}, schemaUrl,
                                    rootElementName, schema_);
  } catch (...) {
    // Once the root is chosen, the former document has made room for a new one.
    if (schema_.rootElementType) document_ = environment_->NewDomDocument();
    throw;
  }
}

bool MessageImpl::ParseBy(const xdr::SchemaProvider& provider, std::string_view text) {
  const xdr::BindingService binding(provider);
  document_.EditSettings().schemas = schemaCache_;
  document_.EditSettings().schemaService = &binding;
  // The document outlives the binding, whatever the parse comes to.
  struct Restore {
    const MessageImpl& message;
    ~Restore() { message.environment_->Adopt(message.document_); }
  } const restore{*this};
  return document_.LoadXml(text);
}

void MessageImpl::InitMessageFromString(std::string_view schemaText,
                                        std::string_view rootElementName) {
  const std::string name = WriteTemporaryFile(*environment_, schemaText);
  // Names of temporary files come again: what was compiled of this one must not.
  xdr::SchemaCache cache;
  InitFrom(name, rootElementName, cache);
  // Deliberate: a failure leaves the file behind, for whoever wants to see what was wrong.
  host::Files(environment_->Host(), environment_->Drives()).Kill(name);
}

void MessageImpl::LoadMessage(std::string_view location) {
  document_ = environment_->NewDomDocument();
  const std::string complete = environment_->Locations().ResolveMessageLocation(location);
  document_.EditSettings().base = complete;
  LoadText(ReadMessageFile(*environment_, complete));
}

void MessageImpl::LoadMessageFromString(std::string_view text) {
  document_ = environment_->NewDomDocument();
  LoadText(text);
}

void MessageImpl::LoadText(std::string_view text) {
  if (text.size() > environment_->Settings().maxDocumentBytes && !document_.LoadXml(text)) {
    RaiseLoadError(kxMsgErrorLoadingXML, document_.LastError());
  }
  const LoadableText loadable = LoadMessageText(text, defaultSchemaUrl_, *environment_);
  document_.EditSettings().schemas = schemaCache_;
  if (!document_.LoadXml(loadable.text)) {
    RaiseLoadError(kxMsgErrorLoadingXML, document_.LastError());
  }
  EnsureEnvelope(document_, loadable.schemaFile, environment_->Host());
  CheckEnvelope(document_);
  envelope_ = document_.DocumentElement();
  const dom::Node root = FirstChildElement(envelope_);
  if (!NamesSchema(root)) RaiseMsgError(kxMsgErrorNoSchema);
  TakeContentRoot(root);
}

void MessageImpl::LoadMessageFromElement(const element::ElementImpl& element) {
  const dom::Node& source = element.GetElementNode();
  const dom::Document copied = source.OwnerDocument();
  const dom::Node content = source.CloneNode(dom::CloneDepth::kDeep);
  document_ = copied.Clone(dom::CloneDepth::kDeep);
  environment_->Adopt(document_);
  document_.EditSettings().schemas = schemaCache_;
  const dom::Node envelope = SelectSingleNode(document_.AsNode(), kEnvelopeName);
  if (!envelope) runtime::RaiseRuntimeError(runtime::kObjectNotSet);
  if (const dom::Node former = FirstChildElement(envelope)) envelope.RemoveChild(former);
  envelope.AppendChild(content);
  envelope.SetAttribute("uniqueID", NewUniqueID(environment_->Host()));
  envelope.SetAttribute("timeStamp", CurrentTimeStamp(environment_->Host()));
  envelope.SetAttribute("msgType", content.BaseName().value_or(std::string()));
  envelope.SetAttribute("subType", "");
  envelope_ = envelope;
  const dom::Node root = FirstChildElement(envelope_);
  if (!NamesSchema(root)) RaiseMsgError(kxMsgErrorNoSchema);
  TakeContentRoot(root);
}

Counted<MessageImpl> MessageImpl::CloneMessage() const {
  auto clone = runtime::MakeCounted<MessageImpl>(environment_);
  clone->defaultSchemaUrl_ = defaultSchemaUrl_;
  clone->schemaCache_ = schemaCache_;
  clone->document_ = document_.Clone(dom::CloneDepth::kDeep);
  clone->envelope_ = clone->document_.DocumentElement();
  clone->TakeContentRoot(FirstChildElement(clone->envelope_));
  return clone;
}

void MessageImpl::TakeContentRoot(const dom::Node& root) {
  if (!root) runtime::RaiseRuntimeError(runtime::kObjectNotSet);
  schema::TakeSchemaOfRoot(root, schema_);
  auto context = runtime::MakeCounted<schema::ElementContext>();
  context->document = document_;
  context->schemaDocument = schema_.schemaDocument;
  context->elementTypes = schema_.elementTypes;
  context->environment = environment_;
  rootElement_ = element::ElementImpl::Wrap(context, root, schema_.rootElementType);
  initialized_ = true;
}

// Text -------------------------------------------------------------------------------------------

std::string MessageImpl::CanonicalXml() const {
  if (!envelope_) runtime::RaiseRuntimeError(runtime::kObjectNotSet);
  const std::string text = CanonicalizeSchemaRefs(envelope_.Xml(), {}, *environment_).text;
  const std::string encoding = envelope_.GetAttribute("encoding").value_or(std::string());
  std::string message;
  message.reserve(text.size() + encoding.size() + 40);
  message += R"(<?xml version="1.0" encoding=")";
  message += encoding;
  message += R"("?>)";
  message += text;
  return message;
}

std::string MessageImpl::Xml() const {
  CheckInitialized();
  return CanonicalXml();
}

void MessageImpl::SaveMessage(std::string_view destination) const {
  const std::string text = CanonicalXml();
  WriteMessageFile(*environment_, environment_->Locations().ResolveMessageLocation(destination),
                   text);
}

}  // namespace kx::core
