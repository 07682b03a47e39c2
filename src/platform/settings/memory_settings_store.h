// Settings that end with the process.
#pragma once

#include "platform/settings/settings_store.h"
#include "platform/text/compare.h"

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace kx::settings {

/// A store in memory, for tests and for callers that want nothing kept.
class MemorySettingsStore final : public SettingsStore {
 public:
  void SetApplicationName(std::string_view name) override;
  [[nodiscard]] std::optional<std::string> Find(std::string_view name) override;
  void Write(std::string_view name, std::string_view text) override;

  /// How often a text was stored that differed from the one before.
  [[nodiscard]] int WriteCount() const;

 private:
  using Texts = std::map<std::string, std::string, text::CaselessLess>;

  mutable std::mutex mutex_;
  std::map<std::string, Texts, text::CaselessLess> applications_;
  std::string application_;
  int writeCount_ = 0;
};

}  // namespace kx::settings
