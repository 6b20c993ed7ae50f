#include "tqbinning/bindataset.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "common/runmemory.h"
#include "data/sortedvalues.h"
#include "data/sortmemory.h"
#include "data/variables.h"
#include "support/hostfakes.h"
#include "support/memoryrecords.h"
#include "support/scratchdirectory.h"
#include "tqbinning/binaryrecorditerator.h"
#include "tqbinning/bincancelinfo.h"
#include "tqbinning/bindatapreparator.h"
#include "tqbinning/binvarlist.h"

namespace {

using support::Error;
using support::kMissing;
using support::kNaN;
using support::Rows;
using support::Variables;
using support::Warning;
using TQBinning::BinaryRecordIterator;
using TQBinning::SortedValues;
using TQBinning::TQStatus;
using Doubles = std::vector<double>;

class DataSet : public BINDataSet {
 public:
  using BINDataSet::BINDataSet;
  using BINDataSet::fFileNames;
  using BINDataSet::fNumberOfCases;
  using BINDataSet::fSupervisedTuples;
  using BINDataSet::fTargetColumn;
  using BINDataSet::fTargetReader;
  using BINDataSet::fUnsupervisedTuples;
  using BINDataSet::fWeightColumn;
  using BINDataSet::fWeightReader;
  using BINDataSet::GetSorted;
};

class Preparator : public BINDataPreparator {
 public:
  using BINDataPreparator::BINDataPreparator;
  using BINDataPreparator::fKeptCases;
};

// Rows, their variables and a data set over them, in a directory of its own.
struct Data {
  Data(const BINVarList& variables, const Rows& rows, TQQueryCancel* query = nullptr)
      : list(variables),
        cancelInfo(query),
        records(rows),
        preparator(list, cancelInfo, scratch.Path(), nullptr, 0),
        set(records, preparator) {}

  support::ScratchDirectory scratch;
  BINVarList list;
  BINCancelInfo cancelInfo;
  support::MemoryRecords records;
  Preparator preparator;
  DataSet set;
};

// The same with the data pass behind it.  Kinds as in Variables.
struct PreparedData : Data {
  PreparedData(const std::string& kinds, const Rows& rows, int categories = 256)
      : Data(Variables(kinds, categories), rows) {
    EXPECT_EQ(TQStatus(), set.HandleDataFile());
  }

  std::vector<BINDataTuple>* Supervised(unsigned int attribute, unsigned int target) {
    std::vector<BINDataTuple>* tuples = nullptr;
    EXPECT_EQ(TQStatus(), set.GetAttribute(attribute, target, tuples));
    return tuples;
  }
  std::vector<EFBINDataTuple>* Unsupervised(unsigned int attribute) {
    std::vector<EFBINDataTuple>* tuples = nullptr;
    EXPECT_EQ(TQStatus(), set.GetAttribute(attribute, tuples));
    return tuples;
  }
  std::string File(std::size_t column) const { return preparator.GetFileNames()[column]; }
};

using Case = std::tuple<double, int, double>;  // value, target, weight

std::vector<Case> CasesOf(const std::vector<BINDataTuple>& tuples, std::size_t count) {
  std::vector<Case> cases;
  for (std::size_t i = 0; i < count; ++i) {
    cases.emplace_back(tuples[i].value, tuples[i].target, tuples[i].weight);
  }
  return cases;
}

using WeightedValue = std::pair<double, double>;

std::vector<WeightedValue> CasesOf(const std::vector<EFBINDataTuple>& tuples, std::size_t count) {
  std::vector<WeightedValue> cases;
  for (std::size_t i = 0; i < count; ++i) cases.emplace_back(tuples[i].value, tuples[i].weight);
  return cases;
}

Rows OneFieldEach(const Doubles& values) {
  Rows rows;
  for (const double value : values) rows.push_back({value});
  return rows;
}

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

// A directory opens like a file, and every read of it fails.
void BreakTheDiskUnder(const std::string& file) {
  std::filesystem::remove(file);
  std::filesystem::create_directory(file);
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

// ---- GetSorted ----

using SortMemoryOfARun = TQBinning::RunMemory<TQBinning::SortMemory>;

struct Sorted {
  Sorted(DataSet& set, unsigned int attribute) : status(set.GetSorted(attribute, tuples, sorted)) {}

  Doubles Values() const { return {sorted.values.begin(), sorted.values.end()}; }

  std::vector<EFBINDataTuple>* tuples = nullptr;
  SortedValues sorted;
  TQStatus status;
};

const std::vector<WeightedValue> kTwoBeforeThreeAndFive{{2.0, 1.0}, {3.0, 1.0}, {5.0, 1.0}};

// One column that is whole and one with a single value, whose tuple is followed by those
// that the whole one left.
PreparedData WholeAndSingle() { return {"AA", {{5.0, kMissing}, {1.0, 2.0}, {3.0, kMissing}}}; }

TEST(GetSorted, HandsOutTheValuesOfAWholeColumnAndTellsOfThem) {
  PreparedData data("A", OneFieldEach({5.0, -0.0, 3.0, 5.0}));
  const SortMemoryOfARun memory;
  const Sorted got(data.set, 0);
  EXPECT_EQ(TQStatus(), got.status);
  EXPECT_EQ((Doubles{0.0, 3.0, 5.0, 5.0}), got.Values());
  EXPECT_FALSE(std::signbit(got.Values()[0]));
  EXPECT_EQ(data.set.fUnsupervisedTuples.get(), got.tuples);
  EXPECT_EQ(4u, data.set.GetNumberOfValidTuples());
  EXPECT_EQ(3u, data.set.GetNumberOfDistinctValues());
  EXPECT_EQ(4.0, data.set.GetValidWeightTotal());
  EXPECT_EQ(4.0, data.set.GetWeightTotal());
  EXPECT_EQ(0.0, data.set.GetMinimum());
  EXPECT_EQ(5.0, data.set.GetMaximum());
}

TEST(GetSorted, HandsOutTuplesWhereValuesWouldNotDo) {
  const auto expectTuples = [](PreparedData data, unsigned int attribute) {
    const SortMemoryOfARun memory;
    const Sorted got(data.set, attribute);
    const auto* const tuples = data.Unsupervised(attribute);
    ASSERT_EQ(tuples, got.tuples);
    EXPECT_EQ(Doubles(), got.Values());
    EXPECT_EQ(TQStatus(), got.status);
  };
  expectTuples({"A", OneFieldEach({5.0, kMissing, 3.0})}, 0);
  expectTuples({"A", OneFieldEach({kMissing, kMissing})}, 0);
  expectTuples({"A", OneFieldEach({5.0, kNaN, 3.0})}, 0);
  expectTuples({"WA", {{1.0, 5.0}, {1.0, 3.0}}}, 1);
  expectTuples({"TA", {{1.0, 5.0}, {0.0, 3.0}}}, 1);
}

TEST(GetSorted, WithoutTheMemoryOfARunHandsOutTuples) {
  PreparedData data("A", OneFieldEach({5.0, 1.0}));
  const Sorted got(data.set, 0);
  EXPECT_EQ(Doubles(), got.Values());
  EXPECT_EQ((std::vector<WeightedValue>{{1.0, 1.0}, {5.0, 1.0}}), CasesOf(*got.tuples, 2));
}

TEST(GetSorted, LeavesWhatTheColumnsTuplesWouldHaveLeft) {
  PreparedData data = WholeAndSingle();
  const SortMemoryOfARun memory;
  EXPECT_EQ((Doubles{1.0, 3.0, 5.0}), Sorted(data.set, 0).Values());
  const Sorted got(data.set, 1);
  EXPECT_EQ(Doubles(), got.Values());
  EXPECT_EQ(kTwoBeforeThreeAndFive, CasesOf(*got.tuples, 3));
  EXPECT_EQ(2.0, data.set.GetMinimum());
  EXPECT_EQ(2.0, data.set.GetMaximum());
}

TEST(GetSorted, LeavesTheSameToALaterRun) {
  PreparedData data = WholeAndSingle();
  {
    const SortMemoryOfARun memory;
    EXPECT_EQ(3u, Sorted(data.set, 0).Values().size());
  }
  const SortMemoryOfARun memory;
  EXPECT_EQ(kTwoBeforeThreeAndFive, CasesOf(*Sorted(data.set, 1).tuples, 3));
}

TEST(GetSorted, LeavesTheSameWhenAnotherDataSetUsesTheMemoryMeanwhile) {
  PreparedData data = WholeAndSingle();
  PreparedData other("A", OneFieldEach({70.0, 90.0, 80.0, 60.0}));
  const SortMemoryOfARun memory;
  EXPECT_EQ(3u, Sorted(data.set, 0).Values().size());
  EXPECT_EQ((Doubles{60.0, 70.0, 80.0, 90.0}), Sorted(other.set, 0).Values());
  EXPECT_EQ(kTwoBeforeThreeAndFive, CasesOf(*Sorted(data.set, 1).tuples, 3));
}

TEST(GetSorted, LeavesTheSameToWhoAsksForTuples) {
  PreparedData data = WholeAndSingle();
  const SortMemoryOfARun memory;
  EXPECT_EQ(3u, Sorted(data.set, 0).Values().size());
  EXPECT_EQ(kTwoBeforeThreeAndFive, CasesOf(*data.Unsupervised(1), 3));
}

TEST(GetSorted, LeavesTheSameToReadNextAttribute) {
  PreparedData data = WholeAndSingle();
  const SortMemoryOfARun memory;
  EXPECT_EQ(3u, Sorted(data.set, 0).Values().size());
  EXPECT_EQ(TQStatus(), data.set.ReadNextAttribute(1));
  EXPECT_EQ(kTwoBeforeThreeAndFive, CasesOf(*data.set.fUnsupervisedTuples, 3));
}

TEST(GetSorted, AReadThatTheDiskFailsIsAResourceFailure) {
  PreparedData data("A", OneFieldEach({1.0, 2.0, 3.0}));
  BreakTheDiskUnder(data.File(0));
  const SortMemoryOfARun memory;
  const Sorted got(data.set, 0);
  EXPECT_EQ(TQStatus(TQBinning::kResourceFailure, false), got.status);
  EXPECT_EQ(nullptr, got.tuples);
}

TEST(GetSorted, ADiskThatFailsWhenTuplesAreToBeLeftIsAResourceFailure) {
  PreparedData data = WholeAndSingle();
  {
    const SortMemoryOfARun memory;
    EXPECT_EQ(3u, Sorted(data.set, 0).Values().size());
  }
  BreakTheDiskUnder(data.File(0));
  const SortMemoryOfARun memory;
  const Sorted got(data.set, 1);
  EXPECT_EQ(TQStatus(TQBinning::kResourceFailure, false), got.status);
  EXPECT_EQ(nullptr, got.tuples);
}

TEST(GetAttribute, ADiskThatFailsWhenTuplesAreToBeLeftIsAResourceFailure) {
  PreparedData data = WholeAndSingle();
  const SortMemoryOfARun memory;
  EXPECT_EQ(3u, Sorted(data.set, 0).Values().size());
  BreakTheDiskUnder(data.File(0));
  std::vector<EFBINDataTuple>* tuples = nullptr;
  EXPECT_EQ(TQStatus(TQBinning::kResourceFailure, false), data.set.GetAttribute(1, tuples));
  EXPECT_EQ(nullptr, tuples);
}

TEST(GetAttribute, OfAPairFailsWithTheDiskWhenTuplesAreToBeLeft) {
  PreparedData data("AB", {{5.0, 0.0}, {1.0, 1.0}});
  const SortMemoryOfARun memory;
  EXPECT_EQ(2u, Sorted(data.set, 0).Values().size());
  BreakTheDiskUnder(data.File(0));
  std::vector<BINDataTuple>* tuples = nullptr;
  EXPECT_EQ(TQStatus(TQBinning::kResourceFailure, false), data.set.GetAttribute(0, 1, tuples));
  EXPECT_EQ(nullptr, tuples);
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

// ---- targets ----

TEST(GetAttributeTarget, AnotherTargetSwitchesTheReaderAndTheSameOneKeepsAndRewindsIt) {
  PreparedData data("TCA", {{0.0, 2.0, 1.0}, {1.0, 0.0, 2.0}});
  EXPECT_EQ((std::vector<Case>{{1.0, 0, 1.0}, {2.0, 1, 1.0}}), CasesOf(*data.Supervised(2, 0), 2));
  EXPECT_EQ(0, data.set.fTargetColumn);
  EXPECT_EQ(2, data.set.GetNumberOfClasses());

  EXPECT_EQ((std::vector<Case>{{1.0, 2, 1.0}, {2.0, 0, 1.0}}), CasesOf(*data.Supervised(2, 1), 2));
  EXPECT_EQ(1, data.set.fTargetColumn);
  EXPECT_EQ(3, data.set.GetNumberOfClasses());

  const BinaryRecordIterator* reader = data.set.fTargetReader.get();
  EXPECT_EQ((std::vector<Case>{{1.0, 2, 1.0}, {2.0, 0, 1.0}}), CasesOf(*data.Supervised(2, 1), 2));
  EXPECT_EQ(reader, data.set.fTargetReader.get());

  EXPECT_EQ((std::vector<Case>{{1.0, 0, 1.0}, {2.0, 1, 1.0}}), CasesOf(*data.Supervised(2, 0), 2));
  EXPECT_EQ(0, data.set.fTargetColumn);
}

// The target variable's index differs from its column, 0.
TEST(GetAttributeTarget, IsGivenByItsIndexInTheList) {
  PreparedData data("AWT", {{5.0, 3.0, 1.0}, {4.0, 2.0, 0.0}});
  EXPECT_EQ((std::vector<Case>{{4.0, 0, 2.0}, {5.0, 1, 3.0}}), CasesOf(*data.Supervised(0, 2), 2));
}

void ExpectTargetNotUsable(PreparedData& data, unsigned int attribute, unsigned int target) {
  std::vector<BINDataTuple> before;
  std::vector<BINDataTuple>* tuples = &before;
  EXPECT_EQ(Error(TQBinning::kTargetNotUsable), data.set.GetAttribute(attribute, target, tuples));
  EXPECT_EQ(nullptr, tuples);
}

TEST(GetAttributeTarget, WhoseCodesWereOutOfRangeIsNotUsable) {
  PreparedData data("TCA", {{300.0, 1.0, 1.0}, {0.0, 2.0, 2.0}});
  ExpectTargetNotUsable(data, 2, 0);
}

TEST(GetAttributeTarget, WithACodeBeyondItsDeclaredCategoriesIsNotUsable) {
  PreparedData data("TA", {{3.0, 1.0}, {0.0, 2.0}}, 3);
  ExpectTargetNotUsable(data, 1, 0);
}

TEST(GetAttributeTarget, OutsideTheListIsNotUsable) {
  PreparedData data("TA", {{0.0, 1.0}});
  ExpectTargetNotUsable(data, 1, 2);
  ExpectTargetNotUsable(data, 1, static_cast<unsigned int>(-1));
}

TEST(GetAttributeTarget, ThatIsNotUsableLeavesTheDataSetReadyForAnother) {
  PreparedData data("TCA", {{0.0, 300.0, 1.0}, {1.0, 0.0, 2.0}});
  ExpectTargetNotUsable(data, 2, 1);
  EXPECT_EQ((std::vector<Case>{{1.0, 0, 1.0}, {2.0, 1, 1.0}}), CasesOf(*data.Supervised(2, 0), 2));
}

// The categorical attribute, used as target, is in column 0, where a list with a
// target of its own would have opened a reader.
TEST(GetAttributeTarget, WorksInAListThatHasNoTargetOfItsOwn) {
  PreparedData data("CA", {{1.0, 5.0}, {0.0, 4.0}, {kMissing, 3.0}});
  const auto* tuples = data.Supervised(1, 0);
  ASSERT_NE(nullptr, tuples);
  EXPECT_EQ(3u, tuples->size());
  EXPECT_EQ(2u, data.set.GetNumberOfValidTuples());
  EXPECT_EQ((std::vector<Case>{{4.0, 0, 1.0}, {5.0, 1, 1.0}}), CasesOf(*tuples, 2));
  EXPECT_EQ(3.0, data.set.GetWeightTotal());
  EXPECT_EQ(2, data.set.GetNumberOfClasses());
}

TEST(GetAttributeTarget, WorksInAWeightedListThatHasNoTargetOfItsOwn) {
  PreparedData data("AWC", {{5.0, 2.0, 1.0}, {4.0, 3.0, 0.0}});
  EXPECT_EQ((std::vector<Case>{{4.0, 0, 3.0}, {5.0, 1, 2.0}}), CasesOf(*data.Supervised(0, 2), 2));
  EXPECT_EQ(5.0, data.set.GetWeightTotal());
}

// ---- tuples without a target, of a list that has one ----

TEST(GetAttribute, WithoutATargetFromAListThatHasOneHandsOutNoTuples) {
  PreparedData data("TA", {{0.0, 1.0}, {kMissing, 2.0}, {1.0, kMissing}, {1.0, 5.0}});
  std::vector<EFBINDataTuple> before;
  std::vector<EFBINDataTuple>* tuples = &before;
  EXPECT_EQ(TQStatus(), data.set.GetAttribute(1, tuples));
  EXPECT_EQ(nullptr, tuples);
  EXPECT_EQ(0u, data.set.GetNumberOfDistinctValues());
  EXPECT_EQ(kMissing, data.set.GetMinimum());
  EXPECT_EQ(kMissing, data.set.GetMaximum());
  // Counted with the target's file all the same.
  EXPECT_EQ(2u, data.set.GetNumberOfValidTuples());
  EXPECT_EQ(4.0, data.set.GetWeightTotal());
  EXPECT_EQ(2.0, data.set.GetValidWeightTotal());
}

// ---- CreateBinTable ----

struct BinTable {
  TQStatus status;
  Doubles table;
};

BinTable TableOf(PreparedData& data, const Doubles& boundaries, bool rightClosed) {
  data.Supervised(1, 0);
  BinTable result;
  result.table = {99.0};  // is to be cleared
  result.status = data.set.CreateBinTable(&boundaries, rightClosed, result.table);
  return result;
}

TEST(CreateBinTable, AValueOnABoundaryBelongsToTheLowerBinWhenRightClosed) {
  PreparedData data("TA", {{0.0, 1.0}, {1.0, 5.0}, {0.0, 7.0}});
  const BinTable result = TableOf(data, {0.0, 5.0, 10.0}, true);
  EXPECT_EQ(TQStatus(), result.status);
  EXPECT_EQ((Doubles{1.0, 1.0, 1.0, 0.0}), result.table);
}

TEST(CreateBinTable, AValueOnABoundaryBelongsToTheUpperBinWhenLeftClosed) {
  PreparedData data("TA", {{0.0, 1.0}, {1.0, 5.0}, {0.0, 7.0}});
  const BinTable result = TableOf(data, {0.0, 5.0, 10.0}, false);
  EXPECT_EQ(TQStatus(), result.status);
  EXPECT_EQ((Doubles{1.0, 0.0, 1.0, 1.0}), result.table);
}

TEST(CreateBinTable, AddsTheWeightsOfEachClass) {
  PreparedData data("TAW", {{0.0, 1.0, 2.0}, {2.0, 2.0, 3.0}, {0.0, 3.0, 4.0}, {1.0, 8.0, 5.0}});
  const BinTable result = TableOf(data, {0.0, 5.0, 10.0}, true);
  EXPECT_EQ(TQStatus(), result.status);
  EXPECT_EQ((Doubles{6.0, 0.0, 3.0, 0.0, 5.0, 0.0}), result.table);
}

TEST(CreateBinTable, BinsWithoutTuplesBetweenOthersAreZero) {
  PreparedData data("TA", {{0.0, 0.5}, {1.0, 3.5}});
  const BinTable result = TableOf(data, {0.0, 1.0, 2.0, 3.0, 4.0}, true);
  EXPECT_EQ(TQStatus(), result.status);
  EXPECT_EQ((Doubles{1.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 1.0}), result.table);
}

TEST(CreateBinTable, TheFirstBoundaryIsNeverCompared) {
  PreparedData data("TA", {{0.0, -100.0}, {1.0, 1.0}});
  const BinTable result = TableOf(data, {50.0, 5.0}, true);
  EXPECT_EQ(TQStatus(), result.status);
  EXPECT_EQ((Doubles{1.0, 1.0}), result.table);
}

TEST(CreateBinTable, WithoutBoundariesIsAWarningAndLeavesTheTable) {
  PreparedData data("TA", {{0.0, 1.0}});
  data.Supervised(1, 0);
  const Doubles none;
  Doubles table = {99.0};
  EXPECT_EQ(Warning(TQBinning::kInvalidTable), data.set.CreateBinTable(nullptr, true, table));
  EXPECT_EQ(Warning(TQBinning::kInvalidTable), data.set.CreateBinTable(&none, true, table));
  EXPECT_EQ((Doubles{99.0}), table);
}

TEST(CreateBinTable, OneBoundaryMakesNoBinAndIsAWarning) {
  PreparedData data("TA", {{0.0, 1.0}, {1.0, 2.0}});
  const BinTable result = TableOf(data, {5.0}, true);
  EXPECT_EQ(Warning(TQBinning::kInvalidTable), result.status);
  EXPECT_EQ(Doubles{}, result.table);
}

// The walk leaves the last bin, so both bins have been stored.
TEST(CreateBinTable, AValueAboveTheLastBoundaryIsAWarning) {
  for (const bool rightClosed : {true, false}) {
    SCOPED_TRACE(rightClosed);
    PreparedData data("TA", {{0.0, 1.0}, {1.0, 6.0}, {1.0, 11.0}});
    const BinTable result = TableOf(data, {0.0, 5.0, 10.0}, rightClosed);
    EXPECT_EQ(Warning(TQBinning::kInvalidTable), result.status);
    EXPECT_EQ((Doubles{1.0, 0.0, 0.0, 1.0}), result.table);
  }
}

TEST(CreateBinTable, AValueOnTheLastBoundaryIsCoveredOnlyWhenRightClosed) {
  PreparedData data("TA", {{0.0, 1.0}, {1.0, 10.0}});
  EXPECT_EQ(TQStatus(), TableOf(data, {0.0, 5.0, 10.0}, true).status);
  EXPECT_EQ(Warning(TQBinning::kInvalidTable), TableOf(data, {0.0, 5.0, 10.0}, false).status);
}

// The row of the bin where the tuples run out is not stored.
TEST(CreateBinTable, TuplesThatRunOutBeforeTheLastBinAreAWarning) {
  PreparedData data("TA", {{0.0, 1.0}, {1.0, 6.0}, {1.0, 7.0}});
  const BinTable result = TableOf(data, {0.0, 5.0, 10.0, 15.0}, true);
  EXPECT_EQ(Warning(TQBinning::kInvalidTable), result.status);
  EXPECT_EQ((Doubles{1.0, 0.0, 0.0, 0.0, 0.0, 0.0}), result.table);
}

TEST(CreateBinTable, ANaNValueIsCoveredByNoBoundary) {
  PreparedData data("TA", {{0.0, 1.0}, {1.0, kNaN}});
  const BinTable result = TableOf(data, {0.0, 5.0, 10.0}, true);
  EXPECT_EQ(Warning(TQBinning::kInvalidTable), result.status);
  EXPECT_EQ((Doubles{1.0, 0.0, 0.0, 0.0}), result.table);
}

TEST(CreateBinTable, WithoutTuplesOnlyASingleBinIsCovered) {
  PreparedData data("TA", {{0.0, kMissing}, {1.0, kMissing}});
  const BinTable one = TableOf(data, {0.0, 5.0}, true);
  EXPECT_EQ(TQStatus(), one.status);
  EXPECT_EQ((Doubles{0.0, 0.0}), one.table);
  const BinTable two = TableOf(data, {0.0, 5.0, 10.0}, true);
  EXPECT_EQ(Warning(TQBinning::kInvalidTable), two.status);
  EXPECT_EQ((Doubles{0.0, 0.0, 0.0, 0.0}), two.table);
}

TEST(CreateBinTable, TheTailOfTheVectorDoesNotCount) {
  PreparedData data("TAA", {{0.0, 1.0, 20.0}, {1.0, kMissing, 30.0}, {0.0, 6.0, 40.0}});
  data.Supervised(2, 0);
  const BinTable result = TableOf(data, {0.0, 5.0, 10.0}, true);
  EXPECT_EQ(TQStatus(), result.status);
  EXPECT_EQ((Doubles{1.0, 0.0, 1.0, 0.0}), result.table);
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

TEST(CreateBinTable, ACodeThatOthersHaveWrittenBeyondTheLargestCountsInNoClass) {
  PreparedData data("AC", {{5.0, 1.0}, {6.0, 0.0}});
  support::WriteColumn(data.File(1), {1.0, 2.0});
  data.Supervised(0, 1);
  Doubles table;
  const Doubles boundaries{0.0, 10.0};
  EXPECT_EQ(TQStatus(), data.set.CreateBinTable(&boundaries, true, table));
  EXPECT_EQ((Doubles{0.0, 1.0}), table);
}

TEST(CreateBinTable, WithoutTuplesThatHaveATargetOnlyASingleBinIsCovered) {
  PreparedData data("A", OneFieldEach({1.0, 2.0}));
  data.Unsupervised(0);
  Doubles table{99.0};
  const Doubles one{0.0, 5.0};
  EXPECT_EQ(TQStatus(), data.set.CreateBinTable(&one, true, table));
  EXPECT_EQ(Doubles{}, table);  // no target, no class
  const Doubles two{0.0, 5.0, 10.0};
  EXPECT_EQ(Warning(TQBinning::kInvalidTable), data.set.CreateBinTable(&two, true, table));
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
