// Extension, relative or not, folder and file name of a path: the published tables, and the steps
// of the algorithms beyond them.
#include "platform/paths/path_text.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::paths {
namespace {

using namespace std::string_literals;

struct EditCase {
  const char* before;
  const char* after;
  bool changed;
  const char* why;
};

constexpr EditCase kExtensionCases[] = {
    {"file", "file.xml", true, "a bare name gets it"},
    {"Order", "Order.xml", true, "a bare name gets it"},
    {"file.txt", "file.txt", false, "another extension counts"},
    {"Order.", "Order.", false, "a lone full stop at the end counts as an extension"},
    {"a.b\\Order", "a.b\\Order.xml", true, "a backslash ends the component with the full stop"},
    {"a.b/Order", "a.b/Order", false, "a forward slash does not"},
    {"my.order form", "my.order form.xml", true, "a blank ends it"},
    {"C:\\x y\\Order", "C:\\x y\\Order.xml", true, "a blank in a folder's name is no matter"},
    {"C:\\x\\Order.xsd", "C:\\x\\Order.xsd", false, "another extension counts"},
    {"..", "..", false, "the second full stop is an extension"},
    {"", ".xml", true, "the empty text becomes the bare extension"},
    {".xml", ".xml", false, "a name that is only an extension has one"},
    {"http://www.example.org/Order", "http://www.example.org/Order", false,
     "a full stop of the host counts"},
    {"http://server/s/Order", "http://server/s/Order.xml", true, "a host without full stop"},
    {"C:\\x.y\\", "C:\\x.y\\.xml", true, "nothing follows the last backslash"},
    {"v1.2 final", "v1.2 final.xml", true, "the blank follows the last full stop"},
    {"a .b", "a .b", false, "a full stop after the blank counts"},
    {"a.b\tc", "a.b\tc", false, "only the blank ends it, not the tab"},
};

TEST(PathAddExtensionA, AppendsExactlyWhenTheLastComponentHasNoExtension) {
  for (const EditCase& row : kExtensionCases) {
    SCOPED_TRACE(row.before + " : "s + row.why);
    std::string path = row.before;
    EXPECT_EQ(PathAddExtensionA(path, ".xml"), row.changed);
    EXPECT_EQ(path, row.after);
  }
}

TEST(PathAddExtensionA, FillsTheBufferAndNoMore) {
  std::string fits(255, 'a');
  EXPECT_TRUE(PathAddExtensionA(fits, ".xml"));
  EXPECT_EQ(fits, std::string(255, 'a') + ".xml");
  std::string tooLong(256, 'a');
  EXPECT_FALSE(PathAddExtensionA(tooLong, ".xml"));
  EXPECT_EQ(tooLong, std::string(256, 'a'));
}

TEST(PathAddExtensionA, EndsItsTextAtTheFirstNul) {
  std::string path = "Order\0   .txt"s;
  EXPECT_TRUE(PathAddExtensionA(path, ".xml\0x"s));
  EXPECT_EQ(path, "Order.xml");
}

TEST(PathAddExtensionA, TakesEveryByteOfTheCodePageAsACharacter) {
  std::string path = "\xC4rger\xFF";
  EXPECT_TRUE(PathAddExtensionA(path, ".xml"));
  EXPECT_EQ(path, "\xC4rger\xFF.xml");
}

struct TestCase {
  const char* path;
  bool expected;
  const char* why;
};

constexpr TestCase kRelativeCases[] = {
    {"", true, "the empty text"},
    {"test.txt", true, "a bare name"},
    {"C:\\test.txt", false, "a drive"},
    {"C:test.txt", false, "a drive-relative path has a colon as its second character"},
    {"C:", false, "a bare drive"},
    {"\\test.txt", false, "a backslash in front"},
    {"/test.txt", true, "a forward slash is an ordinary character"},
    {"\\\\folder\\test.txt", false, "another machine's path"},
    {"//folder/test.txt", true, "forward slashes are ordinary characters"},
    {"file:///C:/test.txt", true, "URLs are not recognised"},
    {"http://h/x", true, "URLs are not recognised"},
    {"..\\x", true, "a parent folder"},
    {".", true, "a full stop"},
    {"a:", false, "any first character makes a drive"},
    {"ab:", true, "the colon is the third character"},
    {"1:x", false, "any first character makes a drive, a digit too"},
    {" C:\\x", true, "leading blanks are not skipped"},
    {"::", false, "the second character is a colon"},
    {":", true, "the colon is the first character"},
};

TEST(PathIsRelativeA, LooksAtTheFirstTwoCharactersOnly) {
  for (const TestCase& row : kRelativeCases) {
    SCOPED_TRACE(row.path + " : "s + row.why);
    EXPECT_EQ(PathIsRelativeA(row.path), row.expected);
  }
  EXPECT_TRUE(PathIsRelativeA("a\0:"s)) << "the text ends at the NUL";
}

constexpr EditCase kRemoveCases[] = {
    {"C:\\x\\y", "C:\\x", true, "the last component goes with its backslash"},
    {"C:\\x", "C:\\", true, "the root keeps its backslash"},
    {"C:\\", "C:\\", false, "a root stays"},
    {"C:", "C:", false, "a bare drive stays"},
    {"x", "", true, "a bare name becomes empty"},
    {"Order.xml", "", true, "a bare name becomes empty"},
    {"\\", "\\", false, "a root stays"},
    {"\\x", "\\", true, "the root keeps its backslash"},
    {"\\\\srv\\share\\f", "\\\\srv\\share", true, "a file on another machine"},
    {"\\\\srv\\share", "\\\\srv", true, "a share counts as a component"},
    {"\\\\srv", "\\\\", true, "a server counts as a component"},
    {"\\\\", "\\\\", false, "two backslashes are a root"},
    {"C:/x/y", "C:", true, "forward slashes do not separate"},
    {"C:/x\\y", "C:/x", true, "the backslash does"},
    {"x/y", "", true, "one component"},
    {"x\\y\\", "x\\y", true, "a closing backslash has an empty component after it"},
    {"C:\\x\\", "C:\\x", true, "a closing backslash has an empty component after it"},
    {"C:\\x\\\\y", "C:\\x", true, "a doubled backslash goes as a whole"},
    {"C:\\x\\\\\\y", "C:\\x\\", true, "of three backslashes one stays"},
    {"C:x", "C:", true, "a drive-relative name"},
    {"", "", false, "the empty text"},
    {"Q:\\test1\\test2", "Q:\\test1", true, "any drive letter"},
    {"Q:/test1/test2", "Q:", true, "forward slashes do not separate"},
    {"test", "", true, "a bare name becomes empty"},
    {"\\a\\b", "\\a", true, "a rooted path"},
    {"\\\\a\\b\\c", "\\\\a\\b", true, "a file on another machine"},
    {"C:\\\\x", "C:\\", true, "the second backslash lies at the root's end"},
    {"\\\\C:\\x", "\\\\C:\\", true, "a drive after two backslashes belongs to the root"},
    {"\\\\\\x", "\\\\\\", true, "a third backslash before a name belongs to the root"},
    {"\\?\\x", "\\?", true, "a question mark after the next character keeps the second backslash"},
    {"1:\\x", "1:", true, "a digit makes no drive, so the backslash separates"},
};

TEST(PathRemoveFileSpecA, RemovesTheLastComponentAndKeepsTheRoot) {
  for (const EditCase& row : kRemoveCases) {
    SCOPED_TRACE(row.before + " : "s + row.why);
    std::string path = row.before;
    EXPECT_EQ(PathRemoveFileSpecA(path), row.changed);
    EXPECT_EQ(path, row.after);
  }
}

struct NameCase {
  const char* path;
  const char* name;
  const char* why;
};

constexpr NameCase kFileNameCases[] = {
    {"c:\\path\\file", "file", "after the last backslash"},
    {"c:\\path\\", "path\\", "a closing separator stays with its name"},
    {"c:\\", "c:\\", "nothing follows a separator but a slash or the end"},
    {"C:\\x\\Order.xml", "Order.xml", "after the last backslash"},
    {"C:/x/Order.xml", "Order.xml", "the forward slash separates here"},
    {"C:Order.xml", "Order.xml", "the colon separates here"},
    {"http://h/s/Order.xml", "Order.xml", "a URL"},
    {"http://h/s/", "s/", "a closing separator stays with its name"},
    {"x-schema:Order.xml", "Order.xml", "the colon of a scheme"},
    {"a\\\\b", "b", "the second backslash is followed by a name"},
    {"a/", "a/", "no separator is followed by a name"},
    {"", "", "the empty text"},
    {"\\\\srv\\share", "share", "a share"},
    {"a:\\b:c", "c", "a colon inside a name"},
    {"dir\\sub/", "sub/", "mixed separators"},
    {"a::", ":", "a colon is followed by a colon, which is no slash"},
    {"/", "/", "a lone slash"},
};

TEST(PathFindFileNameA, GivesTheTextAfterTheLastSeparatorThatANameFollows) {
  for (const NameCase& row : kFileNameCases) {
    SCOPED_TRACE(row.path + " : "s + row.why);
    EXPECT_EQ(PathFindFileNameA(row.path), row.name);
  }
}

TEST(PathText, SaysWhatADriveAndASlashAre) {
  EXPECT_TRUE(StartsWithDrive("c:"));
  EXPECT_TRUE(StartsWithDrive("Z:x"));
  EXPECT_FALSE(StartsWithDrive("1:"));
  EXPECT_FALSE(StartsWithDrive("c"));
  EXPECT_FALSE(StartsWithDrive("\xC4:")) << "only the letters A to Z name drives";
  EXPECT_TRUE(IsSlash('/') && IsSlash('\\'));
  EXPECT_FALSE(IsSlash(':'));
}

TEST(PathText, LosesAPlainPathWrittenWithForwardSlashesAfterItsDrive) {
  std::string path = "C:/schemas/Order.xml";
  ASSERT_TRUE(PathRemoveFileSpecA(path));
  EXPECT_EQ(path, "C:");
}

}  // namespace
}  // namespace kx::paths
