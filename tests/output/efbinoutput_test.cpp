#include "tqbinning/efbinoutput.h"

#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using TQBinning::TQStatus;
using Numbers = std::vector<double>;
using Results = std::vector<BINAttributeResults>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TQStatus Error(long code) { return TQStatus(code, false); }
TQStatus Warning(long code) { return TQStatus(code, true); }

// Stores cuts and counts of an attribute, with numbers that are of no interest.
TQStatus Store(EFBINOutput& output, int attribute, const Numbers& cuts, const Numbers& counts,
               TQStatus status = TQStatus()) {
  return output.SetAttributeResults(status, cuts, counts, attribute, 0, 0.0, 0.0, 0.0, 0.0);
}

void MustStore(EFBINOutput& output, int attribute, const Numbers& cuts, const Numbers& counts,
               TQStatus status = TQStatus()) {
  ASSERT_TRUE(Store(output, attribute, cuts, counts, status).IsOK());
}

// Stores attribute 3 with a different number in every field.
void StoreFullAttribute(EFBINOutput& output) {
  ASSERT_TRUE(output
                  .SetAttributeResults(Warning(120014), {1.5, 2.5}, {4, 5, 6}, 3, 7, 15.0, 16.5,
                                       -1.25, 8.75)
                  .IsOK());
}

Results AllOf(const EFBINOutput& output) {
  Results all;
  EXPECT_TRUE(output.GetAllCutPoints(all).IsOK());
  return all;
}

BINAttributeResults FullAttribute() {
  EFBINOutput output;
  StoreFullAttribute(output);
  return AllOf(output).at(0);
}

template <typename Shown>
std::string TextOf(const Shown& shown) {
  std::ostringstream os;
  shown.Display(os);
  return os.str();
}

void ExpectFullAttribute(const BINAttributeResults& result) {
  EXPECT_EQ(Warning(120014), result.GetStatus());
  EXPECT_EQ(3, result.GetAttributeIndex());
  EXPECT_EQ((Numbers{1.5, 2.5}), result.GetCutPoints());
  EXPECT_EQ((Numbers{4, 5, 6}), result.GetCellCounts());
  EXPECT_EQ(7u, result.GetNDistinctValues());
  EXPECT_EQ(15.0, result.GetTotalWeight());
  EXPECT_EQ(16.5, result.GetTotalWeightWithMissing());
  EXPECT_EQ(-1.25, result.GetMinimum());
  EXPECT_EQ(8.75, result.GetMaximum());
}

void ExpectEmptyAttribute(const BINAttributeResults& result) {
  EXPECT_EQ(TQStatus(), result.GetStatus());
  EXPECT_EQ(-1, result.GetAttributeIndex());
  EXPECT_TRUE(result.GetCutPoints().empty());
  EXPECT_TRUE(result.GetCellCounts().empty());
  EXPECT_EQ(0u, result.GetNDistinctValues());
  EXPECT_EQ(0.0, result.GetTotalWeight());
  EXPECT_EQ(0.0, result.GetTotalWeightWithMissing());
  EXPECT_EQ(0.0, result.GetMinimum());
  EXPECT_EQ(0.0, result.GetMaximum());
}

const char kFullAttributeText[] =
    "\n"
    "Start of BINAttributeResults display\n"
    "BINDataTuple   attribute = 3\n"
    "Number of distinct values = 7\n"
    "Total weight = 15\n"
    "Total weight with missing = 16.5\n"
    "Minimum = -1.25\n"
    "Maximum = 8.75\n"
    "Status has error code 120014\n"
    "Number of cutpoints = 2, the cutpoints:\n"
    "1.5\n"
    "2.5\n"
    "The CellCounts are\n"
    "4  5  6  \n"
    "End of BINAttributeResults display\n";

// ------------------------------------------------------------- the value class

TEST(BINAttributeResults, ANewValueIsOKWithoutBinsAndWithIndexMinusOne) {
  ExpectEmptyAttribute(BINAttributeResults());
}

TEST(BINAttributeResults, ACopyHoldsEveryFieldAndSharesNoStorage) {
  const BINAttributeResults source = FullAttribute();
  const BINAttributeResults copy(source);
  ExpectFullAttribute(copy);
  ExpectFullAttribute(source);
  EXPECT_NE(source.GetCutPoints().data(), copy.GetCutPoints().data());
  EXPECT_NE(source.GetCellCounts().data(), copy.GetCellCounts().data());
}

TEST(BINAttributeResults, AssignmentReplacesEveryField) {
  const BINAttributeResults source = FullAttribute();
  BINAttributeResults target;
  target = source;
  ExpectFullAttribute(target);
  target = BINAttributeResults();
  ExpectEmptyAttribute(target);
  ExpectFullAttribute(source);
}

TEST(BINAttributeResults, AssignmentToItselfChangesNothing) {
  BINAttributeResults result = FullAttribute();
  const BINAttributeResults& alias = result;
  result = alias;
  ExpectFullAttribute(result);
}

TEST(BINAttributeResults, DisplayWritesEveryFieldInOrder) {
  EXPECT_EQ(kFullAttributeText, TextOf(FullAttribute()));
}

TEST(BINAttributeResults, DisplayOfAnOKAttributeWithoutCutsHasNeitherStatusNorCutPointLabel) {
  EXPECT_EQ(
      "\n"
      "Start of BINAttributeResults display\n"
      "BINDataTuple   attribute = -1\n"
      "Number of distinct values = 0\n"
      "Total weight = 0\n"
      "Total weight with missing = 0\n"
      "Minimum = 0\n"
      "Maximum = 0\n"
      "Number of cutpoints = 0\n"
      "The CellCounts are\n"
      "\n"
      "End of BINAttributeResults display\n",
      TextOf(BINAttributeResults()));
}

TEST(BINAttributeResults, DisplayUsesTheStreamsFormattingAndReturnsTheStream) {
  std::ostringstream os;
  os.precision(2);
  os << std::fixed;
  const BINAttributeResults result = FullAttribute();
  EXPECT_EQ(&os, &result.Display(os));
  EXPECT_NE(std::string::npos, os.str().find("Total weight = 15.00\n"));
  EXPECT_NE(std::string::npos, os.str().find("\n4.00  5.00  6.00  \n"));
}

// ---------------------------------------------------------------------- storing

TEST(EFBINOutput, StoringANegativeIndexFailsAndStoresNothing) {
  EFBINOutput output;
  EXPECT_EQ(Error(120011), Store(output, -1, {1.0}, {2.0, 2.0}));
  Results all;
  EXPECT_EQ(Error(120020), output.GetAllCutPoints(all));
}

TEST(EFBINOutput, AFailedStoreKeepsWhatIsThere) {
  EFBINOutput output;
  StoreFullAttribute(output);
  EXPECT_EQ(Error(120011), Store(output, -2, {}, {}));
  ASSERT_EQ(1u, AllOf(output).size());
  ExpectFullAttribute(AllOf(output)[0]);
}

TEST(EFBINOutput, AttributeZeroCanBeStored) {
  EFBINOutput output;
  EXPECT_EQ(TQStatus(), Store(output, 0, {}, {}));
  EXPECT_EQ(0, AllOf(output).at(0).GetAttributeIndex());
}

TEST(EFBINOutput, StoringReturnsOKAndKeepsTheGivenStatusInTheValue) {
  TQStatus status(120005, false);
  status.SetDiscreteDatum(2, 4);
  EFBINOutput output;
  EXPECT_EQ(TQStatus(), Store(output, 3, {}, {}, status));
  EXPECT_EQ(status, AllOf(output).at(0).GetStatus());
}

TEST(EFBINOutput, CutPointsAreNotSorted) {
  EFBINOutput output;
  MustStore(output, 0, {5.0, 3.0, 3.0, 1.0}, {});
  EXPECT_EQ((Numbers{5.0, 3.0, 3.0, 1.0}), AllOf(output).at(0).GetCutPoints());
}

TEST(EFBINOutput, CountsNeedNotMatchTheCuts) {
  EFBINOutput output;
  MustStore(output, 0, {1.0}, {7.0, 8.0, 9.0, 10.0});
  EXPECT_EQ((Numbers{7.0, 8.0, 9.0, 10.0}), AllOf(output).at(0).GetCellCounts());
}

TEST(EFBINOutput, NumbersAreStoredAsTheyAre) {
  EFBINOutput output;
  ASSERT_TRUE(output
                  .SetAttributeResults(TQStatus(), {kInfinity}, {}, 0, 4294967295u, kInfinity, kNaN,
                                       -kInfinity, kInfinity)
                  .IsOK());
  const BINAttributeResults result = AllOf(output).at(0);
  EXPECT_EQ(4294967295u, result.GetNDistinctValues());
  EXPECT_EQ(kInfinity, result.GetTotalWeight());
  EXPECT_NE(result.GetTotalWeightWithMissing(), result.GetTotalWeightWithMissing());
  EXPECT_EQ(-kInfinity, result.GetMinimum());
  EXPECT_EQ(kInfinity, result.GetMaximum());
  EXPECT_EQ((Numbers{kInfinity}), result.GetCutPoints());
}

TEST(EFBINOutput, StoredValuesDoNotFollowTheCallersVectors) {
  EFBINOutput output;
  Numbers cuts{1.0};
  Numbers counts{2.0, 3.0};
  MustStore(output, 0, cuts, counts);
  cuts[0] = 99.0;
  counts.clear();
  EXPECT_EQ((Numbers{1.0}), AllOf(output).at(0).GetCutPoints());
  EXPECT_EQ((Numbers{2.0, 3.0}), AllOf(output).at(0).GetCellCounts());
}

// --------------------------------------------------------------------- reading

TEST(EFBINOutput, AnAttributeIsReturnedWithItsWarningAndItsData) {
  EFBINOutput output;
  MustStore(output, 1, {9.0}, {});
  StoreFullAttribute(output);
  BINAttributeResults result;
  EXPECT_EQ(Warning(120014), output.GetAttributeCutPoints(3, result));
  ExpectFullAttribute(result);
}

TEST(EFBINOutput, ReadingReplacesWhatTheArgumentHeld) {
  EFBINOutput output;
  MustStore(output, 0, {}, {});
  BINAttributeResults result = FullAttribute();
  EXPECT_EQ(TQStatus(), output.GetAttributeCutPoints(0, result));
  EXPECT_EQ(0, result.GetAttributeIndex());
  EXPECT_EQ(TQStatus(), result.GetStatus());
  EXPECT_TRUE(result.GetCutPoints().empty());
  EXPECT_TRUE(result.GetCellCounts().empty());
  EXPECT_EQ(0u, result.GetNDistinctValues());
}

TEST(EFBINOutput, AnAttributeStoredTwiceIsKeptTwiceAndFoundByItsFirstValue) {
  EFBINOutput output;
  MustStore(output, 4, {1.0}, {}, Warning(120019));
  MustStore(output, 4, {2.0}, {});
  ASSERT_EQ(2u, AllOf(output).size());
  EXPECT_EQ((Numbers{1.0}), AllOf(output)[0].GetCutPoints());
  EXPECT_EQ((Numbers{2.0}), AllOf(output)[1].GetCutPoints());
  BINAttributeResults result;
  EXPECT_EQ(Warning(120019), output.GetAttributeCutPoints(4, result));
  EXPECT_EQ((Numbers{1.0}), result.GetCutPoints());
}

TEST(EFBINOutput, AnAttributeWithoutValueIsRefusedAndLeavesTheArgument) {
  EFBINOutput output;
  BINAttributeResults result = FullAttribute();
  EXPECT_EQ(Error(120013), output.GetAttributeCutPoints(3, result));  // nothing stored
  MustStore(output, 4, {}, {});
  EXPECT_EQ(Error(120013), output.GetAttributeCutPoints(3, result));
  EXPECT_EQ(Error(120013), output.GetAttributeCutPoints(-1, result));
  ExpectFullAttribute(result);
}

TEST(EFBINOutput, ReadingAllReplacesTheArgumentInStorageOrder) {
  EFBINOutput output;
  MustStore(output, 8, {}, {}, Error(120005));
  MustStore(output, 2, {}, {});
  Results out(5, FullAttribute());
  EXPECT_EQ(TQStatus(), output.GetAllCutPoints(out));
  ASSERT_EQ(2u, out.size());
  EXPECT_EQ(8, out[0].GetAttributeIndex());
  EXPECT_EQ(Error(120005), out[0].GetStatus());
  EXPECT_EQ(2, out[1].GetAttributeIndex());
}

TEST(EFBINOutput, ReadingAllOfNothingFailsAndLeavesTheArgument) {
  const EFBINOutput output;
  Results out{FullAttribute()};
  EXPECT_EQ(Error(120020), output.GetAllCutPoints(out));
  ASSERT_EQ(1u, out.size());
  ExpectFullAttribute(out[0]);
}

// ------------------------------------------------------------- copies and display

TEST(EFBINOutput, ACopyIsIndependentOfItsSource) {
  EFBINOutput source;
  StoreFullAttribute(source);
  EFBINOutput copy(source);
  MustStore(copy, 0, {}, {});
  EXPECT_EQ(1u, AllOf(source).size());
  ASSERT_EQ(2u, AllOf(copy).size());
  ExpectFullAttribute(AllOf(copy)[0]);
}

TEST(EFBINOutput, AssignmentReplacesTheResults) {
  EFBINOutput source;
  StoreFullAttribute(source);
  EFBINOutput target;
  MustStore(target, 0, {}, {});
  target = source;
  ASSERT_EQ(1u, AllOf(target).size());
  ExpectFullAttribute(AllOf(target)[0]);
  ExpectFullAttribute(AllOf(source)[0]);
}

TEST(EFBINOutput, DisplayFramesTheValues) {
  EFBINOutput output;
  StoreFullAttribute(output);
  StoreFullAttribute(output);
  EXPECT_EQ(std::string("\nStart of EFBINOutput display\ncut point :") + kFullAttributeText +
                kFullAttributeText + "\nEnd of EFBINOutput display\n",
            TextOf(output));
}

TEST(EFBINOutput, DisplayOfAnEmptyOutputIsTheFrameAlone) {
  EXPECT_EQ("\nStart of EFBINOutput display\ncut point :\nEnd of EFBINOutput display\n",
            TextOf(EFBINOutput()));
}

TEST(EFBINOutput, DisplayReturnsTheStream) {
  std::ostringstream os;
  EXPECT_EQ(&os, &EFBINOutput().Display(os));
}

}  // namespace
