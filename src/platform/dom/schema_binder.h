// What the DOM knows of schemas: that somebody may watch a parse and judge what it builds, and that
// a document has knowledge of schemas which its copies share. What a schema is, the DOM does not
// know.
//
// A binder belongs to one parse. The parser tells it of every namespace that is declared; from the
// moment it wants to bind, also of every start tag (complete, in the tree, its attributes
// resolved), of text between tags, and of the end of every element, those that were open already
// included; of an element without child elements mostly in one call.
#pragma once

#include "platform/dom/node_record.h"
#include "platform/runtime/counted.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace kx::dom {

class DocumentData;
struct ParseError;

/// The schemas that a document knows. Immutable, shared between documents and threads.
class SchemaKnowledge : public runtime::AtomicCounted {
 public:
  /// The knowledge of a document that has `known`, or null, and takes in nodes of the namespace
  /// `uri` from a document that knows this. May be `known` itself.
  [[nodiscard]] virtual runtime::Counted<const SchemaKnowledge> ShareNamespace(
      const SchemaKnowledge* known, std::string_view uri) const = 0;
};

/// What a binder wants after a declaration of a namespace.
enum class BindWish : unsigned char { kNothing, kBind, kFail };

/// How text stands in the document: as itself, or as a reference or CDATA section, which is never
/// mere white space.
enum class TextForm : unsigned char { kPlain, kExplicit };

/// Where a failure that a binder reports has its place.
enum class BindPlace : unsigned char {
  kHere,       ///< where the parser is; see each call
  kEndOfText,  ///< behind the last character, without source line and offset
  kOwn,        ///< the binder has filled it in
};

/// Where in an element without child elements a failure has its place.
enum class LeafPlace : unsigned char {
  kBegin,  ///< behind the start tag, where its text begins
  kEnd,    ///< the name in the end tag, or behind an empty tag
};

/// Judges one parse. A call that answers false, or kFail, ends it; Describe then tells why.
class SchemaBinder {
 public:
  SchemaBinder() = default;
  SchemaBinder(const SchemaBinder&) = delete;
  SchemaBinder& operator=(const SchemaBinder&) = delete;
  virtual ~SchemaBinder() = default;

  /// The content that is being built; called first. True when it wants to bind from the start.
  virtual bool Begin(DocumentData& data) = 0;
  /// Place: behind the start tag.
  virtual BindWish DeclareNamespace(std::string_view uri) = 0;
  /// May append attributes to `element`. Place: behind the start tag.
  virtual bool StartElement(NodeId element) = 0;
  /// A run of text or a CDATA section in the innermost open element, also white space that the tree
  /// does not keep. Place: the first character.
  virtual bool Text(std::string_view text, TextForm form) = 0;
  /// Its content is complete and linked. Place: the name in the end tag, or behind an empty tag.
  virtual bool EndElement(NodeId element) = 0;
  /// StartElement, Text and EndElement at once, for an element that is complete and has no children
  /// but at most one text, as itself, which it keeps in its record. Place: as `place` tells.
  virtual bool Leaf(NodeId element, LeafPlace& place) = 0;
  virtual bool EndDocument() = 0;

  /// Fills in code and reason of the failure, and all else for one that has its own place.
  virtual BindPlace Describe(ParseError& error) = 0;
  /// What the document knows after the parse; null for nothing.
  [[nodiscard]] virtual runtime::Counted<const SchemaKnowledge> Knowledge() = 0;
};

/// The collection of schemas that a caller gave a document; what is in it, the DOM does not know.
class SchemaHoldings : public runtime::PlainCounted {};

/// What a binder is made for.
struct BindRequest {
  std::string_view location;           ///< the full location of what is parsed; empty for text
  SchemaHoldings* holdings = nullptr;  ///< the document's collection, or null
  bool check = true;                   ///< validate, not only bind
};

/// Makes binders. Shared by the documents that it is given to, and must outlive them.
class SchemaService {
 public:
  SchemaService() = default;
  SchemaService(const SchemaService&) = delete;
  SchemaService& operator=(const SchemaService&) = delete;
  virtual ~SchemaService() = default;

  [[nodiscard]] virtual std::unique_ptr<SchemaBinder> NewBinder(
      const BindRequest& request) const = 0;
  /// The value that an element is supplied with when it has no attribute of that name; nothing when
  /// no declaration gives one.
  [[nodiscard]] virtual std::optional<std::string> FindDefault(const DocumentData& data,
                                                               NodeId element,
                                                               NameId attribute) const = 0;
};

}  // namespace kx::dom
