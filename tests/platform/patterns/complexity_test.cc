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
#include <initializer_list>
#include <string>
#include <string_view>

namespace kx::patterns {
namespace {

std::string Times(int count, const std::string& text) {
  std::string all;
  all.reserve(text.size() * static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

std::string Joined(std::initializer_list<std::string_view> parts) {
  std::string all;
  for (const std::string_view part : parts) all += part;
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
    {"long texts that begin alike",
     [](int n) {
       const std::string text = Times(n * 10, "x");
       return "<r k='" + text + "1'><a>" + text + "1<b/></a><b>" + text + "2</b>" +
              Times(n, "<a k='1'><x/></a>") + "</r>";
     }},
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
    "//*[$all$ .//b!index() != 99]",
    "//*[$any$ ../b!index() = @k]",
    "//*[(.//b)[100]]",
    "//*[(.//b)[-100]]",
    "//*[(../b)[index() = 300]]",
    "//*[(../a/b)[@k][100]]",
    "//*[(a//b)[100]]",
    "//a[. < ..]",
    "//a[. = ..]",
    "//a[. $ige$ ..]",
    "//*[../@k < .]",
    "//a[id(.//b)]",
    "//a[id(.)]",
    "//*[ancestor(x)]",
    "//*[ancestor(.//a)]",
    "//*[ancestor(../x)]",
    "//b[ancestor(../a)]",
    "//b[ancestor(..//a)]",
    "//b[ancestor(..//a/b)]",
    "//b[ancestor(..//a//b)]",
    "//b[ancestor(ancestor(a)//b)]",
    "//*[ancestor(a/../b)]",
    "//*[ancestor(a[../x])]",
    "//*[ancestor((a|b)//a)]",
    "//b[ancestor((a/b)[1])]",
    "//b[ancestor((a)[end()])]",
    "//a[ancestor(a[.//x])]",
    "//b[ancestor(a[.//b])/x]",
};

// The values of all members are put in order here.
constexpr const char* kSortingPatterns[] = {
    "//*[$any$ .//a = b]",
    "//*[$any$ .//a != b]",
    "//*[$any$ .//b < ../x]",
    "//*[$all$ .//a $igt$ .]",
    "//*[$any$ ../b = .]",
    "//*[$any$ ../a/b = x]",
    "//*[$any$ a//b = x]",
    "//*[$any$ .//a//b = x]",
    "//*[$any$ ancestor(a)/b = x]",
    "//*[$any$ //b = .]",
    "//*[$any$ (.//b)[@k] = x]",
    "//*[$any$ (.//b | .//x) = c]",
    "//*[$any$ .//b!number() $ge$ x!number()]",
    "//*[$any$ .//b!nodeName() = x!nodeName()]",
};

std::uint64_t WorkOf(const char* text, const dom::Document& document) {
  const Pattern pattern = Compile(text);
  const QueryOptions options;
  Evaluator evaluator(pattern.GetCode(), document.AsNode().At(), options);
  static_cast<void>(evaluator.SelectAll());
  return evaluator.Work();
}

// `growth`: what four times the document may cost. `passes`: over the document, at most. Beside the
// growth the work itself: not hundreds.
void ExpectLinearWork(const char* pattern, const dom::Document& small, const dom::Document& large,
                      std::uint64_t growth, std::uint64_t passes) {
  const std::uint64_t once = WorkOf(pattern, small);
  const std::uint64_t fourTimes = WorkOf(pattern, large);
  const std::uint64_t nodes = large.AsNode().Data().NodeCount();
  // What is worth its making in the large one only is made in a few passes.
  EXPECT_LE(fourTimes, once * growth + nodes * 4 + 2000) << pattern;
  EXPECT_LE(fourTimes, nodes * passes) << pattern;
}

void ExpectLinearWork(const Shape& shape, Edited edited) {
  SCOPED_TRACE(shape.name);
  constexpr int kSize = 400;
  const dom::Document small = Loaded(shape.write(kSize), edited);
  const dom::Document large = Loaded(shape.write(kSize * 4), edited);
  for (const char* pattern : kPatterns) ExpectLinearWork(pattern, small, large, 6, 40);
  for (const char* pattern : kSortingPatterns) ExpectLinearWork(pattern, small, large, 8, 120);
}

TEST(Work, GrowsWithAParsedDocumentAndNotFaster) {
  for (const Shape& shape : kShapes) ExpectLinearWork(shape, Edited::kNo);
}

TEST(Work, GrowsWithAnEditedDocumentAndNotFaster) {
  for (const Shape& shape : kShapes) ExpectLinearWork(shape, Edited::kYes);
}

// What is the same in long texts is not gone through for each that asks; work is counted for each
// 64 bytes that are.
TEST(Work, DoesNotGrowWithLongTextsThatBeginAlike) {
  for (const char* pattern :
       {"//a[../l < ../m]", "//a[../@k < ../@j]", "//a[../@k $ieq$ ../@i]", "//a[../@k != ../@j]",
        "//a[../l $ilt$ ../@j]", "//a[$any$ ../node() < ../m]", "//a[../comment() < ../l]"}) {
    SCOPED_TRACE(pattern);
    std::uint64_t work[2];
    for (const int size : {0, 1}) {
      const std::string text = Times(size == 0 ? 2'000 : 200'000, "x");
      const dom::Document document =
          Loaded(Joined({"<r k='", text, "1' j='", text, "2' i='", text, "1'><l>", text, "1</l><m>",
                         text, "2</m><!--", text, "0-->", Times(1000, "<a/>"), "</r>"}),
                 Edited::kNo);
      work[size] = WorkOf(pattern, document);
    }
    EXPECT_LE(work[1], work[0] + std::uint64_t{200'000} / 64 * 40) << "not a thousand times";
  }
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
      if (!all && number++ % 16 != 0) continue;
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
