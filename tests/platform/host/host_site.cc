// See host_site.h.
#include "platform/host/host_site.h"

#include "platform/host/memory/memory_host.h"
#include "platform/host/posix/posix_host.h"
#include "platform/runtime/error.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <sys/stat.h>

namespace kx::host {
namespace {

namespace fs = std::filesystem;

class RealFolder final : public HostSite {
 public:
  RealFolder() {
    std::string pattern = (fs::temp_directory_path() / "kx-host-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    root_ = pattern;
  }
  ~RealFolder() override { fs::remove_all(root_); }

  [[nodiscard]] Host& TheHost() override { return host_; }
  [[nodiscard]] std::string Root() override { return root_; }

  void AddFile(std::string_view name, std::string_view content) override {
    fs::create_directories(fs::path(At(name)).parent_path());
    std::ofstream stream(At(name), std::ios::binary);
    stream << content;
  }
  void AddFolder(std::string_view name) override { fs::create_directories(At(name)); }
  void AddLink(std::string_view name, std::string_view target) override {
    fs::create_directories(fs::path(At(name)).parent_path());
    fs::create_symlink(target, At(name));
  }
  void AddFullDevice(std::string_view name) override { AddLink(name, "/dev/full"); }
  void SetReadOnly(std::string_view name) override { chmod(At(name).c_str(), 0444); }

  [[nodiscard]] std::optional<std::string> Content(std::string_view name) override {
    std::ifstream stream(At(name), std::ios::binary);
    if (!stream) return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(stream), {});
  }
  [[nodiscard]] std::size_t CountNames(std::string_view name) override {
    const fs::directory_iterator names(At(name));
    return static_cast<std::size_t>(std::distance(begin(names), end(names)));
  }

 private:
  PosixHost host_;
  std::string root_;
};

class FolderInMemory final : public HostSite {
 public:
  FolderInMemory() { host_.Memory().AddFolder("/site"); }

  [[nodiscard]] Host& TheHost() override { return host_; }
  [[nodiscard]] std::string Root() override { return "/site"; }

  void AddFile(std::string_view name, std::string_view content) override {
    host_.Memory().AddFile(At(name), std::string(content));
  }
  void AddFolder(std::string_view name) override { host_.Memory().AddFolder(At(name)); }
  void AddLink(std::string_view name, std::string_view target) override {
    host_.Memory().AddLink(At(name), std::string(target));
  }
  void AddFullDevice(std::string_view name) override { host_.Memory().AddDevice(At(name), true); }
  void SetReadOnly(std::string_view name) override { host_.Memory().SetReadOnly(At(name)); }
  [[nodiscard]] std::optional<std::string> Content(std::string_view name) override {
    return host_.Memory().Content(At(name));
  }
  [[nodiscard]] std::size_t CountNames(std::string_view name) override {
    std::vector<std::string> names;
    static_cast<void>(host_.Memory().ListNames(At(name), names));
    return names.size();
  }

 private:
  MemoryHost host_;
};

}  // namespace

Files HostSite::TheFiles() {
  DriveFolders drives;
  drives.Set('C', At("drive"));
  return {TheHost(), drives};
}

SiteFactory RealSite() {
  return {"Real", [] { return std::make_unique<RealFolder>(); }};
}

SiteFactory MemorySite() {
  return {"Memory", [] { return std::make_unique<FolderInMemory>(); }};
}

int RuntimeErrorOfCall(const std::function<void()>& action) {
  try {
    action();
  } catch (const HostError& error) {
    return runtime::RuntimeErrorOfStatus(error.Number());
  }
  return 0;
}

}  // namespace kx::host
