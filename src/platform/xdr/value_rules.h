// What a declaration says about a text: its data type, lengths and list of values. Shared by the
// declarations that refer to it; never changed once its schema is compiled.
#pragma once

#include "platform/datatypes/data_type.h"
#include "platform/runtime/counted.h"
#include "platform/xdr/quick_check.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kx::xdr {

using datatypes::DataType;

/// How a text fails.
enum class ValueFailure : unsigned char {
  kNone,
  kType,          ///< no text of the type
  kLength,        ///< too short or too long
  kNotListed,     ///< not a value of the enumeration
  kSeveralNames,  ///< several where one is allowed
  kBadName,       ///< not a name, for id and idref
  kNoEntity,      ///< unparsed entities, of which there are none
};

struct ValueRules : runtime::AtomicCounted {
  DataType type = DataType::kNone;
  std::uint32_t minLength = 0;
  std::uint32_t maxLength = 0xFFFFFFFFU;
  std::vector<std::string> values;  ///< of an enumeration, sorted
  QuickCheck quick;                 ///< says of some good texts that they are; see Prepare

  /// Called once, when all else is set.
  void Prepare() { quick = QuickCheck(type, minLength, maxLength, values); }
  /// True when every text is good.
  [[nodiscard]] bool TakesAnyText() const noexcept {
    return type <= DataType::kString && minLength == 0 && maxLength == 0xFFFFFFFFU;
  }
  /// Judges a text. Empty text, trimmed unless the type is string, is never wrong.
  [[nodiscard]] ValueFailure Check(std::string_view text) const;
  [[nodiscard]] bool Lists(std::string_view value) const;

 private:
  [[nodiscard]] ValueFailure CheckName(std::string_view text) const;
};

using SharedRules = runtime::Counted<const ValueRules>;

}  // namespace kx::xdr
