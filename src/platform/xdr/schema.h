// A compiled schema: its document, read-only, and what its declarations say, ready for look-up.
// Immutable once compiled, shared between documents and threads.
//
// Names inside one schema are numbers (symbols): a declared element type has its own index as its
// symbol; names of other schemas that content models refer to follow behind. Names of attributes
// have symbols of their own.
#pragma once

#include "platform/dom/document.h"
#include "platform/runtime/counted.h"
#include "platform/xdr/content_model.h"
#include "platform/xdr/name_index.h"
#include "platform/xdr/value_rules.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kx::xdr {

enum class Content : std::uint8_t { kEmpty, kTextOnly, kEltOnly, kMixed };

/// A declared attribute: an AttributeType, global or local to an element type.
struct AttributeType {
  std::string name;
  dom::NodeId node = dom::kNoNode;  ///< in the schema's document
  SharedRules rules;
  bool required = false;
  std::string defaultText;  ///< empty: none
};

/// An attribute that an element type takes. What every instance needs comes first.
struct AttributeUse {
  Symbol symbol = kNoSymbol;
  bool checked = true;  ///< false: any text is good
  bool fixed = false;   ///< required, with a default: no other value is good
  bool required = false;
  std::uint32_t length = 0;  ///< of the name; 0 for one with a prefix, or of more than 16 bytes
  SharedRules rules;
  dom::NameKey key;                 ///< of the name
  dom::NodeId node = dom::kNoNode;  ///< its AttributeType, when this schema declares it
  std::string defaultText;          ///< empty: none
  std::string name;                 ///< the local name
  std::string uri;                  ///< of the schema that declares it; empty: this one
  std::string prefix;               ///< by which this schema names that one
};

/// A declared element type. What every instance needs comes first.
struct ElementType {
  Symbol symbol = kNoSymbol;
  Content content = Content::kMixed;
  bool open = true;
  bool hasImplied = false;   ///< some attribute is required or has a default
  bool checksText = false;   ///< it has a data type that not every text suits
  bool hasChildren = false;  ///< its model has some
  bool needsChild = false;   ///< its model must have one
  bool ambiguous = false;    ///< its model is
  SharedRules rules;         ///< null without data type
  /// Which of the first 64 attributes are required or have a default.
  std::uint64_t implied = 0;
  std::vector<AttributeUse> attributes;
  ContentModel model;
  SymbolTable attributeIndex;
  std::string name;
  dom::NodeId node = dom::kNoNode;

  [[nodiscard]] bool TakesText() const noexcept {
    return content == Content::kTextOnly || content == Content::kMixed;
  }
  /// Extra elements and attributes may stand here.
  [[nodiscard]] bool TakesExtras() const noexcept {
    return open && (content == Content::kEltOnly || content == Content::kMixed);
  }
  /// The attribute without prefix at `hint`, which is moved on, when it has that name; else null.
  [[nodiscard]] const AttributeUse* NextAttribute(const dom::NameKey& key, std::uint32_t length,
                                                  std::size_t& hint) const noexcept {
    if (hint >= attributes.size()) return nullptr;
    const AttributeUse& use = attributes[hint];
    if (use.length != length || use.key.low != key.low || use.key.high != key.high) return nullptr;
    ++hint;
    return &use;
  }
  /// The attribute of that symbol; `hint` is the index that is probably right, and is moved on.
  [[nodiscard]] const AttributeUse* FindAttribute(Symbol wanted, std::size_t& hint) const noexcept {
    if (hint < attributes.size() && attributes[hint].symbol == wanted) return &attributes[hint++];
    return FindOtherAttribute(wanted, hint);
  }

 private:
  const AttributeUse* FindOtherAttribute(Symbol wanted, std::size_t& hint) const noexcept;
};

/// A name in a namespace other than the schema's own.
struct ForeignName {
  std::string uri;
  std::string name;
};

class Schema : public runtime::AtomicCounted {
 public:
  /// The element type of that name, or null.
  [[nodiscard]] const ElementType* FindElement(std::string_view name) const noexcept {
    return FindElement(dom::NameTable::KeyOf(name), name);
  }
  /// The same for a name whose key is known already.
  [[nodiscard]] const ElementType* FindElement(const dom::NameKey& key,
                                               std::string_view name) const noexcept;
  /// The global AttributeType of that name, or null.
  [[nodiscard]] const AttributeType* FindAttributeType(std::string_view name) const noexcept;
  /// The symbol of an unqualified attribute's name, or kNoSymbol.
  [[nodiscard]] Symbol AttributeSymbol(std::string_view name) const noexcept {
    return AttributeSymbol(dom::NameTable::KeyOf(name), name);
  }
  [[nodiscard]] Symbol AttributeSymbol(const dom::NameKey& key,
                                       std::string_view name) const noexcept {
    return attributeSymbols_.Find(key, name);
  }
  /// The same for an attribute of another schema.
  [[nodiscard]] Symbol ForeignAttributeSymbol(std::string_view uri,
                                              std::string_view name) const noexcept;
  /// The symbol of an element of another schema, or kNoSymbol when nothing refers to it.
  [[nodiscard]] Symbol ForeignElementSymbol(std::string_view uri,
                                            std::string_view name) const noexcept;
  /// "{namespace}name" of a symbol, when the schema serves `uri`.
  [[nodiscard]] std::string ElementName(Symbol symbol, std::string_view uri) const;

  [[nodiscard]] const dom::Document& Document() const noexcept { return document_; }
  /// The resolved location; empty for a schema that came as text or as a tree.
  [[nodiscard]] const std::string& Url() const noexcept { return url_; }
  [[nodiscard]] const std::vector<ElementType>& Elements() const noexcept { return elements_; }

 private:
  friend class SchemaCompiler;

  static std::string ForeignKey(std::string_view uri, std::string_view name);

  dom::Document document_;
  std::string url_;
  std::vector<ElementType> elements_;
  std::vector<AttributeType> attributeTypes_;
  std::vector<ForeignName> foreignElements_;
  NameIndex elementIndex_;
  NameIndex attributeTypeIndex_;
  NameIndex attributeSymbols_;
  NameIndex foreignElementSymbols_;
  NameIndex foreignAttributeSymbols_;
};

using SharedSchema = runtime::Counted<const Schema>;

}  // namespace kx::xdr
