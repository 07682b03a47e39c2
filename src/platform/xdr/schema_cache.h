// Compiled schemas of the process. What a caller can observe is as if each was read every time: an
// entry is used only while every file that it was made of, the schemas it refers to included, still
// has the identity, size and time that it had, and every server says that its document is
// unchanged.
#pragma once

#include "platform/text/compare.h"
#include "platform/xdr/schema_provider.h"

#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace kx::xdr {

/// Groups by namespace and resolved location. Safe for threads.
class SchemaCache {
 public:
  SchemaCache() = default;
  SchemaCache(const SchemaCache&) = delete;
  SchemaCache& operator=(const SchemaCache&) = delete;

  /// The cache that the process shares.
  [[nodiscard]] static SchemaCache& OfProcess();

  /// The group of the namespace `uri` that was found at `url`; null when there is none.
  [[nodiscard]] SharedGroup Find(std::string_view uri, std::string_view url) const;
  void Put(std::string_view uri, std::string_view url, SharedGroup group);
  void Clear();
  [[nodiscard]] std::size_t Size() const;

 private:
  static constexpr std::size_t kMostEntries = 256;

  struct Entry {
    std::string uri;
    std::string url;
    SharedGroup group;
  };

  mutable std::mutex mutex_;
  mutable Entry last_;  // what was found last: most programs ask for one schema again and again
  std::unordered_map<std::string, SharedGroup, text::ExactHash, std::equal_to<>> groups_;
};

/// Gives what the cache has while it is current, and compiles the rest.
class CachingProvider final : public SchemaProvider {
 public:
  CachingProvider(const SchemaSource& source, SchemaCache& cache, SchemaLimits limits = {}) noexcept
      : source_(source), cache_(cache), limits_(limits) {}
  [[nodiscard]] LoadedGroup Load(std::string_view uri, std::string_view base) const override;

 private:
  const SchemaSource& source_;
  SchemaCache& cache_;
  SchemaLimits limits_;
};

}  // namespace kx::xdr
