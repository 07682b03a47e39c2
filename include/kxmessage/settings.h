// The settings that outlive the process, and where files are looked for.
#pragma once

#include "kxmessage/export.h"
#include "kxmessage/options.h"

#include <string>
#include <string_view>

namespace kx {

/// The two bases that all messages of a user share. They are read anew whenever a location is
/// completed; Options::schemaBase and messageBase take their place for single messages. May be used
/// from any thread, and by several processes at once.
class KX_EXPORT Settings {
 public:
  Settings() = delete;

  /// The base that schemas' locations are completed against, as it is stored, or its default.
  /// Reading stores nothing. Raises: 321, naming the file, for damaged settings; 75 and so on when
  /// they cannot be read.
  [[nodiscard]] static std::string SchemaPath();
  /// Stores it, durable on return: a folder or a URL, with or without closing separator.
  /// Raises: 5 for an empty text and for one with a NUL; 75, 76, 70, 61 when it cannot be stored.
  static void SchemaPath(std::string_view Value);
  /// The same for messages.
  [[nodiscard]] static std::string MsgPath();
  static void MsgPath(std::string_view Value);

  /// Where the settings are stored: the host's name of the file, or the registry key; "" when there
  /// is no place for them.
  [[nodiscard]] static std::string Storage();

  /// The host's name of the file that KXMessage::LoadMessage with these options would look for, or
  /// save to: the location completed, its drive replaced by the drive's folder, letter case as
  /// found. An empty location gives the folder of the base, and
  /// stores nothing; any other relative one stores the base, as every completion does. "" for a
  /// URL, and for what no file can be called.
  [[nodiscard]] static std::string MessageFile(std::string_view location, const Options& options);
  /// The same for schemas.
  [[nodiscard]] static std::string SchemaFile(std::string_view location, const Options& options);
};

}  // namespace kx
