#include "platform/patterns/text_runs.h"

#include <gtest/gtest.h>
#include <string>

namespace kx::patterns {
namespace {

std::size_t EndOf(std::string_view text, std::size_t at, std::string_view of) {
  while (at < text.size() && of.find(text[at]) != std::string_view::npos) ++at;
  return at;
}

TEST(TextRuns, EndWhereScanningEnds) {
  const std::string text = "  1200x00 \t0.0\n\r 9  ";
  const TextRuns runs(text);
  for (std::size_t begin = 0; begin <= text.size(); ++begin) {
    for (std::size_t end = begin; end <= text.size(); ++end) {
      const std::string_view part = std::string_view(text).substr(begin, end - begin);
      EXPECT_TRUE(runs.Covers(part));
      for (std::size_t at = 0; at <= part.size(); ++at) {
        EXPECT_EQ(runs.DigitsEnd(part, at), EndOf(part, at, "0123456789"));
        EXPECT_EQ(runs.ZerosEnd(part, at), EndOf(part, at, "0"));
        EXPECT_EQ(runs.BlanksEnd(part, at), EndOf(part, at, " \t\r\n"));
        std::size_t first = at;
        while (first > 0 &&
               std::string_view(" \t\r\n").find(part[first - 1]) != std::string::npos) {
          --first;
        }
        EXPECT_EQ(runs.BlanksBegin(part, at), first);
      }
    }
  }
}

TEST(TextRuns, CoverNothingOutsideTheirText) {
  const std::string text = "12";
  const std::string other = "12";
  EXPECT_FALSE(TextRuns(text).Covers(other));
  EXPECT_FALSE(TextRuns().Covers(text));
  EXPECT_FALSE(TextRuns(std::string_view()).Covers(std::string_view()));
}

}  // namespace
}  // namespace kx::patterns
