// See validator.h.
#include "platform/xdr/validator.h"

#include "platform/datatypes/lexical.h"
#include "platform/datatypes/name_text.h"
#include "platform/dom/cursor.h"

#include <algorithm>
#include <utility>

namespace kx::xdr {

namespace {

using dom::NodeId;
using dom::NodeRecord;

constexpr std::size_t kMostSuppliedBytes = std::size_t{16} << 20U;

bool IsAllSpace(std::string_view text) noexcept {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; });
}

bool TakesText(const ElementType& type) noexcept {
  return type.content == Content::kTextOnly || type.content == Content::kMixed;
}

bool IsIdType(DataType type) noexcept {
  return type == DataType::kId || type == DataType::kIdref || type == DataType::kIdrefs;
}

}  // namespace

bool Validator::Fail(XdrCode code, std::initializer_list<std::string_view> arguments) {
  SetXdrError(error_, code, arguments);
  return false;
}

// Names ------------------------------------------------------------------------------------------

std::uint32_t Validator::FindSlot(std::string_view uri) {
  std::uint32_t slot = set_.Find(uri);
  if (slot != SchemaSet::kNone || served_ == nullptr) return slot;
  SharedSchema schema = served_->Find(uri);
  if (schema) slot = set_.Add({std::string(uri), std::move(schema), false});
  return slot;
}

const Validator::ElementName& Validator::LookUp(dom::NameId name) {
  if (name >= elementNames_.size()) elementNames_.resize(name + 32);
  const dom::NameTable& names = data_->Names();
  ElementName found;
  found.slot = FindSlot(names.UriText(names.UriOf(name)));
  found.epoch = epoch_;
  found.state = NameState::kUnserved;
  if (found.slot != SchemaSet::kNone) {
    found.type = set_.At(found.slot).schema->FindElement(names.LocalText(name));
    found.state = found.type != nullptr ? NameState::kDeclared : NameState::kUndeclared;
  }
  return elementNames_[name] = found;
}

bool Validator::IsServed(NodeId element) {
  return NameOf(data_->Record(element).name).state != NameState::kUnserved;
}

Validator::AttributeName& Validator::LookUpAttribute(dom::NameId name) {
  if (name >= attributeNames_.size()) attributeNames_.resize(name + 32);
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

std::string_view Validator::TextOf(NodeId id) {
  const NodeRecord& record = data_->Record(id);
  if ((record.flags & dom::kInlineText) != 0) return data_->OwnText(id);
  if (record.first == dom::kNoNode) return {};
  joined_.clear();
  dom::Cursor(data_, id).AppendText(joined_);
  return joined_;
}

// Content ----------------------------------------------------------------------------------------

Symbol Validator::SymbolOf(const Frame& frame, const ElementName& child, dom::NameId name) const {
  if (child.slot == frame.slot) return child.type != nullptr ? child.type->symbol : kNoSymbol;
  const dom::NameTable& names = data_->Names();
  return set_.At(frame.slot)
      .schema->ForeignElementSymbol(names.UriText(names.UriOf(name)), names.LocalText(name));
}

// All places of the name that may follow one of the states; the states stay when there are none.
bool Validator::StepSet(Frame& frame, Symbol symbol) {
  const ContentModel& model = frame.type->model;
  Place found[ContentModel::kMostPlaces];
  std::size_t count = 0;
  for (Place next = model.FindPlace(symbol); next != ContentModel::kStart;
       next = model.NextPlace(next)) {
    const bool may = std::any_of(sets_.begin() + frame.setBegin, sets_.end(),
                                 [&](Place from) { return model.MayFollow(from, next); });
    if (may) found[count++] = next;
  }
  if (count == 0) return false;
  sets_.resize(frame.setBegin);
  sets_.insert(sets_.end(), found, found + count);
  return true;
}

bool Validator::IsComplete(const Frame& frame) const {
  const ContentModel& model = frame.type->model;
  if (!model.IsAmbiguous()) return model.MayEnd(frame.state);
  return std::any_of(sets_.begin() + frame.setBegin, sets_.end(),
                     [&](Place place) { return model.MayEnd(place); });
}

// The model first; what it does not take may be an extra one where the content is complete.
bool Validator::TakeChild(Frame& frame, const ElementName& child, dom::NameId name) {
  frame.hasChildren = true;
  const ElementType& type = *frame.type;
  if (type.content == Content::kEltOnly || type.content == Content::kMixed) {
    const Symbol symbol = SymbolOf(frame, child, name);
    if (symbol != kNoSymbol) {
      if (type.model.IsAmbiguous()) {
        if (StepSet(frame, symbol)) return true;
      } else {
        const Place next = type.model.Step(frame.state, symbol);
        if (next != ContentModel::kStart) {
          frame.state = next;
          return true;
        }
      }
    }
    if (type.open && IsComplete(frame)) return true;
  }
  Fail(XdrCode::kElementInvalid);
  AddExpected(frame, TakesText(type));
  return false;
}

// The line that tells what could have come.
void Validator::AddExpected(const Frame& frame, bool withText) {
  const ElementType& type = *frame.type;
  const Place* const states = type.model.IsAmbiguous() ? &sets_[frame.setBegin] : &frame.state;
  const std::size_t count = type.model.IsAmbiguous() ? sets_.size() - frame.setBegin : 1;
  std::string line = withText ? "#PCDATA" : "";
  const SchemaSet::Entry& entry = set_.At(frame.slot);
  if (type.model.HasChildren()) {
    for (const Symbol symbol : type.model.Expected({states, count})) {
      if (!line.empty()) line += ", ";
      line += entry.schema->ElementName(symbol, entry.uri);
    }
  }
  if (!line.empty()) error_.reason += "Expecting: " + line + ".\r\n";
}

bool Validator::StartElement(NodeId element) {
  const dom::NameId name = data_->Record(element).name;
  const ElementName& child = NameOf(name);
  const bool checks = task_ != Task::kBind;
  if (checks && !frames_.empty()) {
    Frame& parent = frames_.back();
    if (parent.type != nullptr && !TakeChild(parent, child, name)) return false;
  }
  if (checks && child.state == NameState::kUndeclared) {
    return Fail(XdrCode::kUndeclaredElement, {NameText(element)});
  }
  Frame& frame = frames_.emplace_back();
  frame.type = child.type;
  frame.slot = child.slot;
  frame.setBegin = static_cast<std::uint32_t>(sets_.size());
  if (child.type == nullptr) {
    return !dataTypes_ || CheckForeignAttributes(element, frame);
  }
  if (child.type->model.IsAmbiguous()) sets_.push_back(ContentModel::kStart);
  const bool plain =
      data_->Record(element).firstAttribute == dom::kNoNode && !child.type->hasImplied;
  return plain || CheckAttributes(element, frame);
}

bool Validator::Text(std::string_view text, dom::TextForm form) {
  if (frames_.empty() || task_ == Task::kBind) return true;
  const Frame& frame = frames_.back();
  if (frame.type == nullptr || TakesText(*frame.type)) return true;
  const bool space = form == dom::TextForm::kPlain && IsAllSpace(text);
  if (space && frame.type->content == Content::kEltOnly) return true;
  Fail(XdrCode::kTextNotAllowed);
  AddExpected(frame, false);
  return false;
}

bool Validator::CheckText(NodeId element, const Frame& frame) {
  if (frame.instanceType != DataType::kNone) {
    const std::string_view text = TextOf(element);
    if (datatypes::TrimSpace(text).empty() || datatypes::IsTextOf(frame.instanceType, text)) {
      return true;
    }
    return Fail(XdrCode::kDataTypeParse, {text, datatypes::DataTypeName(frame.instanceType)});
  }
  if (frame.type == nullptr || !frame.type->checksText) return true;
  const ValueRules& rules = *frame.type->rules;
  const std::string_view text = TextOf(element);
  if (rules.Check(text) != ValueFailure::kNone) {
    return Fail(XdrCode::kDataTypeParse, {text, datatypes::DataTypeName(rules.type)});
  }
  return !IsIdType(rules.type) || NoteIds(text, rules.type, NameText(element));
}

bool Validator::CheckContent(NodeId element, const Frame& frame) {
  if (frame.type != nullptr && frame.type->model.HasChildren() && !IsComplete(frame)) {
    return Fail(frame.hasChildren ? XdrCode::kElementIncomplete : XdrCode::kElementEmpty);
  }
  return CheckText(element, frame);
}

bool Validator::EndElement(NodeId element) {
  if (frames_.empty()) return true;  // it was open before anything was to be bound
  if (task_ != Task::kBind && !CheckContent(element, frames_.back())) return false;
  if (sets_.size() != frames_.back().setBegin) sets_.resize(frames_.back().setBegin);
  frames_.pop_back();
  return true;
}

bool Validator::EndLeaf(NodeId element, bool& textFits) {
  if (!frames_.empty() && task_ != Task::kBind) {
    const Frame& frame = frames_.back();
    if (frame.type != nullptr && !TakesText(*frame.type)) {
      const NodeRecord& record = data_->Record(element);
      if ((record.flags & dom::kInlineText) != 0 &&
          !Text(data_->OwnText(element), dom::TextForm::kPlain)) {
        textFits = false;
        return false;
      }
    }
  }
  return EndElement(element);
}

// Attributes -------------------------------------------------------------------------------------

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

bool Validator::CheckAttributes(NodeId element, Frame& frame) {
  const ElementType& type = *frame.type;
  seen_ = 0;
  const bool many = type.attributes.size() > 64;
  if (many || !seenMore_.empty()) seenMore_.assign(many ? type.attributes.size() : 0, 0);
  std::size_t hint = 0;
  for (NodeId at = data_->Record(element).firstAttribute; at != dom::kNoNode;
       at = data_->Record(at).next) {
    if ((data_->Record(at).flags & dom::kNamespaceDeclaration) != 0) continue;
    if (!CheckAttribute(at, frame, hint)) return false;
  }
  const bool complete = many ? !type.hasImplied : (type.implied & ~seen_) == 0;
  return complete || CheckImplied(element, frame);
}

bool Validator::CheckAttribute(NodeId attribute, const Frame& frame, std::size_t& hint) {
  const dom::NameId name = data_->Record(attribute).name;
  AttributeName& known = AttributeOf(name);
  if (known.kind != AttributeKind::kPlain) {
    if (known.kind == AttributeKind::kDataType) return ReadInstanceType(attribute, frames_.back());
    return known.kind == AttributeKind::kFree || CheckQualified(attribute, frame, hint);
  }
  if (known.slot != frame.slot) {
    known.slot = frame.slot;
    known.symbol = set_.At(frame.slot).schema->AttributeSymbol(data_->Names().LocalText(name));
  }
  const AttributeUse* use =
      known.symbol == kNoSymbol ? nullptr : frame.type->FindAttribute(known.symbol, hint);
  if (use == nullptr) {
    return task_ == Task::kBind || Fail(XdrCode::kUndeclaredAttribute, {NameText(attribute)});
  }
  if (hint <= 64) seen_ |= std::uint64_t{1} << (hint - 1);
  if (!seenMore_.empty()) seenMore_[hint - 1] = 1;
  if (!use->checked || task_ == Task::kBind) return true;
  return CheckValue(attribute, *use->rules,
                    use->IsFixed() ? std::string_view(use->defaultText) : std::string_view());
}

bool Validator::CheckQualified(NodeId attribute, const Frame& frame, std::size_t& hint) {
  const dom::NameTable& names = data_->Names();
  const dom::NameId name = data_->Record(attribute).name;
  const std::string_view uri = names.UriText(names.UriOf(name));
  const std::string_view local = names.LocalText(name);
  const Symbol symbol = set_.At(frame.slot).schema->ForeignAttributeSymbol(uri, local);
  const AttributeUse* use = symbol == kNoSymbol ? nullptr : frame.type->FindAttribute(symbol, hint);
  if (use != nullptr) {
    if (hint <= 64) seen_ |= std::uint64_t{1} << (hint - 1);
    if (!seenMore_.empty()) seenMore_[hint - 1] = 1;
    if (task_ == Task::kBind) return true;
    return CheckValue(attribute, *use->rules,
                      use->IsFixed() ? std::string_view(use->defaultText) : std::string_view());
  }
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
  return !IsIdType(rules.type) || NoteIds(text, rules.type, NameText(attribute));
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
