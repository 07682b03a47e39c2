// The one way in which the library reports a broken rule of its own.
//
// Failures of the DOM, of files, of keyed collections and of conversions do not pass through here:
// they reach the caller as the platform raised them.
#pragma once

#include "kxmessage/error_codes.h"
#include "kxmessage/variant.h"

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

namespace kx::core {

/// The source of every error that RaiseMsgError raises.
inline constexpr std::string_view kMsgErrorSource = "KXMessages";

/// The fixed text of a code; empty for every number that is none of the codes in use.
[[nodiscard]] std::string_view MsgTextOf(std::int32_t code) noexcept;

/// `text` with its placeholders filled in: for each argument in turn, the first "%%i" (i is the
/// argument's position from 0) becomes the argument's text form.
/// Raises: 13, 94, 438, 91 for an argument that has no text form.
/// Note: each search starts at the beginning of the text as it is by then, so a placeholder inside
/// an earlier argument is filled too.
[[nodiscard]] std::string FormatMsgText(std::string_view text, std::span<const Variant> arguments);

/// Raises MsgError with the number `code`, the source "KXMessages" and the code's text, filled in.
/// Any number may be raised; one that is no code in use has an empty description.
[[noreturn]] void RaiseMsgError(std::int32_t code, std::span<const Variant> arguments);
[[noreturn]] void RaiseMsgError(std::int32_t code, std::initializer_list<Variant> arguments = {});

}  // namespace kx::core
