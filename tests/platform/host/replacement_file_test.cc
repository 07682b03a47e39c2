// Taking a file's place in one step; what a save through Files does not show.
#include "platform/host/replacement_file.h"

#include "platform/host/host_site.h"
#include "platform/host/memory/failing_file_system.h"
#include "platform/host/memory/memory_file_system.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>

namespace kx::host {
namespace {

class ReplacementAtSite : public testing::TestWithParam<SiteFactory> {
 protected:
  [[nodiscard]] ReplacementFile Begin(std::string_view name,
                                      DirectWriting direct = DirectWriting::kAllowed) {
    return {site_->TheHost().Files(), site_->At(name), "sibling", direct};
  }

  std::unique_ptr<HostSite> site_ = GetParam().make();
};

INSTANTIATE_TEST_SUITE_P(Sites, ReplacementAtSite, testing::Values(RealSite(), MemorySite()),
                         [](const auto& site) { return site.param.name; });

TEST_P(ReplacementAtSite, ShowsTheNewContentAtTheCommitOnly) {
  site_->AddFile("x", "old");
  ReplacementFile file = Begin("x");
  ASSERT_EQ(file.Write("one "), FileStatus::kOk);
  ASSERT_EQ(file.Write("two"), FileStatus::kOk);
  EXPECT_EQ(site_->Content("x"), "old");
  EXPECT_EQ(site_->Content("sibling"), "one two");
  EXPECT_EQ(file.Commit(), FileStatus::kOk);
  EXPECT_EQ(site_->Content("x"), "one two");
  EXPECT_EQ(site_->Content("sibling"), std::nullopt);
}

TEST_P(ReplacementAtSite, MovesWithItsSibling) {
  {
    ReplacementFile first = Begin("x");
    ASSERT_EQ(first.Write("new"), FileStatus::kOk);
    ReplacementFile second = std::move(first);
    EXPECT_EQ(second.Commit(), FileStatus::kOk);
  }
  EXPECT_EQ(site_->Content("x"), "new");
  EXPECT_EQ(site_->CountNames(""), 1U);
}

TEST_P(ReplacementAtSite, FailsWhenAnotherWriterHoldsTheSibling) {
  site_->AddFile("x", "old");
  site_->AddFile("sibling", "of another");
  EXPECT_EQ(Begin("x").Status(), FileStatus::kExists);
  EXPECT_EQ(site_->Content("sibling"), "of another") << "which is not ours to remove";
}

TEST_P(ReplacementAtSite, NeverWritesADeviceWhenToldSo) {
  site_->AddFullDevice("device");
  EXPECT_EQ(Begin("device").Status(), FileStatus::kOk);
  EXPECT_EQ(Begin("device", DirectWriting::kNever).Status(), FileStatus::kNotRegular);
}

TEST_P(ReplacementAtSite, GivesAFailureAgain) {
  site_->AddFolder("x");
  ReplacementFile file = Begin("x");
  EXPECT_EQ(file.Status(), FileStatus::kIsFolder);
  EXPECT_EQ(file.Write("y"), FileStatus::kIsFolder);
  EXPECT_EQ(file.Commit(), FileStatus::kIsFolder);
}

// The status with which a replacement ends whose call number `call` fails with `status`.
FileStatus StatusWhenFailing(MemoryFileSystem& memory, std::size_t call, FileStatus status,
                             DirectWriting direct, bool& hasFailed) {
  FailingFileSystem failing(memory);
  failing.FailCall(call, status);
  ReplacementFile file(failing, "/x", "sibling", direct);
  static_cast<void>(file.Write("new"));
  const FileStatus result = file.Commit();
  hasFailed = failing.HasFailed();
  return result;
}

TEST(ReplacementFile, OverwritesTheTargetOnlyWhereThatIsAllowed) {
  for (const DirectWriting direct : {DirectWriting::kAllowed, DirectWriting::kNever}) {
    int overwritten = 0;
    bool hasFailed = true;
    for (std::size_t call = 1; hasFailed; ++call) {
      MemoryFileSystem memory;
      memory.AddFile("/x", "old");
      const FileStatus status =
          StatusWhenFailing(memory, call, FileStatus::kAccessDenied, direct, hasFailed);
      if (hasFailed && status == FileStatus::kOk) ++overwritten;
      const std::string expected = status == FileStatus::kOk ? "new" : "old";
      const bool isLate = memory.Content("/x") == "new";  // only the folder's flush came after
      EXPECT_TRUE(memory.Content("/x") == expected || isLate) << "call " << call;
    }
    // Making the sibling, giving it its permissions, renaming it.
    EXPECT_EQ(overwritten, direct == DirectWriting::kAllowed ? 3 : 0);
  }
}

TEST(ReplacementFile, KeepsTheContentWhenItMustBeCopiedOver) {
  MemoryFileSystem memory;
  memory.AddFile("/x", "a much longer old content");
  const std::string content(200000, 'n');
  FailingFileSystem failing(memory);
  ReplacementFile file(failing, "/x", "sibling");
  ASSERT_EQ(file.Write(content), FileStatus::kOk);
  failing.FailCall(3, FileStatus::kLocked);  // flush, close, rename
  EXPECT_EQ(file.Commit(), FileStatus::kOk);
  EXPECT_TRUE(failing.HasFailed());
  EXPECT_EQ(memory.Content("/x"), content);
  EXPECT_EQ(memory.AllFiles().size(), 1U);
}

}  // namespace
}  // namespace kx::host
