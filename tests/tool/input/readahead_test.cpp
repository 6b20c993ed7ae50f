#include "input/readahead.h"

#include <stdexcept>

#include <gtest/gtest.h>

namespace TQTool {
namespace {

// Fills blocks with 0, 1, 2, ...; after `cases` cases it ends or fails.
ReadAhead::Fill Counting(int cases, bool fails = false) {
  return [=, next = 0](RecordBlock& block) mutable {
    while (block.count < block.records.size()) {
      if (next == cases && fails) throw std::runtime_error("broken");
      if (next == cases) {
        block.isLast = true;
        return;
      }
      block.records[block.count++][0] = next++;
    }
  };
}

// Takes all blocks and expects 0, 1, 2, ...; gives their number and the last error.
int CountCases(ReadAhead& blocks, std::exception_ptr* error) {
  int cases = 0;
  for (bool isLast = false; !isLast;) {
    const RecordBlock& block = blocks.Next();
    for (std::size_t i = 0; i < block.count; ++i) EXPECT_EQ(cases++, block.records[i][0]);
    isLast = block.isLast;
    *error = block.error;
  }
  return cases;
}

class ReadAheadTest : public testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(WithAndWithoutThread, ReadAheadTest, testing::Bool());

TEST_P(ReadAheadTest, HandsOutEveryCaseInOrder) {
  constexpr int kBlock = ReadAhead::kBlockRecords;
  for (const int cases : {0, 1, kBlock - 1, kBlock, kBlock + 1, 40 * kBlock + 7}) {
    ReadAhead blocks(Counting(cases), 1, GetParam());
    std::exception_ptr error;
    EXPECT_EQ(cases, CountCases(blocks, &error));
    EXPECT_EQ(nullptr, error);
  }
}

TEST_P(ReadAheadTest, CasesBeforeAnErrorArriveAndSoDoesTheError) {
  for (const int cases : {0, 3, 5000}) {
    ReadAhead blocks(Counting(cases, true), 1, GetParam());
    std::exception_ptr error;
    EXPECT_EQ(cases, CountCases(blocks, &error));
    ASSERT_NE(nullptr, error);
    EXPECT_THROW(std::rethrow_exception(error), std::runtime_error);
  }
}

TEST_P(ReadAheadTest, MayBeLeftAtAnyBlock) {
  for (int taken = 0; taken < 8; ++taken) {
    ReadAhead blocks(Counting(1 << 20), 1, GetParam());
    for (int i = 0; i < taken; ++i) EXPECT_EQ(ReadAhead::kBlockRecords, blocks.Next().count);
  }
}

}  // namespace
}  // namespace TQTool
