#include "data/vectorsort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
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

void ExpectSorted(const NamedShape& shape, std::size_t n) {
  SCOPED_TRACE(std::string(shape.name) + ", " + std::to_string(n));
  std::vector<double> values = NumbersOf(shape, n);
  std::vector<double> expected = values;
  std::sort(expected.begin(), expected.end());
  std::vector<double> spare(n + kVectorSortSlack);
  ASSERT_TRUE(SortByVector(values.data(), spare.data(), n));
  ASSERT_EQ(expected, values);
}

// Everywhere but on a processor without the instructions, where nothing calls it.
TEST(VectorSort, NumbersEndInTheirOrder) {
  if (!CanSortByVector()) return;
  for (const NamedShape& shape : Shapes()) {
    for (std::size_t n = 0; n < 300; ++n) ExpectSorted(shape, n);
    for (const std::size_t n : {1000u, 4095u, 4096u, 4097u, 100003u}) ExpectSorted(shape, n);
  }
}

void ExpectDefeat(std::vector<double> values) {
  std::vector<double> expected = values;
  std::vector<double> spare(values.size() + kVectorSortSlack);
  EXPECT_FALSE(SortByVector(values.data(), spare.data(), values.size()));
  std::sort(expected.begin(), expected.end());
  std::sort(values.begin(), values.end());
  EXPECT_EQ(expected, values);
}

TEST(VectorSort, NumbersThatDefeatItAreAllStillThere) {
  if (!CanSortByVector()) return;
  ExpectDefeat(NumbersThatDefeatMedians(3000));
}

// The long part is then the one below the pivot, which is sorted before the other.
TEST(VectorSort, NumbersThatDefeatItFromAboveAreAllStillThere) {
  if (!CanSortByVector()) return;
  std::vector<double> values = NumbersThatDefeatMedians(3000);
  for (double& value : values) value = 3000.0 - value;
  ExpectDefeat(values);
}

}  // namespace
}  // namespace TQBinning
