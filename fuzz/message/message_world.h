// The world of the targets that load messages: a host in memory with a few schemas, nothing else.
#pragma once

#include "core/environment.h"
#include "platform/runtime/counted.h"

namespace kx::fuzz {

/// Made by the first call. Its schema base is C:\s\ with order.xdr, edit.xdr and common.xdr.
[[nodiscard]] const runtime::Counted<const core::Environment>& MessageWorld();

}  // namespace kx::fuzz
