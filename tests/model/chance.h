// Numbers at random that are the same on every machine for one seed.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <random>
#include <string>

namespace kx::model {

class Chance {
 public:
  explicit Chance(std::uint32_t seed) : random_(seed) {}
  std::uint32_t Number() { return static_cast<std::uint32_t>(random_()); }
  int Below(int bound) { return static_cast<int>(Number() % static_cast<std::uint32_t>(bound)); }
  bool OneIn(int bound) { return Below(bound) == 0; }
  std::string Pick(std::initializer_list<const char*> texts) {
    return texts.begin()[Below(static_cast<int>(texts.size()))];
  }

 private:
  std::mt19937 random_;
};

}  // namespace kx::model
