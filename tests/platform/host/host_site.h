// Places to test files at: a fresh folder of the real system, and the system in memory. A contract
// test runs at each of them.
#pragma once

#include "platform/host/files.h"
#include "platform/host/host.h"

#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

namespace kx::host {

/// A folder that is empty at first, and what a test does in it behind the library's back. Names are
/// relative to that folder; folders above a new name are made.
class HostSite {
 public:
  virtual ~HostSite() = default;

  [[nodiscard]] virtual Host& TheHost() = 0;
  /// The folder, a native name without a closing slash.
  [[nodiscard]] virtual std::string Root() = 0;
  virtual void AddFile(std::string_view name, std::string_view content) = 0;
  virtual void AddFolder(std::string_view name) = 0;
  virtual void AddLink(std::string_view name, std::string_view target) = 0;
  /// A device that never takes a byte.
  virtual void AddFullDevice(std::string_view name) = 0;
  virtual void SetReadOnly(std::string_view name) = 0;
  [[nodiscard]] virtual std::optional<std::string> Content(std::string_view name) = 0;
  /// How many names the folder `name` holds.
  [[nodiscard]] virtual std::size_t CountNames(std::string_view name) = 0;

  [[nodiscard]] std::string At(std::string_view name) { return Root() + "/" + std::string(name); }
  /// Files with the drive C at `Root()/drive`.
  [[nodiscard]] Files TheFiles();
};

/// How a site is made, and what it is called in test names.
struct SiteFactory {
  const char* name;
  std::function<std::unique_ptr<HostSite>()> make;
};
inline void PrintTo(const SiteFactory& site, std::ostream* out) { *out << site.name; }
[[nodiscard]] SiteFactory RealSite();
[[nodiscard]] SiteFactory MemorySite();

/// The run-time error that `action` raises, 0 for none.
[[nodiscard]] int RuntimeErrorOfCall(const std::function<void()>& action);

}  // namespace kx::host
