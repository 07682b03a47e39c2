// The differences between our parser and its peers that are right as they are, in one table: a
// kind, the reason, and a predicate that is as narrow as the kind. A difference that no row
// explains is a defect of ours until shown otherwise.
#pragma once

#include "differential/neutral_tree.h"

#include <span>
#include <string_view>

namespace kx::test {

enum class Peer : unsigned char { kExpat, kLibxml };

/// One document as two parsers read it.
struct Comparison {
  std::string_view bytes;
  const Reading* ours;
  Peer peer;
  const Reading* theirs;
};

struct Explanation {
  const char* kind;
  const char* reason;
  bool (*applies)(const Comparison& comparison);
};

/// Every kind of difference, in the order in which they are tried.
[[nodiscard]] std::span<const Explanation> Explanations();

/// True when verdict or tree differ.
[[nodiscard]] bool Differs(const Comparison& comparison);

/// The first explanation of a difference, or null.
[[nodiscard]] const Explanation* Explain(const Comparison& comparison);

/// Verdicts, messages and the first line in which the trees differ, for a failure's text.
[[nodiscard]] std::string DescribeDifference(const Comparison& comparison);

}  // namespace kx::test
