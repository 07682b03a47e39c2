// See node_text.h.
#include "platform/patterns/node_text.h"

#include "platform/dom/document_impl.h"
#include "platform/patterns/number_reading.h"
#include "platform/text/unicode.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace kx::patterns {

namespace {

using dom::Cursor;
using dom::NodeType;

constexpr bool IsBlank(char c) { return text::IsXmlSpace(static_cast<unsigned char>(c)); }

// The text in upper case, but for characters that would be longer or shorter then.
std::string FoldedInPlace(std::string_view text) {
  std::string folded;
  folded.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const text::Utf8Char c = text::DecodeUtf8(text, at);
    const std::size_t begin = folded.size();
    text::AppendUtf8(folded, text::ToUpper(c.codePoint));
    if (folded.size() - begin != c.length) {
      folded.resize(begin);
      folded += text.substr(at, c.length);
    }
    at += c.length;
  }
  return folded;
}

// Longer texts are worth being looked up.
constexpr std::size_t kShortText = 64;

}  // namespace

// What the element itself says about its white space, if anything.
std::optional<bool> NodeTexts::OwnSpaceRule(const Cursor& node) {
  if (!node.IsElement()) return std::nullopt;
  for (Cursor at = node.FirstAttribute(); at; at = at.Next()) {
    ++work_;
    if (at.QualifiedName() == "xml:space") return at.TextContent() == "preserve";
  }
  return std::nullopt;
}

NodeTexts::NodeTexts(const dom::DocumentData& data) noexcept
    : data_(&data), trims_(data.Owner() != nullptr && !data.Owner()->settings.preserveWhiteSpace) {}

// Blanks go from both ends, but none of the `fixed` part.
std::string_view NodeTexts::Trim(std::string_view text, TreeIndex::Part fixed) const {
  std::size_t end = text.size();
  std::size_t begin = 0;
  if (runs_.Covers(text)) {
    end = std::max(fixed.end, runs_.BlanksBegin(text, end));
    begin = runs_.BlanksEnd(text, 0);
  } else {
    while (end > fixed.end && IsBlank(text[end - 1])) --end;
    while (begin < end && IsBlank(text[begin])) ++begin;
  }
  begin = std::min(begin, fixed.end == 0 ? end : fixed.begin);
  return text.substr(begin, end - begin);
}

bool NodeTexts::SomeKeepSpace() {
  if (!someKeepSpace_) someKeepSpace_ = trims_ && data_->Names().FindQName("xml:space") != 0;
  return *someKeepSpace_;
}

void NodeTexts::Use(const TreeIndex& index) {
  index_ = &index;
  runs_ = TextRuns(index.AllTexts());
  if (!SomeKeepSpace()) return;
  keepsSpace_.resize(index.Count());
  for (Rank rank = 0; rank < index.Count(); ++rank) {
    const Rank parent = index.ParentOf(rank);
    const bool inherited = parent != kNoRank && keepsSpace_[parent];
    const Cursor node(data_, index.NodeAt(rank));
    keepsSpace_[rank] = OwnSpaceRule(node).value_or(inherited);
  }
}

bool NodeTexts::KeepsSpace(const Cursor& node) {
  const Rank rank = index_ == nullptr ? kNoRank : index_->RankOf(node.Id());
  if (rank != kNoRank) return keepsSpace_[rank];
  for (Cursor at = node; at; at = at.Parent()) {
    ++work_;
    if (const std::optional<bool> rule = OwnSpaceRule(at)) return *rule;
  }
  return false;
}

bool NodeTexts::IsTrimmed(const Cursor& node) {
  if (!trims_) return false;
  switch (node.Type()) {
    case NodeType::kElement:
    case NodeType::kText:
    case NodeType::kDocument:
    case NodeType::kDocumentFragment:
    case NodeType::kEntityReference:
      return !SomeKeepSpace() || !KeepsSpace(node);
    default:
      return false;
  }
}

std::string_view NodeTexts::Of(const Cursor& node, std::string& buffer) {
  if (node.Type() == NodeType::kDocumentType) return {};
  TreeIndex::Part fixed;
  std::string_view text = node.HasWholeText() ? node.OwnText() : Collect(node, buffer, fixed);
  if (text.size() >= TreeIndex::kLongText && index_ != nullptr && node.HasWholeText()) {
    const Rank rank = index_->RankOf(node.Id());
    if (rank != kNoRank) text = index_->LongTextOf(rank);
  }
  return IsTrimmed(node) ? Trim(text, fixed) : text;
}

double NodeTexts::NumberOf(const Cursor& node, std::string& buffer) {
  for (const LongNumber& last : lastNumbers_) {
    if (last.node == node.Id() && node) return last.number;
  }
  const std::string_view text = Of(node, buffer);
  if (text.size() <= kShortText) return ReadNumber(text);
  const double number = runs_.Covers(text) ? ReadNumber(text, runs_) : ReadNumber(text);
  lastNumbers_[1] = std::exchange(lastNumbers_[0], {node.Id(), number});
  return number;
}

int NodeTexts::Compare(std::string_view a, std::string_view b, CaseRule caseRule) {
  TextPair pair(a, b);
  while (true) {
    pair.Skip(SameLength(pair.LeftOfA(), pair.LeftOfB(), caseRule));
    if (const std::optional<int> order = pair.CompareOne(caseRule)) return *order;
  }
}

// Case may be left out of account, or not.
std::size_t NodeTexts::SameLength(std::string_view a, std::string_view b, CaseRule caseRule) {
  const std::size_t most = std::min(a.size(), b.size());
  const bool isLong = most >= TreeIndex::kLongText && runs_.Covers(a) && runs_.Covers(b);
  const std::size_t first = isLong ? TreeIndex::kLongText / 2 : most;
  const std::size_t same = SameBytes(a.substr(0, first), b.substr(0, first));
  work_ += same / 64;
  if (same < first || !isLong) return same;
  ++work_;
  const std::string_view all = index_->AllTexts();
  const auto offset = [all](std::string_view part) {
    return static_cast<std::size_t>(part.data() - all.data());
  };
  return PrintsFor(caseRule).SameLength(offset(a), offset(b), most);
}

const TextPrints& NodeTexts::PrintsFor(CaseRule caseRule) {
  std::optional<TextPrints>& prints = caseRule == CaseRule::kExact ? prints_ : foldedPrints_;
  if (prints) return *prints;
  std::string_view text = index_->AllTexts();
  work_ += text.size() / 64;
  if (caseRule == CaseRule::kIgnored) {
    folded_ = FoldedInPlace(text);
    text = folded_;
  }
  return prints.emplace(text, TextPrints::NewKey());
}

std::string_view NodeTexts::Collect(const Cursor& node, std::string& buffer,
                                    TreeIndex::Part& fixed) {
  if (index_ != nullptr && node.Type() != NodeType::kAttribute) {
    const Rank rank = index_->RankOf(node.Id());
    if (rank != kNoRank) {
      if (trims_) fixed = index_->CDataBelow(rank);
      return index_->TextBelow(rank);
    }
  }
  buffer.clear();
  for (Cursor at = node.FirstChild(); at; at = at.NextInTree(node)) {
    ++work_;
    if (!at.IsText()) continue;
    const std::string_view text = at.OwnText();
    if (at.Type() == NodeType::kCData && !text.empty()) {
      if (fixed.end == 0) fixed.begin = buffer.size();
      fixed.end = buffer.size() + text.size();
    }
    buffer += text;
    work_ += text.size() / 64;
  }
  return buffer;
}

}  // namespace kx::patterns
