// See suite_list.h.
#include "conformance/suite_list.h"

#include "support/documents.h"

#include <expat.h>
#include <map>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace kx::test {

namespace fs = std::filesystem;

namespace {

using Attributes = std::map<std::string, std::string, std::less<>>;

std::string ValueOr(const Attributes& attributes, std::string_view name, std::string_view other) {
  const auto found = attributes.find(name);
  return found == attributes.end() ? std::string(other) : found->second;
}

SuiteType TypeOf(const std::string& name) {
  if (name == "valid") return SuiteType::kValid;
  if (name == "invalid") return SuiteType::kInvalid;
  if (name == "not-wf") return SuiteType::kNotWellFormed;
  if (name == "error") return SuiteType::kError;
  throw std::runtime_error("a test of an unknown type: " + name);
}

// What Expat's callbacks fill in: the tests, and the folders of the open groups.
struct Reading {
  fs::path documents;
  std::vector<fs::path> bases;
  std::vector<SuiteTest> tests;
};

SuiteTest TestOf(const Attributes& attributes, const fs::path& base) {
  SuiteTest test;
  test.id = ValueOr(attributes, "ID", "");
  test.type = TypeOf(ValueOr(attributes, "TYPE", ""));
  // The values that the list's document type declares for attributes that are left out.
  test.entities = ValueOr(attributes, "ENTITIES", "none");
  test.recommendation = ValueOr(attributes, "RECOMMENDATION", "XML1.0");
  test.namespaces = ValueOr(attributes, "NAMESPACE", "yes") == "yes";
  test.version = ValueOr(attributes, "VERSION", "");
  test.edition = ValueOr(attributes, "EDITION", "");
  test.document = base / ValueOr(attributes, "URI", "");
  const std::string output = ValueOr(attributes, "OUTPUT", "");
  if (!output.empty()) test.output = base / output;
  return test;
}

void StartElement(void* data, const XML_Char* name, const XML_Char** pairs) {
  auto& reading = *static_cast<Reading*>(data);
  Attributes attributes;
  for (; *pairs != nullptr; pairs += 2) attributes[pairs[0]] = pairs[1];
  const std::string_view element = name;
  const fs::path base = reading.bases.empty() ? reading.documents : reading.bases.back();
  reading.bases.push_back(base / ValueOr(attributes, "xml:base", ""));
  if (element == "TEST") reading.tests.push_back(TestOf(attributes, base));
}

void EndElement(void* data, const XML_Char* /*name*/) {
  static_cast<Reading*>(data)->bases.pop_back();
}

}  // namespace

fs::path SuiteFolder() { return fs::path(KX_SUITE_DIR) / "package/build/dist"; }

std::vector<SuiteTest> ReadSuiteList(const fs::path& folder) {
  const std::string list = ReadFile(folder / "cleaned/xmlconf-flattened.xml");
  Reading reading;
  reading.documents = folder / "xmlconf";
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
      XML_ParserCreate(nullptr), &XML_ParserFree);
  XML_SetUserData(parser.get(), &reading);
  XML_SetElementHandler(parser.get(), StartElement, EndElement);
  if (XML_Parse(parser.get(), list.data(), static_cast<int>(list.size()), XML_TRUE) ==
      XML_STATUS_ERROR) {
    throw std::runtime_error("the suite's list of tests is damaged");
  }
  return std::move(reading.tests);
}

}  // namespace kx::test
