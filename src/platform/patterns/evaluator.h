// Asks a compiled pattern of a document. One object answers one query (or, for matching, a series
// of them while nothing edits the document).
//
// How it stays linear:
//   - A path works step by step on whole sets, in one stack of nodes; each set is free of
//     duplicates, so no step is taken twice from the same node. Groups, ".." and ancestor() are
//     taken from the whole set at once.
//   - A path in a filter stops at the first node where that is enough. What does not depend on the
//     candidate is asked once.
//   - Expressions whose work can overlap between candidates ("..", "//", "ancestor()", places in
//     groups, texts of nested elements, order in edited documents) are watched: when one has cost
//     as much as the document is big, it is answered for all nodes at once, by a table
//     (evaluator_tables.cc, tree_index.h). All work is counted; a test holds the counts.
//   - Where candidates ask different things of sets that overlap (a place far from the ends of a
//     group, "$any$" of members compared with what differs by candidate), the sets are listed as
//     spans of one list, with the values in order beside it (evaluator_lists.cc, value_list.h).
//   - Long texts that begin alike are compared by what is known of their parts (text_prints.h).
//   - What is not linear: docs/architecture.md.
//   - Recursion follows the pattern's own nesting, which is bounded, never the document's depth.
//
// What lives where: this file and evaluator.cc, sets and paths; evaluator_steps.cc, candidates and
// filters; evaluator_values.cc, conditions and comparisons; evaluator_members.cc, those of any and
// all; evaluator_matching.cc, ancestors and matching; evaluator_tables.cc, tables for all nodes;
// evaluator_lists.cc, lists of overlapping sets.
#pragma once

#include "platform/dom/cursor.h"
#include "platform/patterns/bound_names.h"
#include "platform/patterns/document_order.h"
#include "platform/patterns/lead_table.h"
#include "platform/patterns/node_ids.h"
#include "platform/patterns/node_text.h"
#include "platform/patterns/pattern_code.h"
#include "platform/patterns/query_options.h"
#include "platform/patterns/set_listing.h"
#include "platform/patterns/tree_index.h"
#include "platform/patterns/value_list.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kx::patterns {

class Evaluator {
 public:
  /// `start`: the context of the query. Everything given outlives this.
  Evaluator(const Code& code, const dom::Cursor& start, const QueryOptions& options);
  Evaluator(const Evaluator&) = delete;
  Evaluator& operator=(const Evaluator&) = delete;

  /// All nodes, in document order.
  [[nodiscard]] std::vector<dom::NodeId> SelectAll();
  /// The same into `found`, which is empty.
  void SelectAll(NodeIds& found);
  /// The first of them, or kNoNode.
  [[nodiscard]] dom::NodeId SelectFirst();
  /// The truth of the pattern as a condition: for nodes, whether there are any.
  [[nodiscard]] bool Holds();
  /// True when the pattern, asked from some node above `node` (from the document for a leading
  /// slash), gives it.
  [[nodiscard]] bool Matches(dom::NodeId node);
  /// Nodes looked at so far, those that tables and order took included: what a query costs, in a
  /// number that depends on nothing but the document and the pattern.
  [[nodiscard]] std::uint64_t Work() const noexcept {
    return work_ + order_.Work() + texts_.Work();
  }

 private:
  using NodeId = dom::NodeId;
  using NodeRecord = dom::NodeRecord;

  /// A candidate and its place in the list that a filter looks through.
  struct Place {
    NodeId node = dom::kNoNode;
    std::uint32_t index = 0;
    std::uint32_t count = 1;
  };
  /// How much of a set is wanted.
  enum class Limit : unsigned char { kAll, kFirst, kAnyOne };
  /// What is known of the set at the end of the stack.
  enum class Order : unsigned char {
    kFlat,     ///< in document order, none inside another
    kSorted,   ///< in document order
    kUnknown,  ///< free of duplicates only
    kMixed,    ///< nothing
  };
  struct Value;
  /// An answer that does not depend on the context node.
  struct Invariant {
    std::optional<NodeId> first;
    std::optional<std::vector<NodeId>> all;
    std::optional<bool> holds;
  };
  /// An expression whose work may overlap between context nodes.
  struct Site {
    std::uint64_t work = 0;
    LeadTable table;  ///< the answer by the context node's rank, once it is worth it
  };
  struct MatchSite {
    std::uint64_t work = 0;
    std::vector<bool> matches;  ///< by rank
    std::vector<Rank> nearest;  ///< by rank: the nearest ancestor that matches
  };
  /// A place in a group's list: that of the step's filter number `filter`, `places` from an end.
  struct Pick {
    std::uint32_t filter;
    std::uint64_t places;
    LeadEnd end;
  };
  /// How the members of a set are read to be compared.
  enum class Reading : unsigned char {
    kTexts,
    kNumbers,
    kDates,
    kTypedNumbers,   ///< of those that have such a type
    kAllButNumbers,  ///< the texts of the others
    kTypedDates,     ///< of those that have such a type
    kAllButDates,    ///< the texts of the others
  };
  static constexpr std::size_t kReadings = 7;
  /// What only some queries need.
  struct Memory {
    std::unique_ptr<TreeIndex> index;
    std::unordered_map<ExprId, Invariant> invariants;
    std::unordered_map<ExprId, Site> sites;
    std::unordered_map<ExprId, Site> secondSites;
    std::unordered_map<ExprId, MatchSite> matchSites;
    std::unordered_map<ExprId, std::unique_ptr<SetListing>> listings;  // null: it has none
    std::unordered_map<ExprId, std::array<std::optional<ValueList>, kReadings>> values;
    /// Truths that no table has, by rank.
    std::unordered_map<ExprId, std::unordered_map<Rank, bool>> truths;
    std::optional<std::unordered_map<std::string, NodeId>> ids;
    std::size_t longestId = 0;

    void Keep(ExprId id, Rank rank, bool holds) { truths[id][rank] = holds; }
    [[nodiscard]] std::optional<bool> Find(ExprId id, Rank rank) {
      const auto& known = truths[id];
      const auto found = known.find(rank);
      return found == known.end() ? std::nullopt : std::optional(found->second);
    }
  };
  Memory& Remembered() {
    if (!memory_) memory_ = std::make_unique<Memory>();
    return *memory_;
  }

  // Sets (evaluator.cc)
  // ----------------------------------------------------------------------------

  void PushSet(ExprId id, NodeId context);
  void PushUnion(const Expr& expr, NodeId context);
  [[nodiscard]] const std::vector<NodeId>& InvariantSet(ExprId id);
  [[nodiscard]] NodeId InvariantFirst(ExprId id);
  [[nodiscard]] NodeId FirstOf(ExprId id, NodeId context);
  [[nodiscard]] NodeId FirstOfUnion(const Expr& expr, NodeId context);
  [[nodiscard]] bool Exists(ExprId id, NodeId context);
  [[nodiscard]] NodeId FirstByWatching(ExprId id, NodeId context, Limit limit);
  [[nodiscard]] NodeId FirstDirectly(ExprId id, NodeId context, Limit limit);
  [[nodiscard]] NodeId FirstAlong(const Step* step, const Step* end, NodeId context);
  template <class Visit>
  bool VisitAlong(const Step* step, const Step* end, NodeId context, const Visit& visit);
  void PushPath(const Expr& path, NodeId context, Limit limit);
  void TakeSteps(const Expr& path, std::size_t base, Order order, Limit limit);
  [[nodiscard]] bool CanFinishWhileScanning(const Expr& path, std::uint32_t scan, std::size_t base,
                                            Limit limit) const;
  void FinishWhileScanning(const Expr& path, std::uint32_t scan, std::size_t base, Limit limit);
  [[nodiscard]] Order TakeStep(const Step& step, std::size_t base, Order order, Limit limit);
  [[nodiscard]] Order StepFromEach(const Step& step, std::size_t base, Order order, Limit limit);
  [[nodiscard]] Order OrderAfter(const Step& step, Order before, std::size_t contexts) const;
  void StepFromAll(const Step& step, std::size_t base, Order order);
  void SetFromAll(ExprId id, std::size_t base, Order order);
  void Sort(std::size_t base, Order& order);
  void PutInOrder(std::size_t base);
  void PrepareOrder(std::size_t base);
  void DropBelow(std::size_t base, std::size_t end);

  // Steps (evaluator_steps.cc)
  // ---------------------------------------------------------------------

  enum class Stop : unsigned char { kAtEnd, kAtFirst };
  void StepFrom(const Step& step, NodeId context, Stop stop);
  void PushPlaced(const Step& step, NodeId context);
  void PushOther(const Step& step, NodeId context);
  void PushContext(const Step& step);
  void PushIds(const Step& step, NodeId context);
  void PushIdsIn(NodeId node);
  void PushId(std::string_view value);
  [[nodiscard]] const std::unordered_map<std::string, NodeId>& Ids();
  [[nodiscard]] bool IsId(const dom::Cursor& attribute) const;
  void FilterList(const Step& step, std::size_t base, std::uint32_t firstFilter);
  void FilterOnce(const Filter& filter, std::size_t base);
  /// For steps whose filters ask for no places.
  [[nodiscard]] bool PassesAll(const Step& step, NodeId node) {
    return step.filterCount == 0 || PassesFilters(step, node);
  }
  [[nodiscard]] bool PassesFilters(const Step& step, NodeId node) {
    return PassesFirst(step, step.filterCount, node);
  }
  [[nodiscard]] bool PassesFirst(const Step& step, std::uint32_t count, NodeId node);
  [[nodiscard]] bool Passes(const Filter& filter, const Place& place);
  [[nodiscard]] bool AttributeEquals(const Filter& filter, NodeId node);
  [[nodiscard]] bool PassesTest(const NodeTest& test, const NodeRecord& record) const {
    if ((test.types >> static_cast<unsigned>(record.type) & 1U) == 0) return false;
    return test.rule == NameRule::kAny || PassesName(test, record);
  }
  [[nodiscard]] bool PassesName(const NodeTest& test, const NodeRecord& record) const;
  [[nodiscard]] bool TakesInlineText(const NodeTest& test) const {
    return (test.types & TypeBit(dom::NodeType::kText)) != 0 && test.rule == NameRule::kAny;
  }
  [[nodiscard]] NodeId FindAttribute(NodeId node, std::uint32_t name);
  [[nodiscard]] NodeId ParentOf(NodeId id) const;
  /// The first child that has a record of its own.
  [[nodiscard]] NodeId FirstLinkedChild(NodeId id) const {
    const NodeRecord& record = records_[id];
    const bool none = (record.flags & dom::kInlineText) != 0 || dom::IsCharacterData(record.type);
    return none ? dom::kNoNode : record.first;
  }
  [[nodiscard]] Order Scan(const Step& step, std::size_t base);
  [[nodiscard]] Order ExpandBelow(std::size_t base);
  [[nodiscard]] bool CanScanFrom(const Step& step, std::size_t base) const;
  void ExpandTrees(const std::vector<NodeId>& contexts);
  void ExpandOne(NodeId context);
  [[nodiscard]] bool IsInAttribute(NodeId id) const;
  // Templates, in evaluator_scan.h; what is passed in answers false to stop.
  template <class Visit>
  void ForEachCandidate(const Step& step, NodeId context, const Visit& visit);
  template <class Visit>
  void ForEachLinked(const NodeTest& test, NodeId first, const Visit& visit);
  template <class Found>
  Order ScanBelow(const Step& step, std::size_t base, const Found& found);
  template <class Test, class Found>
  Order ScanWith(const Step& step, std::size_t base, const Test& test, const Found& found);

  // Values (evaluator_values.cc)
  // -------------------------------------------------------------------

  [[nodiscard]] bool IsTrue(ExprId id, const Place& place);
  [[nodiscard]] bool HoldsForList(const Expr& expr, const Place& place);
  [[nodiscard]] bool IsValueTrue(const Value& value);
  [[nodiscard]] bool HoldsComparison(ExprId id, const Place& place);
  [[nodiscard]] bool HoldsForValues(const Expr& expr, const Value& left, const Value& right);
  [[nodiscard]] bool HoldsForNodes(const Expr& expr, const Value& left, const Value& right);
  [[nodiscard]] bool HoldsForTextsOf(const Expr& expr, std::string_view left,
                                     std::string_view right);
  [[nodiscard]] Value OperandValue(ExprId id, const Place& place);
  [[nodiscard]] Value InfoValue(const Expr& expr, const Place& place);
  [[nodiscard]] Value MethodValue(const Expr& expr, const Place& subject);
  [[nodiscard]] Value ConvertedValue(const Expr& expr, NodeId subject);
  [[nodiscard]] static Value NodeValue(NodeId node);
  [[nodiscard]] static Value TextValue(std::string_view text);
  [[nodiscard]] static Value NumberValue(double number);
  [[nodiscard]] std::string_view NodeNameOf(NodeId node) const;
  [[nodiscard]] NodeTexts& Texts();
  void IndexTexts();
  [[nodiscard]] std::string_view WithoutBlanks(NodeId node);
  [[nodiscard]] std::string_view TextOf(NodeId node, std::string& buffer);
  [[nodiscard]] std::string_view TextOf(const Value& value, std::string& buffer);
  [[nodiscard]] double NumberOf(const Value& value);
  [[nodiscard]] double DateOf(const Value& value);
  [[nodiscard]] datatypes::DataType TypeOf(NodeId node);
  [[nodiscard]] Value TypedValueOf(NodeId node);
  [[nodiscard]] dom::Cursor At(NodeId node) const { return {data_, node}; }
  [[nodiscard]] bool IsAttribute(NodeId node) const {
    return At(node).Type() == dom::NodeType::kAttribute;
  }

  // Any and all of many (evaluator_members.cc)
  // -----------------------------------------------------

  [[nodiscard]] ExprId MembersOf(const Expr& expr) const;
  [[nodiscard]] bool AsksPlaces(const Expr& expr) const;
  [[nodiscard]] bool HoldsForMembers(ExprId id, const Place& place);
  [[nodiscard]] bool HoldsDirectly(const Expr& expr, ExprId members, const Place& place);
  [[nodiscard]] bool RightMissing(const Expr& expr, ExprId members, const Place& place);
  [[nodiscard]] bool HoldsByWatching(ExprId id, ExprId members, const Place& place);
  [[nodiscard]] bool HoldsByTable(ExprId id, ExprId members, Rank rank);
  [[nodiscard]] LeadTable DecidingRanks(const Expr& expr);
  [[nodiscard]] bool HoldsForMember(const Expr& expr, const Place& member, const Value& right);
  [[nodiscard]] std::optional<bool> HoldsByListing(ExprId id, ExprId members, Rank rank,
                                                   const Place& place);
  [[nodiscard]] bool HoldsForPlaces(const Expr& expr, std::uint32_t count, const Value& right);
  [[nodiscard]] bool SomeListed(ExprId id, const SetListing& listing, Rank rank,
                                const Value& right);
  [[nodiscard]] bool SomeListedAs(ExprId id, Reading reading, const SetListing& listing, Rank rank,
                                  const Value& right);
  [[nodiscard]] ValueList::TextOrder OrderOf(const Expr& expr);
  [[nodiscard]] const ValueList& ValuesOf(ExprId id, Reading reading, const SetListing& listing);
  void ReadMember(const Expr& expr, Reading reading, NodeId node, ValueList& values);

  // Matching (evaluator_matching.cc)
  // ---------------------------------------------------------------

  [[nodiscard]] NodeId NearestAncestor(ExprId pattern, NodeId node);
  [[nodiscard]] bool MatchesExpr(ExprId id, NodeId node);
  [[nodiscard]] bool MatchesDirectly(ExprId id, NodeId node);
  [[nodiscard]] const MatchSite& MatchesOf(ExprId id);
  [[nodiscard]] bool MatchesChain(const Expr& path, NodeId node);
  [[nodiscard]] bool BeginsAt(const Expr& path, NodeId parent) const;
  [[nodiscard]] bool IsInDocument(NodeId node);
  [[nodiscard]] bool Survives(const Step& step, NodeId node, NodeId parent);
  [[nodiscard]] std::optional<bool> MatchesFromAbove(ExprId id, NodeId node, std::uint64_t most);
  void FillMatches(ExprId id);
  void AddMatches(ExprId id, std::vector<bool>& matches);
  void AddMatchesBelow(const Expr& path, std::vector<bool>& matches);
  void AddMatchesFrom(const Expr& path, Rank above, std::vector<bool>& matches);
  /// A step from one node to the only one that it leads to from there.
  struct Way {
    Rank to;
    Rank from;
  };
  void AddMatchesBelowShared(const Expr& rest, std::vector<Way>& ways, std::vector<bool>& matches);
  [[nodiscard]] std::vector<Way> WaysThrough(const Step& step);
  void FindRanks(const Expr& path, Rank context, std::vector<Rank>& found);
  [[nodiscard]] bool AddMatchesThrough(const Expr& path, std::vector<bool>& matches);
  void MarkFrom(std::size_t base, Rank first, Rank end, std::vector<bool>& matches);

  // Tables (evaluator_tables.cc)
  // -------------------------------------------------------------------

  [[nodiscard]] const TreeIndex& Index();
  [[nodiscard]] Rank ParentRank(Rank rank);
  /// The rank of the first node; a document whose content has been replaced has no nodes.
  [[nodiscard]] Rank FirstRank() const noexcept { return retired_ ? 1 : 0; }
  [[nodiscard]] LeadTable OwnRanks(std::uint32_t places, LeadEnd end);
  [[nodiscard]] LeadTable Tabulate(ExprId id, const LeadTable& last);
  [[nodiscard]] LeadTable TabulatePath(const Expr& path, LeadTable table);
  [[nodiscard]] LeadTable TabulateStep(const Step& step, const LeadTable& next);
  [[nodiscard]] LeadTable Filtered(const Step& step, std::uint32_t count, const LeadTable& next);
  using Part = TreeIndex::Part;  // of the index's texts
  [[nodiscard]] LeadTable ThroughIds(const LeadTable& next);
  [[nodiscard]] static std::vector<Part> WordsOf(std::string_view text);
  [[nodiscard]] Part TextPartOf(Rank rank);
  void AddWholeWords(const std::vector<Part>& words, const LeadTable& next, LeadTable& table);
  void PushCutWords(const std::vector<Part>& words, Rank rank);
  void JoinFound(std::size_t base, Rank from, const LeadTable& next, LeadTable& table);
  void TabulateCandidates(const Step& step, const LeadTable& next, LeadTable& table);
  void TabulateLists(const Step& step, const LeadTable& next, LeadTable& table);
  void TabulateSingle(const Step& step, const LeadTable& next, LeadTable& table);
  [[nodiscard]] Rank TargetOf(const Step& step, Rank rank);
  void SpreadUpwards(LeadTable& table);
  [[nodiscard]] std::optional<Pick> PickOf(const Step& step) const;
  void PushGroup(const Step& step, NodeId context);
  [[nodiscard]] std::optional<Rank> FindPlace(const Step& step, const Pick& pick, Rank rank);
  [[nodiscard]] const LeadTable& PicksOf(const Step& step, const Pick& pick);
  [[nodiscard]] bool HasSecond(ExprId id, NodeId context);

  // Lists of overlapping sets (evaluator_lists.cc)
  // -----------------------------------------------------------------

  /// From one node to one that it leads to.
  struct Lead {
    Rank from;
    Rank to;
  };
  /// Which members a listing takes, and when it is given up.
  struct Listed {
    std::uint64_t most;          ///< work
    const Step* step = nullptr;  ///< whose first `filters` filters a member must pass
    std::uint32_t filters = 0;
    const Listed* outer = nullptr;  ///< which it must pass as well
  };
  [[nodiscard]] const SetListing* ListingOf(ExprId id, const Step* step, std::uint32_t filters);
  [[nodiscard]] std::uint64_t MostListed();
  [[nodiscard]] bool ListExpr(ExprId id, const Listed& listed, SetListing& listing);
  [[nodiscard]] bool ListInvariant(ExprId id, const Listed& listed, SetListing& listing);
  [[nodiscard]] bool ListPath(const Expr& path, const Listed& listed, SetListing& listing);
  void FollowSingle(const Step& step, std::vector<Rank>& targets);
  [[nodiscard]] bool ListLevel(const Expr& path, const std::vector<bool>& wanted,
                               const Listed& listed, SetListing& listing, SetListing::Part& part);
  [[nodiscard]] bool ListBelow(const Expr& path, std::uint32_t level,
                               const std::vector<bool>& wanted, const Listed& listed,
                               SetListing& listing, SetListing::Part& part);
  [[nodiscard]] bool PassesAllOf(const Listed& listed, NodeId node);
  [[nodiscard]] bool IsPlainChain(const Expr& path) const;
  void FindChainLeads(const Expr& path, std::vector<Lead>& leads);
  [[nodiscard]] bool FindLeads(const Expr& path, const Listed& listed, std::vector<Lead>& leads);
  [[nodiscard]] bool TakeRanks(std::size_t base, const Listed& listed, std::vector<Rank>& ranks);

  // The stack: sets under construction, one above the other.
  std::vector<NodeId> stack_;

  const Code& code_;
  const dom::DocumentData* data_;
  const NodeRecord* records_;
  const dom::NameTable* nameTable_;
  const QueryOptions& options_;
  NodeId start_;
  bool retired_;  // a load has replaced this content: its top has no document above it
  BoundNames names_;
  DocumentOrder order_;
  NodeTexts texts_;
  std::string leftText_;
  std::string rightText_;
  std::uint64_t work_ = 0;         // nodes visited so far
  std::uint64_t patience_;         // work after which overlapping work is worth a table
  bool textsIndexed_ = false;      // texts_ has been given the index
  std::optional<bool> someTyped_;  // some element may carry its data type; once it was asked
  std::pair<NodeId, datatypes::DataType> lastTypes_[2] = {};
  std::unique_ptr<Memory> memory_;
};

}  // namespace kx::patterns
