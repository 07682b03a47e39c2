// Which uses of a file go together.
#include "platform/host/open_file_table.h"

#include "platform/host/host_site.h"

#include <gtest/gtest.h>
#include <optional>
#include <utility>

namespace kx::host {
namespace {

struct UseCase {
  FileUse first;
  FileUse second;
  int error;
};

constexpr UseCase kUseCases[] = {
    {FileUse::kInput, FileUse::kInput, 0},    {FileUse::kInput, FileUse::kBinary, 0},
    {FileUse::kBinary, FileUse::kBinary, 0},  {FileUse::kBinary, FileUse::kInput, 0},
    {FileUse::kInput, FileUse::kOutput, 55},  {FileUse::kBinary, FileUse::kOutput, 55},
    {FileUse::kOutput, FileUse::kInput, 55},  {FileUse::kOutput, FileUse::kBinary, 55},
    {FileUse::kOutput, FileUse::kOutput, 55},
};

TEST(OpenFileTable, RefusesOutputBesideAnyOtherUse) {
  for (const UseCase& row : kUseCases) {
    SCOPED_TRACE(static_cast<int>(row.first) * 10 + static_cast<int>(row.second));
    OpenFileTable table;
    const OpenFileEntry first(table, "x", row.first);
    EXPECT_EQ(RuntimeErrorOfCall([&] { const OpenFileEntry second(table, "x", row.second); }),
              row.error);
    EXPECT_EQ(RuntimeErrorOfCall([&] { const OpenFileEntry other(table, "y", row.second); }), 0);
    EXPECT_TRUE(table.IsOpen("x"));
    EXPECT_FALSE(table.IsOpen("y"));
  }
}

TEST(OpenFileTable, ForgetsAFileWithItsLastEntry) {
  OpenFileTable table;
  OpenFileEntry kept;
  {
    OpenFileEntry first(table, "x", FileUse::kInput);
    const OpenFileEntry second(table, "x", FileUse::kInput);
    kept = std::move(first);
  }
  EXPECT_TRUE(table.IsOpen("x"));
  kept.Reset();
  EXPECT_FALSE(table.IsOpen("x"));
  kept.Reset();  // a second time does nothing
  const OpenFileEntry output(table, "x", FileUse::kOutput);
  EXPECT_TRUE(table.IsOpen("x"));
}

}  // namespace
}  // namespace kx::host
