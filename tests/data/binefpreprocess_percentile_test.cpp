#include "tqbinning/binefpreprocess.h"

#include <gtest/gtest.h>

#include "data/percentilewalk.h"

namespace {

using namespace data;

// ---- GetPercentile: where the cut lies ----

TEST(GetPercentile, ATargetThatIsMetGivesTheMidpointWithTheNextDistinctValue) {
  Walk walk(kRightClosed, Tuples{{1.0, 1.0}, {1.0, 1.0}, {4.0, 1.0}, {4.0, 1.0}});
  EXPECT_EQ(2.5, walk.Step(50.0, 4.0));
  EXPECT_EQ(2u, walk.index);
}

// 0.1 + 0.2 is the double after 0.3, closer than the tolerance.
TEST(GetPercentile, AWeightAboveTheTargetByLessThanTheToleranceMeetsIt) {
  Walk walk(kRightClosed, Tuples{{1.0, 0.1}, {2.0, 0.2}, {3.0, 0.3}});
  EXPECT_EQ(2.5, walk.Step(50.0, 0.6));
  EXPECT_EQ(2u, walk.index);
}

TEST(GetPercentile, AWeightBelowTheTargetByTheToleranceMeetsIt) {
  for (const double shortfall : {kEpsilon / 2.0, kEpsilon}) {
    SCOPED_TRACE(shortfall);
    Walk walk(kRightClosed, Tuples{{1.0, 1.0 - shortfall}, {2.0, 1.0}});
    EXPECT_EQ(1.5, walk.Step(50.0, 2.0));
    EXPECT_EQ(1u, walk.index);
    EXPECT_EQ((Doubles{1.0 - shortfall}), walk.frequencies);
  }
}

TEST(GetPercentile, AWeightBelowTheTargetByMoreThanTheToleranceTakesAnotherRun) {
  Walk walk(kRightClosed, Tuples{{1.0, 1.0 - 1.5 * kEpsilon}, {2.0, 1.0}});
  EXPECT_EQ(2.0, walk.Step(50.0, 2.0));
  EXPECT_EQ(2u, walk.index);
}

// 1 + epsilon differs from 1 by epsilon / (1 + epsilon), 1 + 2 epsilon by more than
// epsilon.
TEST(GetPercentile, AWeightAboveTheTargetByMoreThanTheToleranceOvershootsIt) {
  Walk within(kRightClosed, Tuples{{1.0, 1.0 + kEpsilon}, {2.0, 1.0}});
  EXPECT_EQ(1.5, within.Step(50.0, 2.0));
  Walk beyond(kRightClosed, Tuples{{1.0, 1.0 + 2.0 * kEpsilon}, {2.0, 1.0}});
  EXPECT_EQ(1.0, beyond.Step(50.0, 2.0));
}

TEST(GetPercentile, TuplesThatRunOutGiveTheLastRunsValue) {
  Walk walk(kRightClosed, Tuples{{1.0, 1.0}, {2.0, 1.0}});
  EXPECT_EQ(2.0, walk.Step(50.0, 10.0));
  EXPECT_EQ(2u, walk.index);
  EXPECT_EQ(2.0, walk.cumulative);
}

TEST(GetPercentile, AHeavyRunAtTheLastCutGivesItAgainAndMovesNothing) {
  Walk walk(kRightClosed, Tuples{{1.0, 1.0}, {2.0, 10.0}, {3.0, 1.0}});
  walk.index = 2;
  walk.cumulative = 11.0;
  walk.previousCumulative = 1.0;
  walk.cutPoints = {2.0};
  walk.frequencies = {11.0};
  EXPECT_EQ(2.0, walk.Step(75.0, 12.0));
  EXPECT_EQ(2u, walk.index);
  EXPECT_EQ(11.0, walk.cumulative);
  EXPECT_EQ(1.0, walk.previousCumulative);
  EXPECT_EQ((Doubles{2.0}), walk.cutPoints);
  EXPECT_EQ((Doubles{11.0}), walk.frequencies);
}

TEST(GetPercentile, AHeavyRunThatReachesTheTargetExactlyGivesItsCutAgain) {
  Walk walk(kRightClosed, Tuples{{1.0, 2.0}, {2.0, 2.0}});
  walk.index = 1;
  walk.cumulative = 2.0;
  walk.cutPoints = {1.0};
  EXPECT_EQ(1.0, walk.Step(50.0, 4.0));
}

// The weight is a rounding error short of the target, so the last cut is not given
// again, but the target counts as met: the cut lies between 1 and 2, no tuple is
// taken, and the bin that closes there weighs nothing.
TEST(GetPercentile, ATargetThatIsMetOnEntryTakesNoTuple) {
  Walk walk(kRightClosed, Tuples{{1.0, 1.0 - kEpsilon / 2.0}, {2.0, 1.0}});
  walk.index = 1;
  walk.cumulative = 1.0 - kEpsilon / 2.0;
  walk.cutPoints = {1.0};
  EXPECT_EQ(1.5, walk.Step(50.0, 2.0));
  EXPECT_EQ(1u, walk.index);
  EXPECT_EQ(1.0 - kEpsilon / 2.0, walk.cumulative);
  EXPECT_EQ((Doubles{0.0}), walk.frequencies);
}

TEST(GetPercentile, AWalkThatReadsNothingAndHasNoCutToRepeatReturnsTheMissingValue) {
  Walk walk(kRightClosed, Tuples{{1.0, 1.0}, {2.0, 2.0}, {3.0, 1.0}});
  walk.index = 2;
  walk.cumulative = 3.0;
  walk.cutPoints = {1.5};
  EXPECT_EQ(kMissing, walk.Step(50.0, 4.0));
  EXPECT_EQ(2u, walk.index);
  Walk atStart(kRightClosed, OneTo(2));
  EXPECT_EQ(kMissing, atStart.Step(0.0, 2.0));
  EXPECT_EQ(0u, atStart.index);
}

TEST(GetPercentile, TuplesThatAreAllTakenReturnTheMissingValue) {
  Walk walk(kRightClosed, OneTo(2));
  walk.index = 2;
  walk.cumulative = 2.0;
  EXPECT_EQ(kMissing, walk.Step(50.0, 10.0));
  EXPECT_EQ(2u, walk.index);
}

// ---- GetPercentile: weights of right-closed bins ----

// Target 2: A = 3, B = 1, P = 0; pushed A - P.
TEST(GetPercentile, RightClosedATargetThatIsOvershotClosesTheBinWithItsRun) {
  Walk walk(kRightClosed, Tuples{{1.0, 1.0}, {2.0, 2.0}, {3.0, 1.0}});
  EXPECT_EQ(2.0, walk.Step(50.0, 4.0));
  EXPECT_EQ((Doubles{3.0}), walk.frequencies);
  EXPECT_EQ(2u, walk.index);
  EXPECT_EQ(3.0, walk.cumulative);
  EXPECT_EQ(1.0, walk.previousCumulative);
}

// Target 5 of 10, from P = 2: A = 6, B = 3.
TEST(GetPercentile, RightClosedTheWeightOfALaterBinStartsAtThePreviousCut) {
  Walk walk(kRightClosed, Tuples{{1.0, 2.0}, {2.0, 1.0}, {3.0, 3.0}, {4.0, 4.0}});
  walk.index = 1;
  walk.cumulative = 2.0;
  walk.previousCumulative = 2.0;
  walk.cutPoints = {1.5};
  walk.frequencies = {2.0};
  EXPECT_EQ(3.0, walk.Step(50.0, 10.0));
  EXPECT_EQ((Doubles{2.0, 4.0}), walk.frequencies);
  EXPECT_EQ(6.0, walk.cumulative);
  EXPECT_EQ(3.0, walk.previousCumulative);
}

// Target 2 is met by the first run: A = B = 2, P = 0; pushed B - P.
TEST(GetPercentile, RightClosedATargetThatIsMetClosesTheBinBeforeTheCut) {
  Walk walk(kRightClosed, Tuples{{1.0, 2.0}, {2.0, 2.0}});
  EXPECT_EQ(1.5, walk.Step(50.0, 4.0));
  EXPECT_EQ((Doubles{2.0}), walk.frequencies);
  EXPECT_EQ(1u, walk.index);
  EXPECT_EQ(2.0, walk.cumulative);
  EXPECT_EQ(2.0, walk.previousCumulative);
}

// A = 4, P = 3.
TEST(GetPercentile, RightClosedTheTotalClosesTheLastBin) {
  Walk walk(kRightClosed, Tuples{{1.0, 1.0}, {2.0, 2.0}, {3.0, 1.0}});
  walk.index = 2;
  walk.cumulative = 3.0;
  walk.previousCumulative = 1.0;
  walk.cutPoints = {2.0};
  walk.frequencies = {3.0};
  EXPECT_EQ(3.0, walk.Step(100.0, 4.0));
  EXPECT_EQ((Doubles{3.0, 1.0}), walk.frequencies);
  EXPECT_EQ(3u, walk.index);
  EXPECT_EQ(4.0, walk.cumulative);
}

// The total is never reached: A = 2 = P; the last bin weighs nothing.
TEST(GetPercentile, RightClosedATotalOutOfReachClosesTheLastBinWithWhatThereIs) {
  Walk walk(kRightClosed, Tuples{{1.0, 2.0}, {2.0, 0.0}});
  walk.index = 1;
  walk.cumulative = 2.0;
  walk.previousCumulative = 2.0;
  walk.cutPoints = {1.5};
  walk.frequencies = {2.0};
  EXPECT_EQ(2.0, walk.Step(100.0, 4.0));
  EXPECT_EQ((Doubles{2.0, 0.0}), walk.frequencies);
}

// Target 5 of 10 with a single run of 1: B = 0.
TEST(GetPercentile, RightClosedAWalkThatEndsShortInItsFirstRunPushesNothing) {
  Walk walk(kRightClosed, Tuples{{1.0, 1.0}});
  EXPECT_EQ(1.0, walk.Step(50.0, 10.0));
  EXPECT_EQ(Doubles{}, walk.frequencies);
  EXPECT_EQ(1u, walk.index);
  EXPECT_EQ(1.0, walk.cumulative);
  EXPECT_EQ(0.0, walk.previousCumulative);
}

// ---- GetPercentile: weights of left-closed bins ----

// Target 2: A = 3, B = 1, Q = 0; pushed B - Q.
TEST(GetPercentile, LeftClosedATargetThatIsOvershotLeavesItsRunToTheNextBin) {
  Walk walk(kLeftClosed, Tuples{{1.0, 1.0}, {2.0, 2.0}, {3.0, 1.0}});
  EXPECT_EQ(2.0, walk.Step(50.0, 4.0));
  EXPECT_EQ((Doubles{1.0}), walk.frequencies);
  EXPECT_EQ(2u, walk.index);
  EXPECT_EQ(3.0, walk.cumulative);
  EXPECT_EQ(1.0, walk.previousCumulative);
}

// Target 5 of 10, from P = 3 and Q = 1: A = 7, B = 4.
TEST(GetPercentile, LeftClosedTheWeightOfALaterBinStartsBeforeThePreviousCutsRun) {
  Walk walk(kLeftClosed, Tuples{{1.0, 1.0}, {2.0, 2.0}, {3.0, 1.0}, {4.0, 3.0}, {5.0, 3.0}});
  walk.index = 2;
  walk.cumulative = 3.0;
  walk.previousCumulative = 1.0;
  walk.cutPoints = {2.0};
  walk.frequencies = {1.0};
  EXPECT_EQ(4.0, walk.Step(50.0, 10.0));
  EXPECT_EQ((Doubles{1.0, 3.0}), walk.frequencies);
  EXPECT_EQ(7.0, walk.cumulative);
  EXPECT_EQ(4.0, walk.previousCumulative);
}

// A = B = 2, Q = 0; pushed B - Q.
TEST(GetPercentile, LeftClosedATargetThatIsMetClosesTheBinBeforeTheCut) {
  Walk walk(kLeftClosed, Tuples{{1.0, 2.0}, {2.0, 2.0}});
  EXPECT_EQ(1.5, walk.Step(50.0, 4.0));
  EXPECT_EQ((Doubles{2.0}), walk.frequencies);
  EXPECT_EQ(2.0, walk.cumulative);
  EXPECT_EQ(2.0, walk.previousCumulative);
}

// A = 4, Q = 1; pushed A - Q.
TEST(GetPercentile, LeftClosedTheTotalClosesTheLastBin) {
  Walk walk(kLeftClosed, Tuples{{1.0, 1.0}, {2.0, 2.0}, {3.0, 1.0}});
  walk.index = 2;
  walk.cumulative = 3.0;
  walk.previousCumulative = 1.0;
  walk.cutPoints = {2.0};
  walk.frequencies = {1.0};
  EXPECT_EQ(3.0, walk.Step(100.0, 4.0));
  EXPECT_EQ((Doubles{1.0, 3.0}), walk.frequencies);
  EXPECT_EQ(4.0, walk.cumulative);
}

// Target 2: A = 4 is all there is, B = 1; pushed B - Q, and A - B for the last bin,
// which no later step will close.
TEST(GetPercentile, LeftClosedARunThatTakesTheWholeWeightClosesTheLastBinAtOnce) {
  Walk walk(kLeftClosed, Tuples{{1.0, 1.0}, {2.0, 3.0}});
  EXPECT_EQ(2.0, walk.Step(50.0, 4.0));
  EXPECT_EQ((Doubles{1.0, 3.0}), walk.frequencies);
  EXPECT_EQ(4.0, walk.cumulative);
  EXPECT_EQ(1.0, walk.previousCumulative);
}

// Target 5 of 10: A = 2, B = 1; pushed B - Q.
TEST(GetPercentile, LeftClosedAWalkThatEndsShortClosesTheBinBeforeItsLastRun) {
  Walk walk(kLeftClosed, Tuples{{1.0, 1.0}, {2.0, 1.0}});
  EXPECT_EQ(2.0, walk.Step(50.0, 10.0));
  EXPECT_EQ((Doubles{1.0}), walk.frequencies);
}

// B = 0, and nothing came before: the bin below the first value is empty.
TEST(GetPercentile, LeftClosedTheFirstRunOvershootingPushesZero) {
  Walk walk(kLeftClosed, Tuples{{1.0, 3.0}, {2.0, 1.0}});
  EXPECT_EQ(1.0, walk.Step(50.0, 4.0));
  EXPECT_EQ((Doubles{0.0}), walk.frequencies);
  EXPECT_EQ(1u, walk.index);
  EXPECT_EQ(3.0, walk.cumulative);
  EXPECT_EQ(0.0, walk.previousCumulative);
}

// B = 0, but the walk began after the weightless run at 1: pushed A.
TEST(GetPercentile, LeftClosedAWalkThatBeganLaterWithoutWeightPushesWhatItTook) {
  Walk walk(kLeftClosed, Tuples{{1.0, 0.0}, {2.0, 3.0}, {3.0, 1.0}});
  walk.index = 1;
  EXPECT_EQ(2.0, walk.Step(50.0, 4.0));
  EXPECT_EQ((Doubles{3.0}), walk.frequencies);
}

// B = 0, but the weightless run at 1 was taken first: pushed A.
TEST(GetPercentile, LeftClosedAWalkOverAWeightlessRunPushesWhatItTook) {
  Walk walk(kLeftClosed, Tuples{{1.0, 0.0}, {2.0, 3.0}, {3.0, 1.0}});
  EXPECT_EQ(2.0, walk.Step(50.0, 4.0));
  EXPECT_EQ((Doubles{3.0}), walk.frequencies);
  EXPECT_EQ(2u, walk.index);
  EXPECT_EQ(0.0, walk.previousCumulative);
}

// ---- GetPercentile: what counts as 100 percent ----

// The total is met by both tuples.  As the last step it pushes A - Q = 2 once; as
// any other it would push 0 as well, for a last bin that is to be closed at once.
TEST(GetPercentile, APercentJustBelowAHundredIsTreatedAsAHundred) {
  Walk walk(kLeftClosed, OneTo(2));
  EXPECT_EQ(2.0, walk.Step(99.99999999999999, 2.0));
  EXPECT_EQ((Doubles{2.0}), walk.frequencies);
}

// Two steps of a double further down the target is just below the total, and
// overshot: A = 2, B = 1; pushed B - Q and A - B.
TEST(GetPercentile, APercentFurtherBelowAHundredIsATargetLikeAnyOther) {
  Walk walk(kLeftClosed, OneTo(2));
  EXPECT_EQ(2.0, walk.Step(99.99999999999997, 2.0));
  EXPECT_EQ((Doubles{1.0, 1.0}), walk.frequencies);
}

// ---- GetPercentile: tuples with a target ----

TEST(GetPercentile, TuplesWithATargetMoveOnlyTheIndexAndTheCumulativeWeight) {
  for (const bool includeUpper : {kRightClosed, kLeftClosed}) {
    SCOPED_TRACE(includeUpper);
    Walk walk(includeUpper, TargetTuples{{1.0, 0, 1.0}, {2.0, 1, 2.0}, {3.0, 0, 1.0}});
    walk.previousCumulative = 0.25;
    EXPECT_EQ(2.0, walk.Step(50.0, 4.0));
    EXPECT_EQ(2u, walk.index);
    EXPECT_EQ(3.0, walk.cumulative);
    EXPECT_EQ(0.25, walk.previousCumulative);
    EXPECT_EQ(Doubles{}, walk.frequencies);
  }
}

TEST(GetPercentile, TuplesWithATargetThatMeetTheTargetGiveTheMidpoint) {
  Walk walk(kRightClosed, TargetTuples{{1.0, 0, 1.0}, {1.0, 1, 1.0}, {4.0, 0, 2.0}});
  EXPECT_EQ(2.5, walk.Step(50.0, 4.0));
  EXPECT_EQ(2u, walk.index);
  EXPECT_EQ(2.0, walk.cumulative);
}

TEST(GetPercentile, AWeightBeyondTheTargetWithoutAnEarlierCutTakesNoTuple) {
  Walk walk(kRightClosed, OneTo(3));
  walk.index = 2;
  walk.cumulative = 2.5;
  EXPECT_EQ(kMissing, walk.Step(50.0, 4.0));
  EXPECT_EQ(2u, walk.index);
  EXPECT_EQ(2.5, walk.cumulative);
}

TEST(GetPercentile, WithoutATupleVectorReturnsTheMissingValueAndMovesNothing) {
  BINEFPreProcess process(2, kRightClosed);
  Doubles cutPoints;
  Doubles frequencies;
  unsigned int index = 3;
  double cumulative = 1.5;
  double previousCumulative = 0.5;
  EXPECT_EQ(kMissing, process.GetPercentile(cutPoints, frequencies, 50.0, index, cumulative,
                                            previousCumulative, 4.0));
  EXPECT_EQ(3u, index);
  EXPECT_EQ(1.5, cumulative);
  EXPECT_EQ(0.5, previousCumulative);
  EXPECT_EQ(Doubles{}, frequencies);
}

}  // namespace
