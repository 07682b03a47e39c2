// Which patterns end in an attribute.
#include "kxmsg/selection.h"

#include <gtest/gtest.h>
#include <string>

namespace kxmsg {
namespace {

TEST(AttributePathOf, APathThatEndsInAnAttributeIsTakenApart) {
  const struct {
    const char* pattern;
    const char* name;
    const char* owners;
    const char* why;
  } rows[] = {
      {"Items/Item/@sku", "sku", "Items/Item", "the ordinary case"},
      {"@number", "number", ".", "an attribute of the content root"},
      {" a/@b\t", "b", "a", "blanks around it"},
      {"a/@p:b", "p:b", "a", "a prefix"},
      {"a/@b-c.d_1", "b-c.d_1", "a", "every character of names"},
      {"a/@\xC3\xA9", "\xC3\xA9", "a", "a letter beyond ASCII"},
      {"a[@x = 'y ] @z']/@b", "b", "a[@x = 'y ] @z']", "marks in brackets and quotations"},
      {"(a | c)/@b", "b", "(a | c)", "a union in parentheses"},
      {"a/*/@b", "b", "a/*", "any element"},
      {".//a/@b", "b", ".//a", "elements at any depth"},
      {"a//@b", "b", "", "attributes at any depth"},
      {"//@b", "b", "", "attributes of all elements"},
      {"/@b", "b", "", "an attribute of the document, which has none"},
      {"a/@b[. = 'c']", "b", "", "an attribute with a condition"},
      {"a/b", "", "", "elements"},
      {"a[@b]", "", "", "elements with an attribute"},
      {"(a/@b)", "", "", "in parentheses it is not looked for"},
      {"a/@*", "", "", "all attributes"},
      {"a/@", "", "", "a name is missing"},
      {"a/@b/c", "", "", "no pattern"},
      {"@a/@b", "", "", "no pattern either"},
      {"a/@b | c/@d", "", "", "two paths"},
      {"a | b/@c", "", "", "a path of elements and one of attributes"},
      {"a/@b = 'c'", "", "", "a comparison"},
      {"a $and$ b/@c", "", "", "two conditions"},
      {"a[b/@c", "", "", "a bracket that is not closed"},
      {"a['b/@c", "", "", "a quotation that is not closed"},
      {"a]/@b", "", "", "a bracket that closes nothing"},
      {"", "", "", "nothing"},
      {"   ", "", "", "blanks"},
  };
  for (const auto& row : rows) {
    const AttributePath path = AttributePathOf(row.pattern);
    EXPECT_EQ(path.name, row.name) << row.pattern << ": " << row.why;
    EXPECT_EQ(path.owners, row.owners) << row.pattern << ": " << row.why;
  }
}

}  // namespace
}  // namespace kxmsg
