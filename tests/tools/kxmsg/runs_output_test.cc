// Where results cannot be written, and that messages never mix with results.
#include "tools/kxmsg/run_program.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace kxmsg {
namespace {

namespace fs = std::filesystem;

using KxmsgOutput = ProgramTest;
using Words = std::vector<std::string>;

TEST_F(KxmsgOutput, AFullDeviceIsToldByEveryCommandThatPrints) {
  const Words rows[] = {{"--help"},
                        {"--version"},
                        {"new", "order.xdr"},
                        {"check", "order.xml"},
                        {"check", "--json", "order.xml"},
                        {"show", "order.xml"},
                        {"get", "order.xml", "Header/Customer"},
                        {"schema", "order.xdr"},
                        {"header", "order.xml"},
                        {"config"},
                        {"set", "order.xml", "Header/Rush", "1", "-o", "-"},
                        {"edit", "order.xml", "-e", "set Header/Rush 1", "-o", "-"}};
  const std::string order = Read("order.xml");
  for (const Words& words : rows) {
    const RunResult result = Run(words, {.outputFile = "/dev/full"});
    EXPECT_EQ(result.status, 3) << words[0];
    EXPECT_EQ(result.errors, "kxmsg: standard output: error 0x800A003D: No space left on device\n")
        << words[0];
  }
  EXPECT_EQ(Read("order.xml"), order);
}

TEST_F(KxmsgOutput, AFileThatCannotBeWrittenIsTold) {
  const std::string before = Read("order.xml");
  const struct {
    const char* name;
    const char* error;
    const char* why;
  } rows[] = {
      {"/dev/full", "0x800A003D", "a full device"},
      {"nowhere/x.xml", "0x800A004C", "no folder"},
      {"nowhere/x", "0x800A004C", "no folder, and no extension"},
      {"order.xml/x.xml", "0x800A00", "a file in the place of a folder"},
      {"schemas", "0x800A004B", "a folder"},
  };
  for (const auto& row : rows) {
    for (const Words& words :
         {Words{"new", "order.xdr"}, Words{"edit", "order.xml", "-e", "set Header/Customer B"},
          Words{"set", "order.xml", "Header/Customer", "B"},
          Words{"header", "order.xml", "Tag=B"}}) {
      Words all = words;
      all.insert(all.end(), {"-o", row.name});
      const RunResult result = Run(all);
      EXPECT_EQ(result.status, 3) << words[0] << ": " << row.why;
      EXPECT_EQ(result.output, "") << words[0] << ": " << row.why;
      const std::string start = std::string("kxmsg: ") + row.name + ": error " + row.error;
      EXPECT_EQ(result.errors.substr(0, start.size()), start) << row.why << result.errors;
    }
  }
  EXPECT_EQ(Read("order.xml"), before);
}

TEST_F(KxmsgOutput, AReadOnlyFolderTakesNothing) {
  const RunOptions bound = {.obeysModes = true};
  fs::create_directory(At("closed"));
  Write("closed/case.xml", OrderText("A"));
  chmod(At("closed/case.xml").c_str(), 0400);
  chmod(At("closed").c_str(), 0500);
  EXPECT_EQ(Run({"new", "order.xdr", "-o", "closed/new.xml"}, bound).status, 3);
  EXPECT_EQ(Run({"new", "order.xdr", "-o", "closed/new"}, bound).status, 3);
  EXPECT_EQ(Run({"set", "closed/case.xml", "Header/Customer", "B"}, bound).status, 3);
  EXPECT_EQ(Read("closed/case.xml"), OrderText("A"));
  EXPECT_EQ(Names("closed"), "case.xml");
}

TEST_F(KxmsgOutput, APipeTakesWhatItIsGiven) {
  ASSERT_EQ(mkfifo(At("pipe").c_str(), 0600), 0);
  const std::string reader = "cat pipe > read & exec \"$0\" new order.xdr -o pipe";
  // The shell's background reader ends when the program closes its end.
  const std::string command =
      "cd " + At("") + " && KX_SETTINGS=settings.ini sh -c '" + reader + "' " + KXMSG_PROGRAM;
  EXPECT_EQ(std::system(command.c_str()), 0);
  for (int tries = 0; tries < 100 && Read("read").size() < 3; ++tries) usleep(20'000);
  EXPECT_EQ(Read("read").substr(0, 5), "<?xml");
}

TEST_F(KxmsgOutput, ErrorsHaveOneFormAndAStreamOfTheirOwn) {
  Write("bad.xml", Replaced(OrderText("A"), "<Quantity>4</Quantity>", ""));
  const Words rows[] = {{"show", "bad.xml"},
                        {"get", "bad.xml", "Header"},
                        {"set", "bad.xml", "Header/Customer", "B"},
                        {"header", "bad.xml"},
                        {"header", "bad.xml", "Tag=1"}};
  for (const Words& words : rows) {
    const RunResult result = Run(words);
    EXPECT_EQ(result.status, 1) << words[0];
    EXPECT_EQ(result.output, "") << words[0];
    EXPECT_EQ(result.errors.substr(0, 17), "kxmsg: bad.xml:2:") << words[0] << result.errors;
    EXPECT_NE(result.errors.find(": error 0x8004099D: "), std::string::npos) << words[0];
    EXPECT_EQ(result.errors.find('\n'), result.errors.size() - 1) << words[0];
  }
}

TEST_F(KxmsgOutput, AWrongCommandLineIsToldInOneLine) {
  const Words rows[] = {
      {}, {"nonsense"}, {"show"}, {"check", "--jobs", "x", "a"}, {"show", "a", "--code-page", "x"}};
  for (const Words& words : rows) {
    const RunResult result = Run(words);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors.substr(0, 14), "kxmsg: error: ");
    EXPECT_EQ(result.errors.find('\n'), result.errors.size() - 1) << result.errors;
  }
}

TEST_F(KxmsgOutput, AWrongVariableIsAWrongCommandLine) {
  const RunResult result = Run({"check", "order.xml"}, {.environment = {"KX_MAX_DEPTH=deep"}});
  EXPECT_EQ(result.status, 2);
  EXPECT_NE(result.errors.find("KX_MAX_DEPTH"), std::string::npos);
}

TEST_F(KxmsgOutput, ACodePageThatNobodyKnowsIsTold) {
  const RunResult result = Run({"show", "--code-page", "7", "order.xml"});
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.errors.find("0x800A0005"), std::string::npos) << result.errors;
}

TEST_F(KxmsgOutput, AFolderThatIsGoneIsAnError) {
  fs::create_directory(At("gone"));
  const std::string command =
      "cd " + At("gone") + " && rmdir ../gone && " + KXMSG_PROGRAM + " show x.xml 2> ../errors";
  EXPECT_NE(std::system(command.c_str()), 0);
  EXPECT_EQ(Read("errors").substr(0, 13), "kxmsg: x.xml:");
}

}  // namespace
}  // namespace kxmsg
