// Joining folder and file name: the published table, the steps of the algorithm beyond it, and
// what the canonical form keeps for any input.
#include "platform/paths/path_combine.h"

#include "platform/paths/path_text.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::paths {
namespace {

using namespace std::string_literals;

struct CombineCase {
  const char* directory;
  const char* file;
  const char* result;
  const char* why;
};

constexpr CombineCase kCombineCases[] = {
    {"C:\\", "", "C:\\", "an empty file is the folder"},
    {"", "", "\\", "the empty text becomes a backslash"},
    {"C:\\", "..", "C:\\", "nothing is removed at a drive's root"},
    {"C:\\", "one\\..\\two\\.\\three", "C:\\two\\three", "dots are simplified"},
    {"C:\\base\\", "Order.xml", "C:\\base\\Order.xml", "joined"},
    {"C:\\base", "Order.xml", "C:\\base\\Order.xml", "a missing backslash is added"},
    {"C:\\base\\", "..\\Order.xml", "C:\\Order.xml", "one folder up"},
    {"C:\\base\\", "..\\..\\..\\Order.xml", "C:\\Order.xml", "no further up than the root"},
    {"C:\\base\\", ".\\Order.xml", "C:\\base\\Order.xml", "the same folder"},
    {"C:\\base\\", "sub/Order.xml", "C:\\base\\sub/Order.xml", "a forward slash stays"},
    {"C:\\base\\", "sub/../Order.xml", "C:\\base\\sub/../Order.xml",
     "dots between forward slashes are ordinary"},
    {"C:\\base\\", "/Order.xml", "C:\\base\\/Order.xml", "a forward slash in front is ordinary"},
    {"C:\\base\\", "\\Order.xml", "C:\\Order.xml", "a backslash in front keeps the root"},
    {"C:\\base\\", "C:Order.xml", "C:Order.xml", "a drive-relative file stands alone"},
    {"C:\\base\\", "D:\\x\\Order.xml", "D:\\x\\Order.xml", "another drive stands alone"},
    {"C:\\base\\", "\\\\srv\\share\\f.xml", "\\\\srv\\share\\f.xml", "another machine's file"},
    {"\\\\srv\\share\\dir\\", "\\f.xml", "\\\\srv\\share\\f.xml", "the root is server and share"},
    {"\\\\srv\\share\\dir\\", "..\\f.xml", "\\\\srv\\share\\f.xml", "one folder up"},
    {"\\\\srv\\share\\", "..\\f.xml", "\\\\srv\\f.xml", "the share counts as a folder here"},
    {"\\\\srv\\", "..\\..\\f.xml", "\\\\f.xml", "the two backslashes are never eaten"},
    {"\\\\srv", "\\f.xml", "\\\\srv\\f.xml", "a root of a server alone"},
    {"\\dir\\", "\\f.xml", "\\f.xml", "the root is the backslash"},
    {"C:", "\\f.xml", "C:\\f.xml", "the root of a bare drive gets its backslash"},
    {"rel\\", "\\f.xml", "f.xml", "a relative folder has no root to keep"},
    {"C:", "x.xml", "C:\\x.xml", "a bare drive gets a backslash"},
    {"rel\\dir\\", "x.xml", "rel\\dir\\x.xml", "relative stays relative"},
    {"C:\\base\\", "a..b\\x.xml", "C:\\base\\a..b\\x.xml", "full stops inside a name"},
    {"C:\\base\\", "x\\..", "C:\\base", "the backslash goes with the component"},
    {"", "x.xml", "x.xml", "an empty folder adds nothing"},
    {"C:\\base\\", "x\\", "C:\\base\\x\\", "a closing backslash stays"},
    {"C:\\base\\", "x\\.", "C:\\base\\x\\.", "a single full stop in the last place stays"},
};

TEST(PathCombineA, JoinsAndMakesCanonical) {
  for (const CombineCase& row : kCombineCases) {
    SCOPED_TRACE(row.directory + " + "s + row.file + " : " + row.why);
    EXPECT_EQ(PathCombineA(row.directory, row.file), row.result);
  }
}

TEST(PathCombineA, TakesANullArgumentForAMissingOne) {
  EXPECT_EQ(PathCombineA(std::nullopt, std::nullopt), std::nullopt);
  EXPECT_EQ(PathCombineA("C:\\x", std::nullopt), "C:\\x");
  EXPECT_EQ(PathCombineA(std::nullopt, "a\\..\\b"), "\\b");
}

TEST(PathCombineA, FailsFrom260CharactersOnBeforeTheResultIsMadeCanonical) {
  EXPECT_EQ(PathCombineA("C:\\base\\", std::string(252, 'a')), std::nullopt);
  EXPECT_EQ(PathCombineA("C:\\base\\", std::string(251, 'a')),
            "C:\\base\\" + std::string(251, 'a'));
  EXPECT_EQ(PathCombineA("C:\\" + std::string(254, 'a') + "\\", "..\\x"), std::nullopt)
      << "262 characters, although the canonical form has four";
}

TEST(PathCombineA, EndsItsTextsAtTheFirstNul) {
  EXPECT_EQ(PathCombineA("C:\\a\0\\b"s, "x\0y"s), "C:\\a\\x");
}

struct CanonicalCase {
  const char* path;
  const char* result;
  const char* why;
};

constexpr CanonicalCase kCanonicalCases[] = {
    {"", "\\", "the empty text becomes a backslash"},
    {"C:", "C:\\", "a bare drive gets a backslash"},
    {".\\x", "x", "a dot at the very start goes"},
    {".\\", "\\", "an output that would be empty is a backslash"},
    {"C:.\\x", "C:x", "a dot after a colon goes"},
    {"\\.\\.\\x", "\\x", "dots after backslashes go"},
    {"..\\x", "..\\x", "two dots without a backslash before them stay"},
    {"C:..\\x", "C:..\\x", "a colon is no backslash"},
    {"C:\\one\\..", "C:\\", "the drive that is left gets its backslash"},
    {"\\..\\x", "\\x", "the root of a rooted path stays"},
    {"\\a\\..\\x", "\\x", "an output that would become empty is a backslash"},
    {"a\\..\\x", "\\x", "an output that would become empty is a backslash"},
    {"a\\..", "\\", "an output that would become empty is a backslash"},
    {"C:\\one/.\\..\\two", "C:\\two", "one component holds the forward slash"},
    {"C:\\one/.\\two\\..", "C:\\one/.", "a dot after a forward slash is ordinary"},
    {"C:\\a\\..b", "C:b", "what follows the two dots is copied"},
    {"\\\\srv\\share\\a\\..\\..\\..\\x", "\\\\x", "the two backslashes in front stay"},
    {"C:\\a\\\\b", "C:\\a\\\\b", "doubled backslashes stay"},
};

TEST(CanonicalizePath, SimplifiesWhatBackslashesSeparate) {
  for (const CanonicalCase& row : kCanonicalCases) {
    SCOPED_TRACE(row.path + " : "s + row.why);
    EXPECT_EQ(CanonicalizePath(row.path), row.result);
  }
}

TEST(CanonicalizePath, LeavesACanonicalPathAsItIs) {
  for (const CombineCase& row : kCombineCases) {
    SCOPED_TRACE(row.result);
    EXPECT_EQ(CanonicalizePath(row.result), row.result);
  }
}

TEST(CanonicalizePath, TakesAMillionLevelsUpAndDown) {
  std::string path = "C:\\";
  for (int i = 0; i < 1000000; ++i) path += "a\\";
  for (int i = 0; i < 1000000; ++i) path += "..\\";
  EXPECT_EQ(CanonicalizePath(path + "x"), "C:\\x");
}

TEST(PathCombineA, KeepsARelativeNameWithForwardSlashesMixed) {
  std::string name = "sub/Order";
  ASSERT_TRUE(PathAddExtensionA(name, ".xml"));
  ASSERT_TRUE(PathIsRelativeA(name));
  EXPECT_EQ(PathCombineA("C:\\base\\", name), "C:\\base\\sub/Order.xml");
}

}  // namespace
}  // namespace kx::paths
