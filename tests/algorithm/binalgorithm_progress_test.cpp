#include "tqbinning/binalgorithm.h"

#include <gtest/gtest.h>

#include "algorithm/eightcases.h"

// What the supervised driver reports.
namespace {

using namespace support;

// ---------------------------------------------------------------------- progress

// Five attributes: the listener is told which were reported.
class ProgressRun : public SupervisedRun {
 public:
  explicit ProgressRun(int skipped)
      : SupervisedRun(
            "xxxxxyc",
            Columns({k1To8, k1To8, k1To8, k1To8, k1To8, kHalves, {0, 0, 0, 0, 2, 2, 2, 2}})) {
    EXPECT_TRUE(settings.SetNSkippedAttReports(skipped));
    settings.SetProgressListener(&listener);
  }
  RecordingListener listener;
};

TEST(Progress, IsReportedAfterEveryAttributeWhenNoneIsSkipped) {
  ProgressRun run(0);
  EXPECT_EQ(OK(), run.CreateBins({4, 0, 3}));
  EXPECT_EQ((Indices{4, 0, 3}), run.listener.Indices());
}

TEST(Progress, IsReportedAfterEveryThirdAttributeWhenTwoAreSkipped) {
  ProgressRun run(2);
  EXPECT_EQ(OK(), run.CreateBins({0, 1, 2, 3, 4}));
  EXPECT_EQ((Indices{2}), run.listener.Indices());
}

TEST(Progress, TheCountGoesOnAfterAReport) {
  ProgressRun run(1);
  EXPECT_EQ(OK(), run.CreateBins({0, 1, 2, 3, 4, 0}));
  EXPECT_EQ((Indices{1, 3, 0}), run.listener.Indices());
}

TEST(Progress, EveryCallCountsAnew) {
  ProgressRun run(2);
  EXPECT_EQ(OK(), run.CreateBins({0, 1}));
  EXPECT_EQ(OK(), run.CreateBins({2, 3}));
  EXPECT_TRUE(run.listener.Reports().empty());
}

TEST(Progress, IsReportedWithoutListsToo) {
  SupervisedRun run("xyx", Columns({k1To8, kHalves, kReversed}));
  RecordingListener listener;
  run.settings.SetProgressListener(&listener);
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Indices{0, 2}), listener.Indices());
}

TEST(Progress, AnAttributeThatEndsInAWarningIsReported) {
  SupervisedRun run("xy", Columns({kConstant, kHalves}));
  RecordingListener listener;
  run.settings.SetProgressListener(&listener);
  EXPECT_EQ(Warning(120018), run.CreateBins());
  EXPECT_EQ((Indices{0}), listener.Indices());
}

// Variable 6 has a code that it did not declare; a pair against it ends in an error.
constexpr int kGood = 5;
constexpr int kBad = 6;

TEST(Progress, APairThatEndsInAnErrorIsCountedAndNotReported) {
  ProgressRun run(1);
  EXPECT_EQ(Warning(120018), run.CreateBins({0, 1, 2, 3}, {kBad, kGood, kGood, kGood}));
  EXPECT_EQ((Indices{1, 3}), run.listener.Indices());
}

TEST(Progress, AReportThatAnErrorPreventedIsMadeUpForByTheNextPair) {
  ProgressRun run(1);
  EXPECT_EQ(Warning(120018), run.CreateBins({0, 1, 2, 3, 4}, {kGood, kBad, kGood, kGood, kGood}));
  EXPECT_EQ((Indices{2, 4}), run.listener.Indices());
}

TEST(Progress, ErrorsInARowPreventNoMoreThanTheirOwnReports) {
  ProgressRun run(0);
  EXPECT_EQ(Warning(120018), run.CreateBins({0, 1, 2, 3, 4}, {kBad, kBad, kBad, kGood, kGood}));
  EXPECT_EQ((Indices{3, 4}), run.listener.Indices());
}

TEST(Progress, ARejectedPairIsNotCounted) {
  ProgressRun run(1);
  EXPECT_EQ(OK(), run.CreateBins({99, 0, 99, 1, 2}, {kGood, kGood, kGood, kGood, kGood}));
  EXPECT_EQ((Indices{1}), run.listener.Indices());
}

TEST(Progress, ElapsedTimesAreProcessorSecondsThatDoNotRunBackwards) {
  ProgressRun run(0);
  EXPECT_EQ(OK(), run.CreateBins({0, 1, 2, 3, 4}));
  double earlier = 0.0;
  for (const auto& report : run.listener.Reports()) {
    EXPECT_GE(report.second, earlier);
    EXPECT_LT(report.second, 60.0);
    earlier = report.second;
  }
}

TEST(Progress, OfTheDataPassIsReportedByTheNumberOfCases) {
  SupervisedRun run("xy", CuttableRows());
  RecordingListener listener;
  run.settings.SetProgressListener(&listener);
  ASSERT_TRUE(run.settings.SetNSkippedCasesReports(3));
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Indices{3, 6, 0}), listener.Indices());  // cases, and then attribute 0
}

TEST(Progress, AListenerSetOnTheAlgorithmReplacesThatOfTheSettings) {
  SupervisedRun run("xy", CuttableRows());
  RecordingListener first, second;
  run.settings.SetProgressListener(&first);
  run.Algorithm().SetProgressListener(&second);
  EXPECT_EQ(&second, run.Algorithm().GetSettings().GetProgressListener());
  EXPECT_EQ(&first, run.settings.GetProgressListener());
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_TRUE(first.Reports().empty());
  EXPECT_EQ((Indices{0}), second.Indices());
}

TEST(Progress, AListenerCanBeTakenAway) {
  ProgressRun run(0);
  run.Algorithm().SetProgressListener(nullptr);
  EXPECT_EQ(OK(), run.CreateBins({0}));
  EXPECT_TRUE(run.listener.Reports().empty());
}

}  // namespace
