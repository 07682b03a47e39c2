// What a loaded document takes: the growth of the resident memory of a fresh process, this program
// started again, while the document lives. The text that it was loaded from is not counted; a
// program's own copy of it is. A small document is loaded many times, since memory comes by pages.
#pragma once

#include "report.h"

#include <string>
#include <vector>

namespace kx::bench {

/// The rows named "memory". `program`: the path of this program.
/// Raises: std::runtime_error when a process cannot be started or measured.
std::vector<Result> MeasureMemory(const std::string& program, const std::string& input);

/// The fresh process: loads the text of `file` `copies` times into the tree of `library`, prints
/// how many bytes the process has grown by, and returns its exit status.
int RunMemoryProcess(const std::string& library, const std::string& file, int copies);

}  // namespace kx::bench
