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

bool Visit(Validator& validator, const Cursor& at) {
  if (at.IsElement()) return validator.StartElement(at.Id());
  if (!at.IsText()) return true;
  const bool plain = at.Type() == NodeType::kText;
  return validator.Text(at.OwnText(), plain ? dom::TextForm::kPlain : dom::TextForm::kExplicit);
}

// Leads the validator over the tree; false at the first failure.
bool Walk(Validator& validator, const Cursor& root) {
  Cursor at = root;
  while (true) {
    if (!Visit(validator, at)) return false;
    Cursor next = at.FirstChild();
    while (!next) {
      if (at.IsElement() && !validator.EndElement(at.Id())) return false;
      if (at == root) return true;
      next = at.Next();
      if (!next) at = at.Parent();
    }
    at = next;
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
  if (Walk(validator, root) && validator.EndDocument()) return {};
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
