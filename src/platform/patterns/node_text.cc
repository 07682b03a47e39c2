// See node_text.h.
#include "platform/patterns/node_text.h"

#include "platform/dom/document_impl.h"
#include "platform/text/unicode.h"

#include <algorithm>
#include <optional>

namespace kx::patterns {

namespace {

using dom::Cursor;
using dom::NodeType;

constexpr bool IsBlank(char c) { return text::IsXmlSpace(static_cast<unsigned char>(c)); }

// Blanks go from both ends, but none of the `fixed` part.
std::string_view Trim(std::string_view text, TreeIndex::Part fixed) {
  std::size_t end = text.size();
  while (end > fixed.end && IsBlank(text[end - 1])) --end;
  const std::size_t latest = fixed.end == 0 ? end : fixed.begin;
  std::size_t begin = 0;
  while (begin < latest && IsBlank(text[begin])) ++begin;
  return text.substr(begin, end - begin);
}

// What the element itself says about its white space, if anything.
std::optional<bool> OwnSpaceRule(const Cursor& node) {
  if (!node.IsElement()) return std::nullopt;
  const Cursor space = node.FindAttribute("xml:space");
  if (!space) return std::nullopt;
  return space.TextContent() == "preserve";
}

}  // namespace

NodeTexts::NodeTexts(const dom::DocumentData& data) noexcept
    : data_(&data),
      trims_(data.Owner() != nullptr && !data.Owner()->settings.preserveWhiteSpace),
      someKeepsSpace_(trims_ && data.Names().FindQName("xml:space") != 0) {}

void NodeTexts::Use(const TreeIndex& index) {
  index_ = &index;
  if (!someKeepsSpace_) return;
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
      return !someKeepsSpace_ || !KeepsSpace(node);
    default:
      return false;
  }
}

std::string_view NodeTexts::Of(const Cursor& node, std::string& buffer) {
  if (node.Type() == NodeType::kDocumentType) return {};
  TreeIndex::Part fixed;
  const std::string_view text = node.HasWholeText() ? node.OwnText() : Collect(node, buffer, fixed);
  return IsTrimmed(node) ? Trim(text, fixed) : text;
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
