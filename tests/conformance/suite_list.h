// The W3C suite as its own list describes it: one entry a test, with the documents' places. The
// list is an XML document and is read with Expat, so that the parser under test does not decide
// what it is tested with.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kx::test {

/// What the list asks of a processor that does not validate and reads nothing external.
enum class SuiteType : unsigned char { kValid, kInvalid, kNotWellFormed, kError };

struct SuiteTest {
  std::string id;
  SuiteType type = SuiteType::kError;
  std::string entities;        ///< none, general, parameter or both
  std::string version;         ///< empty: every version of XML
  std::string edition;         ///< empty: every edition of XML 1.0
  std::string recommendation;  ///< XML1.0, NS1.0, XML1.0-errata4e, ...
  bool namespaces = true;      ///< false: colons used against the namespaces standard
  std::filesystem::path document;
  std::filesystem::path output;  ///< its canonical form; empty when none is stated
};

/// The folder that the archive was unpacked into; it may be missing.
[[nodiscard]] std::filesystem::path SuiteFolder();

/// Every test of the list in `folder`. Raises: std::runtime_error when the list cannot be read.
[[nodiscard]] std::vector<SuiteTest> ReadSuiteList(const std::filesystem::path& folder);

}  // namespace kx::test
