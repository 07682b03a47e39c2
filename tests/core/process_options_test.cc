// The options that the environment gives.
#include "core/process_options.h"

#include "support/message_world.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kx::core {
namespace {

TEST(ProcessOptions, AreTheDefaultsWhereTheEnvironmentIsSilent) {
  host::MemoryHost host;
  const Options options = ReadOptions(host);
  const Options defaults;
  EXPECT_EQ(options.codePage, 1252);
  EXPECT_EQ(options.schemaBase, "");
  EXPECT_EQ(options.maxDocumentBytes, defaults.maxDocumentBytes);
}

TEST(ProcessOptions, ReadsEveryVariable) {
  host::MemoryHost host;
  host.SetEnvironment("KX_CODE_PAGE", "65001");
  host.SetEnvironment("KX_SCHEMA_BASE", "/srv/schemas");
  host.SetEnvironment("KX_MESSAGE_BASE", "/srv/messages");
  host.SetEnvironment("KX_ALLOWED_PREFIXES", "http://a/;;\\\\b\\c");
  host.SetEnvironment("KX_SCHEMA_FOLDERS", "/srv");
  host.SetEnvironment("KX_MAX_DOCUMENT_BYTES", "1000");
  host.SetEnvironment("KX_MAX_DEPTH", "7");
  host.SetEnvironment("KX_MAX_ENTITY_BYTES", "8");
  host.SetEnvironment("KX_MAX_SCHEMA_BYTES", "9");
  host.SetEnvironment("KX_MAX_DEFAULT_ELEMENTS", "10");
  host.SetEnvironment("KX_MAX_DEFAULT_DEPTH", "11");
  host.SetEnvironment("KX_MAX_DOWNLOAD_BYTES", "12");
  host.SetEnvironment("KX_DOWNLOAD_SECONDS", "13");
  host.SetEnvironment("KX_CONNECT_SECONDS", "14");
  host.SetEnvironment("KX_STALL_SECONDS", "15");
  host.SetEnvironment("KX_MAX_REDIRECTS", "0");
  const Options options = ReadOptions(host);
  EXPECT_EQ(options.codePage, 65001);
  EXPECT_EQ(options.schemaBase, "/srv/schemas");
  EXPECT_EQ(options.messageBase, "/srv/messages");
  EXPECT_EQ(options.allowedPrefixes, (std::vector<std::string>{"http://a/", "\\\\b\\c"}));
  EXPECT_EQ(options.schemaFolders, std::vector<std::string>{"/srv"});
  EXPECT_EQ(options.maxDocumentBytes, 1000U);
  EXPECT_EQ(options.maxDepth, 7U);
  EXPECT_EQ(options.maxEntityBytes, 8U);
  EXPECT_EQ(options.maxSchemaBytes, 9U);
  EXPECT_EQ(options.maxDefaultElements, 10U);
  EXPECT_EQ(options.maxDefaultDepth, 11U);
  EXPECT_EQ(options.maxDownloadBytes, 12U);
  EXPECT_EQ(options.downloadSeconds, 13U);
  EXPECT_EQ(options.connectSeconds, 14U);
  EXPECT_EQ(options.stallSeconds, 15U);
  EXPECT_EQ(options.maxRedirects, 0U);
}

TEST(ProcessOptions, ANumberThatIsNoneIsAnErrorThatNamesTheVariable) {
  for (const char* value : {"x", "-1", "1 ", "99999999999999999999", "0x10"}) {
    host::MemoryHost host;
    host.SetEnvironment("KX_MAX_DEPTH", value);
    std::string description;
    EXPECT_EQ(test::ErrorOf([&] { static_cast<void>(ReadOptions(host)); }, &description),
              test::RuntimeError(5));
    EXPECT_EQ(description,
              "The environment variable KX_MAX_DEPTH is not a number: " + std::string(value));
  }
}

TEST(ProcessOptions, CountForTheMessagesMadeAfterTheyWereSet) {
  const Options former = Options::OfProcess();
  Options options = former;
  options.schemaBase = "D:\\new\\";
  const auto before = Environment::OfProcess();
  EXPECT_EQ(before, Environment::OfProcess());
  Options::SetOfProcess(options);
  EXPECT_EQ(Options::OfProcess().schemaBase, "D:\\new\\");
  EXPECT_NE(before, Environment::OfProcess());
  EXPECT_EQ(Environment::OfProcess()->Settings().schemaBase, "D:\\new\\");
  Options::SetOfProcess(former);
}

TEST(ProcessOptions, AnUnknownCodePageIsAnError) {
  test::MessageWorld world;
  Options options;
  options.codePage = 12345;
  std::string description;
  EXPECT_EQ(test::ErrorOf([&] { static_cast<void>(world.Environment(options)); }, &description),
            test::RuntimeError(5));
  EXPECT_EQ(description, "There is no code page 12345.");
}

}  // namespace
}  // namespace kx::core
