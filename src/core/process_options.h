// The options of messages that were given none: what the environment says, until a program puts
// its own in their place.
#pragma once

#include "kxmessage/options.h"

#include "platform/host/host.h"

namespace kx::core {

/// What the environment of `host` says; the defaults for what it is silent about.
///   KX_CODE_PAGE, KX_SCHEMA_BASE, KX_MESSAGE_BASE
///   KX_ALLOWED_PREFIXES, KX_SCHEMA_FOLDERS     lists, their items separated by ";"
///   KX_MAX_DOCUMENT_BYTES, KX_MAX_DEPTH, KX_MAX_ENTITY_BYTES, KX_MAX_SCHEMA_BYTES,
///   KX_MAX_DEFAULT_ELEMENTS, KX_MAX_DEFAULT_DEPTH, KX_MAX_DOWNLOAD_BYTES, KX_DOWNLOAD_SECONDS,
///   KX_CONNECT_SECONDS, KX_STALL_SECONDS, KX_MAX_REDIRECTS    whole numbers
/// Raises: 5, naming the variable, for a number that is none.
[[nodiscard]] Options ReadOptions(host::Host& host);

}  // namespace kx::core
