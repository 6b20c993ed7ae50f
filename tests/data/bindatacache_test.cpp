#include "tqbinning/bindatacache.h"

#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "support/memoryrecords.h"

namespace {

using support::kMissing;
using Doubles = std::vector<double>;

// 2 rows of 3: 1 2 3 / 4 5 6.
BINDataCache OneToSix() {
  BINDataCache cache(2, 3);
  EXPECT_TRUE(cache.SetRow(0, {1.0, 2.0, 3.0}));
  EXPECT_TRUE(cache.SetRow(1, {4.0, 5.0, 6.0}));
  return cache;
}

Doubles RowOf(const BINDataCache& cache, int row) {
  Doubles values;
  EXPECT_TRUE(cache.GetRow(row, values));
  return values;
}

TEST(BINDataCache, IsBornWithoutRowsAndColumns) {
  BINDataCache cache;
  EXPECT_EQ(0, cache.GetNRows());
  EXPECT_EQ(0, cache.GetNCols());
  EXPECT_EQ(0, cache.GetStatus());
  EXPECT_FALSE(cache.IsAvailable());
  EXPECT_EQ(kMissing, cache.GetElem(0, 0));
  EXPECT_EQ(nullptr, cache.GetRowPtr(0));
}

TEST(BINDataCache, OfGivenSizeHoldsZerosAndNothingFilled) {
  BINDataCache cache(2, 3);
  EXPECT_EQ(2, cache.GetNRows());
  EXPECT_EQ(3, cache.GetNCols());
  EXPECT_EQ((Doubles{0.0, 0.0, 0.0}), RowOf(cache, 0));
  EXPECT_EQ((Doubles{0.0, 0.0, 0.0}), RowOf(cache, 1));
  EXPECT_EQ(0u, cache.GetRowSize(0));
  EXPECT_EQ(0u, cache.GetRowSize(1));
  EXPECT_EQ(BINDataCache::kHasRoom, cache.GetStatus());
}

TEST(BINDataCache, OfANegativeSizeCountsItAsZero) {
  const BINDataCache cache(-1, 3);
  EXPECT_EQ(0, cache.GetNRows());
  const BINDataCache other(3, -1);
  EXPECT_EQ(0, other.GetNCols());
}

TEST(BINDataCache, AnElementOutOfRangeIsMissing) {
  const BINDataCache cache = OneToSix();
  EXPECT_EQ(kMissing, cache.GetElem(-1, 0));
  EXPECT_EQ(kMissing, cache.GetElem(0, 3));
  EXPECT_EQ(kMissing, cache.GetElem(2, 0));
  EXPECT_EQ(kMissing, cache.GetElem(0, -1));
  EXPECT_EQ(1.0, cache.GetElem(0, 0));
  EXPECT_EQ(6.0, cache.GetElem(1, 2));
}

TEST(BINDataCache, SettingAnElementChangesThatOneOnly) {
  BINDataCache cache = OneToSix();
  EXPECT_TRUE(cache.SetElem(1, 0, 9.0));
  EXPECT_EQ((Doubles{1.0, 2.0, 3.0}), RowOf(cache, 0));
  EXPECT_EQ((Doubles{9.0, 5.0, 6.0}), RowOf(cache, 1));
  EXPECT_EQ(0u, cache.GetRowSize(1));  // only AddElem counts
}

TEST(BINDataCache, SettingAnElementOutOfRangeIsRefusedAndChangesNothing) {
  BINDataCache cache = OneToSix();
  EXPECT_FALSE(cache.SetElem(-1, 0, 9.0));
  EXPECT_FALSE(cache.SetElem(2, 0, 9.0));
  EXPECT_FALSE(cache.SetElem(0, -1, 9.0));
  EXPECT_FALSE(cache.SetElem(0, 3, 9.0));  // would be the first of row 1
  EXPECT_EQ((Doubles{1.0, 2.0, 3.0}), RowOf(cache, 0));
  EXPECT_EQ((Doubles{4.0, 5.0, 6.0}), RowOf(cache, 1));
}

TEST(BINDataCache, TheSecondValueAddedToARowOfTwoMakesTheBlockAvailableUntilItIsFlushed) {
  BINDataCache cache(2, 2);
  EXPECT_TRUE(cache.AddElem(1, 7.0));
  EXPECT_FALSE(cache.IsAvailable());
  EXPECT_TRUE(cache.AddElem(1, 8.0));
  EXPECT_EQ(2, cache.GetStatus());
  EXPECT_TRUE(cache.IsAvailable());
  cache.Flush();
  EXPECT_FALSE(cache.IsAvailable());
  EXPECT_EQ(0, cache.GetStatus());
  EXPECT_EQ(0u, cache.GetRowSize(0));
  EXPECT_EQ(0u, cache.GetRowSize(1));
}

TEST(BINDataCache, AddedValuesFollowOneAnotherInTheirRow) {
  BINDataCache cache(2, 3);
  EXPECT_TRUE(cache.AddElem(1, 7.0));
  EXPECT_TRUE(cache.AddElem(1, 8.0));
  EXPECT_TRUE(cache.AddElem(0, 9.0));
  EXPECT_EQ(1u, cache.GetRowSize(0));
  EXPECT_EQ(2u, cache.GetRowSize(1));
  EXPECT_EQ((Doubles{9.0, 0.0, 0.0}), RowOf(cache, 0));
  EXPECT_EQ((Doubles{7.0, 8.0, 0.0}), RowOf(cache, 1));
}

TEST(BINDataCache, OneFullRowIsEnoughForAvailability) {
  BINDataCache cache(2, 1);
  EXPECT_TRUE(cache.AddElem(0, 1.0));
  EXPECT_TRUE(cache.IsAvailable());
  EXPECT_TRUE(cache.AddElem(1, 2.0));
  EXPECT_TRUE(cache.IsAvailable());
}

TEST(BINDataCache, AddingToARowOutOfRangeIsRefused) {
  BINDataCache cache(1, 1);
  EXPECT_FALSE(cache.AddElem(-1, 1.0));
  EXPECT_FALSE(cache.AddElem(1, 1.0));
  EXPECT_FALSE(cache.IsAvailable());
  EXPECT_EQ(0u, cache.GetRowSize(0));
}

TEST(BINDataCache, FlushLeavesTheDataAndTheNextValuesOverwriteThem) {
  BINDataCache cache(1, 2);
  EXPECT_TRUE(cache.AddElem(0, 7.0));
  EXPECT_TRUE(cache.AddElem(0, 8.0));
  cache.Flush();
  EXPECT_EQ((Doubles{7.0, 8.0}), RowOf(cache, 0));
  EXPECT_TRUE(cache.AddElem(0, 9.0));
  EXPECT_EQ((Doubles{9.0, 8.0}), RowOf(cache, 0));
  EXPECT_EQ(1u, cache.GetRowSize(0));
}

TEST(BINDataCache, ARowOfTheWrongLengthIsRefusedAndChangesNothing) {
  BINDataCache cache = OneToSix();
  EXPECT_FALSE(cache.SetRow(0, {8.0, 9.0}));
  EXPECT_FALSE(cache.SetRow(0, {8.0, 9.0, 10.0, 11.0}));
  EXPECT_FALSE(cache.SetRow(-1, {7.0, 8.0, 9.0}));
  EXPECT_FALSE(cache.SetRow(2, {7.0, 8.0, 9.0}));
  EXPECT_EQ((Doubles{1.0, 2.0, 3.0}), RowOf(cache, 0));
  EXPECT_EQ((Doubles{4.0, 5.0, 6.0}), RowOf(cache, 1));
}

TEST(BINDataCache, AColumnIsSetInEveryRow) {
  BINDataCache cache = OneToSix();
  EXPECT_TRUE(cache.SetCol(1, {8.0, 9.0}));
  EXPECT_EQ((Doubles{1.0, 8.0, 3.0}), RowOf(cache, 0));
  EXPECT_EQ((Doubles{4.0, 9.0, 6.0}), RowOf(cache, 1));
}

TEST(BINDataCache, AColumnOfTheWrongLengthIsRefusedAndChangesNothing) {
  BINDataCache cache = OneToSix();
  EXPECT_FALSE(cache.SetCol(0, {8.0}));
  EXPECT_FALSE(cache.SetCol(0, {8.0, 9.0, 10.0}));
  EXPECT_FALSE(cache.SetCol(-1, {8.0, 9.0}));
  EXPECT_FALSE(cache.SetCol(3, {8.0, 9.0}));
  EXPECT_EQ((Doubles{1.0, 2.0, 3.0}), RowOf(cache, 0));
  EXPECT_EQ((Doubles{4.0, 5.0, 6.0}), RowOf(cache, 1));
}

TEST(BINDataCache, ARowIsReadWholeWhateverItsFillCountAndTheVectorResized) {
  const BINDataCache cache = OneToSix();
  Doubles shorter;
  Doubles longer(9, 7.0);
  EXPECT_TRUE(cache.GetRow(1, shorter));
  EXPECT_TRUE(cache.GetRow(1, longer));
  EXPECT_EQ((Doubles{4.0, 5.0, 6.0}), shorter);
  EXPECT_EQ((Doubles{4.0, 5.0, 6.0}), longer);
}

TEST(BINDataCache, AColumnIsReadWholeAndTheVectorResized) {
  const BINDataCache cache = OneToSix();
  Doubles shorter;
  Doubles longer(9, 7.0);
  EXPECT_TRUE(cache.GetCol(2, shorter));
  EXPECT_TRUE(cache.GetCol(2, longer));
  EXPECT_EQ((Doubles{3.0, 6.0}), shorter);
  EXPECT_EQ((Doubles{3.0, 6.0}), longer);
}

TEST(BINDataCache, ReadingARowOrColumnOutOfRangeIsRefusedAndLeavesTheVector) {
  const BINDataCache cache = OneToSix();
  Doubles values = {7.0};
  EXPECT_FALSE(cache.GetRow(-1, values));
  EXPECT_FALSE(cache.GetRow(2, values));
  EXPECT_FALSE(cache.GetCol(-1, values));
  EXPECT_FALSE(cache.GetCol(3, values));
  EXPECT_EQ((Doubles{7.0}), values);
}

TEST(BINDataCache, ARowPointerReachesTheRowInPlace) {
  BINDataCache cache = OneToSix();
  double* row = cache.GetRowPtr(1);
  ASSERT_NE(nullptr, row);
  EXPECT_EQ(4.0, row[0]);
  row[2] = 9.0;
  EXPECT_EQ(9.0, cache.GetElem(1, 2));
  const BINDataCache& constant = cache;
  EXPECT_EQ(row, constant.GetRowPtr(1));
}

TEST(BINDataCache, ARowPointerOutOfRangeIsNull) {
  BINDataCache cache = OneToSix();
  const BINDataCache& constant = cache;
  EXPECT_EQ(nullptr, cache.GetRowPtr(-1));
  EXPECT_EQ(nullptr, cache.GetRowPtr(2));
  EXPECT_EQ(nullptr, constant.GetRowPtr(-1));
  EXPECT_EQ(nullptr, constant.GetRowPtr(2));
}

TEST(BINDataCache, TheNextElementOfAColumnLiesOneRowLengthFurther) {
  BINDataCache cache = OneToSix();
  double* column = cache.GetColPtr(1);
  ASSERT_NE(nullptr, column);
  EXPECT_EQ(2.0, column[0]);
  EXPECT_EQ(5.0, column[3]);
  EXPECT_EQ(cache.GetRowPtr(0) + 1, column);
}

TEST(BINDataCache, AColumnPointerOutOfRangeIsNull) {
  BINDataCache cache = OneToSix();
  EXPECT_EQ(nullptr, cache.GetColPtr(-1));
  EXPECT_EQ(nullptr, cache.GetColPtr(3));
}

TEST(BINDataCache, TheSizeOfARowOutOfRangeIsZero) {
  BINDataCache cache(1, 2);
  EXPECT_TRUE(cache.AddElem(0, 1.0));
  EXPECT_EQ(1u, cache.GetRowSize(0));
  EXPECT_EQ(0u, cache.GetRowSize(-1));
  EXPECT_EQ(0u, cache.GetRowSize(1));
}

TEST(BINDataCache, SetStatusStoresWhateverItIsGivenAndOnlyTwoIsAvailable) {
  BINDataCache cache(1, 2);
  for (const int status : {1, 2, 3, -1, 0}) {
    cache.SetStatus(static_cast<BINDataCache::CacheStatus>(status));
    EXPECT_EQ(status, static_cast<int>(cache.GetStatus()));
    EXPECT_EQ(status == 2, cache.IsAvailable());
  }
}

TEST(BINDataCache, ResizeToNothingSucceedsAndLeavesAnEmptyCache) {
  BINDataCache cache = OneToSix();
  EXPECT_TRUE(cache.Resize(0, 0));
  EXPECT_EQ(0, cache.GetNRows());
  EXPECT_EQ(0, cache.GetNCols());
  EXPECT_EQ(kMissing, cache.GetElem(0, 0));
  EXPECT_EQ(0u, cache.GetRowSize(0));
}

TEST(BINDataCache, ResizeGrowsTheBlockByZerosAndKeepsTheFillCounts) {
  BINDataCache cache(1, 2);
  EXPECT_TRUE(cache.AddElem(0, 7.0));
  EXPECT_TRUE(cache.AddElem(0, 8.0));
  EXPECT_TRUE(cache.Resize(2, 2));
  EXPECT_EQ(0, cache.GetStatus());
  EXPECT_EQ((Doubles{7.0, 8.0}), RowOf(cache, 0));
  EXPECT_EQ((Doubles{0.0, 0.0}), RowOf(cache, 1));
  EXPECT_EQ(2u, cache.GetRowSize(0));
  EXPECT_EQ(0u, cache.GetRowSize(1));
}

// The block keeps its beginning: 1 2 3 4 becomes 2 rows of 2.
TEST(BINDataCache, ResizeShrinksTheBlockFromItsEnd) {
  BINDataCache cache = OneToSix();
  EXPECT_TRUE(cache.Resize(2, 2));
  EXPECT_EQ(2, cache.GetNCols());
  EXPECT_EQ((Doubles{1.0, 2.0}), RowOf(cache, 0));
  EXPECT_EQ((Doubles{3.0, 4.0}), RowOf(cache, 1));
}

TEST(BINDataCache, ResizeToANegativeNumberIsRefusedAndChangesNothing) {
  BINDataCache cache = OneToSix();
  cache.SetStatus(BINDataCache::kBlockReady);
  EXPECT_FALSE(cache.Resize(-1, 3));
  EXPECT_FALSE(cache.Resize(2, -1));
  EXPECT_EQ(2, cache.GetNRows());
  EXPECT_EQ(3, cache.GetNCols());
  EXPECT_EQ(BINDataCache::kBlockReady, cache.GetStatus());
  EXPECT_EQ((Doubles{4.0, 5.0, 6.0}), RowOf(cache, 1));
}

// More than 2^60 doubles, which no vector can ever hold, in as few rows as possible.
TEST(BINDataCache, ResizeBeyondAllMemoryIsRefusedAndChangesNothing) {
  constexpr int kRows = (1 << 29) + 1;
  constexpr int kMostColumns = std::numeric_limits<int>::max();
  BINDataCache cache = OneToSix();
  EXPECT_TRUE(cache.AddElem(1, 9.0));
  EXPECT_FALSE(cache.Resize(kRows, kMostColumns));
  EXPECT_EQ(2, cache.GetNRows());
  EXPECT_EQ(3, cache.GetNCols());
  EXPECT_EQ(1u, cache.GetRowSize(1));
  EXPECT_EQ((Doubles{9.0, 5.0, 6.0}), RowOf(cache, 1));
}

TEST(BINDataCache, ACopyHasDimensionsStatusDataAndFillCountsOfItsOwn) {
  BINDataCache cache(2, 2);
  EXPECT_TRUE(cache.AddElem(1, 7.0));
  EXPECT_TRUE(cache.AddElem(1, 8.0));
  BINDataCache copy(cache);
  cache.Flush();
  EXPECT_TRUE(cache.SetElem(1, 0, 0.5));
  EXPECT_TRUE(cache.Resize(3, 1));
  EXPECT_EQ(2, copy.GetNRows());
  EXPECT_EQ(2, copy.GetNCols());
  EXPECT_TRUE(copy.IsAvailable());
  EXPECT_EQ((Doubles{7.0, 8.0}), RowOf(copy, 1));
  EXPECT_EQ(2u, copy.GetRowSize(1));
}

TEST(BINDataCache, AnAssignedCacheHasDimensionsStatusDataAndFillCountsOfItsOwn) {
  BINDataCache cache(2, 2);
  EXPECT_TRUE(cache.AddElem(1, 7.0));
  EXPECT_TRUE(cache.AddElem(1, 8.0));
  BINDataCache target(1, 5);
  target = cache;
  EXPECT_TRUE(target.SetElem(1, 0, 0.5));
  EXPECT_EQ(2, target.GetNRows());
  EXPECT_EQ(2, target.GetNCols());
  EXPECT_TRUE(target.IsAvailable());
  EXPECT_EQ((Doubles{0.5, 8.0}), RowOf(target, 1));
  EXPECT_EQ(2u, target.GetRowSize(1));
  EXPECT_EQ((Doubles{7.0, 8.0}), RowOf(cache, 1));
}

TEST(BINDataCache, AssignmentToItselfChangesNothing) {
  BINDataCache cache = OneToSix();
  EXPECT_TRUE(cache.AddElem(0, 9.0));
  const BINDataCache& itself = cache;
  cache = itself;
  EXPECT_EQ((Doubles{9.0, 2.0, 3.0}), RowOf(cache, 0));
  EXPECT_EQ((Doubles{4.0, 5.0, 6.0}), RowOf(cache, 1));
  EXPECT_EQ(1u, cache.GetRowSize(0));
}

}  // namespace

// ---- rows filled through their pointers

TEST(SetRowSize, DeclaresWhatWasWrittenThroughTheRowPointer) {
  BINDataCache cache(2, 3);
  cache.GetRowPtr(1)[0] = 4.0;
  cache.GetRowPtr(1)[1] = 5.0;
  EXPECT_TRUE(cache.SetRowSize(1, 2));
  EXPECT_EQ(0U, cache.GetRowSize(0));
  EXPECT_EQ(2U, cache.GetRowSize(1));
  EXPECT_FALSE(cache.IsAvailable());
  EXPECT_TRUE(cache.AddElem(1, 6.0));  // goes on behind
  EXPECT_EQ(6.0, cache.GetElem(1, 2));
}

TEST(SetRowSize, OfAllColumnsMakesTheBlockReady) {
  BINDataCache cache(1, 3);
  EXPECT_TRUE(cache.SetRowSize(0, 3));
  EXPECT_TRUE(cache.IsAvailable());
}

TEST(SetRowSize, RefusesARowOutOfRangeAndMoreValuesThanColumns) {
  BINDataCache cache(1, 3);
  EXPECT_FALSE(cache.SetRowSize(-1, 1));
  EXPECT_FALSE(cache.SetRowSize(1, 1));
  EXPECT_FALSE(cache.SetRowSize(0, 4));
  EXPECT_EQ(0U, cache.GetRowSize(0));
  EXPECT_FALSE(cache.IsAvailable());
}
