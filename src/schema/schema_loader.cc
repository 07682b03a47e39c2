// See schema_loader.h.
#include "schema/schema_loader.h"

#include "platform/xdr/parse_binder.h"
#include "platform/xdr/schema_names.h"

#include <utility>

namespace kx::schema {

namespace {

std::string UriOf(std::string_view location) {
  std::string uri(xdr::kXSchema);
  uri += location;
  return uri;
}

}  // namespace

// What compiles has been parsed. What does not is parsed as any document is, to tell a text that is
// no document from a schema with a mistake.
template <class Parse>
LoadedSchema SchemaLoader::LoadPlain(const Parse& parse) const {
  const xdr::BindingService service(provider_);
  const dom::Document document = dom::NewDomDocument();
  dom::DocumentSettings& settings = document.EditSettings();
  settings.maxBytes = limits_.maxBytes;
  settings.codec = limits_.codec;
  settings.schemaService = &service;
  LoadedSchema loaded;
  if (!parse(document)) {
    loaded.error = document.LastError();
    return loaded;
  }
  document.EditSettings().schemaService = nullptr;
  loaded.document = document;
  return loaded;
}

LoadedSchema SchemaLoader::Load(std::string_view location) const {
  xdr::LoadedGroup compiled = provider_.Load(UriOf(location), {});
  if (compiled.group) {
    dom::Document document = compiled.group->members.front().schema->Document();
    return {std::move(document), std::move(compiled), {}};
  }
  xdr::SchemaText text = source_.Read(location, {});
  if (text.failure) return {{}, {}, std::move(text.failure)};
  LoadedSchema loaded = LoadPlain([&](const dom::Document& document) {
    document.EditSettings().base = text.url;
    return document.LoadBytes(text.bytes);
  });
  if (!loaded.document) return loaded;
  loaded.document.SetUrl(text.url);
  loaded.document.Freeze();
  loaded.compiled = std::move(compiled);
  return loaded;
}

LoadedSchema SchemaLoader::LoadText(std::string_view text, std::string_view location) const {
  LoadedSchema loaded =
      LoadPlain([&](const dom::Document& document) { return document.LoadXml(text); });
  if (!loaded.document) return loaded;
  loaded.compiled = xdr::CompileTree(UriOf(location), loaded.document, source_, limits_);
  if (loaded.compiled.group) {
    loaded.document = loaded.compiled.group->members.front().schema->Document();
  } else {
    loaded.document.Freeze();
  }
  return loaded;
}

// A few letters, such as the sign of the unit angstrom, become others in lower case, and not back.
KnownSchemaProvider::KnownSchemaProvider(std::string uri, xdr::LoadedGroup schema,
                                         const xdr::SchemaProvider& others)
    : uri_(std::move(uri)), schema_(std::move(schema)), others_(others) {
  if (!schema_.group || xdr::IsSameNamespace(schema_.group->members.front().uri, uri_)) return;
  std::vector<xdr::SchemaGroup::Member> members = schema_.group->members;
  members.front().uri = uri_;
  schema_.group = runtime::MakeCounted<xdr::SchemaGroup>(std::move(members));
}

xdr::LoadedGroup KnownSchemaProvider::Load(std::string_view uri, std::string_view base) const {
  return xdr::IsSameNamespace(uri, uri_) ? schema_ : others_.Load(uri, base);
}

}  // namespace kx::schema
