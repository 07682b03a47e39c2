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

// Judges a node that has no children to be walked: a text, or an element that keeps its text.
bool VisitLeaf(Validator& validator, const dom::DocumentData& data, dom::NodeId id) {
  const dom::NodeRecord& record = data.Record(id);
  if (record.type == NodeType::kElement) {
    bool textFits = true;
    return (record.flags & dom::kInlineText) != 0 ? validator.EndLeaf(id, textFits)
                                                  : validator.EndElement(id);
  }
  const bool plain = record.type == NodeType::kText || record.type == NodeType::kEntityReference;
  const bool text = plain ? record.type == NodeType::kText || (record.flags & dom::kInlineText) != 0
                          : record.type == NodeType::kCData;
  return !text ||
         validator.Text(data.OwnText(id), plain ? dom::TextForm::kPlain : dom::TextForm::kExplicit);
}

// Leads the validator over the tree; false at the first failure.
bool Walk(Validator& validator, const dom::DocumentData& data, dom::NodeId root) {
  dom::NodeId at = root;
  while (true) {
    const dom::NodeRecord* record = &data.Record(at);
    if (record->type == NodeType::kElement && !validator.StartElement(at)) return false;
    const bool below = (record->flags & dom::kInlineText) == 0 &&
                       !dom::IsCharacterData(record->type) && record->first != dom::kNoNode;
    if (below) {
      at = record->first;
      continue;
    }
    if (!VisitLeaf(validator, data, at)) return false;
    while (at != root && record->next == dom::kNoNode) {
      at = record->parent;
      record = &data.Record(at);
      if (record->type == NodeType::kElement && !validator.EndElement(at)) return false;
    }
    if (at == root) return true;
    at = record->next;
  }
}

enum class RootRule : unsigned char { kNeedsSchema, kNone };

dom::ParseError ValidateRoot(const dom::DocumentData& data, RootRule rule) {
  const ServedNamespaces* const served = CollectionOf(data);
  const Cursor root(&data, data.DocumentElement());
  if (!root) return ErrorOf(XdrCode::kNotOneRoot);
  const SchemaSet* const known = SchemaSet::Of(data);
  SchemaSet set;
  if (known != nullptr) {
    for (std::uint32_t i = 0; i < known->Size(); ++i) {
      SchemaSet::Entry entry = known->At(i);
      SharedSchema other = served != nullptr ? served->Find(entry.uri) : SharedSchema();
      if (other) entry = {entry.uri, std::move(other), false};
      set.Add(std::move(entry));
    }
  }
  Validator validator(set, served, Task::kCheck);
  validator.Begin(data);
  validator.NoteDataTypes();
  if (rule == RootRule::kNeedsSchema && !validator.IsServed(root.Id())) {
    return data.DocumentType() != nullptr ? dom::ParseError() : ErrorOf(XdrCode::kNoSchemaForRoot);
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
