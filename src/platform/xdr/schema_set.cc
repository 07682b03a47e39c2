// See schema_set.h.
#include "platform/xdr/schema_set.h"

#include "platform/dom/document_data.h"

#include <utility>

namespace kx::xdr {

namespace {

constexpr std::size_t kFew = 8;

}  // namespace

// Nobody but this folder makes knowledge of schemas.
const SchemaSet* SchemaSet::Of(const dom::DocumentData& data) noexcept {
  return static_cast<const SchemaSet*>(data.Schemas());
}

std::uint32_t SchemaSet::Find(std::string_view uri) const noexcept {
  if (entries_.size() > kFew) {
    const auto found = index_.find(uri);
    return found == index_.end() ? kNone : found->second;
  }
  for (std::uint32_t i = 0; i < entries_.size(); ++i) {
    if (IsSameNamespace(entries_[i].uri, uri)) return i;
  }
  return kNone;
}

std::uint32_t SchemaSet::Add(Entry entry) {
  const std::uint32_t known = Find(entry.uri);
  if (known != kNone) return known;
  entries_.push_back(std::move(entry));
  if (entries_.size() > kFew) {
    for (std::size_t i = index_.size(); i < entries_.size(); ++i) {
      index_.emplace(entries_[i].uri, static_cast<std::uint32_t>(i));
    }
  }
  return Size() - 1;
}

std::uint32_t GrowingSet::Add(SchemaSet::Entry entry) {
  const std::uint32_t known = Find(entry.uri);
  if (known != SchemaSet::kNone) return known;
  if (!own_) {
    own_ = now_ ? runtime::MakeCounted<SchemaSet>(*now_) : runtime::MakeCounted<SchemaSet>();
    now_ = own_;
  }
  return own_->Add(std::move(entry));
}

void GrowingSet::AddAll(const runtime::Counted<const SchemaSet>& other) {
  if (!now_) {
    now_ = other;
    return;
  }
  for (std::uint32_t i = 0; i < other->Size(); ++i) Add(other->At(i));
}

runtime::Counted<const dom::SchemaKnowledge> SchemaSet::ShareNamespace(
    const dom::SchemaKnowledge* known, std::string_view uri) const {
  const auto* const other = static_cast<const SchemaSet*>(known);
  const std::uint32_t place = Find(uri);
  if (place == kNone || known == this || (other != nullptr && other->Find(uri) != kNone)) {
    return runtime::Counted<const dom::SchemaKnowledge>(known);
  }
  if (other == nullptr && Size() == 1) return runtime::Counted<const dom::SchemaKnowledge>(this);
  const auto merged = other != nullptr ? runtime::MakeCounted<SchemaSet>(*other)
                                       : runtime::MakeCounted<SchemaSet>();
  merged->Add(entries_[place]);
  return merged;
}

}  // namespace kx::xdr
