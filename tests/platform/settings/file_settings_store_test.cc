// What only a file has: its place, its damages, several processes, and a writer that is stopped.
#include "platform/settings/file_settings_store.h"

#include "platform/host/host_site.h"
#include "platform/host/memory/failing_file_system.h"
#include "platform/host/memory/memory_host.h"
#include "platform/runtime/error.h"

#include <csignal>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace kx::settings {
namespace {

using host::FileStatus;
using host::RuntimeErrorOfCall;

constexpr const char* kName = "settings.ini";

FileSettingsStore StoreAt(host::HostSite& site, std::string_view name = kName) {
  return {site.TheHost(), site.At(name)};
}

// ---- The file -----------------------------------------------------------------------------------

TEST(SettingsFileName, IsInTheUsersConfigurationUnlessNamed) {
  host::MemoryHost host;
  EXPECT_EQ(SettingsFileName(host), "/home/user/.config/KXXMLMessageLib/settings.ini");
  host.SetEnvironment("XDG_CONFIG_HOME", "/c");
  EXPECT_EQ(SettingsFileName(host), "/c/KXXMLMessageLib/settings.ini");
  host.SetEnvironment("KX_SETTINGS", "/named");
  EXPECT_EQ(SettingsFileName(host), "/named");
  host.SetEnvironment("KX_SETTINGS", "");
  host.ClearEnvironment("XDG_CONFIG_HOME");
  host.SetHomeFolder(std::nullopt);
  EXPECT_EQ(SettingsFileName(host), std::nullopt);
}

class FileStoreAtSite : public testing::TestWithParam<host::SiteFactory> {
 protected:
  std::unique_ptr<host::HostSite> site_ = GetParam().make();
};

INSTANTIATE_TEST_SUITE_P(Sites, FileStoreAtSite,
                         testing::Values(host::RealSite(), host::MemorySite()),
                         [](const auto& site) { return site.param.name; });

TEST_P(FileStoreAtSite, MakesTheFileWithItsFolderOnTheFirstWrite) {
  FileSettingsStore store = {site_->TheHost(), site_->At("a/b/settings.ini")};
  store.SetApplicationName("App");
  EXPECT_EQ(store.Find("x"), std::nullopt);
  EXPECT_EQ(site_->CountNames(""), 0U) << "reading makes nothing";
  store.Write("x", "1");
  EXPECT_EQ(site_->Content("a/b/settings.ini"), "[App]\nx = 1\n");
}

TEST_P(FileStoreAtSite, WritesNothingWhenTheValueIsStoredAlready) {
  FileSettingsStore store = StoreAt(*site_);
  store.SetApplicationName("App");
  site_->AddFile(kName, "[App]\n x=1\n");
  const auto before = site_->TheFiles().Identify(site_->At(kName));
  store.Write("X", "1");
  EXPECT_EQ(site_->TheFiles().Identify(site_->At(kName)), before);
  EXPECT_EQ(site_->Content(kName), "[App]\n x=1\n");
  EXPECT_EQ(site_->CountNames(""), 1U) << "not even a lock is made";
  store.Write("x", "2");
  EXPECT_NE(site_->TheFiles().Identify(site_->At(kName)), before);
}

TEST_P(FileStoreAtSite, FollowsALinkToTheFile) {
  site_->AddFile("real/mine.ini", "[App]\nx=1\n");
  site_->AddLink(kName, "real/mine.ini");
  FileSettingsStore store = StoreAt(*site_);
  store.SetApplicationName("App");
  store.Write("x", "2");
  EXPECT_EQ(site_->Content("real/mine.ini"), "[App]\nx = 2\n");
}

TEST_P(FileStoreAtSite, NamesADamagedFileInTheError) {
  const char* const damages[] = {"nonsense", "[App]\nx=1\nx=2\n", "[App]\nx=\"half", "\x01"};
  for (const char* damage : damages) {
    SCOPED_TRACE(damage);
    site_ = GetParam().make();
    site_->AddFile(kName, damage);
    FileSettingsStore store = StoreAt(*site_);
    store.SetApplicationName("App");
    try {
      static_cast<void>(store.Find("x"));
      ADD_FAILURE() << "nothing raised";
    } catch (const HostError& error) {
      EXPECT_EQ(runtime::RuntimeErrorOfStatus(error.Number()), 321);
      EXPECT_NE(error.Description().find(site_->At(kName)), std::string::npos);
      EXPECT_NE(error.Description().find("line "), std::string::npos);
    }
    EXPECT_EQ(RuntimeErrorOfCall([&] { store.Write("x", "3"); }), 321);
    EXPECT_EQ(site_->Content(kName), damage) << "what is damaged is not overwritten";
  }
}

TEST_P(FileStoreAtSite, TakesAFileBeyondTheBoundForDamaged) {
  const std::string comment(kMostSettingsBytes - 1, '#');
  site_->AddFile(kName, comment + "\n");
  FileSettingsStore store = StoreAt(*site_);
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(store.Find("x")); }), 0);
  EXPECT_EQ(RuntimeErrorOfCall([&] { store.Write("x", "1"); }), 7) << "it would be too long";
  site_->AddFile(kName, comment + "##\n");
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(store.Find("x")); }), 321);
}

TEST_P(FileStoreAtSite, RaisesWhereNothingCanBeStored) {
  site_->AddFile("file", "");
  site_->AddFolder("folder");
  site_->AddFullDevice("device");
  site_->AddFile("readonly.ini", "");
  site_->SetReadOnly("readonly.ini");
  FileSettingsStore underFile = StoreAt(*site_, "file/settings.ini");
  EXPECT_EQ(underFile.Find("x"), std::nullopt);
  EXPECT_EQ(RuntimeErrorOfCall([&] { underFile.Write("x", "1"); }), 76);
  FileSettingsStore readOnly = StoreAt(*site_, "readonly.ini");
  EXPECT_EQ(readOnly.Find("x"), std::nullopt);
  EXPECT_EQ(RuntimeErrorOfCall([&] { readOnly.Write("x", "1"); }), 75);
  FileSettingsStore folder = StoreAt(*site_, "folder");
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(folder.Find("x")); }), 75);
  FileSettingsStore device = StoreAt(*site_, "device");
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(device.Find("x")); }), 75);
  FileSettingsStore nowhere(site_->TheHost(), "");
  EXPECT_EQ(nowhere.Find("x"), std::nullopt);
  EXPECT_EQ(RuntimeErrorOfCall([&] { nowhere.Write("x", "1"); }), 76);
}

TEST_P(FileStoreAtSite, NamesTheFileThatCannotBeWritten) {
  site_->AddFile("file", "");
  FileSettingsStore store = StoreAt(*site_, "file/settings.ini");
  try {
    store.Write("x", "1");
    FAIL() << "nothing raised";
  } catch (const HostError& error) {
    EXPECT_EQ(error.Description(),
              "Path not found (settings file \"" + site_->At("file/settings.ini") + "\")");
  }
}

// ---- A writer that is stopped -------------------------------------------------------------------

TEST(FileSettingsStore, HoldsTheOldOrTheNewTextWhereverAWriterStops) {
  std::size_t call = 1;
  for (bool stopped = true; stopped; ++call) {
    ASSERT_LT(call, 100U) << "it never succeeds";
    SCOPED_TRACE("stopped at call " + std::to_string(call));
    host::MemoryHost host;
    host.Memory().AddFile("/s", "[App]\na = old\nb = 1\n");
    host::FailingFileSystem failing(host.Memory());
    host.SetFiles(&failing);
    {
      FileSettingsStore stoppedStore(host, "/s");
      stoppedStore.SetApplicationName("App");
      failing.FailFrom(call, FileStatus::kIoError);
      static_cast<void>(RuntimeErrorOfCall([&] { stoppedStore.Write("a", "new"); }));
      stopped = failing.HasFailed();
    }
    host.SetFiles(nullptr);
    FileSettingsStore next(host, "/s");
    next.SetApplicationName("App");
    const std::string found = next.Read("a", "lost");
    EXPECT_TRUE(found == "old" || found == "new") << found;
    EXPECT_EQ(next.Find("b"), "1");
    next.Write("c", "2");
    EXPECT_EQ(next.Find("a"), found);
    EXPECT_EQ(host.Memory().AllFiles(), (std::vector<std::string>{"/s", "/s.lock"}))
        << "the next write clears what the stopped one left";
  }
  EXPECT_GT(call, 10U) << "every step was the last once";
}

TEST(FileSettingsStore, RaisesTheErrorOfEveryCallThatFails) {
  for (std::size_t call = 1; call < 100; ++call) {
    SCOPED_TRACE("call " + std::to_string(call));
    host::MemoryHost host;
    host.Memory().AddFile("/s", "[App]\na = old\n");
    host::FailingFileSystem failing(host.Memory());
    host.SetFiles(&failing);
    FileSettingsStore store(host, "/s");
    store.SetApplicationName("App");
    failing.FailCall(call, FileStatus::kDiskFull);
    const int error = RuntimeErrorOfCall([&] { store.Write("a", "new"); });
    if (!failing.HasFailed()) {
      EXPECT_EQ(error, 0);
      EXPECT_GT(call, 10U);
      return;
    }
    const std::string found = store.Read("a", "lost");
    if (error == 0) {
      EXPECT_EQ(found, "new") << "only clearing a left-over may fail unheard";
    } else {
      EXPECT_EQ(error, 61);
      EXPECT_TRUE(found == "old" || found == "new") << found;
    }
  }
  FAIL() << "it never succeeds";
}

TEST_P(FileStoreAtSite, IgnoresAndClearsALeftOverHalf) {
  site_->AddFile(kName, "[App]\na = 1\n");
  site_->AddFile("settings.ini.new", "[App]\na = hal");
  FileSettingsStore store = StoreAt(*site_);
  store.SetApplicationName("App");
  EXPECT_EQ(store.Find("a"), "1");
  store.Write("b", "2");
  EXPECT_EQ(site_->Content(kName), "[App]\na = 1\nb = 2\n");
  EXPECT_EQ(site_->Content("settings.ini.new"), std::nullopt);
}

// ---- Several processes --------------------------------------------------------------------------

// Runs `work` in a process of its own, which ends with 0 unless something is raised.
pid_t Spawn(const std::function<void()>& work) {
  const pid_t child = fork();
  if (child != 0) return child;
  try {
    work();
  } catch (const std::exception&) {
    _exit(1);
  }
  _exit(0);
}

int StatusOf(pid_t child) {
  int status = -1;
  waitpid(child, &status, 0);
  return status;
}

TEST(FileSettingsStore, LosesNothingWhenProcessesWriteAtOnce) {
  constexpr int kProcesses = 4;
  constexpr int kValues = 25;
  const auto nameOf = [](int process, int i) {
    return "p" + std::to_string(process) + "-" + std::to_string(i);
  };
  const std::unique_ptr<host::HostSite> site = host::RealSite().make();
  std::vector<pid_t> children;
  children.reserve(kProcesses);
  for (int process = 0; process < kProcesses; ++process) {
    children.push_back(Spawn([&, process] {
      FileSettingsStore store = StoreAt(*site);
      store.SetApplicationName("App");
      for (int i = 0; i < kValues; ++i) store.Write(nameOf(process, i), std::to_string(i));
    }));
  }
  for (const pid_t child : children) EXPECT_EQ(StatusOf(child), 0);
  FileSettingsStore store = StoreAt(*site);
  store.SetApplicationName("App");
  for (int process = 0; process < kProcesses; ++process) {
    for (int i = 0; i < kValues; ++i) {
      EXPECT_EQ(store.Find(nameOf(process, i)), std::to_string(i)) << nameOf(process, i);
    }
  }
}

TEST(FileSettingsStore, HoldsEveryAcknowledgedValueWhenWritersAreKilled) {
  constexpr int kRounds = 15;
  const std::unique_ptr<host::HostSite> site = host::RealSite().make();
  FileSettingsStore store = StoreAt(*site);
  store.SetApplicationName("App");
  store.Write("kept", "from the start");
  for (int round = 0; round < kRounds; ++round) {
    int pipeEnds[2];
    ASSERT_EQ(pipe(pipeEnds), 0);
    const pid_t writer = Spawn([&] {
      FileSettingsStore inner = StoreAt(*site);
      inner.SetApplicationName("App");
      for (int i = 0;; ++i) {
        const std::string number = std::to_string(i);
        inner.Write("n" + std::to_string(i % 7), std::string(2000, 'x') + number);
        inner.Write("last", number);
        const char done = 'd';
        if (write(pipeEnds[1], &done, 1) != 1) return;
      }
    });
    int acknowledged = -1;
    for (char done = 0; acknowledged < round % 4; ++acknowledged) {
      ASSERT_EQ(read(pipeEnds[0], &done, 1), 1);
    }
    kill(writer, SIGKILL);  // wherever it is
    EXPECT_TRUE(WIFSIGNALED(StatusOf(writer)));
    close(pipeEnds[0]);
    close(pipeEnds[1]);
    EXPECT_GE(std::stoi(store.Read("last", "-1")), acknowledged);
    EXPECT_EQ(store.Find("kept"), "from the start");
    store.Write("after", std::to_string(round));
    EXPECT_EQ(store.Find("after"), std::to_string(round));
  }
}

}  // namespace
}  // namespace kx::settings
