// See naive_content.h.
#include "naive_content.h"

#include "kxmessage/error_codes.h"

#include "platform/dom/node_list.h"
#include "platform/patterns/select.h"
#include "platform/text/compare.h"
#include "schema_texts.h"

#include <sstream>
#include <stdexcept>

namespace kx::schema {

namespace {

using dom::Node;

struct Stop {
  std::int64_t number;
};

std::string Text(const Node& node, const char* attribute) {
  return node.GetAttribute(attribute).value_or("");
}

class Naive {
 public:
  Naive(const dom::Document& schema, std::size_t maxDepth, std::size_t maxElements)
      : schema_(schema), maxDepth_(maxDepth), maxElements_(maxElements) {}

  Node Build(const Node& type, std::size_t depth) {
    if (depth > maxDepth_) throw Stop{28};
    if (++elements_ > maxElements_) throw Stop{7};
    Node element = document_.CreateElement(Text(type, "name"));
    const Node group = patterns::SelectSingleNode(type, "group");
    if (group) AddChildren(element, group, depth);
    AddAttributes(element, type);
    AddChildren(element, type, depth);
    return element;
  }

 private:
  void AddChildren(const Node& element, const Node& declarations, std::size_t depth) {
    const dom::NodeList list = patterns::SelectNodes(declarations, "element");
    for (std::int32_t i = 0; i < list.Length(); ++i) {
      const std::string name = Text(list.Item(i), "type");
      if (name.empty() || Text(list.Item(i), "minOccurs") == "0") continue;
      element.AppendChild(Build(FindType(name), depth + 1));
    }
  }

  // The last of the document's element types that the index would hold, by comparing with each.
  Node FindType(const std::string& name) {
    const dom::NodeList types = patterns::SelectNodes(schema_.AsNode(), "//ElementType");
    for (std::int32_t i = 0; i < types.Length(); ++i) {
      if (text::EqualsCaseless(Text(types.Item(i), "name"), name)) return types.Item(i);
    }
    throw Stop{5};
  }

  void AddAttributes(const Node& element, const Node& type) {
    const dom::NodeList list = patterns::SelectNodes(type, "attribute");
    for (std::int32_t i = 0; i < list.Length(); ++i) {
      const Node declaration = list.Item(i);
      const std::string query = "AttributeType[@name='" + Text(declaration, "type") + "']";
      Node attributeType = patterns::SelectSingleNode(type, query);
      if (!attributeType) {
        attributeType = patterns::SelectSingleNode(schema_.DocumentElement(), query);
      }
      if (!attributeType) throw Stop{static_cast<std::uint32_t>(kxMsgErrorUnknownAttribute)};
      const auto either = [&](const char* name) {
        const std::string own = Text(declaration, name);
        return own.empty() ? Text(attributeType, name) : own;
      };
      if (either("required") != "yes" && either("default").empty()) continue;
      element.SetAttribute(Text(attributeType, "name"), DefaultOf(declaration, attributeType));
    }
  }

  static std::string DefaultOf(const Node& declaration, const Node& attributeType) {
    if (!Text(attributeType, "default").empty()) return Text(attributeType, "default");
    if (!Text(declaration, "default").empty()) return Text(declaration, "default");
    if (Text(attributeType, "dt:type") != "enumeration") return "";
    const std::string values = Text(attributeType, "dt:values");
    return values.substr(0, values.find(' '));
  }

  const dom::Document& schema_;
  std::size_t maxDepth_;
  std::size_t maxElements_;
  std::size_t elements_ = 0;
  dom::Document document_ = dom::NewDomDocument();
};

}  // namespace

NaiveContent BuildNaively(const dom::Document& schemaDocument, const Node& elementType,
                          std::size_t maxDepth, std::size_t maxElements) {
  NaiveContent result;
  const Failure failure = FailureOf([&] {
    try {
      result.xml = Naive(schemaDocument, maxDepth, maxElements).Build(elementType, 1).Xml();
    } catch (const Stop& stop) {
      result.error = stop.number;
    }
  });
  if (failure.number != 0) result.error = failure.number;
  return result;
}

}  // namespace kx::schema
