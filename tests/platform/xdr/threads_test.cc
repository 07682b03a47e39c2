// Threads that load, validate, ask and edit documents of their own against schemas that they share:
// through one cache, whose files change meanwhile and which is emptied meanwhile, and from one
// collection. What matters here is what the thread sanitizer says.
#include "memory_schemas.h"
#include "platform/dom/node_list.h"
#include "platform/patterns/select.h"
#include "platform/xdr/schema_cache.h"
#include "platform/xdr/schema_collection.h"
#include "platform/xdr/schema_files.h"
#include "platform/xdr/typing.h"
#include "support/http_server.h"

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace kx::xdr {
namespace {

namespace fs = std::filesystem;

constexpr int kThreads = 8;
constexpr int kRounds = 30;

constexpr const char* kOrder =
    "<Schema xmlns='urn:schemas-microsoft-com:xml-data' "
    "xmlns:dt='urn:schemas-microsoft-com:datatypes' xmlns:p='x-schema:part.xdr'>"
    "<AttributeType name='id' dt:type='id' required='yes'/>"
    "<AttributeType name='state' default='open'/>"
    "<ElementType name='price' dt:type='fixed.14.4'/>"
    "<ElementType name='line' content='eltOnly'><attribute type='id'/>"
    "<element type='price'/></ElementType>"
    "<ElementType name='order' content='eltOnly'><attribute type='state'/>"
    "<element type='line' maxOccurs='*'/><element type='p:part' minOccurs='0'/></ElementType>"
    "</Schema>";
constexpr const char* kPart =
    "<Schema xmlns='urn:schemas-microsoft-com:xml-data' "
    "xmlns:dt='urn:schemas-microsoft-com:datatypes'>"
    "<ElementType name='part' content='textOnly' dt:type='int'/></Schema>";

std::string Order(const std::string& uri, int lines) {
  std::string text = "<order xmlns='" + uri + "'>";
  for (int i = 0; i < lines; ++i) {
    text +=
        "<line id='l" + std::to_string(i) + "'><price>" + std::to_string(i) + "0.5</price></line>";
  }
  return text + "</order>";
}

/// What patterns ask, answered by the schemas.
class SchemaTyping final : public patterns::NodeTyping {
 public:
  [[nodiscard]] datatypes::DataType TypeOf(const dom::Cursor& node) const override {
    return xdr::TypeOf(node);
  }
  [[nodiscard]] bool IsId(const dom::Cursor& attribute) const override {
    return IsIdAttribute(attribute);
  }
};

// One piece of work with a document: true when everything is as it is with one thread.
bool WorksOn(const dom::Document& document, const std::string& uri, int seed,
             const patterns::Pattern& shared) {
  static const SchemaTyping typing;
  patterns::QueryOptions options;
  options.typing = &typing;
  const int lines = 5 + seed % 20;
  if (!document.LoadXml(Order(uri, lines)) || Validate(document).code != 0) return false;
  const dom::Node order = document.DocumentElement();
  // As numbers these are the lines from the fourth on; as texts they would be others.
  if (patterns::SelectNodes(order, shared, options).Length() != lines - 3) return false;
  if (patterns::SelectNodes(order, "line[price $lt$ 15]", options).Length() != 2) return false;
  const dom::Node line = patterns::SelectSingleNode(order, "id('l2')", options);
  const dom::Node definition = Definition(order);
  if (!line || !definition || definition.GetAttribute("name") != "order") return false;
  // The schema's own document, which all threads read.
  if (patterns::SelectNodes(definition, "element[@type='line']").Length() != 1) return false;
  const dom::Node price = line.FirstChild();
  SetTypedValue(price, Variant(std::int32_t{7}));
  if (TypedValue(price).Type() == VariantType::kEmpty || price.Text() != "7") return false;
  const dom::Node extra = document.CreateNode(dom::NodeType::kElement, "line", uri);
  order.AppendChild(extra);
  if (Validate(document).code == 0) return false;  // it has no price and no id
  return document.Clone(dom::CloneDepth::kDeep).DocumentElement().GetAttribute("state") == "open";
}

void OnThreads(const std::function<void(int thread)>& work) {
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int thread = 0; thread < kThreads; ++thread) threads.emplace_back(work, thread);
  for (std::thread& thread : threads) thread.join();
}

class Threads : public testing::Test {
 protected:
  static void SetUpTestSuite() { setenv("no_proxy", "127.0.0.1", 1); }
  void SetUp() override {
    folder_ = fs::path(testing::TempDir()) / ("kx_threads_" + std::to_string(getpid()));
    fs::remove_all(folder_);
    fs::create_directories(folder_);
    Write("order.xdr", kOrder);
    Write("part.xdr", kPart);
  }
  void TearDown() override { fs::remove_all(folder_); }
  // In one step, as whoever replaces a file that is in use does.
  void Write(const std::string& name, const std::string& text) const {
    std::ofstream(folder_ / "new", std::ios::binary) << text;
    fs::rename(folder_ / "new", folder_ / name);
  }
  [[nodiscard]] std::string Base() const { return (folder_ / "message.xml").string(); }
  // Eight threads with documents bound through `provider`; how many pieces of work went wrong.
  [[nodiscard]] int CountFailures(const SchemaProvider& provider, const std::string& uri) const {
    const BindingService service(provider);
    const patterns::Pattern pattern = patterns::Compile("line[price > 25]");
    std::atomic<int> failures = 0;
    OnThreads([&](int thread) {
      for (int round = 0; round < kRounds; ++round) {
        const dom::Document document = dom::NewDomDocument();
        document.EditSettings().schemaService = &service;
        document.EditSettings().base = Base();
        if (!WorksOn(document, uri, thread + round, pattern)) ++failures;
      }
    });
    return failures;
  }

  fs::path folder_;
};

TEST_F(Threads, WorkOnTheirOwnDocumentsWithSchemasOfOneCache) {
  const SchemaFiles files(host::ProcessHost(), {}, {}, nullptr);
  SchemaCache cache;
  const CachingProvider provider(files, cache);
  EXPECT_EQ(CountFailures(provider, "x-schema:order.xdr"), 0);
  EXPECT_EQ(cache.Size(), 1U);
}

TEST_F(Threads, GoOnWhileTheSchemasChangeAndTheCacheIsEmptied) {
  const SchemaFiles files(host::ProcessHost(), {}, {}, nullptr);
  SchemaCache cache;
  const CachingProvider provider(files, cache);
  std::atomic<bool> done = false;
  std::thread disturber([&] {
    for (int i = 0; !done; ++i) {
      Write(i % 2 == 0 ? "order.xdr" : "part.xdr",
            std::string(i % 2 == 0 ? kOrder : kPart) +
                std::string(static_cast<std::size_t>(i % 7), ' '));
      if (i % 3 == 0) cache.Clear();
      std::this_thread::yield();
    }
  });
  EXPECT_EQ(CountFailures(provider, "x-schema:order.xdr"), 0);
  done = true;
  disturber.join();
}

TEST_F(Threads, TakeTheirSchemasFromOneServer) {
  if (!host::CanFetchUrls()) GTEST_SKIP() << "this build is without libcurl";
  test::HttpServer server;
  const auto put = [&server](const std::string& target, const std::string& text) {
    server.Put(target, [text](const test::HttpRequest& request, const test::HttpClient& client) {
      const bool isKnown = request.Header("If-None-Match") == "\"1\"";
      client.Send(test::HttpAnswer(isKnown ? "304 Same" : "200 OK", "ETag: \"1\"\r\n",
                                   isKnown ? "" : text));
    });
  };
  put("/order.xdr", kOrder);
  put("/part.xdr", kPart);
  Options options;
  options.allowedPrefixes = {server.Url("/")};
  const SchemaFiles files(host::ProcessHost(), {}, options, &host::ProcessFetcher());
  SchemaCache cache;
  const CachingProvider provider(files, cache);
  EXPECT_EQ(CountFailures(provider, "x-schema:" + server.Url("/order.xdr")), 0);
  EXPECT_EQ(cache.Size(), 1U);
}

TEST_F(Threads, FillTheirCollectionsFromOneThatAllRead) {
  const SchemaFiles files(host::ProcessHost(), {}, {}, nullptr, NamedBy::kCaller);
  SchemaCollection shared(files);
  shared.Add("urn:order", (folder_ / "order.xdr").string());
  const SchemaCollection& all = shared;
  const patterns::Pattern pattern = patterns::Compile("line[price > 25]");
  const PlainProvider provider(files);
  const BindingService service(provider);
  std::atomic<int> failures = 0;
  OnThreads([&](int thread) {
    const auto own = runtime::MakeCounted<SchemaCollection>(files);
    own->AddCollection(all);
    for (int round = 0; round < kRounds; ++round) {
      const dom::Document document = dom::NewDomDocument();
      document.EditSettings().schemaService = &service;
      document.EditSettings().schemas = own;
      if (!WorksOn(document, "urn:order", thread + round, pattern)) ++failures;
      if (all.Get("urn:order").DocumentElement().NodeName() != "Schema") ++failures;
    }
  });
  EXPECT_EQ(failures, 0);
}

}  // namespace
}  // namespace kx::xdr
