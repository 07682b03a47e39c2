// What is a URL, what is a file URL, and which path a file URL names.
#include "platform/paths/url_text.h"

#include "platform/paths/path_text.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::paths {
namespace {

using namespace std::string_literals;

struct TestCase {
  const char* text;
  bool expected;
  const char* why;
};

constexpr TestCase kUrlCases[] = {
    {"", false, "the empty text"},
    {"http://winehq.org", true, "a scheme"},
    {"HTTP://www.winehq.org", true, "upper case"},
    {" http://www.winehq.org", false, "leading blanks are not skipped"},
    {"c:/foo/bar", false, "one character before the colon is a drive"},
    {"c:\\foo\\bar", false, "one character before the colon is a drive"},
    {"ab:", true, "two characters are enough, nothing need follow"},
    {"a:b", false, "one character"},
    {"x-schema:Order.xml", true, "a hyphen belongs to a scheme"},
    {"file:x", true, "what follows does not matter"},
    {"www.winehq.org", false, "no colon"},
    {"localhost:8080", true, "a host with a port looks like a scheme"},
    {"a.b+c-d:x", true, "every kind of character that a scheme may hold"},
    {"12:x", true, "digits belong to a scheme, the first character too"},
    {"a b:c", false, "a blank does not"},
    {"a_b:c", false, "an underscore does not"},
    {"://x", false, "no character before the colon"},
    {"C:Order.xml", false, "one character"},
    {"\xC4\xD6:x", false, "only the letters A to Z are letters here"},
};

TEST(PathIsURLA, WantsASchemeOfTwoCharactersOrMore) {
  for (const TestCase& row : kUrlCases) {
    SCOPED_TRACE(row.text + " : "s + row.why);
    EXPECT_EQ(PathIsURLA(row.text), row.expected);
  }
}

constexpr TestCase kFileUrlCases[] = {
    {"file:", true, "nothing need follow"},
    {"file:partial", true, "what follows does not matter"},
    {"File:partial", true, "case does not matter"},
    {"file:///C:/x", true, "the usual form"},
    {"file:\\\\e:\\b\\c", true, "backslashes"},
    {"file", false, "the colon is missing"},
    {"file_:x", false, "another scheme"},
    {" file:x", false, "leading blanks are not skipped"},
    {"http://h/file:", false, "only at the start"},
    {"C:\\file:x", false, "only at the start"},
    {"", false, "the empty text"},
    {"FILE://h/x", true, "case does not matter"},
};

TEST(UrlIsA, KnowsAFileUrlByItsFirstFiveCharacters) {
  for (const TestCase& row : kFileUrlCases) {
    SCOPED_TRACE(row.text + " : "s + row.why);
    EXPECT_EQ(UrlIsA(row.text, UrlTest::kFileUrl), row.expected);
  }
}

struct PathCase {
  const char* url;
  const char* path;
  const char* why;
};

constexpr PathCase kPathCases[] = {
    {"file:///c:/foo/bar", "c:\\foo\\bar", "three slashes and a drive"},
    {"file:///c:/foo%20ba%2fr", "c:\\foo ba/r", "decoded; a decoded slash stays a slash"},
    {"file://localhost/c:/foo/bar", "c:\\foo\\bar", "the local host"},
    {"file://LocalHost/c:/foo%20bar", "c:\\foo bar", "in any case, and decoded"},
    {"file:///localhost/c:/foo/bar", "\\localhost\\c:\\foo\\bar", "after three slashes no host"},
    {"file://host/foo/bar", "\\\\host\\foo\\bar", "a host"},
    {"file://host/c:/foo/bar", "\\\\hostc:\\foo\\bar", "the slash before a drive is lost"},
    {"file://host/a%20b", "\\\\host\\a b", "with a host it is decoded"},
    {"file://c:/foo/bar", "c:\\foo\\bar", "two slashes and a drive"},
    {"file://c:/foo%20ba%2fr", "c:\\foo%20ba%2fr", "two slashes and a drive: not decoded"},
    {"file:c:/foo/bar", "c:\\foo\\bar", "no slashes"},
    {"file:c|/foo/bar", "c:\\foo\\bar", "a bar for the colon"},
    {"file:foo/bar/", "foo\\bar\\", "relative"},
    {"file:/foo/bar/", "\\foo\\bar\\", "one slash"},
    {"file:/c:/foo", "c:\\foo", "one slash and a drive"},
    {"file:////c:/foo%20ba%2fr", "c:\\foo%20ba%2fr", "four slashes and a drive: not decoded"},
    {"file:////foo%20ba%2fr", "\\\\foo%20ba%2fr", "four slashes: not decoded"},
    {"file://///foo%20bar", "\\\\foo bar", "five slashes: two, and decoded"},
    {"file:///////c:/foo", "\\\\c:\\foo", "a drive after five and more slashes is a name"},
    {"file://incomplete", "\\\\incomplete", "a host alone"},
    {"file:///C:/My%20Schemas/Order.xml", "C:\\My Schemas\\Order.xml", "a blank"},
    {"FILE:///C:/x.xml", "C:\\x.xml", "upper case"},
    {"file:///C:/a%", "C:\\a%", "a percent sign at the end"},
    {"file:///C:/a%2", "C:\\a%2", "a percent sign with one digit"},
    {"file:///C:/a%zz%4", "C:\\a%zz%4", "a percent sign without digits"},
    {"file:///C:/a%2541", "C:\\a%41", "decoded once only"},
    {"file:", "", "nothing"},
    {"file:\\\\host\\cx:\\foo\\bar", "\\\\host\\cx:\\foo\\bar", "backslashes; two characters"},
    {"file:///C:/a/../b?c#d", "C:\\a\\..\\b?c#d", "dots, query and fragment are not special"},
};

TEST(PathCreateFromUrlA, GivesThePathOfAFileUrl) {
  for (const PathCase& row : kPathCases) {
    SCOPED_TRACE(row.url + " : "s + row.why);
    const UrlText result = PathCreateFromUrlA(row.url, kPathBufferSize);
    EXPECT_EQ(result.status, kUrlOk);
    EXPECT_EQ(result.text, row.path);
    EXPECT_EQ(result.length, std::string(row.path).size());
  }
}

TEST(PathCreateFromUrlA, RefusesWhatIsNoFileUrl) {
  EXPECT_EQ(PathCreateFromUrlA("http://foo/bar", kPathBufferSize).status, kUrlBadArgument);
  EXPECT_EQ(PathCreateFromUrlA("c:\\foo\\bar", kPathBufferSize).status, kUrlBadArgument);
  EXPECT_EQ(PathCreateFromUrlA(std::nullopt, kPathBufferSize).status, kUrlBadArgument);
  EXPECT_EQ(PathCreateFromUrlA("file:///C:/x", 0).status, kUrlBadArgument);
}

TEST(PathCreateFromUrlA, TellsTheNeededSizeWhenTheBufferIsTooSmall) {
  const UrlText small = PathCreateFromUrlA("file:///C:/abc", 6);
  EXPECT_EQ(small.status, kUrlBufferTooSmall);
  EXPECT_EQ(small.length, 7U) << "six characters and the end mark";
  EXPECT_EQ(small.text, "");
  EXPECT_EQ(PathCreateFromUrlA("file:///C:/abc", 7).status, kUrlOk);
}

TEST(PathCreateFromUrlA, LetsAFileUrlBeCutToItsFolder) {
  std::string path = PathCreateFromUrlA("file:///C:/s/Order.xml", kPathBufferSize).text;
  ASSERT_TRUE(PathRemoveFileSpecA(path));
  EXPECT_EQ(path, "C:\\s");
}

TEST(DecodePercent, DecodesTwoDigitsOfEitherCase) {
  EXPECT_EQ(DecodePercent("a%6C%6c%00b"), "all\0b"s);
  EXPECT_EQ(DecodePercent("%"), "%");
  EXPECT_EQ(DecodePercent("%g1%1g"), "%g1%1g");
}

struct LoaderCase {
  const char* location;
  PathSystem system;
  const char* path;  // null: not a local file
  const char* why;
};

constexpr LoaderCase kLoaderCases[] = {
    {"C:\\a\\x.xm%6C", PathSystem::kWindows, "C:\\a\\x.xml", "a local path is decoded"},
    {"C:\\a b.xml", PathSystem::kWindows, "C:\\a b.xml", "a literal blank"},
    {"file:///C:/a%20b.xml", PathSystem::kWindows, "C:\\a b.xml", "three slashes"},
    {"file://C:/a%20b.xml", PathSystem::kWindows, "C:\\a b.xml", "two slashes are decoded as well"},
    {"file:\\\\\\C:\\a.xml", PathSystem::kWindows, "C:\\a.xml", "backslashes"},
    {"file://C:\\a.xml", PathSystem::kWindows, "C:\\a.xml", "mixed slashes"},
    {"file:///C:/a%2541", PathSystem::kWindows, "C:\\a%41", "decoded once only"},
    {"file:///tmp/x%20y.xml", PathSystem::kPosix, "/tmp/x y.xml", "native on a POSIX system"},
    {"file:///tmp/x.xml", PathSystem::kWindows, "\\tmp\\x.xml", "not so on Windows"},
    {"file:///tmp/a%5Cb", PathSystem::kPosix, "/tmp/a\\b", "an encoded backslash is a character"},
    {"file:///C:/x.xml", PathSystem::kPosix, "C:\\x.xml", "a drive is a drive"},
    {"file://host/x.xml", PathSystem::kPosix, "\\\\host\\x.xml", "another machine stays one"},
    {"/tmp/x.xml", PathSystem::kPosix, "/tmp/x.xml", "a native path"},
    {"file:///C:/%C3%A4.xml", PathSystem::kWindows, "C:\\\xC3\xA4.xml", "UTF-8 is taken as such"},
    {"file:///C:/%E4.xml", PathSystem::kWindows, "C:\\\xC3\xA4.xml", "other bytes by code page"},
    {"http://h/x.xml", PathSystem::kWindows, nullptr, "not local"},
    {"x-schema:a.xml", PathSystem::kPosix, nullptr, "not local"},
};

TEST(LoaderPath, OpensPathsAndFileUrlsDecodedOnce) {
  for (const LoaderCase& row : kLoaderCases) {
    SCOPED_TRACE(row.location + " : "s + row.why);
    const auto path = LoaderPath(row.location, row.system, text::Windows1252());
    if (row.path == nullptr) {
      EXPECT_EQ(path, std::nullopt);
    } else {
      EXPECT_EQ(path, row.path);
    }
  }
}

}  // namespace
}  // namespace kx::paths
