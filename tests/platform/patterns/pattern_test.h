// What the tests of patterns share: documents from text, and what a query found as one text.
#pragma once

#include "kxmessage/error.h"

#include "platform/dom/document.h"
#include "platform/patterns/select.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace kx::patterns {

/// A document as the library makes them, with this content.
inline dom::Document Parsed(std::string_view xml) {
  dom::Document document = dom::NewDomDocument();
  EXPECT_TRUE(document.LoadXml(xml)) << xml << ": " << document.LastError().reason;
  return document;
}

/// One node as "kind name" in short: <b>, @k=v, "text", cdata(x), <!x>, <?t>, #document; elements
/// with their attribute n, if there is one, behind a "#".
inline std::string Short(const dom::Node& node) {
  switch (node.Type()) {
    case dom::NodeType::kElement: {
      const dom::Cursor number = node.At().FindAttribute("n");
      return node.NodeName() + (number ? "#" + number.TextContent() : "");
    }
    case dom::NodeType::kAttribute:
      return "@" + node.NodeName() + "=" + node.Text();
    case dom::NodeType::kText:
      return "'" + *node.NodeValue() + "'";
    case dom::NodeType::kCData:
      return "cdata(" + *node.NodeValue() + ")";
    case dom::NodeType::kComment:
      return "<!" + *node.NodeValue() + ">";
    case dom::NodeType::kProcessingInstruction:
      return "<?" + node.NodeName() + ">";
    default:
      return node.NodeName();
  }
}

/// What a list has, separated by blanks.
inline std::string Listed(const dom::NodeList& list) {
  std::string text;
  for (std::int32_t i = 0; i < list.Length(); ++i)
    text += (i == 0 ? "" : " ") + Short(list.Item(i));
  return text;
}

/// What the pattern finds from a node, or what is wrong with it.
inline std::string Found(const dom::Node& start, std::string_view pattern,
                         const QueryOptions& options = {}) {
  try {
    return Listed(SelectNodes(start, pattern, options));
  } catch (const Error& error) {
    return "error: " + error.Description();
  }
}

}  // namespace kx::patterns
