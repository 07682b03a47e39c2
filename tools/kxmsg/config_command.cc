// kxmsg config: the two settings, and where they lead.
#include "kxmessage/settings.h"

#include "kxmsg/commands.h"
#include "kxmsg/files.h"
#include "kxmsg/text_form.h"

namespace kxmsg {

namespace {

struct Setting {
  std::string_view name;
  std::string (*read)(const Arguments&);
  void (*write)(std::string_view);  // null: it can only be read
};

constexpr Setting kSettings[] = {
    {"SchemaPath", [](const Arguments&) { return kx::Settings::SchemaPath(); },
     [](std::string_view value) { kx::Settings::SchemaPath(value); }},
    {"MsgPath", [](const Arguments&) { return kx::Settings::MsgPath(); },
     [](std::string_view value) { kx::Settings::MsgPath(value); }},
    {"SchemaFolder",
     [](const Arguments& arguments) { return kx::Settings::SchemaFile("", arguments.options); },
     nullptr},
    {"MsgFolder",
     [](const Arguments& arguments) { return kx::Settings::MessageFile("", arguments.options); },
     nullptr},
    {"Storage", [](const Arguments&) { return kx::Settings::Storage(); }, nullptr},
};

const Setting& GetSetting(std::string_view name) {
  for (const Setting& setting : kSettings) {
    if (SameName(setting.name, name)) return setting;
  }
  throw UsageFailure{"No setting is called " + Quoted(name) + '.'};
}

}  // namespace

ExitStatus RunConfig(const Arguments& arguments, Console& console) {
  if (!arguments.hasSettingName) {
    for (const Setting& setting : kSettings) {
      console.Print(std::string(setting.name) + '=' + Printable(setting.read(arguments)) + '\n');
    }
    return ExitStatus::kDone;
  }
  const Setting& setting = GetSetting(arguments.settingName);
  if (!arguments.hasSettingValue) {
    console.Print(setting.read(arguments) + '\n');
    return ExitStatus::kDone;
  }
  if (setting.write == nullptr) {
    throw UsageFailure{std::string(setting.name) + " can only be read."};
  }
  if (arguments.settingValue.empty()) throw UsageFailure{"A base is a folder or URL, not empty."};
  setting.write(BaseLocation(arguments.settingValue));
  return ExitStatus::kDone;
}

}  // namespace kxmsg
