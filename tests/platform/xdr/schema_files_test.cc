#include "platform/xdr/schema_files.h"

#include "memory_schemas.h"
#include "platform/xdr/schema_cache.h"
#include "platform/xdr/typing.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace kx::xdr {
namespace {

namespace fs = std::filesystem;

constexpr const char* kText =
    "<Schema xmlns='urn:schemas-microsoft-com:xml-data' "
    "xmlns:dt='urn:schemas-microsoft-com:datatypes'><ElementType name='n' dt:type='int'/></Schema>";

/// A folder of files that goes with the test.
class Folder : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::path(testing::TempDir()) /
              ("kx_schemas_" +
               std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
    fs::remove_all(folder_);
    fs::create_directories(folder_ / "Sub");
    Write("Sub/Order.xdr", kText);
    base_ = (folder_ / "message.xml").string();
  }
  void TearDown() override { fs::remove_all(folder_); }
  void Write(const std::string& name, const std::string& text) const {
    std::ofstream(folder_ / name, std::ios::binary) << text;
  }
  [[nodiscard]] SchemaFiles Files(Options options = {}) const {
    return {host::ProcessHost(), {}, std::move(options), nullptr};
  }
  fs::path folder_;
  std::string base_;
};

TEST_F(Folder, GivesFilesRelativeToWhoeverNamesThemInAnyCase) {
  const SchemaFiles files = Files();
  for (const char* location :
       {"Sub/Order.xdr", "sub/order.XDR", "Sub\\Order.xdr", "./Sub/../Sub/Order.xdr"}) {
    EXPECT_EQ(files.Read(location, base_).bytes, kText) << location;
  }
  const std::string whole = (folder_ / "Sub" / "Order.xdr").string();
  EXPECT_EQ(files.Read(whole, "").url, whole);
  EXPECT_EQ(files.Read("file://" + whole, "").bytes, kText);
}

struct RefusedCase {
  const char* location;
  const char* code;
  const char* why;
};
constexpr RefusedCase kRefused[] = {
    {"missing.xdr", "800C0006", "no such file"},
    {"Sub", "80070005", "a folder"},
    {"/dev/zero", "80070005", "a device"},
    {"//server/share/a.xdr", "800C0005", "another machine"},
    {"\\\\server\\share\\a.xdr", "800C0005", "another machine"},
    {"http://localhost:1/a.xdr", "800C0005", "a URL that nobody allowed"},
    {"ftp://localhost/a.xdr", "800C000D", "an unknown protocol"},
};
TEST_F(Folder, RefusesWhatAMessageMayNotName) {
  for (const RefusedCase& row : kRefused) {
    const SchemaText text = Files().Read(row.location, base_);
    EXPECT_EQ(Hex(text.failure.code), row.code) << row.location << ": " << row.why;
    EXPECT_EQ(text.failure.line, 0);
  }
  EXPECT_NE(Files().Read("http://localhost:1/a", base_).failure.reason.find("allowedPrefixes"),
            std::string::npos);
}

TEST_F(Folder, KeepsMessagesWithinTheFoldersThatAreSet) {
  Options options;
  options.schemaFolders = {(folder_ / "Sub").string()};
  const SchemaFiles files = Files(options);
  EXPECT_EQ(files.Read("Sub/Order.xdr", base_).bytes, kText);
  Write("outside.xdr", kText);
  EXPECT_EQ(Hex(files.Read("outside.xdr", base_).failure.code), "800C0005");
  EXPECT_EQ(Hex(files.Read("Sub/../outside.xdr", base_).failure.code), "800C0005");
}

TEST_F(Folder, BoundsTheSizeOfAFile) {
  Options options;
  options.maxSchemaBytes = 10;
  EXPECT_EQ(Hex(Files(options).Read("Sub/Order.xdr", base_).failure.code), "8007000E");
}

TEST_F(Folder, DoesNotQuoteAFileFromElsewhere) {
  Write("secret.txt", "top secret");
  const SchemaFiles files = Files();
  const PlainProvider provider(files);
  const std::string uri = "x-schema:" + (folder_ / "secret.txt").string();
  EXPECT_EQ(provider.Load(uri, base_).error.srcText, "top secret") << "beside the message";
  const LoadedGroup far = provider.Load(uri, (folder_ / "Sub" / "message.xml").string());
  EXPECT_EQ(Hex(far.error.code), "C00CE556");
  EXPECT_EQ(far.error.srcText, "");
}

TEST_F(Folder, IsReadAgainOnlyWhenAFileChanged) {
  const SchemaFiles files = Files();
  SchemaCache cache;
  const CachingProvider provider(files, cache);
  Write("main.xdr",
        "<Schema xmlns='urn:schemas-microsoft-com:xml-data' "
        "xmlns:o='x-schema:Sub/Order.xdr'><ElementType name='r'>"
        "<element type='o:n'/></ElementType></Schema>");
  const SharedGroup first = provider.Load("x-schema:main.xdr", base_).group;
  ASSERT_TRUE(first);
  EXPECT_EQ(provider.Load("x-schema:main.xdr", base_).group, first);
  EXPECT_EQ(cache.Size(), 1U);
  Write("Sub/Order.xdr", std::string(kText) + " ");
  const SharedGroup second = provider.Load("x-schema:main.xdr", base_).group;
  ASSERT_TRUE(second);
  EXPECT_FALSE(second == first) << "a schema that it refers to has changed";
  fs::remove(folder_ / "Sub" / "Order.xdr");
  EXPECT_EQ(Hex(provider.Load("x-schema:main.xdr", base_).error.code), "800C0006");
}

TEST_F(Folder, ServesEightThreadsThatLoadAndValidateTheirOwnDocuments) {
  const SchemaFiles files = Files();
  SchemaCache cache;
  const CachingProvider provider(files, cache);
  const BindingService service(provider);
  std::vector<std::thread> threads;
  threads.reserve(8);
  std::vector<int> good(8, 0);
  for (int& count : good) {
    threads.emplace_back([&service, &count, this] {
      for (int i = 0; i < 50; ++i) {
        const dom::Document document = dom::NewDomDocument();
        document.EditSettings().schemaService = &service;
        document.EditSettings().base = base_;
        if (!document.LoadXml("<n xmlns='x-schema:Sub/Order.xdr'>5</n>")) continue;
        const dom::Node definition = Definition(document.DocumentElement());
        if (Validate(document).code == 0 && definition.GetAttribute("name") == "n") ++count;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(good, std::vector<int>(8, 50));
  EXPECT_EQ(cache.Size(), 1U);
}

}  // namespace
}  // namespace kx::xdr
