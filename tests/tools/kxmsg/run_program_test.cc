// What the tests of whole runs stand on: a failure of theirs must not pass for one of the program.
#include "tools/kxmsg/run_program.h"

#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace kxmsg {
namespace {

using RunProgram = ProgramTest;

TEST_F(RunProgram, GivesStatusAndBothStreamsApart) {
  const RunResult good = Run({"--version"});
  EXPECT_EQ(good.status, 0);
  EXPECT_EQ(good.output.substr(0, 6), "kxmsg ");
  EXPECT_EQ(good.errors, "");
  const RunResult bad = Run({"nonsense"});
  EXPECT_EQ(bad.status, 2);
  EXPECT_EQ(bad.output, "");
  EXPECT_NE(bad.errors, "");
}

TEST_F(RunProgram, GivesWhatATerminalShows) {
  RunOptions options;
  options.onTerminal = true;
  const RunResult help = Run({"--help"}, options);
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.output, Run({"--help"}).output);
}

TEST_F(RunProgram, MakesTheModesOfFilesBindRootToo) {
  RunOptions options;
  options.obeysModes = true;
  EXPECT_EQ(Run({"check", "order.xml"}, options).status, 0);
  EXPECT_EQ(chmod(At("order.xml").c_str(), 0), 0);
  EXPECT_EQ(Run({"check", "order.xml"}, options).status, 1);
  EXPECT_EQ(Run({"check", "order.xml"}).status, geteuid() == 0 ? 0 : 1);
}

TEST_F(RunProgram, HasTheExampleInItsFolder) {
  EXPECT_EQ(Names(""), "drive_c messages order.xdr order.xml schemas settings.ini streams");
  EXPECT_EQ(Read("no such"), "(missing)");
}

}  // namespace
}  // namespace kxmsg
