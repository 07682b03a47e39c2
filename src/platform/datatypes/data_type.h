// The data types that schemas and instances name ("int", "dateTime", "bin.hex", ...): their names
// and what kind each is. The text forms are in lexical.h, typed values in typed_value.h.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace kx::datatypes {

/// A data type. kNone stands for a node that has none.
enum class DataType : std::uint8_t {
  kNone,
  kString,
  kNumber,
  kInt,
  kFloat,
  kFixed144,
  kBoolean,
  kDateTime,
  kDateTimeTz,
  kDate,
  kTime,
  kTimeTz,
  kI1,
  kI2,
  kI4,
  kI8,
  kUi1,
  kUi2,
  kUi4,
  kUi8,
  kR4,
  kR8,
  kChar,
  kUri,
  kUuid,
  kBinHex,
  kBinBase64,
  kId,
  kIdref,
  kIdrefs,
  kEntity,
  kEntities,
  kNmtoken,
  kNmtokens,
  kEnumeration,
  kNotation,
};
inline constexpr int kDataTypeCount = 36;

/// The canonical name; empty for kNone.
[[nodiscard]] std::string_view DataTypeName(DataType type) noexcept;

/// The type of that name in any letter case, synonyms included; nothing for any other text.
[[nodiscard]] std::optional<DataType> FindDataType(std::string_view name) noexcept;

/// True for id ... notation: the types of names and lists of names that a DTD has too.
[[nodiscard]] constexpr bool IsNameType(DataType type) noexcept { return type >= DataType::kId; }
/// True for the types whose texts are IDs or refer to them.
[[nodiscard]] constexpr bool IsIdType(DataType type) noexcept {
  return type == DataType::kId || type == DataType::kIdref || type == DataType::kIdrefs;
}
/// True for the types whose values are more than text: all but string and the name types.
[[nodiscard]] constexpr bool IsRichType(DataType type) noexcept {
  return type > DataType::kString && type < DataType::kId;
}
[[nodiscard]] constexpr bool IsBinaryType(DataType type) noexcept {
  return type == DataType::kBinHex || type == DataType::kBinBase64;
}
[[nodiscard]] constexpr bool IsDateType(DataType type) noexcept {
  return type >= DataType::kDateTime && type <= DataType::kTimeTz;
}
/// True for the integers of all sizes, `int` included.
[[nodiscard]] constexpr bool IsIntegerType(DataType type) noexcept {
  return type == DataType::kInt || (type >= DataType::kI1 && type <= DataType::kUi8);
}

}  // namespace kx::datatypes
