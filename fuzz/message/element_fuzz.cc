// A sequence of readings and settings on a message, one for every few bytes. Whatever was done, the
// message's text is read again as the same tree, and with validation it is judged as the message
// itself is.
#include "kxmessage/element.h"
#include "kxmessage/error.h"
#include "kxmessage/found_elements.h"
#include "kxmessage/message.h"

#include "core/handle_access.h"
#include "core/message/message_impl.h"
#include "message_world.h"
#include "read_again.h"
#include "script.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace {

using namespace kx;
using fuzz::Script;

constexpr std::array<const char*, 12> kNames = {"Item", "Qty",  "Price",  "Day",
                                                "Data", "Note", "Remark", "Item/Qty",
                                                "*",    "..",   "Nobody", "//Note"};

Variant ValueOf(Script& script) {
  switch (script.Byte() % 6) {
    case 0:
      return static_cast<std::int32_t>(script.Byte()) - 128;
    case 1:
      return script.Byte() / 8.0;
    case 2:
      return Date{static_cast<double>(script.Byte()) * 200};
    case 3:
      return Variant::Bytes{script.Byte(), script.Byte()};
    case 4:
      return (script.Byte() & 1U) != 0;
    default:
      return script.Text();
  }
}

KXMsgElement Step(const KXMessage& message, const KXMsgElement& at, Script& script) {
  const char* const name = kNames.at(script.Byte() % kNames.size());
  switch (script.Byte() % 10) {
    case 0:
    case 1:
      return at.ChildElements(name);
    case 2:
      return at.ChildElements(static_cast<std::int32_t>(script.Byte() % 5));
    case 3:
      at.Value(ValueOf(script));
      return at;
    case 4:
      static_cast<void>(at.Value());
      return at;
    case 5:
      for (const KXMsgElement& child : at) static_cast<void>(child.Info().Name());
      return at;
    case 6:
      return at.FindElements(name).Element(1);
    case 7:
      static_cast<void>(at.KnownValidChildren().Exists(name));
      static_cast<void>(at.KnownValidChildren().Count());
      return at;
    case 8:
      return at.Parent();
    default:
      return message.RootElement();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  Script script(bytes, size);
  const KXMessage message =
      HandleAccess::Wrap<KXMessage>(runtime::MakeCounted<core::MessageImpl>(fuzz::MessageWorld()));
  message.InitMessage("order.xdr");

  KXMsgElement at = message.RootElement();
  for (int steps = 0; steps < 200 && !script.AtEnd(); ++steps) {
    try {
      if (KXMsgElement next = Step(message, at, script)) at = next;
    } catch (const Error&) {
      // Refused; what it did before that stays.
    }
  }
  fuzz::CheckReadsAgain(message);
  return 0;
}
