// The generator: the same seed gives the same bytes, and the documents cover what they are for.
#include "differential/document_generator.h"

#include <gtest/gtest.h>
#include <set>

namespace kx::test {
namespace {

TEST(DocumentGenerator, GivesTheSameBytesForTheSameSeed) {
  for (std::uint64_t seed = 1; seed < 50; ++seed) {
    EXPECT_EQ(GenerateDocument(seed, Damage::kSome), GenerateDocument(seed, Damage::kSome));
  }
  // A number of SplitMix64's published sequence for seed 1234567.
  EXPECT_EQ(Random(1234567).Next(), 6457827717110365317U);
}

TEST(DocumentGenerator, GivesManyDifferentDocuments) {
  std::set<std::string> documents;
  for (std::uint64_t seed = 1; seed <= 1000; ++seed) {
    documents.insert(GenerateDocument(seed, Damage::kNone));
  }
  EXPECT_GT(documents.size(), 950U);
}

TEST(DocumentGenerator, CoversEveryConstruct) {
  std::string all;
  for (std::uint64_t seed = 1; seed <= 500; ++seed) all += GenerateDocument(seed, Damage::kNone);
  for (const char* construct : {"<!DOCTYPE",  "<!ENTITY",   "<!ATTLIST", "<!ELEMENT",
                                "<!NOTATION", "<![CDATA[",  "<!--",      "<?",
                                "xmlns=",     "xmlns:",     "&e0;",      "&#x",
                                "standalone", "iso-8859-1", "US-ASCII",  "\xEF\xBB\xBF",
                                "\xFF\xFE",   "\xFE\xFF",   "\r\n",      "/>"}) {
    EXPECT_NE(all.find(construct), std::string::npos) << construct;
  }
}

TEST(DocumentGenerator, DamageChangesTheDocument) {
  int changed = 0;
  for (std::uint64_t seed = 1; seed <= 200; ++seed) {
    const bool same =
        GenerateDocument(seed, Damage::kNone) == GenerateDocument(seed, Damage::kSome);
    changed += same ? 0 : 1;
  }
  EXPECT_GT(changed, 190);
}

}  // namespace
}  // namespace kx::test
