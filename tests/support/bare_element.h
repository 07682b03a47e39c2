// An element of a document and an element type of a schema document that know nothing of each
// other: no schema is compiled, nothing is supplied or validated. For the rules that no message of
// a good schema comes to.
#pragma once

#include "kxmessage/attributes.h"
#include "kxmessage/element.h"

#include "core/handle_access.h"
#include "element/element_impl.h"
#include "platform/dom/document.h"
#include "schema/attribute_info_impl.h"
#include "schema/element_context.h"
#include "schema/element_type_index.h"
#include "support/message_world.h"

#include <stdexcept>
#include <string>
#include <string_view>

namespace kx::test {

class BareElement {
 public:
  /// The document element of `text`, as an element of the type `typeName` of `declarations`.
  BareElement(MessageWorld& world, std::string_view declarations, std::string_view typeName,
              std::string_view text) {
    const auto context = runtime::MakeCounted<schema::ElementContext>();
    context->environment = world.Environment();
    context->document = Parsed(text);
    context->schemaDocument = Parsed(MessageWorld::SchemaText(declarations));
    schema::IndexElementTypes(context->schemaDocument, context->elementTypes);
    context_ = context;
    elementType_ = context_->elementTypes.RequireElementType(typeName);
  }

  [[nodiscard]] KXMsgElement Element() const {
    return HandleAccess::Wrap<KXMsgElement>(
        element::ElementImpl::Wrap(context_, context_->document.DocumentElement(), elementType_));
  }
  [[nodiscard]] KXMsgAttributes Attributes() const { return Element().Attributes(); }
  [[nodiscard]] runtime::Counted<schema::AttributeInfoImpl> Info(std::string_view name) const {
    return runtime::MakeCounted<schema::AttributeInfoImpl>(context_, elementType_, name);
  }
  [[nodiscard]] const dom::Document& Document() const { return context_->document; }
  [[nodiscard]] std::string Xml() const { return Document().DocumentElement().Xml(); }

 private:
  [[nodiscard]] static dom::Document Parsed(std::string_view text) {
    dom::Document document = dom::NewDomDocument();
    if (!document.LoadXml(text)) throw std::logic_error("a test's document is none");
    return document;
  }

  schema::SharedContext context_;
  dom::Node elementType_;
};

}  // namespace kx::test
