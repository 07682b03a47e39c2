// libxml2's reading: namespaces on, nothing external read (an external entity reads as empty).
#include "differential/neutral_tree.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>
#include <memory>

namespace kx::test {

namespace {

std::string TextOf(const xmlChar* text) {
  return text == nullptr ? std::string() : std::string(reinterpret_cast<const char*>(text));
}

NeutralTree::Name NameOf(const xmlChar* local, const xmlNs* binding) {
  NeutralTree::Name name;
  name.local = TextOf(local);
  if (binding != nullptr) {
    name.uri = TextOf(binding->href);
    name.prefix = TextOf(binding->prefix);
  }
  return name;
}

void AddElement(xmlNode* element, NeutralTree& tree) {
  tree.StartElement(NameOf(element->name, element->ns));
  for (const xmlNs* at = element->nsDef; at != nullptr; at = at->next) {
    tree.Declaration(TextOf(at->prefix), TextOf(at->href));
  }
  for (const xmlAttr* at = element->properties; at != nullptr; at = at->next) {
    const std::unique_ptr<xmlChar, xmlFreeFunc> value(
        xmlNodeListGetString(element->doc, at->children, 1), xmlFree);
    tree.Attribute(NameOf(at->name, at->ns), TextOf(value.get()));
  }
}

void Enter(xmlNode* node, NeutralTree& tree) {
  switch (node->type) {
    case XML_ELEMENT_NODE:
      AddElement(node, tree);
      break;
    case XML_TEXT_NODE:
    case XML_CDATA_SECTION_NODE:
      tree.Text(TextOf(node->content));
      break;
    case XML_COMMENT_NODE:
      tree.Comment(TextOf(node->content));
      break;
    case XML_PI_NODE:
      tree.Instruction(TextOf(node->name), TextOf(node->content));
      break;
    default:
      break;
  }
}

void Walk(xmlDoc* document, NeutralTree& tree) {
  xmlNode* at = document->children;
  while (at != nullptr) {
    Enter(at, tree);
    if (at->type == XML_ELEMENT_NODE && at->children != nullptr) {
      at = at->children;
      continue;
    }
    if (at->type == XML_ELEMENT_NODE) tree.EndElement();
    while (at->next == nullptr) {
      at = at->parent;
      if (at == nullptr || at->type != XML_ELEMENT_NODE) return;
      tree.EndElement();
    }
    at = at->next;
  }
}

// Takes the place of reading files: every external entity is empty.
xmlParserInputPtr EmptyEntity(const char* /*url*/, const char* /*id*/, xmlParserCtxtPtr context) {
  return xmlNewStringInputStream(context, reinterpret_cast<const xmlChar*>(""));
}

// Keeps the first error of well-formedness or against the namespaces standard. libxml2 counts among
// the latter that a namespace name is not a URI, which the standard does not ask a parser to look
// at.
void NoteError(void* data, xmlErrorPtr error) {
  auto& reading = *static_cast<Reading*>(data);
  const bool aboutUri = error->code == XML_WAR_NS_URI || error->code == XML_WAR_NS_URI_RELATIVE;
  const bool counts = error->level == XML_ERR_FATAL || error->domain == XML_FROM_NAMESPACE;
  if (!counts || aboutUri || reading.code != 0) return;
  reading.code = error->code;
  reading.message = error->message == nullptr ? "" : error->message;
}

struct ContextCloser {
  void operator()(xmlParserCtxt* context) const {
    xmlFreeDoc(context->myDoc);
    xmlFreeParserCtxt(context);
  }
};

}  // namespace

Reading ReadWithLibxml(std::string_view bytes) {
  xmlSetExternalEntityLoader(EmptyEntity);
  Reading reading;
  xmlSetStructuredErrorFunc(&reading, NoteError);
  const std::unique_ptr<xmlParserCtxt, ContextCloser> context(
      xmlCreateMemoryParserCtxt(bytes.data(), static_cast<int>(bytes.size())));
  if (!context) {  // it makes none for the empty text
    reading.code = XML_ERR_DOCUMENT_EMPTY;
    return reading;
  }
  xmlCtxtUseOptions(context.get(), XML_PARSE_NOENT | XML_PARSE_DTDATTR | XML_PARSE_NONET |
                                       XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
  context->sax->externalSubset = nullptr;
  xmlParseDocument(context.get());
  xmlSetStructuredErrorFunc(nullptr, nullptr);
  reading.accepted = context->wellFormed != 0 && reading.code == 0;
  if (!reading.accepted) {
    if (reading.code == 0) reading.code = context->lastError.code;
    return reading;
  }
  NeutralTree tree;
  Walk(context->myDoc, tree);
  reading.tree = tree.Take();
  return reading;
}

}  // namespace kx::test
