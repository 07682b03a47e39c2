// What queries cost on documents that invite repeated work: elements inside one another, long lists
// of siblings, many attributes; parsed and edited. The evaluator counts the nodes that it looks at;
// four times the document must not cost much more than four times the work. A million levels must
// simply end.
#include "platform/dom/document.h"
#include "platform/dom/document_impl.h"
#include "platform/patterns/evaluator.h"
#include "platform/patterns/pattern.h"
#include "platform/patterns/select.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

namespace kx::patterns {
namespace {

std::string Times(int count, const std::string& text) {
  std::string all;
  all.reserve(text.size() * static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

enum class Edited : bool { kNo, kYes };

dom::Document Loaded(const std::string& xml, Edited edited) {
  dom::Document document = dom::NewDomDocument();
  dom::DocumentSettings& settings = document.AsNode().Data().Owner()->settings;
  settings.maxElementDepth = 100'000'000;
  settings.preserveWhiteSpace = true;
  EXPECT_TRUE(document.LoadXml(xml)) << document.LastError().reason;
  if (edited == Edited::kYes) {
    // A new node in front: from now on higher indices are not later nodes.
    const dom::Node root = document.DocumentElement();
    root.InsertBefore(document.CreateElement("x"), root.FirstChild());
    EXPECT_FALSE(document.AsNode().Data().IdsFollowDocumentOrder());
  }
  return document;
}

struct Shape {
  const char* name;
  std::string (*write)(int size);
};
constexpr Shape kShapes[] = {
    {"one inside another",
     [](int n) { return Times(n, "<a k='1'>") + "1<b/>" + Times(n, "</a>"); }},
    {"texts around one another", [](int n) { return Times(n, "<a>1") + Times(n, "</a>"); }},
    {"blanks around one another",
     [](int n) { return Times(n, "<a> ") + "<b/>" + Times(n, "</a>"); }},
    {"something in front at each level",
     [](int n) { return Times(n, "<a><b k='1'>1</b><x/>") + Times(n, "</a>"); }},
    {"something behind at each level",
     [](int n) { return Times(n, "<a>") + Times(n, "<b>2</b><x/></a>"); }},
    {"many children", [](int n) { return "<r>" + Times(n, "<a/>") + "</r>"; }},
    {"many children with children",
     [](int n) { return "<r>" + Times(n, "<a><b k='1'>1</b></a><x><b/></x>") + "</r>"; }},
    {"many attributes and children",
     [](int n) {
       std::string text = "<a";
       for (int i = 0; i < n; ++i) text += " k" + std::to_string(i) + "='1'";
       return text + ">" + Times(n, "<b k='1'>1</b>") + "<x/></a>";
     }},
};

// Each was, or could easily be, asked of the same nodes again and again.
constexpr const char* kPatterns[] = {
    "//a//a//a",
    "//node()//node()",
    "//b[1]",
    "//a[end()]",
    "//*/..",
    "//*/..[.//x]",
    "//*/..[$any$ .//b = 9]",
    "//a[.//x/..]",
    "//a[.//b && .//x]",
    "//a[not(.//x)]",
    "//a[(a|b)//x]",
    "//a[(a|b)/x]",
    "//a[.. | a]",
    "//a[(a | b)[0]]",
    "//a[(.. | a)[0]//x]",
    "//(a | ..)",
    "//(. | ..)[0]",
    "//(a | b)//x",
    "//(a//b)",
    "//(.//b)[@k]",
    "//(a//b)[0]",
    "//(a//b)[1]",
    "//(a//b)[-2]",
    "//(a//b)[end()]",
    "//(.//b)[@k][1]",
    "//a[(.//b)[1]]",
    "//a[(.//b)[index() = 1]]",
    "//a[(.//@k)[1]]",
    "//a[((.//x)[0])/@k]",
    "//a[.//b!end()]",
    "//a[.//b!index() = 0]",
    "//a[.//b = 2]",
    "//a[$any$ .//b = '9']",
    "//a[$all$ .//b = '1']",
    "//a[$any$ (a|b)//b = '9']",
    "//a[(//b)[0] = 3]",
    "//a[(//b | c) = 3]",
    "//a[(//b | ../c)[0]/x]",
    "//a[$any$ (//b | c)/x = 1]",
    "//a[. > 3]",
    "//*[. = 1]",
    "//a[number() > 3]",
    "//a[../b > 3]",
    "//a[ancestor(a) = 5]",
    "//a[date() > date('2000-01-01')]",
    "//*[../@k = '2']",
    "//*[..[@zz]]",
    "//*[..[@zz = '2']]",
    "//b[../@*[. = '2']]",
    "//b[../b[end()] = 3]",
    "//b[(../b)[1] = 3]",
    "//a[id(.//b)]",
    "//a[id(.)]",
    "//*[ancestor(x)]",
    "//*[ancestor(.//a)]",
    "//*[ancestor(../x)]",
    "//b[ancestor(../a)]",
    "//b[ancestor(..//a)]",
    "//*[ancestor(a/../b)]",
    "//*[ancestor(a[../x])]",
    "//*[ancestor((a|b)//a)]",
    "//b[ancestor((a/b)[1])]",
    "//b[ancestor((a)[end()])]",
    "//a[ancestor(a[.//x])]",
    "//b[ancestor(a[.//b])/x]",
};

std::uint64_t WorkOf(const char* text, const dom::Document& document) {
  const Pattern pattern = Compile(text);
  const QueryOptions options;
  Evaluator evaluator(pattern.GetCode(), document.AsNode().At(), options);
  static_cast<void>(evaluator.SelectAll());
  return evaluator.Work();
}

void ExpectLinearWork(const Shape& shape, Edited edited) {
  SCOPED_TRACE(shape.name);
  constexpr int kSize = 400;
  const dom::Document small = Loaded(shape.write(kSize), edited);
  const dom::Document large = Loaded(shape.write(kSize * 4), edited);
  for (const char* pattern : kPatterns) {
    const std::uint64_t once = WorkOf(pattern, small);
    const std::uint64_t fourTimes = WorkOf(pattern, large);
    EXPECT_LE(fourTimes, once * 6 + 2000) << pattern;
    // Beside the growth the work itself: some passes over the document, not hundreds.
    EXPECT_LE(fourTimes, large.AsNode().Data().NodeCount() * std::uint64_t{40}) << pattern;
  }
}

TEST(Work, GrowsWithAParsedDocumentAndNotFaster) {
  for (const Shape& shape : kShapes) ExpectLinearWork(shape, Edited::kNo);
}

TEST(Work, GrowsWithAnEditedDocumentAndNotFaster) {
  for (const Shape& shape : kShapes) ExpectLinearWork(shape, Edited::kYes);
}

TEST(Work, IsCountedForWhatAQueryLooksAt) {
  const dom::Document document = Loaded("<a>" + Times(100, "<b/>") + "</a>", Edited::kNo);
  EXPECT_GE(WorkOf("a/b", document), 101U);
  EXPECT_GE(WorkOf("//b", document), 101U);
  EXPECT_LE(WorkOf("a", document), 5U) << "no more than it must";
}

// A query that repeated its work here would take days, one that used the stack would end at once.
TEST(AMillionLevels, AreNoMoreThanALargeDocument) {
  const char* const large = std::getenv("KX_LARGE");
  const bool all = large != nullptr && std::string(large) == "1";
  constexpr int kLevels = 1'000'000;
  const std::string text = Times(kLevels, "<a>1") + "<b k='1'/><x/>" + Times(kLevels, "</a>");
  for (const Edited edited : {Edited::kNo, Edited::kYes}) {
    const dom::Document document = Loaded(text, edited);
    const std::uint64_t nodes = document.AsNode().Data().NodeCount();
    std::size_t number = 0;
    for (const char* pattern : kPatterns) {
      if (!all && number++ % 8 != 0) continue;
      EXPECT_LE(WorkOf(pattern, document), nodes * 40) << pattern;
    }
    const dom::Node start = document.AsNode();
    EXPECT_EQ(SelectNodes(start, "//b").Length(), 1);
    EXPECT_EQ(SelectNodes(start, "//a[.//b]").Length(), kLevels);
    EXPECT_EQ(SelectNodes(start, "//b[ancestor(a[../../../c])]").Length(), 0);
    EXPECT_EQ(SelectNodes(start, "//a[. > 3]").Length(), kLevels - 1) << "all but the innermost";
    EXPECT_EQ(SelectNodes(start, "//(a//b)[0]").Length(), 1);
    EXPECT_TRUE(Matches(SelectSingleNode(start, "//b"), Compile("/a//b")));
    EXPECT_FALSE(Matches(SelectSingleNode(start, "//b"), Compile("c//(a|c)//b")));
  }
}

}  // namespace
}  // namespace kx::patterns
