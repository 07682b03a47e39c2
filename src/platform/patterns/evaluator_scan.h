// The loops of the evaluator over candidates and over all that is below a set of nodes, as
// templates, so that what is done with each node is part of the loop. Included by the evaluator's
// source files only.
#pragma once

#include "platform/patterns/evaluator.h"

namespace kx::patterns {

/// The children, or siblings, whose first one is `first`.
template <class Visit>
void Evaluator::ForEachLinked(const NodeTest& test, NodeId first, const Visit& visit) {
  if (test.rule == NameRule::kWritten) {
    // The usual step; comparing names first leaves out most nodes.
    const std::uint32_t name = names_[test.name];
    if (name == kUnknownName) return;
    for (NodeId at = first; at != dom::kNoNode; at = records_[at].next) {
      ++work_;
      const NodeRecord& record = records_[at];
      if (nameTable_->QNameOf(record.name) != name) continue;
      if ((test.types >> static_cast<unsigned>(record.type) & 1U) != 0 && !visit(at)) return;
    }
    return;
  }
  for (NodeId at = first; at != dom::kNoNode; at = records_[at].next) {
    ++work_;
    if (PassesTest(test, records_[at]) && !visit(at)) return;
  }
}

/// The children, the attributes or the node itself, as the step's axis says, that pass its test.
template <class Visit>
void Evaluator::ForEachCandidate(const Step& step, NodeId context, const Visit& visit) {
  if (step.axis == Axis::kSelf) {
    visit(context);
    return;
  }
  if (dom::IsInlineTextId(context)) return;
  const NodeRecord& record = records_[context];
  if (step.axis == Axis::kAttribute) {
    if (record.type != dom::NodeType::kElement) return;
    ForEachLinked(step.test, record.firstAttribute, visit);
  } else if ((record.flags & dom::kInlineText) != 0) {
    if (TakesInlineText(step.test)) visit(dom::InlineTextOf(context));
  } else if (!dom::IsCharacterData(record.type)) {
    ForEachLinked(step.test, record.first, visit);
  }
}

/// Calls `found` for what a step with "//" finds from the set at `base`, in document order. Tells
/// what is known of the nodes found.
template <class Found>
Evaluator::Order Evaluator::ScanBelow(const Step& step, std::size_t base, const Found& found) {
  const NodeTest& test = step.test;
  if (step.axis == Axis::kChild && test.rule == NameRule::kWritten &&
      test.types == TypeBit(dom::NodeType::kElement)) {
    const std::uint32_t name = names_[test.name];
    if (name == kUnknownName) return Order::kFlat;
    return ScanWith(
        step, base,
        [this, name](const NodeRecord& record) {
          return record.type == dom::NodeType::kElement && nameTable_->QNameOf(record.name) == name;
        },
        found);
  }
  return ScanWith(
      step, base, [this, &test](const NodeRecord& record) { return PassesTest(test, record); },
      found);
}

template <class Test, class Found>
Evaluator::Order Evaluator::ScanWith(const Step& step, std::size_t base, const Test& test,
                                     const Found& found) {
  const std::size_t end = stack_.size();
  const bool inAttributes = step.axis == Axis::kAttribute;
  const bool takesInline = !inAttributes && TakesInlineText(step.test);
  NodeId open = dom::kNoNode;  // the last node found that `at` is below of
  Order order = Order::kFlat;
  const auto visitAttributes = [&](NodeId element) {
    if (records_[element].type != dom::NodeType::kElement) return true;
    for (NodeId at = records_[element].firstAttribute; at != dom::kNoNode; at = records_[at].next) {
      ++work_;
      if (test(records_[at]) && PassesAll(step, at) && !found(at)) return false;
    }
    return true;
  };
  const auto visitInline = [&](NodeId owner) {
    const NodeId text = dom::InlineTextOf(owner);
    if ((records_[owner].flags & dom::kInlineText) == 0 || !PassesAll(step, text)) return true;
    if (open != dom::kNoNode) order = Order::kSorted;
    return found(text);
  };
  std::size_t next = base;
  while (next < end) {
    const NodeId root = stack_[next++];
    NodeId upcoming = next < end ? stack_[next] : dom::kNoNode;
    if (inAttributes && !visitAttributes(root)) return order;
    if (takesInline && !visitInline(root)) return order;
    NodeId at = FirstLinkedChild(root);
    while (at != dom::kNoNode) {
      ++work_;
      if (at == upcoming) {  // all that is below it belongs to this walk
        ++next;
        upcoming = next < end ? stack_[next] : dom::kNoNode;
      }
      if (inAttributes) {
        if (!visitAttributes(at)) return order;
      } else if (test(records_[at]) && PassesAll(step, at)) {
        if (open != dom::kNoNode) order = Order::kSorted;
        if (open == dom::kNoNode) open = at;
        if (!found(at)) return order;
      }
      if (takesInline && !visitInline(at)) return order;
      NodeId following = FirstLinkedChild(at);
      while (following == dom::kNoNode) {
        if (at == open) open = dom::kNoNode;
        following = records_[at].next;
        if (following != dom::kNoNode) break;
        at = records_[at].parent;
        if (at == root) break;
      }
      at = following;
    }
    open = dom::kNoNode;
  }
  return order;
}

}  // namespace kx::patterns
