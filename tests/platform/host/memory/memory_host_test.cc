// What the system in memory offers to tests beyond the contracts.
#include "platform/host/memory/memory_host.h"

#include "platform/host/files.h"
#include "platform/host/host_site.h"

#include <gtest/gtest.h>

namespace kx::host {
namespace {

TEST(MemoryHost, IsWhatTheTestSays) {
  MemoryHost host;
  EXPECT_EQ(host.LocalTime(), (CalendarTime{2008, 3, 14, 9, 5, 7, 250}));
  host.SetLocalTime({1999, 12, 31, 23, 59, 59, 999});
  EXPECT_EQ(host.LocalTime().year, 1999);
  EXPECT_EQ(host.UtcTime().hour, 10);
  EXPECT_EQ(host.NewGuid(), "00000000-0000-4000-8000-000000000001");
  EXPECT_EQ(host.NewGuid(), "00000000-0000-4000-8000-000000000002");
  EXPECT_EQ(host.Environment("X"), std::nullopt);
  host.SetEnvironment("X", "1");
  EXPECT_EQ(host.Environment("X"), "1");
  host.ClearEnvironment("X");
  EXPECT_EQ(host.Environment("X"), std::nullopt);
  host.YieldToUserInterface();
  EXPECT_EQ(host.YieldCount(), 1);
  host.SetSystemFolder("D:\\WINNT\\system32");
  EXPECT_EQ(host.SystemFolder(), "D:\\WINNT\\system32");
  EXPECT_EQ(host.PrivateTemporaryFolder(), "/tmp/private/");
}

TEST(MemoryFileSystem, DeniesWhatTheTestDenies) {
  MemoryHost host;
  host.Memory().AddFile("/x", "1");
  host.Memory().SetDenied("/x");
  Files files(host);
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(files.OpenForInput("/x")); }), 75);
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(files.OpenForOutput("/x")); }), 75);
}

TEST(MemoryFileSystem, TakesNoMoreThanItsFreeBytes) {
  MemoryHost host;
  host.Memory().SetFreeBytes(3);
  Files files(host);
  BinaryFile file = files.OpenForBinary("/x");
  file.Put("123");
  EXPECT_EQ(RuntimeErrorOfCall([&] { file.Put("4"); }), 61);
  file.Put(1, "abc");  // in place
  EXPECT_EQ(host.Memory().Content("/x"), "abc");
  file.Close();
  files.Kill("/x");
  BinaryFile again = files.OpenForBinary("/y");
  again.Put("456");
  EXPECT_EQ(host.Memory().Content("/y"), "456") << "the removed file's room is free";
}

TEST(MemoryFileSystem, ListsAllFilesInOrder) {
  MemoryFileSystem files;
  files.AddFile("/b/x", "");
  files.AddFile("/a", "");
  files.AddFolder("/empty");
  EXPECT_EQ(files.AllFiles(), (std::vector<std::string>{"/a", "/b/x"}));
}

}  // namespace
}  // namespace kx::host
