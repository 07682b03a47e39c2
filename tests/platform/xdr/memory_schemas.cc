#include "memory_schemas.h"

#include <cstdio>

namespace kx::xdr {

void MemorySchemas::PutBody(std::string location, std::string_view declarations) {
  Put(std::move(location),
      "<Schema xmlns='urn:schemas-microsoft-com:xml-data' "
      "xmlns:dt='urn:schemas-microsoft-com:datatypes'>" +
          std::string(declarations) + "</Schema>");
}

SchemaText MemorySchemas::Read(std::string_view location, std::string_view /*base*/) const {
  ++reads_;
  SchemaText text;
  text.url = location;
  const auto found = texts_.find(location);
  if (found == texts_.end()) {
    dom::SetParseError(text.failure, dom::ParseCode::kObjectNotFound);
    text.failure.url = location;
  } else {
    text.bytes = found->second;
  }
  return text;
}

dom::ParseError ParseAgainst(std::string_view declarations, std::string_view instance) {
  Workshop workshop;
  workshop.schemas.PutBody("s", declarations);
  const dom::Document document = workshop.NewDocument();
  document.LoadXml(instance);
  return document.LastError();
}

std::string Hex(std::int32_t code) {
  if (code == 0) return "0";
  char text[16];
  std::snprintf(text, sizeof text, "%08X", static_cast<unsigned>(code));
  return text;
}

}  // namespace kx::xdr
