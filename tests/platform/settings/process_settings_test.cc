// The one store of the process, made by the environment and replaceable.
#include "platform/settings/process_settings.h"

#include "platform/host/host_site.h"
#include "platform/settings/memory_settings_store.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace kx::settings {
namespace {

class ProcessStore : public testing::Test {
 protected:
  ProcessStore() { setenv("KX_SETTINGS", site_->At("mine.ini").c_str(), 1); }
  ~ProcessStore() override {
    ReplaceProcessSettings(nullptr);
    unsetenv("KX_SETTINGS");
  }

  std::unique_ptr<host::HostSite> site_ = host::RealSite().make();
};

TEST_F(ProcessStore, WritesTheFileThatTheEnvironmentNames) {
  ReplaceProcessSettings(nullptr);
  ProcessSettings().Write("SchemaPath", "C:\\x\\");
  EXPECT_EQ(site_->Content("mine.ini"), "[KXXMLMessageLib]\nSchemaPath = C:\\x\\\n");
  EXPECT_EQ(&ProcessSettings(), &ProcessSettings());
}

TEST_F(ProcessStore, KeepsADefaultThatCannotBeStored) {
  site_->AddFile("file", "");
  setenv("KX_SETTINGS", site_->At("file/mine.ini").c_str(), 1);
  ReplaceProcessSettings(nullptr);
  ProcessSettings().Write("SchemaPath", "C:\\x\\");
  EXPECT_EQ(ProcessSettings().Find("SchemaPath"), "C:\\x\\");
}

TEST_F(ProcessStore, CanBeReplaced) {
  auto memory = std::make_unique<MemorySettingsStore>();
  const SettingsStore* const address = memory.get();
  ReplaceProcessSettings(std::move(memory));
  EXPECT_EQ(&ProcessSettings(), address);
  ProcessSettings().Write("a", "1");
  const std::unique_ptr<SettingsStore> before = ReplaceProcessSettings(nullptr);
  ASSERT_EQ(before.get(), address);
  EXPECT_EQ(before->Find("a"), "1");
  EXPECT_EQ(site_->Content("mine.ini"), std::nullopt);
}

}  // namespace
}  // namespace kx::settings
