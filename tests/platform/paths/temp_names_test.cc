// The temporary folder, the names of temporary files and the system folder, as text.
#include "platform/paths/temp_names.h"

#include <gtest/gtest.h>
#include <map>
#include <string>

namespace kx::paths {
namespace {

struct FolderCase {
  std::map<std::string, std::string, std::less<>> environment;
  const char* folder;
  const char* why;
};

TEST(GetTempPathA, TakesTheFirstVariableThatIsSet) {
  const FolderCase cases[] = {
      {{{"TMP", "C:\\T"}, {"TEMP", "C:\\E"}, {"USERPROFILE", "C:\\U"}}, "C:\\T\\", "TMP first"},
      {{{"TEMP", "C:\\E\\"}, {"USERPROFILE", "C:\\U"}}, "C:\\E\\", "then TEMP; one backslash"},
      {{{"USERPROFILE", "C:\\U"}}, "C:\\U\\", "then USERPROFILE"},
      {{{"TMP", ""}, {"TEMP", "C:\\E"}}, "C:\\E\\", "an empty variable is not set"},
      {{}, "C:\\WINDOWS\\", "then the Windows folder"},
  };
  for (const FolderCase& row : cases) {
    SCOPED_TRACE(row.why);
    const auto lookup = [&](std::string_view name) -> std::optional<std::string> {
      const auto found = row.environment.find(name);
      if (found == row.environment.end()) return std::nullopt;
      return found->second;
    };
    EXPECT_EQ(GetTempPathA(lookup, "C:\\WINDOWS"), row.folder);
  }
}

struct NameCase {
  const char* folder;
  const char* prefix;
  std::uint16_t number;
  const char* name;
  const char* why;
};

constexpr NameCase kNameCases[] = {
    {"C:\\Temp", "MSG", 0x1A2, "C:\\Temp\\MSG1A2.tmp", "upper-case digits without leading zeros"},
    {"C:\\Temp\\", "MESSAGE", 0xF, "C:\\Temp\\MESF.tmp", "three characters of the prefix"},
    {"C:\\Temp", "", 0xFFFF, "C:\\Temp\\FFFF.tmp", "an empty prefix leaves the number"},
    {"C:", "M", 1, "C:\\M1.tmp", "a bare drive"},
    {"C:\\Temp", "MSG", 0, "C:\\Temp\\MSG0.tmp", "zero is a digit"},
    {"/tmp", "MSG", 0xAB, "/tmp/MSGAB.tmp", "a native folder"},
    {"/tmp/", "MSG", 0xAB, "/tmp/MSGAB.tmp", "a native folder with its slash"},
};

TEST(TempFileNameA, JoinsFolderPrefixAndHexadecimalNumber) {
  for (const NameCase& row : kNameCases) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(TempFileNameA(row.folder, row.prefix, row.number), row.name);
  }
}

TEST(GetSystemDirectoryA, LeavesOutTheClosingBackslashExceptOfARoot) {
  EXPECT_EQ(GetSystemDirectoryA("C:\\WINDOWS\\system32\\", 1000).text, "C:\\WINDOWS\\system32");
  EXPECT_EQ(GetSystemDirectoryA("C:\\WINDOWS\\system32", 1000).length, 19U);
  EXPECT_EQ(GetSystemDirectoryA("C:\\", 1000).text, "C:\\");
}

TEST(GetSystemDirectoryA, TellsTheNeededSizeWhenTheBufferIsTooSmall) {
  const BufferText small = GetSystemDirectoryA("C:\\WINDOWS\\system32", 19);
  EXPECT_EQ(small.length, 20U) << "the end mark counts";
  EXPECT_EQ(small.text, "");
  EXPECT_EQ(GetSystemDirectoryA("C:\\WINDOWS\\system32", 20).length, 19U);
}

}  // namespace
}  // namespace kx::paths
