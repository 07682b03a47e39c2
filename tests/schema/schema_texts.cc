// See schema_texts.h.
#include "schema_texts.h"

#include "platform/dom/parse_error.h"

#include <gtest/gtest.h>

namespace kx::schema {

std::string SchemaText(std::string_view declarations) {
  return "<Schema xmlns='urn:schemas-microsoft-com:xml-data' "
         "xmlns:dt='urn:schemas-microsoft-com:datatypes'>" +
         std::string(declarations) + "</Schema>";
}

dom::Document SchemaDocument(std::string_view declarations) {
  dom::Document document = dom::NewDomDocument();
  EXPECT_TRUE(document.LoadXml(SchemaText(declarations))) << document.LastError().reason;
  return document;
}

ElementTypeIndex IndexOf(const dom::Document& schemaDocument) {
  ElementTypeIndex index;
  IndexElementTypes(schemaDocument, index);
  return index;
}

xdr::SchemaText MemorySource::Read(std::string_view location, std::string_view /*base*/) const {
  ++reads_;
  xdr::SchemaText text;
  text.url = location;
  const auto found = texts_.find(location);
  if (found == texts_.end()) {
    dom::SetParseError(text.failure, dom::ParseCode::kObjectNotFound);
    text.failure.url = location;
    return text;
  }
  text.bytes = found->second;
  text.stamp = std::to_string(stamp_);
  return text;
}

xdr::SchemaPlace MemorySource::Identify(std::string_view location,
                                        std::string_view /*base*/) const {
  if (texts_.find(location) == texts_.end()) return {};
  return {std::string(location), std::to_string(stamp_)};
}

}  // namespace kx::schema
