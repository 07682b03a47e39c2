// How the bytes of a text file fall into lines.
#include "platform/host/text_file.h"

#include "platform/host/host_site.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kx::host {
namespace {

using namespace std::string_literals;

struct LineCase {
  std::string bytes;
  std::vector<std::string> lines;
  const char* why;
};

const std::vector<LineCase>& LineCases() {
  static const std::vector<LineCase> cases = {
      {"", {}, "an empty file has no line"},
      {"one", {"one"}, "the last line may lack its end"},
      {"one\r\n", {"one"}, "CR LF ends a line, and no line follows"},
      {"one\r", {"one"}, "CR ends a line"},
      {"one\n", {"one\n"}, "LF does not"},
      {"one\ntwo", {"one\ntwo"}, "LF stays in its line"},
      {"one\rtwo\r\nthree", {"one", "two", "three"}, "both kinds of line end"},
      {"\r\n\r\n", {"", ""}, "empty lines"},
      {"\r\r\n\n\r", {"", "", "\n"}, "CR, CR LF, then LF in a line of its own"},
      {"\n\r\n", {"\n"}, "LF before CR LF belongs to the line"},
      {"one\x1Atwo\r\n", {"one"}, "Chr(26) ends the file"},
      {"one\r\n\x1A", {"one"}, "Chr(26) after a line end adds no line"},
      {"\x1A", {}, "Chr(26) alone"},
      {"a\0b\r\n"s, {"a\0b"s}, "NUL is an ordinary character"},
      {"\xEF\xBB\xBF\xFF\r\n", {"\xEF\xBB\xBF\xFF"}, "no byte is decoded"},
  };
  return cases;
}

TEST(LineReader, EndsLinesAtCrAndCrLfOnly) {
  for (const LineCase& row : LineCases()) {
    SCOPED_TRACE(row.why);
    std::vector<std::string> lines;
    for (LineReader reader(row.bytes); !reader.AtEnd();) lines.emplace_back(reader.Next());
    EXPECT_EQ(lines, row.lines);
  }
}

TEST(InputFile, GivesTheSameLines) {
  for (const LineCase& row : LineCases()) {
    SCOPED_TRACE(row.why);
    InputFile file(OpenFileEntry(), row.bytes);
    std::vector<std::string> lines;
    while (!file.AtEnd()) lines.push_back(file.LineInput());
    EXPECT_EQ(lines, row.lines);
    EXPECT_EQ(RuntimeErrorOfCall([&] { static_cast<void>(file.LineInput()); }), 62);
    EXPECT_EQ(file.Lof(), static_cast<std::int64_t>(row.bytes.size()));
  }
}

TEST(JoinLines, EndsEveryLineInCrLf) {
  for (const LineCase& row : LineCases()) {
    SCOPED_TRACE(row.why);
    std::string joined;
    for (const std::string& line : row.lines) joined += line + "\r\n";
    EXPECT_EQ(JoinLines(row.bytes), joined);
  }
}

TEST(JoinLines, TakesAMillionLines) {
  EXPECT_EQ(JoinLines(std::string(1000000, '\r')).size(), 2000000U);
}

}  // namespace
}  // namespace kx::host
