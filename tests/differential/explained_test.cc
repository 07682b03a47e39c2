// The table of explained differences: each kind has a smallest document that shows it, and a
// difference of no kind stays unexplained.
#include "differential/explained.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace kx::test {
namespace {

struct KindCase {
  const char* kind;
  Peer peer;
  std::string_view document;
};

constexpr KindCase kKindCases[] = {
    {"reserved prefix", Peer::kExpat, "<a xmlns:xmlx='u'/>"},
    {"version", Peer::kExpat, "<?xml version='1.1'?><a/>"},
    {"undeclared parameter entity", Peer::kExpat, "<!DOCTYPE a [%p;]><a/>"},
    {"byte-order mark", Peer::kLibxml,
     "\xEF\xBB\xBF<?xml version='1.0' encoding='iso-8859-1'?><a/>"},
    {"encodings of Expat", Peer::kExpat, "<?xml version='1.0' encoding='windows-1252'?><a/>"},
    {"names of the fifth edition", Peer::kExpat, "<a><\xF0\x9D\x80\xB2/></a>"},
    {"names of the fifth edition", Peer::kExpat,
     "<!DOCTYPE a [<!ENTITY e '<&#x1D032;/>'>]><a>&e;</a>"},
    {"names of encodings", Peer::kLibxml, "<?xml version='1.0' encoding='USASCII'?><a/>"},
    {"namespaces in entities", Peer::kLibxml,
     "<!DOCTYPE a [<!ENTITY e '<b/>'>]><a xmlns='u'>&e;</a>"},
    {"namespaces in entities", Peer::kLibxml,
     "<!DOCTYPE a [<!ENTITY e '<b/>'>]><a>&e;<c xmlns='u'>&e;</c></a>"},
    {"returns in entities", Peer::kLibxml, "<!DOCTYPE a [<!ENTITY e '&#13;'>]><a>&e;</a>"},
    {"declarations after unread ones", Peer::kLibxml,
     "<!DOCTYPE a [<!ENTITY % p SYSTEM 's'>%p;<!ATTLIST a b CDATA 'd'>]><a/>"},
    {"fragments", Peer::kLibxml, "<!DOCTYPE a [<!ENTITY e SYSTEM 's#f'>]><a/>"},
    {"system identifiers that are no URI", Peer::kLibxml,
     "<!DOCTYPE a [<!ENTITY e SYSTEM '<'>]><a>&e;</a>"},
    {"white space after DOCTYPE", Peer::kLibxml, "<!DOCTYPEa []><a/>"},
    {"subset after the declaration", Peer::kLibxml, "<!DOCTYPE a >[<!ENTITY e ''>]><a/>"},
    {"colons in declared names", Peer::kLibxml, "<!DOCTYPE a [<!ELEMENT b: ANY>]><a/>"},
    {"colons in declared names", Peer::kExpat, "<!DOCTYPE a [<!ATTLIST b c:.d CDATA ''>]><a/>"},
    {"white space in the XML declaration", Peer::kLibxml,
     "<?xml version='1.0' encoding='UTF-8'standalone='yes'?><a/>"},
    {"NUL in libxml2", Peer::kLibxml, {"<a/>\0", 5}},
    {"first halves in Expat",
     Peer::kExpat,
     {"\xFF\xFE<\0a\0>\0<\0?\0p\0 \0\0\xD8s\0?\0>\0<\0/\0a\0>\0", 32}},
    {"half a character", Peer::kLibxml, {"\xFF\xFE<\0a\0/\0>\0\n", 11}},
};

Reading ReadWith(Peer peer, std::string_view document) {
  return peer == Peer::kExpat ? ReadWithExpat(document) : ReadWithLibxml(document);
}

void ExpectKind(const char* kind, Peer peer, std::string_view document) {
  SCOPED_TRACE(kind);
  const Reading ours = ReadWithOurs(document);
  const Reading theirs = ReadWith(peer, document);
  const Comparison comparison{document, &ours, peer, &theirs};
  EXPECT_TRUE(Differs(comparison)) << DescribeDifference(comparison);
  const Explanation* explanation = Explain(comparison);
  ASSERT_NE(explanation, nullptr) << DescribeDifference(comparison);
  EXPECT_STREQ(explanation->kind, kind);
}

std::string Nested(int depth) {
  std::string text;
  for (int i = 0; i < depth; ++i) text += "<a>";
  for (int i = 0; i < depth; ++i) text += "</a>";
  return text;
}

TEST(Explained, EveryKindHasADocumentThatShowsIt) {
  std::set<std::string> kinds;
  for (const KindCase& row : kKindCases) {
    ExpectKind(row.kind, row.peer, row.document);
    kinds.insert(row.kind);
  }
  ExpectKind("depth of libxml2", Peer::kLibxml, Nested(300));
  kinds.insert("depth of libxml2");
  for (const Explanation& explanation : Explanations()) {
    EXPECT_TRUE(kinds.contains(explanation.kind)) << explanation.kind << " is shown by nothing";
  }
}

TEST(Explained, ADifferenceOfNoKindStaysUnexplained) {
  const Reading accepted{true, "< {}:a\n>\n", 0, "", 0};
  const Reading other{true, "< {}:b\n>\n", 0, "", 0};
  const Reading refused{false, "", 1, "refused", 0};
  for (const Peer peer : {Peer::kExpat, Peer::kLibxml}) {
    EXPECT_FALSE(Differs({"<a/>", &accepted, peer, &accepted}));
    EXPECT_FALSE(Differs({"<a>", &refused, peer, &refused}));
    for (const Comparison& comparison : {Comparison{"<a/>", &accepted, peer, &other},
                                         Comparison{"<a/>", &accepted, peer, &refused},
                                         Comparison{"<a/>", &refused, peer, &accepted}}) {
      EXPECT_TRUE(Differs(comparison));
      EXPECT_EQ(Explain(comparison), nullptr);
    }
  }
}

}  // namespace
}  // namespace kx::test
