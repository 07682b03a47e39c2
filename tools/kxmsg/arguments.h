// What a command line says, as values.
#pragma once

#include "kxmessage/options.h"

#include "kxmsg/edit_budget.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kxmsg {

/// What the program's exit status says; kept in step with the table in manual.cc.
enum class ExitStatus : int {
  kDone = 0,      ///< all went well
  kBad = 1,       ///< a message, schema or setting is bad, missing, or nothing was found
  kUsage = 2,     ///< the command line is wrong
  kNoOutput = 3,  ///< the result could not be written
  kInternal = 4,  ///< memory ran out, or the program has a fault
};

enum class Command : std::uint8_t {
  kNew,
  kCheck,
  kShow,
  kGet,
  kSet,
  kEdit,
  kSchema,
  kHeader,
  kConfig,
};

enum class Color : std::uint8_t { kAuto, kAlways, kNever };

/// See above. One value for all commands: each reads what is its own.
struct Arguments {
  Command command = Command::kCheck;

  std::vector<std::string> files;  ///< of check
  std::string file;                ///< of the other commands that read a message
  std::string schema;              ///< of new and schema
  std::string root;                ///< of new
  std::string pattern;
  std::string value;
  std::string script;  ///< of edit: a file; empty when it was not given
  bool hasScript = false;
  std::vector<std::string> scriptLines;     ///< of edit: -e
  std::size_t maxElements = kMostElements;  ///< of edit: that are found at once, and added
  std::string output;                       ///< -o; empty when it was not given
  bool hasOutput = false;
  std::vector<std::string> headerItems;  ///< NAME or NAME=VALUE
  std::string settingName;
  bool hasSettingName = false;
  std::string settingValue;
  bool hasSettingValue = false;

  bool json = false;
  bool xml = false;
  bool nullEnds = false;  ///< --null: a NUL after each value
  bool full = false;      ///< --full: values are shown whole
  bool create = false;    ///< --create: a child that may be there is made
  bool force = false;     ///< --force: what does not load again is written too
  int jobs = 1;           ///< 0: one for each processor

  bool base = false;  ///< --base: names are completed against the two settings
  bool quiet = false;
  Color color = Color::kAuto;
  std::string defaultSchema;
  std::vector<std::string> drives;  ///< LETTER=FOLDER
  kx::Options options;
};

}  // namespace kxmsg
