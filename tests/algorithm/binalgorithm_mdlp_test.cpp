#include <algorithm>
#include <cfloat>
#include <cmath>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "algorithm/binningrun.h"
#include "tqbinning/binalgorithm.h"

// From a pair's sorted cases to its cuts, cell counts and model entropy.
namespace {

using support::Columns;
using support::kInfinity;
using support::kMissing;
using support::kNaN;
using support::Numbers;
using support::OK;
using support::OpenAlgorithm;
using support::SupervisedRun;
using support::Table;
using support::TQStatus;
using support::Warning;

using Cuts = std::set<double>;
constexpr bool kClosed = true;
constexpr bool kOpen = false;

struct Outcome {
  TQStatus status;
  Cuts cuts;
  Numbers cellCounts;
  double modelEntropy = kMissing;
};

// Attribute 0 against target 1 (and weight 2), read, sorted and summarised by a run,
// whose own binning is of no interest here.
class Pair {
 public:
  Pair(const Numbers& values, const Numbers& targets, bool closed = kClosed, int categories = 2)
      : fRun("xy", Columns({values, targets}), categories) {
    Prepare(closed);
  }
  Pair(const Numbers& values, const Numbers& targets, const Numbers& weights, bool closed)
      : fRun("xyf", Columns({values, targets, weights})) {
    Prepare(closed);
  }

  Outcome Bin() {
    Outcome out;
    out.status = Algorithm().MDLP(Algorithm().fTuples, out.cuts, out.cellCounts, out.modelEntropy);
    return out;
  }
  Outcome Bin(Numbers percentileCuts) {
    Outcome out;
    out.status = Algorithm().MDLP(Algorithm().fTuples, percentileCuts, out.cuts, out.cellCounts,
                                  out.modelEntropy);
    return out;
  }
  OpenAlgorithm& Algorithm() { return fRun.Algorithm(); }

 private:
  void Prepare(bool closed) {
    fRun.settings.SetRightBorderClosed(closed);
    EXPECT_FALSE(fRun.CreateBins().IsError());
  }

  SupervisedRun fRun;
};

const Numbers k1To8{1, 2, 3, 4, 5, 6, 7, 8};
const Numbers kFirstHalf{0, 0, 0, 0, 1, 1, 1, 1};

// -------------------------------------------------------- over the distinct values

TEST(MDLP, AClosedBorderCutsAtTheLastValueOfTheLowerBin) {
  const Outcome out = Pair(k1To8, kFirstHalf, kClosed).Bin();
  EXPECT_EQ(OK(), out.status);
  EXPECT_EQ((Cuts{4}), out.cuts);
  EXPECT_EQ((Numbers{4, 4, 0, 4, 0, 4}), out.cellCounts);
  EXPECT_EQ(0.0, out.modelEntropy);
}

TEST(MDLP, AnOpenBorderCutsAtTheFirstValueOfTheUpperBin) {
  const Outcome out = Pair(k1To8, kFirstHalf, kOpen).Bin();
  EXPECT_EQ(OK(), out.status);
  EXPECT_EQ((Cuts{5}), out.cuts);
  EXPECT_EQ((Numbers{4, 4, 0, 4, 0, 4}), out.cellCounts);
  EXPECT_EQ(0.0, out.modelEntropy);
}

TEST(MDLP, SeveralCutsGiveOneRowOfCountsPerBin) {
  const Numbers counts{8, 8, 0, 8, 0, 8, 16, 16, 0};
  const Outcome closed = Pair({1, 2, 3, 4}, {0, 1, 0, 0}, {8, 8, 8, 8}, kClosed).Bin();
  EXPECT_EQ((Cuts{1, 2}), closed.cuts);
  EXPECT_EQ(counts, closed.cellCounts);
  EXPECT_EQ(0.0, closed.modelEntropy);
  const Outcome open = Pair({1, 2, 3, 4}, {0, 1, 0, 0}, {8, 8, 8, 8}, kOpen).Bin();
  EXPECT_EQ((Cuts{2, 3}), open.cuts);
  EXPECT_EQ(counts, open.cellCounts);
}

TEST(MDLP, CasesOfEqualValueAreOneRow) {
  // Both values are half and half: nothing to split although the cases alternate.
  const Outcome out = Pair({1, 1, 1, 1, 2, 2, 2, 2}, {0, 1, 0, 1, 0, 1, 0, 1}).Bin();
  EXPECT_EQ(Warning(120017), out.status);
  EXPECT_EQ((Numbers{8, 4, 4}), out.cellCounts);
  EXPECT_EQ(1.0, out.modelEntropy);
}

TEST(MDLP, BothZerosAreOneValue) {
  const Outcome out = Pair({-0.0, 0.0, -0.0, 0.0, 1, 1}, {0, 1, 0, 1, 0, 1}).Bin();
  EXPECT_EQ(Warning(120017), out.status);
  EXPECT_EQ((Numbers{6, 3, 3}), out.cellCounts);
}

TEST(MDLP, TheOrderOfTheCasesDoesNotMatter) {
  const Outcome out = Pair({7, 2, 8, 1, 5, 3, 6, 4}, {1, 0, 1, 0, 1, 0, 1, 0}).Bin();
  EXPECT_EQ((Cuts{4}), out.cuts);
  EXPECT_EQ((Numbers{4, 4, 0, 4, 0, 4}), out.cellCounts);
}

TEST(MDLP, CountsAreWeightsAndNotCases) {
  const Outcome out = Pair({1, 2, 3, 4}, {0, 0, 1, 1}, {2.5, 1.5, 3, 0.25}, kClosed).Bin();
  EXPECT_EQ((Cuts{2}), out.cuts);
  EXPECT_EQ((Numbers{4, 4, 0, 3.25, 0, 3.25}), out.cellCounts);
}

TEST(MDLP, EveryCategoryHasAColumnInTheCounts) {
  const Outcome out = Pair({1, 1, 1, 2, 2, 2, 2, 2}, {3, 3, 3, 0, 0, 0, 0, 0}, kClosed, 5).Bin();
  EXPECT_EQ((Cuts{1}), out.cuts);
  // K is the largest code met, 3, plus 1.
  EXPECT_EQ((Numbers{3, 0, 0, 0, 3, 5, 5, 0, 0, 0}), out.cellCounts);
}

TEST(MDLP, ASingleDistinctValueIsOneBin) {
  for (const bool closed : {kClosed, kOpen}) {
    const Outcome out = Pair({3, 3, 3, 3}, {0, 1, 1, 0}, closed).Bin();
    EXPECT_EQ(Warning(120017), out.status);
    EXPECT_EQ(Cuts{}, out.cuts);
    EXPECT_EQ((Numbers{4, 2, 2}), out.cellCounts);
    EXPECT_EQ(1.0, out.modelEntropy);
  }
}

TEST(MDLP, NoAcceptedCutIsAWarningWithOneBinAndItsEntropy) {
  for (const bool closed : {kClosed, kOpen}) {
    const Outcome out = Pair({1, 2, 3, 4}, {0, 1, 0, 0}, closed).Bin();
    EXPECT_EQ(Warning(120017), out.status);
    EXPECT_EQ(Cuts{}, out.cuts);
    EXPECT_EQ((Numbers{4, 3, 1}), out.cellCounts);
    EXPECT_NEAR(0.811278124459133, out.modelEntropy, 1e-14);
  }
}

// Tables for two categories, of which only one is told, do not fit together.
TEST(MDLP, AnErrorOfTheCutSearchIsNoAcceptedCut) {
  Pair pair(k1To8, kFirstHalf);
  pair.Algorithm().fNumCategories = 1;
  const Outcome out = pair.Bin();
  EXPECT_EQ(Warning(120017), out.status);
  EXPECT_EQ(Cuts{}, out.cuts);
}

TEST(MDLP, MissingValuesAndTargetsTakeNoPart) {
  const Outcome out = Pair({1, kMissing, 2, 3, 4, 9}, {0, 1, 0, 1, 1, kMissing}, kClosed).Bin();
  EXPECT_EQ((Cuts{2}), out.cuts);
  EXPECT_EQ((Numbers{2, 2, 0, 2, 0, 2}), out.cellCounts);
}

// The last border is the largest finite number, and no row holds what lies beyond.
TEST(MDLP, AValueBeyondTheLastBorderYieldsNoBins) {
  for (const double beyond : {kInfinity, kNaN}) {
    for (const bool closed : {kClosed, kOpen}) {
      const Outcome out = Pair({1, 2, 3, beyond}, {0, 0, 1, 1}, closed).Bin();
      EXPECT_EQ(Warning(120002), out.status);
      EXPECT_EQ(Cuts{}, out.cuts);
      EXPECT_EQ(Numbers{}, out.cellCounts);
      EXPECT_EQ(kMissing, out.modelEntropy);
    }
  }
}

TEST(MDLP, TheLargestFiniteValueLiesOnAClosedBorderAndBeyondAnOpenOne) {
  const Numbers values{1, 2, 3, DBL_MAX};
  const Outcome closed = Pair(values, {0, 0, 1, 1}, kClosed).Bin();
  EXPECT_EQ((Cuts{2}), closed.cuts);
  EXPECT_EQ((Numbers{2, 2, 0, 2, 0, 2}), closed.cellCounts);
  EXPECT_EQ(Warning(120002), Pair(values, {0, 0, 1, 1}, kOpen).Bin().status);
}

TEST(MDLP, MinusInfinityIsAValueLikeAnyOther) {
  const Outcome closed = Pair({-kInfinity, -kInfinity, 3, 4}, {0, 0, 1, 1}, kClosed).Bin();
  EXPECT_EQ((Cuts{-kInfinity}), closed.cuts);
  EXPECT_EQ((Numbers{2, 2, 0, 2, 0, 2}), closed.cellCounts);
  const Outcome open = Pair({-kInfinity, -kInfinity, 3, 4}, {0, 0, 1, 1}, kOpen).Bin();
  EXPECT_EQ((Cuts{3}), open.cuts);
  EXPECT_EQ((Numbers{2, 2, 0, 2, 0, 2}), open.cellCounts);
}

// --------------------------------------------------------------- over the pre-bins

TEST(MDLPOverPreBins, CutsAreBordersOfPreBins) {
  const Outcome closed = Pair(k1To8, kFirstHalf, kClosed).Bin({2, 4.5, 6});
  EXPECT_EQ(OK(), closed.status);
  EXPECT_EQ((Cuts{4.5}), closed.cuts);
  EXPECT_EQ((Numbers{4, 4, 0, 4, 0, 4}), closed.cellCounts);
  const Outcome open = Pair(k1To8, kFirstHalf, kOpen).Bin({2, 4.5, 6});
  EXPECT_EQ((Cuts{4.5}), open.cuts);
  EXPECT_EQ((Numbers{4, 4, 0, 4, 0, 4}), open.cellCounts);
}

TEST(MDLPOverPreBins, TheBorderSideDecidesWhereTheCasesAtABorderBelong) {
  const Outcome closed = Pair(k1To8, kFirstHalf, kClosed).Bin({4});
  EXPECT_EQ((Cuts{4}), closed.cuts);
  EXPECT_EQ((Numbers{4, 4, 0, 4, 0, 4}), closed.cellCounts);
  const Outcome open = Pair(k1To8, kFirstHalf, kOpen).Bin({5});
  EXPECT_EQ((Cuts{5}), open.cuts);
  EXPECT_EQ((Numbers{4, 4, 0, 4, 0, 4}), open.cellCounts);
}

TEST(MDLPOverPreBins, AClosedLastBorderAtTheLargestValueIsDropped) {
  const Outcome out = Pair(k1To8, kFirstHalf, kClosed).Bin({4, 8});
  EXPECT_EQ(OK(), out.status);
  EXPECT_EQ((Cuts{4}), out.cuts);
  EXPECT_EQ((Numbers{4, 4, 0, 4, 0, 4}), out.cellCounts);
}

TEST(MDLPOverPreBins, AClosedLastBorderBelowTheLargestValueIsKept) {
  const Outcome out = Pair(k1To8, {0, 0, 0, 0, 0, 0, 1, 1}, kClosed).Bin({4, 6});
  EXPECT_EQ((Cuts{6}), out.cuts);
  EXPECT_EQ((Numbers{6, 6, 0, 2, 0, 2}), out.cellCounts);
}

TEST(MDLPOverPreBins, AClosedFirstBorderAtTheSmallestValueIsKept) {
  const Outcome out = Pair({1, 1, 1, 1, 2, 3, 4, 5}, kFirstHalf, kClosed).Bin({1, 3});
  EXPECT_EQ((Cuts{1}), out.cuts);
  EXPECT_EQ((Numbers{4, 4, 0, 4, 0, 4}), out.cellCounts);
}

TEST(MDLPOverPreBins, AnOpenFirstBorderAtTheSmallestValueIsDropped) {
  const Outcome out = Pair(k1To8, kFirstHalf, kOpen).Bin({1, 5});
  EXPECT_EQ(OK(), out.status);
  EXPECT_EQ((Cuts{5}), out.cuts);
  EXPECT_EQ((Numbers{4, 4, 0, 4, 0, 4}), out.cellCounts);
}

TEST(MDLPOverPreBins, AnOpenFirstBorderAboveTheSmallestValueIsKept) {
  const Outcome out = Pair(k1To8, {0, 0, 1, 1, 1, 1, 1, 1}, kOpen).Bin({3, 6});
  EXPECT_EQ((Cuts{3}), out.cuts);
  EXPECT_EQ((Numbers{2, 2, 0, 6, 0, 6}), out.cellCounts);
}

TEST(MDLPOverPreBins, AnOpenLastBorderAtTheLargestValueIsKept) {
  const Outcome out = Pair({1, 2, 3, 4, 8, 8, 8, 8}, kFirstHalf, kOpen).Bin({3, 8});
  EXPECT_EQ((Cuts{8}), out.cuts);
  EXPECT_EQ((Numbers{4, 4, 0, 4, 0, 4}), out.cellCounts);
}

TEST(MDLPOverPreBins, TheLastValidCaseDecidesAndNotWhatIsLeftBehindIt) {
  // Two of the eight cases are missing, so two left-over tuples follow the value 6.
  Pair pair({1, 2, 3, 4, 5, 6, kMissing, kMissing}, {0, 0, 0, 1, 1, 1, 1, 1});
  const Outcome out = pair.Bin({3, 6});
  EXPECT_EQ(OK(), out.status);
  EXPECT_EQ((Cuts{3}), out.cuts);
  EXPECT_EQ((Numbers{3, 3, 0, 3, 0, 3}), out.cellCounts);
}

TEST(MDLPOverPreBins, BordersThatLieBeyondTheCasesYieldNoBins) {
  for (const bool closed : {kClosed, kOpen}) {
    const Outcome out = Pair(k1To8, kFirstHalf, closed).Bin({4, 100});
    EXPECT_EQ(Warning(120002), out.status);
    EXPECT_EQ(Cuts{}, out.cuts);
    EXPECT_EQ(Numbers{}, out.cellCounts);
    EXPECT_EQ(kMissing, out.modelEntropy);
  }
}

TEST(MDLPOverPreBins, WithoutInnerBorderThereIsOneBin) {
  for (const bool closed : {kClosed, kOpen}) {
    const Outcome out = Pair(k1To8, kFirstHalf, closed).Bin(Numbers{});
    EXPECT_EQ(Warning(120017), out.status);
    EXPECT_EQ(Cuts{}, out.cuts);
    EXPECT_EQ((Numbers{8, 4, 4}), out.cellCounts);
    EXPECT_EQ(1.0, out.modelEntropy);
  }
}

// ------------------------------------------------------------------ model entropy

TEST(ModelEntropy, IsTheMeanOverTheBinsByTheirWeight) {
  Pair pair(k1To8, kFirstHalf);
  double entropy = kMissing;
  pair.Algorithm().ComputeModelEntropy({4, 2, 2, 4, 4, 0}, entropy);
  EXPECT_EQ(0.5, entropy);  // (4 * 1 + 4 * 0) / 8
}

TEST(ModelEntropy, DividesByTheValidWeightAndNotByTheSumOfTheBins) {
  Pair pair(k1To8, kFirstHalf);
  double entropy = kMissing;
  pair.Algorithm().ComputeModelEntropy({2, 1, 1}, entropy);
  EXPECT_EQ(0.25, entropy);  // 2 * 1 / 8
}

TEST(ModelEntropy, TheWeightOfMissingCasesIsLeftOut) {
  Pair pair({1, 2, 3, 4, kMissing, 6}, {0, 1, 0, 1, 0, kMissing}, {1, 1, 1, 1, 16, 32}, kClosed);
  double entropy = kMissing;
  pair.Algorithm().ComputeModelEntropy({4, 2, 2}, entropy);
  EXPECT_EQ(1.0, entropy);
}

TEST(ModelEntropy, OfMixedBinsComesOutOfTheWholeProcedure) {
  // Value 1: five of six in category 0; value 2: six of six in category 1.  Gain
  // 0.980 - 0.325 exceeds (log2(25) - (3 * 0.980 - 2 * 0.650) + log2(11)) / 12 = 0.538.
  const Outcome out =
      Pair({1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2}, {0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1, 1}).Bin();
  EXPECT_EQ((Cuts{1}), out.cuts);
  EXPECT_EQ((Numbers{6, 5, 1, 6, 0, 6}), out.cellCounts);
  EXPECT_NEAR(0.325011, out.modelEntropy, 1e-6);  // 6 * (log2(6) - 5/6 log2(5)) / 12
}

// --------------------------------------------------------------------- small bins

struct Merged {
  Cuts cuts;
  Table bins;
};

// The bins with cuts 1, 2, 3, ... between them, after merging; the weight in front of
// the class weights is added here.
Merged Merge(double threshold, const Table& classWeights) {
  const unsigned int categories = static_cast<unsigned int>(classWeights.at(0).size());
  BINVarList list = support::VarList("xy");
  BINSettings settings;
  EXPECT_TRUE(settings.SetSmallBinDetectionThreshold(threshold));
  OpenAlgorithm algorithm(settings, list);
  algorithm.fNumCategories = categories;

  Numbers cellCounts;
  Cuts cuts;
  for (const Numbers& bin : classWeights) {
    if (!cellCounts.empty()) cuts.insert(static_cast<double>(cuts.size() + 1));
    double total = 0.0;
    for (const double weight : bin) total += weight;
    cellCounts.push_back(total);
    cellCounts.insert(cellCounts.end(), bin.begin(), bin.end());
  }
  algorithm.ProcessLittleBins(&cellCounts, cuts);

  Merged merged{cuts, {}};
  EXPECT_EQ((cuts.size() + 1) * (categories + 1), cellCounts.size());
  for (std::size_t i = 0; i + categories < cellCounts.size(); i += categories + 1) {
    const auto first = cellCounts.begin() + static_cast<std::ptrdiff_t>(i);
    merged.bins.emplace_back(first, first + categories + 1);
  }
  return merged;
}

TEST(LittleBins, ASmallBinJoinsTheNeighbourThatLeavesLessEntropyOnTheLeft) {
  const Merged merged = Merge(0.5, {{10, 0}, {4, 0}, {0, 10}});
  EXPECT_EQ((Cuts{2}), merged.cuts);
  EXPECT_EQ((Table{{14, 14, 0}, {10, 0, 10}}), merged.bins);
}

TEST(LittleBins, ASmallBinJoinsTheNeighbourThatLeavesLessEntropyOnTheRight) {
  const Merged merged = Merge(0.5, {{10, 0}, {0, 4}, {0, 10}});
  EXPECT_EQ((Cuts{1}), merged.cuts);
  EXPECT_EQ((Table{{10, 10, 0}, {14, 0, 14}}), merged.bins);
}

TEST(LittleBins, EqualEntropiesJoinTheLeftNeighbour) {
  const Merged merged = Merge(0.5, {{5, 5}, {1, 1}, {5, 5}});
  EXPECT_EQ((Cuts{2}), merged.cuts);
  EXPECT_EQ((Table{{12, 6, 6}, {10, 5, 5}}), merged.bins);
}

// Infinite weights have no shares, so neither candidate has an entropy.
TEST(LittleBins, EntropiesThatCannotBeComparedJoinTheRightNeighbour) {
  const Merged merged = Merge(0.5, {{kInfinity, 0}, {1, 0}, {0, kInfinity}});
  EXPECT_EQ((Cuts{1}), merged.cuts);
  EXPECT_EQ((Table{{kInfinity, kInfinity, 0}, {kInfinity, 1, kInfinity}}), merged.bins);
}

TEST(LittleBins, ABinOfExactlyTheThresholdsShareIsNotSmall) {
  const Merged merged = Merge(0.5, {{10, 0}, {5, 0}, {0, 20}});
  EXPECT_EQ((Cuts{1, 2}), merged.cuts);
  EXPECT_EQ((Table{{10, 10, 0}, {5, 5, 0}, {20, 0, 20}}), merged.bins);
}

TEST(LittleBins, ABinJustBelowTheThresholdsShareIsSmall) {
  EXPECT_EQ((Cuts{2}), Merge(0.5, {{10, 0}, {std::nextafter(5.0, 0.0), 0}, {0, 20}}).cuts);
}

TEST(LittleBins, TheLighterNeighbourDecides) {
  EXPECT_EQ((Cuts{1, 2}), Merge(0.5, {{6, 0}, {4, 0}, {0, 100}}).cuts);
  EXPECT_EQ((Cuts{1, 2}), Merge(0.5, {{100, 0}, {4, 0}, {0, 6}}).cuts);
  EXPECT_EQ((Cuts{2}), Merge(0.5, {{100, 0}, {4, 0}, {0, 9}}).cuts);
}

TEST(LittleBins, AThresholdOfOneMergesWhatIsLighterThanBothNeighbours) {
  EXPECT_EQ((Cuts{2}), Merge(1.0, {{10, 0}, {9, 0}, {0, 10}}).cuts);
  EXPECT_EQ((Cuts{1, 2}), Merge(1.0, {{10, 0}, {10, 0}, {0, 10}}).cuts);
}

TEST(LittleBins, TheFirstAndTheLastBinAreNeverSmall) {
  const Merged merged = Merge(1.0, {{1, 0}, {0, 10}, {10, 0}, {0, 1}});
  EXPECT_EQ((Cuts{1, 2, 3}), merged.cuts);
  EXPECT_EQ(4u, merged.bins.size());
}

TEST(LittleBins, ABinWithoutWeightIsSmall) {
  const Merged merged = Merge(0.5, {{10, 0}, {0, 0}, {0, 10}});
  EXPECT_EQ((Cuts{2}), merged.cuts);  // both candidates have no entropy: left
  EXPECT_EQ((Table{{10, 10, 0}, {10, 0, 10}}), merged.bins);
}

TEST(LittleBins, TwoBinsHaveNoInnerOne) {
  const Merged merged = Merge(1.0, {{10, 0}, {0, 1}});
  EXPECT_EQ((Cuts{1}), merged.cuts);
  EXPECT_EQ((Table{{10, 10, 0}, {1, 0, 1}}), merged.bins);
}

TEST(LittleBins, AllClassWeightsMoveAlong) {
  const Merged merged = Merge(0.5, {{8, 1, 1}, {2, 0, 1}, {0, 5, 5}});
  EXPECT_EQ((Cuts{2}), merged.cuts);
  EXPECT_EQ((Table{{13, 10, 1, 2}, {10, 0, 5, 5}}), merged.bins);
}

TEST(LittleBins, TwoSmallBinsMayJoinTheOneBetweenThem) {
  const Merged merged = Merge(0.5, {{10, 0}, {0, 1}, {0, 10}, {0, 2}, {10, 0}});
  EXPECT_EQ((Cuts{1, 4}), merged.cuts);
  EXPECT_EQ((Table{{10, 10, 0}, {13, 0, 13}, {10, 10, 0}}), merged.bins);
}

TEST(LittleBins, TwoSmallBinsMayMoveApart) {
  const Merged merged = Merge(0.5, {{10, 0}, {1, 0}, {0, 10}, {2, 0}, {10, 0}});
  EXPECT_EQ((Cuts{2, 3}), merged.cuts);
  EXPECT_EQ((Table{{11, 11, 0}, {10, 0, 10}, {12, 12, 0}}), merged.bins);
}

TEST(LittleBins, LaterMergesFindTheirBinsAfterEarlierOnes) {
  const Merged merged =
      Merge(0.5, {{10, 0}, {1, 0}, {0, 10}, {0, 2}, {10, 0}, {3, 0}, {0, 20}, {0, 4}, {30, 0}});
  EXPECT_EQ((Cuts{2, 4, 6, 8}), merged.cuts);
  EXPECT_EQ((Table{{11, 11, 0}, {12, 0, 12}, {13, 13, 0}, {24, 0, 24}, {30, 30, 0}}), merged.bins);
}

// Bin 2 (weight 3) is heavier than bin 1 at first; once bin 1 has joined bin 0, it
// would be lighter than both of its neighbours.
TEST(LittleBins, ABinThatOnlyBecomesSmallByAMergeStays) {
  const Merged merged = Merge(1.0, {{10, 0}, {1, 0}, {0, 3}, {10, 0}});
  EXPECT_EQ((Cuts{2, 3}), merged.cuts);
  EXPECT_EQ((Table{{11, 11, 0}, {3, 0, 3}, {10, 10, 0}}), merged.bins);
}

// Beside bin 2 as it was, bin 3 leaves less entropy with its right neighbour (1.297
// bits against 1.326); beside bin 2 with bin 1 in it, with its left one (1.319 against
// 1.325).
TEST(LittleBins, CandidatesAreComparedOnTheBinsAsTheyWere) {
  const Merged merged = Merge(0.5, {{8, 0, 12}, {0, 4, 2}, {1, 12, 0}, {0, 1, 1}, {20, 12, 12}});
  EXPECT_EQ((Cuts{1, 3}), merged.cuts);
  EXPECT_EQ((Table{{20, 8, 0, 12}, {19, 1, 16, 2}, {46, 20, 13, 13}}), merged.bins);
}

// ------------------------------------------------- when the procedure merges at all

// Ten cases each at the values 1 and 3, four at 2, each value of a class of its own.
class TenFourAndTen : public SupervisedRun {
 public:
  explicit TenFourAndTen(double threshold)
      : SupervisedRun("xyf", Columns({{1, 2, 3}, {0, 1, 2}, {10, 4, 10}}), 3) {
    EXPECT_TRUE(settings.SetSmallBinDetectionThreshold(threshold));
    EXPECT_EQ(OK(), CreateBins());
  }
};

TEST(SmallBinThreshold, OfZeroDisablesMerging) {
  EXPECT_EQ((Numbers{1, 2}), TenFourAndTen(0.0).Cuts(0, 1));
}

TEST(SmallBinThreshold, AboveZeroMergesInnerBins) {
  const BINAttributeTargetResults result = TenFourAndTen(0.5).Result(0, 1);
  EXPECT_EQ((Numbers{2}), result.GetCutPoints());  // a tie: to the left
  EXPECT_EQ((Table{{14, 10, 4, 0}, {10, 0, 0, 10}}), result.GetCellCounts());
  // The merged bin's 0.863121 bits, times 14 / 24.
  EXPECT_NEAR(0.503487, result.GetModelEntropy(), 1e-6);
}

TEST(SmallBinThreshold, AnInnerBinOfExactlyItsShareStays) {
  EXPECT_EQ((Numbers{1, 2}), TenFourAndTen(0.4).Cuts(0, 1));  // 0.4 * 10 is 4
}

TEST(SmallBinThreshold, WorksOverPreBinsToo) {
  SupervisedRun run("xyf", Columns({{1, 2, 3, 4}, {0, 1, 2, 2}, {10, 4, 10, 10}}), 3);
  ASSERT_TRUE(run.settings.SetSmallBinDetectionThreshold(0.5));
  ASSERT_TRUE(run.settings.SetNumDistinctValueThreshold(3));
  ASSERT_TRUE(run.settings.SetNumberOfBins(34));  // a border behind every value
  EXPECT_EQ(OK(), run.CreateBins());
  const BINAttributeTargetResults result = run.Result(0, 1);
  EXPECT_EQ(1u, result.GetCutPoints().size());
  EXPECT_EQ((Table{{14, 10, 4, 0}, {20, 0, 0, 20}}), result.GetCellCounts());
}

TEST(SmallBinThreshold, NeverMergesTheTwoBinsOfASingleCut) {
  SupervisedRun run("xyf", Columns({{1, 2}, {0, 1}, {2, 18}}));
  ASSERT_TRUE(run.settings.SetSmallBinDetectionThreshold(1.0));
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Numbers{1}), run.Cuts(0, 1));
  EXPECT_EQ((Table{{2, 2, 0}, {18, 0, 18}}), run.Result(0, 1).GetCellCounts());
}

// ----------------------------------------------------------------- without a case

// Entropy over no weight at all is no number.
TEST(MDLP, WithoutACaseIsOneEmptyBin) {
  for (const bool closed : {kClosed, kOpen}) {
    const Outcome out = Pair({kMissing, kMissing}, {0, 1}, closed).Bin();
    EXPECT_EQ(Warning(120017), out.status);
    EXPECT_EQ(Cuts{}, out.cuts);
    EXPECT_EQ((Numbers{0, 0, 0}), out.cellCounts);
    EXPECT_TRUE(std::isnan(out.modelEntropy));
  }
}

TEST(MDLPOverPreBins, WithoutACaseNoBorderLiesAtItsEdge) {
  for (const bool closed : {kClosed, kOpen}) {
    const Outcome out = Pair({kMissing, kMissing}, {0, 1}, closed).Bin({0.0});
    EXPECT_EQ(Warning(120002), out.status);  // one row each side of the border is too many
    EXPECT_EQ(Numbers{}, out.cellCounts);
  }
}

// Cuts that are there already keep the error from reading as a search without a cut.
TEST(MDLP, AnErrorOfTheCutSearchEndsThereWhenCutsAreAlreadyGiven) {
  Pair pair(k1To8, kFirstHalf);
  OpenAlgorithm& algorithm = pair.Algorithm();
  algorithm.fNumCategories = 1;
  Outcome out;
  out.cuts = {4.0};
  out.status = algorithm.MDLP(algorithm.fTuples, out.cuts, out.cellCounts, out.modelEntropy);
  EXPECT_EQ(support::Error(120002), out.status);
  EXPECT_EQ((Cuts{4}), out.cuts);
  EXPECT_EQ(Numbers{}, out.cellCounts);
  EXPECT_EQ(kMissing, out.modelEntropy);
}

// Row 1 lies between 6 and 3 and is empty; the cut at 6 has it, pure, on its right.
TEST(MDLPOverPreBins, BordersThatDoNotAscendAreTakenAsTheyStand) {
  const Outcome out = Pair(k1To8, kFirstHalf, Numbers(8, 10.0), kClosed).Bin({6, 3});
  EXPECT_EQ(OK(), out.status);
  EXPECT_EQ((Cuts{6}), out.cuts);
  EXPECT_EQ((Numbers{60, 40, 20, 20, 0, 20}), out.cellCounts);
  EXPECT_NEAR(0.75 * 0.918295834054490, out.modelEntropy, 1e-14);
}

TEST(MDLPOverPreBins, ABorderAtTheEdgeIsTakenOutOfThoseThatWereGiven) {
  for (const double weight : {1.0, 1.5}) {  // whole weights go another way than others
    for (const bool closed : {kClosed, kOpen}) {
      SCOPED_TRACE(testing::Message() << "weight " << weight << ", closed " << closed);
      Pair pair(k1To8, kFirstHalf, Numbers(8, weight), closed);
      OpenAlgorithm& algorithm = pair.Algorithm();
      Numbers borders{1, 4.5, 8};
      Outcome out;
      EXPECT_FALSE(
          algorithm.MDLP(algorithm.fTuples, borders, out.cuts, out.cellCounts, out.modelEntropy)
              .IsError());
      const auto has = [&borders](double value) {
        return std::find(borders.begin(), borders.end(), value) != borders.end();
      };
      EXPECT_EQ(closed, has(1));
      EXPECT_TRUE(has(4.5));
      EXPECT_EQ(!closed, has(8));
    }
  }
}

// ------------------------------------------------- weights that are no whole numbers

TEST(MDLP, FractionalWeightsAreCutBesideTheOutermostValues) {
  const Numbers weights(4, 10.5);
  EXPECT_EQ((Cuts{1}), Pair({1, 2, 3, 4}, {0, 1, 1, 1}, weights, kClosed).Bin().cuts);
  EXPECT_EQ((Cuts{3}), Pair({1, 2, 3, 4}, {0, 0, 0, 1}, weights, kClosed).Bin().cuts);
  EXPECT_EQ((Cuts{2}), Pair({1, 2, 3, 4}, {0, 1, 1, 1}, weights, kOpen).Bin().cuts);
  EXPECT_EQ((Cuts{4}), Pair({1, 2, 3, 4}, {0, 0, 0, 1}, weights, kOpen).Bin().cuts);
}

}  // namespace
