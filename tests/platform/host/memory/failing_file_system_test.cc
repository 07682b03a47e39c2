// The chosen call fails, and no other.
#include "platform/host/memory/failing_file_system.h"

#include "platform/host/memory/memory_file_system.h"

#include <gtest/gtest.h>
#include <memory>

namespace kx::host {
namespace {

TEST(FailingFileSystem, FailsTheChosenCallOnly) {
  MemoryFileSystem memory;
  memory.AddFile("/x", "1");
  FailingFileSystem failing(memory);
  failing.FailCall(2, FileStatus::kDiskFull);
  FileInfo info;
  EXPECT_EQ(failing.Examine("/x", info), FileStatus::kOk);
  EXPECT_FALSE(failing.HasFailed());
  EXPECT_EQ(failing.Examine("/x", info), FileStatus::kDiskFull);
  EXPECT_TRUE(failing.HasFailed());
  EXPECT_EQ(failing.Examine("/x", info), FileStatus::kOk);
  EXPECT_EQ(failing.CallCount(), 3U);
}

TEST(FailingFileSystem, CountsCallsOnOpenFiles) {
  MemoryFileSystem memory;
  FailingFileSystem failing(memory);
  failing.FailCall(3, FileStatus::kIoError);
  std::unique_ptr<OpenFile> file;
  ASSERT_EQ(failing.Open("/x", OpenMode::kTruncate, file), FileStatus::kOk);
  EXPECT_EQ(file->WriteAt(0, "1"), FileStatus::kOk);
  EXPECT_EQ(file->WriteAt(1, "2"), FileStatus::kIoError);
  EXPECT_EQ(memory.Content("/x"), "1") << "a failed call does nothing";
}

TEST(FailingFileSystem, FailsEverythingFromACallOn) {
  MemoryFileSystem memory;
  FailingFileSystem failing(memory);
  failing.FailFrom(2, FileStatus::kIoError);
  EXPECT_EQ(failing.MakeFolders("/a"), FileStatus::kOk);
  EXPECT_EQ(failing.MakeFolders("/b"), FileStatus::kIoError);
  EXPECT_EQ(failing.MakeFolders("/c"), FileStatus::kIoError);
  failing.FailCall(0, FileStatus::kOk);
  EXPECT_EQ(failing.MakeFolders("/d"), FileStatus::kOk);
}

TEST(FailingFileSystem, FailsNothingUnlessTold) {
  MemoryFileSystem memory;
  FailingFileSystem failing(memory);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(failing.MakeFolders("/d"), FileStatus::kOk);
  EXPECT_FALSE(failing.HasFailed());
}

}  // namespace
}  // namespace kx::host
