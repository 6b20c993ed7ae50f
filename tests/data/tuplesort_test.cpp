#include "data/tuplesort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "support/sortshapes.h"

namespace TQBinning {
namespace {

constexpr std::size_t kSizes[] = {0, 1, 2, 3, 100, 511, 512, 513, 3000, 40000};

// Value with NaN last, then the rest: an order without ties to compare contents in.
bool Precedes(const BINDataTuple& a, const BINDataTuple& b) {
  if (ComesBefore(a.value, b.value)) return true;
  if (ComesBefore(b.value, a.value)) return false;
  return a.target != b.target ? a.target < b.target : a.weight < b.weight;
}

bool Precedes(const EFBINDataTuple& a, const EFBINDataTuple& b) {
  if (ComesBefore(a.value, b.value)) return true;
  if (ComesBefore(b.value, a.value)) return false;
  return ComesBefore(a.weight, b.weight);
}

bool AreAlike(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

template <typename Tuple>
void ExpectSameContents(std::vector<Tuple> expected, std::vector<Tuple> got) {
  const auto precedes = [](const Tuple& a, const Tuple& b) { return Precedes(a, b); };
  std::sort(expected.begin(), expected.end(), precedes);
  std::sort(got.begin(), got.end(), precedes);
  ASSERT_EQ(expected.size(), got.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    ASSERT_TRUE(AreAlike(expected[i].value, got[i].value)) << "tuple " << i;
    ASSERT_TRUE(AreAlike(expected[i].weight, got[i].weight)) << "tuple " << i;
    if constexpr (std::is_same_v<Tuple, BINDataTuple>) {
      ASSERT_EQ(expected[i].target, got[i].target) << "tuple " << i;
    }
  }
}

class TupleSort : public testing::TestWithParam<bool> {
 protected:
  double Weight(Random& random) const { return GetParam() ? double(random.Below(5)) + 0.5 : 1.0; }
};

INSTANTIATE_TEST_SUITE_P(OneWeightAndManyWeights, TupleSort, testing::Bool());

TEST_P(TupleSort, SupervisedTuplesEndInTheOrderOfTheirValuesWithTheirTargetsAndWeights) {
  SortMemory memory;
  for (const NamedShape& shape : Shapes()) {
    for (const std::size_t n : kSizes) {
      SCOPED_TRACE(std::string(shape.name) + ", " + std::to_string(n) + " tuples");
      Random random(n + 1);
      std::vector<BINDataTuple> tuples(n);
      for (std::size_t i = 0; i < n; ++i) {
        tuples[i] = {shape.shape(random, i, n), static_cast<unsigned char>(random.Below(256)),
                     Weight(random)};
      }
      const std::vector<BINDataTuple> before = tuples;
      SortByValue(std::span(tuples), memory);
      for (std::size_t i = 1; i < n; ++i) {
        ASSERT_FALSE(ComesBefore(tuples[i].value, tuples[i - 1].value)) << "tuple " << i;
      }
      ExpectSameContents(before, tuples);
    }
  }
}

TEST_P(TupleSort, UnsupervisedTuplesOfOneValueEndInTheOrderOfTheirWeights) {
  SortMemory memory;
  for (const NamedShape& shape : Shapes()) {
    for (const std::size_t n : kSizes) {
      SCOPED_TRACE(std::string(shape.name) + ", " + std::to_string(n) + " tuples");
      Random random(n + 1);
      std::vector<EFBINDataTuple> tuples(n);
      for (std::size_t i = 0; i < n; ++i) {
        tuples[i] = {shape.shape(random, i, n), Weight(random)};
      }
      const std::vector<EFBINDataTuple> before = tuples;
      SortByValue(std::span(tuples), memory);
      for (std::size_t i = 1; i < n; ++i) {
        ASSERT_FALSE(Precedes(tuples[i], tuples[i - 1])) << "tuple " << i;
      }
      ExpectSameContents(before, tuples);
    }
  }
}

TEST(TupleSort, SmallWholeWeightsOfLongRunsAreOrderedAsWell) {
  SortMemory memory;
  Random random(7);
  std::vector<EFBINDataTuple> tuples(5000);
  for (EFBINDataTuple& tuple : tuples) {
    tuple = {double(random.Below(3)), double(random.Below(300))};  // some of 256 and more
  }
  const std::vector<EFBINDataTuple> before = tuples;
  SortByValue(std::span(tuples), memory);
  for (std::size_t i = 1; i < tuples.size(); ++i) {
    ASSERT_FALSE(Precedes(tuples[i], tuples[i - 1])) << "tuple " << i;
  }
  ExpectSameContents(before, tuples);
}

// A long run of weights that are all below 256 is counted instead of compared.
TEST(TupleSort, LongRunsOfNothingButSmallWholeWeightsAreOrderedAsWell) {
  SortMemory memory;
  Random random(8);
  for (const std::size_t n : {63u, 64u, 700u}) {
    SCOPED_TRACE(n);
    std::vector<EFBINDataTuple> tuples(n);
    for (EFBINDataTuple& tuple : tuples) tuple = {2.5, double(random.Below(256))};
    tuples[n / 2].weight = 255.0;
    tuples[n / 3].weight = 0.0;
    const std::vector<EFBINDataTuple> before = tuples;
    SortByValue(std::span(tuples), memory);
    for (std::size_t i = 1; i < n; ++i) {
      ASSERT_LE(tuples[i - 1].weight, tuples[i].weight) << "tuple " << i;
    }
    ExpectSameContents(before, tuples);
  }
}

TEST(TupleSort, LongRunsOfWeightsThatCannotBeCountedAreCompared) {
  SortMemory memory;
  Random random(9);
  for (const double odd : {-1.0, 0.5, 256.0, std::numeric_limits<double>::quiet_NaN()}) {
    SCOPED_TRACE(odd);
    std::vector<EFBINDataTuple> tuples(100);
    for (EFBINDataTuple& tuple : tuples) tuple = {2.5, double(random.Below(256))};
    tuples[50].weight = odd;
    const std::vector<EFBINDataTuple> before = tuples;
    SortByValue(std::span(tuples), memory);
    for (std::size_t i = 1; i < tuples.size(); ++i) {
      ASSERT_FALSE(Precedes(tuples[i], tuples[i - 1])) << "tuple " << i;
    }
    ExpectSameContents(before, tuples);
  }
}

TEST(TupleSort, NothingButNaNStaysAsItIs) {
  SortMemory memory;
  std::vector<BINDataTuple> tuples(1000);
  for (std::size_t i = 0; i < tuples.size(); ++i) {
    tuples[i] = {std::numeric_limits<double>::quiet_NaN(), static_cast<unsigned char>(i % 256),
                 1.0};
  }
  const std::vector<BINDataTuple> before = tuples;
  SortByValue(std::span(tuples), memory);
  for (const BINDataTuple& tuple : tuples) ASSERT_TRUE(std::isnan(tuple.value));
  ExpectSameContents(before, tuples);
}

// The two smallest values differ only in bits that the sort of the leading ones leaves
// to the insertion.
TEST(TupleSort, TheSmallestValueGoesToTheVeryFront) {
  SortMemory memory;
  std::vector<EFBINDataTuple> tuples{{1.0 + std::ldexp(1.0, -52), 1.0}, {1.0, 1.0}};
  for (int i = 0; i < 1000; ++i) tuples.push_back({std::ldexp(double(1000 - i), 40), 1.0});
  const std::vector<EFBINDataTuple> before = tuples;
  SortByValue(std::span(tuples), memory);
  EXPECT_EQ(1.0, tuples[0].value);
  for (std::size_t i = 1; i < tuples.size(); ++i) {
    ASSERT_LT(tuples[i - 1].value, tuples[i].value) << "tuple " << i;
  }
  ExpectSameContents(before, tuples);
}

// The radix sort takes eleven bits at a time.
TEST(TupleSort, ValuesThatDifferInTwelveBitsAreOrderedByAllOfThem) {
  SortMemory memory;
  std::vector<EFBINDataTuple> tuples;
  for (int i = 4095; i >= 0; --i) tuples.push_back({1.0 + std::ldexp(double(i), -12), 1.0});
  SortByValue(std::span(tuples), memory);
  for (std::size_t i = 0; i < tuples.size(); ++i) {
    ASSERT_EQ(1.0 + std::ldexp(double(i), -12), tuples[i].value) << "tuple " << i;
  }
}

}  // namespace
}  // namespace TQBinning
