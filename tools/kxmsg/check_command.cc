// kxmsg check: many messages, several at a time, told in the order of the command line.
//
// The workers take the next name, load it and leave the result in its place; the main thread prints
// results as far as they have come without a gap. Each message lives on one thread.
#include "kxmessage/error.h"

#include "kxmsg/commands.h"
#include "kxmsg/failure.h"
#include "kxmsg/files.h"
#include "kxmsg/text_form.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace kxmsg {

namespace {

struct CheckResult {
  std::optional<Failure> failure;  // nothing when the message is good
  std::string warning;
  std::exception_ptr fault;  // what is no failure of a message
};

CheckResult CheckOne(const std::string& name, const Arguments& arguments) {
  CheckResult result;
  try {
    static_cast<void>(LoadMessage(name, arguments, result.warning));
  } catch (const kx::Error& error) {
    result.failure = DescribeError(error);
  } catch (...) {
    result.fault = std::current_exception();
  }
  return result;
}

// The results of all files, filled by the workers. See above.
class Board {
 public:
  explicit Board(const Arguments& arguments)
      : arguments_(arguments), results_(arguments.files.size()) {}

  void Work() {
    while (true) {
      const std::size_t i = next_.fetch_add(1);
      if (i >= results_.size()) return;
      CheckResult result = CheckOne(arguments_.files[i], arguments_);
      const std::lock_guard<std::mutex> guard(mutex_);
      results_[i] = std::move(result);
      ++done_;
      changed_.notify_one();
    }
  }

  // Nobody takes another name.
  void Stop() { next_ = results_.size(); }

  // Waits until the file `i` is done, showing how much is.
  CheckResult Take(std::size_t i, Console& console) {
    std::unique_lock<std::mutex> lock(mutex_);
    console.ShowProgress(done_, results_.size());
    while (!results_[i]) {
      changed_.wait(lock);
      console.ShowProgress(done_, results_.size());
    }
    return *std::exchange(results_[i], CheckResult{});
  }

 private:
  const Arguments& arguments_;
  std::atomic<std::size_t> next_ = 0;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::size_t done_ = 0;
  std::vector<std::optional<CheckResult>> results_;
};

// Joins the workers, whatever happens to the one who prints.
class Crew {
 public:
  Crew(Board& board, std::size_t count) : board_(board) {
    threads_.reserve(count);
    try {
      while (threads_.size() < count) threads_.emplace_back([&board] { board.Work(); });
    } catch (const std::system_error&) {
      if (threads_.empty()) throw;  // as many as the system gives are enough
    }
  }
  Crew(const Crew&) = delete;
  Crew& operator=(const Crew&) = delete;
  ~Crew() {
    board_.Stop();
    for (std::thread& thread : threads_) thread.join();
  }

 private:
  Board& board_;
  std::vector<std::thread> threads_;
};

std::size_t CrewSize(const Arguments& arguments) {
  const std::size_t asked = arguments.jobs == 0 ? std::thread::hardware_concurrency()
                                                : static_cast<std::size_t>(arguments.jobs);
  return std::clamp<std::size_t>(asked, 1, arguments.files.size());
}

std::string LineOf(const std::string& name, const CheckResult& result, const Console& console) {
  if (result.failure) return console.Styled(Style::kBad, FailureLine(name, *result.failure));
  return Printable(name) + ": ok";
}

std::string ObjectOf(const std::string& name, const CheckResult& result) {
  const std::string verdict = result.failure ? FailureJson(*result.failure) : "\"ok\": true";
  const std::string warning =
      result.warning.empty() ? "" : ", \"warning\": " + JsonText(result.warning);
  return "  {\"file\": " + JsonText(name) + ", " + verdict + warning + "}";
}

}  // namespace

ExitStatus RunCheck(const Arguments& arguments, Console& console) {
  if (std::count(arguments.files.begin(), arguments.files.end(), "-") > 1) {
    throw UsageFailure{"Standard input can be read only once."};
  }
  Board board(arguments);
  const Crew crew(board, CrewSize(arguments));
  ExitStatus status = ExitStatus::kDone;
  if (arguments.json) console.Print("[");
  for (std::size_t i = 0; i < arguments.files.size(); ++i) {
    const CheckResult result = board.Take(i, console);
    if (result.fault) std::rethrow_exception(result.fault);
    if (result.failure) status = ExitStatus::kBad;
    const std::string name = ShownName(arguments.files[i]);
    if (!result.warning.empty()) console.PrintWarning(name, result.warning);
    if (arguments.json) {
      console.Print((i == 0 ? "\n" : ",\n") + ObjectOf(arguments.files[i], result));
    } else if (result.failure || !arguments.quiet) {
      console.Print(LineOf(name, result, console) + '\n');
    }
  }
  if (arguments.json) console.Print("\n]\n");
  console.ClearProgress();
  return status;
}

}  // namespace kxmsg
