// What only a POSIX system has: modes, pipes, devices, files of /proc.
#include "platform/host/posix/posix_file_system.h"

#include "platform/host/host_site.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace kx::host {
namespace {

mode_t ModeOf(const std::string& path) {
  struct stat data {};
  stat(path.c_str(), &data);
  return data.st_mode & 07777;
}

void Save(HostSite& site, std::string_view name, std::string_view content) {
  OutputFile file = site.TheFiles().OpenForOutput(site.At(name));
  file.Print(content, LineEnd::kNo);
  file.Close();
}

class PosixFiles : public testing::Test {
 protected:
  std::unique_ptr<HostSite> site_ = RealSite().make();
  PosixFileSystem system_;
};

TEST_F(PosixFiles, KeepTheModeOfAFileThatIsReplaced) {
  site_->AddFile("x", "old");
  for (const mode_t mode : {0640U, 0604U, 0777U, 0200U}) {
    chmod(site_->At("x").c_str(), mode);
    Save(*site_, "x", "new");
    EXPECT_EQ(ModeOf(site_->At("x")), mode);
  }
}

TEST_F(PosixFiles, GiveANewFileTheModeOfTheUsersMask) {
  const mode_t before = umask(027);
  Save(*site_, "x", "new");
  umask(before);
  EXPECT_EQ(ModeOf(site_->At("x")), 0640U);
}

TEST_F(PosixFiles, MakeTemporaryFilesAndFoldersPrivate) {
  const mode_t before = umask(0);
  std::unique_ptr<OpenFile> file;
  EXPECT_EQ(system_.Open(site_->At("t"), OpenMode::kCreatePrivate, file), FileStatus::kOk);
  EXPECT_EQ(system_.MakeFolders(site_->At("d/e")), FileStatus::kOk);
  umask(before);
  EXPECT_EQ(ModeOf(site_->At("t")), 0600U);
  EXPECT_EQ(ModeOf(site_->At("d")), 0700U);
  EXPECT_EQ(ModeOf(site_->At("d/e")), 0700U);
}

TEST_F(PosixFiles, ReplaceTheFileSoThatOldReadersKeepTheirContent) {
  site_->AddFile("x", "old");
  std::unique_ptr<OpenFile> reader;
  ASSERT_EQ(system_.Open(site_->At("x"), OpenMode::kRead, reader), FileStatus::kOk);
  Save(*site_, "x", "new");
  std::string buffer(3, '\0');
  std::size_t count = 0;
  ASSERT_EQ(reader->ReadAt(0, buffer, count), FileStatus::kOk);
  EXPECT_EQ(buffer, "old");
}

TEST_F(PosixFiles, NeverOpenAPipeToRead) {
  ASSERT_EQ(mkfifo(site_->At("pipe").c_str(), 0600), 0);
  EXPECT_EQ(site_->TheFiles().Read(site_->At("pipe")).status, FileStatus::kNotRegular);
}

TEST_F(PosixFiles, RefuseAPipeWithoutAReaderInsteadOfWaiting) {
  ASSERT_EQ(mkfifo(site_->At("pipe").c_str(), 0600), 0);
  EXPECT_EQ(RuntimeErrorOfCall([&] { Save(*site_, "pipe", "x"); }), 68);
}

TEST_F(PosixFiles, WriteIntoAPipeThatIsRead) {
  ASSERT_EQ(mkfifo(site_->At("pipe").c_str(), 0600), 0);
  const int reader = open(site_->At("pipe").c_str(), O_RDONLY | O_NONBLOCK);
  ASSERT_GE(reader, 0);
  Save(*site_, "pipe", "through the pipe");
  std::string buffer(100, '\0');
  const ssize_t got = read(reader, buffer.data(), buffer.size());
  close(reader);
  ASSERT_GT(got, 0);
  EXPECT_EQ(buffer.substr(0, static_cast<std::size_t>(got)), "through the pipe");
}

TEST_F(PosixFiles, SurviveAPipeWhoseReaderLeft) {
  ASSERT_EQ(mkfifo(site_->At("pipe").c_str(), 0600), 0);
  const int reader = open(site_->At("pipe").c_str(), O_RDONLY | O_NONBLOCK);
  ASSERT_GE(reader, 0);
  OutputFile file = site_->TheFiles().OpenForOutput(site_->At("pipe"));
  close(reader);
  EXPECT_EQ(RuntimeErrorOfCall([&] { file.Print("x"); }), 57);
  sigset_t pending;
  sigpending(&pending);
  EXPECT_EQ(sigismember(&pending, SIGPIPE), 0) << "the signal was taken back";
}

TEST_F(PosixFiles, ReadAFileThatTellsNoSize) {
  if (!std::filesystem::exists("/proc/self/status")) GTEST_SKIP() << "no /proc here";
  const FileContent content = site_->TheFiles().Read("/proc/self/status");
  EXPECT_EQ(content.status, FileStatus::kOk);
  EXPECT_EQ(content.identity.size, 0U);
  EXPECT_NE(content.bytes.find("Pid:"), std::string::npos);
}

TEST_F(PosixFiles, TellATooLongName) {
  const std::string name = site_->At(std::string(300, 'a'));
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(site_->TheFiles().OpenForInput(name)); }),
            75);
}

TEST_F(PosixFiles, DoNotFollowALinkToALock) {
  using namespace std::chrono_literals;
  site_->AddFile("f", "");
  site_->AddLink("lock", "f");
  std::unique_ptr<FileLock> lock;
  EXPECT_EQ(system_.Lock(site_->At("lock"), 0ms, lock), FileStatus::kAccessError);
}

}  // namespace
}  // namespace kx::host
