// See show_attributes.h.
#include "kxmsg/show_attributes.h"

#include "kxmessage/attributes.h"
#include "kxmessage/error.h"

#include "kxmsg/text_form.h"

#include <cstdint>
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

// Empty for an attribute that the schema does not declare, or gives no type.
std::string TypeOf(const kx::KXMsgAttribute& attribute) {
  try {
    const std::string type = attribute.Info().DataType();
    return type == "none" ? std::string() : type;
  } catch (const kx::Error& error) {
    if (error.Number() != kObjectNotSet) throw;
    return {};
  }
}

class Lines {
 public:
  Lines(const kx::KXMsgElement& element, std::size_t mostShown, const Console& console)
      : attributes_(element.Attributes()), mostShown_(mostShown), console_(console) {}

  std::vector<std::string> Take() {
    AddPresent();
    AddAbsent();
    return std::move(lines_);
  }

 private:
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
    const std::string type = TypeOf(attribute);
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
    const kx::KXMsgValidAttributes declared = attributes_.KnownValidAttributes();
    const std::int32_t count = declared.Count();
    for (std::int32_t i = 1; i <= count; ++i) {
      const std::string line = AbsentLine(declared, i);
      if (!line.empty()) lines_.push_back(console_.Styled(Style::kAbsent, line));
    }
  }

  // Empty for an attribute that is there.
  [[nodiscard]] std::string AbsentLine(const kx::KXMsgValidAttributes& declared,
                                       std::int32_t position) const {
    try {
      const kx::KXMsgAttributeInfo info = declared.Attrib(position);
      const std::string name = info.Name();
      if (attributes_.Exists(name)) return {};
      return "- @" + Printable(name) + (info.Required() ? ", required" : ", optional");
    } catch (const kx::Error& error) {
      return "- attribute " + std::to_string(position) + NotKnown(error);
    }
  }

  kx::KXMsgAttributes attributes_;
  std::size_t mostShown_;
  const Console& console_;
  std::set<std::string> names_;  // of those that were told
  std::vector<std::string> lines_;
};

}  // namespace

std::vector<std::string> AttributeLines(const kx::KXMsgElement& element, std::size_t mostShown,
                                        const Console& console) {
  return Lines(element, mostShown, console).Take();
}

}  // namespace kxmsg
