// See show_attributes.h.
#include "kxmsg/show_attributes.h"

#include "kxmessage/attributes.h"
#include "kxmessage/error.h"

#include "kxmsg/text_form.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <utility>

namespace kxmsg {

namespace {

constexpr std::int32_t kObjectNotSet = static_cast<std::int32_t>(0x800A005B);

std::string NotKnown(const kx::Error& error) {
  return ", not known: error " + HexNumber(error.Number()) + ": " +
         Printable(OneLine(error.Description()));
}

// Nothing for an attribute that cannot be asked for by its position: one with a prefix.
std::optional<std::string> FindName(const kx::KXMsgAttribute& attribute) {
  try {
    return attribute.Name();
  } catch (const kx::Error& error) {
    if (error.Number() != kObjectNotSet) throw;
    return std::nullopt;
  }
}

// What the schema declares for an element, read once: asking for one of many by its name or
// position takes time by their number.
struct Declared {
  std::string name;  // empty where it is not known
  kx::KXMsgAttributeInfo info;
  std::string fault;  // why it is not known
};

Declared Describe(const kx::KXMsgAttributeInfo& info) {
  try {
    return {info.Name(), info, {}};
  } catch (const kx::Error& error) {
    return {{}, info, NotKnown(error)};
  }
}

class Lines {
 public:
  Lines(const kx::KXMsgElement& element, std::size_t mostShown, const Console& console)
      : attributes_(element.Attributes()), mostShown_(mostShown), console_(console) {}

  std::vector<std::string> Take() {
    ReadDeclared();
    AddPresent();
    AddAbsent();
    return std::move(lines_);
  }

 private:
  void ReadDeclared() {
    try {
      for (const kx::KXMsgAttributeInfo& info : attributes_.KnownValidAttributes()) {
        declared_.push_back(Describe(info));
      }
    } catch (const kx::Error& error) {
      declared_.push_back({{}, {}, NotKnown(error)});
    }
    for (const Declared& each : declared_) {
      if (each.fault.empty()) byName_.emplace(each.name, &each);
    }
  }

  // Empty for an attribute that the schema does not declare, or gives no type.
  [[nodiscard]] std::string TypeOf(const std::string& name) const {
    const auto found = byName_.find(name);
    if (found == byName_.end()) return {};
    const std::string type = found->second->info.DataType();
    return type == "none" ? std::string() : type;
  }

  void AddPresent() {
    std::int32_t others = 0;
    const std::int32_t count = attributes_.Count();
    for (std::int32_t i = 1; i <= count; ++i) {
      const kx::KXMsgAttribute attribute = attributes_.Attrib(i);
      const std::optional<std::string> name = FindName(attribute);
      // One with a prefix leads to the one without, if there is one.
      if (name && names_.insert(*name).second) {
        AddPresent(*name, attribute);
      } else {
        ++others;
      }
    }
    if (others > 0) {
      lines_.push_back(console_.Styled(
          Style::kAbsent,
          "(" + std::to_string(others) + " more, with a prefix or declaring a namespace)"));
    }
  }

  void AddPresent(const std::string& name, const kx::KXMsgAttribute& attribute) {
    std::string line = console_.Styled(Style::kName, "@" + Printable(name));
    const std::string type = TypeOf(name);
    if (!type.empty()) line += ": " + console_.Styled(Style::kType, Printable(type));
    try {
      const std::string value = Quoted(Shortened(attribute.TextValue(), mostShown_));
      line += " = " + console_.Styled(Style::kValue, value);
    } catch (const kx::Error& error) {
      line += NotKnown(error);
    }
    lines_.push_back(std::move(line));
  }

  void AddAbsent() {
    for (std::size_t i = 0; i < declared_.size(); ++i) {
      const Declared& each = declared_[i];
      if (!each.fault.empty()) {
        AddAbsent("- attribute " + std::to_string(i + 1) + each.fault);
      } else if (!names_.contains(each.name)) {
        AddAbsent("- @" + Printable(each.name) +
                  (each.info.Required() ? ", required" : ", optional"));
      }
    }
  }

  void AddAbsent(const std::string& line) {
    lines_.push_back(console_.Styled(Style::kAbsent, line));
  }

  kx::KXMsgAttributes attributes_;
  std::size_t mostShown_;
  const Console& console_;
  std::vector<Declared> declared_;
  std::map<std::string, const Declared*> byName_;
  std::set<std::string> names_;  // of those that were told
  std::vector<std::string> lines_;
};

}  // namespace

std::vector<std::string> AttributeLines(const kx::KXMsgElement& element, std::size_t mostShown,
                                        const Console& console) {
  return Lines(element, mostShown, console).Take();
}

}  // namespace kxmsg
