// See contest.h.
#include "contest.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <ctime>
#include <limits>
#include <stdexcept>

namespace kx::bench {

namespace {

using Clock = std::chrono::steady_clock;
using Nanoseconds = std::chrono::duration<double, std::nano>;

constexpr double kBatch = 2e6;        // ns that a batch should take
constexpr double kTurn = 30e6;        // ns that a program gets in a round
constexpr double kMostForRow = 10e9;  // ns after which no round begins
constexpr int kRounds = 20;
constexpr int kLeastRounds = 5;

// Time that this thread had a processor: somebody else's turn in between is not counted.
double ThreadNanoseconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

// Times a task by batches; goes on with the next text where the batch before stopped.
class Runner {
 public:
  Runner(Task& task, std::size_t texts) : task_(&task), texts_(texts) {
    while (Batch() < kBatch && calls_ < kMostCalls) calls_ *= 2;
    if (calls_ > 1) calls_ = std::max<std::size_t>(1, static_cast<std::size_t>(kBatch / best_));
    best_ = std::numeric_limits<double>::max();
  }

  void TakeTurn() {
    double spent = 0;
    while (spent < kTurn) spent += Batch();
  }
  [[nodiscard]] double Best() const noexcept { return best_; }

 private:
  static constexpr std::size_t kMostCalls = std::size_t{1} << 24U;

  double Batch() {
    const double begin = ThreadNanoseconds();
    for (std::size_t i = 0; i < calls_; ++i) {
      benchmark::DoNotOptimize(task_->Run(text_));
      if (++text_ == texts_) text_ = 0;
    }
    const double spent = ThreadNanoseconds() - begin;
    best_ = std::min(best_, spent / static_cast<double>(calls_));
    return spent;
  }

  Task* task_;
  std::size_t texts_;
  std::size_t text_ = 0;
  std::size_t calls_ = 1;
  double best_ = std::numeric_limits<double>::max();
};

void CheckResults(const std::vector<Entrant>& entrants, std::size_t texts) {
  for (std::size_t text = 0; text < texts; ++text) {
    const std::uint64_t wanted = entrants.front().task->Run(text);
    for (const Entrant& entrant : entrants) {
      const std::uint64_t found = entrant.task->Run(text);
      if (found == wanted) continue;
      throw std::runtime_error(entrant.program + " has " + std::to_string(found) + " where " +
                               entrants.front().program + " has " + std::to_string(wanted));
    }
  }
}

}  // namespace

std::vector<double> Compare(const std::vector<Entrant>& entrants, std::size_t texts,
                            Results results) {
  if (results == Results::kMustAgree) CheckResults(entrants, texts);
  std::vector<Runner> runners;
  runners.reserve(entrants.size());
  for (const Entrant& entrant : entrants) runners.emplace_back(*entrant.task, texts);
  const Clock::time_point begin = Clock::now();
  for (int round = 0; round < kRounds; ++round) {
    if (round >= kLeastRounds && Nanoseconds(Clock::now() - begin).count() > kMostForRow) break;
    // Another one begins each round, so that nobody always follows the same neighbour.
    for (std::size_t i = 0; i < runners.size(); ++i) {
      runners[(i + static_cast<std::size_t>(round)) % runners.size()].TakeTurn();
    }
  }
  std::vector<double> best;
  best.reserve(runners.size());
  for (const Runner& runner : runners) best.push_back(runner.Best());
  return best;
}

}  // namespace kx::bench
