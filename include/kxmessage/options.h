// What a caller may set: bases, code page, bounds, and from where messages may draw what they name.
#pragma once

#include "kxmessage/export.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace kx {

/// Settings of the process, of one message or of one factory. A value; the defaults are generous.
struct KX_EXPORT Options {
  /// What messages have that were given no options of their own. At first what the environment
  /// says, variable by variable (see docs/guide.md). May be called from any thread.
  /// Raises: 5, naming the variable, when the environment holds a value that is none.
  [[nodiscard]] static Options OfProcess();
  /// Puts `options` in their place, for messages made from now on.
  static void SetOfProcess(Options options);

  // Locations and files.

  /// The folder or URL that messages' relative locations are completed against, in the place of
  /// the setting MsgPath; empty: the setting.
  std::string messageBase;
  /// The code page by which message files are read and written, by its number: 1252, 65001 for
  /// UTF-8 and so on.
  int codePage = 1252;
  /// Folders that stand for drives, by capital letter, in the place of those that the environment
  /// names.
  std::map<char, std::string> driveFolders;

  // What the schemas of a message may be read from. A location that the caller names himself is
  // not asked about.

  /// The folder or URL that schemas' locations are completed against, in the place of the setting
  /// SchemaPath; empty: the setting. Whatever lies under the base may be read.
  std::string schemaBase;
  /// URLs, and folders of other machines, under which a message may name schemas.
  std::vector<std::string> allowedPrefixes;
  /// When not empty: the only folders from which a message may name local files.
  std::vector<std::string> schemaFolders;

  // Bounds.

  std::size_t maxDocumentBytes = std::size_t{128} << 20U;
  std::uint32_t maxDepth = 5000;
  std::size_t maxEntityBytes = std::size_t{16} << 20U;
  std::size_t maxDefaultElements = 100'000;  ///< that a new element is filled with at most
  std::uint32_t maxDefaultDepth = 1000;      ///< of those elements below each other
  std::size_t maxSchemaBytes = std::size_t{16} << 20U;
  std::size_t maxDownloadBytes = std::size_t{16} << 20U;  ///< of a document, uncompressed
  // Seconds of 0 count as 1: nothing is waited for without an end.
  std::uint32_t downloadSeconds = 30;  ///< for the whole of a download, its redirects included
  std::uint32_t connectSeconds = 10;   ///< until a server has been reached
  std::uint32_t stallSeconds = 10;     ///< without a byte from the server
  std::uint32_t maxRedirects = 5;
};

}  // namespace kx
