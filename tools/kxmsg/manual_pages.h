// The manual as a page for man(1) and as Markdown, made of the same words as --help.
#pragma once

#include <string>

namespace kxmsg {

/// kxmsg(1) in the language of man pages.
[[nodiscard]] std::string ManPage();

/// docs/kxmsg.md.
[[nodiscard]] std::string MarkdownPage();

}  // namespace kxmsg
