// Attributes, their values, and the namespaces that they declare. The shape of the parser is told
// in parser_impl.h.
#include "platform/dom/cursor.h"
#include "platform/dom/parser_impl.h"
#include "platform/dom/xml_names.h"
#include "platform/text/unicode.h"

#include <algorithm>
#include <cstring>
#include <tuple>

namespace kx::dom {

namespace {

constexpr std::string_view kDataTypeNamespace = "urn:schemas-microsoft-com:datatypes";

}  // namespace

// `p` is after an attribute's name; returns where the opening quote stands.
const char* Parser::ParseEquals(const char* p) {
  const char* at = SkipSpace(p);
  if (*at != '=') {
    const bool endsName = at != p || std::memchr("/>\"'<", *at, 5) != nullptr;
    FailUnlessEnd(endsName ? ParseCode::kMissingEquals : ParseCode::kBadNameChar, at,
                  ParseCode::kUnclosedStartTag);
  }
  at = SkipSpace(at + 1);
  if (*at != '"' && *at != '\'') {
    FailUnlessEnd(ParseCode::kMissingQuote, at, ParseCode::kUnclosedStartTag);
  }
  return at;
}

// `p` is after the element's name; returns where the '>' or '/' stands.
const char* Parser::ParseAttributes(const char* p, NodeId element, std::uint32_t elementName) {
  NodeId last = kNoNode;
  bool prefixed = false;
  const bool plainMode = dtd_ == nullptr && options_.attributeValues == AttributeValues::kAsWritten;
  std::uint32_t context = elementName;
  while (*p != '>') {
    const char* name = *p == ' ' ? p + 1 : p;
    if (static_cast<unsigned char>(*name) <= ' ') name = SkipSpace(name);
    if (*name == '>' || *name == '/') {
      p = name;
      break;
    }
    if (name == p) {
      FailUnlessEnd(last == kNoNode ? ParseCode::kBadNameChar : ParseCode::kMissingWhiteSpace, p,
                    ParseCode::kUnclosedStartTag);
    }
    std::uint32_t qname = 0;
    p = ParseName(name, context, kNextAttributeName, qname);
    context = qname;
    QName& known = names_.At(qname);
    if (known.attributeStamp == element) Fail(ParseCode::kDuplicateAttribute, name);
    known.attributeStamp = element;
    const bool special = known.prefixLength != 0 || qname == kXmlnsQName;
    const NameId nameId = names_.InternName(qname, kNoUri);
    if (p[0] == '=' && (p[1] == '"' || p[1] == '\'')) {
      ++p;
    } else {
      p = ParseEquals(p);
    }
    EnsureNodeRoom(p);
    const char* const begin = p + 1;
    const scan::Stop stop = scan::ScanAttributeValue(begin, *p);
    if (*stop.at == *p && plainMode) {
      const auto length = static_cast<std::uint32_t>(stop.at - begin);
      const unsigned flags =
          (length != 0 ? unsigned{kInlineText} : 0U) | (stop.plain ? unsigned{kPlainText} : 0U);
      AppendAttribute(element, nameId, last, static_cast<std::uint32_t>(begin - base_), length,
                      static_cast<std::uint8_t>(flags));
      if (length == 0) nodes_[last].first = kNoNode;
      p = stop.at + 1;
    } else {
      AppendAttribute(element, nameId, last);
      p = ParseDeclaredValue(p, last, elementName, qname);
    }
    if (special) {
      prefixed = true;
      NoteSpecialAttribute(element, last, qname, name);
    }
  }
  if (dtd_ != nullptr || prefixed) return FinishAttributes(p, element, elementName, last, prefixed);
  if (last != kNoNode) nodes_[nodes_[element].firstAttribute].prev = last;
  return p;
}

const AttributeList* Parser::FindAttributeList(std::uint32_t elementName) const {
  if (dtd_ == nullptr || dtd_->attributes.empty()) return nullptr;
  if (options_.declaredAttributes == DeclaredAttributes::kIgnore) return nullptr;
  const auto found = dtd_->attributes.find(std::string(names_.QNameText(elementName)));
  return found == dtd_->attributes.end() ? nullptr : &found->second;
}

// Attributes that the document type supplies, and the namespaces of all of them.
const char* Parser::FinishAttributes(const char* p, NodeId element, std::uint32_t elementName,
                                     NodeId last, bool prefixed) {
  if (const AttributeList* list = FindAttributeList(elementName); list != nullptr) {
    AddDefaultAttributes(element, *list, last, p);
    prefixed = true;
  }
  if (last != kNoNode) nodes_[nodes_[element].firstAttribute].prev = last;
  if (prefixed) ResolveAttributes(element, p);
  return p;
}

// Values -----------------------------------------------------------------------------------------

// A value with references, in a document with a document type, or in a conformance run.
const char* Parser::ParseDeclaredValue(const char* p, NodeId attribute, std::uint32_t elementName,
                                       std::uint32_t qname) {
  const AttributeList* list = FindAttributeList(elementName);
  const AttributeDeclaration* declaration =
      list != nullptr ? list->Find(std::string(names_.QNameText(qname))) : nullptr;
  if (declaration != nullptr && declaration->type == AttributeType::kId) {
    nodes_[attribute].flags |= kIdAttribute;
  }
  if (options_.attributeValues == AttributeValues::kAsWritten) {
    return ParseSlowValue(p, scan::ScanAttributeValue(p + 1, *p).at, attribute);
  }
  const bool tokens = declaration != nullptr && declaration->type != AttributeType::kCData;
  return ParseNormalisedValue(p, attribute, tokens);
}

// A value decoded in place. `p` is at the opening quote, `from` at the first reference or the end;
// returns what follows the closing quote. A reference to a declared entity makes the value a list
// of texts and entity references.
const char* Parser::ParseSlowValue(const char* p, const char* from, NodeId attribute) {
  const char quote = *p;
  const char* start = p + 1;
  char* write = const_cast<char*>(from);  // in the parse buffer, which is ours
  NodeId last = kNoNode;
  std::string name;
  const auto flush = [&] {
    if (write == start) return;
    EnsureNodeRoom(start);
    SetRange(nodes_[AppendNode(NodeType::kText, 0, attribute, last)], start, write);
  };
  p = from;
  while (*p != quote) {
    if (*p == '<') FailUnlessEnd(ParseCode::kLessThanInAttribute, p, ParseCode::kUnclosedString);
    if (p[1] == '#') {
      char32_t codePoint = 0;
      p = DecodeCharReference(p, end_, codePoint);
      std::string bytes;
      text::AppendUtf8(bytes, codePoint);
      write = std::copy(bytes.begin(), bytes.end(), write);
    } else {
      const char* const place = p + 1;
      p = ParseEntityName(p, end_, name);
      if (const char c = PredefinedEntity(name); c != 0) {
        *write++ = c;
      } else {
        flush();
        EntityDeclaration& entity = FindEntity(name, place);
        std::string expansion;
        ExpandValue("&" + name + ";", AttributeValues::kAsWritten, expansion, place);
        EnsureNodeRoom(p);
        const NodeId reference = AppendNode(
            NodeType::kEntityReference, names_.InternName(entity.name, kNoUri), attribute, last);
        StoreValue(reference, expansion);
        start = p;
        write = const_cast<char*>(p);
      }
    }
    const scan::Stop run = scan::ScanAttributeValue(p, quote);
    const auto length = static_cast<std::size_t>(run.at - p);
    std::memmove(write, p, length);
    write += length;
    p = run.at;
  }
  if (last == kNoNode) {
    SetInlineText(nodes_[attribute], start, write);
  } else {
    flush();
    nodes_[attribute].last = last;
  }
  return p + 1;
}

void Parser::StoreValue(NodeId attribute, std::string_view text) {
  if (text.empty()) return;
  const std::uint32_t begin = data_.Heap().Store(text);
  NodeRecord& record = nodes_[attribute];
  record.textBegin = begin;
  record.textLength = static_cast<std::uint32_t>(text.size());
  record.flags |= kHeapText | kInlineText;
}

// No blanks at either end, and single ones between.
static std::string CollapseBlanks(std::string_view value) {
  std::string collapsed;
  for (const char c : value) {
    if (c != ' ' || (!collapsed.empty() && collapsed.back() != ' ')) collapsed += c;
  }
  if (!collapsed.empty() && collapsed.back() == ' ') collapsed.pop_back();
  return collapsed;
}

// As XML 1.0, 3.3.3 asks: white space becomes blanks; of a tokenized type, single ones between.
const char* Parser::ParseNormalisedValue(const char* p, NodeId attribute, bool tokens) {
  const char* const begin = p + 1;
  const auto* close =
      static_cast<const char*>(std::memchr(begin, *p, static_cast<std::size_t>(end_ - begin)));
  const auto* lessThan = static_cast<const char*>(
      std::memchr(begin, '<', static_cast<std::size_t>((close == nullptr ? end_ : close) - begin)));
  if (lessThan != nullptr) Fail(ParseCode::kLessThanInAttribute, lessThan);
  if (close == nullptr) Fail(ParseCode::kUnclosedString, end_);
  std::string value;
  ExpandValue({begin, static_cast<std::size_t>(close - begin)}, AttributeValues::kNormalised, value,
              begin);
  StoreValue(attribute, tokens ? CollapseBlanks(value) : value);
  return close + 1;
}

// A short element can be supplied with many long attributes: what they take is bounded by the size
// of the document, with room for what documents in use have, and by the bound of entities.
void Parser::CountSupplied(std::size_t bytes, const char* place) {
  supplied_ += bytes + sizeof(NodeRecord);
  if (supplied_ > options_.maxEntityBytes && supplied_ / 32 > mainSize_) {
    Fail(ParseCode::kTooLarge, place, std::to_string(options_.maxEntityBytes));
  }
}

void Parser::AddDefaultAttributes(NodeId element, const AttributeList& list, NodeId& last,
                                  const char* place) {
  for (const AttributeDeclaration& declaration : list.declarations) {
    if (declaration.defaultKind != DefaultKind::kFixed &&
        declaration.defaultKind != DefaultKind::kValue) {
      continue;
    }
    const std::uint32_t qname = names_.InternQName(declaration.name);
    if (names_.At(qname).attributeStamp == element) continue;
    names_.At(qname).attributeStamp = element;
    std::string value;
    ExpandValue(declaration.defaultLiteral, options_.attributeValues, value, place);
    const bool tokens = declaration.type != AttributeType::kCData;
    if (tokens && options_.attributeValues == AttributeValues::kNormalised) {
      value = CollapseBlanks(value);
    }
    CountSupplied(value.size(), place);
    EnsureNodeRoom(place);
    const NodeId attribute = AppendAttribute(element, names_.InternName(qname, kNoUri), last);
    nodes_[attribute].flags |= kDefaulted;
    if (declaration.type == AttributeType::kId) nodes_[attribute].flags |= kIdAttribute;
    StoreValue(attribute, value);
    if (qname == kXmlnsQName || names_.At(qname).prefixLength != 0) {
      NoteSpecialAttribute(element, attribute, qname, place);
    }
  }
}

// Namespaces -------------------------------------------------------------------------------------

// An attribute with a prefix, or xmlns itself.
void Parser::NoteSpecialAttribute(NodeId element, NodeId attribute, std::uint32_t qname,
                                  const char* place) {
  const bool declaration = qname == kXmlnsQName || names_.At(qname).prefix == kXmlnsQName;
  if (declaration) {
    nodes_[attribute].flags |= kNamespaceDeclaration;
    nodes_[attribute].name = names_.InternName(qname, kEmptyUri);
  }
  const bool space = names_.At(qname).prefix == kXmlQName && names_.QNameText(qname) == "xml:space";
  if (!declaration && !space) return;
  const Cursor cursor(&data_, attribute);
  const std::string joined = cursor.HasWholeText() ? std::string() : cursor.TextContent();
  const std::string_view value = cursor.HasWholeText() ? cursor.OwnText() : joined;
  if (declaration) return DeclareNamespace(element, qname, value, place);
  auto& flags = nodes_[element].flags;
  if (value == "preserve") {
    flags |= kPreserveSpace;
  } else if (value == "default") {
    flags &= static_cast<std::uint8_t>(~kPreserveSpace);
  } else if (options_.attributeValues == AttributeValues::kAsWritten) {
    Fail(ParseCode::kBadXmlSpace, place);
  }
}

void Parser::DeclareNamespace(NodeId element, std::uint32_t qname, std::string_view uri,
                              const char* place) {
  std::uint32_t prefix = 0;
  if (qname != kXmlnsQName) {
    const std::string_view local = names_.QNameText(qname).substr(6);  // after "xmlns:"
    const bool reserved = text::EqualsAsciiCaseless(local.substr(0, 3), "xml");
    prefix = names_.InternQName(local);
    if (prefix == kXmlnsQName) Fail(ParseCode::kReservedNamespace, place, "xmlns");
    if (prefix == kXmlQName) {
      if (uri != kXmlNamespace) Fail(ParseCode::kReservedNamespace, place, "xml");
      return;
    }
    if (reserved) Fail(ParseCode::kReservedPrefix, place);
    if (uri.empty()) Fail(ParseCode::kEmptyPrefixBinding, place);
  }
  if (uri == kXmlNamespace) Fail(ParseCode::kReservedNamespace, place, "xml");
  if (uri == kXmlnsNamespace) Fail(ParseCode::kReservedNamespace, place, "xmlns");
  const UriId bound = uri.empty() ? kNoUri : names_.InternUri(uri);
  if (options_.binder != nullptr && bound != kNoUri) NoteNamespace(uri, place);
  bindings_.Append({element, prefix, names_.At(prefix).binding});
  names_.At(prefix).binding = bound;
  topBinding_ = element;
}

// The binder may load what the namespace names, and bind from here on.
void Parser::NoteNamespace(std::string_view uri, const char* place) {
  const BindWish wish = options_.binder->DeclareNamespace(uri);
  if (wish == BindWish::kFail) FailBinding(place);
  if (wish == BindWish::kBind) binder_ = options_.binder;
}

void Parser::PopBindings(NodeId element) noexcept {
  std::uint32_t count = bindings_.size();
  while (count != 0 && bindings_[count - 1].element == element) {
    --count;
    names_.At(bindings_[count].prefix).binding = bindings_[count].former;
  }
  bindings_.DropLast(bindings_.size() - count);
  topBinding_ = count == 0 ? kNoNode : bindings_[count - 1].element;
}

NameId Parser::ResolveNewElement(std::uint32_t qname, UriId uri, const char* place) {
  const std::uint32_t prefix = names_.At(qname).prefix;
  if (prefix != 0 && uri == kNoUri) {
    Fail(ParseCode::kUndeclaredPrefix, place, std::string(names_.QNameText(prefix)));
  }
  return names_.InternName(qname, uri);
}

// Gives each attribute with a prefix its namespace, once all declarations have been read.
void Parser::ResolveAttributes(NodeId element, const char* place) {
  unsigned count = 0;
  for (NodeId id = nodes_[element].firstAttribute; id != kNoNode; id = nodes_[id].next) {
    if ((nodes_[id].flags & kNamespaceDeclaration) != 0) continue;
    const std::uint32_t qname = names_.QNameOf(nodes_[id].name);
    const std::uint32_t prefix = names_.At(qname).prefix;
    if (prefix == 0) continue;
    const UriId uri = names_.At(prefix).binding;
    if (uri == kNoUri) {
      Fail(ParseCode::kUndeclaredPrefix, place, std::string(names_.QNameText(prefix)));
    }
    nodes_[id].name = names_.InternName(qname, uri);
    ++count;
  }
  if (count > 1) CheckExpandedDuplicates(element, place);
}

// Two prefixes of one namespace must not give one name twice (Namespaces in XML 1.0, 6.3).
void Parser::CheckExpandedDuplicates(NodeId element, const char* place) {
  std::vector<std::pair<UriId, std::string_view>> expanded;
  for (NodeId id = nodes_[element].firstAttribute; id != kNoNode; id = nodes_[id].next) {
    const NameId name = nodes_[id].name;
    if ((nodes_[id].flags & kNamespaceDeclaration) != 0 || names_.UriOf(name) == kNoUri) continue;
    expanded.emplace_back(names_.UriOf(name), names_.LocalText(name));
  }
  std::sort(expanded.begin(), expanded.end());
  const auto twice = std::adjacent_find(expanded.begin(), expanded.end());
  if (twice != expanded.end()) {
    Fail(twice->second == "dt" && names_.UriText(twice->first) == kDataTypeNamespace
             ? ParseCode::kTwoDataTypes
             : ParseCode::kDuplicateAttribute,
         place);
  }
}

}  // namespace kx::dom
