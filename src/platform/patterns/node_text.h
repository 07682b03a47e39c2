// The text of a node as comparisons see it: its `text` property. Concatenated text and CDATA below
// an element; the data of everything else; trimmed at both ends, CDATA excepted, in a document that
// does not preserve white space.
//
// Texts that lie in one piece are views of the document. The others are put together, and the work
// of that is counted: when it exceeds the document's size, whoever asks may supply a TreeIndex.
// Then nothing is gone through twice for elements inside one another, neither to trim their texts
// nor to read them as numbers.
#pragma once

#include "platform/dom/cursor.h"
#include "platform/patterns/text_prints.h"
#include "platform/patterns/text_runs.h"
#include "platform/patterns/tree_index.h"
#include "platform/patterns/value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kx::patterns {

class NodeTexts {
 public:
  explicit NodeTexts(const dom::DocumentData& data) noexcept;

  /// The text, in `buffer` when it has to be put together. Kept in step with Node::Text() by a
  /// test.
  [[nodiscard]] std::string_view Of(const dom::Cursor& node, std::string& buffer);

  /// The number that the text reads as; kUnreadable when it does not.
  [[nodiscard]] double NumberOf(const dom::Cursor& node, std::string& buffer);

  /// The order of two texts that Of() gave, or other ones: below zero, zero or above zero. What is
  /// long and the same at the beginning is not gone through each time.
  [[nodiscard]] int Compare(std::string_view a, std::string_view b, CaseRule caseRule);

  /// A text that Of() gave, without blanks at its ends.
  [[nodiscard]] std::string_view WithoutBlanks(std::string_view text) const {
    return Trim(text, {});
  }

  /// Nodes visited to put texts together so far, and what was compared, in units of 64 bytes.
  [[nodiscard]] std::uint64_t Work() const noexcept { return work_; }
  /// From now on texts come from `index`, which has its texts and outlives this.
  void Use(const TreeIndex& index);

 private:
  [[nodiscard]] std::size_t SameLength(std::string_view a, std::string_view b, CaseRule caseRule);
  [[nodiscard]] const TextPrints& PrintsFor(CaseRule caseRule);
  [[nodiscard]] std::string_view Collect(const dom::Cursor& node, std::string& buffer,
                                         TreeIndex::Part& fixed);
  [[nodiscard]] std::string_view Trim(std::string_view text, TreeIndex::Part fixed) const;
  [[nodiscard]] bool SomeKeepSpace();
  [[nodiscard]] bool IsTrimmed(const dom::Cursor& node);
  [[nodiscard]] std::optional<bool> OwnSpaceRule(const dom::Cursor& node);
  [[nodiscard]] bool KeepsSpace(const dom::Cursor& node);

  const dom::DocumentData* data_;
  const TreeIndex* index_ = nullptr;
  TextRuns runs_;                           // of the index's texts
  std::optional<TextPrints> prints_;        // of them, once two long ones were compared
  std::optional<TextPrints> foldedPrints_;  // of them without regard to case
  std::string folded_;
  std::vector<bool> keepsSpace_;  // by rank in index_, when any node may keep its space
  /// The last long texts that were read as numbers.
  struct LongNumber {
    dom::NodeId node = dom::kNoNode;
    double number = 0;
  };
  LongNumber lastNumbers_[2];
  std::uint64_t work_ = 0;
  bool trims_;                         // the document does not preserve white space
  std::optional<bool> someKeepSpace_;  // but some xml:space may say otherwise; once it was asked
};

}  // namespace kx::patterns
