// Completing and splitting locations.
#include "core/locations.h"

#include "platform/host/memory/memory_host.h"
#include "platform/runtime/error.h"
#include "platform/settings/memory_settings_store.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kx::core {
namespace {

class LocationsTest : public testing::Test {
 protected:
  LocationsTest() { settings_.SetApplicationName("test"); }

  [[nodiscard]] Locations Make(int codePage = text::kCodePageWindows1252) {
    return {host_, settings_, *text::FindCodePage(codePage)};
  }
  [[nodiscard]] std::string Stored(std::string_view name) {
    return settings_.Read(name, "(nothing)");
  }

  host::MemoryHost host_;
  settings::MemorySettingsStore settings_;
};

constexpr const char* kNone = "(nothing)";

TEST_F(LocationsTest, TheSystemDriveIsTheTextBeforeTheColonOfTheSystemFolder) {
  struct {
    const char* folder;
    const char* drive;
  } const rows[] = {{"C:\\WINDOWS\\system32", "C"},
                    {"D:\\WINNT", "D"},
                    {"\\\\server\\share", "C"},
                    {"", "C"},
                    {"AB:\\x", "AB"},
                    {":\\x", ""}};
  for (const auto& row : rows) {
    host_.SetSystemFolder(row.folder);
    EXPECT_EQ(Make().GetSystemDrive(), row.drive) << row.folder;
  }
}

TEST_F(LocationsTest, TheSchemaBaseOnAnotherDriveIsStoredOnItsFirstUse) {
  host_.SetSystemFolder("D:\\WINDOWS\\system32");
  EXPECT_EQ(Make().ResolveSchemaLocation(""), "D:\\Program Files\\Halcyra\\KXMessageSchemas\\");
  EXPECT_EQ(Stored("SchemaPath"), "D:\\Program Files\\Halcyra\\KXMessageSchemas\\");
  EXPECT_EQ(Stored("MsgPath"), kNone);
}

TEST_F(LocationsTest, TheMessageBaseGetsABackslashAndIsStoredWithIt) {
  EXPECT_EQ(Make().ResolveMessageLocation(""), "C:\\Program Files\\Halcyra\\Messages\\");
  EXPECT_EQ(Stored("MsgPath"), "C:\\Program Files\\Halcyra\\Messages\\");
}

TEST_F(LocationsTest, AUrlBaseGetsASlashAndIsStoredWithIt) {
  settings_.Write("SchemaPath", "http://server/schemas");
  EXPECT_EQ(Make().ResolveSchemaLocation("Order"), "http://server/schemas/Order.xml");
  EXPECT_EQ(Stored("SchemaPath"), "http://server/schemas/");
}

struct ResolveCase {
  const char* why;
  const char* base;
  std::string location;
  std::string resolved;
  const char* stored;  // under the setting afterwards
};

TEST_F(LocationsTest, LocationsAreCompletedAgainstTheBase) {
  const std::string longName(300, 'a');
  const ResolveCase rows[] = {
      {"a bare name", "C:\\b\\", "Order", "C:\\b\\Order.xml", "C:\\b\\"},
      {"the base without separator", "C:\\b", "Order", "C:\\b\\Order.xml", "C:\\b\\"},
      {"an extension stays", "C:\\b\\", "Order.xsd", "C:\\b\\Order.xsd", "C:\\b\\"},
      {"a name ending in a full stop has one", "C:\\b\\", "Order.", "C:\\b\\Order.", "C:\\b\\"},
      {"nothing gives the base", "C:\\b\\", "", "C:\\b\\", "C:\\b\\"},
      {"an absolute path is not completed", "C:\\b", "C:\\x\\Order", "C:\\x\\Order.xml", "C:\\b"},
      {"a path of another machine", "C:\\b", "\\\\s\\h\\O.xml", "\\\\s\\h\\O.xml", "C:\\b"},
      {"a drive-relative path counts as absolute", "C:\\b", "D:Order", "D:Order.xml", "C:\\b"},
      {"a URL is not completed", "C:\\b", "http://h.org/s/Order.xml", "http://h.org/s/Order.xml",
       "C:\\b"},
      {"a host with a full stop keeps a URL from its extension", "C:\\b", "http://h.org/Order",
       "http://h.org/Order", "C:\\b"},
      {"a host without one does not", "C:\\b", "http://server/s/Order", "http://server/s/Order.xml",
       "C:\\b"},
      {"a file URL", "C:\\b", "file:///C:/x/O.xml", "file:///C:/x/O.xml", "C:\\b"},
      {"dots in a folder's name are no extension", "C:\\b\\", "..\\Order", "C:\\Order.xml",
       "C:\\b\\"},
      {"dots with an extension go up", "C:\\b\\", "..\\Order.xml", "C:\\Order.xml", "C:\\b\\"},
      {"forward slashes stay", "C:\\b\\", "sub/Order", "C:\\b\\sub/Order.xml", "C:\\b\\"},
      {"a backslash in front is the root", "C:\\b\\c\\", "\\x\\O.xml", "\\x\\O.xml", "C:\\b\\c\\"},
      {"blanks in front go", "C:\\b\\", "  Order", "C:\\b\\Order.xml", "C:\\b\\"},
      {"blanks behind get the extension", "C:\\b\\", "Order  ", "C:\\b\\Order  .xml", "C:\\b\\"},
      {"a blank after the last full stop", "C:\\b\\", "v1.2 final", "C:\\b\\v1.2 final.xml",
       "C:\\b\\"},
      {"a null character ends the name", "C:\\b\\", std::string("Or\0der", 6), "C:\\b\\Or.xml",
       "C:\\b\\"},
      {"a URL base escapes", "http://server/s/", "My Order", "http://server/s/My%20Order.xml",
       "http://server/s/"},
      {"a URL base and dots", "http://server/s/", "../Order.xml", "http://server/Order.xml",
       "http://server/s/"},
      {"a URL base and nothing", "http://server/s", "", "http://server/s/", "http://server/s/"},
      {"cut to 259 characters, too long to combine", "C:\\b\\", longName, "", "C:\\b\\"},
      {"an absolute one is cut to 259", "C:\\b", "C:\\" + longName,
       "C:\\" + longName.substr(0, 256), "C:\\b"},
      {"a combined URL that does not fit leaves blanks", "http://server/s/", std::string(259, 'a'),
       std::string(260, ' '), "http://server/s/"},
      {"characters outside the code page", "C:\\b\\", "\xD0\x96", "C:\\b\\?.xml", "C:\\b\\"},
      {"characters inside it", "C:\\b\\", "\xC3\xA4\xE2\x82\xAC", "C:\\b\\\xC3\xA4\xE2\x82\xAC.xml",
       "C:\\b\\"},
  };
  for (const ResolveCase& row : rows) {
    SCOPED_TRACE(row.why);
    settings_.Write("SchemaPath", row.base);
    EXPECT_EQ(Make().ResolveSchemaLocation(row.location), row.resolved);
    EXPECT_EQ(Stored("SchemaPath"), row.stored);
  }
}

TEST_F(LocationsTest, AnAbsoluteLocationDoesNotTouchTheSettings) {
  EXPECT_EQ(Make().ResolveSchemaLocation("C:\\x\\Order"), "C:\\x\\Order.xml");
  EXPECT_EQ(Make().ResolveMessageLocation("http://h.org/Order.xml"), "http://h.org/Order.xml");
  EXPECT_EQ(Stored("SchemaPath"), kNone);
  EXPECT_EQ(settings_.WriteCount(), 0);
}

TEST_F(LocationsTest, OnlyAChangedBaseIsWritten) {
  settings_.Write("MsgPath", "C:\\m\\");
  const int before = settings_.WriteCount();
  for (int i = 0; i < 3; ++i) EXPECT_EQ(Make().ResolveMessageLocation("x"), "C:\\m\\x.xml");
  EXPECT_EQ(settings_.WriteCount(), before);
}

TEST_F(LocationsTest, TheDefaultBaseGivenIsUsedWhenNothingIsStored) {
  EXPECT_EQ(Make().ResolveLocation("Other", "a", "E:\\e"), "E:\\e\\a.xml");
  EXPECT_EQ(Stored("Other"), "E:\\e\\");
  EXPECT_EQ(Make().ResolveLocation("Other", "a", "F:\\f"), "E:\\e\\a.xml");
}

TEST_F(LocationsTest, ACodePageThatHasTheCharactersKeepsThem) {
  settings_.Write("SchemaPath", "C:\\b");
  EXPECT_EQ(Make(text::kCodePageUtf8).ResolveSchemaLocation("\xD0\x96"), "C:\\b\\\xD0\x96.xml");
}

struct NativeCase {
  const char* why;
  const char* base;
  std::string location;
  std::string resolved;
};

TEST_F(LocationsTest, OnAPosixHostALocationOrBaseThatBeginsWithASlashIsNative) {
  const NativeCase rows[] = {
      {"absolute, with extension", "C:\\b", "/srv/m/Order.xml", "/srv/m/Order.xml"},
      {"absolute, without", "C:\\b", "/srv/m/Order", "/srv/m/Order.xml"},
      {"a full stop in a folder is none", "C:\\b", "/srv/m.d/Order", "/srv/m.d/Order.xml"},
      {"a folder gets none", "C:\\b", "/srv/m/", "/srv/m/"},
      {"a native base", "/srv/s", "Order", "/srv/s/Order.xml"},
      {"a native base with slash", "/srv/s/", "Order.xsd", "/srv/s/Order.xsd"},
      {"a native base and nothing", "/srv/s", "", "/srv/s/"},
      {"a native base and a folder of Windows spelling", "/srv/s", "sub\\Order",
       "/srv/s/sub/Order.xml"},
      {"not converted to the code page", "C:\\b", "/srv/\xD0\x96", "/srv/\xD0\x96.xml"},
      {"259 characters fit", "C:\\b", "/" + std::string(254, 'a') + ".xml",
       "/" + std::string(254, 'a') + ".xml"},
  };
  for (const NativeCase& row : rows) {
    SCOPED_TRACE(row.why);
    settings_.Write("SchemaPath", row.base);
    EXPECT_EQ(Make().ResolveSchemaLocation(row.location), row.resolved);
  }
  settings_.Write("SchemaPath", "/srv/s");
  static_cast<void>(Make().ResolveSchemaLocation("a"));
  EXPECT_EQ(Stored("SchemaPath"), "/srv/s/");
}

TEST_F(LocationsTest, ANativeLocationThatIsTooLongIsAnError) {
  const std::string tooLong = "/" + std::string(255, 'a') + ".xml";
  EXPECT_THROW(static_cast<void>(Make().ResolveSchemaLocation(tooLong)), HostError);
  EXPECT_THROW(static_cast<void>(Make().ResolveSchemaLocation("/" + std::string(256, 'a'))),
               HostError)
      << "the extension counts";
  settings_.Write("SchemaPath", "/" + std::string(250, 'b'));
  EXPECT_THROW(static_cast<void>(Make().ResolveSchemaLocation("Order.xml")), HostError);
}

struct SplitCase {
  const char* location;
  const char* folder;
  const char* fileName;
};

TEST_F(LocationsTest, LocationsAreSplitIntoFolderAndFileName) {
  const SplitCase rows[] = {
      {"http://server/s/Order.xml", "http://server/s", "Order.xml"},
      {"https://h", "https:/", "h"},
      {"mailto:x", "mailto:x", "x"},
      {"C:\\x\\Order.xml", "C:\\x\\", "Order.xml"},
      {"C:\\Order.xml", "C:\\", "Order.xml"},
      {"Order.xml", "\\", "Order.xml"},
      {"", "\\", ""},
      {"C:/x/Order.xml", "C:\\", "Order.xml"},
      {"C:\\x\\", "C:\\x\\", "x\\"},
      {"\\\\srv\\share\\f.xml", "\\\\srv\\share\\", "f.xml"},
      {"file:///C:/x/Order.xml", "C:\\x\\", "Order.xml"},
      {"FILE:///C:/My%20x/Order.xml", "C:\\My x\\", "Order.xml"},
      {"file://host/share/Order.xml", "\\\\host\\share\\", "Order.xml"},
      {"C:Order.xml", "C:\\", "Order.xml"},
      {"/srv/m/Order.xml", "/srv/m/", "Order.xml"},
      {"/Order.xml", "/", "Order.xml"},
      {"/srv/m/", "/srv/m/", ""},
      {"C:\\\xC3\xA4\\\xC3\xB6.xml", "C:\\\xC3\xA4\\", "\xC3\xB6.xml"},
  };
  for (const SplitCase& row : rows) {
    SCOPED_TRACE(row.location);
    EXPECT_EQ(Make().GetLocationFolder(row.location), row.folder);
    EXPECT_EQ(Make().GetLocationFileName(row.location), row.fileName);
  }
}

class FailingStore final : public settings::SettingsStore {
 public:
  void SetApplicationName(std::string_view) override {}
  std::optional<std::string> Find(std::string_view) override {
    runtime::RaiseRuntimeError(runtime::kPathFileAccessError);
  }
  void Write(std::string_view, std::string_view) override {
    runtime::RaiseRuntimeError(runtime::kDiskFull);
  }
};

TEST_F(LocationsTest, AFailureOfTheSettingsReachesTheCallerUnchanged) {
  FailingStore store;
  const Locations locations(host_, store, text::Windows1252());
  try {
    static_cast<void>(locations.ResolveSchemaLocation("Order"));
    FAIL() << "nothing was raised";
  } catch (const HostError& error) {
    EXPECT_EQ(static_cast<std::uint32_t>(error.Number()), 0x800A004BU);
  }
  EXPECT_EQ(locations.ResolveSchemaLocation("C:\\x"), "C:\\x.xml");
}

}  // namespace
}  // namespace kx::core
