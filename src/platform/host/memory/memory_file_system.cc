// See memory_file_system.h. Every public call takes the mutex; the private ones expect it held.
#include "platform/host/memory/memory_file_system.h"

#include "platform/host/path_parts.h"

#include <algorithm>
#include <utility>

namespace kx::host {
namespace {

constexpr int kMostLinks = 40;

using Type = MemoryNode::Type;

FileInfo InfoOf(const MemoryNode& node) {
  FileInfo info;
  info.kind = node.type == Type::kFile     ? FileKind::kRegular
              : node.type == Type::kFolder ? FileKind::kFolder
                                           : FileKind::kOther;
  info.isReadOnly = node.isReadOnly;
  info.identity = {1, node.inode, node.content.size(), node.modified};
  return info;
}

// The names of `path` from the last to the first, so that the next one is at the back.
std::vector<std::string> NamesReversed(std::string_view path) {
  std::vector<std::string> names;
  std::size_t begin = 0;
  for (std::size_t i = 0; i <= path.size(); ++i) {
    if (i < path.size() && path[i] != '/') continue;
    const std::string_view name = path.substr(begin, i - begin);
    if (!name.empty() && name != ".") names.emplace_back(name);
    begin = i + 1;
  }
  std::reverse(names.begin(), names.end());
  return names;
}

}  // namespace

// An open file keeps its node alive, as an open file of a disk does after its removal.
class MemoryOpenFile final : public OpenFile {
 public:
  MemoryOpenFile(MemoryFileSystem& files, runtime::Counted<MemoryNode> node)
      : files_(files), node_(std::move(node)) {}

  [[nodiscard]] FileStatus Examine(FileInfo& info) override {
    const std::lock_guard<std::mutex> guard(files_.mutex_);
    info = InfoOf(*node_);
    return FileStatus::kOk;
  }

  [[nodiscard]] FileStatus ReadAt(std::uint64_t offset, std::span<char> buffer,
                                  std::size_t& count) override {
    const std::lock_guard<std::mutex> guard(files_.mutex_);
    count = 0;
    if (node_->type != Type::kFile) return FileStatus::kNotRegular;
    const std::string& content = node_->content;
    if (offset >= content.size()) return FileStatus::kOk;
    count = content.copy(buffer.data(), buffer.size(), offset);
    return FileStatus::kOk;
  }

  [[nodiscard]] FileStatus WriteAt(std::uint64_t offset, std::string_view bytes) override {
    const std::lock_guard<std::mutex> guard(files_.mutex_);
    if (node_->type == Type::kDevice) {
      return node_->isFull ? FileStatus::kDiskFull : FileStatus::kOk;
    }
    std::string& content = node_->content;
    const std::uint64_t end = offset + bytes.size();
    const std::uint64_t growth = end > content.size() ? end - content.size() : 0;
    if (growth > files_.freeBytes_) return FileStatus::kDiskFull;
    files_.freeBytes_ -= growth;
    if (growth > 0) content.resize(end);
    std::copy(bytes.begin(), bytes.end(), content.begin() + static_cast<std::ptrdiff_t>(offset));
    files_.Touch(*node_);
    return FileStatus::kOk;
  }

  [[nodiscard]] FileStatus Sync() override { return FileStatus::kOk; }
  [[nodiscard]] FileStatus Close() override { return FileStatus::kOk; }

 private:
  MemoryFileSystem& files_;
  runtime::Counted<MemoryNode> node_;
};

class MemoryLock final : public FileLock {
 public:
  MemoryLock(MemoryFileSystem& files, std::string path) : files_(files), path_(std::move(path)) {}
  ~MemoryLock() override { files_.Unlock(path_); }

 private:
  MemoryFileSystem& files_;
  std::string path_;
};

MemoryFileSystem::MemoryFileSystem() { root_ = NewNode(Type::kFolder); }

MemoryFileSystem::~MemoryFileSystem() = default;

MemoryFileSystem::Node MemoryFileSystem::NewNode(Type type) {
  Node node = runtime::MakeCounted<MemoryNode>();
  node->type = type;
  node->inode = nextInode_++;
  Touch(*node);
  return node;
}

MemoryFileSystem::Place MemoryFileSystem::Locate(std::string_view path, LastLink lastLink) {
  std::vector<std::string> names = NamesReversed(path);
  std::vector<Node> folders{root_};
  Place place{FileStatus::kOk, root_, {}, root_};
  for (int links = 0; !names.empty();) {
    const std::string name = std::move(names.back());
    names.pop_back();
    if (place.node->type != Type::kFolder) return {FileStatus::kFolderNotFound, {}, {}, {}};
    if (name == "..") {
      if (folders.size() > 1) folders.pop_back();
      place.node = folders.back();
      continue;
    }
    place.folder = place.node;
    place.name = name;
    const auto found = place.folder->children.find(name);
    if (found == place.folder->children.end()) {
      // Deliberate: as stat() does, the same status whether the last name is missing or another.
      return {FileStatus::kNotFound, names.empty() ? place.folder : Node(), name, {}};
    }
    place.node = found->second;
    const bool follow = !names.empty() || lastLink == LastLink::kFollow;
    if (place.node->type == Type::kLink && follow) {
      if (++links > kMostLinks) return {FileStatus::kAccessError, {}, {}, {}};
      const std::string target = place.node->content;
      if (target.starts_with('/')) folders.assign(1, root_);
      for (std::string& part : NamesReversed(target)) names.push_back(std::move(part));
      place.node = folders.back();
      continue;
    }
    if (place.node->type == Type::kFolder) folders.push_back(place.node);
  }
  return place;
}

void MemoryFileSystem::AddNode(std::string_view path, Node node) {
  const std::lock_guard<std::mutex> guard(mutex_);
  std::vector<std::string> names = NamesReversed(path);
  Node folder = root_;
  while (names.size() > 1) {
    Node& child = folder->children[names.back()];
    if (!child) child = NewNode(Type::kFolder);
    folder = child;
    names.pop_back();
  }
  if (!names.empty()) folder->children[names.back()] = std::move(node);
}

void MemoryFileSystem::AddFolder(std::string_view path) { AddNode(path, NewNode(Type::kFolder)); }

void MemoryFileSystem::AddFile(std::string_view path, std::string content) {
  Node node = NewNode(Type::kFile);
  node->content = std::move(content);
  AddNode(path, std::move(node));
}

void MemoryFileSystem::AddLink(std::string_view path, std::string target) {
  Node node = NewNode(Type::kLink);
  node->content = std::move(target);
  AddNode(path, std::move(node));
}

void MemoryFileSystem::AddDevice(std::string_view path, bool isFull) {
  Node node = NewNode(Type::kDevice);
  node->isFull = isFull;
  AddNode(path, std::move(node));
}

void MemoryFileSystem::SetReadOnly(std::string_view path) {
  const std::lock_guard<std::mutex> guard(mutex_);
  const Place place = Locate(path, LastLink::kFollow);
  if (place.status == FileStatus::kOk) place.node->isReadOnly = true;
}

void MemoryFileSystem::SetDenied(std::string_view path) {
  const std::lock_guard<std::mutex> guard(mutex_);
  const Place place = Locate(path, LastLink::kFollow);
  if (place.status == FileStatus::kOk) place.node->isDenied = true;
}

void MemoryFileSystem::SetFreeBytes(std::uint64_t bytes) {
  const std::lock_guard<std::mutex> guard(mutex_);
  freeBytes_ = bytes;
}

std::optional<std::string> MemoryFileSystem::Content(std::string_view path) {
  const std::lock_guard<std::mutex> guard(mutex_);
  const Place place = Locate(path, LastLink::kFollow);
  if (place.status != FileStatus::kOk || place.node->type != Type::kFile) return std::nullopt;
  return place.node->content;
}

std::vector<std::string> MemoryFileSystem::AllFiles() {
  const std::lock_guard<std::mutex> guard(mutex_);
  std::vector<std::string> result;
  std::vector<std::pair<std::string, Node>> open{{"", root_}};
  while (!open.empty()) {
    const auto [path, node] = std::move(open.back());
    open.pop_back();
    if (node->type == Type::kFile) result.push_back(path);
    const std::string folder = path + "/";
    for (const auto& [name, child] : node->children) open.emplace_back(folder + name, child);
  }
  std::sort(result.begin(), result.end());
  return result;
}

FileStatus MemoryFileSystem::Examine(const std::string& path, FileInfo& info) {
  const std::lock_guard<std::mutex> guard(mutex_);
  const Place place = Locate(path, LastLink::kFollow);
  if (place.status == FileStatus::kOk) info = InfoOf(*place.node);
  return place.status;
}

FileStatus MemoryFileSystem::ListNames(const std::string& folder, std::vector<std::string>& names) {
  const std::lock_guard<std::mutex> guard(mutex_);
  names.clear();
  const Place place = Locate(folder, LastLink::kFollow);
  if (place.status != FileStatus::kOk) return place.status;
  if (place.node->type != Type::kFolder) return FileStatus::kFolderNotFound;
  if (place.node->isDenied) return FileStatus::kAccessDenied;
  for (const auto& [name, child] : place.node->children) names.push_back(name);
  return FileStatus::kOk;
}

FileStatus MemoryFileSystem::OpenExisting(const Node& node, OpenMode mode,
                                          std::unique_ptr<OpenFile>& file) {
  const bool toRead = mode == OpenMode::kRead;
  if (node->type == Type::kFolder) return FileStatus::kIsFolder;
  if (toRead && node->type == Type::kDevice) return FileStatus::kNotRegular;
  if (!toRead && node->isReadOnly) return FileStatus::kReadOnly;
  if (node->isDenied) return FileStatus::kAccessDenied;
  if (mode == OpenMode::kTruncate && node->type == Type::kFile) {
    GiveBack(node->content.size());
    node->content.clear();
    Touch(*node);
  }
  file = std::make_unique<MemoryOpenFile>(*this, node);
  return FileStatus::kOk;
}

FileStatus MemoryFileSystem::OpenNew(const Place& place, std::unique_ptr<OpenFile>& file) {
  if (!place.folder) return FileStatus::kFolderNotFound;
  if (place.folder->isReadOnly || place.folder->isDenied) return FileStatus::kAccessDenied;
  Node node = NewNode(Type::kFile);
  place.folder->children[place.name] = node;
  file = std::make_unique<MemoryOpenFile>(*this, std::move(node));
  return FileStatus::kOk;
}

FileStatus MemoryFileSystem::Open(const std::string& path, OpenMode mode,
                                  std::unique_ptr<OpenFile>& file) {
  const std::lock_guard<std::mutex> guard(mutex_);
  const bool mustBeNew = mode == OpenMode::kCreateNew || mode == OpenMode::kCreatePrivate;
  const Place place = Locate(path, mustBeNew ? LastLink::kKeep : LastLink::kFollow);
  if (place.status == FileStatus::kOk && mustBeNew) return FileStatus::kExists;
  if (place.status == FileStatus::kOk) return OpenExisting(place.node, mode, file);
  if (place.status != FileStatus::kNotFound || mode == OpenMode::kRead) return place.status;
  return OpenNew(place, file);
}

FileStatus MemoryFileSystem::CheckWritable(const std::string& path) {
  const std::lock_guard<std::mutex> guard(mutex_);
  const Place place = Locate(path, LastLink::kFollow);
  if (place.status != FileStatus::kOk) return place.status;
  const bool refuses = place.node->isReadOnly || place.node->isDenied;
  return refuses ? FileStatus::kAccessDenied : FileStatus::kOk;
}

FileStatus MemoryFileSystem::FollowLinks(const std::string& path, std::string& target) {
  const std::lock_guard<std::mutex> guard(mutex_);
  target = path;
  for (int links = 0; links <= kMostLinks; ++links) {
    const Place place = Locate(target, LastLink::kKeep);
    if (place.status != FileStatus::kOk && place.status != FileStatus::kNotFound) {
      return place.status;
    }
    if (!place.node || place.node->type != Type::kLink) return FileStatus::kOk;
    const std::string& link = place.node->content;
    target = link.starts_with('/') ? link : InSameFolder(target, link, NameRules::kPosix);
  }
  return FileStatus::kAccessError;
}

FileStatus MemoryFileSystem::CopyPermissions(const std::string& from, const std::string& to) {
  const std::lock_guard<std::mutex> guard(mutex_);
  const Place source = Locate(from, LastLink::kFollow);
  const Place copy = Locate(to, LastLink::kFollow);
  if (source.status != FileStatus::kOk) return source.status;
  if (copy.status != FileStatus::kOk) return copy.status;
  copy.node->isReadOnly = source.node->isReadOnly;
  copy.node->isDenied = source.node->isDenied;
  return FileStatus::kOk;
}

FileStatus MemoryFileSystem::Rename(const std::string& from, const std::string& to) {
  const std::lock_guard<std::mutex> guard(mutex_);
  const Place source = Locate(from, LastLink::kKeep);
  const Place target = Locate(to, LastLink::kKeep);
  if (source.status != FileStatus::kOk) return source.status;
  if (!target.folder) return FileStatus::kFolderNotFound;
  if (target.node && target.node->type == Type::kFolder) return FileStatus::kIsFolder;
  if (target.folder->isReadOnly) return FileStatus::kAccessDenied;
  if (target.node) GiveBack(target.node->content.size());
  target.folder->children[target.name] = source.node;
  source.folder->children.erase(source.name);
  return FileStatus::kOk;
}

FileStatus MemoryFileSystem::Remove(const std::string& path) {
  const std::lock_guard<std::mutex> guard(mutex_);
  const Place place = Locate(path, LastLink::kKeep);
  if (place.status != FileStatus::kOk) return place.status;
  if (place.node->type == Type::kFolder) return FileStatus::kIsFolder;
  if (place.folder->isReadOnly) return FileStatus::kAccessDenied;
  GiveBack(place.node->content.size());
  place.folder->children.erase(place.name);
  return FileStatus::kOk;
}

FileStatus MemoryFileSystem::MakeFolders(const std::string& folder) {
  const std::lock_guard<std::mutex> guard(mutex_);
  std::vector<std::string> names = NamesReversed(folder);
  Node node = root_;
  for (; !names.empty(); names.pop_back()) {
    if (node->type != Type::kFolder) return FileStatus::kFolderNotFound;
    const auto found = node->children.find(names.back());
    if (found == node->children.end() && node->isReadOnly) return FileStatus::kAccessDenied;
    Node& child = node->children[names.back()];
    if (!child) child = NewNode(Type::kFolder);
    node = child;
  }
  return node->type == Type::kFolder ? FileStatus::kOk : FileStatus::kFolderNotFound;
}

FileStatus MemoryFileSystem::SyncFolder(const std::string& folder) {
  FileInfo info;
  return Examine(folder, info);
}

FileStatus MemoryFileSystem::Lock(const std::string& path, std::chrono::milliseconds patience,
                                  std::unique_ptr<FileLock>& lock) {
  std::unique_ptr<OpenFile> made;
  const FileStatus opened = Open(path, OpenMode::kReadWrite, made);
  if (opened != FileStatus::kOk) return opened;
  std::unique_lock<std::mutex> guard(mutex_);
  const auto isFree = [&] { return !locked_.contains(path); };
  if (!unlocked_.wait_for(guard, patience, isFree)) return FileStatus::kLocked;
  locked_.insert(path);
  lock = std::make_unique<MemoryLock>(*this, path);
  return FileStatus::kOk;
}

void MemoryFileSystem::Unlock(const std::string& path) {
  const std::lock_guard<std::mutex> guard(mutex_);
  locked_.erase(path);
  unlocked_.notify_all();
}

}  // namespace kx::host
