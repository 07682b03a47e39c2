// From text or bytes to the parse buffer, and from a failure in the buffer back to its place in
// what was handed in.
//
// The copy into the buffer is the only pass that looks at characters as such: it folds line ends
// (XML 1.0, 2.11) and stops at the first one that XML forbids. The parser then reads the text as if
// it ended there; a failure at that end is told as the forbidden character.
#include "platform/dom/parser.h"
#include "platform/dom/parser_impl.h"
#include "platform/dom/scan.h"
#include "platform/dom/xml_bytes.h"
#include "platform/text/unicode.h"

#include <cstring>

namespace kx::dom {

namespace {

/// What the copy found. `code` tells why it stopped before the end, if it did.
struct Prepared {
  std::size_t size = 0;  ///< in the parse buffer
  std::size_t read = 0;  ///< of the text as it was handed in
  ParseCode code = ParseCode::kNone;
};

bool IsContinuation(char c) noexcept { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

// The length of the well-formed character beyond ASCII at `p` that XML allows; 0 when it is not.
std::size_t LengthOfCharacter(const char* p, const char* end) noexcept {
  const auto lead = static_cast<unsigned char>(*p);
  const auto left = static_cast<std::size_t>(end - p);
  if (lead >= 0xC2 && lead <= 0xDF) return left >= 2 && IsContinuation(p[1]) ? 2 : 0;
  const text::Utf8Char c = text::DecodeUtf8({p, left < 4 ? left : 4}, 0);
  return c.valid && text::IsXmlChar(c.codePoint) ? c.length : 0;
}

// A character that the end of the bytes cuts off.
bool IsCutOff(const char* p, const char* end) noexcept {
  const auto lead = static_cast<unsigned char>(*p);
  const std::ptrdiff_t length = lead >= 0xF0 && lead <= 0xF4 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || end - p >= length) return false;
  for (const char* at = p + 1; at < end; ++at) {
    if (!IsContinuation(*at)) return false;
  }
  return true;
}

Prepared CopyToBuffer(DocumentData& data, std::string_view text) {
  char* const buffer = data.ReserveText(text.size() + 1 + scan::kScanPadding);
  char* to = buffer;
  const char* from = text.data();
  const char* const end = from + text.size();
  Prepared prepared;
  while (true) {
    const std::size_t run = scan::CopyOrdinary(from, end, to);
    from += run;
    to += run;
    if (from == end) break;
    if (*from == '\r') {
      *to++ = '\n';
      from += from + 1 != end && from[1] == '\n' ? 2 : 1;
      continue;
    }
    const std::size_t length =
        static_cast<signed char>(*from) < 0 ? LengthOfCharacter(from, end) : 0;
    if (length == 0) {
      prepared.code =
          IsCutOff(from, end) ? ParseCode::kTruncatedCharacter : ParseCode::kBadCharInText;
      break;
    }
    for (std::size_t i = 0; i < length; ++i) *to++ = *from++;
  }
  prepared.size = static_cast<std::size_t>(to - buffer);
  prepared.read = static_cast<std::size_t>(from - text.data());
  *to = scan::kSentinel;
  std::memset(to + 1, 0, scan::kScanPadding);
  return prepared;
}

// Where a place of the parse buffer is in the text as it was handed in.
std::size_t PlaceInText(std::string_view text, std::size_t offset) {
  std::size_t at = 0;
  for (std::size_t seen = 0; seen < offset && at < text.size(); ++seen) {
    at += text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n' ? 2 : 1;
  }
  return at;
}

void Describe(ParseError& error, const ParseFailure& failure, const Prepared& prepared,
              std::string_view text) {
  if (prepared.code != ParseCode::kNone && failure.offset >= prepared.size) {
    SetParseError(error, prepared.code);
    SetParsePlace(error, text, prepared.read);
    return;
  }
  SetParseError(error, failure.code, {failure.first, failure.second});
  if (failure.placed) SetParsePlace(error, text, PlaceInText(text, failure.offset));
}

void Describe(ParseError& error, const BindFailure& failure, const Prepared& prepared,
              std::string_view text, SchemaBinder& binder) {
  const BindPlace place = binder.Describe(error);
  if (place == BindPlace::kOwn) return;
  const std::size_t offset = place == BindPlace::kHere ? failure.offset : prepared.size;
  SetParsePlace(error, text, PlaceInText(text, offset));
  if (place == BindPlace::kHere) return;
  error.filePos = 0;
  error.srcText.clear();
}

bool FailLarge(ParseError& error, std::size_t limit) {
  SetParseError(error, ParseCode::kTooLarge, {std::to_string(limit)});
  return false;
}

// `code` tells what stands after `text` where the bytes could not be decoded further.
bool ParseDecoded(DocumentData& data, std::string_view text, const ParseOptions& options,
                  ParseError& error, ParseCode code) {
  if (text.size() > options.maxBytes || text.size() > 0xF0000000U) {
    return FailLarge(error, options.maxBytes);
  }
  Prepared prepared = CopyToBuffer(data, text);
  if (prepared.code == ParseCode::kNone) prepared.code = code;
  try {
    Parser(data, options).Run(prepared.size);
    if (prepared.code == ParseCode::kNone) {
      if (options.binder != nullptr) data.Schemas(options.binder->Knowledge());
      return true;
    }
    Describe(error, {prepared.code, prepared.size, true, {}, {}}, prepared, text);
  } catch (const ParseFailure& failure) {
    Describe(error, failure, prepared, text);
  } catch (const BindFailure& failure) {
    Describe(error, failure, prepared, text, *options.binder);
  }
  return false;
}

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

}  // namespace

bool ParseText(DocumentData& data, std::string_view text, const ParseOptions& options,
               ParseError& error) {
  if (StartsWith(text, kUtf8Mark)) text.remove_prefix(kUtf8Mark.size());
  return ParseDecoded(data, text, options, error, ParseCode::kNone);
}

bool ParseBytes(DocumentData& data, std::string_view bytes, const ParseOptions& options,
                ParseError& error) {
  if (bytes.size() > options.maxBytes) return FailLarge(error, options.maxBytes);
  const XmlText decoded = DecodeXml(bytes, options.codec);
  if (decoded.refusal != ParseCode::kNone) {
    SetParseError(error, decoded.refusal);
    SetParsePlace(error, decoded.Text(), decoded.refusedAt);
    return false;
  }
  return ParseDecoded(data, decoded.Text(), options, error, decoded.tail);
}

}  // namespace kx::dom
