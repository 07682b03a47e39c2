// From the name of a schema or message, as callers and messages give it, to a complete location,
// against two bases that the persistent settings hold; and back from a location to its folder and
// file name.
//
// Locations are completed by the Win32 path functions, on text of the 8-bit code page, in buffers
// of 260 characters. On a POSIX host a location or base that begins with "/" is native instead:
// joined with "/", never cut and never converted.
#pragma once

#include "platform/host/host.h"
#include "platform/settings/settings_store.h"
#include "platform/text/code_page.h"

#include <string>
#include <string_view>

namespace kx::core {

/// The longest location, in characters.
inline constexpr std::size_t kMaxLocationLength = 259;

/// The setting that holds the schema base, and the one that holds the message base.
inline constexpr std::string_view kSchemaPathSetting = "SchemaPath";
inline constexpr std::string_view kMsgPathSetting = "MsgPath";

/// True when the text is a URL of the scheme "file", in any letter case.
[[nodiscard]] bool IsFileUrl(std::string_view text) noexcept;

/// Completes and splits locations. Refers to its host and its settings, which must outlive it.
class Locations {
 public:
  Locations(host::Host& host, settings::SettingsStore& settings, text::CodePage codePage)
      : host_(host), settings_(settings), codePage_(std::move(codePage)) {}

  /// The letter of the drive that the system is on, without colon; "C" where the system folder has
  /// no drive.
  [[nodiscard]] std::string GetSystemDrive() const;

  /// `location` completed against the schema base, or the message base.
  /// Raises: as ResolveLocation.
  [[nodiscard]] std::string ResolveSchemaLocation(std::string_view location) const;
  [[nodiscard]] std::string ResolveMessageLocation(std::string_view location) const;

  /// The schema base as it is stored, or its default; nothing is stored. Raises: HostError of the
  /// settings store.
  [[nodiscard]] std::string SchemaBase() const;
  /// The same for messages.
  [[nodiscard]] std::string MessageBase() const;

  /// `location` with ".xml" where it has no extension, and completed against the base stored under
  /// `settingName` (`defaultBase` when nothing is stored there) when it is a relative path. The
  /// base, ended by its separator, is then stored again.
  /// Raises: HostError of the settings store; 52 for a native location of more than 259 characters.
  /// Note: a location that the path functions cannot complete gives blanks or an empty text, and
  /// one of more than 259 characters is cut first, unless it is native.
  [[nodiscard]] std::string ResolveLocation(std::string_view settingName, std::string_view location,
                                            std::string_view defaultBase) const;

  /// The folder that `location` lies in.
  /// Note: it ends in "\" for a path and for a file URL, and without "/" for any other URL.
  [[nodiscard]] std::string GetLocationFolder(std::string_view location) const;

  /// The file name in `path`: what follows its last separator ("\", "/" or ":").
  [[nodiscard]] std::string GetLocationFileName(std::string_view path) const;

 private:
  [[nodiscard]] std::string DefaultSchemaBase() const;
  [[nodiscard]] std::string DefaultMessageBase() const;
  [[nodiscard]] bool IsNative(std::string_view location) const;
  [[nodiscard]] std::string CompleteExtension(std::string_view location) const;
  [[nodiscard]] std::string JoinToUrl(std::string& base, const std::string& location) const;
  [[nodiscard]] std::string JoinToPath(std::string& base, const std::string& location) const;

  host::Host& host_;
  settings::SettingsStore& settings_;
  text::CodePage codePage_;
};

}  // namespace kx::core
