#include "dom_test.h"
#include "platform/dom/node.h"
#include "platform/dom/node_list.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::dom {
namespace {

const char* const kOffsetText =
    "The offset must be 0 or a positive number that is not greater than the number of characters "
    "in the data.";

struct SubstringCase {
  const char* why;
  const char* data;
  int offset;
  int count;
  const char* result;  // null: refused
};
constexpr SubstringCase kSubstrings[] = {
    {"the start", "abcdef", 0, 4, "abcd"},
    {"the middle", "abcdef", 2, 3, "cde"},
    {"fewer at the end", "abcdef", 4, 4, "ef"},
    {"nothing at the end", "abcdef", 6, 1, ""},
    {"a count of nothing", "abcdef", 2, 0, ""},
    {"the largest count", "abcdef", 1, INT32_MAX, "bcdef"},
    {"a negative offset", "abcdef", -1, 4, nullptr},
    {"an offset beyond the end", "abcdef", 7, 1, nullptr},
    {"a negative count", "abcdef", 2, -1, nullptr},
    {"units of UTF-16 count", "\xF0\x9F\x98\x80xy", 2, 1, "x"},
    {"characters of two bytes are one unit", "\xC3\xA4\xC3\xB6z", 1, 2, "\xC3\xB6z"},
    {"half a pair is no character", "\xF0\x9F\x98\x80x", 1, 2, "\xEF\xBF\xBDx"},
};

TEST(SubstringData, CountsUtf16Units) {
  const Document document = Parsed("<a/>");
  for (const SubstringCase& row : kSubstrings) {
    SCOPED_TRACE(row.why);
    const Node text = document.CreateTextNode(row.data);
    const Node comment = document.CreateComment(row.data);
    std::string result;
    const Raised expected = row.result == nullptr ? BadArgument(kOffsetText) : Raised();
    EXPECT_EQ(RaisedBy([&] { return result = text.SubstringData(row.offset, row.count); }),
              expected);
    if (row.result != nullptr) {
      EXPECT_EQ(result, row.result);
    }
    EXPECT_EQ(RaisedBy([&] { return comment.SubstringData(row.offset, row.count); }), expected);
  }
}

TEST(DataLength, CountsUtf16Units) {
  const Document document = Parsed("<a/>");
  EXPECT_EQ(document.CreateTextNode("a\xC3\xA4\xF0\x9F\x98\x80").DataLength(), 4);
  EXPECT_EQ(document.CreateComment("").DataLength(), 0);
  EXPECT_EQ(RaisedBy([&] { return document.DocumentElement().DataLength(); }),
            Fail("This operation can not be performed with a Node of type ELEMENT."));
  EXPECT_EQ(RaisedBy([&] { return document.CreateProcessingInstruction("p", "d").DataLength(); }),
            Fail("This operation can not be performed with a Node of type PROCESSINGINSTRUCTION."));
}

struct EditCase {
  const char* why;
  int offset;
  int count;
  const char* text;
  const char* after;  // of "abcdef"; null: refused
};
constexpr EditCase kReplacements[] = {
    {"the start", 0, 2, "X", "Xcdef"},           {"the middle", 2, 2, "XYZ", "abXYZef"},
    {"more than there is", 4, 99, "X", "abcdX"}, {"all", 0, 6, "", ""},
    {"at the end", 6, 0, "X", "abcdefX"},        {"nothing", 3, 0, "", "abcdef"},
    {"a negative offset", -1, 1, "X", nullptr},  {"an offset beyond the end", 7, 0, "X", nullptr},
    {"a negative count", 0, -1, "X", nullptr},
};

TEST(ReplaceData, ReplacesUnitsAndRefusesBadPlaces) {
  const Document document = Parsed("<a/>");
  for (const EditCase& row : kReplacements) {
    SCOPED_TRACE(row.why);
    const Node text = document.CreateTextNode("abcdef");
    const Raised expected = row.after == nullptr ? BadArgument(kOffsetText) : Raised();
    EXPECT_EQ(RaisedBy([&] { return text.ReplaceData(row.offset, row.count, row.text), 0; }),
              expected);
    EXPECT_EQ(text.NodeValue(), row.after == nullptr ? "abcdef" : row.after);
  }
}

TEST(ReplaceData, RefusesToCutACharacterInTwo) {
  const Document document = Parsed("<a/>");
  const std::string data = "\xF0\x9F\x98\x80x";
  const Node text = document.CreateTextNode(data);
  const Raised expected = Fail("An invalid character was found in text content.");
  EXPECT_EQ(RaisedBy([&] { return text.DeleteData(1, 1), 0; }), expected);
  EXPECT_EQ(RaisedBy([&] { return text.DeleteData(0, 1), 0; }), expected);
  EXPECT_EQ(RaisedBy([&] { return text.InsertData(1, "y"), 0; }), expected);
  EXPECT_EQ(RaisedBy([&] { return text.SplitText(1); }), expected);
  EXPECT_EQ(text.NodeValue(), data);
  text.DeleteData(0, 2);
  EXPECT_EQ(text.NodeValue(), "x");
}

TEST(InsertAndDeleteData, WorkInPlace) {
  const Document document = Parsed("<a>bc</a>");
  const Node text = document.DocumentElement().FirstChild();
  text.InsertData(0, "a");
  text.InsertData(3, "d");
  text.AppendData("ef");
  EXPECT_EQ(XmlOf(document), "<a>abcdef</a>");
  text.DeleteData(1, 2);
  text.DeleteData(3, 99);
  EXPECT_EQ(XmlOf(document), "<a>ade</a>");
  text.DeleteData(0, 0);
  text.InsertData(-5, "");
  text.AppendData("");
  EXPECT_EQ(XmlOf(document), "<a>ade</a>");
  EXPECT_EQ(RaisedBy([&] { return text.DeleteData(1000, 4), 0; }), BadArgument(kOffsetText));
  EXPECT_EQ(RaisedBy([&] { return text.InsertData(1000, "x"), 0; }), BadArgument(kOffsetText));
}

TEST(AppendData, TakesItsOwnText) {
  const Document document = Parsed("<a>xy</a>");
  const Node text = document.DocumentElement().FirstChild();
  text.AppendData(text.At().OwnText());
  text.InsertData(1, text.At().OwnText());
  EXPECT_EQ(text.NodeValue(), "xxyxyyxy");
}

struct SplitCase {
  const char* why;
  int offset;
  const char* xml;
};
constexpr SplitCase kSplits[] = {
    {"the middle", 2, "<a>ab|cd<b/></a>"},
    {"the start", 0, "<a>|abcd<b/></a>"},
};

TEST(SplitText, PutsTheRestBehind) {
  for (const SplitCase& row : kSplits) {
    SCOPED_TRACE(row.why);
    const Document document = Parsed("<a>abcd<b/></a>");
    const Node root = document.DocumentElement();
    const Node rest = root.FirstChild().SplitText(row.offset);
    EXPECT_EQ(rest.PreviousSibling(), root.FirstChild());
    EXPECT_EQ(rest.NextSibling(), root.LastChild());
    root.InsertBefore(document.CreateTextNode("|"), rest);
    EXPECT_EQ(XmlOf(document), row.xml);
  }
}

TEST(SplitText, AtTheEndMakesNothing) {
  const Document document = Parsed("<a>abcd</a>");
  EXPECT_FALSE(document.DocumentElement().FirstChild().SplitText(4));
  EXPECT_EQ(document.DocumentElement().ChildNodes().Length(), 1);
}

TEST(SplitText, KeepsTheKindAndRefusesBadPlaces) {
  const Document document = Parsed("<a><![CDATA[abcd]]><!--abcd--></a>");
  const Node section = document.DocumentElement().FirstChild();
  EXPECT_EQ(RaisedBy([&] { return section.SplitText(-1); }), BadArgument(kOffsetText));
  EXPECT_EQ(RaisedBy([&] { return section.SplitText(5); }), BadArgument(kOffsetText));
  EXPECT_EQ(section.SplitText(1).TypeName(), "cdatasection");
  EXPECT_EQ(RaisedBy([&] { return document.DocumentElement().LastChild().SplitText(1); }),
            Fail("This operation can not be performed with a Node of type COMMENT."));
  EXPECT_EQ(XmlOf(document), "<a><![CDATA[a]]><![CDATA[bcd]]><!--abcd--></a>");
  const Node loose = document.CreateTextNode("xy");
  EXPECT_EQ(loose.SplitText(1).NodeValue(), "y");
  EXPECT_EQ(loose.NodeValue(), "x");
}

}  // namespace
}  // namespace kx::dom
