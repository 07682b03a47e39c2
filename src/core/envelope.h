// The envelope: the document element "KXMessage" around a message's content root, whose attributes
// are the message's header.
#pragma once

#include "platform/dom/document.h"
#include "platform/host/host.h"

#include <string>
#include <string_view>

namespace kx::core {

/// The name of the envelope element, which has no namespace.
inline constexpr std::string_view kEnvelopeName = "KXMessage";

/// Whether EnsureEnvelope had to make the envelope.
enum class EnvelopeOrigin : unsigned char { kWasThere, kCreated };

/// Gives `document` an envelope around its document element, unless it has one, and the envelope
/// those of the eleven header attributes that it lacks, with their defaults; `schemaFile` is the
/// default of "schemaURL". Existing attributes are never changed.
/// Raises: the run-time error 91 for a document without document element; DomError of the edits.
/// Note: "msgType" and "class" default to the name of the element that was the document element
/// when the call began, so an incomplete envelope gets its own name, "KXMessage".
EnvelopeOrigin EnsureEnvelope(const dom::Document& document, std::string_view schemaFile,
                              host::Host& host);

/// Raises kxMsgErrorInvalidMessage unless the document element is an envelope with all header
/// attributes; "encoding" may be missing. Raises: also the run-time error 91 without document
/// element.
void CheckEnvelope(const dom::Document& document);

/// A new identifier: 36 characters, five groups of lower-case hexadecimal digits joined by "-".
[[nodiscard]] std::string NewUniqueID(host::Host& host);

/// The current local date and time as the header has it: "yyyy-mm-dd hh:nn:ss".
[[nodiscard]] std::string CurrentTimeStamp(host::Host& host);

/// Raises kxMsgErrorInvalidMsgType with `propertyName` when `value` holds one of < > : " / \ | ? *
/// or a character with a code up to 31.
void CheckInvalidChars(std::string_view value, std::string_view propertyName);

}  // namespace kx::core
