#include "platform/patterns/text_prints.h"

#include "platform/patterns/generators.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

namespace kx::patterns {
namespace {

std::size_t SameByLooking(const std::string& text, std::size_t a, std::size_t b, std::size_t most) {
  std::size_t same = 0;
  while (same < most && text[a + same] == text[b + same]) ++same;
  return same;
}

void ExpectSameLengths(const std::string& text) {
  for (const std::uint64_t key : {std::uint64_t{0}, ~std::uint64_t{0}, TextPrints::NewKey()}) {
    const TextPrints prints(text, key);
    for (std::size_t a = 0; a <= text.size(); ++a) {
      for (std::size_t b = 0; b <= text.size(); ++b) {
        const std::size_t most = text.size() - std::max(a, b);
        for (const std::size_t some : {most, most / 2}) {
          ASSERT_EQ(prints.SameLength(a, b, some), SameByLooking(text, a, b, some))
              << a << " and " << b << " of " << text;
        }
      }
    }
  }
}

TEST(TextPrints, TellHowFarTwoPartsAreTheSame) {
  ExpectSameLengths("");
  ExpectSameLengths("x");
  ExpectSameLengths(std::string(70, 'x') + "y" + std::string(70, 'x'));
  ExpectSameLengths(std::string(40, '\0') + std::string(1, '\1') + std::string(40, '\0'));
  Dice dice(8);
  for (std::uint32_t length = 1; length < 180; length += 13) {
    std::string text;
    // Few different letters, in stretches that come again.
    while (text.size() < length) {
      const std::size_t from =
          text.empty() ? 0 : dice.Roll(static_cast<std::uint32_t>(text.size()));
      text += text.substr(from, dice.Roll(40));
      text += dice.Roll(3) == 0 ? "b" : "a";
    }
    ExpectSameLengths(text);
  }
}

TEST(TextPrints, HaveAnotherKeyEachTime) {
  const std::uint64_t first = TextPrints::NewKey();
  bool other = false;
  for (int i = 0; i < 100'000 && !other; ++i) other = TextPrints::NewKey() != first;
  EXPECT_TRUE(other);
}

}  // namespace
}  // namespace kx::patterns
