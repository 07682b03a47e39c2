// The reader of settings files on any bytes: it takes or refuses them, and what it takes survives
// being written and read again, also after a change.
#include "platform/settings/settings_text.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

namespace {

using kx::settings::SettingsDamage;
using kx::settings::SettingsText;

void Check(bool holds, const char* promise) {
  if (holds) return;
  std::fprintf(stderr, "broken promise: %s\n", promise);
  std::abort();
}

SettingsText ReadAgain(const SettingsText& text) {
  SettingsDamage damage;
  const std::string written = text.Text();
  std::optional<SettingsText> again = SettingsText::Parse(written, damage);
  Check(again.has_value(), "what is written can be read");
  Check(again->Text() == written, "what is read again is written the same");
  return *again;
}

// Sets an entry whose parts are the input itself.
void CheckChange(SettingsText text, std::string_view section, std::string_view name,
                 std::string_view value) {
  text.Set(section, name, value);
  Check(text.Find(section, name) == value, "a value that was set is found");
  Check(ReadAgain(text).Find(section, name) == value, "a value survives the file");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(data, data + size);
  SettingsDamage damage;
  const std::optional<SettingsText> read = SettingsText::Parse(input, damage);
  if (read) {
    ReadAgain(*read);
    CheckChange(*read, "App", "name", input);
  } else {
    Check(damage.line > 0 && damage.reason != nullptr, "a damage has a line and a reason");
  }
  if (input.empty() || input.find('\0') != std::string::npos) return 0;
  CheckChange(SettingsText(), input, input, input);
  return 0;
}
