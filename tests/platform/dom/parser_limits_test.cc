// Hostile input: the parser answers with a tree or a clear failure, in memory that the bounds of
// its options set, with a stack that does not grow with the document, in linear work. What would be
// quadratic work runs into the time limit of the test run.
#include "platform/dom/cursor.h"
#include "platform/dom/parser.h"
#include "support/tree_walk.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace kx::dom {
namespace {

constexpr std::size_t kMegabyte = std::size_t{1} << 20U;

std::string Repeat(std::string_view text, std::size_t count) {
  std::string out;
  out.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; ++i) out += text;
  return out;
}

// The pattern for 0, 1, 2, ..., with the number in the place of each '#'.
std::string Series(std::string_view pattern, int count) {
  std::string out;
  for (int i = 0; i < count; ++i) {
    const std::string number = std::to_string(i);
    for (const char c : pattern) {
      if (c == '#') {
        out += number;
      } else {
        out += c;
      }
    }
  }
  return out;
}

struct Result {
  bool accepted = false;
  ParseError error;
  std::size_t bytes = 0;  // reserved by the document afterwards
  [[nodiscard]] std::uint32_t Code() const { return static_cast<std::uint32_t>(error.code); }
};

Result Parse(std::string_view text, const ParseOptions& options = {}) {
  DocumentData document(nullptr);
  Result result;
  result.accepted = ParseText(document, text, options, result.error);
  result.bytes = document.Counters().totalBytes;
  return result;
}

void ExpectClearFailure(const Result& result, std::string_view text) {
  EXPECT_FALSE(result.accepted) << text;
  EXPECT_NE(result.Code(), 0U) << text;
  EXPECT_GT(result.error.reason.size(), 2U) << text;
  EXPECT_TRUE(result.error.reason.ends_with("\r\n")) << text;
}

// Truncation -------------------------------------------------------------------------------------

// One of everything, ended by the last byte that it needs.
constexpr std::string_view kSample =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone='yes'?>\r\n"
    "<!-- a comment -->\n<?target data?>\n"
    "<!DOCTYPE root PUBLIC \"-//p//\" 's.dtd' [\n"
    "<!ELEMENT root (a|(b,c)*)+><!ELEMENT a (#PCDATA|b)*>\n"
    "<!ATTLIST root i ID #IMPLIED d CDATA 'x&lt;' e (one|two) \"two\" n NOTATION (m) #IMPLIED>\n"
    "<!ENTITY e 'x<a>y</a>&#65;'><!ENTITY s SYSTEM \"s.xml\"><!ENTITY u SYSTEM 'u' NDATA m>\n"
    "<!ENTITY % p '<!ENTITY f \"z\">'>%p;<!NOTATION m PUBLIC 'm'><?q d?><!-- c -->\n"
    "] >\n"
    "<root xmlns='urn:u' xmlns:p=\"urn:p\" p:a='1' b=\"&quot;&#x41;&f;\">\n"
    "text &amp; &e; &s; \xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80 ]] >\r\n"
    "<![CDATA[ <section> ]] ]]><p:b c='d'/><aVeryLongElementNameOfThirtyTwoBytes>\n"
    "</aVeryLongElementNameOfThirtyTwoBytes ><?r?><!---->\n"
    "</root>";

TEST(ParserLimits, RefusesTheSampleCutAtAnyByte) {
  ASSERT_TRUE(Parse(kSample).accepted) << Parse(kSample).error.reason;
  for (std::size_t length = 0; length < kSample.size(); ++length) {
    const std::string cut(kSample.substr(0, length));  // a copy: reading past it is found
    ExpectClearFailure(Parse(cut), cut);
    DocumentData document(nullptr);
    ParseError error;
    EXPECT_FALSE(ParseBytes(document, cut, {}, error));
    const bool noRoot = error.code == static_cast<std::int32_t>(0xC00CE558);
    EXPECT_EQ(error.line == 0, noRoot) << cut;
  }
}

TEST(ParserLimits, RefusesUtf16CutAtAnyByte) {
  std::string bytes = "\xFF\xFE";
  for (const char c : std::string_view("<?xml version='1.0'?><a b='1'>x</a>")) {
    bytes += c;
    bytes += '\0';
  }
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    DocumentData document(nullptr);
    ParseError error;
    EXPECT_FALSE(ParseBytes(document, bytes.substr(0, length), {}, error)) << length;
    EXPECT_NE(error.code, 0);
  }
}

TEST(ParserLimits, RefusesANulByteAnywhere) {
  for (std::size_t at = 0; at <= kSample.size(); ++at) {
    std::string text(kSample);
    text.insert(at, 1, '\0');
    const Result result = Parse(text);
    ExpectClearFailure(result, text.substr(0, at));
    EXPECT_GE(result.error.filePos, 0);
  }
  const Result result = Parse(std::string_view("<a>x\0y</a>", 10));
  EXPECT_EQ(result.Code(), 0xC00CE508);
  EXPECT_EQ(result.error.linePos, 5);
}

TEST(ParserLimits, SurvivesEveryByteInEveryPlace) {
  constexpr std::string_view kText =
      "<?xml version='1.0'?><!DOCTYPE a [<!ENTITY e 'x'>]><a b='1'>&e;<!--c--><![CDATA[d]]></a>";
  for (std::size_t at = 0; at < kText.size(); ++at) {
    for (int byte = 0; byte < 256; ++byte) {
      std::string text(kText);
      text[at] = static_cast<char>(byte);
      const Result result = Parse(text);
      if (!result.accepted) ExpectClearFailure(result, text);
    }
  }
}

// Amplification ----------------------------------------------------------------------------------

std::string Laughs(int levels) {
  std::string text = "<!DOCTYPE a [<!ENTITY l0 'lol'>";
  for (int i = 1; i <= levels; ++i) {
    const std::string inner = "&l" + std::to_string(i - 1) + ";";
    text += "<!ENTITY l" + std::to_string(i) + " '" + Repeat(inner, 10) + "'>";
  }
  return text + "]>";
}

TEST(ParserLimits, StopsABillionLaughs) {
  for (const char* content : {"<a>&l9;</a>", "<a b='&l9;'/>", "<a><b c='&l9;'/></a>"}) {
    const Result result = Parse(Laughs(9) + content);
    ExpectClearFailure(result, content);
    EXPECT_EQ(result.Code(), 0x8007000E) << result.error.reason;
    EXPECT_EQ(result.error.line, 1);
    EXPECT_LT(result.bytes, 256 * kMegabyte);
  }
}

TEST(ParserLimits, StopsABillionLaughsInADefaultAndAmongParameterEntities) {
  const std::string inDefault = "<!DOCTYPE a [<!ENTITY l0 '" + Repeat("x", 100'000) +
                                "'><!ENTITY l1 '" + Repeat("&l0;", 1000) +
                                "'><!ATTLIST a b CDATA '&l1;'>]><a/>";
  EXPECT_EQ(Parse(inDefault).Code(), 0x8007000E);
  std::string parameters = "<!DOCTYPE a [<!ENTITY % p0 '<!--" + Repeat("x", 100'000) + "-->'>";
  for (int i = 1; i <= 5; ++i) {
    const std::string inner = "&#37;p" + std::to_string(i - 1) + ";";
    parameters += "<!ENTITY % p" + std::to_string(i) + " '" + Repeat(inner, 10) + "'>";
  }
  EXPECT_EQ(Parse(parameters + "%p5;]><a/>").Code(), 0x8007000E);
}

TEST(ParserLimits, StopsManyReferencesToOneLargeEntity) {
  const std::string text = "<!DOCTYPE a [<!ENTITY e '" + Repeat("x", 100'000) + "'>]><a>" +
                           Repeat("&e;", 100'000) + "</a>";
  const Result result = Parse(text);
  ExpectClearFailure(result, "quadratic blow-up");
  EXPECT_EQ(result.Code(), 0x8007000E);
  EXPECT_LT(result.bytes, 256 * kMegabyte);
}

TEST(ParserLimits, CountsReferencesToEmptyEntities) {
  const std::string text = "<!DOCTYPE a [<!ENTITY e ''><!ENTITY f '" + Repeat("&e;", 100'000) +
                           "'>]><a>" + Repeat("&f;", 100'000) + "</a>";
  EXPECT_EQ(Parse(text).Code(), 0x8007000E);
}

TEST(ParserLimits, TheBoundOnEntitiesCanBeSet) {
  const std::string text =
      "<!DOCTYPE a [<!ENTITY e '" + Repeat("x", 1000) + "'>]><a>" + Repeat("&e;", 100) + "</a>";
  EXPECT_TRUE(Parse(text).accepted);
  ParseOptions options;
  options.maxEntityBytes = 50'000;
  EXPECT_EQ(Parse(text, options).Code(), 0x8007000E);
  EXPECT_NE(Parse(text, options).error.reason.find("50000"), std::string::npos)
      << "the reason tells the bound";
}

TEST(ParserLimits, StopsShortElementsThatAreSuppliedWithMuch) {
  std::string text = "<!DOCTYPE a [<!ATTLIST b";
  for (int i = 0; i < 1000; ++i) {
    text += " a" + std::to_string(i) + " CDATA '" + Repeat("x", 100) + "'";
  }
  text += ">]><a>" + Repeat("<b/>", 100'000) + "</a>";
  const Result result = Parse(text);
  ExpectClearFailure(result, "defaults");
  EXPECT_EQ(result.Code(), 0x8007000E);
  EXPECT_LT(result.bytes, 256 * kMegabyte);
}

TEST(ParserLimits, SuppliesManyElementsWithAFewDefaults) {
  const std::string text = "<!DOCTYPE a [<!ATTLIST b c CDATA 'one' d CDATA 'two'>]><a>" +
                           Repeat("<b/>", 500'000) + "</a>";
  EXPECT_TRUE(Parse(text).accepted) << Parse(text).error.reason;
}

TEST(ParserLimits, FindsALoopOfEntitiesHoweverLong) {
  std::string text = "<!DOCTYPE a [";
  constexpr int kEntities = 20'000;
  for (int i = 0; i < kEntities; ++i) {
    text += "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string((i + 1) % kEntities) + ";'>";
  }
  for (const char* content : {"<a>&e0;</a>", "<a b='&e0;'/>"}) {
    const Result result = Parse(text + "]>" + content);
    EXPECT_EQ(result.Code(), 0xC00CE003) << result.error.reason;
  }
}

TEST(ParserLimits, ReadsALongChainOfEntitiesWithoutRecursion) {
  std::string text = "<!DOCTYPE a [<!ENTITY e0 'x'>";
  constexpr int kEntities = 20'000;
  for (int i = 1; i < kEntities; ++i) {
    text += "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string(i - 1) + ";'>";
  }
  const std::string last = "&e" + std::to_string(kEntities - 1) + ";";
  EXPECT_TRUE(Parse(text + "]><a>" + last + "</a>").accepted);
  EXPECT_TRUE(Parse(text + "]><a b='" + last + "'/>").accepted);
}

// Size -------------------------------------------------------------------------------------------

TEST(ParserLimits, RefusesAnAttributeOf200Megabytes) {
  std::string text = "<a b='";
  text.append(200 * kMegabyte, 'x');
  text += "'/>";
  const Result result = Parse(text);
  ExpectClearFailure(result, "200 MB");
  EXPECT_EQ(result.Code(), 0x8007000E);
  EXPECT_NE(result.error.reason.find(std::to_string(128 * kMegabyte)), std::string::npos)
      << result.error.reason;
  EXPECT_EQ(result.error.line, 0);
  EXPECT_LT(result.bytes, kMegabyte) << "nothing was copied";
  DocumentData document(nullptr);
  ParseError error;
  EXPECT_FALSE(ParseBytes(document, text, {}, error));
  EXPECT_EQ(static_cast<std::uint32_t>(error.code), 0x8007000E);
}

TEST(ParserLimits, TheBoundOnSizeCanBeSet) {
  ParseOptions options;
  options.maxBytes = 7;
  EXPECT_TRUE(Parse("<a>x</a>", {}).accepted);
  EXPECT_EQ(Parse("<a>x</a>", options).Code(), 0x8007000E);
  options.maxBytes = 8;
  EXPECT_TRUE(Parse("<a>x</a>", options).accepted);
}

TEST(ParserLimits, MemoryForAPlainDocumentStaysNearItsText) {
  const std::string text = "<a>" + Repeat("<item>some text</item>", 50'000) + "</a>";
  const Result result = Parse(text);
  EXPECT_TRUE(result.accepted);
  EXPECT_LE(result.bytes, 3 * text.size());
}

// Depth ------------------------------------------------------------------------------------------

std::string Nested(std::size_t depth) { return Repeat("<a>", depth) + Repeat("</a>", depth); }

TEST(ParserLimits, FiveThousandElementsMayBeOpen) {
  EXPECT_TRUE(Parse(Nested(5000)).accepted);
  const Result result = Parse(Nested(5001));
  EXPECT_EQ(result.Code(), 0xC00CE586) << result.error.reason;
  EXPECT_EQ(result.error.reason, "The maximum element depth was exceeded.\r\n");
  EXPECT_EQ(result.error.line, 1);
  EXPECT_EQ(result.error.linePos, 5000 * 3 + 2);
  EXPECT_TRUE(Parse("<r>" + Repeat(Nested(4999), 3) + "</r>").accepted)
      << "elements that are closed do not count";
}

TEST(ParserLimits, EntitiesAddToTheDepth) {
  const std::string subset = "<!DOCTYPE a [<!ENTITY e '" + Nested(3000) + "'>]>";
  const std::string open = Repeat("<b>", 2500);
  const std::string close = Repeat("</b>", 2500);
  EXPECT_EQ(Parse(subset + open + "&e;" + close).Code(), 0xC00CE586);
}

TEST(ParserLimits, AMillionElementsMayBeOpenWhenTheBoundIsRaised) {
  constexpr std::size_t kDepth = 1'000'000;
  ParseOptions options;
  options.maxDepth = kDepth;
  const std::string text = Nested(kDepth);
  DocumentData document(nullptr);
  ParseError error;
  ASSERT_TRUE(ParseText(document, text, options, error)) << error.reason;
  std::size_t elements = 0;
  test::WalkBelow(
      Cursor(&document, kDocumentNode), [&elements](const Cursor&) { ++elements; },
      [](const Cursor&) {});
  EXPECT_EQ(elements, kDepth);
  options.maxDepth = kDepth - 1;
  EXPECT_EQ(Parse(text, options).Code(), 0xC00CE586);
}

TEST(ParserLimits, AMillionUnclosedElementsAreNamedInTheReason) {
  ParseOptions options;
  options.maxDepth = 1'000'000;
  const Result result = Parse(Repeat("<a>", 1'000'000), options);
  EXPECT_EQ(result.Code(), 0xC00CE553);
}

TEST(ParserLimits, DeepContentModelsNeedNoStack) {
  const std::string model = Repeat("(", 1'000'000) + "b" + Repeat(")", 1'000'000);
  EXPECT_TRUE(Parse("<!DOCTYPE a [<!ELEMENT a " + model + ">]><a/>").accepted);
}

// Many of one kind -------------------------------------------------------------------------------

TEST(ParserLimits, OneElementMayHaveManyAttributes) {
  const std::string text = "<a" + Series(" a#='1'", 100'000);
  EXPECT_TRUE(Parse(text + "/>").accepted);
  const Result result = Parse(text + " a99999='2'/>");
  EXPECT_EQ(result.Code(), 0xC00CE554);
}

TEST(ParserLimits, OneElementMayHaveManyPrefixedAttributes) {
  const std::string text = "<a" + Series(" xmlns:p#='u#' p#:a='1'", 50'000);
  EXPECT_TRUE(Parse(text + "/>").accepted);
  EXPECT_EQ(Parse(text + " xmlns:q='u49999' q:a='2'/>").Code(), 0xC00CE554);
}

TEST(ParserLimits, ManyElementsMayDeclareNamespacesOfTheirOwn) {
  const std::string text = "<a>" + Series("<p:b xmlns:p='u#'/>", 100'000);
  EXPECT_TRUE(Parse(text + "</a>").accepted);
}

TEST(ParserLimits, ManyOpenElementsMayDeclareNamespaces) {
  const std::string text = Series("<p#:b xmlns:p#='u'>", 100'000);
  std::string close;
  ParseOptions options;
  options.maxDepth = 100'000;
  for (int i = 99'999; i >= 0; --i) close.append("</p").append(std::to_string(i)).append(":b>");
  EXPECT_TRUE(Parse(text + close, options).accepted);
}

TEST(ParserLimits, ManyDifferentNamesAreInterned) {
  const std::string text = "<a>" + Series("<n#/>", 200'000);
  EXPECT_TRUE(Parse(text + "</a>").accepted);
}

TEST(ParserLimits, ManyDeclarationsAreRead) {
  const std::string text =
      "<!DOCTYPE a [" + Series("<!ENTITY e# 'x'><!ATTLIST a b# CDATA 'd'>", 50'000);
  EXPECT_TRUE(Parse(text + "]><a>&e49999;</a>").accepted);
}

TEST(ParserLimits, ManyUnfinishedSectionsAreReadOnce) {
  EXPECT_FALSE(Parse("<a>" + Repeat("<![CDATA[]]", 500'000)).accepted);
  EXPECT_FALSE(Parse("<a>" + Repeat("<!--x", 500'000)).accepted);
  EXPECT_FALSE(Parse("<a>" + Repeat("]]", 2'000'000)).accepted);
  EXPECT_FALSE(Parse(Repeat("<!DOCTYPE a [", 100'000)).accepted);
  EXPECT_TRUE(Parse("<a>" + Repeat("&amp;", 1'000'000) + "</a>").accepted);
  EXPECT_TRUE(Parse("<a b='" + Repeat("&amp;", 1'000'000) + "'/>").accepted);
  EXPECT_TRUE(Parse("<a>" + Repeat("\r\n", 1'000'000) + "</a>").accepted);
}

TEST(ParserLimits, AFailureAtTheEndOfManyLinesIsPlacedInOnePass) {
  const Result result = Parse("<a>" + Repeat("\r\n", 1'000'000) + "</b>");
  EXPECT_EQ(result.error.line, 1'000'001);
  EXPECT_EQ(result.error.linePos, 3);
  EXPECT_EQ(result.error.filePos, 2'000'005);
  EXPECT_EQ(result.error.srcText, "</b>");
}

}  // namespace
}  // namespace kx::dom
