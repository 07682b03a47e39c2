// See settings_store.h.
#include "platform/settings/settings_store.h"

#include "platform/runtime/error.h"

namespace kx::settings {

void RequireStorable(std::string_view name, std::string_view text) {
  const bool holdsNul = name.find('\0') != name.npos || text.find('\0') != text.npos;
  if (name.empty() || holdsNul) runtime::RaiseRuntimeError(runtime::kInvalidProcedureCall);
}

}  // namespace kx::settings
