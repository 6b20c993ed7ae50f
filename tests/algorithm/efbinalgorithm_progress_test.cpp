#include "tqbinning/efbinalgorithm.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "algorithm/binningrun.h"
#include "algorithm/eightcases.h"
#include "support/hostfakes.h"
#include "support/memoryrecords.h"

// What the equal-frequency driver reports.
namespace {

using namespace support;

// Six attributes, all of which can be binned.
class EFProgressRun : public EqualFrequencyRun {
 public:
  explicit EFProgressRun(int skipped)
      : EqualFrequencyRun("xxxxxx", Columns(std::vector<Numbers>(6, k1To8))) {
    EXPECT_TRUE(settings.SetNSkippedAttReports(skipped));
    settings.SetProgressListener(&listener);
  }
  RecordingListener listener;
};

TEST(EFProgress, IsReportedAfterEveryAttributeWhenNoneIsSkipped) {
  EFProgressRun run(0);
  EXPECT_EQ(OK(), run.CreateBins({4, 0, 3}));
  EXPECT_EQ((Indices{4, 0, 3}), run.listener.Indices());
}

TEST(EFProgress, IsReportedAfterTheThirdOfFiveAttributesWhenTwoAreSkipped) {
  EFProgressRun run(2);
  EXPECT_EQ(OK(), run.CreateBins({0, 1, 2, 3, 4}));
  EXPECT_EQ((Indices{2}), run.listener.Indices());
}

TEST(EFProgress, IsReportedAfterTheSixthAttributeNext) {
  EFProgressRun run(2);
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Indices{2, 5}), run.listener.Indices());
}

TEST(EFProgress, EveryCallCountsAnew) {
  EFProgressRun run(2);
  EXPECT_EQ(OK(), run.CreateBins({0, 1}));
  EXPECT_EQ(OK(), run.CreateBins({2, 3}));
  EXPECT_TRUE(run.listener.Reports().empty());
}

TEST(EFProgress, ARejectedIndexIsNotCounted) {
  EFProgressRun run(1);
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

TEST(EFProgress, ElapsedTimesAreProcessorSecondsThatDoNotRunBackwards) {
  EFProgressRun run(0);
  EXPECT_EQ(OK(), run.CreateBins());
  ASSERT_EQ(6u, run.listener.Reports().size());
  double earlier = 0.0;
  for (const auto& report : run.listener.Reports()) {
    EXPECT_GE(report.second, earlier);
    EXPECT_LT(report.second, 60.0);
    earlier = report.second;
  }
}

TEST(EFProgress, OfTheDataPassIsReportedByTheNumberOfCases) {
  EqualFrequencyRun run("x", EightCases());
  RecordingListener listener;
  run.settings.SetProgressListener(&listener);
  ASSERT_TRUE(run.settings.SetNSkippedCasesReports(3));
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Indices{3, 6, 0}), listener.Indices());  // cases, and then attribute 0
}

TEST(EFProgress, AListenerSetOnTheAlgorithmReplacesThatOfTheSettings) {
  EqualFrequencyRun run("x", EightCases());
  RecordingListener first, second;
  run.settings.SetProgressListener(&first);
  run.Algorithm().SetProgressListener(&second);
  EXPECT_EQ(&second, run.Algorithm().GetSettings().GetProgressListener());
  EXPECT_EQ(&first, run.settings.GetProgressListener());
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_TRUE(first.Reports().empty());
  EXPECT_EQ((Indices{0}), second.Indices());
}

}  // namespace
