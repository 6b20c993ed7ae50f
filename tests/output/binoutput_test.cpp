#include "tqbinning/binoutput.h"

#include <limits>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "output/vocabulary.h"

// What only the output of pairs does: targets, rows of counts, and all pairs of an
// attribute; for the rest see outputs_test.cpp.
namespace {

using namespace outputs;
using Results = std::vector<BINAttributeTargetResults>;
using Rows = std::vector<Numbers>;

// Stores cuts and flat counts for a pair, with numbers that are of no interest.
TQStatus Store(BINOutput& output, int attribute, int target, const std::set<double>& cuts,
               const Numbers& counts, TQStatus status = OK()) {
  return output.SetAttributeTargetResults(status, cuts, counts, attribute, target, 0, 0.0, 0.0, 0.0,
                                          0.0, 0.0);
}

void MustStore(BINOutput& output, int attribute, int target, const std::set<double>& cuts,
               const Numbers& counts, TQStatus status = OK()) {
  ASSERT_EQ(OK(), Store(output, attribute, target, cuts, counts, status));
}

BINAttributeTargetResults PairWithEntropy(double entropy) {
  BINOutput output;
  EXPECT_EQ(OK(), output.SetAttributeTargetResults(Warning(120017), {0.25}, {4, 3, 1, 2, 1, 1}, 2,
                                                   5, 7, 6.0, 6.5, 0.0, 1.0, entropy));
  return AllOf(output).at(0);
}

// What an argument holds before a call, and still after one that leaves it alone.
BINAttributeTargetResults Held() { return PairWithEntropy(0.875); }

void ExpectHeld(const BINAttributeTargetResults& result) {
  EXPECT_EQ(Warning(120017), result.GetStatus());
  EXPECT_EQ(2, result.GetAttributeIndex());
  EXPECT_EQ(5, result.GetTargetIndex());
  EXPECT_EQ((Numbers{0.25}), result.GetCutPoints());
  EXPECT_EQ((Rows{{4, 3, 1}, {2, 1, 1}}), result.GetCellCounts());
  EXPECT_EQ(0.875, result.GetModelEntropy());
}

// ------------------------------------------------------------- the value class

TEST(BINAttributeTargetResults, CopiesShareNoRow) {
  const BINAttributeTargetResults source = Held();
  const BINAttributeTargetResults copy(source);
  EXPECT_NE(source.GetCellCounts().at(0).data(), copy.GetCellCounts().at(0).data());
}

TEST(BINAttributeTargetResults, DisplayOfAnOKPairHasNoStatusLineAndNoCutPointLabelWithoutCuts) {
  BINOutput output;
  MustStore(output, 0, 1, {}, {4, 3, 1});
  EXPECT_EQ(
      "\n"
      "Start of BINAttributeTargetResults display\n"
      "BINDataTuple   attribute = 0\n"
      "target = 1\n"
      "Number of distinct values = 0\n"
      "Total weight = 0\n"
      "Total weight with missing = 0\n"
      "Minimum = 0\n"
      "Maximum = 0\n"
      "Model Entropy = 0\n"
      "Number of cutpoints = 0\n"
      "The CellCounts are\n"
      "4  3  1  \n"
      "End of BINAttributeTargetResults display\n",
      TextOf(AllOf(output).at(0)));
}

TEST(BINAttributeTargetResults, DisplayOfANewValueShowsNoRowAtAll) {
  EXPECT_EQ(
      "\n"
      "Start of BINAttributeTargetResults display\n"
      "BINDataTuple   attribute = -1\n"
      "target = -1\n"
      "Number of distinct values = 0\n"
      "Total weight = 0\n"
      "Total weight with missing = 0\n"
      "Minimum = 0\n"
      "Maximum = 0\n"
      "Model Entropy = 0\n"
      "Number of cutpoints = 0\n"
      "The CellCounts are\n"
      "End of BINAttributeTargetResults display\n",
      TextOf(BINAttributeTargetResults()));
}

// ---------------------------------------------------------------------- storing

TEST(BINOutput, StoringAnAttributeAsItsOwnTargetFailsAndStoresNothing) {
  BINOutput output;
  EXPECT_EQ(Error(120013), Store(output, 3, 3, {}, {}));
  Results all;
  EXPECT_EQ(Error(120020), output.GetAllCutPoints(all));
  MustStore(output, 2, 5, {1.0}, {});
  EXPECT_EQ(Error(120013), Store(output, 2, 2, {}, {}));
  ASSERT_EQ(1U, AllOf(output).size());
  EXPECT_EQ(5, AllOf(output)[0].GetTargetIndex());
  EXPECT_EQ((Numbers{1.0}), AllOf(output)[0].GetCutPoints());
}

TEST(BINOutput, StoringANegativeTargetFailsAndStoresNothing) {
  BINOutput output;
  EXPECT_EQ(Error(120013), Store(output, 3, -1, {}, {}));
  EXPECT_EQ(Error(120013), Store(output, -1, -1, {}, {}));
  EXPECT_EQ(Error(120013), Store(output, -2, -1, {}, {}));
  Results all;
  EXPECT_EQ(Error(120020), output.GetAllCutPoints(all));
}

TEST(BINOutput, CutPointsAreStoredInAscendingOrder) {
  BINOutput output;
  MustStore(output, 0, 1, {5.0, 1.0, 3.0}, {});
  EXPECT_EQ((Numbers{1.0, 3.0, 5.0}), AllOf(output).at(0).GetCutPoints());
}

TEST(BINOutput, FlatCountsAreSplitIntoOneRowPerBin) {
  BINOutput output;
  MustStore(output, 0, 1, {1.0, 2.0}, {10, 11, 12, 13, 14, 15});
  EXPECT_EQ((Rows{{10, 11}, {12, 13}, {14, 15}}), AllOf(output).at(0).GetCellCounts());
}

TEST(BINOutput, CountsThatFillNoRowAreDropped) {
  BINOutput output;
  MustStore(output, 0, 1, {1.0, 2.0}, {10, 11, 12, 13, 14, 15, 16});
  EXPECT_EQ((Rows{{10, 11}, {12, 13}, {14, 15}}), AllOf(output).at(0).GetCellCounts());
}

TEST(BINOutput, FewerCountsThanBinsGiveEmptyRows) {
  BINOutput output;
  MustStore(output, 0, 1, {1.0, 2.0}, {10, 11});
  EXPECT_EQ(Rows(3), AllOf(output).at(0).GetCellCounts());
}

TEST(BINOutput, WithoutCutsAndCountsThereIsOneEmptyRow) {
  BINOutput output;
  MustStore(output, 0, 1, {}, {});
  EXPECT_EQ(Rows(1), AllOf(output).at(0).GetCellCounts());
}

TEST(BINOutput, AnEntropyIsStoredAsItIs) {
  const double entropy =
      PairWithEntropy(std::numeric_limits<double>::quiet_NaN()).GetModelEntropy();
  EXPECT_NE(entropy, entropy);
}

// ---------------------------------------------------------------- reading a pair

TEST(BINOutput, APairIsFoundByAttributeAndTarget) {
  BINOutput output;
  MustStore(output, 1, 0, {1.0}, {});
  MustStore(output, 0, 1, {2.0}, {});
  MustStore(output, 1, 2, {3.0}, {});
  BINAttributeTargetResults result;
  EXPECT_EQ(OK(), output.GetAttributeTargetCutPoints(1, 2, result));
  EXPECT_EQ((Numbers{3.0}), result.GetCutPoints());
  EXPECT_EQ(OK(), output.GetAttributeTargetCutPoints(0, 1, result));
  EXPECT_EQ((Numbers{2.0}), result.GetCutPoints());
}

TEST(BINOutput, ReadingReplacesTheTargetAndTheEntropyToo) {
  BINOutput output;
  MustStore(output, 0, 1, {}, {});
  BINAttributeTargetResults result = Held();
  EXPECT_EQ(OK(), output.GetAttributeTargetCutPoints(0, 1, result));
  EXPECT_EQ(1, result.GetTargetIndex());
  EXPECT_EQ(0.0, result.GetModelEntropy());
}

TEST(BINOutput, BadIndicesAreRefusedAndLeaveTheArgument) {
  BINOutput output;
  MustStore(output, 2, 5, {}, {});
  BINAttributeTargetResults result = Held();
  EXPECT_EQ(Error(120013), output.GetAttributeTargetCutPoints(-1, 5, result));
  EXPECT_EQ(Error(120013), output.GetAttributeTargetCutPoints(2, -1, result));
  EXPECT_EQ(Error(120013), output.GetAttributeTargetCutPoints(2, 2, result));
  ExpectHeld(result);
}

TEST(BINOutput, APairThatWasStoredTheOtherWayRoundIsRefusedAndLeavesTheArgument) {
  BINOutput output;
  MustStore(output, 5, 2, {}, {});
  BINAttributeTargetResults result = Held();
  EXPECT_EQ(Error(120013), output.GetAttributeTargetCutPoints(2, 5, result));
  ExpectHeld(result);
}

// ----------------------------------------------------------- reading an attribute

TEST(BINOutput, AllPairsOfAnAttributeAreAppendedInStorageOrder) {
  BINOutput output;
  MustStore(output, 1, 4, {4.0}, {});
  MustStore(output, 2, 4, {9.0}, {});
  MustStore(output, 1, 0, {0.5}, {});
  Results out{Held()};
  EXPECT_EQ(OK(), output.GetAttributeCutPoints(1, out));
  ASSERT_EQ(3U, out.size());
  ExpectHeld(out[0]);
  EXPECT_EQ(4, out[1].GetTargetIndex());
  EXPECT_EQ((Numbers{4.0}), out[1].GetCutPoints());
  EXPECT_EQ(0, out[2].GetTargetIndex());
  EXPECT_EQ((Numbers{0.5}), out[2].GetCutPoints());
}

TEST(BINOutput, BothValuesOfAPairStoredTwiceAreAppended) {
  BINOutput output;
  MustStore(output, 1, 0, {1.0}, {});
  MustStore(output, 1, 0, {2.0}, {});
  Results out;
  EXPECT_EQ(OK(), output.GetAttributeCutPoints(1, out));
  ASSERT_EQ(2U, out.size());
  EXPECT_EQ((Numbers{1.0}), out[0].GetCutPoints());
  EXPECT_EQ((Numbers{2.0}), out[1].GetCutPoints());
}

TEST(BINOutput, TheLastMatchingValueGivesTheStatus) {
  BINOutput output;
  MustStore(output, 1, 0, {}, {}, Error(120010));
  MustStore(output, 1, 2, {}, {}, Warning(120017));
  MustStore(output, 3, 2, {}, {}, Error(120006));  // another attribute's
  Results out;
  EXPECT_EQ(Warning(120017), output.GetAttributeCutPoints(1, out));
  MustStore(output, 1, 4, {}, {});
  EXPECT_EQ(OK(), output.GetAttributeCutPoints(1, out));
}

TEST(BINOutput, AnAttributeWithoutValuesIsRefusedAndLeavesTheArgument) {
  BINOutput output;
  Results out{Held()};
  EXPECT_EQ(Error(120013), output.GetAttributeCutPoints(1, out));  // nothing stored
  MustStore(output, 2, 1, {}, {});
  EXPECT_EQ(Error(120013), output.GetAttributeCutPoints(1, out));  // only as a target
  EXPECT_EQ(Error(120013), output.GetAttributeCutPoints(-1, out));
  ASSERT_EQ(1U, out.size());
  ExpectHeld(out[0]);
}

}  // namespace
