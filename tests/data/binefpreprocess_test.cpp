#include "tqbinning/binefpreprocess.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "data/percentilewalk.h"

namespace {

using namespace data;

// ---- FindCutPts ----

TEST(BINEFPreProcess, FourBinsOverOneToEightCutAtTheMidpoints) {
  for (const bool includeUpper : {kRightClosed, kLeftClosed}) {
    SCOPED_TRACE(includeUpper);
    const Cuts cuts = FindCuts(4, includeUpper, OneTo(8), 8.0);
    EXPECT_TRUE(cuts.found);
    EXPECT_EQ((Doubles{2.5, 4.5, 6.5}), cuts.points);
    EXPECT_EQ((Doubles{2.0, 2.0, 2.0, 2.0}), cuts.frequencies);
  }
}

// A third of 6 is not a double, but within the tolerance of 2.
TEST(BINEFPreProcess, ThreeBinsOverOneToSixCutAtTheMidpointsDespiteRounding) {
  for (const bool includeUpper : {kRightClosed, kLeftClosed}) {
    SCOPED_TRACE(includeUpper);
    const Cuts cuts = FindCuts(3, includeUpper, OneTo(6), 6.0);
    EXPECT_EQ((Doubles{2.5, 4.5}), cuts.points);
    EXPECT_EQ((Doubles{2.0, 2.0, 2.0}), cuts.frequencies);
  }
}

TEST(BINEFPreProcess, TuplesWithATargetHaveTheSameCutsAndNoFrequencies) {
  const Cuts cuts = FindCuts(4, kRightClosed, WithTarget(OneTo(8)), 8.0);
  EXPECT_TRUE(cuts.found);
  EXPECT_EQ((Doubles{2.5, 4.5, 6.5}), cuts.points);
  EXPECT_EQ(Doubles{}, cuts.frequencies);
}

// Target 2 of 4: the run at 2 takes the weight from 1 to 3.
TEST(BINEFPreProcess, TheRunThatCrossesTheTargetIsTheCut) {
  const Tuples tuples = {{1.0, 1.0}, {2.0, 2.0}, {3.0, 1.0}};
  const Cuts right = FindCuts(2, kRightClosed, tuples, 4.0);
  EXPECT_EQ((Doubles{2.0}), right.points);
  EXPECT_EQ((Doubles{3.0, 1.0}), right.frequencies);  // up to 2, above 2
  const Cuts left = FindCuts(2, kLeftClosed, tuples, 4.0);
  EXPECT_EQ((Doubles{2.0}), left.points);
  EXPECT_EQ((Doubles{1.0, 3.0}), left.frequencies);  // below 2, from 2 on
}

// Target 2.5 of 5 lies inside the three twos.
TEST(BINEFPreProcess, ARunOfEqualValuesIsNeverSplit) {
  const Tuples tuples = {{1.0, 1.0}, {2.0, 1.0}, {2.0, 1.0}, {2.0, 1.0}, {3.0, 1.0}};
  const Cuts right = FindCuts(2, kRightClosed, tuples, 5.0);
  EXPECT_EQ((Doubles{2.0}), right.points);
  EXPECT_EQ((Doubles{4.0, 1.0}), right.frequencies);
  const Cuts left = FindCuts(2, kLeftClosed, tuples, 5.0);
  EXPECT_EQ((Doubles{1.0, 4.0}), left.frequencies);
}

// Negative zero and zero are one run of weight 2 of 4.
TEST(BINEFPreProcess, BothZerosAreOneRun) {
  const Tuples tuples = {{-1.0, 1.0}, {-0.0, 1.0}, {0.0, 1.0}, {1.0, 1.0}};
  const Cuts cuts = FindCuts(2, kRightClosed, tuples, 4.0);
  EXPECT_EQ((Doubles{0.0}), cuts.points);
  EXPECT_EQ((Doubles{3.0, 1.0}), cuts.frequencies);
}

// Targets 3, 6, 9 of 12: the run at 2 goes from 1 to 11 and spans all three.
TEST(BINEFPreProcess, ARunThatSpansSeveralPercentilesGivesOneCut) {
  const Tuples tuples = {{1.0, 1.0}, {2.0, 10.0}, {3.0, 1.0}};
  const Cuts right = FindCuts(4, kRightClosed, tuples, 12.0);
  EXPECT_EQ((Doubles{2.0}), right.points);
  EXPECT_EQ((Doubles{11.0, 1.0}), right.frequencies);
  const Cuts left = FindCuts(4, kLeftClosed, tuples, 12.0);
  EXPECT_EQ((Doubles{2.0}), left.points);
  EXPECT_EQ((Doubles{1.0, 11.0}), left.frequencies);
  const Cuts supervised = FindCuts(4, kRightClosed, WithTarget(tuples), 12.0);
  EXPECT_EQ((Doubles{2.0}), supervised.points);
}

TEST(BINEFPreProcess, OneDistinctValueYieldsNoCutAndTheTotalAsOnlyFrequency) {
  for (const bool includeUpper : {kRightClosed, kLeftClosed}) {
    SCOPED_TRACE(includeUpper);
    const Tuples tuples = {{5.0, 1.0}, {5.0, 2.0}};
    const Cuts cuts = FindCuts(3, includeUpper, tuples, 3.0);
    EXPECT_TRUE(cuts.found);
    EXPECT_EQ(Doubles{}, cuts.points);
    EXPECT_EQ((Doubles{3.0}), cuts.frequencies);
  }
}

TEST(BINEFPreProcess, OneBinYieldsNoCutAndTheTotalAsOnlyFrequency) {
  for (const bool includeUpper : {kRightClosed, kLeftClosed}) {
    SCOPED_TRACE(includeUpper);
    const Cuts cuts = FindCuts(1, includeUpper, OneTo(4), 4.0);
    EXPECT_TRUE(cuts.found);
    EXPECT_EQ(Doubles{}, cuts.points);
    EXPECT_EQ((Doubles{4.0}), cuts.frequencies);
  }
}

// Targets 3, 6, 9 of 12.  Left closed: 3 is met exactly, the cut is 1.5 with
// weight 3 below it; 6 is crossed by the run at 2, and between 1.5 and 2 there is
// nothing; the rest, from 2 on, weighs 9.
TEST(BINEFPreProcess, AnEmptyBinIsRemovedTogetherWithItsCut) {
  const Tuples tuples = {{1.0, 3.0}, {2.0, 6.0}, {3.0, 3.0}};
  const Cuts left = FindCuts(4, kLeftClosed, tuples, 12.0);
  EXPECT_TRUE(left.found);
  EXPECT_EQ((Doubles{1.5}), left.points);
  EXPECT_EQ((Doubles{3.0, 9.0}), left.frequencies);
  // Right closed no bin is empty: up to 1.5, up to 2, above 2.
  const Cuts right = FindCuts(4, kRightClosed, tuples, 12.0);
  EXPECT_EQ((Doubles{1.5, 2.0}), right.points);
  EXPECT_EQ((Doubles{3.0, 6.0, 3.0}), right.frequencies);
}

// The total promises 4 but there is 2, met at once: the cut is 1.5, and all that
// follows it is the weightless run at 2.
TEST(BINEFPreProcess, AnEmptyLastBinIsRemovedTogetherWithTheLastCut) {
  for (const bool includeUpper : {kRightClosed, kLeftClosed}) {
    SCOPED_TRACE(includeUpper);
    const Cuts cuts = FindCuts(2, includeUpper, Tuples{{1.0, 2.0}, {2.0, 0.0}}, 4.0);
    EXPECT_TRUE(cuts.found);
    EXPECT_EQ(Doubles{}, cuts.points);
    EXPECT_EQ((Doubles{2.0}), cuts.frequencies);
  }
}

// Targets 0.5, 1, 1.5 of 2: cuts at 1, 1 again and 2.  Right closed: weights 1 and
// 1, and the cut at the largest value goes.
TEST(BINEFPreProcess, ARightClosedBinLosesTheCutAtTheLargestValueAndNoFrequency) {
  const Cuts cuts = FindCuts(4, kRightClosed, OneTo(2), 2.0);
  EXPECT_EQ((Doubles{1.0}), cuts.points);
  EXPECT_EQ((Doubles{1.0, 1.0}), cuts.frequencies);
}

// The same cuts left closed: weights 0 (below 1), 1 and, since all is taken before
// the last step, 1; the cut at the smallest value goes with its weight.
TEST(BINEFPreProcess, ALeftClosedBinLosesTheCutAtTheSmallestValueAndItsFrequency) {
  const Cuts cuts = FindCuts(4, kLeftClosed, OneTo(2), 2.0);
  EXPECT_EQ((Doubles{2.0}), cuts.points);
  EXPECT_EQ((Doubles{1.0, 1.0}), cuts.frequencies);
}

// Target 2 of 4 is crossed by the heavy first run.
TEST(BINEFPreProcess, AHeavySmallestValueIsACutOnlyWhenBinsAreRightClosed) {
  const Tuples tuples = {{1.0, 3.0}, {2.0, 1.0}};
  const Cuts right = FindCuts(2, kRightClosed, tuples, 4.0);
  EXPECT_EQ((Doubles{1.0}), right.points);
  EXPECT_EQ((Doubles{3.0, 1.0}), right.frequencies);
  const Cuts left = FindCuts(2, kLeftClosed, tuples, 4.0);
  EXPECT_EQ(Doubles{}, left.points);
  EXPECT_EQ((Doubles{4.0}), left.frequencies);
}

TEST(BINEFPreProcess, AHeavyLargestValueIsACutOnlyWhenBinsAreLeftClosed) {
  const Tuples tuples = {{1.0, 1.0}, {2.0, 3.0}};
  const Cuts right = FindCuts(2, kRightClosed, tuples, 4.0);
  EXPECT_EQ(Doubles{}, right.points);
  EXPECT_EQ((Doubles{4.0}), right.frequencies);
  const Cuts left = FindCuts(2, kLeftClosed, tuples, 4.0);
  EXPECT_EQ((Doubles{2.0}), left.points);
  EXPECT_EQ((Doubles{1.0, 3.0}), left.frequencies);
}

TEST(BINEFPreProcess, TuplesWithATargetKeepTheOuterCuts) {
  const Cuts cuts = FindCuts(4, kRightClosed, WithTarget(OneTo(2)), 2.0);
  EXPECT_EQ((Doubles{1.0, 2.0}), cuts.points);
  const Cuts smallest = FindCuts(2, kLeftClosed, TargetTuples{{1.0, 0, 3.0}, {2.0, 1, 1.0}}, 4.0);
  EXPECT_EQ((Doubles{1.0}), smallest.points);
}

TEST(BINEFPreProcess, CutsOfTuplesWithATargetAreAppendedAndTheFrequenciesLeftAlone) {
  TargetTuples tuples = WithTarget(OneTo(4));
  Doubles points = {-7.0};
  Doubles frequencies = {70.0};
  BINEFPreProcess process(2, kRightClosed);
  EXPECT_TRUE(process.EFCreatePercentileCutPts(&tuples, points, frequencies, 4.0));
  EXPECT_EQ((Doubles{-7.0, 2.5}), points);
  EXPECT_EQ((Doubles{70.0}), frequencies);
}

// ---- the vector's full length ----

// The attribute is {1, 2} with weights 1 and 3; 9 was left by an earlier one.  The
// largest value is taken from that tail, so the cut at 2 looks like an inner one,
// and no frequency follows it.
TEST(BINEFPreProcess, TheLargestValueIsTakenFromTheStaleTail) {
  const Cuts cuts = FindCuts(2, kRightClosed, Tuples{{1.0, 1.0}, {2.0, 3.0}, {9.0, 9.0}}, 4.0);
  EXPECT_TRUE(cuts.found);
  EXPECT_EQ((Doubles{2.0}), cuts.points);
  EXPECT_EQ((Doubles{4.0}), cuts.frequencies);
}

TEST(BINEFPreProcess, ATailOfZeroTuplesIsNotCountedAsWeight) {
  const Tuples tuples = {{1.0, 1.0}, {2.0, 1.0}, {3.0, 1.0}, {4.0, 1.0}, {0.0, 0.0}, {0.0, 0.0}};
  const Cuts cuts = FindCuts(2, kRightClosed, tuples, 4.0);
  EXPECT_EQ((Doubles{2.5}), cuts.points);
  EXPECT_EQ((Doubles{2.0, 2.0}), cuts.frequencies);
}

// Valid are {1, 2} with a weight of 1 each; the tail's tuple at 2 belongs to the
// run of the last step, which takes 1 + 5.
TEST(BINEFPreProcess, ARunGoesOnIntoATailOfEqualValues) {
  const Cuts cuts = FindCuts(2, kRightClosed, Tuples{{1.0, 1.0}, {2.0, 1.0}, {2.0, 5.0}}, 2.0);
  EXPECT_EQ((Doubles{1.5}), cuts.points);
  EXPECT_EQ((Doubles{1.0, 6.0}), cuts.frequencies);
}

// Valid is {1}, with half of the weight 2 that was promised: the walk to the total
// runs on into the tail.
TEST(BINEFPreProcess, WeightsThatFallShortAreSoughtInTheTail) {
  const Cuts cuts = FindCuts(2, kRightClosed, Tuples{{1.0, 1.0}, {7.0, 4.0}}, 2.0);
  EXPECT_EQ((Doubles{4.0}), cuts.points);  // midpoint of 1 and 7
  EXPECT_EQ((Doubles{1.0, 4.0}), cuts.frequencies);
}

// ---- nothing to compute ----

TEST(BINEFPreProcess, WithoutBinsTuplesOrWeightNothingIsFoundAndNothingWritten) {
  struct Case {
    int bins;
    Tuples tuples;
    double totalWeight;
  };
  const std::vector<Case> cases = {{0, OneTo(4), 4.0},  {-1, OneTo(4), 4.0}, {2, {}, 4.0},
                                   {2, OneTo(4), 0.0},  {2, OneTo(4), -1.0}, {2, OneTo(4), kNaN},
                                   {2, OneTo(4), -0.0}, {2, {}, 0.0}};
  for (const Case& each : cases) {
    SCOPED_TRACE(testing::Message() << each.bins << " bins, " << each.tuples.size()
                                    << " tuples, total " << each.totalWeight);
    Tuples tuples = each.tuples;
    TargetTuples targetTuples = WithTarget(each.tuples);
    Doubles points = {7.0};
    Doubles frequencies = {8.0};
    BINEFPreProcess process(each.bins, kRightClosed);
    EXPECT_FALSE(
        process.EFCreatePercentileCutPts(&targetTuples, points, frequencies, each.totalWeight));
    EXPECT_FALSE(process.EFCreatePercentileCutPts(&tuples, points, frequencies, each.totalWeight));
    EXPECT_EQ((Doubles{7.0}), points);
    EXPECT_EQ((Doubles{8.0}), frequencies);
  }
}

TEST(BINEFPreProcess, WithoutATupleVectorNothingIsFoundAndNothingWritten) {
  Doubles points = {7.0};
  Doubles frequencies = {8.0};
  BINEFPreProcess process(2, kRightClosed);
  EXPECT_FALSE(process.FindCutPts(points, frequencies, 4.0));
  Tuples* noTuples = nullptr;
  EXPECT_FALSE(process.EFCreatePercentileCutPts(noTuples, points, frequencies, 4.0));
  TargetTuples* noTargetTuples = nullptr;
  EXPECT_FALSE(process.EFCreatePercentileCutPts(noTargetTuples, points, frequencies, 4.0));
  EXPECT_EQ((Doubles{7.0}), points);
  EXPECT_EQ((Doubles{8.0}), frequencies);
}

TEST(BINEFPreProcess, UnsupervisedTuplesGoFirstWhenBothKindsAreSet) {
  Tuples tuples = OneTo(4);
  TargetTuples others = {{10.0, 0, 2.0}, {20.0, 0, 2.0}};
  Doubles points;
  Doubles frequencies;
  BINEFPreProcess process(2, kRightClosed);
  EXPECT_TRUE(process.EFCreatePercentileCutPts(&tuples, points, frequencies, 4.0));
  points.clear();
  frequencies.clear();
  EXPECT_TRUE(process.EFCreatePercentileCutPts(&others, points, frequencies, 4.0));
  EXPECT_EQ((Doubles{2.5}), points);
  EXPECT_EQ((Doubles{2.0, 2.0}), frequencies);
}

TEST(BINEFPreProcess, TuplesWithATargetServeWhenTheOthersAreSetToNull) {
  Tuples* noTuples = nullptr;
  TargetTuples others = {{10.0, 0, 2.0}, {20.0, 0, 2.0}};
  Doubles points;
  Doubles frequencies;
  BINEFPreProcess process(2, kRightClosed);
  EXPECT_TRUE(process.EFCreatePercentileCutPts(&others, points, frequencies, 4.0));
  points.clear();
  EXPECT_TRUE(process.EFCreatePercentileCutPts(noTuples, points, frequencies, 4.0));
  EXPECT_EQ((Doubles{15.0}), points);
}

TEST(BINEFPreProcess, FindCutPtsUsesTheTuplesGivenLast) {
  Tuples first = OneTo(4);
  Tuples second = {{10.0, 2.0}, {20.0, 2.0}};
  Doubles points;
  Doubles frequencies;
  BINEFPreProcess process(2, kRightClosed);
  EXPECT_TRUE(process.EFCreatePercentileCutPts(&first, points, frequencies, 4.0));
  EXPECT_FALSE(process.EFCreatePercentileCutPts(&second, points, frequencies, 0.0));
  points.clear();
  frequencies.clear();
  EXPECT_TRUE(process.FindCutPts(points, frequencies, 4.0));
  EXPECT_EQ((Doubles{15.0}), points);
  EXPECT_EQ((Doubles{2.0, 2.0}), frequencies);
}

// ---- values and weights out of the ordinary ----

// Target 2 of 4 is met after 2; the midpoint with NaN is NaN.  The two NaN are
// two runs, and together the upper bin.
TEST(BINEFPreProcess, NaNValuesDoNotStallTheWalk) {
  const Tuples tuples = {{1.0, 1.0}, {2.0, 1.0}, {kNaN, 1.0}, {kNaN, 1.0}};
  const Cuts cuts = FindCuts(2, kRightClosed, tuples, 4.0);
  EXPECT_TRUE(cuts.found);
  ASSERT_EQ(1u, cuts.points.size());
  EXPECT_TRUE(std::isnan(cuts.points[0]));
  EXPECT_EQ((Doubles{2.0, 2.0}), cuts.frequencies);
}

TEST(BINEFPreProcess, NothingButNaNValuesEndsTheWalkAsWell) {
  const Tuples tuples(3, EFBINDataTuple{kNaN, 1.0});
  EXPECT_TRUE(FindCuts(2, kRightClosed, tuples, 3.0).found);
  EXPECT_TRUE(FindCuts(2, kLeftClosed, tuples, 3.0).found);
  EXPECT_TRUE(FindCuts(2, kRightClosed, WithTarget(tuples), 3.0).found);
}

// Target 2 of 4 is crossed by the run at 2; infinities are ordinary outer values.
TEST(BINEFPreProcess, InfiniteValuesAreOrdinaryRuns) {
  const Tuples tuples = {{-support::kInfinity, 1.0}, {2.0, 2.0}, {support::kInfinity, 1.0}};
  const Cuts cuts = FindCuts(2, kRightClosed, tuples, 4.0);
  EXPECT_EQ((Doubles{2.0}), cuts.points);
  EXPECT_EQ((Doubles{3.0, 1.0}), cuts.frequencies);
}

// 250 targets lie within each run, and the last of them is met exactly by a run that
// is a cut already.
TEST(BINEFPreProcess, MoreBinsThanValuesCutAtEveryValueButTheLargest) {
  const Cuts cuts = FindCuts(1000, kRightClosed, OneTo(4), 4.0);
  EXPECT_EQ((Doubles{1.0, 2.0, 3.0}), cuts.points);
  EXPECT_EQ((Doubles{1.0, 1.0, 1.0, 1.0}), cuts.frequencies);
}

// ---- the class ----

TEST(BINEFPreProcess, IsDestroyedThroughItsBase) {
  EXPECT_TRUE(std::has_virtual_destructor_v<BINEFPreProcess>);
}

// ---- totals and places that the tuples do not bear out ----

TEST(BINEFPreProcess, TuplesOfNoWeightUnderAPositiveTotalYieldNothing) {
  for (const bool includeUpper : {kRightClosed, kLeftClosed}) {
    SCOPED_TRACE(includeUpper);
    const Cuts cuts = FindCuts(2, includeUpper, Tuples{{1.0, 0.0}, {2.0, 0.0}, {3.0, 0.0}}, 10.0);
    EXPECT_TRUE(cuts.found);
    EXPECT_EQ(Doubles{}, cuts.points);
    EXPECT_EQ(Doubles{}, cuts.frequencies);
  }
}

// Five sixths of 18, as the percentage 5 * (100 / 6) gives it, exceed 15 by more than
// the tolerance.  Rounded in another order they would be met by the first 15 values.
TEST(BINEFPreProcess, PercentagesAreMultiplesOfTheRoundedShareOfOneBin) {
  for (const bool includeUpper : {kRightClosed, kLeftClosed}) {
    SCOPED_TRACE(includeUpper);
    const Cuts cuts = FindCuts(6, includeUpper, OneTo(18), 18.0);
    EXPECT_EQ((Doubles{3.5, 6.5, 9.5, 12.5, 16.0}), cuts.points);
  }
}

// ---- sorted values ----

class ValuesProcess : public BINEFPreProcess {
 public:
  using BINEFPreProcess::BINEFPreProcess;
  using BINEFPreProcess::FindCutPts;
};

TEST(BINEFPreProcess, SortedValuesAreCutAsTuplesOfWeightOne) {
  support::Random random(20);
  for (int problem = 0; problem < 4000; ++problem) {
    const auto most = 1 + random.Below(problem % 2 == 0 ? 5 : 1000);  // ties, or hardly any
    Doubles values(1 + random.Below(200));
    for (double& value : values) value = static_cast<double>(random.Below(most)) / 8.0;
    std::sort(values.begin(), values.end());
    Tuples tuples;
    for (const double value : values) tuples.push_back({value, 1.0});
    const auto bins = static_cast<int>(1 + random.Below(2 * values.size()));
    const bool includeUpper = random.Below(2) == 0;
    SCOPED_TRACE("problem " + std::to_string(problem));

    const Cuts expected = FindCuts(bins, includeUpper, tuples, static_cast<double>(values.size()));
    Cuts cuts;
    cuts.found = ValuesProcess(bins, includeUpper)
                     .FindCutPts(TQBinning::SortedValues{values}, cuts.points, cuts.frequencies);
    ASSERT_EQ(expected.found, cuts.found);
    ASSERT_EQ(expected.points, cuts.points);
    ASSERT_EQ(expected.frequencies, cuts.frequencies);
  }
}

TEST(BINEFPreProcess, NoValuesOrNoBinsFindNothing) {
  Cuts cuts;
  const Doubles values{1.0, 2.0};
  EXPECT_FALSE(ValuesProcess(2, kRightClosed).FindCutPts({}, cuts.points, cuts.frequencies));
  EXPECT_FALSE(ValuesProcess(0, kRightClosed)
                   .FindCutPts(TQBinning::SortedValues{values}, cuts.points, cuts.frequencies));
  EXPECT_EQ(Doubles{}, cuts.points);
  EXPECT_EQ(Doubles{}, cuts.frequencies);
}

}  // namespace
