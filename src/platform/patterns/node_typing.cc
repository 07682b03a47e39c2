// See node_typing.h.
#include "platform/patterns/node_typing.h"

#include <string>
#include <string_view>

namespace kx::patterns {

namespace {

using datatypes::DataType;

constexpr std::string_view kDataTypeNamespace = "urn:schemas-microsoft-com:datatypes";
constexpr std::string_view kSchemaNamespace = "urn:schemas-microsoft-com:xml-data";

class ByAttribute final : public NodeTyping {
 public:
  [[nodiscard]] DataType TypeOf(const dom::Cursor& node) const override {
    return node.IsElement() ? WrittenType(node) : DataType::kNone;
  }
  [[nodiscard]] bool IsId(const dom::Cursor& /*attribute*/) const override { return false; }
};

}  // namespace

bool HasWrittenTypes(const dom::NameTable& names) noexcept {
  constexpr dom::UriId kUnknown = 0xFFFFFFFF;
  return names.FindUri(kDataTypeNamespace) != kUnknown;
}

DataType WrittenType(const dom::Cursor& element) {
  for (dom::Cursor at = element.FirstAttribute(); at; at = at.Next()) {
    if (at.LocalName() != "dt" || at.NamespaceUri() != kDataTypeNamespace) continue;
    if (element.NamespaceUri() == kSchemaNamespace) return DataType::kNone;
    const std::string name = at.TextContent();
    return datatypes::FindDataType(name).value_or(DataType::kNone);
  }
  return DataType::kNone;
}

const NodeTyping& WrittenTyping() noexcept {
  static const ByAttribute typing;
  return typing;
}

}  // namespace kx::patterns
