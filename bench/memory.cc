// See memory.h.
#include "memory.h"

#include "peers.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kx::bench {

namespace {

constexpr int kCopiesOfSmall = 2000;

// A text in a file of its own, gone with the object.
class TextFile {
 public:
  explicit TextFile(const std::string& text)
      : name_((std::filesystem::temp_directory_path() / "kx_bench_XXXXXX").string()) {
    const int file = mkstemp(name_.data());
    if (file < 0) throw std::runtime_error("no temporary file can be made");
    const ssize_t written = write(file, text.data(), text.size());
    close(file);
    if (written != static_cast<ssize_t>(text.size())) {
      throw std::runtime_error("the temporary file cannot be written");
    }
  }
  ~TextFile() { unlink(name_.c_str()); }
  TextFile(const TextFile&) = delete;
  TextFile& operator=(const TextFile&) = delete;
  [[nodiscard]] const std::string& Name() const noexcept { return name_; }

 private:
  std::string name_;
};

// A file's bytes as memory that is resident already.
class MappedText {
 public:
  explicit MappedText(const std::string& name) {
    const int file = open(name.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status {};
    if (file < 0 || fstat(file, &status) != 0) throw std::runtime_error("cannot open " + name);
    size_ = static_cast<std::size_t>(status.st_size);
    memory_ = mmap(nullptr, size_, PROT_READ, MAP_PRIVATE | MAP_POPULATE, file, 0);
    close(file);
    if (memory_ == MAP_FAILED) throw std::runtime_error("cannot map " + name);
  }
  ~MappedText() { munmap(memory_, size_); }
  MappedText(const MappedText&) = delete;
  MappedText& operator=(const MappedText&) = delete;
  [[nodiscard]] std::string_view Text() const noexcept {
    return {static_cast<const char*>(memory_), size_};
  }

 private:
  void* memory_ = nullptr;
  std::size_t size_ = 0;
};

// Counted from the page tables: the cheaper counter of the process lags behind by many pages.
std::size_t ResidentBytes() {
  std::array<char, 4096> report{};
  const int file = open("/proc/self/smaps_rollup", O_RDONLY | O_CLOEXEC);
  const ssize_t size = file < 0 ? -1 : read(file, report.data(), report.size() - 1);
  if (file >= 0) close(file);
  const char* const line = size > 0 ? std::strstr(report.data(), "Rss:") : nullptr;
  if (line == nullptr) throw std::runtime_error("/proc/self/smaps_rollup cannot be read");
  return std::strtoull(line + 4, nullptr, 10) * 1024;
}

std::unique_ptr<LoadedTree> LoadWith(const std::string& library, std::string_view text) {
  if (library == "ours") return LoadOurs(text);
  if (library == "pugixml") return PugixmlLoad(text);
  if (library == "libxml2") return Libxml2Load(text);
  throw std::runtime_error("no library is called " + library);
}

double GrowthOf(const std::string& program, const std::string& library, const TextFile& file,
                int copies) {
  const std::string command = "'" + program + "' --memory-process " + library + " " + file.Name() +
                              " " + std::to_string(copies);
  FILE* const output = popen(command.c_str(), "r");
  double bytes = 0;
  const int fields = output == nullptr ? 0 : std::fscanf(output, "%lf", &bytes);
  const int status = output == nullptr ? -1 : pclose(output);
  if (fields != 1 || status != 0) throw std::runtime_error("failed: " + command);
  return bytes / copies;
}

}  // namespace

std::vector<Result> MeasureMemory(const std::string& program, const std::string& input) {
  const TextFile file(MakeWorkload(input).texts.front());
  const int copies = input == "1k" ? kCopiesOfSmall : 1;
  const double ours = GrowthOf(program, "ours", file, copies);
  std::vector<Result> results;
  for (const char* peer : {"pugixml", "libxml2"}) {
    results.push_back(
        {"memory", input, ours, peer, GrowthOf(program, peer, file, copies), Unit::kBytes});
  }
  // The text itself stands in for a peer: bytes of memory for a byte of text.
  const auto text = static_cast<double>(MappedText(file.Name()).Text().size());
  results.push_back({"memory", input, ours, "text", text, Unit::kBytes});
  return results;
}

int RunMemoryProcess(const std::string& library, const std::string& file, int copies) {
  const MappedText text(file);
  // Code and tables become resident with the first document, whatever its size.
  LoadWith(library, "<order xmlns='urn:order'><item n='1'>one &amp; two</item></order>").reset();
  std::vector<std::unique_ptr<LoadedTree>> trees(static_cast<std::size_t>(copies));
  const std::size_t before = ResidentBytes();
  for (std::unique_ptr<LoadedTree>& tree : trees) tree = LoadWith(library, text.Text());
  std::cout << ResidentBytes() - before << std::endl;
  return 0;
}

}  // namespace kx::bench
