#include "tqbinning/binaryrecorditerator.h"

#include <bit>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/memoryrecords.h"
#include "support/scratchdirectory.h"

namespace {

using support::ScratchDirectory;
using support::WriteColumn;

class Iterator : public TQBinning::BinaryRecordIterator {
 public:
  using BinaryRecordIterator::BinaryRecordIterator;
  using BinaryRecordIterator::fCount;
  using BinaryRecordIterator::fCurrent;
  using BinaryRecordIterator::fFailReason;
  using BinaryRecordIterator::fFile;
  using BinaryRecordIterator::fLookahead;
  using BinaryRecordIterator::fPath;
};

// A column file in a directory of its own.
class BinaryRecordIteratorTest : public testing::Test {
 protected:
  std::string Column(const std::vector<double>& values) const {
    WriteColumn(fScratch.File("column"), values);
    return fScratch.File("column");
  }
  // The column followed by the first bytes of one more value.
  std::string ColumnAndBytes(const std::vector<double>& values, int bytes) const {
    const std::string path = Column(values);
    std::ofstream file(path, std::ios::binary | std::ios::app);
    for (int i = 0; i < bytes; ++i) file.put('x');
    return path;
  }

  ScratchDirectory fScratch;
};

std::vector<double> ReadAll(TQBinning::BinaryRecordIterator& iterator) {
  std::vector<double> values;
  while (iterator.HasMore()) values.push_back(iterator.Next());
  return values;
}

TEST_F(BinaryRecordIteratorTest, AFileOfZeroBytesIsAtItsEndAtOnce) {
  Iterator iterator(Column({}));
  EXPECT_FALSE(iterator.HasMore());
  EXPECT_EQ(1, iterator.GetFailReason());
  EXPECT_EQ(0.0, iterator.Next());
  EXPECT_NE(nullptr, iterator.fFile);
}

TEST_F(BinaryRecordIteratorTest, AFileOfWholeValuesYieldsExactlyThese) {
  Iterator iterator(Column({1.5, -2.5, 3.5}));
  EXPECT_EQ((std::vector<double>{1.5, -2.5, 3.5}), ReadAll(iterator));
  EXPECT_EQ(1, iterator.GetFailReason());
}

TEST_F(BinaryRecordIteratorTest, TheLastValueIsThereWhileHasMoreIsStillTrue) {
  Iterator iterator(Column({7.0, 8.0}));
  EXPECT_EQ(7.0, iterator.Next());
  EXPECT_TRUE(iterator.HasMore());
  EXPECT_EQ(0, iterator.GetFailReason());
  EXPECT_EQ(8.0, iterator.Next());
  EXPECT_FALSE(iterator.HasMore());
}

TEST_F(BinaryRecordIteratorTest, NextAfterTheEndReturnsZeroAndChangesNothing) {
  Iterator iterator(Column({7.0}));
  EXPECT_EQ(7.0, iterator.Next());
  EXPECT_EQ(0.0, iterator.Next());
  EXPECT_EQ(0.0, iterator.Next());
  EXPECT_EQ(7.0, iterator.fCurrent);
  EXPECT_EQ(1, iterator.GetFailReason());
}

TEST_F(BinaryRecordIteratorTest, APartialLastValueEndsTheReadingAsAFailureNotAsTheEnd) {
  for (int bytes = 1; bytes <= 7; ++bytes) {
    SCOPED_TRACE(bytes);
    Iterator iterator(ColumnAndBytes({1.0, 2.0}, bytes));
    EXPECT_EQ((std::vector<double>{1.0, 2.0}), ReadAll(iterator));
    EXPECT_EQ(3, iterator.GetFailReason());
  }
}

TEST_F(BinaryRecordIteratorTest, AFileThatHoldsNoWholeValueHasFailedFromTheStart) {
  for (int bytes = 1; bytes <= 7; ++bytes) {
    SCOPED_TRACE(bytes);
    Iterator iterator(ColumnAndBytes({}, bytes));
    EXPECT_EQ(3, iterator.GetFailReason());
    EXPECT_FALSE(iterator.HasMore());
    EXPECT_EQ(0.0, iterator.Next());
    EXPECT_EQ(3, iterator.NewPass());
  }
}

TEST_F(BinaryRecordIteratorTest, APartialLastValueFailsAgainInANewPass) {
  Iterator iterator(ColumnAndBytes({1.0}, 5));
  EXPECT_EQ((std::vector<double>{1.0}), ReadAll(iterator));
  EXPECT_EQ(0, iterator.NewPass());
  EXPECT_EQ((std::vector<double>{1.0}), ReadAll(iterator));
  EXPECT_EQ(3, iterator.GetFailReason());
}

TEST_F(BinaryRecordIteratorTest, ANewPassReturnsTheFirstValueAgain) {
  Iterator iterator(Column({1.0, 2.0, 3.0}));
  EXPECT_EQ(1.0, iterator.Next());
  EXPECT_EQ(2.0, iterator.Next());
  EXPECT_EQ(0, iterator.NewPass());
  EXPECT_EQ((std::vector<double>{1.0, 2.0, 3.0}), ReadAll(iterator));
}

TEST_F(BinaryRecordIteratorTest, ANewPassLeavesTheEndState) {
  Iterator iterator(Column({1.0, 2.0}));
  EXPECT_EQ(2u, ReadAll(iterator).size());
  EXPECT_EQ(0, iterator.NewPass());
  EXPECT_TRUE(iterator.HasMore());
  EXPECT_EQ((std::vector<double>{1.0, 2.0}), ReadAll(iterator));
}

TEST_F(BinaryRecordIteratorTest, ANewPassOverAnEmptyFileIsAtTheEndAgain) {
  Iterator iterator(Column({}));
  EXPECT_EQ(1, iterator.NewPass());
  EXPECT_FALSE(iterator.HasMore());
}

TEST_F(BinaryRecordIteratorTest, ANewPassOverAFinalIteratorDoesNothing) {
  Iterator iterator(Column({1.0, 2.0}));
  iterator.fFailReason = 4;
  EXPECT_EQ(4, iterator.NewPass());
  EXPECT_EQ(4, iterator.GetFailReason());
  EXPECT_FALSE(iterator.HasMore());
  EXPECT_EQ(0.0, iterator.Next());
  EXPECT_EQ(1.0, iterator.fLookahead);
}

TEST_F(BinaryRecordIteratorTest, AFileThatIsMissingIsToldOnStandardOutputWithoutALineEnd) {
  testing::internal::CaptureStdout();
  Iterator iterator(fScratch.File("missing"));
  EXPECT_EQ("Error: file handle is NULL in BinaryRecordIterator constructor",
            testing::internal::GetCapturedStdout());
  EXPECT_EQ(3, iterator.GetFailReason());
  EXPECT_FALSE(iterator.HasMore());
  EXPECT_EQ(0.0, iterator.Next());
  EXPECT_EQ(nullptr, iterator.fFile);
}

TEST_F(BinaryRecordIteratorTest, AFileThatOpensPrintsNothing) {
  const std::string path = Column({});
  testing::internal::CaptureStdout();
  const Iterator iterator(path);
  EXPECT_EQ("", testing::internal::GetCapturedStdout());
}

// A directory can be opened for reading, but reading it fails before any end.
TEST_F(BinaryRecordIteratorTest, AReadThatFailsIsAFailureNotTheEnd) {
  const Iterator iterator(fScratch.Path());
  EXPECT_NE(nullptr, iterator.fFile);
  EXPECT_EQ(3, iterator.GetFailReason());
}

TEST_F(BinaryRecordIteratorTest, TheConstructorReadsTheFirstValueAheadAndKeepsThePath) {
  const std::string path = Column({4.0, 5.0});
  const Iterator iterator(path);
  EXPECT_EQ(0.0, iterator.fCurrent);
  EXPECT_EQ(4.0, iterator.fLookahead);
  EXPECT_EQ(1, iterator.fCount);
  EXPECT_EQ(0, iterator.fFailReason);
  EXPECT_EQ(path, iterator.fPath);
}

TEST_F(BinaryRecordIteratorTest, NextRecordMovesTheValueReadAheadIntoPlace) {
  Iterator iterator(Column({4.0, 5.0}));
  EXPECT_EQ(0, iterator.NextRecord());
  EXPECT_EQ(4.0, iterator.fCurrent);
  EXPECT_EQ(5.0, iterator.fLookahead);
  EXPECT_EQ(1, iterator.NextRecord());
  EXPECT_EQ(5.0, iterator.fCurrent);
  EXPECT_EQ(1, iterator.GetFailReason());
}

TEST_F(BinaryRecordIteratorTest, NextRecordOfAFailedIteratorMovesTheValueButReadsNothing) {
  Iterator iterator(Column({4.0, 5.0}));
  iterator.fFailReason = 3;
  EXPECT_EQ(3, iterator.NextRecord());
  EXPECT_EQ(4.0, iterator.fCurrent);
  EXPECT_EQ(4.0, iterator.fLookahead);
}

TEST_F(BinaryRecordIteratorTest, EveryDoubleComesBackBitForBit) {
  const std::vector<double> values = {
      support::kNaN, -support::kNaN, support::kInfinity, -support::kInfinity, 0.0,
      -0.0,          5e-324,         support::kMissing};
  Iterator iterator(Column(values));
  for (const double value : values) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(iterator.Next()));
  }
  EXPECT_FALSE(iterator.HasMore());
}

TEST_F(BinaryRecordIteratorTest, AFileLongerThanAnyBufferIsReadWhole) {
  std::vector<double> values;
  for (int i = 0; i < 20000; ++i) values.push_back(i / 8.0);
  Iterator iterator(Column(values));
  EXPECT_EQ(values, ReadAll(iterator));
}

TEST_F(BinaryRecordIteratorTest, TheDestructorClosesTheFileButLeavesItThere) {
  const std::string path = Column({1.0});
  { const Iterator iterator(path); }
  EXPECT_TRUE(std::filesystem::exists(path));
  EXPECT_EQ((std::vector<double>{1.0}), support::ReadColumn(path));
}

TEST_F(BinaryRecordIteratorTest, TwoIteratorsReadTheSameFileIndependently) {
  const std::string path = Column({1.0, 2.0});
  Iterator one(path);
  Iterator other(path);
  EXPECT_EQ(1.0, one.Next());
  EXPECT_EQ(2.0, one.Next());
  EXPECT_EQ(1.0, other.Next());
}

TEST_F(BinaryRecordIteratorTest, ANewPassOverAFileThatNeverOpenedStaysFailed) {
  testing::internal::CaptureStdout();
  Iterator iterator(fScratch.File("missing"));
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(3, iterator.NewPass());
  EXPECT_FALSE(iterator.HasMore());
  EXPECT_EQ(3, iterator.GetFailReason());
}

}  // namespace

// ---- blocks: exactly the values that repeated Next would hand out

namespace {

std::vector<double> Count(std::size_t n) {
  std::vector<double> values;
  for (std::size_t i = 1; i <= n; ++i) values.push_back(static_cast<double>(i));
  return values;
}

// Reads `path` by Next, and by blocks of `size`; the values and the states must agree.
void ExpectBlocksLikeNext(const std::string& path, std::size_t size) {
  TQBinning::BinaryRecordIterator single(path);
  TQBinning::BinaryRecordIterator blocks(path);
  std::vector<double> block(size);
  while (true) {
    const std::size_t got = blocks.NextBlock(block.data(), size);
    for (std::size_t i = 0; i < got; ++i) {
      ASSERT_TRUE(single.HasMore());
      ASSERT_EQ(single.Next(), block[i]);
    }
    ASSERT_EQ(single.GetFailReason(), blocks.GetFailReason());
    if (got == 0) break;
  }
  ASSERT_FALSE(single.HasMore());
}

}  // namespace

TEST(NextBlock, HandsOutWhatNextWouldWhereverTheFileEnds) {
  const support::ScratchDirectory directory;
  for (const std::size_t n : {0U, 1U, 2U, 3U, 4U, 5U, 8U, 1000U}) {
    support::WriteColumn(directory.File("column"), Count(n));
    for (const std::size_t size : {1U, 2U, 4U, 7U, 2048U}) {
      SCOPED_TRACE(std::to_string(n) + " values in blocks of " + std::to_string(size));
      ExpectBlocksLikeNext(directory.File("column"), size);
    }
  }
}

TEST(NextBlock, EndsAsAFailureAtAPartialLastValue) {
  const support::ScratchDirectory directory;
  for (const std::size_t n : {0U, 1U, 3U, 4U, 5U}) {
    support::WriteColumn(directory.File("column"), Count(n));
    std::ofstream(directory.File("column"), std::ios::app | std::ios::binary) << "odd";
    for (const std::size_t size : {1U, 2U, 4U, 100U}) {
      SCOPED_TRACE(std::to_string(n) + " values in blocks of " + std::to_string(size));
      ExpectBlocksLikeNext(directory.File("column"), size);
      TQBinning::BinaryRecordIterator iterator(directory.File("column"));
      std::vector<double> block(size);
      while (iterator.NextBlock(block.data(), size) > 0) continue;
      EXPECT_EQ(3, iterator.GetFailReason());
    }
  }
}

TEST(NextBlock, OfNoValuesOrWithoutAFileHandsOutNothing) {
  const support::ScratchDirectory directory;
  support::WriteColumn(directory.File("column"), {1.5});
  TQBinning::BinaryRecordIterator iterator(directory.File("column"));
  EXPECT_EQ(0U, iterator.NextBlock(nullptr, 0));
  EXPECT_TRUE(iterator.HasMore());
  EXPECT_EQ(1.5, iterator.Next());

  testing::internal::CaptureStdout();
  TQBinning::BinaryRecordIterator absent(directory.File("absent"));
  testing::internal::GetCapturedStdout();
  double value = 7.0;
  EXPECT_EQ(0U, absent.NextBlock(&value, 1));
  EXPECT_EQ(7.0, value);
}

TEST(NextBlock, GoesOnAfterNextAndStartsAgainAfterANewPass) {
  const support::ScratchDirectory directory;
  support::WriteColumn(directory.File("column"), {1.0, 2.0, 3.0, 4.0});
  TQBinning::BinaryRecordIterator iterator(directory.File("column"));
  EXPECT_EQ(1.0, iterator.Next());
  std::vector<double> block(2);
  EXPECT_EQ(2U, iterator.NextBlock(block.data(), 2));
  EXPECT_EQ((std::vector<double>{2.0, 3.0}), block);
  EXPECT_EQ(4.0, iterator.Next());
  EXPECT_EQ(0, iterator.NewPass());
  EXPECT_EQ(2U, iterator.NextBlock(block.data(), 2));
  EXPECT_EQ((std::vector<double>{1.0, 2.0}), block);
}
