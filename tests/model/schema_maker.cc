// See schema_maker.h.
#include "model/schema_maker.h"

#include <utility>

namespace kx::model {

namespace {

constexpr int kMaxTypes = 9;

void Set(Declaration& declaration, const std::string& name, const std::string& value) {
  if (!value.empty()) declaration.attributes[name] = value;
}

// A default that suits a data type.
std::string DefaultFor(const Declaration& attributeType, Chance& chance) {
  const std::string type = Property(&attributeType, "dt:type");
  if (type == "id") return {};
  if (type == "int") return chance.Pick({"5", "05", "-1"});
  if (type == "boolean") return chance.Pick({"0", "1"});
  if (type == "enumeration") return chance.Pick({"red", "green"});
  return chance.Pick({"x", "y"});
}

}  // namespace

Declaration SchemaMaker::Make() {
  Declaration schema;
  schema.tag = "Schema";
  schema.attributes = {{"xmlns", "urn:schemas-microsoft-com:xml-data"},
                       {"xmlns:dt", "urn:schemas-microsoft-com:datatypes"}};
  const int types = 4 + chance_.Below(kMaxTypes - 4);
  for (int i = 0; i < types; ++i) {
    const char first = letters_ == Letters::kSomeCapitals && chance_.OneIn(3) ? 'A' : 'a';
    names_.emplace_back(1, static_cast<char>(first + i));
  }
  for (const char* name : {"k", "l", "m"}) {
    if (!chance_.OneIn(4)) attributeTypes_.push_back(AttributeType(name));
  }
  schema.children = attributeTypes_;
  for (int i = 0; i < types; ++i) schema.children.push_back(ElementType(i));
  return schema;
}

Declaration SchemaMaker::AttributeType(const std::string& name) {
  Declaration type;
  type.tag = "AttributeType";
  type.attributes["name"] = name;
  Set(type, "dt:type",
      chance_.Pick({"", "", "string", "int", "boolean", "nmtoken", "nmtokens", "enumeration",
                    "enumeration", "id"}));
  if (Property(&type, "dt:type") == "enumeration") {
    Set(type, "dt:values", chance_.Pick({"red green", "green red", "red  green blue"}));
  }
  Set(type, "required", chance_.Pick({"", "", "yes", "no"}));
  if (chance_.OneIn(4)) Set(type, "default", DefaultFor(type, chance_));
  return type;
}

Declaration SchemaMaker::ElementType(int number) {
  Declaration type;
  type.tag = "ElementType";
  type.attributes["name"] = names_[static_cast<std::size_t>(number)];
  Set(type, "model", chance_.Pick({"", "open", "closed"}));
  const bool isLast = number + 1 == static_cast<int>(names_.size());
  if (!isLast && (number < 2 || chance_.OneIn(4))) {
    Set(type, "content", chance_.Pick({"textOnly", "textOnly", "empty", ""}));
    if (Property(&type, "content") == "textOnly") {
      Set(type, "dt:type", chance_.Pick({"", "", "int", "string"}));
    }
  } else {
    Set(type, "content", chance_.Pick({"eltOnly", "eltOnly", "eltOnly", "mixed", "mixed", ""}));
    Set(type, "order", chance_.Pick({"", "many", "many", "many"}));
    if (Property(&type, "content") == "eltOnly" && chance_.OneIn(4)) {
      Set(type, "order", chance_.Pick({"seq", "one"}));
    }
    AddChildren(type, number);
  }
  AddAttributes(type);
  if (chance_.OneIn(4)) {
    Declaration& description = type.children.emplace_back();
    description.tag = "description";
    description.text = "what it is";
  }
  return type;
}

void SchemaMaker::AddChildren(Declaration& type, int number) {
  for (int groups = chance_.OneIn(3) ? 0 : 1 + chance_.Below(3); groups > 0; --groups) {
    type.children.push_back(Group(number));
  }
  for (int elements = chance_.Below(4); elements > 0; --elements) {
    type.children.push_back(Element(number));
  }
}

Declaration SchemaMaker::Group(int number) {
  Declaration group;
  group.tag = "group";
  Set(group, "minOccurs", chance_.Pick({"", "0", "0"}));
  Set(group, "maxOccurs", chance_.Pick({"", "*"}));
  for (int elements = 1 + chance_.Below(3); elements > 0; --elements) {
    group.children.push_back(Element(number));
  }
  if (chance_.OneIn(8)) {
    Declaration inner = group;
    group.children.push_back(std::move(inner));
  }
  return group;
}

Declaration SchemaMaker::Element(int number) {
  Declaration element;
  element.tag = "element";
  Set(element, "minOccurs", chance_.Pick({"", "0", "0", "0", "1", "2"}));
  Set(element, "maxOccurs", chance_.Pick({"", "1", "*", "*", "2"}));
  const bool optional = Property(&element, "minOccurs") == "0" || number == 0;
  if (optional) element.attributes["minOccurs"] = "0";
  const int types = optional ? static_cast<int>(names_.size()) : number;
  element.attributes["type"] = names_[static_cast<std::size_t>(chance_.Below(types))];
  return element;
}

void SchemaMaker::AddAttributes(Declaration& type) {
  bool hasId = false;
  const auto add = [&](const Declaration& attributeType) {
    const bool isId = Property(&attributeType, "dt:type") == "id";
    if (isId && hasId) return;
    hasId = hasId || isId;
    Declaration attribute;
    attribute.tag = "attribute";
    attribute.attributes["type"] = Property(&attributeType, "name");
    Set(attribute, "required", chance_.Pick({"", "", "yes", "no"}));
    if (chance_.OneIn(4)) Set(attribute, "default", DefaultFor(attributeType, chance_));
    type.children.push_back(std::move(attribute));
  };
  for (const Declaration& attributeType : attributeTypes_) {
    if (!chance_.OneIn(2)) continue;
    if (chance_.OneIn(5)) {  // one of its own, of the same name
      Declaration own = AttributeType(Property(&attributeType, "name"));
      add(own);
      type.children.push_back(std::move(own));
    } else {
      add(attributeType);
    }
  }
  if (chance_.OneIn(3)) {
    Declaration own = AttributeType("own");
    add(own);
    type.children.push_back(std::move(own));
  }
}

}  // namespace kx::model
