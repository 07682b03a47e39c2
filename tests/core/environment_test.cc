// What messages of the same options share.
#include "core/environment.h"

#include "support/message_world.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::core {
namespace {

TEST(Environment, BasesOfTheOptionsStandInThePlaceOfTheSettingsAndAreNeverStored) {
  test::MessageWorld world;
  Options options;
  options.schemaBase = "D:\\a";
  options.messageBase = "http://h/m";
  const auto environment = world.Environment(options);
  EXPECT_EQ(environment->Locations().ResolveSchemaLocation("x"), "D:\\a\\x.xml");
  EXPECT_EQ(environment->Locations().ResolveMessageLocation("x"), "http://h/m/x.xml");
  EXPECT_EQ(world.Settings().Find("SchemaPath"), "C:\\s\\");
  EXPECT_EQ(world.Settings().Find("MsgPath"), "C:\\m\\");
}

TEST(Environment, ASettingThatChangesCountsFromTheNextUse) {
  test::MessageWorld world;
  const auto environment = world.Environment();
  EXPECT_EQ(environment->Locations().SchemaBase(), "C:\\s\\");
  world.Settings().Write("SchemaPath", "E:\\z\\");
  EXPECT_EQ(environment->Locations().SchemaBase(), "E:\\z\\");
}

TEST(Environment, DocumentsHaveTheBoundsOfTheOptions) {
  test::MessageWorld world;
  Options options;
  options.maxDepth = 2;
  const auto environment = world.Environment(options);
  EXPECT_TRUE(environment->NewDomDocument().LoadXml("<a><b/></a>"));
  EXPECT_FALSE(environment->NewDomDocument().LoadXml("<a><b><c/></b></a>"));
  options.maxDepth = 3;
  options.maxDocumentBytes = 20;
  const auto small = world.Environment(options);
  EXPECT_FALSE(small->NewDomDocument().LoadXml("<a>                     </a>"));
}

TEST(Environment, DriveFoldersOfTheOptionsStandInThePlaceOfTheEnvironments) {
  test::MessageWorld world;
  Options options;
  options.driveFolders['C'] = "/elsewhere";
  EXPECT_EQ(world.Environment()->Drives().Find('c'), "/c");
  EXPECT_EQ(world.Environment(options)->Drives().Find('c'), "/elsewhere");
}

TEST(Environment, ADocumentReadsWhatTheCallerNames) {
  test::MessageWorld world;
  world.Host().Memory().AddFile("/c/s/a.xml", "<a/>");
  const auto environment = world.Environment();
  EXPECT_TRUE(environment->NewDomDocument().Load("C:\\s\\A.xml"));
  EXPECT_FALSE(environment->NewDomDocument().Load("C:\\s\\b.xml"));
}

}  // namespace
}  // namespace kx::core
