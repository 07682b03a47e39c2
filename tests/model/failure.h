// The failures that the model foretells: number and text of each.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kx::model {

struct Failure {
  std::uint32_t number;
  std::string description;
};

/// One of the library's own errors, its text filled with `arguments`.
[[nodiscard]] Failure LibraryFailure(std::int32_t code,
                                     const std::vector<std::string>& arguments = {});
/// The run-time errors that editing can end in.
[[nodiscard]] Failure InvalidCall();   ///< 5, a name that a keyed collection does not have
[[nodiscard]] Failure ObjectNotSet();  ///< 91
[[nodiscard]] Failure InvalidNull();   ///< 94
/// The errors of the DOM.
[[nodiscard]] Failure NotAChild();
[[nodiscard]] Failure UnsuitableText(const std::string& text, const std::string& dataType);

}  // namespace kx::model
