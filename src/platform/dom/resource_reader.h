// Where documents get the bytes behind a location from. The DOM itself opens no file and no
// connection: whoever makes documents gives them a reader.
#pragma once

#include "platform/dom/parse_error.h"

#include <string>
#include <string_view>

namespace kx::dom {

/// What reading a location gave.
struct Resource {
  ParseCode failure = ParseCode::kNone;  ///< kNone when it could be read
  std::string bytes;
  std::string url;  ///< the full location, which becomes the document's own
};

/// Reads locations. Shared by the documents that it is given to, and must outlive them.
class ResourceReader {
 public:
  ResourceReader() = default;
  ResourceReader(const ResourceReader&) = delete;
  ResourceReader& operator=(const ResourceReader&) = delete;
  virtual ~ResourceReader() = default;

  /// Reads all of `location`: a path, or a URL. A failure is an answer, with one of the numbers
  /// kObjectNotFound, kResourceNotFound, kAccessDenied and kUnknownProtocol; nothing is raised.
  [[nodiscard]] virtual Resource Read(std::string_view location) const = 0;
};

}  // namespace kx::dom
