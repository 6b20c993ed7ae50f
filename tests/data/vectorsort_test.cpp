#include "data/vectorsort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
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

class VectorSort : public ::testing::TestWithParam<NamedShape> {
 protected:
  void SetUp() override {
    if (!CanSortByVector()) GTEST_SKIP() << "this processor never runs it";
  }
};

TEST_P(VectorSort, NumbersEndInTheirOrder) {
  const auto expectSorted = [](std::size_t n) {
    SCOPED_TRACE(n);
    std::vector<double> values = NumbersOf(GetParam(), n);
    std::vector<double> expected = values;
    std::sort(expected.begin(), expected.end());
    std::vector<double> spare(n);
    SortByVector(values.data(), spare.data(), n);
    ASSERT_EQ(expected, values);
  };
  for (std::size_t n = 0; n < 300; ++n) expectSorted(n);
  for (const std::size_t n : {1000u, 4095u, 4096u, 4097u, 100003u}) expectSorted(n);
}

// From no partition at all to more than are needed: the heap takes over everywhere.
TEST_P(VectorSort, NumbersThatDefeatThePivotsAreSortedByAHeap) {
  const std::vector<double> numbers = NumbersOf(GetParam(), 3000);
  std::vector<double> expected = numbers;
  std::sort(expected.begin(), expected.end());
  std::vector<double> spare(numbers.size());
  for (int levels = 0; levels < 12; ++levels) {
    SCOPED_TRACE(levels);
    std::vector<double> values = numbers;
    SortByVector(values.data(), spare.data(), values.size(), levels);
    EXPECT_EQ(expected, values);
  }
}

// A number's range is the number of splitters that it does not lie below.
TEST(NumberRanges, EachNumberIsFoundInItsRange) {
  if (!CanSortByVector()) GTEST_SKIP() << "this processor never runs it";
  for (int levels = 0; levels <= NumberRanges::kMostLevels; ++levels) {
    NumberRanges ranges;
    ranges.levels = levels;
    const int parts = 1 << levels;  // the splitters are 1, 2, ... parts - 1
    for (int level = 0; level < levels; ++level) {
      const int width = parts >> level;
      for (int i = 0; i < 1 << level; ++i) ranges.splitters[level][i] = i * width + width / 2;
    }
    std::vector<double> values{-std::numeric_limits<double>::infinity(), -1.0, 0.0, 0.5};
    for (int n = 1; n < 40; ++n) values.insert(values.end(), {double(n), n - 0.25});
    values.push_back(std::numeric_limits<double>::infinity());
    std::vector<unsigned char> rangeOf(values.size() + 1, 99);
    FindRanges(ranges, values.data(), values.size(), rangeOf.data());
    for (std::size_t i = 0; i < values.size(); ++i) {
      EXPECT_EQ(std::clamp(std::floor(values[i]), 0.0, parts - 1.0), double(rangeOf[i]))
          << values[i] << " with " << levels << " levels";
    }
    EXPECT_EQ(99, rangeOf.back());
  }
}

INSTANTIATE_TEST_SUITE_P(Shapes, VectorSort, ::testing::ValuesIn(Shapes()), [](const auto& shape) {
  std::string name = shape.param.name;
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
});

}  // namespace
}  // namespace TQBinning
