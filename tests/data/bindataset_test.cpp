#include "tqbinning/bindataset.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "data/prepareddata.h"

namespace {

using namespace data;

// ---- before the data pass ----

TEST(BINDataSet, IsBornWithoutTuplesAndWithMissingExtremes) {
  Data data(Variables("TA"), {});
  EXPECT_EQ(0, data.set.GetNumberOfClasses());
  EXPECT_EQ(0u, data.set.GetNumberOfValidTuples());
  EXPECT_EQ(0u, data.set.GetNumberOfDistinctValues());
  EXPECT_EQ(0.0, data.set.GetValidWeightTotal());
  EXPECT_EQ(0.0, data.set.GetWeightTotal());
  EXPECT_FALSE(data.set.ExceedsThreshold());
  EXPECT_EQ(kMissing, data.set.GetMinimum());
  EXPECT_EQ(kMissing, data.set.GetMaximum());
  EXPECT_EQ(-1, data.set.fWeightColumn);
  EXPECT_EQ(nullptr, data.set.fSupervisedTuples);
  EXPECT_EQ(nullptr, data.set.fUnsupervisedTuples);
  EXPECT_EQ(nullptr, data.set.fTargetReader);
  EXPECT_EQ(nullptr, data.set.fWeightReader);
}

TEST(BINDataSet, TheNumberOfCasesIsSetUnlessItIsZero) {
  Data data(Variables("TA"), {});
  EXPECT_TRUE(data.set.SetNumberOfCases(7));
  EXPECT_EQ(7u, data.set.fNumberOfCases);
  EXPECT_FALSE(data.set.SetNumberOfCases(0));
  EXPECT_EQ(7u, data.set.fNumberOfCases);
}

// ---- HandleDataFile ----

TEST(HandleDataFile, WithATargetMakesOneZeroedTuplePerCaseAndOpensTheTarget) {
  const PreparedData data("TA", {{0.0, 1.0}, {1.0, 2.0}, {0.0, 3.0}});
  ASSERT_NE(nullptr, data.set.fSupervisedTuples);
  EXPECT_EQ(nullptr, data.set.fUnsupervisedTuples);
  EXPECT_EQ(std::vector<Case>(3, Case(0.0, 0, 0.0)), CasesOf(*data.set.fSupervisedTuples, 3));
  EXPECT_EQ(3u, data.set.fSupervisedTuples->size());
  EXPECT_NE(nullptr, data.set.fTargetReader);
  EXPECT_EQ(0, data.set.fTargetColumn);
  EXPECT_EQ(nullptr, data.set.fWeightReader);
  EXPECT_EQ(-1, data.set.fWeightColumn);
}

TEST(HandleDataFile, WithoutATargetMakesOneZeroedTuplePerCaseOfTheOtherKind) {
  const PreparedData data("A", {{1.0}, {2.0}});
  ASSERT_NE(nullptr, data.set.fUnsupervisedTuples);
  EXPECT_EQ(nullptr, data.set.fSupervisedTuples);
  EXPECT_EQ(2u, data.set.fUnsupervisedTuples->size());
  EXPECT_EQ(std::vector<WeightedValue>(2, WeightedValue(0.0, 0.0)),
            CasesOf(*data.set.fUnsupervisedTuples, 2));
  EXPECT_EQ(nullptr, data.set.fTargetReader);
}

TEST(HandleDataFile, TheWeightIsReadFromColumnOneBehindATargetAndZeroOtherwise) {
  const PreparedData behind("TWA", {{0.0, 1.0, 1.0}});
  EXPECT_EQ(1, behind.set.fWeightColumn);
  EXPECT_NE(nullptr, behind.set.fWeightReader);
  const PreparedData first("WA", {{1.0, 1.0}});
  EXPECT_EQ(0, first.set.fWeightColumn);
  EXPECT_NE(nullptr, first.set.fWeightReader);
}

TEST(HandleDataFile, CountsTheKeptCasesAndCopiesTheFileNames) {
  const PreparedData data("WA", {{1.0, 1.0}, {kMissing, 2.0}, {2.0, 3.0}});
  EXPECT_EQ(2u, data.set.fNumberOfCases);
  EXPECT_EQ(2u, data.set.fUnsupervisedTuples->size());
  EXPECT_EQ(data.preparator.GetFileNames(), data.set.fFileNames);
}

TEST(HandleDataFile, AnIteratorWithoutCasesIsThePassesError) {
  Data data(Variables("A"), {});
  EXPECT_EQ(Error(TQBinning::kNoCases), data.set.HandleDataFile());
}

TEST(HandleDataFile, ATargetCodeOutOfRangeIsThePassesError) {
  Data data(Variables("AT"), {{1.0, 300.0}});
  EXPECT_EQ(Error(TQBinning::kCodeOutOfRange, 1), data.set.HandleDataFile());
}

TEST(HandleDataFile, CancellationIsThePassesError) {
  support::CancelAtPoll query(2);
  Data data(Variables("A"), {{1.0}, {2.0}, {3.0}}, &query);
  EXPECT_EQ(Error(TQBinning::kCancelled), data.set.HandleDataFile());
}

// Ends at once, pretending that the pass has kept more cases than memory can hold.
class BoastfulRecords : public TQCommon::RecordIterator {
 public:
  void Boast(Preparator& preparator) { fPreparator = &preparator; }
  bool HasMore() override {
    fPreparator->fKeptCases = std::numeric_limits<unsigned long>::max() / 2;
    return false;
  }
  const TQCommon::Record* Next() override { return nullptr; }

 private:
  Preparator* fPreparator = nullptr;
};

TEST(HandleDataFile, TuplesThatMemoryCannotHoldAreAResourceFailure) {
  for (const std::string kinds : {"TA", "A"}) {
    SCOPED_TRACE(kinds);
    Data data(Variables(kinds), {});
    BoastfulRecords records;
    records.Boast(data.preparator);
    DataSet set(records, data.preparator);
    EXPECT_EQ(Error(TQBinning::kResourceFailure), set.HandleDataFile());
  }
}

// ---- IsValidTarget ----

TEST(DataSetIsValidTarget, ANegativeIndexIsAnErrorAndLeavesTheFlag) {
  PreparedData data("TA", {{0.0, 1.0}});
  bool isValid = true;
  EXPECT_EQ(Error(TQBinning::kTargetNotUsable), data.set.IsValidTarget(-1, isValid));
  EXPECT_TRUE(isValid);
}

TEST(DataSetIsValidTarget, AnswersForTheVariablesColumn) {
  // Variable 0 is in column 2, variable 1 (whose code 256 is too large) in column 3,
  // variable 2 in column 0, variable 3 in column 1.
  PreparedData data("ACTW", {{1.0, 256.0, 0.0, 1.0}});
  bool isValid = false;
  EXPECT_EQ(TQStatus(), data.set.IsValidTarget(2, isValid));
  EXPECT_TRUE(isValid);
  EXPECT_EQ(TQStatus(), data.set.IsValidTarget(1, isValid));
  EXPECT_FALSE(isValid);
  EXPECT_EQ(TQStatus(), data.set.IsValidTarget(0, isValid));
  EXPECT_TRUE(isValid);
}

TEST(DataSetIsValidTarget, AnIndexBeyondTheListIsAnErrorAndLeavesTheFlag) {
  PreparedData data("TA", {{0.0, 1.0}});
  bool isValid = true;
  EXPECT_EQ(Error(TQBinning::kInvalidIndex), data.set.IsValidTarget(2, isValid));
  EXPECT_TRUE(isValid);
}

// ---- reading an attribute ----

TEST(ReadNextAttribute, KeepsTheOrderOfTheCases) {
  PreparedData data("TA", {{0.0, 3.0}, {1.0, 1.0}, {0.0, 2.0}});
  EXPECT_EQ(TQStatus(), data.set.ReadNextAttribute(1));
  EXPECT_EQ(3u, data.set.GetNumberOfValidTuples());
  EXPECT_EQ((std::vector<Case>{{3.0, 0, 1.0}, {1.0, 1, 1.0}, {2.0, 0, 1.0}}),
            CasesOf(*data.set.fSupervisedTuples, 3));
}

TEST(ReadNextAttribute, RewindsTargetAndWeightEveryTime) {
  PreparedData data("TWA", {{0.0, 2.0, 3.0}, {1.0, 4.0, 1.0}});
  for (int pass = 0; pass < 3; ++pass) {
    SCOPED_TRACE(pass);
    EXPECT_EQ(TQStatus(), data.set.ReadNextAttribute(2));
    EXPECT_EQ((std::vector<Case>{{3.0, 0, 2.0}, {1.0, 1, 4.0}}),
              CasesOf(*data.set.fSupervisedTuples, 2));
    EXPECT_EQ(6.0, data.set.GetWeightTotal());
  }
}

TEST(GetAttribute, SortsTheTuplesByValueAndKeepsTargetAndWeightWithThem) {
  PreparedData data("TWA", {{2.0, 5.0, 3.0}, {0.0, 7.0, 1.0}, {1.0, 9.0, 2.0}});
  const auto* tuples = data.Supervised(2, 0);
  EXPECT_EQ((std::vector<Case>{{1.0, 0, 7.0}, {2.0, 1, 9.0}, {3.0, 2, 5.0}}), CasesOf(*tuples, 3));
  EXPECT_EQ(data.set.fSupervisedTuples.get(), tuples);
  EXPECT_EQ(1.0, data.set.GetMinimum());
  EXPECT_EQ(3.0, data.set.GetMaximum());
  EXPECT_EQ(3, data.set.GetNumberOfClasses());
}

TEST(GetAttribute, WithoutATargetSortsTheTuplesByValueAndKeepsTheWeightWithThem) {
  PreparedData data("AW", {{3.0, 5.0}, {1.0, 7.0}, {2.0, 9.0}});
  const auto* tuples = data.Unsupervised(0);
  EXPECT_EQ((std::vector<WeightedValue>{{1.0, 7.0}, {2.0, 9.0}, {3.0, 5.0}}), CasesOf(*tuples, 3));
  EXPECT_EQ(data.set.fUnsupervisedTuples.get(), tuples);
  EXPECT_EQ(1.0, data.set.GetMinimum());
  EXPECT_EQ(3.0, data.set.GetMaximum());
  EXPECT_EQ(3u, data.set.GetNumberOfDistinctValues());
}

TEST(GetAttribute, OfManyShuffledValuesSortsThemAll) {
  Rows rows;
  for (int i = 0; i < 1000; ++i) rows.push_back({static_cast<double>((i * 37) % 1000)});
  PreparedData data("A", rows);
  const auto* tuples = data.Unsupervised(0);
  for (std::size_t i = 0; i < 1000; ++i) ASSERT_EQ(static_cast<double>(i), (*tuples)[i].value);
  EXPECT_EQ(1000u, data.set.GetNumberOfDistinctValues());
}

// ---- weights and missing values ----

TEST(GetAttribute, CasesWithAMissingTargetCountInTheWeightTotalOnly) {
  PreparedData data("TA", {{0.0, 4.0}, {kMissing, 2.0}, {1.0, 3.0}, {-1.0, 1.0}});
  const auto* tuples = data.Supervised(1, 0);
  EXPECT_EQ(2u, data.set.GetNumberOfValidTuples());
  EXPECT_EQ((std::vector<Case>{{3.0, 1, 1.0}, {4.0, 0, 1.0}}), CasesOf(*tuples, 2));
  EXPECT_EQ(4.0, data.set.GetWeightTotal());
  EXPECT_EQ(2.0, data.set.GetValidWeightTotal());
}

TEST(GetAttribute, CasesWithAMissingValueCountInTheWeightTotalOnly) {
  PreparedData data("TA", {{0.0, 4.0}, {0.0, kMissing}, {kMissing, kMissing}});
  data.Supervised(1, 0);
  EXPECT_EQ(1u, data.set.GetNumberOfValidTuples());
  EXPECT_EQ(3.0, data.set.GetWeightTotal());
  EXPECT_EQ(1.0, data.set.GetValidWeightTotal());
}

TEST(GetAttribute, WeightsOfCasesWithMissingTargetOrValueCountInTheWeightTotalOnly) {
  PreparedData data("TWA",
                    {{0.0, 2.0, 4.0}, {kMissing, 3.0, 2.0}, {1.0, 5.0, kMissing}, {1.0, 7.0, 3.0}});
  const auto* tuples = data.Supervised(2, 0);
  EXPECT_EQ((std::vector<Case>{{3.0, 1, 7.0}, {4.0, 0, 2.0}}), CasesOf(*tuples, 2));
  EXPECT_EQ(17.0, data.set.GetWeightTotal());
  EXPECT_EQ(9.0, data.set.GetValidWeightTotal());
}

TEST(GetAttribute, WithoutATargetCasesWithAMissingValueCountInTheWeightTotalOnly) {
  PreparedData data("A", {{2.0}, {kMissing}, {1.0}});
  const auto* tuples = data.Unsupervised(0);
  EXPECT_EQ((std::vector<WeightedValue>{{1.0, 1.0}, {2.0, 1.0}}), CasesOf(*tuples, 2));
  EXPECT_EQ(3.0, data.set.GetWeightTotal());
  EXPECT_EQ(2.0, data.set.GetValidWeightTotal());
}

TEST(GetAttribute, WithoutATargetWeightsOfMissingValuesCountInTheWeightTotalOnly) {
  PreparedData data("WA", {{2.0, 5.0}, {3.0, kMissing}, {4.0, 1.0}});
  const auto* tuples = data.Unsupervised(1);
  EXPECT_EQ((std::vector<WeightedValue>{{1.0, 4.0}, {5.0, 2.0}}), CasesOf(*tuples, 2));
  EXPECT_EQ(9.0, data.set.GetWeightTotal());
  EXPECT_EQ(6.0, data.set.GetValidWeightTotal());
}

// The pass keeps no case with a weight that is missing or zero, so such files are
// written by hand and opened anew.
void ReplaceWeights(PreparedData& data, const Doubles& weights) {
  const std::string file = data.File(static_cast<std::size_t>(data.set.fWeightColumn));
  support::WriteColumn(file, weights);
  data.set.fWeightReader.reset(new BinaryRecordIterator(file));
}

TEST(GetAttribute, AWeightOfZeroProducesATupleOfWeightZero) {
  PreparedData data("TWA", {{1.0, 1.0, 3.0}, {0.0, 1.0, 2.0}});
  ReplaceWeights(data, {0.0, 2.0});
  const auto* tuples = data.Supervised(2, 0);
  EXPECT_EQ(2u, data.set.GetNumberOfValidTuples());
  EXPECT_EQ((std::vector<Case>{{2.0, 0, 2.0}, {3.0, 1, 0.0}}), CasesOf(*tuples, 2));
}

TEST(GetAttribute, WithoutATargetAWeightOfZeroProducesATupleOfWeightZero) {
  PreparedData data("WA", {{1.0, 3.0}, {1.0, 2.0}});
  ReplaceWeights(data, {0.0, 2.0});
  EXPECT_EQ((std::vector<WeightedValue>{{2.0, 2.0}, {3.0, 0.0}}),
            CasesOf(*data.Unsupervised(1), 2));
}

TEST(GetAttribute, ACaseWithAMissingWeightCountsNowhere) {
  PreparedData data("TWA", {{1.0, 1.0, 3.0}, {0.0, 1.0, 2.0}, {1.0, 1.0, 1.0}});
  ReplaceWeights(data, {2.0, kMissing, 5.0});
  const auto* tuples = data.Supervised(2, 0);
  EXPECT_EQ(2u, data.set.GetNumberOfValidTuples());
  EXPECT_EQ((std::vector<Case>{{1.0, 1, 5.0}, {3.0, 1, 2.0}}), CasesOf(*tuples, 2));
  EXPECT_EQ(7.0, data.set.GetWeightTotal());
  EXPECT_EQ(7.0, data.set.GetValidWeightTotal());
}

TEST(GetAttribute, WithoutATargetACaseWithAMissingWeightCountsNowhere) {
  PreparedData data("WA", {{1.0, 3.0}, {1.0, 2.0}});
  ReplaceWeights(data, {2.0, kMissing});
  EXPECT_EQ((std::vector<WeightedValue>{{3.0, 2.0}}), CasesOf(*data.Unsupervised(1), 1));
  EXPECT_EQ(1u, data.set.GetNumberOfValidTuples());
  EXPECT_EQ(2.0, data.set.GetWeightTotal());
}

TEST(GetAttribute, ANaNWeightIsAWeight) {
  PreparedData data("WA", {{kNaN, 3.0}, {1.0, 2.0}});
  const auto* tuples = data.Unsupervised(1);
  EXPECT_EQ(2u, data.set.GetNumberOfValidTuples());
  EXPECT_TRUE(std::isnan((*tuples)[1].weight));
  EXPECT_TRUE(std::isnan(data.set.GetValidWeightTotal()));
}

// ---- counts and extremes ----

TEST(GetAttribute, AnAttributeWhoseEveryValueIsMissingHasNoTuple) {
  PreparedData data("TA", {{0.0, kMissing}, {1.0, kMissing}});
  EXPECT_EQ(data.set.fSupervisedTuples.get(), data.Supervised(1, 0));
  EXPECT_EQ(0u, data.set.GetNumberOfValidTuples());
  EXPECT_EQ(0u, data.set.GetNumberOfDistinctValues());
  EXPECT_EQ(kMissing, data.set.GetMinimum());
  EXPECT_EQ(kMissing, data.set.GetMaximum());
  EXPECT_EQ(2.0, data.set.GetWeightTotal());
  EXPECT_EQ(0.0, data.set.GetValidWeightTotal());
}

TEST(GetAttribute, WithoutATargetAnAttributeWhoseEveryValueIsMissingHasNoTuple) {
  PreparedData data("AA", {{1.0, kMissing}, {2.0, kMissing}});
  data.Unsupervised(0);
  EXPECT_EQ(data.set.fUnsupervisedTuples.get(), data.Unsupervised(1));
  EXPECT_EQ(0u, data.set.GetNumberOfValidTuples());
  EXPECT_EQ(0u, data.set.GetNumberOfDistinctValues());
  EXPECT_EQ(kMissing, data.set.GetMinimum());
  EXPECT_EQ(kMissing, data.set.GetMaximum());
}

TEST(GetAttribute, EqualValuesAreOneDistinctValue) {
  PreparedData data("A", OneFieldEach({2.0, 1.0, 2.0, 2.0, 1.0}));
  data.Unsupervised(0);
  EXPECT_EQ(5u, data.set.GetNumberOfValidTuples());
  EXPECT_EQ(2u, data.set.GetNumberOfDistinctValues());
}

TEST(GetAttribute, OneCaseIsMinimumAndMaximum) {
  PreparedData data("TA", {{0.0, 7.5}});
  data.Supervised(1, 0);
  EXPECT_EQ(1u, data.set.GetNumberOfDistinctValues());
  EXPECT_EQ(7.5, data.set.GetMinimum());
  EXPECT_EQ(7.5, data.set.GetMaximum());
}

TEST(GetAttribute, BothZerosAreOneDistinctValue) {
  PreparedData data("A", OneFieldEach({0.0, -0.0, 0.0}));
  data.Unsupervised(0);
  EXPECT_EQ(1u, data.set.GetNumberOfDistinctValues());
  EXPECT_EQ(0.0, data.set.GetMinimum());
}

TEST(GetAttribute, InfinitiesAreExtremesLikeAnyOther) {
  PreparedData data("A", OneFieldEach({support::kInfinity, 1.0, -support::kInfinity}));
  data.Unsupervised(0);
  EXPECT_EQ(-support::kInfinity, data.set.GetMinimum());
  EXPECT_EQ(support::kInfinity, data.set.GetMaximum());
  EXPECT_EQ(3u, data.set.GetNumberOfDistinctValues());
}

// NaN is no missing value.  It comes last, and every NaN differs from its neighbour:
// 1, 2, NaN, NaN are 4 distinct values.
TEST(GetAttribute, NaNValuesAreKeptAndComeLast) {
  PreparedData data("TA", {{0.0, kNaN}, {1.0, 2.0}, {0.0, kNaN}, {1.0, 1.0}});
  const auto* tuples = data.Supervised(1, 0);
  EXPECT_EQ(4u, data.set.GetNumberOfValidTuples());
  EXPECT_EQ((std::vector<Case>{{1.0, 1, 1.0}, {2.0, 1, 1.0}}), CasesOf(*tuples, 2));
  EXPECT_EQ(4u, data.set.GetNumberOfDistinctValues());
  EXPECT_EQ(1.0, data.set.GetMinimum());
  EXPECT_TRUE(std::isnan(data.set.GetMaximum()));
}

TEST(GetAttribute, ManyNaNValuesDoNotUpsetTheOrderOfTheOthers) {
  Rows rows;
  for (int i = 0; i < 300; ++i) rows.push_back({i % 3 == 0 ? kNaN : static_cast<double>(300 - i)});
  PreparedData data("A", rows);
  const auto* tuples = data.Unsupervised(0);
  for (std::size_t i = 1; i < 200; ++i) ASSERT_LT((*tuples)[i - 1].value, (*tuples)[i].value);
  for (std::size_t i = 200; i < 300; ++i) ASSERT_TRUE(std::isnan((*tuples)[i].value));
}

TEST(GetAttribute, TargetCodesAreTruncatedTowardsZero) {
  PreparedData data("TA", {{2.75, 1.0}, {-0.5, 2.0}, {255.0, 3.0}});
  const auto* tuples = data.Supervised(1, 0);
  EXPECT_EQ((std::vector<Case>{{1.0, 2, 1.0}, {2.0, 0, 1.0}, {3.0, 255, 1.0}}),
            CasesOf(*tuples, 3));
  EXPECT_EQ(256, data.set.GetNumberOfClasses());
}

TEST(GetAttribute, TheNumberOfClassesIsTheLargestCodePlusOneEvenOfCasesThatAreNotValid) {
  PreparedData data("TA", {{0.0, 1.0}, {4.0, kMissing}});
  data.Supervised(1, 0);
  EXPECT_EQ(5, data.set.GetNumberOfClasses());
}

// ---- the vector keeps its full length ----

// In case order 9 and 8 fall on the places of 1 and 2.
TEST(GetAttribute, TheTailHoldsWhatAnEarlierAttributeLeftThere) {
  PreparedData data("TAA",
                    {{0.0, 4.0, kMissing}, {1.0, 3.0, 9.0}, {1.0, 2.0, kMissing}, {0.0, 1.0, 8.0}});
  data.Supervised(1, 0);
  const auto* tuples = data.Supervised(2, 0);
  ASSERT_EQ(4u, tuples->size());
  EXPECT_EQ(2u, data.set.GetNumberOfValidTuples());
  EXPECT_EQ((std::vector<Case>{{8.0, 0, 1.0}, {9.0, 1, 1.0}, {3.0, 1, 1.0}, {4.0, 0, 1.0}}),
            CasesOf(*tuples, 4));
  EXPECT_EQ(8.0, data.set.GetMinimum());
  EXPECT_EQ(9.0, data.set.GetMaximum());
  EXPECT_EQ(2u, data.set.GetNumberOfDistinctValues());
}

TEST(GetAttribute, TheTailHoldsZeroTuplesAtFirst) {
  PreparedData data("TA", {{0.0, kMissing}, {1.0, 9.0}, {1.0, kMissing}});
  const auto* tuples = data.Supervised(1, 0);
  ASSERT_EQ(3u, tuples->size());
  EXPECT_EQ((std::vector<Case>{{9.0, 1, 1.0}, {0.0, 0, 0.0}, {0.0, 0, 0.0}}), CasesOf(*tuples, 3));
}

TEST(GetAttribute, WithoutATargetTheTailIsKeptAsWell) {
  PreparedData data("AA", {{kMissing, 4.0}, {9.0, 3.0}, {kMissing, 2.0}});
  EXPECT_EQ((std::vector<WeightedValue>{{9.0, 1.0}, {0.0, 0.0}, {0.0, 0.0}}),
            CasesOf(*data.Unsupervised(0), 3));
  data.Unsupervised(1);
  const auto* tuples = data.Unsupervised(0);
  ASSERT_EQ(3u, tuples->size());
  EXPECT_EQ((std::vector<WeightedValue>{{9.0, 1.0}, {3.0, 1.0}, {4.0, 1.0}}), CasesOf(*tuples, 3));
}

TEST(GetAttribute, AReadThatTheDiskFailsIsAResourceFailureAndHandsOutNoTuples) {
  PreparedData data("TA", {{0.0, 5.0}, {1.0, 6.0}});
  BreakTheDiskUnder(data.File(1));
  std::vector<BINDataTuple>* tuples = nullptr;
  EXPECT_EQ(TQStatus(TQBinning::kResourceFailure, false), data.set.GetAttribute(1, 0, tuples));
  EXPECT_EQ(nullptr, tuples);
}

TEST(GetAttribute, WithoutATargetAReadThatTheDiskFailsIsAResourceFailureAsWell) {
  PreparedData data("A", OneFieldEach({1.0, 2.0, 3.0}));
  BreakTheDiskUnder(data.File(0));
  std::vector<EFBINDataTuple>* tuples = nullptr;
  EXPECT_EQ(TQStatus(TQBinning::kResourceFailure, false), data.set.GetAttribute(0, tuples));
  EXPECT_EQ(nullptr, tuples);
}

TEST(GetAttribute, StoresNoMoreTuplesThanCasesWereKeptHoweverLongTheColumnHasBecome) {
  PreparedData data("A", OneFieldEach({1.0, 2.0, 3.0}));
  support::WriteColumn(data.File(0), {1.0, 2.0, 3.0, 4.0, 5.0, 6.0});
  const auto* tuples = data.Unsupervised(0);
  EXPECT_EQ(3u, tuples->size());
  EXPECT_EQ(3u, data.set.GetNumberOfValidTuples());
  EXPECT_EQ(3.0, data.set.GetMaximum());
}

TEST(GetAttribute, StoresNoMoreTuplesThanCasesWereKeptHoweverLongTheTargetsColumnHasBecome) {
  PreparedData data("TA", {{0.0, 1.0}, {1.0, 2.0}});
  support::WriteColumn(data.File(0), {0.0, 1.0, 0.0, 1.0, 0.0});
  support::WriteColumn(data.File(1), {1.0, 2.0, 3.0, 4.0, 5.0});
  data.set.fTargetReader.reset(new BinaryRecordIterator(data.File(0)));
  const auto* tuples = data.Supervised(1, 0);
  EXPECT_EQ(2u, tuples->size());
  EXPECT_EQ(2u, data.set.GetNumberOfValidTuples());
}

// ---- files of different lengths ----

TEST(GetAttribute, TheTargetsFileDecidesHowManyCasesAreRead) {
  PreparedData data("TWA", {{0.0, 2.0, 1.0}, {1.0, 3.0, 2.0}, {0.0, 4.0, 3.0}});
  support::WriteColumn(data.File(0), {1.0, 0.0});
  data.set.fTargetReader.reset(new BinaryRecordIterator(data.File(0)));
  EXPECT_EQ((std::vector<Case>{{1.0, 1, 2.0}, {2.0, 0, 3.0}}), CasesOf(*data.Supervised(2, 0), 2));
  EXPECT_EQ(2u, data.set.GetNumberOfValidTuples());
  EXPECT_EQ(5.0, data.set.GetWeightTotal());
}

TEST(GetAttribute, WithoutATargetTheWeightsFileDecidesHowManyCasesAreRead) {
  PreparedData data("WA", {{2.0, 1.0}, {3.0, 2.0}, {4.0, 3.0}});
  ReplaceWeights(data, {5.0});
  EXPECT_EQ((std::vector<WeightedValue>{{1.0, 5.0}}), CasesOf(*data.Unsupervised(1), 1));
  EXPECT_EQ(1u, data.set.GetNumberOfValidTuples());
  EXPECT_EQ(5.0, data.set.GetWeightTotal());
}

// ---- threshold ----

TEST(DistinctThreshold, IsExceededByOneMoreDistinctValueThanItselfOnly) {
  Rows rows;
  for (int i = 0; i < 11; ++i) rows.push_back({0.0, std::min(i, 9) / 2.0, i / 2.0});
  PreparedData data("TAA", rows);
  data.set.SetThresholdDistinct(10);
  data.Supervised(2, 0);
  EXPECT_EQ(11u, data.set.GetNumberOfDistinctValues());
  EXPECT_TRUE(data.set.ExceedsThreshold());
  data.Supervised(1, 0);
  EXPECT_EQ(10u, data.set.GetNumberOfDistinctValues());
  EXPECT_FALSE(data.set.ExceedsThreshold());
}

TEST(DistinctThreshold, IsNeverExceededUnlessItIsSet) {
  PreparedData data("TA", {{0.0, 1.0}, {0.0, 2.0}, {0.0, 3.0}});
  data.Supervised(1, 0);
  EXPECT_FALSE(data.set.ExceedsThreshold());
  data.set.SetThresholdDistinct(0);
  data.Supervised(1, 0);
  EXPECT_FALSE(data.set.ExceedsThreshold());
}

TEST(DistinctThreshold, OfZeroIsIgnoredAndKeepsTheEarlierOne) {
  PreparedData data("TA", {{0.0, 1.0}, {0.0, 2.0}, {0.0, 3.0}});
  data.set.SetThresholdDistinct(2);
  data.set.SetThresholdDistinct(0);
  data.Supervised(1, 0);
  EXPECT_TRUE(data.set.ExceedsThreshold());
}

// ---- what only a foreign hand, or a subclass, can bring about ----

TEST(DataSetIsValidTarget, BeforeTheDataPassNoVariableHasAColumn) {
  Data data(Variables("TA"), {{0.0, 1.0}});
  bool isValid = true;
  EXPECT_EQ(Error(TQBinning::kInvalidIndex), data.set.IsValidTarget(0, isValid));
  EXPECT_TRUE(isValid);
}

TEST(GetAttribute, ATargetThatOthersHaveWrittenAndThatIsNoCodeCountsAsZero) {
  PreparedData data("AC", {{5.0, 1.0}, {6.0, 1.0}, {7.0, 1.0}, {8.0, 1.0}});
  support::WriteColumn(data.File(1), {1.0, 300.0, kNaN, -1.0});
  EXPECT_EQ((std::vector<Case>{{5.0, 1, 1.0}, {6.0, 0, 1.0}, {7.0, 0, 1.0}, {8.0, 0, 1.0}}),
            CasesOf(*data.Supervised(0, 1), 4));
}

TEST(ReadNextAttribute, CountsCasesThatItHasNowhereToStore) {
  PreparedData supervised("TA", {{0.0, 1.0}, {1.0, 2.0}});
  supervised.set.fSupervisedTuples.reset();
  EXPECT_EQ(TQStatus(), supervised.set.ReadNextAttribute(1));
  EXPECT_EQ(2u, supervised.set.GetNumberOfValidTuples());

  PreparedData unsupervised("A", OneFieldEach({1.0, 2.0, 3.0}));
  unsupervised.set.fUnsupervisedTuples.reset();
  EXPECT_EQ(TQStatus(), unsupervised.set.ReadNextAttribute(0));
  EXPECT_EQ(3u, unsupervised.set.GetNumberOfValidTuples());
}

// ---- tuples of equal value ----

TEST(GetAttribute, WithoutATargetTuplesOfEqualValueStandInTheOrderOfTheirWeights) {
  PreparedData data("AW", {{5.0, 3.0}, {5.0, 1.0}, {4.0, 9.0}, {5.0, 2.0}});
  EXPECT_EQ((std::vector<WeightedValue>{{4.0, 9.0}, {5.0, 1.0}, {5.0, 2.0}, {5.0, 3.0}}),
            CasesOf(*data.Unsupervised(0), 4));
}

// ---- a threshold that no setter would take ----

class ThresholdDataSet : public BINDataSet {
 public:
  using BINDataSet::BINDataSet;
  using BINDataSet::fThresholdSet;
};

TEST(DistinctThreshold, OfZeroIsNotExceededEvenWhenItIsMarkedAsSet) {
  Data data(Variables("TA"), {{0.0, 1.0}, {1.0, 2.0}});
  ThresholdDataSet set(data.records, data.preparator);
  ASSERT_EQ(TQStatus(), set.HandleDataFile());
  set.fThresholdSet = true;
  std::vector<BINDataTuple>* tuples = nullptr;
  EXPECT_EQ(TQStatus(), set.GetAttribute(1, 0, tuples));
  EXPECT_EQ(2u, set.GetNumberOfDistinctValues());
  EXPECT_FALSE(set.ExceedsThreshold());
}

// ---- a variable that is not there ----

// Its cases are those of the target or the weight, where there is one.
TEST(GetAttribute, OfAVariableBeyondTheListReadsZerosForAsManyCasesAsOthersHave) {
  testing::internal::CaptureStdout();
  PreparedData supervised("TA", {{1.0, 5.0}, {0.0, 6.0}});
  EXPECT_EQ((std::vector<Case>{{0.0, 1, 1.0}, {0.0, 0, 1.0}}),
            CasesOf(*supervised.Supervised(9, 0), 2));
  PreparedData unsupervised("A", OneFieldEach({5.0, 6.0}));
  unsupervised.Unsupervised(9);
  EXPECT_EQ(0u, unsupervised.set.GetNumberOfValidTuples());
  const std::string told = "Error: file handle is NULL in BinaryRecordIterator constructor";
  EXPECT_EQ(told + told, testing::internal::GetCapturedStdout());
}

}  // namespace
