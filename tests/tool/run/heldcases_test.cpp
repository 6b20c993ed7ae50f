#include "run/heldcases.h"

#include <vector>

#include <gtest/gtest.h>

namespace TQTool {
namespace {

// Case i holds i, 10 i and 100 i.
HeldCases HeldUpTo(int count, std::size_t maxCases) {
  HeldCases held(3, maxCases);
  TQCommon::Record record(3);
  for (int i = 0; i < count; ++i) {
    record[0] = i;
    record[1] = 10.0 * i;
    record[2] = 100.0 * i;
    held.Add(record);
  }
  return held;
}

TEST(HeldCases, AreFullAtTheirLimit) {
  EXPECT_TRUE(HeldCases(3, 0).IsFull());
  EXPECT_FALSE(HeldUpTo(4, 5).IsFull());
  const HeldCases held = HeldUpTo(5, 5);
  EXPECT_TRUE(held.IsFull());
  EXPECT_EQ(5U, held.Count());
}

TEST(HeldCases, ReaderHandsOutAllCasesWithTheVariablesAskedFor) {
  constexpr int kCount = 10000;  // several blocks of memory
  const HeldCases held = HeldUpTo(kCount, kCount);
  HeldCasesReader reader(held, {0, 2});
  for (int i = 0; i < kCount; ++i) {
    ASSERT_TRUE(reader.HasMore());
    const TQCommon::Record& record = *reader.Next();
    ASSERT_EQ(2, record.GetNumberOfFields());
    ASSERT_EQ(i, record[0]);
    ASSERT_EQ(100.0 * i, record[1]);
  }
  EXPECT_FALSE(reader.HasMore());
}

TEST(HeldCases, WithoutCasesThereIsNothingToRead) {
  const HeldCases held(3, 7);
  EXPECT_FALSE(HeldCasesReader(held, {1}).HasMore());
}

}  // namespace
}  // namespace TQTool
