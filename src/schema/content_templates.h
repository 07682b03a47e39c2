// Contents of new messages, kept with the schema that they were built of, so that the next message
// of the same root is a copy. Safe for threads.
#pragma once

#include "platform/dom/document.h"
#include "platform/dom/node_record.h"
#include "schema/default_content.h"

#include <cstddef>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace kx::schema {

class ContentTemplates {
 public:
  /// All that a content depends on besides the schema itself.
  struct Key {
    dom::NodeId elementType = dom::kNoNode;
    std::string schemaName;
    ContentLimits limits;

    friend bool operator==(const Key& a, const Key& b) noexcept;
  };
  /// At most so many contents of so many nodes each are kept.
  static constexpr std::size_t kMostTemplates = 8;
  static constexpr std::size_t kMostNodes = 10'000;

  /// A new document with that content; nothing when none is kept.
  [[nodiscard]] dom::Document Copy(const Key& key) const;
  /// Keeps a copy of a document's content, unless there are too many, or it is too large.
  void Keep(const Key& key, const dom::Document& content);

 private:
  mutable std::mutex mutex_;
  std::vector<std::pair<Key, dom::Document>> templates_;  // frozen
};

}  // namespace kx::schema
