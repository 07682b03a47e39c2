// Where a user's data and configuration lie.
#include "platform/host/user_folders.h"

#include "platform/host/memory/memory_host.h"

#include <gtest/gtest.h>

namespace kx::host {
namespace {

TEST(UserFolders, LieInTheHomeFolderUnlessNamed) {
  MemoryHost host;
  EXPECT_EQ(UserDataFolder(host), "/home/user/.local/share/KXXMLMessageLib");
  EXPECT_EQ(UserConfigurationFolder(host), "/home/user/.config/KXXMLMessageLib");
  host.SetEnvironment("XDG_DATA_HOME", "/d");
  host.SetEnvironment("XDG_CONFIG_HOME", "/c");
  EXPECT_EQ(UserDataFolder(host), "/d/KXXMLMessageLib");
  EXPECT_EQ(UserConfigurationFolder(host), "/c/KXXMLMessageLib");
}

TEST(UserFolders, IgnoreAValueThatIsNotAbsolute) {
  MemoryHost host;
  host.SetEnvironment("XDG_CONFIG_HOME", "");
  EXPECT_EQ(UserConfigurationFolder(host), "/home/user/.config/KXXMLMessageLib");
  host.SetEnvironment("XDG_CONFIG_HOME", "c");
  EXPECT_EQ(UserConfigurationFolder(host), "/home/user/.config/KXXMLMessageLib");
}

TEST(UserFolders, AreNoneWithoutAHome) {
  MemoryHost host;
  host.SetHomeFolder(std::nullopt);
  EXPECT_EQ(UserDataFolder(host), std::nullopt);
  host.SetEnvironment("XDG_DATA_HOME", "/d");
  EXPECT_EQ(UserDataFolder(host), "/d/KXXMLMessageLib");
}

}  // namespace
}  // namespace kx::host
