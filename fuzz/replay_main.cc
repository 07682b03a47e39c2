// Runs a fuzz target on given inputs without the fuzzer: each argument is a file, or a folder whose
// files are taken in the order of their names. A folder that does not exist holds no input. The
// empty input always runs. Fails when no file was found at all, so that a replay that replays
// nothing is noticed.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <system_error>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> FilesOf(const fs::path& argument) {
  std::error_code ignored;
  if (fs::is_regular_file(argument, ignored)) return {argument};
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(argument, ignored)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

void Replay(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
  const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
  std::printf("replay: %s, %zu bytes\n", file.c_str(), input.size());
  std::fflush(stdout);  // the name must be out before a crash
  LLVMFuzzerTestOneInput(input.data(), input.size());
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const std::uint8_t nothing = 0;
    LLVMFuzzerTestOneInput(&nothing, 0);
    std::size_t count = 0;
    for (const char* argument : std::span(argv, static_cast<std::size_t>(argc)).subspan(1)) {
      for (const fs::path& file : FilesOf(argument)) {
        Replay(file);
        ++count;
      }
    }
    std::printf("replay: %zu inputs\n", count);
    return count == 0 ? 1 : 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "replay: %s\n", error.what());
    return 1;
  }
}
