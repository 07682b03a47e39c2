// See load_error.h.
#include "core/load_error.h"

#include "kxmessage/parse_error.h"

#include "core/msg_error.h"

#include <array>
#include <string>

namespace kx::core {

void RaiseLoadError(std::int32_t code, const dom::ParseError& error) {
  const std::array<Variant, 5> arguments = {error.code, error.reason, error.line, error.linePos,
                                            error.srcText};
  throw ParseError(code, std::string(kMsgErrorSource), FormatMsgText(MsgTextOf(code), arguments),
                   {error.code, error.reason, error.line, error.linePos, error.srcText});
}

}  // namespace kx::core
