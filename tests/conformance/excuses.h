// The documents of the W3C suite whose stated result is not ours, each by name with the reason and
// with what happens instead (excuses.txt). The table is checked from both sides: an entry whose
// document gives the stated result after all is a failure, and so is one that fits its reason's
// description no longer.
#pragma once

#include "conformance/suite_list.h"
#include "platform/dom/parse_error.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace kx::test {

/// What differs from the suite's list.
enum class ExcusedResult : unsigned char {
  kRefused,   ///< a document that should be accepted is refused, with the code that is named
  kAccepted,  ///< a document that should be refused is accepted
  kOutput,    ///< it is accepted as it should be, but its canonical form is another one
};

struct Excuse {
  ExcusedResult result = ExcusedResult::kRefused;
  std::uint32_t code = 0;  ///< for kRefused
  std::string reason;      ///< one of the words that ExcuseFits knows
};

/// The table, by test. Raises: std::runtime_error for a line that it cannot read.
[[nodiscard]] std::map<std::string, Excuse> ReadExcuses(const std::filesystem::path& file);

/// True when the reason applies to the test: what the list or the document itself says about it.
[[nodiscard]] bool ExcuseFits(const Excuse& excuse, const SuiteTest& test,
                              std::string_view document);

}  // namespace kx::test
