// A message: one XML document, an envelope around one content root that is bound to its schema.
#pragma once

#include "kxmessage/element.h"
#include "kxmessage/export.h"
#include "kxmessage/handle.h"
#include "kxmessage/options.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace kx {

/// A message. A new one is empty: it is filled by one of InitMessage, InitMessageFromString,
/// LoadMessage, LoadMessageFromString and LoadMessageFromElement, or is the clone of another.
/// Properties of the header, and XML, raise kxMsgErrorNotInitialized before that.
///
/// A location is a file name or path, relative ones completed against SchemaPath or MsgPath with
/// ".xml" where they have no extension, or a URL (file, http, https). For one thread at a time.
class KX_EXPORT KXMessage : public Handle {
 public:
  /// A new, empty message with the options of the process.
  /// Raises: 5 for a code page that is not known, or a variable of the environment that is no
  /// number.
  KXMessage();
  /// The same with options of its own.
  explicit KXMessage(const Options& options);
  /// Nothing.
  KXMessage(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)

  // Filling --------------------------------------------------------------------------------------

  /// Makes a new message of the schema at `SchemaURL`: the content root with all children and
  /// attributes that the schema demands. `RootElementName` names the content root; empty stands for
  /// the last element type at the schema's top.
  /// Raises: kxMsgErrorLoadingSchema (a ParseError) for a schema that cannot be read, is no schema,
  /// or whose minimum content is not valid; kxMsgErrorDuplicateSchema, kxMsgErrorUnknownElement,
  /// kxMsgErrorInvalidSchema; kxMsgErrorUnknownAttribute; 5 for a child that is declared nowhere;
  /// 28 for a type that must contain itself; 7 for a minimum content without end.
  void InitMessage(std::string_view SchemaURL, std::string_view RootElementName = {}) const;
  /// The same from the text of a schema. Note: it is put into a temporary file for the time of the
  /// call, whose name stays in SchemaFile; 8-bit characters only, by the code page. Raises: also 75
  /// and 61 of that file.
  void InitMessageFromString(std::string_view SchemaString,
                             std::string_view RootElementName = {}) const;
  /// Loads a message file. Its bytes are read by the code page, whatever encoding it declares.
  /// Raises: 53, 75, 76, 52, 55 when it cannot be read, and 68, 70 for a server that does not give
  /// it; 7 when it is longer than a document may be; as LoadMessageFromString.
  void LoadMessage(std::string_view MsgURL) const;
  /// Loads a message text: an envelope, an envelope of the former name, or a bare content root.
  /// Raises: kxMsgErrorLoadingXML (a ParseError) for a text that is no document or breaks its
  /// schema; kxMsgErrorNoSchema when it names no schema and DefaultSchemaURL is empty, or names
  /// another kind of namespace; kxMsgErrorInvalidMessage; kxMsgErrorDuplicateSchema,
  /// kxMsgErrorInvalidSchema; 91 for a content root that its schema does not declare.
  /// Note: a failure leaves what was set so far: the new document, after the parse also its header.
  void LoadMessageFromString(std::string_view MsgString) const;
  /// Makes this a copy of the message that `Element` belongs to, with a copy of `Element` as its
  /// content root, a new UniqueID and TimeStamp, and the element's name as MsgType.
  /// Raises: 91 for nothing and for an element without envelope; kxMsgErrorNoSchema.
  void LoadMessageFromElement(const KXMsgElement& Element) const;
  /// A copy that shares nothing with this message. Raises: 91 for an empty message.
  [[nodiscard]] KXMessage CloneMessage() const;

  // Content --------------------------------------------------------------------------------------

  /// The content root; nothing while the message is empty. The same object each time.
  [[nodiscard]] KXMsgElement RootElement() const;
  /// The text of the message, UTF-8: a declaration with Encoding, and the envelope with its
  /// schemas in the form that does not depend on where they lie.
  /// Raises: kxMsgErrorNoSchema for content with a namespace that is no schema.
  [[nodiscard]] std::string XML() const;
  /// Writes XML and a line end to a file, by the code page, whatever Encoding says; a regular file
  /// is replaced as a whole or not at all. `Destination` is a location.
  /// Raises: 91 for an empty message; as XML; 75, 76, 70, 61, 57, 55, 52 of the file.
  void SaveMessage(std::string_view Destination) const;

  // Locations ------------------------------------------------------------------------------------

  /// What relative locations of schemas are completed against: a folder or URL, with its closing
  /// separator. Raises: the errors of the settings.
  [[nodiscard]] std::string SchemaPath() const;
  /// The same for messages.
  [[nodiscard]] std::string MsgPath() const;
  /// The schema of texts that name none; empty at first.
  [[nodiscard]] std::string DefaultSchemaURL() const;
  void DefaultSchemaURL(std::string_view Value) const;

  // Header ---------------------------------------------------------------------------------------

  /// The version of this message; "1.0.0" unless set.
  [[nodiscard]] std::string Version() const;
  void Version(std::string_view Value) const;
  /// The type of this message; the name of the content root unless set.
  /// Raises: kxMsgErrorInvalidMsgType for a value with one of < > : " / \ | ? * or a control
  /// character.
  [[nodiscard]] std::string MsgType() const;
  void MsgType(std::string_view Value) const;
  /// The subsystem that made or wants this message. Raises: as MsgType.
  [[nodiscard]] std::string SubType() const;
  void SubType(std::string_view Value) const;
  /// The name of the content root unless set; nothing is refused.
  [[nodiscard]] std::string Class() const;
  void Class(std::string_view Value) const;
  /// The encoding that the text of the message declares; "iso-8859-1" unless set.
  [[nodiscard]] std::string Encoding() const;
  void Encoding(std::string_view Value) const;
  /// When this message was made, local time; now when the header does not tell.
  /// Raises: 13 when the header's text is no date.
  [[nodiscard]] Date TimeStamp() const;
  /// The identifier of this message, 36 characters.
  [[nodiscard]] std::string UniqueID() const;
  /// The schema, as it was given when the message was made.
  [[nodiscard]] std::string SchemaFile() const;
  /// Numbers for whoever delivers messages. Raises: 13, 6 when the header's text is no such number.
  [[nodiscard]] std::int32_t DeliveryOptions() const;
  void DeliveryOptions(std::int32_t Value) const;
  [[nodiscard]] std::int32_t DeliveryResult() const;
  void DeliveryResult(std::int32_t Value) const;
  /// Any text of the user's.
  [[nodiscard]] std::string Tag() const;
  void Tag(std::string_view Value) const;

 private:
  friend class HandleAccess;
  explicit KXMessage(ObjectRef object) noexcept : Handle(std::move(object)) {}
};

}  // namespace kx
