// The canonical form of documents whose form can be read off the grammar.
#include "conformance/canonical_form.h"

#include "platform/dom/parser.h"

#include <gtest/gtest.h>

namespace kx::test {
namespace {

struct FormCase {
  const char* document;
  const char* form;
  const char* why;
};

constexpr FormCase kFormCases[] = {
    {"<a/>", "<a></a>", "an empty element has two tags"},
    {"<a b='2' a='1'/>", "<a a=\"1\" b=\"2\"></a>", "attributes stand in order of their names"},
    {"<a>&lt;&amp;&gt;\"'</a>", "<a>&lt;&amp;&gt;&quot;'</a>", "four characters are escaped"},
    {"<a b='&#9;&#10;&#13;'>\t\n&#13;</a>", "<a b=\"&#9;&#10;&#13;\">&#9;&#10;&#13;</a>",
     "white space is written by number"},
    {"<a><![CDATA[<]]>x</a>", "<a>&lt;x</a>", "CDATA sections are text"},
    {"<?xml version='1.0'?><!--c--><?p d?><a><!--c--><?q?></a><?r  x ?>",
     "<?p d?><a><?q ?></a><?r x ?>", "instructions stay, comments and the declaration go"},
    {"<!DOCTYPE a [<!ENTITY e '<b>x</b>y'>]><a>&e;&e;</a>", "<a><b>x</b>y<b>x</b>y</a>",
     "entities are replaced"},
    {"<!DOCTYPE a [<!ENTITY e 'v'><!ATTLIST a d CDATA '&e;' t NMTOKENS #IMPLIED>]><a t=' x  y '/>",
     "<a d=\"v\" t=\"x y\"></a>", "defaults are supplied, tokens normalised"},
    {"<!DOCTYPE a [<?q e?><!NOTATION n SYSTEM 's'>]><?p d?><a/>",
     "<?q e?><!DOCTYPE a [\n<!NOTATION n SYSTEM 's'>\n]>\n<?p d?><a></a>",
     "instructions of the document type come first"},
    {"<!DOCTYPE a [<!NOTATION z PUBLIC 'p'><!NOTATION n SYSTEM \"s\"><!NOTATION o PUBLIC 'p' 's'>]>"
     "<a/>",
     "<!DOCTYPE a [\n<!NOTATION n SYSTEM 's'>\n<!NOTATION o PUBLIC 'p' 's'>\n<!NOTATION z PUBLIC "
     "'p'>\n]>\n<a></a>",
     "notations are declared in order of their names"},
};

TEST(CanonicalForm, FollowsItsGrammar) {
  dom::ParseOptions options;
  options.attributeValues = dom::AttributeValues::kNormalised;
  for (const FormCase& row : kFormCases) {
    SCOPED_TRACE(row.why);
    dom::DocumentData document(nullptr);
    dom::ParseError error;
    ASSERT_TRUE(ParseText(document, row.document, options, error)) << error.reason;
    EXPECT_EQ(CanonicalForm(document, Notations::kDeclare), row.form);
  }
}

TEST(CanonicalForm, LeavesNotationsOutOfItsFirstForm) {
  dom::DocumentData document(nullptr);
  dom::ParseError error;
  ASSERT_TRUE(ParseText(document, "<!DOCTYPE a [<!NOTATION n SYSTEM 's'>]><a/>", {}, error));
  EXPECT_EQ(CanonicalForm(document, Notations::kLeaveOut), "<a></a>");
}

}  // namespace
}  // namespace kx::test
