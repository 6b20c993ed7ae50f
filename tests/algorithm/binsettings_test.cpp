#include "tqbinning/binsettings.h"

#include <limits>

#include <gtest/gtest.h>

#include "algorithm/binningrun.h"

// The two thresholds, which only these settings have, and their display; for the rest see
// settings_test.cpp.
namespace {

using support::TextOf;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kMinInt = std::numeric_limits<int>::min();

TEST(BINSettings, NeitherThresholdIsInForceByDefault) {
  const BINSettings settings;
  EXPECT_EQ(-1, settings.GetNumDistinctValueThreshold());
  EXPECT_EQ(0.0, settings.GetSmallBinDetectionThreshold());
}

TEST(BINSettings, DistinctValueThresholdIsNotNegative) {
  BINSettings settings;
  EXPECT_FALSE(settings.SetNumDistinctValueThreshold(-1));
  EXPECT_EQ(-1, settings.GetNumDistinctValueThreshold());
  EXPECT_TRUE(settings.SetNumDistinctValueThreshold(9));
  EXPECT_FALSE(settings.SetNumDistinctValueThreshold(kMinInt));
  EXPECT_EQ(9, settings.GetNumDistinctValueThreshold());
  EXPECT_TRUE(settings.SetNumDistinctValueThreshold(0));
  EXPECT_EQ(0, settings.GetNumDistinctValueThreshold());
}

TEST(BINSettings, SmallBinThresholdTakesZeroAndOneAndWhatLiesBetween) {
  BINSettings settings;
  EXPECT_TRUE(settings.SetSmallBinDetectionThreshold(1.0));
  EXPECT_EQ(1.0, settings.GetSmallBinDetectionThreshold());
  EXPECT_TRUE(settings.SetSmallBinDetectionThreshold(0.0));
  EXPECT_EQ(0.0, settings.GetSmallBinDetectionThreshold());
  EXPECT_TRUE(settings.SetSmallBinDetectionThreshold(0.25));
  EXPECT_EQ(0.25, settings.GetSmallBinDetectionThreshold());
  EXPECT_TRUE(settings.SetSmallBinDetectionThreshold(-0.0));
  EXPECT_EQ(0.0, settings.GetSmallBinDetectionThreshold());
}

TEST(BINSettings, SmallBinThresholdRefusesWhatLiesOutsideAndNaN) {
  BINSettings settings;
  ASSERT_TRUE(settings.SetSmallBinDetectionThreshold(0.5));
  EXPECT_FALSE(settings.SetSmallBinDetectionThreshold(1.0000001));
  EXPECT_FALSE(settings.SetSmallBinDetectionThreshold(-0.1));
  EXPECT_FALSE(settings.SetSmallBinDetectionThreshold(kNaN));
  EXPECT_FALSE(settings.SetSmallBinDetectionThreshold(-kNaN));
  EXPECT_FALSE(settings.SetSmallBinDetectionThreshold(-std::numeric_limits<double>::denorm_min()));
  EXPECT_FALSE(settings.SetSmallBinDetectionThreshold(std::numeric_limits<double>::infinity()));
  EXPECT_EQ(0.5, settings.GetSmallBinDetectionThreshold());
}

// ------------------------------------------------------------- copies and equality

BINSettings WithThresholds() {
  BINSettings settings;
  EXPECT_TRUE(settings.SetNumDistinctValueThreshold(5));
  EXPECT_TRUE(settings.SetSmallBinDetectionThreshold(0.125));
  return settings;
}

void ExpectThresholds(const BINSettings& settings) {
  EXPECT_EQ(5, settings.GetNumDistinctValueThreshold());
  EXPECT_EQ(0.125, settings.GetSmallBinDetectionThreshold());
}

TEST(BINSettings, ACopyHoldsTheThresholds) {
  const BINSettings source = WithThresholds();
  BINSettings copy(source);
  ExpectThresholds(copy);
  ASSERT_TRUE(copy.SetNumDistinctValueThreshold(50));
  ExpectThresholds(source);
}

TEST(BINSettings, AssignmentReplacesTheThresholds) {
  const BINSettings source = WithThresholds();
  BINSettings target;
  target = source;
  ExpectThresholds(target);
  const BINSettings& alias = target;
  target = alias;
  ExpectThresholds(target);
}

TEST(BINSettings, TheDistinctValueThresholdMakesADifference) {
  BINSettings changed;
  ASSERT_TRUE(changed.SetNumDistinctValueThreshold(1));
  EXPECT_FALSE(BINSettings() == changed);
}

TEST(BINSettings, SettingsThatDifferInTheSmallBinThresholdAloneAreEqual) {
  BINSettings changed;
  ASSERT_TRUE(changed.SetSmallBinDetectionThreshold(0.5));
  EXPECT_TRUE(BINSettings() == changed);
}

// ----------------------------------------------------------------------- display

TEST(BINSettings, DisplayOfTheDefaults) {
  EXPECT_EQ(
      "Start of BINSettings display\n"
      "Number of progress reports to skip when create bins for attribute = 0\n"
      "Number of progress reports to skip when read data file = 100000\n"
      "if use EF as proprecess = 1\n"
      "Number of distinct value = -1\n"
      "Number of bins for EF = -1\n"
      "End of BINSettings display\n",
      TextOf(BINSettings()));
}

TEST(BINSettings, DisplayOfChangedValues) {
  BINSettings settings = WithThresholds();
  ASSERT_TRUE(settings.SetNSkippedAttReports(3));
  ASSERT_TRUE(settings.SetNSkippedCasesReports(4));
  settings.SetRightBorderClosed(false);
  ASSERT_TRUE(settings.SetNumberOfBins(6));
  settings.SetTempDirName("elsewhere");
  EXPECT_EQ(
      "Start of BINSettings display\n"
      "Number of progress reports to skip when create bins for attribute = 3\n"
      "Number of progress reports to skip when read data file = 4\n"
      "if use EF as proprecess = 0\n"
      "Number of distinct value = 5\n"
      "Number of bins for EF = 6\n"
      "End of BINSettings display\n",
      TextOf(settings));
}

}  // namespace
