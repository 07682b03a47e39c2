// See schema_compiler.h.
#include "platform/xdr/schema_compiler.h"

#include "platform/dom/xml_names.h"
#include "platform/xdr/schema_names.h"

#include <utility>

namespace kx::xdr {

namespace {

// A default must be a text of the type, and of the list.
bool IsGoodDefault(const AttributeUse& use) {
  return use.defaultText.empty() || use.rules->Check(use.defaultText) == ValueFailure::kNone;
}

bool MayBeSupplied(std::string_view name) { return name != "xmlns" && dom::IsNcName(name); }

bool IsNothing(const RawReference& reference) { return reference.name.empty(); }

}  // namespace

SchemaCompiler::SchemaCompiler(const dom::Cursor& root, dom::Document document, std::string url)
    : raw_(ReadSchema(root)), schema_(runtime::MakeCounted<Schema>()) {
  schema_->document_ = std::move(document);
  schema_->url_ = std::move(url);
  Declare();
}

// References come last: a mistake of theirs counts only when nothing else is wrong.
void SchemaCompiler::Report(dom::NodeId node, XdrCode code, std::string argument) {
  if (!raw_.mistake) raw_.mistake = SchemaMistake{node, code, std::move(argument)};
}

void SchemaCompiler::Declare() {
  Schema& schema = *schema_;
  schema.elements_.reserve(raw_.elements.size());
  for (const RawElementType& raw : raw_.elements) {
    ElementType type;
    type.name = raw.name;
    type.node = raw.node;
    type.symbol = static_cast<Symbol>(schema.elements_.size());
    type.content = raw.content;
    type.open = raw.open;
    type.rules = raw.rules;
    type.checksText = raw.rules && !raw.rules->TakesAnyText();
    schema.elementIndex_.Insert(type.name, type.symbol);
    schema.elements_.push_back(std::move(type));
  }
  for (AttributeType& type : raw_.attributeTypes) {
    schema.attributeTypeIndex_.Insert(type.name,
                                      static_cast<std::uint32_t>(schema.attributeTypes_.size()));
    schema.attributeTypes_.push_back(std::move(type));
  }
}

void SchemaCompiler::Resolve(const FindOther& find) {
  if (raw_.mistake) return;
  find_ = &find;
  for (std::size_t i = 0; i < raw_.elements.size(); ++i) {
    ResolveElement(raw_.elements[i], schema_->elements_[i]);
    if (raw_.mistake) return;
  }
}

void SchemaCompiler::ResolveElement(const RawElementType& raw, ElementType& type) {
  BuildModel(raw, type);
  ResolveAttributes(raw, type);
}

const Schema* SchemaCompiler::OtherSchema(const RawReference& reference, std::string& uri) {
  if (!reference.uri) {
    Report(reference.node, XdrCode::kUndeclaredPrefix, std::string(reference.prefix));
    return nullptr;
  }
  uri = *reference.uri;
  return (*find_)(uri);
}

Symbol SchemaCompiler::ElementSymbol(const RawReference& reference) {
  Schema& schema = *schema_;
  if (reference.prefix.empty()) {
    const ElementType* type = schema.FindElement(reference.name);
    if (type != nullptr) return type->symbol;
    Report(reference.node, XdrCode::kReferenceToUndeclared, std::string(reference.name));
    return kNoSymbol;
  }
  std::string uri;
  const Schema* other = OtherSchema(reference, uri);
  if (other == nullptr || other->FindElement(reference.name) == nullptr) {
    Report(reference.node, XdrCode::kReferenceToUndeclared,
           std::string(reference.prefix) + ":" + std::string(reference.name));
    return kNoSymbol;
  }
  const auto next = static_cast<Symbol>(schema.elements_.size() + schema.foreignElements_.size());
  const Symbol symbol =
      schema.foreignElementSymbols_.Insert(Schema::ForeignKey(uri, reference.name), next);
  if (symbol == next) schema.foreignElements_.push_back({uri, std::string(reference.name)});
  return symbol;
}

void SchemaCompiler::BuildModel(const RawElementType& raw, ElementType& type) {
  type.model = ContentModel(raw.order);
  std::vector<ContentModel::Place> places;
  places.reserve(raw.particles.size());
  for (const RawParticle& particle : raw.particles) {
    const ContentModel::Place parent =
        particle.group == 0 ? ContentModel::kStart : places[particle.group - 1];
    if (type.model.DepthOf(parent) >= ContentModel::kMostDepth) {
      return Report(particle.reference.node, XdrCode::kSchemaMistake,
                    "The groups of ElementType '" + type.name + "' nest too deeply.");
    }
    if (particle.isGroup) {
      places.push_back(
          type.model.AddGroup(parent, particle.order, particle.optional, particle.repeats));
      continue;
    }
    const Symbol symbol =
        IsNothing(particle.reference) ? kNoSymbol : ElementSymbol(particle.reference);
    if (raw_.mistake) return;
    places.push_back(type.model.AddChild(parent, symbol, particle.optional, particle.repeats));
  }
  Symbol symbol = kNoSymbol;
  if (!type.model.Finish(symbol)) {
    Report(raw.node, XdrCode::kSchemaMistake,
           "ElementType '" + type.name + "' refers to '" + schema_->ElementName(symbol, "") +
               "' in too many places.");
    return;
  }
  type.hasChildren = type.model.HasChildren();
  type.needsChild = type.hasChildren && !type.model.MayEnd(ContentModel::kStart);
  type.ambiguous = type.model.IsAmbiguous();
}

// First among the local ones, then the global ones, then in the schema that the prefix names.
const AttributeType* SchemaCompiler::FindAttributeType(const RawAttribute& attribute,
                                                       const NameIndex& locals,
                                                       const RawElementType& raw,
                                                       AttributeUse& use) {
  const RawReference& reference = attribute.reference;
  use.name = reference.name;
  if (!reference.prefix.empty()) {
    use.prefix = reference.prefix;
    const Schema* other = OtherSchema(reference, use.uri);
    return other == nullptr ? nullptr : other->FindAttributeType(reference.name);
  }
  const std::uint32_t local = locals.Find(reference.name);
  const AttributeType* type = local != NameIndex::kNone
                                  ? &raw.localTypes[local]
                                  : schema_->FindAttributeType(reference.name);
  if (type != nullptr) use.node = type->node;
  return type;
}

void SchemaCompiler::ResolveAttributes(const RawElementType& raw, ElementType& type) {
  NameIndex locals;
  for (std::size_t i = 0; i < raw.localTypes.size(); ++i) {
    locals.Insert(raw.localTypes[i].name, static_cast<std::uint32_t>(i));
  }
  type.attributes.reserve(raw.attributes.size());
  type.attributeIndex.Reserve(raw.attributes.size());
  bool hasId = false;
  for (const RawAttribute& attribute : raw.attributes) {
    const dom::NodeId node = attribute.reference.node;
    AttributeUse use;
    const AttributeType* declared = FindAttributeType(attribute, locals, raw, use);
    if (raw_.mistake) return;
    const std::string name(attribute.reference.name);
    if (declared == nullptr) {
      return Report(
          node, XdrCode::kSchemaMistake,
          "The attribute '" + name + "' of ElementType '" + type.name + "' has no AttributeType.");
    }
    NameIndex& symbols =
        use.uri.empty() ? schema_->attributeSymbols_ : schema_->foreignAttributeSymbols_;
    const auto next = static_cast<Symbol>(schema_->attributeSymbols_.Size() +
                                          schema_->foreignAttributeSymbols_.Size());
    use.symbol =
        symbols.Insert(use.uri.empty() ? use.name : Schema::ForeignKey(use.uri, use.name), next);
    if (use.uri.empty() && use.name.size() <= 16) {
      use.length = static_cast<std::uint32_t>(use.name.size());
      use.key = dom::NameTable::KeyOf(use.name);
    }
    use.rules = declared->rules;
    use.required = attribute.required || declared->required;
    use.defaultText =
        attribute.defaultText.empty() ? declared->defaultText : std::string(attribute.defaultText);
    if (type.attributeIndex.Find(use.symbol) != kNoSymbol) {
      return Report(node, XdrCode::kSchemaMistake,
                    "ElementType '" + type.name + "' has the attribute '" + name + "' twice.");
    }
    if (use.rules->type == DataType::kId) {
      if (hasId) return Report(node, XdrCode::kTwoIds, {});
      hasId = true;
      if (!use.defaultText.empty()) {
        return Report(node, XdrCode::kSchemaMistake,
                      "The attribute '" + name + "' of ElementType '" + type.name +
                          "' is an ID and cannot have a default.");
      }
    }
    if (!IsGoodDefault(use)) return Report(node, XdrCode::kBadDefault, {});
    if (!use.defaultText.empty() && !MayBeSupplied(use.name)) {
      return Report(node, XdrCode::kSchemaMistake,
                    "The attribute '" + name + "' of ElementType '" + type.name +
                        "' has a default and a name that no attribute can have.");
    }
    use.fixed = use.required && !use.defaultText.empty();
    use.checked = use.fixed || !use.rules->TakesAnyText();
    if (use.required || !use.defaultText.empty()) {
      type.hasImplied = true;
      if (type.attributes.size() < 64) type.implied |= std::uint64_t{1} << type.attributes.size();
    }
    type.attributeIndex.Insert(use.symbol, static_cast<std::uint32_t>(type.attributes.size()));
    type.attributes.push_back(std::move(use));
  }
}

}  // namespace kx::xdr
