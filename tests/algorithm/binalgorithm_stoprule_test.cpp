#include <cmath>
#include <cstdint>
#include <random>

#include <gtest/gtest.h>

#include "algorithm/kernel.h"

// Which splits the stop rule accepts.
namespace {

using namespace support;

// ------------------------------------------------------------------ the stop rule

TEST(MDLPCut, ATableThatIsMissingIsAnError) {
  const Kernel kernel(2);
  const Numbers values{1, 2};
  const Numbers counts{1, 0, 0, 1};
  Cuts cuts{7};
  EXPECT_EQ(Error(120002), kernel->MDLPCut(nullptr, &counts, 0, 1, cuts));
  EXPECT_EQ(Error(120002), kernel->MDLPCut(&values, nullptr, 0, 1, cuts));
  EXPECT_EQ(Error(120002), kernel->MDLPCut(nullptr, nullptr, 0, 1, cuts));
  EXPECT_EQ((Cuts{7}), cuts);
}

TEST(MDLPCut, TablesOfUnlikeSizesAreAnErrorAndLeaveTheCuts) {
  const Kernel kernel(2);
  const Numbers counts{9, 0, 0, 9};
  const Numbers oneTooMany{1, 2, 3};
  const Numbers oneTooFew{1};
  const Numbers none;
  Cuts cuts{7};
  EXPECT_EQ(Error(120002), kernel->MDLPCut(&oneTooMany, &counts, 0, 1, cuts));
  EXPECT_EQ(Error(120002), kernel->MDLPCut(&oneTooFew, &counts, 0, 0, cuts));
  EXPECT_EQ(Error(120002), kernel->MDLPCut(&none, &counts, 0, 1, cuts));
  EXPECT_EQ((Cuts{7}), cuts);
}

TEST(MDLPCut, TheNumberOfCategoriesDecidesWhetherTheSizesFit) {
  const Kernel kernel(3);
  const Numbers values{1, 2};
  const Numbers counts{9, 0, 0, 9};
  Cuts cuts;
  EXPECT_EQ(Error(120002), kernel->MDLPCut(&values, &counts, 0, 1, cuts));
}

TEST(MDLPCut, ASingleRowIsNeverSplit) {
  EXPECT_EQ(Cuts{}, CutsOf({{50, 50}}, kClosed));
  EXPECT_EQ(Cuts{}, CutsOf({{50, 50}}, kOpen));
  EXPECT_EQ(Cuts{}, CutsOf(Times(kA_B, 50), 1, 1, kClosed));
}

TEST(MDLPCut, RowsPureInOneCategoryAreNeverSplit) {
  EXPECT_EQ(Cuts{}, CutsOf({{50, 0}, {1, 0}, {70, 0}}, kClosed));
  EXPECT_EQ(Cuts{}, CutsOf({{0, 50}, {0, 1}, {0, 70}}, kOpen));
}

TEST(MDLPCut, AClosedBorderCutsAtTheLastValueOfTheLeftPart) {
  EXPECT_EQ((Cuts{2}), CutsOf(Times(kAABB, 20), kClosed));
}

TEST(MDLPCut, AnOpenBorderCutsAtTheFirstValueOfTheRightPart) {
  EXPECT_EQ((Cuts{3}), CutsOf(Times(kAABB, 20), kOpen));
}

TEST(MDLPCut, PartsAreSplitInTurnTheSameRowsInBothModes) {
  const Table rows{{40, 0}, {40, 0}, {0, 40}, {40, 0}, {0, 40}, {0, 40}, {40, 0}};
  EXPECT_EQ((Cuts{2, 3, 4, 6}), CutsOf(rows, kClosed));
  EXPECT_EQ((Cuts{3, 4, 5, 7}), CutsOf(rows, kOpen));
}

TEST(MDLPCut, AllCutsThatPassAreTaken) {
  Table rows;
  Cuts all;
  for (int r = 0; r < 60; ++r) {
    rows.push_back(r % 2 == 0 ? Numbers{1000, 0} : Numbers{0, 1000});
    if (r > 0) all.insert(r);
  }
  EXPECT_EQ(all, CutsOf(rows, kClosed));
}

TEST(MDLPCut, WorksOnTheGivenRowsAlone) {
  const Table rows{{40, 0}, {0, 40}, {40, 0}, {0, 40}, {40, 0}};
  EXPECT_EQ((Cuts{2, 3}), CutsOf(rows, 1, 3, kClosed));
  EXPECT_EQ((Cuts{3, 4}), CutsOf(rows, 1, 3, kOpen));
}

TEST(MDLPCut, CutsAreAddedToThoseThereAre) {
  const Kernel kernel(2);
  const Numbers values{1, 2};
  const Numbers counts{40, 0, 0, 40};
  Cuts cuts{1, 7};
  EXPECT_EQ(OK(), kernel->MDLPCut(&values, &counts, 0, 1, cuts));
  EXPECT_EQ((Cuts{1, 7}), cuts);
}

// N = 8n, gain 1 - 0.8112781 = 0.1887219, k = 4, so that Delta = log2(79) -
// (4 - 4 * 0.8112781) = 5.5489; the threshold (Delta + log2(N - 1)) / N is 0.2023
// for n = 7 and 0.1801 for n = 8.  With the three or two categories of the whole
// interval in place of k, n = 7 would pass.
TEST(MDLPCut, TheGainMustExceedTheDescriptionLengthOfTheSplit) {
  const Table rows{{3, 1}, {1, 3}};
  EXPECT_EQ(Cuts{}, CutsOf(Times(rows, 7), kClosed));
  EXPECT_EQ((Cuts{1}), CutsOf(Times(rows, 8), kClosed));
  EXPECT_EQ(Cuts{}, CutsOf(Times(rows, 7), kOpen));
  EXPECT_EQ((Cuts{2}), CutsOf(Times(rows, 8), kOpen));
}

// One category, all of it on the left, and N = 2: gain 0, Delta log2(3 - 2) = 0 and
// log2(N - 1) = 0, so gain and threshold are both exactly 0.
TEST(MDLPCut, AGainThatEqualsTheThresholdIsRejected) {
  EXPECT_EQ(Cuts{}, CutsOf({{2, 0}, {0, 0}}, kClosed));
  EXPECT_EQ(Cuts{}, CutsOf({{0, 0}, {2, 0}}, kOpen));
}

// N = 0.8: log2(N - 1) does not exist, and a comparison with it accepts nothing.
TEST(MDLPCut, AnIntervalLighterThanOneIsNotSplit) {
  EXPECT_EQ(Cuts{}, CutsOf(Times(kA_B, 0.4), kClosed));
  EXPECT_EQ(Cuts{}, CutsOf(Times(kA_B, 0.4), kOpen));
}

TEST(MDLPCut, AnIntervalWithoutWeightIsNotSplit) {
  EXPECT_EQ(Cuts{}, CutsOf({{0, 0}, {0, 0}, {0, 0}}, kClosed));
  EXPECT_EQ(Cuts{}, CutsOf({{0, 0}, {0, 0}, {0, 0}}, kOpen));
}

TEST(MDLPCut, WeightsThatAreNoNumbersAcceptNothing) {
  EXPECT_EQ(Cuts{}, CutsOf({{kNaN, 0}, {0, 40}}, kClosed));
  EXPECT_EQ(Cuts{}, CutsOf({{kInfinity, 0}, {0, kInfinity}}, kOpen));
}

// log2(N - 1) is minus infinity for N = 1 and every gain exceeds it.
TEST(MDLPCut, AnIntervalOfWeightOneIsSplitWhateverTheGain) {
  EXPECT_EQ((Cuts{1}), CutsOf(Times(kA_B, 0.5), kClosed));
  EXPECT_EQ((Cuts{2}), CutsOf(Times(kA_B, 0.5), kOpen));
  EXPECT_EQ((Cuts{1}), CutsOf({{0.25, 0.25}, {0.25, 0.25}}, kClosed));
}

TEST(MDLPCut, ACutThatLeavesOneSideWithoutRowsIsTakenOnceAndEndsTheInterval) {
  // All positions have 1 bit, so the first one wins: open, nothing is left of it.
  EXPECT_EQ((Cuts{1}), CutsOf({{0.25, 0.25}, {0.25, 0.25}}, kOpen));
  // No position is evaluated, and 0 lies in front of the interval.
  EXPECT_EQ((Cuts{1}), CutsOf({{9, 0}, {9, 0}, {0.5, 0}, {0.5, 0}}, 2, 3, kClosed));
  EXPECT_EQ((Cuts{1}), CutsOf({{9, 0}, {9, 0}, {0.5, 0}, {0.5, 0}}, 2, 3, kOpen));
}

// Where the weights leave no room for the differences, gains are rounding errors and
// sums overflow.  The search must end all the same, with values of rows as cuts.
TEST(MDLPCut, EndsForWeightsOfAnyMagnitude) {
  const Numbers weights{0, 0.5, 1, 3, 1e18, 3e18, 1e19, 1e300, 1.7e308, 5e-324, kInfinity, kNaN};
  for (std::uint64_t seed = 1; seed <= 3000; ++seed) {
    std::mt19937_64 random(seed);
    Table rows(2 + random() % 6);
    for (Numbers& row : rows) {
      row = {weights[random() % weights.size()], weights[random() % weights.size()]};
    }
    for (const double cut : CutsOf(rows, random() % 2 == 0)) {
      EXPECT_EQ(cut, std::floor(cut)) << "seed " << seed;
      EXPECT_GE(cut, 1.0) << "seed " << seed;
      EXPECT_LE(cut, static_cast<double>(rows.size())) << "seed " << seed;
    }
  }
}

TEST(MDLPCut, DoesNotChangeItsTables) {
  const Kernel kernel(2);
  Numbers values{1, 2, 3};
  Numbers counts{40, 0, 0, 40, 40, 0};
  Cuts cuts;
  EXPECT_EQ(OK(), kernel->MDLPCut(&values, &counts, 0, 2, cuts));
  EXPECT_EQ((Numbers{1, 2, 3}), values);
  EXPECT_EQ((Numbers{40, 0, 0, 40, 40, 0}), counts);
  EXPECT_EQ((Cuts{1, 2}), cuts);
}

TEST(MDLPCut, WithoutCategoriesIsAnError) {
  const Kernel kernel(0);
  const Numbers values;
  const Numbers counts;
  Cuts cuts;
  EXPECT_EQ(Error(120002), kernel->MDLPCut(&values, &counts, 0, 0, cuts));
}

// Both rows are mixed three to two, so the true gain of every cut is 0.  Rounding
// makes the position behind all rows the best by a hair, and weight 1 accepts it.
TEST(MDLPCut, ACutBehindAllRowsIsTakenOnceAndEndsTheInterval) {
  EXPECT_EQ((Cuts{2}), CutsOf({{9 * 0.05, 3 * 0.05}, {6 * 0.05, 2 * 0.05}}, kClosed));
}

}  // namespace
