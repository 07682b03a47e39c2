// UTF-16 as Win32 takes it. Every file of this folder includes windows.h through here.
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include "platform/text/unicode.h"

#include <string>
#include <string_view>
#include <windows.h>

namespace kx::host {

static_assert(sizeof(wchar_t) == sizeof(char16_t), "Win32 text is UTF-16");

/// UTF-8 to UTF-16.
[[nodiscard]] inline std::wstring ToWide(std::string_view text) {
  const std::u16string units = text::ToUtf16(text);
  return {units.begin(), units.end()};
}

/// UTF-16 to UTF-8.
[[nodiscard]] inline std::string FromWide(std::wstring_view text) {
  return text::ToUtf8(std::u16string(text.begin(), text.end()));
}

}  // namespace kx::host
