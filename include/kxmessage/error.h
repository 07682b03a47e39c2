// The one exception family of the library and of the platform under it. A failure carries a
// number, a source and a description, as a caller of the component reads them.
//
// This header is a value header: every folder, the lowest included, may include it.
#pragma once

#include "kxmessage/export.h"

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

namespace kx {

/// A failure of any operation: of the library's own rules, of the DOM, of a file, of a keyed
/// collection or of a conversion. Thrown by value, caught by reference.
class KX_EXPORT Error : public std::exception {
 public:
  Error(std::int32_t number, std::string source, std::string description)
      : number_(number), source_(std::move(source)), description_(std::move(description)) {}

  /// The status code as a signed 32-bit number: a library code (0x80040992 + n), a run-time error
  /// n as 0x800A0000 + n, or the platform's own code.
  [[nodiscard]] std::int32_t Number() const noexcept { return number_; }
  /// Who raised it: "KXMessages" for the library's rules, "msxml3.dll" for the DOM.
  [[nodiscard]] const std::string& Source() const noexcept { return source_; }
  /// The text of the failure, UTF-8.
  [[nodiscard]] const std::string& Description() const noexcept { return description_; }

  [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::int32_t number_;
  std::string source_;
  std::string description_;
};

}  // namespace kx
