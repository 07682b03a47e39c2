// Failures as the tool tells them.
#include "kxmsg/failure.h"

#include "kxmessage/error_codes.h"
#include "kxmessage/parse_error.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <string>

namespace kxmsg {
namespace {

TEST(Failure, OfLoadingTellsItsPlace) {
  const kx::ParseError error(kx::kxMsgErrorLoadingXML, "KXMessages", "Error  loading\r\nit.",
                             {-1072896658, "No.\r\n", 3, 14, "<a>"});
  const Failure failure = DescribeError(error);
  EXPECT_EQ(FailureLine("a.xml", failure), "a.xml:3:14: error 0x8004099D: Error loading it.");
  EXPECT_EQ(FailureJson(failure),
            "\"ok\": false, \"number\": -2147219043, \"hex\": \"0x8004099D\", "
            "\"source\": \"KXMessages\", \"text\": \"Error  loading\\u000D\\u000Ait.\", "
            "\"line\": 3, \"position\": 14, \"code\": -1072896658, "
            "\"reason\": \"No.\\u000D\\u000A\", \"sourceText\": \"<a>\"");
}

TEST(Failure, WithoutAPlaceHasNoLine) {
  const kx::Error error(kx::kxMsgErrorNoSchema, "KXMessages", "No schema.");
  EXPECT_EQ(FailureLine("a\nb.xml", DescribeError(error)),
            "a\\nb.xml: error 0x80040993: No schema.");
}

TEST(Failure, StaysOnOneLineHoweverLongTheTextIs) {
  const kx::Error error(1, "x", std::string(100'000, 'y') + "\x1b");
  const std::string line = FailureLine("a", DescribeError(error));
  EXPECT_LT(line.size(), 600U);
  EXPECT_EQ(line.substr(line.size() - 4), "y...");
}

TEST(Failure, OfTheSystemHasTheNumberOfTheRunTimeError) {
  const struct {
    int number;
    const char* hex;
  } rows[] = {{ENOENT, "0x800A0035"}, {ENOTDIR, "0x800A004C"}, {EACCES, "0x800A004B"},
              {EISDIR, "0x800A004B"}, {ENOSPC, "0x800A003D"},  {ENAMETOOLONG, "0x800A0034"},
              {EIO, "0x800A004B"}};
  for (const auto& row : rows) {
    try {
      RaiseSystemError(row.number);
    } catch (const kx::Error& error) {
      EXPECT_NE(FailureLine("a", DescribeError(error)).find(row.hex), std::string::npos)
          << row.number;
      EXPECT_FALSE(error.Description().empty());
    }
  }
}

}  // namespace
}  // namespace kxmsg
