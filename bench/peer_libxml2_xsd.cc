// libxml2 at schemas: the XSD that says the same as the library's schema. See peers.h.
#include "peers.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlschemas.h>
#include <stdexcept>

namespace kx::bench {

namespace {

struct FreeXml {
  void operator()(xmlDoc* document) const noexcept { xmlFreeDoc(document); }
  void operator()(xmlSchema* schema) const noexcept { xmlSchemaFree(schema); }
  void operator()(xmlSchemaParserCtxt* parser) const noexcept { xmlSchemaFreeParserCtxt(parser); }
  void operator()(xmlSchemaValidCtxt* context) const noexcept { xmlSchemaFreeValidCtxt(context); }
};
template <class Object>
using Owned = std::unique_ptr<Object, FreeXml>;

Owned<xmlDoc> Load(std::string_view text) {
  constexpr int kOptions = XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_NOERROR;
  Owned<xmlDoc> document(
      xmlReadMemory(text.data(), static_cast<int>(text.size()), "order.xml", nullptr, kOptions));
  if (!document) throw std::runtime_error("libxml2 refuses the text");
  return document;
}

Owned<xmlSchema> LoadSchema() {
  const Owned<xmlSchemaParserCtxt> parser(xmlSchemaNewParserCtxt(KX_BENCH_SCHEMAS "/envelope.xsd"));
  Owned<xmlSchema> schema(xmlSchemaParse(parser.get()));
  if (!schema) throw std::runtime_error("libxml2 refuses the schema");
  return schema;
}

void Check(xmlSchema* schema, xmlDoc* document) {
  const Owned<xmlSchemaValidCtxt> context(xmlSchemaNewValidCtxt(schema));
  if (xmlSchemaValidateDoc(context.get(), document) != 0) {
    throw std::runtime_error("libxml2 finds the text invalid");
  }
}

class ParseAndValidate : public Task {
 public:
  explicit ParseAndValidate(const Workload& workload) : texts_(workload.texts) {}
  std::uint64_t Run(std::size_t text) override {
    const Owned<xmlDoc> document = Load(texts_[text]);
    Check(schema_.get(), document.get());
    return 0;
  }

 private:
  const std::vector<std::string>& texts_;
  Owned<xmlSchema> schema_ = LoadSchema();
};

class ValidateOnly : public Task {
 public:
  explicit ValidateOnly(const Workload& workload) {
    for (const std::string& text : workload.texts) documents_.push_back(Load(text));
  }
  std::uint64_t Run(std::size_t text) override {
    Check(schema_.get(), documents_[text].get());
    return 0;
  }

 private:
  Owned<xmlSchema> schema_ = LoadSchema();
  std::vector<Owned<xmlDoc>> documents_;
};

class CompileSchema : public Task {
 public:
  std::uint64_t Run(std::size_t /*text*/) override { return LoadSchema() ? 1 : 0; }
};

}  // namespace

std::unique_ptr<Task> Libxml2ParseAndValidate(const Workload& workload) {
  return std::make_unique<ParseAndValidate>(workload);
}
std::unique_ptr<Task> Libxml2Validate(const Workload& workload) {
  return std::make_unique<ValidateOnly>(workload);
}
std::unique_ptr<Task> Libxml2CompileSchema() { return std::make_unique<CompileSchema>(); }

}  // namespace kx::bench
