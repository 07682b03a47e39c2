// Attributes: those that an element may and must have, those it is supplied with, and the IDs. See
// validator.h.
#include "platform/datatypes/lexical.h"
#include "platform/datatypes/name_text.h"
#include "platform/xdr/validator.h"

#include <utility>

namespace kx::xdr {

namespace {

using dom::NodeId;
using dom::NodeRecord;

constexpr std::size_t kMostSuppliedBytes = std::size_t{16} << 20U;

}  // namespace

Validator::AttributeName& Validator::LookUpAttribute(dom::NameId name) {
  Cover(attributeNames_, name);
  AttributeName& found = attributeNames_[name];
  const dom::NameTable& names = data_->Names();
  const dom::UriId uri = names.UriOf(name);
  if (names.PrefixText(name).empty()) {
    found.kind = AttributeKind::kPlain;
  } else if (uri == dom::kXmlUri) {
    found.kind = AttributeKind::kFree;
  } else if (IsDataTypeNamespace(names.UriText(uri))) {
    const bool typing = names.LocalText(name) == "dt";
    found.kind = typing ? AttributeKind::kDataType : AttributeKind::kFree;
  } else {
    found.kind = AttributeKind::kQualified;
  }
  return found;
}

bool Validator::CheckForeignAttributes(NodeId element, Frame& frame) {
  for (NodeId at = data_->Record(element).firstAttribute; at != dom::kNoNode;
       at = data_->Record(at).next) {
    if (AttributeOf(data_->Record(at).name).kind == AttributeKind::kDataType &&
        !ReadInstanceType(at, frame)) {
      return false;
    }
  }
  return true;
}

// Nothing types an element of a schema: there it declares.
bool Validator::ReadInstanceType(NodeId attribute, Frame& frame) {
  const dom::NameTable& names = data_->Names();
  const NodeId element = data_->Record(attribute).parent;
  if (IsSchemaNamespace(names.UriText(names.UriOf(data_->Record(element).name)))) return true;
  if (frame.instanceType != DataType::kNone) return Fail(XdrCode::kTwoDataTypes);
  const std::string_view name = TextOf(attribute);
  const auto type = datatypes::FindDataType(name);
  if (!type) return Fail(XdrCode::kUnknownDataType, {name});
  frame.instanceType = *type;
  return true;
}

bool Validator::IsPlainlyGood(NodeId attribute, const Frame& frame) {
  const dom::NameId name = data_->Record(attribute).name;
  if (name >= attributeNames_.size() || attributeNames_[name].owner != frame.name) return false;
  const std::uint32_t index = attributeNames_[name].index;
  const AttributeUse& use = frame.type->attributes[index];
  const bool good = !use.checked || (!use.fixed && IsQuicklyGood(attribute, use.rules->quick));
  if (good) seen_ |= std::uint64_t{1} << index;
  return good;
}

bool Validator::CheckAttributes(NodeId element, Frame& frame) {
  const ElementType& type = *frame.type;
  seen_ = 0;
  const bool many = type.attributes.size() > 64;
  if (many || !seenMore_.empty()) seenMore_.assign(many ? type.attributes.size() : 0, 0);
  std::size_t hint = 0;
  for (NodeId at = data_->Record(element).firstAttribute; at != dom::kNoNode;
       at = data_->Record(at).next) {
    if ((data_->Record(at).flags & dom::kNamespaceDeclaration) != 0) continue;
    if (!IsPlainlyGood(at, frame) && !CheckAttribute(at, frame, hint)) return false;
  }
  const bool complete = many ? !type.hasImplied : (type.implied & ~seen_) == 0;
  return complete || CheckImplied(element, frame);
}

// The attribute declared next is the first guess.
const AttributeUse* Validator::FindUse(dom::NameId name, AttributeName& known, const Frame& frame,
                                       std::size_t& hint) const {
  const dom::QName& qname = data_->Names().At(data_->Names().QNameOf(name));
  const AttributeUse* const next = frame.type->NextAttribute(qname.key, qname.length, hint);
  if (next != nullptr) return next;
  if (known.slot != frame.slot) {
    known.slot = frame.slot;
    const std::string_view local = data_->Names().LocalText(name);
    known.symbol = set_.At(frame.slot).schema->AttributeSymbol(qname.key, local);
  }
  return known.symbol == kNoSymbol ? nullptr : frame.type->FindAttribute(known.symbol, hint);
}

bool Validator::CheckAttribute(NodeId attribute, Frame& frame, std::size_t& hint) {
  const dom::NameId name = data_->Record(attribute).name;
  AttributeName& known = AttributeOf(name);
  if (known.kind != AttributeKind::kPlain) {
    if (known.kind == AttributeKind::kDataType) return ReadInstanceType(attribute, frame);
    return known.kind == AttributeKind::kFree || CheckQualified(attribute, frame, hint);
  }
  const AttributeUse* const use = FindUse(name, known, frame, hint);
  if (use == nullptr) {
    return task_ == Task::kBind || Fail(XdrCode::kUndeclaredAttribute, {NameText(attribute)});
  }
  if (seenMore_.empty()) {
    known.owner = frame.name;
    known.index = static_cast<std::uint32_t>(hint - 1);
  }
  return CheckUse(attribute, *use, hint - 1);
}

bool Validator::CheckUse(NodeId attribute, const AttributeUse& use, std::size_t index) {
  if (index < 64) seen_ |= std::uint64_t{1} << index;
  if (!seenMore_.empty()) seenMore_[index] = 1;
  if (!use.checked || task_ == Task::kBind) return true;
  return CheckValue(attribute, *use.rules,
                    use.fixed ? std::string_view(use.defaultText) : std::string_view());
}

bool Validator::CheckQualified(NodeId attribute, const Frame& frame, std::size_t& hint) {
  const dom::NameTable& names = data_->Names();
  const dom::NameId name = data_->Record(attribute).name;
  const std::string_view uri = names.UriText(names.UriOf(name));
  const std::string_view local = names.LocalText(name);
  const Symbol symbol = set_.At(frame.slot).schema->ForeignAttributeSymbol(uri, local);
  const AttributeUse* use = symbol == kNoSymbol ? nullptr : frame.type->FindAttribute(symbol, hint);
  if (use != nullptr) return CheckUse(attribute, *use, hint - 1);
  if (task_ == Task::kBind) return true;
  const std::uint32_t slot = FindSlot(uri);
  const bool extras = frame.type->TakesExtras();
  const bool openText = frame.type->open && frame.type->content == Content::kTextOnly;
  if (slot == SchemaSet::kNone && (extras || openText)) return true;
  const AttributeType* type =
      slot != SchemaSet::kNone && extras ? set_.At(slot).schema->FindAttributeType(local) : nullptr;
  if (type == nullptr) return Fail(XdrCode::kUndeclaredAttribute, {NameText(attribute)});
  return CheckValue(attribute, *type->rules, {});
}

bool Validator::CheckValue(NodeId attribute, const ValueRules& rules, std::string_view fixed) {
  const std::string_view text = TextOf(attribute);
  const ValueFailure failure = rules.Check(text);
  if (failure != ValueFailure::kNone) return FailValue(attribute, text, rules, failure);
  if (!fixed.empty() && !text.empty() && !datatypes::AreSameValue(rules.type, text, fixed)) {
    // White space only is empty for every type but string.
    const bool counts = rules.type <= DataType::kString || !datatypes::TrimSpace(text).empty();
    if (counts) return Fail(XdrCode::kNotTheFixedValue, {NameText(attribute)});
  }
  return !datatypes::IsIdType(rules.type) || NoteIds(text, rules.type, NameText(attribute));
}

bool Validator::FailValue(NodeId attribute, std::string_view text, const ValueRules& rules,
                          ValueFailure failure) {
  if (failure == ValueFailure::kSeveralNames) return Fail(XdrCode::kSeveralNames);
  if (failure == ValueFailure::kBadName) return Fail(XdrCode::kBadNameStart);
  if (failure == ValueFailure::kType && datatypes::IsRichType(rules.type)) {
    return Fail(XdrCode::kDataTypeParse, {text, datatypes::DataTypeName(rules.type)});
  }
  return Fail(XdrCode::kBadAttributeValue, {NameText(attribute)});
}

// What is required and missing, and what is supplied.
bool Validator::CheckImplied(NodeId element, const Frame& frame) {
  const std::vector<AttributeUse>& uses = frame.type->attributes;
  const bool many = uses.size() > 64;
  for (std::size_t i = 0; i < uses.size(); ++i) {
    if (many ? seenMore_[i] != 0 : (seen_ >> i & 1U) != 0) continue;
    const AttributeUse& use = uses[i];
    if (use.required && use.defaultText.empty() && task_ != Task::kBind) {
      const std::string name = use.prefix.empty() ? use.name : use.prefix + ":" + use.name;
      return Fail(XdrCode::kMissingAttribute, {name});
    }
  }
  if (task_ == Task::kCheck) return true;
  for (std::size_t i = 0; i < uses.size(); ++i) {
    if (many ? seenMore_[i] != 0 : (seen_ >> i & 1U) != 0) continue;
    if (uses[i].defaultText.empty()) continue;
    supplied_ += uses[i].defaultText.size() + sizeof(NodeRecord);
    if (supplied_ > kMostSuppliedBytes && supplied_ / 32 > data_->Counters().textBytes) {
      dom::SetParseError(error_, dom::ParseCode::kTooLarge, {std::to_string(kMostSuppliedBytes)});
      return false;
    }
    SupplyAttribute(element, uses[i]);
  }
  return true;
}

void Validator::SupplyAttribute(NodeId element, const AttributeUse& use) {
  dom::NameTable& names = changes_->Names();
  const bool foreign = !use.uri.empty();
  const dom::NameId name =
      foreign ? names.InternName(use.prefix + ":" + use.name, names.InternUri(use.uri))
              : names.InternName(use.name, dom::kNoUri);
  changes_->SupplyAttribute(element, name, use.defaultText);
}

// IDs --------------------------------------------------------------------------------------------

bool Validator::NoteIds(std::string_view text, DataType type, std::string_view name) {
  if (type == DataType::kId) {
    const std::string_view id = datatypes::TrimSpace(text);
    if (id.empty() || ids_.emplace(id).second) return true;
    return Fail(XdrCode::kDuplicateId, {id});
  }
  for (std::string_view id = datatypes::TakeToken(text); !id.empty();
       id = datatypes::TakeToken(text)) {
    if (ids_.find(id) == ids_.end()) references_.push_back({std::string(name), std::string(id)});
  }
  return true;
}

bool Validator::EndDocument() {
  if (task_ == Task::kBind) return true;
  for (const Reference& reference : references_) {
    if (ids_.find(reference.id) != ids_.end()) continue;
    failedAtEnd_ = true;
    return Fail(XdrCode::kDanglingIdref, {reference.name, reference.id});
  }
  return true;
}

}  // namespace kx::xdr
