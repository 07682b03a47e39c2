// Named texts that outlive the process.
//
// A store keeps one set of texts for each application. What the texts mean (the schema base, the
// message base) is known to the callers only. Names and texts are UTF-8; names compare without
// regard to case.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kx::settings {

/// See above. Every store passes the same suite of tests. Usable from any thread once the
/// application name is set; several processes may use the same storage at the same time, and
/// nothing that one of them wrote is lost.
class SettingsStore {
 public:
  virtual ~SettingsStore() = default;
  SettingsStore() = default;
  SettingsStore(const SettingsStore&) = delete;
  SettingsStore& operator=(const SettingsStore&) = delete;

  /// Chooses the set that the other members work on. Called once, before them.
  virtual void SetApplicationName(std::string_view name) = 0;
  /// The text stored under `name`, or nothing. Raises: HostError when the storage is damaged or
  /// cannot be read.
  [[nodiscard]] virtual std::optional<std::string> Find(std::string_view name) = 0;
  /// Stores `text` under `name`, replacing an earlier one; durable on return. A text that is stored
  /// already is not written again. Raises: HostError 5 for an empty name or a NUL in either text;
  /// HostError when it cannot be stored.
  virtual void Write(std::string_view name, std::string_view text) = 0;
  /// The same for a text that somebody asked to be stored: it is durable on return, or raised, also
  /// where Write would keep a default in memory.
  virtual void Store(std::string_view name, std::string_view text) { Write(name, text); }

  /// The text stored under `name`, or `defaultText`; reading never stores. Raises: as Find.
  [[nodiscard]] std::string Read(std::string_view name, std::string_view defaultText) {
    std::optional<std::string> text = Find(name);
    return text ? *std::move(text) : std::string(defaultText);
  }
};

/// Raises HostError 5 unless the name and the text may be stored.
void RequireStorable(std::string_view name, std::string_view text);

}  // namespace kx::settings
