// See writer.h.
//
// The walk goes by the links of the nodes, so it needs no stack of its own. Every element costs a
// look at whether its names are in scope; a small cache remembers, by name and state of the
// declarations, that they were, so that the usual element costs one comparison a name.
#include "platform/dom/writer.h"

#include "platform/dom/namespace_context.h"
#include "platform/dom/text_output.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace kx::dom {

namespace {

constexpr char AsciiUpper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}

bool IsUtf16(std::string_view encoding) {
  constexpr std::string_view kName = "UTF-16";
  if (encoding.size() != kName.size()) return false;
  for (std::size_t i = 0; i < kName.size(); ++i) {
    if (AsciiUpper(encoding[i]) != kName[i]) return false;
  }
  return true;
}

// Names that were found to be in scope: direct-mapped, by name and role.
class NamesInScope {
 public:
  [[nodiscard]] bool Contains(NameId name, std::uint32_t version) const noexcept {
    return entries_[name % kEntries] == EntryOf(name, version);
  }
  void Add(NameId name, std::uint32_t version) noexcept {
    entries_[name % kEntries] = EntryOf(name, version);
  }

 private:
  static constexpr std::size_t kEntries = 64;

  // Versions begin at 1, so that no entry is 0.
  static std::uint64_t EntryOf(NameId name, std::uint32_t version) noexcept {
    return (std::uint64_t{version} << 32U) | name;
  }

  std::array<std::uint64_t, kEntries> entries_{};
};

class Writer {
 public:
  Writer(const DocumentData& data, DeclaredEncoding encoding, std::size_t expectedBytes)
      : data_(data),
        names_(data.Names()),
        encoding_(encoding),
        output_(expectedBytes),
        at_(output_.Begin()) {}

  std::string Write(NodeId id);

 private:
  using Record = NodeRecord;

  [[nodiscard]] const Record& At(NodeId id) const noexcept { return data_.Record(id); }
  [[nodiscard]] static Padding PaddingOf(const Record& record) noexcept {
    return (record.flags & kHeapText) != 0 ? Padding::kNone : Padding::kReadable;
  }
  [[nodiscard]] static bool HasInlineText(const Record& record) noexcept {
    return (record.flags & kInlineText) != 0;
  }

  void WriteChildTrees(NodeId parent);
  void WriteDocument();
  void WriteTree(NodeId root);
  bool WriteOpening(NodeId id);
  void WriteData(NodeId id, const Record& record);
  void WriteEndTag(NodeId id);

  bool WriteStartTag(NodeId id, const Record& element);
  char* PutAttribute(char* at, NodeId id, const Record& attribute);
  char* PutEndTag(char* at, const Record& element);
  char* PutQuotedValue(char* at, NodeId id, const Record& attribute);
  template <Escaping Replaced>
  char* PutOwnText(char* at, NodeId id, const Record& record);
  char* PutReference(char* at, const Record& reference);
  char* PutInstruction(char* at, NodeId id, const Record& instruction);
  char* PutDeclarationAttributes(char* at, const Record& declaration);
  char* PutCData(char* at, std::string_view text, Padding padding);

  [[nodiscard]] bool NeedsNoDeclaration(const Record& element) const noexcept;
  char* PutDeclarations(char* at, NodeId id, const Record& element);
  void NoteExplicitDeclarations(NodeId id, const Record& element);
  char* PutDeclaration(char* at, NodeId element, NameId name);

  const DocumentData& data_;
  const NameTable& names_;
  DeclaredEncoding encoding_;
  NamespaceContext context_;
  NamesInScope inScope_;
  TextOutput output_;
  char* at_;
};

// The walk ---------------------------------------------------------------------------------------

std::string Writer::Write(NodeId id) {
  if (IsInlineTextId(id)) {
    const NodeId owner = OwnerOfInlineText(id);
    at_ = PutOwnText<Escaping::kText>(at_, owner, At(owner));
  } else if (At(id).type == NodeType::kDocument) {
    WriteDocument();
  } else if (At(id).type == NodeType::kDocumentFragment) {
    WriteChildTrees(id);
  } else if (At(id).type == NodeType::kAttribute) {
    at_ = output_.PutName(at_, names_, names_.QNameOf(At(id).name));
    at_ = PutQuotedValue(at_, id, At(id));
  } else {
    WriteTree(id);
  }
  return output_.Finish(at_);
}

void Writer::WriteDocument() {
  for (NodeId at = At(kDocumentNode).first; at != kNoNode; at = At(at).next) {
    WriteTree(at);
    at_ = TextOutput::Put(output_.Room(at_, 2), "\r\n");
  }
}

void Writer::WriteChildTrees(NodeId parent) {
  for (NodeId at = At(parent).first; at != kNoNode; at = At(at).next) WriteTree(at);
}

void Writer::WriteTree(NodeId root) {
  NodeId id = root;
  while (true) {
    if (WriteOpening(id)) {
      id = At(id).first;
      continue;
    }
    while (id != root && At(id).next == kNoNode) {
      id = At(id).parent;
      WriteEndTag(id);
    }
    if (id == root) return;
    id = At(id).next;
  }
}

// Writes all of a node, or of an element with child nodes what stands before them; true for such
// an element.
bool Writer::WriteOpening(NodeId id) {
  const Record& record = At(id);
  if (record.type == NodeType::kElement) return WriteStartTag(id, record);
  if (record.type == NodeType::kText) {
    at_ = PutOwnText<Escaping::kText>(at_, id, record);
  } else {
    WriteData(id, record);
  }
  return false;
}

void Writer::WriteData(NodeId id, const Record& record) {
  const std::string_view text = data_.OwnText(id);
  const Padding padding = PaddingOf(record);
  char* at = output_.Room(at_, 16);
  if (record.type == NodeType::kComment) {
    at = output_.PutEscaped<Escaping::kLineEnds>(TextOutput::Put(at, "<!--"), text, padding);
    at = TextOutput::Put(output_.Room(at, 3), "-->");
  } else if (record.type == NodeType::kCData) {
    at = PutCData(at, text, padding);
  } else if (record.type == NodeType::kProcessingInstruction) {
    at = PutInstruction(at, id, record);
  } else if (record.type == NodeType::kDocumentType) {
    at = output_.PutEscaped<Escaping::kLineEnds>(at, text, padding);
  } else if (record.type == NodeType::kEntityReference) {
    at = PutReference(at, record);
  }
  // Entities and notations are written by the document type that declares them.
  at_ = at;
}

void Writer::WriteEndTag(NodeId id) {
  at_ = PutEndTag(at_, At(id));
  if (id == context_.Innermost()) context_.Leave(id);
}

// Elements ---------------------------------------------------------------------------------------

bool Writer::WriteStartTag(NodeId id, const Record& element) {
  char* at = output_.Room(at_, 1);
  *at++ = '<';
  at = output_.PutName(at, names_, names_.QNameOf(element.name));
  if (!NeedsNoDeclaration(element)) at = PutDeclarations(at, id, element);
  for (NodeId child = element.firstAttribute; child != kNoNode; child = At(child).next) {
    at = PutAttribute(at, child, At(child));
  }
  const bool inlineText = HasInlineText(element);
  const bool open = inlineText || element.first != kNoNode;
  at = output_.Room(at, 2);
  if (open || (element.flags & kFullForm) != 0) {
    *at++ = '>';
    if (inlineText) at = PutOwnText<Escaping::kText>(at, id, element);
    if (inlineText || !open) at = PutEndTag(at, element);
  } else {
    at = TextOutput::Put(at, "/>");
  }
  at_ = at;
  if (open && !inlineText) return true;
  if (id == context_.Innermost()) context_.Leave(id);
  return false;
}

char* Writer::PutEndTag(char* at, const Record& element) {
  at = TextOutput::Put(output_.Room(at, 2), "</");
  at = output_.PutName(at, names_, names_.QNameOf(element.name));
  at = output_.Room(at, 1);
  *at++ = '>';
  return at;
}

char* Writer::PutAttribute(char* at, NodeId id, const Record& attribute) {
  if ((attribute.flags & kDefaulted) != 0) return at;
  at = output_.Room(at, 1);
  *at++ = ' ';
  at = output_.PutName(at, names_, names_.QNameOf(attribute.name));
  return PutQuotedValue(at, id, attribute);
}

char* Writer::PutQuotedValue(char* at, NodeId id, const Record& attribute) {
  at = TextOutput::Put(output_.Room(at, 2), "=\"");
  if (HasInlineText(attribute)) {
    at = PutOwnText<Escaping::kAttribute>(at, id, attribute);
  } else {
    for (NodeId child = attribute.first; child != kNoNode; child = At(child).next) {
      at = At(child).type == NodeType::kEntityReference
               ? PutReference(at, At(child))
               : PutOwnText<Escaping::kAttribute>(at, child, At(child));
    }
  }
  at = output_.Room(at, 1);
  *at++ = '"';
  return at;
}

// Texts ------------------------------------------------------------------------------------------

template <Escaping Replaced>
char* Writer::PutOwnText(char* at, NodeId id, const Record& record) {
  const std::string_view text = data_.OwnText(id);
  if ((record.flags & kPlainText) != 0) return output_.PutVerbatim(at, text, PaddingOf(record));
  return output_.PutEscaped<Replaced>(at, text, PaddingOf(record));
}

char* Writer::PutReference(char* at, const Record& reference) {
  at = output_.Room(at, 1);
  *at++ = '&';
  at = output_.PutName(at, names_, names_.QNameOf(reference.name));
  at = output_.Room(at, 1);
  *at++ = ';';
  return at;
}

// A section ends at the first "]]>": data that holds one goes on in a second section.
char* Writer::PutCData(char* at, std::string_view text, Padding padding) {
  at = TextOutput::Put(output_.Room(at, 9), "<![CDATA[");
  std::size_t begin = 0;
  while (true) {
    const std::size_t end = text.find("]]>", begin);
    const std::size_t stop = end == std::string_view::npos ? text.size() : end + 2;
    at = output_.PutEscaped<Escaping::kLineEnds>(at, text.substr(begin, stop - begin), padding);
    at = output_.Room(at, 12);
    if (end == std::string_view::npos) return TextOutput::Put(at, "]]>");
    at = TextOutput::Put(at, "]]><![CDATA[");
    begin = stop;
  }
}

char* Writer::PutInstruction(char* at, NodeId id, const Record& instruction) {
  at = TextOutput::Put(output_.Room(at, 2), "<?");
  at = output_.PutName(at, names_, names_.QNameOf(instruction.name));
  if (instruction.firstAttribute != kNoNode) {
    at = PutDeclarationAttributes(at, instruction);
  } else if (instruction.textLength != 0) {
    at = output_.Room(at, 1);
    *at++ = ' ';
    at = output_.PutEscaped<Escaping::kLineEnds>(at, data_.OwnText(id), PaddingOf(instruction));
  }
  return TextOutput::Put(output_.Room(at, 2), "?>");
}

char* Writer::PutDeclarationAttributes(char* at, const Record& declaration) {
  for (NodeId id = declaration.firstAttribute; id != kNoNode; id = At(id).next) {
    const bool encoding = names_.QualifiedText(At(id).name) == "encoding";
    const bool kept = !encoding || encoding_ == DeclaredEncoding::kKeep ||
                      IsUtf16(Cursor(&data_, id).TextContent());
    if (kept) at = PutAttribute(at, id, At(id));
  }
  return at;
}

// Namespaces -------------------------------------------------------------------------------------

// True when it is known that all names of the element are in scope. An attribute shares its
// NameId with elements of the same name; without prefix it needs nothing.
bool Writer::NeedsNoDeclaration(const Record& element) const noexcept {
  const std::uint32_t version = context_.Version();
  if (!inScope_.Contains(element.name, version)) return false;
  for (NodeId id = element.firstAttribute; id != kNoNode; id = At(id).next) {
    const Record& attribute = At(id);
    if ((attribute.flags & kNamespaceDeclaration) != 0) return false;
    if (names_.At(names_.QNameOf(attribute.name)).prefix == 0) continue;
    if (!inScope_.Contains(attribute.name, version)) return false;
  }
  return true;
}

// Writes the declarations that the element lacks: its own name's first, then its attributes'.
char* Writer::PutDeclarations(char* at, NodeId id, const Record& element) {
  NoteExplicitDeclarations(id, element);
  at = PutDeclaration(at, id, element.name);
  for (NodeId next = element.firstAttribute; next != kNoNode; next = At(next).next) {
    const Record& attribute = At(next);
    if ((attribute.flags & (kNamespaceDeclaration | kDefaulted)) != 0) continue;
    if (names_.At(names_.QNameOf(attribute.name)).prefix == 0) continue;
    at = PutDeclaration(at, id, attribute.name);
  }
  return at;
}

void Writer::NoteExplicitDeclarations(NodeId id, const Record& element) {
  for (NodeId next = element.firstAttribute; next != kNoNode; next = At(next).next) {
    const Record& attribute = At(next);
    if ((attribute.flags & kNamespaceDeclaration) == 0 || (attribute.flags & kDefaulted) != 0) {
      continue;
    }
    // The name is "xmlns" or "xmlns:p". A prefix that is no qualified name of the document is in
    // no name of it either, and a namespace that the document does not know binds no name.
    const bool isDefault = names_.At(names_.QNameOf(attribute.name)).prefixLength == 0;
    const std::uint32_t prefix = isDefault ? 0 : names_.FindQName(names_.LocalText(attribute.name));
    if (!isDefault && prefix == 0) continue;
    const std::string value = Cursor(&data_, next).TextContent();
    context_.Declare(id, prefix, value.empty() ? kNoUri : names_.FindUri(value));
  }
}

// Writes the declaration of the name's prefix on `element` unless it is in scope.
char* Writer::PutDeclaration(char* at, NodeId element, NameId name) {
  const QName& qname = names_.At(names_.QNameOf(name));
  const UriId uri = names_.UriText(names_.UriOf(name)).empty() ? kNoUri : names_.UriOf(name);
  const bool cannotBeDeclared =
      qname.prefix != 0 && (uri == kNoUri || names_.PrefixText(name) == "xml");
  if (!cannotBeDeclared && context_.Find(qname.prefix) != uri) {
    // Declared on the element already, as something else: a second one would not be well-formed.
    if (context_.IsDeclaredBy(element, qname.prefix)) return at;
    context_.Declare(element, qname.prefix, uri);
    at = TextOutput::Put(output_.Room(at, 7), " xmlns:");
    if (qname.prefix == 0) {
      --at;
    } else {
      at = output_.PutName(at, names_, qname.prefix);
    }
    at = TextOutput::Put(output_.Room(at, 2), "=\"");
    at = output_.PutEscaped<Escaping::kAttribute>(at, names_.UriText(uri), Padding::kNone);
    at = output_.Room(at, 1);
    *at++ = '"';
  }
  inScope_.Add(name, context_.Version());
  return at;
}

// The parse buffer is as long as the text that it came from: what the whole document is likely to
// take. Anything else starts small and grows.
std::size_t ExpectedBytes(const DocumentData& data, NodeId id) {
  const bool whole =
      !IsInlineTextId(id) && (id == kDocumentNode || data.Record(id).parent == kDocumentNode);
  if (!whole) return 0;
  const StorageCounters counters = data.Counters();
  const std::size_t bytes = counters.textBytes + counters.heapLiveBytes;
  return bytes + bytes / 16;
}

}  // namespace

std::string WriteXml(const Cursor& node, DeclaredEncoding encoding) {
  if (!node) return {};
  return Writer(node.Data(), encoding, ExpectedBytes(node.Data(), node.Id())).Write(node.Id());
}

}  // namespace kx::dom
