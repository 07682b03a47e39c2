// See schema_collection.h.
#include "platform/xdr/schema_collection.h"

#include "platform/datatypes/name_text.h"
#include "platform/dom/dom_error.h"

#include <utility>

namespace kx::xdr {

namespace {

std::string NormaliseSpace(std::string_view uri) {
  std::string normal;
  for (std::string_view token = datatypes::TakeToken(uri); !token.empty();
       token = datatypes::TakeToken(uri)) {
    if (!normal.empty()) normal += ' ';
    normal += token;
  }
  return normal;
}

[[noreturn]] void RaiseFail(std::string reason) {
  throw DomError(dom::kStatusFail, std::string(dom::kDomErrorSource), std::move(reason));
}

}  // namespace

void SchemaCollection::Put(std::string uri, SharedSchema schema) {
  const auto [entry, added] = index_.emplace(uri, entries_.size());
  if (added) {
    entries_.push_back({std::move(uri), std::move(schema)});
  } else {
    entries_[entry->second] = {std::move(uri), std::move(schema)};
  }
}

void SchemaCollection::Put(std::string uri, LoadedGroup loaded) {
  if (!loaded.group) RaiseFail(std::move(loaded.error.reason));
  Put(std::move(uri), loaded.group->members.front().schema);
}

void SchemaCollection::Add(std::string_view uri, std::string_view location) {
  SchemaText text = source_.Read(location, {});
  if (text.failure) RaiseFail(std::move(text.failure.reason));
  std::string name = NormaliseSpace(uri);
  LoadedGroup loaded = CompileGroup(name, std::move(text), source_, limits_);
  Put(std::move(name), std::move(loaded));
}

void SchemaCollection::Add(std::string_view uri, const dom::Document& document) {
  if (!document) dom::RaiseDomArgument();
  std::string name = NormaliseSpace(uri);
  LoadedGroup loaded = CompileTree(name, document, source_, limits_);
  Put(std::move(name), std::move(loaded));
}

void SchemaCollection::Add(std::string_view uri, SharedSchema schema) {
  Put(NormaliseSpace(uri), std::move(schema));
}

void SchemaCollection::Remove(std::string_view uri) {
  const auto found = index_.find(NormaliseSpace(uri));
  if (found == index_.end()) return;
  entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(found->second));
  index_.clear();
  for (std::size_t i = 0; i < entries_.size(); ++i) index_.emplace(entries_[i].uri, i);
}

dom::Document SchemaCollection::Get(std::string_view uri) const {
  const SharedSchema schema = Find(NormaliseSpace(uri));
  if (!schema) return {};
  dom::Document copy = schema->Document().Clone(dom::CloneDepth::kDeep);
  copy.SetUrl(schema->Url());
  copy.Freeze();
  return copy;
}

const std::string& SchemaCollection::NamespaceUri(std::int32_t index) const {
  if (index < 0 || index >= Length()) RaiseFail("The index is out of range.\r\n");
  return entries_[static_cast<std::size_t>(index)].uri;
}

void SchemaCollection::AddCollection(const SchemaCollection& other) {
  if (&other == this) return;
  for (const Entry& entry : other.entries_) Put(entry.uri, entry.schema);
}

SharedSchema SchemaCollection::Find(std::string_view uri) const {
  const auto found = index_.find(uri);
  return found == index_.end() ? SharedSchema() : entries_[found->second].schema;
}

}  // namespace kx::xdr
