// KXMessage: the handle of a MessageImpl, and the properties of the header.
#include "kxmessage/message.h"

#include "core/envelope.h"
#include "core/handle_access.h"
#include "core/message/message_impl.h"
#include "platform/runtime/conversions.h"

namespace kx {

namespace {

core::MessageImpl& Of(const KXMessage& message) {
  return HandleAccess::Of<core::MessageImpl>(message);
}

ObjectRef NewMessage(runtime::Counted<const core::Environment> environment) {
  return ObjectRef(runtime::MakeCounted<core::MessageImpl>(std::move(environment)).Get());
}

std::string HeaderText(const KXMessage& message, std::string_view attribute) {
  return Of(message).Envelope().GetAttribute(attribute).value_or(std::string());
}

void HeaderText(const KXMessage& message, std::string_view attribute, std::string_view value) {
  Of(message).Envelope().SetAttribute(attribute, value);
}

// The two that name files and folders where messages are kept.
void CheckedHeaderText(const KXMessage& message, std::string_view attribute,
                       std::string_view property, std::string_view value) {
  Of(message).CheckInitialized();
  core::CheckInvalidChars(value, property);
  HeaderText(message, attribute, value);
}

std::int32_t HeaderNumber(const KXMessage& message, std::string_view attribute) {
  return runtime::TextToInteger(HeaderText(message, attribute));
}

}  // namespace

KXMessage::KXMessage() : Handle(NewMessage(core::Environment::OfProcess())) {}

KXMessage::KXMessage(const Options& options)
    : Handle(NewMessage(core::Environment::Make(options))) {}

void KXMessage::InitMessage(std::string_view SchemaURL, std::string_view RootElementName) const {
  Of(*this).InitMessage(SchemaURL, RootElementName);
}

void KXMessage::InitMessageFromString(std::string_view SchemaString,
                                      std::string_view RootElementName) const {
  Of(*this).InitMessageFromString(SchemaString, RootElementName);
}

void KXMessage::LoadMessage(std::string_view MsgURL) const { Of(*this).LoadMessage(MsgURL); }

void KXMessage::LoadMessageFromString(std::string_view MsgString) const {
  Of(*this).LoadMessageFromString(MsgString);
}

void KXMessage::LoadMessageFromElement(const KXMsgElement& Element) const {
  Of(*this).LoadMessageFromElement(HandleAccess::Of<element::ElementImpl>(Element));
}

KXMessage KXMessage::CloneMessage() const {
  return HandleAccess::Wrap<KXMessage>(Of(*this).CloneMessage());
}

KXMsgElement KXMessage::RootElement() const {
  return HandleAccess::Wrap<KXMsgElement>(Of(*this).RootElement());
}

std::string KXMessage::XML() const { return Of(*this).Xml(); }

void KXMessage::SaveMessage(std::string_view Destination) const {
  Of(*this).SaveMessage(Destination);
}

std::string KXMessage::SchemaPath() const {
  return Of(*this).GetEnvironment().Locations().ResolveSchemaLocation({});
}

std::string KXMessage::MsgPath() const {
  return Of(*this).GetEnvironment().Locations().ResolveMessageLocation({});
}

std::string KXMessage::DefaultSchemaURL() const { return Of(*this).DefaultSchemaUrl(); }

void KXMessage::DefaultSchemaURL(std::string_view Value) const {
  Of(*this).DefaultSchemaUrl(Value);
}

std::string KXMessage::Version() const { return HeaderText(*this, "version"); }
void KXMessage::Version(std::string_view Value) const { HeaderText(*this, "version", Value); }

std::string KXMessage::MsgType() const { return HeaderText(*this, "msgType"); }
void KXMessage::MsgType(std::string_view Value) const {
  CheckedHeaderText(*this, "msgType", "MsgType", Value);
}

std::string KXMessage::SubType() const { return HeaderText(*this, "subType"); }
void KXMessage::SubType(std::string_view Value) const {
  CheckedHeaderText(*this, "subType", "SubType", Value);
}

std::string KXMessage::Class() const { return HeaderText(*this, "class"); }
void KXMessage::Class(std::string_view Value) const { HeaderText(*this, "class", Value); }

std::string KXMessage::Encoding() const { return HeaderText(*this, "encoding"); }
void KXMessage::Encoding(std::string_view Value) const { HeaderText(*this, "encoding", Value); }

Date KXMessage::TimeStamp() const {
  const core::MessageImpl& message = Of(*this);
  const std::optional<std::string> text = message.Envelope().GetAttribute("timeStamp");
  return runtime::TextToDate(text ? *text
                                  : core::CurrentTimeStamp(message.GetEnvironment().Host()));
}

std::string KXMessage::UniqueID() const { return HeaderText(*this, "uniqueID"); }

std::string KXMessage::SchemaFile() const { return HeaderText(*this, "schemaURL"); }

std::int32_t KXMessage::DeliveryOptions() const { return HeaderNumber(*this, "deliveryOptions"); }
void KXMessage::DeliveryOptions(std::int32_t Value) const {
  HeaderText(*this, "deliveryOptions", std::to_string(Value));
}

std::int32_t KXMessage::DeliveryResult() const { return HeaderNumber(*this, "deliveryResult"); }
void KXMessage::DeliveryResult(std::int32_t Value) const {
  HeaderText(*this, "deliveryResult", std::to_string(Value));
}

std::string KXMessage::Tag() const { return HeaderText(*this, "tag"); }
void KXMessage::Tag(std::string_view Value) const { HeaderText(*this, "tag", Value); }

}  // namespace kx
