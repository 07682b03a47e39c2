// The neutral form itself: what is merged, what is sorted, and that three readers agree on
// documents whose form is written out here.
#include "differential/neutral_tree.h"

#include <gtest/gtest.h>

namespace kx::test {
namespace {

struct TreeCase {
  const char* document;
  const char* tree;
  const char* why;
};

constexpr TreeCase kTreeCases[] = {
    {"<a/>", "< {}:a\n>\n", "an element without anything"},
    {"<a c='2' b='1'>x<![CDATA[y]]>&lt;</a>", "< {}:a\nA {}:b=1\nA {}:c=2\nT xy<\n>\n",
     "attributes in order, text merged"},
    {"<p:a xmlns:p='u' p:b=''><c xmlns='v'/></p:a>",
     "< {u}p:a\nA {u}p:b=\nN p=u\n< {v}:c\nN =v\n>\n>\n", "names with their namespaces"},
    {"<!--c--><?p d?><a/>", "C c\nP p d\n< {}:a\n>\n", "comments and instructions"},
    {"<!DOCTYPE a [<!--no--><?no no?><!ENTITY e 'x<b/>'><!ATTLIST a d CDATA 'v'>]><a>&e;</a>",
     "< {}:a\nA {}:d=v\nT x\n< {}:b\n>\n>\n", "entities replaced, defaults supplied"},
    {"<a xml:lang='en'>\r\n</a>",
     "< {}:a\nA {http://www.w3.org/XML/1998/namespace}xml:lang=en\nT \\n\n>\n",
     "the prefix xml, and line ends"},
};

TEST(NeutralTree, IsTheSameFromThreeReaders) {
  for (const TreeCase& row : kTreeCases) {
    SCOPED_TRACE(row.why);
    for (const auto& reader : {ReadWithOurs, ReadWithExpat, ReadWithLibxml}) {
      const Reading reading = reader(row.document);
      ASSERT_TRUE(reading.accepted) << reading.message;
      EXPECT_EQ(reading.tree, row.tree);
    }
  }
}

TEST(NeutralTree, IsAbsentFromARefusedDocument) {
  for (const auto& reader : {ReadWithOurs, ReadWithExpat, ReadWithLibxml}) {
    for (const char* document : {"", "<a>", "<a></b>", "<p:a/>"}) {
      const Reading reading = reader(document);
      EXPECT_FALSE(reading.accepted) << document;
      EXPECT_NE(reading.code, 0) << document;
      EXPECT_EQ(reading.tree, "") << document;
    }
  }
}

}  // namespace
}  // namespace kx::test
