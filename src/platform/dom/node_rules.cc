// See node_rules.h.
#include "platform/dom/node_rules.h"

#include "kxmessage/variant.h"

#include "platform/dom/dom_error.h"
#include "platform/dom/dtd.h"
#include "platform/dom/xml_names.h"
#include "platform/text/unicode.h"

#include <cstddef>

namespace kx::dom {

namespace {

constexpr std::string_view kXmlnsPrefix = "xmlns:";

[[noreturn]] void RaiseBadKind(NodeType type) {
  RaiseDomFailure(DomCode::kBadNodeType, {NodeTypeCapitals(type)});
}

// Raises for a text that is no name, with the reason that a parse would give.
[[noreturn]] void RaiseBadName(std::string_view name) {
  if (name.empty()) RaiseDomFailure(ParseCode::kBadNameStart);
  if (IsName(name)) {
    const std::size_t first = name.find(':');
    const std::size_t second = name.find(':', first + 1);
    RaiseDomFailure(second != std::string_view::npos && second != first + 1
                        ? ParseCode::kMultipleColons
                        : ParseCode::kBadNameStart);
  }
  const text::Utf8Char start = text::DecodeUtf8(name, 0);
  const bool started = start.valid && IsNameStartCodePoint(start.codePoint);
  RaiseDomFailure(started ? ParseCode::kBadNameChar : ParseCode::kBadNameStart);
}

bool MayStandIn(NodeType parent, NodeType child) {
  switch (child) {
    case NodeType::kElement:
    case NodeType::kProcessingInstruction:
    case NodeType::kComment:
      return parent != NodeType::kAttribute;
    case NodeType::kText:
    case NodeType::kEntityReference:
      return parent != NodeType::kDocument;
    case NodeType::kCData:
      return parent != NodeType::kDocument && parent != NodeType::kAttribute;
    default:
      return false;
  }
}

bool MayHaveChildren(NodeType type) {
  return type == NodeType::kElement || type == NodeType::kAttribute ||
         type == NodeType::kDocument || type == NodeType::kDocumentFragment;
}

void CheckKinds(NodeType parent, const Cursor& child) {
  if (!MayHaveChildren(parent)) RaiseBadKind(parent);
  if (child.Type() != NodeType::kDocumentFragment) {
    if (!MayStandIn(parent, child.Type())) RaiseBadKind(child.Type());
    return;
  }
  for (Cursor at = child.FirstChild(); at; at = at.Next()) {
    if (!MayStandIn(parent, at.Type())) RaiseBadKind(at.Type());
  }
}

// Walks up from `below` and down from `above` in step, so that the cost is the smaller of the
// depth and the size: neither a deep chain nor a large subtree makes a loop of inserts quadratic.
bool IsInTreeOf(const Cursor& below, const Cursor& above) {
  Cursor up = below;
  Cursor down = above;
  while (up && down) {
    if (up == above || down == below) return true;
    up = up.Parent();
    down = down.NextInTree(above);
  }
  return false;
}

std::size_t CountElements(const Cursor& parent) {
  std::size_t count = 0;
  for (Cursor at = parent.FirstChildElement(); at; at = at.NextElement()) ++count;
  return count;
}

// Raises when the document would have two roots.
void CheckRoots(const Cursor& document, const Cursor& child, const Cursor& replaced) {
  const bool fragment = child.Type() == NodeType::kDocumentFragment;
  std::size_t roots = fragment ? CountElements(child) : (child.IsElement() ? 1U : 0U);
  if (roots == 0) return;
  for (Cursor at = document.FirstChildElement(); at; at = at.NextElement()) {
    if (!(at == child) && !(at == replaced)) ++roots;
  }
  if (roots > 1) RaiseDomFailure(ParseCode::kMultipleRoots);
}

bool HasEntities(const DocumentData& data) {
  return data.DocumentType() != nullptr && !data.DocumentType()->entities.empty();
}

// The namespace that an element's own start tag binds `prefix` to.
UriId FindOwnNamespace(const Cursor& element, std::string_view prefix) {
  const NameTable& names = element.Data().Names();
  const UriId own = names.UriOf(element.Name());
  if (own != kNoUri && element.Prefix() == prefix) return own;
  for (Cursor at = element.FirstAttribute(); at; at = at.Next()) {
    const bool declaration = at.Prefix() == "xmlns";
    if (declaration ? at.LocalName() != prefix : at.Prefix() != prefix) continue;
    const UriId uri = declaration ? names.FindUri(at.TextContent()) : names.UriOf(at.Name());
    if (uri != kNoUri) return uri;
  }
  return kNoUri;
}

void CheckReserved(std::string_view prefix, std::string_view uri) {
  if (prefix == "xmlns" || uri == kXmlnsNamespace) {
    RaiseDomFailure(ParseCode::kReservedNamespace, {"xmlns"});
  }
  if ((prefix == "xml") != (uri == kXmlNamespace)) {
    RaiseDomFailure(ParseCode::kReservedNamespace, {"xml"});
  }
  if (prefix != "xml" && text::EqualsAsciiCaseless(prefix.substr(0, 3), "xml")) {
    RaiseDomFailure(ParseCode::kReservedPrefix);
  }
}

}  // namespace

bool HasValue(NodeType type) noexcept {
  return type == NodeType::kAttribute || type == NodeType::kText || type == NodeType::kCData ||
         type == NodeType::kComment || type == NodeType::kProcessingInstruction;
}

bool IsDeclarationName(std::string_view qualifiedName) noexcept {
  return qualifiedName == "xmlns" || qualifiedName.substr(0, 6) == kXmlnsPrefix;
}

// Texts ------------------------------------------------------------------------------------------

std::string_view FoldLineEnds(std::string_view text, std::string& scratch) {
  if (text.find('\r') == std::string_view::npos) return text;
  scratch.clear();
  scratch.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r') {
      scratch += text[i];
    } else if (i + 1 == text.size() || text[i + 1] != '\n') {
      scratch += '\n';
    }
  }
  return scratch;
}

void CheckCharacters(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte >= 0x20 && byte < 0x80) {
      ++i;
      continue;
    }
    const text::Utf8Char c = text::DecodeUtf8(text, i);
    if (!c.valid || !text::IsXmlChar(c.codePoint)) RaiseDomFailure(ParseCode::kBadCharInText);
    i += c.length;
  }
}

void CheckData(NodeType type, std::string_view text) {
  CheckCharacters(text);
  const bool ends = type == NodeType::kComment ? text.find("-->") != std::string_view::npos
                                               : type == NodeType::kProcessingInstruction &&
                                                     text.find("?>") != std::string_view::npos;
  if (ends) RaiseDomArgument(DomCode::kInvalidData, {NodeTypeCapitals(type)});
}

std::string TextOfValue(const Variant& value) {
  if (value.IsNull()) RaiseDomArgument();
  return value.ToText();
}

// Names ------------------------------------------------------------------------------------------

void CheckQualifiedName(std::string_view name) {
  if (name.data() == nullptr) RaiseDomArgument();
  if (!IsQName(name)) RaiseBadName(name);
}

void CheckTarget(std::string_view name) {
  if (!IsName(name)) RaiseBadName(name);
  if (name != "xml" && text::EqualsAsciiCaseless(name, "xml")) {
    RaiseDomFailure(ParseCode::kReservedXmlName);
  }
}

void CheckEntityName(std::string_view name) {
  if (!IsName(name)) RaiseBadName(name);
  if (!IsNcName(name)) RaiseDomFailure(ParseCode::kColonInName);
}

NameId BindName(DocumentData& data, NodeType type, std::string_view qualifiedName,
                std::string_view uri) {
  NameTable& names = data.Names();
  const std::string_view prefix = qualifiedName.substr(0, qualifiedName.find(':') + 1);
  UriId bound = kNoUri;
  if (prefix == "xml:") {
    bound = kXmlUri;
  } else if (type == NodeType::kAttribute && prefix == kXmlnsPrefix) {
    bound = kEmptyUri;
  } else if (type == NodeType::kAttribute && qualifiedName == "xmlns") {
    bound = names.InternUri("xmlns");
  } else if (!uri.empty()) {
    bound = names.InternUri(uri);
  }
  return names.InternName(qualifiedName, bound);
}

UriId FindNamespace(const Cursor& element, std::string_view prefix) {
  if (prefix == "xml") return kXmlUri;
  for (Cursor at = element; at && at.IsElement(); at = at.Parent()) {
    const UriId uri = FindOwnNamespace(at, prefix);
    if (uri != kNoUri && uri < 0xFFFFFFFFU) return uri;
  }
  return kNoUri;
}

void CheckDeclaration(const Cursor& element, std::string_view name, std::string_view uri) {
  const bool isDefault = name == "xmlns";
  const std::string_view prefix = isDefault ? std::string_view() : name.substr(6);
  if (!isDefault && uri.empty()) RaiseDomArgument();
  CheckReserved(prefix, uri);
  const NameTable& names = element.Data().Names();
  const auto differs = [&names, uri](const Cursor& at) {
    const UriId bound = names.UriOf(at.Name());
    return bound != kNoUri && names.UriText(bound) != uri;
  };
  if (element.Prefix() == prefix && differs(element)) RaiseDomArgument();
  if (isDefault) return;
  for (Cursor at = element.FirstAttribute(); at; at = at.Next()) {
    if (at.Prefix() == prefix && differs(at)) RaiseDomArgument();
  }
}

// The tree ---------------------------------------------------------------------------------------

void CheckChangeable(const Cursor& at) {
  // Only a document with entities has anything below an entity reference.
  const bool deep = HasEntities(at.Data());
  int steps = 0;
  for (Cursor up = at; up && (deep || steps < 2); up = up.Parent(), ++steps) {
    if (up.Type() == NodeType::kEntityReference) RaiseBadKind(NodeType::kEntityReference);
    if (up.Type() != NodeType::kAttribute) continue;
    const Cursor holder = up.Parent();
    if (!holder) return;
    const bool fixed = holder.IsElement() ? IsDeclarationName(up.QualifiedName()) : steps != 0;
    if (fixed) RaiseDomFailure(DomCode::kAccessDenied);
    return;
  }
}

void CheckInsertion(const Cursor& parent, const Cursor& child, const Cursor& replaced) {
  CheckKinds(parent.Type(), child);
  if (IsInTreeOf(parent, child)) RaiseDomFailure(DomCode::kInsertUnderItself);
  if (parent.Type() == NodeType::kDocument) CheckRoots(parent, child, replaced);
  CheckChangeable(parent);
  if (const Cursor former = child.Parent()) CheckChangeable(former);
}

}  // namespace kx::dom
