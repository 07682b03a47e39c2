// The document type declaration and its internal subset (XML 1.0, 2.8, 3.2, 3.3, 4.2): entities,
// attribute types and defaults and notations are kept, element types are only read. Parameter
// entities are read where declarations may stand; nothing external is fetched.
#include "platform/dom/parser_impl.h"
#include "platform/dom/xml_names.h"
#include "platform/text/unicode.h"

#include <cstring>
#include <memory>
#include <utility>

namespace kx::dom {

/// Reads one document type declaration. A reader of declarations reads the document itself, and
/// the replacement texts of parameter entities as sources above it; a failure in one of those is
/// told where the document refers to it.
class DtdParser {
 public:
  DtdParser(Parser& parser, Dtd& dtd, const char* p) : parser_(parser), dtd_(dtd) {
    sources_.push_back({{}, p, parser.end_, nullptr});
  }

  /// `p` is after "<!DOCTYPE"; returns what follows the '>'.
  const char* ParseDeclaration();

 private:
  struct Source {
    std::unique_ptr<std::string> text;  // of a parameter entity, ended by a sentinel and padding
    const char* p;
    const char* end;
    EntityDeclaration* entity;
  };

  // The innermost source is read through these.
  [[nodiscard]] const char*& P() { return sources_.back().p; }
  [[nodiscard]] bool AtEnd() { return P() >= sources_.back().end; }
  // False after a parameter entity that was not read: it may have declared the same thing before
  // (XML 1.0, 5.1).
  [[nodiscard]] bool MayCount() const { return !dtd_.hasUnreadParts || parser_.standalone_; }
  [[noreturn]] void Fail(ParseCode code, std::string first = {});
  [[noreturn]] void FailUnlessEnd(ParseCode code, ParseCode atEnd);
  void SkipSpace() { P() = Parser::SkipSpace(P()); }
  void NeedSpace();
  void NeedChar(char c, ParseCode code);
  bool Take(std::string_view text);
  std::string NeedName();
  std::string NeedQName();
  std::string NeedNcName();
  std::string NeedNmtoken();
  std::string NeedLiteral();
  void NeedDeclarationEnd();

  void ParseSubset();
  void ParseReference();
  void ParseMarkup();
  void ParseElement();
  void ParseMixed();
  void ParseChildren();
  void ParseAttlist();
  AttributeType ParseAttributeType();
  void ParseEnumeration(bool names);
  void ParseDefault(AttributeDeclaration& declaration);
  void ParseEntity();
  std::string ParseEntityValue(const std::string& literal, const char* place);
  void ParseNotation();
  bool ParseExternalId(std::string& publicId, std::string& systemId, bool systemOptional,
                       bool& hasSystem);
  void ParseComment();
  void ParseProcessingInstruction();

  Parser& parser_;
  Dtd& dtd_;
  std::vector<Source> sources_;
  const char* reference_ = nullptr;  // where the document names the outermost parameter entity
};

// Small steps ------------------------------------------------------------------------------------

void DtdParser::Fail(ParseCode code, std::string first) {
  parser_.Fail(code, sources_.size() > 1 ? reference_ : std::min(P(), parser_.end_),
               std::move(first));
}

void DtdParser::FailUnlessEnd(ParseCode code, ParseCode atEnd) { Fail(AtEnd() ? atEnd : code); }

void DtdParser::NeedSpace() {
  if (!Parser::IsSpace(*P())) {
    if (*P() == '%') Fail(ParseCode::kParameterEntityInMarkup);
    FailUnlessEnd(ParseCode::kMissingWhiteSpace, ParseCode::kUnclosedMarkupDeclaration);
  }
  SkipSpace();
}

void DtdParser::NeedChar(char c, ParseCode code) {
  if (*P() != c || AtEnd()) {
    if (*P() == '%') Fail(ParseCode::kParameterEntityInMarkup);
    FailUnlessEnd(code, ParseCode::kUnclosedMarkupDeclaration);
  }
  ++P();
}

bool DtdParser::Take(std::string_view text) {
  if (static_cast<std::size_t>(sources_.back().end - P()) < text.size() ||
      std::memcmp(P(), text.data(), text.size()) != 0) {
    return false;
  }
  P() += text.size();
  return true;
}

std::string DtdParser::NeedName() {
  const char* const begin = P();
  const char* const end = SkipName(begin);
  if (end == begin) {
    if (*begin == '%') Fail(ParseCode::kParameterEntityInMarkup);
    FailUnlessEnd(ParseCode::kBadNameStart, ParseCode::kUnclosedMarkupDeclaration);
  }
  P() = end;
  return {begin, end};
}

std::string DtdParser::NeedQName() {
  const char* const begin = P();
  std::string name = NeedName();
  if (sources_.size() == 1) {
    parser_.CheckNewName(begin, P());
  } else if (!IsQName(name)) {
    Fail(ParseCode::kMultipleColons);
  }
  return name;
}

std::string DtdParser::NeedNcName() {
  const char* const begin = P();
  std::string name = NeedName();
  if (const std::size_t colon = name.find(':'); colon != std::string::npos) {
    P() = begin + colon;
    Fail(ParseCode::kColonInName);
  }
  return name;
}

std::string DtdParser::NeedNmtoken() {
  const char* const begin = P();
  const char* const end = SkipNmtoken(begin);
  if (end == begin) {
    FailUnlessEnd(ParseCode::kBadNameStart, ParseCode::kUnclosedMarkupDeclaration);
  }
  P() = end;
  return {begin, end};
}

std::string DtdParser::NeedLiteral() {
  const char quote = *P();
  if (quote != '"' && quote != '\'') {
    FailUnlessEnd(ParseCode::kMissingQuote, ParseCode::kUnclosedMarkupDeclaration);
  }
  const char* const begin = P() + 1;
  const auto* close = static_cast<const char*>(
      std::memchr(begin, quote, static_cast<std::size_t>(sources_.back().end - begin)));
  if (close == nullptr) {
    P() = sources_.back().end;
    Fail(ParseCode::kUnclosedQuote);
  }
  P() = close + 1;
  return {begin, close};
}

void DtdParser::NeedDeclarationEnd() {
  SkipSpace();
  NeedChar('>', ParseCode::kBadCharInDeclaration);
}

// The declaration itself -------------------------------------------------------------------------

const char* DtdParser::ParseDeclaration() {
  if (!Parser::IsSpace(*P())) {
    FailUnlessEnd(ParseCode::kMissingWhiteSpace, ParseCode::kUnclosedDeclaration);
  }
  SkipSpace();
  if (AtEnd()) Fail(ParseCode::kUnclosedDeclaration);
  dtd_.name = NeedQName();
  const bool spaced = Parser::IsSpace(*P());
  SkipSpace();
  if (*P() != '>' && *P() != '[') {
    if (!spaced) FailUnlessEnd(ParseCode::kBadNameChar, ParseCode::kUnclosedDeclaration);
    bool hasSystem = false;
    if (AtEnd()) Fail(ParseCode::kUnclosedDeclaration);
    if (!ParseExternalId(dtd_.publicId, dtd_.systemId, false, hasSystem)) {
      Fail(ParseCode::kBadExternalId);
    }
    dtd_.hasExternalSubset = true;
    dtd_.hasPublicId = !dtd_.publicId.empty();
    SkipSpace();
  }
  if (*P() == '[') {
    ++P();
    ParseSubset();
    SkipSpace();
  }
  if (*P() != '>') FailUnlessEnd(ParseCode::kExpectedGreaterThan, ParseCode::kUnclosedDeclaration);
  return P() + 1;
}

void DtdParser::ParseSubset() {
  while (true) {
    SkipSpace();
    if (AtEnd()) {
      if (sources_.size() == 1) Fail(ParseCode::kUnclosedDeclaration);
      sources_.back().entity->open = false;
      sources_.pop_back();
    } else if (*P() == ']' && sources_.size() == 1) {
      ++P();
      return;
    } else if (*P() == '%') {
      ParseReference();
    } else if (*P() == '<') {
      ParseMarkup();
    } else {
      Fail(ParseCode::kBadCharInDtd);
    }
  }
}

// A parameter entity between declarations: its text is read as declarations.
void DtdParser::ParseReference() {
  const char* const place = P() + 1;
  if (sources_.size() == 1) reference_ = place;
  ++P();
  const std::string name = NeedNcName();
  if (*P() != ';') FailUnlessEnd(ParseCode::kMissingSemicolon, ParseCode::kUnclosedDeclaration);
  ++P();
  dtd_.hasParameterReferences = true;
  const auto found = dtd_.parameterEntities.find(name);
  if (found == dtd_.parameterEntities.end()) {
    if (!dtd_.hasExternalSubset && !dtd_.hasUnreadParts) {
      parser_.Fail(ParseCode::kUndefinedEntity, reference_, name);
    }
    dtd_.hasUnreadParts = true;
    return;
  }
  EntityDeclaration& entity = found->second;
  if (entity.open) parser_.Fail(ParseCode::kEntityLoop, reference_, name);
  if (entity.external) {
    dtd_.hasUnreadParts = true;
    return;
  }
  parser_.CountExpansion(entity.replacement.size(), reference_);
  auto text = std::make_unique<std::string>(entity.replacement);
  const std::size_t size = text->size();
  *text += scan::kSentinel;
  text->append(scan::kScanPadding, '\0');
  const char* const begin = text->data();
  entity.open = true;
  sources_.push_back({std::move(text), begin, begin + size, &entity});
}

void DtdParser::ParseMarkup() {
  if (Take("<!--")) return ParseComment();
  if (Take("<?")) return ParseProcessingInstruction();
  if (P()[1] != '!') {
    ++P();
    FailUnlessEnd(ParseCode::kBadCharInDtd, ParseCode::kUnclosedDeclaration);
  }
  P() += 2;
  if (*P() == '[') {
    Fail(Take("[CDATA[") ? ParseCode::kCDataInDtd : ParseCode::kBadCharInDtd);
  }
  if (*P() == '-') Fail(ParseCode::kCommentSyntax);
  const char* const begin = P();
  const char* const end = SkipName(begin);
  const std::string_view keyword(begin, static_cast<std::size_t>(end - begin));
  if (keyword == "DOCTYPE") Fail(ParseCode::kDoctypeInDtd);
  const bool known =
      keyword == "ELEMENT" || keyword == "ATTLIST" || keyword == "ENTITY" || keyword == "NOTATION";
  if (!known) FailUnlessEnd(ParseCode::kBadDeclarationName, ParseCode::kUnclosedDeclaration);
  P() = end;
  NeedSpace();
  if (keyword == "ELEMENT") ParseElement();
  if (keyword == "ATTLIST") ParseAttlist();
  if (keyword == "ENTITY") ParseEntity();
  if (keyword == "NOTATION") ParseNotation();
}

void DtdParser::ParseComment() {
  while (true) {
    const auto* dash = static_cast<const char*>(
        std::memchr(P(), '-', static_cast<std::size_t>(sources_.back().end - P())));
    if (dash == nullptr) {
      P() = sources_.back().end;
      Fail(ParseCode::kUnclosedComment);
    }
    P() = dash + 1;
    if (*P() != '-') continue;
    ++P();
    if (*P() != '>') FailUnlessEnd(ParseCode::kCommentSyntax, ParseCode::kUnclosedComment);
    ++P();
    return;
  }
}

void DtdParser::ParseProcessingInstruction() {
  const char* const begin = P();
  const std::string target = NeedNcName();
  if (text::EqualsAsciiCaseless(target, "xml")) {
    P() = begin;
    Fail(target == "xml" ? ParseCode::kMisplacedXmlDecl : ParseCode::kReservedXmlName);
  }
  if (!Parser::IsSpace(*P()) && *P() != '?') {
    FailUnlessEnd(ParseCode::kBadNameChar, ParseCode::kUnclosedPi);
  }
  if (*P() == '?' && P()[1] != '>') Fail(ParseCode::kBadNameChar);
  SkipSpace();
  const char* const data = P();
  while (true) {
    const auto* question = static_cast<const char*>(
        std::memchr(P(), '?', static_cast<std::size_t>(sources_.back().end - P())));
    if (question == nullptr) {
      P() = sources_.back().end;
      Fail(ParseCode::kUnclosedPi);
    }
    P() = question + 1;
    if (*P() != '>') continue;
    ++P();
    dtd_.instructions.push_back({target, {data, question}});
    return;
  }
}

// Element types ----------------------------------------------------------------------------------

void DtdParser::ParseElement() {
  NeedQName();
  NeedSpace();
  if (*P() == '(') {
    const char* const open = P();
    ++P();
    SkipSpace();
    if (Take("#PCDATA")) {
      ParseMixed();
    } else {
      P() = open;
      ParseChildren();
    }
  } else {
    if (*P() != '%' && SkipName(P()) == P()) {
      FailUnlessEnd(ParseCode::kBadCharInDeclaration, ParseCode::kUnclosedMarkupDeclaration);
    }
    const std::string keyword = NeedName();
    if (keyword != "EMPTY" && keyword != "ANY") Fail(ParseCode::kBadCharInDeclaration);
  }
  NeedDeclarationEnd();
}

// After "(#PCDATA".
void DtdParser::ParseMixed() {
  bool named = false;
  SkipSpace();
  while (*P() == '|') {
    ++P();
    SkipSpace();
    NeedQName();
    SkipSpace();
    named = true;
  }
  NeedChar(')', ParseCode::kUnbalancedParentheses);
  if (*P() == '*') {
    ++P();
  } else if (named) {
    Fail(ParseCode::kBadCharInDeclaration);
  }
}

void DtdParser::ParseChildren() {
  std::vector<char> separators;  // of each open group; 0 while it has only one part
  const auto takeOccurrence = [this] {
    if (*P() == '?' || *P() == '*' || *P() == '+') ++P();
  };
  bool wantPart = true;
  do {
    SkipSpace();
    if (wantPart) {
      if (*P() == '(') {
        ++P();
        separators.push_back(0);
        continue;
      }
      NeedQName();
      takeOccurrence();
      wantPart = false;
    } else if (*P() == ')') {
      ++P();
      takeOccurrence();
      separators.pop_back();
    } else if (*P() == '|' || *P() == ',') {
      if (separators.back() != 0 && separators.back() != *P()) {
        Fail(ParseCode::kBadCharInDeclaration);
      }
      separators.back() = *P();
      ++P();
      wantPart = true;
    } else {
      if (*P() == '%') Fail(ParseCode::kParameterEntityInMarkup);
      FailUnlessEnd(
          *P() == '>' ? ParseCode::kUnbalancedParentheses : ParseCode::kBadCharInDeclaration,
          ParseCode::kUnclosedMarkupDeclaration);
    }
  } while (!separators.empty());
}

// Attributes -------------------------------------------------------------------------------------

void DtdParser::ParseAttlist() {
  AttributeList ignored;
  const std::string element = NeedQName();
  AttributeList& list = MayCount() ? dtd_.attributes[element] : ignored;
  while (true) {
    const bool spaced = Parser::IsSpace(*P());
    SkipSpace();
    if (*P() == '>' && !AtEnd()) break;
    if (!spaced) NeedSpace();
    AttributeDeclaration declaration;
    declaration.name = NeedQName();
    NeedSpace();
    declaration.type = ParseAttributeType();
    NeedSpace();
    ParseDefault(declaration);
    if (list.byName.emplace(declaration.name, list.declarations.size()).second) {
      list.declarations.push_back(std::move(declaration));
    }
  }
  ++P();
}

AttributeType DtdParser::ParseAttributeType() {
  if (*P() == '(') {
    ParseEnumeration(false);
    return AttributeType::kEnumeration;
  }
  constexpr std::pair<std::string_view, AttributeType> kTypes[] = {
      {"CDATA", AttributeType::kCData},       {"ID", AttributeType::kId},
      {"IDREF", AttributeType::kIdRef},       {"IDREFS", AttributeType::kIdRefs},
      {"ENTITY", AttributeType::kEntity},     {"ENTITIES", AttributeType::kEntities},
      {"NMTOKEN", AttributeType::kNmToken},   {"NMTOKENS", AttributeType::kNmTokens},
      {"NOTATION", AttributeType::kNotation},
  };
  const char* const begin = P();
  const std::string name = NeedName();
  for (const auto& [keyword, type] : kTypes) {
    if (keyword != name) continue;
    if (type == AttributeType::kNotation) {
      NeedSpace();
      ParseEnumeration(true);
    }
    return type;
  }
  P() = begin;
  Fail(ParseCode::kBadCharInDeclaration);
}

void DtdParser::ParseEnumeration(bool names) {
  NeedChar('(', ParseCode::kBadCharInDeclaration);
  while (true) {
    SkipSpace();
    if (names) {
      NeedNcName();
    } else {
      NeedNmtoken();
    }
    SkipSpace();
    if (*P() != '|') break;
    ++P();
  }
  NeedChar(')', ParseCode::kUnbalancedParentheses);
}

void DtdParser::ParseDefault(AttributeDeclaration& declaration) {
  if (Take("#REQUIRED")) {
    declaration.defaultKind = DefaultKind::kRequired;
    return;
  }
  if (Take("#IMPLIED")) return;
  declaration.defaultKind = DefaultKind::kValue;
  if (Take("#FIXED")) {
    declaration.defaultKind = DefaultKind::kFixed;
    NeedSpace();
  }
  if (*P() == '#' || *P() == '%') {
    Fail(*P() == '#' ? ParseCode::kBadCharInDeclaration : ParseCode::kParameterEntityInMarkup);
  }
  const char* const place = sources_.size() == 1 ? P() + 1 : reference_;
  declaration.defaultLiteral = NeedLiteral();
  // The value must be one already here: its entities declared, no '<' in it, no loop.
  std::string value;
  parser_.ExpandValue(declaration.defaultLiteral, AttributeValues::kNormalised, value, place);
}

// Entities and notations -------------------------------------------------------------------------

void DtdParser::ParseEntity() {
  EntityDeclaration entity;
  bool parameter = false;
  if (*P() == '%') {
    ++P();
    parameter = true;
    NeedSpace();
  }
  entity.name = NeedNcName();
  NeedSpace();
  const char* const place = sources_.size() == 1 ? P() + 1 : reference_;
  bool hasSystem = false;
  if (ParseExternalId(entity.publicId, entity.systemId, false, hasSystem)) {
    entity.external = true;
    const bool spaced = Parser::IsSpace(*P());
    SkipSpace();
    if (Take("NDATA")) {
      if (parameter || !spaced) Fail(ParseCode::kBadCharInDeclaration);
      NeedSpace();
      entity.notation = NeedNcName();
    }
  } else {
    entity.replacement = ParseEntityValue(NeedLiteral(), place);
  }
  NeedDeclarationEnd();
  if (!MayCount()) return;
  auto& entities = parameter ? dtd_.parameterEntities : dtd_.entities;
  std::string name = entity.name;
  if (entities.emplace(name, std::move(entity)).second && !parameter) {
    dtd_.entityOrder.push_back(std::move(name));
  }
}

// Characters are replaced, general references only checked (XML 1.0, 4.4).
std::string DtdParser::ParseEntityValue(const std::string& literal, const char* place) {
  const std::string text = literal + scan::kSentinel;  // ends names and digits
  const char* const end = text.data() + literal.size();
  std::string value;
  std::string name;
  try {
    for (const char* p = text.data(); p < end;) {
      if (*p == '%') parser_.Fail(ParseCode::kParameterEntityInMarkup, place);
      if (*p != '&') {
        value += *p++;
      } else if (p[1] == '#') {
        char32_t codePoint = 0;
        p = parser_.DecodeCharReference(p, end, codePoint);
        text::AppendUtf8(value, codePoint);
      } else {
        const char* const after = parser_.ParseEntityName(p, end, name);
        value.append(p, after);
        p = after;
      }
    }
  } catch (ParseFailure& failure) {
    failure.offset = static_cast<std::size_t>(place - parser_.begin_);
    throw;
  }
  return value;
}

void DtdParser::ParseNotation() {
  NotationDeclaration notation;
  notation.name = NeedNcName();
  NeedSpace();
  const bool isPublic = *P() == 'P';
  if (!ParseExternalId(notation.publicId, notation.systemId, true, notation.hasSystemId)) {
    Fail(ParseCode::kBadExternalId);
  }
  notation.hasPublicId = isPublic;
  NeedDeclarationEnd();
  dtd_.notations.push_back(std::move(notation));
}

// Reads an external identifier when there is one. Only a notation may have a public identifier
// alone.
bool DtdParser::ParseExternalId(std::string& publicId, std::string& systemId, bool systemOptional,
                                bool& hasSystem) {
  if (Take("SYSTEM")) {
    NeedSpace();
    systemId = NeedLiteral();
    hasSystem = true;
    return true;
  }
  if (!Take("PUBLIC")) return false;
  NeedSpace();
  publicId = NeedLiteral();
  for (const char c : publicId) {
    const bool allowed = text::IsAsciiLetter(static_cast<unsigned char>(c)) ||
                         text::IsAsciiDigit(static_cast<unsigned char>(c)) ||
                         std::string_view(" \n\r-'()+,./:=?;!*#@$_%").find(c) != std::string::npos;
    if (!allowed) Fail(ParseCode::kBadExternalId);
  }
  const bool spaced = Parser::IsSpace(*P());
  if (systemOptional) {
    const char* const next = Parser::SkipSpace(P());
    if (*next != '"' && *next != '\'') return true;
  }
  if (!spaced) NeedSpace();
  SkipSpace();
  systemId = NeedLiteral();
  hasSystem = true;
  return true;
}

// ------------------------------------------------------------------------------------------------

const char* Parser::ParseDoctype(const char* p) {
  auto owned = std::make_unique<Dtd>();
  dtd_ = owned.get();
  data_.SetDocumentType(std::move(owned));
  const char* const end = DtdParser(*this, *dtd_, p + 9).ParseDeclaration();
  EnsureNodeRoom(p);
  const NodeId node = AppendNode(NodeType::kDocumentType, names_.InternName(dtd_->name, kNoUri),
                                 kDocumentNode, lastTop_);
  SetRange(nodes_[node], p, end);
  return end;
}

}  // namespace kx::dom
