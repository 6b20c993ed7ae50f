#include "tqbinning/vectorroutines.h"

#include <array>
#include <cmath>
#include <limits>
#include <valarray>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace TQBinning {
namespace {

using testing::ElementsAre;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kLowest = -1.7976931348623157e308;

std::vector<double> Elements(const std::valarray<double>& values) {
  return std::vector<double>(std::begin(values), std::end(values));
}

// The largest element with its position.
struct Largest {
  double value;
  int index;
};

Largest LargestOf(const std::vector<double>& x) {
  Largest largest{0.0, 12345};
  largest.value = VectorMaxX(x.data(), static_cast<int>(x.size()), largest.index);
  return largest;
}

int NonZeroOf(const std::vector<double>& x) {
  return VectorXNonZero(x.data(), static_cast<int>(x.size()));
}

// The largest distance between any two of the vectors, all of length `n`.
double LargestDistance(int count, std::vector<std::vector<double>> vectors, int n) {
  std::valarray<double*> pointers(vectors.size());
  for (std::size_t i = 0; i < vectors.size(); ++i) pointers[i] = vectors[i].data();
  return VectorMaxNormDiff(count, pointers, n);
}

TEST(VectorCopy, TheValarrayFormCopiesFromAndToTheGivenStarts) {
  const std::valarray<double> src{1.0, 2.0, 3.0, 4.0};
  std::valarray<double> dst(0.0, 5);
  VectorCopy(src, dst, 2, 1, 3);
  EXPECT_THAT(Elements(dst), ElementsAre(0.0, 0.0, 0.0, 2.0, 3.0));
}

TEST(VectorCopy, TheValarrayFormCopiesAWholeArray) {
  const std::valarray<double> src{1.0, 2.0};
  std::valarray<double> dst(0.0, 2);
  VectorCopy(src, dst, 2, 0, 0);
  EXPECT_THAT(Elements(dst), ElementsAre(1.0, 2.0));
}

TEST(VectorCopy, ACountBelowOneCopiesNothing) {
  const std::valarray<double> src{1.0};
  std::valarray<double> dst(9.0, 1);
  VectorCopy(src, dst, 0, 0, 0);
  VectorCopy(src, dst, -1, 0, 0);
  EXPECT_EQ(9.0, dst[0]);

  const double from = 1.0;
  double to = 9.0;
  VectorCopy(&from, &to, 0, 0, 0);
  VectorCopy(&from, &to, -1, 0, 0);
  EXPECT_EQ(9.0, to);
}

TEST(VectorCopy, ThePointerFormWritesFromTheStartWhateverTheLastArgument) {
  const std::array<double, 4> src{1.0, 2.0, 3.0, 4.0};
  std::array<double, 8> dst{};
  VectorCopy(src.data(), dst.data(), 2, 1, 5);
  EXPECT_THAT(dst, ElementsAre(2.0, 3.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0));
}

TEST(VectorDotProduct, ProductsAreSummed) {
  const std::array<double, 3> a{1.0, 2.0, 3.0};
  const std::array<double, 3> b{4.0, -5.0, 6.0};
  EXPECT_EQ(12.0, VectorDotProduct(a.data(), b.data(), 3));  // 4 - 10 + 18
  EXPECT_EQ(-6.0, VectorDotProduct(a.data(), b.data(), 2));
}

TEST(VectorDotProduct, AnEmptyRangeGivesZero) {
  const double one = 1.0;
  EXPECT_EQ(0.0, VectorDotProduct(&one, &one, 0));
  EXPECT_EQ(0.0, VectorDotProduct(&one, &one, -3));
  EXPECT_EQ(0.0, VectorDotProduct(std::valarray<double>(), std::valarray<double>()));
}

// 1e16 + 1 rounds to 1e16, so only this order gives 0; any other gives 1.
TEST(VectorDotProduct, ProductsAreAddedInIndexOrder) {
  const std::array<double, 3> a{1e16, 1.0, -1e16};
  const std::array<double, 3> b{1.0, 1.0, 1.0};
  EXPECT_EQ(0.0, VectorDotProduct(a.data(), b.data(), 3));
  EXPECT_EQ(0.0, VectorDotProduct(std::valarray<double>(a.data(), 3),
                                  std::valarray<double>(b.data(), 3)));
}

TEST(VectorDotProduct, TheValarrayFormRunsOverTheSizeOfTheFirst) {
  const std::valarray<double> a{1.0, 2.0};
  const std::valarray<double> b{3.0, 4.0, 100.0};
  EXPECT_EQ(11.0, VectorDotProduct(a, b));
}

TEST(VectorDotProduct, ANaNMakesTheSumNaN) {
  const std::array<double, 2> a{kNaN, 1.0};
  const std::array<double, 2> b{0.0, 1.0};
  EXPECT_TRUE(std::isnan(VectorDotProduct(a.data(), b.data(), 2)));
}

TEST(VectorMaxX, OfEqualLargestElementsTheFirstIsTaken) {
  const Largest largest = LargestOf({3.0, 7.0, 7.0});
  EXPECT_EQ(7.0, largest.value);
  EXPECT_EQ(1, largest.index);
}

TEST(VectorMaxX, TheLargestMayStandFirstOrLast) {
  EXPECT_EQ(0, LargestOf({5.0, 4.0, 3.0}).index);
  EXPECT_EQ(2, LargestOf({3.0, 4.0, 5.0}).index);
  EXPECT_EQ(-1.0, LargestOf({-3.0, -1.0, -2.0}).value);
}

TEST(VectorMaxX, AnEmptyRangeGivesTheLowestDoubleAndNoIndex) {
  const double one = 1.0;
  for (const int n : {0, -1}) {
    int index = 5;
    EXPECT_EQ(kLowest, VectorMaxX(&one, n, index));
    EXPECT_EQ(-1, index);
  }
}

TEST(VectorMaxX, ElementsThatDoNotExceedTheLowestDoubleHaveNoIndex) {
  for (const double element : {kLowest, -kInfinity, kNaN}) {
    const Largest largest = LargestOf({element, element});
    EXPECT_EQ(kLowest, largest.value) << element;
    EXPECT_EQ(-1, largest.index) << element;
  }
}

TEST(VectorMaxX, ANaNIsNeverTheLargest) {
  const Largest largest = LargestOf({kNaN, 2.0, kNaN});
  EXPECT_EQ(2.0, largest.value);
  EXPECT_EQ(1, largest.index);
}

TEST(VectorMaxX, InfinityIsTheLargest) {
  const Largest largest = LargestOf({1e308, kInfinity, 1.0});
  EXPECT_EQ(kInfinity, largest.value);
  EXPECT_EQ(1, largest.index);
}

TEST(VectorMaxX, OfBothZerosTheFirstIsTaken) {
  EXPECT_EQ(0, LargestOf({-0.0, 0.0}).index);
  EXPECT_EQ(0, LargestOf({0.0, -0.0}).index);
}

TEST(VectorNorm, TheSquaresAreSummedAndTheRootTaken) {
  const std::valarray<double> x{3.0, -4.0, 12.0};
  EXPECT_EQ(169.0, VectorNormSquared(x));  // 9 + 16 + 144
  EXPECT_EQ(13.0, VectorNorm(x));
}

TEST(VectorNorm, AnEmptyVectorHasNormZero) {
  EXPECT_EQ(0.0, VectorNormSquared(std::valarray<double>()));
  EXPECT_EQ(0.0, VectorNorm(std::valarray<double>()));
}

TEST(VectorXNonZero, ThePositionOfTheFirstElementThatIsNotZero) {
  EXPECT_EQ(0, NonZeroOf({5.0, 0.0}));
  EXPECT_EQ(2, NonZeroOf({0.0, 0.0, -1.0, 3.0}));
  EXPECT_EQ(1, NonZeroOf({0.0, std::numeric_limits<double>::denorm_min()}));
}

TEST(VectorXNonZero, ZerosOfBothSignsAreZero) { EXPECT_EQ(-1, NonZeroOf({0.0, 0.0, -0.0})); }

TEST(VectorXNonZero, ANaNIsNotZero) { EXPECT_EQ(1, NonZeroOf({0.0, kNaN})); }

TEST(VectorXNonZero, AnEmptyRangeHasNone) {
  const double one = 1.0;
  EXPECT_EQ(-1, VectorXNonZero(&one, 0));
  EXPECT_EQ(-1, VectorXNonZero(&one, -2));
}

TEST(VectorDiffNorm, ThePointerFormIsTheEuclideanDistance) {
  const std::array<double, 3> a{1.0, 2.0, 9.0};
  const std::array<double, 3> b{4.0, -2.0, 9.0};
  EXPECT_EQ(5.0, VectorDiffNorm(a.data(), b.data(), 3));  // differences -3, 4, 0
  EXPECT_EQ(3.0, VectorDiffNorm(a.data(), b.data(), 1));
}

TEST(VectorDiffNorm, AnEmptyRangeHasDistanceZero) {
  const double one = 1.0;
  const double two = 2.0;
  EXPECT_EQ(0.0, VectorDiffNorm(&one, &two, 0));
  EXPECT_EQ(0.0, VectorDiffNorm(&one, &two, -1));
  EXPECT_EQ(0.0, VectorDiffNorm(std::valarray<double>{1.0}, std::valarray<double>{2.0}, -1));
  EXPECT_EQ(0.0, VectorDiffNorm(std::valarray<double>(), std::valarray<double>{2.0}, 1));
}

TEST(VectorDiffNorm, TheValarrayFormTakesTheShortestOfCountAndSizes) {
  const std::valarray<double> two{3.0, 4.0};
  const std::valarray<double> three{0.0, 0.0, 100.0};
  EXPECT_EQ(5.0, VectorDiffNorm(two, three, 3));
  EXPECT_EQ(5.0, VectorDiffNorm(three, two, 3));
  EXPECT_EQ(3.0, VectorDiffNorm(two, three, 1));
}

TEST(VectorMaxNormDiff, TheLargestDistanceOverAllPairs) {
  // Distances 5 (0,1), 10 (0,2) and 5 (1,2).
  EXPECT_EQ(10.0, LargestDistance(3, {{0.0, 0.0}, {3.0, 4.0}, {6.0, 8.0}}, 2));
  // The largest is that of the last pair: distances 1, 8 and 9.
  EXPECT_EQ(9.0, LargestDistance(3, {{0.0}, {-1.0}, {8.0}}, 1));
}

TEST(VectorMaxNormDiff, OnlyTheFirstVectorsAndElementsCount) {
  EXPECT_EQ(5.0, LargestDistance(2, {{0.0, 0.0}, {3.0, 4.0}, {60.0, 80.0}}, 2));
  EXPECT_EQ(3.0, LargestDistance(2, {{0.0, 0.0}, {3.0, 4.0}}, 1));
}

TEST(VectorMaxNormDiff, FewerThanTwoVectorsGiveZero) {
  EXPECT_EQ(0.0, LargestDistance(1, {{1.0}, {5.0}}, 1));
  EXPECT_EQ(0.0, LargestDistance(0, {{1.0}, {5.0}}, 1));
  EXPECT_EQ(0.0, LargestDistance(-1, {{1.0}, {5.0}}, 1));
}

TEST(VectorMaxNormDiff, ANaNDistanceNeverReplacesTheMaximum) {
  EXPECT_EQ(2.0, LargestDistance(3, {{1.0}, {3.0}, {kNaN}}, 1));
  EXPECT_EQ(2.0, LargestDistance(3, {{kNaN}, {1.0}, {3.0}}, 1));
  EXPECT_EQ(0.0, LargestDistance(2, {{kNaN}, {1.0}}, 1));
}

}  // namespace
}  // namespace TQBinning
