// See data_type.h. Synonyms stand behind the canonical names.
#include "platform/datatypes/data_type.h"

#include "platform/text/unicode.h"

#include <iterator>

namespace kx::datatypes {

namespace {

struct NamedType {
  std::string_view name;
  DataType type;
};

// In the order of the enumeration; a test asks for every name.
constexpr NamedType kNames[] = {
    {"", DataType::kNone},
    {"string", DataType::kString},
    {"number", DataType::kNumber},
    {"int", DataType::kInt},
    {"float", DataType::kFloat},
    {"fixed.14.4", DataType::kFixed144},
    {"boolean", DataType::kBoolean},
    {"dateTime", DataType::kDateTime},
    {"dateTime.tz", DataType::kDateTimeTz},
    {"date", DataType::kDate},
    {"time", DataType::kTime},
    {"time.tz", DataType::kTimeTz},
    {"i1", DataType::kI1},
    {"i2", DataType::kI2},
    {"i4", DataType::kI4},
    {"i8", DataType::kI8},
    {"ui1", DataType::kUi1},
    {"ui2", DataType::kUi2},
    {"ui4", DataType::kUi4},
    {"ui8", DataType::kUi8},
    {"r4", DataType::kR4},
    {"r8", DataType::kR8},
    {"char", DataType::kChar},
    {"uri", DataType::kUri},
    {"uuid", DataType::kUuid},
    {"bin.hex", DataType::kBinHex},
    {"bin.base64", DataType::kBinBase64},
    {"id", DataType::kId},
    {"idref", DataType::kIdref},
    {"idrefs", DataType::kIdrefs},
    {"entity", DataType::kEntity},
    {"entities", DataType::kEntities},
    {"nmtoken", DataType::kNmtoken},
    {"nmtokens", DataType::kNmtokens},
    {"enumeration", DataType::kEnumeration},
    {"notation", DataType::kNotation},
    {"decimal", DataType::kNumber},
    {"float.ieee.754.32", DataType::kR4},
    {"float.ieee.754.64", DataType::kR8},
    {"date.tz", DataType::kDate},
};

constexpr bool IsInOrder() {
  for (int i = 0; i < kDataTypeCount; ++i) {
    if (static_cast<int>(kNames[i].type) != i) return false;
  }
  return true;
}
static_assert(IsInOrder(), "one canonical name for each type, in their order");

}  // namespace

std::string_view DataTypeName(DataType type) noexcept {
  return kNames[static_cast<std::size_t>(type)].name;
}

std::optional<DataType> FindDataType(std::string_view name) noexcept {
  for (std::size_t i = 1; i < std::size(kNames); ++i) {
    if (text::EqualsAsciiCaseless(kNames[i].name, name)) return kNames[i].type;
  }
  return std::nullopt;
}

}  // namespace kx::datatypes
