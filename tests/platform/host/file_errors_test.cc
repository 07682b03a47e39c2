// Which run-time error a status is; what files_test.cc cannot bring about on a real disk.
#include "platform/host/file_errors.h"

#include "platform/host/host_site.h"

#include <gtest/gtest.h>

namespace kx::host {
namespace {

struct ErrorCase {
  FileStatus status;
  int usual;
  int fileLen;
  int kill;
};

constexpr ErrorCase kErrorCases[] = {
    {FileStatus::kNotFound, 53, 53, 53},       {FileStatus::kFolderNotFound, 76, 53, 76},
    {FileStatus::kEmptyName, 75, 53, 53},      {FileStatus::kBadName, 52, 52, 52},
    {FileStatus::kIsFolder, 75, 53, 53},       {FileStatus::kNotRegular, 75, 53, 75},
    {FileStatus::kAccessDenied, 75, 75, 75},   {FileStatus::kReadOnly, 75, 75, 75},
    {FileStatus::kWriteProtected, 70, 70, 70}, {FileStatus::kLocked, 70, 70, 70},
    {FileStatus::kExists, 58, 58, 58},         {FileStatus::kOtherDevice, 74, 74, 74},
    {FileStatus::kAccessError, 75, 75, 75},    {FileStatus::kDiskFull, 61, 61, 61},
    {FileStatus::kTooManyOpen, 67, 67, 67},    {FileStatus::kDeviceUnavailable, 68, 68, 68},
    {FileStatus::kNotReady, 71, 71, 71},       {FileStatus::kTooLarge, 7, 7, 7},
    {FileStatus::kOutOfMemory, 7, 7, 7},       {FileStatus::kIoError, 57, 57, 57},
};

TEST(FileErrors, HaveOneNumberPerStatementAndStatus) {
  for (const ErrorCase& row : kErrorCases) {
    SCOPED_TRACE(static_cast<int>(row.status));
    for (const Statement statement : {Statement::kOpenForInput, Statement::kOpenForOutput,
                                      Statement::kOpenForBinary, Statement::kTransfer}) {
      EXPECT_EQ(RuntimeErrorOf(statement, row.status), row.usual);
    }
    EXPECT_EQ(RuntimeErrorOf(Statement::kFileLen, row.status), row.fileLen);
    EXPECT_EQ(RuntimeErrorOf(Statement::kKill, row.status), row.kill);
    EXPECT_EQ(RuntimeErrorOfCall([&] { RaiseFileError(Statement::kTransfer, row.status); }),
              row.usual);
  }
}

TEST(FileErrors, RaiseNothingForSuccess) {
  EXPECT_EQ(RuntimeErrorOfCall([] { RequireOk(Statement::kKill, FileStatus::kOk); }), 0);
  EXPECT_EQ(RuntimeErrorOfCall([] { RequireOk(Statement::kKill, FileStatus::kLocked); }), 70);
}

}  // namespace
}  // namespace kx::host
