#include <vector>

#include <gtest/gtest.h>

#include "algorithm/binningrun.h"
#include "algorithm/eightcases.h"
#include "support/hostfakes.h"
#include "support/memoryrecords.h"

// What both drivers report, and when.
namespace {

using namespace support;

// Five attributes that can be binned.
class SupervisedExample : public SupervisedRun {
 public:
  SupervisedExample()
      : SupervisedRun("xxxxxy", Columns({k1To8, k1To8, k1To8, k1To8, k1To8, kHalves})) {}
};

class EqualFrequencyExample : public EqualFrequencyRun {
 public:
  EqualFrequencyExample() : EqualFrequencyRun("xxxxx", Columns(std::vector<Numbers>(5, k1To8))) {}
};

template <typename Example>
class ReportingRun : public Example {
 public:
  explicit ReportingRun(int skipped) {
    EXPECT_TRUE(this->settings.SetNSkippedAttReports(skipped));
    this->settings.SetProgressListener(&listener);
  }
  RecordingListener listener;
};

template <typename Example>
class Progress : public testing::Test {
 protected:
  using Run = ReportingRun<Example>;
};

using Examples = testing::Types<SupervisedExample, EqualFrequencyExample>;
TYPED_TEST_SUITE(Progress, Examples);

TYPED_TEST(Progress, IsReportedAfterEveryAttributeWhenNoneIsSkipped) {
  typename TestFixture::Run run(0);
  EXPECT_EQ(OK(), run.CreateBins({4, 0, 3}));
  EXPECT_EQ((Indices{4, 0, 3}), run.listener.Indices());
}

TYPED_TEST(Progress, IsReportedAfterEveryThirdAttributeWhenTwoAreSkipped) {
  typename TestFixture::Run run(2);
  EXPECT_EQ(OK(), run.CreateBins({0, 1, 2, 3, 4}));
  EXPECT_EQ((Indices{2}), run.listener.Indices());
}

TYPED_TEST(Progress, TheCountGoesOnAfterAReport) {
  typename TestFixture::Run run(1);
  EXPECT_EQ(OK(), run.CreateBins({0, 1, 2, 3, 4, 0}));
  EXPECT_EQ((Indices{1, 3, 0}), run.listener.Indices());
}

TYPED_TEST(Progress, EveryCallCountsAnew) {
  typename TestFixture::Run run(2);
  EXPECT_EQ(OK(), run.CreateBins({0, 1}));
  EXPECT_EQ(OK(), run.CreateBins({2, 3}));
  EXPECT_TRUE(run.listener.Reports().empty());
}

TYPED_TEST(Progress, IsReportedWithoutListsToo) {
  typename TestFixture::Run run(1);
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Indices{1, 3}), run.listener.Indices());
}

TYPED_TEST(Progress, ElapsedTimesAreProcessorSecondsThatDoNotRunBackwards) {
  typename TestFixture::Run run(0);
  EXPECT_EQ(OK(), run.CreateBins());
  ASSERT_EQ(5U, run.listener.Reports().size());
  double earlier = 0.0;
  for (const auto& report : run.listener.Reports()) {
    EXPECT_GE(report.second, earlier);
    EXPECT_LT(report.second, 60.0);
    earlier = report.second;
  }
}

TYPED_TEST(Progress, OfTheDataPassIsReportedByTheNumberOfCases) {
  typename TestFixture::Run run(4);
  ASSERT_TRUE(run.settings.SetNSkippedCasesReports(3));
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Indices{3, 6, 4}), run.listener.Indices());  // cases, and then attribute 4
}

TYPED_TEST(Progress, AListenerSetOnTheAlgorithmReplacesThatOfTheSettings) {
  typename TestFixture::Run run(4);
  RecordingListener second;
  run.Algorithm().SetProgressListener(&second);
  EXPECT_EQ(&second, run.Algorithm().GetSettings().GetProgressListener());
  EXPECT_EQ(&run.listener, run.settings.GetProgressListener());
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_TRUE(run.listener.Reports().empty());
  EXPECT_EQ((Indices{4}), second.Indices());
}

TYPED_TEST(Progress, AListenerCanBeTakenAway) {
  typename TestFixture::Run run(0);
  run.Algorithm().SetProgressListener(nullptr);
  EXPECT_EQ(OK(), run.CreateBins({0}));
  EXPECT_TRUE(run.listener.Reports().empty());
}

// ------------------------------------------- attributes that end in no clean status

TEST(EFProgress, ARejectedIndexIsNotCounted) {
  ReportingRun<EqualFrequencyExample> run(1);
  EXPECT_EQ(OK(), run.CreateBins({99, 0, 99, 1, 2}));
  EXPECT_EQ((Indices{1}), run.listener.Indices());
}

TEST(EFProgress, AnAttributeThatEndsInAWarningIsReported) {
  EqualFrequencyRun run("xx", Columns({kConstant, kNothing}));
  RecordingListener listener;
  run.settings.SetProgressListener(&listener);
  EXPECT_EQ(Warning(120018), run.CreateBins());
  EXPECT_EQ((Indices{0, 1}), listener.Indices());
}

TEST(PairProgress, AnAttributeThatEndsInAWarningIsReported) {
  SupervisedRun run("xy", Columns({kConstant, kHalves}));
  RecordingListener listener;
  run.settings.SetProgressListener(&listener);
  EXPECT_EQ(Warning(120018), run.CreateBins());
  EXPECT_EQ((Indices{0}), listener.Indices());
}

// Variable 6 has a code that it did not declare; a pair against it ends in an error.
class PairExample : public SupervisedRun {
 public:
  PairExample()
      : SupervisedRun(
            "xxxxxyc",
            Columns({k1To8, k1To8, k1To8, k1To8, k1To8, kHalves, {0, 0, 0, 0, 2, 2, 2, 2}})) {}
};
using PairRun = ReportingRun<PairExample>;
constexpr int kGood = 5;
constexpr int kBad = 6;

TEST(PairProgress, APairThatEndsInAnErrorIsCountedAndNotReported) {
  PairRun run(1);
  EXPECT_EQ(Warning(120018), run.CreateBins({0, 1, 2, 3}, {kBad, kGood, kGood, kGood}));
  EXPECT_EQ((Indices{1, 3}), run.listener.Indices());
}

TEST(PairProgress, AReportThatAnErrorPreventedIsMadeUpForByTheNextPair) {
  PairRun run(1);
  EXPECT_EQ(Warning(120018), run.CreateBins({0, 1, 2, 3, 4}, {kGood, kBad, kGood, kGood, kGood}));
  EXPECT_EQ((Indices{2, 4}), run.listener.Indices());
}

TEST(PairProgress, ErrorsInARowPreventNoMoreThanTheirOwnReports) {
  PairRun run(0);
  EXPECT_EQ(Warning(120018), run.CreateBins({0, 1, 2, 3, 4}, {kBad, kBad, kBad, kGood, kGood}));
  EXPECT_EQ((Indices{3, 4}), run.listener.Indices());
}

TEST(PairProgress, ARejectedPairIsNotCounted) {
  PairRun run(1);
  EXPECT_EQ(OK(), run.CreateBins({99, 0, 99, 1, 2}, {kGood, kGood, kGood, kGood, kGood}));
  EXPECT_EQ((Indices{1}), run.listener.Indices());
}

}  // namespace
