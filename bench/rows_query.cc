// See rows.h. A query is asked from its text, as callers do, whose compiled form the library keeps
// in a cache; the peers' queries are compiled before.
#include "peers.h"
#include "platform/dom/document.h"
#include "platform/patterns/select.h"
#include "rows.h"

#include <stdexcept>

namespace kx::bench {

namespace {

constexpr std::string_view kQuery = "//Item[@sku='X42']/Qty";
constexpr std::string_view kPath = "Header/Rush";

class LoadedTask : public Task {
 public:
  explicit LoadedTask(const Workload& workload) {
    for (const std::string& text : workload.texts) {
      dom::Document document = dom::NewDomDocument();
      if (!document.LoadXml(text)) throw std::runtime_error("the library refuses the text");
      orders_.push_back(patterns::SelectSingleNode(document.AsNode(), "//Order"));
      documents_.push_back(document.AsNode());
    }
  }

 protected:
  [[nodiscard]] const dom::Node& Loaded(std::size_t text) const { return documents_[text]; }
  [[nodiscard]] const dom::Node& OrderOf(std::size_t text) const { return orders_[text]; }
  patterns::PatternCache& Cache() { return cache_; }
  static std::uint64_t FirstByte(const dom::Node& node) {
    const std::string_view text = node.At().OwnText();
    return text.empty() ? 0 : static_cast<unsigned char>(text.front());
  }

 private:
  std::vector<dom::Node> documents_;
  std::vector<dom::Node> orders_;
  patterns::PatternCache cache_;
};

class Query : public LoadedTask {
 public:
  using LoadedTask::LoadedTask;
  std::uint64_t Run(std::size_t text) override {
    const dom::NodeList found = patterns::SelectNodes(Loaded(text), kQuery, Cache());
    return static_cast<std::uint64_t>(found.Length()) * 256 + FirstByte(found.Item(0));
  }
};

class Path : public LoadedTask {
 public:
  using LoadedTask::LoadedTask;
  std::uint64_t Run(std::size_t text) override {
    return FirstByte(patterns::SelectSingleNode(OrderOf(text), kPath, Cache()));
  }
};

class PathList : public LoadedTask {
 public:
  using LoadedTask::LoadedTask;
  std::uint64_t Run(std::size_t text) override {
    const dom::NodeList found = patterns::SelectNodes(OrderOf(text), kPath, Cache());
    return static_cast<std::uint64_t>(found.Length()) * 256 + FirstByte(found.Item(0));
  }
};

template <class OurTask>
std::vector<Entrant> Enter(const Workload& workload, std::unique_ptr<Task> pugixml) {
  std::vector<Entrant> entrants;
  entrants.push_back({"ours", std::make_unique<OurTask>(workload)});
  entrants.push_back({"pugixml", std::move(pugixml)});
  return entrants;
}

std::vector<Entrant> EnterQuery(const Workload& workload) {
  return Enter<Query>(workload, PugixmlQuery(workload, kQuery));
}

std::vector<Entrant> EnterPath(const Workload& workload) {
  return Enter<Path>(workload, PugixmlFirst(workload, "//Order", kPath));
}

std::vector<Entrant> EnterPathList(const Workload& workload) {
  return Enter<PathList>(workload, PugixmlList(workload, "//Order", kPath));
}

}  // namespace

std::vector<Row> QueryRows() {
  const std::vector<std::string> sizes = {"1k", "10k", "100k", "1m"};
  return {{"query", sizes, EnterQuery, Results::kMustAgree},
          {"path", sizes, EnterPath, Results::kMustAgree},
          {"path-list", sizes, EnterPathList, Results::kMustAgree}};
}

}  // namespace kx::bench
