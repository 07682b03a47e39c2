// Names and content; attributes are in validator_attributes.cc. See validator.h.
#include "platform/xdr/validator.h"

#include "platform/datatypes/lexical.h"
#include "platform/dom/cursor.h"
#include "platform/dom/scan.h"

#include <algorithm>
#include <utility>

namespace kx::xdr {

namespace {

using dom::NodeId;
using dom::NodeRecord;

// Behind every text of a parse buffer stands what the scans of the parser need.
static_assert(QuickCheck::kReadAhead <= dom::scan::kScanPadding);

bool IsAllSpace(std::string_view text) noexcept {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; });
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

std::uint32_t Validator::SlotOf(dom::UriId uri) {
  if (uri != lastUri_ || lastEpoch_ != epoch_) {
    lastSlot_ = FindSlot(data_->Names().UriText(uri));
    lastUri_ = uri;
    lastEpoch_ = epoch_;
  }
  return lastSlot_;
}

dom::NameKey Validator::KeyOf(dom::NameId name, std::string_view local) const noexcept {
  const dom::QName& qname = data_->Names().At(data_->Names().QNameOf(name));
  return qname.prefixLength == 0 ? qname.key : dom::NameTable::KeyOf(local);
}

Validator::ElementName& Validator::LookUp(dom::NameId name) {
  Cover(elementNames_, name);
  const dom::NameTable& names = data_->Names();
  ElementName found;
  found.slot = SlotOf(names.UriOf(name));
  found.epoch = epoch_;
  found.state = NameState::kUnserved;
  if (found.slot != SchemaSet::kNone) {
    const std::string_view local = names.LocalText(name);
    found.type = set_.At(found.slot).schema->FindElement(KeyOf(name, local), local);
    found.state = found.type != nullptr ? NameState::kDeclared : NameState::kUndeclared;
  }
  if (found.type != nullptr) {
    const ElementType& type = *found.type;
    found.plain = type.TakesText() && !type.hasImplied && !type.needsChild;
    if (type.checksText) found.check = &type.rules->quick;
  }
  return elementNames_[name] = found;
}

bool Validator::IsServed(NodeId element) {
  return NameOf(data_->Record(element).name).state != NameState::kUnserved;
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

// Of a model that is not ambiguous; notes the place for the next child of that name.
bool Validator::Step(Frame& frame, ElementName& child, Symbol symbol) {
  const ContentModel& model = frame.type->model;
  const Place place = model.FindPlace(symbol);
  if (place == ContentModel::kStart) return false;
  child.parent = frame.name;
  child.place = place;
  if (!model.Takes(frame.state, place)) return false;
  frame.state = place;
  return true;
}

// The model first; what it does not take may be an extra one where the content is complete.
bool Validator::TakeOtherChild(Frame& frame, ElementName& child, dom::NameId name) {
  const ElementType& type = *frame.type;
  if (type.content == Content::kEltOnly || type.content == Content::kMixed) {
    const Symbol symbol = SymbolOf(frame, child, name);
    if (symbol != kNoSymbol &&
        (type.ambiguous ? StepSet(frame, symbol) : Step(frame, child, symbol))) {
      return true;
    }
    if (type.open && IsComplete(frame)) return true;
  }
  Fail(XdrCode::kElementInvalid);
  AddExpected(frame, type.TakesText());
  return false;
}

// The line that tells what could have come.
void Validator::AddExpected(const Frame& frame, bool withText) {
  const ElementType& type = *frame.type;
  // An element without children has no states of its own.
  const bool set = type.ambiguous && sets_.size() > frame.setBegin;
  const Place* const states = set ? &sets_[frame.setBegin] : &frame.state;
  const std::size_t count = set ? sets_.size() - frame.setBegin : 1;
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

// The element in its parent's model, the element itself, its attributes.
bool Validator::Enter(NodeId element, Frame& frame) {
  const dom::NameId name = data_->Record(element).name;
  ElementName& known = NameOf(name);
  if (task_ != Task::kBind) {
    if (depth_ != 0 && !TakeChild(frames_[depth_ - 1], known, name)) return false;
    if (known.state == NameState::kUndeclared) {
      return Fail(XdrCode::kUndeclaredElement, {NameText(element)});
    }
  }
  frame.type = known.type;
  frame.name = name;
  frame.slot = known.slot;
  frame.state = ContentModel::kStart;
  frame.setBegin = static_cast<std::uint32_t>(sets_.size());
  frame.instanceType = DataType::kNone;
  frame.hasChildren = false;
  if (known.type == nullptr) return !dataTypes_ || CheckForeignAttributes(element, frame);
  const bool plain =
      data_->Record(element).firstAttribute == dom::kNoNode && !known.type->hasImplied;
  return plain || CheckAttributes(element, frame);
}

bool Validator::StartElement(NodeId element) {
  if (depth_ == frames_.size()) frames_.Extend(1);
  Frame& frame = frames_[depth_];
  if (!Enter(element, frame)) return false;
  if (frame.type != nullptr && frame.type->ambiguous) sets_.push_back(ContentModel::kStart);
  ++depth_;
  return true;
}

bool Validator::Text(std::string_view text, dom::TextForm form) {
  return depth_ == 0 || task_ == Task::kBind || TakesText(frames_[depth_ - 1], text, form);
}

bool Validator::TakesText(const Frame& frame, std::string_view text, dom::TextForm form) {
  if (frame.type == nullptr || frame.type->TakesText()) return true;
  const bool space = form == dom::TextForm::kPlain && IsAllSpace(text);
  if (space && frame.type->content == Content::kEltOnly) return true;
  Fail(XdrCode::kTextNotAllowed);
  AddExpected(frame, false);
  return false;
}

bool Validator::CheckInstanceText(NodeId element, DataType type) {
  const std::string_view text = TextOf(element);
  if (datatypes::TrimSpace(text).empty() || datatypes::IsTextOf(type, text)) return true;
  return Fail(XdrCode::kDataTypeParse, {text, datatypes::DataTypeName(type)});
}

bool Validator::CheckText(NodeId element, const Frame& frame) {
  if (frame.instanceType != DataType::kNone) return CheckInstanceText(element, frame.instanceType);
  if (frame.type == nullptr || !frame.type->checksText) return true;
  const ValueRules& rules = *frame.type->rules;
  if (IsQuicklyGood(element, rules.quick)) return true;
  const std::string_view text = TextOf(element);
  if (rules.Check(text) != ValueFailure::kNone) {
    return Fail(XdrCode::kDataTypeParse, {text, datatypes::DataTypeName(rules.type)});
  }
  return !datatypes::IsIdType(rules.type) || NoteIds(text, rules.type, NameText(element));
}

bool Validator::EndElement(NodeId element) {
  if (depth_ == 0) return true;  // it was open before anything was to be bound
  const Frame& frame = frames_[depth_ - 1];
  if (task_ != Task::kBind) {
    if (frame.type != nullptr && frame.type->hasChildren && !IsComplete(frame)) {
      return Fail(frame.hasChildren ? XdrCode::kElementIncomplete : XdrCode::kElementEmpty);
    }
    if (!CheckText(element, frame)) return false;
  }
  if (sets_.size() != frame.setBegin) sets_.resize(frame.setBegin);
  --depth_;
  return true;
}

// What most leaves are: without attributes, where one of that name stood the last time, with a text
// that is plainly good. Takes such a one; false leaves everything as it was.
bool Validator::IsPlainLeaf(NodeId element) {
  const NodeRecord& record = data_->Record(element);
  if (depth_ == 0 || record.firstAttribute != dom::kNoNode || record.name >= elementNames_.size()) {
    return false;
  }
  const ElementName& known = elementNames_[record.name];
  Frame& parent = frames_[depth_ - 1];
  if (!known.plain || known.parent != parent.name) return false;
  if (!parent.type->model.Takes(parent.state, known.place)) return false;
  if (known.check != nullptr && !IsQuicklyGood(element, *known.check)) return false;
  parent.state = known.place;
  parent.hasChildren = true;
  return true;
}

bool Validator::LeafByTheRules(NodeId element, dom::LeafPlace& place) {
  place = dom::LeafPlace::kBegin;
  Frame frame;
  if (!Enter(element, frame)) return false;
  if (task_ == Task::kBind) return true;
  if (frame.type != nullptr) {
    const bool text = (data_->Record(element).flags & dom::kInlineText) != 0;
    if (text && !frame.type->TakesText() &&
        !TakesText(frame, data_->OwnText(element), dom::TextForm::kPlain)) {
      return false;
    }
    place = dom::LeafPlace::kEnd;
    if (frame.type->needsChild) return Fail(XdrCode::kElementEmpty);
  }
  place = dom::LeafPlace::kEnd;
  return CheckText(element, frame);
}

}  // namespace kx::xdr
