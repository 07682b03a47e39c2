// See attributes.h.
#include "model/attributes.h"

#include "kxmessage/error_codes.h"

#include "model/element.h"
#include "model/failure.h"
#include "model/values.h"

#include <algorithm>

namespace kx::model {

namespace {

// The name without prefix; that of the declaration of the default namespace is empty.
std::string BaseName(const Attribute& attribute) {
  return attribute.name == "xmlns" ? "" : attribute.name;
}

const Declaration& Need(const Declaration* declaration) {
  if (declaration == nullptr) throw ObjectNotSet();
  return *declaration;
}

}  // namespace

// ---- What the schema says ----------------------------------------------------------------------

AttributeInfo::AttributeInfo(const Context& context, const Declaration& elementType,
                             const std::string& name)
    : declaration(FindChild(elementType, "attribute", "type", name)),
      attributeType(FindAttributeType(name, *context.schema, elementType)) {}

std::string AttributeInfo::Name() const { return Property(&Need(attributeType), "name"); }

bool AttributeInfo::Required() const {
  const std::string own = Property(&Need(declaration), "required");
  return (own.empty() ? Property(&Need(attributeType), "required", "no") : own) == "yes";
}

std::string AttributeInfo::DefaultValue() const {
  const std::string own = Property(&Need(declaration), "default");
  return own.empty() ? Property(&Need(attributeType), "default") : own;
}

bool AttributeInfo::ReadOnly() const { return Required() && !DefaultValue().empty(); }

std::string AttributeInfo::DataType() const {
  return Property(&Need(attributeType), "dt:type", "none");
}

std::vector<std::string> AttributeInfo::Values() const {
  return SplitAtBlanks(Property(&Need(attributeType), "dt:values"));
}

void AttributeInfo::Check(const std::string& value, bool waivesReadOnly) const {
  if (ReadOnly() && !waivesReadOnly) {
    throw LibraryFailure(kxMsgErrorAttributeReadOnly, {Name(), DefaultValue()});
  }
  const std::string type = DataType();
  bool accepted = true;
  if (type == "nmtoken" || type == "nmtokens") accepted = !value.empty();
  if (type == "enumeration") {
    const std::vector<std::string> values = Values();
    accepted = std::any_of(values.begin(), values.end(), [&](const std::string& allowed) {
      return Lower(allowed) == Lower(value);
    });
  }
  if (!accepted) throw LibraryFailure(kxMsgErrorBadAttributeValue, {Name(), value, type});
}

// ---- One attribute -----------------------------------------------------------------------------

AttributeObject::AttributeObject(const Context& context, const Node& node,
                                 const Declaration& elementType, const std::string& name)
    : context_(&context), elementType_(&elementType), attribute_(FindAttribute(node, name)) {}

Attribute& AttributeObject::Get() const {
  if (attribute_ == nullptr) throw ObjectNotSet();
  return *attribute_;
}

std::string AttributeObject::DataType() const { return context_->store->DataTypeOf(Get()); }

std::string AttributeObject::Name() const { return BaseName(Get()); }

std::string AttributeObject::Value() const { return ReadTyped(Get().value, DataType()); }

void AttributeObject::Value(const std::string& value) const {
  Info().Check(value, false);
  CheckTyped(value, DataType());
  Get().value = value;
  Get().written = true;
}

AttributeInfo AttributeObject::Info() const { return {*context_, *elementType_, BaseName(Get())}; }

bool AttributeObject::HasKnownType() const {
  return attribute_ == nullptr || IsKnownType(DataType());
}

// ---- The collection ----------------------------------------------------------------------------

AttributePtr Attributes::Make(const std::string& name) const {
  return std::make_shared<AttributeObject>(*context_, *node_, *elementType_, name);
}

std::int32_t Attributes::Count() const {
  const auto all = static_cast<std::int32_t>(node_->attributes.size());
  return all > 0 && BaseName(*node_->attributes.front()).empty() ? all - 1 : all;
}

AttributePtr Attributes::Attrib(const Key& key) const {
  if (key.numeric) {
    if (key.position < 1 || key.position > Count()) {
      throw LibraryFailure(kxMsgErrorNoAttribute, {key.text});
    }
    const std::size_t leading = node_->attributes.size() - static_cast<std::size_t>(Count());
    return Make(BaseName(*node_->attributes[static_cast<std::size_t>(key.position) - 1 + leading]));
  }
  if (Exists(key.text)) return Make(key.text);
  if (!IsKnown(key.text)) throw LibraryFailure(kxMsgErrorNoAttribute, {key.text});
  try {
    std::string value;
    return AddAttribute(key.text, value);
  } catch (const Failure&) {
    return nullptr;
  }
}

bool Attributes::Exists(const std::string& name) const {
  return FindAttribute(*node_, name) != nullptr;
}

AttributePtr Attributes::AddAttribute(const std::string& name, std::string& value) const {
  if (!IsKnown(name)) throw LibraryFailure(kxMsgErrorUnknownAttribute, {name});
  if (Exists(name)) throw LibraryFailure(kxMsgErrorAttributeExists, {name});
  const AttributeInfo info = Known({false, 0, name});
  if (value.empty()) value = info.DefaultValue();
  info.Check(value, true);
  node_->attributes.push_back(
      BuildAttribute(*context_->store, node_, *info.attributeType, *info.declaration));
  return Make(name);
}

void Attributes::RemoveAttribute(const Key& key) {
  const AttributePtr attribute = Attrib(key);
  if (attribute == nullptr) throw ObjectNotSet();
  const std::string name = attribute->Name();
  if (!IsKnown(name)) throw LibraryFailure(kxMsgErrorUnknownAttribute, {name});
  if (!Exists(name)) throw LibraryFailure(kxMsgErrorNoAttribute, {name});
  const AttributeInfo info = Known({false, 0, name});
  if (IsAttributeFixed(Need(info.declaration), info.attributeType)) {
    throw LibraryFailure(kxMsgErrorAttributeRequired, {name});
  }
  Attribute* const removed = FindAttribute(*node_, name);
  std::erase(node_->attributes, removed);
  removed->owner = nullptr;
  // The document supplies a default again that it knows of, where the rules know another.
  const std::string supplied = context_->store->DefaultOf(*node_, name);
  if (!supplied.empty()) {
    node_->attributes.push_back(context_->store->NewAttribute(node_, name, supplied));
    node_->attributes.back()->written = false;
  }
  snapshot_.reset();
}

std::vector<AttributePtr> Attributes::Enumerate() {
  if (snapshot_) return *snapshot_;
  std::vector<AttributePtr> list;
  for (const Attribute* attribute : node_->attributes) {
    if (BaseName(*attribute).empty()) continue;
    const auto position = static_cast<double>(list.size() + 1);
    list.push_back(Attrib({true, position, ""}));
  }
  snapshot_ = list;
  return list;
}

std::int32_t Attributes::CountKnown() const {
  return static_cast<std::int32_t>(ChildrenOf(*elementType_, "attribute").size());
}

bool Attributes::IsKnown(const std::string& name) const {
  return FindChild(*elementType_, "attribute", "type", name) != nullptr;
}

AttributeInfo Attributes::Known(const Key& key) const {
  const Declaration* found = nullptr;
  if (key.numeric) {
    if (key.position >= 1 && key.position <= CountKnown()) {
      found = ChildrenOf(*elementType_, "attribute")[static_cast<std::size_t>(key.position) - 1];
    }
  } else {
    found = FindChild(*elementType_, "attribute", "type", key.text);
  }
  if (found == nullptr) throw LibraryFailure(kxMsgErrorNoAttribute, {key.text});
  return {*context_, *elementType_, Property(found, "type")};
}

}  // namespace kx::model
