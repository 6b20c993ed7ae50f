#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>

#include <gtest/gtest.h>

#include "algorithm/kernel.h"

// The arithmetic of a pair: entropy, description length, best split, stop rule.
namespace {

using namespace support;

// ----------------------------------------------------------------------- entropy

TEST(Entropy, TwoEqualClassesHaveOneBit) { EXPECT_EQ(1.0, EntropyOf({10, 5, 5})); }

TEST(Entropy, OneClassAloneHasNone) {
  EXPECT_EQ(0.0, EntropyOf({10, 10, 0}));
  EXPECT_EQ(0.0, EntropyOf({10, 0, 10}));
}

TEST(Entropy, NoWeightHasNone) {
  EXPECT_EQ(0.0, EntropyOf({0, 0, 0}));
  EXPECT_EQ(0.0, EntropyOf({0, 5, 5}));
  EXPECT_EQ(0.0, EntropyOf({-0.0, 0, 0}));
}

TEST(Entropy, NoCategoryHasNone) { EXPECT_EQ(0.0, EntropyOf({10})); }

TEST(Entropy, UnequalClasses) {
  EXPECT_NEAR(0.811278124459133, EntropyOf({8, 2, 6}), 1e-14);  // -1/4 log 1/4 - 3/4 log 3/4
  EXPECT_EQ(1.5, EntropyOf({4, 2, 1, 1}));
  EXPECT_EQ(2.0, EntropyOf({4, 1, 1, 1, 1}));
}

TEST(Entropy, WeightsNeedNotBeWhole) {
  EXPECT_EQ(1.0, EntropyOf({0.5, 0.25, 0.25}));
  EXPECT_NEAR(0.811278124459133, EntropyOf({0.8, 0.2, 0.6}), 1e-14);
}

TEST(Entropy, AClassWithoutWeightContributesNothing) {
  EXPECT_EQ(1.0, EntropyOf({10, 5, 0, 5, 0}));
}

TEST(Entropy, OnlyTheCategoriesOfThePairCount) {
  const Numbers counts{4, 2, 2, 99};
  EXPECT_EQ(1.0, Kernel(2)->Entropy(&counts));
}

// The formula in the order in which it is meant, to the last bit.
TEST(Entropy, TheLogarithmIsTheNaturalOneDividedByThatOfTwo) {
  for (int a = 1; a <= 200; ++a) {
    const double p = a / 201.0;
    const double q = (201 - a) / 201.0;
    EXPECT_EQ(-p * Log2(p) - q * Log2(q), EntropyOf({201, static_cast<double>(a), 201.0 - a})) << a;
  }
}

// ----------------------------------------------------------------- split entropy

TEST(SplitEntropy, PurePartsHaveNone) { EXPECT_EQ(0.0, SplitEntropyOf({4, 4, 0}, {6, 0, 6})); }

TEST(SplitEntropy, PartsCountByTheirWeight) {
  EXPECT_EQ(0.25, SplitEntropyOf({2, 1, 1}, {6, 0, 6}));  // (2 * 1 + 6 * 0) / 8
  EXPECT_EQ(0.75, SplitEntropyOf({6, 3, 3}, {2, 0, 2}));
}

TEST(SplitEntropy, AnEmptySideGivesTheEntropyOfTheOther) {
  EXPECT_EQ(1.0, SplitEntropyOf({0, 0, 0}, {4, 2, 2}));
  EXPECT_EQ(1.0, SplitEntropyOf({4, 2, 2}, {0, 0, 0}));
}

TEST(SplitEntropy, TwoEmptySidesGiveNoNumber) {
  EXPECT_TRUE(std::isnan(SplitEntropyOf({0, 0, 0}, {0, 0, 0})));
}

// ------------------------------------------------------------- description length

TEST(Delta, OfTwoPureParts) {
  // k = 1 + 1: log2(9 - 2) - (2 * 1 - 0 - 0)
  EXPECT_DOUBLE_EQ(std::log2(7.0) - 2.0, DeltaOf({4, 4, 0}, {4, 0, 4}, 1.0));
}

TEST(Delta, AddsTheCategoryCountsOfThePartsThoughTheyShareCategories) {
  // k = 2 + 1 = 3: log2(27 - 2) - (3 * 0.5 - 2 * 1 - 1 * 0)
  EXPECT_DOUBLE_EQ(std::log2(25.0) + 0.5, DeltaOf({2, 1, 1}, {6, 0, 6}, 0.5));
  // k = 2 + 2 = 4: log2(81 - 2) - (4 * 1 - 2 * 1 - 2 * 1)
  EXPECT_DOUBLE_EQ(std::log2(79.0), DeltaOf({2, 1, 1}, {2, 1, 1}, 1.0));
}

TEST(Delta, ACategoryWithoutWeightIsNotCounted) {
  EXPECT_DOUBLE_EQ(std::log2(7.0) - 2.0, DeltaOf({4, 0, 4, 0, 0}, {4, 0, 0, 0, 4}, 1.0));
}

TEST(Delta, AnEmptyPartHasNoCategory) {
  // k = 0 + 2: log2(9 - 2) - (2 * 1 - 2 * 1)
  EXPECT_DOUBLE_EQ(std::log2(7.0), DeltaOf({0, 0, 0}, {4, 2, 2}, 1.0));
}

TEST(Delta, OfOneCategoryInOnePartAloneIsZero) {
  EXPECT_EQ(0.0, DeltaOf({2, 2, 0}, {0, 0, 0}, 0.0));  // log2(3 - 2)
}

TEST(Delta, OfTwoEmptyPartsIsNoNumber) {
  EXPECT_TRUE(std::isnan(DeltaOf({0, 0, 0}, {0, 0, 0}, 0.0)));  // log2(1 - 2)
}

TEST(Delta, StaysFiniteForAllTheCategoriesThereCanBe) {
  Numbers part(257, 1.0);
  part[0] = 256.0;
  // k = 512 and every entropy is 8, so that all but log2(3^512) cancels
  EXPECT_NEAR(512.0 * std::log2(3.0), DeltaOf(part, part, 8.0), 1e-9);
}

// --------------------------------------------------------------------- best split

TEST(BestSplit, WithAClosedRightBorderTheRowAtThePositionIsOnTheLeft) {
  const Split split = BestSplit({{4, 0}, {0, 3}}, 0, 1, kClosed);
  EXPECT_EQ(0, split.position);
  EXPECT_EQ((Numbers{4, 4, 0}), split.left);
  EXPECT_EQ((Numbers{3, 0, 3}), split.right);
}

TEST(BestSplit, WithAnOpenRightBorderTheRowAtThePositionIsOnTheRight) {
  const Split split = BestSplit({{4, 0}, {0, 3}}, 0, 1, kOpen);
  EXPECT_EQ(1, split.position);
  EXPECT_EQ((Numbers{4, 4, 0}), split.left);
  EXPECT_EQ((Numbers{3, 0, 3}), split.right);
}

TEST(BestSplit, TakesTheLeastEntropy) {
  const Table rows{{3, 1}, {3, 0}, {1, 3}, {0, 4}};
  EXPECT_EQ(1, BestPosition(rows, kClosed));
  EXPECT_EQ(2, BestPosition(rows, kOpen));
}

TEST(BestSplit, WorksForMoreThanTwoCategories) {
  const Table rows{{1, 1, 0}, {1, 1, 0}, {0, 0, 2}, {0, 0, 2}};
  const Split split = BestSplit(rows, 0, 3, kClosed);
  EXPECT_EQ(1, split.position);
  EXPECT_EQ((Numbers{4, 2, 2, 0}), split.left);
  EXPECT_EQ((Numbers{4, 0, 0, 4}), split.right);
}

TEST(BestSplit, LooksAtTheRowsOfTheIntervalAlone) {
  const Table rows{{0, 9}, {4, 0}, {4, 0}, {0, 3}, {9, 0}, {0, 9}};
  const Split split = BestSplit(rows, 1, 3, kClosed);
  EXPECT_EQ(2, split.position);
  EXPECT_EQ((Numbers{8, 8, 0}), split.left);
  EXPECT_EQ((Numbers{3, 0, 3}), split.right);
  EXPECT_EQ(3, BestPosition(rows, 1, 3, kOpen));
}

TEST(BestSplit, EqualEntropiesAreResolvedInFavourOfTheLeftmost) {
  // Splitting off the first or the last row leaves one pure row and a half and half.
  const Table rows{{1, 0}, {0, 1}, {1, 0}};
  EXPECT_EQ(0, BestPosition(rows, kClosed));
  EXPECT_EQ(1, BestPosition(rows, kOpen));
}

TEST(BestSplit, AllPositionsBeingEqualGivesTheFirst) {
  const Table rows{{1, 1}, {2, 2}, {1, 1}};  // 1 bit, split or not
  EXPECT_EQ(0, BestPosition(rows, kClosed));
  EXPECT_EQ(0, BestPosition(rows, kOpen));
}

TEST(BestSplit, ASingleRowHasNoPosition) {
  const Table rows{{1, 0}, {2, 2}, {1, 0}};
  EXPECT_EQ(0, BestPosition(rows, 1, 1, kClosed));
  EXPECT_EQ(0, BestPosition(rows, 1, 1, kOpen));
}

TEST(BestSplit, RowsPureInOneCategoryHaveNoPosition) {
  const Table rows{{0, 1}, {4, 0}, {1, 0}, {2, 0}};
  EXPECT_EQ(0, BestPosition(rows, 1, 3, kClosed));
  EXPECT_EQ(0, BestPosition(rows, 1, 3, kOpen));
}

// Whether two rows are a boundary shows where every split has the same entropy:
// the first position that is evaluated is the result.  The leading row is outside
// the interval, since 0 would also mean that there was no position.
int FirstEvaluated(const Numbers& row, const Numbers& next, const Numbers& last) {
  return BestPosition({{1, 1}, row, next, last}, 1, 3, kClosed);
}

TEST(Boundary, IsNotBetweenRowsPureInTheSameCategory) {
  EXPECT_EQ(2, FirstEvaluated({1, 0}, {1, 0}, {0, 0}));
  EXPECT_EQ(2, FirstEvaluated({1, 0}, {5, 0}, {0, 0}));  // whatever their weights
}

TEST(Boundary, IsBetweenAPureRowAndAnEmptyOne) {
  EXPECT_EQ(1, FirstEvaluated({1, 0}, {0, 0}, {1, 0}));
  EXPECT_EQ(1, FirstEvaluated({0, 0}, {1, 0}, {1, 0}));
}

TEST(Boundary, IsBetweenTwoEmptyRows) { EXPECT_EQ(1, FirstEvaluated({0, 0}, {0, 0}, {1, 0})); }

TEST(Boundary, IsBetweenRowsThatShareTwoCategories) {
  EXPECT_EQ(1, FirstEvaluated({1, 1}, {2, 2}, {1, 1}));
}

TEST(Boundary, IsBetweenRowsPureInDifferentCategories) {
  EXPECT_EQ(1, BestPosition({{1, 1}, {2, 0}, {0, 3}}, 1, 2, kClosed));
}

TEST(Boundary, IsBetweenRowsThatShareOneOfSeveralCategories) {
  EXPECT_EQ(1, BestPosition({{1, 1}, {1, 1}, {1, 0}}, 1, 2, kClosed));
  EXPECT_EQ(1, BestPosition({{1, 1}, {1, 0}, {1, 1}}, 1, 2, kClosed));
}

TEST(Boundary, CountsAnyWeightThatIsNotZero) {
  EXPECT_EQ(1, BestPosition({{1, 1}, {1, 0}, {1, 1e-300}}, 1, 2, kClosed));
}

// With an open right border the true split of two pure runs lies at the position
// after the boundary, which is no boundary itself.
TEST(FollowOn, ThePositionAfterABoundaryIsEvaluatedThoughItIsNone) {
  EXPECT_EQ(2, BestPosition(kAABB, kOpen));
  EXPECT_EQ(2, BestPosition({{1, 0}, {5, 0}, {0, 3}, {0, 11}, {5, 0}}, kOpen));
}

TEST(FollowOn, TheLastPositionIsEvaluatedAfterABoundary) {
  EXPECT_EQ(1, BestPosition(kA_B, kOpen));
}

// The plain rule, for tables of exact sums: which positions are looked at, and the
// first of those with the least entropy.
enum class Rule { kBoundariesAndOneFollowOn, kBoundaries, kBoundariesAndAllFollowOns, kAll };

bool IsBoundary(const Numbers& row, const Numbers& next) {
  int inRow = 0, inNext = 0, inBoth = 0;
  for (std::size_t j = 0; j < row.size(); ++j) {
    inRow += row[j] != 0;
    inNext += next[j] != 0;
    inBoth += row[j] != 0 && next[j] != 0;
  }
  return !(inRow == 1 && inNext == 1 && inBoth == 1);
}

bool IsEvaluated(Rule rule, bool boundary, bool afterBoundary, bool afterEvaluated) {
  switch (rule) {
    case Rule::kBoundariesAndOneFollowOn: return boundary || afterBoundary;
    case Rule::kBoundaries: return boundary;
    case Rule::kBoundariesAndAllFollowOns: return boundary || afterEvaluated;
    case Rule::kAll: return true;
  }
  return true;
}

int PlainBest(const Table& rows, bool closed, Rule rule) {
  const Kernel kernel(static_cast<unsigned int>(rows.at(0).size()), closed);
  const int last = static_cast<int>(rows.size()) - 1;
  int best = 0;
  double least = kInfinity;
  bool afterBoundary = false;
  bool afterEvaluated = false;
  for (int p = 0; p <= last; ++p) {
    const auto r = static_cast<std::size_t>(p);
    const bool boundary = p < last && IsBoundary(rows[r], rows[r + 1]);
    const bool evaluated = IsEvaluated(rule, boundary, afterBoundary, afterEvaluated);
    if (evaluated) {
      const int lastOnLeft = closed ? p : p - 1;
      const Numbers left = CountsOf(rows, 0, lastOnLeft);
      const Numbers right = CountsOf(rows, lastOnLeft + 1, last);
      const double entropy = kernel->ComputeEntropy(&left, &right);
      if (entropy < least) {
        least = entropy;
        best = p;
      }
    }
    afterBoundary = boundary;
    afterEvaluated = evaluated;
  }
  return best;
}

double HeavyWeight(std::mt19937_64& random) {
  return std::ldexp(0.5 + 0.125 * static_cast<double>(random() % 5), 51);
}

double LightWeight(std::mt19937_64& random) { return random() % 3 == 0 ? 2.0 : 1.0; }

// A few light rows between two heavy ones of the same category, all sums exact.  The
// splits there have the same entropy up to rounding, and so a last bit, which may be
// less at any of them, tells which positions were looked at.
Table LightBetweenHeavyRows(std::mt19937_64& random) {
  Table rows{{HeavyWeight(random), 0}, {0, LightWeight(random)}};
  for (std::size_t n = 1 + random() % 3; n > 0; --n) rows.push_back({LightWeight(random), 0});
  rows.push_back({HeavyWeight(random), 0});
  if (random() % 2 == 0) std::reverse(rows.begin(), rows.end());
  return rows;
}

// Pure rows, mixed ones and empty ones of small weights.
Table AnyRows(std::mt19937_64& random) {
  Table rows(2 + random() % 6);
  for (Numbers& row : rows) {
    row = {static_cast<double>(random() % 3), static_cast<double>(random() % 3)};
  }
  return rows;
}

struct Differences {
  int boundaries = 0;
  int allFollowOns = 0;
  int all = 0;
};

Differences CompareWithThePlainRule(bool closed) {
  Differences differences;
  for (std::uint64_t seed = 1; seed <= 4000; ++seed) {
    std::mt19937_64 random(seed);
    const Table rows = seed % 2 == 0 ? LightBetweenHeavyRows(random) : AnyRows(random);
    const int plain = PlainBest(rows, closed, Rule::kBoundariesAndOneFollowOn);
    EXPECT_EQ(plain, BestPosition(rows, closed)) << "seed " << seed;
    if (testing::Test::HasFailure()) break;
    differences.boundaries += plain != PlainBest(rows, closed, Rule::kBoundaries);
    differences.allFollowOns += plain != PlainBest(rows, closed, Rule::kBoundariesAndAllFollowOns);
    differences.all += plain != PlainBest(rows, closed, Rule::kAll);
  }
  return differences;
}

TEST(FollowOn, ThereIsExactlyOneAfterABoundaryWithAClosedBorder) {
  const Differences differences = CompareWithThePlainRule(kClosed);
  // The tables would have told any other rule from this one.
  EXPECT_GT(differences.boundaries, 0);
  EXPECT_GT(differences.allFollowOns, 0);
  EXPECT_GT(differences.all, 0);
}

TEST(FollowOn, ThereIsExactlyOneAfterABoundaryWithAnOpenBorder) {
  const Differences differences = CompareWithThePlainRule(kOpen);
  EXPECT_GT(differences.boundaries, 0);
  EXPECT_GT(differences.allFollowOns, 0);
  EXPECT_GT(differences.all, 0);
}

// Which side is summed from the rows shows where a sum is not exact: the total
// 2^53 + 1 rounds to 2^53, so the side that is a difference has lost that 1.
TEST(Rebuild, TheLeftSideIsSummedWhenThePositionLiesBeforeTheMiddle) {
  const Split split = BestSplit({{k2To53, 0}, {1, 4}}, 0, 1, kClosed);
  ASSERT_EQ(0, split.position);  // 0.5 is not below 0
  EXPECT_EQ((Numbers{k2To53, k2To53, 0}), split.left);
  EXPECT_EQ((Numbers{4, 0, 4}), split.right);
}

TEST(Rebuild, TheLeftSideIsSummedWhenThePositionIsTheMiddle) {
  const Split split = BestSplit({{k2To53, 0}, {k2To53, 0}, {1, 4}}, 0, 2, kClosed);
  ASSERT_EQ(1, split.position);  // 1 is not below 1
  EXPECT_EQ((Numbers{2 * k2To53, 2 * k2To53, 0}), split.left);
  EXPECT_EQ((Numbers{4, 0, 4}), split.right);
}

TEST(Rebuild, TheRightSideIsSummedWhenThePositionLiesBehindTheMiddle) {
  const Split split = BestSplit({{1, 4}, {0, 4}, {0, 4}, {k2To53, 0}}, 0, 3, kClosed);
  ASSERT_EQ(2, split.position);  // 1.5 is below 2
  EXPECT_EQ((Numbers{12, 0, 12}), split.left);
  EXPECT_EQ((Numbers{k2To53, k2To53, 0}), split.right);
}

TEST(Rebuild, ThePositionAndNotTheSplitIsComparedWithTheMiddle) {
  const Split split = BestSplit({{1, 4}, {k2To53, 0}}, 0, 1, kOpen);
  ASSERT_EQ(1, split.position);  // 0.5 is below 1
  EXPECT_EQ((Numbers{4, 0, 4}), split.left);
  EXPECT_EQ((Numbers{k2To53, k2To53, 0}), split.right);
}

TEST(Rebuild, TheMiddleIsThatOfTheInterval) {
  const Table rows{{1, 1}, {1, 1}, {1, 1}, {1, 1}, {k2To53, 0}, {1, 4}};
  const Split split = BestSplit(rows, 4, 5, kClosed);
  ASSERT_EQ(4, split.position);  // 4.5 is not below 4
  EXPECT_EQ((Numbers{4, 0, 4}), split.right);
}

// Negative weights have no entropy, but a row that has one has the class.
TEST(Boundary, CountsANegativeWeightAsOneThatIsNotZero) {
  EXPECT_EQ(1, FirstEvaluated({1, -0.25}, {1, 0}, {0, 0}));
  EXPECT_EQ(1, FirstEvaluated({1, 0}, {1, -0.25}, {0, 0}));
}

// The whole, 2^53 + 1, rounds to 2^53, and would leave nothing for the right part.
TEST(Rebuild, TheTotalOfTheRestIsTheSumOfItsClasses) {
  const Split left = BestSplit({{k2To53, 0}, {0, 1}}, 0, 1, kClosed);
  ASSERT_EQ(0, left.position);
  EXPECT_EQ((Numbers{1, 0, 1}), left.right);
  const Split right = BestSplit({{0, 1}, {0, 0}, {0, 0}, {k2To53, 0}}, 0, 3, kClosed);
  EXPECT_EQ((Numbers{1, 0, 1}), right.left);
}

}  // namespace
