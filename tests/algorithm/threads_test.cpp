#include <atomic>
#include <cmath>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "algorithm/binningrun.h"
#include "support/memoryrecords.h"
#include "support/random.h"

// Objects on several threads of one process.  The thread sanitizer sees here what the
// runs share without knowing it; every build sees whether they disturb each other.
namespace {

using support::EqualFrequencyRun;
using support::Error;
using support::Numbers;
using support::OK;
using support::Rows;
using support::SupervisedRun;
using support::TextOf;
using support::TQStatus;

using Texts = std::vector<std::string>;

// Two attributes, a weight, a target and a third attribute that is sometimes missing.
Rows MixedRows(unsigned int seed, int cases) {
  support::Random random(seed);
  const auto below = [&random](unsigned int n) { return static_cast<double>(random.Below(n)); };
  Rows rows;
  for (int i = 0; i < cases; ++i) {
    const double value = below(1000);
    rows.push_back({value, std::floor(value / 150), 1 + below(3),
                    value + below(300) < 600 ? 0.0 : 1.0,
                    i % 5 == 0 ? support::kMissing : value / 8});
  }
  return rows;
}

class MixedSupervisedRun : public SupervisedRun {
 public:
  MixedSupervisedRun(unsigned int seed, int cases)
      : SupervisedRun("xxwyx", MixedRows(seed, cases)) {
    EXPECT_TRUE(settings.SetNumDistinctValueThreshold(100));
    EXPECT_TRUE(settings.SetNumberOfBins(20));
  }
};

class MixedEqualFrequencyRun : public EqualFrequencyRun {
 public:
  MixedEqualFrequencyRun(unsigned int seed, int cases)
      : EqualFrequencyRun("xxwxx", MixedRows(seed, cases), 10) {}
  TQStatus CreateBins() { return EqualFrequencyRun::CreateBins({0, 1, 4}); }
};

template <typename Run>
Texts TextsOfResults(Run& run) {
  Texts texts;
  for (const auto& result : run.Results()) texts.push_back(TextOf(result));
  return texts;
}

template <typename Run>
Texts TextsAlone(unsigned int seed, int cases) {
  Run run(seed, cases);
  static_cast<void>(run.CreateBins());
  return TextsOfResults(run);
}

// As often as the threads may meet at different places.
template <typename Run>
void RunAgainAndAgain(unsigned int seed, int cases, const Texts& alone) {
  for (int i = 0; i < 5; ++i) {
    Run run(seed, cases);
    EXPECT_EQ(OK(), run.CreateBins());
    EXPECT_EQ(alone, TextsOfResults(run));
    run.DeleteAlgorithm();
    EXPECT_TRUE(run.directory.IsEmpty());
  }
}

template <typename First, typename Second>
void ExpectTheSameOnTwoThreads() {
  constexpr int kFirstCases = 12000;  // more than one block, so that files are appended to
  constexpr int kSecondCases = 3000;
  const Texts first = TextsAlone<First>(1, kFirstCases);
  const Texts second = TextsAlone<Second>(2, kSecondCases);
  ASSERT_FALSE(first.empty());
  ASSERT_FALSE(second.empty());
  std::thread other([&second] { RunAgainAndAgain<Second>(2, kSecondCases, second); });
  RunAgainAndAgain<First>(1, kFirstCases, first);
  other.join();
}

TEST(Threads, TwoSupervisedRunsGiveWhatTheyGiveAlone) {
  ExpectTheSameOnTwoThreads<MixedSupervisedRun, MixedSupervisedRun>();
}

TEST(Threads, TwoEqualFrequencyRunsGiveWhatTheyGiveAlone) {
  ExpectTheSameOnTwoThreads<MixedEqualFrequencyRun, MixedEqualFrequencyRun>();
}

TEST(Threads, RunsOfBothFamiliesGiveWhatTheyGiveAlone) {
  ExpectTheSameOnTwoThreads<MixedSupervisedRun, MixedEqualFrequencyRun>();
}

// Never says yes; tells another thread how far the run is, and holds the run at one poll
// (from 1; 0: at none) until that thread lets it go.
class WatchedQuery : public TQQueryCancel {
 public:
  explicit WatchedQuery(int heldPoll = 0) : fHeldPoll(heldPoll) {}
  bool IsCancelled() override {
    const int poll = ++fPolls;
    while (poll == fHeldPoll && !fIsReleased) std::this_thread::yield();
    return false;
  }
  int Polls() const { return fPolls; }
  void Release() { fIsReleased = true; }

 private:
  int fHeldPoll;
  std::atomic<int> fPolls = 0;
  std::atomic<bool> fIsReleased = false;
};

constexpr int kFewCases = 300;

template <typename Example>
class CancelledFromOutside : public testing::Test {
 protected:
  static int PollsOfAWholeRun() {
    WatchedQuery query;
    Example run(3, kFewCases);
    run.settings.SetCancelPointer(&query);
    EXPECT_EQ(OK(), run.CreateBins());
    return query.Polls();
  }

  // Another thread cancels as soon as it sees that many polls.  The run waits there for
  // it, or goes on; then the scheduler says how far it has come by the time.
  static void CancelAfter(int polls, bool isHeld, const Texts& whole) {
    SCOPED_TRACE(testing::Message() << "cancelled after " << polls << " polls");
    WatchedQuery query(isHeld ? polls : 0);
    Example run(3, kFewCases);
    run.settings.SetCancelPointer(&query);
    auto& algorithm = run.Algorithm();
    std::thread other([&] {
      while (query.Polls() < polls) std::this_thread::yield();
      algorithm.Cancel();
      query.Release();
    });
    const TQStatus status = run.CreateBins();
    other.join();
    EXPECT_GE(query.Polls(), polls);
    EXPECT_TRUE(!isHeld || query.Polls() == polls);  // the poll after that asks no more

    const Texts stored = TextsOfResults(run);
    ExpectTheBeginningOf(whole, stored);
    ExpectStoredAsTheStatusSays(status, stored.size(), whole.size());
    EXPECT_EQ(Error(1), algorithm.GetStatus());
    EXPECT_EQ(Error(1), run.CreateBins());
    EXPECT_EQ(stored, TextsOfResults(run));
    run.DeleteAlgorithm();
    EXPECT_TRUE(run.directory.IsEmpty());
  }

 private:
  static void ExpectTheBeginningOf(const Texts& whole, const Texts& stored) {
    ASSERT_LE(stored.size(), whole.size());
    for (std::size_t i = 0; i < stored.size(); ++i) EXPECT_EQ(whole[i], stored[i]);
  }
  static void ExpectStoredAsTheStatusSays(const TQStatus& status, std::size_t stored,
                                          std::size_t whole) {
    if (status.IsOK()) {
      EXPECT_EQ(whole, stored);
    } else if (status == Error(120004)) {  // before the first case was kept
      EXPECT_EQ(0u, stored);
    } else {
      EXPECT_EQ(Error(1), status);
    }
  }
};

using MixedRuns = testing::Types<MixedSupervisedRun, MixedEqualFrequencyRun>;
TYPED_TEST_SUITE(CancelledFromOutside, MixedRuns);

TYPED_TEST(CancelledFromOutside, ARunEndsAtItsNextPoll) {
  const Texts whole = TextsAlone<TypeParam>(3, kFewCases);
  const int polls = this->PollsOfAWholeRun();
  for (int n = 1; n <= polls; n += n < polls - 10 ? 23 : 1) this->CancelAfter(n, true, whole);
}

TYPED_TEST(CancelledFromOutside, AtAnyMomentARunEndsForGoodAndLeavesNoFile) {
  const Texts whole = TextsAlone<TypeParam>(3, kFewCases);
  const auto polls = static_cast<unsigned int>(this->PollsOfAWholeRun());
  support::Random random(20);
  for (int i = 0; i < 100; ++i) {
    this->CancelAfter(static_cast<int>(random.Below(polls + 1)), false, whole);
  }
}

TYPED_TEST(CancelledFromOutside, OneObjectDoesNotStopAnotherOnItsThread) {
  const Texts whole = TextsAlone<TypeParam>(3, kFewCases);
  for (int i = 0; i < 20; ++i) {
    TypeParam cancelled(3, kFewCases);
    auto& algorithm = cancelled.Algorithm();
    std::thread other([&] {
      algorithm.Cancel();
      EXPECT_EQ(Error(1), cancelled.CreateBins());
    });
    TypeParam run(3, kFewCases);
    EXPECT_EQ(OK(), run.CreateBins());
    EXPECT_EQ(whole, TextsOfResults(run));
    other.join();
  }
}

}  // namespace
