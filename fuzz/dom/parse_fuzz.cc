// Documents: whatever parses is written and parsed again, and must come back as the same tree; the
// text written from that is the same text. The first byte chooses the options.
#include "platform/dom/cursor.h"
#include "platform/dom/document_data.h"
#include "platform/dom/parser.h"
#include "platform/dom/writer.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

namespace {

using kx::dom::Cursor;
using kx::dom::DocumentData;
using kx::dom::NodeType;

[[noreturn]] void Fail(const char* what) {
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

bool SameNames(const Cursor& a, const Cursor& b) {
  return a.QualifiedName() == b.QualifiedName() && a.NamespaceUri() == b.NamespaceUri();
}

void CompareAttributes(const Cursor& a, const Cursor& b) {
  Cursor left = a.FirstAttribute();
  Cursor right = b.FirstAttribute();
  for (; left && right; left = left.Next(), right = right.Next()) {
    if (!SameNames(left, right)) Fail("another attribute");
    if (left.TextContent() != right.TextContent()) Fail("another attribute value");
  }
  if (left || right) Fail("another number of attributes");
}

// The declaration loses its encoding when it is written.
bool IsXmlDeclaration(const Cursor& node) {
  return node.Type() == NodeType::kProcessingInstruction && node.QualifiedName() == "xml";
}

void CompareTrees(const DocumentData& first, const DocumentData& second) {
  const Cursor rootOfFirst(&first, kx::dom::kDocumentNode);
  const Cursor rootOfSecond(&second, kx::dom::kDocumentNode);
  Cursor a = rootOfFirst;
  Cursor b = rootOfSecond;
  for (; a && b; a = a.NextInTree(rootOfFirst), b = b.NextInTree(rootOfSecond)) {
    if (a.Type() != b.Type() || !SameNames(a, b)) Fail("another node");
    if (IsXmlDeclaration(a)) continue;
    if (a.HasWholeText() && b.HasWholeText() && a.OwnText() != b.OwnText()) Fail("another text");
    CompareAttributes(a, b);
  }
  if (a || b) Fail("another number of nodes");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const unsigned choice = data[0];
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  kx::dom::ParseOptions options;
  options.maxEntityBytes = std::size_t{64} << 10U;
  if ((choice & 1U) != 0) options.whiteSpace = kx::dom::WhiteSpace::kDropBetweenElements;
  if ((choice & 2U) != 0) options.maxDepth = 8;
  if ((choice & 4U) != 0) options.attributeValues = kx::dom::AttributeValues::kNormalised;

  auto first = std::make_unique<DocumentData>(nullptr);
  kx::dom::ParseError error;
  const bool parsed = (choice & 8U) != 0 ? kx::dom::ParseBytes(*first, text, options, error)
                                         : kx::dom::ParseText(*first, text, options, error);
  if (!parsed) {
    if (error.code == 0 || error.reason.empty()) Fail("a failure without reason");
    return 0;
  }
  options.attributeValues = kx::dom::AttributeValues::kAsWritten;
  if ((choice & 4U) != 0) return 0;  // normalised values are for reading only

  const std::string written = kx::dom::WriteXml(Cursor(first.get(), kx::dom::kDocumentNode));
  auto second = std::make_unique<DocumentData>(nullptr);
  if (!kx::dom::ParseText(*second, written, options, error)) Fail(error.reason.c_str());
  CompareTrees(*first, *second);
  if (kx::dom::WriteXml(Cursor(second.get(), kx::dom::kDocumentNode)) != written) {
    Fail("another text");
  }
  return 0;
}
