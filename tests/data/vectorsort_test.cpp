#include "data/vectorsort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <numeric>
#include <vector>

#include "support/sortshapes.h"

namespace TQBinning {
namespace {

// What SortByVector asks for: no NaN, no negative zero.
std::vector<double> NumbersOf(const NamedShape& shape, std::size_t n) {
  Random random(n + 1);
  std::vector<double> values(n);
  for (std::size_t i = 0; i < n; ++i) {
    const double value = shape.shape(random, i, n);
    values[i] = value == value ? value + 0.0 : std::numeric_limits<double>::infinity();
  }
  return values;
}

// Everywhere but on a processor without the instructions, where nothing calls it.
TEST(VectorSort, NumbersEndInTheirOrder) {
  if (!CanSortByVector()) return;
  for (const NamedShape& shape : Shapes()) {
    for (std::size_t n = 0; n < 300; ++n) {
      SCOPED_TRACE(std::string(shape.name) + ", " + std::to_string(n));
      std::vector<double> values = NumbersOf(shape, n);
      std::vector<double> expected = values;
      std::sort(expected.begin(), expected.end());
      std::vector<double> spare(n + kVectorSortSlack);
      ASSERT_TRUE(SortByVector(values.data(), spare.data(), n));
      ASSERT_EQ(expected, values);
    }
    for (const std::size_t n : {1000u, 4095u, 4096u, 4097u, 100003u}) {
      SCOPED_TRACE(std::string(shape.name) + ", " + std::to_string(n));
      std::vector<double> values = NumbersOf(shape, n);
      std::vector<double> expected = values;
      std::sort(expected.begin(), expected.end());
      std::vector<double> spare(n + kVectorSortSlack);
      ASSERT_TRUE(SortByVector(values.data(), spare.data(), n));
      ASSERT_EQ(expected, values);
    }
  }
}

// Numbers whose sampled medians are always among the least: each partition splits off
// a handful.
std::vector<double> Killer(std::size_t n) {
  constexpr std::size_t kSample = 16;
  const double undecided = std::numeric_limits<double>::infinity();
  std::vector<double> values(n, undecided);
  std::vector<std::size_t> rest(n);
  std::iota(rest.begin(), rest.end(), std::size_t{0});
  double next = 0.0;
  while (rest.size() > 128) {
    const std::size_t distance = rest.size() / kSample;
    std::vector<double> sample;
    for (std::size_t k = 0; k < kSample; ++k) {
      double& value = values[rest[k * distance + distance / 2]];
      if (value == undecided) value = next++;
      sample.push_back(value);
    }
    std::sort(sample.begin(), sample.end());
    std::erase_if(rest, [&](std::size_t i) { return values[i] < sample[kSample / 2]; });
  }
  for (double& value : values) {
    if (value == undecided) value = next++;
  }
  return values;
}

TEST(VectorSort, NumbersThatDefeatItAreAllStillThere) {
  if (!CanSortByVector()) return;
  std::vector<double> values = Killer(3000);
  std::vector<double> expected = values;
  std::vector<double> spare(values.size() + kVectorSortSlack);
  EXPECT_FALSE(SortByVector(values.data(), spare.data(), values.size()));
  std::sort(expected.begin(), expected.end());
  std::sort(values.begin(), values.end());
  EXPECT_EQ(expected, values);
}

}  // namespace
}  // namespace TQBinning
