// Failures below the object model: the run-time errors 5, 6, 9, 13, ... with their fixed texts, the
// status codes that stand for them, and the types of kx::Error by origin.
//
// A run-time error n leaves as the number 0x800A0000 + n with the source "KXXMLMessageLib". A
// failure passes through our layers unchanged; nothing here is ever caught here.
#pragma once

#include "kxmessage/error.h"
#include "kxmessage/export.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kx {

/// A failure of a DOM call, with the platform's status code and text.
class KX_EXPORT DomError : public Error {
 public:
  using Error::Error;
};

/// A failure of a keyed collection: unknown key, position outside, key already present.
class KX_EXPORT CollectionError : public Error {
 public:
  using Error::Error;
};

/// A failure of files, settings and conversions.
class KX_EXPORT HostError : public Error {
 public:
  using Error::Error;
};

/// A broken rule of the library itself; only RaiseMsgError throws it.
class KX_EXPORT MsgError : public Error {
 public:
  using Error::Error;
};

}  // namespace kx

namespace kx::runtime {

/// The source of every run-time error.
inline constexpr std::string_view kErrorSource = "KXXMLMessageLib";

/// Numbers of the run-time errors that the platform itself raises.
enum RuntimeErrorNumber : int {
  kInvalidProcedureCall = 5,
  kOverflow = 6,
  kOutOfMemory = 7,
  kSubscriptOutOfRange = 9,
  kTypeMismatch = 13,
  kOutOfStackSpace = 28,
  kBadFileName = 52,
  kFileNotFound = 53,
  kFileAlreadyOpen = 55,
  kDeviceIoError = 57,
  kDiskFull = 61,
  kInputPastEndOfFile = 62,
  kBadRecordNumber = 63,
  kTooManyFiles = 67,
  kDeviceUnavailable = 68,
  kPermissionDenied = 70,
  kDiskNotReady = 71,
  kPathFileAccessError = 75,
  kPathNotFound = 76,
  kObjectNotSet = 91,
  kInvalidPatternString = 93,
  kInvalidUseOfNull = 94,
  kObjectRequired = 424,
  kCannotCreateObject = 429,
  kNoSuchMember = 438,
  kAutomationError = 440,
  kArgumentNotOptional = 449,
  kKeyAlreadyPresent = 457,
};

/// The status code of run-time error `number` (0 to 65535): 0x800A0000 + number, as signed.
[[nodiscard]] constexpr std::int32_t StatusOfRuntimeError(int number) noexcept {
  return static_cast<std::int32_t>(0x800A0000U + static_cast<std::uint32_t>(number));
}

/// The number that a caller written in Visual Basic reads for a status code: n for 0x800A0000 + n
/// with n up to 65535, any other code unchanged.
[[nodiscard]] constexpr std::int32_t RuntimeErrorOfStatus(std::int32_t status) noexcept {
  const auto bits = static_cast<std::uint32_t>(status);
  return (bits & 0xFFFF0000U) == 0x800A0000U ? static_cast<std::int32_t>(bits & 0xFFFFU) : status;
}

/// The text of run-time error `number`; "Application-defined or object-defined error" for a number
/// without a text of its own. Never ends with a full stop.
[[nodiscard]] std::string_view RuntimeErrorText(int number) noexcept;

/// The run-time error that a status code without error information stands for, 0 for none.
[[nodiscard]] int MapStatusToRuntimeError(std::int32_t status) noexcept;

/// Raises run-time error `number` as a HostError with its text.
[[noreturn]] void RaiseRuntimeError(int number);
/// The same with a text of its own.
[[noreturn]] void RaiseRuntimeError(int number, std::string description);
/// Raises run-time error `number` as a CollectionError.
[[noreturn]] void RaiseCollectionError(int number);

/// Raises an error that a component raises on its own account. `number` 1 to 65535 becomes
/// 0x800A0000 + number; a status code stays as it is. An empty `source` stands for ours, an empty
/// `description` for the text of the number.
[[noreturn]] void RaiseError(std::int32_t number, std::string source, std::string description);

/// Raises the failure of a call that gave only a status code: the run-time error it stands for, or
/// the code itself with "Automation error" and, on a line of its own, `systemMessage`.
[[noreturn]] void RaiseStatus(std::int32_t status, std::string_view systemMessage = {});

/// Ends the process: an invariant that only our own mistake can break does not hold. Input never
/// leads here.
[[noreturn]] void HaltExecution() noexcept;

}  // namespace kx::runtime
