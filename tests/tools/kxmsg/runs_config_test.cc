// kxmsg config: the settings, and where they lead.
#include "tools/kxmsg/run_program.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kxmsg {
namespace {

using KxmsgConfig = ProgramTest;

TEST_F(KxmsgConfig, PrintsTheSettingsAndWhereTheyLead) {
  const std::string before = Read("settings.ini");
  EXPECT_EQ(Run({"config"}).output,
            "SchemaPath=" + At("schemas/") + "\nMsgPath=" + At("messages/") +
                "\nSchemaFolder=" + At("schemas") + "\nMsgFolder=" + At("messages") +
                "\nStorage=" + At("settings.ini") + "\n");
  EXPECT_EQ(Run({"config", "schemapath"}).output, At("schemas/") + "\n");
  EXPECT_EQ(Read("settings.ini"), before);
}

TEST_F(KxmsgConfig, TellsTheDefaultsWithoutStoringThem) {
  // Letter case as it is on the disk; the second folder is not there, but could be made.
  Write("drive_c/program files/Halcyra/KXMessageSchemas/x.xdr", "");
  const RunResult result = Run({"config"}, {.environment = {"KX_SETTINGS=" + At("other.ini")}});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output,
            "SchemaPath=C:\\Program Files\\Halcyra\\KXMessageSchemas\\\n"
            "MsgPath=C:\\Program Files\\Halcyra\\Messages\nSchemaFolder=" +
                At("drive_c/program files/Halcyra/KXMessageSchemas") +
                "\nMsgFolder=" + At("drive_c/program files/Halcyra/Messages") +
                "\nStorage=" + At("other.ini") + "\n");
  EXPECT_FALSE(Exists("other.ini"));
}

TEST_F(KxmsgConfig, StoresAFolderOrAUrl) {
  const struct {
    const char* value;
    std::string stored;
  } rows[] = {{"C:\\s\\", "C:\\s\\"},
              {"http://localhost/s", "http://localhost/s"},
              {"/srv/schemas", "/srv/schemas"},
              {"mine", At("mine")}};
  for (const auto& row : rows) {
    const RunResult result = Run({"config", "MsgPath", row.value});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(Run({"config", "MsgPath"}).output, row.stored + "\n");
    EXPECT_EQ(Run({"config", "SchemaPath"}).output, At("schemas/") + "\n");
  }
  EXPECT_EQ(Run({"config", "MsgFolder"}).output, At("mine") + "\n");
}

TEST_F(KxmsgConfig, AStoredBaseCountsFromTheNextRunOn) {
  Write("mine/Today.xml", OrderText("A"));
  EXPECT_EQ(Run({"check", "--base", "Today"}).status, 1);
  EXPECT_EQ(Run({"config", "MsgPath", "mine"}).status, 0);
  EXPECT_EQ(Run({"check", "--base", "Today"}).status, 0);
}

TEST_F(KxmsgConfig, RefusesWhatIsNoSetting) {
  for (const std::vector<std::string>& words :
       std::vector<std::vector<std::string>>{{"config", "Nobody"},
                                             {"config", "Nobody", "x"},
                                             {"config", "Storage", "x"},
                                             {"config", "SchemaFolder", "x"},
                                             {"config", "SchemaPath", ""}}) {
    const RunResult result = Run(words);
    EXPECT_EQ(result.status, 2) << words[1];
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors.substr(0, 14), "kxmsg: error: ");
  }
}

TEST_F(KxmsgConfig, DamagedSettingsAreNamed) {
  Write("settings.ini", "this is none\n");
  const RunResult result = Run({"config"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.errors.substr(0, 34), "kxmsg: settings: error 0x800A0141:") << result.errors;
  EXPECT_NE(result.errors.find("settings.ini"), std::string::npos);
  EXPECT_EQ(Run({"config", "SchemaPath", "x"}).status, 1);
  EXPECT_EQ(Read("settings.ini"), "this is none\n");
}

TEST_F(KxmsgConfig, SettingsThatCannotBeStoredAreTold) {
  const RunResult result = Run({"config", "SchemaPath", "x"},
                               {.environment = {"KX_SETTINGS=" + At("order.xml/settings.ini")}});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.errors.substr(0, 18), "kxmsg: SchemaPath:") << result.errors;
}

}  // namespace
}  // namespace kxmsg
