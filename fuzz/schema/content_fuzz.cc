// Any text as the schema of a message: it is indexed, each of its names finds what the patterns
// find, and every element type is built, within bounds, or refused with an error.
#include "core/queries.h"
#include "platform/dom/document.h"
#include "platform/dom/node_list.h"
#include "platform/runtime/error.h"
#include "schema/declarations.h"
#include "schema/default_content.h"
#include "schema/node_property.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

using namespace kx;
using dom::Node;

constexpr std::int32_t kMostTypes = 16;
constexpr std::int32_t kMostNames = 16;

void Require(bool holds) {
  if (!holds) std::abort();
}

// What the pattern gives, or nothing where it is none; then the look-up must refuse it too.
template <class Find>
void CheckLookUp(const Node& in, const std::string& pattern, const Find& find) {
  Node expected;
  bool refused = false;
  try {
    expected = core::SelectSingleNode(in, pattern);
  } catch (const Error&) {
    refused = true;
  }
  try {
    const Node found = find();
    Require(!refused && found == expected);
  } catch (const Error&) {
    Require(refused);
  }
}

void CheckNames(const Node& type, const dom::NodeList& declarations) {
  for (std::int32_t i = 0; i < declarations.Length() && i < kMostNames; ++i) {
    const std::string name = schema::AttributeText(declarations.Item(i), "type");
    CheckLookUp(type, "element[@type='" + name + "']",
                [&] { return schema::FindElementDeclaration(type, name); });
    CheckLookUp(type, "element[@type='" + name + "' && (@minOccurs='0' || @maxOccurs='*')]",
                [&] { return schema::FindOptionalDeclaration(type, name); });
    CheckLookUp(type, "attribute[@type=\"" + name + "\"]", [&] {
      return schema::FindAttributeDeclaration(type, name, schema::Quotes::kDouble);
    });
    CheckLookUp(type, "group[element[@type='" + name + "']]",
                [&] { return schema::FindGroupOf(type, name); });
    CheckLookUp(type, "AttributeType[@name='" + name + "']", [&] {
      const Node found = schema::FindAttributeType(name, type.OwnerDocument(), type);
      return found && found.ParentNode() == type ? found : Node();
    });
  }
}

void Build(const Node& type, const schema::ElementTypeIndex& index) {
  const schema::ContentBuild build{{500, 50, 1U << 16U}, nullptr};
  const dom::Document document = dom::NewDomDocument();
  try {
    const Node element = schema::BuildDefaultContent(document, {}, type, index, "s.xml", build);
    Require(element && !element.ParentNode());
    Require(!element.Xml().empty());
  } catch (const Error&) {  // refused, which is an answer
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const dom::Document document = dom::NewDomDocument();
  if (!document.LoadBytes({reinterpret_cast<const char*>(data), size})) return 0;
  const dom::NodeList types = core::SelectNodes(document.AsNode(), "//ElementType");
  schema::ElementTypeIndex index;
  try {
    schema::IndexElementTypes(document, index);
    Require(index.Count() == types.Length());
  } catch (const MsgError&) {
    Require(index.Count() < types.Length());
  }
  for (std::int32_t i = 0; i < index.Count() && i < kMostTypes; ++i) {
    const Node type = index.At(i + 1);
    Require(type == types.Item(i));
    CheckNames(type, schema::ElementDeclarations(type));
    CheckNames(type, schema::AttributeDeclarations(type));
    const dom::NodeList groups = schema::Groups(type);
    if (groups.Length() > 0) CheckNames(type, schema::ElementDeclarations(groups.Item(0)));
    Build(type, index);
  }
  return 0;
}
