// A schema with all the schemas that it refers to, compiled together: what is loaded for one
// "x-schema:" namespace.
#pragma once

#include "platform/dom/parse_error.h"
#include "platform/runtime/counted.h"
#include "platform/text/host_codec.h"
#include "platform/xdr/schema.h"
#include "platform/xdr/schema_set.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kx::xdr {

/// The text behind a location, or why there is none.
struct SchemaText {
  dom::ParseError failure;  ///< without place; its url is the location
  std::string bytes;
  std::string url;  ///< the resolved location
  /// What tells whether the same location still has the same text; empty when nothing does.
  std::string stamp;
  bool showText = true;    ///< false: an error in it does not quote it
  bool unchanged = false;  ///< the text is the one that its stamp was given with, and not repeated
};

/// Where a location leads now, empty when it may not be reached; and the stamp, empty when nothing
/// tells it without reading.
struct SchemaPlace {
  std::string url;
  std::string stamp;
};

/// Reads the texts of schemas. May be used by several threads at a time.
class SchemaSource {
 public:
  SchemaSource() = default;
  SchemaSource(const SchemaSource&) = delete;
  SchemaSource& operator=(const SchemaSource&) = delete;
  virtual ~SchemaSource() = default;

  /// Reads `location`, what stands behind "x-schema:", relative to the document or schema at
  /// `base`; `base` empty is a document without location.
  [[nodiscard]] virtual SchemaText Read(std::string_view location, std::string_view base) const = 0;
  /// The same without reading: what tells whether an earlier reading still holds.
  [[nodiscard]] virtual SchemaPlace Identify(std::string_view /*location*/,
                                             std::string_view /*base*/) const {
    return {};
  }
  /// Read, unless the text is still the one that `stamp` was given with: then `unchanged`.
  [[nodiscard]] virtual SchemaText Reread(std::string_view location, std::string_view base,
                                          const std::string& /*stamp*/) const {
    return Read(location, base);
  }
};

/// Compiled schemas under the namespaces by which the first one and those it leads to name them.
class SchemaGroup : public runtime::AtomicCounted {
 public:
  struct Member {
    std::string uri;
    SharedSchema schema;
    std::string stamp;     ///< see SchemaText
    std::string location;  ///< as it was named, and by the document or schema where
    std::string base;
  };
  explicit SchemaGroup(std::vector<Member> all);

  const std::vector<Member> members;
  /// The same as what a document knows that needs no other schema.
  const runtime::Counted<const SchemaSet> known;
};

using SharedGroup = runtime::Counted<const SchemaGroup>;

/// The result of loading; `group` is null exactly when `error` is one.
struct LoadedGroup {
  SharedGroup group;
  dom::ParseError error;
};

/// What bounds a load of schemas.
struct SchemaLimits {
  std::size_t maxBytes = std::size_t{16} << 20U;  ///< of one schema's text
  std::size_t maxSchemas = 256;                   ///< that one schema may lead to
  const text::HostCodec* codec = nullptr;         ///< encodings beyond our own tables
};

/// Compiles the schema in `text`, which serves `uri`, and all that it refers to.
[[nodiscard]] LoadedGroup CompileGroup(std::string_view uri, SchemaText text,
                                       const SchemaSource& source, const SchemaLimits& limits);

/// The same for a copy of the tree of `document`.
[[nodiscard]] LoadedGroup CompileTree(std::string_view uri, const dom::Document& document,
                                      const SchemaSource& source, const SchemaLimits& limits);

}  // namespace kx::xdr
