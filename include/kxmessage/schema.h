// A view of a schema, for tools. Beyond the message classes: it reads what they work by.
#pragma once

#include "kxmessage/export.h"
#include "kxmessage/handle.h"
#include "kxmessage/options.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kx {

/// An attribute that an element type declares.
struct SchemaAttribute {
  std::string name;
  std::string dataType;  ///< "" when there is none
  bool required = false;
  std::string defaultText;          ///< "" when there is none
  std::vector<std::string> values;  ///< of an enumeration
};

/// A child that an element type declares, directly or in a group.
struct SchemaChild {
  std::string name;
  std::string minOccurs = "1";
  std::string maxOccurs = "1";  ///< a number, or "*"
  std::int32_t group = 0;       ///< the number of the group, from 1; 0 outside groups
};

/// A group of an element type.
struct SchemaGroup {
  std::string order;  ///< "seq", "one" or "many"
  std::string minOccurs = "1";
  std::string maxOccurs = "1";
};

/// An element type.
struct SchemaElement {
  std::string name;
  std::string description;
  std::string content;   ///< "empty", "textOnly", "eltOnly" or "mixed"
  std::string order;     ///< "seq", "one" or "many"
  bool open = true;      ///< as XDR reads it: an absent `model` is open
  bool topLevel = true;  ///< it stands directly in the schema
  std::string dataType;  ///< "" when there is none
  std::optional<double> minLength;
  std::optional<double> maxLength;
  std::vector<SchemaAttribute> attributes;
  std::vector<SchemaGroup> groups;
  std::vector<SchemaChild> children;  ///< in the order of the schema, groups flattened
};

/// A schema that was loaded and found good. Immutable; may be shared by threads.
class KX_EXPORT Schema : public Handle {
 public:
  Schema() noexcept = default;        ///< Nothing.
  Schema(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)

  /// Loads the schema at a location, which is completed as for KXMessage::InitMessage.
  /// Raises: kxMsgErrorLoadingSchema (a ParseError); kxMsgErrorDuplicateSchema.
  [[nodiscard]] static Schema Load(std::string_view SchemaURL);
  [[nodiscard]] static Schema Load(std::string_view SchemaURL, const Options& options);

  /// The location that it was read from.
  [[nodiscard]] std::string Location() const;
  /// The text of its own description; "" when there is none.
  [[nodiscard]] std::string Description() const;
  /// Every element type, in the order of the schema.
  [[nodiscard]] std::vector<SchemaElement> Elements() const;
  /// The element type of that name, letter case included; nothing when there is none.
  [[nodiscard]] std::optional<SchemaElement> FindElement(std::string_view name) const;

 private:
  friend class HandleAccess;
  explicit Schema(ObjectRef object) noexcept : Handle(std::move(object)) {}
};

}  // namespace kx
