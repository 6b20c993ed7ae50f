#include <ctime>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "algorithm/binningrun.h"
#include "algorithm/plaincourse.h"
#include "support/hostfakes.h"

// Whole runs, cancelled at each of their polls in turn: every poll, every report, every
// status and every result is compared with a plain course of the same run.
namespace {

using support::CancelAtPoll;
using support::EqualFrequencyRun;
using support::Error;
using support::Indices;
using support::Outcome;
using support::Pace;
using support::PlainCourse;
using support::Plan;
using support::RecordingListener;
using support::SupervisedRun;
using support::TextOf;
using support::TQStatus;

class PlannedSupervisedRun : public SupervisedRun {
 public:
  explicit PlannedSupervisedRun(const Plan& plan)
      : SupervisedRun(support::LettersOf(plan), support::RowsOf(plan)), fPlan(plan) {
    EXPECT_TRUE(settings.SetNumberOfBins(5));
    EXPECT_TRUE(settings.SetNumDistinctValueThreshold(plan.isPreBinned ? 3 : 100));
  }
  TQStatus CreateBinsAsPlanned() {
    if (!fPlan.isNamed) return CreateBins();
    Indices attributes, targets;
    for (const support::Wish& wish : fPlan.wishes) {
      attributes.push_back(wish.attribute);
      targets.push_back(wish.target);
    }
    return CreateBins(attributes, targets);
  }

 private:
  const Plan& fPlan;
};

class PlannedEqualFrequencyRun : public EqualFrequencyRun {
 public:
  explicit PlannedEqualFrequencyRun(const Plan& plan)
      : EqualFrequencyRun(support::LettersOf(plan), support::RowsOf(plan)), fPlan(plan) {}
  TQStatus CreateBinsAsPlanned() {
    if (!fPlan.isNamed) return CreateBins();
    Indices attributes;
    for (const support::Wish& wish : fPlan.wishes) attributes.push_back(wish.attribute);
    return CreateBins(attributes);
  }

 private:
  const Plan& fPlan;
};

void PutNullsInto(support::MemoryRecords& records, const Plan& plan) {
  for (std::size_t step = 0; step < plan.steps.size(); ++step) {
    if (plan.steps[step] == 'n') records.YieldNullAt(step);
  }
}

Outcome OutcomeOf(const TQStatus& status) {
  return status.IsOK() ? Outcome::kOK : status.IsError() ? Outcome::kError : Outcome::kWarning;
}

// What each wish's result looks like in a run that nobody disturbs.
template <typename Run>
std::vector<std::string> UndisturbedTexts(const Plan& plan) {
  Run run(plan);
  PutNullsInto(run.records, plan);
  static_cast<void>(run.CreateBinsAsPlanned());
  std::vector<std::string> texts;
  for (const auto& result : run.Results()) {
    const Outcome wanted = plan.wishes.at(texts.size()).outcome;
    EXPECT_EQ(wanted == Outcome::kRejected ? Outcome::kError : wanted,
              OutcomeOf(result.GetStatus()))
        << "wish " << texts.size() << ": " << testing::PrintToString(result.GetStatus());
    texts.push_back(TextOf(result));
  }
  return texts;
}

// Two calls of one object; the second one bins what was read by the first.
template <typename Run>
void ExpectThePlainCourse(const Plan& plan, Pace pace, int yesAt,
                          const std::vector<std::string>& texts) {
  PlainCourse course(plan, pace, yesAt);
  CancelAtPoll query(yesAt);
  RecordingListener listener;
  Run run(plan);
  PutNullsInto(run.records, plan);
  run.settings.SetCancelPointer(&query);
  run.settings.SetProgressListener(&listener);
  ASSERT_TRUE(run.settings.SetNSkippedCasesReports(pace.cases));
  ASSERT_TRUE(run.settings.SetNSkippedAttReports(pace.skippedAttributes));

  const std::clock_t start = std::clock();
  for (int call = 1; call <= 2; ++call) {
    const TQStatus wanted = course.CreateBins();
    EXPECT_EQ(wanted, run.CreateBinsAsPlanned()) << "call " << call;
    if (wanted == Error(120004)) break;  // nothing was kept that a second call could bin
  }
  EXPECT_EQ(course.IsCancelled(), run.Algorithm().GetStatus() == Error(1));
  EXPECT_EQ(course.Polls(), query.Polls());

  EXPECT_EQ(course.Reports(), listener.Indices());
  const double elapsed = static_cast<double>(std::clock() - start) / 1000000.0;
  for (const auto& report : listener.Reports()) {
    EXPECT_GE(report.second, 0.0);
    EXPECT_LE(report.second, elapsed);
  }

  std::vector<std::string> wantedTexts, storedTexts;
  for (const std::size_t wish : course.Stored()) wantedTexts.push_back(texts.at(wish));
  for (const auto& result : run.Results()) storedTexts.push_back(TextOf(result));
  EXPECT_EQ(wantedTexts, storedTexts);

  run.DeleteAlgorithm();
  EXPECT_TRUE(run.directory.IsEmpty());
}

// The polls of two calls and of the question for the status, if nobody cancels.
int PollsOf(const Plan& plan) {
  PlainCourse whole(plan, Pace{0, 0}, 0);
  for (int call = 1; call <= 2; ++call) {
    if (whole.CreateBins() == Error(120004)) break;
  }
  static_cast<void>(whole.IsCancelled());
  return whole.Polls();
}

// Cancelled nowhere (0), and at every poll in turn; with reports at several paces.
template <typename Run>
void ExpectThePlainCourseAtEveryPoll(const Plan& plan) {
  const std::vector<std::string> texts = UndisturbedTexts<Run>(plan);
  const int polls = PollsOf(plan);
  for (const Pace pace : {Pace{0, 0}, Pace{1, 1}, Pace{3, 2}, Pace{100000, 0}}) {
    for (int n = 0; n <= polls; ++n) {
      SCOPED_TRACE(testing::Message() << "reports after " << pace.cases << " cases and skipping "
                                      << pace.skippedAttributes << " attributes, cancelled at poll "
                                      << n << " of " << polls);
      ExpectThePlainCourse<Run>(plan, pace, n, texts);
      if (testing::Test::HasFailure()) return;
    }
  }
}

// An attribute that binning leaves without a cut ends in a warning.
constexpr Outcome kNoCut = Outcome::kWarning;

TEST(SupervisedPolls, OfSeveralAttributes) {
  ExpectThePlainCourseAtEveryPoll<PlannedSupervisedRun>(
      {"rrtr", "kkkkkkkk", {{0, 2}, {1, 2}, {3, 2}}});
}

TEST(SupervisedPolls, OfWeightedCasesThatDropOutAndSourcesThatPause) {
  ExpectThePlainCourseAtEveryPoll<PlannedSupervisedRun>(
      {"rwtr", "ndkkknkdkdnnkk", {{0, 2}, {3, 2}}});
}

TEST(SupervisedPolls, OfMissingAndConstantAttributes) {
  ExpectThePlainCourseAtEveryPoll<PlannedSupervisedRun>(
      {"hrmct", "kkkkkkkk", {{0, 4, kNoCut}, {1, 4}, {2, 4, kNoCut}, {3, 4, kNoCut}}});
}

TEST(SupervisedPolls, OfPreBinnedAttributes) {
  ExpectThePlainCourseAtEveryPoll<PlannedSupervisedRun>(
      {"rtwh", "kkkdkkkkkkkk", {{0, 1}, {3, 1, kNoCut}}, false, true});
}

// Column 3 holds a code that it does not declare, which makes it no target; rejected pairs
// are stored even after cancellation.
TEST(SupervisedPolls, OfPairsThatFailOrAreRejected) {
  ExpectThePlainCourseAtEveryPoll<PlannedSupervisedRun>({"rrtug",
                                                         "kkkkkk",
                                                         {{0, 2},
                                                          {99, 2, Outcome::kRejected},
                                                          {1, 3, Outcome::kError},
                                                          {0, 4},
                                                          {1, 0, Outcome::kRejected},
                                                          {0, 2}},
                                                         true});
}

TEST(SupervisedPolls, OfAPassThatKeepsNoCase) {
  ExpectThePlainCourseAtEveryPoll<PlannedSupervisedRun>({"rwt", "dnddd", {{0, 2}}});
}

TEST(EqualFrequencyPolls, OfSeveralAttributes) {
  ExpectThePlainCourseAtEveryPoll<PlannedEqualFrequencyRun>(
      {"rrr", "kkkkkkkk", {{0, -1}, {1, -1}, {2, -1}}});
}

TEST(EqualFrequencyPolls, OfWeightedCasesThatDropOutAndSourcesThatPause) {
  ExpectThePlainCourseAtEveryPoll<PlannedEqualFrequencyRun>(
      {"rwr", "ndkkknkdkdnnkk", {{0, -1}, {2, -1}}});
}

TEST(EqualFrequencyPolls, OfMissingAndConstantAttributes) {
  ExpectThePlainCourseAtEveryPoll<PlannedEqualFrequencyRun>(
      {"hrmc", "kkkkkkkk", {{0, -1}, {1, -1}, {2, -1, kNoCut}, {3, -1, kNoCut}}});
}

TEST(EqualFrequencyPolls, OfIndicesThatAreRejectedOrComeTwice) {
  ExpectThePlainCourseAtEveryPoll<PlannedEqualFrequencyRun>(
      {"rwr",
       "kkdkkk",
       {{0, -1}, {1, -1, Outcome::kRejected}, {2, -1}, {99, -1, Outcome::kRejected}, {0, -1}},
       true});
}

TEST(EqualFrequencyPolls, OfAPassThatKeepsNoCase) {
  ExpectThePlainCourseAtEveryPoll<PlannedEqualFrequencyRun>({"rw", "dnddd", {{0, -1}}});
}

}  // namespace
