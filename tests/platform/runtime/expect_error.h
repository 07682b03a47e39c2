// What a call raised, as a number that reads well in tables: run-time error n is n.
#pragma once

#include "kxmessage/error.h"

#include "platform/runtime/error.h"

#include <cstdint>

namespace kx::runtime {

/// Calls `call` and gives the run-time error that it raised, another status code as it is, or 0.
template <typename Call>
std::int32_t ErrorOf(Call&& call) {
  try {
    static_cast<void>(call());
    return 0;
  } catch (const Error& error) {
    return RuntimeErrorOfStatus(error.Number());
  }
}

}  // namespace kx::runtime
