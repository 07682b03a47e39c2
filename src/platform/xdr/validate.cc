// Validation of a tree that is there: the validator is led over it in document order, without
// recursion. See typing.h.
#include "platform/dom/cursor.h"
#include "platform/dom/document_impl.h"
#include "platform/xdr/schema_collection.h"
#include "platform/xdr/typing.h"
#include "platform/xdr/validator.h"

#include <utility>

namespace kx::xdr {

namespace {

using dom::Cursor;
using dom::NodeType;

const ServedNamespaces* CollectionOf(const dom::DocumentData& data) {
  const dom::DocumentImpl* const owner = data.Owner();
  return owner == nullptr ? nullptr
                          : static_cast<const SchemaCollection*>(owner->settings.schemas.Get());
}

dom::ParseError ErrorOf(XdrCode code) {
  dom::ParseError error;
  SetXdrError(error, code);
  return error;
}

// Judges a text, CDATA section or entity reference; the other kinds are no content.
bool VisitText(Validator& validator, const dom::DocumentData& data, dom::NodeId id) {
  const dom::NodeRecord& record = data.Record(id);
  if (record.type == NodeType::kCData) {
    return validator.Text(data.OwnText(id), dom::TextForm::kExplicit);
  }
  const bool text = record.type == NodeType::kText || (record.type == NodeType::kEntityReference &&
                                                       (record.flags & dom::kInlineText) != 0);
  return !text || validator.Text(data.OwnText(id), dom::TextForm::kPlain);
}

// Leads the validator over the tree; false at the first failure.
bool Walk(Validator& validator, const dom::DocumentData& data, dom::NodeId root) {
  dom::NodeId at = root;
  while (true) {
    const dom::NodeRecord* record = &data.Record(at);
    const bool element = record->type == NodeType::kElement;
    const bool below = (record->flags & dom::kInlineText) == 0 &&
                       !dom::IsCharacterData(record->type) && record->first != dom::kNoNode;
    if (below) {
      if (element && !validator.StartElement(at)) return false;
      at = record->first;
      continue;
    }
    dom::LeafPlace place = dom::LeafPlace::kBegin;
    if (element ? !validator.Leaf(at, place) : !VisitText(validator, data, at)) return false;
    while (at != root && record->next == dom::kNoNode) {
      at = record->parent;
      record = &data.Record(at);
      if (record->type == NodeType::kElement && !validator.EndElement(at)) return false;
    }
    if (at == root) return true;
    at = record->next;
  }
}

// What the document knows; a namespace that its collection serves, it serves first.
GrowingSet KnownTo(const dom::DocumentData& data, const ServedNamespaces* served) {
  const SchemaSet* const known = SchemaSet::Of(data);
  if (known == nullptr || served == nullptr) return GrowingSet(known);
  GrowingSet set;
  for (std::uint32_t i = 0; i < known->Size(); ++i) {
    SchemaSet::Entry entry = known->At(i);
    SharedSchema other = served->Find(entry.uri);
    if (other) entry = {entry.uri, std::move(other), false};
    set.Add(std::move(entry));
  }
  return set;
}

enum class RootRule : unsigned char { kNeedsSchema, kNone };

dom::ParseError ValidateRoot(const dom::DocumentData& data, RootRule rule) {
  const ServedNamespaces* const served = CollectionOf(data);
  const Cursor root(&data, data.DocumentElement());
  if (!root) return ErrorOf(XdrCode::kNotOneRoot);
  GrowingSet set = KnownTo(data, served);
  Validator validator(set, served, Task::kCheck);
  validator.Begin(data);
  validator.NoteDataTypes();
  if (rule == RootRule::kNeedsSchema && !validator.IsServed(root.Id())) {
    // A document type counts as a schema, but not beside a collection.
    const bool typed = data.DocumentType() != nullptr && served == nullptr;
    return typed ? dom::ParseError() : ErrorOf(XdrCode::kNoSchemaForRoot);
  }
  if (Walk(validator, data, root.Id()) && validator.EndDocument()) return {};
  return validator.Error();
}

}  // namespace

dom::ParseError Validate(const dom::DocumentData& data) {
  return ValidateRoot(data, RootRule::kNeedsSchema);
}

dom::ParseError ValidateBound(const dom::DocumentData& data) {
  return ValidateRoot(data, RootRule::kNone);
}

dom::ParseError Validate(const dom::Document& document) { return Validate(document.Data()); }

}  // namespace kx::xdr
