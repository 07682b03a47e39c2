// Objects that a Variant may hold: one without a default value, one with.
#pragma once

#include "platform/runtime/counted.h"

#include <optional>
#include <utility>

namespace kx::runtime {

class PlainThing : public PlainObject, public LiveObject {};

class ValuedThing : public PlainObject, public LiveObject {
 public:
  explicit ValuedThing(Variant value) : value_(std::move(value)) {}
  [[nodiscard]] std::optional<Variant> DefaultValue() const override { return value_; }

 private:
  Variant value_;
};

inline Variant MakePlainThing() { return ObjectRef(MakeCounted<PlainThing>().Get()); }

inline Variant MakeValuedThing(Variant value) {
  return ObjectRef(MakeCounted<ValuedThing>(std::move(value)).Get());
}

}  // namespace kx::runtime
