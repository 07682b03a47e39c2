// See text_output.h.
#include "platform/dom/text_output.h"

namespace kx::dom {

std::uint32_t EscapedBytesPortable(Escaping escaping, const char* block) noexcept {
  std::uint32_t bits = 0;
  for (std::uint32_t i = 0; i < 16; ++i) {
    const char c = block[i];
    const bool inText = c == '&' || c == '<' || c == '>' || c == '\r';
    const bool escaped = c == '\n' || (escaping != Escaping::kLineEnds && inText) ||
                         (escaping == Escaping::kAttribute && c == '"');
    bits |= static_cast<std::uint32_t>(escaped) << i;
  }
  return bits;
}

char* TextOutput::Flush(const char* at) {
  if (result_.empty()) result_.reserve(expectedBytes_);
  result_.append(piece_, static_cast<std::size_t>(at - piece_));
  return piece_;
}

char* TextOutput::PutLong(char* at, std::string_view text) {
  if (text.size() <= kPieceBytes) {
    at = Room(at, text.size());
    std::memcpy(at, text.data(), text.size());
    return at + text.size();
  }
  at = Flush(at);
  result_.append(text);
  return at;
}

char* TextOutput::PutReplacement(char* at, char c) noexcept {
  if (c == '&') return Put(at, "&amp;");
  if (c == '<') return Put(at, "&lt;");
  if (c == '>') return Put(at, "&gt;");
  if (c == '"') return Put(at, "&quot;");
  if (c == '\r') return Put(at, "&#13;");
  return Put(at, "\r\n");
}

std::string TextOutput::Finish(const char* at) {
  if (result_.empty()) return {piece_, static_cast<std::size_t>(at - piece_)};
  result_.append(piece_, static_cast<std::size_t>(at - piece_));
  return std::move(result_);
}

}  // namespace kx::dom
