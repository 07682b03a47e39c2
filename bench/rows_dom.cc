// See rows.h.
#include "peers.h"
#include "platform/dom/cursor.h"
#include "platform/dom/parser.h"
#include "platform/dom/writer.h"
#include "rows.h"

#include <stdexcept>

namespace kx::bench {

namespace {

std::unique_ptr<dom::DocumentData> Load(std::string_view text) {
  auto data = std::make_unique<dom::DocumentData>(nullptr);
  dom::ParseError error;
  if (!dom::ParseText(*data, text, dom::ParseOptions{}, error)) {
    throw std::runtime_error("the library refuses the text: " + error.reason);
  }
  return data;
}

class Parse : public Task {
 public:
  explicit Parse(const Workload& workload) : texts_(workload.texts) {}
  std::uint64_t Run(std::size_t text) override { return Load(texts_[text])->NodeCount(); }

 private:
  const std::vector<std::string>& texts_;
};

class LoadedTask : public Task {
 public:
  explicit LoadedTask(const Workload& workload) {
    for (const std::string& text : workload.texts) documents_.push_back(Load(text));
  }

 protected:
  [[nodiscard]] const dom::DocumentData& Data(std::size_t text) const { return *documents_[text]; }

 private:
  std::vector<std::unique_ptr<dom::DocumentData>> documents_;
};

class Tree : public LoadedTree {
 public:
  explicit Tree(std::string_view text) : data_(Load(text)) {}

 private:
  std::unique_ptr<dom::DocumentData> data_;
};

class Serialise : public LoadedTask {
 public:
  using LoadedTask::LoadedTask;
  std::uint64_t Run(std::size_t text) override {
    return dom::WriteXml({&Data(text), dom::kDocumentNode}).size();
  }
};

class Copy : public LoadedTask {
 public:
  using LoadedTask::LoadedTask;
  std::uint64_t Run(std::size_t text) override {
    dom::DocumentData copy(nullptr);
    copy.CopyContent(Data(text));
    return copy.NodeCount();
  }
};

class Walk : public LoadedTask {
 public:
  using LoadedTask::LoadedTask;
  std::uint64_t Run(std::size_t text) override {
    const dom::Cursor root(&Data(text), Data(text).DocumentElement());
    WalkSum sum;
    for (dom::Cursor at = root; at; at = at.NextInTree(root)) Visit(at, sum);
    return sum.Value();
  }

 private:
  static void AddText(std::string_view text, WalkSum& sum) {
    sum.AddByte(text.empty() ? '\0' : text.front());
  }
  static void Visit(const dom::Cursor& node, WalkSum& sum) {
    sum.AddNode();
    if (!node.IsElement()) {
      AddText(node.OwnText(), sum);
      return;
    }
    for (dom::Cursor at = node.FirstAttribute(); at; at = at.Next()) {
      sum.AddNode();
      AddText(at.QualifiedName(), sum);
      AddText(at.OwnText(), sum);
    }
  }
};

template <class OurTask, class... Peers>
std::vector<Entrant> Enter(const Workload& workload, Peers&&... peers) {
  std::vector<Entrant> entrants;
  entrants.push_back({"ours", std::make_unique<OurTask>(workload)});
  (entrants.push_back(std::forward<Peers>(peers)), ...);
  return entrants;
}

std::vector<Entrant> EnterParse(const Workload& workload) {
  return Enter<Parse>(workload, Entrant{"pugixml", PugixmlParse(workload)},
                      Entrant{"libxml2", Libxml2Parse(workload)},
                      Entrant{"expat", ExpatParse(workload)},
                      Entrant{"xerces-c", XercesParse(workload)});
}

std::vector<Entrant> EnterSerialise(const Workload& workload) {
  return Enter<Serialise>(workload, Entrant{"pugixml", PugixmlSerialise(workload)},
                          Entrant{"libxml2", Libxml2Serialise(workload)});
}

std::vector<Entrant> EnterCopy(const Workload& workload) {
  return Enter<Copy>(workload, Entrant{"libxml2", Libxml2Copy(workload)},
                     Entrant{"pugixml", PugixmlCopy(workload)});
}

std::vector<Entrant> EnterWalk(const Workload& workload) {
  return Enter<Walk>(workload, Entrant{"libxml2", Libxml2Walk(workload)},
                     Entrant{"pugixml", PugixmlWalk(workload)});
}

}  // namespace

std::unique_ptr<LoadedTree> LoadOurs(std::string_view text) { return std::make_unique<Tree>(text); }

std::vector<Row> DomRows() {
  const std::vector<std::string> all = {"1k", "10k", "100k", "1m", "10m", "wide", "deep"};
  return {{"parse", all, EnterParse},
          {"serialise", all, EnterSerialise},
          {"copy", all, EnterCopy},
          {"walk", all, EnterWalk, Results::kMustAgree}};
}

}  // namespace kx::bench
