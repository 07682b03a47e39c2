// See schema_reader.h.
#include "platform/xdr/schema_reader.h"

#include "platform/datatypes/lexical.h"
#include "platform/datatypes/name_text.h"
#include "platform/text/compare.h"
#include "platform/xdr/schema_names.h"

#include <algorithm>
#include <functional>
#include <span>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace kx::xdr {

namespace {

using dom::Cursor;
using dom::NodeId;

enum class Kind : unsigned char {
  kSchema,
  kElementType,
  kAttributeType,
  kElement,
  kAttribute,
  kGroup,
  kDatatype,
  kSkipped,  // descriptions, and everything of other namespaces
  kUnknown,
};

struct KindName {
  std::string_view name;
  Kind kind;
};
constexpr KindName kKinds[] = {
    {"Schema", Kind::kSchema},
    {"ElementType", Kind::kElementType},
    {"AttributeType", Kind::kAttributeType},
    {"element", Kind::kElement},
    {"attribute", Kind::kAttribute},
    {"group", Kind::kGroup},
    {"datatype", Kind::kDatatype},
    {"description", Kind::kSkipped},
    {"extends", Kind::kSkipped},
};

Kind KindOf(const Cursor& element) {
  if (!IsSchemaNamespace(element.NamespaceUri())) return Kind::kSkipped;
  const std::string_view name = element.LocalName();
  for (const KindName& row : kKinds) {
    if (row.name == name) return row.kind;
  }
  return Kind::kUnknown;
}

bool MayHold(Kind parent, Kind child) {
  switch (child) {
    case Kind::kElementType:
    case Kind::kAttributeType:
      return parent == Kind::kSchema || parent == Kind::kElementType;
    case Kind::kElement:
    case Kind::kGroup:
      return parent == Kind::kElementType || parent == Kind::kGroup;
    case Kind::kAttribute:
      return parent == Kind::kElementType;
    case Kind::kDatatype:
      return parent == Kind::kElementType || parent == Kind::kAttributeType;
    default:
      return child == Kind::kSkipped;
  }
}

// The unprefixed attributes that each kind may carry.
std::span<const std::string_view> AttributesOf(Kind kind) {
  static constexpr std::string_view kSchema[] = {"name", "id"};
  static constexpr std::string_view kElementType[] = {"name", "content", "model", "order"};
  static constexpr std::string_view kAttributeType[] = {"name", "required", "default"};
  static constexpr std::string_view kAttribute[] = {"type", "required", "default"};
  static constexpr std::string_view kElement[] = {"type", "minOccurs", "maxOccurs"};
  static constexpr std::string_view kGroup[] = {"order", "minOccurs", "maxOccurs"};
  switch (kind) {
    case Kind::kSchema:
      return kSchema;
    case Kind::kElementType:
      return kElementType;
    case Kind::kAttributeType:
      return kAttributeType;
    case Kind::kAttribute:
      return kAttribute;
    case Kind::kElement:
      return kElement;
    case Kind::kGroup:
      return kGroup;
    default:
      return {};
  }
}

template <class Value>
struct Keyword {
  std::string_view text;
  Value value;
};
constexpr Keyword<Content> kContents[] = {{"empty", Content::kEmpty},
                                          {"textOnly", Content::kTextOnly},
                                          {"eltOnly", Content::kEltOnly},
                                          {"mixed", Content::kMixed}};
constexpr Keyword<Order> kOrders[] = {
    {"seq", Order::kSeq}, {"one", Order::kOne}, {"many", Order::kMany}};
constexpr Keyword<bool> kModels[] = {{"open", true}, {"closed", false}};
constexpr Keyword<bool> kAnswers[] = {{"yes", true}, {"no", false}};

bool IsDeclaration(const Cursor& attribute) {
  return (attribute.Data().Record(attribute.Id()).flags & dom::kNamespaceDeclaration) != 0;
}

/// The data type attributes of an ElementType, AttributeType or datatype, as they are found.
struct TypeDraft {
  std::optional<DataType> type;
  std::optional<std::uint32_t> minLength;
  std::optional<std::uint32_t> maxLength;
  std::optional<std::string_view> values;
};

/// An element of the schema that is open.
struct Frame {
  Cursor node;
  Kind kind;
  std::size_t element = 0;        // the innermost ElementType, as an index
  std::uint32_t group = 0;        // the innermost group, as RawParticle::group
  Order order = Order::kMany;     // of the innermost group or ElementType
  std::size_t attributeType = 0;  // index in the list it was added to
  bool localType = false;
  std::optional<Content> content;  // as written
  std::size_t prefixes = 0;        // how many it declares
  TypeDraft draft;
};

class SchemaReader {
 public:
  explicit SchemaReader(const Cursor& root) : root_(root) {}

  RawSchema Read() {
    OpenPrefixesAround();
    Open(root_, Kind::kSchema, nullptr);
    Cursor at = root_.FirstChildElement();
    while (true) {
      if (!at) {
        Close();
        at = stack_.back().node.NextElement();
        stack_.pop_back();
        if (stack_.empty()) break;
        continue;
      }
      if (Enter(at)) {
        at = at.FirstChildElement();
      } else {
        at = at.NextElement();
      }
    }
    return std::move(raw_);
  }

 private:
  // What prefixes mean outside the schema: one that stands in a document has elements around it.
  void OpenPrefixesAround() {
    std::vector<Cursor> around;
    for (Cursor at = root_.Parent(); at; at = at.Parent()) {
      if (at.IsElement()) around.push_back(at);
    }
    for (auto at = around.rbegin(); at != around.rend(); ++at) OpenPrefixes(*at);
    opened_.clear();
  }

  // Puts the meanings on that `at` declares.
  std::size_t OpenPrefixes(const Cursor& at) {
    std::size_t count = 0;
    for (Cursor a = at.FirstAttribute(); a; a = a.Next()) {
      if (a.Prefix().empty() || !IsDeclaration(a)) continue;
      auto& meanings = prefixes_[std::string(a.LocalName())];
      meanings.push_back(Value(a));
      opened_.push_back(&meanings);
      ++count;
    }
    return count;
  }
  void ClosePrefixes(std::size_t count) {
    for (; count != 0; --count) {
      opened_.back()->pop_back();
      opened_.pop_back();
    }
  }
  [[nodiscard]] std::optional<std::string_view> MeaningOf(std::string_view prefix) const {
    if (prefix == "xml") return dom::kXmlNamespace;
    const auto found = prefixes_.find(prefix);
    if (found == prefixes_.end() || found->second.empty()) return std::nullopt;
    return found->second.back();
  }

  std::string_view Value(const Cursor& attribute) {
    if (attribute.HasWholeText()) return attribute.OwnText();
    return raw_.joined.emplace_back(attribute.TextContent());
  }

  // The first mistake in document order counts; indices follow it.
  void Report(const Cursor& at, XdrCode code, std::string argument) {
    if (raw_.mistake && raw_.mistake->node <= at.Id()) return;
    raw_.mistake = SchemaMistake{at.Id(), code, std::move(argument)};
  }
  void Report(const Cursor& at, std::string sentence) {
    Report(at, XdrCode::kSchemaMistake, std::move(sentence));
  }
  static std::string Called(const Cursor& at) {
    std::string text(at.QualifiedName());
    for (const char* name : {"name", "type"}) {
      const Cursor attribute = at.FindAttribute(name);
      if (attribute) return text + " '" + attribute.TextContent() + "'";
    }
    return text;
  }

  // True when its children are to be read.
  bool Enter(const Cursor& at) {
    const Kind kind = KindOf(at);
    if (kind == Kind::kSkipped) return false;
    if (!MayHold(stack_.back().kind, kind)) {
      Report(at, "The element '" + std::string(at.QualifiedName()) +
                     "' is not allowed in this place of a schema.");
      return false;
    }
    const Frame& parent = stack_.back();
    Open(at, kind, &parent);
    return true;
  }

  void Open(const Cursor& at, Kind kind, const Frame* parent) {
    Frame frame;
    frame.node = at;
    frame.kind = kind;
    if (parent != nullptr) {
      frame.element = parent->element;
      frame.group = parent->group;
      frame.order = parent->order;
      frame.localType = parent->kind == Kind::kElementType;
    }
    frame.prefixes = OpenPrefixes(at);
    CheckAttributes(at, kind);
    switch (kind) {
      case Kind::kSchema:
        raw_.name = Text(at, "name").value_or(std::string_view());
        break;
      case Kind::kElementType:
        OpenElementType(frame);
        break;
      case Kind::kAttributeType:
        OpenAttributeType(frame);
        break;
      case Kind::kElement:
      case Kind::kGroup:
        OpenParticle(frame);
        break;
      case Kind::kAttribute:
        OpenAttribute(frame);
        break;
      default:
        OpenDatatype(frame);
        break;
    }
    stack_.push_back(frame);
  }

  void CheckAttributes(const Cursor& at, Kind kind) {
    const auto allowed = AttributesOf(kind);
    for (Cursor a = at.FirstAttribute(); a; a = a.Next()) {
      if (!a.Prefix().empty() || IsDeclaration(a)) continue;
      const std::string_view name = a.LocalName();
      if (std::find(allowed.begin(), allowed.end(), name) != allowed.end()) continue;
      // One is enough, and looking for the element's name is not free.
      return Report(at, "The attribute '" + std::string(name) + "' is not allowed on " +
                            Called(at) + " of a schema.");
    }
  }

  std::optional<std::string_view> Text(const Cursor& at, std::string_view name) {
    const Cursor attribute = at.FindAttribute(name);
    if (!attribute) return std::nullopt;
    return Value(attribute);
  }

  std::string_view RequiredText(const Cursor& at, std::string_view name) {
    const auto text = Text(at, name);
    if (text && !text->empty()) return *text;
    Report(at, "The attribute '" + std::string(name) + "' is missing on " + Called(at) + ".");
    return {};
  }

  template <class Value, std::size_t kCount>
  std::optional<Value> Word(const Cursor& at, std::string_view name,
                            const Keyword<Value> (&words)[kCount]) {
    const auto text = Text(at, name);
    if (!text) return std::nullopt;
    for (const Keyword<Value>& word : words) {
      if (word.text == *text) return word.value;
    }
    Report(at, "The attribute '" + std::string(name) + "' of " + Called(at) +
                   " cannot have the value '" + std::string(*text) + "'.");
    return std::nullopt;
  }

  // Occurrences: any integer that is not negative counts as its nearest in the language.
  bool ReadOccurs(const Cursor& at, std::string_view name, bool low) {
    const auto text = Text(at, name);
    if (!text) return false;
    if (*text == "*") return !low;
    std::string_view digits = *text;
    if (!digits.empty() && digits.front() == '+') digits.remove_prefix(1);
    const bool number = !digits.empty() && std::all_of(digits.begin(), digits.end(),
                                                       [](char c) { return c >= '0' && c <= '9'; });
    if (!number) {
      Report(at, "The attribute '" + std::string(name) + "' of " + Called(at) +
                     " is neither a number nor '*'.");
      return false;
    }
    while (digits.size() > 1 && digits.front() == '0') digits.remove_prefix(1);
    return low ? digits == "0" : digits != "0" && digits != "1";
  }

  RawReference ReadReference(const Cursor& at) {
    RawReference reference;
    reference.node = at.Id();
    reference.name = RequiredText(at, "type");
    const std::size_t colon = reference.name.find(':');
    if (colon == std::string_view::npos) return reference;
    reference.prefix = reference.name.substr(0, colon);
    reference.name = reference.name.substr(colon + 1);
    reference.uri = MeaningOf(reference.prefix);
    return reference;
  }

  // Element types -----------------------------------------------------------------------------

  void OpenElementType(Frame& frame) {
    const Cursor& at = frame.node;
    RawElementType type;
    type.node = at.Id();
    type.name = RequiredText(at, "name");
    if (!type.name.empty() && !elementNames_.emplace(type.name).second) {
      Report(at, XdrCode::kElementDeclaredTwice, std::string(type.name));
    }
    type.open = Word(at, "model", kModels).value_or(true);
    frame.content = Word(at, "content", kContents);
    const auto order = Word(at, "order", kOrders);
    type.content = frame.content.value_or(!order || *order == Order::kMany ? Content::kMixed
                                                                           : Content::kEltOnly);
    const Order usual = type.content == Content::kEltOnly ? Order::kSeq : Order::kMany;
    type.order = order.value_or(usual);
    if (frame.content == Content::kMixed && type.order != Order::kMany) {
      Report(at, "ElementType '" + std::string(type.name) +
                     "' with mixed content cannot have an order other than 'many'.");
    }
    ReadTypeAttributes(at, frame.draft);
    frame.element = raw_.elements.size();
    frame.group = 0;
    frame.order = type.order;
    raw_.elements.push_back(std::move(type));
    localNames_.resize(raw_.elements.size());
  }

  void CloseElementType(const Frame& frame) {
    RawElementType& type = raw_.elements[frame.element];
    const std::string name(type.name);
    if (frame.draft.type) {
      if (frame.content && *frame.content != Content::kTextOnly) {
        Report(frame.node, "ElementType '" + name +
                               "' with a data type cannot have content other than 'textOnly'.");
      }
      type.content = Content::kTextOnly;
    }
    const SharedRules rules = MakeRules(frame);
    if (frame.draft.type) type.rules = rules;
    const bool takesChildren = type.content == Content::kEltOnly || type.content == Content::kMixed;
    if (!takesChildren && !type.particles.empty()) {
      Report(
          Cursor(&root_.Data(), type.particles.front().reference.node),
          "ElementType '" + name + "' has no element content and cannot hold elements or groups.");
    }
    if (type.content != Content::kMixed) return;
    for (const RawParticle& particle : type.particles) {
      if (!particle.isGroup || particle.order == Order::kMany) continue;
      Report(Cursor(&root_.Data(), particle.reference.node),
             "A group in the mixed content of ElementType '" + name +
                 "' cannot have an order other than 'many'.");
    }
  }

  void OpenParticle(Frame& frame) {
    const Cursor& at = frame.node;
    RawElementType& type = raw_.elements[frame.element];
    RawParticle particle;
    particle.isGroup = frame.kind == Kind::kGroup;
    particle.group = frame.group;
    particle.optional = ReadOccurs(at, "minOccurs", true);
    particle.repeats = ReadOccurs(at, "maxOccurs", false);
    if (particle.isGroup) {
      particle.reference.node = at.Id();
      particle.order = Word(at, "order", kOrders).value_or(frame.order);
      frame.order = particle.order;
      frame.group = static_cast<std::uint32_t>(type.particles.size() + 1);
    } else {
      particle.reference = ReadReference(at);
    }
    type.particles.push_back(particle);
  }

  void OpenAttribute(Frame& frame) {
    const Cursor& at = frame.node;
    RawAttribute attribute;
    attribute.reference = ReadReference(at);
    attribute.required = Word(at, "required", kAnswers).value_or(false);
    attribute.defaultText = Text(at, "default").value_or(std::string_view());
    raw_.elements[frame.element].attributes.push_back(attribute);
  }

  // Attribute types ---------------------------------------------------------------------------

  std::vector<AttributeType>& TypesOf(const Frame& frame) {
    return frame.localType ? raw_.elements[frame.element].localTypes : raw_.attributeTypes;
  }

  void OpenAttributeType(Frame& frame) {
    const Cursor& at = frame.node;
    AttributeType type;
    type.node = at.Id();
    type.name = RequiredText(at, "name");
    auto& names = frame.localType ? localNames_[frame.element] : attributeNames_;
    if (!type.name.empty() && !names.emplace(type.name).second) {
      Report(at, "The AttributeType '" + type.name + "' is declared twice.");
    }
    type.required = Word(at, "required", kAnswers).value_or(false);
    type.defaultText = Text(at, "default").value_or(std::string_view());
    ReadTypeAttributes(at, frame.draft);
    auto& types = TypesOf(frame);
    frame.attributeType = types.size();
    types.push_back(std::move(type));
  }

  void CloseAttributeType(const Frame& frame) {
    AttributeType& type = TypesOf(frame)[frame.attributeType];
    type.rules = MakeRules(frame);
    if (type.defaultText.empty()) return;
    if (type.rules->type == DataType::kId) {
      Report(frame.node,
             "The AttributeType '" + type.name + "' is an ID and cannot have a default.");
    } else if (type.rules->Check(type.defaultText) != ValueFailure::kNone) {
      Report(frame.node, XdrCode::kBadDefault, {});
    }
  }

  // Data types --------------------------------------------------------------------------------

  void OpenDatatype(Frame& frame) {
    ReadTypeAttributes(frame.node, frame.draft);
    if (!frame.draft.type) Report(frame.node, "The attribute 'dt:type' is missing on datatype.");
    Frame& owner = stack_.back();
    Merge(frame.node, owner.draft.type, frame.draft.type, "data type");
    Merge(frame.node, owner.draft.minLength, frame.draft.minLength, "minimum length");
    Merge(frame.node, owner.draft.maxLength, frame.draft.maxLength, "maximum length");
    Merge(frame.node, owner.draft.values, frame.draft.values, "list of values");
  }

  template <class Value>
  void Merge(const Cursor& at, std::optional<Value>& into, const std::optional<Value>& from,
             const char* what) {
    if (!from) return;
    if (into) Report(at, Called(stack_.back().node) + " has a second " + what + ".");
    into = from;
  }

  void ReadTypeAttributes(const Cursor& at, TypeDraft& draft) {
    for (Cursor a = at.FirstAttribute(); a; a = a.Next()) {
      if (a.Prefix().empty() || !IsDataTypeNamespace(a.NamespaceUri())) continue;
      const std::string_view name = a.LocalName();
      const std::string_view value = Value(a);
      if (name == "type") {
        draft.type = datatypes::FindDataType(value);
        if (!draft.type) Report(at, XdrCode::kUnknownDataType, std::string(value));
      } else if (name == "values") {
        draft.values = value;
      } else if (name == "minLength") {
        draft.minLength = ReadLength(at, a, value);
      } else if (name == "maxLength") {
        draft.maxLength = ReadLength(at, a, value);
      }
    }
  }

  std::optional<std::uint32_t> ReadLength(const Cursor& at, const Cursor& attribute,
                                          std::string_view text) {
    text = datatypes::TrimSpace(text);
    std::uint64_t length = 0;
    bool good = !text.empty();
    for (const char c : text) {
      good = good && c >= '0' && c <= '9';
      if (good && length < 0xFFFFFFFFU) length = length * 10 + static_cast<std::uint64_t>(c - '0');
    }
    if (!good) {
      Report(at, "The attribute '" + std::string(attribute.QualifiedName()) + "' of " + Called(at) +
                     " is not a length.");
      return std::nullopt;
    }
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(length, 0xFFFFFFFFU));
  }

  SharedRules MakeRules(const Frame& frame) {
    const TypeDraft& draft = frame.draft;
    const auto rules = runtime::MakeCounted<ValueRules>();
    rules->type = draft.type.value_or(DataType::kNone);
    rules->minLength = draft.minLength.value_or(0);
    rules->maxLength = draft.maxLength.value_or(0xFFFFFFFFU);
    if (rules->minLength > rules->maxLength) {
      Report(frame.node, Called(frame.node) + " has a minimum length above its maximum length.");
    }
    const bool listed = rules->type == DataType::kEnumeration;
    // Without any type a list means nothing on an AttributeType.
    const bool ignored = !draft.type && frame.kind == Kind::kAttributeType;
    if (listed != draft.values.has_value() && !ignored) {
      Report(frame.node, Called(frame.node) + (listed ? " is an enumeration without values."
                                                      : " has values but is no enumeration."));
    }
    if (listed) ReadValues(frame, draft.values.value_or(std::string_view()), *rules);
    rules->Prepare();
    return rules;
  }

  void ReadValues(const Frame& frame, std::string_view list, ValueRules& rules) {
    for (std::string_view token = datatypes::TakeToken(list); !token.empty();
         token = datatypes::TakeToken(list)) {
      rules.values.emplace_back(token);
    }
    if (rules.values.empty()) {
      Report(frame.node, Called(frame.node) + " is an enumeration without values.");
    }
    std::sort(rules.values.begin(), rules.values.end());
  }

  void Close() {
    const Frame& frame = stack_.back();
    if (frame.kind == Kind::kElementType) CloseElementType(frame);
    if (frame.kind == Kind::kAttributeType) CloseAttributeType(frame);
    ClosePrefixes(frame.prefixes);
  }

  Cursor root_;
  RawSchema raw_;
  std::vector<Frame> stack_;
  using NameSet = std::unordered_set<std::string, text::ExactHash, std::equal_to<>>;

  NameSet elementNames_;
  NameSet attributeNames_;
  std::vector<NameSet> localNames_;  // by ElementType
  std::unordered_map<std::string, std::vector<std::string_view>, text::ExactHash, std::equal_to<>>
      prefixes_;                                        // the innermost meaning last
  std::vector<std::vector<std::string_view>*> opened_;  // what to take back, the last one first
};

}  // namespace

RawSchema ReadSchema(const Cursor& root) { return SchemaReader(root).Read(); }

std::vector<std::string> SchemasDeclaredIn(const Cursor& root) {
  std::vector<std::string> namespaces;
  std::unordered_set<std::string, NamespaceHash, NamespaceEqual> known;
  for (Cursor at = root; at; at = at.NextInTree(root)) {
    if (!at.IsElement()) continue;
    for (Cursor a = at.FirstAttribute(); a; a = a.Next()) {
      if (!IsDeclaration(a)) continue;
      const std::string uri = a.TextContent();
      if (!NamesSchema(uri) || NamesInlineSchema(uri)) continue;
      if (known.emplace(uri).second) namespaces.push_back(uri);
    }
  }
  return namespaces;
}

}  // namespace kx::xdr
