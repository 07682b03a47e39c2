// Which texts are declarations of a default namespace.
#include "core/namespace_scan.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace kx::core {
namespace {

// The text with every declaration that was found in brackets.
std::string Marked(std::string_view text) {
  NamespaceScan scan(text);
  std::string marked;
  std::size_t written = 0;
  for (std::size_t at = scan.Next(); at != NamespaceScan::kEnd; at = scan.Next()) {
    marked += text.substr(written, at - written);
    marked += "[xmlns]";
    written = at + std::string_view("xmlns").size();
  }
  marked += text.substr(written);
  return marked;
}

TEST(NamespaceScan, FindsDeclarationsInStartTagsOnly) {
  struct {
    const char* text;
    const char* marked;
    const char* why;
  } const rows[] = {
      {"", "", "nothing"},
      {"<a xmlns=\"u\"/>", "<a [xmlns]=\"u\"/>", "an attribute"},
      {"<a b='1'\n\txmlns=\"u\"><c xmlns=\"v\"/></a>",
       "<a b='1'\n\t[xmlns]=\"u\"><c [xmlns]=\"v\"/></a>", "any white space in front"},
      {"<a b='1'xmlns=\"u\"/>", "<a b='1'[xmlns]=\"u\"/>", "no white space behind a value"},
      {"<a xmlns:p=\"u\" pxmlns=\"v\" p:xmlns=\"w\"/>",
       "<a xmlns:p=\"u\" pxmlns=\"v\" p:xmlns=\"w\"/>", "other names"},
      {"<a xmlns = \"u\" xmlns='v'/>", "<a xmlns = \"u\" xmlns='v'/>", "other spellings"},
      {"<a b=' xmlns=\"u\"'/>", "<a b=' xmlns=\"u\"'/>", "inside a value"},
      {"<a b='>' xmlns=\"u\"/>", "<a b='>' [xmlns]=\"u\"/>", "behind a > in a value"},
      {"<a> xmlns=\"u\"</a>", "<a> xmlns=\"u\"</a>", "in text"},
      {"<a> xmlns=\"u\"<b xmlns=\"v\"/></a>", "<a> xmlns=\"u\"<b [xmlns]=\"v\"/></a>",
       "behind such a text"},
      {"<a><!-- <b xmlns=\"u\"> --></a>", "<a><!-- <b xmlns=\"u\"> --></a>", "in a comment"},
      {"<a><![CDATA[<b xmlns=\"u\">]]></a>", "<a><![CDATA[<b xmlns=\"u\">]]></a>", "in CDATA"},
      {"<?p <b xmlns=\"u\"> ?><a/>", "<?p <b xmlns=\"u\"> ?><a/>", "in an instruction"},
      {"<!DOCTYPE a [<!ENTITY e '<b xmlns=\"u\"/>'><!-- ' --><?p ]> ?>]><a xmlns=\"v\"/>",
       "<!DOCTYPE a [<!ENTITY e '<b xmlns=\"u\"/>'><!-- ' --><?p ]> ?>]><a [xmlns]=\"v\"/>",
       "in the document type"},
      {"<!DOCTYPE a SYSTEM \"<b xmlns='x'>\"><a xmlns=\"v\"/>",
       "<!DOCTYPE a SYSTEM \"<b xmlns='x'>\"><a [xmlns]=\"v\"/>", "in a system identifier"},
      {"</a xmlns=\"u\">", "</a xmlns=\"u\">", "in an end tag"},
      {"<a xmlns=\"u", "<a [xmlns]=\"u", "without closing quote"},
      {"<a b=\"u xmlns=\"v\"/>", "<a b=\"u xmlns=\"v\"/>", "inside a value that it ends"},
      {"<!-- xmlns=\"u\" <a xmlns=\"v\"/>", "<!-- xmlns=\"u\" <a xmlns=\"v\"/>",
       "in a comment without end"},
      {"<xmlns=\"u\"/>", "<xmlns=\"u\"/>", "as the name of a tag"},
      {"xmlns=\"u\"", "xmlns=\"u\"", "without any tag"},
  };
  for (const auto& row : rows) EXPECT_EQ(Marked(row.text), row.marked) << row.why;
}

}  // namespace
}  // namespace kx::core
