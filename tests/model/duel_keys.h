// What the operations of a duel have in common: positions as callers write them, and outcomes.
#pragma once

#include "kxmessage/error.h"
#include "kxmessage/variant.h"

#include "model/element.h"
#include "model/failure.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <utility>

namespace kx::model {

/// Whether a position may lie between two.
enum class Parts : unsigned char { kWhole, kHalves };

/// A position, mostly one of `count`, else from -1 to two behind: as a number, or as a text that
/// reads as one.
[[nodiscard]] inline std::pair<Variant, Key> PickPosition(std::size_t count, std::uint32_t number,
                                                          Parts parts) {
  const auto all = static_cast<std::uint32_t>(count);
  const bool within = all > 0 && number % 3 != 0;
  const int position =
      static_cast<int>(within ? 1 + number / 3 % all : number / 3 % (all + 4)) - (within ? 0 : 1);
  const std::string text = std::to_string(position);
  Key key{true, static_cast<double>(position), text};
  if (parts == Parts::kHalves) {
    key.position += 0.5;
    key.text = position >= 0 ? text + ".5" : "-0.5";
    return {Variant(key.position), key};
  }
  switch (number / 4096 % 8) {
    case 0:
      key.text = " " + text + " ";
      return {Variant(key.text), key};
    case 1:
      return {Variant(text), key};
    case 2:
      if (position > 0) key.text = "(" + text + ")";
      if (position > 0) key.position = -key.position;
      return {Variant(key.text), key};
    default:
      return {Variant(position), key};
  }
}

/// What one side gives: its result, or its error.
[[nodiscard]] inline std::string Outcome(const std::function<std::string()>& side) {
  const auto text = [](std::uint32_t number, const std::string& description) {
    char hex[16];
    std::snprintf(hex, sizeof hex, "%08X", number);
    return "error " + std::string(hex) + " " + description;
  };
  try {
    return side();
  } catch (const Error& error) {
    return text(static_cast<std::uint32_t>(error.Number()), error.Description());
  } catch (const Failure& failure) {
    return text(failure.number, failure.description);
  }
}

}  // namespace kx::model
