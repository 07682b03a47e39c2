// The library's verdicts on the cases of a file, in the form of mono_verdicts.cs.
#include "platform/dom/document.h"
#include "platform/runtime/error.h"
#include "platform/xdr/parse_binder.h"
#include "platform/xdr/schema_collection.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

namespace {

using namespace kx;

/// Nothing can be read: the cases' schemas come as trees.
class NoSource final : public xdr::SchemaSource {
 public:
  [[nodiscard]] xdr::SchemaText Read(std::string_view /*location*/,
                                     std::string_view /*base*/) const override {
    xdr::SchemaText text;
    dom::SetParseError(text.failure, dom::ParseCode::kObjectNotFound);
    return text;
  }
};

std::string Judge(const std::string& schema, const std::string& text) {
  static const NoSource source;
  static const xdr::PlainProvider provider(source);
  static const xdr::BindingService service(provider);
  const auto schemas = runtime::MakeCounted<xdr::SchemaCollection>(source);
  const dom::Document declared = dom::NewDomDocument();
  try {
    if (!declared.LoadXml(schema)) return "schema: " + declared.LastError().reason;
    schemas->Add("urn:case", declared);
  } catch (const Error& error) {
    return "schema: " + error.Description();
  }
  const dom::Document document = dom::NewDomDocument();
  document.EditSettings().schemaService = &service;
  document.EditSettings().schemas = schemas;
  if (document.LoadXml(text)) return "valid";
  return "invalid: " + document.LastError().reason;
}

std::string OnOneLine(std::string text) {
  std::replace(text.begin(), text.end(), '\r', ' ');
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return 2;
  std::ifstream file(arguments[1], std::ios::binary);
  std::stringstream buffer;
  buffer << file.rdbuf();
  const std::string all = buffer.str();
  for (std::size_t at = all.find("=== "); at != std::string::npos;) {
    const std::size_t next = all.find("\n=== ", at);
    const std::string part = all.substr(at + 4, next == std::string::npos ? next : next - at - 4);
    const std::size_t line = part.find('\n');
    const std::size_t middle = part.find("\n---\n");
    std::string document = part.substr(middle + 5);
    while (!document.empty() && document.back() == '\n') document.pop_back();
    std::cout << part.substr(0, line) << ' '
              << OnOneLine(Judge(part.substr(line + 1, middle - line - 1), document)) << '\n';
    at = next == std::string::npos ? next : next + 1;
  }
  return 0;
}
