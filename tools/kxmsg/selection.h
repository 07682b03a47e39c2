// What a pattern finds from the content root: elements, or one attribute of each.
//
// The library hands out elements only. A pattern that ends in an attribute's name is asked for the
// elements of these attributes instead.
#pragma once

#include "kxmessage/element.h"
#include "kxmessage/message.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kxmsg {

/// The attribute that a pattern ends in, as in "Items/Item/@sku".
struct AttributePath {
  std::string name;  ///< as it is written, prefix included; empty for a pattern of elements
  /// Finds the elements that might have the attribute; empty where that cannot be told, as for
  /// "//@sku" and "@sku[. = 'X']".
  std::string owners;
};

/// Takes `pattern` apart. What is more than one path, such as "a/@b | c/@d", ends in no attribute.
[[nodiscard]] AttributePath AttributePathOf(std::string_view pattern);

/// See above.
struct Selection {
  std::vector<kx::KXMsgElement> elements;
  std::string attribute;  ///< empty: the elements themselves were found
};

/// What `pattern` finds, in the order of the message. Nothing is changed by it.
/// Raises: E_FAIL for what is no pattern; 91, with a text of its own, when it finds what is neither
/// an element of a schema nor a plain attribute; 7 for more than `most` elements.
[[nodiscard]] Selection Select(const kx::KXMessage& message, const std::string& pattern,
                               std::size_t most = static_cast<std::size_t>(-1));

/// The same; raises kxMsgErrorNoChild when nothing is found.
[[nodiscard]] Selection SelectSome(const kx::KXMessage& message, const std::string& pattern,
                                   std::size_t most = static_cast<std::size_t>(-1));

}  // namespace kxmsg
