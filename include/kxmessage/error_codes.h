// The codes of the errors that the library itself raises.
//
// A value header: every folder may include it. Kept in step with the texts in core/msg_texts.cc by
// an assertion there.
#pragma once

#include <cstdint>

namespace kx {

/// What Error::Number() of a broken rule of the library is.
///
/// The members kxMsgErr… are an earlier numbering: they keep their values and are never raised.
/// The members kxMsgError… are the codes in use.
enum kxMsgErrorEnum : std::int32_t {
  kxMsgErrNotInitialized = -2147221504,     // 0x80040000
  kxMsgErrNoSchema = -2147221503,           // 0x80040001
  kxMsgErrLoadingSchema = -2147221502,      // 0x80040002
  kxMsgErrInvalidMessage = -2147221501,     // 0x80040003
  kxMsgErrNoValue = -2147221500,            // 0x80040004
  kxMsgErrInvalidValue = -2147221499,       // 0x80040005
  kxMsgErrNoChildren = -2147221498,         // 0x80040006
  kxMsgErrOneElement = -2147221497,         // 0x80040007
  kxMsgErrInvalidChild = -2147221496,       // 0x80040008
  kxMsgErrNoChild = -2147221495,            // 0x80040009
  kxMsgErrRequiredChild = -2147221494,      // 0x8004000A
  kxMsgErrLoadingXML = -2147221493,         // 0x8004000B
  kxMsgErrInvalidGroup = -2147221492,       // 0x8004000C
  kxMsgErrUnknownElement = -2147221491,     // 0x8004000D
  kxMsgErrInvalidSchema = -2147221490,      // 0x8004000E
  kxMsgErrBadBinary = -2147221489,          // 0x8004000F
  kxMsgErrWrongNameSpace = -2147221488,     // 0x80040010
  kxMsgErrInvalidOccurrence = -2147221487,  // 0x80040011
  kxMsgErrDuplicateSchema = -2147221486,    // 0x80040012
  kxMsgErrInvalidMsgType = -2147221485,     // 0x80040013

  kxMsgErrorNotInitialized = -2147219054,     // 0x80040992
  kxMsgErrorNoSchema = -2147219053,           // 0x80040993
  kxMsgErrorLoadingSchema = -2147219052,      // 0x80040994
  kxMsgErrorInvalidMessage = -2147219051,     // 0x80040995
  kxMsgErrorNoValue = -2147219050,            // 0x80040996
  kxMsgErrorInvalidValue = -2147219049,       // 0x80040997
  kxMsgErrorNoChildren = -2147219048,         // 0x80040998
  kxMsgErrorOneElement = -2147219047,         // 0x80040999
  kxMsgErrorInvalidChild = -2147219046,       // 0x8004099A
  kxMsgErrorNoChild = -2147219045,            // 0x8004099B
  kxMsgErrorRequiredChild = -2147219044,      // 0x8004099C
  kxMsgErrorLoadingXML = -2147219043,         // 0x8004099D
  kxMsgErrorInvalidGroup = -2147219042,       // 0x8004099E
  kxMsgErrorUnknownElement = -2147219041,     // 0x8004099F
  kxMsgErrorInvalidSchema = -2147219040,      // 0x800409A0
  kxMsgErrorBadBinary = -2147219039,          // 0x800409A1
  kxMsgErrorWrongNameSpace = -2147219038,     // 0x800409A2
  kxMsgErrorInvalidOccurrence = -2147219037,  // 0x800409A3
  kxMsgErrorDuplicateSchema = -2147219036,    // 0x800409A4
  kxMsgErrorInvalidMsgType = -2147219035,     // 0x800409A5
  kxMsgErrorUnknownAttribute = -2147219034,   // 0x800409A6
  kxMsgErrorNoAttribute = -2147219033,        // 0x800409A7
  kxMsgErrorBadAttributeValue = -2147219032,  // 0x800409A8
  kxMsgErrorAttributeReadOnly = -2147219031,  // 0x800409A9
  kxMsgErrorAttributeExists = -2147219030,    // 0x800409AA
  kxMsgErrorAttributeRequired = -2147219029,  // 0x800409AB
};

}  // namespace kx
