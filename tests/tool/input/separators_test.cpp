#include "input/separators.h"

#include <array>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace TQTool {
namespace {

TEST(Separators, FirstAndLastByteAreLookedAt) {
  std::string text(kSeparatorBlock, 'x');
  EXPECT_EQ(0U, FindSeparators(text.data(), ',', '\n'));
  text.front() = ',';
  text.back() = '\n';
  EXPECT_EQ(1U | std::uint64_t{1} << 63, FindSeparators(text.data(), ',', '\n'));
}

// Bytes with the high bit set are negative as char, and must be told apart too.
TEST(SeparatorsProperty, BothWaysFindTheSame) {
  for (unsigned seed = 1; seed <= 500; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 source(seed);
    constexpr std::array<char, 6> kBytes = {',', '\n', '\xAC', '\x8A', '\0', 'x'};
    std::string text(kSeparatorBlock + 16, ' ');
    for (char& c : text) c = kBytes[source() % kBytes.size()];
    for (std::size_t offset = 0; offset < 16; ++offset) {
      ASSERT_EQ(FindSeparatorsPlainly(text.data() + offset, ',', '\n'),
                FindSeparators(text.data() + offset, ',', '\n'));
    }
  }
}

}  // namespace
}  // namespace TQTool
