// See load_error.h.
#include "core/load_error.h"

#include "core/msg_error.h"

namespace kx::core {

void RaiseLoadError(std::int32_t code, const dom::ParseError& error) {
  RaiseMsgError(code, {error.code, error.reason, error.line, error.linePos, error.srcText});
}

}  // namespace kx::core
