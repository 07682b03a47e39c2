// kxmsg check: verdicts, their order, their form.
#include "tools/kxmsg/run_program.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace kxmsg {
namespace {

using KxmsgCheck = ProgramTest;
using Words = std::vector<std::string>;

TEST_F(KxmsgCheck, TellsOfEachFileInOneLine) {
  const std::string order = OrderText("Harbour Lights");
  const struct {
    const char* why;
    std::string bytes;
    Words options;
    const char* start;  // of the only line
    int status;
  } rows[] = {
      {"a good message", order, {}, "case.xml: ok", 0},
      {"an empty file", "", {}, "case.xml: error 0x80040993: ", 1},
      {"a text that is no XML", "Dear Sir,", {}, "case.xml: error 0x80040993: ", 1},
      {"XML that is no message", "<a/>", {}, "case.xml: error 0x80040993: ", 1},
      {"another namespace", "<a xmlns=\"urn:x\"/>", {}, "case.xml: error 0x80040993: ", 1},
      {"a message that breaks off", order.substr(0, order.size() * 3 / 4), {}, "case.xml:2:", 1},
      {"an element that the schema does not have",
       Replaced(order, "<Quantity>4</Quantity>", "<Count>4</Count>"),
       {},
       "case.xml:2:",
       1},
      {"a value that the schema does not allow",
       Replaced(order, ">4<", ">four<"),
       {},
       "case.xml:2:",
       1},
      {"a mandatory child that is not there",
       Replaced(order, "<Quantity>4</Quantity>", ""),
       {},
       "case.xml:2:",
       1},
      {"a schema that is nowhere", Replaced(order, "order.xdr", "nowhere.xdr"), {}, "case.xml:", 1},
      {"longer than allowed", order, {"--max-document-bytes", "100"}, "case.xml: error ", 1},
      {"deeper than allowed", order, {"--max-depth", "3"}, "case.xml:2:", 1},
      {"a schema base of its own", order, {"--schema-base", "messages"}, "case.xml:", 1},
      {"the schema of the command line",
       Replaced(order, " xmlns=\"x-schema:order.xdr\"", ""),
       {"--default-schema", "order.xdr"},
       "case.xml: ok",
       0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.why);
    Write("case.xml", row.bytes);
    Words words = {"check", "case.xml"};
    words.insert(words.end(), row.options.begin(), row.options.end());
    const RunResult result = Run(words);
    EXPECT_EQ(result.status, row.status);
    EXPECT_EQ(result.output.substr(0, std::string(row.start).size()), row.start) << result.output;
    EXPECT_EQ(result.output.find('\n'), result.output.size() - 1) << result.output;
    EXPECT_EQ(result.errors, "");
    // Only a line that says so is a good message's.
    EXPECT_EQ(result.output.find(": error 0x") == std::string::npos, row.status == 0);
  }
}

TEST_F(KxmsgCheck, FilesThatCannotBeReadHaveTheErrorOfTheirStatement) {
  std::filesystem::create_directory(At("folder.xml"));
  const struct {
    const char* name;
    const char* line;
  } rows[] = {
      {"missing.xml", "missing.xml: error 0x800A0035: "},
      {"missing", "missing: error 0x800A0035: "},
      {"folder.xml", "folder.xml: error 0x800A004B: "},
      {"schemas", "schemas: error 0x800A004B: "},
      {"order.xml/x.xml", "order.xml/x.xml: error 0x800A004C: "},
      {"C:\\missing.xml", "C:\\missing.xml: error 0x800A0035: "},
      {"Q:\\missing.xml", "Q:\\missing.xml: error 0x800A004C: "},
  };
  for (const auto& row : rows) {
    const RunResult result = Run({"check", row.name});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output.substr(0, std::string(row.line).size()), row.line) << result.output;
  }
}

TEST_F(KxmsgCheck, AFileWithoutPermissionIsNotRead) {
  chmod(At("order.xml").c_str(), 0);
  const RunResult result = Run({"check", "order.xml"}, {.obeysModes = true});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output.substr(0, 29), "order.xml: error 0x800A004B: ") << result.output;
}

TEST_F(KxmsgCheck, NamesAreFilesAsTheyAreSpelled) {
  const std::string order = OrderText("A");
  const std::string longName = std::string(200, 'x') + "/" + std::string(200, 'y') + ".xml";
  for (const std::string& name :
       {std::string("plain"), std::string("a b.c d.xml"), std::string("sub/.hidden"),
        std::string("UPPER.XML"), std::string("[a,b]"), longName}) {
    Write(name, order);
    const RunResult result = Run({"check", name});
    EXPECT_EQ(result.output, name + ": ok\n");
    EXPECT_EQ(result.status, 0);
  }
  // As with every other program: no extension is added, and letter case counts.
  Write("other.xml", order);
  EXPECT_EQ(Run({"check", "other"}).status, 1);
  EXPECT_EQ(Run({"check", "OTHER.xml"}).status, 1);
  EXPECT_EQ(Run({"check", "../order.xml"}, {.folder = "schemas"}).output, "../order.xml: ok\n");
  EXPECT_EQ(Run({"check", At("order.xml")}).output, At("order.xml") + ": ok\n");
}

TEST_F(KxmsgCheck, BaseCompletesNamesAsTheLibraryDoes) {
  Write("messages/Today.xml", OrderText("A"));
  Write("drive_c/in/Order.xml", OrderText("A"));
  EXPECT_EQ(Run({"check", "--base", "Today"}).output, "Today: ok\n");
  EXPECT_EQ(Run({"check", "--base", "today.XML"}).output, "today.XML: ok\n");
  EXPECT_EQ(Run({"check", "--base", "order.xml"}).status, 1);
  EXPECT_EQ(Run({"check", "--base", "C:\\IN\\order"}).status, 0);
  EXPECT_EQ(Run({"check", "c:/in/Order.xml", "C:\\in\\Order.xml"}).status, 0);
  EXPECT_EQ(Run({"check", "--message-base", "drive_c/in", "--base", "Order"}).status, 0);
  Write("elsewhere/x.xml", OrderText("A"));
  EXPECT_EQ(Run({"check", "--drive", "E=elsewhere", "E:\\x.xml"}).output, "E:\\x.xml: ok\n");
}

TEST_F(KxmsgCheck, StandardInputIsDecodedAsXmlSays) {
  const std::string ascii = OrderText("Harbour");
  const std::string latin = OrderText("Caf\xE9");
  const std::string utf8 = Replaced(OrderText("Caf\xC3\xA9"), "iso-8859-1\"?", "utf-8\"?");
  std::string utf16 = "\xFF\xFE";
  for (const char c : Replaced(ascii, "iso-8859-1\"?", "utf-16\"?")) {
    utf16 += c;
    utf16 += '\0';
  }
  const struct {
    const char* why;
    std::string bytes;
    const char* start;
    int status;
  } rows[] = {
      {"ASCII", ascii, "standard input: ok\n", 0},
      {"as it declares", latin, "standard input: ok\n", 0},
      {"UTF-8", utf8, "standard input: ok\n", 0},
      {"UTF-8 with a mark", "\xEF\xBB\xBF" + utf8, "standard input: ok\n", 0},
      {"UTF-16", utf16, "standard input: ok\n", 0},
      {"nothing", "", "standard input: error 0x80040993: ", 1},
      {"UTF-8 that is none", Replaced(utf8, "\xC3\xA9", "\xE9"), "standard input:", 1},
      {"an encoding that nobody knows", Replaced(ascii, "iso-8859-1\"?", "klingon\"?"),
       "standard input:1:", 1},
      {"half a character", utf16.substr(0, utf16.size() - 1), "standard input:2:", 1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.why);
    const RunResult result = Run({"check", "-"}, {.input = row.bytes});
    EXPECT_EQ(result.status, row.status);
    EXPECT_EQ(result.output.substr(0, std::string(row.start).size()), row.start) << result.output;
    EXPECT_EQ(result.errors, "");
  }
  const RunResult twice = Run({"check", "-", "order.xml", "-"}, {.input = ascii});
  EXPECT_EQ(twice.status, 2);
  EXPECT_EQ(twice.output, "");
}

TEST_F(KxmsgCheck, WarnsOfUtf8ThatIsReadByAnotherCodePage) {
  const std::string utf8 = Replaced(OrderText("Caf\xC3\xA9"), "iso-8859-1\"?", "UTF-8\"?");
  const std::string ascii = Replaced(OrderText("Cafe"), "iso-8859-1\"?", "UTF-8\"?");
  const struct {
    const char* why;
    std::string bytes;
    Words options;
    bool warned;
  } rows[] = {
      {"declared, and more than ASCII", utf8, {}, true},
      {"declared, and only ASCII", ascii, {}, false},
      {"read as UTF-8", utf8, {"--code-page", "65001"}, false},
      {"another encoding declared", OrderText("Caf\xE9"), {}, false},
      {"quiet", utf8, {"--quiet"}, false},
      {"a mark, which no other page has", "\xEF\xBB\xBF" + ascii, {}, true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.why);
    for (const char* name : {"case.xml", "plain"}) {
      Write(name, row.bytes);
      Words words = {"check", name};
      words.insert(words.end(), row.options.begin(), row.options.end());
      const std::string warning =
          std::string("kxmsg: ") + name +
          ": warning: the file declares UTF-8, but is read by the code page 1252; "
          "--code-page 65001 reads it as UTF-8\n";
      EXPECT_EQ(Run(words).errors, row.warned ? warning : "");
    }
  }
  Write("messages/Today.xml", utf8);
  EXPECT_NE(Run({"check", "--base", "Today"}).errors, "");
}

TEST_F(KxmsgCheck, JsonIsOneArrayInOrder) {
  Write("bad.xml", "<a/>");
  const RunResult result = Run({"check", "--json", "order.xml", "bad.xml"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output,
            "[\n  {\"file\": \"order.xml\", \"ok\": true},\n"
            "  {\"file\": \"bad.xml\", \"ok\": false, \"number\": -2147219053, "
            "\"hex\": \"0x80040993\", \"source\": \"KXMessages\", "
            "\"text\": \"XML document must supply a schema.\", \"line\": 0, \"position\": 0, "
            "\"code\": 0, \"reason\": \"\", \"sourceText\": \"\"}\n]\n");
}

TEST_F(KxmsgCheck, ManyFilesAtOnceAreToldInTheirOrder) {
  const int count = 500;
  Words words = {"check", "--jobs", "8"};
  std::string expected;
  for (int i = 0; i < count; ++i) {
    const std::string name = "many/" + std::to_string(i) + ".xml";
    const bool good = i % 7 != 3;
    Write(name, good ? OrderText("Customer " + std::to_string(i)) : "<a/>");
    words.push_back(name);
    expected +=
        name + (good ? ": ok\n" : ": error 0x80040993: XML document must supply a schema.\n");
  }
  const RunResult eight = Run(words);
  EXPECT_EQ(eight.status, 1);
  EXPECT_EQ(eight.output, expected);
  words[2] = "1";
  EXPECT_EQ(Run(words).output, expected);
  words[2] = "0";
  EXPECT_EQ(Run(words).output, expected);
}

TEST_F(KxmsgCheck, QuietNamesOnlyWhatIsBad) {
  Write("bad.xml", "<a/>");
  EXPECT_EQ(Run({"check", "--quiet", "order.xml"}).output, "");
  EXPECT_EQ(Run({"check", "-q", "order.xml", "bad.xml", "order.xml"}).output,
            "bad.xml: error 0x80040993: XML document must supply a schema.\n");
}

TEST_F(KxmsgCheck, ATerminalSeesABarWhenThereAreMany) {
  Words words = {"check", "--quiet"};
  for (int i = 0; i < 30; ++i) words.emplace_back("order.xml");
  RunOptions terminal;
  terminal.onTerminal = true;
  EXPECT_EQ(Run(words, terminal).output, "");  // quiet
  words[1] = "--json";
  const std::string many = Run(words, terminal).output;
  EXPECT_NE(many.find(" of 30"), std::string::npos) << many;
  EXPECT_EQ(many.substr(many.size() - 3), "\n]\n");
  words.resize(5);
  EXPECT_EQ(Run(words, terminal).output.find(" of "), std::string::npos);
}

TEST_F(KxmsgCheck, HostileNamesAndTextsStayOnTheirLine) {
  const std::string name = "a\n\x1b[31mb.xml";
  Write(name, Replaced(OrderText("A"), "<Quantity>4", "<Quantity>\xC2\x9B[31m"));
  const RunResult result = Run({"check", "--code-page", "65001", name});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output.substr(0, 17), "a\\n\\x1B[31mb.xml:");
  EXPECT_EQ(result.output.find('\x1b'), std::string::npos);
  EXPECT_EQ(result.output.find("\xC2\x9B"), std::string::npos);
  EXPECT_EQ(result.output.find('\n'), result.output.size() - 1);
}

TEST_F(KxmsgCheck, ADocumentOfManyLevelsEndsAtTheBound) {
  std::string deep = Replaced(OrderText("A"), "Depot", "@");
  std::string open;
  for (int i = 0; i < 200'000; ++i) open += "<a>";
  Write("deep.xml", Replaced(deep, "@", open));
  const RunResult result = Run({"check", "deep.xml"});
  EXPECT_EQ(result.status, 1);
  EXPECT_LT(result.output.size(), 2000U);
}

TEST_F(KxmsgCheck, AMessageMayNameSchemasOnlyWhereItIsAllowed) {
  Write("other/order.xdr", Read("order.xdr"));
  Write("case.xml", Replaced(OrderText("A"), "order.xdr", At("other/order.xdr")));
  EXPECT_EQ(Run({"check", "case.xml"}).status, 0);
  EXPECT_EQ(Run({"check", "--schema-folder", "messages", "case.xml"}).status, 1);
  EXPECT_EQ(Run({"check", "--schema-folder", "other", "case.xml"}).status, 0);
}

}  // namespace
}  // namespace kxmsg
