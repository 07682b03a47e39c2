// What stays in memory when it cannot be stored, and what is raised.
#include "platform/settings/kept_defaults.h"

#include "platform/host/host_site.h"
#include "platform/host/memory/failing_file_system.h"
#include "platform/host/memory/memory_host.h"
#include "platform/settings/file_settings_store.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace kx::settings {
namespace {

using host::RuntimeErrorOfCall;

class KeptDefaultsInAFile : public testing::Test {
 protected:
  [[nodiscard]] std::unique_ptr<KeptDefaults> StoreIn(std::string path) {
    auto store =
        std::make_unique<KeptDefaults>(std::make_unique<FileSettingsStore>(host_, std::move(path)));
    store->SetApplicationName("App");
    return store;
  }

  host::MemoryHost host_;
};

TEST_F(KeptDefaultsInAFile, StoresADefaultWhereItCan) {
  const auto store = StoreIn("/s");
  store->Write("SchemaPath", "C:\\x\\");
  EXPECT_EQ(host_.Memory().Content("/s"), "[App]\nSchemaPath = C:\\x\\\n");
}

TEST_F(KeptDefaultsInAFile, KeepsADefaultInMemoryWhereItCannot) {
  host_.Memory().AddFile("/file", "");  // no folder can be made below it
  const auto store = StoreIn("/file/s");
  EXPECT_EQ(RuntimeErrorOfCall([&] { store->Write("SchemaPath", "C:\\x\\"); }), 0);
  EXPECT_EQ(store->Find("SchemaPath"), "C:\\x\\");
  EXPECT_EQ(store->Find("schemapath"), "C:\\x\\");
  EXPECT_EQ(store->Find("MsgPath"), std::nullopt);
  EXPECT_EQ(StoreIn("/file/s")->Find("SchemaPath"), std::nullopt) << "only this process has it";
}

TEST_F(KeptDefaultsInAFile, KeepsADefaultWhenTheDiskIsFull) {
  host_.Memory().SetFreeBytes(0);
  const auto store = StoreIn("/s");
  store->Write("a", "1");
  EXPECT_EQ(store->Find("a"), "1");
  EXPECT_EQ(host_.Memory().Content("/s"), std::nullopt);
  host_.Memory().SetFreeBytes(1000);
  store->Write("a", "2");
  EXPECT_EQ(host_.Memory().Content("/s"), "[App]\na = 2\n") << "stored as soon as it can be";
  EXPECT_EQ(store->Find("a"), "2");
}

TEST_F(KeptDefaultsInAFile, PrefersWhatIsStoredMeanwhile) {
  host_.Memory().SetFreeBytes(0);
  const auto store = StoreIn("/s");
  store->Write("a", "kept");
  host_.Memory().AddFile("/s", "[App]\na = stored\n");
  EXPECT_EQ(store->Find("a"), "stored");
}

TEST_F(KeptDefaultsInAFile, DoesNotTryTheSameValueAgain) {
  host_.Memory().AddFile("/file", "");
  host::FailingFileSystem counting(host_.Memory());
  host_.SetFiles(&counting);
  const auto store = StoreIn("/file/s");
  store->Write("a", "1");
  counting.FailCall(0, host::FileStatus::kOk);
  store->Write("a", "1");
  EXPECT_EQ(counting.CallCount(), 1U) << "one look whether it is stored by now";
  store->Write("a", "2");
  EXPECT_GT(counting.CallCount(), 2U);
  EXPECT_EQ(store->Find("a"), "2");
}

TEST_F(KeptDefaultsInAFile, RaisesWhenAStoredValueCannotBeReplaced) {
  host_.Memory().AddFile("/s", "[App]\na = stored\n");
  host_.Memory().SetReadOnly("/s");
  const auto store = StoreIn("/s");
  EXPECT_EQ(RuntimeErrorOfCall([&] { store->Write("a", "new"); }), 75);
  EXPECT_EQ(store->Find("a"), "stored");
  EXPECT_EQ(RuntimeErrorOfCall([&] { store->Write("a", "stored"); }), 0) << "nothing to write";
}

TEST_F(KeptDefaultsInAFile, RaisesWhereAnAskedForTextCannotBeStored) {
  host_.Memory().AddFile("/file", "");
  const auto nowhere = StoreIn("/file/s");
  nowhere->Write("a", "kept");
  EXPECT_NE(RuntimeErrorOfCall([&] { nowhere->Store("a", "1"); }), 0);
  EXPECT_EQ(nowhere->Find("a"), "kept");
  const auto store = StoreIn("/s");
  store->Store("a", "1");
  EXPECT_EQ(host_.Memory().Content("/s"), "[App]\na = 1\n");
}

TEST_F(KeptDefaultsInAFile, RaisesForADamagedFile) {
  host_.Memory().AddFile("/s", "nonsense");
  const auto store = StoreIn("/s");
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(store->Find("a")); }), 321);
  EXPECT_EQ(RuntimeErrorOfCall([&] { store->Write("a", "1"); }), 321);
}

TEST_F(KeptDefaultsInAFile, ForgetsWhatIsKeptWithTheApplication) {
  host_.Memory().SetFreeBytes(0);
  const auto store = StoreIn("/s");
  store->Write("a", "1");
  store->SetApplicationName("Other");
  EXPECT_EQ(store->Find("a"), std::nullopt);
}

}  // namespace
}  // namespace kx::settings
