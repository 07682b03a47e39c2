// How programs are compared. A machine that others use runs at several speeds, for milliseconds or
// for minutes; disturbances only ever make a program slower. So the programs of a row run in turn,
// in one process, for many rounds; each one's figure is its best batch of about two milliseconds
// over all rounds, and what is quoted is the ratio of two such figures.
#pragma once

#include "workload.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kx::bench {

/// One program at one job. What it prepares in its constructor is not measured; freeing what Run()
/// made is.
class Task {
 public:
  Task() = default;
  virtual ~Task() = default;
  Task(const Task&) = delete;
  Task& operator=(const Task&) = delete;

  /// Does the job once on the text of that number. Returns a number that depends on the work done;
  /// the programs of a row whose results must agree return the same one.
  virtual std::uint64_t Run(std::size_t text) = 0;
};

struct Entrant {
  std::string program;
  std::unique_ptr<Task> task;
};

/// Whether the results of Run() are the same for all programs of a row, and checked.
enum class Results : unsigned char { kMayDiffer, kMustAgree };

/// One kind of job: the row that the table and the results file show.
struct Row {
  std::string name;
  std::vector<std::string> inputs;
  /// The library's program first, then the peers'.
  std::function<std::vector<Entrant>(const Workload&)> enter;
  Results results = Results::kMayDiffer;
};

/// Best time of one run, in nanoseconds, in the order of the entrants.
/// Raises: std::runtime_error when results that must agree differ.
std::vector<double> Compare(const std::vector<Entrant>& entrants, std::size_t texts,
                            Results results);

}  // namespace kx::bench
