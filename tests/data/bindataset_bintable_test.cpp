#include "tqbinning/bindataset.h"

#include <gtest/gtest.h>

#include "data/prepareddata.h"

namespace {

using namespace data;

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

}  // namespace
