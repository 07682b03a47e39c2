// See settings_store.h.
#include "platform/settings/settings_store.h"

#include "platform/runtime/error.h"

namespace kx::settings {

void RequireStorable(std::string_view name, std::string_view text) {
  constexpr std::size_t kNone = std::string_view::npos;
  const bool holdsNul = name.find('\0') != kNone || text.find('\0') != kNone;
  if (name.empty() || holdsNul) runtime::RaiseRuntimeError(runtime::kInvalidProcedureCall);
}

}  // namespace kx::settings
