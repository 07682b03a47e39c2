// The text of a settings file.
//
//   # a comment
//   [application]
//   name = value
//   "name with = in it" = "text with\na line end"
//
// A line is blank, a comment (# or ;), a section or an entry. Blanks around names and values do not
// count. A name or value is plain, every character standing for itself (so a Windows path needs
// nothing), or in quotes, with \\ \" \n \r \t and \xHH inside. The file is UTF-8 without control
// characters. What a user wrote stays as it is when another entry changes.
//
// The reader takes nothing for granted: a line that is none of these, an entry before any section,
// a section or name given twice, all mean that the file is damaged, and nothing is guessed.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kx::settings {

/// What is wrong with a settings file.
struct SettingsDamage {
  std::size_t line = 0;  ///< 1-based
  const char* reason = "";
};

/// The lines of a settings file. A value.
class SettingsText {
 public:
  /// Makes an empty text: no section, no entry.
  SettingsText() = default;

  /// Reads the text of a file. Nothing when it is damaged; then `damage` says where.
  [[nodiscard]] static std::optional<SettingsText> Parse(std::string_view text,
                                                         SettingsDamage& damage);

  /// The value of an entry, or nothing.
  [[nodiscard]] std::optional<std::string> Find(std::string_view section,
                                                std::string_view name) const;
  /// Sets the value of an entry; makes the entry and its section if they are missing.
  void Set(std::string_view section, std::string_view name, std::string_view value);
  /// The text of the file; Parse gives the same again.
  [[nodiscard]] std::string Text() const;

 private:
  enum class Kind : std::uint8_t { kOther, kSection, kEntry };
  struct Line {
    Kind kind = Kind::kOther;
    std::string raw;    // as it stands in the file, without its end
    std::string name;   // of a section or entry
    std::string value;  // of an entry
  };
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  [[nodiscard]] static const char* ParseLine(std::string_view raw, Line& line);
  [[nodiscard]] std::size_t FindSection(std::string_view section) const;
  [[nodiscard]] std::size_t FindEntry(std::size_t sectionLine, std::string_view name) const;
  [[nodiscard]] std::size_t InsertionPoint(std::size_t sectionLine) const;

  std::vector<Line> lines_;
};

}  // namespace kx::settings
