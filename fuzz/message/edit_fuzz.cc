// A sequence of edits, one for every few bytes, on elements and attributes of several messages that
// are held at once, removed ones among them. Whatever was done, each message's text is read again
// as the same tree, and with validation it is judged as the message itself is.
#include "kxmessage/attributes.h"
#include "kxmessage/element.h"
#include "kxmessage/error.h"
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

constexpr std::array<const char*, 24> kNames = {
    "A",    "B",     "C",    "D",   "One",   "Bare", "Alternatives", "Free",
    "Root", "Any",   "Item", "Qty", "state", "hue",  "size",         "flag",
    "word", "fixed", "no",   "",    "xmlns", "D/A",  "..",           "it's"};
constexpr std::array<const char*, 3> kSchemas = {"edit.xdr", "common.xdr", "order.xdr"};
constexpr std::int32_t kMaxChildren = 64;
constexpr std::size_t kMaxText = 8'000;

// Everything that the edits go through.
class Bench {
 public:
  explicit Bench(Script& script) : script_(script) {
    for (std::size_t i = 0; i < messages_.size(); ++i) {
      messages_[i] = HandleAccess::Wrap<KXMessage>(
          runtime::MakeCounted<core::MessageImpl>(fuzz::MessageWorld()));
      messages_[i].InitMessage(kSchemas.at(i % kSchemas.size()));
      elements_[i] = messages_[i].RootElement();
      elements_[i + messages_.size()] = messages_[i].RootElement();
    }
  }

  void Step() {
    const std::uint8_t what = script_.Byte();
    KXMsgElement& at = elements_[what / 32];
    const std::uint8_t argument = script_.Byte();
    switch (what % 32) {
      case 0:
      case 1:
        Keep(at.AddChild(Name(argument)));
        return;
      case 2:
        at.RemoveChildKey(Name(argument));
        return;
      case 3:
        at.RemoveChildKey(argument % 8);
        return;
      case 4:
        static_cast<void>(at.RemoveChild(elements_[argument % 8]));
        return;
      case 5:
      case 6:
        if (HasRoom(at) && HasRoom(elements_[argument % 8])) {
          Keep(at.InsertChild(elements_[argument % 8]));
        }
        return;
      case 7:
        if (HasRoom(at) && HasRoom(elements_[argument % 8])) {
          Keep(at.ReplaceChild(elements_[argument % 8], argument / 8 % 4));
        }
        return;
      case 8:
      case 9:
        at.ReplaceGroup(static_cast<std::int16_t>(argument % 5));
        return;
      case 10:
        Keep(at.ChildElements(Name(argument)));
        return;
      case 11:
        Keep(at.ChildElements(argument % 8));
        return;
      case 12:
        Keep(at.Parent());
        return;
      case 13:
        Keep(messages_[argument % messages_.size()].RootElement());
        return;
      case 14:
        for (const KXMsgElement& child : at) Keep(child);
        return;
      case 15:
        Ask(at);
        return;
      default:
        StepOnAttributes(at.Attributes(), what % 32, argument);
    }
  }

  void Check() const {
    for (const KXMessage& message : messages_) fuzz::CheckReadsAgain(message);
  }

 private:
  static std::string Name(std::uint8_t number) { return kNames.at(number % kNames.size()); }

  void StepOnAttributes(const KXMsgAttributes& attributes, int what, std::uint8_t argument) {
    KXMsgAttribute& held = attributes_[argument % attributes_.size()];
    switch (what) {
      case 16:
      case 17:
        held = attributes.AddAttribute(Name(argument), script_.Text());
        return;
      case 18:
      case 19:
        held = attributes.Attrib(Name(argument));
        return;
      case 20:
        held = attributes.Attrib(argument / 4 % 8);
        return;
      case 21:
        attributes.RemoveAttribute(Name(argument));
        return;
      case 22:
        attributes.RemoveAttribute(argument % 8);
        return;
      case 23:
        for (const KXMsgAttribute& attribute : attributes) held = attribute;
        return;
      case 24:
      case 25:
        held.Value(script_.Text());
        return;
      case 26:
        held.Value(argument % 2 == 0 ? "1" : "red");
        return;
      case 27:
        static_cast<void>(held.Value());
        static_cast<void>(held.Info().Values());
        static_cast<void>(held.Info().ReadOnly());
        return;
      case 28:
        static_cast<void>(attributes.Exists(Name(argument)));
        static_cast<void>(attributes.Count());
        return;
      default:
        for (const KXMsgAttributeInfo& info : attributes.KnownValidAttributes()) {
          static_cast<void>(info.DefaultValue());
        }
    }
  }

  static void Ask(const KXMsgElement& at) {
    static_cast<void>(at.GroupNumber());
    static_cast<void>(at.CurrentGroup());
    for (std::int16_t group = 1; group <= at.NumberOfGroups(); ++group) {
      static_cast<void>(at.KnownGroupElements(group).Count());
    }
    static_cast<void>(at.Info().MaxOccurrences());
    static_cast<void>(at.XML());
  }

  // Copies of copies grow beyond all bounds.
  static bool HasRoom(const KXMsgElement& at) {
    return at.Count() < kMaxChildren && at.XML().size() < kMaxText;
  }

  void Keep(const KXMsgElement& element) {
    if (element) elements_[next_++ % elements_.size()] = element;
  }

  Script& script_;
  std::array<KXMessage, 4> messages_ = {nullptr, nullptr, nullptr, nullptr};
  std::array<KXMsgElement, 8> elements_;
  std::array<KXMsgAttribute, 4> attributes_;
  std::size_t next_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  Script script(bytes, size);
  Bench bench(script);
  for (int steps = 0; steps < 200 && !script.AtEnd(); ++steps) {
    try {
      bench.Step();
    } catch (const Error&) {
      // Refused; what it did before that stays.
    }
  }
  bench.Check();
  return 0;
}
