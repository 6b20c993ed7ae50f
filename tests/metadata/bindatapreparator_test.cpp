#include "tqbinning/bindatapreparator.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstddef>
#include <ctime>
#include <filesystem>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "metadata/preparatorpass.h"

namespace {

using namespace metadata;

std::optional<std::clock_t> gTicks;  // what clock() says instead of the time

}  // namespace

// Stands in for the system's: file names begin at its value, and elapsed times are
// differences of it, so a test that sets it knows both.
extern "C" clock_t clock() noexcept {
  if (gTicks.has_value()) return *gTicks;
  timespec used{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
  return used.tv_sec * CLOCKS_PER_SEC + used.tv_nsec / (1000000000 / CLOCKS_PER_SEC);
}

namespace {

// Sets the processor time for the rest of the test.
class ProcessorTime {
 public:
  explicit ProcessorTime(std::clock_t ticks) { gTicks = ticks; }
  ProcessorTime(const ProcessorTime&) = delete;
  ProcessorTime& operator=(const ProcessorTime&) = delete;
  ~ProcessorTime() { gTicks.reset(); }
  void Advance(std::clock_t ticks) { *gTicks += ticks; }
};

// ---- naming the temporary files ----

TEST(SetUpTempFiles, NamesFilesByALowerCaseHexadecimalCounterThatStartsAtTheProcessorTime) {
  Pass pass(Variables("AAA"));
  const ProcessorTime time(0xabfe);
  EXPECT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
  EXPECT_EQ(pass.Files({"abfe", "abff", "ac00"}), pass.preparator.GetFileNames());
}

TEST(SetUpTempFiles, NamesHaveNeitherPrefixNorLeadingZeros) {
  Pass pass(Variables("AA"));
  const ProcessorTime time(0);
  EXPECT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
  EXPECT_EQ(pass.Files({"0", "1"}), pass.preparator.GetFileNames());
}

// clock() answers -1 when the time is not to be had; the counter has no sign.
TEST(SetUpTempFiles, AnUnknownProcessorTimeIsTheLargestCounterAndZeroFollowsIt) {
  Pass pass(Variables("AA"));
  const ProcessorTime time(-1);
  EXPECT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
  EXPECT_EQ(pass.Files({"ffffffffffffffff", "0"}), pass.preparator.GetFileNames());
}

TEST(SetUpTempFiles, TwoColumnsNeverReceiveTheSameName) {
  Pass pass(Variables("AAAAA"));
  EXPECT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
  const Names& names = pass.preparator.GetFileNames();
  EXPECT_EQ(5u, std::set<std::string>(names.begin(), names.end()).size());
}

TEST(SetUpTempFiles, CreatesNoFile) {
  Pass pass(Variables("TWA"));
  EXPECT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
  EXPECT_TRUE(pass.scratch.IsEmpty());
}

TEST(SetUpTempFiles, SkipsNamesThatAreTakenAndLeavesTheirFilesAlone) {
  Pass pass(Variables("AA"));
  support::WriteColumn(pass.scratch.File("ff"), {1.0});
  support::WriteColumn(pass.scratch.File("100"), {2.0});
  support::WriteColumn(pass.scratch.File("102"), {3.0});
  const ProcessorTime time(0xff);
  EXPECT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
  EXPECT_EQ(pass.Files({"101", "103"}), pass.preparator.GetFileNames());
  EXPECT_EQ((Doubles{2.0}), support::ReadColumn(pass.scratch.File("100")));
}

// The working directory of the test, for the rest of it.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const std::string& path) : fBefore(std::filesystem::current_path()) {
    std::filesystem::current_path(path);
  }
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;
  ~WorkingDirectory() { std::filesystem::current_path(fBefore); }

 private:
  std::filesystem::path fBefore;
};

// A user who may not read everything, as the super-user may.
class OrdinaryUser {
 public:
  OrdinaryUser() : fUser(geteuid()) {
    if (fUser == 0 && seteuid(65534) != 0) throw std::runtime_error("no other user");
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;
  ~OrdinaryUser() {
    if (seteuid(fUser) != 0) std::abort();  // the tests that follow rely on it
  }

 private:
  uid_t fUser;
};

// The directory is the working directory, so that no other one need be searchable.
TEST(SetUpTempFiles, AFileThatMayNotBeReadCountsAsTaken) {
  const support::ScratchDirectory scratch;
  const WorkingDirectory inside(scratch.Path());
  ASSERT_EQ(0, chmod(".", 0755));
  support::WriteColumn("20", {1.0});
  ASSERT_EQ(0, chmod("20", 0));
  BINVarList list = Variables("A");
  BINCancelInfo cancelInfo(nullptr);
  Preparator preparator(list, cancelInfo, "", nullptr, 0);
  const ProcessorTime time(0x20);
  {
    const OrdinaryUser user;
    ASSERT_EQ(nullptr, std::fopen("20", "r"));
    ASSERT_EQ(EACCES, errno);
    EXPECT_EQ(TQStatus(), preparator.SetUpTempFiles());
  }
  EXPECT_EQ((Names{"21"}), preparator.GetFileNames());
}

TEST(SetUpTempFiles, AnEmptyDirectoryGivesBareNamesInTheWorkingDirectory) {
  const support::ScratchDirectory scratch;
  const WorkingDirectory inside(scratch.Path());
  BINVarList list = Variables("A");
  BINCancelInfo cancelInfo(nullptr);
  {
    Preparator preparator(list, cancelInfo, "", nullptr, 0);
    const ProcessorTime time(0x3e8);
    support::MemoryRecords records(OneFieldEach({7.0}));
    EXPECT_EQ(TQStatus(), preparator.ProcessSource(records));
    EXPECT_EQ((Names{"3e8"}), preparator.GetFileNames());
    EXPECT_EQ((Doubles{7.0}), support::ReadColumn(scratch.File("3e8")));
  }
  EXPECT_TRUE(scratch.IsEmpty());
}

TEST(SetUpTempFiles, ADirectoryGetsASlashUnlessItEndsInASeparator) {
  const ProcessorTime time(0x10);
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", "/10"}, {"/", "/10"}, {"/x", "/x/10"}, {"\\", "\\10"}};
  for (const auto& [suffix, expected] : cases) {
    SCOPED_TRACE(suffix);
    Options options;
    options.suffix = suffix;
    Pass pass(Variables("A"), options);
    EXPECT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
    EXPECT_EQ((Names{pass.scratch.Path() + expected}), pass.preparator.GetFileNames());
  }
}

TEST(SetUpTempFiles, OnlyAsManyNamesAreChosenAsThereAreVariables) {
  Pass pass(Variables("AA"));
  pass.preparator.fProcRecSize = 4;
  const ProcessorTime time(0x10);
  EXPECT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
  const Names expected = {pass.scratch.File("10"), pass.scratch.File("11"), "", ""};
  EXPECT_EQ(expected, pass.preparator.GetFileNames());
}

TEST(SetUpTempFiles, RemovesTheFilesOfAnEarlierSetUp) {
  Pass pass(Variables("AA"));
  {
    const ProcessorTime time(0x10);
    EXPECT_EQ(TQStatus(), pass.Run({{1.0, 2.0}}));
  }
  ASSERT_EQ(2u, pass.scratch.CountFiles());
  const ProcessorTime time(0x20);
  EXPECT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
  EXPECT_TRUE(pass.scratch.IsEmpty());
  EXPECT_EQ(pass.Files({"20", "21"}), pass.preparator.GetFileNames());
}

TEST(SetUpTempFiles, TheNamesOfAnEarlierSetUpAreFreeAgain) {
  Pass pass(Variables("A"));
  const ProcessorTime time(0x10);
  EXPECT_EQ(TQStatus(), pass.Run({{1.0}}));
  EXPECT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
  EXPECT_EQ(pass.Files({"10"}), pass.preparator.GetFileNames());
}

TEST(SetUpTempFiles, SizesTheCacheAndEmptiesIt) {
  Pass pass(Variables("TWA"));
  EXPECT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
  EXPECT_EQ(3, pass.preparator.fCache.GetNRows());
  EXPECT_EQ(10000, pass.preparator.fCache.GetNCols());
  ASSERT_TRUE(pass.preparator.fCache.AddElem(2, 1.0));
  EXPECT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
  EXPECT_EQ(0u, pass.preparator.fCache.GetRowSize(2));
}

// The cache refuses a negative capacity as it does one that memory cannot hold; half
// of -2 is -1, and half of -1 is 0.
TEST(SetUpTempFiles, ACacheThatCannotBeSizedEvenAtHalfCapacityIsAResourceFailure) {
  Pass pass(Variables("A"));
  pass.preparator.fCacheCapacity = -2;
  EXPECT_EQ(Error(TQBinning::kResourceFailure), pass.preparator.SetUpTempFiles());
  EXPECT_EQ(-1, pass.preparator.fCacheCapacity);  // halved once, not twice
}

TEST(SetUpTempFiles, ACacheThatCannotBeSizedIsTriedOnceMoreAtHalfCapacity) {
  Pass pass(Variables("A"));
  pass.preparator.fCacheCapacity = -1;
  EXPECT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
  EXPECT_EQ(0, pass.preparator.fCacheCapacity);
}

TEST(ProcessSource, ACacheThatCannotBeSizedIsALastingErrorAndReadsNothing) {
  Pass pass(Variables("A"));
  pass.preparator.fCacheCapacity = -2;
  support::MemoryRecords records(OneFieldEach({1.0}));
  EXPECT_EQ(Error(TQBinning::kResourceFailure), pass.preparator.ProcessSource(records));
  EXPECT_EQ(Error(TQBinning::kResourceFailure), pass.preparator.GetStatus());
  EXPECT_EQ(0u, records.NextCalls());
}

TEST(SetUpTempFiles, CancellationSeenWhileProbingEndsAtTheNextFreeNameWithoutKeepingIt) {
  support::CancelAtPoll query(1);
  Options options;
  options.query = &query;
  Pass pass(Variables("AA"), options);
  support::WriteColumn(pass.scratch.File("10"), {1.0});
  support::WriteColumn(pass.scratch.File("11"), {1.0});
  const ProcessorTime time(0x10);
  EXPECT_EQ(Error(TQBinning::kCancelled), pass.preparator.SetUpTempFiles());
  EXPECT_EQ((Names{"", ""}), pass.preparator.GetFileNames());
  EXPECT_EQ(1, query.Polls());
}

TEST(SetUpTempFiles, NamesChosenBeforeTheCancellationStay) {
  support::CancelAtPoll query(1);
  Options options;
  options.query = &query;
  Pass pass(Variables("AAA"), options);
  support::WriteColumn(pass.scratch.File("11"), {1.0});
  const ProcessorTime time(0x10);
  EXPECT_EQ(Error(TQBinning::kCancelled), pass.preparator.SetUpTempFiles());
  EXPECT_EQ((Names{pass.scratch.File("10"), "", ""}), pass.preparator.GetFileNames());
}

TEST(SetUpTempFiles, PollsOncePerNameThatIsTaken) {
  support::CancelAtPoll query(0);
  Options options;
  options.query = &query;
  Pass pass(Variables("AA"), options);
  for (const char* name : {"10", "11", "13"}) support::WriteColumn(pass.scratch.File(name), {});
  const ProcessorTime time(0x10);
  EXPECT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
  EXPECT_EQ(pass.Files({"12", "14"}), pass.preparator.GetFileNames());
  EXPECT_EQ(3, query.Polls());
}

TEST(ProcessSource, CancellationWhileNamingIsALastingErrorAndReadsNothing) {
  support::CancelAtPoll query(1);
  Options options;
  options.query = &query;
  Pass pass(Variables("A"), options);
  support::WriteColumn(pass.scratch.File("10"), {1.0});
  const ProcessorTime time(0x10);
  support::MemoryRecords records(OneFieldEach({1.0}));
  EXPECT_EQ(Error(TQBinning::kCancelled), pass.preparator.ProcessSource(records));
  EXPECT_EQ(Error(TQBinning::kCancelled), pass.preparator.GetStatus());
  EXPECT_EQ(0u, records.NextCalls());
}

// ---- cancellation ----

TEST(ProcessSource, CancellationAtTheNthPollKeepsTheCasesBeforeIt) {
  for (int poll = 2; poll <= 4; ++poll) {  // the fourth follows the last case
    SCOPED_TRACE(poll);
    support::CancelAtPoll query(poll);
    Options options;
    options.query = &query;
    Pass pass(Variables("A"), options);
    const ProcessorTime time(0x10);
    support::MemoryRecords records(OneFieldEach({1.0, 2.0, 3.0}));
    EXPECT_EQ(Error(TQBinning::kCancelled), pass.preparator.ProcessSource(records));
    EXPECT_EQ(Error(TQBinning::kCancelled), pass.preparator.GetStatus());
    const auto kept = static_cast<std::size_t>(poll - 1);
    EXPECT_EQ(kept, records.NextCalls());
    EXPECT_EQ(kept, pass.preparator.GetNumberOfKeptCases());
    EXPECT_EQ(kept, pass.Column(0).size());
    EXPECT_EQ(poll, query.Polls());
  }
}

TEST(ProcessSource, PollsOncePerStepAndOnceAtTheEnd) {
  support::CancelAtPoll query(0);
  Options options;
  options.query = &query;
  Pass pass(Variables("A"), options);
  support::MemoryRecords records(OneFieldEach({1.0, 2.0, 3.0}));
  records.YieldNullAt(1);
  EXPECT_EQ(TQStatus(), pass.preparator.ProcessSource(records));
  EXPECT_EQ(5, query.Polls());  // three cases, one null, the end
}

TEST(ProcessSource, CancellationBeforeTheFirstCaseIsReportedAsNoCase) {
  support::CancelAtPoll query(1);
  Options options;
  options.query = &query;
  Pass pass(Variables("A"), options);
  support::MemoryRecords records(OneFieldEach({1.0}));
  EXPECT_EQ(Error(TQBinning::kNoCases), pass.preparator.ProcessSource(records));
  EXPECT_EQ(0u, records.NextCalls());
}

TEST(ProcessSource, ARequestOfTheHostsOwnCancelsWithoutAQuery) {
  Pass pass(Variables("A"));
  EventfulRecords records(OneFieldEach({1.0, 2.0, 3.0}), [&] { pass.cancelInfo.SetCancel(); });
  EXPECT_EQ(Error(TQBinning::kCancelled), pass.preparator.ProcessSource(records));
  EXPECT_EQ((Doubles{1.0}), pass.Column(0));
}

TEST(ProcessSource, CancellationEndsAnIteratorThatYieldsNothingForEver) {
  support::CancelAtPoll query(1000);
  Options options;
  options.query = &query;
  Pass pass(Variables("A"), options);
  support::EndlessNulls records;
  EXPECT_EQ(Error(TQBinning::kNoCases), pass.preparator.ProcessSource(records));
  EXPECT_EQ(1000, query.Polls());
}

TEST(ProcessSource, ACancelledPassHoldsNoColumnToItsDeclaration) {
  support::CancelAtPoll query(2);
  Options options;
  options.query = &query;
  Pass pass(Variables("TA", 2), options);
  EXPECT_EQ(Error(TQBinning::kCancelled), pass.Run({{5.0, 1.0}, {0.0, 1.0}}));
  EXPECT_TRUE(pass.IsValid(0));
}

// ---- progress ----

Ints ReportsOf(const std::string& kinds, support::MemoryRecords& records, int interval) {
  support::RecordingListener listener;
  Options options;
  options.listener = &listener;
  options.interval = interval;
  Pass pass(Variables(kinds), options);
  EXPECT_EQ(TQStatus(), pass.preparator.ProcessSource(records));
  return listener.Indices();
}

TEST(ProcessSource, WithAnIntervalOfOneTheListenerIsCalledAfterEveryStep) {
  support::MemoryRecords records(OneFieldEach({1.0, 2.0, 3.0}));
  EXPECT_EQ((Ints{1, 2, 3}), ReportsOf("A", records, 1));
}

TEST(ProcessSource, AnIntervalOfNReportsEveryNthStep) {
  support::MemoryRecords records(OneFieldEach({1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_EQ((Ints{3, 6}), ReportsOf("A", records, 3));
}

// The processed count repeats where the iterator yields nothing.
TEST(ProcessSource, StepsThatYieldNothingCountForTheIntervalButNotAsProcessed) {
  support::MemoryRecords records(OneFieldEach({1.0, 2.0}));
  records.YieldNullAt(0);
  records.YieldNullAt(2);
  EXPECT_EQ((Ints{0, 1, 1, 2}), ReportsOf("A", records, 1));
}

TEST(ProcessSource, DroppedCasesCountAsProcessed) {
  support::MemoryRecords records({{1.0, 1.0}, {kMissing, 2.0}, {1.0, 3.0}});
  EXPECT_EQ((Ints{1, 2, 3}), ReportsOf("WA", records, 1));
}

TEST(ProcessSource, AnIntervalOfZeroNeverReports) {
  support::MemoryRecords records(Rows(1000, {1.0}));
  EXPECT_EQ(Ints{}, ReportsOf("A", records, 0));
}

// The countdown cannot go below the smallest integer.
TEST(ProcessSource, ANegativeIntervalNeverReportsAndNeverOverflows) {
  for (const int interval : {-1, INT_MIN + 1, INT_MIN}) {
    SCOPED_TRACE(interval);
    support::MemoryRecords records(Rows(1000, {1.0}));
    EXPECT_EQ(Ints{}, ReportsOf("A", records, interval));
  }
}

// 2500000 ticks of processor time pass before each case, a million to the second.
TEST(ProcessSource, ReportsTheProcessorSecondsSinceTheCasesBegan) {
  support::RecordingListener listener;
  Options options;
  options.listener = &listener;
  options.interval = 1;
  Pass pass(Variables("A"), options);
  ProcessorTime time(123456789);
  EventfulRecords records(OneFieldEach({7.0, 8.0}), [&] { time.Advance(2500000); });
  EXPECT_EQ(TQStatus(), pass.preparator.ProcessSource(records));
  EXPECT_EQ((std::vector<std::pair<int, double>>{{1, 2.5}, {2, 5.0}}), listener.Reports());
}

TEST(ProcessSource, AnErrorInACaseIsNotReportedAsProgress) {
  support::RecordingListener listener;
  Options options;
  options.listener = &listener;
  options.interval = 1;
  Pass pass(Variables("TA"), options);
  EXPECT_EQ(Error(TQBinning::kCodeOutOfRange), pass.Run({{0.0, 1.0}, {300.0, 1.0}}));
  EXPECT_EQ((Ints{1}), listener.Indices());
}

// ---- variables and directories out of the ordinary ----

// Nothing could be written there either, so the search need not go on for ever.
TEST(SetUpTempFiles, ADirectoryThatRefusesEveryNameEndsTheSearch) {
  const support::ScratchDirectory scratch;
  ASSERT_EQ(0, chmod(scratch.Path().c_str(), 0));
  BINVarList list = Variables("A");
  BINCancelInfo cancelInfo(nullptr);
  Preparator preparator(list, cancelInfo, scratch.Path(), nullptr, 0);
  const ProcessorTime time(0);
  {
    const OrdinaryUser user;
    EXPECT_EQ(TQStatus(), preparator.SetUpTempFiles());
    EXPECT_EQ(Error(TQBinning::kCannotAppend), preparator.TransferData());
  }
  ASSERT_EQ(0, chmod(scratch.Path().c_str(), 0700));
  EXPECT_EQ((Names{scratch.File("1869f")}), preparator.GetFileNames());  // the 100000th
}

}  // namespace
