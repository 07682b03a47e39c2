// Documents as text and as bytes of their declared encoding.
#include "dom_test.h"
#include "platform/dom/document.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::dom {
namespace {

struct SaveCase {
  const char* why;
  const char* xml;
  const char* text;
  std::string bytes;
};

TEST(Document, SaveKeepsTheDeclaredEncoding) {
  const SaveCase rows[] = {
      {"without declaration UTF-8", "<a>\xC3\xA4</a>", "<a>\xC3\xA4</a>\r\n",
       "<a>\xC3\xA4</a>\r\n"},
      {"declared UTF-8", "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a>\xC3\xA4</a>",
       "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<a>\xC3\xA4</a>\r\n",
       "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<a>\xC3\xA4</a>\r\n"},
      {"windows-1252", "<?xml version=\"1.0\" encoding=\"windows-1252\"?><a>\xE2\x82\xAC</a>",
       "<?xml version=\"1.0\" encoding=\"windows-1252\"?>\r\n<a>\xE2\x82\xAC</a>\r\n",
       "<?xml version=\"1.0\" encoding=\"windows-1252\"?>\r\n<a>\x80</a>\r\n"},
      {"a character that the encoding lacks",
       "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><a b=\"\xE2\x82\xAC\xC3\xA4\">"
       "\xE2\x82\xAC\xF0\x9F\x98\x80</a>",
       "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\r\n<a b=\"\xE2\x82\xAC\xC3\xA4\">"
       "\xE2\x82\xAC\xF0\x9F\x98\x80</a>\r\n",
       "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\r\n<a b=\"&#8364;\xE4\">&#8364;&#128512;"
       "</a>\r\n"},
      {"markup beside such a character",
       "<?xml version=\"1.0\" encoding=\"us-ascii\"?><a b=\"&gt;\">\xC3\xA4<!--<x a='-->"
       "<![CDATA[<\"]]><?p \"?><c/>\xC3\xB6</a>",
       "<?xml version=\"1.0\" encoding=\"us-ascii\"?>\r\n<a b=\"&gt;\">\xC3\xA4<!--<x a='-->"
       "<![CDATA[<\"]]><?p \"?><c/>\xC3\xB6</a>\r\n",
       "<?xml version=\"1.0\" encoding=\"us-ascii\"?>\r\n<a b=\"&gt;\">&#228;<!--<x a='-->"
       "<![CDATA[<\"]]><?p \"?><c/>&#246;</a>\r\n"},
      {"UTF-16", "<?xml version=\"1.0\" encoding=\"UTF-16\"?><a/>",
       "<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n<a/>\r\n",
       [] {
         std::string bytes = "\xFF\xFE";
         for (const char c :
              std::string("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n<a/>\r\n")) {
           bytes += c;
           bytes += '\0';
         }
         return bytes;
       }()},
  };
  for (const SaveCase& row : rows) {
    SCOPED_TRACE(row.why);
    const Document document = Parsed(row.xml);
    EXPECT_EQ(document.SaveText(), row.text);
    EXPECT_EQ(document.SaveBytes(), row.bytes);
    const Document again = NewDomDocument();
    EXPECT_TRUE(again.LoadBytes(row.bytes)) << again.LastError().reason;
    EXPECT_EQ(again.SaveText(), row.text);
  }
}

TEST(Document, SaveRefusesWhatItsEncodingCannotSay) {
  const std::string declaration = "<?xml version='1.0' encoding='us-ascii'?>";
  const Raised expected = Fail("An invalid character was found in text content.");
  for (const char* root :
       {"<\xC3\xA4/>", "<a \xC3\xA4='1'/>", "<a><!--\xC3\xA4--></a>", "<a><?p \xC3\xA4?></a>",
        "<a><![CDATA[\xC3\xA4]]></a>", "<!--\xC3\xA4--><a/>"}) {
    const Document document = Parsed(declaration + root);
    EXPECT_EQ(RaisedBy([&] { return document.SaveBytes(); }), expected) << root;
  }
}

TEST(Document, SaveRefusesAnEncodingThatNobodyKnows) {
  const Document document = NewDomDocument();
  document.AsNode().AppendChild(document.CreateElement("a"));
  const Node declaration = document.CreateProcessingInstruction("xml", "version='1.0'");
  document.AsNode().InsertBefore(declaration, document.DocumentElement());
  EXPECT_EQ(document.SaveBytes(), "<?xml version=\"1.0\"?>\r\n<a/>\r\n");
  EXPECT_EQ(
      RaisedBy([&] { return declaration.SetText("version='1.0' encoding='windows-936'"), 0; }),
      Fail("System does not support the specified encoding."));
}

}  // namespace
}  // namespace kx::dom
