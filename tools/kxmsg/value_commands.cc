// kxmsg get and kxmsg set: the elements, or attributes, that a pattern finds from the content root.
#include "kxmessage/attributes.h"
#include "kxmessage/element.h"
#include "kxmessage/message.h"

#include "kxmsg/commands.h"
#include "kxmsg/edits.h"
#include "kxmsg/files.h"
#include "kxmsg/selection.h"
#include "kxmsg/text_form.h"

namespace kxmsg {

namespace {

std::string TextOf(const kx::KXMsgElement& element, const Selection& selection, bool asXml) {
  if (!selection.attribute.empty())
    return element.Attributes().Attrib(selection.attribute).TextValue();
  return asXml ? element.XML() : element.TextValue();
}

// What --create adds to the message, for what the pattern did not find.
Selection SelectOrCreate(const kx::KXMessage& message, const std::string& pattern) {
  const AttributePath path = AttributePathOf(pattern);
  if (!path.owners.empty()) {
    Selection selection = SelectSome(message, path.owners);
    selection.attribute = path.name;
    return selection;
  }
  Selection selection = Select(message, pattern);
  if (selection.elements.empty() && selection.attribute.empty()) {
    selection.elements.push_back(message.RootElement().ChildElements(pattern));
  }
  return selection.elements.empty() ? SelectSome(message, pattern) : selection;
}

}  // namespace

ExitStatus RunGet(const Arguments& arguments, Console& console) {
  if (arguments.xml && !AttributePathOf(arguments.pattern).name.empty()) {
    throw UsageFailure{"--xml prints elements; the pattern ends in an attribute."};
  }
  const kx::KXMessage message = LoadMessage(arguments.file, arguments, console);
  const Selection selection = SelectSome(message, arguments.pattern);
  const char end = arguments.nullEnds ? '\0' : '\n';
  for (const kx::KXMsgElement& element : selection.elements) {
    std::string text = TextOf(element, selection, arguments.xml);
    if (console.IsOutputATerminal() && !arguments.nullEnds) text = PrintableLines(text);
    console.Print(text + end);
  }
  return ExitStatus::kDone;
}

ExitStatus RunSet(const Arguments& arguments, Console& console) {
  const kx::KXMessage message = LoadMessage(arguments.file, arguments, console);
  const Selection selection = arguments.create ? SelectOrCreate(message, arguments.pattern)
                                               : SelectSome(message, arguments.pattern);
  SetValues(selection, arguments.value);
  SaveChange(message, arguments, console);
  return ExitStatus::kDone;
}

}  // namespace kxmsg
