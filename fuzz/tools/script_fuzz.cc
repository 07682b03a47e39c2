// The readers of scripts and of patterns that end in an attribute, on any bytes: a command has what
// its verb needs, in words that lie in its line, and a failure has a place.
#include "kxmsg/script.h"
#include "kxmsg/selection.h"
#include "kxmsg/text_form.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

namespace {

using kxmsg::AttributePath;
using kxmsg::ScriptFailure;
using kxmsg::ScriptReader;
using kxmsg::Step;
using kxmsg::Verb;
using kxmsg::Word;

void Check(bool holds, const char* promise) {
  if (holds) return;
  std::fprintf(stderr, "broken promise: %s\n", promise);
  std::abort();
}

void CheckPath(std::string_view pattern) {
  const AttributePath path = kxmsg::AttributePathOf(pattern);
  Check(!path.name.empty() || path.owners.empty(), "only a path to an attribute has owners");
  Check(path.name.find_first_of(" /@[]()|\"'") == std::string::npos, "a name has no marks in it");
  Check(pattern.find('@' + path.name) != std::string_view::npos || path.name.empty(),
        "the name stands in the pattern");
  if (!path.owners.empty()) {
    Check(kxmsg::AttributePathOf(path.owners).name.empty(), "owners are elements");
    const AttributePath again = kxmsg::AttributePathOf(path.owners + "/@" + path.name);
    Check(again.name == path.name && again.owners == path.owners, "owners are owners again");
  }
}

void CheckWord(const Word& word, std::int32_t& behind) {
  Check(word.position > behind, "words follow one another");
  behind = word.position;
  Check(kxmsg::IsUtf8(word.text), "a word is UTF-8");
  Check(word.text.find('\0') == std::string::npos, "a word has no NUL");
}

void CheckStep(const Step& step) {
  std::int32_t behind = 1;  // the verb
  CheckWord(step.pattern, behind);
  if (step.name) CheckWord(*step.name, behind);
  if (step.group) CheckWord(*step.group, behind);
  if (step.value) CheckWord(*step.value, behind);
  Check(step.name.has_value() || step.verb != Verb::kAttr, "attr has a name");
  Check(step.value.has_value() || step.verb != Verb::kSet, "set has a value");
  Check(step.group.has_value() == (step.verb == Verb::kGroup), "group has a number");
  Check((step.groupNumber > 0) == step.group.has_value(), "a number is positive");
  Check(!step.name || !step.name->text.empty(), "a name is not empty");
  CheckPath(step.pattern.text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(data, data + size);
  const auto lines = static_cast<std::int32_t>(std::count(input.begin(), input.end(), '\n') + 1);
  ScriptReader reader(input, "script");
  std::int32_t line = 0;
  try {
    while (const std::optional<Step> step = reader.Next()) {
      Check(step->line > line && step->line <= lines, "a command stands behind the one before");
      line = step->line;
      CheckStep(*step);
    }
  } catch (const ScriptFailure& failure) {
    Check(failure.failure.line > line && failure.failure.line <= lines, "a failure has its line");
    Check(failure.failure.position > 0, "a failure has its position");
    Check(!failure.failure.text.empty() && failure.name == "script", "a failure says what it is");
  }
  CheckPath(input);
  return 0;
}
