// Builds a document's content from XML text: XML 1.0 (fifth edition) with namespaces, the internal
// DTD subset read, nothing external ever fetched. One pass, no recursion, memory bounded by the
// text and by the entity bound.
#pragma once

#include "platform/dom/document_data.h"
#include "platform/dom/parse_error.h"
#include "platform/text/host_codec.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kx::dom {

class SchemaBinder;

/// What happens to white space in attribute values.
enum class AttributeValues : unsigned char {
  kAsWritten,   ///< line ends become LF, everything else stays: what callers of the DOM get
  kNormalised,  ///< as XML 1.0, 3.3.3 asks, with the types of the DTD: for conformance runs
};
enum class WhiteSpace : unsigned char { kPreserve, kDropBetweenElements };
/// What a reference does to an entity that is not declared, in a document whose declarations may
/// be incomplete: an external subset or a parameter entity is named, and it is not standalone.
enum class UndeclaredEntities : unsigned char {
  kRefuse,              ///< a failure like any other: what callers of the DOM get
  kSkipWhereXmlAllows,  ///< nothing (XML 1.0, 4.1, Entity Declared): for conformance runs
};

/// What the attributes that a document type declares mean.
enum class DeclaredAttributes : unsigned char {
  kApply,   ///< their defaults are supplied, their types known
  kIgnore,  ///< nothing
};

struct ParseOptions {
  WhiteSpace whiteSpace = WhiteSpace::kPreserve;
  AttributeValues attributeValues = AttributeValues::kAsWritten;
  UndeclaredEntities undeclaredEntities = UndeclaredEntities::kRefuse;
  DeclaredAttributes declaredAttributes = DeclaredAttributes::kApply;
  std::uint32_t maxDepth = 5000;                        ///< open elements at one time
  std::size_t maxBytes = std::size_t{128} << 20U;       ///< of text
  std::size_t maxEntityBytes = std::size_t{16} << 20U;  ///< that entities may expand to in all
  /// Knows the encodings beyond our own tables; null when there are only those.
  const text::HostCodec* codec = nullptr;
  /// Judges what is built, element by element; null when nobody does. See schema_binder.h.
  SchemaBinder* binder = nullptr;
};

/// Parses `text`, UTF-8 whatever its declaration says, into `data`, which must be new.
/// Returns false, with the reason in `error`, for text that is not a well-formed document; `data`
/// is then to be thrown away. Raises: std::bad_alloc.
bool ParseText(DocumentData& data, std::string_view text, const ParseOptions& options,
               ParseError& error);

/// The same for bytes: decoded by byte-order mark, else by the declared encoding, else as UTF-8.
/// A document without byte-order mark cannot be UTF-16.
bool ParseBytes(DocumentData& data, std::string_view bytes, const ParseOptions& options,
                ParseError& error);

}  // namespace kx::dom
