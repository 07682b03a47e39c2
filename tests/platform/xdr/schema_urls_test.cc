// Schemas from http servers: which a message may name, how they are bound, and when they are read
// again. The server is of the test's own, on 127.0.0.1.
#include "memory_schemas.h"
#include "platform/runtime/error.h"
#include "platform/xdr/schema_cache.h"
#include "platform/xdr/schema_collection.h"
#include "platform/xdr/schema_files.h"
#include "platform/xdr/typing.h"
#include "support/documents.h"
#include "support/http_server.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

namespace kx::xdr {
namespace {

using test::HttpAnswer;
using test::HttpClient;
using test::HttpRequest;
using testing::HasSubstr;

std::string SchemaOf(std::string_view declarations, std::string_view namespaces = {}) {
  std::string text =
      "<Schema xmlns='urn:schemas-microsoft-com:xml-data' "
      "xmlns:dt='urn:schemas-microsoft-com:datatypes' ";
  return text.append(namespaces).append(">").append(declarations).append("</Schema>");
}
const std::string kInteger = SchemaOf("<ElementType name='n' dt:type='int'/>");
const std::string kText = SchemaOf("<ElementType name='n' dt:type='string'/>");

class Urls : public testing::Test {
 protected:
  static void SetUpTestSuite() { setenv("no_proxy", "127.0.0.1", 1); }
  void SetUp() override {
    if (!host::CanFetchUrls()) {
      ASSERT_FALSE(test::InContinuousRun()) << "the continuous run must have libcurl";
      GTEST_SKIP() << "this build is without libcurl";
    }
    options_.allowedPrefixes = {server_.Url("/s/")};
  }
  [[nodiscard]] SchemaFiles Files(NamedBy namedBy = NamedBy::kMessage) const {
    return {host::ProcessHost(), {}, options_, &host::ProcessFetcher(), namedBy};
  }
  // A document that answers as servers do that know what their clients have.
  void PutTagged(const std::string& target, const std::string& body, const std::string& tag) {
    server_.Put(target, [body, tag](const HttpRequest& request, const HttpClient& client) {
      const bool isKnown = request.Header("If-None-Match") == tag;
      client.Send(HttpAnswer(isKnown ? "304 Same" : "200 OK", "ETag: " + tag + "\r\n",
                             isKnown ? "" : body));
    });
  }
  // What parsing `text` gives, read from `base`.
  [[nodiscard]] dom::ParseError Parse(std::string_view text, const std::string& base = {}) const {
    const SchemaFiles files = Files();
    const PlainProvider provider(files);
    const BindingService service(provider);
    const dom::Document document = dom::NewDomDocument();
    document.EditSettings().schemaService = &service;
    document.EditSettings().base = base;
    document.LoadXml(text);
    return document.LastError();
  }
  [[nodiscard]] std::string Instance(const std::string& target, const char* text = "5") const {
    return "<n xmlns='x-schema:" + server_.Url(target) + "'>" + text + "</n>";
  }

  test::HttpServer server_;
  Options options_;
};

TEST_F(Urls, BindTheElementsOfAMessage) {
  server_.PutDocument("/s/n.xdr", kInteger);
  EXPECT_EQ(Hex(Parse(Instance("/s/n.xdr")).code), "0");
  const dom::ParseError error = Parse(Instance("/s/n.xdr", "five"));
  EXPECT_EQ(Hex(error.code), "C00CE201");
  EXPECT_EQ(error.line, 1);
}

TEST_F(Urls, LeadToOtherSchemasBesideThem) {
  server_.PutRedirect("/s/main.xdr", "/s/v2/main.xdr");
  server_.PutDocument(
      "/s/v2/main.xdr",
      SchemaOf("<ElementType name='r' content='eltOnly'><element type='o:n'/></ElementType>",
               "xmlns:o='x-schema:parts/n.xdr'"));
  server_.PutDocument("/s/v2/parts/n.xdr", kInteger);
  const std::string uri = "x-schema:" + server_.Url("/s/main.xdr");
  const SchemaFiles files = Files();
  const LoadedGroup loaded = PlainProvider(files).Load(uri, "");
  ASSERT_TRUE(loaded.group) << loaded.error.reason;
  ASSERT_EQ(loaded.group->members.size(), 2U);
  EXPECT_EQ(loaded.group->members[1].schema->Url(), server_.Url("/s/v2/parts/n.xdr"));
  for (const bool isGood : {true, false}) {
    const std::string instance = "<r xmlns='x-schema:main.xdr'><n xmlns='x-schema:parts/n.xdr'>" +
                                 std::string(isGood ? "5" : "x") + "</n></r>";
    EXPECT_EQ(Hex(Parse(instance, server_.Url("/s/v2/m.xml")).code), isGood ? "0" : "C00CE201");
  }
}

struct FailureCase {
  const char* why;
  std::string answer;
  const char* code;
  const char* reason;  ///< a part of it
};
const FailureCase kFailures[] = {
    {"missing", HttpAnswer("404 Not Found", "", ""), "800C0006",
     "The system cannot locate the object specified."},
    {"not for us", HttpAnswer("403 Forbidden", "", ""), "80070005", "Access is denied."},
    {"a server's mistake", HttpAnswer("500 Oops", "", ""), "800C0005", "status 500"},
    {"cut short", "HTTP/1.1 200 OK\r\nContent-Length: 9999\r\n\r\n<Schema", "800C0005", "failed"},
    {"too large", "HTTP/1.1 200 OK\r\nContent-Length: 99999999\r\n\r\n", "8007000E",
     "Options::maxDownloadBytes"},
    {"larger than a schema may be", HttpAnswer("200 OK", "", std::string(6000, ' ')), "8007000E",
     "Options::maxSchemaBytes"},
    {"redirected to a file", HttpAnswer("302 F", "Location: file:///etc/passwd\r\n", ""),
     "800C0005", "neither http nor https"},
    {"redirected out of what is allowed", HttpAnswer("302 F", "Location: /outside\r\n", ""),
     "800C0005", "Options::allowedPrefixes"},
    {"redirected to another machine",
     HttpAnswer("302 F", "Location: http://127.0.0.2:1/s/n.xdr\r\n", ""), "800C0005",
     "Options::allowedPrefixes"},
    {"redirected to itself", HttpAnswer("302 F", "Location: /s/a\r\n", ""), "800C0005",
     "Options::maxRedirects"},
    {"not XML", HttpAnswer("200 OK", "", "hello"), "C00CE556", "Invalid at the top level"},
    {"not XDR", HttpAnswer("200 OK", "", "<html/>"), "C00CE101", "root element in schema"},
};
TEST_F(Urls, FailLikeWhatCannotBeReached) {
  options_.maxSchemaBytes = 5000;
  server_.PutDocument("/outside", kInteger);
  for (const FailureCase& row : kFailures) {
    SCOPED_TRACE(row.why);
    server_.PutRaw("/s/a", row.answer);
    const dom::ParseError error = Parse(Instance("/s/a"));
    EXPECT_EQ(Hex(error.code), row.code);
    EXPECT_THAT(error.reason, HasSubstr(row.reason));
    EXPECT_TRUE(error.reason.ends_with("\r\n"));
    EXPECT_EQ(error.url, server_.Url("/s/a"));
    EXPECT_EQ(error.line, std::string(row.code).starts_with("8") ? 0 : 1);
  }
  EXPECT_EQ(server_.CountRequests("/outside"), 0U);
}

TEST_F(Urls, FailWhenTheirCompressedTextBreaksOff) {
  const std::string whole = test::GzipStored(kInteger);
  for (std::size_t length = 0; length < whole.size() - 8; length += 7) {  // 8 bytes of checks
    server_.PutDocument("/s/a", whole.substr(0, length), "Content-Encoding: gzip\r\n");
    EXPECT_NE(Parse(Instance("/s/a")).code, 0) << length;
  }
  server_.PutDocument("/s/a", whole, "Content-Encoding: gzip\r\n");
  EXPECT_EQ(Parse(Instance("/s/a")).code, 0);
}

TEST_F(Urls, FailWhereNobodyListens) {
  const test::RefusingPort nobody;
  options_.allowedPrefixes = {nobody.Url()};
  const dom::ParseError error = Parse("<n xmlns='x-schema:" + nobody.Url() + "n.xdr'/>");
  EXPECT_EQ(Hex(error.code), "800C0005");
  EXPECT_EQ(error.reason, "The system cannot locate the resource specified.\r\n");
}

// What a message may name ------------------------------------------------------------------------

struct ReachCase {
  const char* why;
  const char* location;  ///< behind the server's address unless it is a whole URL
  const char* base;      ///< of the message; a target of the server, or empty
  bool allowed;
};
constexpr ReachCase kReach[] = {
    {"under the allowed prefix", "/s/n.xdr", "", true},
    {"under it in other letters", "/S/n.xdr", "", true},
    {"elsewhere", "/t/n.xdr", "", false},
    {"led out of it", "/s/../t/n.xdr", "", false},
    {"led out of it, written as %xx", "/s/%2e%2E/t/n.xdr", "", false},
    {"led out of it by a hidden slash", "/s/..%2ft/n.xdr", "", false},
    {"led out of it by a hidden backslash", "/s/..%5Ct/n.xdr", "", false},
    {"a name that only begins like it", "/sx/n.xdr", "", false},
    {"with a query that holds dots", "/s/n.xdr?../..", "", true},
    {"beside the message", "/t/n.xdr", "/t/m.xml", true},
    {"below the message", "/t/u/n.xdr", "/t/m.xml", true},
    {"above the message", "/n.xdr", "/t/m.xml", false},
    {"beside a message with a query", "/t/n.xdr", "/t/m?of=/x/y", true},
    {"within the query of the message", "/t/m?of=/x/n.xdr", "/v/m?of=/t/", false},
    {"a message that is the server's root", "/t/n.xdr", "?m", true},
    {"a message without a path, and another machine", "http://127.0.0.9:1/n.xdr", "?m", false},
    {"with a password", "http://user@127.0.0.1:1/s/n.xdr", "", false},
};
TEST_F(Urls, AreReadOnlyWhereAMessageMayDrawFrom) {
  const SchemaFiles files = Files();
  for (const ReachCase& row : kReach) {
    SCOPED_TRACE(row.why);
    std::string location = row.location;
    if (!location.starts_with("http")) location = server_.Url(location);
    const std::string base = *row.base == 0 ? "" : server_.Url(row.base);
    const std::size_t before = server_.Requests().size();
    const SchemaText text = files.Read(location, base);
    EXPECT_EQ(server_.Requests().size() > before, row.allowed);
    EXPECT_EQ(Hex(text.failure.code), row.allowed ? "800C0006" : "800C0005");
    EXPECT_EQ(text.failure.reason.find("Options::allowedPrefixes") == std::string::npos,
              row.allowed);
    EXPECT_EQ(files.Identify(location, base).url.empty(), !row.allowed);
  }
}

TEST_F(Urls, MayBeCompletedByTheSchemaBase) {
  options_.allowedPrefixes.clear();
  options_.schemaBase = server_.Url("/base/");
  server_.PutDocument("/base/n.xdr", kInteger);
  EXPECT_EQ(Hex(Parse("<n xmlns='x-schema:n.xdr'>x</n>").code), "C00CE201");
  EXPECT_EQ(Hex(Parse("<n xmlns='x-schema:../n.xdr'>x</n>").code), "800C0005");
}

TEST_F(Urls, AreFreeForTheCaller) {
  options_.allowedPrefixes.clear();
  server_.PutRedirect("/a", "/b/n.xdr");
  server_.PutDocument("/b/n.xdr", SchemaOf("<ElementType name='n'/>", "xmlns:o='x-schema:o.xdr'"));
  server_.PutDocument("/b/o.xdr", SchemaOf("<ElementType name='o'/>", "xmlns:o='x-schema:/c.xdr'"));
  server_.PutDocument("/c.xdr", kInteger);
  const SchemaFiles files = Files(NamedBy::kCaller);
  EXPECT_EQ(files.Read(server_.Url("/a"), "").url, server_.Url("/b/n.xdr"));
  EXPECT_EQ(Hex(Files().Read(server_.Url("/a"), "").failure.code), "800C0005");
  SchemaCollection collection(files);
  EXPECT_THROW(collection.Add("urn:n", server_.Url("/a")), Error) << "/c.xdr is a schema's wish";
  server_.PutDocument("/b/o.xdr", kInteger);
  collection.Add("urn:n", server_.Url("/a"));
  EXPECT_EQ(collection.Length(), 1);
}

TEST_F(Urls, ShowTheTextOfASchemaOnlyBesideTheMessage) {
  server_.PutDocument("/s/secret", "top secret");
  EXPECT_EQ(Parse(Instance("/s/secret"), server_.Url("/s/m.xml")).srcText, "top secret");
  EXPECT_EQ(Parse(Instance("/s/secret"), server_.Url("/t/m.xml")).srcText, "");
  EXPECT_EQ(Hex(Parse(Instance("/s/secret")).code), "C00CE556");
  EXPECT_EQ(Parse(Instance("/s/secret")).srcText, "");
}

TEST_F(Urls, WithoutAFetcherCannotBeReached) {
  const SchemaFiles files(host::ProcessHost(), {}, options_, nullptr);
  EXPECT_EQ(Hex(files.Read(server_.Url("/s/n.xdr"), "").failure.code), "800C0005");
  const host::NoFetcher none;
  const SchemaFiles without(host::ProcessHost(), {}, options_, &none);
  const dom::ParseError error = without.Read(server_.Url("/s/n.xdr"), "").failure;
  EXPECT_EQ(Hex(error.code), "800C0005");
  EXPECT_THAT(error.reason, HasSubstr("without libcurl"));
}

// The cache --------------------------------------------------------------------------------------

class CachedUrls : public Urls {
 protected:
  void SetUp() override {
    Urls::SetUp();
    if (IsSkipped()) return;
    PutMain("\"1\"");
    PutTagged("/s/n.xdr", kInteger, "\"1\"");
  }
  void PutMain(const std::string& tag) {
    PutTagged("/s/main.xdr",
              SchemaOf("<ElementType name='r'><element type='o:n'/></ElementType>",
                       "xmlns:o='x-schema:n.xdr'"),
              tag);
  }
  SharedGroup Load() { return provider_.Load(Uri(), "").group; }
  [[nodiscard]] std::string Uri() const { return "x-schema:" + server_.Url("/s/main.xdr"); }
  // How often each of the two was asked for since the last call.
  std::pair<std::size_t, std::size_t> Asked() {
    const std::size_t main = server_.CountRequests("/s/main.xdr");
    const std::size_t part = server_.CountRequests("/s/n.xdr");
    const std::pair asked(main - main_, part - part_);
    main_ = main;
    part_ = part;
    return asked;
  }

  Options allowed_ = [this] {
    Options options;
    options.allowedPrefixes = {server_.Url("/s/")};
    return options;
  }();
  SchemaFiles files_{host::ProcessHost(), {}, allowed_, &host::ProcessFetcher()};
  SchemaCache cache_;
  CachingProvider provider_{files_, cache_};
  std::size_t main_ = 0;
  std::size_t part_ = 0;
};

using Counts = std::pair<std::size_t, std::size_t>;

TEST_F(CachedUrls, AreKeptWhileTheServerSaysThatNothingChanged) {
  const SharedGroup first = Load();
  ASSERT_TRUE(first);
  EXPECT_EQ(Asked(), Counts(1, 1));
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(Load(), first);
    EXPECT_EQ(Asked(), Counts(1, 1)) << "asked each time";
  }
  EXPECT_EQ(server_.Requests().back().Header("If-None-Match"), "\"1\"");
}

TEST_F(CachedUrls, AreReadAgainWhenTheyChanged) {
  const SharedGroup first = Load();
  static_cast<void>(Asked());
  PutMain("\"2\"");
  const SharedGroup second = Load();
  ASSERT_TRUE(second);
  EXPECT_FALSE(second == first);
  EXPECT_EQ(Asked(), Counts(1, 1)) << "the changed text is not asked for twice";
  EXPECT_EQ(Load(), second);
}

TEST_F(CachedUrls, AreReadAgainWhenWhatTheyReferToChanged) {
  const SharedGroup first = Load();
  static_cast<void>(Asked());
  PutTagged("/s/n.xdr", kText, "\"2\"");
  const SharedGroup second = Load();
  ASSERT_TRUE(second);
  EXPECT_FALSE(second == first);
  EXPECT_EQ(second->members[1].schema->Url(), server_.Url("/s/n.xdr"));
  EXPECT_EQ(Asked(), Counts(2, 1)) << "once whether it changed, once for its text";
  EXPECT_EQ(Load(), second);
}

TEST_F(CachedUrls, FailWhenTheyAreGone) {
  ASSERT_TRUE(Load());
  server_.PutRaw("/s/n.xdr", HttpAnswer("404 Gone", "", ""));
  EXPECT_EQ(Hex(provider_.Load(Uri(), "").error.code), "800C0006");
  PutTagged("/s/n.xdr", kInteger, "\"1\"");
  EXPECT_TRUE(Load());
  server_.PutRedirect("/s/main.xdr", "file:///etc/passwd");
  EXPECT_EQ(Hex(provider_.Load(Uri(), "").error.code), "800C0005");
}

TEST_F(CachedUrls, AreReadAgainWhenTheyAreRedirectedElsewhere) {
  PutTagged("/s/one.xdr", kInteger, "\"1\"");
  PutTagged("/s/two.xdr", kText, "\"1\"");
  server_.PutRedirect("/s/main.xdr", "/s/one.xdr");
  const SharedGroup first = Load();
  ASSERT_TRUE(first);
  EXPECT_EQ(Load(), first);
  server_.PutRedirect("/s/main.xdr", "/s/two.xdr");
  const SharedGroup second = Load();
  ASSERT_TRUE(second);
  EXPECT_EQ(second->members.front().schema->Url(), server_.Url("/s/two.xdr"))
      << "the same tag of another document";
}

TEST_F(CachedUrls, AreReadEachTimeWhenNothingTellsOfAChange) {
  server_.PutDocument("/s/n.xdr", kInteger);
  const SharedGroup first = Load();
  ASSERT_TRUE(first);
  EXPECT_FALSE(Load() == first);
  EXPECT_EQ(cache_.Size(), 0U);
}

TEST_F(CachedUrls, AreNotForThoseWhoMayNotReadThem) {
  ASSERT_TRUE(Load());
  const SchemaFiles others(host::ProcessHost(), {}, {}, &host::ProcessFetcher());
  const CachingProvider provider(others, cache_);
  EXPECT_EQ(Hex(provider.Load(Uri(), "").error.code), "800C0005");
}

}  // namespace
}  // namespace kx::xdr
