// Expat's reading: namespaces on, nothing external read.
#include "differential/neutral_tree.h"

#include <expat.h>
#include <memory>

namespace kx::test {

namespace {

constexpr char kSeparator = '\f';  // no name and no URI of an accepted document holds it

// What Expat's callbacks fill in. Declarations come before their element: they are kept for it.
struct Callbacks {
  XML_Parser parser = nullptr;
  NeutralTree tree;
  std::vector<std::pair<std::string, std::string>> declarations;
  bool inDoctype = false;
};

// "uri SEP local SEP prefix", "uri SEP local" or "local".
NeutralTree::Name SplitName(std::string_view text) {
  NeutralTree::Name name;
  const std::size_t first = text.find(kSeparator);
  if (first == std::string_view::npos) {
    name.local = text;
    return name;
  }
  name.uri = text.substr(0, first);
  const std::string_view rest = text.substr(first + 1);
  const std::size_t second = rest.find(kSeparator);
  name.local = rest.substr(0, second);
  if (second != std::string_view::npos) name.prefix = rest.substr(second + 1);
  return name;
}

Callbacks& From(void* data) { return *static_cast<Callbacks*>(data); }

void OnDeclaration(void* data, const XML_Char* prefix, const XML_Char* uri) {
  From(data).declarations.emplace_back(prefix == nullptr ? "" : prefix, uri == nullptr ? "" : uri);
}

void OnStart(void* data, const XML_Char* name, const XML_Char** attributes) {
  Callbacks& callbacks = From(data);
  callbacks.tree.StartElement(SplitName(name));
  for (const auto& [prefix, uri] : callbacks.declarations) {
    callbacks.tree.Declaration(prefix, uri);
  }
  callbacks.declarations.clear();
  for (; *attributes != nullptr; attributes += 2) {
    callbacks.tree.Attribute(SplitName(attributes[0]), attributes[1]);
  }
}

void OnEnd(void* data, const XML_Char* /*name*/) { From(data).tree.EndElement(); }
void OnText(void* data, const XML_Char* text, int length) {
  From(data).tree.Text({text, static_cast<std::size_t>(length)});
}
// Our tree has no nodes for what stands inside a document type declaration.
void OnComment(void* data, const XML_Char* text) {
  if (!From(data).inDoctype) From(data).tree.Comment(text);
}
void OnInstruction(void* data, const XML_Char* target, const XML_Char* text) {
  if (!From(data).inDoctype) From(data).tree.Instruction(target, text);
}
void OnStartDoctype(void* data, const XML_Char* /*name*/, const XML_Char* /*systemId*/,
                    const XML_Char* /*publicId*/, int /*hasInternalSubset*/) {
  From(data).inDoctype = true;
}
void OnEndDoctype(void* data) { From(data).inDoctype = false; }
// Skips the entity: XML_STATUS_OK without having read it.
int OnExternalEntity(XML_Parser /*parser*/, const XML_Char* /*context*/, const XML_Char* /*base*/,
                     const XML_Char* /*systemId*/, const XML_Char* /*publicId*/) {
  return XML_STATUS_OK;
}

void SetHandlers(XML_Parser parser, Callbacks& callbacks) {
  XML_SetUserData(parser, &callbacks);
  XML_SetReturnNSTriplet(parser, XML_TRUE);
  XML_SetElementHandler(parser, OnStart, OnEnd);
  XML_SetStartNamespaceDeclHandler(parser, OnDeclaration);
  XML_SetCharacterDataHandler(parser, OnText);
  XML_SetCommentHandler(parser, OnComment);
  XML_SetProcessingInstructionHandler(parser, OnInstruction);
  XML_SetDoctypeDeclHandler(parser, OnStartDoctype, OnEndDoctype);
  // Without this not even internal parameter entities would be read.
  XML_SetParamEntityParsing(parser, XML_PARAM_ENTITY_PARSING_UNLESS_STANDALONE);
  XML_SetExternalEntityRefHandler(parser, OnExternalEntity);
  XML_SetHashSalt(parser, 1);
}

}  // namespace

Reading ReadWithExpat(std::string_view bytes) {
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
      XML_ParserCreateNS(nullptr, kSeparator), &XML_ParserFree);
  Callbacks callbacks;
  SetHandlers(parser.get(), callbacks);
  Reading reading;
  reading.accepted = XML_Parse(parser.get(), bytes.data(), static_cast<int>(bytes.size()),
                               XML_TRUE) == XML_STATUS_OK;
  if (reading.accepted) {
    reading.tree = callbacks.tree.Take();
    return reading;
  }
  const XML_Error error = XML_GetErrorCode(parser.get());
  reading.code = error;
  reading.message = XML_ErrorString(error);
  const XML_Index place = XML_GetCurrentByteIndex(parser.get());
  reading.place = place < 0 ? 0 : static_cast<std::size_t>(place);
  return reading;
}

}  // namespace kx::test
