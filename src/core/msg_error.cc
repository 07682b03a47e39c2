// See msg_error.h; the texts are in msg_texts.cc.
#include "core/msg_error.h"

#include "platform/runtime/error.h"

namespace kx::core {

std::string FormatMsgText(std::string_view text, std::span<const Variant> arguments) {
  std::string formatted(text);
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string token = "%%" + std::to_string(i);
    const std::string value = arguments[i].ToText();
    const std::size_t at = formatted.find(token);
    if (at != std::string::npos) formatted.replace(at, token.size(), value);
  }
  return formatted;
}

void RaiseMsgError(std::int32_t code, std::span<const Variant> arguments) {
  throw MsgError(code, std::string(kMsgErrorSource), FormatMsgText(MsgTextOf(code), arguments));
}

void RaiseMsgError(std::int32_t code, std::initializer_list<Variant> arguments) {
  RaiseMsgError(code, std::span<const Variant>(arguments.begin(), arguments.size()));
}

}  // namespace kx::core
