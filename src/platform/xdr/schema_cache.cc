// See schema_cache.h.
#include "platform/xdr/schema_cache.h"

#include "platform/xdr/schema_names.h"

#include <algorithm>
#include <utility>

namespace kx::xdr {

namespace {

/// A source for one load. Looks whether a group is current; what a server sends while it is asked
/// that, changed or refused, is what the load goes on with: nobody is asked twice.
class Revisit final : public SchemaSource {
 public:
  explicit Revisit(const SchemaSource& source) noexcept : source_(source) {}

  /// `place` is where the first member's location leads.
  [[nodiscard]] bool IsCurrent(const SchemaGroup& group, const SchemaPlace& place,
                               std::string_view location, std::string_view base) {
    const SchemaGroup::Member& first = group.members.front();
    if (!IsCurrent(first, place, location, base)) return false;
    return std::all_of(group.members.begin() + 1, group.members.end(),
                       [this](const SchemaGroup::Member& member) {
                         return IsCurrent(member, source_.Identify(member.location, member.base),
                                          member.location, member.base);
                       });
  }

  [[nodiscard]] SchemaText Read(std::string_view location, std::string_view base) const override {
    const bool isFresh = hasFresh_ && location == freshLocation_ && base == freshBase_;
    return isFresh ? fresh_ : source_.Read(location, base);
  }

 private:
  bool IsCurrent(const SchemaGroup::Member& member, const SchemaPlace& place,
                 std::string_view location, std::string_view base) {
    if (place.url.empty()) return false;
    if (!place.stamp.empty()) {
      return place.stamp == member.stamp && place.url == member.schema->Url();
    }
    SchemaText text = source_.Reread(location, base, member.stamp);
    if (text.unchanged) return true;
    fresh_ = std::move(text);
    freshLocation_ = location;
    freshBase_ = base;
    hasFresh_ = true;
    return false;
  }

  const SchemaSource& source_;
  bool hasFresh_ = false;
  SchemaText fresh_;
  std::string freshLocation_;
  std::string freshBase_;
};

std::string KeyOf(std::string_view uri, std::string_view url) {
  std::string key;
  key.reserve(uri.size() + url.size() + 1);
  return key.append(uri).append(1, '\n').append(url);
}

}  // namespace

SchemaCache& SchemaCache::OfProcess() {
  static SchemaCache cache;
  return cache;
}

SharedGroup SchemaCache::Find(std::string_view uri, std::string_view url) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (last_.group && last_.url == url && last_.uri == uri) return last_.group;
  const auto found = groups_.find(KeyOf(uri, url));
  if (found == groups_.end()) return {};
  last_ = {std::string(uri), std::string(url), found->second};
  return found->second;
}

// Full, it starts anew: an entry that is in use comes back with its next use.
void SchemaCache::Put(std::string_view uri, std::string_view url, SharedGroup group) {
  decltype(groups_) dropped;  // freed outside the lock, as is the last one found
  Entry last;
  const std::lock_guard<std::mutex> lock(mutex_);
  if (groups_.size() >= kMostEntries) dropped.swap(groups_);
  std::swap(last, last_);
  groups_[KeyOf(uri, url)] = std::move(group);
}

void SchemaCache::Clear() {
  decltype(groups_) dropped;
  Entry last;
  const std::lock_guard<std::mutex> lock(mutex_);
  dropped.swap(groups_);
  std::swap(last, last_);
}

std::size_t SchemaCache::Size() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return groups_.size();
}

LoadedGroup CachingProvider::Load(std::string_view uri, std::string_view base) const {
  const std::string_view location = uri.substr(kXSchema.size());
  const SchemaPlace place = source_.Identify(location, base);
  Revisit visit(source_);
  if (!place.url.empty()) {
    SharedGroup known = cache_.Find(uri, place.url);
    if (known && visit.IsCurrent(*known, place, location, base)) return {std::move(known), {}};
  }
  SchemaText text = visit.Read(location, base);
  if (text.failure) return {{}, std::move(text.failure)};
  LoadedGroup loaded = CompileGroup(uri, std::move(text), visit, limits_);
  if (!loaded.group) return loaded;
  const bool identified =
      std::none_of(loaded.group->members.begin(), loaded.group->members.end(),
                   [](const SchemaGroup::Member& member) { return member.stamp.empty(); });
  if (identified) cache_.Put(uri, place.url, loaded.group);
  return loaded;
}

}  // namespace kx::xdr
