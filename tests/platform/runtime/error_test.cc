// Numbers, texts and status codes of run-time errors.
#include "platform/runtime/error.h"

#include <gtest/gtest.h>
#include <iterator>

namespace kx::runtime {
namespace {

struct TextCase {
  int number;
  std::uint32_t status;
  std::int32_t decimal;
  const char* text;
};

constexpr TextCase kTexts[] = {
    {5, 0x800A0005U, -2146828283, "Invalid procedure call or argument"},
    {6, 0x800A0006U, -2146828282, "Overflow"},
    {7, 0x800A0007U, -2146828281, "Out of memory"},
    {9, 0x800A0009U, -2146828279, "Subscript out of range"},
    {10, 0x800A000AU, -2146828278, "This array is fixed or temporarily locked"},
    {11, 0x800A000BU, -2146828277, "Division by zero"},
    {13, 0x800A000DU, -2146828275, "Type mismatch"},
    {28, 0x800A001CU, -2146828260, "Out of stack space"},
    {52, 0x800A0034U, -2146828236, "Bad file name or number"},
    {53, 0x800A0035U, -2146828235, "File not found"},
    {54, 0x800A0036U, -2146828234, "Bad file mode"},
    {55, 0x800A0037U, -2146828233, "File already open"},
    {57, 0x800A0039U, -2146828231, "Device I/O error"},
    {58, 0x800A003AU, -2146828230, "File already exists"},
    {59, 0x800A003BU, -2146828229, "Bad record length"},
    {61, 0x800A003DU, -2146828227, "Disk full"},
    {62, 0x800A003EU, -2146828226, "Input past end of file"},
    {63, 0x800A003FU, -2146828225, "Bad record number"},
    {67, 0x800A0043U, -2146828221, "Too many files"},
    {68, 0x800A0044U, -2146828220, "Device unavailable"},
    {70, 0x800A0046U, -2146828218, "Permission denied"},
    {71, 0x800A0047U, -2146828217, "Disk not ready"},
    {74, 0x800A004AU, -2146828214, "Can't rename with different drive"},
    {75, 0x800A004BU, -2146828213, "Path/File access error"},
    {76, 0x800A004CU, -2146828212, "Path not found"},
    {91, 0x800A005BU, -2146828197, "Object variable or With block variable not set"},
    {92, 0x800A005CU, -2146828196, "For loop not initialized"},
    {93, 0x800A005DU, -2146828195, "Invalid pattern string"},
    {94, 0x800A005EU, -2146828194, "Invalid use of Null"},
    {424, 0x800A01A8U, -2146827864, "Object required"},
    {429, 0x800A01ADU, -2146827859, "ActiveX component can't create object"},
    {430, 0x800A01AEU, -2146827858,
     "Class does not support Automation or does not support expected interface"},
    {438, 0x800A01B6U, -2146827850, "Object doesn't support this property or method"},
    {440, 0x800A01B8U, -2146827848, "Automation error"},
    {445, 0x800A01BDU, -2146827843, "Object doesn't support this action"},
    {446, 0x800A01BEU, -2146827842, "Object doesn't support named arguments"},
    {448, 0x800A01C0U, -2146827840, "Named argument not found"},
    {449, 0x800A01C1U, -2146827839, "Argument not optional"},
    {450, 0x800A01C2U, -2146827838, "Wrong number of arguments or invalid property assignment"},
    {451, 0x800A01C3U, -2146827837,
     "Property let procedure not defined and property get procedure did not return an object"},
    {457, 0x800A01C9U, -2146827831,
     "This key is already associated with an element of this collection"},
    {458, 0x800A01CAU, -2146827830,
     "Variable uses an Automation type not supported in Visual Basic"},
};

TEST(RaiseRuntimeError, CarriesNumberSourceAndExactText) {
  for (const TextCase& row : kTexts) {
    SCOPED_TRACE(row.number);
    EXPECT_EQ(static_cast<std::uint32_t>(row.decimal), row.status) << "two forms of one code";
    try {
      RaiseRuntimeError(row.number);
    } catch (const HostError& error) {
      EXPECT_EQ(error.Number(), row.decimal);
      EXPECT_EQ(error.Source(), "KXXMLMessageLib");
      EXPECT_EQ(error.Description(), row.text);
      EXPECT_STREQ(error.what(), row.text);
    }
    EXPECT_EQ(StatusOfRuntimeError(row.number), row.decimal);
    EXPECT_EQ(RuntimeErrorOfStatus(row.decimal), row.number);
  }
}

TEST(RuntimeErrorText, IsTheGeneralOneForEveryOtherNumber) {
  std::size_t own = 0;
  for (int number = 0; number <= 1000; ++number) {
    const bool general = RuntimeErrorText(number) == "Application-defined or object-defined error";
    own += general ? 0 : 1;
  }
  EXPECT_EQ(own, std::size(kTexts)) << "the table above has all that have a text";
  EXPECT_EQ(RuntimeErrorText(432), "Application-defined or object-defined error");
  EXPECT_EQ(RuntimeErrorText(-1), "Application-defined or object-defined error");
}

TEST(RaiseCollectionError, IsOfItsOwnType) {
  EXPECT_THROW(RaiseCollectionError(kKeyAlreadyPresent), CollectionError);
  try {
    RaiseCollectionError(kKeyAlreadyPresent);
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), -2146827831);
    EXPECT_EQ(error.Description(),
              "This key is already associated with an element of this collection");
    EXPECT_EQ(error.Source(), "KXXMLMessageLib");
  }
}

TEST(RaiseRuntimeError, TakesATextOfItsOwn) {
  try {
    RaiseRuntimeError(kFileNotFound, "File not found: a.xml");
  } catch (const HostError& error) {
    EXPECT_EQ(error.Number(), StatusOfRuntimeError(53));
    EXPECT_EQ(error.Description(), "File not found: a.xml");
  }
}

struct StatusCase {
  std::uint32_t status;
  int number;
};

constexpr StatusCase kStatuses[] = {
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
    {0x80004005, 0},    // an unspecified failure stands for none
    {0x00000000, 0},   {0x800A0005, 0},
};

TEST(MapStatusToRuntimeError, KnowsThePublishedCodes) {
  for (const StatusCase& row : kStatuses) {
    EXPECT_EQ(MapStatusToRuntimeError(static_cast<std::int32_t>(row.status)), row.number)
        << std::hex << row.status;
  }
}

TEST(RaiseStatus, RaisesTheMappedErrorWithItsText) {
  for (const StatusCase& row : kStatuses) {
    if (row.number == 0) continue;
    SCOPED_TRACE(row.number);
    try {
      RaiseStatus(static_cast<std::int32_t>(row.status), "ignored");
    } catch (const Error& error) {
      EXPECT_EQ(error.Number(), StatusOfRuntimeError(row.number));
      EXPECT_EQ(error.Description(), RuntimeErrorText(row.number));
    }
  }
}

TEST(RaiseStatus, KeepsACodeThatStandsForNone) {
  try {
    RaiseStatus(static_cast<std::int32_t>(0x80004005), "Unspecified error");
  } catch (const Error& error) {
    EXPECT_EQ(static_cast<std::uint32_t>(error.Number()), 0x80004005U);
    EXPECT_EQ(error.Description(), "Automation error\r\nUnspecified error");
  }
  try {
    RaiseStatus(static_cast<std::int32_t>(0x80004005));
  } catch (const Error& error) {
    EXPECT_EQ(error.Description(), "Automation error");
  }
}

struct RaiseCase {
  std::int32_t number;
  const char* source;
  const char* description;
  std::uint32_t raisedNumber;
  const char* raisedSource;
  const char* raisedDescription;
  const char* why;
};

constexpr RaiseCase kRaises[] = {
    {13, "", "", 0x800A000D, "KXXMLMessageLib", "Type mismatch", "a run-time error"},
    {513, "", "", 0x800A0201, "KXXMLMessageLib", "Application-defined or object-defined error",
     "a user number without text"},
    {65535, "s", "d", 0x800AFFFF, "s", "d", "the last user number"},
    {65536, "s", "d", 65536, "s", "d", "beyond them the number stays"},
    {-2147219054, "KXMessages", "Message not initialized.", 0x80040992, "KXMessages",
     "Message not initialized.", "a status code stays"},
    {-2147221504, "", "", 0x80040000, "KXXMLMessageLib",
     "Application-defined or object-defined error", "a status code without text"},
    {-2146828275, "", "", 0x800A000D, "KXXMLMessageLib", "Type mismatch",
     "a run-time error in its form as a status code"},
};

TEST(RaiseError, MakesStatusCodesOfUserNumbersOnly) {
  for (const RaiseCase& row : kRaises) {
    SCOPED_TRACE(row.why);
    try {
      RaiseError(row.number, row.source, row.description);
    } catch (const Error& error) {
      EXPECT_EQ(static_cast<std::uint32_t>(error.Number()), row.raisedNumber);
      EXPECT_EQ(error.Source(), row.raisedSource);
      EXPECT_EQ(error.Description(), row.raisedDescription);
    }
  }
}

TEST(RuntimeErrorOfStatus, ReadsNumbersOnlyOutOfTheRunTimesOwnCodes) {
  EXPECT_EQ(RuntimeErrorOfStatus(StatusOfRuntimeError(65535)), 65535);
  EXPECT_EQ(RuntimeErrorOfStatus(-2147219054), -2147219054);
  EXPECT_EQ(RuntimeErrorOfStatus(-2147024809), -2147024809);
}

TEST(HaltExecution, EndsTheProcess) { EXPECT_DEATH(HaltExecution(), ""); }

}  // namespace
}  // namespace kx::runtime
