// See rows.h.
#include "peers.h"
#include "platform/dom/cursor.h"
#include "platform/dom/document.h"
#include "rows.h"

#include <stdexcept>

namespace kx::bench {

namespace {

dom::Document Load(std::string_view text) {
  dom::Document document = dom::NewDomDocument();
  if (!document.LoadXml(text)) {
    throw std::runtime_error("the library refuses the text: " + document.LastError().reason);
  }
  return document;
}

class Parse : public Task {
 public:
  explicit Parse(const Workload& workload) : texts_(workload.texts) {}
  std::uint64_t Run(std::size_t text) override { return Load(texts_[text]).Data().NodeCount(); }

 private:
  const std::vector<std::string>& texts_;
};

class LoadedTask : public Task {
 public:
  explicit LoadedTask(const Workload& workload) {
    for (const std::string& text : workload.texts) documents_.push_back(Load(text));
  }

 protected:
  [[nodiscard]] const dom::Document& Loaded(std::size_t text) const { return documents_[text]; }

 private:
  std::vector<dom::Document> documents_;
};

class Tree : public LoadedTree {
 public:
  explicit Tree(std::string_view text) : document_(Load(text)) {}

 private:
  dom::Document document_;
};

class Serialise : public LoadedTask {
 public:
  using LoadedTask::LoadedTask;
  std::uint64_t Run(std::size_t text) override { return Loaded(text).Xml().size(); }
};

class Copy : public LoadedTask {
 public:
  using LoadedTask::LoadedTask;
  std::uint64_t Run(std::size_t text) override {
    return Loaded(text).Clone(dom::CloneDepth::kDeep).Data().NodeCount();
  }
};

class Walk : public LoadedTask {
 public:
  using LoadedTask::LoadedTask;
  std::uint64_t Run(std::size_t text) override {
    const dom::Cursor root = Loaded(text).Root();
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
