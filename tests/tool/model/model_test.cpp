#include "model/model.h"

#include <gtest/gtest.h>

#include "modeltesting.h"

namespace TQTool {
namespace {

TEST(BinOf, CutPointBelongsToTheClosedSide) {
  BinnedAttribute attribute;
  attribute.cuts = {1.0, 2.0};
  EXPECT_EQ(0U, BinOf(attribute, 1.0));
  EXPECT_EQ(1U, BinOf(attribute, 2.0));
  EXPECT_EQ(2U, BinOf(attribute, 2.5));
  attribute.isRightClosed = false;
  EXPECT_EQ(0U, BinOf(attribute, 0.5));
  EXPECT_EQ(1U, BinOf(attribute, 1.0));
  EXPECT_EQ(2U, BinOf(attribute, 2.0));
}

TEST(BinOf, WithoutCutPointsThereIsOneBin) { EXPECT_EQ(0U, BinOf(BinnedAttribute(), 7.0)); }

TEST(LabelOf, IntervalsStandInForLabels) {
  BinnedAttribute attribute;
  attribute.cuts = {0.1, 2.0};
  EXPECT_EQ("(-inf, 0.1]", LabelOf(attribute, 0));
  EXPECT_EQ("(0.1, 2]", LabelOf(attribute, 1));
  EXPECT_EQ("(2, inf)", LabelOf(attribute, 2));
  attribute.isRightClosed = false;
  EXPECT_EQ("(-inf, 0.1)", LabelOf(attribute, 0));
  EXPECT_EQ("[0.1, 2)", LabelOf(attribute, 1));
  attribute.labels = {"a", "b", "c"};
  EXPECT_EQ("b", LabelOf(attribute, 1));
}

TEST(MissingRule, HoldsNumbersAndAClosedRange) {
  MissingRule rule;
  EXPECT_FALSE(rule.Contains(0.0));
  rule.numbers = {9.0};
  rule.range = ClosedRange{-kInfinity, -1.0};
  EXPECT_TRUE(rule.Contains(9.0));
  EXPECT_TRUE(rule.Contains(-1.0));
  EXPECT_TRUE(rule.Contains(-1e300));
  EXPECT_FALSE(rule.Contains(-0.5));
}

}  // namespace
}  // namespace TQTool
