// Settings, loading, copying. See document.h; document_create.cc makes nodes, document_save.cc
// writes bytes.
#include "platform/dom/document.h"

#include "platform/dom/dom_error.h"
#include "platform/dom/writer.h"

#include <memory>
#include <utility>

namespace kx::dom {

Document Document::Create() {
  return Document(new DocumentImpl());  // counted from here on
}

Document NewDomDocument() {
  Document document = Document::Create();
  document.PreserveWhiteSpace(true);
  document.ValidateOnParse(true);
  document.Async(false);
  return document;
}

void Document::RaiseNothing() { runtime::RaiseRuntimeError(runtime::kObjectNotSet); }

DocumentImpl& Document::Editable() const {
  DocumentImpl& impl = Impl();
  if (impl.current->Frozen()) RaiseDomFailure(DomCode::kAccessDenied);
  return impl;
}

// Loading ----------------------------------------------------------------------------------------

ParseOptions Document::Options() const {
  const DocumentSettings& settings = impl_->settings;
  ParseOptions options;
  options.whiteSpace =
      settings.preserveWhiteSpace ? WhiteSpace::kPreserve : WhiteSpace::kDropBetweenElements;
  options.maxDepth = settings.maxElementDepth;
  options.maxBytes = settings.maxBytes;
  options.maxEntityBytes = settings.maxEntityBytes;
  options.codec = settings.codec;
  // With a collection of schemas a document type declares entities and nothing else.
  if (settings.schemas) options.declaredAttributes = DeclaredAttributes::kIgnore;
  return options;
}

// Drops the content, then lets `parse` fill a new one. `location` is as given, `url` resolved.
template <class Parse>
bool Document::LoadBy(std::string_view location, std::string_view url, const Parse& parse) const {
  DocumentImpl& impl = Editable();
  const std::string given(location);
  impl.url.clear();
  impl.parseError = {};
  // A content that nobody has seen yet is filled as it is.
  if (!impl.current->IsPristine()) impl.Replace(std::make_unique<DocumentData>(&impl));
  ParseError error;
  std::unique_ptr<SchemaBinder> binder;
  const DocumentSettings& settings = impl.settings;
  if (settings.schemaService != nullptr &&
      (settings.validateOnParse || settings.resolveExternals)) {
    binder = settings.schemaService->NewBinder(
        {url.empty() ? settings.base : url, settings.schemas.Get(), settings.validateOnParse});
  }
  ParseOptions options = Options();
  options.binder = binder.get();
  bool loaded = false;
  try {
    loaded = parse(*impl.current, options, error);
  } catch (...) {  // no half-built content stays behind
    impl.Replace(std::make_unique<DocumentData>(&impl));
    throw;
  }
  if (loaded) {
    impl.url = url;
    return true;
  }
  impl.Replace(std::make_unique<DocumentData>(&impl));
  if (error.url.empty()) error.url = given;  // a schema has a location of its own
  impl.parseError = std::move(error);
  return false;
}

bool Document::LoadXml(std::string_view text) const {
  return LoadBy({}, {}, [text](DocumentData& data, const ParseOptions& options, ParseError& error) {
    return ParseText(data, text, options, error);
  });
}

bool Document::LoadBytes(std::string_view bytes) const {
  return LoadBy({}, {},
                [bytes](DocumentData& data, const ParseOptions& options, ParseError& error) {
                  return ParseBytes(data, bytes, options, error);
                });
}

bool Document::Load(std::string_view location) const {
  if (location.data() == nullptr) RaiseDomArgument();
  const ResourceReader* reader = Impl().settings.reader;
  static_cast<void>(Editable());
  const Resource resource =
      reader != nullptr ? reader->Read(location) : Resource{ParseCode::kObjectNotFound, {}, {}};
  const auto parse = [&](DocumentData& data, const ParseOptions& options, ParseError& error) {
    if (resource.failure == ParseCode::kNone) {
      return ParseBytes(data, resource.bytes, options, error);
    }
    SetParseError(error, resource.failure);
    return false;
  };
  return LoadBy(location, resource.url, parse);
}

bool Document::Load(const Document& other) const {
  if (!other) RaiseDomArgument();
  return LoadXml(other.SaveText());
}

std::optional<std::string> Document::Url() const {
  const std::string& url = Impl().url;
  return url.empty() ? std::nullopt : std::optional(url);
}

// Content ----------------------------------------------------------------------------------------

void Document::DocumentElement(const Node& element) const {
  if (!element) RaiseDomArgument();
  const NodeType type = element.Type();
  if (type != NodeType::kElement) {
    RaiseDomFailure(DomCode::kBadNodeType, {NodeTypeCapitals(type)});
  }
  const Node root = DocumentElement();
  if (root) {
    AsNode().ReplaceChild(element, root);
  } else {
    AsNode().AppendChild(element);
  }
}

Node Document::Doctype() const {
  Cursor at = Cursor(&Data(), kDocumentNode).FirstChild();
  while (at && at.Type() != NodeType::kDocumentType) at = at.Next();
  return Node(at);
}

Document Document::Clone(CloneDepth depth) const {
  const DocumentImpl& impl = Impl();
  Document copy = Create();
  copy.impl_->settings = impl.settings;
  if (depth == CloneDepth::kDeep) copy.impl_->current->CopyContent(*impl.current);
  return copy;
}

}  // namespace kx::dom
