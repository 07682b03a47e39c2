// See parse_binder.h.
#include "platform/xdr/parse_binder.h"

#include "platform/dom/cursor.h"
#include "platform/xdr/schema_collection.h"
#include "platform/xdr/schema_compiler.h"
#include "platform/xdr/typing.h"

#include <utility>

namespace kx::xdr {

bool ParseBinder::Begin(dom::DocumentData& data) {
  data_ = &data;
  validator_.Begin(data);
  return served_ != nullptr;  // any namespace may be one that the collection serves
}

dom::BindWish ParseBinder::DeclareNamespace(std::string_view uri) {
  if (NamesSchema(uri)) return LoadNamespace(uri) ? dom::BindWish::kBind : dom::BindWish::kFail;
  if (IsDataTypeNamespace(uri)) {
    validator_.NoteDataTypes();
    return dom::BindWish::kBind;
  }
  if (!IsSchemaNamespace(uri)) return dom::BindWish::kNothing;
  mayHoldSchemas_ = true;
  return dom::BindWish::kBind;
}

bool ParseBinder::LoadNamespace(std::string_view uri) {
  if (set_.Find(uri) != SchemaSet::kNone) return true;
  if (served_ != nullptr) {
    SharedSchema schema = served_->Find(uri);
    if (schema) {
      set_.Add({std::string(uri), std::move(schema), false});
      validator_.NoteSchema();
      return true;
    }
  }
  // One in the document must have come before, and a location has no such part.
  if (uri.find('#') != std::string_view::npos) return FailUnknown(uri);
  LoadedGroup loaded = provider_.Load(uri, base_);
  if (!loaded.group) {
    failedToLoad_ = true;
    error_ = std::move(loaded.error);
    return false;
  }
  set_.AddAll(loaded.group->known);
  validator_.NoteSchema();
  return true;
}

bool ParseBinder::FailUnknown(std::string_view uri) {
  failedToLoad_ = true;
  dom::SetParseError(error_, dom::ParseCode::kObjectNotFound);
  error_.url = uri.substr(kXSchema.size());
  return false;
}

bool ParseBinder::EndOfSchema(dom::NodeId element) {
  return validator_.EndElement(element) && TakeInlineSchema(element);
}

bool ParseBinder::LeafOfSchema(dom::NodeId element, dom::LeafPlace& place) {
  if (!validator_.Leaf(element, place)) return false;
  place = dom::LeafPlace::kEnd;
  return TakeInlineSchema(element);
}

// A Schema element that is not the document's serves "x-schema:#" and its name from here on; of
// two with one name the first counts.
bool ParseBinder::TakeInlineSchema(dom::NodeId element) {
  const dom::Cursor root(data_, element);
  if (root.Parent().Id() == dom::kDocumentNode || root.LocalName() != "Schema" ||
      !IsSchemaNamespace(root.NamespaceUri())) {
    return true;
  }
  SchemaCompiler compiler(root, dom::Document(), {});
  std::string uri = std::string(kXSchema) + '#';
  uri += compiler.Name();
  compiler.Resolve([this](std::string_view other) -> const Schema* {
    const std::uint32_t place = set_.Find(other);
    return place == SchemaSet::kNone ? nullptr : set_.At(place).schema.Get();
  });
  if (const auto& mistake = compiler.Mistake()) {
    failedInline_ = true;
    SetXdrError(error_, mistake->code, {mistake->argument});
    return false;
  }
  set_.Add({std::move(uri), compiler.Result(), true});
  validator_.NoteSchema();
  return true;
}

dom::BindPlace ParseBinder::Describe(dom::ParseError& error) {
  if (failedToLoad_ || failedInline_) {
    error = error_;
    return failedInline_ ? dom::BindPlace::kHere : dom::BindPlace::kOwn;
  }
  error = validator_.Error();
  return validator_.FailedAtEnd() ? dom::BindPlace::kEndOfText : dom::BindPlace::kHere;
}

runtime::Counted<const dom::SchemaKnowledge> ParseBinder::Knowledge() { return set_.Share(); }

std::optional<std::string> BindingService::FindDefault(const dom::DocumentData& data,
                                                       dom::NodeId element,
                                                       dom::NameId attribute) const {
  return DefaultOf(dom::Cursor(&data, element), attribute);
}

std::unique_ptr<dom::SchemaBinder> BindingService::NewBinder(
    const dom::BindRequest& request) const {
  // Nobody but this folder makes collections.
  const auto* const collection = static_cast<const SchemaCollection*>(request.holdings);
  return std::make_unique<ParseBinder>(
      provider_, collection, request.check ? Task::kBindAndCheck : Task::kBind, request.location);
}

}  // namespace kx::xdr
