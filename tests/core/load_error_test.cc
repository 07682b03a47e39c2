// Failures of loading.
#include "core/load_error.h"

#include "kxmessage/error_codes.h"
#include "kxmessage/parse_error.h"

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

TEST(LoadError, TellsToolsTheFiveValuesOneByOne) {
  dom::ParseError parse;
  parse.code = -5;
  parse.reason = "bad";
  parse.line = 2;
  parse.linePos = 7;
  parse.srcText = "x";
  try {
    RaiseLoadError(kxMsgErrorLoadingXML, parse);
  } catch (const ParseError& error) {
    EXPECT_EQ(error.Code(), -5);
    EXPECT_EQ(error.Reason(), "bad");
    EXPECT_EQ(error.Line(), 2);
    EXPECT_EQ(error.LinePosition(), 7);
    EXPECT_EQ(error.SourceText(), "x");
  }
  EXPECT_THROW(RaiseLoadError(kxMsgErrorLoadingSchema, parse), ParseError);
}

}  // namespace
}  // namespace kx::core
