#include "platform/xdr/content_model.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace kx::xdr {
namespace {

/// A model in text: (ab) a sequence, [ab] a choice, {ab} many; letters are children; ? * + behind.
struct Parsed {
  ContentModel model;
  explicit Parsed(const std::string& text) : model(OrderOf(text[0])) {
    std::size_t at = 1;
    Read(text, at, ContentModel::kStart);
    Symbol symbol = kNoSymbol;
    EXPECT_TRUE(model.Finish(symbol));
  }
  static Order OrderOf(char c) {
    return c == '(' ? Order::kSeq : c == '[' ? Order::kOne : Order::kMany;
  }
  static std::size_t Close(const std::string& text, std::size_t at) {
    int depth = 0;
    for (;; ++at) {
      if (std::string("([{").find(text[at]) != std::string::npos) ++depth;
      if (std::string(")]}").find(text[at]) != std::string::npos && --depth == 0) return at;
    }
  }
  void Read(const std::string& text, std::size_t& at, ContentModel::Place parent) {
    while (std::string(")]}").find(text[at]) == std::string::npos) {
      const bool group = std::string("([{").find(text[at]) != std::string::npos;
      const std::size_t end = group ? Close(text, at) : at;
      const char sign = end + 1 < text.size() ? text[end + 1] : ' ';
      const bool optional = sign == '?' || sign == '*';
      const bool repeats = sign == '+' || sign == '*';
      if (group) {
        const auto place = model.AddGroup(parent, OrderOf(text[at]), optional, repeats);
        Read(text, ++at, place);
      } else {
        model.AddChild(parent, static_cast<Symbol>(text[at] - 'a'), optional, repeats);
      }
      at = end + 1 + (optional || repeats ? 1 : 0);
    }
  }
  [[nodiscard]] bool Accepts(const std::string& word) const {
    std::vector<ContentModel::Place> states = {ContentModel::kStart};
    for (const char c : word) {
      std::vector<ContentModel::Place> next;
      for (auto place = model.FindPlace(static_cast<Symbol>(c - 'a')); place != 0;
           place = model.NextPlace(place)) {
        for (const auto from : states) {
          if (!model.Takes(from, place)) continue;
          next.push_back(place);
          break;
        }
      }
      if (next.empty()) return false;
      states = next;
    }
    for (const auto place : states) {
      if (model.MayEnd(place)) return true;
    }
    return false;
  }
};

// The naive matcher: all ends that an expression can reach from a start.
class Naive {
 public:
  Naive(const std::string& model, const std::string& word) : model_(model), word_(word) {}
  bool Accepts() {
    std::size_t at = 0;
    const std::set<std::size_t> ends = Item(at, {0});
    return ends.count(word_.size()) != 0;
  }

 private:
  using Ends = std::set<std::size_t>;
  Ends Item(std::size_t& at, const Ends& starts) {
    const std::size_t begin = at;
    const bool group = std::string("([{").find(model_[at]) != std::string::npos;
    const std::size_t close = group ? Parsed::Close(model_, at) : at;
    const char sign = close + 1 < model_.size() ? model_[close + 1] : ' ';
    Ends all;
    Ends now = starts;
    while (true) {
      Ends next = group ? Group(begin, close, now) : Letter(begin, now);
      const std::size_t before = all.size();
      all.insert(next.begin(), next.end());
      if ((sign != '*' && sign != '+') || all.size() == before) break;
      now = next;
    }
    if (sign == '?' || sign == '*') all.insert(starts.begin(), starts.end());
    at = close + 1 + (std::string("?*+").find(sign) != std::string::npos ? 1 : 0);
    return all;
  }
  Ends Letter(std::size_t at, const Ends& starts) const {
    Ends ends;
    for (const std::size_t start : starts) {
      if (start < word_.size() && word_[start] == model_[at]) ends.insert(start + 1);
    }
    return ends;
  }
  Ends Group(std::size_t begin, std::size_t close, const Ends& starts) {
    std::size_t at = begin + 1;
    if (model_[begin] == '(') {
      Ends now = starts;
      while (at < close) now = Item(at, now);
      return now;
    }
    Ends ends;
    if (at == close) return starts;
    Ends now = starts;
    if (model_[begin] == '{') ends = starts;
    while (true) {
      const std::size_t before = ends.size();
      Ends next;
      for (at = begin + 1; at < close;) {
        const Ends one = Item(at, now);
        next.insert(one.begin(), one.end());
      }
      ends.insert(next.begin(), next.end());
      if (model_[begin] == '[' || ends.size() == before) return ends;
      now = next;
    }
  }
  const std::string& model_;
  const std::string& word_;
};

constexpr const char* kModels[] = {
    "(abc)",          "(a?b?c?)",      "(a*b+)",         "[abc]",         "[a?b]",
    "{ab}",           "((ab)*c)",      "([ab]+c?)",      "(a[b(ca)]a)",   "((a?b?)+c)",
    "(a?a)",          "(a*a)",         "((ab)?(ac)?)",   "([aa]b)",       "((a?)*b)",
    "({ab}c)",        "([(ab)(ac)]+)", "((a+b?)+)",      "(((a)))",       "(a()b)",
    "([]a)",          "[(a?b?)c]",     "((a(b(c)?)?)*)", "([a{bc}]?a)",   "(a+b*a?)+",
    "((ab?)+(b?c)+)", "{(ab)c}",       "[(a*)(b*)]",     "((a?b)(c?a)?)", "([ab]?[bc]?[ca]?)",
    "((a[bc]?)+a)",   "(((a?b?)c?)+a)"};

Parsed ParsedWithGroup(std::string model) {
  if (model.back() == '+') model.insert(0, "(").append(")");
  return Parsed(model);
}

TEST(ContentModel, MatchesExactlyWhatANaiveMatcherDoes) {
  for (const char* text : kModels) {
    std::string model = text;
    if (model.back() == '+') model.insert(0, "(").append(")");
    const Parsed parsed(model);
    for (int length = 0; length <= 6; ++length) {
      int words = 1;
      for (int i = 0; i < length; ++i) words *= 3;
      for (int number = 0; number < words; ++number) {
        std::string word;
        for (int i = 0, rest = number; i < length; ++i, rest /= 3) {
          word += static_cast<char>('a' + rest % 3);
        }
        ASSERT_EQ(parsed.Accepts(word), Naive(model, word).Accepts()) << model << " " << word;
      }
    }
  }
}

TEST(ContentModel, TakesAStepExactlyWhenTheTreeAllowsIt) {
  for (const char* text : kModels) {
    const Parsed parsed = ParsedWithGroup(text);
    std::vector<ContentModel::Place> places = {ContentModel::kStart};
    for (Symbol symbol = 0; symbol < 3; ++symbol) {
      for (auto place = parsed.model.FindPlace(symbol); place != ContentModel::kStart;
           place = parsed.model.NextPlace(place)) {
        places.push_back(place);
      }
    }
    for (const auto from : places) {
      for (std::size_t i = 1; i < places.size(); ++i) {
        EXPECT_EQ(parsed.model.Takes(from, places[i]), parsed.model.MayFollow(from, places[i]))
            << text << " " << from << " " << places[i];
      }
    }
  }
}

TEST(ContentModel, ExpectsTheNamesThatMayComeNextInDeclaredOrder) {
  const Parsed parsed("(a?[bc]+a)");
  const ContentModel::Place start = ContentModel::kStart;
  EXPECT_EQ(parsed.model.Expected({&start, 1}), (std::vector<Symbol>{0, 1, 2}));
  const ContentModel::Place b = parsed.model.FindPlace(1);
  EXPECT_EQ(parsed.model.Expected({&b, 1}), (std::vector<Symbol>{1, 2, 0}));
}

// Nothing is multiplied out: not repetitions, not the alternatives of nested groups.
TEST(ContentModel, HasOnePlaceForEachDeclarationAndGroup) {
  ContentModel model(Order::kSeq);
  ContentModel::Place group = ContentModel::kStart;
  std::size_t places = 1;
  for (Symbol symbol = 0; symbol < 10000; ++symbol) {
    const bool deep = model.DepthOf(group) + 1 >= ContentModel::kMostDepth;
    group = model.AddGroup(deep ? ContentModel::kStart : group,
                           symbol % 3 == 0 ? Order::kOne : Order::kSeq, true, true);
    model.AddChild(group, symbol, true, true);
    places += 2;
  }
  Symbol symbol = kNoSymbol;
  ASSERT_TRUE(model.Finish(symbol));
  EXPECT_EQ(model.Size(), places);
  EXPECT_FALSE(model.IsAmbiguous());
  EXPECT_TRUE(model.Takes(model.FindPlace(9999), model.FindPlace(9999)));
}

TEST(ContentModel, RefusesANameInTooManyPlaces) {
  ContentModel model(Order::kSeq);
  for (std::uint32_t i = 0; i <= ContentModel::kMostPlaces; ++i) {
    model.AddChild(ContentModel::kStart, 3, true, false);
  }
  Symbol symbol = kNoSymbol;
  EXPECT_FALSE(model.Finish(symbol));
  EXPECT_EQ(symbol, 3U);
}

}  // namespace
}  // namespace kx::xdr
