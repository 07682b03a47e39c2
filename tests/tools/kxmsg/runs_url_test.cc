// Messages that lie on a web server, with their schemas beside them.
#include "platform/host/url_fetcher.h"
#include "support/documents.h"
#include "support/http_server.h"
#include "tools/kxmsg/run_program.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kxmsg {
namespace {

using Words = std::vector<std::string>;

class KxmsgUrl : public ProgramTest {
 protected:
  void SetUp() override {
    if (!kx::host::CanFetchUrls()) {
      ASSERT_FALSE(kx::test::InContinuousRun()) << "the continuous run must have libcurl";
      GTEST_SKIP() << "this build is without libcurl";
    }
    server_.PutDocument("/in/order.xdr", Read("order.xdr"));
    server_.PutDocument("/other/order.xdr", Read("order.xdr"));
    server_.PutDocument("/in/order.xml", OrderBy("/in/order.xdr"));
    server_.PutDocument("/in/order.xml?day=/17/5", OrderBy("/in/order.xdr"));
    server_.PutDocument("/in/far.xml", OrderBy("/other/order.xdr"));
  }

  // A message with the URL of its schema.
  [[nodiscard]] std::string OrderBy(const std::string& schema) const {
    return Replaced(OrderText("A"), "order.xdr", server_.Url(schema));
  }

  kx::test::HttpServer server_;
};

TEST_F(KxmsgUrl, AChangedMessageMayStillNameTheSchemaBesideIt) {
  const std::string url = server_.Url("/in/order.xml");
  const Words changes[] = {
      {"set", url, "Header/Customer", "B"},
      {"edit", url, "-e", "set Header/Customer B"},
      {"header", url, "Tag=B"},
      {"set", server_.Url("/in/order.xml?day=/17/5"), "Header/Customer", "B"},
      {"set", "--base", "--message-base", server_.Url("/in"), "order", "Header/Customer", "B"},
      {"set", "--base", "--message-base", server_.Url("/"), "in\\order.xml", "Header/Customer",
       "B"},
      {"set", "--base", url, "Header/Customer", "B"},
  };
  for (Words words : changes) {
    words.insert(words.end(), {"-o", "-"});
    const RunResult result = Run(words);
    EXPECT_EQ(result.status, 0) << testing::PrintToString(words) << result.errors;
    EXPECT_EQ(result.errors, "");
    const bool isChanged = result.output.find(">B</Customer>") != std::string::npos ||
                           result.output.find("tag=\"B\"") != std::string::npos;
    EXPECT_TRUE(isChanged) << result.output;
  }
}

TEST_F(KxmsgUrl, ASchemaElsewhereIsRefusedBeforeAndBehindTheChange) {
  const Words change = {"set", server_.Url("/in/far.xml"), "Header/Customer", "B", "-o", "-"};
  const RunResult refused = Run(change);
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.output, "");
  EXPECT_NE(refused.errors.find("may not be read by a message"), std::string::npos);
  Words allowed = change;
  allowed.insert(allowed.end(), {"--allow-prefix", server_.Url("/other/")});
  EXPECT_EQ(Run(allowed).status, 0);
  // The same text from a file has no folder on the server.
  Write("case.xml", OrderBy("/in/order.xdr"));
  EXPECT_EQ(Run({"set", "case.xml", "Header/Customer", "B"}).status, 1);
}

TEST_F(KxmsgUrl, AChangeIsProvedThereToo) {
  const std::string url = server_.Url("/in/order.xml");
  const RunResult result = Run({"edit", url, "-e", "attr . number X1", "-o", "case.xml"});
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.errors.find("error 0x8004099D: "), std::string::npos) << result.errors;
  EXPECT_FALSE(Exists("case.xml"));
}

TEST_F(KxmsgUrl, NothingIsWrittenToAServer) {
  const std::string url = server_.Url("/in/order.xml");
  for (const Words& words :
       {Words{"edit", url, "-e", "set Header/Customer B"},
        Words{"set", url, "Header/Customer", "B"}, Words{"header", url, "Tag=B"},
        Words{"edit", "order.xml", "-e", "set Header/Customer B", "-o", url}}) {
    const RunResult result = Run(words);
    EXPECT_EQ(result.status, 3) << testing::PrintToString(words);
    const std::string start = "kxmsg: " + url + ": error 0x800A00";
    EXPECT_EQ(result.errors.substr(0, start.size()), start) << result.errors;
  }
  for (const kx::test::HttpRequest& request : server_.Requests()) {
    EXPECT_EQ(request.head.substr(0, 4), "GET ");
  }
}

}  // namespace
}  // namespace kxmsg
