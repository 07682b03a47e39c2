// Failures of loading.
#include "core/load_error.h"

#include "kxmessage/error_codes.h"

#include "platform/runtime/error.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::core {
namespace {

std::string Raised(std::int32_t code, const dom::ParseError& error) {
  try {
    RaiseLoadError(code, error);
  } catch (const Error& raised) {
    EXPECT_EQ(raised.Number(), code);
    EXPECT_EQ(raised.Source(), "KXMessages");
    return raised.Description();
  }
}

TEST(LoadError, CarriesTheFiveValuesOfTheParse) {
  dom::ParseError error;
  error.code = -5;
  error.reason = "bad\r\n";
  error.line = 2;
  error.linePos = 7;
  error.filePos = 99;
  error.srcText = "x";
  EXPECT_EQ(Raised(kxMsgErrorLoadingSchema, error),
            "Error loading Schema: Error -5, bad\r\n  Line 2, Pos 7, Source:x");
  EXPECT_EQ(Raised(kxMsgErrorLoadingXML, error),
            "Error loading XML document: Error -5, bad\r\n  Line 2, Pos 7, Source:x");
}

TEST(LoadError, AFailureWithoutPlaceHasZeros) {
  dom::ParseError error;
  dom::SetParseError(error, dom::ParseCode::kObjectNotFound);
  EXPECT_EQ(Raised(kxMsgErrorLoadingXML, error),
            "Error loading XML document: Error -2146697210, The system cannot locate the object "
            "specified.\r\n  Line 0, Pos 0, Source:");
}

}  // namespace
}  // namespace kx::core
