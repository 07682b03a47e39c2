// See documents.h.
#include "support/documents.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace kx::test {

namespace fs = std::filesystem;

fs::path SharedFolder() { return fs::path(KX_SOURCE_DIR).parent_path() / "shared"; }

bool InContinuousRun() {
  const char* value = std::getenv("CI");
  return value != nullptr && *value != '\0' && std::string(value) != "false";
}

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path.string());
  std::ostringstream content;
  content << file.rdbuf();
  return std::move(content).str();
}

std::vector<fs::path> FilesBelow(const fs::path& folder) {
  std::vector<fs::path> files;
  if (!fs::is_directory(folder)) return files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace kx::test
