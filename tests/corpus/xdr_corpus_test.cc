// Real schemas and real documents. Every schema loads, or fails as its provenance explains; every
// document whose schema is there is bound and validated. One line a file, and a closing count.
#include "platform/dom/document.h"
#include "platform/host/host.h"
#include "platform/xdr/parse_binder.h"
#include "platform/xdr/schema_files.h"
#include "platform/xdr/typing.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace kx::xdr {
namespace {

namespace fs = std::filesystem;

const fs::path kCorpus = fs::path(KX_SOURCE_DIR) / ".." / "shared" / "corpus";

std::vector<fs::path> Files(const char* folder) {
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(kCorpus / folder)) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

std::string ReadAll(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

std::string Hex(std::int32_t code) {
  char text[16];
  std::snprintf(text, sizeof text, "%08X", static_cast<unsigned>(code));
  return text;
}

/// Where the schemas of all documents are, whatever folder the documents are in.
class CorpusSource final : public SchemaSource {
 public:
  CorpusSource() : files_(host::ProcessHost(), {}, Options(), nullptr) {}
  [[nodiscard]] SchemaText Read(std::string_view location,
                                std::string_view /*base*/) const override {
    return files_.Read(location, (kCorpus / "schemas" / "x").lexically_normal().string());
  }

 private:
  SchemaFiles files_;
};

class Corpus : public testing::Test {
 protected:
  void SetUp() override {
    if (fs::exists(kCorpus)) return;
    if (std::getenv("CI") != nullptr) FAIL() << "the corpus is missing: " << kCorpus;
    GTEST_SKIP() << "the corpus is not beside the project";
  }
  CorpusSource source_;
  PlainProvider provider_{source_};
  BindingService service_{provider_};
};

// What must be refused, and why.
const std::map<std::string, std::string> kRefusedSchemas = {
    {"asm-v1-manifest.xdr", "C00CE225"},            // refers to an AttributeType that is not there
    {"portfolio-schema.xml", "C00CE557"},           // a comment before the XML declaration
    {"updategram-student-course.xdr", "C00CE022"},  // two IDs on one element type
};
constexpr const char* kNoSchema = "800C0006";  // its schema is not in the corpus
constexpr const char* kLateDeclaration = "C00CE557";
const std::map<std::string, std::string> kRefusedDocuments = {
    {"CIV4MainMenus.xml", kNoSchema},
    {"ConnectResponse.xml", kNoSchema},
    {"DtmDeviceType.xml", kNoSchema},
    {"ExportedVariables2.xml", kNoSchema},
    {"GetItemListResponse.xml", kNoSchema},
    {"OpenShipments.xml", kNoSchema},
    {"ReadRequestResponse.xml", kNoSchema},
    {"TransactionResponse.xml", kNoSchema},
    {"fdt-DTMParameter.xml", kNoSchema},
    {"ado-hierarchical-recordset.xml", "C00CE513"},  // a bare ampersand
    {"auction2.xml", kLateDeclaration},
    {"invoice.xml", kLateDeclaration},
    {"pole4.xml", kLateDeclaration},
    {"portfolio.xml", kLateDeclaration},
    {"forxml-id-idref.xml", "C00CE555"},   // a fragment: several roots
    {"forxml-timestamp.xml", "C00CE555"},  // the same
    {"stock-sorter.xml", "C00CE00C"},      // a processing instruction named xml:stylesheet
};

TEST_F(Corpus, SchemasLoadOrFailAsExplained) {
  int loaded = 0;
  int refused = 0;
  for (const fs::path& path : Files("schemas")) {
    const std::string name = path.filename().string();
    const LoadedGroup group = provider_.Load("x-schema:" + name, "");
    const auto expected = kRefusedSchemas.find(name);
    std::cout << name << ": "
              << (group.group
                      ? std::to_string(group.group->members.front().schema->Elements().size()) +
                            " element types"
                      : Hex(group.error.code) + " " + group.error.reason)
              << std::endl;
    ++(group.group ? loaded : refused);
    if (expected == kRefusedSchemas.end()) {
      EXPECT_TRUE(group.group) << name << ": " << group.error.reason << group.error.srcText;
    } else {
      EXPECT_EQ(Hex(group.error.code), expected->second) << name;
    }
  }
  std::cout << "schemas: " << loaded << " loaded, " << refused << " refused" << std::endl;
  EXPECT_GT(loaded, 20);
}

// Counts the elements that are bound.
int CountBound(const dom::Document& document) {
  int bound = 0;
  const dom::Cursor root = document.Root();
  for (dom::Cursor at = root; at; at = at.NextInTree(root)) {
    if (at.IsElement() && FindBinding(at)) ++bound;
  }
  return bound;
}

TEST_F(Corpus, DocumentsAreBoundAndValidated) {
  int valid = 0;
  int refused = 0;
  int bound = 0;
  for (const fs::path& path : Files("instances")) {
    const std::string name = path.filename().string();
    dom::Document document = dom::NewDomDocument();
    document.EditSettings().schemaService = &service_;
    const bool good = document.LoadBytes(ReadAll(path));
    const auto expected = kRefusedDocuments.find(name);
    const int elements = good ? CountBound(document) : 0;
    std::cout << name << ": "
              << (good ? std::to_string(elements) + " elements bound"
                       : Hex(document.LastError().code) + " line " +
                             std::to_string(document.LastError().line) + " " +
                             document.LastError().reason)
              << std::endl;
    ++(good ? valid : refused);
    bound += elements;
    if (good) {
      EXPECT_EQ(ValidateBound(document.Data()).code, 0) << name;
    }
    if (expected == kRefusedDocuments.end()) {
      EXPECT_TRUE(good) << name << ": " << document.LastError().reason;
    } else {
      EXPECT_EQ(Hex(document.LastError().code), expected->second) << name;
    }
  }
  std::cout << "documents: " << valid << " accepted, " << refused << " refused, " << bound
            << " elements bound" << std::endl;
  EXPECT_GT(bound, 5000);
}

}  // namespace
}  // namespace kx::xdr
