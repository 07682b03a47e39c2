// The statements on files, at a real folder and in memory: the errors of the table, what is read,
// what is written, and what stays when writing fails.
#include "platform/host/files.h"

#include "platform/host/host_site.h"
#include "platform/host/memory/failing_file_system.h"
#include "platform/host/memory/memory_host.h"
#include "platform/runtime/error.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace kx::host {
namespace {

using namespace std::string_literals;

class FilesAtSite : public testing::TestWithParam<SiteFactory> {
 protected:
  [[nodiscard]] Files TheFiles() { return site_->TheFiles(); }
  [[nodiscard]] std::string At(std::string_view name) { return site_->At(name); }

  std::unique_ptr<HostSite> site_ = GetParam().make();
};

INSTANTIATE_TEST_SUITE_P(Sites, FilesAtSite, testing::Values(RealSite(), MemorySite()),
                         [](const auto& site) { return site.param.name; });

// The error of each statement on one name; 0 where it succeeds.
struct ErrorCase {
  const char* name;
  int input;
  int output;
  int binary;
  int fileLen;
  int kill;
  const char* why;
};

constexpr ErrorCase kErrorCases[] = {
    {"missing.xml", 53, 0, 0, 53, 53, "the file is missing"},
    {"nofolder/x.xml", 76, 76, 76, 53, 76, "the folder is missing"},
    {"file.xml/x.xml", 76, 76, 76, 53, 76, "a file stands for the folder"},
    {"folder", 75, 75, 75, 53, 53, "it is a folder"},
    {"file.xml", 0, 0, 0, 0, 0, "it is a file"},
    {"readonly.xml", 0, 75, 75, 0, 75, "the file is read-only"},
    {"device", 75, 0, 0, 53, 0, "it is a device"},
    {"a*b.xml", 52, 52, 52, 52, 52, "a wildcard"},
    {"a?b.xml", 52, 52, 52, 52, 52, "a wildcard"},
    {"a<b.xml", 52, 52, 52, 52, 52, "a forbidden character"},
    {"a>b.xml", 52, 52, 52, 52, 52, "a forbidden character"},
    {"a\"b.xml", 52, 52, 52, 52, 52, "a forbidden character"},
    {"a|b.xml", 52, 52, 52, 52, 52, "a forbidden character"},
    {"nofolder/a*b.xml", 52, 52, 52, 52, 52, "the name is bad wherever it is"},
};

TEST_P(FilesAtSite, RaiseTheErrorOfTheirStatement) {
  for (const ErrorCase& row : kErrorCases) {
    SCOPED_TRACE(row.name + " : "s + row.why);
    site_ = GetParam().make();
    site_->AddFolder("folder");
    site_->AddFile("file.xml", "x");
    site_->AddFile("readonly.xml", "x");
    site_->SetReadOnly("readonly.xml");
    site_->AddFullDevice("device");
    Files files = TheFiles();
    const std::string name = At(row.name);
    EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(files.FileLen(name)); }), row.fileLen);
    EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(files.OpenForInput(name)); }), row.input);
    EXPECT_EQ(RuntimeErrorOfCall([&] { files.OpenForOutput(name).Close(); }), row.output);
    EXPECT_EQ(RuntimeErrorOfCall([&] { files.OpenForBinary(name).Close(); }), row.binary);
    if (row.input == 53) continue;  // the statements in between have made it
    EXPECT_EQ(RuntimeErrorOfCall([&] { files.Kill(name); }), row.kill);
  }
}

TEST_P(FilesAtSite, RefuseAnEmptyName) {
  Files files = TheFiles();
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(files.OpenForInput("")); }), 75);
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(files.OpenForOutput("")); }), 75);
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(files.OpenForBinary("")); }), 75);
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(files.FileLen("")); }), 53);
  EXPECT_EQ(RuntimeErrorOfCall([&] { files.Kill(""); }), 53);
}

TEST_P(FilesAtSite, RefuseANameWithANulInsteadOfCuttingIt) {
  site_->AddFile("a", "x");
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(TheFiles().FileLen(At("a\0b"s))); }), 52);
}

TEST_P(FilesAtSite, RaiseTheTextOfTheError) {
  try {
    static_cast<void>(TheFiles().OpenForInput(At("missing.xml")));
    FAIL() << "nothing raised";
  } catch (const HostError& error) {
    EXPECT_EQ(error.Number(), static_cast<std::int32_t>(0x800A0035));
    EXPECT_EQ(error.Description(), "File not found");
  }
}

TEST_P(FilesAtSite, KillRemovesAFile) {
  site_->AddFile("x.xml", "x");
  TheFiles().Kill(At("x.xml"));
  EXPECT_EQ(site_->Content("x.xml"), std::nullopt);
  EXPECT_EQ(RuntimeErrorOfCall([&] { TheFiles().Kill(At("x.xml")); }), 53);
}

TEST_P(FilesAtSite, KillRemovesALinkAndNotWhatItLeadsTo) {
  site_->AddFile("x.xml", "x");
  site_->AddLink("link.xml", "x.xml");
  TheFiles().Kill(At("link.xml"));
  EXPECT_EQ(site_->Content("link.xml"), std::nullopt);
  EXPECT_EQ(site_->Content("x.xml"), "x");
}

TEST_P(FilesAtSite, MeasureAFileInBytes) {
  site_->AddFile("x.xml", "12345");
  EXPECT_EQ(TheFiles().FileLen(At("x.xml")), 5);
}

// ---- Reading ------------------------------------------------------------------------------------

TEST_P(FilesAtSite, ReadLinesOfATextFile) {
  site_->AddFile("x.txt", "one\r\ntwo\nstill two\rthree");
  InputFile file = TheFiles().OpenForInput(At("x.txt"));
  EXPECT_EQ(file.Lof(), 24);
  EXPECT_EQ(file.LineInput(), "one");
  EXPECT_EQ(file.LineInput(), "two\nstill two");
  EXPECT_FALSE(file.AtEnd());
  EXPECT_EQ(file.LineInput(), "three");
  EXPECT_TRUE(file.AtEnd());
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(file.LineInput()); }), 62);
}

TEST_P(FilesAtSite, ReadAFileOfManyBuffers) {
  std::string content;
  for (int i = 0; i < 50000; ++i) content += std::to_string(i) + "\r\n";
  site_->AddFile("x.txt", content);
  const FileContent read = TheFiles().Read(At("x.txt"));
  EXPECT_EQ(read.status, FileStatus::kOk);
  EXPECT_EQ(read.bytes, content);
  EXPECT_EQ(read.identity.size, content.size());
}

TEST_P(FilesAtSite, ReadNoMoreThanTheBound) {
  site_->AddFile("x.txt", "12345");
  EXPECT_EQ(TheFiles().Read(At("x.txt"), 5).bytes, "12345");
  const FileContent tooLarge = TheFiles().Read(At("x.txt"), 4);
  EXPECT_EQ(tooLarge.status, FileStatus::kTooLarge);
  EXPECT_EQ(tooLarge.bytes, "");
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(TheFiles().OpenForInput(At("x.txt"), 4)); }),
            7);
}

TEST_P(FilesAtSite, TellALoaderWhyThereIsNoContent) {
  site_->AddFolder("folder");
  site_->AddFullDevice("device");
  EXPECT_EQ(TheFiles().Read(At("missing")).status, FileStatus::kNotFound);
  EXPECT_EQ(TheFiles().Read(At("none/missing")).status, FileStatus::kFolderNotFound);
  EXPECT_EQ(TheFiles().Read(At("folder")).status, FileStatus::kIsFolder);
  EXPECT_EQ(TheFiles().Read(At("device")).status, FileStatus::kNotRegular);
}

TEST_P(FilesAtSite, IdentifyAFileUntilItChanges) {
  site_->AddFile("x.xml", "1");
  const auto before = TheFiles().Identify(At("x.xml"));
  ASSERT_TRUE(before.has_value());
  EXPECT_EQ(TheFiles().Identify(At("X.XML")), before) << "another spelling";
  EXPECT_EQ(TheFiles().Read(At("x.xml")).identity, *before);
  OutputFile file = TheFiles().OpenForOutput(At("x.xml"));
  file.Print("12", LineEnd::kNo);
  file.Close();
  EXPECT_NE(TheFiles().Identify(At("x.xml")), before);
  EXPECT_EQ(TheFiles().Identify(At("missing")), std::nullopt);
  EXPECT_EQ(TheFiles().Identify(site_->Root()), std::nullopt) << "a folder";
}

// ---- Output -------------------------------------------------------------------------------------

TEST_P(FilesAtSite, PrintTextWithAndWithoutLineEnd) {
  OutputFile file = TheFiles().OpenForOutput(At("x.txt"));
  file.Print("one");
  file.Print("two\nand", LineEnd::kNo);
  file.Print("");
  file.Close();
  EXPECT_EQ(site_->Content("x.txt"), "one\r\ntwo\nand\r\n");
  EXPECT_EQ(site_->CountNames(""), 1U) << "no sibling is left";
}

TEST_P(FilesAtSite, OutputCutsALongerFile) {
  site_->AddFile("x.txt", "a much longer content");
  OutputFile file = TheFiles().OpenForOutput(At("x.txt"));
  file.Print("new", LineEnd::kNo);
  file.Close();
  EXPECT_EQ(site_->Content("x.txt"), "new");
}

TEST_P(FilesAtSite, OutputThatIsNotClosedLeavesTheOldFile) {
  site_->AddFile("x.txt", "old");
  {
    OutputFile file = TheFiles().OpenForOutput(At("x.txt"));
    file.Print("new");
    EXPECT_EQ(site_->Content("x.txt"), "old");
  }
  EXPECT_EQ(site_->Content("x.txt"), "old");
  EXPECT_EQ(site_->CountNames(""), 1U) << "no sibling is left";
}

TEST_P(FilesAtSite, OutputFollowsALink) {
  site_->AddFile("target/x.txt", "old");
  site_->AddLink("link.txt", "target/x.txt");
  OutputFile file = TheFiles().OpenForOutput(At("link.txt"));
  file.Print("new", LineEnd::kNo);
  file.Close();
  EXPECT_EQ(site_->Content("target/x.txt"), "new");
  EXPECT_EQ(site_->Content("link.txt"), "new") << "still a link to it";
}

TEST_P(FilesAtSite, OutputMakesTheFileThatALinkPromises) {
  site_->AddFolder("target");
  site_->AddLink("link.txt", "target/x.txt");
  OutputFile file = TheFiles().OpenForOutput(At("link.txt"));
  file.Print("new", LineEnd::kNo);
  file.Close();
  EXPECT_EQ(site_->Content("target/x.txt"), "new");
}

TEST_P(FilesAtSite, OutputRefusesACircleOfLinks) {
  site_->AddLink("a", "b");
  site_->AddLink("b", "a");
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(TheFiles().OpenForOutput(At("a"))); }), 75);
}

TEST_P(FilesAtSite, RaiseDiskFullForADeviceThatTakesNothing) {
  site_->AddFullDevice("full");
  EXPECT_EQ(RuntimeErrorOfCall([&] { TheFiles().OpenForOutput(At("full")).Print("x"); }), 61);
  EXPECT_EQ(RuntimeErrorOfCall([&] { TheFiles().OpenForBinary(At("full")).Put("x"); }), 61);
}

// ---- Binary -------------------------------------------------------------------------------------

TEST_P(FilesAtSite, BinaryReadsAndWritesAtOneBasedPositions) {
  site_->AddFile("x.bin", "0123456789");
  BinaryFile file = TheFiles().OpenForBinary(At("x.bin"));
  EXPECT_EQ(file.Lof(), 10);
  file.Put("abc");
  std::string buffer(2, '\0');
  file.Get(buffer);
  EXPECT_EQ(buffer, "34") << "the position follows what was written";
  EXPECT_EQ(file.Position(), 6);
  file.Get(1, buffer);
  EXPECT_EQ(buffer, "ab");
  file.Close();
  EXPECT_EQ(site_->Content("x.bin"), "abc3456789") << "what follows stays";
}

TEST_P(FilesAtSite, BinaryLeavesBytesBeyondTheEndUnchanged) {
  site_->AddFile("x.bin", "0123456789");
  BinaryFile file = TheFiles().OpenForBinary(At("x.bin"));
  std::string buffer(10, '-');
  file.Get(5, buffer);
  EXPECT_EQ(buffer, "456789----");
  file.Get(1000, buffer);
  EXPECT_EQ(buffer, "456789----");
  file.Get(0x7FFFFFFFFFFFFFFF, buffer);
  EXPECT_EQ(buffer, "456789----");
}

TEST_P(FilesAtSite, BinaryMakesAMissingFileAndExtendsIt) {
  BinaryFile file = TheFiles().OpenForBinary(At("x.bin"));
  EXPECT_EQ(file.Lof(), 0);
  file.Put(3, "x");
  file.Close();
  EXPECT_EQ(site_->Content("x.bin"), "\0\0x"s);
}

TEST_P(FilesAtSite, BinaryRefusesPositionsBelowOne) {
  site_->AddFile("x.bin", "0123456789");
  BinaryFile file = TheFiles().OpenForBinary(At("x.bin"));
  std::string buffer(1, '\0');
  EXPECT_EQ(RuntimeErrorOfCall([&] { file.Seek(0); }), 63);
  EXPECT_EQ(RuntimeErrorOfCall([&] { file.Get(0, buffer); }), 63);
  EXPECT_EQ(RuntimeErrorOfCall([&] { file.Put(-1, "x"); }), 63);
  EXPECT_EQ(file.Position(), 1);
}

TEST_P(FilesAtSite, BinaryDoesNothingForNoBytes) {
  BinaryFile file = TheFiles().OpenForBinary(At("x.bin"));
  file.Put("");
  file.Get({});
  EXPECT_EQ(file.Position(), 1);
  EXPECT_EQ(file.Lof(), 0);
}

TEST_P(FilesAtSite, BinaryNeverReadsADevice) {
  site_->AddFullDevice("device");
  BinaryFile file = TheFiles().OpenForBinary(At("device"));
  std::string buffer(1, '\0');
  EXPECT_EQ(RuntimeErrorOfCall([&] { file.Get(buffer); }), 75);
}

// ---- Files that are open ------------------------------------------------------------------------

TEST_P(FilesAtSite, RefuseASecondUseOfAFileThatIsOpenForOutput) {
  site_->AddFile("x.txt", "old");
  Files files = TheFiles();
  {
    const OutputFile file = files.OpenForOutput(At("x.txt"));
    EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(files.OpenForOutput(At("x.txt"))); }), 55);
    EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(files.OpenForInput(At("x.txt"))); }), 55);
    EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(files.OpenForBinary(At("x.txt"))); }), 55);
    EXPECT_EQ(RuntimeErrorOfCall([&] { files.Kill(At("x.txt")); }), 55);
  }
  EXPECT_EQ(RuntimeErrorOfCall([&] { files.OpenForOutput(At("x.txt")).Close(); }), 0);
}

TEST_P(FilesAtSite, AllowSeveralReadersButNoWriterBesideThem) {
  site_->AddFile("x.txt", "old");
  Files files = TheFiles();
  const InputFile first = files.OpenForInput(At("x.txt"));
  const InputFile second = files.OpenForInput(At("x.txt"));
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(files.OpenForOutput(At("x.txt"))); }), 55);
  EXPECT_EQ(RuntimeErrorOfCall([&] { files.Kill(At("x.txt")); }), 55);
}

// ---- Names --------------------------------------------------------------------------------------

TEST_P(FilesAtSite, ReplaceTheFileThatReadingWouldFind) {
  site_->AddFile("Folder/Order.XML", "old");
  OutputFile file = TheFiles().OpenForOutput(At("folder/order.xml"));
  file.Print("new", LineEnd::kNo);
  file.Close();
  EXPECT_EQ(site_->Content("Folder/Order.XML"), "new");
  EXPECT_EQ(site_->CountNames("Folder"), 1U);
}

TEST_P(FilesAtSite, MakeTheFolderOfDriveCOnTheFirstWrite) {
  Files files = TheFiles();
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(files.OpenForInput("C:\\x.xml")); }), 53);
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(files.OpenForOutput("C:\\a\\x.xml")); }),
            76);
  EXPECT_EQ(site_->CountNames(""), 0U) << "neither a reader nor a failure makes it";
  OutputFile file = files.OpenForOutput("C:\\x.xml");
  file.Print("new", LineEnd::kNo);
  file.Close();
  EXPECT_EQ(site_->Content("drive/x.xml"), "new");
  EXPECT_EQ(files.Read("c:/X.XML").bytes, "new");
}

// ---- Temporary files ----------------------------------------------------------------------------

TEST_P(FilesAtSite, CreateTemporaryFilesUnderTheFirstFreeNumber) {
  Files files = TheFiles();
  std::vector<std::uint16_t> numbers;
  const auto nameOf = [&](std::uint16_t number) {
    numbers.push_back(number);
    return At("T" + std::to_string(numbers.size() < 3 ? 1 : 2));
  };
  site_->AddFile("T1", "taken");
  const auto name = files.CreateTemporaryFile(nameOf);
  ASSERT_EQ(name, At("T2"));
  EXPECT_EQ(site_->Content("T2"), "") << "created empty";
  EXPECT_EQ(site_->Content("T1"), "taken");
  ASSERT_EQ(numbers.size(), 3U);
  EXPECT_EQ(numbers[1], numbers[0] == 0xFFFF ? 1 : numbers[0] + 1);
}

TEST_P(FilesAtSite, CreateNoTemporaryFileInAMissingFolder) {
  const auto nameOf = [&](std::uint16_t) { return At("none/T"); };
  EXPECT_EQ(TheFiles().CreateTemporaryFile(nameOf), std::nullopt);
}

TEST_P(FilesAtSite, GiveUpWhenEveryTemporaryNameIsTaken) {
  site_->AddFile("T", "taken");
  const auto nameOf = [&](std::uint16_t) { return At("T"); };
  EXPECT_EQ(TheFiles().CreateTemporaryFile(nameOf), std::nullopt);
  EXPECT_EQ(site_->Content("T"), "taken");
}

TEST(Files, NumberTemporaryFilesFromTheClockOnAndNeverZero) {
  MemoryHost host;
  host.SetTicks(0x7'FFFF);
  Files files(host);
  std::vector<std::uint16_t> numbers;
  const auto nameOf = [&](std::uint16_t number) {
    numbers.push_back(number);
    return "/tmp/T" + std::to_string(number);
  };
  EXPECT_EQ(files.CreateTemporaryFile(nameOf), "/tmp/T65535");
  EXPECT_EQ(files.CreateTemporaryFile(nameOf), "/tmp/T1");
  host.SetTicks(0x1'0000);
  EXPECT_EQ(files.CreateTemporaryFile(nameOf), "/tmp/T2");
  EXPECT_EQ(numbers, (std::vector<std::uint16_t>{65535, 65535, 1, 1, 2}));
}

// ---- Failures of the system ---------------------------------------------------------------------

// Saves, and tells the run-time error, 0 for none.
int SaveNew(Files& files, const std::string& name) {
  return RuntimeErrorOfCall([&] {
    OutputFile file = files.OpenForOutput(name);
    file.Print("new content");
    file.Close();
  });
}

struct InjectedCase {
  FileStatus status;
  int error;
  const char* why;
};

constexpr InjectedCase kInjectedCases[] = {
    {FileStatus::kDiskFull, 61, "the disk is full"},
    {FileStatus::kIoError, 57, "the disk fails"},
    {FileStatus::kTooManyOpen, 67, "no descriptor is free"},
    {FileStatus::kNotReady, 71, "no medium"},
    {FileStatus::kOutOfMemory, 7, "no memory"},
};

TEST(Files, LeaveTheOldFileWholeWhicheverCallFails) {
  for (const InjectedCase& row : kInjectedCases) {
    SCOPED_TRACE(row.why);
    MemoryHost host;
    host.Memory().AddFile("/site/x.xml", "old");
    FailingFileSystem failing(host.Memory());
    host.SetFiles(&failing);
    Files files(host);
    std::size_t call = 1;
    for (;; ++call) {
      ASSERT_LT(call, 100U) << "it never succeeds";
      failing.FailCall(call, row.status);
      const int error = SaveNew(files, "/site/x.xml");
      if (!failing.HasFailed()) {
        EXPECT_EQ(error, 0);
        break;
      }
      SCOPED_TRACE("call " + std::to_string(call));
      const std::string content = host.Memory().Content("/site/x.xml").value_or("none");
      EXPECT_TRUE(error == 0 || error == row.error) << error;
      EXPECT_TRUE(content == "old" || content == "new content\r\n") << content;
      EXPECT_TRUE(error != 0 || content != "old") << "success means saved";
      host.Memory().AddFile("/site/x.xml", "old");
    }
    EXPECT_GT(call, 8U) << "every step was failed once";
    EXPECT_EQ(host.Memory().AllFiles(), std::vector<std::string>{"/site/x.xml"});
    EXPECT_EQ(host.Memory().Content("/site/x.xml"), "new content\r\n");
  }
}

TEST(Files, RaiseDiskFullAndKeepTheOldFileWhenTheDiskFills) {
  MemoryHost host;
  host.Memory().AddFile("/site/x.xml", "old");
  host.Memory().SetFreeBytes(5);
  Files files(host);
  EXPECT_EQ(SaveNew(files, "/site/x.xml"), 61);
  EXPECT_EQ(host.Memory().Content("/site/x.xml"), "old");
  EXPECT_EQ(host.Memory().AllFiles().size(), 1U);
}

TEST(Files, WriteDirectlyWhereTheFolderTakesNoNewFile) {
  MemoryHost host;
  host.Memory().AddFile("/site/x.xml", "old");
  host.Memory().SetReadOnly("/site");
  Files files(host);
  EXPECT_EQ(SaveNew(files, "/site/x.xml"), 0);
  EXPECT_EQ(host.Memory().Content("/site/x.xml"), "new content\r\n");
  EXPECT_EQ(SaveNew(files, "/site/y.xml"), 75) << "a new file cannot be made there";
}

TEST(Files, WriteDirectlyWhereTheTargetCannotBeRenamedOver) {
  MemoryHost host;
  host.Memory().AddFile("/site/x.xml", "old");
  FailingFileSystem failing(host.Memory());
  host.SetFiles(&failing);
  Files files(host);
  bool renameFailed = false;
  for (std::size_t call = 1; call < 100; ++call) {
    failing.FailCall(call, FileStatus::kOtherDevice);  // only a rename tells this
    const int error = SaveNew(files, "/site/x.xml");
    if (!failing.HasFailed()) break;
    if (error == 0) {
      renameFailed = true;
      EXPECT_EQ(host.Memory().Content("/site/x.xml"), "new content\r\n");
    }
    host.Memory().AddFile("/site/x.xml", "old");
  }
  EXPECT_TRUE(renameFailed);
  EXPECT_EQ(host.Memory().AllFiles().size(), 1U) << "no sibling is left";
}

TEST(Files, OpenNoMoreThanTheFileNumbers) {
  MemoryHost host;
  host.Memory().AddFile("/x", "");
  Files files(host);
  std::vector<InputFile> open;
  open.reserve(511);
  for (int i = 0; i < 511; ++i) open.push_back(files.OpenForInput("/x"));
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(files.OpenForInput("/x")); }), 67);
  open.pop_back();
  EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(files.OpenForInput("/x")); }), 0);
}

}  // namespace
}  // namespace kx::host
