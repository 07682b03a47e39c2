// See read_again.h.
#include "read_again.h"

#include "kxmessage/element.h"

#include "core/handle_access.h"
#include "core/queries.h"
#include "core/text_form.h"
#include "element/element_impl.h"
#include "message_world.h"
#include "platform/dom/node_list.h"
#include "platform/xdr/typing.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace kx::fuzz {

namespace {

// The text of a document in which a copy of a content root repeats the declaration that is in force
// anyway, as it is read again without.
std::string CanonicalText(const dom::Document& document) {
  return core::CanonicalizeSchemaRefs(document.DocumentElement().Xml(), {}, *MessageWorld()).text;
}

std::string NamespaceOf(const dom::Node& node) {
  return node.NamespaceUri().value_or(std::string());
}

// Whether the elements of both are of the same namespaces, one by one.
bool HaveSameNamespaces(const dom::NodeList& these, const dom::NodeList& those) {
  if (these.Length() != those.Length()) std::abort();
  for (std::int32_t i = 0; i < these.Length(); ++i) {
    if (NamespaceOf(these.Item(i)) != NamespaceOf(those.Item(i))) return false;
  }
  return true;
}

// Whether an element of the main schema stands in one of another schema. The text of a message
// declares the main schema once: such an element is read again as one of the other schema.
bool ReturnsToMainSchema(const dom::Node& root, const dom::NodeList& elements) {
  const std::string main = NamespaceOf(root);
  for (std::int32_t i = 0; i < elements.Length(); ++i) {
    const dom::Node element = elements.Item(i);
    const bool isRoot = element == root;
    if (!isRoot && NamespaceOf(element) == main && NamespaceOf(element.ParentNode()) != main) {
      return true;
    }
  }
  return false;
}

}  // namespace

void CheckReadsAgain(const KXMessage& message) {
  const core::Environment& environment = *MessageWorld();
  const auto& root = HandleAccess::Of<element::ElementImpl>(message.RootElement());
  const dom::Document document = root.GetElementNode().OwnerDocument();
  const std::string text = core::LoadMessageText(message.XML(), {}, environment).text;
  const dom::Document again = environment.NewDomDocument();
  again.ValidateOnParse(false);
  if (!again.LoadXml(text)) std::abort();
  if (CanonicalText(again) != CanonicalText(document)) std::abort();
  const dom::NodeList elements = core::SelectNodes(root.GetElementNode(), "//*");
  if (!HaveSameNamespaces(elements, core::SelectNodes(again.DocumentElement(), "//*"))) {
    if (!ReturnsToMainSchema(root.GetElementNode(), elements)) std::abort();
    return;
  }
  again.ValidateOnParse(true);
  const bool valid = again.LoadXml(text);
  if (valid != (xdr::ValidateBound(document.Data()).code == 0)) std::abort();
}

}  // namespace kx::fuzz
