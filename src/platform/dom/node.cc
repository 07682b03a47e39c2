// Handles, navigation, names and values. See node.h; the edits are in node_edit.cc,
// element_attributes.cc and character_data.cc.
#include "platform/dom/node.h"

#include "platform/dom/attribute_map.h"
#include "platform/dom/document.h"
#include "platform/dom/document_impl.h"
#include "platform/dom/dom_error.h"
#include "platform/dom/node_list.h"
#include "platform/dom/node_rules.h"
#include "platform/dom/writer.h"
#include "platform/text/unicode.h"

namespace kx::dom {

namespace {

bool IsNamed(NodeType type) {
  return type == NodeType::kElement || type == NodeType::kAttribute ||
         type == NodeType::kEntityReference || type == NodeType::kEntity ||
         type == NodeType::kProcessingInstruction || type == NodeType::kDocumentType ||
         type == NodeType::kNotation;
}

// The kinds whose names take part in namespaces.
bool HasNamespace(NodeType type) {
  return type == NodeType::kElement || type == NodeType::kAttribute;
}

bool IsDefaultDeclaration(const Cursor& at) {
  return at.Type() == NodeType::kAttribute && at.QualifiedName() == "xmlns";
}

// True when the nearest xml:space around the node says "preserve".
bool KeepsSpace(Cursor at) {
  if (at.Data().Names().FindQName("xml:space") == 0) return false;
  for (; at; at = at.Parent()) {
    if (!at.IsElement()) continue;
    const Cursor space = at.FindAttribute("xml:space");
    if (space) return space.TextContent() == "preserve";
  }
  return false;
}

// A text collected from pieces, of which CDATA must not be trimmed.
class TrimmedText {
 public:
  void Append(const Cursor& piece) {
    const std::string_view text = piece.OwnText();
    if (piece.Type() == NodeType::kCData && !text.empty()) {
      if (fixedEnd_ == 0) fixedBegin_ = text_.size();
      fixedEnd_ = text_.size() + text.size();
    }
    text_ += text;
  }
  std::string Take() {
    const bool fixed = fixedEnd_ != 0;
    std::size_t end = text_.size();
    while (end > fixedEnd_ && IsSpace(end - 1)) --end;
    text_.resize(end);
    const std::size_t latest = fixed ? fixedBegin_ : end;
    std::size_t begin = 0;
    while (begin < latest && IsSpace(begin)) ++begin;
    text_.erase(0, begin);
    return std::move(text_);
  }

 private:
  [[nodiscard]] bool IsSpace(std::size_t at) const {
    return text::IsXmlSpace(static_cast<unsigned char>(text_[at]));
  }

  std::string text_;
  std::size_t fixedBegin_ = 0;
  std::size_t fixedEnd_ = 0;
};

bool IsTrimmed(const Cursor& at) {
  const DocumentImpl* owner = at.Data().Owner();
  if (owner == nullptr || owner->settings.preserveWhiteSpace) return false;
  switch (at.Type()) {
    case NodeType::kElement:
    case NodeType::kText:
    case NodeType::kDocument:
    case NodeType::kDocumentFragment:
    case NodeType::kEntityReference:
      return !KeepsSpace(at);
    default:
      return false;
  }
}

std::string CollectTrimmed(const Cursor& at) {
  TrimmedText text;
  if (at.IsText()) {
    text.Append(at);
  } else {
    for (Cursor below = at.FirstChild(); below; below = below.NextInTree(at)) {
      if (below.IsText()) text.Append(below);
    }
  }
  return text.Take();
}

}  // namespace

// Handles ----------------------------------------------------------------------------------------

// Gives a text that is kept in its owner's record one of its own, which this then names.
void Node::GiveRecord() {
  if (data_->Frozen()) return;
  const NodeId owner = OwnerOfInlineText(id_);
  const NodeRecord& record = data_->Record(owner);
  // Another handle may have done so since the cursor was taken.
  id_ = (record.flags & kInlineText) != 0 ? data_->MaterializeInlineText(owner) : record.first;
}

void Node::FollowMove() const noexcept {
  Forward to{data_, id_};
  if (data_->Record(id_).type == NodeType::kMoved) {
    to = data_->ForwardOf(id_);
  } else if (data_->Owner() != nullptr) {
    to.data = data_->Owner()->current;
  }
  if (to.data == data_ && to.id == id_) return;
  to.data->Hold(to.id);
  data_->Release(id_);
  data_ = to.data;
  id_ = to.id;
}

void Node::RaiseNothing() { runtime::RaiseRuntimeError(runtime::kObjectNotSet); }

DocumentData& Node::Editable() const {
  Require();
  if (data_->Frozen()) RaiseDomFailure(DomCode::kAccessDenied);
  return *data_;
}

// Names ------------------------------------------------------------------------------------------

std::string_view Node::TypeName() const { return NodeTypeName(Type()); }

std::string Node::NodeName() const {
  const Cursor at = At();
  switch (at.Type()) {
    case NodeType::kText:
      return "#text";
    case NodeType::kCData:
      return "#cdata-section";
    case NodeType::kComment:
      return "#comment";
    case NodeType::kDocument:
      return "#document";
    case NodeType::kDocumentFragment:
      return "#document-fragment";
    default:
      return std::string(at.QualifiedName());
  }
}

std::optional<std::string> Node::BaseName() const {
  const Cursor at = At();
  if (!IsNamed(at.Type())) return std::nullopt;
  if (!HasNamespace(at.Type())) return std::string(at.QualifiedName());
  if (IsDefaultDeclaration(at)) return std::string();
  return std::string(at.LocalName());
}

std::optional<std::string> Node::Prefix() const {
  const Cursor at = At();
  if (!HasNamespace(at.Type())) return std::nullopt;
  if (IsDefaultDeclaration(at)) return "xmlns";
  const std::string_view prefix = at.Prefix();
  return prefix.empty() ? std::nullopt : std::optional<std::string>(prefix);
}

std::optional<std::string> Node::NamespaceUri() const {
  const Cursor at = At();
  if (!HasNamespace(at.Type())) return std::nullopt;
  const UriId uri = at.Data().Names().UriOf(at.Name());
  if (uri == kNoUri) return std::nullopt;
  return std::string(at.Data().Names().UriText(uri));
}

bool Node::Specified() const {
  const Cursor at = At();
  return at.Type() != NodeType::kAttribute || (at.Data().Record(at.Id()).flags & kDefaulted) == 0;
}

// Values -----------------------------------------------------------------------------------------

std::optional<std::string> Node::NodeValue() const {
  const Cursor at = At();
  if (!HasValue(at.Type())) return std::nullopt;
  return at.TextContent();
}

std::string Node::Text() const {
  const Cursor at = At();
  if (at.Type() == NodeType::kDocumentType) return {};
  return IsTrimmed(at) ? CollectTrimmed(at) : at.TextContent();
}

std::string Node::Xml() const { return WriteXml(At()); }

// Navigation -------------------------------------------------------------------------------------

Node Node::ParentNode() const {
  const Cursor at = At();
  if (at.Type() == NodeType::kAttribute) return {};
  const Cursor parent = at.Parent();
  // The content that a load replaced is no longer in the document.
  const bool retired = parent && parent.Type() == NodeType::kDocument &&
                       data_->Owner() != nullptr && data_->Owner()->current != data_;
  return retired ? Node() : Node(parent);
}

Document Node::OwnerDocument() const {
  if (Type() == NodeType::kDocument) return {};
  return Document(data_->Owner());
}

Node Node::NextSibling() const {
  const Cursor at = At();
  return at.Type() == NodeType::kAttribute ? Node() : Node(at.Next());
}

Node Node::PreviousSibling() const {
  const Cursor at = At();
  return at.Type() == NodeType::kAttribute ? Node() : Node(at.Previous());
}

NodeList Node::ChildNodes() const {
  Require();
  return NodeList::OfChildren(*this);
}

AttributeMap Node::Attributes() const { return AttributeMap(*this); }

NodeList Node::GetElementsByTagName(std::string_view name) const {
  Require();
  if (name.data() == nullptr) RaiseDomArgument();
  return NodeList::OfElements(*this, name);
}

}  // namespace kx::dom
