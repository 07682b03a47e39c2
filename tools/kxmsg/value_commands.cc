// kxmsg get and kxmsg set: the elements that a pattern finds from the content root.
#include "kxmessage/element.h"
#include "kxmessage/error_codes.h"
#include "kxmessage/found_elements.h"
#include "kxmessage/message.h"

#include "kxmsg/commands.h"
#include "kxmsg/files.h"
#include "kxmsg/text_form.h"

#include <vector>

namespace kxmsg {

namespace {

// Raises: 91 for what is found and is no element of a schema.
std::vector<kx::KXMsgElement> Find(const kx::KXMessage& message, const std::string& pattern) {
  const kx::KXMsgFoundElements found = message.RootElement().FindElements(pattern);
  std::vector<kx::KXMsgElement> elements;
  const std::int32_t count = found.Count();
  for (std::int32_t i = 1; i <= count; ++i) elements.push_back(found.Element(i));
  return elements;
}

ExitStatus TellNothingFound(const Arguments& arguments, Console& console) {
  Failure failure;
  failure.number = kx::kxMsgErrorNoChild;
  failure.text = "The pattern " + Quoted(arguments.pattern) + " finds nothing.";
  console.PrintFailure(ShownName(arguments.file), failure);
  return ExitStatus::kBad;
}

}  // namespace

ExitStatus RunGet(const Arguments& arguments, Console& console) {
  const kx::KXMessage message = LoadMessage(arguments.file, arguments, console);
  const std::vector<kx::KXMsgElement> elements = Find(message, arguments.pattern);
  if (elements.empty()) return TellNothingFound(arguments, console);
  const char end = arguments.nullEnds ? '\0' : '\n';
  for (const kx::KXMsgElement& element : elements) {
    std::string text = arguments.xml ? element.XML() : element.TextValue();
    if (console.IsOutputATerminal() && !arguments.nullEnds) text = PrintableLines(text);
    console.Print(text + end);
  }
  return ExitStatus::kDone;
}

ExitStatus RunSet(const Arguments& arguments, Console& console) {
  const kx::KXMessage message = LoadMessage(arguments.file, arguments, console);
  std::vector<kx::KXMsgElement> elements = Find(message, arguments.pattern);
  if (elements.empty() && arguments.create) {
    elements.push_back(message.RootElement().ChildElements(arguments.pattern));
  }
  if (elements.empty()) return TellNothingFound(arguments, console);
  for (const kx::KXMsgElement& element : elements) element.Value(arguments.value);
  SaveChange(message, arguments, console);
  return ExitStatus::kDone;
}

}  // namespace kxmsg
