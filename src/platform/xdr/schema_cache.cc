// See schema_cache.h.
#include "platform/xdr/schema_cache.h"

#include "platform/xdr/schema_names.h"

#include <algorithm>
#include <utility>

namespace kx::xdr {

SchemaCache& SchemaCache::OfProcess() {
  static SchemaCache cache;
  return cache;
}

SharedGroup SchemaCache::Find(const std::string& key) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = groups_.find(key);
  return found == groups_.end() ? SharedGroup() : found->second;
}

// Full, it starts anew: an entry that is in use comes back with its next use.
void SchemaCache::Put(const std::string& key, SharedGroup group) {
  decltype(groups_) dropped;  // freed outside the lock
  const std::lock_guard<std::mutex> lock(mutex_);
  if (groups_.size() >= kMostEntries) dropped.swap(groups_);
  groups_[key] = std::move(group);
}

void SchemaCache::Clear() {
  decltype(groups_) dropped;
  const std::lock_guard<std::mutex> lock(mutex_);
  dropped.swap(groups_);
}

std::size_t SchemaCache::Size() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return groups_.size();
}

// The first member's location has been asked about already.
bool CachingProvider::IsCurrent(const SchemaGroup& group) const {
  return std::all_of(group.members.begin() + 1, group.members.end(),
                     [this](const SchemaGroup::Member& member) {
                       const SchemaPlace place = source_.Identify(member.location, member.base);
                       return !place.stamp.empty() && place.stamp == member.stamp &&
                              place.url == member.schema->Url();
                     });
}

LoadedGroup CachingProvider::Load(std::string_view uri, std::string_view base) const {
  const std::string_view location = uri.substr(kXSchema.size());
  const SchemaPlace place = source_.Identify(location, base);
  const std::string key = std::string(uri) + '\n' + place.url;
  if (!place.stamp.empty()) {
    SharedGroup known = cache_.Find(key);
    if (known && known->members.front().stamp == place.stamp && IsCurrent(*known)) {
      return {std::move(known), {}};
    }
  }
  SchemaText text = source_.Read(location, base);
  if (text.failure) return {{}, std::move(text.failure)};
  LoadedGroup loaded = CompileGroup(uri, std::move(text), source_, limits_);
  if (!loaded.group) return loaded;
  const bool identified =
      std::none_of(loaded.group->members.begin(), loaded.group->members.end(),
                   [](const SchemaGroup::Member& member) { return member.stamp.empty(); });
  if (identified) cache_.Put(key, loaded.group);
  return loaded;
}

}  // namespace kx::xdr
