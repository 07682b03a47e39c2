// kxmsg new.
#include "kxmessage/message.h"

#include "kxmsg/commands.h"
#include "kxmsg/files.h"

namespace kxmsg {

ExitStatus RunNew(const Arguments& arguments, Console& console) {
  const kx::KXMessage message(arguments.options);
  message.InitMessage(SchemaLocation(arguments.schema, arguments), arguments.root);
  SaveMessage(message, arguments.hasOutput ? arguments.output : "-", arguments, console);
  return ExitStatus::kDone;
}

}  // namespace kxmsg
