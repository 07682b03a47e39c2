// Failures of loading, as the library reports them.
#pragma once

#include "platform/dom/parse_error.h"

#include <cstdint>

namespace kx::core {

/// Raises `code` (kxMsgErrorLoadingXML or kxMsgErrorLoadingSchema) as a ParseError, with the parse
/// error's number, reason (with the line end that it has), line, position and source text as the
/// five arguments of its text.
[[noreturn]] void RaiseLoadError(std::int32_t code, const dom::ParseError& error);

}  // namespace kx::core
