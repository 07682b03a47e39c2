// The text form of a message: how the namespaces that name schemas are written so that the text
// does not depend on where the schemas lie, and how they are written for the DOM, which binds by
// them.
//
//   canonical   "ref-schema:" alone for the message's main schema, whose location the envelope
//               has; "ref-schema:" and a file name or location for others
//   for the DOM "x-schema:" and a complete location
//
// Only declarations of the form xmlns="..." in start tags count (namespace_scan.h).
#pragma once

#include "core/environment.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace kx::core {

/// No bound on the length of an expanded text.
inline constexpr std::size_t kNoBound = static_cast<std::size_t>(-1);

/// A text in canonical form, and the location of its main schema.
struct CanonicalText {
  std::string text;
  std::string mainSchemaFile;
};

/// Rewrites either form to the canonical one. The first declaration names the main schema; later
/// declarations of the same schema are dropped, others in its folder named by file name. A text
/// without any declaration is given one of `defaultSchema` on its content root.
/// Raises: kxMsgErrorNoSchema for a namespace that is no schema, a declaration without closing
/// quote, and a text without declaration when `defaultSchema` is empty; kxMsgErrorLoadingXML when
/// such a text is no document or has no content root; the errors of ResolveSchemaLocation.
/// Note: folders and file names compare without regard to case, the prefixes exactly.
[[nodiscard]] CanonicalText CanonicalizeSchemaRefs(std::string_view text,
                                                   std::string_view defaultSchema,
                                                   const Environment& environment);

/// Rewrites a canonical text for the DOM: locations completed, the bare marker made the complete
/// `mainSchemaLocation`, the envelope of the former name "ZDKMessage" renamed. Beyond `mostBytes`
/// the rest is left as it is: such a text is refused anyway. Raises: kxMsgErrorInvalidMessage for
/// an envelope of the former name without closing tag; kxMsgErrorNoSchema for a text without
/// declaration, and for one without closing quote.
[[nodiscard]] std::string ExpandSchemaRefs(std::string_view text,
                                           std::string_view mainSchemaLocation,
                                           const Locations& locations,
                                           std::size_t mostBytes = kNoBound);

/// A message text ready for the DOM, and the schema that an envelope without "schemaURL" is given.
struct LoadableText {
  std::string text;
  std::string schemaFile;
};

/// Both steps of loading. The main schema is the one of the envelope's "schemaURL", else the one
/// that the text names: by its file name alone when it lies in the schema base.
/// Raises: as both; kxMsgErrorNoSchema for a "schemaURL" without closing quote.
[[nodiscard]] LoadableText LoadMessageText(std::string_view text, std::string_view defaultSchema,
                                           const Environment& environment);

}  // namespace kx::core
