// See document_generator.h.
#include "differential/document_generator.h"

#include <algorithm>
#include <utility>

namespace kx::test {

std::uint64_t Random::Next() noexcept {
  state_ += 0x9E3779B97F4A7C15U;
  std::uint64_t mixed = state_;
  mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
  mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
  return mixed ^ (mixed >> 31U);
}

namespace {

constexpr int kDeepest = 6;

constexpr std::string_view kNames[] = {"a",
                                       "b",
                                       "item",
                                       "Order",
                                       "_x",
                                       "n-1",
                                       "x.y.z",
                                       "element",
                                       "line",
                                       "caf\xC3\xA9",
                                       "\xCE\xB1\xCE\xB2",
                                       "aVeryLongElementNameOfThirtyTwoBytes"};
constexpr std::string_view kPrefixes[] = {"p", "q", "ns", "long-prefix"};
constexpr std::string_view kUris[] = {"u", "urn:x", "http://example.com/a?b=c", "x-schema:s.xml"};
constexpr std::string_view kTexts[] = {"x",
                                       "some text",
                                       " ",
                                       "\n",
                                       "\r\n",
                                       "\r",
                                       "\t\n ",
                                       "&lt;",
                                       "&gt;&amp;",
                                       "&quot;&apos;",
                                       "&#65;",
                                       "&#x1F600;",
                                       "&#10;&#13;&#9;",
                                       "]]",
                                       "]>",
                                       "'\"",
                                       "gr\xC3\xBC\xC3\x9F",
                                       "text that a scan crosses in steps of sixteen"};
constexpr std::string_view kWideTexts[] = {"\xE2\x82\xAC", "\xF0\x9D\x84\x9E", "\xE6\x97\xA5",
                                           "\xEF\xBF\xBD", "\xCE\xA9"};
// What damage puts into a document: pieces of markup, complete and not.
constexpr std::string_view kPieces[] = {"<",
                                        ">",
                                        "&",
                                        "'",
                                        "\"",
                                        "=",
                                        "/",
                                        " ",
                                        "\n",
                                        "<a>",
                                        "</a>",
                                        "<a/>",
                                        "<!--",
                                        "-->",
                                        "--",
                                        "<![CDATA[",
                                        "]]>",
                                        "<?",
                                        "?>",
                                        "<?p d?>",
                                        "&lt;",
                                        "&u;",
                                        "&#0;",
                                        "&#x41;",
                                        "&#xD800;",
                                        "<!DOCTYPE a>",
                                        "xmlns=''",
                                        " xmlns:p='u'",
                                        "p:",
                                        ":",
                                        "xml",
                                        "<?xml version='1.0'?>",
                                        ";",
                                        "%",
                                        "%e;",
                                        "[",
                                        "]",
                                        "<!ENTITY e 'x'>",
                                        "<!ATTLIST a b CDATA 'x'>",
                                        "NDATA",
                                        "\x01",
                                        "\xC3",
                                        "\xEF\xBF\xBE",
                                        "\xED\xA0\x80",
                                        "\xC0\x80",
                                        "0",
                                        "SYSTEM 's'",
                                        " a='1'",
                                        "(",
                                        ")",
                                        "|",
                                        ",",
                                        "#PCDATA",
                                        "*",
                                        "+",
                                        "<![INCLUDE[",
                                        "standalone='yes'",
                                        "&e;",
                                        "xmlns:xml='http://www.w3.org/XML/1998/namespace'"};

enum class Encoding : unsigned char {
  kUtf8,
  kUtf8Mark,
  kUtf16Little,
  kUtf16Big,
  kLatin1,
  kAscii,
};

// Builds one document as UTF-8 text. Recursion is bounded by kDeepest.
class Builder {
 public:
  Builder(Random& random, Encoding encoding) : random_(random), encoding_(encoding) {}

  std::string Document() {
    Declaration();
    Miscellany();
    if (random_.Chance(40)) DocumentType();
    Miscellany();
    Element(0);
    Miscellany();
    return std::move(out_);
  }

 private:
  void Space() { out_ += random_.Chance(80) ? " " : "\n\t"; }
  void MaybeSpace() {
    if (random_.Chance(10)) Space();
  }

  std::string Literal(std::string_view text) {
    const bool single = text.find('\'') == std::string_view::npos && random_.Chance(30);
    const char quote = single || text.find('"') != std::string_view::npos ? '\'' : '"';
    return quote + std::string(text) + quote;
  }

  void Declaration() {
    const bool eightBit = encoding_ == Encoding::kLatin1 || encoding_ == Encoding::kAscii;
    if (!eightBit && random_.Chance(40)) return;
    out_ += "<?xml version=" + Literal("1.0");
    const std::string_view name = EncodingName();
    if (eightBit || random_.Chance(50)) out_ += " encoding = " + Literal(name);
    if (random_.Chance(15)) out_ += " standalone=" + Literal(random_.Chance(50) ? "yes" : "no");
    MaybeSpace();
    out_ += "?>";
  }

  std::string_view EncodingName() {
    switch (encoding_) {
      case Encoding::kLatin1:
        return "iso-8859-1";
      case Encoding::kAscii:
        return "US-ASCII";
      case Encoding::kUtf16Little:
      case Encoding::kUtf16Big:
        return "UTF-16";
      default:
        return random_.Chance(50) ? "utf-8" : "UTF-8";
    }
  }

  void Miscellany() {
    while (random_.Chance(30)) {
      switch (random_.Below(3)) {
        case 0:
          out_ += "\n";
          break;
        case 1:
          Comment();
          break;
        default:
          Instruction();
      }
    }
  }

  void Comment() { out_ += random_.Chance(50) ? "<!-- a - comment <&>%x; -->" : "<!---->"; }
  void Instruction() {
    out_ += random_.Chance(50) ? "<?target some data ? > ?>" : "<?xml-stylesheet?>";
  }

  std::string Name() {
    std::string name(random_.Pick(kNames));
    const bool ascii = encoding_ == Encoding::kAscii || encoding_ == Encoding::kLatin1;
    if (ascii && static_cast<unsigned char>(name[name.size() - 1]) >= 0x80) return "plain";
    return name;
  }

  std::string Text() {
    std::string text(random_.Pick(kTexts));
    if (encoding_ == Encoding::kAscii && text.starts_with("gr")) return "gray";
    const bool wide = encoding_ != Encoding::kAscii && encoding_ != Encoding::kLatin1;
    return wide && random_.Chance(10) ? std::string(random_.Pick(kWideTexts)) : text;
  }

  // The document type --------------------------------------------------------------------------

  void DocumentType() {
    out_ += "<!DOCTYPE root";
    if (random_.Chance(10)) out_ += " SYSTEM " + Literal("sub.dtd");
    out_ += " [";
    const std::size_t count = random_.Below(8);
    for (std::size_t i = 0; i < count; ++i) MarkupDeclaration();
    out_ += "]";
    MaybeSpace();
    out_ += ">";
  }

  void MarkupDeclaration() {
    MaybeSpace();
    switch (random_.Below(7)) {
      case 0:
      case 1:
        EntityDeclaration();
        break;
      case 2:
        AttributeListDeclaration();
        break;
      case 3:
        out_ += "<!ELEMENT " + Name() + " " + std::string(random_.Pick(kContentModels)) + ">";
        break;
      case 4:
        out_ += "<!NOTATION n" + std::to_string(random_.Below(1000)) + " PUBLIC \"id\">";
        break;
      case 5:
        Comment();
        break;
      default:
        Instruction();
    }
  }

  void EntityDeclaration() {
    const std::string name = "e" + std::to_string(entities_.size());
    std::string value = EntityValue();
    out_ += "<!ENTITY " + name + " ";
    out_ += Literal(value);
    out_ += ">";
    entities_.push_back(name);
    if (value.find('<') == std::string::npos) plainEntities_.push_back(name);
  }

  std::string EntityValue() {
    std::string value(random_.Pick(kEntityValues));
    if (!plainEntities_.empty() && random_.Chance(30)) value += "&" + PlainEntity() + ";";
    return value;
  }

  std::string PlainEntity() { return plainEntities_[random_.Below(plainEntities_.size())]; }

  void AttributeListDeclaration() {
    out_ += "<!ATTLIST " + Name();
    const std::size_t count = 1 + random_.Below(3);
    for (std::size_t i = 0; i < count; ++i) {
      Space();
      out_ += Name() + " " + std::string(random_.Pick(kAttributeTypes));
    }
    out_ += ">";
  }

  // Content ------------------------------------------------------------------------------------

  std::string PrefixInScope() { return scope_[random_.Below(scope_.size())]; }

  void Element(int depth) {
    const std::size_t scopeBefore = scope_.size();
    std::string attributes = Declarations();
    std::string name = Name();
    if (!scope_.empty() && random_.Chance(30)) name = PrefixInScope() + ":" + name;
    attributes += Attributes();
    out_ += "<" + name + attributes;
    MaybeSpace();
    if (random_.Chance(25)) {
      out_ += "/>";
    } else {
      out_ += ">";
      Content(depth);
      out_ += "</" + name;
      MaybeSpace();
      out_ += ">";
    }
    scope_.resize(scopeBefore);
  }

  std::string Declarations() {
    std::string text;
    if (random_.Chance(15))
      text += " xmlns=" + Literal(random_.Chance(30) ? "" : random_.Pick(kUris));
    if (!random_.Chance(20)) return text;
    const std::string prefix(random_.Pick(kPrefixes));
    scope_.push_back(prefix);
    return text + " xmlns:" + prefix + "=" + Literal(random_.Pick(kUris));
  }

  std::string Attributes() {
    std::vector<std::string> names;
    std::string text;
    while (random_.Chance(40)) {
      const std::string local = Name();
      if (std::find(names.begin(), names.end(), local) != names.end()) break;
      names.push_back(local);  // one local name once: no two prefixes of it with one namespace
      std::string name = local;
      if (!scope_.empty() && random_.Chance(20)) name = PrefixInScope() + ":" + local;
      text += (random_.Chance(90) ? " " : "\n  ") + name + (random_.Chance(90) ? "=" : " = ");
      text += AttributeLiteral();
    }
    if (random_.Chance(5)) text += " xml:lang='en'";
    if (random_.Chance(5)) text += " xml:space='preserve'";
    return text;
  }

  std::string AttributeLiteral() {
    std::string value;
    while (random_.Chance(60)) value += Text();
    if (!plainEntities_.empty() && random_.Chance(20)) value += "&" + PlainEntity() + ";";
    const char quote = random_.Chance(50) ? '"' : '\'';
    value.erase(std::remove(value.begin(), value.end(), quote), value.end());
    return quote + value + quote;
  }

  void Content(int depth) {
    const std::size_t count = random_.Below(5);
    for (std::size_t i = 0; i < count; ++i) ContentItem(depth);
  }

  void ContentItem(int depth) {
    switch (random_.Below(10)) {
      case 0:
        Comment();
        break;
      case 1:
        Instruction();
        break;
      case 2:
        out_ += random_.Chance(80) ? "<![CDATA[<b> & ]] ]>]]>" : "<![CDATA[]]>";
        break;
      case 3:
        if (!entities_.empty()) out_ += "&" + entities_[random_.Below(entities_.size())] + ";";
        break;
      case 4:
      case 5:
      case 6:
        if (depth < kDeepest) Element(depth + 1);
        break;
      default:
        AddText();
    }
  }

  void AddText() {
    const std::string text = Text();
    // Not even by adjacency may "]]>" come to stand in text.
    if (text.starts_with(']') && out_.ends_with(']')) out_ += ' ';
    if ((text.starts_with('>') || text.starts_with("]>")) && out_.ends_with(']')) out_ += ' ';
    out_ += text;
  }

  static constexpr std::string_view kContentModels[] = {
      "EMPTY", "ANY", "(#PCDATA)", "(#PCDATA|a|b)*", "(a,b?,(c|d)+)*", "( a | b )", "(a)"};
  static constexpr std::string_view kEntityValues[] = {"",
                                                       "value",
                                                       "v&#38;lt;w",
                                                       "a&#65;b",
                                                       "&lt;",
                                                       " two  words ",
                                                       "<b>bold</b>",
                                                       "<i x='1'/>text<!--c-->",
                                                       "<![CDATA[<]]>",
                                                       "line\nbreak"};
  static constexpr std::string_view kAttributeTypes[] = {
      "CDATA #IMPLIED",       "CDATA #REQUIRED",    "CDATA 'default'", "CDATA #FIXED \"f &lt; g\"",
      "NMTOKENS '  x   y  '", "NMTOKEN #IMPLIED",   "(one|two) 'two'", "ID #IMPLIED",
      "IDREFS #IMPLIED",      "CDATA ' d1&#9;d2\n'"};

  Random& random_;
  Encoding encoding_;
  std::string out_;
  std::vector<std::string> entities_;
  std::vector<std::string> plainEntities_;  // without markup: fit for attribute values
  std::vector<std::string> scope_;          // prefixes declared around the current place
};

// Damage -----------------------------------------------------------------------------------------

void DamageOnce(Random& random, std::string& text) {
  if (text.empty()) return;
  const std::size_t at = random.Below(text.size());
  const std::size_t length = 1 + random.Below(std::min<std::size_t>(12, text.size() - at));
  switch (random.Below(7)) {
    case 0:
      text.erase(at, 1);
      break;
    case 1:
      text.erase(at, length);
      break;
    case 2:
    case 3:
      text.insert(at, random.Pick(kPieces));
      break;
    case 4:
      std::swap(text[at], text[random.Below(text.size())]);
      break;
    case 5:
      text.insert(random.Below(text.size()), text.substr(at, length));
      break;
    default:
      text.resize(at);
  }
}

// Encodings --------------------------------------------------------------------------------------

// The next code point of `text` at `at`; a byte that begins nothing well formed is taken as it is.
char32_t NextCodePoint(std::string_view text, std::size_t& at) {
  const auto byte = [&text](std::size_t index) -> unsigned {
    return index < text.size() ? static_cast<unsigned char>(text[index]) : 0U;
  };
  const unsigned first = byte(at++);
  const std::size_t more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : first >= 0xC2 ? 1 : 0;
  if (more == 0) return first;
  char32_t value = first & (0x3FU >> more);
  for (std::size_t i = 0; i < more; ++i) {
    if ((byte(at) & 0xC0U) != 0x80) return first;
    value = value << 6U | (byte(at++) & 0x3FU);
  }
  return value;
}

void AppendUnit(char32_t unit, bool big, std::string& out) {
  const char high = static_cast<char>(unit >> 8U & 0xFFU);
  const char low = static_cast<char>(unit & 0xFFU);
  out += big ? high : low;
  out += big ? low : high;
}

std::string ToUtf16(std::string_view text, bool big) {
  std::string out;
  AppendUnit(0xFEFF, big, out);
  for (std::size_t at = 0; at < text.size();) {
    const char32_t c = NextCodePoint(text, at);
    if (c >= 0x10000 && c <= 0x10FFFF) {
      AppendUnit(0xD800 + ((c - 0x10000) >> 10U), big, out);
      AppendUnit(0xDC00 + ((c - 0x10000) & 0x3FFU), big, out);
    } else {
      AppendUnit(c & 0xFFFFU, big, out);
    }
  }
  return out;
}

std::string ToLatin1(std::string_view text) {
  std::string out;
  for (std::size_t at = 0; at < text.size();) {
    const char32_t c = NextCodePoint(text, at);
    out += c < 0x100 ? static_cast<char>(c) : '?';
  }
  return out;
}

std::string Encode(std::string_view text, Encoding encoding) {
  switch (encoding) {
    case Encoding::kUtf8Mark:
      return "\xEF\xBB\xBF" + std::string(text);
    case Encoding::kUtf16Little:
      return ToUtf16(text, false);
    case Encoding::kUtf16Big:
      return ToUtf16(text, true);
    case Encoding::kLatin1:
      return ToLatin1(text);
    default:
      return std::string(text);
  }
}

Encoding PickEncoding(Random& random) {
  constexpr Encoding kRare[] = {Encoding::kUtf8Mark, Encoding::kUtf16Little, Encoding::kUtf16Big,
                                Encoding::kLatin1, Encoding::kAscii};
  return random.Chance(70) ? Encoding::kUtf8 : kRare[random.Below(std::size(kRare))];
}

}  // namespace

std::string GenerateDocument(std::uint64_t seed, Damage damage) {
  Random random(seed);
  const Encoding encoding = PickEncoding(random);
  std::string text = Builder(random, encoding).Document();
  if (damage == Damage::kNone) return Encode(text, encoding);
  const std::size_t times = 1 + random.Below(3);
  for (std::size_t i = 0; i < times; ++i) DamageOnce(random, text);
  std::string bytes = Encode(text, encoding);
  if (random.Chance(10)) DamageOnce(random, bytes);
  return bytes;
}

}  // namespace kx::test
