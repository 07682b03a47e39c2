// How a node is laid down in its document's node block: 32 bytes, linked by index. Elements,
// attributes and every other kind share the one layout.
//
// Invariants:
//   - Index 0 is no node; index 1 is the document.
//   - An element or attribute whose only content is one text keeps that text in itself
//     (kInlineText): its text child exists as the *virtual* identifier InlineTextOf(owner) and
//     gets a record of its own only when somebody must hold or edit it.
//   - A record's text lies in the document's parse buffer, or in its text heap (kHeapText).
//   - A record that was parsed and never moved has a higher index than everything before it in
//     document order (attributes stand between their element and its content).
#pragma once

#include <cstdint>
#include <type_traits>

namespace kx::dom {

/// Index of a node in its document's node block.
using NodeId = std::uint32_t;
/// Index of a qualified name bound to its namespace, in its document's name table.
using NameId = std::uint32_t;
/// Index of a namespace URI in its document's name table.
using UriId = std::uint32_t;

inline constexpr NodeId kNoNode = 0;
inline constexpr NodeId kDocumentNode = 1;
inline constexpr NodeId kInlineTextBit = 0x80000000U;

/// The identifier of the text child that an element or attribute keeps in its own record.
constexpr NodeId InlineTextOf(NodeId owner) { return owner | kInlineTextBit; }
constexpr bool IsInlineTextId(NodeId id) { return (id & kInlineTextBit) != 0; }
constexpr NodeId OwnerOfInlineText(NodeId id) { return id & ~kInlineTextBit; }

/// The kinds of nodes with the numbers that the DOM publishes, and two that only storage knows.
enum class NodeType : std::uint8_t {
  kFree = 0,  ///< an unused record, linked through `next`
  kElement = 1,
  kAttribute = 2,
  kText = 3,
  kCData = 4,
  kEntityReference = 5,
  kEntity = 6,
  kProcessingInstruction = 7,
  kComment = 8,
  kDocument = 9,
  kDocumentType = 10,
  kDocumentFragment = 11,
  kNotation = 12,
  kMoved = 13,  ///< now a node of another document; kept while old handles name it
};

/// Bits of NodeRecord::flags.
enum NodeFlag : std::uint8_t {
  kInlineText = 1U << 0U,  ///< the text child is kept in this record
  kHeapText = 1U << 1U,    ///< the record's text is in the text heap, not in the parse buffer
  kPlainText = 1U << 2U,   ///< parsed text without a character that writing escapes
  kFullForm = 1U << 3U,    ///< an element that was parsed from <a></a>
  kDefaulted = 1U << 4U,   ///< an attribute supplied by a declaration, not written in the text
  kNamespaceDeclaration = 1U << 5U,  ///< an attribute named xmlns or xmlns:p
  kIdAttribute = 1U << 6U,           ///< an attribute declared to be an ID
  kPreserveSpace = 1U << 7U,  ///< an element under xml:space="preserve"; kept while parsing only
};

struct NodeRecord {
  NodeId parent;  ///< for an attribute its element; kNoNode when detached
  NodeId next;    ///< next sibling, or the next attribute of the same element
  NodeId prev;
  union {
    NodeId first;             ///< first child
    std::uint32_t textBegin;  ///< where the record's own text begins
  };
  union {
    NodeId last;               ///< last child
    std::uint32_t textLength;  ///< bytes of the record's own text
  };
  NodeId firstAttribute;  ///< elements and processing instructions only
  NameId name;            ///< 0 for nodes without a name of their own
  NodeType type;
  std::uint8_t flags;
  std::uint16_t holds;  ///< handles that name this node; the document counts those beyond 65535
};
static_assert(sizeof(NodeRecord) == 32 && std::is_trivially_copyable_v<NodeRecord>);

/// True for the kinds whose record carries their data itself and that have no children.
constexpr bool IsCharacterData(NodeType type) {
  return type == NodeType::kText || type == NodeType::kCData || type == NodeType::kComment ||
         type == NodeType::kProcessingInstruction || type == NodeType::kDocumentType;
}

}  // namespace kx::dom
