// See explained.h.
#include "differential/explained.h"

#include "platform/dom/parse_error.h"

#include <algorithm>
#include <expat.h>
#include <libxml/xmlerror.h>

namespace kx::test {

namespace {

using dom::ParseCode;

bool OursIs(const Comparison& comparison, ParseCode code) {
  return !comparison.ours->accepted && comparison.ours->code == static_cast<long>(code);
}

bool ExpatIs(const Comparison& comparison, XML_Error code) {
  return comparison.peer == Peer::kExpat && !comparison.theirs->accepted &&
         comparison.theirs->code == code;
}

bool LibxmlIs(const Comparison& comparison, xmlParserErrors code) {
  return comparison.peer == Peer::kLibxml && !comparison.theirs->accepted &&
         comparison.theirs->code == code;
}

bool OnlyOursRefuses(const Comparison& comparison) {
  return !comparison.ours->accepted && comparison.theirs->accepted;
}

bool BothAccept(const Comparison& comparison) {
  return comparison.ours->accepted && comparison.theirs->accepted;
}

// libxml2 alone accepts the document: ours gives `code`, and Expat refuses it as well.
bool OnlyLibxmlAccepts(const Comparison& comparison, ParseCode code) {
  return comparison.peer == Peer::kLibxml && OnlyOursRefuses(comparison) &&
         OursIs(comparison, code) && !ReadWithExpat(comparison.bytes).accepted;
}

// The document's ASCII characters, whatever its encoding, for looking for markup in it.
std::string AsciiOf(std::string_view bytes) {
  std::string ascii;
  for (const char c : bytes) {
    if (c > 0) ascii += c;
  }
  return ascii;
}

bool Mentions(const Comparison& comparison, std::string_view markup) {
  return AsciiOf(comparison.bytes).find(markup) != std::string::npos;
}

// A document in UTF-16 holds the first half of a character without a second half behind it.
bool HasLoneFirstHalf(std::string_view bytes) {
  const bool little = bytes.starts_with("\xFF\xFE");
  if (!little && !bytes.starts_with("\xFE\xFF")) return false;
  const auto unit = [&](std::size_t at) {
    const auto low = static_cast<unsigned char>(bytes[little ? at : at + 1]);
    const auto high = static_cast<unsigned char>(bytes[little ? at + 1 : at]);
    return (static_cast<unsigned>(high) << 8U) | low;
  };
  for (std::size_t at = 2; at + 1 < bytes.size(); at += 2) {
    if ((unit(at) & 0xFC00U) != 0xD800U) continue;
    if (at + 3 >= bytes.size() || (unit(at + 2) & 0xFC00U) != 0xDC00U) return true;
    at += 2;
  }
  return false;
}

// The character at a byte of the document is beyond ASCII.
bool IsWideAt(std::string_view bytes, std::size_t place) {
  if (place >= bytes.size()) return false;
  const auto byte = [bytes](std::size_t at) {
    return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0U;
  };
  if (bytes.starts_with("\xFF\xFE")) return byte(place + 1) != 0 || byte(place) >= 0x80;
  if (bytes.starts_with("\xFE\xFF")) return byte(place) != 0 || byte(place + 1) >= 0x80;
  return byte(place) >= 0x80;
}

// A tree's lines of elements and attributes name something with a character beyond ASCII.
bool HasWideName(const std::string& tree) {
  std::size_t begin = 0;
  while (begin < tree.size()) {
    const std::size_t end = tree.find('\n', begin);
    const std::string_view line = std::string_view(tree).substr(begin, end - begin);
    const std::string_view name = line.substr(0, line.find('='));
    const bool named = line.front() == '<' || line.front() == 'A' || line.front() == 'P';
    if (named && std::any_of(name.begin(), name.end(), [](char c) { return c < 0; })) return true;
    begin = end + 1;
  }
  return false;
}

// Expat stops at a character of a name beyond ASCII, or at a reference to an entity that holds one.
bool ExpatStopsAtWideName(const Comparison& comparison) {
  if (!comparison.ours->accepted || !ExpatIs(comparison, XML_ERROR_INVALID_TOKEN)) return false;
  const std::size_t place = comparison.theirs->place;
  if (IsWideAt(comparison.bytes, place)) return true;
  return comparison.bytes.substr(place, 1) == "&" && Mentions(comparison, "<!ENTITY") &&
         HasWideName(comparison.ours->tree);
}

// A tree without the namespaces of its names, and with every CR as LF.
std::string WithoutNamespaces(const std::string& tree) {
  std::string plain;
  bool uri = false;
  for (const char c : tree) {
    if (c == '{') uri = true;
    if (!uri) plain += c;
    if (c == '}') uri = false;
  }
  return plain;
}

std::string WithoutReturns(std::string tree) {
  for (std::size_t at = tree.find('\r'); at != std::string::npos; at = tree.find('\r', at)) {
    tree.replace(at, 1, "\\n");
  }
  return tree;
}

// The lines of a tree that no declaration can add to: without attributes and text.
std::string SkeletonOf(const std::string& tree) {
  std::string skeleton;
  std::size_t begin = 0;
  while (begin < tree.size()) {
    const std::size_t end = tree.find('\n', begin) + 1;
    const char kind = tree[begin];
    if (kind != 'A' && kind != 'T') skeleton.append(tree, begin, end - begin);
    begin = end;
  }
  return skeleton;
}

constexpr Explanation kExplanations[] = {
    // What the DOM refuses on purpose.
    {"reserved prefix", "a declared prefix may not begin with \"xml\" in the DOM",
     [](const Comparison& c) {
       return OnlyOursRefuses(c) && OursIs(c, ParseCode::kReservedPrefix);
     }},
    {"version", "the DOM reads version 1.0 only; others read on after some other number",
     [](const Comparison& c) { return OnlyOursRefuses(c) && OursIs(c, ParseCode::kBadVersion); }},
    {"undeclared parameter entity",
     "a reference to a parameter entity that is not declared is refused unless declarations were "
     "left unread before; XML 1.0 makes it an error of validity",
     [](const Comparison& c) {
       return OnlyOursRefuses(c) && OursIs(c, ParseCode::kUndefinedEntity) && Mentions(c, "%");
     }},
    {"byte-order mark",
     "the DOM refuses a declared encoding that the byte-order mark contradicts; the others ignore "
     "the declaration",
     [](const Comparison& c) {
       return OnlyOursRefuses(c) && OursIs(c, ParseCode::kEncodingSwitch);
     }},

    // What Expat does not know.
    {"encodings of Expat", "Expat knows four encodings; the DOM knows those of the system",
     [](const Comparison& c) {
       return c.ours->accepted && ExpatIs(c, XML_ERROR_UNKNOWN_ENCODING);
     }},
    {"names of the fifth edition",
     "Expat has the name characters of the fourth edition of XML 1.0; ours are the fifth's",
     ExpatStopsAtWideName},
    {"first halves in Expat", "Expat takes the first half of a character with whatever follows",
     [](const Comparison& c) {
       return c.peer == Peer::kExpat && OnlyOursRefuses(c) && HasLoneFirstHalf(c.bytes);
     }},

    // Where libxml2 departs from the standards.
    {"names of encodings", "libxml2 takes any spelling that the converter of the system takes",
     [](const Comparison& c) {
       return c.peer == Peer::kLibxml && OnlyOursRefuses(c) &&
              OursIs(c, ParseCode::kUnknownEncoding);
     }},
    {"namespaces in entities",
     "libxml2 reads an entity's elements once, in the namespaces of the first reference or of none",
     [](const Comparison& c) {
       if (c.peer != Peer::kLibxml || !c.ours->accepted || !Mentions(c, "<!ENTITY")) return false;
       if (!c.theirs->accepted) return LibxmlIs(c, XML_NS_ERR_UNDEFINED_NAMESPACE);
       return WithoutNamespaces(c.ours->tree) == WithoutNamespaces(c.theirs->tree);
     }},
    {"returns in entities",
     "libxml2 folds line ends in the replacement text of an entity, where &#13; has become one",
     [](const Comparison& c) {
       return c.peer == Peer::kLibxml && BothAccept(c) && Mentions(c, "<!ENTITY") &&
              WithoutReturns(c.ours->tree) == WithoutReturns(c.theirs->tree);
     }},
    {"declarations after unread ones",
     "libxml2 uses declarations that follow a parameter entity which was not read; XML 1.0, 5.1, "
     "forbids it",
     [](const Comparison& c) {
       return c.peer == Peer::kLibxml && BothAccept(c) && Mentions(c, "%") &&
              SkeletonOf(c.ours->tree) == SkeletonOf(c.theirs->tree);
     }},
    {"fragments",
     "libxml2 refuses a fragment in a system identifier; XML 1.0 calls it no more than "
     "an error",
     [](const Comparison& c) { return c.ours->accepted && LibxmlIs(c, XML_ERR_URI_FRAGMENT); }},
    {"system identifiers that are no URI",
     "libxml2 gives up an external entity whose system identifier is no URI as it stands; XML 1.0, "
     "4.2.2, has a processor escape it, and nothing external is read here",
     [](const Comparison& c) {
       return c.ours->accepted && LibxmlIs(c, XML_ERR_UNDECLARED_ENTITY) &&
              c.theirs->message.ends_with("failed to parse\n") && Mentions(c, "<!ENTITY");
     }},
    {"white space after DOCTYPE", "libxml2 does not ask for it",
     [](const Comparison& c) { return OnlyLibxmlAccepts(c, ParseCode::kBadDeclarationName); }},
    {"subset after the declaration", "libxml2 reads a subset that follows the declaration's end",
     [](const Comparison& c) {
       return OnlyLibxmlAccepts(c, ParseCode::kInvalidAtRoot) && Mentions(c, "<!DOCTYPE");
     }},
    {"colons in declared names",
     "names in declarations must be qualified names; Expat and libxml2 do not look at every part",
     [](const Comparison& c) {
       const bool colon = OursIs(c, ParseCode::kBadNameStart) ||
                          OursIs(c, ParseCode::kMultipleColons) ||
                          OursIs(c, ParseCode::kColonInName);
       return OnlyOursRefuses(c) && colon && Mentions(c, "<!DOCTYPE") && Mentions(c, ":");
     }},
    {"white space in the XML declaration", "libxml2 does not ask for it before standalone",
     [](const Comparison& c) {
       return OnlyLibxmlAccepts(c, ParseCode::kExpectedWhiteSpaceOrQuestion);
     }},
    {"NUL in libxml2", "libxml2 takes a NUL character after the root for the end of the document",
     [](const Comparison& c) {
       return OnlyLibxmlAccepts(c, ParseCode::kBadCharInText) &&
              c.bytes.find('\0') != std::string_view::npos;
     }},
    {"half a character", "libxml2 leaves out a last byte of UTF-16 that has no second one",
     [](const Comparison& c) { return OnlyLibxmlAccepts(c, ParseCode::kTruncatedCharacter); }},
    {"depth of libxml2", "libxml2 refuses more than 256 open elements",
     [](const Comparison& c) {
       return c.ours->accepted && LibxmlIs(c, XML_ERR_INTERNAL_ERROR) &&
              c.theirs->message.starts_with("Excessive depth");
     }},
};

}  // namespace

std::span<const Explanation> Explanations() { return kExplanations; }

bool Differs(const Comparison& comparison) {
  if (comparison.ours->accepted != comparison.theirs->accepted) return true;
  return comparison.ours->accepted && comparison.ours->tree != comparison.theirs->tree;
}

const Explanation* Explain(const Comparison& comparison) {
  for (const Explanation& explanation : kExplanations) {
    if (explanation.applies(comparison)) return &explanation;
  }
  return nullptr;
}

namespace {

std::string Verdict(const Reading& reading) {
  if (reading.accepted) return "accepted";
  return "refused (" + std::to_string(reading.code) + " " + reading.message + ")";
}

std::string LineAt(std::string_view text, std::size_t at) {
  if (at >= text.size()) return "(the end)";
  const std::size_t begin = at == 0 ? 0 : text.rfind('\n', at - 1) + 1;
  return std::string(text.substr(begin, text.find('\n', at) - begin));
}

}  // namespace

std::string DescribeDifference(const Comparison& comparison) {
  std::string out = "ours " + Verdict(*comparison.ours);
  out += comparison.peer == Peer::kExpat ? ", Expat " : ", libxml2 ";
  out += Verdict(*comparison.theirs);
  if (!comparison.ours->accepted || !comparison.theirs->accepted) return out;
  const std::string& a = comparison.ours->tree;
  const std::string& b = comparison.theirs->tree;
  const auto place = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
  out += "\n  ours   " + LineAt(a, static_cast<std::size_t>(place.first - a.begin()));
  out += "\n  theirs " + LineAt(b, static_cast<std::size_t>(place.second - b.begin()));
  return out;
}

}  // namespace kx::test
