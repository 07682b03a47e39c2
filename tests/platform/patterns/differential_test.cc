// The library's evaluator beside the naive one: the same nodes, in the same order, for all small
// documents and patterns and for random ones; as a whole set, as the first node, with tables from
// the start, and after edits.
#include "platform/dom/parser.h"
#include "platform/patterns/evaluator.h"
#include "platform/patterns/generators.h"
#include "platform/patterns/naive_evaluator.h"
#include "platform/patterns/pattern.h"

#include <gtest/gtest.h>
#include <memory>

namespace kx::patterns {
namespace {

using dom::Cursor;
using dom::DocumentData;
using dom::NodeId;

QueryOptions Impatient() {
  QueryOptions options;
  options.patience = 0;
  return options;
}

NodeId FirstOf(const std::vector<NodeId>& nodes) {
  return nodes.empty() ? dom::kNoNode : nodes.front();
}

// One pattern from one node in every way; true when all agree.
bool Agree(const Pattern& pattern, const naive::Query& query, const DocumentData& data,
           const naive::Tree& tree, NodeId start) {
  const std::vector<NodeId> wanted = query.Select(tree, start);
  const Cursor at(&data, start);
  const Code& code = pattern.GetCode();
  const QueryOptions patient;
  const QueryOptions impatient = Impatient();
  EXPECT_EQ(Evaluator(code, at, patient).SelectAll(), wanted);
  EXPECT_EQ(Evaluator(code, at, impatient).SelectAll(), wanted);
  EXPECT_EQ(Evaluator(code, at, patient).SelectFirst(), FirstOf(wanted));
  EXPECT_EQ(Evaluator(code, at, impatient).SelectFirst(), FirstOf(wanted));
  EXPECT_EQ(Evaluator(code, at, patient).Holds(), !wanted.empty());
  return !testing::Test::HasFailure();
}

bool AgreeOnMatching(const Pattern& pattern, const naive::Query& query, const DocumentData& data,
                     const naive::Tree& tree, NodeId node) {
  const bool wanted = query.Matches(tree, node);
  const Cursor at(&data, node);
  const QueryOptions patient;
  const QueryOptions impatient = Impatient();
  EXPECT_EQ(Evaluator(pattern.GetCode(), at, patient).Matches(node), wanted);
  Evaluator tables(pattern.GetCode(), at, impatient);
  EXPECT_EQ(tables.Matches(node), wanted);
  EXPECT_EQ(tables.Matches(node), wanted) << "asked again";
  return !testing::Test::HasFailure();
}

TEST(BothEvaluators, AgreeOnAllSmallDocumentsAndPatterns) {
  struct Loaded {
    std::string text;
    std::unique_ptr<DocumentData> data;
    std::unique_ptr<naive::Tree> tree;
  };
  std::vector<Loaded> documents;
  std::size_t number = 0;
  for (const std::string& text : AllSmallDocuments(4)) {
    // All of up to three elements with a root named a, some of the rest.
    ++number;
    if (number % 13 != 0 && (number > 22 || text[1] != 'a')) continue;
    auto data = std::make_unique<DocumentData>(nullptr);
    dom::ParseError error;
    ASSERT_TRUE(dom::ParseText(*data, text, dom::ParseOptions{}, error)) << text;
    auto tree = std::make_unique<naive::Tree>(*data);
    documents.push_back({text, std::move(data), std::move(tree)});
  }
  for (const std::string& text : AllSmallPatterns()) {
    const Pattern pattern = Compile(text);
    const naive::Query query(text);
    for (const Loaded& document : documents) {
      SCOPED_TRACE(text + " of " + document.text);
      ASSERT_TRUE(Agree(pattern, query, *document.data, *document.tree, dom::kDocumentNode));
      const NodeId root = document.data->DocumentElement();
      ASSERT_TRUE(Agree(pattern, query, *document.data, *document.tree, root));
    }
  }
}

struct RandomCase {
  const char* name;
  std::uint64_t seed;
  bool edited;
};

class RandomDocuments : public testing::TestWithParam<RandomCase> {};

TEST_P(RandomDocuments, GiveTheSameToBothEvaluators) {
  Dice dice(GetParam().seed);
  for (int i = 0; i < 150; ++i) {
    const std::string text = RandomDocument(dice);
    const dom::Document document = dom::NewDomDocument();
    ASSERT_TRUE(document.LoadXml(text)) << text;
    if (GetParam().edited) EditAtRandom(document, dice);
    const DocumentData& data = document.Data();
    const naive::Tree tree(data);
    for (int j = 0; j < 12; ++j) {
      const std::string patternText = RandomPattern(dice);
      SCOPED_TRACE(patternText + " of " + document.Xml());
      const Pattern pattern = Compile(patternText);
      const naive::Query query(patternText);
      for (int k = 0; k < 4; ++k) {
        const auto size = static_cast<std::uint32_t>(tree.nodes.size());
        const NodeId start = tree.nodes[k == 0 ? 0 : dice.Roll(size)].id;
        SCOPED_TRACE("from node " + std::to_string(start));
        ASSERT_TRUE(Agree(pattern, query, data, tree, start));
        ASSERT_TRUE(AgreeOnMatching(pattern, query, data, tree, start));
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(BothEvaluators, RandomDocuments,
                         testing::Values(RandomCase{"Parsed", 1, false},
                                         RandomCase{"ParsedToo", 2, false},
                                         RandomCase{"Edited", 3, true},
                                         RandomCase{"EditedToo", 4, true}),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
}  // namespace kx::patterns
