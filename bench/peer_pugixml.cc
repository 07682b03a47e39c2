// See peers.h. Documents are loaded with pugixml's own defaults, from a buffer that it copies.
#include "peers.h"

#include <pugixml.hpp>
#include <stdexcept>
#include <string>
#include <vector>

namespace kx::bench {

namespace {

void Load(pugi::xml_document& document, std::string_view text) {
  if (!document.load_buffer(text.data(), text.size())) {
    throw std::runtime_error("pugixml refuses the text");
  }
}

class Parse : public Task {
 public:
  explicit Parse(const Workload& workload) : texts_(workload.texts) {}
  std::uint64_t Run(std::size_t text) override {
    pugi::xml_document document;
    Load(document, texts_[text]);
    return document.first_child().type();
  }

 private:
  const std::vector<std::string>& texts_;
};

class LoadedTask : public Task {
 public:
  explicit LoadedTask(const Workload& workload) : documents_(workload.texts.size()) {
    for (std::size_t i = 0; i < documents_.size(); ++i) Load(documents_[i], workload.texts[i]);
  }

 protected:
  [[nodiscard]] const pugi::xml_document& Document(std::size_t text) const {
    return documents_[text];
  }

 private:
  std::vector<pugi::xml_document> documents_;
};

class Tree : public LoadedTree {
 public:
  explicit Tree(std::string_view text) { Load(document_, text); }

 private:
  pugi::xml_document document_;
};

// The result has its memory from the start: what a caller does who knows the size.
class StringWriter : public pugi::xml_writer {
 public:
  explicit StringWriter(std::size_t expected) { result_.reserve(expected); }
  void write(const void* data, std::size_t size) override {
    result_.append(static_cast<const char*>(data), size);
  }
  [[nodiscard]] const std::string& Result() const noexcept { return result_; }

 private:
  std::string result_;
};

class Serialise : public LoadedTask {
 public:
  explicit Serialise(const Workload& workload) : LoadedTask(workload), texts_(workload.texts) {}
  std::uint64_t Run(std::size_t text) override {
    StringWriter writer(texts_[text].size() + 64);
    Document(text).save(writer, "", pugi::format_raw, pugi::encoding_utf8);
    return writer.Result().size();
  }

 private:
  const std::vector<std::string>& texts_;
};

class Copy : public LoadedTask {
 public:
  using LoadedTask::LoadedTask;
  std::uint64_t Run(std::size_t text) override {
    pugi::xml_document copy;
    copy.reset(Document(text));
    return copy.first_child().type();
  }
};

class Walk : public LoadedTask {
 public:
  using LoadedTask::LoadedTask;
  std::uint64_t Run(std::size_t text) override {
    const pugi::xml_node root = Document(text).document_element();
    WalkSum sum;
    pugi::xml_node node = root;
    while (true) {
      Visit(node, sum);
      if (pugi::xml_node child = node.first_child()) {
        node = child;
        continue;
      }
      while (node != root && !node.next_sibling()) node = node.parent();
      if (node == root) return sum.Value();
      node = node.next_sibling();
    }
  }

 private:
  static void Visit(pugi::xml_node node, WalkSum& sum) {
    sum.AddNode();
    if (node.type() != pugi::node_element) {
      sum.AddByte(*node.value());
      return;
    }
    for (pugi::xml_attribute at = node.first_attribute(); at; at = at.next_attribute()) {
      sum.AddNode();
      sum.AddByte(*at.name());
      sum.AddByte(*at.value());
    }
  }
};

// Texts are read with the node's first child, where its text lies.
std::uint64_t FirstByte(const pugi::xpath_node& found) {
  return static_cast<unsigned char>(*found.node().child_value());
}

// What a query lists from the node that `start` finds in each document.
class List : public LoadedTask {
 public:
  List(const Workload& workload, std::string_view start, std::string_view query)
      : LoadedTask(workload), query_(std::string(query).c_str()) {
    const pugi::xpath_query beginning(std::string(start).c_str());
    for (std::size_t i = 0; i < workload.texts.size(); ++i) {
      starts_.push_back(Document(i).select_node(beginning).node());
    }
  }
  std::uint64_t Run(std::size_t text) override {
    const pugi::xpath_node_set found = starts_[text].select_nodes(query_);
    return found.size() * 256 + FirstByte(found[0]);
  }

 protected:
  [[nodiscard]] pugi::xpath_node First(std::size_t text) const {
    return starts_[text].select_node(query_);
  }

 private:
  pugi::xpath_query query_;
  std::vector<pugi::xml_node> starts_;
};

class First : public List {
 public:
  using List::List;
  std::uint64_t Run(std::size_t text) override { return FirstByte(List::First(text)); }
};

// The children of the content root by their names, from the first on and over again.
class Children : public LoadedTask {
 public:
  explicit Children(const Workload& workload) : LoadedTask(workload) {
    for (std::size_t i = 0; i < workload.texts.size(); ++i) {
      const pugi::xml_node root = Document(i).document_element().first_child();
      std::vector<std::string>& names = names_.emplace_back();
      for (const pugi::xml_node child : root.children()) names.emplace_back(child.name());
      roots_.push_back(root);
    }
  }
  std::uint64_t Run(std::size_t text) override {
    std::uint64_t found = 0;
    const std::vector<std::string>& names = names_[text];
    for (std::size_t i = 0; i < kLookUps; ++i) {
      found += roots_[text].child(names[i % names.size()].c_str()).empty() ? 0U : 1U;
    }
    return found;
  }

 private:
  std::vector<pugi::xml_node> roots_;
  std::vector<std::vector<std::string>> names_;
};

// Every child of "Items", by its links.
class Items : public LoadedTask {
 public:
  using LoadedTask::LoadedTask;
  std::uint64_t Run(std::size_t text) override {
    const pugi::xml_node items = Document(text).document_element().first_child().child("Items");
    std::uint64_t found = 0;
    for (const pugi::xml_node item : items.children()) found += item.empty() ? 0U : 1U;
    return found;
  }
};

}  // namespace

std::unique_ptr<Task> PugixmlItems(const Workload& workload) {
  return std::make_unique<Items>(workload);
}
std::unique_ptr<Task> PugixmlChildren(const Workload& workload) {
  return std::make_unique<Children>(workload);
}
std::unique_ptr<Task> PugixmlParse(const Workload& workload) {
  return std::make_unique<Parse>(workload);
}
std::unique_ptr<LoadedTree> PugixmlLoad(std::string_view text) {
  return std::make_unique<Tree>(text);
}
std::unique_ptr<Task> PugixmlSerialise(const Workload& workload) {
  return std::make_unique<Serialise>(workload);
}
std::unique_ptr<Task> PugixmlCopy(const Workload& workload) {
  return std::make_unique<Copy>(workload);
}
std::unique_ptr<Task> PugixmlWalk(const Workload& workload) {
  return std::make_unique<Walk>(workload);
}
std::unique_ptr<Task> PugixmlQuery(const Workload& workload, std::string_view query) {
  return std::make_unique<List>(workload, "/", query);
}
std::unique_ptr<Task> PugixmlList(const Workload& workload, std::string_view start,
                                  std::string_view query) {
  return std::make_unique<List>(workload, start, query);
}
std::unique_ptr<Task> PugixmlFirst(const Workload& workload, std::string_view start,
                                   std::string_view query) {
  return std::make_unique<First>(workload, start, query);
}

}  // namespace kx::bench
