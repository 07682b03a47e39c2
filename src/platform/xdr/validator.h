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
  Validator(SchemaSet& set, const ServedNamespaces* served, Task task) noexcept
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
  bool EndLeaf(dom::NodeId element, bool& textFits);
  bool EndDocument();

  [[nodiscard]] const dom::ParseError& Error() const noexcept { return error_; }
  /// True when some schema serves the namespace of that element.
  [[nodiscard]] bool IsServed(dom::NodeId element);
  /// True when the failure is a reference to an ID that does not exist.
  [[nodiscard]] bool FailedAtEnd() const noexcept { return failedAtEnd_; }

 private:
  using Place = ContentModel::Place;
  enum class NameState : std::uint8_t { kUnknown, kUnserved, kUndeclared, kDeclared };

  /// An element's name, looked up.
  struct ElementName {
    const ElementType* type = nullptr;
    std::uint32_t slot = SchemaSet::kNone;  ///< the entry of the set that serves it
    std::uint32_t epoch = 0;
    NameState state = NameState::kUnknown;
  };
  enum class AttributeKind : std::uint8_t { kUnknown, kPlain, kDataType, kFree, kQualified };
  /// An attribute's name, looked up in the schema that asked last.
  struct AttributeName {
    AttributeKind kind = AttributeKind::kUnknown;
    std::uint32_t slot = SchemaSet::kNone;
    Symbol symbol = kNoSymbol;
  };
  /// An open element.
  struct Frame {
    const ElementType* type = nullptr;  ///< null: not checked
    std::uint32_t slot = 0;
    Place state = ContentModel::kStart;       ///< of a model that is not ambiguous
    std::uint32_t setBegin = 0;               ///< in sets_, of an ambiguous one
    DataType instanceType = DataType::kNone;  ///< by dt:dt
    bool hasChildren = false;
  };

  const ElementName& NameOf(dom::NameId name) {
    if (name < elementNames_.size()) {
      const ElementName& known = elementNames_[name];
      if (known.state > NameState::kUnserved ||
          (known.state == NameState::kUnserved && known.epoch == epoch_)) {
        return known;
      }
    }
    return LookUp(name);
  }
  const ElementName& LookUp(dom::NameId name);
  [[nodiscard]] std::uint32_t FindSlot(std::string_view uri);
  AttributeName& AttributeOf(dom::NameId name) {
    if (name < attributeNames_.size() && attributeNames_[name].kind != AttributeKind::kUnknown) {
      return attributeNames_[name];
    }
    return LookUpAttribute(name);
  }
  AttributeName& LookUpAttribute(dom::NameId name);

  bool TakeChild(Frame& frame, const ElementName& child, dom::NameId name);
  bool StepSet(Frame& frame, Symbol symbol);
  [[nodiscard]] bool IsComplete(const Frame& frame) const;
  [[nodiscard]] Symbol SymbolOf(const Frame& frame, const ElementName& child,
                                dom::NameId name) const;
  bool CheckAttributes(dom::NodeId element, Frame& frame);
  bool CheckForeignAttributes(dom::NodeId element, Frame& frame);
  bool CheckAttribute(dom::NodeId attribute, const Frame& frame, std::size_t& hint);
  bool CheckQualified(dom::NodeId attribute, const Frame& frame, std::size_t& hint);
  bool CheckValue(dom::NodeId attribute, const ValueRules& rules, std::string_view fixed);
  bool FailValue(dom::NodeId attribute, std::string_view text, const ValueRules& rules,
                 ValueFailure failure);
  bool ReadInstanceType(dom::NodeId attribute, Frame& frame);
  bool CheckImplied(dom::NodeId element, const Frame& frame);
  void SupplyAttribute(dom::NodeId element, const AttributeUse& use);
  bool CheckText(dom::NodeId element, const Frame& frame);
  bool CheckContent(dom::NodeId element, const Frame& frame);
  bool NoteIds(std::string_view text, DataType type, std::string_view name);
  [[nodiscard]] std::string_view TextOf(dom::NodeId id);
  bool Fail(XdrCode code, std::initializer_list<std::string_view> arguments = {});
  void AddExpected(const Frame& frame, bool withText);
  [[nodiscard]] std::string_view NameText(dom::NodeId id) const {
    return data_->Names().QualifiedText(data_->Record(id).name);
  }

  SchemaSet& set_;
  const ServedNamespaces* served_;
  const dom::DocumentData* data_ = nullptr;
  dom::DocumentData* changes_ = nullptr;
  Task task_;
  bool dataTypes_ = false;
  bool failedAtEnd_ = false;
  std::uint32_t epoch_ = 1;
  std::vector<Frame> frames_;
  std::vector<Place> sets_;  // the states of the open elements with ambiguous models
  std::vector<ElementName> elementNames_;
  std::vector<AttributeName> attributeNames_;
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
