// What a caller may set: bounds, and from where messages may draw what they name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kx {

/// Settings of the process, of one message or of one factory. A value; the defaults are generous.
struct Options {
  // What the schemas of a message may be read from. A location that the caller names himself is
  // not asked about.

  /// The folder or URL that schemas' locations are completed against; whatever lies under it may
  /// be read.
  std::string schemaBase;
  /// URLs, and folders of other machines, under which a message may name schemas.
  std::vector<std::string> allowedPrefixes;
  /// When not empty: the only folders from which a message may name local files.
  std::vector<std::string> schemaFolders;

  // Bounds.

  std::size_t maxDocumentBytes = std::size_t{128} << 20U;
  std::uint32_t maxDepth = 5000;
  std::size_t maxEntityBytes = std::size_t{16} << 20U;
  std::size_t maxSchemaBytes = std::size_t{16} << 20U;
  std::size_t maxDownloadBytes = std::size_t{16} << 20U;  ///< of a document, uncompressed
  // Seconds of 0 count as 1: nothing is waited for without an end.
  std::uint32_t downloadSeconds = 30;  ///< for the whole of a download, its redirects included
  std::uint32_t connectSeconds = 10;   ///< until a server has been reached
  std::uint32_t stallSeconds = 10;     ///< without a byte from the server
  std::uint32_t maxRedirects = 5;
};

}  // namespace kx
