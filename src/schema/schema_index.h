// What the rules of messages look up in a schema document, worked out once for a frozen content and
// kept with it: its element types by name, and its declarations by the node that they stand in, by
// kind and by name.
//
// It holds node numbers and no handles, so that it does not keep the content that keeps it.
// Immutable but for the contents that it keeps; read by many threads.
#pragma once

#include "platform/dom/cursor.h"
#include "platform/dom/document_data.h"
#include "platform/text/compare.h"
#include "schema/content_templates.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kx::schema {

/// The questions that the index answers; each is a pattern in declarations.cc.
enum class DeclarationKind : std::uint8_t {
  kElement,          ///< an `element` child by its type
  kOptionalElement,  ///< one that is optional or repeatable
  kAttribute,        ///< an `attribute` child by its type
  kAttributeType,    ///< an AttributeType child by its name
  kGroup,            ///< a `group` child by the type of an `element` in it
};

class SchemaIndex final : public dom::DerivedData {
 public:
  /// The index of a frozen content, made at the first call.
  [[nodiscard]] static const SchemaIndex& Of(const dom::DocumentData& frozen);

  explicit SchemaIndex(const dom::DocumentData& data);

  /// Every ElementType, in document order, up to the first fault.
  [[nodiscard]] const std::vector<dom::NodeId>& ElementTypes() const noexcept { return types_; }
  /// The ElementType of that name, or kNoNode.
  [[nodiscard]] dom::NodeId FindElementType(std::string_view name) const noexcept;
  /// The name that was there already, or that was missing (the empty text), where the list of
  /// element types ends before the document does.
  [[nodiscard]] const std::optional<std::string>& Fault() const noexcept { return fault_; }

  /// The first declaration of that kind and name directly in the node `in`, or kNoNode.
  [[nodiscard]] dom::NodeId FindDeclaration(dom::NodeId in, DeclarationKind kind,
                                            std::string_view name) const noexcept;

  /// Contents of messages that were built of the schema.
  [[nodiscard]] ContentTemplates& Templates() const noexcept { return templates_; }

 private:
  /// A declaration. Sorted by place, kind and hash; equal ones in document order.
  struct Declaration {
    dom::NodeId in;
    DeclarationKind kind;
    std::size_t hash;
    dom::NodeId name;  ///< the attribute that has its name
    dom::NodeId node;
  };
  static bool Before(const Declaration& a, const Declaration& b) noexcept;

  void ReadElement(const dom::Cursor& element);
  void AddElementType(const dom::Cursor& element);
  void AddChild(const dom::Cursor& element);
  void Add(const dom::Cursor& in, DeclarationKind kind, const dom::Cursor& name,
           const dom::Cursor& node);

  const dom::DocumentData& data_;  // keeps this
  std::vector<dom::NodeId> types_;
  std::unordered_map<std::string, dom::NodeId, text::CaselessHash, text::CaselessEqual> byName_;
  std::optional<std::string> fault_;
  std::vector<Declaration> declarations_;
  mutable ContentTemplates templates_;
};

}  // namespace kx::schema
