// The two tables of run-time errors, texts by number and numbers by status code, and the only
// places that throw them.
#include "platform/runtime/error.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

namespace kx::runtime {
namespace {

struct ErrorText {
  int number;
  std::string_view text;
};

// The texts are published: no full stop at the end.
constexpr ErrorText kTexts[] = {
    {5, "Invalid procedure call or argument"},
    {6, "Overflow"},
    {7, "Out of memory"},
    {9, "Subscript out of range"},
    {10, "This array is fixed or temporarily locked"},
    {11, "Division by zero"},
    {13, "Type mismatch"},
    {28, "Out of stack space"},
    {52, "Bad file name or number"},
    {53, "File not found"},
    {54, "Bad file mode"},
    {55, "File already open"},
    {57, "Device I/O error"},
    {58, "File already exists"},
    {59, "Bad record length"},
    {61, "Disk full"},
    {62, "Input past end of file"},
    {63, "Bad record number"},
    {67, "Too many files"},
    {68, "Device unavailable"},
    {70, "Permission denied"},
    {71, "Disk not ready"},
    {74, "Can't rename with different drive"},
    {75, "Path/File access error"},
    {76, "Path not found"},
    {91, "Object variable or With block variable not set"},
    {92, "For loop not initialized"},
    {93, "Invalid pattern string"},
    {94, "Invalid use of Null"},
    {424, "Object required"},
    {429, "ActiveX component can't create object"},
    {430, "Class does not support Automation or does not support expected interface"},
    {438, "Object doesn't support this property or method"},
    {440, "Automation error"},
    {445, "Object doesn't support this action"},
    {446, "Object doesn't support named arguments"},
    {448, "Named argument not found"},
    {449, "Argument not optional"},
    {450, "Wrong number of arguments or invalid property assignment"},
    {451, "Property let procedure not defined and property get procedure did not return an object"},
    {457, "This key is already associated with an element of this collection"},
    {458, "Variable uses an Automation type not supported in Visual Basic"},
};
static_assert(std::is_sorted(std::begin(kTexts), std::end(kTexts),
                             [](const ErrorText& a, const ErrorText& b) {
                               return a.number < b.number;
                             }),
              "one text per number, in ascending order");

constexpr std::string_view kTextOfOthers = "Application-defined or object-defined error";

struct StatusMapping {
  std::uint32_t status;
  int number;
};

constexpr StatusMapping kStatusMap[] = {
    {0x80004001, 445},  // E_NOTIMPL
    {0x80004002, 430},  // E_NOINTERFACE
    {0x80070057, 5},    // E_INVALIDARG
    {0x8007000E, 7},    // E_OUTOFMEMORY
    {0x80070005, 70},   // E_ACCESSDENIED
    {0x80020001, 438},  // DISP_E_UNKNOWNINTERFACE
    {0x80020003, 438},  // DISP_E_MEMBERNOTFOUND
    {0x80020004, 448},  // DISP_E_PARAMNOTFOUND
    {0x80020005, 13},   // DISP_E_TYPEMISMATCH
    {0x80020006, 438},  // DISP_E_UNKNOWNNAME
    {0x80020007, 446},  // DISP_E_NONAMEDARGS
    {0x80020008, 458},  // DISP_E_BADVARTYPE
    {0x8002000A, 6},    // DISP_E_OVERFLOW
    {0x8002000B, 9},    // DISP_E_BADINDEX
    {0x8002000C, 447},  // DISP_E_UNKNOWNLCID
    {0x8002000D, 10},   // DISP_E_ARRAYISLOCKED
    {0x8002000E, 450},  // DISP_E_BADPARAMCOUNT
    {0x8002000F, 449},  // DISP_E_PARAMNOTOPTIONAL
    {0x80020011, 451},  // DISP_E_NOTACOLLECTION
    {0x80040154, 429},  // REGDB_E_CLASSNOTREG
    {0x800401F3, 429},  // CO_E_CLASSSTRING
    {0x80030002, 432},  // STG_E_FILENOTFOUND
    {0x80030003, 76},   // STG_E_PATHNOTFOUND
    {0x80030005, 70},   // STG_E_ACCESSDENIED
    {0x80030050, 58},   // STG_E_FILEALREADYEXISTS
    {0x80030020, 75},   // STG_E_SHAREVIOLATION
    {0x80030070, 61},   // STG_E_MEDIUMFULL
};

}  // namespace

std::string_view RuntimeErrorText(int number) noexcept {
  const auto* found = std::find_if(std::begin(kTexts), std::end(kTexts),
                                   [number](const ErrorText& row) { return row.number == number; });
  return found != std::end(kTexts) ? found->text : kTextOfOthers;
}

int MapStatusToRuntimeError(std::int32_t status) noexcept {
  const auto bits = static_cast<std::uint32_t>(status);
  const auto* found = std::find_if(std::begin(kStatusMap), std::end(kStatusMap),
                                   [bits](const StatusMapping& row) { return row.status == bits; });
  return found != std::end(kStatusMap) ? found->number : 0;
}

void RaiseRuntimeError(int number) {
  RaiseRuntimeError(number, std::string(RuntimeErrorText(number)));
}

void RaiseRuntimeError(int number, std::string description) {
  throw HostError(StatusOfRuntimeError(number), std::string(kErrorSource), std::move(description));
}

void RaiseCollectionError(int number) {
  throw CollectionError(StatusOfRuntimeError(number), std::string(kErrorSource),
                        std::string(RuntimeErrorText(number)));
}

void RaiseError(std::int32_t number, std::string source, std::string description) {
  const bool isRuntimeError = number > 0 && number <= 65535;
  if (source.empty()) source = kErrorSource;
  if (description.empty()) description = RuntimeErrorText(RuntimeErrorOfStatus(number));
  throw HostError(isRuntimeError ? StatusOfRuntimeError(number) : number, std::move(source),
                  std::move(description));
}

void RaiseStatus(std::int32_t status, std::string_view systemMessage) {
  if (const int number = MapStatusToRuntimeError(status)) RaiseRuntimeError(number);
  std::string description(RuntimeErrorText(kAutomationError));
  if (!systemMessage.empty()) description.append("\r\n").append(systemMessage);
  throw HostError(status, std::string(kErrorSource), std::move(description));
}

void HaltExecution() noexcept { std::abort(); }

}  // namespace kx::runtime
