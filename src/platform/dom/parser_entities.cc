// References: characters, predefined entities, and the entities of the internal subset. What
// entities expand to is counted and bounded. The shape of the parser is told in parser_impl.h.
#include "platform/dom/parser_impl.h"
#include "platform/dom/xml_names.h"
#include "platform/text/unicode.h"

#include <cstring>

namespace kx::dom {

namespace {

// What a reference costs besides its text: a node, and a frame while it is read.
constexpr std::size_t kReferenceCost = 64;

}  // namespace

// `p` is at the '&' of "&#..."; returns what follows the ';'.
const char* Parser::DecodeCharReference(const char* p, const char* end, char32_t& codePoint) const {
  const bool hex = p[2] == 'x';
  const char* at = p + (hex ? 3 : 2);
  const char* const digits = at;
  const std::uint32_t radix = hex ? 16 : 10;
  std::uint32_t value = 0;
  while (true) {
    const int digit = text::HexDigitValue(static_cast<unsigned char>(*at));
    if (digit < 0 || digit >= static_cast<int>(radix)) break;
    if (value <= text::kMaxCodePoint) value = value * radix + static_cast<std::uint32_t>(digit);
    ++at;
  }
  if (*at != ';' || at == digits) {
    if (at >= end) Fail(ParseCode::kUnexpectedEnd, end_);
    Fail(hex ? ParseCode::kBadHexDigit : ParseCode::kBadDecimalDigit, at);
  }
  if (!text::IsXmlChar(value)) Fail(ParseCode::kBadCharReference, at);
  codePoint = value;
  return at + 1;
}

// `p` is at the '&'; returns what follows the ';'.
const char* Parser::ParseEntityName(const char* p, const char* end, std::string& name) const {
  const char* const begin = p + 1;
  if (IsSpace(*begin)) Fail(ParseCode::kUnexpectedWhiteSpace, begin);
  const char* const after = SkipName(begin);
  if (after == begin) {
    if (begin >= end) Fail(ParseCode::kUnexpectedEnd, end_);
    Fail(ParseCode::kBadNameStart, begin);
  }
  if (*after != ';') {
    if (after >= end) Fail(ParseCode::kUnexpectedEnd, end_);
    Fail(ParseCode::kMissingSemicolon, after);
  }
  name.assign(begin, after);
  return after + 1;
}

char Parser::PredefinedEntity(std::string_view name) noexcept {
  if (name == "lt") return '<';
  if (name == "gt") return '>';
  if (name == "amp") return '&';
  if (name == "quot") return '"';
  if (name == "apos") return '\'';
  return 0;
}

bool Parser::MaySkipUndeclared() const noexcept {
  return options_.undeclaredEntities == UndeclaredEntities::kSkipWhereXmlAllows &&
         dtd_ != nullptr && !standalone_ &&
         (dtd_->hasExternalSubset || dtd_->hasParameterReferences);
}

EntityDeclaration& Parser::FindEntity(const std::string& name, const char* place) {
  if (const std::size_t colon = name.find(':'); colon != std::string::npos) {
    Fail(ParseCode::kColonInName, place + colon);
  }
  EntityDeclaration* entity = dtd_ != nullptr ? dtd_->FindEntity(name) : nullptr;
  if (entity == nullptr && MaySkipUndeclared()) {
    skipped_ = EntityDeclaration{};
    skipped_.name = name;
    return skipped_;
  }
  if (entity == nullptr) Fail(ParseCode::kUndefinedEntity, place, name);
  if (!entity->notation.empty()) Fail(ParseCode::kUnparsedEntityReference, place, name);
  if (entity->open) Fail(ParseCode::kEntityLoop, place, name);
  return *entity;
}

void Parser::CountExpansion(std::size_t bytes, const char* place) {
  expanded_ += bytes + kReferenceCost;
  if (expanded_ > options_.maxEntityBytes) {
    Fail(ParseCode::kTooLarge, place, std::to_string(options_.maxEntityBytes));
  }
}

// Begins to read an entity's replacement text as the content of an entity reference node. An
// external entity is never fetched: its reference stays without content.
const char* Parser::EnterEntity(const char* after, EntityDeclaration& entity, const char* place,
                                NodeId parent, NodeId& last) {
  const std::size_t size = entity.replacement.size();
  CountExpansion(size, place);
  EnsureNodeRoom(after);
  const NodeId reference =
      AppendNode(NodeType::kEntityReference, names_.InternName(entity.name, kNoUri), parent, last);
  frames_.push_back({static_cast<std::size_t>(after - begin_),
                     static_cast<std::size_t>(place - begin_),
                     static_cast<std::size_t>(begin_ - base_),
                     static_cast<std::size_t>(end_ - begin_), frameNode_, &entity});
  const std::size_t offset = data_.ExtendText(size + 1 + scan::kScanPadding);
  char* const copy = data_.Text() + offset;
  if (size != 0) std::memcpy(copy, entity.replacement.data(), size);
  copy[size] = scan::kSentinel;
  std::memset(copy + size + 1, 0, scan::kScanPadding);
  base_ = data_.Text();
  begin_ = copy;
  end_ = copy + size;
  frameNode_ = reference;
  entity.open = true;
  last = kNoNode;
  return begin_;
}

const char* Parser::LeaveEntity(NodeId& parent, NodeId& last) {
  const Frame frame = frames_.back();
  frames_.pop_back();
  frame.entity->open = false;
  nodes_[frameNode_].last = last;
  last = frameNode_;
  parent = nodes_[frameNode_].parent;
  frameNode_ = frame.node;
  begin_ = base_ + frame.begin;
  end_ = begin_ + frame.size;
  return begin_ + frame.resume;
}

void Parser::ExpandValue(std::string_view literal, AttributeValues white, std::string& out,
                         const char* place) {
  struct Level {
    std::string text;  // ended by a sentinel, so that names and digits end
    std::size_t at = 0;
    EntityDeclaration* entity = nullptr;
  };
  std::vector<Level> levels;
  const auto enter = [&levels](std::string_view text, EntityDeclaration* entity) {
    Level level;
    level.text.reserve(text.size() + 1);
    level.text.append(text) += scan::kSentinel;
    level.entity = entity;
    if (entity != nullptr) entity->open = true;
    levels.push_back(std::move(level));
  };
  // A failure inside the value is told at `place`: the texts here are copies.
  const auto located = [this, place](auto step) {
    try {
      return step();
    } catch (ParseFailure& failure) {
      if (!InEntity()) failure.offset = static_cast<std::size_t>(place - begin_);
      throw;
    }
  };
  std::string name;
  enter(literal, nullptr);
  while (!levels.empty()) {
    Level& level = levels.back();
    const char* const end = level.text.data() + level.text.size() - 1;
    const char* p = level.text.data() + level.at;
    if (p == end) {
      if (level.entity != nullptr) level.entity->open = false;
      levels.pop_back();
      continue;
    }
    if (*p == '<') Fail(ParseCode::kLessThanInAttribute, place);
    if (*p != '&') {
      out += white == AttributeValues::kNormalised && IsSpace(*p) ? ' ' : *p;
      ++level.at;
      continue;
    }
    if (p[1] == '#') {
      char32_t codePoint = 0;
      p = located([&] { return DecodeCharReference(p, end, codePoint); });
      text::AppendUtf8(out, codePoint);
      level.at = static_cast<std::size_t>(p - level.text.data());
      continue;
    }
    p = located([&] { return ParseEntityName(p, end, name); });
    level.at = static_cast<std::size_t>(p - level.text.data());
    if (const char c = PredefinedEntity(name); c != 0) {
      out += c;
      continue;
    }
    EntityDeclaration& entity = FindEntity(name, place);
    if (entity.external) Fail(ParseCode::kExternalEntityInAttribute, place, name);
    CountExpansion(entity.replacement.size(), place);
    enter(entity.replacement, &entity);
  }
}

}  // namespace kx::dom
