// Judges elements as they come: the one engine behind parsing with a schema and behind validate().
// It is told of start tags, texts and ends in document order; what it keeps of a document is a
// table by name, so that a name is looked up in a schema once, and a frame for each open element.
//
// What is checked where: an element whose namespace is served by a schema must be declared in it,
// and then its attributes, children and text are; an element of any other namespace is not, but its
// children are looked at by the same rules.
#pragma once

#include "platform/dom/document_data.h"
#include "platform/dom/parse_error.h"
#include "platform/dom/schema_binder.h"
#include "platform/text/compare.h"
#include "platform/xdr/schema.h"
#include "platform/xdr/schema_errors.h"
#include "platform/xdr/schema_set.h"

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace kx::xdr {

/// What happens to a document: bound only (attributes are supplied), checked, or both.
enum class Task : unsigned char {
  kBind,          ///< while parsing without validation
  kBindAndCheck,  ///< while parsing
  kCheck,         ///< a tree that is there, which is not changed
};

/// Schemas beyond those that a document's own namespaces led to.
class ServedNamespaces {
 public:
  virtual ~ServedNamespaces() = default;
  /// The schema that serves `uri`, or null.
  [[nodiscard]] virtual SharedSchema Find(std::string_view uri) const = 0;
};

class Validator {
 public:
  /// `set` is what the document knows and grows while the validator lives; `served` may be null.
  Validator(GrowingSet& set, const ServedNamespaces* served, Task task) noexcept
      : set_(set), served_(served), task_(task) {}
  Validator(const Validator&) = delete;
  Validator& operator=(const Validator&) = delete;

  void Begin(dom::DocumentData& data) noexcept {
    data_ = &data;
    changes_ = &data;
  }
  /// For a tree that is only looked at: task kCheck.
  void Begin(const dom::DocumentData& data) noexcept { data_ = &data; }
  /// Instance elements may bear dt:dt from now on.
  void NoteDataTypes() noexcept { dataTypes_ = true; }
  /// The set has grown.
  void NoteSchema() noexcept { ++epoch_; }

  // Each answers false at the first failure; Error() then has its code and reason.
  bool StartElement(dom::NodeId element);
  bool Text(std::string_view text, dom::TextForm form);
  bool EndElement(dom::NodeId element);
  /// All of an element that has no children but the text in its record; see dom::SchemaBinder.
  bool Leaf(dom::NodeId element, dom::LeafPlace& place) {
    return IsPlainLeaf(element) || LeafByTheRules(element, place);
  }
  bool EndDocument();

  [[nodiscard]] const dom::ParseError& Error() const noexcept { return error_; }
  /// True when some schema serves the namespace of that element.
  [[nodiscard]] bool IsServed(dom::NodeId element);
  /// True when the failure is a reference to an ID that does not exist.
  [[nodiscard]] bool FailedAtEnd() const noexcept { return failedAtEnd_; }

 private:
  using Place = ContentModel::Place;
  // What a small document needs has its room in the validator itself.
  static constexpr std::uint32_t kFewNames = 48;
  static constexpr std::uint32_t kFewFrames = 16;
  enum class NameState : std::uint8_t { kUnknown, kUnserved, kUndeclared, kDeclared };

  /// An element's name, looked up, and where it stood last: elements come again in the same places.
  struct ElementName {
    const ElementType* type = nullptr;
    std::uint32_t slot = SchemaSet::kNone;  ///< the entry of the set that serves it
    std::uint32_t epoch = 0;
    dom::NameId parent = 0;  ///< the name of a checked element whose model is not ambiguous
    Place place = ContentModel::kStart;  ///< the place in that model
    NameState state = NameState::kUnknown;
    bool plain = false;  ///< declared, takes text, and need not have an attribute or a child
    const QuickCheck* check = nullptr;  ///< of a plain one: null when any text is good
  };
  enum class AttributeKind : std::uint8_t { kUnknown, kPlain, kDataType, kFree, kQualified };
  /// An attribute's name, looked up in the schema that asked last, and what it was to the element
  /// that had it last.
  struct AttributeName {
    AttributeKind kind = AttributeKind::kUnknown;
    std::uint32_t slot = SchemaSet::kNone;
    Symbol symbol = kNoSymbol;
    dom::NameId owner = 0;    ///< the name of that element, if it has at most 64 attributes
    std::uint32_t index = 0;  ///< in its type's attributes
  };
  /// An open element.
  struct Frame {
    const ElementType* type = nullptr;  ///< null: not checked
    dom::NameId name = 0;
    std::uint32_t slot = 0;
    Place state = ContentModel::kStart;       ///< of a model that is not ambiguous
    std::uint32_t setBegin = 0;               ///< in sets_, of an ambiguous one
    DataType instanceType = DataType::kNone;  ///< by dt:dt
    bool hasChildren = false;
  };

  ElementName& NameOf(dom::NameId name) {
    if (name < elementNames_.size()) {
      ElementName& known = elementNames_[name];
      if (known.state > NameState::kUnserved ||
          (known.state == NameState::kUnserved && known.epoch == epoch_)) {
        return known;
      }
    }
    return LookUp(name);
  }
  template <class T, std::uint32_t kInline>
  static void Cover(dom::PlainArray<T, kInline>& array, std::uint32_t index) {
    constexpr std::uint32_t kStep = 16;
    if (index < array.size()) return;
    const std::uint32_t first = array.size();
    const std::uint32_t count = index + kStep - first;
    array.Extend(count);
    std::uninitialized_fill_n(array.data() + first, count, T());
  }
  ElementName& LookUp(dom::NameId name);
  [[nodiscard]] std::uint32_t FindSlot(std::string_view uri);
  [[nodiscard]] std::uint32_t SlotOf(dom::UriId uri);
  [[nodiscard]] dom::NameKey KeyOf(dom::NameId name, std::string_view local) const noexcept;
  AttributeName& AttributeOf(dom::NameId name) {
    if (name < attributeNames_.size() && attributeNames_[name].kind != AttributeKind::kUnknown) {
      return attributeNames_[name];
    }
    return LookUpAttribute(name);
  }
  AttributeName& LookUpAttribute(dom::NameId name);

  bool Enter(dom::NodeId element, Frame& frame);
  bool IsPlainLeaf(dom::NodeId element);
  bool LeafByTheRules(dom::NodeId element, dom::LeafPlace& place);
  bool TakeChild(Frame& frame, ElementName& child, dom::NameId name) {
    if (frame.type == nullptr) return true;
    frame.hasChildren = true;
    if (child.parent == frame.name && frame.type->model.Takes(frame.state, child.place)) {
      frame.state = child.place;
      return true;
    }
    return TakeOtherChild(frame, child, name);
  }
  bool TakeOtherChild(Frame& frame, ElementName& child, dom::NameId name);
  bool Step(Frame& frame, ElementName& child, Symbol symbol);
  bool StepSet(Frame& frame, Symbol symbol);
  [[nodiscard]] bool IsComplete(const Frame& frame) const;
  [[nodiscard]] Symbol SymbolOf(const Frame& frame, const ElementName& child,
                                dom::NameId name) const;
  bool TakesText(const Frame& frame, std::string_view text, dom::TextForm form);
  bool CheckAttributes(dom::NodeId element, Frame& frame);
  /// True when it is one that its element had the last time too, with a text that is plainly good.
  bool IsPlainlyGood(dom::NodeId attribute, const Frame& frame);
  bool CheckForeignAttributes(dom::NodeId element, Frame& frame);
  [[nodiscard]] const AttributeUse* FindUse(dom::NameId name, AttributeName& known,
                                            const Frame& frame, std::size_t& hint) const;
  bool CheckAttribute(dom::NodeId attribute, Frame& frame, std::size_t& hint);
  bool CheckQualified(dom::NodeId attribute, const Frame& frame, std::size_t& hint);
  bool CheckUse(dom::NodeId attribute, const AttributeUse& use, std::size_t index);
  bool CheckValue(dom::NodeId attribute, const ValueRules& rules, std::string_view fixed);
  bool FailValue(dom::NodeId attribute, std::string_view text, const ValueRules& rules,
                 ValueFailure failure);
  bool ReadInstanceType(dom::NodeId attribute, Frame& frame);
  bool CheckImplied(dom::NodeId element, const Frame& frame);
  void SupplyAttribute(dom::NodeId element, const AttributeUse& use);
  bool CheckText(dom::NodeId element, const Frame& frame);
  bool CheckInstanceText(dom::NodeId element, DataType type);
  bool NoteIds(std::string_view text, DataType type, std::string_view name);
  [[nodiscard]] std::string_view TextOf(dom::NodeId id);
  /// True when the text of a node is one that `rules` finds good at once.
  [[nodiscard]] bool IsQuicklyGood(dom::NodeId id, const QuickCheck& check) const noexcept {
    constexpr unsigned kInBuffer = dom::kInlineText;
    const unsigned kept = data_->Record(id).flags & (unsigned{dom::kInlineText} | dom::kHeapText);
    if (kept != kInBuffer) return false;  // only the parse buffer can be read beyond a text
    const std::string_view text = data_->OwnText(id);
    return check.Takes(text.data(), static_cast<std::uint32_t>(text.size()));
  }
  bool Fail(XdrCode code, std::initializer_list<std::string_view> arguments = {});
  void AddExpected(const Frame& frame, bool withText);
  [[nodiscard]] std::string_view NameText(dom::NodeId id) const {
    return data_->Names().QualifiedText(data_->Record(id).name);
  }

  GrowingSet& set_;
  const ServedNamespaces* served_;
  const dom::DocumentData* data_ = nullptr;
  dom::DocumentData* changes_ = nullptr;
  Task task_;
  bool dataTypes_ = false;
  bool failedAtEnd_ = false;
  std::uint32_t epoch_ = 1;
  dom::UriId lastUri_ = 0xFFFFFFFFU;  // looked up last, and what was found
  std::uint32_t lastSlot_ = SchemaSet::kNone;
  std::uint32_t lastEpoch_ = 0;
  std::vector<Place> sets_;  // the states of the open elements with ambiguous models
  dom::PlainArray<Frame, kFewFrames> frames_;  // of which the first depth_ are open
  std::uint32_t depth_ = 0;
  dom::PlainArray<ElementName, kFewNames> elementNames_;
  dom::PlainArray<AttributeName, kFewNames> attributeNames_;
  std::uint64_t seen_ = 0;              // the attributes that the element has, the first 64
  std::vector<std::uint8_t> seenMore_;  // all of them, when there are more
  std::string joined_;                  // a text that does not stand in one piece
  std::unordered_set<std::string, text::ExactHash, std::equal_to<>> ids_;
  struct Reference {
    std::string name;
    std::string id;
  };
  std::vector<Reference> references_;  // to IDs not seen so far
  std::size_t supplied_ = 0;
  dom::ParseError error_;
};

}  // namespace kx::xdr
