#include "tqbinning/efbinsettings.h"

#include <limits>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "support/hostfakes.h"

namespace {

constexpr int kMaxInt = std::numeric_limits<int>::max();
constexpr int kMinInt = std::numeric_limits<int>::min();

std::string TextOf(const EFBINSettings& settings) {
  std::ostringstream os;
  settings.Display(os);
  return os.str();
}

TEST(EFBINSettings, DefaultsAreThoseOfAFreshObject) {
  const EFBINSettings settings;
  EXPECT_EQ(nullptr, settings.GetProgressListener());
  EXPECT_EQ(0, settings.GetNSkippedAttReports());
  EXPECT_EQ(100000, settings.GetNSkippedCasesReports());
  EXPECT_EQ(nullptr, settings.GetCancelPointer());
  EXPECT_TRUE(settings.IsRightBorderClosed());
  EXPECT_EQ(-1, settings.GetNumberOfBins());
}

TEST(EFBINSettings, NumberOfBinsIsTwoAtLeast) {
  EFBINSettings settings;
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

TEST(EFBINSettings, ARefusedNumberOfBinsKeepsTheUnusableDefault) {
  EFBINSettings settings;
  EXPECT_FALSE(settings.SetNumberOfBins(1));
  EXPECT_EQ(-1, settings.GetNumberOfBins());
}

TEST(EFBINSettings, SkippedAttributeReportsAreNotNegative) {
  EFBINSettings settings;
  EXPECT_TRUE(settings.SetNSkippedAttReports(5));
  EXPECT_FALSE(settings.SetNSkippedAttReports(-1));
  EXPECT_EQ(5, settings.GetNSkippedAttReports());
  EXPECT_TRUE(settings.SetNSkippedAttReports(0));
  EXPECT_EQ(0, settings.GetNSkippedAttReports());
}

TEST(EFBINSettings, SkippedCaseReportsAreNotNegative) {
  EFBINSettings settings;
  EXPECT_FALSE(settings.SetNSkippedCasesReports(-1));
  EXPECT_EQ(100000, settings.GetNSkippedCasesReports());
  EXPECT_TRUE(settings.SetNSkippedCasesReports(0));
  EXPECT_EQ(0, settings.GetNSkippedCasesReports());
  EXPECT_TRUE(settings.SetNSkippedCasesReports(kMaxInt));
  EXPECT_EQ(kMaxInt, settings.GetNSkippedCasesReports());
}

TEST(EFBINSettings, PointersDirectoryAndBorderAreStoredUnchecked) {
  support::RecordingListener listener;
  support::CancelAtPoll query(0);
  EFBINSettings settings;
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

void FillEveryField(EFBINSettings& settings, ProgressListener* listener, TQQueryCancel* query) {
  settings.SetProgressListener(listener);
  ASSERT_TRUE(settings.SetNSkippedAttReports(3));
  ASSERT_TRUE(settings.SetNSkippedCasesReports(4));
  settings.SetCancelPointer(query);
  settings.SetRightBorderClosed(false);
  ASSERT_TRUE(settings.SetNumberOfBins(6));
  settings.SetTempDirName("/some/directory/with/a/name/too/long/for/a/small/string");
}

void ExpectEveryField(const EFBINSettings& settings, ProgressListener* listener,
                      TQQueryCancel* query) {
  EXPECT_EQ(listener, settings.GetProgressListener());
  EXPECT_EQ(3, settings.GetNSkippedAttReports());
  EXPECT_EQ(4, settings.GetNSkippedCasesReports());
  EXPECT_EQ(query, settings.GetCancelPointer());
  EXPECT_FALSE(settings.IsRightBorderClosed());
  EXPECT_EQ(6, settings.GetNumberOfBins());
  EXPECT_EQ("/some/directory/with/a/name/too/long/for/a/small/string", settings.GetTempDirName());
}

TEST(EFBINSettings, ACopyHoldsEveryFieldAndSharesThePointers) {
  support::RecordingListener listener;
  support::CancelAtPoll query(0);
  EFBINSettings source;
  FillEveryField(source, &listener, &query);
  EFBINSettings copy(source);
  ExpectEveryField(copy, &listener, &query);
  copy.SetTempDirName("elsewhere");
  ASSERT_TRUE(copy.SetNumberOfBins(60));
  ExpectEveryField(source, &listener, &query);
}

TEST(EFBINSettings, AssignmentReplacesEveryField) {
  support::RecordingListener listener;
  support::CancelAtPoll query(0);
  EFBINSettings source;
  FillEveryField(source, &listener, &query);
  EFBINSettings target;
  target = source;
  ExpectEveryField(target, &listener, &query);
  const EFBINSettings& alias = target;
  target = alias;
  ExpectEveryField(target, &listener, &query);
}

// ---------------------------------------------------------------------- equality

TEST(EFBINSettings, FreshObjectsAreEqual) {
  const EFBINSettings a;
  EXPECT_TRUE(a == EFBINSettings());
  EXPECT_TRUE(a == a);
}

TEST(EFBINSettings, ComparedFieldsMakeADifference) {
  const EFBINSettings reference;
  EFBINSettings changed;
  ASSERT_TRUE(changed.SetNSkippedAttReports(1));
  EXPECT_FALSE(reference == changed);
  changed = reference;
  ASSERT_TRUE(changed.SetNSkippedCasesReports(1));
  EXPECT_FALSE(reference == changed);
  changed = reference;
  changed.SetRightBorderClosed(false);
  EXPECT_FALSE(reference == changed);
  changed = reference;
  ASSERT_TRUE(changed.SetNumberOfBins(2));
  EXPECT_FALSE(reference == changed);
  changed = reference;
  EXPECT_TRUE(reference == changed);
}

TEST(EFBINSettings, SettingsThatDifferInTheDirectoryAloneAreEqual) {
  EFBINSettings changed;
  changed.SetTempDirName("elsewhere");
  EXPECT_TRUE(EFBINSettings() == changed);
}

TEST(EFBINSettings, ListenerAndCancelPointerAreNotCompared) {
  support::RecordingListener listener;
  support::CancelAtPoll query(0);
  EFBINSettings changed;
  changed.SetProgressListener(&listener);
  changed.SetCancelPointer(&query);
  EXPECT_TRUE(EFBINSettings() == changed);
}

// ----------------------------------------------------------------------- display

TEST(EFBINSettings, DisplayOfTheDefaults) {
  EXPECT_EQ(
      "\n"
      "Start of EFBINSettings display\n"
      "Number of progress reports to skip when create bins for attribute = 0\n"
      "Number of progress reports to skip when read data file = 100000\n"
      "1\n"
      "Number of bins for EF = -1\n"
      "End of EFBINSettings display\n",
      TextOf(EFBINSettings()));
}

TEST(EFBINSettings, DisplayOfChangedValues) {
  EFBINSettings settings;
  FillEveryField(settings, nullptr, nullptr);
  EXPECT_EQ(
      "\n"
      "Start of EFBINSettings display\n"
      "Number of progress reports to skip when create bins for attribute = 3\n"
      "Number of progress reports to skip when read data file = 4\n"
      "0\n"
      "Number of bins for EF = 6\n"
      "End of EFBINSettings display\n",
      TextOf(settings));
}

TEST(EFBINSettings, DisplayReturnsTheStream) {
  std::ostringstream os;
  EXPECT_EQ(&os, &EFBINSettings().Display(os));
}

}  // namespace
