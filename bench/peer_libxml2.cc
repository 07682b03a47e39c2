// See peers.h. Nothing is fetched; the limits on depth and size are lifted.
#include "peers.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <stdexcept>

namespace kx::bench {

namespace {

struct FreeDocument {
  void operator()(xmlDoc* document) const noexcept { xmlFreeDoc(document); }
};
using DocumentPtr = std::unique_ptr<xmlDoc, FreeDocument>;

DocumentPtr Load(std::string_view text) {
  constexpr int kOptions = XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_NOERROR;
  DocumentPtr document(
      xmlReadMemory(text.data(), static_cast<int>(text.size()), "order.xml", nullptr, kOptions));
  if (!document) throw std::runtime_error("libxml2 refuses the text");
  return document;
}

class Parse : public Task {
 public:
  explicit Parse(const Workload& workload) : texts_(workload.texts) {}
  std::uint64_t Run(std::size_t text) override { return Load(texts_[text])->type; }

 private:
  const std::vector<std::string>& texts_;
};

class LoadedTask : public Task {
 public:
  explicit LoadedTask(const Workload& workload) {
    for (const std::string& text : workload.texts) documents_.push_back(Load(text));
  }

 protected:
  [[nodiscard]] xmlDoc* Document(std::size_t text) const { return documents_[text].get(); }

 private:
  std::vector<DocumentPtr> documents_;
};

class Tree : public LoadedTree {
 public:
  explicit Tree(std::string_view text) : document_(Load(text)) {}

 private:
  DocumentPtr document_;
};

class Serialise : public LoadedTask {
 public:
  using LoadedTask::LoadedTask;
  std::uint64_t Run(std::size_t text) override {
    xmlChar* result = nullptr;
    int size = 0;
    xmlDocDumpMemoryEnc(Document(text), &result, &size, "UTF-8");
    xmlFree(result);
    return static_cast<std::uint64_t>(size);
  }
};

class Copy : public LoadedTask {
 public:
  using LoadedTask::LoadedTask;
  std::uint64_t Run(std::size_t text) override {
    return DocumentPtr(xmlCopyDoc(Document(text), 1))->type;
  }
};

class Walk : public LoadedTask {
 public:
  using LoadedTask::LoadedTask;
  std::uint64_t Run(std::size_t text) override {
    const xmlNode* const root = xmlDocGetRootElement(Document(text));
    WalkSum sum;
    const xmlNode* node = root;
    while (true) {
      Visit(node, sum);
      if (node->children != nullptr) {
        node = node->children;
        continue;
      }
      while (node != root && node->next == nullptr) node = node->parent;
      if (node == root) return sum.Value();
      node = node->next;
    }
  }

 private:
  static void AddText(const xmlChar* text, WalkSum& sum) {
    sum.AddByte(text == nullptr ? '\0' : static_cast<char>(*text));
  }
  static void Visit(const xmlNode* node, WalkSum& sum) {
    sum.AddNode();
    if (node->type != XML_ELEMENT_NODE) {
      AddText(node->content, sum);
      return;
    }
    for (const xmlNs* at = node->nsDef; at != nullptr; at = at->next) {
      sum.AddNode();
      sum.AddByte('x');  // of "xmlns", which has no text of its own here
      AddText(at->href, sum);
    }
    for (const xmlAttr* at = node->properties; at != nullptr; at = at->next) {
      sum.AddNode();
      AddText(at->name, sum);
      if (at->children != nullptr) AddText(at->children->content, sum);
    }
  }
};

}  // namespace

std::unique_ptr<Task> Libxml2Parse(const Workload& workload) {
  return std::make_unique<Parse>(workload);
}
std::unique_ptr<LoadedTree> Libxml2Load(std::string_view text) {
  return std::make_unique<Tree>(text);
}
std::unique_ptr<Task> Libxml2Serialise(const Workload& workload) {
  return std::make_unique<Serialise>(workload);
}
std::unique_ptr<Task> Libxml2Copy(const Workload& workload) {
  return std::make_unique<Copy>(workload);
}
std::unique_ptr<Task> Libxml2Walk(const Workload& workload) {
  return std::make_unique<Walk>(workload);
}

}  // namespace kx::bench
