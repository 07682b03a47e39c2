// Namespaces and the schemas that serve them: what a document knows. While a parse or a validation
// runs it fills a set of its own; afterwards the set is shared and never changed.
#pragma once

#include "platform/dom/schema_binder.h"
#include "platform/xdr/schema.h"
#include "platform/xdr/schema_names.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kx::xdr {

class SchemaSet final : public dom::SchemaKnowledge {
 public:
  struct Entry {
    std::string uri;
    SharedSchema schema;
    bool isInline = false;  ///< it stands in the document itself and has no definitions to show
  };
  static constexpr std::uint32_t kNone = 0xFFFFFFFFU;

  /// The set that a content knows, or null.
  [[nodiscard]] static const SchemaSet* Of(const dom::DocumentData& data) noexcept;

  /// The place of the entry that serves `uri`, or kNone.
  [[nodiscard]] std::uint32_t Find(std::string_view uri) const noexcept;
  [[nodiscard]] const Entry& At(std::uint32_t place) const noexcept { return entries_[place]; }
  [[nodiscard]] std::uint32_t Size() const noexcept {
    return static_cast<std::uint32_t>(entries_.size());
  }
  /// Adds an entry unless one serves the namespace already; returns its place.
  std::uint32_t Add(Entry entry);

  [[nodiscard]] runtime::Counted<const dom::SchemaKnowledge> ShareNamespace(
      const dom::SchemaKnowledge* known, std::string_view uri) const override;

 private:
  std::vector<Entry> entries_;
  // Filled when there are more than a few.
  std::unordered_map<std::string, std::uint32_t, NamespaceHash, NamespaceEqual> index_;
};

/// A set while it grows: as long as nothing is added it is the one it began with.
class GrowingSet {
 public:
  GrowingSet() = default;
  explicit GrowingSet(const SchemaSet* known) : now_(known) {}

  [[nodiscard]] std::uint32_t Find(std::string_view uri) const noexcept {
    return now_ ? now_->Find(uri) : SchemaSet::kNone;
  }
  [[nodiscard]] const SchemaSet::Entry& At(std::uint32_t place) const noexcept {
    return now_->At(place);
  }
  /// Adds an entry unless one serves the namespace already; returns its place.
  std::uint32_t Add(SchemaSet::Entry entry);
  /// Adds all entries of a set; places of those that were there stay.
  void AddAll(const runtime::Counted<const SchemaSet>& other);
  /// The set; null when it is empty. Called when nothing more is added.
  [[nodiscard]] runtime::Counted<const SchemaSet> Share() const noexcept { return now_; }

 private:
  runtime::Counted<const SchemaSet> now_;
  runtime::Counted<SchemaSet> own_;  // the same, once something has been added
};

}  // namespace kx::xdr
