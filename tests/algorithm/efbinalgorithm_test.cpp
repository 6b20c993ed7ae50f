#include "tqbinning/efbinalgorithm.h"

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "algorithm/binningrun.h"
#include "algorithm/eightcases.h"
#include "support/hostfakes.h"
#include "support/memoryrecords.h"

// The equal-frequency driver, from the host's call to the results.
namespace {

using support::Columns;
using support::EightCases;
using support::EqualFrequencyRun;
using support::Error;
using support::Indices;
using support::k1To8;
using support::kConstant;
using support::kHalves;
using support::kInfinity;
using support::kMissing;
using support::kNaN;
using support::kNothing;
using support::kReversed;
using support::kZeros;
using support::MemoryRecords;
using support::Numbers;
using support::OK;
using support::OpenEFAlgorithm;
using support::RecordingListener;
using support::Rows;
using support::TextOf;
using support::TQStatus;
using support::Warning;

const Numbers kOnes(8, 1.0);
const Numbers kHeavyEnd{1, 9, 9, 9, 9, 9, 9, 9};  // no cut when closed on the right

// ------------------------------------------------------------- a new algorithm

TEST(EFBINAlgorithm, ANewOneIsOKAndHasNoResults) {
  EqualFrequencyRun run("x", EightCases());
  EXPECT_EQ(OK(), run.Algorithm().GetStatus());
  EXPECT_TRUE(run.Results().empty());
  EXPECT_EQ(0u, run.Algorithm().fRecordCount);
  EXPECT_EQ(nullptr, run.Algorithm().fPreparator);
  EXPECT_TRUE(run.directory.IsEmpty());
}

TEST(EFBINAlgorithm, TheVersionBeginsWithTheComponentsName) {
  EqualFrequencyRun run("x", {});
  const std::string banner = "Supervised Binning Component Ver. 1.0";
  const std::string version = run.Algorithm().GetComponentVersion();
  EXPECT_EQ(banner, version.substr(0, banner.size()));
  EXPECT_GT(version.size(), banner.size());  // an ownership notice follows
}

TEST(EFBINAlgorithm, KeepsItsOwnCopiesOfSettingsAndVariableList) {
  EqualFrequencyRun run("xx", Columns({k1To8, k1To8}));
  const OpenEFAlgorithm& algorithm = run.Algorithm();
  ASSERT_TRUE(run.settings.SetNumberOfBins(77));
  run.settings.SetTempDirName("/no/such/directory");
  ASSERT_TRUE(run.list.RemoveVar(0));
  EXPECT_EQ(2, algorithm.GetSettings().GetNumberOfBins());
  EXPECT_EQ(2, algorithm.GetVarList().Size());
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Numbers{4.5}), run.Cuts(0));
}

// ------------------------------------------------------------------- a good run

TEST(EFBINAlgorithm, AnAttributesResultHoldsCutsCountsAndSummary) {
  EqualFrequencyRun run("x", EightCases(), 4);
  EXPECT_EQ(OK(), run.CreateBins());
  const BINAttributeResults result = run.Result(0);
  EXPECT_EQ(OK(), result.GetStatus());
  EXPECT_EQ((Numbers{2.5, 4.5, 6.5}), result.GetCutPoints());
  EXPECT_EQ((Numbers{2, 2, 2, 2}), result.GetCellCounts());
  EXPECT_EQ(8u, result.GetNDistinctValues());
  EXPECT_EQ(8.0, result.GetTotalWeight());
  EXPECT_EQ(8.0, result.GetTotalWeightWithMissing());
  EXPECT_EQ(1.0, result.GetMinimum());
  EXPECT_EQ(8.0, result.GetMaximum());
  EXPECT_EQ(OK(), run.Algorithm().GetStatus());
  EXPECT_EQ(8u, run.Algorithm().fRecordCount);
  EXPECT_EQ(nullptr, run.Algorithm().fPreProcess);
}

TEST(EFBINAlgorithm, CasesWithAMissingValueCountInOneTotalOnly) {
  EqualFrequencyRun run("x", Columns({{kMissing, 3, 1, kMissing, 4, 2}}));
  EXPECT_EQ(OK(), run.CreateBins());
  const BINAttributeResults result = run.Result(0);
  EXPECT_EQ((Numbers{2.5}), result.GetCutPoints());
  EXPECT_EQ((Numbers{2, 2}), result.GetCellCounts());
  EXPECT_EQ(4.0, result.GetTotalWeight());
  EXPECT_EQ(6.0, result.GetTotalWeightWithMissing());
  EXPECT_EQ(4u, run.Algorithm().fRecordCount);
}

TEST(EFBINAlgorithm, WeightsAreRoundedAndCountInsteadOfCases) {
  EqualFrequencyRun run("xw", Columns({{1, 2, 3, 4, kMissing, 9},
                                       {2.5, 1, 1.4, 3, 7, 0.4}}));  // 3, 1, 1, 3, 7, dropped
  EXPECT_EQ(OK(), run.CreateBins());
  const BINAttributeResults result = run.Result(0);
  EXPECT_EQ((Numbers{2.5}), result.GetCutPoints());
  EXPECT_EQ((Numbers{4, 4}), result.GetCellCounts());
  EXPECT_EQ(8.0, result.GetTotalWeight());
  EXPECT_EQ(15.0, result.GetTotalWeightWithMissing());
  EXPECT_EQ(4.0, result.GetMaximum());
  EXPECT_EQ(4u, run.Algorithm().fRecordCount);
}

// Half of the weight is reached by the run of 4: closed it ends its bin and so the
// last one, open it opens its bin.
TEST(EFBINAlgorithm, TheBorderSideDecidesWhereTheCasesAtACutBelong) {
  const Rows rows = Columns({{1, 2, 3, 4, 5}, {1, 1, 1, 3, 1}});
  EqualFrequencyRun closed("xw", rows);
  EXPECT_EQ(OK(), closed.CreateBins());
  EXPECT_EQ((Numbers{4}), closed.Cuts(0));
  EXPECT_EQ((Numbers{6, 1}), closed.Counts(0));
  EqualFrequencyRun open("xw", rows);
  open.settings.SetRightBorderClosed(false);
  EXPECT_EQ(OK(), open.CreateBins());
  EXPECT_EQ((Numbers{4}), open.Cuts(0));
  EXPECT_EQ((Numbers{3, 4}), open.Counts(0));
}

TEST(EFBINAlgorithm, WithoutAListEveryVariableButTheWeightIsBinnedInIndexOrder) {
  EqualFrequencyRun run("xwcx", Columns({k1To8, kOnes, kHalves, kReversed}));
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Indices{0, 2, 3}), run.BinnedAttributes());
  EXPECT_EQ((Numbers{4.5}), run.Cuts(0));
  EXPECT_EQ((Numbers{4.5}), run.Cuts(3));
}

TEST(EFBINAlgorithm, ListedAttributesAreBinnedInTheOrderGivenDuplicatesIncluded) {
  EqualFrequencyRun run("xxx", Columns({k1To8, kReversed, k1To8}));
  EXPECT_EQ(OK(), run.CreateBins({2, 0, 2}));
  EXPECT_EQ((Indices{2, 0, 2}), run.BinnedAttributes());
}

// More cases than the pass keeps in memory at a time.
TEST(EFBINAlgorithm, ManyCasesAreAllCounted) {
  Rows rows;
  for (int i = 0; i < 25000; ++i) rows.push_back({i % 100 + 0.0});
  EqualFrequencyRun run("x", rows, 4);
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Numbers{24.5, 49.5, 74.5}), run.Cuts(0));
  EXPECT_EQ((Numbers{6250, 6250, 6250, 6250}), run.Counts(0));
  run.DeleteAlgorithm();
  EXPECT_TRUE(run.directory.IsEmpty());
}

TEST(EFBINAlgorithm, NullRecordsAreSkipped) {
  EqualFrequencyRun run("x", EightCases());
  run.records.YieldNullAt(0);
  run.records.YieldNullAt(5);
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Numbers{4, 4}), run.Counts(0));
}

TEST(EFBINAlgorithm, InfinitiesAreValuesLikeAnyOther) {
  EqualFrequencyRun run("x", Columns({{kInfinity, -kInfinity, 1, 2, -kInfinity, kInfinity}}));
  EXPECT_EQ(OK(), run.CreateBins());
  const BINAttributeResults result = run.Result(0);
  EXPECT_EQ(-kInfinity, result.GetMinimum());
  EXPECT_EQ(kInfinity, result.GetMaximum());
  EXPECT_EQ(4u, result.GetNDistinctValues());
  EXPECT_EQ((Numbers{1.5}), result.GetCutPoints());
  EXPECT_EQ((Numbers{3, 3}), result.GetCellCounts());
}

TEST(EFBINAlgorithm, ValuesThatAreNoNumbersComeLast) {
  EqualFrequencyRun run("x", Columns({{kNaN, 2, 1, kNaN, 4, 3}}), 3);
  EXPECT_EQ(OK(), run.CreateBins());
  const BINAttributeResults result = run.Result(0);
  EXPECT_EQ(6.0, result.GetTotalWeight());
  EXPECT_EQ(1.0, result.GetMinimum());
  EXPECT_NE(result.GetMaximum(), result.GetMaximum());
  EXPECT_EQ(2.5, result.GetCutPoints().at(0));
}

TEST(EFBINAlgorithm, TheTemporaryFilesLiveAsLongAsTheAlgorithm) {
  EqualFrequencyRun run("xxw", Columns({k1To8, k1To8, kOnes}));
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ(3u, run.directory.CountFiles());
  run.DeleteAlgorithm();
  EXPECT_TRUE(run.directory.IsEmpty());
}

TEST(EFBINAlgorithm, IsDeletedThroughItsInterface) {
  EqualFrequencyRun run("x", EightCases());
  std::unique_ptr<IEFBINAlgorithm> algorithm =
      std::make_unique<EFBINAlgorithm>(run.settings, run.list);
  EXPECT_EQ(OK(), algorithm->CreateBins(run.records, nullptr));
  EXPECT_FALSE(run.directory.IsEmpty());
  algorithm.reset();
  EXPECT_TRUE(run.directory.IsEmpty());
}

// -------------------------------------------------- validation ends the call early

TEST(EFBINAlgorithm, WithoutANumberOfBinsNothingIsRead) {
  EqualFrequencyRun run("x", EightCases());
  run.settings = EFBINSettings();
  EXPECT_EQ(Error(120009), run.CreateBins());
  EXPECT_EQ(0u, run.records.HasMoreCalls());
  EXPECT_EQ(0u, run.records.NextCalls());
  EXPECT_TRUE(run.Results().empty());
  EXPECT_EQ(OK(), run.Algorithm().GetStatus());
}

TEST(EFBINAlgorithm, TheNumberOfBinsIsLookedAtBeforeTheList) {
  EqualFrequencyRun run("x", EightCases());
  run.settings = EFBINSettings();
  EXPECT_EQ(Error(120009), run.CreateBins(Indices{-1}));
}

TEST(EFBINAlgorithm, AnEmptyListIsAnError) {
  EqualFrequencyRun run("x", EightCases());
  EXPECT_EQ(Error(120011), run.CreateBins(Indices{}));
  EXPECT_EQ(0u, run.records.HasMoreCalls());
  EXPECT_EQ(OK(), run.Algorithm().GetStatus());
}

Rows TenColumns() {
  std::vector<Numbers> columns(10, k1To8);
  columns[5] = kOnes;
  return Columns(columns);
}

TEST(EFBINAlgorithm, AListWithoutAValidIndexIsAnErrorAndNothingIsReadOrStored) {
  EqualFrequencyRun run("xxxxxwxxxx", TenColumns());
  EXPECT_EQ(Error(120011), run.CreateBins({5, 99}));
  EXPECT_EQ(Error(120011), run.CreateBins({-1, 10}));
  EXPECT_EQ(0u, run.records.HasMoreCalls());
  EXPECT_TRUE(run.Results().empty());
}

TEST(EFBINAlgorithm, ARejectedIndexIsStoredWithItsErrorAndDoesNotSpoilTheRun) {
  EqualFrequencyRun run("xxxxxwxxxx", TenColumns());
  EXPECT_EQ(OK(), run.CreateBins({5, 2, 99}));
  EXPECT_EQ((Indices{5, 2, 99}), run.BinnedAttributes());
  for (const int rejected : {5, 99}) {
    const BINAttributeResults result = run.Result(rejected);
    EXPECT_EQ(Error(rejected == 5 ? 120005 : 120011), result.GetStatus());
    EXPECT_TRUE(result.GetCutPoints().empty());
    EXPECT_TRUE(result.GetCellCounts().empty());
    EXPECT_EQ(0u, result.GetNDistinctValues());
    EXPECT_EQ(0.0, result.GetTotalWeight());
    EXPECT_EQ(0.0, result.GetTotalWeightWithMissing());
    EXPECT_EQ(0.0, result.GetMinimum());
    EXPECT_EQ(0.0, result.GetMaximum());
  }
  EXPECT_EQ((Numbers{4.5}), run.Cuts(2));
  EXPECT_EQ(OK(), run.Algorithm().GetStatus());
}

// The results have no place for it.
TEST(EFBINAlgorithm, ANegativeIndexLeavesNoResult) {
  EqualFrequencyRun run("x", EightCases());
  EXPECT_EQ(OK(), run.CreateBins({-1, 0}));
  EXPECT_EQ((Indices{0}), run.BinnedAttributes());
}

TEST(EFBINAlgorithm, ChecksGiveEveryIndexAStatus) {
  EqualFrequencyRun run("xxw", {});
  std::vector<TQStatus> statuses(9, Error(1));
  const Indices indices{-1, 0, 3, 2, 0};
  EXPECT_TRUE(run.Algorithm().CheckVariableIndices(&indices, statuses));
  EXPECT_EQ((std::vector<TQStatus>{Error(120011), OK(), Error(120011), Error(120005), OK()}),
            statuses);
}

TEST(EFBINAlgorithm, ChecksFailWithoutAValidIndex) {
  EqualFrequencyRun run("xxw", {});
  std::vector<TQStatus> statuses;
  const Indices none{}, bad{2, 3};
  EXPECT_FALSE(run.Algorithm().CheckVariableIndices(&none, statuses));
  EXPECT_TRUE(statuses.empty());
  EXPECT_FALSE(run.Algorithm().CheckVariableIndices(&bad, statuses));
  EXPECT_EQ((std::vector<TQStatus>{Error(120005), Error(120011)}), statuses);
}

TEST(EFBINAlgorithm, WithoutAWeightMinusOneIsStillAnInvalidIndex) {
  EqualFrequencyRun run("x", {});
  std::vector<TQStatus> statuses;
  const Indices indices{-1};
  EXPECT_FALSE(run.Algorithm().CheckVariableIndices(&indices, statuses));
  EXPECT_EQ((std::vector<TQStatus>{Error(120011)}), statuses);
}

TEST(EFBINAlgorithm, AnEmptyIteratorIsAnErrorThatCanBeTriedAgain) {
  EqualFrequencyRun run("x", EightCases());
  MemoryRecords empty({});
  EXPECT_EQ(Error(120004), run.Algorithm().CreateBins(empty, nullptr));
  EXPECT_EQ(1u, empty.HasMoreCalls());
  EXPECT_EQ(0u, empty.NextCalls());
  EXPECT_EQ(nullptr, run.Algorithm().fPreparator);
  EXPECT_EQ(OK(), run.Algorithm().GetStatus());
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Numbers{4.5}), run.Cuts(0));
}

// ------------------------------------------------------- attributes that end not OK

TEST(AttributeStatus, OneDistinctValueIsAWarningThatNamesTheAttribute) {
  for (const bool closed : {true, false}) {
    EqualFrequencyRun run("xx", Columns({k1To8, kConstant}));
    run.settings.SetRightBorderClosed(closed);
    EXPECT_EQ(Warning(120018), run.CreateBins());
    const BINAttributeResults result = run.Result(1);
    EXPECT_EQ(Warning(120014, 1), result.GetStatus());  // and not 120019
    EXPECT_TRUE(result.GetCutPoints().empty());
    EXPECT_EQ((Numbers{8}), result.GetCellCounts());
    EXPECT_EQ(1u, result.GetNDistinctValues());
    EXPECT_EQ(3.0, result.GetMinimum());
    EXPECT_EQ(3.0, result.GetMaximum());
    EXPECT_EQ(OK(), run.Result(0).GetStatus());
    EXPECT_EQ(Warning(120014, 1), run.Algorithm().GetStatus());
  }
}

TEST(AttributeStatus, NoValidCaseIsAWarningWithoutCutsAndCounts) {
  EqualFrequencyRun run("x", Columns({kNothing}));
  EXPECT_EQ(Warning(120018), run.CreateBins());
  const BINAttributeResults result = run.Result(0);
  EXPECT_EQ(Warning(120015), result.GetStatus());
  EXPECT_TRUE(result.GetCutPoints().empty());
  EXPECT_TRUE(result.GetCellCounts().empty());
  EXPECT_EQ(0u, result.GetNDistinctValues());
  EXPECT_EQ(0.0, result.GetTotalWeight());
  EXPECT_EQ(8.0, result.GetTotalWeightWithMissing());
  EXPECT_EQ(kMissing, result.GetMinimum());
  EXPECT_EQ(kMissing, result.GetMaximum());
  EXPECT_EQ(0u, run.Algorithm().fRecordCount);
}

TEST(AttributeStatus, NoCutPointIsAWarningThatNamesTheAttribute) {
  EqualFrequencyRun run("xx", Columns({k1To8, kHeavyEnd}));
  EXPECT_EQ(Warning(120018), run.CreateBins());
  const BINAttributeResults result = run.Result(1);
  EXPECT_EQ(Warning(120019, 1), result.GetStatus());
  EXPECT_TRUE(result.GetCutPoints().empty());
  EXPECT_EQ((Numbers{8}), result.GetCellCounts());
  EXPECT_EQ(2u, result.GetNDistinctValues());
}

// The largest value is taken from the whole vector of tuples.  A missing case leaves
// an unused one at its end, which then is not the 9 at which the only cut lies, and
// so the cut is not removed.
TEST(AttributeStatus, AMissingCaseHidesThatTheOnlyCutIsTheLargestValue) {
  EqualFrequencyRun run("x", Columns({{1, 9, 9, 9, 9, 9, 9, 9, kMissing}}));
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Numbers{9}), run.Cuts(0));
  EXPECT_EQ((Numbers{8}), run.Counts(0));
}

// The unused tuple at the end of the second attribute holds what the first one left
// there: a 9 again, so that the cut is the largest value, and one more of its run.
TEST(AttributeStatus, WhatAnEarlierAttributeLeftBehindCounts) {
  EqualFrequencyRun run("xx",
                        Columns({{1, 2, 3, 4, 5, 6, 7, 8, 9}, {1, 9, 9, 9, 9, 9, 9, 9, kMissing}}));
  EXPECT_EQ(Warning(120018), run.CreateBins());
  EXPECT_EQ(Warning(120019, 1), run.Result(1).GetStatus());
  EXPECT_EQ((Numbers{9}), run.Counts(1));
  EXPECT_EQ(8.0, run.Result(1).GetTotalWeight());
}

TEST(AttributeStatus, RunAlgorithmReturnsTheAttributesStatus) {
  EqualFrequencyRun run("xx", Columns({k1To8, kConstant}));
  EXPECT_EQ(OK(), run.CreateBins({0}));
  run.Algorithm().fPreProcess = std::make_unique<BINEFPreProcess>(2, true);
  EXPECT_EQ(Warning(120014, 1), run.Algorithm().RunAlgorithm(1));
  EXPECT_EQ(OK(), run.Algorithm().RunAlgorithm(0));
}

TEST(AttributeStatus, TheLastOneThatIsNotOKIsTheAlgorithmsOwn) {
  EqualFrequencyRun run("xxxx", Columns({kConstant, kNothing, kHeavyEnd, k1To8}));
  EXPECT_EQ(Warning(120018), run.CreateBins({0, 1, 3}));
  EXPECT_EQ(Warning(120015), run.Algorithm().GetStatus());
  EXPECT_EQ(Warning(120018), run.CreateBins({1, 2}));
  EXPECT_EQ(Warning(120019, 2), run.Algorithm().GetStatus());
}

TEST(AttributeStatus, AWarningOnceStaysAndIsReportedByEveryLaterCall) {
  EqualFrequencyRun run("xx", Columns({k1To8, kConstant}));
  EXPECT_EQ(Warning(120018), run.CreateBins({1}));
  EXPECT_EQ(Warning(120018), run.CreateBins({0}));
  EXPECT_EQ(OK(), run.Result(0).GetStatus());
  EXPECT_EQ(Warning(120014, 1), run.Algorithm().GetStatus());
}

TEST(AttributeStatus, ARejectedLastIndexDoesNotHideAnEarlierWarning) {
  EqualFrequencyRun run("x", Columns({kConstant}));
  EXPECT_EQ(Warning(120018), run.CreateBins({0, 9}));
}

// Cases are kept with their targets then, and there are none to bin without.
TEST(AttributeStatus, InAListWithATargetNoAttributeHasACut) {
  EqualFrequencyRun run("xyx", Columns({k1To8, kHalves, kNothing}));
  EXPECT_EQ(Warning(120018), run.CreateBins({0, 2}));
  const BINAttributeResults result = run.Result(0);
  EXPECT_EQ(Warning(120019, 0), result.GetStatus());
  EXPECT_TRUE(result.GetCutPoints().empty());
  EXPECT_EQ(0u, result.GetNDistinctValues());
  EXPECT_EQ(8.0, result.GetTotalWeight());
  EXPECT_EQ(8.0, result.GetTotalWeightWithMissing());
  EXPECT_EQ(kMissing, result.GetMinimum());
  EXPECT_EQ(kMissing, result.GetMaximum());
  EXPECT_EQ(Warning(120015), run.Result(2).GetStatus());
}

TEST(AttributeStatus, InAListWithATargetEvenTheTargetIsRun) {
  EqualFrequencyRun run("xy", Columns({k1To8, kHalves}));
  EXPECT_EQ(Warning(120018), run.CreateBins());
  EXPECT_EQ((Indices{0, 1}), run.BinnedAttributes());
  EXPECT_EQ(Warning(120019, 1), run.Result(1).GetStatus());
}

TEST(AttributeStatus, ACodeOutOfRangeOfOneAttributeDoesNotDisturbTheOthers) {
  EqualFrequencyRun run("xcx", Columns({k1To8, {0, 1, 0, 300, 0, 1, 0, 1}, kReversed}));
  static_cast<void>(run.CreateBins());  // what the spoiled attribute gives is not defined
  EXPECT_EQ((Numbers{4.5}), run.Cuts(0));
  EXPECT_EQ((Numbers{4.5}), run.Cuts(2));
  EXPECT_EQ((Numbers{4, 4}), run.Counts(2));
}

// ------------------------------------------------------------------ another call

TEST(SecondEFCreateBins, ReusesTheDataAndTouchesNoRecords) {
  EqualFrequencyRun run("xx", Columns({k1To8, kReversed}));
  EXPECT_EQ(OK(), run.CreateBins({0}));
  const std::size_t calls = run.records.HasMoreCalls() + run.records.NextCalls();
  MemoryRecords empty({});
  const Indices attributes{1};
  EXPECT_EQ(OK(), run.Algorithm().CreateBins(empty, &attributes));
  EXPECT_EQ(0u, empty.HasMoreCalls() + empty.NextCalls());
  EXPECT_EQ(calls, run.records.HasMoreCalls() + run.records.NextCalls());
  EXPECT_EQ((Numbers{4.5}), run.Cuts(1));
}

TEST(SecondEFCreateBins, AddsItsResultsAfterTheEarlierOnes) {
  EqualFrequencyRun run("xxx", Columns({k1To8, kReversed, k1To8}));
  EXPECT_EQ(OK(), run.CreateBins({2}));
  EXPECT_EQ(OK(), run.CreateBins({1, 2}));
  EXPECT_EQ((Indices{2, 1, 2}), run.BinnedAttributes());
  EXPECT_EQ(TextOf(run.Results()[0]), TextOf(run.Results()[2]));
}

TEST(SecondEFCreateBins, ReadsTheNumberOfBinsAgain) {
  EqualFrequencyRun run("x", EightCases());
  EXPECT_EQ(OK(), run.CreateBins());
  ASSERT_TRUE(run.Algorithm().fSettings.SetNumberOfBins(4));
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Numbers{4.5}), run.Results().at(0).GetCutPoints());
  EXPECT_EQ((Numbers{2.5, 4.5, 6.5}), run.Results().at(1).GetCutPoints());
}

TEST(SecondEFCreateBins, KeepsTheBorderSideOfTheFirstCall) {
  EqualFrequencyRun run("xw", Columns({{1, 2, 3, 4, 5}, {1, 1, 1, 3, 1}}));
  EXPECT_EQ(OK(), run.CreateBins());
  run.Algorithm().fSettings.SetRightBorderClosed(false);
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Numbers{6, 1}), run.Results().at(1).GetCellCounts());
}

TEST(SecondEFCreateBins, ChecksItsOwnList) {
  EqualFrequencyRun run("xxx", Columns({k1To8, k1To8, k1To8}));
  EXPECT_EQ(OK(), run.CreateBins({9, 0, 9}));
  EXPECT_EQ(OK(), run.CreateBins({1, 2}));
  EXPECT_EQ(OK(), run.Result(1).GetStatus());
  EXPECT_EQ(OK(), run.Result(2).GetStatus());
}

TEST(SecondEFCreateBins, ARefusedCallKeepsTheResultsAndTheData) {
  EqualFrequencyRun run("x", EightCases());
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ(Error(120011), run.CreateBins(Indices{5}));
  EXPECT_EQ(1u, run.Results().size());
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ(2u, run.Results().size());
}

TEST(SecondEFCreateBins, AfterAPassWithoutACaseFailsAgain) {
  EqualFrequencyRun run("xw", Columns({k1To8, kZeros}));
  EXPECT_EQ(Error(120004), run.CreateBins());
  EXPECT_EQ(Error(120004), run.CreateBins());
  EXPECT_EQ(Error(120004), run.CreateBins(Indices{0}));
  EXPECT_EQ(Error(120011), run.CreateBins(Indices{1}));
  EXPECT_TRUE(run.Results().empty());
  run.DeleteAlgorithm();
  EXPECT_TRUE(run.directory.IsEmpty());
}

TEST(SecondEFCreateBins, AfterAPassThatABadCodeEndedFailsAgain) {
  EqualFrequencyRun run("xy", Columns({k1To8, {0, 0, 0, 0, 1, 1, 1, 300}}));
  TQStatus expected = Error(120012);
  expected.SetDiscreteDatum(0, 1);
  EXPECT_EQ(expected, run.CreateBins());
  EXPECT_EQ(expected, run.CreateBins());
  EXPECT_TRUE(run.Results().empty());
}

// More cases than the pass keeps in memory, so that it has to write in the middle.
TEST(SecondEFCreateBins, AfterAPassThatCouldNotWriteFailsAgain) {
  EqualFrequencyRun run("x", Rows(10001, {1}));
  run.settings.SetTempDirName(run.directory.File("no/such"));
  EXPECT_EQ(Error(120021), run.CreateBins());
  EXPECT_EQ(Error(120021), run.CreateBins());
  EXPECT_TRUE(run.Results().empty());
}

// ----------------------------------------------------------------------- display

TEST(EFBINAlgorithm, DisplayShowsRecordCountPreparatorAndResults) {
  EqualFrequencyRun run("x", Columns({{1, 2, kMissing, 4}}));
  EXPECT_EQ(OK(), run.CreateBins());
  const OpenEFAlgorithm& algorithm = run.Algorithm();
  EXPECT_EQ("\nStart of EFBINAlgorithm display\nRecord count: 3\nout result: " +
                TextOf(*algorithm.fPreparator) + TextOf(algorithm.fOutput) +
                "End of EFBINAlgorithm display\n",
            TextOf(algorithm));
}

TEST(EFBINAlgorithm, DisplayReturnsTheStream) {
  EqualFrequencyRun run("x", EightCases());
  EXPECT_EQ(OK(), run.CreateBins());
  std::ostringstream os;
  EXPECT_EQ(&os, &run.Algorithm().Display(os));
}

}  // namespace
