// The system's converter of encodings, for those that the library has no tables of.
#pragma once

#include "platform/text/host_codec.h"

namespace kx::host {

/// Lives as long as the process.
[[nodiscard]] const text::HostCodec& SystemCodec();

}  // namespace kx::host
