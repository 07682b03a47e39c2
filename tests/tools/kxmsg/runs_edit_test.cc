// kxmsg new, set and header with a change: what is written where, and that a failure writes
// nothing.
#include "tools/kxmsg/run_program.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace kxmsg {
namespace {

namespace fs = std::filesystem;

using KxmsgEdit = ProgramTest;
using Words = std::vector<std::string>;

TEST_F(KxmsgEdit, NewPrintsAMessageThatLoads) {
  const RunResult made = Run({"new", "order.xdr"});
  EXPECT_EQ(made.status, 0);
  EXPECT_EQ(made.errors, "");
  EXPECT_EQ(made.output.substr(0, 38), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
  EXPECT_EQ(made.output.back(), '\n');
  EXPECT_EQ(Run({"new", "order.xdr", "--root", "Item", "-o", "item.xml"}).status, 0);
  EXPECT_NE(Read("item.xml").find("<Item "), std::string::npos);
  EXPECT_EQ(Read("item.xml").find("<Order"), std::string::npos);
  EXPECT_EQ(Run({"new", "--base", "order.xdr", "-o", "Today"}).status, 0);
  EXPECT_TRUE(Exists("messages/Today.xml"));
}

TEST_F(KxmsgEdit, SetChangesEveryElementThatIsFoundAndNothingElse) {
  Write("case.xml", Run({"set", "order.xml", "Header/Rush", "1", "-o", "-"}).output);
  const RunResult result = Run({"set", "order.xml", "Items/Item/Quantity", "-7"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(Run({"get", "order.xml", "Items/Item/Quantity"}).output, "-7\n-7\n-7\n");
  EXPECT_EQ(Run({"get", "order.xml", "Header/Customer"}).output, "Harbour Lights & Sons\n");
  EXPECT_EQ(Run({"check", "order.xml"}).status, 0);
  EXPECT_EQ(Names(""),
            "case.xml drive_c messages order.xdr order.xml schemas settings.ini streams");
}

TEST_F(KxmsgEdit, SetTakesTextsOfEveryKind) {
  const struct {
    const char* pattern;
    const char* value;
    const char* printed;
    const char* why;
  } rows[] = {
      {"Header/Customer", "", "\n", "nothing"},
      {"Header/Customer", "A & <B> \"C\"", "A & <B> \"C\"\n", "marks"},
      {"Header/Customer", "Caf\xC3\xA9", "Caf\xC3\xA9\n", "a letter of the code page"},
      {"Header/Placed", "2025-01-02T03:04:05", "2025-01-02T03:04:05\n", "a date and time"},
      {"Items/Item/Price", "12.5", "12.5\n12.5\n12.5\n", "an amount"},
      {"Header/Rush", "0", "0\n", "a boolean"},
  };
  for (const auto& row : rows) {
    const RunResult result = Run({"set", "order.xml", row.pattern, row.value});
    EXPECT_EQ(result.status, 0) << row.why << result.errors;
    EXPECT_EQ(Run({"get", "order.xml", row.pattern}).output, row.printed) << row.why;
  }
}

TEST_F(KxmsgEdit, WhatFailsLeavesTheFileAsItWas) {
  const std::string before = Read("order.xml");
  const struct {
    Words words;
    const char* error;
    const char* why;
  } rows[] = {
      {{"set", "order.xml", "Items/Item/Quantity", "many"},
       "0x80040997",
       "a value of another type"},
      {{"set", "order.xml", "Header", "x"}, "0x80040996", "an element without a value"},
      {{"set", "order.xml", "Header/Nobody", "x"}, "0x8004099B", "nothing found"},
      {{"header", "order.xml", "Encoding=klingon"},
       "0x8004099D",
       "a header that would not load again"},
      {{"header", "order.xml", "MsgType=a/b"}, "0x800409A5", "a type with a mark"},
      {{"header", "order.xml", "Tag=a", "MsgType=a/b"}, "0x800409A5", "the second of two"},
  };
  for (const auto& row : rows) {
    const RunResult result = Run(row.words);
    EXPECT_EQ(result.status, 1) << row.why;
    EXPECT_EQ(result.output, "") << row.why;
    EXPECT_NE(result.errors.find(std::string("error ") + row.error + ": "), std::string::npos)
        << row.why << result.errors;
    EXPECT_TRUE(Read("order.xml") == before) << row.why;
  }
  EXPECT_EQ(Names(""), "drive_c messages order.xdr order.xml schemas settings.ini streams");
}

TEST_F(KxmsgEdit, ForceWritesWhatWouldNotLoadAgain) {
  EXPECT_EQ(Run({"header", "--force", "order.xml", "Encoding=klingon"}).status, 0);
  EXPECT_NE(Read("order.xml").find("encoding=\"klingon\"?>"), std::string::npos);
  EXPECT_EQ(Run({"check", "order.xml"}).status, 1);
}

TEST_F(KxmsgEdit, CreateAddsAChildThatMayBeThere) {
  Write("schemas/note.xdr", R"(<Schema xmlns="urn:schemas-microsoft-com:xml-data">
  <ElementType name="to" content="textOnly" model="closed"/>
  <ElementType name="text" content="textOnly" model="closed"/>
  <ElementType name="note" content="eltOnly" model="closed" order="seq">
    <element type="to" minOccurs="0"/><element type="text"/></ElementType></Schema>)");
  Write("note.xml", "<note xmlns=\"x-schema:note.xdr\"><to/><text>b</text></note>");
  Write("bare.xml", "<note xmlns=\"x-schema:note.xdr\"><text>b</text></note>");
  EXPECT_EQ(Run({"set", "bare.xml", "to", "you"}).status, 1);
  EXPECT_EQ(Run({"set", "--create", "note.xml", "to", "you"}).status, 0);
  EXPECT_EQ(Run({"get", "note.xml", "to"}).output, "you\n");
  EXPECT_EQ(Run({"set", "--create", "bare.xml", "nobody", "you"}).status, 1);
}

TEST_F(KxmsgEdit, HeaderChangesWhatMayBeChanged) {
  const Words changes = {"Version=2.0",        "MsgType=Urgent",   "subtype=s", "Class=c",
                         "DeliveryOptions=-3", "DeliveryResult=4", "Tag=a=b c"};
  Words words = {"header", "order.xml"};
  words.insert(words.end(), changes.begin(), changes.end());
  EXPECT_EQ(Run(words).status, 0);
  EXPECT_EQ(Run({"header", "order.xml", "Version", "MsgType", "SubType", "Class", "DeliveryOptions",
                 "DeliveryResult", "Tag"})
                .output,
            "2.0\nUrgent\ns\nc\n-3\n4\na=b c\n");
  EXPECT_EQ(Run({"header", "order.xml", "Encoding=UTF-8", "-o", "utf8.xml"}).status, 0);
  EXPECT_EQ(Read("utf8.xml").substr(0, 38), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
  EXPECT_EQ(Run({"header", "order.xml", "Encoding"}).output, "iso-8859-1\n");
}

TEST_F(KxmsgEdit, HeaderRefusesWhatItCannotDoBeforeItReads) {
  const Words rows[] = {
      {"header", "missing.xml", "UniqueID=1"},        {"header", "missing.xml", "TimeStamp=1"},
      {"header", "missing.xml", "SchemaFile=1"},      {"header", "missing.xml", "Nobody"},
      {"header", "missing.xml", "Nobody=1"},          {"header", "missing.xml", "Tag", "Class=1"},
      {"header", "missing.xml", "Tag", "-o", "x.xml"}};
  for (const Words& words : rows) {
    const RunResult result = Run(words);
    EXPECT_EQ(result.status, 2) << words[2];
    EXPECT_EQ(result.errors.substr(0, 14), "kxmsg: error: ") << result.errors;
  }
  for (const char* value : {"DeliveryOptions=x", "DeliveryOptions=", "DeliveryResult=2147483648"}) {
    EXPECT_EQ(Run({"header", "order.xml", value}).status, 2) << value;
  }
}

TEST_F(KxmsgEdit, StandardStreamsCarryUtf8) {
  Write("case.xml", OrderText("Caf\xE9"));
  const RunResult copy = Run({"set", "case.xml", "Items/Item/Quantity", "5", "-o", "-"});
  EXPECT_EQ(copy.output.substr(0, 38), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
  EXPECT_NE(copy.output.find("Caf\xC3\xA9"), std::string::npos);
  EXPECT_EQ(Read("case.xml"), OrderText("Caf\xE9"));
  // What came out goes in again.
  const RunResult again = Run({"header", "-", "Tag=seen"}, {.input = copy.output});
  EXPECT_EQ(again.status, 0);
  EXPECT_NE(again.output.find("Caf\xC3\xA9"), std::string::npos);
  EXPECT_NE(again.output.find("tag=\"seen\""), std::string::npos);
  EXPECT_EQ(Run({"get", "-", "Header/Customer"}, {.input = again.output}).output, "Caf\xC3\xA9\n");
}

TEST_F(KxmsgEdit, FilesAreWrittenByTheCodePage) {
  Write("case.xml", OrderText("A"));
  EXPECT_EQ(Run({"set", "case.xml", "Header/Customer", "\xE2\x82\xAC"}).status, 0);
  EXPECT_NE(Read("case.xml").find(">\x80</Customer>"), std::string::npos);
  EXPECT_EQ(Read("case.xml").substr(Read("case.xml").size() - 2), "\r\n");
  Write("plain", OrderText("A"));
  EXPECT_EQ(Run({"set", "plain", "Header/Customer", "\xE2\x82\xAC"}).status, 0);
  EXPECT_EQ(Read("plain"), Read("case.xml"));
  EXPECT_EQ(
      Run({"set", "case.xml", "Header/Customer", "\xE2\x82\xAC", "--code-page", "65001"}).status,
      0);
  EXPECT_NE(Read("case.xml").find(">\xE2\x82\xAC</Customer>"), std::string::npos);
}

TEST_F(KxmsgEdit, AFileKeepsItsModeAndALinkStaysALink) {
  for (const char* name : {"case.xml", "plain"}) {
    Write(name, OrderText("A"));
    fs::permissions(At(name), fs::perms::owner_read | fs::perms::owner_write);
    const std::string link = std::string("link_") + name;
    fs::create_symlink(At(name), At(link));
    EXPECT_EQ(Run({"set", link, "Header/Customer", "B"}).status, 0);
    EXPECT_TRUE(fs::is_symlink(At(link)));
    EXPECT_EQ(Run({"get", name, "Header/Customer"}).output, "B\n");
    EXPECT_EQ(fs::status(At(name)).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  }
}

// A bound on the sizes of files ends the program at its first write, and leaves what it had
// created.
TEST_F(KxmsgEdit, WhatIsPrivateIsPrivateWhileItIsWritten) {
  for (const auto mode : {fs::perms::owner_read | fs::perms::owner_write, fs::perms(0640)}) {
    Write("plain", OrderText("A"));
    fs::permissions(At("plain"), mode);
    const std::string command = "umask 0; cd " + At("") +
                                " && ulimit -c 0 && ulimit -f 0 && KX_SETTINGS=settings.ini exec " +
                                KXMSG_PROGRAM + " set plain Header/Customer B";
    EXPECT_NE(std::system(command.c_str()), 0);
    EXPECT_EQ(Read("plain"), OrderText("A"));
    int leftOvers = 0;
    for (const auto& entry : fs::directory_iterator(At(""))) {
      if (entry.path().filename().string().rfind("plain.kxmsg", 0) != 0) continue;
      EXPECT_EQ(entry.status().permissions(), fs::perms::owner_read | fs::perms::owner_write);
      fs::remove(entry.path());
      ++leftOvers;
    }
    EXPECT_EQ(leftOvers, 1);
    EXPECT_EQ(Run({"set", "plain", "Header/Customer", "B"}).status, 0);
    EXPECT_EQ(fs::status(At("plain")).permissions(), mode);
  }
}

TEST_F(KxmsgEdit, WhatTheCodePageLacksDrawsAWarning) {
  const std::string lost = "\xE2\x82\xAC \xE4\xB8\x80 \xF0\x9F\x98\x80";
  const std::string kept = "\xE2\x82\xAC \xC3\xA9 ?";
  const auto warning = [](const std::string& name, const std::string& page,
                          const std::string& character) {
    return "kxmsg: " + name + ": warning: the code page " + page + " lacks " + character +
           ", and perhaps others: \"?\" stands in their place; --code-page 65001 keeps them\n";
  };
  const std::string set = "set Header/Customer '";
  const struct {
    Words words;
    std::string errors;
    const char* why;
  } rows[] = {
      {{"set", "case.xml", "Header/Customer", lost}, warning("case.xml", "1252", "U+4E00"), "set"},
      {{"edit", "case.xml", "-e", set + lost + '\''},
       warning("case.xml", "1252", "U+4E00"),
       "edit"},
      {{"header", "case.xml", "Tag=\xF0\x9F\x98\x80"},
       warning("case.xml", "1252", "U+1F600"),
       "header"},
      {{"set", "case.xml", "Header/Customer", lost, "-o", "plain"},
       warning("plain", "1252", "U+4E00"),
       "a file without extension"},
      {{"set", "case.xml", "Header/Customer", lost, "--code-page", "28591"},
       warning("case.xml", "28591", "U+20AC"),
       "another code page"},
      {{"set", "case.xml", "Header/Customer", lost, "--code-page", "65001"}, "", "UTF-8"},
      {{"set", "case.xml", "Header/Customer", lost, "-o", "-"}, "", "standard output"},
      {{"set", "case.xml", "Header/Customer", kept}, "", "a text with a question mark"},
      {{"set", "-q", "case.xml", "Header/Customer", lost}, "", "quiet"},
      {{"set", "case.xml", "Header/Customer", lost, "-o", "nowhere/x"},
       "kxmsg: nowhere/x: error 0x800A004C: Path not found\n",
       "nothing was written"},
  };
  for (const auto& row : rows) {
    Write("case.xml", OrderText("A"));
    EXPECT_EQ(Run(row.words).errors, row.errors) << row.why;
  }
}

TEST_F(KxmsgEdit, OutputGoesWhereItIsSpelled) {
  EXPECT_EQ(Run({"new", "order.xdr", "-o", "made"}).status, 0);
  EXPECT_TRUE(Exists("made"));
  EXPECT_FALSE(Exists("made.xml"));
  EXPECT_EQ(Run({"new", "order.xdr", "-o", "ORDER.XML"}).status, 0);
  EXPECT_NE(Read("ORDER.XML"), Read("order.xml"));
  EXPECT_EQ(Run({"check", "made", "ORDER.XML"}).status, Run({"check", "made"}).status);
}

}  // namespace
}  // namespace kxmsg
