// Completing URLs: the published table with its lengths, each step of joining, the canonical form
// and escaping beyond it.
#include "platform/paths/url_combine.h"

#include "platform/paths/path_text.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::paths {
namespace {

using namespace std::string_literals;

struct PublishedCase {
  const char* base;
  const char* relative;
  const char* result;
  std::size_t length;
  bool sameUnescaped;
};

constexpr PublishedCase kPublishedCases[] = {
    {"http://www.winehq.org/tests/", "../tests3", "http://www.winehq.org/tests3", 28, true},
    {"http://www.winehq.org/tests", "tests1", "http://www.winehq.org/tests1", 28, true},
    {"http://www.winehq.org/tests/../tests/", "\\tests6\\..", "http://www.winehq.org/", 22, true},
    {"http://www.winehq.org/tests/?query=x&return=y", "tests8",
     "http://www.winehq.org/tests/tests8", 34, true},
    {"http://www.winehq.org/test13#aaa", "#bbb", "http://www.winehq.org/test13#bbb", 32, true},
    {"http://www.winehq.org/test/", "test%20file.txt", "http://www.winehq.org/test/test%20file.txt",
     42, true},
    {"file:///C:\\dir\\file.txt", "test.txt", "file:///C:/dir/test.txt", 23, true},
    {"http://server/schemas/", "Order.xml", "http://server/schemas/Order.xml", 31, true},
    {"http://server/schemas/", "My Order.xml", "http://server/schemas/My%20Order.xml", 36, false},
    {"http://server/schemas/", "sub\\Order.xml", "http://server/schemas/sub/Order.xml", 35, true},
    {"http://server/schemas/", "..\\Order.xml", "http://server/Order.xml", 23, true},
    {"http://server/schemas/", "../../../Order.xml", "http://server/Order.xml", 23, true},
    {"http://server/schemas/", "./Order.xml", "http://server/schemas/Order.xml", 31, true},
    {"http://server/schemas/", "/Order.xml", "http://server/Order.xml", 23, true},
    {"http://server/schemas/", "//other/Order.xml", "http://other/Order.xml", 22, true},
    {"http://server/schemas/", "a&b[1].xml", "http://server/schemas/a%26b%5B1%5D.xml", 38, false},
    {"http://server/schemas/", "a%b.xml", "http://server/schemas/a%b.xml", 29, true},
    {"http://server/schemas/", "x.asp?a=b c", "http://server/schemas/x.asp?a=b c", 33, true},
    {"HTTP://Server/Schemas/", "Order.xml", "http://Server/Schemas/Order.xml", 31, true},
    {"http://server", "Order.xml", "http://server/Order.xml", 23, true},
    {"file:///C:/s p/", "Order.xml", "file:///C:/s%20p/Order.xml", 26, false},
    {"file:///C:/s/", "a#b.xml", "file:///C:/s/a%23b.xml", 22, false},
    {"file://srv/share/", "Order.xml", "file://srv/share/Order.xml", 26, true},
    {"http://server/schemas/", "", "http://server/schemas/", 22, true},
};

TEST(UrlCombineA, GivesThePublishedResultsWithTheirLengths) {
  for (const PublishedCase& row : kPublishedCases) {
    SCOPED_TRACE(row.base + " + "s + row.relative);
    const UrlText escaped =
        UrlCombineA(row.base, row.relative, kPathBufferSize, UrlEscape::kUnsafe);
    EXPECT_EQ(escaped.status, kUrlOk);
    EXPECT_EQ(escaped.text, row.result);
    EXPECT_EQ(escaped.length, row.length);
    const UrlText plain = UrlCombineA(row.base, row.relative, kPathBufferSize, UrlEscape::kNone);
    EXPECT_EQ(plain.text == row.result, row.sameUnescaped) << plain.text;
  }
}

struct CombineCase {
  const char* base;
  const char* relative;
  const char* result;  // without escaping
  const char* why;
};

constexpr CombineCase kCombineCases[] = {
    {"http://h/a/b", "HTTP://other/x", "http://other/x", "the same scheme and two slashes"},
    {"http://h/a/b", "http:/x", "http://h/x", "the same scheme and one slash keeps the host"},
    {"http://h/a/b", "http:x", "http://h/a/x", "the same scheme and none keeps the folder"},
    {"mailto:a", "mailto:b", "mailto:b", "a base without a slash gives the relative part alone"},
    {"http://h/a/b", "FTP://o/x", "ftp://o/x", "another scheme stands alone, in lower case"},
    {"http://h/a/b", "C:\\x\\y", "file:///C:/x/y", "a drive becomes a file URL"},
    {"http://h/a/b", "\\\\o\\x", "http://o/x", "two backslashes keep the scheme"},
    {"http://h/a/b", "\\x", "http://h/x", "one backslash keeps the host"},
    {"http://h/a/b#f", "#g", "http://h/a/b#g", "a fragment replaces the fragment"},
    {"http://h/a/b?q#f", "#g", "http://h/a/b?q#g", "the query stays before a fragment"},
    {"file:///C:/a/b.htm#f", "#g", "file:///C:/a/b.htm#g", "a page's fragment in a file URL"},
    {"file:///C:/a/b#f", "#g", "file:///C:/a/b#f#g", "elsewhere the mark belongs to the name"},
    {"http://h/a/b?c/d", "x", "http://h/a/x", "slashes of the query do not count"},
    {"http://h/a/b#c/d", "x", "http://h/a/x", "nor those of a fragment"},
    {"file:///C:/a#b/c", "x", "file:///C:/a#b/x", "in a file URL they do"},
    {"file:///C:/a.HTML#b/c", "x", "file:///C:/x", "but not behind a page"},
    {"ftp://h/a#b/c", "x", "ftp://h/a#b/x", "as for every scheme but http and https"},
    {"https://h/a#b/c", "x", "https://h/x", "https counts as http"},
    {"mailto:a", "x", "mailto:/x", "a folder without a slash gets one"},
    {"rel/dir/", "a/../b", "b", "a base without a scheme gives the relative part"},
    {"C:\\dir\\", "x.xml", "file:///C:/dir/x.xml", "a base that is a path becomes a file URL"},
    {"\\\\srv\\share\\", "x.xml", "file://srv/share/x.xml", "and so does another machine's"},
    {"http://h/a/", "?q", "http://h/a/?q", "a query alone follows the folder"},
    {"  http://h/a/\r\n", " x\ty ", "http://h/a/xy", "blanks at the ends and tabs go"},
    {"http://h/a/", "x y", "http://h/a/x y", "blanks inside stay"},
    {"http://h/a/../b/", "x", "http://h/b/x", "the base is made canonical first"},
    {"file:///C:/dir/", "/x", "file:///x", "scheme and host of a file URL are three slashes"},
};

TEST(UrlCombineA, CompletesWhatTheRelativePartLeavesOut) {
  for (const CombineCase& row : kCombineCases) {
    SCOPED_TRACE(row.base + " + "s + row.relative + " : " + row.why);
    EXPECT_EQ(UrlCombineA(row.base, row.relative, 1000, UrlEscape::kNone).text, row.result);
  }
}

TEST(UrlCombineA, TellsTheNeededSizeWhenTheBufferIsTooSmall) {
  const std::string name(250, 'a');
  const UrlText result = UrlCombineA("http://h/", name, kPathBufferSize, UrlEscape::kUnsafe);
  EXPECT_EQ(result.status, kUrlOk) << "259 characters";
  EXPECT_EQ(result.length, 259U);
  const UrlText tooLong = UrlCombineA("http://h/", name + "b", kPathBufferSize, UrlEscape::kUnsafe);
  EXPECT_EQ(tooLong.status, kUrlBufferTooSmall);
  EXPECT_EQ(tooLong.length, 261U) << "the end mark counts";
  EXPECT_EQ(tooLong.text, "");
}

TEST(UrlCombineA, RefusesNullArguments) {
  EXPECT_EQ(UrlCombineA(std::nullopt, "x", 260, UrlEscape::kNone).status, kUrlBadArgument);
  EXPECT_EQ(UrlCombineA("http://h/", std::nullopt, 260, UrlEscape::kNone).status, kUrlBadArgument);
}

struct CanonicalCase {
  const char* url;
  const char* result;
  const char* why;
};

constexpr CanonicalCase kCanonicalCases[] = {
    {"HTTP://Host/A", "http://Host/A", "only the scheme is put in lower case"},
    {"http://h", "http://h/", "a missing slash after the host"},
    {"http://h?a/b", "http://h/?a/b", "the query ends the host"},
    {"http://h#a", "http://h/#a", "and so does the fragment"},
    {"http:\\\\h\\a?b\\c", "http://h/a?b\\c", "backslashes before the query become slashes"},
    {"http://h/a#b\\c", "http://h/a#b\\c", "and before the fragment"},
    {"ftp://h/a\\b", "ftp://h/a\\b", "other schemes keep their backslashes"},
    {"http://h/./a/../b", "http://h/./a/../b", "dots in the first place: nothing is simplified"},
    {"http://h/../b", "http://h/../b", "two dots in the first place as well"},
    {"http://h/a/./b", "http://h/a/b", "a dot goes"},
    {"http://h/a/b/../c", "http://h/a/c", "two dots go with the element before them"},
    {"http://h/a/../../../b", "http://h/b", "two dots without an element before them go"},
    {"http://h/a/b/..", "http://h/a/", "two dots at the end leave a slash"},
    {"http://h/a/.", "http://h/a/", "a dot at the end leaves a slash"},
    {"http://h/a//../b", "http://h/a/b", "an empty element is an element"},
    {"http://h/a/...", "http://h/a/...", "three dots are a name"},
    {"http://h/a?b/../c", "http://h/a?b/../c", "the query is not touched"},
    {"http://h/a#b/../c", "http://h/a#b/../c", "nor is the fragment"},
    {"file:///C:/a#b/../c", "file:///C:/c", "in a file URL the mark is part of a name"},
    {"news:a/../../b", "news:b", "without a host, two dots beyond the start are dropped"},
    {"foo://h/a/../../b", "foo://h/../b", "an unknown scheme keeps what would rise above"},
    {"foo:a/../../b\\c", "foo:../b\\c", "an unknown scheme keeps what would rise above"},
    {"javascript:a/../b\\c", "javascript:a/../b\\c", "an opaque scheme is left alone"},
    {"file:////srv/share", "file://srv/share", "four slashes become two"},
    {"file:///////srv/share", "file://srv/share", "so do more"},
    {"file://C:/x", "file:///C:/x", "a drive gets three"},
    {"file:////C:/x", "file:///C:/x", "also after four"},
    {"file:\\\\\\C:\\x\\y", "file:///C:/x/y", "backslashes count"},
    {"C:\\x\\..\\y?a\\b", "file:///C:/y?a/b", "a drive path"},
    {"\\\\srv\\share\\x", "file://srv/share/x", "another machine's path"},
    {"a/b/../c", "a/c", "a text without a scheme"},
    {"../c", "c", "two dots beyond the start are dropped"},
    {"", "", "the empty text"},
};

TEST(CanonicalizeUrl, SimplifiesByTheRulesOfTheScheme) {
  for (const CanonicalCase& row : kCanonicalCases) {
    SCOPED_TRACE(row.url + " : "s + row.why);
    EXPECT_EQ(CanonicalizeUrl(row.url), row.result);
  }
}

TEST(CanonicalizeUrl, TakesAMillionLevelsUpAndDown) {
  std::string url = "http://h/";
  for (int i = 0; i < 1000000; ++i) url += "a/";
  for (int i = 0; i < 1000000; ++i) url += "../";
  EXPECT_EQ(CanonicalizeUrl(url + "x"), "http://h/x");
}

constexpr CanonicalCase kEscapeCases[] = {
    {"http://h/ <>\"{}|\\^][`&", "http://h/%20%3C%3E%22%7B%7D%7C%5C%5E%5D%5B%60%26", "all unsafe"},
    {"http://h/'!$()*+,;:=@_~%", "http://h/'!$()*+,;:=@_~%", "none of these"},
    {"http://h/\x01\x1F\x7F\x80\xFF", "http://h/%01%1F%7F%80%FF", "controls and upper bytes"},
    {"http://h/a b?c d#e f", "http://h/a%20b?c d#e f", "nothing from the query on"},
    {"http://h/a b#c d", "http://h/a%20b#c d", "nothing from the fragment on"},
    {"file:///C:/a#b c?d e", "file:///C:/a%23b%20c?d e", "in a file URL the mark is escaped"},
    {"file://localhost/C:/a", "file:///C:/a", "the local host goes"},
    {"file://LOCALHOST/C:/a", "file:///C:/a", "in any case"},
    {"file:/C:/a", "file:///C:/a", "one slash becomes three"},
    {"file://srv/a", "file://srv/a", "two stay"},
};

TEST(EscapeUnsafe, WritesUnsafeCharactersAsUpperCaseHexadecimal) {
  for (const CanonicalCase& row : kEscapeCases) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(EscapeUnsafe(row.url), row.result);
  }
}

}  // namespace
}  // namespace kx::paths
