// Runs kxmsg as a shell would: in a folder of its own, with settings and drive C in that folder.
#pragma once

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace kxmsg {

/// What a run left behind.
struct RunResult {
  int status = -1;  ///< the exit status; -1 when the program did not end by itself
  std::string output;
  std::string errors;
};

/// How a run differs from the ordinary.
struct RunOptions {
  std::string input = {};       ///< standard input
  std::string outputFile = {};  ///< standard output goes there, not into the result
  bool onTerminal = false;      ///< both outputs are one terminal; `output` is what it shows
  bool obeysModes = false;      ///< the modes of files bind the program, though root runs the test
  std::string folder = {};      ///< the current folder, inside the test's own; empty: that itself
  std::vector<std::string> environment = {};  ///< NAME=VALUE, beside the ordinary
};

/// A test with a folder of its own that holds
///   order.xdr, order.xml       the example and its schema
///   schemas/                   the folder that the setting SchemaPath names; holds order.xdr too
///   messages/                  the folder that the setting MsgPath names
///   drive_c/                   drive C
class ProgramTest : public testing::Test {
 protected:
  ProgramTest();
  ~ProgramTest() override;

  /// Runs the program with these words behind its name.
  [[nodiscard]] RunResult Run(const std::vector<std::string>& words,
                              const RunOptions& options = {}) const;

  /// A path in the test's folder.
  [[nodiscard]] std::string At(std::string_view name) const;
  void Write(std::string_view name, std::string_view bytes) const;
  /// The bytes of a file; "(missing)" when there is none.
  [[nodiscard]] std::string Read(std::string_view name) const;
  [[nodiscard]] bool Exists(std::string_view name) const;
  /// The names in a folder, sorted, separated by blanks.
  [[nodiscard]] std::string Names(std::string_view folder) const;

 private:
  std::string folder_;
};

/// `text` with every `what` replaced by `by`.
[[nodiscard]] std::string Replaced(std::string text, std::string_view what, std::string_view by);

/// A message of the example's kind with one item, so many bytes beyond ASCII as `customer` has.
[[nodiscard]] std::string OrderText(std::string_view customer);

}  // namespace kxmsg
