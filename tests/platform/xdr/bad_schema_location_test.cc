// What a hostile message may write behind "x-schema:": each gives one clear error, and nothing is
// waited for that does not come.
#include "memory_schemas.h"
#include "platform/xdr/schema_files.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace kx::xdr {
namespace {

namespace fs = std::filesystem;

class BadLocation : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::path(testing::TempDir()) / ("kx_bad_" + std::to_string(getpid()));
    fs::remove_all(folder_);
    fs::create_directories(folder_ / "folder");
    Write("text.txt", "hello");
    Write("empty.xml", "");
    Write("zeros.bin", std::string(1000, '\0'));
    Write("cut.xdr", "<Schema xmlns='urn:schemas-microsoft-com:xml-data'><ElementType");
    Write("page.xml", "<html><body/></html>");
    Write("other.xdr", "<Schema xmlns='urn:other'/>");
    Write("deep.xdr", Deep());
    Write("huge.xdr", "<Schema/>");
    fs::resize_file(folder_ / "huge.xdr", std::uintmax_t{1} << 36U);  // with a hole, on no disk
    ASSERT_EQ(mkfifo((folder_ / "fifo").c_str(), 0600), 0);
    fs::create_symlink(folder_ / "fifo", folder_ / "link-to-fifo.xdr");
    fs::create_symlink("/dev/zero", folder_ / "link-to-device.xdr");
    fs::create_symlink("nowhere", folder_ / "dangling.xdr");
    fs::create_symlink("circle.xdr", folder_ / "circle.xdr");
    MakeSocket();
  }
  void TearDown() override {
    if (socket_ >= 0) close(socket_);
    fs::remove_all(folder_);
  }
  void Write(const std::string& name, const std::string& text) const {
    std::ofstream(folder_ / name, std::ios::binary) << text;
  }
  void MakeSocket() {
    socket_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = (folder_ / "socket").string();
    ASSERT_LT(path.size(), sizeof address.sun_path);
    path.copy(static_cast<char*>(address.sun_path), path.size());
    ASSERT_EQ(bind(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  }
  static std::string Deep() {
    std::string text;
    for (int i = 0; i < 100000; ++i) text += "<a>";
    return text;
  }
  [[nodiscard]] dom::ParseError Parse(const std::string& location) const {
    Options options;
    options.schemaFolders = folders_;
    const SchemaFiles files(host::ProcessHost(), {}, options, &host::ProcessFetcher());
    const PlainProvider provider(files);
    const BindingService service(provider);
    const dom::Document document = dom::NewDomDocument();
    document.EditSettings().schemaService = &service;
    document.EditSettings().base = (folder_ / "message.xml").string();
    EXPECT_FALSE(document.LoadXml("<m xmlns='x-schema:" + location + "'/>"));
    EXPECT_FALSE(document.DocumentElement());
    return document.LastError();
  }

  fs::path folder_;
  std::vector<std::string> folders_;
  int socket_ = -1;
};

struct BadCase {
  const char* location;
  const char* code;
  const char* reason;  ///< a part of it
  const char* why;
};
constexpr const char* kNoObject = "The system cannot locate the object specified.\r\n";
constexpr const char* kDenied = "Access is denied.\r\n";
constexpr BadCase kBadCases[] = {
    {"folder", "80070005", kDenied, "a folder"},
    {"folder/", "80070005", kDenied, "a folder, as one writes it"},
    {".", "80070005", kDenied, "the folder of the message"},
    {"/", "80070005", kDenied, "the root"},
    {"huge.xdr", "8007000E", "Options::maxSchemaBytes", "64 GiB"},
    {"/dev/zero", "80070005", kDenied, "a device without end"},
    {"/dev/stdin", "80070005", kDenied, "the terminal, a pipe or what it may be"},
    {"/dev/tty", "80070005", kDenied, "the terminal"},
    {"link-to-device.xdr", "80070005", kDenied, "a link to a device"},
    {"fifo", "80070005", kDenied, "a pipe that nobody writes"},
    {"link-to-fifo.xdr", "80070005", kDenied, "a link to it"},
    {"socket", "80070005", kDenied, "a socket"},
    {"missing.xdr", "800C0006", kNoObject, "a missing file"},
    {"missing/n.xdr", "800C0006", kNoObject, "a missing folder"},
    {"text.txt/n.xdr", "800C0006", kNoObject, "a file where a folder should be"},
    {"dangling.xdr", "800C0006", kNoObject, "a link to nothing"},
    {"circle.xdr", "800C0006", kNoObject, "a link to itself"},
    {"C:\\missing\\n.xdr", "800C0006", kNoObject, "a drive that is not there"},
    {"a%00b.xdr", "800C0006", kNoObject, "an end mark in the name"},
    {"\\\\server\\share\\n.xdr", "800C0005", "Options::allowedPrefixes", "another machine"},
    {"//server/share/n.xdr", "800C0005", "Options::allowedPrefixes", "another machine"},
    {"file://server/share/n.xdr", "800C0005", "Options::allowedPrefixes", "another machine"},
    {"\\\\.\\pipe\\n", "800C0005", "Options::allowedPrefixes", "a pipe as Windows writes it"},
    {"http://127.0.0.1:1/n.xdr", "800C0005", "Options::allowedPrefixes",
     "a URL that nobody allowed"},
    {"HTTPS://127.0.0.1:1/n.xdr", "800C0005", "Options::allowedPrefixes", "the same, secure"},
    {"ftp://127.0.0.1:1/n.xdr", "800C000D", "The specified protocol is unknown.", "ftp"},
    {"gopher:n", "800C000D", "The specified protocol is unknown.", "gopher"},
    {"javascript:n()", "800C000D", "The specified protocol is unknown.", "a script"},
    {"text.txt", "C00CE556", "Invalid at the top level", "not XML"},
    {"zeros.bin", "C00CE508", "An invalid character", "no text at all"},
    {"empty.xml", "C00CE558", "XML document must have a top level element", "an empty file"},
    {"cut.xdr", "C00CE55E", "Element was not closed", "XML that breaks off"},
    {"deep.xdr", "C00CE586", "depth", "XML of endless depth"},
    {"page.xml", "C00CE101", "Incorrect definition for the root element", "not XDR"},
    {"other.xdr", "C00CE101", "Incorrect definition for the root element", "another namespace"},
};
TEST_F(BadLocation, GivesOneClearError) {
  for (const BadCase& row : kBadCases) {
    SCOPED_TRACE(std::string(row.location) + ": " + row.why);
    const dom::ParseError error = Parse(row.location);
    EXPECT_EQ(Hex(error.code), row.code) << error.reason;
    EXPECT_THAT(error.reason, testing::HasSubstr(row.reason));
    EXPECT_FALSE(error.url.empty());
    EXPECT_TRUE(error.line == 0 || std::string(row.code).starts_with("C")) << error.srcText;
  }
}

TEST_F(BadLocation, IsRefusedOutsideTheFoldersThatAreSet) {
  folders_ = {(folder_ / "folder").string()};
  for (const char* location : {"text.txt", "folder/../text.txt", "/etc/passwd", "folderx/n.xdr"}) {
    const dom::ParseError error = Parse(location);
    EXPECT_EQ(Hex(error.code), "800C0005") << location;
    EXPECT_THAT(error.reason, testing::HasSubstr("Options::schemaFolders")) << location;
  }
  EXPECT_EQ(Hex(Parse("folder/n.xdr").code), "800C0006");
}

TEST_F(BadLocation, OfAnyLengthIsAnError) {
  for (const std::size_t length : {300U, 5000U, 1000000U}) {
    EXPECT_EQ(Hex(Parse(std::string(length, 'a')).code), "800C0006") << length;
    EXPECT_EQ(Hex(Parse("http://h/" + std::string(length, 'a')).code), "800C0005") << length;
  }
}

}  // namespace
}  // namespace kx::xdr
