// Where a name leads: drives, native names, case, and which folder is missing.
#include "platform/host/name_lookup.h"

#include "platform/host/host_site.h"
#include "platform/host/memory/memory_host.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace kx::host {
namespace {

using namespace std::string_literals;

// `$` in a name stands for the site's folder.
struct NameCase {
  const char* name;
  FileStatus status;
  const char* path;
  const char* why;
};

constexpr NameCase kNameCases[] = {
    {"$/a/Order.xml", FileStatus::kOk, "$/a/Order.xml", "as spelled"},
    {"$/a/ORDER.XML", FileStatus::kOk, "$/a/Order.xml", "another case of the file"},
    {"$/A/order.xml", FileStatus::kOk, "$/a/Order.xml", "another case of the folder"},
    {"$/both/x.xml", FileStatus::kOk, "$/both/x.xml", "as spelled, before any other case"},
    {"$/both/X.xml", FileStatus::kOk, "$/both/X.xml", "as spelled, before any other case"},
    {"$/both/X.XML", FileStatus::kOk, "$/both/X.xml", "of several the first by its bytes"},
    {"$/\xC3\x84rger.xml", FileStatus::kOk, "$/\xC3\xA4rger.xml", "case beyond the letters A to Z"},
    {"$/a/new.xml", FileStatus::kNotFound, "$/a/new.xml", "to be made as spelled"},
    {"$/A/New.xml", FileStatus::kNotFound, "$/a/New.xml", "to be made in the folder found"},
    {"$/none/x", FileStatus::kFolderNotFound, "", "the folder is missing"},
    {"$/a/Order.xml/x", FileStatus::kFolderNotFound, "", "a file is no folder"},
    {"$/a/ORDER.xml/x", FileStatus::kFolderNotFound, "", "in no case"},
    {"$/a/", FileStatus::kOk, "$/a", "a folder with its slash"},
    {"$/a/Order.xml/", FileStatus::kFolderNotFound, "", "a file with a slash"},
    {"$/odd*name", FileStatus::kOk, "$/odd*name", "a native name as spelled, wildcard or not"},
    {"$/back\\slash", FileStatus::kOk, "$/back\\slash", "a backslash in a native name"},
    {"$/colon:name", FileStatus::kNotFound, "$/colon:name", "a colon in a native name"},
    {"$//a///Order.xml", FileStatus::kOk, "", "doubled slashes"},
    {"C:\\in.xml", FileStatus::kOk, "$/drive/in.xml", "a drive"},
    {"c:/IN.xml", FileStatus::kOk, "$/drive/in.xml", "lower-case letter, forward slash"},
    {"C:in.xml", FileStatus::kOk, "$/drive/in.xml", "without a separator: the drive's root"},
    {"C:\\sub\\..\\in.xml", FileStatus::kOk, "$/drive/in.xml", "two dots"},
    {"C:\\..\\..\\in.xml", FileStatus::kOk, "$/drive/in.xml", "a drive is never left"},
    {"C:\\..\\a\\Order.xml", FileStatus::kFolderNotFound, "", "a drive is never left"},
    {"C:\\.\\in.xml", FileStatus::kOk, "$/drive/in.xml", "a dot"},
    {"\\\\?\\C:\\in.xml", FileStatus::kOk, "$/drive/in.xml", "the long form"},
    {"C:\\Sub\\x.xml", FileStatus::kNotFound, "$/drive/sub/x.xml", "to be made"},
    {"C:\\a:b", FileStatus::kBadName, "", "a colon beyond the drive"},
    {"C:\\a\tb", FileStatus::kBadName, "", "a control character"},
    {"C:\\none\\a?b", FileStatus::kBadName, "", "a bad name in a missing folder"},
    {"D:\\x.xml", FileStatus::kFolderNotFound, "", "a drive that does not exist"},
    {"\\\\srv\\share\\x.xml", FileStatus::kFolderNotFound, "", "another machine"},
    {"\\\\.\\C:", FileStatus::kFolderNotFound, "", "a device of the platform"},
    {"\\\\?\\", FileStatus::kBadName, "", "nothing after the long form"},
    {"", FileStatus::kEmptyName, "", "the empty name"},
};

class NameLookupAtSite : public testing::TestWithParam<SiteFactory> {
 protected:
  void SetUp() override {
    site_->AddFile("a/Order.xml", "1");
    site_->AddFile("both/x.xml", "2");
    site_->AddFile("both/X.xml", "3");
    site_->AddFile("both/xx.xml", "3");
    site_->AddFile("\xC3\xA4rger.xml", "4");
    site_->AddFile("odd*name", "5");
    site_->AddFile("back\\slash", "6");
    site_->AddFile("drive/in.xml", "7");
    site_->AddFolder("drive/sub");
  }

  [[nodiscard]] std::string Expand(std::string_view text) {
    std::string result(text);
    const std::size_t mark = result.find('$');
    if (mark != std::string::npos) result.replace(mark, 1, site_->Root());
    return result;
  }

  std::unique_ptr<HostSite> site_ = GetParam().make();
};

INSTANTIATE_TEST_SUITE_P(Sites, NameLookupAtSite, testing::Values(RealSite(), MemorySite()),
                         [](const auto& site) { return site.param.name; });

TEST_P(NameLookupAtSite, FindsWhatTheNameLeadsTo) {
  for (const NameCase& row : kNameCases) {
    SCOPED_TRACE(row.name + " : "s + row.why);
    const FoundName found = site_->TheFiles().Find(Expand(row.name));
    EXPECT_EQ(found.status, row.status);
    if (row.path[0] != '\0') {
      EXPECT_EQ(found.path, Expand(row.path));
    }
    const bool isPlace = row.status == FileStatus::kOk || row.status == FileStatus::kNotFound;
    EXPECT_EQ(found.path.empty(), !isPlace);
  }
}

TEST_P(NameLookupAtSite, TakesABackslashInFrontForTheRoot) {
  std::string name = site_->At("a/Order.xml");
  for (char& c : name) c = c == '/' ? '\\' : c;
  EXPECT_EQ(site_->TheFiles().Find(name).path, site_->At("a/Order.xml"));
  EXPECT_EQ(site_->TheFiles().Find("\\..\\.." + name).path, site_->At("a/Order.xml"));
}

TEST_P(NameLookupAtSite, TellsADanglingLinkFromAFile) {
  site_->AddLink("dangling", "nowhere");
  const FoundName found = site_->TheFiles().Find(site_->At("dangling"));
  EXPECT_EQ(found.status, FileStatus::kNotFound);
  EXPECT_EQ(found.path, site_->At("dangling"));
}

TEST_P(NameLookupAtSite, PromisesTheFolderOfADriveThatWasSet) {
  DriveFolders drives;
  drives.Set('e', site_->At("new/e"));
  const Files files(site_->TheHost(), drives);
  const FoundName found = files.Find("E:\\x.xml");
  EXPECT_EQ(found.status, FileStatus::kNotFound);
  EXPECT_EQ(found.path, site_->At("new/e/x.xml"));
  EXPECT_EQ(found.missingDriveFolder, site_->At("new/e"));
  EXPECT_EQ(files.Find("E:\\sub\\x.xml").status, FileStatus::kFolderNotFound);
  EXPECT_EQ(files.Find("E:\\a*").status, FileStatus::kBadName);
}

TEST(NameLookup, TakesOtherNamesRelativeToTheCurrentFolder) {
  MemoryHost host;  // its current folder is the root
  host.Memory().AddFile("/Dir/Order.xml", "1");
  const Files files(host, DriveFolders());
  EXPECT_EQ(files.Find("Dir\\Order.xml").path, "Dir/Order.xml");
  EXPECT_EQ(files.Find("dir/order.xml").path, "Dir/Order.xml");
  EXPECT_EQ(files.Find("new.xml").path, "new.xml");
}

TEST(DriveFolders, ComeFromTheEnvironment) {
  MemoryHost host;
  EXPECT_EQ(DriveFolders::FromEnvironment(host).Find('C'),
            "/home/user/.local/share/KXXMLMessageLib/drive_c");
  host.SetEnvironment("XDG_DATA_HOME", "/data");
  EXPECT_EQ(DriveFolders::FromEnvironment(host).Find('c'), "/data/KXXMLMessageLib/drive_c");
  host.SetEnvironment("XDG_DATA_HOME", "relative");
  EXPECT_EQ(DriveFolders::FromEnvironment(host).Find('c'),
            "/home/user/.local/share/KXXMLMessageLib/drive_c")
      << "a relative value is ignored";
  host.SetEnvironment("KX_DRIVE_C", "/c");
  EXPECT_EQ(DriveFolders::FromEnvironment(host).Find('C'), "/c");
  EXPECT_EQ(DriveFolders::FromEnvironment(host).Find('1'), std::nullopt);
}

TEST(DriveFolders, MakeOtherDrivesExistWithTheirFolder) {
  MemoryHost host;
  const Files without(host);
  EXPECT_EQ(without.Find("D:\\x.xml").status, FileStatus::kFolderNotFound);
  host.Memory().AddFolder("/home/user/.local/share/KXXMLMessageLib/drive_d");
  const Files with(host);
  EXPECT_EQ(with.Find("D:\\x.xml").status, FileStatus::kNotFound);
  host.SetEnvironment("KX_DRIVE_E", "/e");
  const Files named(host);
  EXPECT_EQ(named.Find("E:\\x.xml").missingDriveFolder, "/e");
}

TEST(DriveFolders, AreNoneWithoutAHome) {
  MemoryHost host;
  host.SetHomeFolder(std::nullopt);
  const Files files(host);
  EXPECT_EQ(files.Find("C:\\x.xml").status, FileStatus::kFolderNotFound);
}

}  // namespace
}  // namespace kx::host
