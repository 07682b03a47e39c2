// What the parser builds from text and from bytes. Failures stand in parse_error_test.cc, hostile
// input in parser_limits_test.cc.
#include "platform/dom/parser.h"

#include "platform/dom/cursor.h"
#include "platform/dom/dtd.h"
#include "platform/text/host_codec.h"
#include "support/tree_walk.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace kx::dom {
namespace {

// Dumps: an element is name[attributes](content), a text is 'text', a section is "text", a comment
// is !text!, an instruction ?target data?, an entity reference &name(content), a document type
// {name}. Line ends and tabs are escaped.

std::string Escaped(std::string_view text) {
  std::string out;
  for (const char c : text) {
    switch (c) {
      case '\n':
        out += "\\n";
        break;
      case '\r':
        out += "\\r";
        break;
      case '\t':
        out += "\\t";
        break;
      default:
        out += c;
    }
  }
  return out;
}

std::string AttributesOf(const Cursor& node) {
  std::string out;
  for (Cursor at = node.FirstAttribute(); at; at = at.Next()) {
    out += out.empty() ? "[" : " ";
    out += std::string(at.QualifiedName()) + "=" + Escaped(at.TextContent());
  }
  return out.empty() ? out : out + "]";
}

void Enter(const Cursor& node, std::string& out) {
  const std::string text = Escaped(node.OwnText());
  const std::string name(node.QualifiedName());
  if (!out.empty() && out.back() != '(') out += ' ';
  switch (node.Type()) {
    case NodeType::kElement:
      out += name + AttributesOf(node) + "(";
      break;
    case NodeType::kText:
      out += "'" + text + "'";
      break;
    case NodeType::kCData:
      out += "\"" + text + "\"";
      break;
    case NodeType::kComment:
      out += "!" + text + "!";
      break;
    case NodeType::kProcessingInstruction:
      out += "?" + name + AttributesOf(node) + (text.empty() ? "" : " ") + text + "?";
      break;
    case NodeType::kEntityReference:
      out += "&" + name + "(";
      break;
    case NodeType::kDocumentType:
      out += "{" + name + "}";
      break;
    default:
      out += "UNEXPECTED";
  }
}

std::string DumpOf(const DocumentData& document) {
  std::string out;
  test::WalkBelow(
      Cursor(&document, kDocumentNode), [&out](const Cursor& node) { Enter(node, out); },
      [&out](const Cursor& node) {
        const bool container = node.IsElement() || node.Type() == NodeType::kEntityReference;
        if (container) out += ")";
      });
  return out;
}

std::string DumpOfText(std::string_view text, const ParseOptions& options = {}) {
  DocumentData document(nullptr);
  ParseError error;
  if (!ParseText(document, text, options, error)) return "refused: " + error.reason;
  return DumpOf(document);
}

std::string DumpOfBytes(std::string_view bytes, const ParseOptions& options = {}) {
  DocumentData document(nullptr);
  ParseError error;
  if (!ParseBytes(document, bytes, options, error)) return "refused: " + error.reason;
  return DumpOf(document);
}

struct DumpCase {
  std::string_view text;
  std::string_view dump;
  const char* why;
};

template <std::size_t kCount>
void ExpectDumps(const DumpCase (&rows)[kCount], const ParseOptions& options = {}) {
  for (const DumpCase& row : rows) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(DumpOfText(row.text, options), row.dump) << row.text;
  }
}

constexpr DumpCase kNodeCases[] = {
    {"<a/>", "a()", "an element"},
    {"<a></a>", "a()", "an element with two tags"},
    {"<a >x</a >", "a('x')", "white space before the bracket"},
    {"<a b='1'\n\tc = \"2\"/>", "a[b=1 c=2]()", "attributes in the order of the text"},
    {"<a b=''/>", "a[b=]()", "an empty value"},
    {"<a b='\"' c=\"'\"/>", "a[b=\" c=']()", "the other quote inside"},
    {"<a b='>'/>", "a[b=>]()", "a closing bracket in a value"},
    {"<a><b/>x<c>y</c></a>", "a(b() 'x' c('y'))", "mixed content"},
    {"<a>x<!--c-->y</a>", "a('x' !c! 'y')", "a comment parts two texts"},
    {"<a><!----></a>", "a(!!)", "an empty comment"},
    {"<a><![CDATA[x]]></a>", "a(\"x\")", "a section is a node of its own"},
    {"<a>x<![CDATA[<&]]>y</a>", "a('x' \"<&\" 'y')", "markup in a section is text"},
    {"<a><![CDATA[]]></a>", "a(\"\")", "an empty section"},
    {"<a><![CDATA[]]]]><![CDATA[>]]></a>", "a(\"]]\" \">\")", "brackets in sections"},
    {"<a><?p?><?q  d ?></a>", "a(?p? ?q d ?)", "instructions; their data ends at the mark"},
    {"<a><?p ? > ?></a>", "a(?p ? > ?)", "a question mark in data"},
    {"<!--x--><?p d?><a/><!--y--><?q?>", "!x! ?p d? a() !y! ?q?", "around the root"},
    {" \n<a/>\n ", "a()", "white space around the root is no node"},
    {"<a> <b/> </a>", "a(' ' b() ' ')", "white space between elements is"},
    {"<a>]]</a>", "a(']]')", "brackets in text"},
    {"<a>]]&gt;</a>", "a(']]>')", "an escaped bracket after them"},
    {"<a>></a>", "a('>')", "a closing bracket in text"},
    {"<a>\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80</a>", "a('\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80')",
     "characters of every length"},
    {"<\xC3\xA9l\xC3\xA9ment \xCE\xB1='1'/>", "\xC3\xA9l\xC3\xA9ment[\xCE\xB1=1]()",
     "names beyond ASCII"},
    {"<\xF0\x90\x80\x80/>", "\xF0\x90\x80\x80()", "a name beyond the basic plane"},
    {"<_-.9\xC2\xB7/>", "_-.9\xC2\xB7()", "what may follow a name's first character"},
    {"<aaaaaaaaaaaaaaa/>", "aaaaaaaaaaaaaaa()", "a name of fifteen bytes"},
    {"<aaaaaaaaaaaaaaaa></aaaaaaaaaaaaaaaa>", "aaaaaaaaaaaaaaaa()", "a name of sixteen bytes"},
    {"<aaaaaaaaaaaaaaaaa></aaaaaaaaaaaaaaaaa>", "aaaaaaaaaaaaaaaaa()", "a name of seventeen bytes"},
    {"<a><a><a/></a><a/></a>", "a(a(a()) a())", "an element in one of its name"},
};

TEST(Parser, BuildsANodeForEverythingInTheText) { ExpectDumps(kNodeCases); }

constexpr DumpCase kTextCases[] = {
    {"<a>x\n\r\n\r\r\ny</a>", "a('x\\n\\n\\n\\ny')", "LF, CR LF, CR, CR LF are four"},
    {"<a b='v\r\na\rl\nu\te'/>", "a[b=v\\na\\nl\\nu\\te]()", "values are not made blanks"},
    {"<a><!--x\r\ny\rz--></a>", "a(!x\\ny\\nz!)", "in comments"},
    {"<a><![CDATA[x\r\ny\rz]]></a>", "a(\"x\\ny\\nz\")", "in sections"},
    {"<a><?p x\r\ny\rz?></a>", "a(?p x\\ny\\nz?)", "in instructions"},
    {"<a>&#13;&#10;&#9;</a>", "a('\\r\\n\\t')", "references are not folded"},
    {"<a b='&#13;&#10;&#9;'/>", "a[b=\\r\\n\\t]()", "nor in values"},
    {"<a>&lt;&gt;&amp;&quot;&apos;</a>", "a('<>&\"'')", "the five predefined entities"},
    {"<a b='&lt;&gt;&amp;&quot;&apos;'/>", "a[b=<>&\"']()", "in values"},
    {"<a>x&amp;lt;y</a>", "a('x&lt;y')", "what a reference gives is not read again"},
    {"<a>&#65;&#x42;&#x1F600;&#128512;</a>", "a('AB\xF0\x9F\x98\x80\xF0\x9F\x98\x80')",
     "references by number"},
    {"<a>&#0000000000065;</a>", "a('A')", "leading zeros"},
    {"<a>&#xd7FF;&#xE000;&#xFFFD;&#x10FFFF;</a>",
     "a('\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBD\xF4\x8F\xBF\xBF')", "the edges of what is allowed"},
    {"<a>x&amp;y<b/>&lt;</a>", "a('x&y' b() '<')", "one text up to the next tag"},
    {"<a>\x7F\xC2\x80</a>", "a('\x7F\xC2\x80')", "control characters beyond 0x1F are allowed"},
};

TEST(Parser, FoldsLineEndsAndReplacesReferences) { ExpectDumps(kTextCases); }

constexpr DumpCase kPrologCases[] = {
    {"<?xml version=\"1.0\"?><a/>", "?xml[version=1.0] version=\"1.0\"? a()",
     "the declaration is an instruction with attributes"},
    {"<?xml version='1.0' encoding='UTF-8' standalone='yes' ?><a/>",
     "?xml[version=1.0 encoding=UTF-8 standalone=yes] version='1.0' encoding='UTF-8' "
     "standalone='yes'? a()",
     "in the order of the text"},
    {"<?xml version='1.0' standalone='no'?><a/>",
     "?xml[version=1.0 standalone=no] version='1.0' standalone='no'? a()", "encoding left out"},
    {"<?xml\nversion = '1.0'\tencoding\n=\n'utf-8'?><a/>",
     "?xml[version=1.0 encoding=utf-8] version = '1.0'\\tencoding\\n=\\n'utf-8'? a()",
     "white space of any kind"},
    {"<?xml version='1.0' encoding='windows-1252'?><a>\xC3\xA9</a>",
     "?xml[version=1.0 encoding=windows-1252] version='1.0' encoding='windows-1252'? a('\xC3\xA9')",
     "text is not decoded again"},
    {"<?xml version='1.0' encoding='UTF-16'?><a/>",
     "?xml[version=1.0 encoding=UTF-16] version='1.0' encoding='UTF-16'? a()",
     "whatever width it declares"},
    {"<?xml-stylesheet href='x' encoding='nope'?><a/>",
     "?xml-stylesheet href='x' encoding='nope'? a()", "another name that begins with xml"},
    {"\xEF\xBB\xBF<a/>", "a()", "one leading byte-order mark is skipped"},
    {"\xEF\xBB\xBF<?xml version='1.0'?><a/>", "?xml[version=1.0] version='1.0'? a()",
     "also before the declaration"},
    {"\n<a/>", "a()", "white space in front, without declaration"},
    {"<!DOCTYPE a><a/>", "{a} a()", "a document type"},
    {"<!DOCTYPE a SYSTEM 's' ><a/>", "{a} a()", "with a system identifier"},
    {"<!DOCTYPE a PUBLIC \"p\" 's' []><a/>", "{a} a()", "with a public one, and a subset"},
    {"<!--x--><!DOCTYPE p:a [ ]><?q?><b/>", "!x! {p:a} ?q? b()",
     "its name need not be the root's without validation"},
};

TEST(Parser, ReadsTheProlog) { ExpectDumps(kPrologCases); }

constexpr DumpCase kDoctypeCases[] = {
    {"<!DOCTYPE a [<!ENTITY e 'x'>]><a>1&e;2</a>", "{a} a('1' &e('x') '2')",
     "an entity is a reference with its replacement below"},
    {"<!DOCTYPE a [<!ENTITY e 'x<b c=\"1\"/>y'>]><a>&e;</a>", "{a} a(&e('x' b[c=1]() 'y'))",
     "with markup"},
    {"<!DOCTYPE a [<!ENTITY e ''>]><a>&e;</a>", "{a} a(&e())", "an empty one"},
    {"<!DOCTYPE a [<!ENTITY e '&f;&f;'><!ENTITY f 'x'>]><a>&e;</a>", "{a} a(&e(&f('x') &f('x')))",
     "one in another, declared later"},
    {"<!DOCTYPE a [<!ENTITY e '&#38;lt;'>]><a>&e;</a>", "{a} a(&e('<'))",
     "characters are replaced in the declaration, entities in the text"},
    {"<!DOCTYPE a [<!ENTITY lt '&#38;#60;'>]><a>&lt;</a>", "{a} a('<')",
     "a predefined one may be declared and stays what it is"},
    {"<!DOCTYPE a [<!ENTITY e '1'><!ENTITY e '2'>]><a>&e;</a>", "{a} a(&e('1'))",
     "the first declaration counts"},
    {"<!DOCTYPE a [<!ENTITY e SYSTEM 's'>]><a>&e;</a>", "{a} a(&e())",
     "an external one is never fetched"},
    {"<!DOCTYPE a [<!ENTITY e 'x y'>]><a b='1&e;2'/>", "{a} a[b=1x y2]()", "in a value"},
    {"<!DOCTYPE a [<!ENTITY q '\"'>]><a b=\"&q;\"/>", "{a} a[b=\"]()",
     "a quote in an entity ends no value"},
    {"<!DOCTYPE a [<!ENTITY % p '<!ENTITY e \"x\">'>%p;]><a>&e;</a>", "{a} a(&e('x'))",
     "a parameter entity between declarations"},
    {"<!DOCTYPE a [<!ENTITY % p '&#37;q;'><!ENTITY % q '<!ENTITY e \"x\">'>%p;]><a>&e;</a>",
     "{a} a(&e('x'))", "one in another"},
    {"<!DOCTYPE a [<!ENTITY % p SYSTEM 's'>%p;<!ATTLIST a b CDATA 'd'>]><a/>", "{a} a()",
     "declarations after one that was not read do not count"},
    {"<?xml version='1.0' standalone='yes'?><!DOCTYPE a [<!ENTITY % p SYSTEM 's'>%p;<!ATTLIST a b "
     "CDATA 'd'>]><a/>",
     "?xml[version=1.0 standalone=yes] version='1.0' standalone='yes'? {a} a[b=d]()",
     "but do in a standalone document"},
    {"<!DOCTYPE a [<!ATTLIST a b CDATA 'd'>]><a/>", "{a} a[b=d]()", "a default"},
    {"<!DOCTYPE a [<!ATTLIST a b CDATA 'd'>]><a></a>", "{a} a[b=d]()",
     "on a start tag without attributes"},
    {"<!DOCTYPE a [<!ATTLIST a b CDATA 'd'>]><a c='1'/>", "{a} a[c=1 b=d]()",
     "after those in the text"},
    {"<!DOCTYPE a [<!ATTLIST a b CDATA 'd'>]><a b='1'/>", "{a} a[b=1]()", "not over one given"},
    {"<!DOCTYPE a [<!ATTLIST a b CDATA #FIXED 'd' c CDATA #IMPLIED d CDATA #REQUIRED>]><a/>",
     "{a} a[b=d]()", "a fixed value is a default, others are not"},
    {"<!DOCTYPE a [<!ATTLIST a b CDATA 'd'><!ATTLIST a b CDATA 'e' c CDATA 'f'>]><a/>",
     "{a} a[b=d c=f]()", "the first declaration of each counts"},
    {"<!DOCTYPE a [<!ENTITY e 'x'><!ATTLIST a b CDATA '&lt;&e;&#65;'>]><a/>", "{a} a[b=<xA]()",
     "references in a default"},
    {"<!DOCTYPE a [<!ATTLIST a xmlns CDATA 'u'>]><a/>", "{a} a[xmlns=u]()",
     "a default declaration of a namespace"},
    {"<!DOCTYPE a [<!ELEMENT a ((b|c)*,(d,e?)+)><!ELEMENT b (#PCDATA|c)*><!ELEMENT c EMPTY>\n"
     "<!ELEMENT d ANY><!NOTATION n SYSTEM 's'><!NOTATION m PUBLIC 'p'><!--c--><?p d?>\n"
     "<!ATTLIST a i ID #IMPLIED r IDREF #IMPLIED s IDREFS #IMPLIED n ENTITY #IMPLIED m ENTITIES\n"
     "#IMPLIED t NMTOKEN #IMPLIED u NMTOKENS #IMPLIED x (y|z) #IMPLIED o NOTATION (n|m) "
     "#IMPLIED>]><a/>",
     "{a} a()", "every kind of declaration"},
};

TEST(Parser, ReadsTheInternalSubset) { ExpectDumps(kDoctypeCases); }

constexpr DumpCase kNormalisedCases[] = {
    {"<a b=' x\n\ty '/>", "a[b= x  y ]()", "white space becomes blanks"},
    {"<a b='x\r\ny'/>", "a[b=x y]()", "a line end becomes one"},
    {"<a b='&#10;&#9;'/>", "a[b=\\n\\t]()", "not so what a reference gives"},
    {"<!DOCTYPE a [<!ATTLIST a b NMTOKENS #IMPLIED c NMTOKENS ' 1  2 '>]><a b=' x \n y '/>",
     "{a} a[b=x y c=1 2]()", "tokens have single blanks between"},
    {"<!DOCTYPE a [<!ENTITY e ' x\n'>]><a b='&e;'/>", "{a} a[b= x ]()", "in entities too"},
};

TEST(Parser, NormalisesValuesInItsStrictModeOnly) {
  ParseOptions options;
  options.attributeValues = AttributeValues::kNormalised;
  ExpectDumps(kNormalisedCases, options);
}

TEST(Parser, SkipsUndeclaredEntitiesInItsStrictModeOnly) {
  ParseOptions strict;
  strict.undeclaredEntities = UndeclaredEntities::kSkipWhereXmlAllows;
  strict.attributeValues = AttributeValues::kNormalised;
  constexpr std::string_view kSubset = "<!DOCTYPE a SYSTEM 's'><a b='x&e;y'>&e;</a>";
  EXPECT_EQ(DumpOfText(kSubset, strict), "{a} a[b=xy](&e())");
  EXPECT_EQ(DumpOfText(kSubset), "refused: Reference to undefined entity 'e'.\r\n");
  const std::string standalone = "<?xml version='1.0' standalone='yes'?>" + std::string(kSubset);
  for (const std::string_view text : {std::string_view(standalone), std::string_view("<a>&e;</a>"),
                                      std::string_view("<!DOCTYPE a []><a>&e;</a>")}) {
    EXPECT_EQ(DumpOfText(text, strict), "refused: Reference to undefined entity 'e'.\r\n") << text;
  }
}

constexpr DumpCase kWhiteSpaceCases[] = {
    {"<a> <b/>\n<c> </c>\t</a>", "a(b() c())", "white space alone is dropped"},
    {"<a> x <b/> y</a>", "a(' x ' b() ' y')", "with other text it stays"},
    {"<a xml:space='preserve'> <b> <c/></b> </a>", "a[xml:space=preserve](' ' b(' ' c()) ' ')",
     "xml:space keeps it, below too"},
    {"<a xml:space='preserve'> <b xml:space='default'> <c/></b> </a>",
     "a[xml:space=preserve](' ' b[xml:space=default](c()) ' ')", "until it is the default again"},
    {"<a>&#32;</a>", "a(' ')", "a reference is not white space of the text"},
    {"<a><![CDATA[ ]]></a>", "a(\" \")", "nor is a section"},
    {"<a b=' '/>", "a[b= ]()", "values are never touched"},
};

TEST(Parser, DropsWhiteSpaceBetweenElementsWhenToldTo) {
  ParseOptions options;
  options.whiteSpace = WhiteSpace::kDropBetweenElements;
  ExpectDumps(kWhiteSpaceCases, options);
}

// Names ------------------------------------------------------------------------------------------

struct NameCase {
  std::string_view text;
  std::string_view uri;
  std::string_view local;
  std::string_view prefix;
  const char* why;
};

constexpr NameCase kElementNames[] = {
    {"<x/>", "", "x", "", "no namespace"},
    {"<x xmlns='u'/>", "u", "x", "", "a default namespace"},
    {"<p:x xmlns:p='u'/>", "u", "x", "p", "a prefix"},
    {"<x xmlns:p='u'/>", "", "x", "", "a declared prefix that it does not have"},
    {"<x xmlns=''/>", "", "x", "", "an empty default namespace"},
    {"<p:x p:a='1' xmlns:p='u'/>", "u", "x", "p", "the declaration may come last"},
    {"<xml:x/>", "http://www.w3.org/XML/1998/namespace", "x", "xml", "the prefix xml"},
    {"<x xmlns='&#117;&amp;v'/>", "u&v", "x", "", "references in the URI"},
};

TEST(Parser, BindsElementsToTheirNamespaces) {
  for (const NameCase& row : kElementNames) {
    SCOPED_TRACE(row.why);
    DocumentData document(nullptr);
    ParseError error;
    ASSERT_TRUE(ParseText(document, row.text, {}, error)) << error.reason;
    const Cursor root(&document, document.DocumentElement());
    EXPECT_EQ(root.NamespaceUri(), row.uri);
    EXPECT_EQ(root.LocalName(), row.local);
    EXPECT_EQ(root.Prefix(), row.prefix);
  }
}

constexpr NameCase kAttributeNames[] = {
    {"<x d='1' xmlns='u'/>", "", "d", "", "the default namespace is not for attributes"},
    {"<x p:d='1' xmlns:p='u'/>", "u", "d", "p", "a prefix"},
    {"<x xml:lang='en'/>", "http://www.w3.org/XML/1998/namespace", "lang", "xml", "the prefix xml"},
};

TEST(Parser, BindsAttributesToTheirNamespaces) {
  for (const NameCase& row : kAttributeNames) {
    SCOPED_TRACE(row.why);
    DocumentData document(nullptr);
    ParseError error;
    ASSERT_TRUE(ParseText(document, row.text, {}, error)) << error.reason;
    const Cursor attribute = Cursor(&document, document.DocumentElement()).FirstAttribute();
    EXPECT_EQ(attribute.NamespaceUri(), row.uri);
    EXPECT_EQ(attribute.LocalName(), row.local);
    EXPECT_EQ(attribute.Prefix(), row.prefix);
  }
}

TEST(Parser, EndsADeclarationWithItsElement) {
  DocumentData document(nullptr);
  ParseError error;
  ASSERT_TRUE(ParseText(document,
                        "<a xmlns='u' xmlns:p='1'><b xmlns='v' xmlns:p='2'><p:c/></b>"
                        "<d xmlns=''><e/></d><p:f/><g/></a>",
                        {}, error));
  std::string uris;
  const Cursor root(&document, document.DocumentElement());
  test::WalkBelow(
      Cursor(&document, kDocumentNode),
      [&uris](const Cursor& node) {
        uris += std::string(node.LocalName()) + "=" + std::string(node.NamespaceUri()) + " ";
      },
      [](const Cursor&) {});
  EXPECT_EQ(uris, "a=u b=v c=2 d= e= f=1 g=u ");
}

TEST(Parser, ReadsAnEntityInTheNamespacesAroundItsReference) {
  DocumentData document(nullptr);
  ParseError error;
  ASSERT_TRUE(ParseText(document,
                        "<!DOCTYPE a [<!ENTITY e '<b/>'>]>"
                        "<a xmlns='u'>&e;<c xmlns='v'>&e;</c></a>",
                        {}, error));
  std::string uris;
  test::WalkBelow(
      Cursor(&document, document.DocumentElement()),
      [&uris](const Cursor& node) {
        if (node.IsElement()) uris += std::string(node.NamespaceUri()) + " ";
      },
      [](const Cursor&) {});
  EXPECT_EQ(uris, "u v v ");
}

TEST(Parser, RefusesOneExpandedNameTwiceInATag) {
  EXPECT_EQ(DumpOfText("<a xmlns:p='u' xmlns:q='u' p:b='1' q:b='2'/>"),
            "refused: Duplicate attribute.\r\n");
  EXPECT_EQ(DumpOfText("<a xmlns:p='u' xmlns:q='v' p:b='1' q:b='2' b='3'/>"),
            "a[xmlns:p=u xmlns:q=v p:b=1 q:b=2 b=3]()");
}

// Flags and records ------------------------------------------------------------------------------

TEST(Parser, RemembersHowAnElementWasWritten) {
  for (const auto& [text, full] : {std::pair{"<a/>", false},
                                   {"<a></a>", true},
                                   {"<a>x</a>", true},
                                   {"<a b='1'/>", false},
                                   {"<a b='1'></a>", true}}) {
    DocumentData document(nullptr);
    ParseError error;
    ASSERT_TRUE(ParseText(document, text, {}, error));
    const NodeRecord& root = document.Record(document.DocumentElement());
    EXPECT_EQ((root.flags & kFullForm) != 0, full) << text;
  }
}

TEST(Parser, MarksDefaultsAndIdentifiers) {
  DocumentData document(nullptr);
  ParseError error;
  ASSERT_TRUE(ParseText(document,
                        "<!DOCTYPE a [<!ATTLIST a i ID #IMPLIED d CDATA 'x'>]><a i='1' c='2'/>", {},
                        error));
  std::string flags;
  for (Cursor at = Cursor(&document, document.DocumentElement()).FirstAttribute(); at;
       at = at.Next()) {
    const unsigned bits = document.Record(at.Id()).flags;
    flags += std::string(at.QualifiedName()) + ((bits & kIdAttribute) != 0 ? " identifier" : "") +
             ((bits & kDefaulted) != 0 ? " default;" : ";");
  }
  EXPECT_EQ(flags, "i identifier;c;d default;");
}

TEST(Parser, KeepsWhatTheDocumentTypeDeclares) {
  DocumentData document(nullptr);
  ParseError error;
  ASSERT_TRUE(ParseText(document,
                        "<!DOCTYPE a PUBLIC 'p' 's' [<!NOTATION n PUBLIC 'np'><!ENTITY u SYSTEM "
                        "'us' NDATA n><!ENTITY e 'x'><?q d ?>]><a/>",
                        {}, error));
  const Dtd* dtd = document.DocumentType();
  ASSERT_NE(dtd, nullptr);
  EXPECT_EQ(dtd->name, "a");
  EXPECT_EQ(dtd->publicId, "p");
  EXPECT_EQ(dtd->systemId, "s");
  EXPECT_TRUE(dtd->hasExternalSubset);
  ASSERT_EQ(dtd->notations.size(), 1U);
  EXPECT_EQ(dtd->notations[0].publicId, "np");
  EXPECT_FALSE(dtd->notations[0].hasSystemId);
  EXPECT_EQ(dtd->entityOrder, (std::vector<std::string>{"u", "e"}));
  EXPECT_EQ(dtd->entities.at("u").notation, "n");
  EXPECT_EQ(dtd->entities.at("e").replacement, "x");
  ASSERT_EQ(dtd->instructions.size(), 1U);
  EXPECT_EQ(dtd->instructions[0].target, "q");
  EXPECT_EQ(dtd->instructions[0].data, "d ");
}

TEST(Parser, GivesNodesInDocumentOrder) {
  DocumentData document(nullptr);
  ParseError error;
  ASSERT_TRUE(ParseText(document, "<a b='1'><c d='2'>x</c>y<e/></a><!--z-->", {}, error));
  EXPECT_TRUE(document.IdsFollowDocumentOrder());
  NodeId before = 0;
  test::WalkBelow(
      Cursor(&document, kDocumentNode),
      [&before](const Cursor& node) {
        if (IsInlineTextId(node.Id())) return;
        EXPECT_GT(node.Id(), before);
        before = node.Id();
      },
      [](const Cursor&) {});
}

// Bytes ------------------------------------------------------------------------------------------

using namespace std::string_view_literals;

struct BytesCase {
  std::string_view bytes;
  std::string_view dump;
  const char* why;
};

constexpr std::string_view kLatin1Dump =
    "?xml[version=1.0 encoding=iso-8859-1] version='1.0' encoding='iso-8859-1'? a('\xC3\xA9')";

constexpr BytesCase kEncodings[] = {
    {"<a>\xC3\xA9</a>", "a('\xC3\xA9')", "UTF-8 without saying so"},
    {"\xEF\xBB\xBF<a>\xC3\xA9</a>", "a('\xC3\xA9')", "UTF-8 with a mark"},
    {"\xEF\xBB\xBF<?xml version='1.0' encoding='Utf-8'?><a/>",
     "?xml[version=1.0 encoding=Utf-8] version='1.0' encoding='Utf-8'? a()",
     "the mark and the name agree"},
    {"\xFF\xFE<\0a\0>\0\xE9\0\x3D\xD8\0\xDE<\0/\0a\0>\0"sv, "a('\xC3\xA9\xF0\x9F\x98\x80')",
     "UTF-16, low byte first"},
    {"\xFE\xFF\0<\0a\0>\0\xE9\xD8\x3D\xDE\0\0<\0/\0a\0>"sv, "a('\xC3\xA9\xF0\x9F\x98\x80')",
     "UTF-16, high byte first"},
    {"<?xml version='1.0' encoding='iso-8859-1'?><a>\xE9</a>", kLatin1Dump, "ISO-8859-1"},
    {"<?xml version='1.0' encoding='windows-1252'?><a>\x80\xE9</a>",
     "?xml[version=1.0 encoding=windows-1252] version='1.0' encoding='windows-1252'? "
     "a('\xE2\x82\xAC\xC3\xA9')",
     "windows-1252"},
    {"<?xml version='1.0' encoding='WINDOWS-1251'?><a>\xE6</a>",
     "?xml[version=1.0 encoding=WINDOWS-1251] version='1.0' encoding='WINDOWS-1251'? "
     "a('\xD0\xB6')",
     "windows-1251, in capitals"},
    {"<?xml version='1.0' encoding='us-ascii'?><a>x</a>",
     "?xml[version=1.0 encoding=us-ascii] version='1.0' encoding='us-ascii'? a('x')", "US-ASCII"},
    {"<?xml-stylesheet encoding='nope'?><a/>", "?xml-stylesheet encoding='nope'? a()",
     "an instruction declares no encoding"},
    {"<a>\r\n\xC3\xA9\r</a>", "a('\\n\xC3\xA9\\n')", "line ends are folded"},
};

TEST(Parser, DecodesBytes) {
  for (const BytesCase& row : kEncodings) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(DumpOfBytes(row.bytes), row.dump);
  }
}

TEST(Parser, DecodesUtf16WhateverUtf16NameIsDeclared) {
  for (const std::string_view name : {"UTF-16"sv, "utf-16"sv}) {
    std::string bytes = "\xFF\xFE";
    const std::string text = "<?xml version='1.0' encoding='" + std::string(name) + "'?><a/>";
    for (const char c : text) {
      bytes += c;
      bytes += '\0';
    }
    EXPECT_TRUE(DumpOfBytes(bytes).ends_with(" a()")) << DumpOfBytes(bytes);
  }
}

constexpr BytesCase kRefusedBytes[] = {
    {"<\0a\0/\0>\0"sv, "refused: An invalid character was found in text content.\r\n",
     "UTF-16 without a mark"},
    {"<?xml version='1.0' encoding='UTF-16'?><a/>",
     "refused: Switch from current encoding to specified encoding not supported.\r\n",
     "bytes that are plainly not UTF-16"},
    {"\xEF\xBB\xBF<?xml version='1.0' encoding='iso-8859-1'?><a/>",
     "refused: Switch from current encoding to specified encoding not supported.\r\n",
     "a mark and another encoding"},
    {"<?xml version='1.0' encoding='us-ascii'?><a>\xE9</a>",
     "refused: An invalid character was found in text content.\r\n",
     "a byte that the encoding does not have"},
    {"<?xml version='1.0' encoding='windows-936'?><a/>",
     "refused: System does not support the specified encoding.\r\n", "no name of anything"},
    {"\xFF\xFE<\0a\0>\0\0\xD8<\0/\0a\0>\0"sv,
     "refused: An invalid character was found in text content.\r\n",
     "half of a surrogate pair in UTF-16"},
    {"\xEF\xBB\xBF\xEF\xBB\xBF<a/>", "refused: Invalid at the top level of the document.\r\n",
     "a second mark is text"},
    {"", "refused: XML document must have a top level element.\r\n", "nothing"},
    {"\xEF\xBB\xBF", "refused: XML document must have a top level element.\r\n",
     "nothing but a mark"},
    {"\xFF\xFE", "refused: XML document must have a top level element.\r\n",
     "nothing but a mark of UTF-16"},
};

TEST(Parser, RefusesBytesThatContradictTheirEncoding) {
  for (const BytesCase& row : kRefusedBytes) {
    SCOPED_TRACE(row.why);
    EXPECT_EQ(DumpOfBytes(row.bytes), row.dump);
  }
}

// An encoding that only the host knows: every byte is the letter after it.
class ShiftedCodec final : public text::HostCodec {
 public:
  [[nodiscard]] bool Knows(std::string_view name) const override { return name == "x-shifted"; }
  [[nodiscard]] text::HostConversion ToUtf8(std::string_view /*name*/,
                                            std::string_view bytes) const override {
    text::HostConversion result;
    for (const char c : bytes) result.output += c == 'y' ? 'z' : c;
    return result;
  }
  [[nodiscard]] text::HostConversion FromUtf8(std::string_view /*name*/,
                                              std::string_view text) const override {
    return {std::string(text), std::nullopt};
  }
};

TEST(Parser, AsksTheHostForEncodingsThatItHasNoTableOf) {
  const ShiftedCodec codec;
  ParseOptions options;
  options.codec = &codec;
  constexpr std::string_view kBytes = "<?xml version='1.0' encoding='x-shifted'?><a>xy</a>";
  EXPECT_TRUE(DumpOfBytes(kBytes, options).ends_with("a('xz')")) << DumpOfBytes(kBytes, options);
  EXPECT_EQ(DumpOfBytes(kBytes), "refused: System does not support the specified encoding.\r\n");
}

TEST(Parser, AnEmptyValueBesideADocumentTypeHasNoTextChild) {
  for (const std::string_view text :
       {"<!DOCTYPE a><b xx='1' c=''/>", "<!DOCTYPE a [<!ATTLIST b c CDATA ''>]><b xx='1'/>"}) {
    DocumentData data(nullptr);
    ParseError error;
    ASSERT_TRUE(ParseText(data, text, {}, error)) << text;
    const Cursor value = Cursor(&data, data.DocumentElement()).FindAttribute("c");
    ASSERT_TRUE(value) << text;
    EXPECT_FALSE(value.FirstChild()) << text;
    EXPECT_FALSE(value.LastChild()) << text;
    EXPECT_EQ(value.TextContent(), "") << text;
  }
}

}  // namespace
}  // namespace kx::dom
