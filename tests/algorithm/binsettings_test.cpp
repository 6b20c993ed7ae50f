#include "tqbinning/binsettings.h"

#include <limits>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "support/hostfakes.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kMaxInt = std::numeric_limits<int>::max();
constexpr int kMinInt = std::numeric_limits<int>::min();

std::string TextOf(const BINSettings& settings) {
  std::ostringstream os;
  settings.Display(os);
  return os.str();
}

TEST(BINSettings, DefaultsAreThoseOfAFreshObject) {
  const BINSettings settings;
  EXPECT_EQ(nullptr, settings.GetProgressListener());
  EXPECT_EQ(0, settings.GetNSkippedAttReports());
  EXPECT_EQ(100000, settings.GetNSkippedCasesReports());
  EXPECT_EQ(nullptr, settings.GetCancelPointer());
  EXPECT_TRUE(settings.IsRightBorderClosed());
  EXPECT_EQ(-1, settings.GetNumDistinctValueThreshold());
  EXPECT_EQ(-1, settings.GetNumberOfBins());
  EXPECT_EQ(0.0, settings.GetSmallBinDetectionThreshold());
}

TEST(BINSettings, NumberOfBinsIsTwoAtLeast) {
  BINSettings settings;
  ASSERT_TRUE(settings.SetNumberOfBins(7));
  EXPECT_FALSE(settings.SetNumberOfBins(1));
  EXPECT_FALSE(settings.SetNumberOfBins(0));
  EXPECT_FALSE(settings.SetNumberOfBins(-1));
  EXPECT_FALSE(settings.SetNumberOfBins(kMinInt));
  EXPECT_EQ(7, settings.GetNumberOfBins());
  EXPECT_TRUE(settings.SetNumberOfBins(2));
  EXPECT_EQ(2, settings.GetNumberOfBins());
  EXPECT_TRUE(settings.SetNumberOfBins(kMaxInt));
  EXPECT_EQ(kMaxInt, settings.GetNumberOfBins());
}

TEST(BINSettings, ARefusedNumberOfBinsKeepsTheUnusableDefault) {
  BINSettings settings;
  EXPECT_FALSE(settings.SetNumberOfBins(1));
  EXPECT_EQ(-1, settings.GetNumberOfBins());
}

TEST(BINSettings, SkippedAttributeReportsAreNotNegative) {
  BINSettings settings;
  EXPECT_TRUE(settings.SetNSkippedAttReports(5));
  EXPECT_FALSE(settings.SetNSkippedAttReports(-1));
  EXPECT_EQ(5, settings.GetNSkippedAttReports());
  EXPECT_TRUE(settings.SetNSkippedAttReports(0));
  EXPECT_EQ(0, settings.GetNSkippedAttReports());
}

TEST(BINSettings, SkippedCaseReportsAreNotNegative) {
  BINSettings settings;
  EXPECT_FALSE(settings.SetNSkippedCasesReports(-1));
  EXPECT_EQ(100000, settings.GetNSkippedCasesReports());
  EXPECT_TRUE(settings.SetNSkippedCasesReports(0));
  EXPECT_EQ(0, settings.GetNSkippedCasesReports());
  EXPECT_TRUE(settings.SetNSkippedCasesReports(kMaxInt));
  EXPECT_EQ(kMaxInt, settings.GetNSkippedCasesReports());
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

TEST(BINSettings, PointersDirectoryAndBorderAreStoredUnchecked) {
  support::RecordingListener listener;
  support::CancelAtPoll query(0);
  BINSettings settings;
  settings.SetProgressListener(&listener);
  settings.SetCancelPointer(&query);
  settings.SetTempDirName("no such/directory\\");
  settings.SetRightBorderClosed(false);
  EXPECT_EQ(&listener, settings.GetProgressListener());
  EXPECT_EQ(&query, settings.GetCancelPointer());
  EXPECT_EQ("no such/directory\\", settings.GetTempDirName());
  EXPECT_FALSE(settings.IsRightBorderClosed());
  settings.SetProgressListener(nullptr);
  settings.SetCancelPointer(nullptr);
  settings.SetTempDirName("");
  settings.SetRightBorderClosed(true);
  EXPECT_EQ(nullptr, settings.GetProgressListener());
  EXPECT_EQ(nullptr, settings.GetCancelPointer());
  EXPECT_EQ("", settings.GetTempDirName());
  EXPECT_TRUE(settings.IsRightBorderClosed());
  EXPECT_EQ(0, query.Polls());
}

// ------------------------------------------------------------------------ copies

void FillEveryField(BINSettings& settings, ProgressListener* listener, TQQueryCancel* query) {
  settings.SetProgressListener(listener);
  ASSERT_TRUE(settings.SetNSkippedAttReports(3));
  ASSERT_TRUE(settings.SetNSkippedCasesReports(4));
  settings.SetCancelPointer(query);
  settings.SetRightBorderClosed(false);
  ASSERT_TRUE(settings.SetNumDistinctValueThreshold(5));
  ASSERT_TRUE(settings.SetNumberOfBins(6));
  settings.SetTempDirName("/some/directory/with/a/name/too/long/for/a/small/string");
  ASSERT_TRUE(settings.SetSmallBinDetectionThreshold(0.125));
}

void ExpectEveryField(const BINSettings& settings, ProgressListener* listener,
                      TQQueryCancel* query) {
  EXPECT_EQ(listener, settings.GetProgressListener());
  EXPECT_EQ(3, settings.GetNSkippedAttReports());
  EXPECT_EQ(4, settings.GetNSkippedCasesReports());
  EXPECT_EQ(query, settings.GetCancelPointer());
  EXPECT_FALSE(settings.IsRightBorderClosed());
  EXPECT_EQ(5, settings.GetNumDistinctValueThreshold());
  EXPECT_EQ(6, settings.GetNumberOfBins());
  EXPECT_EQ("/some/directory/with/a/name/too/long/for/a/small/string", settings.GetTempDirName());
  EXPECT_EQ(0.125, settings.GetSmallBinDetectionThreshold());
}

TEST(BINSettings, ACopyHoldsEveryFieldAndSharesThePointers) {
  support::RecordingListener listener;
  support::CancelAtPoll query(0);
  BINSettings source;
  FillEveryField(source, &listener, &query);
  BINSettings copy(source);
  ExpectEveryField(copy, &listener, &query);
  copy.SetTempDirName("elsewhere");
  ASSERT_TRUE(copy.SetNumberOfBins(60));
  ExpectEveryField(source, &listener, &query);
}

TEST(BINSettings, AssignmentReplacesEveryField) {
  support::RecordingListener listener;
  support::CancelAtPoll query(0);
  BINSettings source;
  FillEveryField(source, &listener, &query);
  BINSettings target;
  target = source;
  ExpectEveryField(target, &listener, &query);
  const BINSettings& alias = target;
  target = alias;
  ExpectEveryField(target, &listener, &query);
}

// ---------------------------------------------------------------------- equality

TEST(BINSettings, FreshObjectsAreEqual) {
  const BINSettings a;
  EXPECT_TRUE(a == BINSettings());
  EXPECT_TRUE(a == a);
}

TEST(BINSettings, ComparedFieldsMakeADifference) {
  const BINSettings reference;
  BINSettings changed;
  ASSERT_TRUE(changed.SetNSkippedAttReports(1));
  EXPECT_FALSE(reference == changed);
  changed = reference;
  ASSERT_TRUE(changed.SetNSkippedCasesReports(1));
  EXPECT_FALSE(reference == changed);
  changed = reference;
  changed.SetRightBorderClosed(false);
  EXPECT_FALSE(reference == changed);
  changed = reference;
  ASSERT_TRUE(changed.SetNumDistinctValueThreshold(1));
  EXPECT_FALSE(reference == changed);
  changed = reference;
  ASSERT_TRUE(changed.SetNumberOfBins(2));
  EXPECT_FALSE(reference == changed);
  changed = reference;
  EXPECT_TRUE(reference == changed);
}

TEST(BINSettings, SettingsThatDifferInTheSmallBinThresholdAloneAreEqual) {
  BINSettings changed;
  ASSERT_TRUE(changed.SetSmallBinDetectionThreshold(0.5));
  EXPECT_TRUE(BINSettings() == changed);
}

TEST(BINSettings, PointersAndDirectoryAreNotCompared) {
  support::RecordingListener listener;
  support::CancelAtPoll query(0);
  BINSettings changed;
  changed.SetProgressListener(&listener);
  changed.SetCancelPointer(&query);
  changed.SetTempDirName("elsewhere");
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
  BINSettings settings;
  FillEveryField(settings, nullptr, nullptr);
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

TEST(BINSettings, DisplayReturnsTheStream) {
  std::ostringstream os;
  EXPECT_EQ(&os, &BINSettings().Display(os));
}

}  // namespace
