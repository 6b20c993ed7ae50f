#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "algorithm/binningrun.h"
#include "support/hostfakes.h"
#include "support/memoryrecords.h"

// What both drivers do when the host cancels, or when what the host has brought
// misbehaves.  Every single poll: pollingpoints_test.cpp.
namespace {

using support::CancelAtPoll;
using support::Columns;
using support::EndlessNulls;
using support::EqualFrequencyRun;
using support::Error;
using support::Indices;
using support::MemoryRecords;
using support::Numbers;
using support::OK;
using support::RecordingListener;
using support::Rows;
using support::SupervisedRun;
using support::TQStatus;

const Numbers k1To8{1, 2, 3, 4, 5, 6, 7, 8};
const Numbers kHalves{0, 0, 0, 0, 1, 1, 1, 1};
constexpr int kCases = 8;

// Eight cases and two attributes to bin.
class SupervisedExample : public SupervisedRun {
 public:
  SupervisedExample() : SupervisedRun("xxy", Columns({k1To8, k1To8, kHalves})) {}
  TQStatus CreateBinsFrom(TQCommon::RecordIterator& source) {
    return Algorithm().CreateBins(source, nullptr, nullptr);
  }
  TQStatus CreateBinsOfBadIndices() { return CreateBins({-1}); }
  TQStatus RunFirstAttribute() { return Algorithm().RunAlgorithm(0, 2); }
  static constexpr long kBadIndices = 120008;
};

class EqualFrequencyExample : public EqualFrequencyRun {
 public:
  EqualFrequencyExample() : EqualFrequencyRun("xx", Columns({k1To8, k1To8})) {}
  TQStatus CreateBinsFrom(TQCommon::RecordIterator& source) {
    return Algorithm().CreateBins(source, nullptr);
  }
  TQStatus CreateBinsOfBadIndices() { return CreateBins(Indices{-1}); }
  TQStatus RunFirstAttribute() { return Algorithm().RunAlgorithm(0); }
  static constexpr long kBadIndices = 120011;
};

template <typename Example>
class Cancellation : public testing::Test {
 protected:
  // The polls of a run that nobody cancels.
  static int PollsOfAWholeRun() {
    CancelAtPoll never(0);
    Example run;
    run.settings.SetCancelPointer(&never);
    EXPECT_EQ(OK(), run.CreateBins());
    return never.Polls();
  }
};

using Examples = testing::Types<SupervisedExample, EqualFrequencyExample>;
TYPED_TEST_SUITE(Cancellation, Examples);

TYPED_TEST(Cancellation, AfterTheLastPollIsNoCancellation) {
  CancelAtPoll query(this->PollsOfAWholeRun() + 1);
  TypeParam run;
  run.settings.SetCancelPointer(&query);
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ(2u, run.Results().size());
  EXPECT_EQ(Error(1), run.Algorithm().GetStatus());  // this is the poll that says yes
}

// The last polls: before and after the first attribute, before and after the second,
// and when all is done.
TYPED_TEST(Cancellation, KeepsTheAttributesThatWereBinnedBeforeIt) {
  const int polls = this->PollsOfAWholeRun();
  const std::vector<std::size_t> stored{0, 1, 1, 2, 2};
  for (std::size_t i = 0; i < stored.size(); ++i) {
    CancelAtPoll query(polls - 4 + static_cast<int>(i));
    TypeParam run;
    run.settings.SetCancelPointer(&query);
    EXPECT_EQ(Error(1), run.CreateBins());
    EXPECT_EQ(stored[i], run.Results().size()) << i;
  }
}

TYPED_TEST(Cancellation, AfterAnAttributeSuppressesItsReport) {
  CancelAtPoll query(this->PollsOfAWholeRun() - 3);
  RecordingListener listener;
  TypeParam run;
  run.settings.SetCancelPointer(&query);
  run.settings.SetProgressListener(&listener);
  EXPECT_EQ(Error(1), run.CreateBins());
  EXPECT_EQ(1u, run.Results().size());
  EXPECT_TRUE(listener.Reports().empty());
}

TYPED_TEST(Cancellation, IsSeenByRunAlgorithmWhichThenStoresNothing) {
  TypeParam run;
  EXPECT_EQ(OK(), run.CreateBins());
  run.Algorithm().Cancel();
  EXPECT_EQ(Error(1), run.RunFirstAttribute());
  EXPECT_EQ(2u, run.Results().size());
  EXPECT_EQ(Error(1), run.Algorithm().fStatus);
}

// The pass has written files by then.
TYPED_TEST(Cancellation, LateInThePassLeavesNoFile) {
  CancelAtPoll query(10500);
  MemoryRecords records(Rows(11000, {1, 2, 0}));
  TypeParam run;
  run.settings.SetCancelPointer(&query);
  EXPECT_EQ(Error(1), run.CreateBinsFrom(records));
  EXPECT_FALSE(run.directory.IsEmpty());
  run.DeleteAlgorithm();
  EXPECT_TRUE(run.directory.IsEmpty());
}

TYPED_TEST(Cancellation, BeforeTheCallReadsNothing) {
  TypeParam run;
  run.Algorithm().Cancel();
  EXPECT_EQ(Error(1), run.CreateBins());
  EXPECT_EQ(0u, run.records.HasMoreCalls());
  EXPECT_EQ(0u, run.records.NextCalls());
  EXPECT_EQ(Error(1), run.Algorithm().GetStatus());
  EXPECT_TRUE(run.Results().empty());
  EXPECT_TRUE(run.directory.IsEmpty());
}

TYPED_TEST(Cancellation, IsSeenByGetStatusWithoutAnyCall) {
  TypeParam run;
  EXPECT_EQ(OK(), run.Algorithm().GetStatus());
  run.Algorithm().Cancel();
  EXPECT_EQ(Error(1), run.Algorithm().GetStatus());
}

TYPED_TEST(Cancellation, ReplacesAnEarlierStatusAndStopsLaterCalls) {
  TypeParam run;
  EXPECT_EQ(OK(), run.CreateBins());
  run.Algorithm().Cancel();
  EXPECT_EQ(Error(1), run.CreateBins());
  EXPECT_EQ(Error(1), run.Algorithm().GetStatus());
  EXPECT_EQ(2u, run.Results().size());
}

TYPED_TEST(Cancellation, ComesAfterTheChecksOfTheArguments) {
  TypeParam run;
  run.Algorithm().Cancel();
  EXPECT_EQ(Error(TypeParam::kBadIndices), run.CreateBinsOfBadIndices());
  TypeParam unset;
  unset.settings = decltype(unset.settings)();
  unset.Algorithm().Cancel();
  EXPECT_EQ(Error(120009), unset.CreateBins());
}

TYPED_TEST(Cancellation, ComesBeforeTheEmptyIterator) {
  TypeParam run;
  run.Algorithm().Cancel();
  MemoryRecords empty({});
  EXPECT_EQ(Error(1), run.CreateBinsFrom(empty));
}

TYPED_TEST(Cancellation, AsksTheQueryThatWasSetLast) {
  CancelAtPoll first(1), second(5);
  TypeParam run;
  run.settings.SetCancelPointer(&first);
  run.Algorithm().SetCancelPtr(&second);
  EXPECT_EQ(Error(1), run.CreateBins());
  EXPECT_EQ(0, first.Polls());
  EXPECT_EQ(5, second.Polls());
}

TYPED_TEST(Cancellation, AQueryCanBeTakenAway) {
  CancelAtPoll query(1);
  TypeParam run;
  run.settings.SetCancelPointer(&query);
  run.Algorithm().SetCancelPtr(nullptr);
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ(0, query.Polls());
}

TYPED_TEST(Cancellation, IsNotTakenBackByAnotherQuery) {
  CancelAtPoll never(0);
  TypeParam run;
  run.Algorithm().Cancel();
  run.Algorithm().SetCancelPtr(&never);
  EXPECT_EQ(Error(1), run.CreateBins());
  EXPECT_EQ(0, never.Polls());
}

TYPED_TEST(Cancellation, DoCancelSetsTheStatusAloneAndDoesNotCancel) {
  TypeParam run;
  run.Algorithm().DoCancel();
  EXPECT_EQ(Error(1), run.Algorithm().fStatus);
  EXPECT_EQ(support::Warning(120018), run.CreateBins());  // the status is not OK, the run goes on
  EXPECT_EQ(2u, run.Results().size());
}

// Cancels from inside of the run, at the nth report.
template <typename Algorithm>
class CancellingListener : public ProgressListener {
 public:
  CancellingListener(Algorithm& algorithm, int n) : fAlgorithm(algorithm), fReport(n) {}
  void Report(ProgressReport*) override {
    if (++fReports == fReport) fAlgorithm.Cancel();
  }
  int Reports() const { return fReports; }

 private:
  Algorithm& fAlgorithm;
  int fReport;
  int fReports = 0;
};

TYPED_TEST(Cancellation, FromAReportOfTheDataPassEndsThePass) {
  TypeParam run;
  ASSERT_TRUE(run.settings.SetNSkippedCasesReports(1));
  CancellingListener listener(run.Algorithm(), 3);
  run.Algorithm().SetProgressListener(&listener);
  EXPECT_EQ(Error(1), run.CreateBins());
  EXPECT_EQ(3, listener.Reports());
  EXPECT_EQ(3u, run.records.NextCalls());
  EXPECT_TRUE(run.Results().empty());
}

TYPED_TEST(Cancellation, FromAReportOfAnAttributeEndsTheBinning) {
  TypeParam run;
  CancellingListener listener(run.Algorithm(), 1);
  run.Algorithm().SetProgressListener(&listener);
  EXPECT_EQ(Error(1), run.CreateBins());
  EXPECT_EQ(1, listener.Reports());
  EXPECT_EQ(1u, run.Results().size());
}

TYPED_TEST(Cancellation, EndsAnIteratorThatNeverYieldsACase) {
  CancelAtPoll query(1000);
  EndlessNulls records;
  TypeParam run;
  run.settings.SetCancelPointer(&query);
  EXPECT_EQ(Error(120004), run.CreateBinsFrom(records));  // no case was kept
  EXPECT_EQ(Error(1), run.Algorithm().GetStatus());
  run.DeleteAlgorithm();
  EXPECT_TRUE(run.directory.IsEmpty());
}

// -------------------------------------------------------------------- hostile hosts

// Yields the rows, but throws at the nth call (from 0) of HasMore.
class ThrowingHasMore : public MemoryRecords {
 public:
  ThrowingHasMore(const Rows& rows, std::size_t n) : MemoryRecords(rows), fCall(n) {}
  bool HasMore() override {
    if (HasMoreCalls() == fCall) throw std::logic_error("the host's iterator failed");
    return MemoryRecords::HasMore();
  }

 private:
  std::size_t fCall;
};

class ThrowingANumber : public TQCommon::RecordIterator {
 public:
  bool HasMore() override { return true; }
  const TQCommon::Record* Next() override { throw 42; }
};

// Says that there are cases, once, and then that there are none.
class ChangesItsMind : public TQCommon::RecordIterator {
 public:
  bool HasMore() override { return fCalls++ == 0; }
  const TQCommon::Record* Next() override { return nullptr; }

 private:
  int fCalls = 0;
};

class ThrowingListener : public ProgressListener {
 public:
  void Report(ProgressReport*) override { throw std::runtime_error("the host's listener failed"); }
};

class ThrowingQuery : public TQQueryCancel {
 public:
  explicit ThrowingQuery(int n) : fPoll(n) {}
  bool IsCancelled() override {
    if (++fPolls == fPoll) throw std::runtime_error("the host's query failed");
    return false;
  }

 private:
  int fPoll;
  int fPolls = 0;
};

template <typename Example>
class HostileHost : public testing::Test {
 protected:
  // The run has failed for lack of a resource and leaves nothing behind.
  static void ExpectCleanFailure(Example& run, TQStatus status) {
    EXPECT_EQ(Error(3), status);
    EXPECT_TRUE(run.Results().empty());
    run.DeleteAlgorithm();
    EXPECT_TRUE(run.directory.IsEmpty());
  }
};
TYPED_TEST_SUITE(HostileHost, Examples);

TYPED_TEST(HostileHost, AnExceptionOfNextIsAResourceFailure) {
  for (std::size_t call = 0; call < kCases; ++call) {
    TypeParam run;
    run.records.ThrowAt(call);
    TQStatus status;
    ASSERT_NO_THROW(status = run.CreateBins()) << call;
    this->ExpectCleanFailure(run, status);
  }
}

// The pass has written files by then.
TYPED_TEST(HostileHost, AnExceptionLateInThePassLeavesNoFile) {
  TypeParam run;
  MemoryRecords records(Rows(11000, {1, 2, 0}));
  records.ThrowAt(10500);
  const TQStatus status = run.CreateBinsFrom(records);
  EXPECT_FALSE(run.directory.IsEmpty());
  this->ExpectCleanFailure(run, status);
}

TYPED_TEST(HostileHost, AnExceptionOfHasMoreIsAResourceFailure) {
  for (std::size_t call = 0; call <= kCases + 1; ++call) {
    TypeParam run;
    ThrowingHasMore records(Columns({k1To8, k1To8, kHalves}), call);
    TQStatus status;
    ASSERT_NO_THROW(status = run.CreateBinsFrom(records)) << call;
    this->ExpectCleanFailure(run, status);
  }
}

TYPED_TEST(HostileHost, AnExceptionOfAnyTypeIsCaught) {
  TypeParam run;
  ThrowingANumber records;
  TQStatus status;
  ASSERT_NO_THROW(status = run.CreateBinsFrom(records));
  this->ExpectCleanFailure(run, status);
}

TYPED_TEST(HostileHost, AfterAPassThatThrewAnotherCallFailsAgain) {
  TypeParam run;
  run.records.ThrowAt(3);
  EXPECT_EQ(Error(3), run.CreateBins());
  EXPECT_EQ(Error(3), run.CreateBins());
  MemoryRecords good(Columns({k1To8, k1To8, kHalves}));
  EXPECT_EQ(Error(3), run.CreateBinsFrom(good));
  EXPECT_EQ(0u, good.NextCalls());
  this->ExpectCleanFailure(run, run.CreateBins());
}

TYPED_TEST(HostileHost, AnIteratorThatChangesItsMindHasNoCase) {
  TypeParam run;
  ChangesItsMind records;
  EXPECT_EQ(Error(120004), run.CreateBinsFrom(records));
  EXPECT_EQ(Error(120004), run.CreateBinsFrom(records));
  EXPECT_TRUE(run.Results().empty());
  run.DeleteAlgorithm();
  EXPECT_TRUE(run.directory.IsEmpty());
}

TYPED_TEST(HostileHost, AnExceptionOfTheListenerDuringThePassIsAResourceFailure) {
  ThrowingListener listener;
  TypeParam run;
  ASSERT_TRUE(run.settings.SetNSkippedCasesReports(2));
  run.settings.SetProgressListener(&listener);
  TQStatus status;
  ASSERT_NO_THROW(status = run.CreateBins());
  this->ExpectCleanFailure(run, status);
}

TYPED_TEST(HostileHost, AnExceptionOfTheListenerAfterAnAttributeIsAResourceFailure) {
  ThrowingListener listener;
  TypeParam run;
  run.settings.SetProgressListener(&listener);
  TQStatus status;
  ASSERT_NO_THROW(status = run.CreateBins());
  EXPECT_EQ(Error(3), status);
  EXPECT_EQ(1u, run.Results().size());
  run.DeleteAlgorithm();
  EXPECT_TRUE(run.directory.IsEmpty());
}

TYPED_TEST(HostileHost, AnExceptionOfTheCancelQueryIsAResourceFailure) {
  for (int poll = 1; poll <= kCases + 2 * 2; ++poll) {
    ThrowingQuery query(poll);
    TypeParam run;
    run.settings.SetCancelPointer(&query);
    TQStatus status;
    ASSERT_NO_THROW(status = run.CreateBins()) << poll;
    EXPECT_EQ(Error(3), status) << poll;
    run.DeleteAlgorithm();
    EXPECT_TRUE(run.directory.IsEmpty());
  }
}

}  // namespace
