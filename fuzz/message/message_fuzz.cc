// Any text as a message, with schemas at hand. What loads can be walked, and its text is a document
// that loads again to the same text, or is refused with an error.
#include "kxmessage/element.h"
#include "kxmessage/error.h"
#include "kxmessage/message.h"

#include "core/handle_access.h"
#include "core/message/message_impl.h"
#include "message_world.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

using namespace kx;

KXMessage Load(std::string_view text) {
  KXMessage message =
      HandleAccess::Wrap<KXMessage>(runtime::MakeCounted<core::MessageImpl>(fuzz::MessageWorld()));
  message.DefaultSchemaURL("order.xdr");
  message.LoadMessageFromString(text);
  return message;
}

void Walk(const KXMsgElement& element, int depth) {
  static_cast<void>(element.Info().DataType());
  static_cast<void>(element.Info().MaxOccurrences());
  if (depth == 0) return;
  for (const KXMsgElement& child : element) Walk(child, depth - 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  try {
    const KXMessage message = Load({reinterpret_cast<const char*>(bytes), size});
    const std::string text = message.XML();
    if (message.CloneMessage().XML() != text) std::abort();
    Walk(message.RootElement(), 8);
    if (message.XML() != text) std::abort();
    const std::string again = Load(text).XML();
    if (Load(again).XML() != again) std::abort();
  } catch (const Error&) {
    // Refused.
  }
  return 0;
}
