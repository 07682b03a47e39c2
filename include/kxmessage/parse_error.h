// The errors of loading, with the place of the failure for tools.
#pragma once

#include "kxmessage/error.h"
#include "kxmessage/export.h"

#include <cstdint>
#include <string>
#include <utility>

namespace kx {

/// kxMsgErrorLoadingXML or kxMsgErrorLoadingSchema: a text that is no document, or breaks its
/// schema. Number, source and description are those of every error; the rest is what the
/// description was made of.
class KX_EXPORT ParseError : public Error {
 public:
  struct Details {
    std::int32_t code = 0;     ///< the parser's own number, for example 0xC00CE56D as signed
    std::string reason;        ///< the parser's text, with the line end that it may have
    std::int32_t line = 0;     ///< 1 for the first; 0 when the failure has no place
    std::int32_t linePos = 0;  ///< 1 for the first character of the line, in UTF-16 units
    std::string sourceText;    ///< the source line, without its end
  };

  ParseError(std::int32_t number, std::string source, std::string description, Details details)
      : Error(number, std::move(source), std::move(description)), details_(std::move(details)) {}

  [[nodiscard]] std::int32_t Code() const noexcept { return details_.code; }
  [[nodiscard]] const std::string& Reason() const noexcept { return details_.reason; }
  [[nodiscard]] std::int32_t Line() const noexcept { return details_.line; }
  [[nodiscard]] std::int32_t LinePosition() const noexcept { return details_.linePos; }
  [[nodiscard]] const std::string& SourceText() const noexcept { return details_.sourceText; }

 private:
  Details details_;
};

}  // namespace kx
