#include "platform/patterns/node_text.h"

#include "platform/dom/document_impl.h"
#include "platform/patterns/generators.h"
#include "platform/patterns/number_reading.h"
#include "platform/patterns/pattern_test.h"

#include <cmath>

namespace kx::patterns {
namespace {

// The text as comparisons see it is the property `text`, whatever the node and whether an index
// helps.
void ExpectTextsOfNodes(const dom::Document& document) {
  const dom::DocumentData& data = document.AsNode().Data();
  NodeTexts plain(data);
  TreeIndex index(data, dom::kDocumentNode);
  index.AddTexts();
  NodeTexts indexed(data);
  indexed.Use(index);
  std::string buffer;
  std::string other;
  std::vector<dom::NodeId> ids;
  for (Rank rank = 0; rank < index.Count(); ++rank) ids.push_back(index.NodeAt(rank));
  std::vector<std::string> texts;
  std::vector<double> numbers;
  for (const dom::NodeId id : ids) {
    const dom::Cursor at(&data, id);
    texts.emplace_back(plain.Of(at, buffer));
    EXPECT_EQ(indexed.Of(at, other), texts.back());
    numbers.push_back(ReadNumber(texts.back()));
    const double byIndex = indexed.NumberOf(at, other);
    EXPECT_TRUE(byIndex == numbers.back() || (std::isnan(byIndex) && std::isnan(numbers.back())))
        << texts.back();
  }
  // Last, as a handle may give a text a record of its own.
  for (std::size_t i = 0; i < ids.size(); ++i) {
    const dom::Node node(dom::Cursor(&data, ids[i]));
    if (node.Type() == dom::NodeType::kDocumentType) continue;
    EXPECT_EQ(texts[i], node.Text()) << Short(node) << " of " << document.Xml();
  }
}

TEST(NodeTexts, AreThePropertyTextOfEveryNode) {
  Dice dice(11);
  for (int i = 0; i < 200; ++i) {
    const dom::Document document = dom::NewDomDocument();
    document.AsNode().Data().Owner()->settings.preserveWhiteSpace = i % 2 == 0;
    ASSERT_TRUE(document.LoadXml(RandomDocument(dice)));
    if (i % 3 == 0) EditAtRandom(document, dice);
    ExpectTextsOfNodes(document);
  }
}

TEST(NodeTexts, KeepWhiteSpaceWhereItIsDeclared) {
  const dom::Document document = dom::NewDomDocument();
  document.AsNode().Data().Owner()->settings.preserveWhiteSpace = false;
  ASSERT_TRUE(document.LoadXml(
      "<r> 1 <a xml:space='preserve'> 2 <b> 3 <c xml:space='default'> 4 </c></b></a><d> "
      "<![CDATA[ 5 ]]> </d> 0000000000000000000000000000000000000000000000000000000000000000012 "
      "<e>3</e>  </r>"));
  ExpectTextsOfNodes(document);
}

TEST(NodeTexts, CountTheWorkOfPuttingThemTogether) {
  const dom::Document document = Parsed("<r><a>1</a><a>2</a></r>");
  NodeTexts texts(document.AsNode().Data());
  std::string buffer;
  EXPECT_EQ(texts.Of(document.DocumentElement().FirstChild().At(), buffer), "1");
  EXPECT_EQ(texts.Work(), 0U) << "one piece needs none";
  EXPECT_EQ(texts.Of(document.DocumentElement().At(), buffer), "12");
  EXPECT_GE(texts.Work(), 4U);
}

// Long texts are compared by what an index knows of them, others character by character.
TEST(NodeTexts, CompareAsTheirCharactersDo) {
  const std::string alike(3000, 'x');
  const std::string letters = [] {
    std::string text;
    for (int i = 0; i < 400; ++i) text += "aB\xC3\xA9\xC4\xB1\xF0\x90\x90\xA8";
    return text;
  }();
  const std::string upper = [] {
    std::string text;
    for (int i = 0; i < 400; ++i) text += "Ab\xC3\x89I\xF0\x90\x90\x80";
    return text;
  }();
  const std::string texts[] = {alike,
                               alike + "1",
                               alike + "2",
                               alike + "X",
                               letters,
                               upper,
                               letters + "z",
                               upper + "Z",
                               letters + "\xEF\xBF\xBD",
                               letters + "\xF0\x90\x90\xA8",
                               alike + "\xC3\xA9",
                               alike + "\xC3\x89"};
  std::string xml = "<r>";
  for (const std::string& text : texts) {
    for (const std::string_view part :
         {std::string_view("<a k='"), std::string_view(text), std::string_view("'>"),
          std::string_view(text), std::string_view("</a><b>"), std::string_view(text).substr(0, 2),
          std::string_view("<c/>"), std::string_view(text).substr(2), std::string_view("</b><!--"),
          std::string_view(text), std::string_view("-->")}) {
      xml += part;
    }
  }
  const dom::Document document = Parsed(xml + "</r>");
  const dom::DocumentData& data = document.AsNode().Data();
  TreeIndex index(data, dom::kDocumentNode);
  index.AddTexts();
  NodeTexts indexed(data);
  indexed.Use(index);
  std::string buffer;
  std::vector<std::string_view> all;
  for (Rank rank = 0; rank < index.Count(); ++rank) {
    const std::string_view text = indexed.Of(dom::Cursor(&data, index.NodeAt(rank)), buffer);
    const bool isIndexed = index.AllTexts().data() <= text.data() &&
                           text.data() < index.AllTexts().data() + index.AllTexts().size();
    EXPECT_TRUE(isIndexed || text.size() < TreeIndex::kLongText) << rank;
    if (text.size() >= TreeIndex::kLongText) all.push_back(text);
  }
  ASSERT_GT(all.size(), std::size(texts) * 4);
  const auto sign = [](int order) { return (order > 0) - (order < 0); };
  for (const std::string_view a : all) {
    for (const std::string_view b : all) {
      for (const CaseRule rule : {CaseRule::kExact, CaseRule::kIgnored}) {
        ASSERT_EQ(sign(indexed.Compare(a, b, rule)), sign(CompareTexts(a, b, rule)));
      }
    }
  }
}

}  // namespace
}  // namespace kx::patterns
