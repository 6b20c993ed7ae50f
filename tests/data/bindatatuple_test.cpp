#include "tqbinning/bindatatuple.h"

#include <cstddef>
#include <limits>

#include <gtest/gtest.h>

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(BINDataTuple, IsOrderedByValueAlone) {
  const BINDataTuple small{1.0, 9, 9.0};
  const BINDataTuple large{2.0, 0, 0.0};
  EXPECT_TRUE(small < large);
  EXPECT_FALSE(large < small);
}

TEST(BINDataTuple, EqualValuesHaveNoOrderWhateverTargetAndWeight) {
  const BINDataTuple one{1.0, 0, 1.0};
  const BINDataTuple other{1.0, 1, 2.0};
  EXPECT_FALSE(one < other);
  EXPECT_FALSE(other < one);
}

TEST(BINDataTuple, BothZerosAreEqualAndNaNIsLessThanNothing) {
  EXPECT_FALSE((BINDataTuple{-0.0, 0, 1.0} < BINDataTuple{0.0, 0, 1.0}));
  EXPECT_FALSE((BINDataTuple{kNaN, 0, 1.0} < BINDataTuple{0.0, 0, 1.0}));
  EXPECT_FALSE((BINDataTuple{0.0, 0, 1.0} < BINDataTuple{kNaN, 0, 1.0}));
}

TEST(BINDataTuple, HoldsValueThenTargetThenWeight) {
  EXPECT_EQ(0u, offsetof(BINDataTuple, value));
  EXPECT_EQ(8u, offsetof(BINDataTuple, target));
  EXPECT_EQ(16u, offsetof(BINDataTuple, weight));
  EXPECT_EQ(1u, sizeof(BINDataTuple::target));
  EXPECT_EQ(24u, sizeof(BINDataTuple));
}

TEST(EFBINDataTuple, IsOrderedByValueAlone) {
  EXPECT_TRUE((EFBINDataTuple{1.0, 9.0} < EFBINDataTuple{2.0, 0.0}));
  EXPECT_FALSE((EFBINDataTuple{2.0, 0.0} < EFBINDataTuple{1.0, 9.0}));
  EXPECT_FALSE((EFBINDataTuple{1.0, 1.0} < EFBINDataTuple{1.0, 2.0}));
  EXPECT_FALSE((EFBINDataTuple{1.0, 2.0} < EFBINDataTuple{1.0, 1.0}));
}

TEST(EFBINDataTuple, HoldsValueThenWeight) {
  EXPECT_EQ(0u, offsetof(EFBINDataTuple, value));
  EXPECT_EQ(8u, offsetof(EFBINDataTuple, weight));
  EXPECT_EQ(16u, sizeof(EFBINDataTuple));
}

}  // namespace
