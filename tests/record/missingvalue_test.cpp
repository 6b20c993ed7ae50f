#include "tqcommon/missingvalue.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace {

TEST(MissingValue, ItIsTheMostNegativeFiniteDouble) {
  EXPECT_EQ(std::numeric_limits<double>::lowest(), TQMV::gMissingValue);
  EXPECT_EQ(-1.7976931348623157e308, TQMV::gMissingValue);
  EXPECT_TRUE(std::isfinite(TQMV::gMissingValue));
}

// It is looked for with ordinary equality, so it must not be a NaN.
TEST(MissingValue, ItEqualsItselfAndNothingElse) {
  const double copy = TQMV::gMissingValue;
  EXPECT_TRUE(copy == TQMV::gMissingValue);
  EXPECT_FALSE(std::nextafter(copy, 0.0) == TQMV::gMissingValue);
  EXPECT_FALSE(-std::numeric_limits<double>::infinity() == TQMV::gMissingValue);
  EXPECT_FALSE(std::numeric_limits<double>::quiet_NaN() == TQMV::gMissingValue);
}

}  // namespace
