// The settings of a user, and where locations lead.
#include "kxmessage/error.h"
#include "kxmessage/settings.h"

#include "platform/host/host_site.h"
#include "platform/settings/process_settings.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace kx {
namespace {

class PublicSettings : public testing::Test {
 protected:
  PublicSettings() {
    setenv("KX_SETTINGS", site_->At("mine.ini").c_str(), 1);
    settings::ReplaceProcessSettings(nullptr);
    options_.driveFolders['C'] = site_->At("c");
  }
  ~PublicSettings() override {
    settings::ReplaceProcessSettings(nullptr);
    unsetenv("KX_SETTINGS");
  }

  std::unique_ptr<host::HostSite> site_ = host::RealSite().make();
  Options options_;
};

TEST_F(PublicSettings, AreTheDefaultsUntilOneIsStored) {
  EXPECT_EQ(Settings::SchemaPath(), "C:\\Program Files\\Halcyra\\KXMessageSchemas\\");
  EXPECT_EQ(Settings::MsgPath(), "C:\\Program Files\\Halcyra\\Messages");
  EXPECT_EQ(Settings::Storage(), site_->At("mine.ini"));
  EXPECT_EQ(site_->Content("mine.ini"), std::nullopt) << "reading stores nothing";
  Settings::SchemaPath("C:\\s");
  Settings::MsgPath("http://localhost/m");
  EXPECT_EQ(Settings::SchemaPath(), "C:\\s");
  EXPECT_EQ(Settings::MsgPath(), "http://localhost/m");
  EXPECT_EQ(site_->Content("mine.ini"),
            "[KXXMLMessageLib]\nSchemaPath = C:\\s\nMsgPath = http://localhost/m\n");
}

TEST_F(PublicSettings, RefuseWhatIsNoBase) {
  EXPECT_THROW(Settings::SchemaPath(""), Error);
  EXPECT_THROW(Settings::MsgPath(std::string_view("a\0b", 3)), Error);
  EXPECT_EQ(site_->Content("mine.ini"), std::nullopt);
}

TEST_F(PublicSettings, RaiseWhereTheyCannotBeStored) {
  site_->AddFile("file", "");
  setenv("KX_SETTINGS", site_->At("file/mine.ini").c_str(), 1);
  settings::ReplaceProcessSettings(nullptr);
  EXPECT_THROW(Settings::SchemaPath("C:\\s"), Error);
  EXPECT_EQ(Settings::SchemaPath(), "C:\\Program Files\\Halcyra\\KXMessageSchemas\\");
}

TEST_F(PublicSettings, LocationsLeadToFilesOfTheHost) {
  site_->AddFile("c/In/Order.XML", "");
  site_->AddFile("c/s/order.xml", "");
  Settings::SchemaPath("C:\\s\\");
  const struct {
    const char* location;
    std::string file;
    const char* why;
  } rows[] = {
      {"C:\\in\\order", site_->At("c/In/Order.XML"), "letter case as found"},
      {"C:\\in\\new", site_->At("c/In/new.xml"), "a file that could be made"},
      {"/a/b", "", "a folder that is not there"},
      {"http://h/x.xml", "", "a URL"},
      {"C:\\no\\x.xml", "", "no folder on the drive"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Settings::MessageFile(row.location, options_), row.file) << row.why;
  }
  EXPECT_EQ(Settings::SchemaFile("order", options_), site_->At("c/s/order.xml"));
  EXPECT_EQ(Settings::SchemaFile("", options_), site_->At("c/s"));
  options_.schemaBase = site_->At("c/In/");
  EXPECT_EQ(Settings::SchemaFile("order.xml", options_), site_->At("c/In/Order.XML"));
}

}  // namespace
}  // namespace kx
