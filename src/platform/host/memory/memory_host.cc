// See memory_host.h.
#include "platform/host/memory/memory_host.h"

#include "platform/host/guid_text.h"
#include "platform/runtime/error.h"

#include <utility>

namespace kx::host {

MemoryHost::MemoryHost() { files_.AddFolder("/tmp"); }

void MemoryHost::SetEnvironment(std::string name, std::string value) {
  environment_[std::move(name)] = std::move(value);
}

void MemoryHost::ClearEnvironment(std::string_view name) {
  const auto found = environment_.find(name);
  if (found != environment_.end()) environment_.erase(found);
}

std::string MemoryHost::NewGuid() {
  GuidBytes bytes{};
  std::uint32_t count = ++guidCount_;
  for (std::size_t i = bytes.size(); i > bytes.size() - 4; --i) {
    bytes[i - 1] = static_cast<std::uint8_t>(count & 0xFFU);
    count >>= 8U;
  }
  return RandomGuidText(bytes);
}

std::optional<std::string> MemoryHost::Environment(std::string_view name) {
  const auto found = environment_.find(name);
  if (found == environment_.end()) return std::nullopt;
  return found->second;
}

std::string MemoryHost::PrivateTemporaryFolder() {
  constexpr std::string_view kFolder = "/tmp/private";
  if (Files().MakeFolders(std::string(kFolder)) != FileStatus::kOk) {
    runtime::RaiseRuntimeError(runtime::kPathFileAccessError);
  }
  return std::string(kFolder) + "/";
}

FileSystem& MemoryHost::Files() {
  if (replacement_ != nullptr) return *replacement_;
  return files_;
}

}  // namespace kx::host
