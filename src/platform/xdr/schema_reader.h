// Reads a schema's document into raw declarations: what is declared where, with the attributes as
// written. Whatever does not depend on other declarations is checked here; references are resolved
// by the compiler (schema_compiler.h).
//
// All of the document is read before a mistake counts; the first one in document order is reported.
#pragma once

#include "platform/dom/cursor.h"
#include "platform/xdr/schema.h"
#include "platform/xdr/schema_errors.h"

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kx::xdr {

/// A mistake in a schema, at the element `node`.
struct SchemaMistake {
  dom::NodeId node = dom::kNoNode;
  XdrCode code = XdrCode::kSchemaMistake;
  std::string argument;
};

/// A `type` attribute that names another declaration.
struct RawReference {
  dom::NodeId node = dom::kNoNode;  ///< the element that refers
  std::string_view prefix;
  std::string_view name;
  std::optional<std::string_view> uri;  ///< what the prefix means; nothing when it means nothing
};

struct RawAttribute {
  RawReference reference;
  bool required = false;
  std::string_view defaultText;
};

/// An `element` or `group` of a content model, in document order.
struct RawParticle {
  bool isGroup = false;
  std::uint32_t group = 0;  ///< the place in the list of the group around it, plus one; 0: none
  Order order = Order::kSeq;
  bool optional = false;
  bool repeats = false;
  RawReference reference;
};

struct RawElementType {
  std::string_view name;
  dom::NodeId node = dom::kNoNode;
  Content content = Content::kMixed;
  Order order = Order::kMany;
  bool open = true;
  SharedRules rules;
  std::vector<RawParticle> particles;
  std::vector<RawAttribute> attributes;
  std::vector<AttributeType> localTypes;
};

struct RawSchema {
  std::string_view name;  ///< the schema's own
  std::vector<RawElementType> elements;
  std::vector<AttributeType> attributeTypes;
  std::deque<std::string> joined;  ///< values that do not stand in one piece in the document
  std::optional<SchemaMistake> mistake;
};

/// Reads the schema whose Schema element is `root`.
[[nodiscard]] RawSchema ReadSchema(const dom::Cursor& root);

/// The "x-schema:" names that are declared in the schema, each once, but for those of schemas in
/// the same document.
[[nodiscard]] std::vector<std::string> SchemasDeclaredIn(const dom::Cursor& root);

}  // namespace kx::xdr
