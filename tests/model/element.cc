// See element.h.
#include "model/element.h"

#include "kxmessage/error_codes.h"

#include "model/failure.h"

#include <cmath>
#include <cstdlib>

namespace kx::model {

Context::Context(Store& messageStore, const Declaration& messageSchema)
    : store(&messageStore), schema(&messageSchema) {
  for (const Declaration* type : ElementTypesOf(messageSchema)) {
    index.emplace(Lower(Property(type, "name")), type);
  }
}

const Declaration& Context::TypeOf(const std::string& name) const {
  const auto found = index.find(Lower(name));
  if (found == index.end()) throw InvalidCall();
  return *found->second;
}

// ---- Minimum content ---------------------------------------------------------------------------

namespace {

void AddMinimum(const Context& context, Node& node, const Declaration& declarations) {
  for (const Declaration* child : ChildrenOf(declarations, "element")) {
    const std::string name = Property(child, "type");
    if (name.empty() || Property(child, "minOccurs") == "0") continue;
    Append(node, BuildContent(context, &node, context.TypeOf(name)));
  }
}

}  // namespace

Node* BuildContent(const Context& context, const Node* parent, const Declaration& type,
                   const std::string& rootSpace) {
  Node* const node = context.store->NewNode(Kind::kElement, Property(&type, "name"),
                                            parent == nullptr ? rootSpace : Lower(parent->space));
  const std::vector<const Declaration*> groups = ChildrenOf(type, "group");
  if (!groups.empty()) AddMinimum(context, *node, *groups.front());
  for (const Declaration* declaration : ChildrenOf(type, "attribute")) {
    const std::string name = Property(declaration, "type");
    const Declaration* const attributeType = FindAttributeType(name, *context.schema, type);
    if (attributeType == nullptr) throw LibraryFailure(kxMsgErrorUnknownAttribute, {name});
    if (!IsAttributeFixed(*declaration, attributeType)) continue;
    node->attributes.push_back(BuildAttribute(*context.store, node, *attributeType, *declaration));
  }
  AddMinimum(context, *node, type);
  return node;
}

bool IsAttributeFixed(const Declaration& declaration, const Declaration* type) {
  const auto either = [&](const std::string& name) {
    const std::string own = Property(&declaration, name);
    if (own.empty() && type == nullptr) throw ObjectNotSet();
    return own.empty() ? Property(type, name) : own;
  };
  return either("required") == "yes" || !either("default").empty();
}

Attribute* BuildAttribute(Store& store, Node* owner, const Declaration& type,
                          const Declaration& declaration) {
  std::string value = Property(&type, "default", Property(&declaration, "default"));
  if (value.empty() && Property(&type, "dt:type") == "enumeration") {
    const std::string values = Property(&type, "dt:values");
    value = values.substr(0, values.find(' '));
  }
  return store.NewAttribute(owner, Property(&type, "name"), value);
}

// ---- What the schema says ----------------------------------------------------------------------

namespace {

// The declaration of an element in the type of its parent; null when it has no such parent.
const Declaration* DeclarationInParent(const ElementInfo& info) {
  const Node* const parent = info.node->parent;
  if (parent == nullptr || parent->kind != Kind::kElement) return nullptr;
  const Declaration* const type = info.context->store->DefinitionOf(*parent);
  return type == nullptr ? nullptr : FindChild(*type, "element", "type", info.node->name);
}

std::int32_t LeadingNumber(const std::string& text) {
  return static_cast<std::int32_t>(std::nearbyint(std::strtod(text.c_str(), nullptr)));
}

std::string Number(const std::string& text) {
  std::string result = std::to_string(std::stod(text));
  return result.substr(0, result.find('.'));
}

}  // namespace

std::int32_t ElementInfo::MaxOccurrences() const {
  const Declaration* const declaration = DeclarationInParent(*this);
  const std::string text = Property(declaration, "maxOccurs", "1");
  return text == "*" ? -1 : LeadingNumber(text);
}

std::int32_t ElementInfo::MinOccurrences() const {
  return LeadingNumber(Property(DeclarationInParent(*this), "minOccurs", "1"));
}

std::string ElementInfo::Describe() const {
  const std::string children = Property(type, "content", "textOnly");
  const std::string value = Property(type, "content", "empty");
  const std::vector<const Declaration*> descriptions = ChildrenOf(*type, "description");
  std::string line = node->name;
  if (children != "empty" && children != "textOnly") line += " children";
  if (value != "eltOnly" && value != "empty") line += " value";
  if (Property(type, "model", "closed") != "closed") line += " open";
  line += " length " + Number(Property(type, "dt:minLength", "-1")) + ".." +
          Number(Property(type, "dt:maxLength", "-1"));
  line += " '" + (descriptions.empty() ? "" : descriptions.front()->text) + "'";
  line += " " + Property(type, "dt:type", "none");
  return line + " " + std::to_string(MinOccurrences()) + ".." + std::to_string(MaxOccurrences());
}

ValidElements::ValidElements(const Context& context, const Node& parent,
                             const Declaration& declaration)
    : context_(&context), parent_(&parent), declaration_(&declaration) {
  scratch_ = context.store->NewNode(Kind::kElement, parent.name, parent.space);
}

std::int32_t ValidElements::Count() const {
  return static_cast<std::int32_t>(ChildrenOf(*declaration_, "element").size());
}

bool ValidElements::Exists(const std::string& name) const {
  return FindChild(*declaration_, "element", "type", name) != nullptr;
}

ElementInfo ValidElements::Element(const Key& key) const {
  const Declaration* found = nullptr;
  if (key.numeric) {
    const std::vector<const Declaration*> all = ChildrenOf(*declaration_, "element");
    if (key.position >= 1 && key.position <= static_cast<double>(all.size())) {
      found = all[static_cast<std::size_t>(key.position) - 1];
    }
  } else {
    found = FindChild(*declaration_, "element", "type", key.text);
  }
  if (found == nullptr) throw LibraryFailure(kxMsgErrorNoChild, {key.text});
  const Declaration& type = context_->TypeOf(Property(found, "type"));
  Node* const node = BuildContent(*context_, parent_, type);
  Append(*scratch_, node);
  return {context_, node, &type};
}

// ---- Navigation --------------------------------------------------------------------------------

ElementPtr Element::Wrap(Node* node) const {
  const Declaration* const type = node == nullptr ? nullptr : context_->store->DefinitionOf(*node);
  if (type == nullptr) throw ObjectNotSet();
  return std::make_shared<Element>(*context_, node, type);
}

bool Element::CanContainChildren() const {
  const std::string content = Property(type_, "content", "textOnly");
  return content != "empty" && content != "textOnly";
}

ElementPtr Element::Parent() const {
  if (node_->parent == nullptr) throw ObjectNotSet();
  if (node_->parent->kind == Kind::kEnvelope) return nullptr;
  return Wrap(node_->parent);
}

ElementPtr Element::ChildElements(const Key& key) const {
  if (key.numeric) {
    const auto nodes = static_cast<double>(node_->children.size());
    if (key.position < 1 || key.position > nodes) {
      throw LibraryFailure(kxMsgErrorNoChild, {key.text});
    }
    const std::vector<Node*> elements = ElementsOf(*node_);
    const double index = key.position - 1;
    const bool there = index == std::floor(index) && index < static_cast<double>(elements.size());
    return Wrap(there ? elements[static_cast<std::size_t>(index)] : nullptr);
  }
  if (Node* const found = FindFirst(*node_, key.text)) return Wrap(found);
  const Declaration* const type = context_->store->DefinitionOf(*node_);
  if (type == nullptr) throw ObjectNotSet();
  // Any declaration of that name may be the one that lets the child be created.
  bool creates = false;
  for (const Declaration* declaration : ChildrenOf(*type, "element")) {
    creates =
        creates ||
        (Property(declaration, "type") == key.text &&
         (Property(declaration, "minOccurs") == "0" || Property(declaration, "maxOccurs") == "*"));
  }
  if (!creates) throw LibraryFailure(kxMsgErrorNoChild, {key.text});
  return Wrap(AppendNew(key.text));
}

Node* Element::AppendNew(const std::string& name) const {
  Node* const made = BuildContent(*context_, node_, context_->TypeOf(name));
  Append(*node_, made);
  return made;
}

std::int32_t Element::Count() const { return static_cast<std::int32_t>(ElementsOf(*node_).size()); }

bool Element::Exists(const std::string& path) const { return FindFirst(*node_, path) != nullptr; }

std::vector<ElementPtr> Element::Enumerate() {
  if (snapshot_) return *snapshot_;
  std::vector<ElementPtr> list;
  for (Node* child : ElementsOf(*node_)) list.push_back(Wrap(child));
  if (!list.empty()) snapshot_ = list;
  return list;
}

Attributes& Element::GetAttributes() {
  if (!attributes_) attributes_ = std::make_unique<Attributes>(*context_, node_, type_);
  return *attributes_;
}

// ---- Editing -----------------------------------------------------------------------------------

const Declaration* Element::DeclarationOf(const std::string& name) const {
  return FindChild(*type_, "element", "type", name);
}

bool Element::IsFull(const Declaration& declaration, const std::string& name) const {
  return Property(&declaration, "maxOccurs", "1") == "1" && !ElementsOf(*node_, name).empty();
}

ElementPtr Element::AddChild(std::string& name) {
  if (!CanContainChildren()) throw LibraryFailure(kxMsgErrorNoChildren);
  const std::vector<const Declaration*> all = ChildrenOf(*type_, "element");
  if (name.empty()) {
    if (all.size() != 1) throw LibraryFailure(kxMsgErrorInvalidChild, {"<Unspecified>"});
    name = Property(all.front(), "type");
  } else {
    const Declaration* const declaration = DeclarationOf(name);
    if (declaration == nullptr) throw LibraryFailure(kxMsgErrorInvalidChild, {name});
    if (IsFull(*declaration, name)) throw LibraryFailure(kxMsgErrorOneElement);
  }
  Node* const made = AppendNew(name);
  snapshot_.reset();
  return std::make_shared<Element>(*context_, made, &context_->TypeOf(name));
}

void Element::CheckNotRequired(const std::string& name) const {
  const Declaration* const declaration = DeclarationOf(name);
  if (declaration == nullptr || Property(declaration, "minOccurs", "1") != "1") return;
  if (ElementsOf(*node_, name).size() < 2) throw LibraryFailure(kxMsgErrorRequiredChild);
}

void Element::RemoveChildKey(const Key& key) {
  ElementPtr child;
  try {
    child = ChildElements(key);
  } catch (const Failure&) {
    throw LibraryFailure(kxMsgErrorNoChild, {key.text});
  }
  CheckNotRequired(child->node_->name);
  Remove(*node_, child->node_);
  snapshot_.reset();
}

void Element::RemoveChild(const Element* child) {
  if (!CanContainChildren()) throw LibraryFailure(kxMsgErrorNoChildren);
  if (child == nullptr) throw ObjectNotSet();
  const std::string& name = child->node_->name;
  if (DeclarationOf(name) == nullptr) {
    if (child->node_->parent != node_) throw LibraryFailure(kxMsgErrorInvalidChild, {name});
  } else {
    CheckNotRequired(name);
  }
  Remove(*node_, child->node_);
  snapshot_.reset();
}

// Raises: kxMsgErrorWrongNameSpace for an element of another namespace under a closed one.
bool Element::IsForeign(const Element& child) const {
  if (child.node_->space == node_->space) return false;
  if (Property(type_, "model", "closed") == "closed") {
    throw LibraryFailure(kxMsgErrorWrongNameSpace, {child.node_->name, node_->name});
  }
  return true;
}

ElementPtr Element::InsertChild(const Element* child) {
  if (!CanContainChildren()) throw LibraryFailure(kxMsgErrorNoChildren);
  if (child == nullptr) throw ObjectNotSet();
  const std::string& name = child->node_->name;
  if (!IsForeign(*child)) {
    const Declaration* const declaration = DeclarationOf(name);
    if (declaration == nullptr) throw LibraryFailure(kxMsgErrorInvalidChild, {name});
    if (IsFull(*declaration, name)) throw LibraryFailure(kxMsgErrorOneElement);
  }
  Node* const copy = context_->store->Copy(*child->node_);
  Append(*node_, copy);
  const Declaration* const type = context_->store->DefinitionOf(*child->node_);
  if (type == nullptr) throw ObjectNotSet();
  snapshot_.reset();
  return std::make_shared<Element>(*context_, copy, type);
}

ElementPtr Element::ReplaceChild(const Element* replacement, std::int32_t occurrence) {
  if (!CanContainChildren()) throw LibraryFailure(kxMsgErrorNoChildren);
  if (replacement == nullptr) throw ObjectNotSet();
  const std::string& name = replacement->node_->name;
  if (!IsForeign(*replacement) && DeclarationOf(name) == nullptr) {
    throw LibraryFailure(kxMsgErrorNoChild, {name});
  }
  const std::vector<Node*> children = ElementsOf(*node_, name);
  if (occurrence < 1 || static_cast<std::size_t>(occurrence) > children.size()) {
    throw LibraryFailure(kxMsgErrorInvalidOccurrence, {std::to_string(occurrence), name});
  }
  Node* const former = children[static_cast<std::size_t>(occurrence) - 1];
  Node* const copy = context_->store->Copy(*replacement->node_);
  for (Node*& place : node_->children) {
    if (place == former) place = copy;
  }
  copy->parent = node_;
  former->parent = nullptr;
  const Declaration* const type = context_->store->DefinitionOf(*replacement->node_);
  if (type == nullptr) throw ObjectNotSet();
  snapshot_.reset();
  return std::make_shared<Element>(*context_, copy, type);
}

// ---- Groups ------------------------------------------------------------------------------------

std::int32_t Element::GroupNumber() const {
  if (node_->parent == nullptr) return 0;
  const Declaration* const type = context_->store->DefinitionOf(*node_->parent);
  if (type == nullptr) return 0;
  std::int32_t number = 0;
  for (const Declaration* group : ChildrenOf(*type, "group")) {
    ++number;
    if (FindChild(*group, "element", "type", node_->name) != nullptr) return number;
  }
  return 0;
}

std::int32_t Element::NumberOfGroups() const {
  return static_cast<std::int32_t>(ChildrenOf(*type_, "group").size());
}

ValidElements Element::KnownGroupElements(std::int32_t number) const {
  const std::vector<const Declaration*> groups = ChildrenOf(*type_, "group");
  if (number < 1 || static_cast<std::size_t>(number) > groups.size()) {
    throw LibraryFailure(kxMsgErrorInvalidGroup);
  }
  return {*context_, *node_, *groups[static_cast<std::size_t>(number) - 1]};
}

std::int32_t Element::CurrentGroup() const {
  for (std::int32_t group = 1; group <= NumberOfGroups(); ++group) {
    const ValidElements elements = KnownGroupElements(group);
    for (std::int32_t i = 1; i <= elements.Count(); ++i) {
      if (Exists(elements.Element({true, static_cast<double>(i), ""}).node->name)) return group;
    }
  }
  return 0;
}

void Element::ReplaceGroup(std::int32_t number) {
  const std::int32_t current = CurrentGroup();
  if (number == current) return;
  if (number < 1 || number > NumberOfGroups()) throw LibraryFailure(kxMsgErrorInvalidGroup);
  const ValidElements former = KnownGroupElements(current);
  for (std::int32_t i = 1; i <= former.Count(); ++i) {
    const std::string name = former.Element({true, static_cast<double>(i), ""}).node->name;
    for (Node* child : ElementsOf(*node_, name)) Remove(*node_, child);
  }
  const ValidElements next = KnownGroupElements(number);
  for (std::int32_t i = 1; i <= next.Count(); ++i) {
    static_cast<void>(AppendNew(next.Element({true, static_cast<double>(i), ""}).node->name));
  }
}

}  // namespace kx::model
