// Any text as a pattern: it is refused with E_FAIL, or asked of a few nodes of some documents,
// among them edited ones, elements inside one another and a node that a load has left behind.
// Whatever the pattern, what it gives is in document order without duplicates, the same when asked
// again, from the cache or with tables from the start, and the first node is the list's first one.
#include "kxmessage/error.h"

#include "platform/dom/document.h"
#include "platform/dom/document_impl.h"
#include "platform/dom/dom_error.h"
#include "platform/patterns/evaluator.h"
#include "platform/patterns/select.h"
#include "platform/patterns/tree_index.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace kx;
using namespace kx::patterns;

void Check(bool holds, const char* promise) {
  if (holds) return;
  std::fprintf(stderr, "broken promise: %s\n", promise);
  std::abort();
}

constexpr const char* kMixed =
    "<?xml version='1.0'?><!--top--><!DOCTYPE a [<!ATTLIST b i ID #IMPLIED><!ENTITY e 'x 2'>]>"
    "<a xmlns:p='urn:p' k='1'><b i='x' k=''>1</b><p:b j='2 '> 2 <c>x y</c></p:b><?t x?>"
    "<b i='y'><![CDATA[12]]><a k='2'><a><b>-1.5</b>&e;</a></a></b><c/>2000-01-02</a>";
constexpr const char* kTyped =
    "<r xmlns:d='urn:schemas-microsoft-com:datatypes'><a d:dt='i4'>10</a><a d:dt='i4'>9</a>"
    "<b d:dt='date'>2000-01-02</b><b d:dt='boolean'>1</b><c d:dt='i4'>none</c></r>";
constexpr const char* kNested =
    "<a>1<b/><a> 2<b k='1'>x</b><a>3<b/><a k='2'><a><b>2</b><c/>4</a></a></a></a></a>";

dom::Document Load(const char* xml) {
  dom::Document document = dom::NewDomDocument();
  Check(document.LoadXml(xml), "the documents are good ones");
  return document;
}

dom::Document Edited(const char* xml) {
  dom::Document document = Load(xml);
  const dom::Node root = document.DocumentElement();
  const dom::Node added = document.CreateElement("c");
  root.InsertBefore(added, root.FirstChild());
  root.InsertBefore(root.LastChild(), root.FirstChild());
  added.AppendChild(document.CreateElement("b"));
  return document;
}

// Nodes to ask from, with the documents that they belong to.
std::vector<dom::Node> MakeStarts() {
  std::vector<dom::Node> starts;
  for (const char* xml : {kMixed, kTyped, kNested}) {
    for (const dom::Document& document : {Load(xml), Edited(xml)}) {
      const dom::Node root = document.DocumentElement();
      starts.push_back(document.AsNode());
      starts.push_back(root.FirstChild());
      starts.push_back(root.LastChild());
      starts.push_back(SelectSingleNode(root, "//@k | //@d:dt"));
    }
  }
  const dom::Document document = Load(kNested);
  starts.push_back(document.CreateElement("a"));
  starts.back().AppendChild(document.CreateElement("b"));
  const dom::Document again = Load(kMixed);
  starts.push_back(again.DocumentElement());
  Check(again.LoadXml(kNested), "the documents are good ones");
  return starts;
}

std::vector<dom::NodeId> AllFrom(const Code& code, const dom::Cursor& at,
                                 std::optional<std::uint64_t> patience) {
  QueryOptions options;
  options.patience = patience;
  return Evaluator(code, at, options).SelectAll();
}

void CheckOrder(const std::vector<dom::NodeId>& nodes, const TreeIndex& index) {
  for (std::size_t i = 1; i < nodes.size(); ++i) {
    Check(index.RankOf(nodes[i - 1]) < index.RankOf(nodes[i]), "document order, no duplicates");
  }
}

void Ask(const Pattern& pattern, std::string_view text, const dom::Node& start) {
  const dom::Cursor at = start.At();
  const Code& code = pattern.GetCode();
  const std::vector<dom::NodeId> nodes = AllFrom(code, at, std::nullopt);
  const TreeIndex index(at.Data(), at.Id());
  CheckOrder(nodes, index);
  Check(AllFrom(code, at, std::nullopt) == nodes, "the same when asked again");
  Check(AllFrom(code, at, 0) == nodes, "the same with tables");
  const QueryOptions options;
  const dom::NodeId first = nodes.empty() ? dom::kNoNode : nodes.front();
  Check(Evaluator(code, at, options).SelectFirst() == first, "the first node is the first listed");
  QueryOptions impatient;
  impatient.patience = 0;
  Check(Evaluator(code, at, impatient).SelectFirst() == first, "the first one with tables");
  Check(Evaluator(code, at, options).Holds() == !nodes.empty(),
        "a truth tells whether there are any");
  const bool matches = Evaluator(code, at, options).Matches(at.Id());
  Check(Evaluator(code, at, impatient).Matches(at.Id()) == matches, "matching with tables");

  static PatternCache cache;
  const dom::NodeList list = SelectNodes(start, pattern);
  const dom::NodeList cached = SelectNodes(start, text, cache);
  Check(list.Length() == cached.Length(), "as many with a cache");
  for (std::int32_t i = 0; i < list.Length(); ++i) {
    Check(list.Item(i) == cached.Item(i), "the same nodes with a cache");
  }
}

void AskCondition(const Pattern& pattern, const dom::Node& start) {
  const QueryOptions options;
  QueryOptions impatient;
  impatient.patience = 0;
  const dom::Cursor at = start.At();
  Check(Evaluator(pattern.GetCode(), at, options).Holds() ==
            Evaluator(pattern.GetCode(), at, impatient).Holds(),
        "a truth is the same with tables");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  Pattern pattern;
  try {
    pattern = CompileCondition(text);
  } catch (const Error& error) {
    Check(error.Number() == dom::kStatusFail, "a text that is no pattern is E_FAIL");
    Check(error.Description().find("-->") != std::string::npos, "it is told where");
    return 0;
  }
  // New ones each time: asking gives some texts records of their own.
  for (const dom::Node& start : MakeStarts()) {
    if (pattern.Result() == PatternResult::kNodes) {
      Ask(pattern, text, start);
    } else {
      AskCondition(pattern, start);
    }
  }
  return 0;
}
