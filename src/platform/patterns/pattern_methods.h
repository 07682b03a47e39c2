// The methods of the language by their names, and the kinds of nodes that steps ask for. Included
// by the parser only.
#pragma once

#include "platform/patterns/pattern_code.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kx::patterns {

inline constexpr std::uint16_t kElements = TypeBit(dom::NodeType::kElement);
inline constexpr std::uint16_t kAttributes = TypeBit(dom::NodeType::kAttribute);
inline constexpr std::uint16_t kTexts = TypeBit(dom::NodeType::kText);
inline constexpr std::uint16_t kCDatas = TypeBit(dom::NodeType::kCData);
inline constexpr std::uint16_t kComments = TypeBit(dom::NodeType::kComment);
inline constexpr std::uint16_t kInstructions = TypeBit(dom::NodeType::kProcessingInstruction);
inline constexpr std::uint16_t kAllKinds = 0xFFFF;

// The methods that give nodes. Those with a name may have it as their one argument.
enum class NameArgument : unsigned char { kNone, kAllowed };
struct CollectionMethod {
  std::string_view name;
  std::uint16_t types;
  Axis axis = Axis::kChild;
  NameArgument argument = NameArgument::kNone;
};
inline constexpr CollectionMethod kCollectionMethods[] = {
    {"attribute", kAttributes, Axis::kAttribute, NameArgument::kAllowed},
    {"element", kElements, Axis::kChild, NameArgument::kAllowed},
    {"pi", kInstructions, Axis::kChild, NameArgument::kAllowed},
    {"node", kAllKinds},
    {"comment", kComments},
    {"textnode", kTexts},
    {"textNode", kTexts},
    {"cdata", kCDatas},
    {"text", static_cast<std::uint16_t>(kTexts | kCDatas)},
};

// The methods that give a value.
enum class InfoArgument : unsigned char { kNone, kNodes, kNodesOrLiteral };
struct InfoMethodEntry {
  std::string_view name;
  InfoMethod method;
  InfoArgument argument = InfoArgument::kNone;
};
inline constexpr InfoMethodEntry kInfoMethods[] = {
    {"index", InfoMethod::kIndex},
    {"end", InfoMethod::kEnd},
    {"nodeName", InfoMethod::kNodeName},
    {"nodeType", InfoMethod::kNodeType},
    {"nodeTypeString", InfoMethod::kNodeTypeString},
    {"value", InfoMethod::kValue},
    {"number", InfoMethod::kNumber, InfoArgument::kNodes},
    {"date", InfoMethod::kDate, InfoArgument::kNodesOrLiteral},
};

template <class Entry, std::size_t N>
const Entry* FindMethod(const Entry (&table)[N], std::string_view name) {
  for (const Entry& entry : table) {
    if (entry.name == name) return &entry;
  }
  return nullptr;
}

}  // namespace kx::patterns
