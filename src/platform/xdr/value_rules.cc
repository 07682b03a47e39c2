// See value_rules.h.
#include "platform/xdr/value_rules.h"

#include "platform/datatypes/lexical.h"
#include "platform/datatypes/name_text.h"

#include <algorithm>

namespace kx::xdr {

namespace {

bool IsSingleName(DataType type) {
  return type == DataType::kId || type == DataType::kIdref || type == DataType::kNmtoken ||
         type == DataType::kEnumeration;
}

constexpr std::size_t kFewValues = 8;

}  // namespace

bool ValueRules::Lists(std::string_view value) const {
  if (values.size() > kFewValues) return std::binary_search(values.begin(), values.end(), value);
  return std::any_of(values.begin(), values.end(),
                     [value](const std::string& listed) { return listed == value; });
}

ValueFailure ValueRules::CheckName(std::string_view text) const {
  if (type == DataType::kEnumeration && Lists(text)) return ValueFailure::kNone;
  if (IsSingleName(type) && text.find_first_of(" \t\r\n") != std::string_view::npos) {
    return ValueFailure::kSeveralNames;
  }
  if (type == DataType::kEnumeration) return ValueFailure::kNotListed;
  if (type == DataType::kEntity || type == DataType::kEntities) return ValueFailure::kNoEntity;
  if (datatypes::IsTrimmedTextOf(type, text)) return ValueFailure::kNone;
  const bool named = type == DataType::kId || type == DataType::kIdref || type == DataType::kIdrefs;
  return named ? ValueFailure::kBadName : ValueFailure::kType;
}

ValueFailure ValueRules::Check(std::string_view text) const {
  if (type > DataType::kString) text = datatypes::TrimSpace(text);
  if (text.empty()) return ValueFailure::kNone;
  if (datatypes::IsNameType(type)) return CheckName(text);
  if (!datatypes::IsTrimmedTextOf(type, text)) return ValueFailure::kType;
  const bool bounded = minLength != 0 || maxLength != 0xFFFFFFFFU;
  // An attribute without type counts as string.
  const DataType counted = type == DataType::kNone ? DataType::kString : type;
  if (!bounded || !datatypes::HasLength(counted)) return ValueFailure::kNone;
  if (counted == DataType::kString && text.size() <= maxLength && minLength == 0) {
    return ValueFailure::kNone;  // no more characters than bytes
  }
  const std::size_t length = datatypes::LengthOf(counted, text);
  return length < minLength || length > maxLength ? ValueFailure::kLength : ValueFailure::kNone;
}

}  // namespace kx::xdr
