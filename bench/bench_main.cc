// kx_bench: the library beside its peers. Prints a table, one line for each row, input and peer,
// and with --results FILE writes the same as JSON. Google Benchmark's own options work too:
// --benchmark_filter=parse/1m runs what that expression matches.
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

#include "contest.h"
#include "memory.h"
#include "report.h"
#include "rows.h"

namespace kx::bench {

namespace {

// As in a long-running process: what is freed stays with the process, for all programs alike.
void KeepHeap() {
#if defined(__GLIBC__)
  constexpr int kNever = 1 << 30;
  mallopt(M_MMAP_MAX, 0);
  mallopt(M_TRIM_THRESHOLD, kNever);
#endif
}

std::vector<Result> RunRow(const Row& row, const std::string& input) {
  const Workload workload = MakeWorkload(input);
  const std::vector<Entrant> entrants = row.enter(workload);
  const std::vector<double> best = Compare(entrants, workload.texts.size(), row.results);
  std::vector<Result> results;
  for (std::size_t i = 1; i < entrants.size(); ++i) {
    results.push_back({row.name, input, best[0], entrants[i].program, best[i]});
  }
  return results;
}

// Google Benchmark chooses what runs; the measuring and the table are our own. Failures end up
// here.
class FailureReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& /*context*/) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (!run.error_occurred) continue;
      std::cerr << run.benchmark_name() << ": " << run.error_message << std::endl;
      failed_ = true;
    }
  }
  [[nodiscard]] bool Failed() const noexcept { return failed_; }

 private:
  bool failed_ = false;
};

void Register(const std::string& name, std::vector<Result>& results,
              std::function<std::vector<Result>()> measure) {
  const auto run = [&results, measure = std::move(measure)](benchmark::State& state) {
    for ([[maybe_unused]] auto iteration : state) {
      try {
        for (Result& result : measure()) {
          PrintResult(std::cout, result);
          state.SetIterationTime(result.ours * 1e-9);
          results.push_back(std::move(result));
        }
      } catch (const std::exception& error) {
        state.SkipWithError(error.what());
      }
    }
  };
  benchmark::RegisterBenchmark(name.c_str(), run)->Iterations(1)->UseManualTime();
}

void RegisterAll(const std::string& program, std::vector<Result>& results) {
  for (const char* input : {"1k", "1m", "10m"}) {
    Register("memory/" + std::string(input), results,
             [=] { return MeasureMemory(program, input); });
  }
  std::vector<Row> rows = DomRows();
  for (Row& row : XdrRows()) rows.push_back(std::move(row));
  for (Row& row : QueryRows()) rows.push_back(std::move(row));
  for (Row& row : EditRows()) rows.push_back(std::move(row));
  for (Row& row : MessageRows()) rows.push_back(std::move(row));
  for (const Row& row : rows) {
    for (const std::string& input : row.inputs) {
      Register(row.name + "/" + input, results, [=] { return RunRow(row, input); });
    }
  }
}

// Takes "--results FILE" out of the arguments.
std::string TakeResultsPath(int& count, char** arguments) {
  for (int i = 1; i + 1 < count; ++i) {
    if (std::string_view(arguments[i]) != "--results") continue;
    std::string path = arguments[i + 1];
    std::rotate(arguments + i, arguments + i + 2, arguments + count);
    count -= 2;
    return path;
  }
  return {};
}

bool SaveResults(const std::string& path, const std::vector<Result>& results) {
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  if (!folder.empty()) std::filesystem::create_directories(folder);
  std::ofstream file(path);
  WriteJson(file, results);
  file.close();
  return !file.fail();
}

int Main(int count, char** arguments) {
  if (count == 5 && std::string_view(arguments[1]) == "--memory-process") {
    return RunMemoryProcess(arguments[2], arguments[3], std::atoi(arguments[4]));
  }
  KeepHeap();
  const std::string path = TakeResultsPath(count, arguments);
  benchmark::Initialize(&count, arguments);
  if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 2;
  std::vector<Result> results;
  RegisterAll(std::filesystem::read_symlink("/proc/self/exe").string(), results);
  PrintHeading(std::cout);
  FailureReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  if (!path.empty() && !SaveResults(path, results)) {
    std::cerr << "cannot write " << path << std::endl;
    return 1;
  }
  return reporter.Failed() ? 1 : 0;
}

}  // namespace

}  // namespace kx::bench

int main(int count, char** arguments) {
  try {
    return kx::bench::Main(count, arguments);
  } catch (const std::exception& error) {
    std::cerr << "kx_bench: " << error.what() << std::endl;
    return 1;
  }
}
