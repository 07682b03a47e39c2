// The index of a schema's element types: every ElementType element of the schema document, at any
// depth, under the text of its `name`.
//
// Keys compare without regard to case, as those of every keyed collection, so two names that differ
// in case alone exist twice. The index is worked out once for a schema document, never changes and
// is shared by all messages and threads that have the document; a handle of it is one reference.
#pragma once

#include "platform/dom/document.h"
#include "platform/dom/node.h"

#include <cstdint>
#include <string_view>

namespace kx::schema {

class SchemaIndex;

/// A handle of an index. A default-constructed one has no entries. It keeps the schema document;
/// copies may be used by other threads.
class ElementTypeIndex {
 public:
  ElementTypeIndex() noexcept = default;

  [[nodiscard]] std::int32_t Count() const noexcept;
  /// The ElementType of that name; nothing when there is none. Raises nothing.
  [[nodiscard]] dom::Node GetElementType(std::string_view name) const;
  /// The same. Raises: the keyed collection's run-time error 5 when there is none.
  [[nodiscard]] dom::Node RequireElementType(std::string_view name) const;
  /// By position in document order, from 1. Raises: the collection's run-time error 9.
  [[nodiscard]] dom::Node At(std::int32_t position) const;
  /// The document whose element types these are; nothing for a default-constructed handle.
  [[nodiscard]] const dom::Document& SchemaDocument() const noexcept { return document_; }

 private:
  friend void IndexElementTypes(const dom::Document& schemaDocument, ElementTypeIndex& index);

  dom::Document document_;
  const SchemaIndex* shared_ = nullptr;  // kept with the document's content
};

/// Replaces `index` by that of `schemaDocument`. The document is frozen from here on.
/// Raises: kxMsgErrorDuplicateSchema with the name that exists twice (the second spelling), and
/// with the empty text for an ElementType without name; `index` then has the entries before it. The
/// run-time error 91 for a document of nothing.
void IndexElementTypes(const dom::Document& schemaDocument, ElementTypeIndex& index);

/// Raises kxMsgErrorInvalidSchema when `index` has no entry: no element object may be made of a
/// schema without element types.
void CheckNotEmpty(const ElementTypeIndex& index);

}  // namespace kx::schema
