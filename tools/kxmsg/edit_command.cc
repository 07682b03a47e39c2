// kxmsg edit: a script of edits, all of them or none.
#include "kxmessage/error.h"
#include "kxmessage/error_codes.h"
#include "kxmessage/message.h"

#include "kxmsg/commands.h"
#include "kxmsg/edit_budget.h"
#include "kxmsg/edits.h"
#include "kxmsg/files.h"
#include "kxmsg/script.h"
#include "kxmsg/selection.h"

#include <cstddef>
#include <optional>
#include <string>

namespace kxmsg {

namespace {

struct Script {
  std::string name;
  std::string text;
};

Script ScriptOfLines(const Arguments& arguments) {
  Script script{"-e", {}};
  for (const std::string& lines : arguments.scriptLines) {
    script.text += lines;
    if (lines.empty() || lines.back() != '\n') script.text += '\n';
  }
  return script;
}

Script ReadScript(const Arguments& arguments) {
  if (!arguments.scriptLines.empty()) {
    if (arguments.hasScript) throw UsageFailure{"SCRIPT and -e do not go together."};
    return ScriptOfLines(arguments);
  }
  const std::string name = arguments.hasScript ? arguments.script : "-";
  if (name == "-" && arguments.file == "-") {
    throw UsageFailure{"Standard input cannot be both the message and the script."};
  }
  try {
    return {ShownName(name), ReadBytes(name, kMostScriptBytes)};
  } catch (const kx::Error& error) {
    throw ScriptFailure{ShownName(name), DescribeError(error)};
  }
}

void CheckScript(const Script& script) {
  ScriptReader reader(script.text, script.name);
  while (reader.Next()) {
  }
}

// Takes what is known before a step is done. The children that come by themselves are counted when
// they are there.
void TakeForStep(const Step& step, const Selection& selection, EditBudget& budget) {
  const std::size_t count = selection.elements.size();
  if (step.verb == Verb::kAdd) budget.TakeElements(count);
  if (step.value) budget.TakeValues(step.value->text.size(), count);
}

void Apply(const Step& step, const Selection& selection, EditBudget& budget) {
  const std::optional<std::string> value =
      step.value ? std::optional(step.value->text) : std::nullopt;
  switch (step.verb) {
    case Verb::kSet:
      SetValues(selection, value.value_or(""));
      return;
    case Verb::kRemove:
      Remove(selection);
      return;
    case Verb::kAdd:
    case Verb::kAttr:
    case Verb::kGroup:
      break;
  }
  for (const kx::KXMsgElement& element : selection.elements) {
    if (step.verb == Verb::kAdd) {
      budget.TakeElements(AddChild(element, step.name ? step.name->text : std::string(), value) -
                          1);
    } else if (step.verb == Verb::kAttr) {
      PutAttribute(element, step.name->text, value);
    } else {
      budget.TakeElements(ReplaceGroup(element, step.groupNumber));
    }
  }
}

// The commands that work on elements have no use for attributes.
Selection SelectFor(const Step& step, const kx::KXMessage& message, std::size_t most) {
  Selection selection = SelectSome(message, step.pattern.text, most);
  const bool takesAttributes = step.verb == Verb::kSet || step.verb == Verb::kRemove;
  if (!selection.attribute.empty() && !takesAttributes) {
    throw kx::Error(kx::kxMsgErrorNoChildren, "kxmsg",
                    "The pattern finds attributes; this command works on elements.");
  }
  return selection;
}

// The word that a failure is about, as far as the tool can tell.
const Word& AppliedWord(const Step& step) {
  if (step.value) return *step.value;
  if (step.group) return *step.group;
  return step.name ? *step.name : step.pattern;
}

ScriptFailure FailureAt(const Script& script, const Step& step, const Word& word,
                        const kx::Error& error) {
  ScriptFailure failure{script.name, DescribeError(error)};
  failure.failure.line = step.line;
  failure.failure.position = word.position;
  return failure;
}

void RunStep(const Script& script, const Step& step, const kx::KXMessage& message,
             EditBudget& budget) {
  const Word* word = &step.pattern;
  try {
    const Selection selection = SelectFor(step, message, budget.MostFound());
    TakeForStep(step, selection, budget);
    word = &AppliedWord(step);
    Apply(step, selection, budget);
  } catch (const kx::Error& error) {
    throw FailureAt(script, step, *word, error);
  }
}

}  // namespace

ExitStatus RunEdit(const Arguments& arguments, Console& console) {
  const Script script = ReadScript(arguments);
  CheckScript(script);
  const kx::KXMessage message = LoadMessage(arguments.file, arguments, console);
  ScriptReader reader(script.text, script.name);
  EditBudget budget(arguments.maxElements, arguments.options.maxDocumentBytes);
  while (const std::optional<Step> step = reader.Next()) RunStep(script, *step, message, budget);
  SaveChange(message, arguments, console);
  return ExitStatus::kDone;
}

}  // namespace kxmsg
