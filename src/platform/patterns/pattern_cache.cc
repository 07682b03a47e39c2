// See pattern_cache.h.
#include "platform/patterns/pattern_cache.h"

#include <algorithm>
#include <functional>

namespace kx::patterns {

const Pattern& PatternCache::Get(std::string_view text) {
  if (entries_ && text.data() != nullptr) {
    const Pattern& last = (*entries_)[last_].pattern;
    if (last && last.Text() == text) return last;
  }
  if (text.data() == nullptr || text.size() > kLongestText) return tooLong_ = Compile(text);
  if (!entries_) entries_ = std::make_unique<Entries>();
  const std::size_t hash = std::hash<std::string_view>()(text);
  Entry* const set = entries_->data() + hash % kSets * kWays;
  Entry* oldest = set;
  ++questions_;
  for (Entry* entry = set; entry != set + kWays; ++entry) {
    if (entry->hash == hash && entry->pattern && entry->pattern.Text() == text) {
      entry->asked = questions_;
      last_ = static_cast<std::size_t>(entry - entries_->data());
      return entry->pattern;
    }
    if (entry->asked < oldest->asked) oldest = entry;
  }
  *oldest = {hash, questions_, Compile(text)};
  last_ = static_cast<std::size_t>(oldest - entries_->data());
  return oldest->pattern;
}

std::size_t PatternCache::Size() const noexcept {
  if (!entries_) return 0;
  return static_cast<std::size_t>(
      std::count_if(entries_->begin(), entries_->end(),
                    [](const Entry& entry) { return static_cast<bool>(entry.pattern); }));
}

}  // namespace kx::patterns
