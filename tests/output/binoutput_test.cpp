#include "tqbinning/binoutput.h"

#include <limits>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using TQBinning::TQStatus;
using Results = std::vector<BINAttributeTargetResults>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TQStatus Error(long code) { return TQStatus(code, false); }
TQStatus Warning(long code) { return TQStatus(code, true); }

// Stores cuts and flat counts for a pair, with numbers that are of no interest.
TQStatus Store(BINOutput& output, int attribute, int target, const std::set<double>& cuts,
               const std::vector<double>& counts, TQStatus status = TQStatus()) {
  return output.SetAttributeTargetResults(status, cuts, counts, attribute, target, 0, 0.0, 0.0, 0.0,
                                          0.0, 0.0);
}

void MustStore(BINOutput& output, int attribute, int target, const std::set<double>& cuts,
               const std::vector<double>& counts, TQStatus status = TQStatus()) {
  ASSERT_TRUE(Store(output, attribute, target, cuts, counts, status).IsOK());
}

// Stores the pair (2, 5) with a different number in every field.
void StoreFullPair(BINOutput& output) {
  ASSERT_TRUE(output
                  .SetAttributeTargetResults(Warning(120017), {1.5, 2.5},
                                             {6, 4, 2, 5, 3, 2, 3, 1, 2}, 2, 5, 7, 14.0, 16.5,
                                             -1.25, 8.75, 0.875)
                  .IsOK());
}

Results AllOf(const BINOutput& output) {
  Results all;
  EXPECT_TRUE(output.GetAllCutPoints(all).IsOK());
  return all;
}

BINAttributeTargetResults FullPair() {
  BINOutput output;
  StoreFullPair(output);
  return AllOf(output).at(0);
}

template <typename Shown>
std::string TextOf(const Shown& shown) {
  std::ostringstream os;
  shown.Display(os);
  return os.str();
}

void ExpectFullPair(const BINAttributeTargetResults& result) {
  EXPECT_EQ(Warning(120017), result.GetStatus());
  EXPECT_EQ(2, result.GetAttributeIndex());
  EXPECT_EQ(5, result.GetTargetIndex());
  EXPECT_EQ((std::vector<double>{1.5, 2.5}), result.GetCutPoints());
  EXPECT_EQ((std::vector<std::vector<double>>{{6, 4, 2}, {5, 3, 2}, {3, 1, 2}}),
            result.GetCellCounts());
  EXPECT_EQ(7u, result.GetNDistinctValues());
  EXPECT_EQ(14.0, result.GetTotalWeight());
  EXPECT_EQ(16.5, result.GetTotalWeightWithMissing());
  EXPECT_EQ(-1.25, result.GetMinimum());
  EXPECT_EQ(8.75, result.GetMaximum());
  EXPECT_EQ(0.875, result.GetModelEntropy());
}

void ExpectEmptyPair(const BINAttributeTargetResults& result) {
  EXPECT_EQ(TQStatus(), result.GetStatus());
  EXPECT_EQ(-1, result.GetAttributeIndex());
  EXPECT_EQ(-1, result.GetTargetIndex());
  EXPECT_TRUE(result.GetCutPoints().empty());
  EXPECT_TRUE(result.GetCellCounts().empty());
  EXPECT_EQ(0u, result.GetNDistinctValues());
  EXPECT_EQ(0.0, result.GetTotalWeight());
  EXPECT_EQ(0.0, result.GetTotalWeightWithMissing());
  EXPECT_EQ(0.0, result.GetMinimum());
  EXPECT_EQ(0.0, result.GetMaximum());
  EXPECT_EQ(0.0, result.GetModelEntropy());
}

const char kFullPairText[] =
    "\n"
    "Start of BINAttributeTargetResults display\n"
    "BINDataTuple   attribute = 2\n"
    "target = 5\n"
    "Number of distinct values = 7\n"
    "Total weight = 14\n"
    "Total weight with missing = 16.5\n"
    "Minimum = -1.25\n"
    "Maximum = 8.75\n"
    "Model Entropy = 0.875\n"
    "Status has error code 120017\n"
    "Number of cutpoints = 2, the cutpoints:\n"
    "1.5\n"
    "2.5\n"
    "The CellCounts are\n"
    "6  4  2  \n"
    "5  3  2  \n"
    "3  1  2  \n"
    "End of BINAttributeTargetResults display\n";

// ------------------------------------------------------------- the value class

TEST(BINAttributeTargetResults, ANewValueIsOKWithoutBinsAndWithIndicesMinusOne) {
  ExpectEmptyPair(BINAttributeTargetResults());
}

TEST(BINAttributeTargetResults, ACopyHoldsEveryField) {
  const BINAttributeTargetResults source = FullPair();
  const BINAttributeTargetResults copy(source);
  ExpectFullPair(copy);
  ExpectFullPair(source);
}

TEST(BINAttributeTargetResults, AssignmentReplacesEveryField) {
  const BINAttributeTargetResults source = FullPair();
  BINAttributeTargetResults target;
  target = source;
  ExpectFullPair(target);
  target = BINAttributeTargetResults();
  ExpectEmptyPair(target);
  ExpectFullPair(source);
}

TEST(BINAttributeTargetResults, AssignmentToItselfChangesNothing) {
  BINAttributeTargetResults result = FullPair();
  const BINAttributeTargetResults& alias = result;
  result = alias;
  ExpectFullPair(result);
}

TEST(BINAttributeTargetResults, CopiesShareNoStorage) {
  const BINAttributeTargetResults source = FullPair();
  const BINAttributeTargetResults copy(source);
  EXPECT_NE(source.GetCutPoints().data(), copy.GetCutPoints().data());
  EXPECT_NE(source.GetCellCounts().data(), copy.GetCellCounts().data());
  EXPECT_NE(source.GetCellCounts()[0].data(), copy.GetCellCounts()[0].data());
}

TEST(BINAttributeTargetResults, DisplayWritesEveryFieldInOrder) {
  EXPECT_EQ(kFullPairText, TextOf(FullPair()));
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

TEST(BINAttributeTargetResults, DisplayUsesTheStreamsFormattingAndReturnsTheStream) {
  std::ostringstream os;
  os.precision(2);
  os << std::fixed;
  const BINAttributeTargetResults result = FullPair();
  EXPECT_EQ(&os, &result.Display(os));
  EXPECT_NE(std::string::npos, os.str().find("Total weight = 14.00\n"));
  EXPECT_NE(std::string::npos, os.str().find("\n1.50\n2.50\n"));
  EXPECT_NE(std::string::npos, os.str().find("\n6.00  4.00  2.00  \n"));
}

// ---------------------------------------------------------------------- storing

TEST(BINOutput, StoringAnAttributeAsItsOwnTargetFailsAndStoresNothing) {
  BINOutput output;
  EXPECT_EQ(Error(120013), Store(output, 3, 3, {}, {}));
  Results all;
  EXPECT_EQ(Error(120020), output.GetAllCutPoints(all));
}

TEST(BINOutput, StoringANegativeIndexFailsAndStoresNothing) {
  BINOutput output;
  EXPECT_EQ(Error(120013), Store(output, -1, 3, {}, {}));
  EXPECT_EQ(Error(120013), Store(output, 3, -1, {}, {}));
  EXPECT_EQ(Error(120013), Store(output, -1, -1, {}, {}));
  EXPECT_EQ(Error(120013), Store(output, -2, -1, {}, {}));
  Results all;
  EXPECT_EQ(Error(120020), output.GetAllCutPoints(all));
}

TEST(BINOutput, AFailedStoreKeepsWhatIsThere) {
  BINOutput output;
  StoreFullPair(output);
  EXPECT_EQ(Error(120013), Store(output, 2, 2, {}, {}));
  ASSERT_EQ(1u, AllOf(output).size());
  ExpectFullPair(AllOf(output)[0]);
}

TEST(BINOutput, StoringReturnsOKAndKeepsTheGivenStatusInTheValue) {
  BINOutput output;
  EXPECT_EQ(TQStatus(), Store(output, 0, 1, {}, {}, Error(120010)));
  EXPECT_EQ(Error(120010), AllOf(output).at(0).GetStatus());
}

TEST(BINOutput, StoredStatusKeepsItsDataSlots) {
  TQStatus status(120014, true);
  status.SetDiscreteDatum(0, 9);
  status.SetScaleDatum(2, 0.5);
  BINOutput output;
  MustStore(output, 0, 1, {}, {}, status);
  EXPECT_EQ(status, AllOf(output).at(0).GetStatus());
}

TEST(BINOutput, CutPointsAreStoredInAscendingOrder) {
  BINOutput output;
  MustStore(output, 0, 1, {5.0, 1.0, 3.0}, {});
  EXPECT_EQ((std::vector<double>{1.0, 3.0, 5.0}), AllOf(output).at(0).GetCutPoints());
}

TEST(BINOutput, FlatCountsAreSplitIntoOneRowPerBin) {
  BINOutput output;
  MustStore(output, 0, 1, {1.0, 2.0}, {10, 11, 12, 13, 14, 15});
  EXPECT_EQ((std::vector<std::vector<double>>{{10, 11}, {12, 13}, {14, 15}}),
            AllOf(output).at(0).GetCellCounts());
}

TEST(BINOutput, CountsThatFillNoRowAreDropped) {
  BINOutput output;
  MustStore(output, 0, 1, {1.0, 2.0}, {10, 11, 12, 13, 14, 15, 16});
  EXPECT_EQ((std::vector<std::vector<double>>{{10, 11}, {12, 13}, {14, 15}}),
            AllOf(output).at(0).GetCellCounts());
}

TEST(BINOutput, FewerCountsThanBinsGiveEmptyRows) {
  BINOutput output;
  MustStore(output, 0, 1, {1.0, 2.0}, {10, 11});
  EXPECT_EQ(std::vector<std::vector<double>>(3), AllOf(output).at(0).GetCellCounts());
}

TEST(BINOutput, WithoutCutsAndCountsThereIsOneEmptyRow) {
  BINOutput output;
  MustStore(output, 0, 1, {}, {});
  EXPECT_EQ(std::vector<std::vector<double>>(1), AllOf(output).at(0).GetCellCounts());
}

TEST(BINOutput, NumbersAreStoredAsTheyAre) {
  BINOutput output;
  ASSERT_TRUE(output
                  .SetAttributeTargetResults(TQStatus(), {}, {kInfinity, -0.0}, 0, 1, 4294967295u,
                                             kInfinity, kNaN, -kInfinity, -0.0, kNaN)
                  .IsOK());
  const BINAttributeTargetResults result = AllOf(output).at(0);
  EXPECT_EQ(4294967295u, result.GetNDistinctValues());
  EXPECT_EQ(kInfinity, result.GetTotalWeight());
  EXPECT_NE(result.GetTotalWeightWithMissing(), result.GetTotalWeightWithMissing());
  EXPECT_EQ(-kInfinity, result.GetMinimum());
  EXPECT_EQ(0.0, result.GetMaximum());
  EXPECT_NE(result.GetModelEntropy(), result.GetModelEntropy());
  EXPECT_EQ(kInfinity, result.GetCellCounts().at(0).at(0));
}

TEST(BINOutput, StoredValuesDoNotFollowTheCallersContainers) {
  BINOutput output;
  std::set<double> cuts{1.0};
  std::vector<double> counts{3, 1, 2, 4, 2, 2};
  MustStore(output, 0, 1, cuts, counts);
  cuts.insert(9.0);
  counts[0] = 99.0;
  EXPECT_EQ((std::vector<double>{1.0}), AllOf(output).at(0).GetCutPoints());
  EXPECT_EQ((std::vector<double>{3, 1, 2}), AllOf(output).at(0).GetCellCounts().at(0));
}

// ---------------------------------------------------------------- reading a pair

TEST(BINOutput, APairIsFoundByAttributeAndTarget) {
  BINOutput output;
  MustStore(output, 1, 0, {1.0}, {});
  MustStore(output, 0, 1, {2.0}, {});
  MustStore(output, 1, 2, {3.0}, {});
  BINAttributeTargetResults result;
  EXPECT_EQ(TQStatus(), output.GetAttributeTargetCutPoints(1, 2, result));
  EXPECT_EQ((std::vector<double>{3.0}), result.GetCutPoints());
  EXPECT_EQ(TQStatus(), output.GetAttributeTargetCutPoints(0, 1, result));
  EXPECT_EQ((std::vector<double>{2.0}), result.GetCutPoints());
}

TEST(BINOutput, APairIsReturnedWithEveryField) {
  BINOutput output;
  StoreFullPair(output);
  BINAttributeTargetResults result;
  EXPECT_EQ(Warning(120017), output.GetAttributeTargetCutPoints(2, 5, result));
  ExpectFullPair(result);
}

TEST(BINOutput, ReadingReplacesWhatTheArgumentHeld) {
  BINOutput output;
  MustStore(output, 0, 1, {}, {});
  BINAttributeTargetResults result = FullPair();
  EXPECT_EQ(TQStatus(), output.GetAttributeTargetCutPoints(0, 1, result));
  EXPECT_EQ(0, result.GetAttributeIndex());
  EXPECT_EQ(1, result.GetTargetIndex());
  EXPECT_TRUE(result.GetCutPoints().empty());
  EXPECT_EQ(TQStatus(), result.GetStatus());
  EXPECT_EQ(0.0, result.GetModelEntropy());
}

TEST(BINOutput, AStoredErrorIsReturnedTogetherWithTheValue) {
  BINOutput output;
  MustStore(output, 4, 1, {2.0}, {1, 1, 2, 2}, Error(120010));
  BINAttributeTargetResults result;
  EXPECT_EQ(Error(120010), output.GetAttributeTargetCutPoints(4, 1, result));
  EXPECT_EQ(Error(120010), result.GetStatus());
  EXPECT_EQ((std::vector<double>{2.0}), result.GetCutPoints());
  EXPECT_EQ((std::vector<std::vector<double>>{{1, 1}, {2, 2}}), result.GetCellCounts());
}

TEST(BINOutput, BadIndicesAreRefusedAndLeaveTheArgument) {
  BINOutput output;
  StoreFullPair(output);
  BINAttributeTargetResults result = FullPair();
  EXPECT_EQ(Error(120013), output.GetAttributeTargetCutPoints(-1, 5, result));
  EXPECT_EQ(Error(120013), output.GetAttributeTargetCutPoints(2, -1, result));
  EXPECT_EQ(Error(120013), output.GetAttributeTargetCutPoints(2, 2, result));
  ExpectFullPair(result);
}

TEST(BINOutput, APairThatWasNeverStoredIsRefusedAndLeavesTheArgument) {
  BINOutput output;
  BINAttributeTargetResults result = FullPair();
  EXPECT_EQ(Error(120013), output.GetAttributeTargetCutPoints(2, 5, result));
  MustStore(output, 5, 2, {}, {});  // the two indices the other way round
  EXPECT_EQ(Error(120013), output.GetAttributeTargetCutPoints(2, 5, result));
  ExpectFullPair(result);
}

TEST(BINOutput, APairStoredTwiceIsKeptTwiceAndFoundByItsFirstValue) {
  BINOutput output;
  MustStore(output, 1, 0, {1.0}, {});
  MustStore(output, 1, 0, {2.0}, {}, Warning(120017));
  ASSERT_EQ(2u, AllOf(output).size());
  EXPECT_EQ((std::vector<double>{1.0}), AllOf(output)[0].GetCutPoints());
  EXPECT_EQ((std::vector<double>{2.0}), AllOf(output)[1].GetCutPoints());
  BINAttributeTargetResults result;
  EXPECT_EQ(TQStatus(), output.GetAttributeTargetCutPoints(1, 0, result));
  EXPECT_EQ((std::vector<double>{1.0}), result.GetCutPoints());
}

TEST(BINOutput, APairStoredAfterADoubleOneIsStillFound) {
  BINOutput output;
  MustStore(output, 1, 0, {1.0}, {});
  MustStore(output, 1, 0, {2.0}, {});
  MustStore(output, 3, 0, {3.0}, {});
  BINAttributeTargetResults result;
  EXPECT_EQ(TQStatus(), output.GetAttributeTargetCutPoints(3, 0, result));
  EXPECT_EQ((std::vector<double>{3.0}), result.GetCutPoints());
}

// ----------------------------------------------------------- reading an attribute

TEST(BINOutput, AllPairsOfAnAttributeAreAppendedInStorageOrder) {
  BINOutput output;
  MustStore(output, 1, 4, {4.0}, {});
  MustStore(output, 2, 4, {9.0}, {});
  MustStore(output, 1, 0, {0.5}, {});
  Results out{FullPair()};
  EXPECT_EQ(TQStatus(), output.GetAttributeCutPoints(1, out));
  ASSERT_EQ(3u, out.size());
  ExpectFullPair(out[0]);
  EXPECT_EQ(4, out[1].GetTargetIndex());
  EXPECT_EQ((std::vector<double>{4.0}), out[1].GetCutPoints());
  EXPECT_EQ(0, out[2].GetTargetIndex());
  EXPECT_EQ((std::vector<double>{0.5}), out[2].GetCutPoints());
}

TEST(BINOutput, BothValuesOfAPairStoredTwiceAreAppended) {
  BINOutput output;
  MustStore(output, 1, 0, {1.0}, {});
  MustStore(output, 1, 0, {2.0}, {});
  Results out;
  EXPECT_EQ(TQStatus(), output.GetAttributeCutPoints(1, out));
  ASSERT_EQ(2u, out.size());
  EXPECT_EQ((std::vector<double>{1.0}), out[0].GetCutPoints());
  EXPECT_EQ((std::vector<double>{2.0}), out[1].GetCutPoints());
}

TEST(BINOutput, TheLastMatchingValueGivesTheStatus) {
  BINOutput output;
  MustStore(output, 1, 0, {}, {}, Error(120010));
  MustStore(output, 1, 2, {}, {}, Warning(120017));
  MustStore(output, 3, 2, {}, {}, Error(120006));  // another attribute's
  Results out;
  EXPECT_EQ(Warning(120017), output.GetAttributeCutPoints(1, out));
  MustStore(output, 1, 4, {}, {});
  EXPECT_EQ(TQStatus(), output.GetAttributeCutPoints(1, out));
}

TEST(BINOutput, AnAttributeWithoutValuesIsRefusedAndLeavesTheArgument) {
  BINOutput output;
  Results out{FullPair()};
  EXPECT_EQ(Error(120013), output.GetAttributeCutPoints(1, out));  // nothing stored
  MustStore(output, 2, 1, {}, {});
  EXPECT_EQ(Error(120013), output.GetAttributeCutPoints(1, out));  // only as a target
  EXPECT_EQ(Error(120013), output.GetAttributeCutPoints(-1, out));
  ASSERT_EQ(1u, out.size());
  ExpectFullPair(out[0]);
}

// ------------------------------------------------------------- reading everything

TEST(BINOutput, ReadingAllReplacesTheArgument) {
  BINOutput output;
  MustStore(output, 0, 1, {1.0}, {}, Error(120010));
  MustStore(output, 2, 1, {2.0}, {});
  Results out(5, FullPair());
  EXPECT_EQ(TQStatus(), output.GetAllCutPoints(out));
  ASSERT_EQ(2u, out.size());
  EXPECT_EQ(0, out[0].GetAttributeIndex());
  EXPECT_EQ(Error(120010), out[0].GetStatus());
  EXPECT_EQ(2, out[1].GetAttributeIndex());
}

TEST(BINOutput, ReadingAllOfNothingFailsAndLeavesTheArgument) {
  const BINOutput output;
  Results out{FullPair()};
  EXPECT_EQ(Error(120020), output.GetAllCutPoints(out));
  ASSERT_EQ(1u, out.size());
  ExpectFullPair(out[0]);
}

// ------------------------------------------------------------- copies and display

TEST(BINOutput, ACopyIsIndependentOfItsSource) {
  BINOutput source;
  StoreFullPair(source);
  BINOutput copy(source);
  MustStore(copy, 0, 1, {}, {});
  EXPECT_EQ(1u, AllOf(source).size());
  ASSERT_EQ(2u, AllOf(copy).size());
  ExpectFullPair(AllOf(copy)[0]);
  BINAttributeTargetResults result;
  EXPECT_EQ(Warning(120017), copy.GetAttributeTargetCutPoints(2, 5, result));
  EXPECT_EQ(Error(120013), source.GetAttributeTargetCutPoints(0, 1, result));
}

TEST(BINOutput, AssignmentReplacesResultsAndIndex) {
  BINOutput source;
  StoreFullPair(source);
  BINOutput target;
  MustStore(target, 0, 1, {}, {});
  target = source;
  ASSERT_EQ(1u, AllOf(target).size());
  BINAttributeTargetResults result;
  EXPECT_EQ(Error(120013), target.GetAttributeTargetCutPoints(0, 1, result));
  EXPECT_EQ(Warning(120017), target.GetAttributeTargetCutPoints(2, 5, result));
  ExpectFullPair(result);
}

TEST(BINOutput, DisplayFramesTheValues) {
  BINOutput output;
  StoreFullPair(output);
  StoreFullPair(output);
  EXPECT_EQ(std::string("\nStart of BINOutput display\ncut point :") + kFullPairText +
                kFullPairText + "\nEnd of BINOutput display\n",
            TextOf(output));
}

TEST(BINOutput, DisplayOfAnEmptyOutputIsTheFrameAlone) {
  EXPECT_EQ("\nStart of BINOutput display\ncut point :\nEnd of BINOutput display\n",
            TextOf(BINOutput()));
}

TEST(BINOutput, DisplayReturnsTheStream) {
  std::ostringstream os;
  EXPECT_EQ(&os, &BINOutput().Display(os));
}

}  // namespace
