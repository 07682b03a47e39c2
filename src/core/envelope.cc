// See envelope.h.
#include "core/envelope.h"

#include "core/msg_error.h"
#include "core/queries.h"

#include <array>
#include <cstdio>

namespace kx::core {

namespace {

std::string BaseName(const dom::Node& node) { return node.BaseName().value_or(std::string()); }

// Creates the attribute when it is missing; only then `makeDefault` is asked.
template <class MakeDefault>
void EnsureAttribute(const dom::Node& envelope, std::string_view name,
                     const MakeDefault& makeDefault) {
  if (!envelope.At().FindAttribute(name)) envelope.SetAttribute(name, makeDefault());
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
  const auto ensure = [&](std::string_view name, const auto& makeDefault) {
    EnsureAttribute(envelope, name, makeDefault);
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
  if (BaseName(root) != kEnvelopeName) RaiseMsgError(kxMsgErrorInvalidMessage);
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
