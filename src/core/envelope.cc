// See envelope.h.
#include "core/envelope.h"

#include "core/msg_error.h"
#include "core/queries.h"

#include <array>
#include <cstdio>

namespace kx::core {

namespace {

std::string BaseName(const dom::Node& node) { return node.BaseName().value_or(std::string()); }

// Tells which attributes an envelope has. Most envelopes have them in the order in which they are
// asked for.
class AttributeWalk {
 public:
  explicit AttributeWalk(const dom::Cursor& envelope)
      : envelope_(envelope), expected_(envelope.FirstAttribute()) {}

  [[nodiscard]] bool Has(std::string_view name) {
    if (!expected_ || expected_.QualifiedName() != name) {
      return static_cast<bool>(envelope_.FindAttribute(name));
    }
    expected_ = expected_.Next();
    return true;
  }

 private:
  dom::Cursor envelope_;
  dom::Cursor expected_;
};

// True for an envelope as nearly all are, of which the pattern need not be asked.
bool IsPlainlyComplete(const dom::Cursor& envelope) {
  if (envelope.QualifiedName() != kEnvelopeName) return false;
  AttributeWalk attributes(envelope);
  for (const std::string_view name :
       {"version", "msgType", "uniqueID", "subType", "timeStamp", "schemaURL", "deliveryOptions",
        "deliveryResult", "tag", "class"}) {
    if (!attributes.Has(name)) return false;
  }
  return true;
}

}  // namespace

EnvelopeOrigin EnsureEnvelope(const dom::Document& document, std::string_view schemaFile,
                              host::Host& host) {
  const dom::Node root = document.DocumentElement();
  const std::string rootName = BaseName(root);
  dom::Node envelope = root;
  EnvelopeOrigin origin = EnvelopeOrigin::kWasThere;
  if (rootName != kEnvelopeName) {
    envelope = document.CreateElement(kEnvelopeName);
    envelope.AppendChild(root);
    document.AsNode().AppendChild(envelope);
    origin = EnvelopeOrigin::kCreated;
  }
  AttributeWalk attributes(envelope.At());
  const auto ensure = [&](std::string_view name, const auto& makeDefault) {
    if (!attributes.Has(name)) envelope.SetAttribute(name, makeDefault());
  };
  const auto text = [](std::string_view value) { return [value] { return std::string(value); }; };
  ensure("version", text("1.0.0"));
  ensure("msgType", text(rootName));
  ensure("uniqueID", [&host] { return NewUniqueID(host); });
  ensure("subType", text(""));
  ensure("timeStamp", [&host] { return CurrentTimeStamp(host); });
  ensure("schemaURL", text(schemaFile));
  ensure("deliveryOptions", text("0"));
  ensure("deliveryResult", text("0"));
  ensure("tag", text(""));
  ensure("class", text(rootName));
  ensure("encoding", text("iso-8859-1"));
  return origin;
}

void CheckEnvelope(const dom::Document& document) {
  const dom::Node root = document.DocumentElement();
  if (root.At().LocalName() != kEnvelopeName) RaiseMsgError(kxMsgErrorInvalidMessage);
  if (IsPlainlyComplete(root.At())) return;
  static const patterns::Pattern complete = patterns::Compile(
      "KXMessage[@version && @msgType && @uniqueID && @subType && @timeStamp && @schemaURL && "
      "@deliveryOptions && @tag && @class && @deliveryResult]");
  if (!core::SelectSingleNode(document.AsNode(), complete)) RaiseMsgError(kxMsgErrorInvalidMessage);
}

std::string NewUniqueID(host::Host& host) { return host.NewGuid(); }

std::string CurrentTimeStamp(host::Host& host) {
  const host::CalendarTime now = host.LocalTime();
  std::array<char, 40> text{};
  const int length = std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d",
                                   now.year, now.month, now.day, now.hour, now.minute, now.second);
  return {text.data(), static_cast<std::size_t>(length)};
}

void CheckInvalidChars(std::string_view value, std::string_view propertyName) {
  for (const char c : value) {
    const bool control = static_cast<unsigned char>(c) < 32;
    if (!control && std::string_view("<>:\"/\\|?*").find(c) == std::string_view::npos) continue;
    RaiseMsgError(kxMsgErrorInvalidMsgType, {propertyName});
  }
}

}  // namespace kx::core
