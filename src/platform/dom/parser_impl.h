// The parser's inside, shared by the files that make it up: parser.cc (documents and content),
// parser_attributes.cc (start tags' attributes and namespaces), parser_entities.cc (references),
// dtd_parser.cc (the internal subset).
//
// How it works: the text is copied once into the document's parse buffer (source_text.h folds line
// ends and stops at the first character that XML forbids, so the loops here need not look for
// either). The buffer ends in a '<' that no text contains, so loops stop there by themselves.
// Values are ranges of the buffer; references are decoded in place, because no reference is shorter
// than what it stands for. The replacement text of an entity is read as a *frame* of its own, from
// a copy at the end of the parse buffer.
//
// While an element is open, its record's `last` holds where its name begins in the text: the end
// tag is compared with the start tag itself, and no stack of open elements is needed.
#pragma once

#include "platform/dom/document_data.h"
#include "platform/dom/dtd.h"
#include "platform/dom/parse_error.h"
#include "platform/dom/parser.h"
#include "platform/dom/scan.h"
#include "platform/dom/schema_binder.h"
#include "platform/dom/xml_names.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kx::dom {

/// Why parsing stopped; caught by ParseText, which knows the text as it was handed in.
struct ParseFailure {
  ParseCode code;
  std::size_t offset;  ///< in the parse buffer
  bool placed = true;  ///< false when the failure has no place in the text
  std::string first;   ///< what %1 and %2 of the reason stand for
  std::string second;
};

/// A schema binder ended the parse; it knows why.
struct BindFailure {
  std::size_t offset;  ///< in the parse buffer
};

class Parser {
 public:
  Parser(DocumentData& data, const ParseOptions& options) noexcept
      : data_(data),
        names_(data.Names()),
        nodes_(data.Nodes()),
        options_(options),
        dropSpace_(options.whiteSpace == WhiteSpace::kDropBetweenElements) {}
  Parser(const Parser&) = delete;
  Parser& operator=(const Parser&) = delete;

  /// Parses the `size` bytes of the document's parse buffer. Raises: ParseFailure.
  void Run(std::size_t size);

 private:
  /// The text to go back to when the entity that is being read ends.
  struct Frame {
    std::size_t resume;  ///< where to go on, from the outer text's begin
    std::size_t place;   ///< where the outer text names the entity
    std::size_t begin;   ///< of the outer text, from the base of its values
    std::size_t size;
    NodeId node;                ///< the outer text's frame node
    EntityDeclaration* entity;  ///< the entity that is being read
  };
  /// What a prefix (or the default namespace, prefix 0) was bound to before an element changed it.
  struct Binding {
    NodeId element;
    std::uint32_t prefix;
    UriId former;
  };

  // Documents and content: parser.cc
  const char* ParseXmlDeclaration(const char* p);
  const char* ParsePseudoAttribute(const char* p, NodeId node, std::string_view name, NodeId& last,
                                   std::string_view& value);
  const char* ParseMisc(const char* p, bool prolog);
  const char* ParseTopMarkup(const char* p, bool prolog);
  const char* ParseContent(const char* p);
  /// Finds the name at `p`, first as the one that followed `context` the last time. Returns what
  /// follows it; which characters may stand there the caller checks.
  const char* ParseName(const char* p, std::uint32_t context, Follower follower,
                        std::uint32_t& qname) {
    qname = names_.At(context).followers[follower];
    const QName& guess = names_.At(qname);
    const char* const after = p + guess.length;
    if (qname != 0 && guess.length <= 16 && scan::StartsWithKey(p, guess.key, guess.length) &&
        (*after == '>' || *after == '=' || *after == ' ' || *after == '/')) {
      return after;
    }
    return ParseOtherName(p, context, follower, qname);
  }
  const char* ParseOtherName(const char* p, std::uint32_t context, Follower follower,
                             std::uint32_t& qname);
  const char* ParseText(const char* p, scan::Stop stop, NodeId parent, NodeId& last, bool& entered);
  const char* ParseEndTag(const char* p, NodeId parent);
  const char* ParseMarkup(const char* p, NodeId parent, NodeId& last);
  const char* ParseComment(const char* p, NodeId parent, NodeId& last);
  const char* ParseCData(const char* p, NodeId parent, NodeId& last);
  const char* ParseProcessingInstruction(const char* p, NodeId parent, NodeId& last);
  void AppendTextNode(const char* begin, const char* end, bool plain, NodeId parent, NodeId& last);
  [[nodiscard]] bool IsDroppedSpace(const char* begin, const char* end, NodeId parent) const;
  /// Appends a node after `last`, which it becomes. There is room: see EnsureNodeRoom.
  NodeId AppendNode(NodeType type, NameId name, NodeId parent, NodeId& last) {
    const NodeId id = nodes_.ExtendReserved();
    NodeRecord* const nodes = nodes_.data();
    NodeRecord& record = nodes[id];
    record.parent = parent;
    record.next = kNoNode;
    record.prev = last;
    record.first = kNoNode;
    record.last = kNoNode;
    record.firstAttribute = kNoNode;
    record.name = name;
    record.type = type;
    record.flags = 0;
    record.holds = 0;
    (last != kNoNode ? nodes[last].next : nodes[parent].first) = id;
    last = id;
    return id;
  }
  void SetRange(NodeRecord& record, const char* begin, const char* end) const noexcept;
  /// The same for an attribute's value: an empty one is no text child.
  void SetInlineText(NodeRecord& record, const char* begin, const char* end) const noexcept {
    if (begin == end) return;
    SetRange(record, begin, end);
    record.flags |= kInlineText;
  }
  const char* ParseLeaf(const char* p, NodeId id, std::uint32_t nameOffset);
  const char* ParseTextRun(const char* p, NodeId& parent, NodeId& last);
  void CloseElement(NodeId id) {
    nodes_[id].flags |= kFullForm;
    --depth_;
    if (id == topBinding_) PopBindings(id);
  }
  [[noreturn]] void FailAtEnd(NodeId parent);

  // Attributes and namespaces: parser_attributes.cc
  const char* ParseAttributes(const char* p, NodeId element, std::uint32_t elementName);
  const char* FinishAttributes(const char* p, NodeId element, std::uint32_t elementName,
                               NodeId last, bool prefixed);
  [[nodiscard]] const AttributeList* FindAttributeList(std::uint32_t elementName) const;
  const char* ParseEquals(const char* p);
  const char* ParseDeclaredValue(const char* p, NodeId attribute, std::uint32_t elementName,
                                 std::uint32_t qname);
  const char* ParseSlowValue(const char* p, const char* from, NodeId attribute);
  const char* ParseNormalisedValue(const char* p, NodeId attribute, bool tokens);
  void StoreValue(NodeId attribute, std::string_view text);
  /// As AppendNode, at the end of an element's attributes.
  NodeId AppendAttribute(NodeId element, NameId name, NodeId& last) {
    return AppendAttribute(element, name, last, 0, 0, 0);
  }
  /// The same with the value there already: a range of the parse buffer.
  NodeId AppendAttribute(NodeId element, NameId name, NodeId& last, std::uint32_t textBegin,
                         std::uint32_t textLength, std::uint8_t flags) {
    const NodeId id = nodes_.ExtendReserved();
    NodeRecord* const nodes = nodes_.data();
    NodeRecord& record = nodes[id];
    record.parent = element;
    record.next = kNoNode;
    record.prev = last;
    record.textBegin = textBegin;
    record.textLength = textLength;
    record.firstAttribute = kNoNode;
    record.name = name;
    record.type = NodeType::kAttribute;
    record.flags = flags;
    record.holds = 0;
    (last != kNoNode ? nodes[last].next : nodes[element].firstAttribute) = id;
    last = id;
    return id;
  }
  void NoteSpecialAttribute(NodeId element, NodeId attribute, std::uint32_t qname,
                            const char* place);
  void DeclareNamespace(NodeId element, std::uint32_t qname, std::string_view uri,
                        const char* place);
  void NoteNamespace(std::string_view uri, const char* place);
  void CountSupplied(std::size_t bytes, const char* place);
  void AddDefaultAttributes(NodeId element, const AttributeList& list, NodeId& last,
                            const char* place);
  void ResolveAttributes(NodeId element, const char* place);
  NameId ResolveElement(std::uint32_t qname, const char* place) {
    const QName& name = names_.At(qname);
    const UriId uri = names_.At(name.prefix).binding;
    if (name.lastUri == uri) return name.lastName;
    return ResolveNewElement(qname, uri, place);
  }
  NameId ResolveNewElement(std::uint32_t qname, UriId uri, const char* place);
  void CheckExpandedDuplicates(NodeId element, const char* place);
  void PopBindings(NodeId element) noexcept;
  void CheckNewName(const char* begin, const char* end) const;
  // Binding; called only while `binder_` is set. What stands in an entity fails where that is
  // named. Out of line: a parse without a binder keeps the registers to itself.
  [[gnu::noinline]] void BindStart(NodeId element, const char* tagEnd);
  [[gnu::noinline]] void BindText(const char* begin, const char* end, TextForm form,
                                  const char* place);
  [[gnu::noinline]] void BindEnd(NodeId element, const char* place);
  [[gnu::noinline]] void BindLeaf(NodeId element, const char* begin, const char* end);
  [[noreturn]] void FailBinding(const char* place) const;
  // References: parser_entities.cc
  const char* DecodeCharReference(const char* p, const char* end, char32_t& codePoint) const;
  const char* ParseEntityName(const char* p, const char* end, std::string& name) const;
  static char PredefinedEntity(std::string_view name) noexcept;
  EntityDeclaration& FindEntity(const std::string& name, const char* place);
  [[nodiscard]] bool MaySkipUndeclared() const noexcept;
  const char* EnterEntity(const char* after, EntityDeclaration& entity, const char* place,
                          NodeId parent, NodeId& last);
  const char* LeaveEntity(NodeId& parent, NodeId& last);
  void CountExpansion(std::size_t bytes, const char* place);
  /// Appends `literal` with its references replaced, as an attribute value reads it. `place` is
  /// where a failure is told.
  void ExpandValue(std::string_view literal, AttributeValues white, std::string& out,
                   const char* place);

  // The internal subset: dtd_parser.cc
  friend class DtdParser;
  const char* ParseDoctype(const char* p);

  // What all of them use
  [[nodiscard]] bool InEntity() const noexcept { return !frames_.empty(); }
  [[noreturn]] void Fail(ParseCode code, const char* place) const;
  [[noreturn]] void Fail(ParseCode code, const char* place, std::string first,
                         std::string second = {}) const;
  [[noreturn]] void FailUnlessEnd(ParseCode code, const char* place, ParseCode atEnd) const;
  [[noreturn]] void FailName(const char* p, ParseCode atEnd) const;
  static const char* SkipSpace(const char* p) noexcept {
    while (*p == ' ' || *p == '\n' || *p == '\t' || *p == '\r') ++p;
    return p;
  }
  static bool IsSpace(char c) noexcept { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; }
  void GrowNodes(const char* p);
  void EnsureNodeRoom(const char* p) {
    if (nodes_.size() == nodes_.capacity()) GrowNodes(p);
  }

  DocumentData& data_;
  NameTable& names_;
  PlainArray<NodeRecord, 4>& nodes_;
  const ParseOptions& options_;
  const bool dropSpace_;
  SchemaBinder* binder_ = nullptr;    // set from when it wants to bind
  const char* base_ = nullptr;        // the parse buffer, which grows (and moves) with each entity
  const char* begin_ = nullptr;       // of the current frame
  const char* end_ = nullptr;         // of the current frame; a '<' stands there
  NodeId frameNode_ = kDocumentNode;  // the node that the current frame's content may not close
  NodeId topBinding_ = kNoNode;       // the innermost element with namespace declarations
  std::uint32_t depth_ = 0;
  NodeId lastTop_ = kNoNode;
  std::size_t expanded_ = 0;
  std::size_t supplied_ = 0;  // what default attributes took that no element has written
  bool standalone_ = false;
  EntityDeclaration skipped_;  // stands for an undeclared entity that may be skipped
  Dtd* dtd_ = nullptr;
  PlainArray<Binding, 8> bindings_;
  std::vector<Frame> frames_;
  std::size_t mainSize_ = 0;
};

}  // namespace kx::dom
