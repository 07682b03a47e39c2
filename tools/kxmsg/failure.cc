// See failure.h.
#include "kxmsg/failure.h"

#include "kxmessage/parse_error.h"

#include "kxmsg/text_form.h"

#include <cerrno>
#include <system_error>
#include <utility>

namespace kxmsg {

namespace {

// A message without line ends is one source line, as long as it is.
constexpr std::size_t kMostLineText = 500;
constexpr std::size_t kMostJsonText = 4000;

constexpr std::int32_t kRunTimeErrors = static_cast<std::int32_t>(0x800A0000);

std::string Member(std::string_view name, std::string_view text) {
  return ", " + JsonText(name) + ": " + JsonText(Shortened(text, kMostJsonText));
}

std::string Member(std::string_view name, std::int32_t number) {
  return ", " + JsonText(name) + ": " + std::to_string(number);
}

}  // namespace

Failure DescribeError(const kx::Error& error) {
  Failure failure;
  failure.number = error.Number();
  failure.source = error.Source();
  failure.text = error.Description();
  if (const auto* const parse = dynamic_cast<const kx::ParseError*>(&error)) {
    failure.line = parse->Line();
    failure.position = parse->LinePosition();
    failure.code = parse->Code();
    failure.reason = parse->Reason();
    failure.sourceText = parse->SourceText();
  }
  return failure;
}

void RaiseFileError(int n, std::string text) {
  throw kx::Error(kRunTimeErrors + n, "kxmsg", std::move(text));
}

void RaiseSystemError(int number) {
  constexpr int kFileNotFound = 53;
  constexpr int kDiskFull = 61;
  constexpr int kPathNotFound = 76;
  constexpr int kFileAccess = 75;
  constexpr int kBadFileName = 52;
  int n = kFileAccess;
  if (number == ENOENT) n = kFileNotFound;
  if (number == ENOTDIR) n = kPathNotFound;
  if (number == ENOSPC) n = kDiskFull;
  if (number == ENAMETOOLONG) n = kBadFileName;
  RaiseFileError(n, std::generic_category().message(number));
}

void RaiseTooMuch(std::string text) {
  constexpr int kOutOfMemory = 7;
  RaiseFileError(kOutOfMemory, std::move(text));
}

std::string FailureLine(std::string_view name, const Failure& failure) {
  std::string line = Printable(name);
  if (failure.line > 0) {
    line += ':' + std::to_string(failure.line) + ':' + std::to_string(failure.position);
  }
  return line + ": error " + HexNumber(failure.number) + ": " +
         Printable(Shortened(OneLine(failure.text), kMostLineText));
}

std::string FailureJson(const Failure& failure) {
  return "\"ok\": false" + Member("number", failure.number) +
         Member("hex", HexNumber(failure.number)) + Member("source", failure.source) +
         Member("text", failure.text) + Member("line", failure.line) +
         Member("position", failure.position) + Member("code", failure.code) +
         Member("reason", failure.reason) + Member("sourceText", failure.sourceText);
}

}  // namespace kxmsg
