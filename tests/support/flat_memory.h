// Whether something that is done over and over again leaves memory behind. Builds that cannot count
// their memory (sanitizers, other C libraries) do it and skip the verdict.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#include <malloc.h>
#define KX_COUNTS_MEMORY 1
#endif

namespace kx::test {

inline std::size_t UsedBytes() {
#if defined(KX_COUNTS_MEMORY)
  return mallinfo2().uordblks;
#else
  return 0;
#endif
}

/// A million where KX_LARGE asks for it.
inline int Rounds() {
  const char* large = std::getenv("KX_LARGE");
  return large != nullptr && std::string(large) == "1" ? 1'000'000 : 2'000;
}

/// After `before` rounds of `work`, many more of them leave nothing behind.
template <class Work>
void ExpectFlat(const Work& work, int before = 20) {
  for (int i = 0; i < before; ++i) work();
  [[maybe_unused]] const std::size_t used = UsedBytes();
  for (int i = 0; i < Rounds(); ++i) work();
#if defined(KX_COUNTS_MEMORY)
  EXPECT_LE(UsedBytes(), used + 512);
#else
  GTEST_SKIP() << "this build cannot count its memory; the sanitizers find what leaks";
#endif
}

}  // namespace kx::test
