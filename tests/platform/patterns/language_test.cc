// The rules of the language, row by row: what a pattern finds in a document.
#include "platform/dom/document_impl.h"
#include "platform/patterns/pattern.h"
#include "platform/patterns/pattern_test.h"

namespace kx::patterns {
namespace {

struct Row {
  const char* pattern;
  const char* found;
  const char* why;
};

template <std::size_t N>
void ExpectRows(const dom::Node& start, const Row (&rows)[N]) {
  for (const Row& row : rows) {
    EXPECT_EQ(Found(start, row.pattern), row.found) << row.pattern << ": " << row.why;
  }
}

constexpr const char* kTree =
    "<?xml version='1.0'?><!--top--><?t one?>"
    "<r><m n='0' k=''/>text<m n='1' k='x'><m n='2'/><y n='3'/></m><!--c--><?t two?><![CDATA[cd]]>"
    "<y n='4' k='x'><m n='5' k='z'/></y></r><!--end-->";

TEST(Tree, IsSeenAsChildNodesShowIt) {
  const Row rows[] = {
      {"node()", "<?xml> <!top> <?t> r <!end>", "the XML declaration is a child of the document"},
      {"pi()", "<?xml> <?t>", "and a processing instruction"},
      {"pi('t')", "<?t>", "by target"},
      {"comment()", "<!top> <!end>", "children only"},
      {"*", "r", "elements only"},
      {"/", "#document", "the document itself"},
      {"r/node()", "m#0 'text' m#1 <!c> <?t> cdata(cd) y#4", "all kinds, no attributes"},
      {"r/textnode()", "'text'", "text only"},
      {"r/textNode()", "'text'", "the other spelling"},
      {"r/cdata()", "cdata(cd)", "CDATA only"},
      {"r/text()", "'text' cdata(cd)", "both"},
      {"r/element()", "m#0 m#1 y#4", "as *"},
      {"r/element('y')", "y#4", "by written name"},
      {"r/m/attribute()", "@n=0 @k= @n=1 @k=x", "in source order"},
      {"r/m/attribute('k')", "@k= @k=x", "by name"},
      {"r/textnode()/attribute()", "", "none on a text"},
      {"//attribute('k')", "@k= @k=x @k=x @k=z", "an attribute comes behind its element"},
  };
  ExpectRows(Parsed(kTree).AsNode(), rows);
}

TEST(Tree, HasDeclarationsOfNamespacesAsAttributes) {
  const dom::Document document = Parsed("<r><a xmlns='urn:a'/><b xmlns:p='urn:p'/><c/></r>");
  const Row rows[] = {
      {"r/*[@*]", "a b", "a declaration alone counts"},
      {"//@xmlns", "@xmlns=urn:a", "by its written name"},
      {"//@xmlns:p", "@xmlns:p=urn:p", "with its prefix"},
  };
  ExpectRows(document.AsNode(), rows);
}

TEST(Names, AreComparedAsWritten) {
  const dom::Document document = Parsed(
      "<r xmlns='urn:d' xmlns:p='urn:p' xmlns:q='urn:p'><a n='0'/><p:a n='1' p:k='1'/>"
      "<q:a n='2'/><A n='3'/><last-name n='4'/><first.name n='5'/></r>");
  const Row rows[] = {
      {"r/a", "a#0", "whatever the default namespace; with case; never <p:a>"},
      {"r/p:a", "p:a#1", "the written prefix, not its namespace"},
      {"r/z:a", "", "an unknown prefix is no error"},
      {"r/p:*", "p:a#1", "every name with the prefix"},
      {"r/*/@p:*", "@p:k=1", "of attributes too"},
      {"r/last-name", "last-name#4", "a hyphen belongs to the name"},
      {"r/first.name", "first.name#5", "and so does a period"},
  };
  ExpectRows(document.AsNode(), rows);
}

TEST(Names, WithAPrefixThatIsGivenANamespaceCompareThat) {
  const dom::Document document = Parsed(
      "<r xmlns:p='urn:p' xmlns:s='urn:s'><p:a n='0'/><s:a n='1'/><a xmlns='urn:p' n='2'/>"
      "<p:b n='3' s:k='1'/></r>");
  const NamespacePrefix prefixes[] = {{"s", "urn:p"}, {"none", "urn:none"}, {"", "urn:p"}};
  const Row rows[] = {
      {"r/s:a", "p:a#0 a#2", "its own namespace counts, not the document's prefix"},
      {"r/s:*", "p:a#0 a#2 p:b#3", "every name of the namespace"},
      {"r/none:a", "", "a namespace that occurs nowhere"},
      {"r/p:a", "p:a#0", "a prefix that is not listed is compared as written"},
      {"r/a", "a#2", "a default has no effect"},
  };
  for (const Row& row : rows) {
    const Pattern pattern = Compile(row.pattern, prefixes);
    EXPECT_EQ(Listed(SelectNodes(document.AsNode(), pattern)), row.found) << row.why;
  }
}

TEST(Paths, LeadWhereTheirFormsSay) {
  const dom::Document document = Parsed(kTree);
  const Row rows[] = {
      {"m", "m#0 m#1", "children"},
      {".", "r", "the node itself"},
      {"..", "#document", "the parent"},
      {"../..", "", "the document has none"},
      {"m/@k/..", "error: Expected token 'eof' found '/'.\r\n\r\nm/@k-->/<--..",
       "nothing follows an attribute"},
      {"m//m", "m#2", "one or more levels below"},
      {"m//@n", "@n=0 @n=1 @n=2 @n=3", "the attributes of the node itself are included"},
      {"//m", "m#0 m#1 m#2 m#5", "from the document"},
      {".//m", "m#0 m#1 m#2 m#5", "from the start node"},
      {"/r/m", "m#0 m#1", "from the document, whatever the start"},
      {"m[/r/y]", "m#0 m#1", "also inside a filter"},
      {"(m | y)/m", "m#2 m#5", "a group continues"},
      {"m/m/..", "m#1", "no node twice"},
      {"y | m", "m#0 m#1 y#4", "document order"},
      {"m | m | *", "m#0 m#1 y#4", "no node twice"},
      {"( m )", "m#0 m#1", "blanks anywhere"},
      {" m / m\t[ 0 ]\r\n", "m#2", "also those"},
  };
  ExpectRows(document.DocumentElement(), rows);
  EXPECT_EQ(Found(document.DocumentElement().LastChild(), "../m/@n"), "@n=0 @n=1");
}

TEST(Paths, FromADetachedNodeStayInItsTree) {
  const dom::Document document = Parsed("<r><a/></r>");
  const dom::Node top = document.CreateElement("t");
  top.AppendChild(document.CreateElement("u"));
  EXPECT_EQ(Found(top, "u"), "u");
  EXPECT_EQ(Found(top, ".."), "");
  EXPECT_EQ(Found(top.FirstChild(), "//*"), "r a") << "a slash leads to the document";
  EXPECT_EQ(Found(top, "u | //a"), "a u") << "the document's nodes first";
}

TEST(Positions, CountFromZeroAmongTheCandidatesOfOneNode) {
  const dom::Document document = Parsed(
      "<r><x n='0'><y n='1'/>t<z/><y n='2' k='1'/></x><x n='3'><y n='4' k='1'/><y n='5' k='1'/>"
      "<y n='6'/></x></r>");
  const Row rows[] = {
      {"x/y[0]", "y#1 y#4", "the first of each"},
      {"//y[1]", "y#2 y#5", "the second of every parent"},
      {"(x/y)[0]", "y#1", "a group is one list"},
      {"(x/y)[-1]", "y#6", "its last"},
      {"x/y[end()]", "y#2 y#6", "the last of each"},
      {"x/y[-2]", "y#1 y#5", "from the end"},
      {"x/y[7]", "", "beyond the end"},
      {"x/y[-4]", "", "beyond the beginning"},
      {"x/*[1]", "z y#5", "elements only count"},
      {"x/node()[1]", "'t' y#5", "all kinds count"},
      {"x/y[@k][0]", "y#2 y#4", "each filter counts afresh"},
      {"x/y[0][@k]", "y#4", "kept only if it has k"},
      {"x/y[index() = 1]", "y#2 y#5", "a number"},
      {"x/y[index()='1']", "y#2 y#5", "its decimal text"},
      {"x/y[index()='01']", "", "no leading zeros"},
      {"x/y[index() > 0]", "y#2 y#5 y#6", "any comparison"},
      {"x/y[index()]", "y#2 y#5 y#6", "a number is true when it is not zero"},
      {"x/y[not(end())]", "y#1 y#4 y#5", "negated"},
      {"x[y[0][@k]]", "x#3", "a filter within has a list of its own"},
      {"x/@*[0]", "@n=0 @n=3", "attributes count too"},
      {"(//y)[1]", "y#2", "of all"},
      {"x/(y)[1]", "y#2 y#5", "a group as a step: for each node"},
      {".[index() = 0]", "r", "one of one"},
      {".[end()]", "r", "one of one"},
  };
  ExpectRows(document.DocumentElement(), rows);
}

TEST(Truth, OfEachKindOfExpression) {
  const dom::Document document = Parsed(kTree);
  const Row rows[] = {
      {"*[@k]", "m#0 m#1 y#4", "an empty value exists"},
      {"*[m]", "m#1 y#4", "existence"},
      {"*[m | y]", "m#1 y#4", "of a union"},
      {"*[m && y]", "m#1", "and"},
      {"*[m and y]", "m#1", "and"},
      {"*[m $and$ y]", "m#1", "and"},
      {"*[y || @k = 'x']", "m#1 y#4", "or"},
      {"*[y or @k]", "m#0 m#1 y#4", "or"},
      {"*[y $or$ @k]", "m#0 m#1 y#4", "or"},
      {"*[not(m)]", "m#0", "not"},
      {"*[$not$ m]", "m#0", "not"},
      {"*[$not$ @k = 'x']", "m#0", "negates the comparison"},
      {"*[@n = '0' || m && y]", "m#0 m#1", "and before or"},
      {"*[(@n = '0' || m) && y]", "m#1", "but for a group"},
      {"*[nodeName()]", "m#0 m#1 y#4", "text that is not empty"},
      {"*[value()]", "", "empty text is false"},
      {"*[not(.//m/@n = '5')]", "m#0 m#1", "negated comparison"},
  };
  ExpectRows(document.DocumentElement(), rows);
}

TEST(Words, AreOperatorsOnlyWhereOneCanStandAlone) {
  const dom::Document document = Parsed("<r><and/><or n='1'/><not/><and><or/></and></r>");
  const Row rows[] = {
      {"and", "and and", "a name"},
      {"and[or]", "and", "names"},
      {"*[and or or]", "and", "operator between names"},
      {"and[or and or]", "and", "operator between names"},
      {"not", "not", "a name without parenthesis"},
      {"*[(or)and(or)]", "and", "parentheses separate"},
      {"element", "", "a method's name without parentheses is an element's"},
      {"a and", "error: Expected token 'NAME' found 'eof'.\r\n\r\na and--><--",
       "an operator with nothing behind it"},
      {"a-and-b", "", "a name"},
  };
  ExpectRows(document.DocumentElement(), rows);
}

TEST(Comparisons, LookAtTheFirstNodeUnlessQuantified) {
  const dom::Document document = Parsed(
      "<r><g n='0'><m>a</m><m>b</m></g><g n='1'><m>b</m><m>a</m></g><g n='2'/>"
      "<g n='3'><m>a</m></g></r>");
  const Row rows[] = {
      {"g[m = 'a']", "g#0 g#3", "the first one"},
      {"g[m != 'a']", "g#1", "none at all: false for every operator"},
      {"g[$any$ m = 'a']", "g#0 g#1 g#3", "any"},
      {"g[$any$ m != 'a']", "g#0 g#1", "any"},
      {"g[$all$ m = 'a']", "g#2 g#3", "all; also of none"},
      {"g[$all$ m != 'b']", "g#2 g#3", "all"},
      {"g[m!nodeName() = 'm']", "g#0 g#1 g#3", "a method of the first node"},
      {"g[$any$ *!nodeName() = 'm']", "g#0 g#1 g#3", "of all"},
      {"g[m[1] = m[0]]", "", "first nodes of both sides"},
      {"g[m = ../g/m]", "g#0 g#3", "a path on the right"},
      {"g[m = zz]", "", "an empty right side"},
      {"g[(m | zz) = 'a']", "g#0 g#3", "a group on the left"},
      {"g[m!end()]", "g#3", "the only one of its path"},
  };
  ExpectRows(document.DocumentElement(), rows);
}

TEST(Comparisons, GoByWhatTheRightSideIs) {
  const dom::Document document =
      Parsed("<r><i>2</i><i>1</i><i>12</i><i> 10 </i><i>ten</i><i/><i>1e1</i><i>Ten</i></r>");
  const Row rows[] = {
      {"i[. > '10']/text()", "'2' '12' 'ten' '1e1' 'Ten'", "text"},
      {"i[. > 10]/text()", "'12'", "number"},
      {"i[. = 10]/text()", "' 10 ' '1e1'", "blanks and an exponent read as a number"},
      {"i[. != 10]/text()", "'2' '1' '12' 'ten' 'Ten'", "what does not read is unequal"},
      {"i[. < 2]/text()", "'1'", "and not less"},
      {"i[. = '']", "i", "the empty text"},
      {"i[. $ieq$ 'TEN']/text()", "'ten' 'Ten'", "without case"},
      {"i[. $ine$ 'TEN' $and$ . $gt$ 'T']/text()", "", "without case"},
      {"i[. $ile$ 'TEN' $and$ . $ige$ 'TEN']/text()", "'ten' 'Ten'", "without case"},
      {"i[. $igt$ 'TEM' $and$ . $ilt$ 'TEO']/text()", "'ten' 'Ten'", "without case"},
      {"i[. $eq$ '2' $or$ . $ne$ . ]/text()", "'2'", "keywords"},
      {"i[. $lt$ 2 $or$ . $ge$ 12]/text()", "'1' '12'", "keywords"},
      {"i[. $le$ 1 $or$ . $gt$ 11.5]/text()", "'1' '12'", "keywords, a fraction"},
      {"i[number() = number(../i[2])]/text()", "'12'", "numbers of texts"},
      {"i[. >= -1 && . <= 1]/text()", "'1'", "a negative number"},
      {"i[nodeType() = 1][0]/text()", "'2'", "of a method"},
      {"i[nodeType() = '1'][0]/text()", "'2'", "the decimal text of a number"},
      {"i[nodeTypeString() = 'element'][end()]/text()", "'Ten'", "text of a method"},
  };
  ExpectRows(document.DocumentElement(), rows);
}

TEST(Comparisons, OfTextsGoByUtf16Units) {
  // U+1F600 is a pair of surrogates, which are below U+E000.
  const dom::Document document = Parsed("<r><a>\xF0\x9F\x98\x80</a><b>\xEE\x80\x80</b></r>");
  EXPECT_EQ(Found(document.DocumentElement(), "a[. < ../b]"), "a");
  EXPECT_EQ(Found(document.DocumentElement(), "b[. < ../a]"), "");
}

TEST(Comparisons, OfDatesReadTheFormsOfDateTypes) {
  const dom::Document document = Parsed(
      "<r><d>2000-01-02</d><d>1999-12-31T23:59:59</d><d>none</d><d>2000-01-02T00:00:00Z</d></r>");
  const Row rows[] = {
      {"d[. > date('2000-01-01')]/text()", "'2000-01-02' '2000-01-02T00:00:00Z'", "as dates"},
      {"d[date() = date('2000-01-02')]/text()", "'2000-01-02' '2000-01-02T00:00:00Z'", "both"},
      {"d[. != date('2000-01-02')]/text()", "'1999-12-31T23:59:59' 'none'", "what does not read"},
      {"d[date(../d[1]) < date(.)]/text()", "'2000-01-02' '2000-01-02T00:00:00Z'", "of a path"},
      {"d[date()]/text()", "'2000-01-02' '1999-12-31T23:59:59' '2000-01-02T00:00:00Z'", "truth"},
  };
  ExpectRows(document.DocumentElement(), rows);
}

TEST(Texts, AreThoseOfThePropertyText) {
  const char* const xml =
      "<r><a n='0'> x </a><a n='1'>x<!--no--><?no no?><b/><![CDATA[ ]]></a><a n='2' "
      "xml:space='preserve'> x </a><a n='3'><b> x</b>  </a></r>";
  const Row rows[] = {
      {"a[. = 'x']", "a#0 a#3", "trimmed at both ends"},
      {"a[. = 'x ']", "a#1", "but never CDATA; no comments and instructions"},
      {"a[. = ' x ']", "a#2", "nor where white space is kept"},
      {"a[0][@n = '0']", "a#0", "attributes as they are"},
  };
  const Row kept[] = {
      {"a[. = 'x']", "", "nothing is trimmed"},
      {"a[. = ' x ']", "a#0 a#2", "in a document that keeps white space"},
  };
  for (const bool preserves : {false, true}) {
    dom::Document document = dom::NewDomDocument();
    document.AsNode().Data().Owner()->settings.preserveWhiteSpace = preserves;
    ASSERT_TRUE(document.LoadXml(xml));
    if (preserves) {
      ExpectRows(document.DocumentElement(), kept);
    } else {
      ExpectRows(document.DocumentElement(), rows);
    }
  }
}

TEST(Texts, InComparisonsAreTheNodesOwn) {
  const dom::Document document = Parsed(
      "<!DOCTYPE r [<!ENTITY e ' y '>]><r> <a> <b>1</b> 2 <![CDATA[ ]]></a><c k=' v '>&e;<d> z "
      "</d></c>t<!-- c --><?p q ?></r>");
  const dom::Node root = document.DocumentElement();
  const dom::NodeList all = SelectNodes(root, "//node() | //@* | . | /");
  for (std::int32_t i = 0; i < all.Length(); ++i) {
    const dom::Node node = all.Item(i);
    const std::string text = node.Text();
    if (node.Type() == dom::NodeType::kDocumentType) continue;
    EXPECT_TRUE(Holds(node, CompileCondition(". = '" + text + "'"))) << Short(node);
    EXPECT_FALSE(Holds(node, CompileCondition(". = '" + text + "!'"))) << Short(node);
  }
  EXPECT_GE(all.Length(), 12);
}

TEST(Types, WrittenOnElementsMakeComparisonsOfNumbersAndDates) {
  const dom::Document document = Parsed(
      "<r xmlns:d='urn:schemas-microsoft-com:datatypes'><a d:dt='boolean'>true</a>"
      "<a d:dt='i4'>10</a><a d:dt='i4'>9</a><a d:dt='i4'>none</a><a>9</a>"
      "<b d:dt='date'>2000-01-02</b><b d:dt='dateTime'>2000-01-02T00:00:00</b><b>2000-01-02</b>"
      "</r>");
  const Row rows[] = {
      {"a[. = 1]/text()", "'true'", "a boolean is 1 or 0"},
      {"a[. > ../a[2]]/text()", "'10' 'none'", "typed numbers as such; else as texts"},
      {"a[. > '9']/text()", "'true' 'none'", "a literal compares texts"},
      {"b[. = ../b[0]]/text()", "'2000-01-02' '2000-01-02T00:00:00' '2000-01-02'",
       "dates as such, texts as such"},
      {"a[. = 'none']/text()", "'none'", "a text that does not suit its type is no failure"},
      {"a[. != 5]/text()", "'true' '10' '9' 'none' '9'", "unreadable: unequal"},
  };
  ExpectRows(document.DocumentElement(), rows);
}

class OddTyping final : public NodeTyping {
 public:
  [[nodiscard]] datatypes::DataType TypeOf(const dom::Cursor& node) const override {
    if (node.QualifiedName() == "date") return datatypes::DataType::kDate;
    if (node.QualifiedName() == "q") return datatypes::DataType::kI4;
    return node.Type() == dom::NodeType::kAttribute && node.QualifiedName() == "k"
               ? datatypes::DataType::kI4
               : datatypes::DataType::kNone;
  }
  [[nodiscard]] bool IsId(const dom::Cursor& attribute) const override {
    return attribute.QualifiedName() == "key";
  }
};

TEST(Types, BySchemaComeFromTheCallersTyping) {
  const dom::Document document = Parsed(
      "<r><a n='0' k='10' key='one'/><a n='1' k='9' key='two'/><q n='2'>9</q><q n='3'>0100</q>"
      "<date n='4'>2000-01-02</date><u n='5'>9</u></r>");
  const OddTyping typing;
  QueryOptions options;
  options.typing = &typing;
  const dom::Node root = document.DocumentElement();
  EXPECT_EQ(Found(root, "a[@k > ../q]"), "") << "without it texts compare";
  EXPECT_EQ(Found(root, "a[@k > ../q]", options), "a#0") << "with it numbers do";
  EXPECT_EQ(Found(root, "q[. > ../a/@k]", options), "q#3") << "0100 is more than 10";
  EXPECT_EQ(Found(root, "u[. = ../q]", options), "u#5") << "one typed side: texts";
  EXPECT_EQ(Found(root, "a[@k = '10']", options), "a#0") << "a literal compares texts";
  EXPECT_EQ(Found(root, "date[. > date('2000-01-01')]", options), "date#4");
  EXPECT_EQ(Found(root, "date[. > 1000]", options), "date#4") << "a day number";
  EXPECT_EQ(Found(root, "id('two')", options), "a#1") << "an ID by the schema";
  EXPECT_EQ(Found(root, "id('two')"), "") << "the name of an attribute makes no ID";
}

TEST(Ids, AreThoseThatADocumentTypeDeclares) {
  const dom::Document document = Parsed(
      "<!DOCTYPE r [<!ATTLIST a i ID #IMPLIED id CDATA #IMPLIED>]>"
      "<r><a n='0' i='x'/><a n='1' i='y' id='z'/><w n='2'>y x</w><v k='x'/><v k='q'/></r>");
  const Row rows[] = {
      {"id('x')", "a#0", "by its value"},
      {"id('z')", "", "an attribute merely called id"},
      {"id('q')", "", "an unknown value"},
      {"id('x y')", "", "a literal is one value"},
      {"id(w)", "a#0 a#1", "values of a path are split; document order"},
      {"id(v/@k)", "a#0", "of all its nodes"},
      {"id('x')/@n", "@n=0", "begins a path"},
      {"a[id('x')]", "a#0 a#1", "or a filter"},
      {"*[id(@k)]", "v", "of each candidate"},
      {"w/id('x')", "error: Unknown method.\r\n\r\nw/-->id<--('x')", "but is no later step"},
      {"id(w)[end()]", "a#1", "its list has places"},
  };
  ExpectRows(document.DocumentElement(), rows);
}

TEST(Ids, OfTextsAroundOneAnotherAreTheSameWithTables) {
  const dom::Document document = Parsed(
      "<!DOCTYPE r [<!ATTLIST a i ID #IMPLIED><!ATTLIST b i ID "
      "#IMPLIED>]><r><a i='x1'>x<b i='y'>1 y</b><a i='1'>2<!--x1-->x<b>1</b></a>1 <b>x1</b> x"
      "<b i='xx1'>x</b>1</a><b>y</b>y</r>");
  QueryOptions tables;
  tables.patience = 0;
  const dom::Node start = document.AsNode();
  for (const char* pattern :
       {"//*[id(.)]", "//node()[id(.)]", "//*[id(.)/@i = 'y']", "//*[id(.)/@i = 'x1']",
        "//*[id(b)]", "//*[id(.//b)/@i = 'xx1']", "//*[id(@i)]", "//*[id(comment())]",
        "//node()[id(.)/@i = '1']", "//*[id(. | b)[@i = 'y']]"}) {
    const std::string plain = Found(start, pattern);
    EXPECT_EQ(Found(start, pattern, tables), plain) << pattern;
  }
  EXPECT_EQ(Found(start, "//b[id(.)]"), "b b b b");
}

TEST(Ancestors, AreTheNearestThatMatch) {
  const dom::Document document = Parsed(
      "<book n='0'><author n='1' style='s'><p n='2'><author n='3'><q n='4' style='t'/>"
      "</author></p></author></book>");
  const dom::Node inner = SelectSingleNode(document.AsNode(), "//q");
  const Row rows[] = {
      {"ancestor(author)", "author#3", "the nearest"},
      {"ancestor(book/author)", "author#1", "whose parent is a book"},
      {"ancestor(*[@style])", "author#1", "never the node itself"},
      {"ancestor(/book)", "book#0", "from the document"},
      {"ancestor(/author)", "", "none"},
      {"ancestor(q)", "", "not itself"},
      {"ancestor(author)/@n", "@n=3", "begins a path"},
      {".[ancestor(p)]", "q#4", "or a filter"},
      {"ancestor(.)", "", "the pattern is asked from above the ancestor"},
      {"ancestor(p | book)", "p#2", "a union"},
      {"ancestor((p | book)/author)", "author#3", "a group"},
      {"ancestor(../author)", "", "an ancestor is no sibling"},
      {"ancestor(author[0])", "author#3", "places count among its siblings"},
      {"./ancestor(p)", "error: Unknown method.\r\n\r\n./-->ancestor<--(p)", "no later step"},
  };
  ExpectRows(inner, rows);
}

TEST(Contexts, AreTheStartNodeUnlessAStyleSheetSelected) {
  const dom::Document document =
      Parsed("<r search='b'><a n='0'>a</a><a n='1'>b</a><x><a n='2'>b</a></x></r>");
  const dom::Node root = document.DocumentElement();
  const Row rows[] = {
      {"//a[. = context()/@search]", "a#1 a#2", "at any depth"},
      {"x[a[. = context(-1)/@search]]", "x", "of nested filters"},
      {"context(0)", "r", "the start node"},
      {"context(-2)", "", "no outer one"},
      {"context(1)", "", "none"},
      {"context()[0]", "r", "one of one"},
      {"a/context()", "error: Unknown method.\r\n\r\na/-->context<--()", "no later step"},
  };
  ExpectRows(root, rows);

  const dom::Node first = root.FirstChild();
  const ContextFrame frames[] = {{root.At().Id(), 0, 1}, {first.At().Id(), 1, 2}};
  QueryOptions options;
  options.contexts = frames;
  EXPECT_EQ(Found(first, "context()", options), "a#0");
  EXPECT_EQ(Found(first, "context(-2)", options), "r");
  EXPECT_EQ(Found(first, "context(0)", options), "r");
  EXPECT_EQ(Found(first, "context(1)", options), "a#0");
  EXPECT_EQ(Found(first, "context()[end()]", options), "a#0") << "places of the list it is of";
  EXPECT_EQ(Found(first, "context()[0]", options), "");
}

TEST(Methods, TellWhatTheNodesAre) {
  const dom::Document document = Parsed(kTree);
  struct Kind {
    const char* node;
    const char* name;
    const char* number;
    const char* word;
  };
  constexpr Kind kKinds[] = {
      {"/", "#document", "9", "document"},
      {"r", "r", "1", "element"},
      {"r/m/@k", "k", "2", "attribute"},
      {"r/textnode()", "#text", "3", "text"},
      {"r/cdata()", "#cdata-section", "4", "cdatasection"},
      {"r/pi()", "t", "7", "processinginstruction"},
      {"r/comment()", "#comment", "8", "comment"},
      {"pi()", "xml", "7", "processinginstruction"},
  };
  for (const Kind& kind : kKinds) {
    const dom::Node node = SelectSingleNode(document.AsNode(), kind.node);
    ASSERT_TRUE(node) << kind.node;
    const auto holds = [&node](const std::string& condition) {
      return Holds(node, CompileCondition(condition));
    };
    EXPECT_TRUE(holds("nodeName() = '" + std::string(kind.name) + "'")) << kind.node;
    EXPECT_TRUE(holds("nodeType() = " + std::string(kind.number))) << kind.node;
    EXPECT_TRUE(holds("nodeTypeString() = '" + std::string(kind.word) + "'")) << kind.node;
  }
}

}  // namespace
}  // namespace kx::patterns
