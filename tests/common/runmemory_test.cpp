#include "common/runmemory.h"

#include <gtest/gtest.h>

#include <vector>

namespace TQBinning {
namespace {

using Memory = std::vector<int>;

// Leaves a mark and tells how many had been left before.
std::size_t Mark() {
  return RunMemory<Memory>::With([](Memory& memory) {
    memory.push_back(0);
    return memory.size() - 1;
  });
}

TEST(RunMemory, WithoutARunEachUseHasMemoryOfItsOwn) {
  EXPECT_EQ(0U, Mark());
  EXPECT_EQ(0U, Mark());
}

TEST(RunMemory, WithinARunItLastsFromUseToUse) {
  const RunMemory<Memory> run;
  EXPECT_EQ(0U, Mark());
  EXPECT_EQ(1U, Mark());
}

TEST(RunMemory, ARunWithinARunHasItsOwnAndLeavesTheOuterOneAsItWas) {
  const RunMemory<Memory> outer;
  EXPECT_EQ(0U, Mark());
  {
    const RunMemory<Memory> inner;
    EXPECT_EQ(0U, Mark());
    EXPECT_EQ(1U, Mark());
  }
  EXPECT_EQ(1U, Mark());
}

TEST(RunMemory, NothingIsLeftAfterARun) {
  {
    const RunMemory<Memory> run;
    EXPECT_EQ(0U, Mark());
  }
  EXPECT_EQ(0U, Mark());
  EXPECT_EQ(0U, Mark());
}

}  // namespace
}  // namespace TQBinning
