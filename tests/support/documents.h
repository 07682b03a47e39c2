// The documents that tests read as data: the conformance archive and the corpus that stand beside
// the project. A developer may have neither; the continuous run has both, and there a missing one
// is a failure.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kx::test {

/// The folder beside the project that holds shared documents; it may be missing.
[[nodiscard]] std::filesystem::path SharedFolder();

/// True in the continuous run (the environment says CI), where nothing may be left out.
[[nodiscard]] bool InContinuousRun();

/// The bytes of a file. Raises: std::runtime_error that names it.
[[nodiscard]] std::string ReadFile(const std::filesystem::path& path);

/// All regular files below `folder`, in order of their names; empty when it is missing.
[[nodiscard]] std::vector<std::filesystem::path> FilesBelow(const std::filesystem::path& folder);

}  // namespace kx::test

/// Ends the running test when `folder` is missing: skipped with a reason, failed in the continuous
/// run. A macro because only the test's own body can return.
#define KX_NEED_FOLDER(folder)                                                          \
  if (!std::filesystem::is_directory(folder)) {                                         \
    if (::kx::test::InContinuousRun()) {                                                \
      FAIL() << (folder) << " is missing, and the continuous run must have it";         \
    }                                                                                   \
    GTEST_SKIP() << (folder) << " is missing: these documents are not on this machine"; \
  }                                                                                     \
  static_assert(true, "needs a semicolon")
