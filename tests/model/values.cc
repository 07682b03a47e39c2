// See values.h.
#include "model/values.h"

#include "model/failure.h"

#include <algorithm>
#include <cstdlib>

namespace kx::model {

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool IsNameCharacter(char c) { return IsDigit(c) || IsLetter(c) || c == '.' || c == '-'; }

bool IsToken(const std::string& text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), IsNameCharacter);
}

bool IsInteger(const std::string& text) {
  const std::size_t sign = text[0] == '-' || text[0] == '+' ? 1 : 0;
  const std::string digits = text.substr(sign);
  if (digits.empty() || !std::all_of(digits.begin(), digits.end(), IsDigit)) return false;
  const double value = std::strtod(text.c_str(), nullptr);
  return value >= -2147483648.0 && value <= 2147483647.0;
}

std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool Suits(const std::string& text, const std::string& dataType) {
  if (dataType == "int") return IsInteger(text);
  if (dataType == "boolean") return text == "0" || text == "1" || text == "true" || text == "false";
  if (dataType == "nmtoken" || dataType == "enumeration") return IsToken(text);
  if (dataType == "id") return IsToken(text) && IsLetter(text[0]);
  if (dataType == "nmtokens") {
    std::vector<std::string> tokens = SplitAtBlanks(text);
    std::erase(tokens, "");
    return std::all_of(tokens.begin(), tokens.end(), IsToken);
  }
  return true;
}

}  // namespace

std::vector<std::string> SplitAtBlanks(const std::string& text) {
  std::vector<std::string> parts;
  if (text.empty()) return parts;
  parts.emplace_back();
  for (const char c : text) {
    if (c == ' ') {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

bool IsKnownType(const std::string& dataType) {
  static const char* const kKnown[] = {"string",   "int", "boolean",    "nmtoken",
                                       "nmtokens", "id",  "enumeration"};
  return std::find(std::begin(kKnown), std::end(kKnown), dataType) != std::end(kKnown);
}

std::string ReadTyped(const std::string& text, const std::string& dataType) {
  if (dataType != "int" && dataType != "boolean") return text;
  const std::string value = Trimmed(text);
  if (value.empty()) throw InvalidNull();
  if (!Suits(value, dataType)) throw UnsuitableText(text, dataType);
  if (dataType == "int") return std::to_string(std::strtol(value.c_str(), nullptr, 10));
  return value == "1" || value == "true" ? "True" : "False";
}

void CheckTyped(const std::string& text, const std::string& dataType) {
  const std::string value = Trimmed(text);
  if (!value.empty() && !Suits(value, dataType)) throw UnsuitableText(text, dataType);
}

}  // namespace kx::model
