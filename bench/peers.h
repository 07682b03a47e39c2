// The peers' programs, one file each. All take UTF-8 text from memory and report failure by
// throwing std::runtime_error: a peer that refuses an input must not look fast.
#pragma once

#include "contest.h"

#include <cstddef>
#include <memory>
#include <string_view>

namespace kx::bench {

/// Loading into the peer's tree, freeing included.
std::unique_ptr<Task> PugixmlParse(const Workload& workload);
std::unique_ptr<Task> Libxml2Parse(const Workload& workload);
std::unique_ptr<Task> XercesParse(const Workload& workload);
/// Reading with handlers that do nothing: no tree.
std::unique_ptr<Task> ExpatParse(const Workload& workload);

/// Writing a loaded document to UTF-8 in memory.
std::unique_ptr<Task> PugixmlSerialise(const Workload& workload);
std::unique_ptr<Task> Libxml2Serialise(const Workload& workload);

/// A deep copy of a loaded document, freed again.
std::unique_ptr<Task> PugixmlCopy(const Workload& workload);
std::unique_ptr<Task> Libxml2Copy(const Workload& workload);

/// The root and all below it: Run() returns the sum that WalkSum describes.
std::unique_ptr<Task> PugixmlWalk(const Workload& workload);
std::unique_ptr<Task> Libxml2Walk(const Workload& workload);

/// What an XPath query that was compiled before lists from the document, or from the node that
/// `start` finds; of the latter also the first node only. Run() returns the first byte of the
/// first node's text, and for a list 256 times its length more.
std::unique_ptr<Task> PugixmlQuery(const Workload& workload, std::string_view query);
std::unique_ptr<Task> PugixmlList(const Workload& workload, std::string_view start,
                                  std::string_view query);
std::unique_ptr<Task> PugixmlFirst(const Workload& workload, std::string_view start,
                                   std::string_view query);
/// How many look-ups one run of a row of single look-ups makes.
inline constexpr std::size_t kLookUps = 7;
/// So many children of the content root, looked up by their names.
std::unique_ptr<Task> PugixmlChildren(const Workload& workload);

/// Every child of the one parent that may have many.
std::unique_ptr<Task> PugixmlItems(const Workload& workload);

/// A load and its validation against the XSD that says the same, compiled before; validation alone;
/// compiling the XSD.
std::unique_ptr<Task> Libxml2ParseAndValidate(const Workload& workload);
std::unique_ptr<Task> Libxml2Validate(const Workload& workload);
std::unique_ptr<Task> Libxml2CompileSchema();

/// A document that lives as long as the object.
class LoadedTree {
 public:
  LoadedTree() = default;
  virtual ~LoadedTree() = default;
  LoadedTree(const LoadedTree&) = delete;
  LoadedTree& operator=(const LoadedTree&) = delete;
};
std::unique_ptr<LoadedTree> LoadOurs(std::string_view text);
std::unique_ptr<LoadedTree> PugixmlLoad(std::string_view text);
std::unique_ptr<LoadedTree> Libxml2Load(std::string_view text);

/// What a walk adds up, so that everything is touched: one for every element, text and attribute
/// (declarations of namespaces are attributes), and the first byte of every name of an attribute,
/// of every value and of every text.
class WalkSum {
 public:
  void AddNode() noexcept { ++sum_; }
  void AddByte(char first) noexcept { sum_ += static_cast<unsigned char>(first); }
  [[nodiscard]] std::uint64_t Value() const noexcept { return sum_; }

 private:
  std::uint64_t sum_ = 0;
};

}  // namespace kx::bench
