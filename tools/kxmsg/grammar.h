// The grammar of the command line: commands, options, and what --help prints.
#pragma once

#include "kxmsg/arguments.h"

#include <memory>

namespace CLI {  // NOLINT(readability-identifier-naming): as the parser spells it
class App;
}

namespace kxmsg {

/// All commands with their options, which read into `arguments`; that must outlive the result.
[[nodiscard]] std::shared_ptr<CLI::App> BuildGrammar(Arguments& arguments);

}  // namespace kxmsg
