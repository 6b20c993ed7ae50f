#include <limits>
#include <sstream>

#include <gtest/gtest.h>

#include "support/hostfakes.h"
#include "tqbinning/binsettings.h"
#include "tqbinning/efbinsettings.h"

// What the settings of both families hold: their bounds, copies and equality.
namespace {

constexpr int kMaxInt = std::numeric_limits<int>::max();
constexpr int kMinInt = std::numeric_limits<int>::min();

template <typename SettingsOfAFamily>
class Settings : public testing::Test {
 protected:
  // Gives every field that both families have a value of its own, and expects it there.
  void Fill(SettingsOfAFamily& settings) {
    settings.SetProgressListener(&listener);
    ASSERT_TRUE(settings.SetNSkippedAttReports(3));
    ASSERT_TRUE(settings.SetNSkippedCasesReports(4));
    settings.SetCancelPointer(&query);
    settings.SetRightBorderClosed(false);
    ASSERT_TRUE(settings.SetNumberOfBins(6));
    settings.SetTempDirName("/some/directory/with/a/name/too/long/for/a/small/string");
  }
  void ExpectFilled(const SettingsOfAFamily& settings) const {
    EXPECT_EQ(&listener, settings.GetProgressListener());
    EXPECT_EQ(3, settings.GetNSkippedAttReports());
    EXPECT_EQ(4, settings.GetNSkippedCasesReports());
    EXPECT_EQ(&query, settings.GetCancelPointer());
    EXPECT_FALSE(settings.IsRightBorderClosed());
    EXPECT_EQ(6, settings.GetNumberOfBins());
    EXPECT_EQ("/some/directory/with/a/name/too/long/for/a/small/string", settings.GetTempDirName());
  }

  support::RecordingListener listener;
  support::CancelAtPoll query{0};
};

using BothFamilies = testing::Types<BINSettings, EFBINSettings>;
TYPED_TEST_SUITE(Settings, BothFamilies);

TYPED_TEST(Settings, DefaultsAreThoseOfAFreshObject) {
  const TypeParam settings;
  EXPECT_EQ(nullptr, settings.GetProgressListener());
  EXPECT_EQ(0, settings.GetNSkippedAttReports());
  EXPECT_EQ(100000, settings.GetNSkippedCasesReports());
  EXPECT_EQ(nullptr, settings.GetCancelPointer());
  EXPECT_TRUE(settings.IsRightBorderClosed());
  EXPECT_EQ(-1, settings.GetNumberOfBins());
}

TYPED_TEST(Settings, NumberOfBinsIsTwoAtLeast) {
  TypeParam settings;
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

TYPED_TEST(Settings, ARefusedNumberOfBinsKeepsTheUnusableDefault) {
  TypeParam settings;
  EXPECT_FALSE(settings.SetNumberOfBins(1));
  EXPECT_EQ(-1, settings.GetNumberOfBins());
}

TYPED_TEST(Settings, SkippedAttributeReportsAreNotNegative) {
  TypeParam settings;
  EXPECT_TRUE(settings.SetNSkippedAttReports(5));
  EXPECT_FALSE(settings.SetNSkippedAttReports(-1));
  EXPECT_EQ(5, settings.GetNSkippedAttReports());
  EXPECT_TRUE(settings.SetNSkippedAttReports(0));
  EXPECT_EQ(0, settings.GetNSkippedAttReports());
}

TYPED_TEST(Settings, SkippedCaseReportsAreNotNegative) {
  TypeParam settings;
  EXPECT_FALSE(settings.SetNSkippedCasesReports(-1));
  EXPECT_EQ(100000, settings.GetNSkippedCasesReports());
  EXPECT_TRUE(settings.SetNSkippedCasesReports(0));
  EXPECT_EQ(0, settings.GetNSkippedCasesReports());
  EXPECT_TRUE(settings.SetNSkippedCasesReports(kMaxInt));
  EXPECT_EQ(kMaxInt, settings.GetNSkippedCasesReports());
}

TYPED_TEST(Settings, PointersDirectoryAndBorderAreStoredUnchecked) {
  TypeParam settings;
  settings.SetProgressListener(&this->listener);
  settings.SetCancelPointer(&this->query);
  settings.SetTempDirName("no such/directory\\");
  settings.SetRightBorderClosed(false);
  EXPECT_EQ(&this->listener, settings.GetProgressListener());
  EXPECT_EQ(&this->query, settings.GetCancelPointer());
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
  EXPECT_EQ(0, this->query.Polls());
}

// ------------------------------------------------------------------------ copies

TYPED_TEST(Settings, ACopyHoldsEveryFieldAndSharesThePointers) {
  TypeParam source;
  this->Fill(source);
  TypeParam copy(source);
  this->ExpectFilled(copy);
  copy.SetTempDirName("elsewhere");
  ASSERT_TRUE(copy.SetNumberOfBins(60));
  this->ExpectFilled(source);
}

TYPED_TEST(Settings, AssignmentReplacesEveryField) {
  TypeParam source;
  this->Fill(source);
  TypeParam target;
  target = source;
  this->ExpectFilled(target);
  const TypeParam& alias = target;
  target = alias;
  this->ExpectFilled(target);
}

// ---------------------------------------------------------------------- equality

TYPED_TEST(Settings, FreshObjectsAreEqual) {
  const TypeParam a;
  EXPECT_TRUE(a == TypeParam());
  EXPECT_TRUE(a == a);
}

TYPED_TEST(Settings, ComparedFieldsMakeADifference) {
  const TypeParam reference;
  TypeParam changed;
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

TYPED_TEST(Settings, ThatDifferInTheDirectoryAloneAreEqual) {
  TypeParam changed;
  changed.SetTempDirName("elsewhere");
  EXPECT_TRUE(TypeParam() == changed);
}

TYPED_TEST(Settings, ListenerAndCancelPointerAreNotCompared) {
  TypeParam changed;
  changed.SetProgressListener(&this->listener);
  changed.SetCancelPointer(&this->query);
  EXPECT_TRUE(TypeParam() == changed);
}

// ----------------------------------------------------------------------- display

TYPED_TEST(Settings, DisplayReturnsTheStream) {
  std::ostringstream os;
  EXPECT_EQ(&os, &TypeParam().Display(os));
}

}  // namespace
