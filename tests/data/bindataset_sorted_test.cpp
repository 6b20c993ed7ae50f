#include "tqbinning/bindataset.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "data/prepareddata.h"

namespace {

using namespace data;

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

}  // namespace
