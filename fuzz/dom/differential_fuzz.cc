// Documents as our parser, Expat and libxml2 read them: verdict and tree must be the same, or the
// difference must be of a kind that the table of explained differences holds.
#include "differential/explained.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

using kx::test::Comparison;
using kx::test::Peer;
using kx::test::Reading;

void Check(const Comparison& comparison) {
  if (!kx::test::Differs(comparison) || kx::test::Explain(comparison) != nullptr) return;
  std::fprintf(stderr, "%s\n", kx::test::DescribeDifference(comparison).c_str());
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const Reading ours = kx::test::ReadWithOurs(bytes);
  const Reading expat = kx::test::ReadWithExpat(bytes);
  Check({bytes, &ours, Peer::kExpat, &expat});
  const Reading libxml = kx::test::ReadWithLibxml(bytes);
  Check({bytes, &ours, Peer::kLibxml, &libxml});
  return 0;
}
