#include "platform/patterns/select.h"

#include "platform/dom/document_impl.h"
#include "platform/patterns/pattern_test.h"

#include <atomic>
#include <thread>
#include <vector>

namespace kx::patterns {
namespace {

TEST(SelectNodes, GivesAListThatLaterEditsLeaveAlone) {
  const dom::Document document = Parsed("<r><a n='0'/><a n='1'/></r>");
  const dom::Node root = document.DocumentElement();
  const dom::NodeList list = SelectNodes(root, "a");
  const dom::NodeList one = SelectNodes(root, "a[0]");
  const dom::NodeList none = SelectNodes(root, "b");
  root.RemoveChild(root.FirstChild());
  root.AppendChild(document.CreateElement("a"));
  root.AppendChild(document.CreateElement("b"));
  EXPECT_EQ(Listed(list), "a#0 a#1");
  EXPECT_EQ(Listed(one), "a#0") << "a removed node stays usable";
  EXPECT_EQ(none.Length(), 0);
  EXPECT_TRUE(none) << "an empty list is a list";
  EXPECT_EQ(Found(root, "a"), "a#1 a");
}

TEST(SelectNodes, GivesTheDocumentsOwnNodes) {
  const dom::Document document = Parsed("<r><a>t</a></r>");
  const dom::Node root = document.DocumentElement();
  EXPECT_EQ(SelectNodes(root, "a").Item(0), root.FirstChild());
  EXPECT_EQ(SelectNodes(root, "a/text()").Item(0), root.FirstChild().FirstChild());
  EXPECT_EQ(SelectNodes(root, "/").Item(0), document.AsNode());
}

TEST(SelectNodes, OfNothingRaises) {
  EXPECT_THROW(static_cast<void>(SelectNodes(dom::Node(), "a")), Error);
  EXPECT_THROW(static_cast<void>(SelectSingleNode(dom::Node(), "a")), Error);
}

TEST(SelectNodes, ReadsThePatternBeforeItLooksForAnything) {
  EXPECT_THROW(static_cast<void>(SelectNodes(Parsed("<r/>").AsNode(), "zz[")), Error);
}

TEST(SelectNodes, FromANodeThatALoadHasLeftBehindStaysThereButForASlash) {
  const dom::Document document = Parsed("<r><a><b n='0'/></a></r>");
  const dom::Node old = document.DocumentElement().FirstChild();
  ASSERT_TRUE(document.LoadXml("<s><b n='1'/></s>"));
  EXPECT_EQ(Found(old, "b"), "b#0");
  EXPECT_EQ(Found(old, "//b"), "b#1") << "the document as it is now";
  EXPECT_EQ(Found(old, "../.."), "") << "the old top has no document any more";
}

TEST(SelectNodes, WithACacheGivesTheSame) {
  const dom::Node root = Parsed("<r><a n='0'/><b n='1'/><a n='2'/></r>").DocumentElement();
  PatternCache cache;
  for (int i = 0; i < 3; ++i) {
    for (const char* pattern : {"a", "b", "*[1]", "a | b", "//a[@n = '2']", "zz"}) {
      EXPECT_EQ(Listed(SelectNodes(root, pattern, cache)), Found(root, pattern)) << pattern;
      EXPECT_EQ(SelectSingleNode(root, pattern, cache), SelectSingleNode(root, pattern));
    }
  }
}

TEST(SelectSingleNode, GivesTheFirstOfTheListOrNothing) {
  const dom::Node root = Parsed("<r><x><a n='0'/></x><a n='1'/><b n='2'/></r>").DocumentElement();
  EXPECT_EQ(Short(SelectSingleNode(root, "b | a")), "a#1");
  EXPECT_EQ(Short(SelectSingleNode(root, "a | x/a")), "a#0") << "document order";
  EXPECT_EQ(Short(SelectSingleNode(root, ".//a")), "a#0");
  EXPECT_EQ(Short(SelectSingleNode(root, "(//a)[end()]")), "a#1");
  EXPECT_FALSE(SelectSingleNode(root, "zz"));
}

TEST(SelectNodes, OfManyTakesThemAll) {
  for (const int count : {15, 16, 17, 1000}) {
    std::string xml = "<r>";
    for (int i = 0; i < count; ++i) xml += "<a/>";
    const dom::Node root = Parsed(xml + "</r>").DocumentElement();
    EXPECT_EQ(SelectNodes(root, "a").Length(), count);
    EXPECT_EQ(SelectNodes(root, "//a").Length(), count);
    EXPECT_EQ(SelectNodes(root, "a").Item(count - 1), root.LastChild());
  }
}

TEST(Matches, TellsWhetherSomeNodeAboveGivesTheNode) {
  const dom::Document document = Parsed("<r><a n='0'><b k='1'>t</b></a><b/></r>");
  struct Row {
    const char* node;
    const char* pattern;
    bool matches;
  };
  const Row rows[] = {
      {"r/a/b", "b", true},     {"r/a/b", "a/b", true},           {"r/b", "a/b", false},
      {"r/a/b", "/r//b", true}, {"r/a/b", "/b", false},           {"r/a/b", "b[@k]", true},
      {"r/b", "b[@k]", false},  {"r/a/b/@k", "@k", true},         {"r/a/b/@k", "b/@k", true},
      {"r/a/b/@k", "k", false}, {"r/a/b/text()", "text()", true}, {"/", "/", true},
      {"r", "/", false},        {"r/a/b", "a | b", true},         {"r/b", "b[1]", false},
      {"r/b", "*[1]", true},    {"r/a/b", "(a | x)/b", true},     {"r/a/b", ".", false},
  };
  for (const Row& row : rows) {
    const dom::Node node = SelectSingleNode(document.AsNode(), row.node);
    EXPECT_EQ(Matches(node, Compile(row.pattern)), row.matches) << row.node << " " << row.pattern;
  }
}

// Compiled patterns and frozen documents are shared; caches are each thread's own.
TEST(SelectNodes, MayBeAskedOfOneFrozenDocumentByEightThreads) {
  std::string xml = "<r>";
  for (int i = 0; i < 300; ++i) xml += "<a n='" + std::to_string(i % 7) + "'><b>1</b> <c/>2</a>";
  const dom::Document document = Parsed(xml + "</r>");
  document.AsNode().Data().Freeze();
  const char* const texts[] = {"//a[@n='3']/b", "r/a[b = 1][end()]", "//b[ancestor(a[../a])]",
                               "//(a//b)[0]",   "//text()[. = 1]",   "//a[.//c | b]/@n"};
  std::vector<Pattern> shared;
  std::vector<std::int32_t> lengths;
  for (const char* text : texts) {
    shared.push_back(Compile(text));
    lengths.push_back(SelectNodes(document.AsNode(), shared.back()).Length());
    EXPECT_GT(lengths.back(), 0) << text;
  }
  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  threads.reserve(8);
  for (int thread = 0; thread < 8; ++thread) {
    threads.emplace_back([&] {
      PatternCache cache;
      for (int round = 0; round < 5; ++round) {
        for (std::size_t i = 0; i < shared.size(); ++i) {
          const dom::Node start = document.AsNode();
          const Pattern copy = shared[i];
          if (SelectNodes(start, copy).Length() != lengths[i]) ++wrong;
          if (SelectNodes(start, texts[i], cache).Length() != lengths[i]) ++wrong;
        }
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
}

TEST(SelectNodes, GivesTheSameByTablesInAContentThatALoadReplaced) {
  const dom::Document document = Parsed("<a><b/><c/><a><b/><c/><b/></a></a>");
  const dom::Node former = document.DocumentElement();
  ASSERT_TRUE(document.LoadXml("<other/>"));
  for (const char* text :
       {".//(c|//b[0])[1]", ".//(c|//b[0])[0]", ".//(//b[0]|c)[2]", ".//(c|//b[0])[end()]",
        ".//(c|//b)[1]", ".//(c|/a/b)[0]", ".//b[ancestor(/a)]"}) {
    const Pattern pattern = Compile(text);
    QueryOptions byTables;
    byTables.patience = 0;
    const dom::NodeList list = SelectNodes(former, pattern);
    const dom::NodeList same = SelectNodes(former, pattern, byTables);
    ASSERT_EQ(list.Length(), same.Length()) << text;
    for (std::int32_t i = 0; i < list.Length(); ++i) EXPECT_EQ(list.Item(i), same.Item(i)) << text;
  }
}

}  // namespace
}  // namespace kx::patterns
