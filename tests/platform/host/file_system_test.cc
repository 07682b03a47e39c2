// The contract of a file system, at a real folder and in memory.
#include "platform/host/file_system.h"

#include "platform/host/host_site.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace kx::host {
namespace {

class FileSystemAtSite : public testing::TestWithParam<SiteFactory> {
 protected:
  [[nodiscard]] FileSystem& System() { return site_->TheHost().Files(); }
  [[nodiscard]] std::string At(std::string_view name) { return site_->At(name); }
  [[nodiscard]] FileStatus Open(std::string_view name, OpenMode mode) {
    return System().Open(At(name), mode, file_);
  }

  std::unique_ptr<HostSite> site_ = GetParam().make();
  std::unique_ptr<OpenFile> file_;
};

INSTANTIATE_TEST_SUITE_P(Sites, FileSystemAtSite, testing::Values(RealSite(), MemorySite()),
                         [](const auto& site) { return site.param.name; });

TEST_P(FileSystemAtSite, ExaminesFilesFoldersAndDevices) {
  site_->AddFile("f", "123");
  site_->AddFolder("d");
  site_->AddFullDevice("dev");
  site_->AddLink("l", "f");
  FileInfo info;
  ASSERT_EQ(System().Examine(At("f"), info), FileStatus::kOk);
  EXPECT_EQ(info.kind, FileKind::kRegular);
  EXPECT_EQ(info.identity.size, 3U);
  EXPECT_FALSE(info.isReadOnly);
  const FileIdentity identity = info.identity;
  ASSERT_EQ(System().Examine(At("l"), info), FileStatus::kOk);
  EXPECT_EQ(info.identity, identity) << "links are followed";
  ASSERT_EQ(System().Examine(At("d"), info), FileStatus::kOk);
  EXPECT_EQ(info.kind, FileKind::kFolder);
  ASSERT_EQ(System().Examine(At("dev"), info), FileStatus::kOk);
  EXPECT_EQ(info.kind, FileKind::kOther);
  EXPECT_EQ(System().Examine(At("none"), info), FileStatus::kNotFound);
  EXPECT_EQ(System().Examine(At("none/none"), info), FileStatus::kNotFound);
  EXPECT_EQ(System().Examine(At("f/none"), info), FileStatus::kFolderNotFound);
}

TEST_P(FileSystemAtSite, ListsNamesWithoutTheDots) {
  site_->AddFile("f", "");
  site_->AddFolder("d");
  std::vector<std::string> names{"left over"};
  ASSERT_EQ(System().ListNames(site_->Root(), names), FileStatus::kOk);
  EXPECT_THAT(names, testing::UnorderedElementsAre("f", "d"));
  EXPECT_EQ(System().ListNames(At("none"), names), FileStatus::kNotFound);
  EXPECT_EQ(System().ListNames(At("f"), names), FileStatus::kFolderNotFound);
}

struct OpenCase {
  const char* name;
  OpenMode mode;
  FileStatus status;
};

constexpr OpenCase kOpenCases[] = {
    {"f", OpenMode::kRead, FileStatus::kOk},
    {"f", OpenMode::kReadWrite, FileStatus::kOk},
    {"f", OpenMode::kTruncate, FileStatus::kOk},
    {"f", OpenMode::kCreateNew, FileStatus::kExists},
    {"f", OpenMode::kCreatePrivate, FileStatus::kExists},
    {"link", OpenMode::kCreateNew, FileStatus::kExists},
    {"link", OpenMode::kRead, FileStatus::kNotFound},
    {"link", OpenMode::kReadWrite, FileStatus::kOk},
    {"ro", OpenMode::kRead, FileStatus::kOk},
    {"ro", OpenMode::kReadWrite, FileStatus::kReadOnly},
    {"ro", OpenMode::kTruncate, FileStatus::kReadOnly},
    {"d", OpenMode::kRead, FileStatus::kIsFolder},
    {"d", OpenMode::kReadWrite, FileStatus::kIsFolder},
    {"d", OpenMode::kTruncate, FileStatus::kIsFolder},
    {"d", OpenMode::kCreateNew, FileStatus::kExists},
    {"dev", OpenMode::kRead, FileStatus::kNotRegular},
    {"dev", OpenMode::kReadWrite, FileStatus::kOk},
    {"dev", OpenMode::kTruncate, FileStatus::kOk},
    {"new", OpenMode::kRead, FileStatus::kNotFound},
    {"new", OpenMode::kReadWrite, FileStatus::kOk},
    {"new", OpenMode::kTruncate, FileStatus::kOk},
    {"new", OpenMode::kCreateNew, FileStatus::kOk},
    {"new", OpenMode::kCreatePrivate, FileStatus::kOk},
    {"none/new", OpenMode::kRead, FileStatus::kNotFound},
    {"none/new", OpenMode::kReadWrite, FileStatus::kFolderNotFound},
    {"none/new", OpenMode::kTruncate, FileStatus::kFolderNotFound},
    {"none/new", OpenMode::kCreateNew, FileStatus::kFolderNotFound},
    {"f/new", OpenMode::kCreateNew, FileStatus::kFolderNotFound},
};

TEST_P(FileSystemAtSite, OpensByMode) {
  for (const OpenCase& row : kOpenCases) {
    SCOPED_TRACE(row.name + std::string(" ") + std::to_string(static_cast<int>(row.mode)));
    file_.reset();
    site_ = GetParam().make();
    site_->AddFile("f", "123");
    site_->AddFile("ro", "123");
    site_->SetReadOnly("ro");
    site_->AddFolder("d");
    site_->AddFullDevice("dev");
    site_->AddLink("link", "promised");
    EXPECT_EQ(Open(row.name, row.mode), row.status);
    EXPECT_EQ(file_ != nullptr, row.status == FileStatus::kOk);
  }
  file_.reset();
}

TEST_P(FileSystemAtSite, ReadsAndWritesAtOffsets) {
  site_->AddFile("f", "123");
  ASSERT_EQ(Open("f", OpenMode::kReadWrite), FileStatus::kOk);
  ASSERT_EQ(file_->WriteAt(5, "xyz"), FileStatus::kOk);
  std::string buffer(10, '-');
  std::size_t count = 0;
  ASSERT_EQ(file_->ReadAt(2, buffer, count), FileStatus::kOk);
  EXPECT_EQ(buffer.substr(0, count), std::string("3\0\0xyz", 6));
  ASSERT_EQ(file_->ReadAt(8, buffer, count), FileStatus::kOk);
  EXPECT_EQ(count, 0U);
  FileInfo info;
  ASSERT_EQ(file_->Examine(info), FileStatus::kOk);
  EXPECT_EQ(info.identity.size, 8U);
  EXPECT_EQ(file_->Sync(), FileStatus::kOk);
  EXPECT_EQ(file_->Close(), FileStatus::kOk);
}

TEST_P(FileSystemAtSite, RenamesOverAFileInOneStep) {
  site_->AddFile("old", "1");
  site_->AddFile("new", "2");
  EXPECT_EQ(System().Rename(At("new"), At("old")), FileStatus::kOk);
  EXPECT_EQ(site_->Content("old"), "2");
  EXPECT_EQ(site_->Content("new"), std::nullopt);
  EXPECT_EQ(System().Rename(At("none"), At("old")), FileStatus::kNotFound);
}

TEST_P(FileSystemAtSite, RemovesFilesAndLinksButNoFolders) {
  site_->AddFile("f", "1");
  site_->AddFolder("d");
  EXPECT_EQ(System().Remove(At("f")), FileStatus::kOk);
  EXPECT_EQ(System().Remove(At("f")), FileStatus::kNotFound);
  EXPECT_NE(System().Remove(At("d")), FileStatus::kOk);
  EXPECT_EQ(site_->CountNames(""), 1U);
}

TEST_P(FileSystemAtSite, FollowsLinksToTheirEnd) {
  site_->AddFile("d/f", "1");
  site_->AddLink("relative", "d/f");
  site_->AddLink("twice", "relative");
  site_->AddLink("absolute", At("d/f"));
  site_->AddLink("promise", "d/new");
  site_->AddLink("circle", "circle");
  std::string target;
  for (const char* name : {"d/f", "relative", "twice", "absolute"}) {
    SCOPED_TRACE(name);
    ASSERT_EQ(System().FollowLinks(At(name), target), FileStatus::kOk);
    EXPECT_EQ(target, At("d/f"));
  }
  ASSERT_EQ(System().FollowLinks(At("promise"), target), FileStatus::kOk);
  EXPECT_EQ(target, At("d/new"));
  EXPECT_EQ(System().FollowLinks(At("circle"), target), FileStatus::kAccessError);
}

TEST_P(FileSystemAtSite, MakesFoldersWithThoseAbove) {
  EXPECT_EQ(System().MakeFolders(At("a/b/c")), FileStatus::kOk);
  EXPECT_EQ(System().MakeFolders(At("a/b/c")), FileStatus::kOk) << "it exists";
  FileInfo info;
  ASSERT_EQ(System().Examine(At("a/b/c"), info), FileStatus::kOk);
  EXPECT_EQ(info.kind, FileKind::kFolder);
  site_->AddFile("f", "");
  EXPECT_EQ(System().MakeFolders(At("f")), FileStatus::kFolderNotFound);
  EXPECT_EQ(System().MakeFolders(At("f/d")), FileStatus::kFolderNotFound);
  EXPECT_EQ(System().SyncFolder(At("a/b/c")), FileStatus::kOk);
}

TEST_P(FileSystemAtSite, CopiesPermissions) {
  site_->AddFile("from", "");
  site_->AddFile("to", "");
  site_->SetReadOnly("from");
  ASSERT_EQ(System().CopyPermissions(At("from"), At("to")), FileStatus::kOk);
  FileInfo info;
  ASSERT_EQ(System().Examine(At("to"), info), FileStatus::kOk);
  EXPECT_TRUE(info.isReadOnly);
  EXPECT_EQ(System().CopyPermissions(At("none"), At("to")), FileStatus::kNotFound);
  EXPECT_EQ(System().CheckWritable(At("none")), FileStatus::kNotFound);
}

TEST_P(FileSystemAtSite, LocksAgainstASecondHolder) {
  using namespace std::chrono_literals;
  std::unique_ptr<FileLock> first;
  std::unique_ptr<FileLock> second;
  ASSERT_EQ(System().Lock(At("lock"), 0ms, first), FileStatus::kOk);
  EXPECT_EQ(System().Lock(At("lock"), 5ms, second), FileStatus::kLocked);
  EXPECT_EQ(second, nullptr);
  first.reset();
  EXPECT_EQ(System().Lock(At("lock"), 0ms, second), FileStatus::kOk);
  EXPECT_EQ(System().Lock(At("none/lock"), 0ms, first), FileStatus::kFolderNotFound);
}

}  // namespace
}  // namespace kx::host
