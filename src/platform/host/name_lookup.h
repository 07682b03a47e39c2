// From the name of a file as callers and messages write it to a name of the host.
//
// On a POSIX system a name is native when it begins with "/"; a drive letter leads to a folder of
// the host; anything else is relative to the current folder, and a single backslash in front to the
// root. A name is looked for as spelled first, then component by component without regard to case,
// so that a reader finds "Order.XML" under "order.xml" and a writer replaces what a reader would
// find. On Windows the system does all of this itself.
#pragma once

#include "platform/host/host.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace kx::host {

/// The folders of the host that stand for drives. A value.
class DriveFolders {
 public:
  /// What the environment says: KX_DRIVE_A to KX_DRIVE_Z, each else "drive_a" to "drive_z" in the
  /// user's data folder. Only drive C exists before its folder does.
  [[nodiscard]] static DriveFolders FromEnvironment(Host& host);

  /// Makes `folder` stand for the drive; `letter` in either case.
  void Set(char letter, std::string folder);
  /// The folder of the drive, or nothing when there is none.
  [[nodiscard]] std::optional<std::string> Find(char letter) const;
  /// True when the drive exists although its folder may not: C, and every drive set by name.
  [[nodiscard]] bool IsPromised(char letter) const;

 private:
  struct Drive {
    std::string folder;
    bool isPromised = false;
  };
  std::array<Drive, 26> drives_;
};

/// What a name leads to.
struct FoundName {
  /// kOk: it exists. kNotFound: it does not, but could be made as `path`. Else why neither.
  FileStatus status = FileStatus::kNotFound;
  std::string path;  ///< the host's name; set for kOk and kNotFound
  /// With kNotFound: a drive's folder that must be made before the file, or empty.
  std::string missingDriveFolder;
  FileInfo info = {};  ///< with kOk: what it is
};

/// Looks names up. Holds references only; cheap to make.
class NameLookup {
 public:
  NameLookup(FileSystem& files, const DriveFolders& drives) : files_(files), drives_(drives) {}

  /// Finds the file or folder that `name` leads to.
  [[nodiscard]] FoundName Find(std::string_view name) const;

 private:
  [[nodiscard]] FoundName FindPosix(std::string_view name) const;
  [[nodiscard]] FoundName FindOnDrive(char letter, std::string_view rest) const;

  FileSystem& files_;
  const DriveFolders& drives_;
};

}  // namespace kx::host
