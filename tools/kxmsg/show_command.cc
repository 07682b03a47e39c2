// kxmsg show: the tree of a message, one line for each element and attribute.
//
// The walk keeps its own stack, and asks for children by position: enumerations end at 32,767, and
// a child asked for by name may be made by the asking. Declared children that are not there come
// from the schema's view, which knows groups; it is the schema of the whole message only when the
// message names no other, so that else each element's own information is asked.
#include "kxmessage/element.h"
#include "kxmessage/error.h"
#include "kxmessage/message.h"
#include "kxmessage/schema.h"

#include "kxmsg/commands.h"
#include "kxmsg/files.h"
#include "kxmsg/schema_text.h"
#include "kxmsg/show_attributes.h"
#include "kxmsg/text_form.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace kxmsg {

namespace {

constexpr std::size_t kMostShown = 60;  // characters of a value without --full
constexpr std::int32_t kObjectNotSet = static_cast<std::int32_t>(0x800A005B);
constexpr std::size_t kMostIndent = 40;  // levels; a deeper one is written as a number

std::string Indent(std::size_t level) {
  if (level <= kMostIndent) return std::string(2 * level, ' ');
  return std::string(2 * kMostIndent, ' ') + '(' + std::to_string(level) + ") ";
}

std::string TypeOf(const kx::KXMsgElementInfo& info) {
  const bool hasChildren = info.CanHaveChildren();
  if (!info.CanHaveValue()) return hasChildren ? "elements" : "empty";
  if (hasChildren) return "mixed";
  std::string type = info.DataType();
  return type.empty() || type == "none" ? "text" : type;
}

std::string Range(std::int32_t least, std::int32_t most) {
  return OccurrenceText(std::to_string(least), most < 0 ? "*" : std::to_string(most));
}

// A declared child that is not there.
struct Absent {
  std::string name;
  std::string range;
  std::string why;
};

// What the schema of the whole message declares, by element.
class Declarations {
 public:
  explicit Declarations(kx::Schema schema) : schema_(std::move(schema)) {}

  [[nodiscard]] std::vector<Absent> AbsentOf(const std::string& element,
                                             const std::set<std::string>& present) {
    const auto [found, isNew] = elements_.try_emplace(element);
    if (isNew) found->second = schema_.FindElement(element);
    std::vector<Absent> absent;
    if (!found->second) return absent;
    const kx::SchemaElement& type = *found->second;
    for (const kx::SchemaChild& child : type.children) {
      if (present.contains(child.name)) continue;
      absent.push_back(
          {child.name, OccurrenceText(child.minOccurs, child.maxOccurs), WhyAbsent(type, child)});
    }
    return absent;
  }

 private:
  static std::string WhyAbsent(const kx::SchemaElement& type, const kx::SchemaChild& child) {
    std::string order = type.order;
    bool optional = child.minOccurs == "0" || order == "many";
    const auto group = static_cast<std::size_t>(child.group);
    if (group != 0 && group <= type.groups.size()) {
      order = type.groups[group - 1].order;
      optional = optional || type.groups[group - 1].minOccurs == "0" || order == "many";
    }
    if (optional) return "optional";
    return order == "one" || type.order == "one" ? "alternative" : "required";
  }

  kx::Schema schema_;
  std::map<std::string, std::optional<kx::SchemaElement>> elements_;
};

// The information on a child of a schema that is not the message's own may not be had.
std::optional<Absent> AbsentChild(const kx::KXMsgValidElements& declared, std::int32_t position,
                                  const std::set<std::string>& present) {
  try {
    const kx::KXMsgElementInfo info = declared.Element(position);
    std::string name = info.Name();
    if (present.contains(name)) return std::nullopt;
    const std::int32_t least = info.MinOccurrences();
    // The message was validated when it was loaded: what must be there is, or another in its place.
    return Absent{std::move(name), Range(least, info.MaxOccurrences()),
                  least == 0 ? "optional" : "alternative"};
  } catch (const kx::Error& error) {
    return Absent{"child " + std::to_string(position), "",
                  "not known: error " + HexNumber(error.Number()) + ": " +
                      Printable(OneLine(error.Description()))};
  }
}

std::vector<Absent> AbsentByInfo(const kx::KXMsgElement& element,
                                 const std::set<std::string>& present) {
  std::vector<Absent> absent;
  const kx::KXMsgValidElements declared = element.KnownValidChildren();
  const std::int32_t count = declared.Count();
  for (std::int32_t i = 1; i <= count; ++i) {
    if (auto child = AbsentChild(declared, i, present)) absent.push_back(*std::move(child));
  }
  return absent;
}

// Nothing for what open content has and no schema declares: the library has no object for it.
std::optional<kx::KXMsgElement> FindDeclaredChild(const kx::KXMsgElement& parent,
                                                  std::int32_t position) {
  try {
    return parent.ChildElements(position);
  } catch (const kx::Error& error) {
    if (error.Number() != kObjectNotSet) throw;
    return std::nullopt;
  }
}

class TreePrinter {
 public:
  TreePrinter(const kx::KXMessage& message, const Arguments& arguments, Console& console)
      : mostShown_(arguments.full ? std::string::npos : kMostShown), console_(console) {
    // The namespace of a second schema has a location behind its prefix.
    const std::string text = message.XML();
    if (text.find("x-schema:") == std::string::npos &&
        text.find("ref-schema:") == text.rfind("ref-schema:")) {
      declarations_.emplace(kx::Schema::Load(message.SchemaFile(), arguments.options));
    }
  }

  void Print(const kx::KXMsgElement& root) {
    Open(root);
    while (!open_.empty()) {
      Level& level = open_.back();
      if (level.next <= level.count) {
        OpenChild(level.element, level.next++);
      } else {
        PrintAbsent(level);
        open_.pop_back();
      }
    }
  }

 private:
  struct Level {
    kx::KXMsgElement element;
    std::string name;
    std::int32_t count = 0;
    std::int32_t next = 1;
    std::set<std::string> present;
  };

  void OpenChild(const kx::KXMsgElement& parent, std::int32_t position) {
    if (const auto child = FindDeclaredChild(parent, position)) {
      Open(*child);
    } else {
      console_.Print(Indent(open_.size()) +
                     console_.Styled(Style::kAbsent,
                                     "(child " + std::to_string(position) + ", not declared)") +
                     '\n');
    }
  }

  void Open(const kx::KXMsgElement& element) {
    const kx::KXMsgElementInfo info = element.Info();
    Level level{element, info.Name(), element.Count(), 1, {}};
    PrintElement(level, info);
    if (!open_.empty()) open_.back().present.insert(level.name);
    if (info.CanHaveChildren()) open_.push_back(std::move(level));
  }

  void PrintElement(const Level& level, const kx::KXMsgElementInfo& info) {
    std::string line = Indent(open_.size()) + console_.Styled(Style::kName, Printable(level.name)) +
                       ": " + console_.Styled(Style::kType, Printable(TypeOf(info)));
    const std::string range = Range(info.MinOccurrences(), info.MaxOccurrences());
    if (!range.empty()) line += ' ' + range;
    // The text of a mixed element with children is theirs too, and would be told twice.
    if (info.CanHaveValue() && level.count == 0) line += " = " + ValueOf(level.element);
    console_.Print(line + '\n');
    const std::string indent = Indent(open_.size() + 1);
    for (const std::string& attribute : AttributeLines(level.element, mostShown_, console_)) {
      console_.Print(indent + attribute + '\n');
    }
  }

  [[nodiscard]] std::string ValueOf(const kx::KXMsgElement& element) const {
    return console_.Styled(Style::kValue, Quoted(Shortened(element.TextValue(), mostShown_)));
  }

  void PrintAbsent(const Level& level) {
    const std::vector<Absent> absent = declarations_
                                           ? declarations_->AbsentOf(level.name, level.present)
                                           : AbsentByInfo(level.element, level.present);
    for (const Absent& child : absent) {
      const std::string range = child.range.empty() ? "" : ' ' + child.range;
      console_.Print(
          Indent(open_.size()) +
          console_.Styled(Style::kAbsent, "- " + Printable(child.name) + range + ", " + child.why) +
          '\n');
    }
  }

  std::size_t mostShown_;
  Console& console_;
  std::optional<Declarations> declarations_;  // nothing where the message has several schemas
  std::vector<Level> open_;
};

}  // namespace

ExitStatus RunShow(const Arguments& arguments, Console& console) {
  const kx::KXMessage message = LoadMessage(arguments.file, arguments, console);
  TreePrinter(message, arguments, console).Print(message.RootElement());
  return ExitStatus::kDone;
}

}  // namespace kxmsg
