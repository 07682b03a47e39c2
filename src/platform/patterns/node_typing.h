// What a comparison needs to know about a node beyond its text: its data type, and whether an
// attribute is an ID. Who binds documents to schemas implements it; patterns know no schema.
#pragma once

#include "platform/datatypes/data_type.h"
#include "platform/dom/cursor.h"

namespace kx::patterns {

/// Asked while a query runs, possibly by many threads at a time; must not change the document.
class NodeTyping {
 public:
  virtual ~NodeTyping() = default;
  /// The data type of an element or attribute, whoever declares it; kNone for all other nodes.
  [[nodiscard]] virtual datatypes::DataType TypeOf(const dom::Cursor& node) const = 0;
  /// True when a schema declares the attribute to be an ID. What a document type declares is known
  /// without asking.
  [[nodiscard]] virtual bool IsId(const dom::Cursor& attribute) const = 0;
};

/// The typing of documents without a schema: the dt:dt attribute of an element, and no IDs.
[[nodiscard]] const NodeTyping& WrittenTyping() noexcept;

/// False when no element of a document with these names has a dt:dt attribute.
[[nodiscard]] bool HasWrittenTypes(const dom::NameTable& names) noexcept;

/// The type that an element's own dt:dt attribute gives it: kNone without one, and for elements of
/// the schema language itself, which declare and are not typed.
[[nodiscard]] datatypes::DataType WrittenType(const dom::Cursor& element);

}  // namespace kx::patterns
