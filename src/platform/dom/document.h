// The document object: its settings, loading, the creation of nodes, copying and saving. A handle
// is a counted reference to it; the content is reached as nodes (node.h).
//
// Invariants:
//   - A load drops the old content first, whatever comes of it; nodes taken from it live on. A
//     failed load leaves an empty document, and settings survive every load.
//   - A frozen document is never changed again: every edit, load and setting of it raises E_FAIL,
//     "Access denied." Then handles of it and of its nodes may be made on many threads at a time.
#pragma once

#include "platform/dom/document_impl.h"
#include "platform/dom/dtd.h"
#include "platform/dom/node.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kx::dom {

/// A document, or nothing. Copies name the same one; `==` is identity. Members of a handle of
/// nothing raise the run-time error 91.
class Document {
 public:
  constexpr Document() noexcept = default;
  /// A handle of an existing document object.
  explicit Document(DocumentImpl* impl) noexcept : impl_(impl) {
    if (impl_ != nullptr) impl_->AddRef();
  }
  Document(const Document& other) noexcept : Document(other.impl_) {}
  Document(Document&& other) noexcept : impl_(std::exchange(other.impl_, nullptr)) {}
  Document& operator=(Document other) noexcept {
    std::swap(impl_, other.impl_);
    return *this;
  }
  ~Document() {
    if (impl_ != nullptr) impl_->Release();
  }
  /// A new, empty document with the platform's defaults.
  [[nodiscard]] static Document Create();

  explicit operator bool() const noexcept { return impl_ != nullptr; }
  friend bool operator==(const Document& a, const Document& b) noexcept {
    return a.impl_ == b.impl_;
  }

  // Settings -------------------------------------------------------------------------------------

  [[nodiscard]] const DocumentSettings& Settings() const { return Impl().settings; }
  /// The settings, to be changed. Raises: E_FAIL for a frozen document.
  DocumentSettings& EditSettings() const { return Editable().settings; }
  [[nodiscard]] bool PreserveWhiteSpace() const { return Impl().settings.preserveWhiteSpace; }
  /// Note: what a load has dropped does not come back; the trimming of Text follows at once.
  void PreserveWhiteSpace(bool value) const { Editable().settings.preserveWhiteSpace = value; }
  [[nodiscard]] bool ValidateOnParse() const { return Impl().settings.validateOnParse; }
  void ValidateOnParse(bool value) const { Editable().settings.validateOnParse = value; }
  [[nodiscard]] bool ResolveExternals() const { return Impl().settings.resolveExternals; }
  void ResolveExternals(bool value) const { Editable().settings.resolveExternals = value; }
  [[nodiscard]] bool Async() const { return Impl().settings.async; }
  void Async(bool value) const { Editable().settings.async = value; }

  // Loading --------------------------------------------------------------------------------------

  /// Parses `text`, whatever encoding it declares. Returns false, with the reason in ParseError,
  /// when it is not a document. Note: `text` must not lie in this document's own storage.
  bool LoadXml(std::string_view text) const;
  /// Reads `location` by the document's reader. Raises: E_INVALIDARG for null.
  bool Load(std::string_view location) const;
  /// Decodes by byte-order mark, declared encoding, or as UTF-8.
  bool LoadBytes(std::string_view bytes) const;
  /// Takes the text of another document, parsed again under this one's settings.
  bool Load(const Document& other) const;
  /// Why the last load failed; all empty when it did not.
  [[nodiscard]] const ParseError& LastError() const { return Impl().parseError; }
  /// The full location of what was loaded; nothing for text, bytes and a failed load.
  [[nodiscard]] std::optional<std::string> Url() const;
  /// For content whose bytes came another way than by Load.
  void SetUrl(std::string url) const { Editable().url = std::move(url); }

  // Content --------------------------------------------------------------------------------------

  /// The document as a node.
  [[nodiscard]] Node AsNode() const { return {Impl().current, kDocumentNode}; }
  /// The content at the moment, for the engines of the platform.
  [[nodiscard]] DocumentData& Data() const { return *Impl().current; }
  [[nodiscard]] Cursor Root() const { return {Impl().current, Data().DocumentElement()}; }
  /// Nothing when there is none.
  [[nodiscard]] Node DocumentElement() const { return Node(Root()); }
  /// Replaces the root in its place, or appends one. Raises: as Node::ReplaceChild; E_FAIL for
  /// what is no element.
  void DocumentElement(const Node& element) const;
  /// The document type node; nothing when there is none. Its name is that of the root it names.
  [[nodiscard]] Node Doctype() const;
  /// The entities and notations that the document type declares; null without one. Valid until the
  /// next load.
  [[nodiscard]] const Dtd* Declarations() const { return Data().DocumentType(); }
  [[nodiscard]] std::string Xml() const { return AsNode().Xml(); }

  // Creating nodes -------------------------------------------------------------------------------

  /// A new detached node. `type` is its number, a text that is such a number, or the name of the
  /// type in any letter case. `uri` empty stands for no namespace.
  /// Raises: E_INVALIDARG for a type that cannot be created; E_FAIL for a missing or malformed
  /// name.
  [[nodiscard]] Node CreateNode(const Variant& type, std::string_view name,
                                std::string_view uri) const;
  [[nodiscard]] Node CreateNode(NodeType type, std::string_view name, std::string_view uri) const;
  /// Raises: E_INVALIDARG for a null name, E_FAIL for an empty or malformed one.
  [[nodiscard]] Node CreateElement(std::string_view name) const;
  [[nodiscard]] Node CreateAttribute(std::string_view name) const;
  /// Raises: E_FAIL for a character that XML does not allow.
  [[nodiscard]] Node CreateTextNode(std::string_view data) const;
  [[nodiscard]] Node CreateCDataSection(std::string_view data) const;
  /// Raises: also E_INVALIDARG for data that would end the comment.
  [[nodiscard]] Node CreateComment(std::string_view data) const;
  /// Raises: also E_INVALIDARG for data that would end the instruction. An instruction named "xml"
  /// is an XML declaration: E_FAIL for data that no declaration has.
  [[nodiscard]] Node CreateProcessingInstruction(std::string_view target,
                                                 std::string_view data) const;
  /// With the content that the document's own declarations give it.
  [[nodiscard]] Node CreateEntityReference(std::string_view name) const;
  [[nodiscard]] Node CreateDocumentFragment() const;
  /// A detached copy of a node of any document. Raises: E_FAIL for documents and document types.
  [[nodiscard]] Node ImportNode(const Node& node, CloneDepth depth) const;

  // The whole ------------------------------------------------------------------------------------

  /// A new document with the same settings; shallow, an empty one.
  [[nodiscard]] Document Clone(CloneDepth depth) const;
  /// The text to save, the declared encoding kept.
  [[nodiscard]] std::string SaveText() const;
  /// The same in the declared encoding, UTF-8 without one; UTF-16 with a byte-order mark. A
  /// character that the encoding lacks becomes a reference.
  /// Raises: E_FAIL for an unknown encoding, and where no reference may stand.
  [[nodiscard]] std::string SaveBytes() const;
  /// No change from now on; reading is safe from many threads.
  void Freeze() const { Impl().current->Freeze(); }
  [[nodiscard]] bool Frozen() const { return Impl().current->Frozen(); }

 private:
  [[nodiscard]] DocumentImpl& Impl() const {
    if (impl_ == nullptr) RaiseNothing();
    return *impl_;
  }
  [[noreturn]] static void RaiseNothing();
  [[nodiscard]] DocumentImpl& Editable() const;
  [[nodiscard]] ParseOptions Options() const;
  template <class Parse>
  bool LoadBy(std::string_view location, std::string_view url, const Parse& parse) const;
  [[nodiscard]] Node NewNode(NodeType type, std::string_view name, std::string_view uri) const;
  [[nodiscard]] Node NewData(NodeType type, std::string_view data) const;

  DocumentImpl* impl_ = nullptr;
};

/// A new document as the library makes all of its own: white space preserved, validated while
/// parsing, not asynchronous.
[[nodiscard]] Document NewDomDocument();

}  // namespace kx::dom
