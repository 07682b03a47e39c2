// Clock, identifiers, environment and temporary folders of the real system.
#include "platform/host/posix/posix_host.h"

#include "platform/host/host_site.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

namespace kx::host {
namespace {

namespace fs = std::filesystem;

// Sets a variable for the life of the object.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    if (const char* before = std::getenv(name)) before_ = before;
    if (value != nullptr) {
      setenv(name, value, 1);
    } else {
      unsetenv(name);
    }
  }
  ~Variable() {
    if (before_) {
      setenv(name_, before_->c_str(), 1);
    } else {
      unsetenv(name_);
    }
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> before_;
};

std::time_t UtcSeconds(const CalendarTime& time) {
  std::tm parts{};
  parts.tm_year = time.year - 1900;
  parts.tm_mon = time.month - 1;
  parts.tm_mday = time.day;
  parts.tm_hour = time.hour;
  parts.tm_min = time.minute;
  parts.tm_sec = time.second;
  return timegm(&parts);
}

// Lower-case digits in groups of 8, 4, 4, 4 and 12, with the marks of a random identifier.
bool IsRandomIdentifier(std::string_view guid) {
  constexpr std::string_view kForm = "xxxxxxxx-xxxx-4xxx-yxxx-xxxxxxxxxxxx";
  if (guid.size() != kForm.size()) return false;
  for (std::size_t i = 0; i < guid.size(); ++i) {
    std::string_view allowed = kForm.substr(i, 1);
    if (kForm[i] == 'x') allowed = "0123456789abcdef";
    if (kForm[i] == 'y') allowed = "89ab";
    if (allowed.find(guid[i]) == std::string_view::npos) return false;
  }
  return true;
}

TEST(PosixHost, TellsTheUtcTime) {
  PosixHost host;
  const std::time_t before = std::time(nullptr);
  const CalendarTime time = host.UtcTime();
  const std::time_t after = std::time(nullptr);
  EXPECT_GE(UtcSeconds(time), before);
  EXPECT_LE(UtcSeconds(time), after);
  EXPECT_GE(time.millisecond, 0);
  EXPECT_LT(time.millisecond, 1000);
}

TEST(PosixHost, TellsTheLocalTimeInTheUsersZone) {
  const Variable zone("TZ", "XXX-05:30");
  tzset();
  PosixHost host;
  const std::time_t utcBefore = UtcSeconds(host.UtcTime());
  const std::time_t local = UtcSeconds(host.LocalTime());
  const std::time_t utcAfter = UtcSeconds(host.UtcTime());
  EXPECT_GE(local, utcBefore + 19800);
  EXPECT_LE(local, utcAfter + 19800);
}

TEST(PosixHost, GivesTicksThatNeverGoBack) {
  PosixHost host;
  const std::uint64_t first = host.Ticks();
  EXPECT_LE(first, host.Ticks());
}

TEST(PosixHost, GivesIdentifiersThatDiffer) {
  PosixHost host;
  std::set<std::string> seen;
  for (int i = 0; i < 1000; ++i) {
    const std::string guid = host.NewGuid();
    EXPECT_TRUE(IsRandomIdentifier(guid)) << guid;
    EXPECT_TRUE(seen.insert(guid).second) << guid;
  }
}

TEST(PosixHost, ReadsTheEnvironment) {
  const Variable set("KX_HOST_TEST", "value");
  PosixHost host;
  EXPECT_EQ(host.Environment("KX_HOST_TEST"), "value");
  const Variable unset("KX_HOST_TEST", nullptr);
  EXPECT_EQ(host.Environment("KX_HOST_TEST"), std::nullopt);
}

TEST(PosixHost, KnowsTheHomeFolderAlsoWithoutTheVariable) {
  PosixHost host;
  const Variable named("HOME", "/named");
  EXPECT_EQ(host.HomeFolder(), "/named");
  const Variable unset("HOME", nullptr);
  const auto fromSystem = host.HomeFolder();
  if (fromSystem) {
    EXPECT_TRUE(fromSystem->starts_with('/')) << *fromSystem;
  }
}

TEST(PosixHost, NamesTheFoldersOfTheSystem) {
  PosixHost host;
  EXPECT_EQ(host.SystemFolder(), "C:\\WINDOWS\\system32");
  const Variable named("TMPDIR", "/some/folder");
  EXPECT_EQ(host.TemporaryFolder(), "/some/folder/");
  const Variable unset("TMPDIR", nullptr);
  EXPECT_EQ(host.TemporaryFolder(), "/tmp/");
}

TEST(PosixHost, MakesAPrivateFolderOnceAndRemovesItWithItsFiles) {
  std::string folder;
  {
    PosixHost host;
    folder = host.PrivateTemporaryFolder();
    EXPECT_EQ(host.PrivateTemporaryFolder(), folder);
    ASSERT_TRUE(fs::is_directory(folder));
    EXPECT_EQ(fs::status(folder).permissions(), fs::perms::owner_all);
    std::ofstream(folder + "left-over") << "x";
  }
  EXPECT_FALSE(fs::exists(folder));
}

TEST(PosixHost, GivesAForkedChildAPrivateFolderOfItsOwn) {
  PosixHost host;
  const std::string folder = host.PrivateTemporaryFolder();
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    bool differs = false;
    {
      PosixHost* const inherited = &host;
      differs = inherited->PrivateTemporaryFolder() != folder;
      inherited->~PosixHost();  // as the end of the process would
    }
    _exit(differs ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(fs::is_directory(folder)) << "the parent's folder is left alone";
}

TEST(PosixHost, RaisesWhenThePrivateFolderCannotBeMade) {
  const Variable missing("TMPDIR", "/nonexistent/folder");
  PosixHost host;
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(host.PrivateTemporaryFolder()); }), 75);
}

TEST(PosixHost, IsOneForTheProcess) { EXPECT_EQ(&ProcessHost(), &ProcessHost()); }

}  // namespace
}  // namespace kx::host
