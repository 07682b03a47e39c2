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

constexpr Explanation kExplanations[] = {
    {"reserved prefix", "a declared prefix may not begin with \"xml\" in the DOM",
     [](const Comparison& c) {
       return OnlyOursRefuses(c) && OursIs(c, ParseCode::kReservedPrefix);
     }},
    {"version", "the DOM reads version 1.0 only; Expat and libxml2 read on after any other",
     [](const Comparison& c) { return OnlyOursRefuses(c) && OursIs(c, ParseCode::kBadVersion); }},
    {"unread declarations",
     "after an external subset or parameter entity that was not read, an undeclared entity is "
     "skipped by the others and refused by the DOM",
     [](const Comparison& c) {
       return OnlyOursRefuses(c) && OursIs(c, ParseCode::kUndefinedEntity);
     }},
    {"encodings of Expat", "Expat knows four encodings; the DOM knows those of the system",
     [](const Comparison& c) {
       return c.ours->accepted && ExpatIs(c, XML_ERROR_UNKNOWN_ENCODING);
     }},
    {"xml:space", "the DOM refuses values of xml:space other than default and preserve",
     [](const Comparison& c) { return OnlyOursRefuses(c) && OursIs(c, ParseCode::kBadXmlSpace); }},
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
