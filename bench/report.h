// What a run leaves behind: a table for people and a file for programs.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace kx::bench {

/// What the two figures of a result are.
enum class Unit : unsigned char { kNanoseconds, kBytes };

/// One figure of the library beside the same of one peer.
struct Result {
  std::string name;   ///< of the row: parse, serialise, ...
  std::string input;  ///< 1k, 10k, ...
  double ours = 0;
  std::string peer;
  double peers = 0;
  Unit unit = Unit::kNanoseconds;

  [[nodiscard]] double Ratio() const { return ours / peers; }
};

/// The heading of the table, and one line of it.
void PrintHeading(std::ostream& out);
void PrintResult(std::ostream& out, const Result& result);

/// A list of {"name", "input", "ours_ns", "peer", "peer_ns", "ratio"}. The figures of a row that
/// measures memory are bytes, under the same keys.
void WriteJson(std::ostream& out, const std::vector<Result>& results);

}  // namespace kx::bench
