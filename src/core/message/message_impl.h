// The object behind KXMessage.
//
// Invariants:
//   - Filling sets one field after the other. What a failure interrupts stays as far as it got: the
//     new document replaces the old one first of all, then the envelope, and the root element only
//     when all is good.
//   - `initialized_` is set as the very last step, and never taken back.
#pragma once

#include "core/environment.h"
#include "element/element_impl.h"
#include "platform/dom/document.h"
#include "platform/dom/node.h"
#include "platform/runtime/counted.h"
#include "platform/xdr/schema_cache.h"
#include "platform/xdr/schema_collection.h"
#include "platform/xdr/schema_provider.h"
#include "schema/message_schema.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kx::core {

class MessageImpl final : public runtime::PlainObject, private runtime::LiveObject {
 public:
  explicit MessageImpl(runtime::Counted<const Environment> environment) noexcept
      : environment_(std::move(environment)) {}

  // See KXMessage.
  void InitMessage(std::string_view schemaUrl, std::string_view rootElementName);
  void InitMessageFromString(std::string_view schemaText, std::string_view rootElementName);
  void LoadMessage(std::string_view location);
  void LoadMessageFromString(std::string_view text);
  void LoadMessageFromElement(const element::ElementImpl& element);
  [[nodiscard]] runtime::Counted<MessageImpl> CloneMessage() const;
  [[nodiscard]] std::string Xml() const;
  void SaveMessage(std::string_view destination) const;
  [[nodiscard]] const runtime::Counted<element::ElementImpl>& RootElement() const noexcept {
    return rootElement_;
  }

  /// Raises kxMsgErrorNotInitialized unless the message was filled.
  void CheckInitialized() const;
  /// The envelope of a filled message. Raises: as CheckInitialized.
  [[nodiscard]] const dom::Node& Envelope() const;
  [[nodiscard]] const Environment& GetEnvironment() const noexcept { return *environment_; }

  [[nodiscard]] const std::string& DefaultSchemaUrl() const noexcept { return defaultSchemaUrl_; }
  void DefaultSchemaUrl(std::string_view value) { defaultSchemaUrl_ = value; }
  /// Schemas that every loaded document takes before it looks for any; nothing for none.
  void SetSchemaCache(runtime::Counted<xdr::SchemaCollection> cache) {
    schemaCache_ = std::move(cache);
  }

 private:
  void InitFrom(std::string_view schemaUrl, std::string_view rootElementName,
                xdr::SchemaCache& cache);
  [[nodiscard]] schema::NewMessage Create(std::string_view schemaUrl,
                                          std::string_view rootElementName,
                                          xdr::SchemaCache& cache);
  [[nodiscard]] bool ParseBy(const xdr::SchemaProvider& provider, std::string_view text);
  void LoadText(std::string_view text);
  void TakeContentRoot(const dom::Node& root);
  [[nodiscard]] std::string CanonicalXml() const;

  runtime::Counted<const Environment> environment_;
  std::string defaultSchemaUrl_;
  runtime::Counted<xdr::SchemaCollection> schemaCache_;
  dom::Document document_;
  dom::Node envelope_;
  schema::MessageSchema schema_;
  runtime::Counted<element::ElementImpl> rootElement_;
  bool initialized_ = false;
};

}  // namespace kx::core
