// The attributes of an element, as kxmsg show prints them.
#pragma once

#include "kxmessage/element.h"

#include "kxmsg/console.h"

#include <cstddef>
#include <string>
#include <vector>

namespace kxmsg {

/// One line for each attribute of `element`, and one for each that is declared and not there,
/// without line ends. Values are cut behind `mostShown` characters. Nothing is changed: what is
/// declared is not read where it is not there, which would add it.
[[nodiscard]] std::vector<std::string> AttributeLines(const kx::KXMsgElement& element,
                                                      std::size_t mostShown,
                                                      const Console& console);

}  // namespace kxmsg
