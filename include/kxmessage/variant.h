// A value whose type is known only at run time: what element values, keys and optional arguments
// are. It holds a text, a number of one of the platform's types, a date, a currency amount, a
// boolean, bytes, a reference to an object, or one of the marks empty, null, missing and error.
//
// The To… members convert as the run-time does: decimal point and month/day/year whatever the
// locale, halves rounded to the even neighbour. They raise 13 (type mismatch) for what has no such
// form, 6 (overflow) for what does not fit, and 94 (invalid use of Null).
#pragma once

#include "kxmessage/export.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace kx {

class Variant;

/// Base of every object that a Variant may hold: it counts its references itself.
class KX_EXPORT Object {
 public:
  virtual void Retain() const noexcept = 0;
  virtual void Release() const noexcept = 0;
  /// The value of the default property, which conversions use; nothing when there is none.
  [[nodiscard]] virtual std::optional<Variant> DefaultValue() const;

 protected:
  Object() noexcept = default;
  Object(const Object&) noexcept = default;
  Object& operator=(const Object&) noexcept = default;
  virtual ~Object() = default;
};

/// A reference to an Object, or to nothing.
class KX_EXPORT ObjectRef {
 public:
  ObjectRef() noexcept = default;
  explicit ObjectRef(Object* object) noexcept : object_(object) {
    if (object_ != nullptr) object_->Retain();
  }
  ObjectRef(const ObjectRef& other) noexcept : ObjectRef(other.object_) {}
  ObjectRef(ObjectRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ObjectRef& operator=(ObjectRef other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~ObjectRef() {
    if (object_ != nullptr) object_->Release();
  }

  [[nodiscard]] Object* Get() const noexcept { return object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }
  friend bool operator==(const ObjectRef& a, const ObjectRef& b) noexcept {
    return a.object_ == b.object_;
  }

 private:
  Object* object_ = nullptr;
};

/// What a Variant holds. The numbers are those of the platform's automation types.
enum class VariantType : std::uint16_t {
  kEmpty = 0,
  kNull = 1,
  kInteger16 = 2,
  kInteger32 = 3,
  kSingle = 4,
  kDouble = 5,
  kCurrency = 6,
  kDate = 7,
  kText = 8,
  kObject = 9,
  kError = 10,
  kBoolean = 11,
  kInteger8 = 16,
  kUnsigned8 = 17,
  kUnsigned16 = 18,
  kUnsigned32 = 19,
  kInteger64 = 20,
  kUnsigned64 = 21,
  kBytes = 0x2011,  ///< an array of unsigned bytes, positions from 0
};

/// An amount in ten-thousandths.
struct Currency {
  std::int64_t tenThousandths = 0;
  friend bool operator==(Currency, Currency) = default;
};

/// Days since 30 December 1899, the time of day as a fraction.
struct Date {
  double value = 0;
  friend bool operator==(Date, Date) = default;
};

/// A status code held as a value.
struct ErrorValue {
  std::int32_t code = 0;
  friend bool operator==(ErrorValue, ErrorValue) = default;
};

/// The code of the error value that an optional argument has when it is left out.
inline constexpr std::int32_t kMissingArgumentCode = -2147352572;  // 0x80020004

/// A C++ integer type that stands for a number (characters and bool do not).
template <typename T>
concept VariantInteger = std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> &&
                         !std::same_as<T, wchar_t> && !std::same_as<T, char8_t> &&
                         !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

/// A value of any type. Copies are independent, except that they share a held object.
class KX_EXPORT Variant {
 public:
  using Bytes = std::vector<std::uint8_t>;

  /// Empty.
  Variant() noexcept = default;
  // NOLINTBEGIN(google-explicit-constructor): a value becomes a Variant wherever one is expected
  Variant(std::string text) noexcept : data_(std::move(text)) {}
  Variant(std::string_view text) : data_(std::string(text)) {}
  Variant(const char* text) : data_(std::string(text)) {}
  Variant(std::same_as<bool> auto value) noexcept : data_(value) {}
  Variant(VariantInteger auto value) noexcept : data_(SizedInteger(value)) {}
  Variant(float value) noexcept : data_(value) {}
  Variant(double value) noexcept : data_(value) {}
  Variant(Currency value) noexcept : data_(value) {}
  Variant(Date value) noexcept : data_(value) {}
  Variant(ErrorValue value) noexcept : data_(value) {}
  Variant(Bytes bytes) noexcept : data_(std::move(bytes)) {}
  /// An object, or the "nothing" of object variables when the reference is empty.
  Variant(ObjectRef object) noexcept : data_(std::move(object)) {}
  // NOLINTEND(google-explicit-constructor)

  [[nodiscard]] static Variant Null() noexcept {
    Variant result;
    result.data_ = NullMark{};
    return result;
  }
  [[nodiscard]] static Variant Missing() noexcept { return ErrorValue{kMissingArgumentCode}; }
  [[nodiscard]] static Variant Nothing() noexcept { return ObjectRef(); }

  // ---- What it holds --------------------------------------------------------------------------

  [[nodiscard]] VariantType Type() const noexcept;
  [[nodiscard]] bool IsEmpty() const noexcept { return Holds<std::monostate>(); }
  [[nodiscard]] bool IsNull() const noexcept { return Holds<NullMark>(); }
  [[nodiscard]] bool IsText() const noexcept { return Holds<std::string>(); }
  [[nodiscard]] bool IsBoolean() const noexcept { return Holds<bool>(); }
  [[nodiscard]] bool IsBytes() const noexcept { return Holds<Bytes>(); }
  [[nodiscard]] bool IsDate() const noexcept { return Holds<Date>(); }
  [[nodiscard]] bool IsCurrency() const noexcept { return Holds<Currency>(); }
  [[nodiscard]] bool IsObject() const noexcept { return Holds<ObjectRef>(); }
  /// True for an object variable that refers to no object.
  [[nodiscard]] bool IsNothing() const noexcept;
  /// True for any error value, a missing argument included.
  [[nodiscard]] bool IsError() const noexcept { return Holds<ErrorValue>(); }
  [[nodiscard]] bool IsMissing() const noexcept;
  /// True for the integer types of all sizes.
  [[nodiscard]] bool IsInteger() const noexcept;
  /// True for integers, single, double and currency; not for boolean and date.
  [[nodiscard]] bool IsNumber() const noexcept;

  /// The held value itself, or null when the type is another.
  [[nodiscard]] const std::string* IfText() const noexcept {
    return std::get_if<std::string>(&data_);
  }
  [[nodiscard]] const Bytes* IfBytes() const noexcept { return std::get_if<Bytes>(&data_); }
  [[nodiscard]] const Date* IfDate() const noexcept { return std::get_if<Date>(&data_); }
  [[nodiscard]] const Currency* IfCurrency() const noexcept {
    return std::get_if<Currency>(&data_);
  }
  [[nodiscard]] const bool* IfBoolean() const noexcept { return std::get_if<bool>(&data_); }
  [[nodiscard]] const ErrorValue* IfError() const noexcept {
    return std::get_if<ErrorValue>(&data_);
  }
  /// The held object; null for "nothing" and for every other type.
  [[nodiscard]] Object* IfObject() const noexcept;

  // ---- Conversions ----------------------------------------------------------------------------

  /// A 32-bit integer, halves to the even neighbour. Raises: 94, 13, 6.
  [[nodiscard]] std::int32_t ToInteger() const;
  /// The same with 16 bits.
  [[nodiscard]] std::int16_t ToInteger16() const;
  /// A double. Raises: 94, 13, 6.
  [[nodiscard]] double ToNumber() const;
  [[nodiscard]] float ToSingle() const;
  /// An amount, rounded to four decimals. Raises: 94, 13, 6.
  [[nodiscard]] Currency ToCurrency() const;
  /// True for every number but 0 and for the text "True" in any case. Raises: 94, 13, 6.
  [[nodiscard]] bool ToBoolean() const;
  /// A date from a date, a number of days or a text. Raises: 94, 13, 6.
  [[nodiscard]] Date ToDate() const;
  /// The text form: numbers in decimal, True / False, dates as month/day/year, bytes read as
  /// UTF-16, empty as "". Raises: 94 for Null, 91 for nothing, 438 for an object without value.
  [[nodiscard]] std::string ToText() const;
  /// Bytes as they are; a text as its UTF-16 units, low byte first. Raises: 94, 13.
  [[nodiscard]] Bytes ToBytes() const;

  /// True when type and content are the same (an integer 1 and a double 1 are not; a double that
  /// is not a number equals nothing). Texts are compared exactly, objects by identity.
  friend bool operator==(const Variant& a, const Variant& b) noexcept;

 private:
  struct NullMark {
    friend bool operator==(NullMark, NullMark) = default;
  };
  using Data =
      std::variant<std::monostate, NullMark, std::string, bool, std::int8_t, std::int16_t,
                   std::int32_t, std::int64_t, std::uint8_t, std::uint16_t, std::uint32_t,
                   std::uint64_t, float, double, Currency, Date, ErrorValue, Bytes, ObjectRef>;

  template <typename T>
  [[nodiscard]] bool Holds() const noexcept {
    return std::holds_alternative<T>(data_);
  }

  // The type of fixed width behind `long`, `long long` and the like.
  template <VariantInteger T>
  static constexpr auto SizedInteger(T value) noexcept {
    if constexpr (std::is_signed_v<T>) {
      if constexpr (sizeof(T) == 1)
        return static_cast<std::int8_t>(value);
      else if constexpr (sizeof(T) == 2)
        return static_cast<std::int16_t>(value);
      else if constexpr (sizeof(T) == 4)
        return static_cast<std::int32_t>(value);
      else
        return static_cast<std::int64_t>(value);
    } else {
      if constexpr (sizeof(T) == 1)
        return static_cast<std::uint8_t>(value);
      else if constexpr (sizeof(T) == 2)
        return static_cast<std::uint16_t>(value);
      else if constexpr (sizeof(T) == 4)
        return static_cast<std::uint32_t>(value);
      else
        return static_cast<std::uint64_t>(value);
    }
  }

  Data data_;
};

}  // namespace kx
