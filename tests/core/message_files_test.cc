// Message files.
#include "core/message_files.h"

#include "support/message_world.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::core {
namespace {

using test::ErrorOf;
using test::RuntimeError;

TEST(MessageFiles, EveryLineEndsWithCrLfAndBytesAreReadByTheCodePage) {
  test::MessageWorld world;
  struct {
    const char* bytes;
    const char* text;
    const char* why;
  } const rows[] = {{"", "", "an empty file"},
                    {"<a/>", "<a/>\r\n", "the last line gets its end"},
                    {"<a>\r</a>\r\n", "<a>\r\n</a>\r\n", "a lone CR"},
                    {"<a>\n</a>", "<a>\n</a>\r\n", "a lone LF is no line end"},
                    {"\xE9\x80", "\u00E9\u20AC\r\n", "windows-1252"},
                    {"\xC3\xA9", "\u00C3\u00A9\r\n", "UTF-8 is not decoded"},
                    {"a\x1A"
                     "b",
                     "a\r\n", "a file ends at Chr(26)"}};
  for (const auto& row : rows) {
    world.Host().Memory().AddFile("/c/m/f.xml", row.bytes);
    EXPECT_EQ(ReadMessageFile(*world.Environment(), "C:\\m\\f.xml"), row.text) << row.why;
  }
}

TEST(MessageFiles, AllByteValuesSurviveReadingAndWriting) {
  test::MessageWorld world;
  std::string bytes;
  for (int i = 0; i < 256; ++i) {
    if (i != '\r' && i != '\x1A') bytes += static_cast<char>(i);
  }
  world.Host().Memory().AddFile("/c/m/f.xml", bytes);
  const auto environment = world.Environment();
  std::string text = ReadMessageFile(*environment, "C:\\m\\f.xml");
  text.resize(text.size() - 2);
  WriteMessageFile(*environment, "C:\\m\\g.xml", text);
  EXPECT_EQ(world.Host().Memory().Content("/c/m/g.xml"), bytes + "\r\n");
}

TEST(MessageFiles, WhatTheCodePageLacksIsWrittenAsAQuestionMark) {
  test::MessageWorld world;
  WriteMessageFile(*world.Environment(), "C:\\m\\g.xml", "a\u0416\u20ACb");
  EXPECT_EQ(world.Host().Memory().Content("/c/m/g.xml"),
            "a?\x80"
            "b\r\n");
  Options options;
  options.codePage = 65001;
  WriteMessageFile(*world.Environment(options), "C:\\m\\g.xml", "a\u0416");
  EXPECT_EQ(world.Host().Memory().Content("/c/m/g.xml"), "a\u0416\r\n");
}

TEST(MessageFiles, AFileUrlIsMadeAPath) {
  test::MessageWorld world;
  world.Host().Memory().AddFile("/c/m/a b.xml", "<a/>");
  const auto environment = world.Environment();
  EXPECT_EQ(ReadMessageFile(*environment, "file:///C:/m/a%20b.xml"), "<a/>\r\n");
  WriteMessageFile(*environment, "file:///C:/m/new.xml", "x");
  EXPECT_EQ(world.Host().Memory().Content("/c/m/new.xml"), "x\r\n");
}

TEST(MessageFiles, FailuresAreThoseOfTheFile) {
  test::MessageWorld world;
  host::MemoryFileSystem& files = world.Host().Memory();
  files.AddFile("/c/m/read-only.xml", "old");
  files.SetReadOnly("/c/m/read-only.xml");
  files.AddFile("/c/m/big.xml", std::string(100, 'x'));
  Options options;
  options.maxDocumentBytes = 50;
  const auto environment = world.Environment(options);
  const auto reading = [&](const char* name) {
    return ErrorOf([&] { static_cast<void>(ReadMessageFile(*environment, name)); });
  };
  const auto writing = [&](const char* name) {
    return ErrorOf([&] { WriteMessageFile(*environment, name, "x"); });
  };
  EXPECT_EQ(reading("C:\\m\\none.xml"), RuntimeError(53));
  EXPECT_EQ(reading("C:\\none\\a.xml"), RuntimeError(76));
  EXPECT_EQ(reading("C:\\m\\"), RuntimeError(75));
  EXPECT_EQ(reading("C:\\m\\big.xml"), RuntimeError(7));
  EXPECT_EQ(writing("C:\\none\\a.xml"), RuntimeError(76));
  EXPECT_EQ(writing("C:\\m\\"), RuntimeError(75));
  EXPECT_EQ(writing("C:\\m\\read-only.xml"), RuntimeError(75));
  EXPECT_EQ(files.Content("/c/m/read-only.xml"), "old");
  files.SetFreeBytes(0);
  EXPECT_EQ(writing("C:\\m\\full.xml"), RuntimeError(61));
  EXPECT_EQ(files.Content("/c/m/full.xml"), std::nullopt);
}

TEST(MessageFiles, ATemporaryFileHasANameOfItsOwnInAFolderOfTheProcess) {
  test::MessageWorld world;
  const auto environment = world.Environment();
  const std::string first = WriteTemporaryFile(*environment, "<a/>");
  const std::string second = WriteTemporaryFile(*environment, "<b/>");
  EXPECT_NE(first, second);
  EXPECT_EQ(first.substr(first.rfind('/') + 1, 3), "MSG");
  EXPECT_EQ(first.substr(first.size() - 4), ".tmp");
  EXPECT_EQ(world.Host().Memory().Content(first), "<a/>\r\n");
}

}  // namespace
}  // namespace kx::core
