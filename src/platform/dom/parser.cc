// Documents and content. The shape of the parser and its invariants are told in parser_impl.h.
#include "platform/dom/parser_impl.h"
#include "platform/dom/xml_names.h"
#include "platform/text/code_page.h"
#include "platform/text/unicode.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace kx::dom {

namespace {

// A document of this size gets room for its nodes at once; a larger one by what it turns out to be.
constexpr std::size_t kSmallDocument = 64U << 10U;

bool IsXmlTarget(std::string_view target) {
  return target.size() == 3 && (target[0] | 0x20) == 'x' && (target[1] | 0x20) == 'm' &&
         (target[2] | 0x20) == 'l';
}

bool IsKnownEncoding(std::string_view name, const text::HostCodec* codec) {
  // The names that nearly every document has need no look-up.
  constexpr std::string_view kCommon[] = {"utf-8", "iso-8859-1", "windows-1252", "utf-16"};
  for (const std::string_view common : kCommon) {
    if (text::EqualsAsciiCaseless(name, common)) return true;
  }
  return text::FindCodePage(name, codec).has_value();
}

}  // namespace

// Failures ---------------------------------------------------------------------------------------

void Parser::Fail(ParseCode code, const char* place) const { Fail(code, place, {}, {}); }

void Parser::Fail(ParseCode code, const char* place, std::string first, std::string second) const {
  // A failure inside an entity is told where the document refers to it.
  const std::size_t offset =
      InEntity() ? frames_.front().place : static_cast<std::size_t>(place - begin_);
  throw ParseFailure{code, offset, true, std::move(first), std::move(second)};
}

void Parser::FailUnlessEnd(ParseCode code, const char* place, ParseCode atEnd) const {
  Fail(place >= end_ ? atEnd : code, std::min(place, end_));
}

void Parser::FailName(const char* p, ParseCode atEnd) const {
  FailUnlessEnd(ParseCode::kBadNameStart, p, atEnd);
}

void Parser::FailAtEnd(NodeId parent) {
  std::vector<std::string_view> open;
  for (NodeId at = parent; at != frameNode_ && at != kNoNode; at = nodes_[at].parent) {
    if (nodes_[at].type == NodeType::kElement) {
      open.push_back(names_.QualifiedText(nodes_[at].name));
    }
  }
  std::string list;
  for (auto name = open.rbegin(); name != open.rend(); ++name) {
    if (!list.empty()) list += ", ";
    list += *name;
  }
  Fail(ParseCode::kUnclosedTags, end_, std::move(list));
}

// Building ---------------------------------------------------------------------------------------

void Parser::GrowNodes(const char* p) {
  const std::uint32_t used = nodes_.size();
  std::size_t wanted = std::size_t{used} + used / 2 + 16;
  if (!InEntity() && p > begin_) {
    const auto read = static_cast<double>(p - begin_);
    const double expected = static_cast<double>(used) * static_cast<double>(mainSize_) / read;
    const auto bounded = static_cast<std::size_t>(expected * 1.02) + 16;
    wanted = std::clamp(bounded, std::size_t{used} + used / 8 + 16, std::size_t{used} * 64);
  }
  nodes_.Reserve(static_cast<std::uint32_t>(std::min<std::size_t>(wanted, 0x7FFFFFFFU)));
}

void Parser::SetRange(NodeRecord& record, const char* begin, const char* end) const noexcept {
  record.textBegin = static_cast<std::uint32_t>(begin - base_);
  record.textLength = static_cast<std::uint32_t>(end - begin);
}

bool Parser::IsDroppedSpace(const char* begin, const char* end, NodeId parent) const {
  return dropSpace_ && SkipSpace(begin) >= end && (nodes_[parent].flags & kPreserveSpace) == 0;
}

void Parser::AppendTextNode(const char* begin, const char* end, bool plain, NodeId parent,
                            NodeId& last) {
  if (binder_ != nullptr) BindText(begin, end, TextForm::kPlain, begin);
  if (IsDroppedSpace(begin, end, parent)) return;
  NodeRecord& record = nodes_[AppendNode(NodeType::kText, 0, parent, last)];
  SetRange(record, begin, end);
  if (plain) record.flags |= kPlainText;
}

// Binding ----------------------------------------------------------------------------------------

void Parser::FailBinding(const char* place) const {
  throw BindFailure{InEntity() ? frames_.front().place : static_cast<std::size_t>(place - begin_)};
}

void Parser::BindStart(NodeId element, const char* tagEnd) {
  if (!binder_->StartElement(element)) FailBinding(tagEnd);
}

void Parser::BindText(const char* begin, const char* end, TextForm form, const char* place) {
  const std::string_view text(begin, static_cast<std::size_t>(end - begin));
  if (!binder_->Text(text, form)) FailBinding(place);
}

void Parser::BindEnd(NodeId element, const char* place) {
  if (!binder_->EndElement(element)) FailBinding(place);
}

void Parser::BindLeaf(NodeId element, const char* begin, const char* end) {
  LeafPlace place = LeafPlace::kBegin;
  if (!binder_->Leaf(element, place)) FailBinding(place == LeafPlace::kBegin ? begin : end);
}

// The document -----------------------------------------------------------------------------------

void Parser::Run(std::size_t size) {
  base_ = begin_ = data_.Text();
  end_ = begin_ + size;
  mainSize_ = size;
  nodes_.Reserve(static_cast<std::uint32_t>(size / (size < kSmallDocument ? 20 : 40)) + 12);
  if (options_.binder != nullptr && options_.binder->Begin(data_)) binder_ = options_.binder;
  const char* p = begin_;
  if (std::memcmp(p, "<?xml", 5) == 0 && (IsSpace(p[5]) || p[5] == '?')) p = ParseXmlDeclaration(p);
  p = ParseMisc(p, true);
  p = ParseContent(p);
  ParseMisc(p, false);
  nodes_[kDocumentNode].last = lastTop_;
  if (binder_ != nullptr && !binder_->EndDocument()) FailBinding(end_);
  const std::uint32_t unused = nodes_.capacity() - nodes_.size();
  if (unused > 128 && unused > nodes_.size() / 16) nodes_.Shrink();
}

const char* Parser::ParseMisc(const char* p, bool prolog) {
  while (true) {
    p = SkipSpace(p);
    if (*p != '<') Fail(ParseCode::kInvalidAtRoot, p);
    if (p == end_) {
      if (prolog) throw ParseFailure{ParseCode::kMissingRoot, mainSize_, false, {}, {}};
      return p;
    }
    if (p[1] == '?') {
      p = ParseProcessingInstruction(p, kDocumentNode, lastTop_);
    } else if (p[1] == '!') {
      p = ParseTopMarkup(p, prolog);
    } else if (p[1] == '/') {
      Fail(ParseCode::kUnexpectedEndTag, p + 2);
    } else {
      if (prolog) return p;
      if (SkipName(p + 1) == p + 1) FailName(p + 1, ParseCode::kUnexpectedEnd);
      Fail(ParseCode::kMultipleRoots, p + 1);
    }
  }
}

const char* Parser::ParseTopMarkup(const char* p, bool prolog) {
  if (std::memcmp(p, "<!DOCTYPE", 9) == 0 && SkipNmtoken(p + 9) == p + 9) {
    if (!prolog) Fail(ParseCode::kDoctypeOutsideProlog, p + 2);
    if (dtd_ != nullptr) Fail(ParseCode::kMultipleDoctypes, p + 2);
    return ParseDoctype(p);
  }
  if (std::memcmp(p, "<![CDATA[", 9) == 0) Fail(ParseCode::kInvalidAtRoot, p);
  return ParseMarkup(p, kDocumentNode, lastTop_);
}

// The XML declaration ----------------------------------------------------------------------------

// Reads ` name = "value"`; `p` is at the name.
const char* Parser::ParsePseudoAttribute(const char* p, NodeId node, std::string_view name,
                                         NodeId& last, std::string_view& value) {
  p = SkipSpace(p + name.size());
  if (*p != '=') FailUnlessEnd(ParseCode::kMissingEquals, p, ParseCode::kUnclosedPi);
  p = SkipSpace(p + 1);
  const char quote = *p;
  if (quote != '"' && quote != '\'') {
    FailUnlessEnd(ParseCode::kMissingQuote, p, ParseCode::kUnclosedPi);
  }
  const char* close = p + 1;
  while (*close != quote && *close != '<' && *close != '>') ++close;
  if (*close != quote) FailUnlessEnd(ParseCode::kUnclosedQuote, close, ParseCode::kUnclosedString);
  value = {p + 1, static_cast<std::size_t>(close - p - 1)};
  EnsureNodeRoom(p);
  NodeRecord& record = nodes_[AppendAttribute(node, names_.InternName(name, kNoUri), last)];
  SetInlineText(record, p + 1, close);
  p = close + 1;
  if (!IsSpace(*p) && *p != '?') {
    FailUnlessEnd(ParseCode::kExpectedWhiteSpaceOrQuestion, p, ParseCode::kUnclosedPi);
  }
  return p;
}

const char* Parser::ParseXmlDeclaration(const char* p) {
  const char* const data = SkipSpace(p + 5);
  EnsureNodeRoom(p);
  const NodeId node = AppendNode(NodeType::kProcessingInstruction,
                                 names_.InternName(kXmlQName, kNoUri), kDocumentNode, lastTop_);
  constexpr std::string_view kNames[] = {"version", "encoding", "standalone"};
  std::size_t next = 0;  // which of them may come
  NodeId last = kNoNode;
  p = data;
  while (*p != '?') {
    const char* const nameEnd = SkipName(p);
    const std::string_view name(p, static_cast<std::size_t>(nameEnd - p));
    if (name.empty()) FailUnlessEnd(ParseCode::kXmlDeclSyntax, p, ParseCode::kUnclosedPi);
    std::size_t index = next;
    while (index < 3 && kNames[index] != name) ++index;
    if (next == 0 && index != 0) {
      Fail(index < 3 ? ParseCode::kVersionRequired : ParseCode::kUnexpectedAttribute, p);
    }
    if (index == 3) Fail(ParseCode::kUnexpectedAttribute, p);
    const char* const place = p;
    std::string_view value;
    p = ParsePseudoAttribute(p, node, name, last, value);
    if (index == 0 && value != "1.0") Fail(ParseCode::kBadVersion, place);
    if (index == 1) {
      const bool wellFormed = !value.empty() &&
                              text::IsAsciiLetter(static_cast<unsigned char>(value[0])) &&
                              std::all_of(value.begin(), value.end(),
                                          [](char c) { return IsAsciiNamePart(c) && c != ':'; });
      if (!wellFormed || !IsKnownEncoding(value, options_.codec)) {
        Fail(ParseCode::kUnknownEncoding, place);
      }
    }
    if (index == 2 && value != "yes" && value != "no") Fail(ParseCode::kBadStandalone, place);
    if (index == 2) standalone_ = value == "yes";
    next = index + 1;
    p = SkipSpace(p);
  }
  if (next == 0) Fail(ParseCode::kXmlDeclSyntax, p);
  if (p[1] != '>') FailUnlessEnd(ParseCode::kXmlDeclSyntax, p + 1, ParseCode::kUnclosedPi);
  nodes_[nodes_[node].firstAttribute].prev = last;
  const char* dataEnd = p;
  while (dataEnd > data && IsSpace(dataEnd[-1])) --dataEnd;
  SetRange(nodes_[node], data, dataEnd);
  return p + 2;
}

// Content ----------------------------------------------------------------------------------------

// Checks a name that no node had so far: it is an NCName, or two of them joined by a colon.
void Parser::CheckNewName(const char* begin, const char* end) const {
  const auto* colon =
      static_cast<const char*>(std::memchr(begin, ':', static_cast<std::size_t>(end - begin)));
  if (colon == nullptr) return;
  if (colon == begin) Fail(ParseCode::kBadNameStart, begin);
  const char* const local = colon + 1;
  if (SkipName(local) == local || *local == ':') Fail(ParseCode::kBadNameStart, local);
  const auto* second =
      static_cast<const char*>(std::memchr(local, ':', static_cast<std::size_t>(end - local)));
  if (second != nullptr) Fail(ParseCode::kMultipleColons, second);
}

const char* Parser::ParseOtherName(const char* p, std::uint32_t context, Follower follower,
                                   std::uint32_t& qname) {
  const scan::ShortName shortName = scan::ScanShortName(p);
  const char* after = p + shortName.length;
  qname = shortName.length != 0 ? names_.FindShortQName(shortName.key, shortName.length) : 0;
  if (qname == 0 && shortName.length != 0 && scan::IsPlainName(p, shortName.length)) {
    qname = names_.AddShortQName(shortName.key, shortName.length);
  }
  if (qname == 0) {
    after = SkipName(p);
    if (after == p) FailName(p, ParseCode::kUnclosedStartTag);
    const std::string_view name(p, static_cast<std::size_t>(after - p));
    qname = names_.FindQName(name);
    if (qname == 0) {
      CheckNewName(p, after);
      qname = names_.InternQName(name);
    }
  }
  names_.At(context).followers[follower] = qname;
  return after;
}

const char* Parser::ParseContent(const char* p) {
  NodeId parent = kDocumentNode;
  NodeId last = lastTop_;
  std::uint32_t context = 0;  // the name that the next start tag follows
  Follower follower = kFirstChildName;
  while (true) {
    // `p` is at a '<' that is not the end.
    if (p[1] == '/') {
      const char* const closing = p + 2;
      p = ParseEndTag(p, parent);
      if (binder_ != nullptr) BindEnd(parent, closing);
      context = names_.QNameOf(nodes_[parent].name);
      follower = kNextSiblingName;
      CloseElement(parent);
      nodes_[parent].last = last;
      last = parent;
      parent = nodes_[parent].parent;
      if (parent == kDocumentNode) break;
    } else if (p[1] == '!' || p[1] == '?') {
      p = ParseMarkup(p, parent, last);
    } else {
      const char* const name = p + 1;
      std::uint32_t qname = 0;
      const char* after = ParseName(name, context, follower, qname);
      EnsureNodeRoom(p);
      const NodeId id = AppendNode(NodeType::kElement, 0, parent, last);
      if (++depth_ > options_.maxDepth) Fail(ParseCode::kDepthExceeded, name);
      if (dropSpace_) nodes_[id].flags |= nodes_[parent].flags & kPreserveSpace;
      const auto nameOffset = static_cast<std::uint32_t>(name - base_);
      // A document type may supply attributes where none is written.
      if (*after != '>' || dtd_ != nullptr) after = ParseAttributes(after, id, qname);
      const NameId resolved = ResolveElement(qname, after);
      nodes_[id].name = resolved;
      context = qname;
      if (*after == '/') {
        if (after[1] != '>') {
          FailUnlessEnd(ParseCode::kExpectedGreaterThan, after + 1, ParseCode::kUnclosedStartTag);
        }
        if (binder_ != nullptr) BindLeaf(id, after + 2, after + 2);
        --depth_;
        if (id == topBinding_) PopBindings(id);
        follower = kNextSiblingName;
        p = after + 2;
        if (parent == kDocumentNode) break;
      } else {
        p = ParseLeaf(after + 1, id, nameOffset);
        if (p != nullptr) {
          follower = kNextSiblingName;
          if (parent == kDocumentNode) break;
        } else {
          p = after + 1;
          if (binder_ != nullptr) BindStart(id, p);
          nodes_[id].last = nameOffset;
          follower = kFirstChildName;
          parent = id;
          last = kNoNode;
        }
      }
    }
    if (*p != '<' || p == end_) p = ParseTextRun(p, parent, last);
  }
  lastTop_ = last;
  return p;
}

// An element without child elements keeps its text in its own record. Returns what follows its end
// tag, or null when this is no such element.
const char* Parser::ParseLeaf(const char* p, NodeId id, std::uint32_t nameOffset) {
  const scan::Stop stop = scan::ScanText(p);
  if (stop.at[0] != '<' || stop.at[1] != '/' || dropSpace_) return nullptr;
  NodeRecord& record = nodes_[id];
  const std::uint32_t length = names_.At(names_.QNameOf(record.name)).length;
  const char* const closing = stop.at + 2;
  if (!scan::SameBytes(closing, base_ + nameOffset, length) || closing[length] != '>') {
    return nullptr;
  }
  if (stop.at != p) {
    record.textBegin = static_cast<std::uint32_t>(p - base_);
    record.textLength = static_cast<std::uint32_t>(stop.at - p);
    record.flags = static_cast<std::uint8_t>(record.flags | kInlineText |
                                             (stop.plain ? unsigned{kPlainText} : 0U));
  }
  if (binder_ != nullptr) BindLeaf(id, p, closing);
  CloseElement(id);
  return closing + length + 1;
}

// Text up to the next tag of the document, through the ends of entities.
const char* Parser::ParseTextRun(const char* p, NodeId& parent, NodeId& last) {
  while (true) {
    const scan::Stop stop = scan::ScanText(p);
    if (*stop.at != '<') {
      bool entered = false;
      p = ParseText(p, stop, parent, last, entered);
      if (entered) parent = frameNode_;
      continue;
    }
    if (stop.at != p) {
      EnsureNodeRoom(p);
      AppendTextNode(p, stop.at, stop.plain, parent, last);
    }
    p = stop.at;
    if (p != end_) return p;
    if (!InEntity() || parent != frameNode_) FailAtEnd(parent);
    p = LeaveEntity(parent, last);
  }
}

const char* Parser::ParseEndTag(const char* p, NodeId parent) {
  const char* const name = p + 2;
  if (parent != frameNode_) {
    const NodeRecord& record = nodes_[parent];
    const std::uint32_t length = names_.At(names_.QNameOf(record.name)).length;
    if (scan::SameBytes(name, base_ + record.last, length) && name[length] == '>') {
      return name + length + 1;
    }
  }
  const char* const end = SkipName(name);
  if (end == name) {
    if (*name == '<') Fail(ParseCode::kUnclosedEndTag, name);
    FailName(name, ParseCode::kUnclosedEndTag);
  }
  if (parent == frameNode_) Fail(ParseCode::kUnexpectedEndTag, name);
  if (!IsSpace(*end) && *end != '>' && *end != '<') {
    Fail(SkipNmtoken(end) == end && *end != '/' ? ParseCode::kBadNameChar
                                                : ParseCode::kExpectedGreaterThan,
         end);
  }
  const std::string_view wanted = names_.QualifiedText(nodes_[parent].name);
  const std::string_view found(name, static_cast<std::size_t>(end - name));
  if (wanted != found) {
    if (end == end_) Fail(ParseCode::kUnclosedEndTag, end);
    Fail(ParseCode::kTagMismatch, name, std::string(wanted), std::string(found));
  }
  p = SkipSpace(end);
  if (*p == '>') return p + 1;
  Fail(*p == '<' ? ParseCode::kUnclosedEndTag : ParseCode::kExpectedGreaterThan, p);
}

// Text with references or brackets: decodes in place and appends one text node; stops at the next
// '<', or enters the entity that is referred to.
const char* Parser::ParseText(const char* p, scan::Stop stop, NodeId parent, NodeId& last,
                              bool& entered) {
  char* const start = const_cast<char*>(p);  // in the parse buffer, which is ours
  char* write = const_cast<char*>(stop.at);
  bool references = false;
  std::string name;
  const auto flush = [&] {
    if (write == start) return;
    if (binder_ != nullptr) {
      BindText(start, write, references ? TextForm::kExplicit : TextForm::kPlain, start);
    }
    if (!references && IsDroppedSpace(start, write, parent)) return;
    EnsureNodeRoom(p);
    NodeRecord& record = nodes_[AppendNode(NodeType::kText, 0, parent, last)];
    SetRange(record, start, write);
  };
  p = stop.at;
  while (*p != '<') {
    if (*p == ']') {
      if (p[1] == ']' && p[2] == '>') Fail(ParseCode::kCDataCloseInText, p + 2);
      *write++ = *p++;
    } else if (p[1] == '#') {
      char32_t codePoint = 0;
      p = DecodeCharReference(p, end_, codePoint);
      std::string bytes;
      text::AppendUtf8(bytes, codePoint);
      write = std::copy(bytes.begin(), bytes.end(), write);
      references = true;
    } else {
      const char* const place = p + 1;
      const char* const after = ParseEntityName(p, end_, name);
      if (const char c = PredefinedEntity(name); c != 0) {
        *write++ = c;
        p = after;
        references = true;
      } else {
        EntityDeclaration& entity = FindEntity(name, place);
        flush();
        entered = true;
        return EnterEntity(after, entity, place, parent, last);
      }
    }
    const scan::Stop run = scan::ScanText(p);
    const auto length = static_cast<std::size_t>(run.at - p);
    std::memmove(write, p, length);
    write += length;
    p = run.at;
  }
  flush();
  return p;
}

// Comments, CDATA sections, processing instructions ----------------------------------------------

const char* Parser::ParseMarkup(const char* p, NodeId parent, NodeId& last) {
  if (p[1] == '?') return ParseProcessingInstruction(p, parent, last);
  if (p[2] == '-') {
    if (p[3] != '-') FailUnlessEnd(ParseCode::kCommentSyntax, p + 3, ParseCode::kUnexpectedEnd);
    return ParseComment(p, parent, last);
  }
  if (p[2] == '[') {
    if (std::memcmp(p, "<![CDATA[", 9) == 0) return ParseCData(p, parent, last);
    if (std::memcmp(p, "<![CDATA", 8) == 0) {
      FailUnlessEnd(ParseCode::kExpectedOpenBracket, p + 8, ParseCode::kUnexpectedEnd);
    }
    FailUnlessEnd(ParseCode::kBadDeclarationName, p + 3, ParseCode::kUnexpectedEnd);
  }
  const char* const end = SkipName(p + 2);
  const std::string_view name(p + 2, static_cast<std::size_t>(end - p - 2));
  if (name == "DOCTYPE") Fail(ParseCode::kDoctypeOutsideProlog, p + 2);
  if (name == "ELEMENT" || name == "ATTLIST" || name == "ENTITY" || name == "NOTATION") {
    Fail(ParseCode::kDeclarationOutsideDtd, p + 2);
  }
  FailUnlessEnd(ParseCode::kBadDeclarationName, p + 2, ParseCode::kUnexpectedEnd);
}

const char* Parser::ParseComment(const char* p, NodeId parent, NodeId& last) {
  const char* const begin = p + 4;
  const char* at = begin;
  while (true) {
    at = static_cast<const char*>(std::memchr(at, '-', static_cast<std::size_t>(end_ - at)));
    if (at == nullptr) Fail(ParseCode::kUnclosedComment, end_);
    if (at[1] == '-') break;
    ++at;
  }
  if (at[2] != '>') FailUnlessEnd(ParseCode::kCommentSyntax, at + 2, ParseCode::kUnclosedComment);
  EnsureNodeRoom(p);
  SetRange(nodes_[AppendNode(NodeType::kComment, 0, parent, last)], begin, at);
  return at + 3;
}

const char* Parser::ParseCData(const char* p, NodeId parent, NodeId& last) {
  const char* const begin = p + 9;
  const char* at = begin;
  while (true) {
    at = static_cast<const char*>(std::memchr(at, ']', static_cast<std::size_t>(end_ - at)));
    if (at == nullptr) Fail(ParseCode::kUnclosedCData, end_);
    if (at[1] == ']' && at[2] == '>') break;
    ++at;
  }
  EnsureNodeRoom(p);
  if (binder_ != nullptr) BindText(begin, at, TextForm::kExplicit, begin);
  SetRange(nodes_[AppendNode(NodeType::kCData, 0, parent, last)], begin, at);
  return at + 3;
}

const char* Parser::ParseProcessingInstruction(const char* p, NodeId parent, NodeId& last) {
  const char* const target = p + 2;
  const char* const targetEnd = SkipName(target);
  const std::string_view name(target, static_cast<std::size_t>(targetEnd - target));
  if (name.empty()) FailName(target, ParseCode::kUnclosedPi);
  if (IsXmlTarget(name)) {
    Fail(name == "xml" ? ParseCode::kMisplacedXmlDecl : ParseCode::kReservedXmlName, target);
  }
  if (const std::size_t colon = name.find(':'); colon != std::string_view::npos) {
    Fail(ParseCode::kColonInName, target + colon);
  }
  const char* begin = targetEnd;
  if (IsSpace(*begin)) {
    begin = SkipSpace(begin);
  } else if (begin[0] != '?' || begin[1] != '>') {
    FailUnlessEnd(ParseCode::kBadNameChar, begin, ParseCode::kUnclosedPi);
  }
  const char* at = begin;
  while (true) {
    at = static_cast<const char*>(std::memchr(at, '?', static_cast<std::size_t>(end_ - at)));
    if (at == nullptr) Fail(ParseCode::kUnclosedPi, end_);
    if (at[1] == '>') break;
    ++at;
  }
  const NameId interned = names_.InternName(name, kNoUri);
  EnsureNodeRoom(p);
  SetRange(nodes_[AppendNode(NodeType::kProcessingInstruction, interned, parent, last)], begin, at);
  return at + 2;
}

}  // namespace kx::dom
