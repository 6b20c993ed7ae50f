#include "tqbinning/bindatapreparator.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cmath>
#include <cstddef>
#include <ctime>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "data/variables.h"
#include "support/hostfakes.h"
#include "support/memoryrecords.h"
#include "support/scratchdirectory.h"
#include "tqbinning/bincancelinfo.h"
#include "tqbinning/binencoder.h"
#include "tqbinning/binusermissing.h"
#include "tqbinning/binvarlist.h"

namespace {

using support::Error;
using support::kInfinity;
using support::kMissing;
using support::kNaN;
using support::Rows;
using support::Variables;
using support::Warning;
using TQBinning::TQStatus;
using Doubles = std::vector<double>;
using Ints = std::vector<int>;
using Names = std::vector<std::string>;

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

class Preparator : public BINDataPreparator {
 public:
  using BINDataPreparator::BINDataPreparator;
  using BINDataPreparator::fCache;
  using BINDataPreparator::fCacheCapacity;
  using BINDataPreparator::fDropCase;
  using BINDataPreparator::fFileNames;
  using BINDataPreparator::fHasTarget;
  using BINDataPreparator::fHasWeight;
  using BINDataPreparator::fInputIndices;
  using BINDataPreparator::fInputRecSize;
  using BINDataPreparator::fMeasureLevels;
  using BINDataPreparator::fOrigRecSize;
  using BINDataPreparator::fPossibleInputs;
  using BINDataPreparator::fProcRecSize;
  using BINDataPreparator::fRoles;
  using BINDataPreparator::fTargetIndex;
  using BINDataPreparator::fTwoToThe64;
  using BINDataPreparator::fUserMissing;
  using BINDataPreparator::fWeightEncoder;
  using BINDataPreparator::fWeightNewIndex;
  using BINDataPreparator::fWeightOriginalIndex;
};

// What a pass may be given besides its variables.
struct Options {
  TQQueryCancel* query = nullptr;
  ProgressListener* listener = nullptr;
  int interval = 0;
  std::string suffix = "";  // what follows the scratch directory's path
};

// A preparator with all that it borrows, in a directory of its own.
struct Pass {
  explicit Pass(const BINVarList& variables, const Options& options = {})
      : list(variables),
        cancelInfo(options.query),
        preparator(list, cancelInfo, scratch.Path() + options.suffix, options.listener,
                   options.interval) {}

  TQStatus Run(const Rows& rows) {
    support::MemoryRecords records(rows);
    return preparator.ProcessSource(records);
  }
  Doubles Column(std::size_t column) const {
    return support::ReadColumn(preparator.GetFileNames()[column]);
  }
  bool IsValid(int column) {
    bool isValid = false;
    EXPECT_EQ(TQStatus(), preparator.IsValidTarget(column, isValid));
    return isValid;
  }
  Names Files(const Names& names) const {
    Names files;
    for (const std::string& name : names) files.push_back(scratch.File(name));
    return files;
  }

  support::ScratchDirectory scratch;
  BINVarList list;
  BINCancelInfo cancelInfo;
  Preparator preparator;
};

// Rows with something that happens whenever the next one is asked for.
class EventfulRecords : public support::MemoryRecords {
 public:
  EventfulRecords(const Rows& rows, std::function<void()> event)
      : MemoryRecords(rows), fEvent(std::move(event)) {}
  const TQCommon::Record* Next() override {
    fEvent();
    return MemoryRecords::Next();
  }

 private:
  std::function<void()> fEvent;
};

Rows OneFieldEach(const Doubles& values) {
  Rows rows;
  for (const double value : values) rows.push_back({value});
  return rows;
}

// ---- the layout of columns ----

TEST(BINDataPreparator, WithoutTargetAndWeightAttributesStartAtColumnZero) {
  const Pass pass(Variables("ACA"));
  EXPECT_EQ((Ints{0, 1, 2}), pass.preparator.GetVariableIndex());
  EXPECT_EQ(3, pass.preparator.fProcRecSize);
  EXPECT_EQ(3, pass.preparator.fOrigRecSize);
  EXPECT_EQ(3, pass.preparator.fInputRecSize);
  EXPECT_EQ((Ints{0, 1, 2}), pass.preparator.fInputIndices);
  EXPECT_EQ(-1, pass.preparator.fTargetIndex);
  EXPECT_EQ(-1, pass.preparator.fWeightOriginalIndex);
  EXPECT_EQ(-1, pass.preparator.fWeightNewIndex);
  EXPECT_EQ(0, pass.preparator.fHasTarget);
  EXPECT_EQ(0, pass.preparator.fHasWeight);
  EXPECT_EQ(nullptr, pass.preparator.fWeightEncoder);
}

TEST(BINDataPreparator, ColumnsAreTargetThenWeightThenAttributesInListOrder) {
  Pass pass(Variables("AWCT"));
  EXPECT_EQ((Ints{2, 1, 3, 0}), pass.preparator.GetVariableIndex());
  EXPECT_EQ(4, pass.preparator.fProcRecSize);
  EXPECT_EQ(2, pass.preparator.fInputRecSize);
  EXPECT_EQ((Ints{0, 2}), pass.preparator.fInputIndices);
  EXPECT_EQ(3, pass.preparator.fTargetIndex);
  EXPECT_EQ(1, pass.preparator.fWeightOriginalIndex);
  EXPECT_EQ(1, pass.preparator.fWeightNewIndex);
  EXPECT_EQ(1, pass.preparator.fHasTarget);
  EXPECT_EQ(1, pass.preparator.fHasWeight);
  EXPECT_EQ(static_cast<IBINEncoder*>(pass.preparator.fWeightEncoder), pass.list.GetEncoderAt(1));
}

TEST(BINDataPreparator, WithoutATargetTheWeightIsColumnZero) {
  const Pass pass(Variables("AWA"));
  EXPECT_EQ((Ints{1, 0, 2}), pass.preparator.GetVariableIndex());
  EXPECT_EQ(1, pass.preparator.fWeightNewIndex);
}

TEST(BINDataPreparator, WithoutAWeightAttributesFollowTheTarget) {
  const Pass pass(Variables("AAT"));
  EXPECT_EQ((Ints{1, 2, 0}), pass.preparator.GetVariableIndex());
}

TEST(BINDataPreparator, AVariableOfAnotherRoleHasNoColumn) {
  const Pass pass(Variables("UAUA"));
  EXPECT_EQ((Ints{-1, 0, -1, 1}), pass.preparator.GetVariableIndex());
  EXPECT_EQ(4, pass.preparator.fOrigRecSize);
  EXPECT_EQ(2, pass.preparator.fProcRecSize);
}

TEST(BINDataPreparator, OfAnEmptyListHasNoColumns) {
  const Pass pass{BINVarList()};
  EXPECT_EQ(Ints{}, pass.preparator.GetVariableIndex());
  EXPECT_EQ(0, pass.preparator.fProcRecSize);
}

TEST(BINDataPreparator, RemembersLevelsRolesAndUserMissingDefinitions) {
  BINVarList variables = Variables("AWTC");
  ASSERT_TRUE(variables.AddDiscreteUserMissing(0, 9.0, "nine"));
  Pass pass(variables);
  EXPECT_EQ((std::vector<IBINVariable::MeasureLevel>{
                IBINVariable::kContinuous, IBINVariable::kWeightLevel,
                IBINVariable::kNumericCategorical, IBINVariable::kNumericCategorical}),
            pass.preparator.fMeasureLevels);
  EXPECT_EQ((std::vector<IBINVariable::VariableRole>{
                IBINVariable::kAttribute, IBINVariable::kFrequencyWeight, IBINVariable::kTarget,
                IBINVariable::kAttribute}),
            pass.preparator.fRoles);
  ASSERT_EQ(4u, pass.preparator.fUserMissing.size());
  EXPECT_EQ(pass.list.GetVarAt(0)->GetUserMissingInfo(), pass.preparator.fUserMissing[0]);
  EXPECT_EQ(nullptr, pass.preparator.fUserMissing[1]);
}

TEST(BINDataPreparator, IsBornOKWithoutFilesOrCasesAndWithAllColumnsUsable) {
  Pass pass(Variables("TWA"));
  EXPECT_EQ(TQStatus(), pass.preparator.GetStatus());
  EXPECT_EQ(&pass.list, &pass.preparator.GetVarList());
  EXPECT_TRUE(pass.preparator.GetFileNames().empty());
  EXPECT_EQ(0u, pass.preparator.GetNumberOfKeptCases());
  EXPECT_FALSE(pass.preparator.fDropCase);
  EXPECT_EQ(10000, pass.preparator.fCacheCapacity);
  EXPECT_EQ(18446744073709551616.0, pass.preparator.fTwoToThe64);
  for (const int column : {0, 1, 2}) {
    EXPECT_TRUE(pass.IsValid(column));
    EXPECT_EQ(0, pass.preparator.GetLargestCode(column));
  }
  EXPECT_TRUE(pass.scratch.IsEmpty());
}

TEST(BINDataPreparator, KeepFailureReplacesTheLastingStatus) {
  Pass pass(Variables("A"));
  pass.preparator.KeepFailure(Error(TQBinning::kCannotAppend, 7));
  EXPECT_EQ(Error(TQBinning::kCannotAppend, 7), pass.preparator.GetStatus());
}

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

TEST(BINDataPreparatorDeathTest, MoreVariablesThanColumnsAreABrokenPrecondition) {
  Pass pass(Variables("AU"));
  EXPECT_DEATH((void)pass.preparator.SetUpTempFiles(), "fOrigRecSize <= fProcRecSize");
  support::MemoryRecords records({{1.0, 1.0}});
  EXPECT_DEATH((void)pass.preparator.ProcessSource(records), "fOrigRecSize <= fProcRecSize");
}

TEST(BINDataPreparatorDeathTest, ASecondTargetIsABrokenPrecondition) {
  Pass pass(Variables("TTA"));
  EXPECT_DEATH((void)pass.preparator.SetUpTempFiles(), "fOrigRecSize <= fProcRecSize");
}

TEST(BINDataPreparator, TheDestructorRemovesTheFilesAndNoOthers) {
  const support::ScratchDirectory scratch;
  support::WriteColumn(scratch.File("another"), {1.0});
  BINVarList list = Variables("TA");
  BINCancelInfo cancelInfo(nullptr);
  {
    Preparator preparator(list, cancelInfo, scratch.Path(), nullptr, 0);
    support::MemoryRecords records({{0.0, 1.0}});
    EXPECT_EQ(TQStatus(), preparator.ProcessSource(records));
    EXPECT_EQ(3u, scratch.CountFiles());
  }
  EXPECT_EQ(1u, scratch.CountFiles());
  EXPECT_EQ(2, list.Size());  // borrowed
}

TEST(BINDataPreparator, TheDestructorRemovesTheFilesOfAPassThatFailedAndMissesNoneThatNeverWas) {
  const support::ScratchDirectory scratch;
  BINVarList list = Variables("TA");
  BINCancelInfo cancelInfo(nullptr);
  {
    Preparator preparator(list, cancelInfo, scratch.Path(), nullptr, 0);
    preparator.fCacheCapacity = 1;
    support::MemoryRecords records({{0.0, 1.0}, {300.0, 1.0}});
    EXPECT_EQ(Error(TQBinning::kCodeOutOfRange), preparator.ProcessSource(records));
    EXPECT_EQ(2u, scratch.CountFiles());
    std::filesystem::remove(preparator.GetFileNames()[0]);
  }
  EXPECT_TRUE(scratch.IsEmpty());
}

// ---- one record ----

struct Processed {
  TQStatus status;
  Doubles fields;
  bool dropped;
};

Processed Process(Pass& pass, const Doubles& fields) {
  const int columns = pass.preparator.fProcRecSize;
  TQCommon::Record out(columns);
  for (int i = 0; i < columns; ++i) out[i] = 77.0;  // is to be overwritten
  pass.preparator.fDropCase = false;
  Processed result;
  result.status = pass.preparator.ProcessRecord(support::MakeRecord(fields), out);
  for (int i = 0; i < columns; ++i) result.fields.push_back(out[i]);
  result.dropped = pass.preparator.fDropCase;
  return result;
}

TEST(ProcessRecord, PutsTargetWeightAndAttributesIntoTheirColumns) {
  Pass pass(Variables("AWTC"));
  const Processed result = Process(pass, {1.5, 2.0, 3.0, 4.0});
  EXPECT_EQ(TQStatus(), result.status);
  EXPECT_EQ((Doubles{3.0, 2.0, 1.5, 4.0}), result.fields);
  EXPECT_FALSE(result.dropped);
}

TEST(ProcessRecord, WithoutTargetOrWeightAttributesMoveUp) {
  Pass neither(Variables("AA"));
  EXPECT_EQ((Doubles{1.5, 2.5}), Process(neither, {1.5, 2.5}).fields);
  Pass noTarget(Variables("AWA"));
  EXPECT_EQ((Doubles{3.0, 1.5, 2.5}), Process(noTarget, {1.5, 3.0, 2.5}).fields);
  Pass noWeight(Variables("AAT"));
  EXPECT_EQ((Doubles{3.0, 1.5, 2.5}), Process(noWeight, {1.5, 2.5, 3.0}).fields);
}

TEST(ProcessRecord, TheWeightIsEncoded) {
  Pass pass(Variables("WA"));
  EXPECT_EQ((Doubles{3.0, 1.5}), Process(pass, {2.5, 1.5}).fields);
  EXPECT_EQ((Doubles{kInfinity, 1.5}), Process(pass, {kInfinity, 1.5}).fields);
  const Processed result = Process(pass, {kNaN, 1.5});
  EXPECT_TRUE(std::isnan(result.fields[0]));
  EXPECT_EQ(1.5, result.fields[1]);
  EXPECT_FALSE(result.dropped);
}

TEST(ProcessRecord, AWeightThatEncodesToMissingDropsTheCaseAndWritesOnlyZeros) {
  BINVarList variables = Variables("TWA");
  ASSERT_TRUE(variables.AddDiscreteUserMissing(1, 9.0, ""));
  Pass pass(variables);
  for (const double weight : {kMissing, 0.0, 0.25, -3.0, 9.0, -kInfinity}) {
    SCOPED_TRACE(weight);
    const Processed result = Process(pass, {300.0, weight, 1.5});
    EXPECT_EQ(TQStatus(), result.status);
    EXPECT_TRUE(result.dropped);
    EXPECT_EQ((Doubles{0.0, 0.0, 0.0}), result.fields);
  }
  EXPECT_TRUE(pass.IsValid(0));  // a dropped case's target is not looked at
}

// ---- the target's code ----

TEST(ProcessRecord, ATargetThatIsMissingOrMinusOneAfterTruncationBecomesMissing) {
  Pass pass(Variables("TA"));
  for (const double target : {kMissing, -1.0, -1.5, -1.9999999999999998}) {
    SCOPED_TRACE(target);
    const Processed result = Process(pass, {target, 1.5});
    EXPECT_EQ(TQStatus(), result.status);
    EXPECT_EQ((Doubles{kMissing, 1.5}), result.fields);
  }
  EXPECT_TRUE(pass.IsValid(0));
}

TEST(ProcessRecord, ATargetCodeIsWrittenAsItIsAndItsWholePartRaisesTheLargestCode) {
  Pass pass(Variables("TA"));
  const std::vector<std::pair<double, int>> cases = {{0.0, 0}, {-0.5, 0},    {7.75, 7},
                                                     {3.0, 7}, {255.0, 255}, {255.9, 255}};
  for (const auto& [target, largest] : cases) {
    SCOPED_TRACE(target);
    const Processed result = Process(pass, {target, 1.5});
    EXPECT_EQ(TQStatus(), result.status);
    EXPECT_EQ((Doubles{target, 1.5}), result.fields);
    EXPECT_EQ(largest, pass.preparator.GetLargestCode(0));
  }
}

// Codes beyond 32 bits are out of range too, whatever their lower bits say.
const Doubles kTargetsOutOfRange = {256.0,        300.0,        -2.0,          -2.5,
                                    2147483647.0, 2147483648.0, -2147483648.0, -2147483649.0,
                                    4294967295.0, 4294967296.0, 4294967297.0,  1e300,
                                    -1e300,       kNaN,         kInfinity,     -kInfinity};

TEST(ProcessRecord, ATargetCodeOutOfRangeIsAnErrorWhenItIsTheOnlyCategoricalVariable) {
  for (const double target : kTargetsOutOfRange) {
    SCOPED_TRACE(target);
    Pass pass(Variables("ATA"));
    const Processed result = Process(pass, {1.5, target, 2.5});
    EXPECT_EQ(Error(TQBinning::kCodeOutOfRange, 1), result.status);
    EXPECT_EQ((Doubles{0.0, 0.0, 0.0}), result.fields);  // returned at once
    EXPECT_FALSE(pass.IsValid(0));
    EXPECT_EQ(0, pass.preparator.GetLargestCode(0));
  }
}

TEST(ProcessRecord, ATargetCodeOutOfRangeIsAWarningBesideAnotherCategoricalVariable) {
  for (const double target : kTargetsOutOfRange) {
    SCOPED_TRACE(target);
    Pass pass(Variables("ACT"));
    const Processed result = Process(pass, {1.5, 2.0, target});
    EXPECT_EQ(Warning(TQBinning::kCodeOutOfRange, 2), result.status);
    EXPECT_EQ((Doubles{0.0, 1.5, 2.0}), result.fields);  // the attributes go on
    EXPECT_FALSE(pass.IsValid(0));
    EXPECT_TRUE(pass.IsValid(1));
  }
}

TEST(ProcessRecord, ATargetWhoseColumnIsClearedIsLeftAtZeroUnlessItIsMissing) {
  Pass pass(Variables("TC"));
  EXPECT_EQ(Warning(TQBinning::kCodeOutOfRange, 0), Process(pass, {256.0, 1.0}).status);
  const Processed good = Process(pass, {5.0, 1.0});
  EXPECT_EQ(TQStatus(), good.status);
  EXPECT_EQ((Doubles{0.0, 1.0}), good.fields);
  EXPECT_EQ(0, pass.preparator.GetLargestCode(0));
  const Processed bad = Process(pass, {256.0, 1.0});
  EXPECT_EQ(TQStatus(), bad.status);
  EXPECT_EQ((Doubles{0.0, 1.0}), bad.fields);
  EXPECT_EQ((Doubles{kMissing, 1.0}), Process(pass, {-1.5, 1.0}).fields);
}

// ---- attributes ----

TEST(ProcessRecord, AContinuousValueIsWrittenUnchanged) {
  Pass pass(Variables("A"));
  for (const double value :
       {0.0, -1.0, -1.5, 256.0, 1e300, 5e-324, kMissing, kInfinity, -kInfinity}) {
    const Processed result = Process(pass, {value});
    EXPECT_EQ(TQStatus(), result.status);
    EXPECT_EQ((Doubles{value}), result.fields);
  }
  EXPECT_TRUE(std::isnan(Process(pass, {kNaN}).fields[0]));
  EXPECT_TRUE(std::signbit(Process(pass, {-0.0}).fields[0]));
  EXPECT_EQ(0, pass.preparator.GetLargestCode(0));
}

TEST(ProcessRecord, AContinuousValueThatIsUserMissingBecomesMissing) {
  BINVarList variables = Variables("AA");
  ASSERT_TRUE(variables.AddDiscreteUserMissing(0, 9.0, ""));
  ASSERT_TRUE(variables.SetMissingInterval(0, -5.0, -1.0));
  Pass pass(variables);
  for (const double value : {9.0, -5.0, -3.0, -1.0}) {
    SCOPED_TRACE(value);
    EXPECT_EQ((Doubles{kMissing, value}), Process(pass, {value, value}).fields);
  }
  EXPECT_EQ((Doubles{0.0, 9.0}), Process(pass, {0.0, 9.0}).fields);
  EXPECT_EQ((Doubles{kMissing, 9.0}), Process(pass, {kMissing, 9.0}).fields);
  EXPECT_TRUE(std::isnan(Process(pass, {kNaN, 0.0}).fields[0]));
}

TEST(ProcessRecord, ACategoricalValueThatIsMissingOrExactlyMinusOneBecomesMissing) {
  Pass pass(Variables("C"));
  for (const double value : {kMissing, -1.0}) {
    const Processed result = Process(pass, {value});
    EXPECT_EQ(TQStatus(), result.status);
    EXPECT_EQ((Doubles{kMissing}), result.fields);
  }
  EXPECT_TRUE(pass.IsValid(0));
}

// Unlike a target's, which is compared after truncation.
TEST(ProcessRecord, ACategoricalValueOfMinusOneAndAHalfIsOutOfRange) {
  Pass pass(Variables("C"));
  const Processed result = Process(pass, {-1.5});
  EXPECT_EQ(Warning(TQBinning::kCodeOutOfRange, 0), result.status);
  EXPECT_EQ((Doubles{0.0}), result.fields);
  EXPECT_FALSE(pass.IsValid(0));
}

TEST(ProcessRecord, ACategoricalCodeIsWrittenAsItIsAndItsWholePartRaisesTheLargestCode) {
  Pass pass(Variables("AC"));
  const std::vector<std::pair<double, int>> cases = {{0.0, 0}, {-0.5, 0},    {7.75, 7},
                                                     {3.0, 7}, {255.0, 255}, {255.9, 255}};
  for (const auto& [value, largest] : cases) {
    SCOPED_TRACE(value);
    const Processed result = Process(pass, {1.5, value});
    EXPECT_EQ(TQStatus(), result.status);
    EXPECT_EQ((Doubles{1.5, value}), result.fields);
    EXPECT_EQ(largest, pass.preparator.GetLargestCode(1));
  }
}

TEST(ProcessRecord, ACategoricalCodeOutOfRangeClearsItsColumnWithAWarningThatNamesIt) {
  Doubles values = kTargetsOutOfRange;
  values.push_back(-1.0000000000000002);
  for (const double value : values) {
    SCOPED_TRACE(value);
    Pass pass(Variables("CTWA"));  // variable 0 is in column 2
    const Processed result = Process(pass, {value, 1.0, 2.0, 3.5});
    EXPECT_EQ(Warning(TQBinning::kCodeOutOfRange, 2), result.status);
    EXPECT_EQ((Doubles{1.0, 2.0, 0.0, 3.5}), result.fields);
    EXPECT_FALSE(pass.IsValid(2));
    EXPECT_TRUE(pass.IsValid(0));
    EXPECT_EQ(0, pass.preparator.GetLargestCode(2));
  }
}

TEST(ProcessRecord, ACategoricalColumnThatIsClearedIsLeftAtZeroUnlessTheValueIsMissing) {
  Pass pass(Variables("C"));
  EXPECT_EQ(Warning(TQBinning::kCodeOutOfRange, 0), Process(pass, {256.0}).status);
  const Processed good = Process(pass, {5.0});
  EXPECT_EQ(TQStatus(), good.status);
  EXPECT_EQ((Doubles{0.0}), good.fields);
  EXPECT_EQ(0, pass.preparator.GetLargestCode(0));
  const Processed bad = Process(pass, {256.0});
  EXPECT_EQ(TQStatus(), bad.status);
  EXPECT_EQ((Doubles{0.0}), bad.fields);
  EXPECT_EQ((Doubles{kMissing}), Process(pass, {-1.0}).fields);
}

TEST(ProcessRecord, TheLastOfSeveralWarningsIsReturned) {
  Pass pass(Variables("TCC"));
  const Processed result = Process(pass, {256.0, 257.0, 258.0});
  EXPECT_EQ(Warning(TQBinning::kCodeOutOfRange, 2), result.status);
  for (const int column : {0, 1, 2}) EXPECT_FALSE(pass.IsValid(column));
}

// Categorical values are codes already: definitions speak of values.
TEST(ProcessRecord, UserMissingDefinitionsOfCategoricalVariablesAreNotAsked) {
  BINVarList variables = Variables("TC");
  ASSERT_TRUE(variables.AddDiscreteUserMissing(0, 3.0, ""));
  ASSERT_TRUE(variables.AddDiscreteUserMissing(1, 4.0, ""));
  Pass pass(variables);
  EXPECT_EQ((Doubles{3.0, 4.0}), Process(pass, {3.0, 4.0}).fields);
}

TEST(ProcessRecord, AVariableOfUnknownLevelIsCategorical) {
  BINVarList variables;
  variables.AddCatVar("unknown", "", 2, IBINVariable::kUnknownLevel, IBINVariable::kAttribute);
  Pass pass(variables);
  EXPECT_EQ((Doubles{kMissing}), Process(pass, {-1.0}).fields);
  EXPECT_EQ(Warning(TQBinning::kCodeOutOfRange, 0), Process(pass, {256.0}).status);
}

// ---- transferring a block ----

TEST(TransferData, AppendsEveryRowToItsFileAndEmptiesTheCache) {
  Pass pass(Variables("AA"));
  ASSERT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
  support::WriteColumn(pass.preparator.GetFileNames()[0], {9.0});
  for (const double value : {1.0, 2.0}) ASSERT_TRUE(pass.preparator.fCache.AddElem(0, value));
  ASSERT_TRUE(pass.preparator.fCache.AddElem(1, 3.0));
  EXPECT_EQ(TQStatus(), pass.preparator.TransferData());
  EXPECT_EQ((Doubles{9.0, 1.0, 2.0}), pass.Column(0));
  EXPECT_EQ((Doubles{3.0}), pass.Column(1));
  EXPECT_EQ(0u, pass.preparator.fCache.GetRowSize(0));
  EXPECT_EQ(0u, pass.preparator.fCache.GetRowSize(1));
}

TEST(TransferData, CreatesAnEmptyFileForAnEmptyRow) {
  Pass pass(Variables("AA"));
  ASSERT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
  EXPECT_EQ(TQStatus(), pass.preparator.TransferData());
  EXPECT_EQ(2u, pass.scratch.CountFiles());
  EXPECT_EQ(Doubles{}, pass.Column(0));
}

TEST(TransferData, AFileThatCannotBeOpenedEndsTheTransferAndEmptiesTheCacheAllTheSame) {
  Pass pass(Variables("AAA"));
  ASSERT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
  pass.preparator.fFileNames[1] = pass.scratch.File("no/such/directory");
  for (const int row : {0, 1, 2}) ASSERT_TRUE(pass.preparator.fCache.AddElem(row, row + 0.5));
  EXPECT_EQ(Error(TQBinning::kCannotAppend), pass.preparator.TransferData());
  EXPECT_EQ((Doubles{0.5}), pass.Column(0));
  EXPECT_FALSE(std::filesystem::exists(pass.preparator.GetFileNames()[2]));
  for (const int row : {0, 1, 2}) EXPECT_EQ(0u, pass.preparator.fCache.GetRowSize(row));
  EXPECT_EQ(TQStatus(), pass.preparator.GetStatus());
}

// ---- the whole pass ----

TEST(ProcessSource, SpoolsEveryColumnInCaseOrder) {
  Pass pass(Variables("AWT"));
  EXPECT_EQ(TQStatus(), pass.Run({{1.5, 2.0, 0.0}, {kMissing, 3.0, 1.0}, {-0.5, 4.0, kMissing}}));
  EXPECT_EQ((Doubles{0.0, 1.0, kMissing}), pass.Column(0));
  EXPECT_EQ((Doubles{2.0, 3.0, 4.0}), pass.Column(1));
  EXPECT_EQ((Doubles{1.5, kMissing, -0.5}), pass.Column(2));
  EXPECT_EQ(3u, pass.preparator.GetNumberOfKeptCases());
  EXPECT_EQ(1, pass.preparator.GetLargestCode(0));
  EXPECT_EQ(TQStatus(), pass.preparator.GetStatus());
}

TEST(ProcessSource, BlocksFollowOneAnotherInTheFile) {
  for (int capacity = 1; capacity <= 6; ++capacity) {
    SCOPED_TRACE(capacity);
    Pass pass(Variables("TA"));
    pass.preparator.fCacheCapacity = capacity;
    EXPECT_EQ(TQStatus(), pass.Run({{0, 1}, {1, 2}, {0, 3}, {1, 4}, {0, 5}}));
    EXPECT_EQ((Doubles{0.0, 1.0, 0.0, 1.0, 0.0}), pass.Column(0));
    EXPECT_EQ((Doubles{1.0, 2.0, 3.0, 4.0, 5.0}), pass.Column(1));
    EXPECT_EQ(5u, pass.preparator.GetNumberOfKeptCases());
  }
}

TEST(ProcessSource, TransfersABlockAsSoonAsTenThousandCasesAreKept) {
  Rows rows;
  for (int i = 0; i < 10002; ++i) rows.push_back({static_cast<double>(i)});
  Pass pass(Variables("A"));
  std::vector<std::size_t> lengths;  // of the file, whenever a case is asked for
  EventfulRecords records(rows, [&] {
    const std::string& name = pass.preparator.GetFileNames()[0];
    lengths.push_back(std::filesystem::exists(name) ? std::filesystem::file_size(name) : 0);
  });
  EXPECT_EQ(TQStatus(), pass.preparator.ProcessSource(records));
  EXPECT_EQ(0u, lengths[9999]);
  EXPECT_EQ(80000u, lengths[10000]);
  EXPECT_EQ(80000u, lengths[10001]);
  EXPECT_EQ(10002u, pass.Column(0).size());
}

TEST(ProcessSource, ACaseThatIsDroppedIsNeitherKeptNorWritten) {
  Pass pass(Variables("TWA"));
  EXPECT_EQ(TQStatus(), pass.Run({{0, 1, 1}, {1, kMissing, 2}, {1, 0.25, 3}, {1, 2, 4}}));
  EXPECT_EQ((Doubles{0.0, 1.0}), pass.Column(0));
  EXPECT_EQ((Doubles{1.0, 2.0}), pass.Column(1));
  EXPECT_EQ((Doubles{1.0, 4.0}), pass.Column(2));
  EXPECT_EQ(2u, pass.preparator.GetNumberOfKeptCases());
}

TEST(ProcessSource, AnIteratorThatYieldsNoCaseIsALastingError) {
  Pass pass(Variables("A"));
  EXPECT_EQ(Error(TQBinning::kNoCases), pass.Run({}));
  EXPECT_EQ(Error(TQBinning::kNoCases), pass.preparator.GetStatus());
  EXPECT_EQ(0u, pass.preparator.GetNumberOfKeptCases());
}

TEST(ProcessSource, AnIteratorWhoseEveryCaseIsDroppedIsALastingError) {
  Pass pass(Variables("WA"));
  EXPECT_EQ(Error(TQBinning::kNoCases), pass.Run({{0.0, 1.0}, {kMissing, 2.0}}));
  EXPECT_EQ(Error(TQBinning::kNoCases), pass.preparator.GetStatus());
}

TEST(ProcessSource, ANullFromTheIteratorIsNotTheEndOfTheData) {
  Pass pass(Variables("A"));
  support::MemoryRecords records(OneFieldEach({1.0, 2.0, 3.0}));
  for (const std::size_t call : {0u, 2u, 3u}) records.YieldNullAt(call);
  EXPECT_EQ(TQStatus(), pass.preparator.ProcessSource(records));
  EXPECT_EQ((Doubles{1.0, 2.0, 3.0}), pass.Column(0));
  EXPECT_EQ(6u, records.NextCalls());
  EXPECT_EQ(7u, records.HasMoreCalls());
}

// ---- columns that become unusable ----

TEST(ProcessSource, ATargetCodeOutOfRangeEndsThePassWhenItIsTheOnlyCategoricalVariable) {
  Pass pass(Variables("AT"));
  support::MemoryRecords records({{1.0, 0.0}, {2.0, 300.0}, {3.0, 1.0}});
  EXPECT_EQ(Error(TQBinning::kCodeOutOfRange, 1), pass.preparator.ProcessSource(records));
  EXPECT_EQ(TQStatus(), pass.preparator.GetStatus());  // not a lasting one
  EXPECT_EQ(2u, records.NextCalls());
  EXPECT_EQ(1u, pass.preparator.GetNumberOfKeptCases());
}

TEST(ProcessSource, ATargetCodeOutOfRangeClearsColumnZeroBesideAnotherCategoricalVariable) {
  Pass pass(Variables("TCA"));
  EXPECT_EQ(TQStatus(), pass.Run({{1, 0, 1}, {300, 1, 2}, {1, 0, 3}, {-1, 1, 4}}));
  EXPECT_EQ(TQStatus(), pass.preparator.GetStatus());
  EXPECT_FALSE(pass.IsValid(0));
  EXPECT_TRUE(pass.IsValid(1));
  EXPECT_EQ((Doubles{1.0}), pass.Column(0));
  EXPECT_EQ((Doubles{0.0, 1.0, 0.0, 1.0}), pass.Column(1));
  EXPECT_EQ((Doubles{1.0, 2.0, 3.0, 4.0}), pass.Column(2));
  EXPECT_EQ(4u, pass.preparator.GetNumberOfKeptCases());
}

TEST(ProcessSource, ACategoricalColumnTakesTwoHundredFiftyFiveAndMissingButNoMore) {
  Pass pass(Variables("CCC"));
  EXPECT_EQ(TQStatus(), pass.Run({{255, 256, -2}, {-1, 1, 1}, {kMissing, 1, 1}}));
  EXPECT_TRUE(pass.IsValid(0));
  EXPECT_FALSE(pass.IsValid(1));
  EXPECT_FALSE(pass.IsValid(2));
  EXPECT_EQ((Doubles{255.0, kMissing, kMissing}), pass.Column(0));
}

// Its file is as long as the pass had got, over several blocks; one that fails at
// the first case has an empty file.
TEST(ProcessSource, AColumnThatBecomesUnusableStopsBeingWritten) {
  for (int capacity = 1; capacity <= 6; ++capacity) {
    SCOPED_TRACE(capacity);
    Pass pass(Variables("ACC"));
    pass.preparator.fCacheCapacity = capacity;
    EXPECT_EQ(TQStatus(), pass.Run({{1, 5, 256}, {2, 6, 1}, {3, 256, 2}, {4, 7, 3}, {5, 8, 4}}));
    EXPECT_EQ((Doubles{1.0, 2.0, 3.0, 4.0, 5.0}), pass.Column(0));
    EXPECT_EQ((Doubles{5.0, 6.0}), pass.Column(1));
    EXPECT_EQ(Doubles{}, pass.Column(2));
    EXPECT_TRUE(std::filesystem::exists(pass.preparator.GetFileNames()[2]));
    EXPECT_EQ(5u, pass.preparator.GetNumberOfKeptCases());
  }
}

TEST(ProcessSource, ACodeBeyondTheDeclaredCategoriesClearsItsColumnAtTheEnd) {
  Pass pass(Variables("TCCA", 3));
  EXPECT_EQ(TQStatus(), pass.Run({{3, 2, 0, 9}, {1, 2, 3, 9}}));
  EXPECT_FALSE(pass.IsValid(0));
  EXPECT_TRUE(pass.IsValid(1));
  EXPECT_FALSE(pass.IsValid(2));
  EXPECT_TRUE(pass.IsValid(3));
  EXPECT_EQ((Doubles{3.0, 1.0}), pass.Column(0));  // written all the same
}

TEST(ProcessSource, AVariableDeclaredWithoutCategoriesLosesItsColumnEvenWithoutACode) {
  BINVarList variables = Variables("CA");
  variables.AddCatVar("string", "", 0, IBINVariable::kStringCategorical, IBINVariable::kAttribute);
  Pass pass(variables);
  EXPECT_EQ(TQStatus(), pass.Run({{0.0, 1.0, kMissing}}));
  EXPECT_TRUE(pass.IsValid(0));
  EXPECT_FALSE(pass.IsValid(2));
}

TEST(ProcessSource, OnlyNumericAndStringCategoricalVariablesAreHeldToTheirDeclaration) {
  BINVarList variables = Variables("WA");
  variables.AddCatVar("unknown", "", 1, IBINVariable::kUnknownLevel, IBINVariable::kAttribute);
  Pass pass(variables);
  EXPECT_EQ(TQStatus(), pass.Run({{9.0, 9.0, 9.0}}));
  for (const int column : {0, 1, 2}) EXPECT_TRUE(pass.IsValid(column));
}

TEST(PreparatorIsValidTarget, AColumnOutOfRangeIsAnErrorAndLeavesTheFlag) {
  Pass pass(Variables("TA"));
  for (const int column : {-1, 2, INT_MIN, INT_MAX}) {
    SCOPED_TRACE(column);
    for (const bool before : {false, true}) {
      bool isValid = before;
      EXPECT_EQ(Error(TQBinning::kInvalidIndex), pass.preparator.IsValidTarget(column, isValid));
      EXPECT_EQ(before, isValid);
    }
  }
}

TEST(PreparatorIsValidTarget, AnswersForEveryColumnWhateverItHolds) {
  Pass pass(Variables("TWA"));
  pass.preparator.fPossibleInputs = {true, false, true};
  EXPECT_TRUE(pass.IsValid(0));
  EXPECT_FALSE(pass.IsValid(1));
  EXPECT_TRUE(pass.IsValid(2));
}

// ---- files that cannot be written ----

TEST(ProcessSource, ABlockThatCannotBeWrittenEndsThePass) {
  Options options;
  options.suffix = "/missing";
  Pass pass(Variables("A"), options);
  pass.preparator.fCacheCapacity = 2;
  support::MemoryRecords records(OneFieldEach({1.0, 2.0, 3.0}));
  EXPECT_EQ(Error(TQBinning::kCannotAppend), pass.preparator.ProcessSource(records));
  EXPECT_EQ(2u, records.NextCalls());
  EXPECT_EQ(1u, pass.preparator.GetNumberOfKeptCases());  // the second failed to be one
}

TEST(ProcessSource, TheStatusOfTheFinalTransferIsNotExamined) {
  Options options;
  options.suffix = "/missing";
  Pass pass(Variables("A"), options);
  EXPECT_EQ(TQStatus(), pass.Run(OneFieldEach({1.0, 2.0, 3.0})));
  EXPECT_EQ(TQStatus(), pass.preparator.GetStatus());
  EXPECT_EQ(3u, pass.preparator.GetNumberOfKeptCases());
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

// ---- Display ----

std::string DisplayOf(const BINDataPreparator& preparator) {
  std::ostringstream os;
  EXPECT_EQ(&os, &preparator.Display(os));
  return os.str();
}

std::string DisplayOf(const BINVarList& list) {
  std::ostringstream os;
  list.Display(os);
  return os.str();
}

TEST(BINDataPreparator, DisplaysItsLayoutAndItsListAndTheProcessedSizeTwice) {
  Pass pass(Variables("AWCT"));
  pass.preparator.fOrigRecSize = 9;  // is not shown
  EXPECT_EQ(
      "BINDataPreparator object: \n"
      "\tPossible inputs used? \tOriginal record size = 4\n"
      "\tProcessed record size = 4\n"
      "\tInput-only record size = 2\n"
      "\tFrequency weight original and new indices: 1   1\n"
      "\tVariable index: 2 1 3 0 \n"
      "\tIndices of input variables in the variable list: 0 2 \n"
      "\tVariable measurement levels: 1 4 2 2 \n"
      "\tVariable roles: 1 3 1 2 \n"
      "\tStatus is OK.\n" +
          DisplayOf(pass.list),
      DisplayOf(pass.preparator));
}

TEST(BINDataPreparator, DisplaysTheCodeOfAStatusThatIsNotOK) {
  for (const TQStatus& status : {Error(TQBinning::kNoCases), Warning(TQBinning::kSomeNotOK)}) {
    Pass pass(Variables("A"));
    pass.preparator.KeepFailure(status);
    EXPECT_EQ(
        "BINDataPreparator object: \n"
        "\tPossible inputs used? \tOriginal record size = 1\n"
        "\tProcessed record size = 1\n"
        "\tInput-only record size = 1\n"
        "\tFrequency weight original and new indices: -1   -1\n"
        "\tVariable index: 0 \n"
        "\tIndices of input variables in the variable list: 0 \n"
        "\tVariable measurement levels: 1 \n"
        "\tVariable roles: 1 \n"
        "\tStatus has error code " +
            std::to_string(status.GetErrorCode()) + "\n" + DisplayOf(pass.list),
        DisplayOf(pass.preparator));
  }
}

// ---- variables and directories out of the ordinary ----

// The list holds the role against such a variable's level; only the weight's own
// encoder can be asked for weights.
TEST(BINDataPreparator, AVariableOfAnotherLevelInTheWeightsRoleHasNoColumn) {
  BINVarList list = Variables("AA");
  ASSERT_TRUE(list.SetVariableRole(1, IBINVariable::kFrequencyWeight));
  const Pass pass(list);
  EXPECT_EQ((Ints{0, -1}), pass.preparator.GetVariableIndex());
  EXPECT_EQ(-1, pass.preparator.fWeightOriginalIndex);
  EXPECT_EQ(nullptr, pass.preparator.fWeightEncoder);
}

// A role that is changed behind the list's back leaves it a target column that no
// variable fills, which makes room for one without a column.
TEST(ProcessSource, AVariableWithoutAColumnIsHeldToNoDeclaration) {
  BINVarList list = Variables("TAC", 2);
  list.GetVarAt(0)->SetVariableRole(IBINVariable::kAttribute);
  list.GetVarAt(2)->SetVariableRole(IBINVariable::kUndefinedRole);
  Pass pass(list);
  EXPECT_EQ((Ints{1, 2, -1}), pass.preparator.GetVariableIndex());
  EXPECT_EQ(TQStatus(), pass.Run({{1.0, 5.0, 9.0}, {0.0, 6.0, 9.0}}));
  EXPECT_EQ((Doubles{0.0, 0.0}), pass.Column(0));
  EXPECT_EQ((Doubles{1.0, 0.0}), pass.Column(1));
  EXPECT_EQ((Doubles{5.0, 6.0}), pass.Column(2));
  for (const int column : {0, 1, 2}) EXPECT_TRUE(pass.IsValid(column)) << column;
}

TEST(ProcessSource, UserMissingValuesAreSpooledAsMissing) {
  BINVarList variables = Variables("AA");
  ASSERT_TRUE(variables.AddDiscreteUserMissing(0, 9.0, ""));
  ASSERT_TRUE(variables.SetMissingInterval(0, -5.0, -1.0));
  Pass pass(variables);
  EXPECT_EQ(TQStatus(), pass.Run({{9.0, 9.0}, {8.0, -2.0}, {-2.0, kMissing}}));
  EXPECT_EQ((Doubles{kMissing, 8.0, kMissing}), pass.Column(0));
  EXPECT_EQ((Doubles{9.0, -2.0, kMissing}), pass.Column(1));
}

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

// A full disk shows when a block is written, or, for what still fits a buffer, when
// the file is closed.
TEST(TransferData, AFullDiskIsAnErrorForLargeBlocksAndForSmallOnes) {
  for (const int cases : {1, 10000}) {
    SCOPED_TRACE(cases);
    Pass pass(Variables("A"));
    ASSERT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
    // Through a link, since the preparator removes its files in the end.
    std::filesystem::create_symlink("/dev/full", pass.preparator.GetFileNames()[0]);
    for (int i = 0; i < cases; ++i) ASSERT_TRUE(pass.preparator.fCache.AddElem(0, 1.0));
    EXPECT_EQ(Error(TQBinning::kCannotAppend), pass.preparator.TransferData());
    EXPECT_EQ(0u, pass.preparator.fCache.GetRowSize(0));
  }
}

}  // namespace

// ---- variables whose kind and declaration disagree

TEST(MismatchedVariables, AStringDefinitionOfAVariableDeclaredContinuousHoldsNoNumber) {
  BINVarList list;
  list.AddCatVar("declared continuous", "", 2, IBINVariable::kContinuous, IBINVariable::kAttribute);
  auto* const strings = new BINStringUserMissing;
  strings->AddValue("9", "");
  ASSERT_TRUE(list.GetVarAt(0)->SetUserMissingInfo(strings));
  BINCancelInfo cancelInfo(nullptr);
  BINDataPreparator preparator(list, cancelInfo, "", nullptr, 0);
  TQCommon::Record out(1);
  EXPECT_TRUE(preparator.ProcessRecord(support::MakeRecord({9.0}), out).IsOK());
  EXPECT_EQ(9.0, out[0]);
}

TEST(MismatchedVariables, AWeightRoleGivenToACategoricalVariableMakesNoWeight) {
  for (const auto level : {IBINVariable::kStringCategorical, IBINVariable::kWeightLevel}) {
    BINVarList list;
    list.AddContVar("x", "", IBINVariable::kAttribute);
    list.AddCatVar("c", "", 2, level, IBINVariable::kFrequencyWeight);
    BINCancelInfo cancelInfo(nullptr);
    BINDataPreparator preparator(list, cancelInfo, "", nullptr, 0);
    TQCommon::Record out(1);
    EXPECT_TRUE(preparator.ProcessRecord(support::MakeRecord({5.0, 0.25}), out).IsOK());
    EXPECT_EQ(5.0, out[0]);
  }
}
