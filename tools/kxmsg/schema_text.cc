// See schema_text.h.
#include "kxmsg/schema_text.h"

#include "kxmsg/text_form.h"

#include <array>
#include <charconv>

namespace kxmsg {

namespace {

std::string NumberText(double number) {
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
  return {buffer.data(), end};
}

std::string ContentText(const kx::SchemaElement& element) {
  if (element.content == "eltOnly") return "elements";
  if (element.content == "textOnly") {
    return element.dataType.empty() ? "text" : Printable(element.dataType);
  }
  return Printable(element.content);
}

std::string AttributeText(const kx::SchemaAttribute& attribute) {
  std::string text = "  @" + Printable(attribute.name);
  text += ": " + (attribute.dataType.empty() ? "string" : Printable(attribute.dataType));
  if (!attribute.values.empty()) {
    std::string values;
    for (const std::string& value : attribute.values) values += ' ' + Printable(value);
    text += " (" + values.substr(1) + ")";
  }
  if (attribute.required) text += ", required";
  if (!attribute.defaultText.empty()) text += ", default " + Quoted(attribute.defaultText);
  return text + '\n';
}

std::string ChildText(const kx::SchemaElement& element, const kx::SchemaChild& child) {
  std::string text = "  " + Printable(child.name);
  const std::string range = OccurrenceText(child.minOccurs, child.maxOccurs);
  if (!range.empty()) text += ' ' + range;
  const auto group = static_cast<std::size_t>(child.group);
  if (group != 0 && group <= element.groups.size()) {
    const kx::SchemaGroup& whole = element.groups[group - 1];
    const std::string groupRange = OccurrenceText(whole.minOccurs, whole.maxOccurs);
    text += ", in group " + std::to_string(group) + " (" + Printable(whole.order) +
            (groupRange.empty() ? "" : ' ' + groupRange) + ")";
  }
  return text + '\n';
}

// The objects or texts of a list as a JSON array.
template <typename List, typename ToJson>
std::string JsonList(const List& list, ToJson toJson) {
  std::string text;
  for (const auto& item : list) text += (text.empty() ? "" : ", ") + toJson(item);
  return '[' + text + ']';
}

std::string AttributeJson(const kx::SchemaAttribute& attribute) {
  return "{\"name\": " + JsonText(attribute.name) +
         ", \"dataType\": " + JsonText(attribute.dataType) +
         ", \"required\": " + (attribute.required ? "true" : "false") +
         ", \"default\": " + JsonText(attribute.defaultText) +
         ", \"values\": " + JsonList(attribute.values, JsonText) + '}';
}

std::string GroupJson(const kx::SchemaGroup& group) {
  return "{\"order\": " + JsonText(group.order) + ", \"minOccurs\": " + JsonText(group.minOccurs) +
         ", \"maxOccurs\": " + JsonText(group.maxOccurs) + '}';
}

std::string ChildJson(const kx::SchemaChild& child) {
  return "{\"name\": " + JsonText(child.name) + ", \"minOccurs\": " + JsonText(child.minOccurs) +
         ", \"maxOccurs\": " + JsonText(child.maxOccurs) +
         ", \"group\": " + std::to_string(child.group) + '}';
}

std::string LengthJson(const std::optional<double>& length) {
  return length ? NumberText(*length) : "null";
}

}  // namespace

std::string OccurrenceText(std::string_view least, std::string_view most) {
  if (least == "1" && most == "1") return {};
  return '[' + Printable(least) + ".." + Printable(most) + ']';
}

std::string SchemaElementText(const kx::SchemaElement& element) {
  std::string text = Printable(element.name) + ": " + ContentText(element);
  if (!element.children.empty()) text += ", " + Printable(element.order);
  text += element.open ? ", open" : ", closed";
  if (!element.topLevel) text += ", inside another element type";
  if (element.content != "textOnly" && !element.dataType.empty()) {
    text += ", " + Printable(element.dataType);
  }
  if (element.minLength) text += ", at least " + NumberText(*element.minLength) + " long";
  if (element.maxLength) text += ", at most " + NumberText(*element.maxLength) + " long";
  text += '\n';
  if (!element.description.empty())
    text += "  \"" + Printable(OneLine(element.description)) + "\"\n";
  for (const kx::SchemaAttribute& attribute : element.attributes) text += AttributeText(attribute);
  for (const kx::SchemaChild& child : element.children) text += ChildText(element, child);
  return text;
}

std::string SchemaElementJson(const kx::SchemaElement& element) {
  return "{\"name\": " + JsonText(element.name) +
         ", \"description\": " + JsonText(element.description) +
         ", \"content\": " + JsonText(element.content) + ", \"order\": " + JsonText(element.order) +
         ", \"open\": " + (element.open ? "true" : "false") +
         ", \"topLevel\": " + (element.topLevel ? "true" : "false") +
         ", \"dataType\": " + JsonText(element.dataType) +
         ", \"minLength\": " + LengthJson(element.minLength) +
         ", \"maxLength\": " + LengthJson(element.maxLength) +
         ", \"attributes\": " + JsonList(element.attributes, AttributeJson) +
         ", \"groups\": " + JsonList(element.groups, GroupJson) +
         ", \"children\": " + JsonList(element.children, ChildJson) + '}';
}

}  // namespace kxmsg
