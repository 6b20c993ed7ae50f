#include "tqbinning/binalgorithm.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "algorithm/eightcases.h"

// The supervised driver, from the host's call to the results.
namespace {

using namespace support;

// ------------------------------------------------------------- a new algorithm

TEST(BINAlgorithm, ANewOneIsOKAndHasNoResults) {
  SupervisedRun run("xy", CuttableRows());
  EXPECT_EQ(OK(), run.Algorithm().GetStatus());
  EXPECT_TRUE(run.Results().empty());
  EXPECT_EQ(0u, run.Algorithm().fRecordCount);
  EXPECT_EQ(nullptr, run.Algorithm().fPreparator);
  EXPECT_EQ(nullptr, run.Algorithm().fDataSet);
  EXPECT_TRUE(run.Algorithm().fRightBorderClosed);
  EXPECT_TRUE(run.directory.IsEmpty());
}

TEST(BINAlgorithm, TheVersionBeginsWithTheComponentsName) {
  SupervisedRun run("xy", {});
  const std::string banner = "Supervised Binning Component Ver. 1.0";
  const std::string version = run.Algorithm().GetComponentVersion();
  EXPECT_EQ(banner, version.substr(0, banner.size()));
  EXPECT_GT(version.size(), banner.size());  // an ownership notice follows
}

TEST(BINAlgorithm, KeepsItsOwnCopyOfTheSettings) {
  SupervisedRun run("xy", CuttableRows());
  const std::string directory = run.directory.Path();
  const OpenAlgorithm& algorithm = run.Algorithm();
  ASSERT_TRUE(run.settings.SetNumberOfBins(77));
  run.settings.SetTempDirName("/no/such/directory");
  EXPECT_EQ(2, algorithm.GetSettings().GetNumberOfBins());
  EXPECT_EQ(directory, algorithm.GetSettings().GetTempDirName());
  EXPECT_EQ(OK(), run.CreateBins());
}

TEST(BINAlgorithm, KeepsItsOwnCopyOfTheVariableList) {
  SupervisedRun run("xy", CuttableRows());
  const OpenAlgorithm& algorithm = run.Algorithm();
  ASSERT_TRUE(run.list.RemoveVar(0));
  EXPECT_EQ(2, algorithm.GetVarList().Size());
  EXPECT_EQ("v0", algorithm.GetVarList().GetVarAt(0)->GetVariableName());
  EXPECT_EQ(OK(), run.CreateBins());
}

// ------------------------------------------------------------------- a good run

TEST(BINAlgorithm, APairsResultHoldsCutsCountsAndSummary) {
  SupervisedRun run(
      "xy", Columns({{1, 2, 3, 4, kMissing, 6, 7, 8, 9}, {0, 0, 0, 0, 1, 1, 1, 1, kMissing}}));
  EXPECT_EQ(OK(), run.CreateBins());
  const BINAttributeTargetResults result = run.Result(0, 1);
  EXPECT_EQ(OK(), result.GetStatus());
  EXPECT_EQ((Numbers{4}), result.GetCutPoints());
  EXPECT_EQ((Table{{4, 4, 0}, {3, 0, 3}}), result.GetCellCounts());
  EXPECT_EQ(7u, result.GetNDistinctValues());
  EXPECT_EQ(7.0, result.GetTotalWeight());
  EXPECT_EQ(9.0, result.GetTotalWeightWithMissing());
  EXPECT_EQ(1.0, result.GetMinimum());
  EXPECT_EQ(8.0, result.GetMaximum());
  EXPECT_EQ(0.0, result.GetModelEntropy());
  EXPECT_EQ(OK(), run.Algorithm().GetStatus());
  EXPECT_EQ(7u, run.Algorithm().fRecordCount);
}

TEST(BINAlgorithm, AnOpenRightBorderCutsAtTheFirstValueOfTheUpperBin) {
  SupervisedRun run("xy", CuttableRows());
  run.settings.SetRightBorderClosed(false);
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_FALSE(run.Algorithm().fRightBorderClosed);
  EXPECT_EQ((Numbers{5}), run.Cuts(0, 1));
  EXPECT_EQ((Table{{4, 4, 0}, {4, 0, 4}}), run.Result(0, 1).GetCellCounts());
}

TEST(BINAlgorithm, WeightsAreRoundedAndCountInsteadOfCases) {
  SupervisedRun run("xyw", Columns({{1, 2, 3, 4, kMissing, 9},
                                    {0, 0, 1, 1, 0, 1},
                                    {2.5, 2, 3.4, 1, 7, 0.4}}));  // 3, 2, 3, 1, 7, dropped
  EXPECT_EQ(OK(), run.CreateBins());
  const BINAttributeTargetResults result = run.Result(0, 1);
  EXPECT_EQ((Numbers{2}), result.GetCutPoints());
  EXPECT_EQ((Table{{5, 5, 0}, {4, 0, 4}}), result.GetCellCounts());
  EXPECT_EQ(9.0, result.GetTotalWeight());
  EXPECT_EQ(16.0, result.GetTotalWeightWithMissing());
  EXPECT_EQ(4.0, result.GetMaximum());
  EXPECT_EQ(4u, run.Algorithm().fRecordCount);
}

TEST(BINAlgorithm, NullRecordsAreSkipped) {
  SupervisedRun run("xy", CuttableRows());
  run.records.YieldNullAt(0);
  run.records.YieldNullAt(5);
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Numbers{4}), run.Cuts(0, 1));
  EXPECT_EQ(8.0, run.Result(0, 1).GetTotalWeight());
}

TEST(BINAlgorithm, WithoutListsEveryVariableButTargetAndWeightIsBinnedInIndexOrder) {
  SupervisedRun run("xwxyx", Columns({k1To8, Numbers(8, 1.0), kReversed, kHalves, k1To8}));
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Indices{0, 2, 4}), run.BinnedAttributes());
  for (const auto& result : run.Results()) EXPECT_EQ(3, result.GetTargetIndex());
}

TEST(BINAlgorithm, ACategoricalAttributeIsBinnedByItsCodes) {
  SupervisedRun run("cy", Columns({{0, 0, 0, 0, 1, 1, 1, 1}, kHalves}));
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Numbers{0}), run.Cuts(0, 1));
}

TEST(BINAlgorithm, WithoutTargetsAttributesGoAgainstTheListsTargetInTheOrderGiven) {
  SupervisedRun run("xxxy", Columns({k1To8, kReversed, k1To8, kHalves}));
  EXPECT_EQ(OK(), run.CreateBins({2, 0}));
  EXPECT_EQ((Indices{2, 0}), run.BinnedAttributes());
  EXPECT_EQ((Numbers{4}), run.Cuts(2, 3));
  EXPECT_EQ((Numbers{4}), run.Cuts(0, 3));
}

TEST(BINAlgorithm, PairsAreBinnedInTheOrderGiven) {
  SupervisedRun run("xycx", Columns({k1To8, kHalves, {0, 0, 1, 1, 1, 1, 1, 1}, kReversed}));
  EXPECT_EQ(OK(), run.CreateBins({0, 3, 0}, {2, 1, 1}));
  EXPECT_EQ((Indices{0, 3, 0}), run.BinnedAttributes());
  EXPECT_EQ((Numbers{2}), run.Cuts(0, 2));
  EXPECT_EQ((Numbers{4}), run.Cuts(3, 1));
  EXPECT_EQ((Numbers{4}), run.Cuts(0, 1));
}

TEST(BINAlgorithm, EachPairHasTheClassesOfItsOwnTarget) {
  SupervisedRun run("xyc", Columns({k1To8, {2, 2, 2, 2, 0, 0, 0, 0}, kHalves}), 3);
  EXPECT_EQ(OK(), run.CreateBins({0, 0, 0}, {1, 2, 1}));
  EXPECT_EQ((Table{{4, 0, 0, 4}, {4, 4, 0, 0}}), run.Results().at(0).GetCellCounts());
  EXPECT_EQ((Table{{4, 4, 0}, {4, 0, 4}}), run.Results().at(1).GetCellCounts());
  EXPECT_EQ((Table{{4, 0, 0, 4}, {4, 4, 0, 0}}), run.Results().at(2).GetCellCounts());
}

TEST(BINAlgorithm, PairsWorkForAListWithoutATargetOfItsOwn) {
  SupervisedRun run("xc", CuttableRows());
  EXPECT_EQ(OK(), run.CreateBins({0}, {1}));
  EXPECT_EQ((Numbers{4}), run.Cuts(0, 1));
  EXPECT_EQ((Table{{4, 4, 0}, {4, 0, 4}}), run.Result(0, 1).GetCellCounts());
}

TEST(BINAlgorithm, TheListsTargetCanBeAnAttributeOfAPair) {
  SupervisedRun run("xyc", Columns({k1To8, kHalves, {0, 0, 0, 0, 1, 1, 1, 1}}));
  EXPECT_EQ(OK(), run.CreateBins({1}, {2}));
  EXPECT_EQ((Numbers{0}), run.Cuts(1, 2));
  EXPECT_EQ((Table{{4, 4, 0}, {4, 0, 4}}), run.Result(1, 2).GetCellCounts());
}

// More cases than the pass keeps in memory at a time.
TEST(BINAlgorithm, ManyCasesAreAllCounted) {
  Rows rows;
  for (int i = 0; i < 25000; ++i) rows.push_back({i % 100 + 0.0, i % 100 < 30 ? 0.0 : 1.0});
  SupervisedRun run("xy", rows);
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Numbers{29}), run.Cuts(0, 1));
  EXPECT_EQ((Table{{7500, 7500, 0}, {17500, 0, 17500}}), run.Result(0, 1).GetCellCounts());
  EXPECT_EQ(25000.0, run.Result(0, 1).GetTotalWeight());
  run.DeleteAlgorithm();
  EXPECT_TRUE(run.directory.IsEmpty());
}

TEST(BINAlgorithm, ThePreProcessorIsGoneAfterwards) {
  SupervisedRun run("xy", CuttableRows());
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ(nullptr, run.Algorithm().fPreProcess);
}

TEST(BINAlgorithm, TheTemporaryFilesLiveAsLongAsTheAlgorithm) {
  SupervisedRun run("xyw", Columns({k1To8, kHalves, Numbers(8, 1.0)}));
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ(3u, run.directory.CountFiles());
  run.DeleteAlgorithm();
  EXPECT_TRUE(run.directory.IsEmpty());
}

TEST(BINAlgorithm, IsDeletedThroughItsInterface) {
  SupervisedRun run("xy", CuttableRows());
  std::unique_ptr<IBINAlgorithm> algorithm = std::make_unique<BINAlgorithm>(run.settings, run.list);
  EXPECT_EQ(OK(), algorithm->CreateBins(run.records, nullptr, nullptr));
  EXPECT_FALSE(run.directory.IsEmpty());
  algorithm.reset();
  EXPECT_TRUE(run.directory.IsEmpty());
}

// ------------------------------------------------------------------- pre-binning

// Two pre-bins of the values 1 to 8 meet half-way, at 4.5; the values themselves are
// cut at 4.
TEST(PreBinning, IsDoneForMoreDistinctValuesThanTheThreshold) {
  SupervisedRun run("xy", CuttableRows());
  ASSERT_TRUE(run.settings.SetNumDistinctValueThreshold(7));
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Numbers{4.5}), run.Cuts(0, 1));
  EXPECT_EQ((Table{{4, 4, 0}, {4, 0, 4}}), run.Result(0, 1).GetCellCounts());
  EXPECT_EQ(8u, run.Result(0, 1).GetNDistinctValues());
}

TEST(PreBinning, IsNotDoneForAsManyDistinctValuesAsTheThreshold) {
  SupervisedRun run("xy", CuttableRows());
  ASSERT_TRUE(run.settings.SetNumDistinctValueThreshold(8));
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Numbers{4}), run.Cuts(0, 1));
}

TEST(PreBinning, IsNeverDoneForAThresholdOfZeroOrNone) {
  SupervisedRun zero("xy", CuttableRows());
  ASSERT_TRUE(zero.settings.SetNumDistinctValueThreshold(0));
  EXPECT_EQ(OK(), zero.CreateBins());
  EXPECT_EQ((Numbers{4}), zero.Cuts(0, 1));
  SupervisedRun none("xy", CuttableRows());
  EXPECT_EQ(OK(), none.CreateBins());
  EXPECT_EQ((Numbers{4}), none.Cuts(0, 1));
}

TEST(PreBinning, MakesAsManyBinsAsTheSettingsSay) {
  SupervisedRun run("xy", Columns({k1To8, {0, 0, 1, 1, 1, 1, 1, 1}}));
  ASSERT_TRUE(run.settings.SetNumDistinctValueThreshold(7));
  ASSERT_TRUE(run.settings.SetNumberOfBins(4));  // borders 2.5, 4.5 and 6.5
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Numbers{2.5}), run.Cuts(0, 1));
}

TEST(PreBinning, IsDecidedForEachAttribute) {
  SupervisedRun run("xxy", Columns({k1To8, {1, 1, 2, 2, 3, 3, 4, 4}, kHalves}));
  ASSERT_TRUE(run.settings.SetNumDistinctValueThreshold(7));
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Numbers{4.5}), run.Cuts(0, 2));
  EXPECT_EQ((Numbers{2}), run.Cuts(1, 2));
}

TEST(PreBinning, FollowsTheBorderSide) {
  // All the weight of 4 crosses the half; closed, it ends the lower pre-bin, open, it
  // opens the upper one.
  const Rows rows = Columns({{1, 2, 4, 4, 4, 4, 7, 8}, {0, 0, 1, 1, 1, 1, 1, 1}});
  SupervisedRun closed("xy", rows);
  ASSERT_TRUE(closed.settings.SetNumDistinctValueThreshold(2));
  EXPECT_EQ(Warning(120018), closed.CreateBins());  // (2, 4) and (0, 2): no cut passes
  EXPECT_EQ(Warning(120017), closed.Result(0, 1).GetStatus());
  SupervisedRun open("xy", rows);
  open.settings.SetRightBorderClosed(false);
  ASSERT_TRUE(open.settings.SetNumDistinctValueThreshold(2));
  EXPECT_EQ(OK(), open.CreateBins());
  EXPECT_EQ((Numbers{4}), open.Cuts(0, 1));
  EXPECT_EQ((Table{{2, 2, 0}, {6, 0, 6}}), open.Result(0, 1).GetCellCounts());
}

// A weight that is no number makes a total that is none, from which no percentile
// can be taken: nothing is binned, and that is no failure of the pair.
TEST(PreBinning, ThatCannotBeDoneLeavesThePairWithoutCutsAndCounts) {
  SupervisedRun run("xyw", Columns({k1To8, kHalves, {1, 1, 1, kNaN, 1, 1, 1, 1}}));
  ASSERT_TRUE(run.settings.SetNumDistinctValueThreshold(7));
  EXPECT_EQ(OK(), run.CreateBins());
  const BINAttributeTargetResults result = run.Result(0, 1);
  EXPECT_EQ(OK(), result.GetStatus());
  EXPECT_TRUE(result.GetCutPoints().empty());
  EXPECT_EQ(Table(1), result.GetCellCounts());
  EXPECT_EQ(kMissing, result.GetModelEntropy());
  EXPECT_EQ(8u, result.GetNDistinctValues());
  EXPECT_NE(result.GetTotalWeight(), result.GetTotalWeight());
}

// -------------------------------------------------- validation ends the call early

TEST(BINAlgorithm, WithoutANumberOfBinsNothingIsRead) {
  SupervisedRun run("xy", CuttableRows());
  run.settings = BINSettings();
  run.settings.SetTempDirName(run.directory.Path());
  EXPECT_EQ(Error(120009), run.CreateBins());
  EXPECT_EQ(0u, run.records.HasMoreCalls());
  EXPECT_EQ(0u, run.records.NextCalls());
  EXPECT_TRUE(run.Results().empty());
  EXPECT_EQ(OK(), run.Algorithm().GetStatus());
}

TEST(BINAlgorithm, TheNumberOfBinsIsLookedAtBeforeTheLists) {
  SupervisedRun run("xy", CuttableRows());
  run.settings = BINSettings();
  EXPECT_EQ(Error(120009), run.CreateBins({-1}));
}

TEST(BINAlgorithm, ListsOfUnlikeLengthAreAnError) {
  SupervisedRun run("xxy", Columns({k1To8, kReversed, kHalves}));
  EXPECT_EQ(Error(120008), run.CreateBins({0, 1}, {2}));
  EXPECT_EQ(Error(120008), run.CreateBins({0}, {2, 2}));
  EXPECT_EQ(Error(120008), run.CreateBins({0}, {}));
  EXPECT_EQ(0u, run.records.HasMoreCalls());
  EXPECT_TRUE(run.Results().empty());
  EXPECT_EQ(OK(), run.Algorithm().GetStatus());
}

TEST(BINAlgorithm, TargetsWithoutAttributesAreAnError) {
  SupervisedRun run("xy", CuttableRows());
  const Indices targets{1};
  EXPECT_EQ(Error(120008), run.Algorithm().CreateBins(run.records, nullptr, &targets));
  EXPECT_EQ(0u, run.records.HasMoreCalls());
}

TEST(BINAlgorithm, EmptyListsAreAnError) {
  SupervisedRun run("xy", CuttableRows());
  EXPECT_EQ(Error(120008), run.CreateBins(Indices{}));
  EXPECT_EQ(Error(120008), run.CreateBins({}, {}));
}

TEST(BINAlgorithm, ListsWithoutAValidPairAreAnErrorAndNothingIsReadOrStored) {
  SupervisedRun run("xyw", Columns({k1To8, kHalves, Numbers(8, 1.0)}));
  EXPECT_EQ(Error(120008), run.CreateBins({-1, 3, 1, 2}));
  EXPECT_EQ(Error(120008), run.CreateBins({0, 9, 2}, {0, 1, 1}));
  EXPECT_EQ(0u, run.records.HasMoreCalls());
  EXPECT_TRUE(run.Results().empty());
  EXPECT_EQ(OK(), run.Algorithm().GetStatus());
}

TEST(BINAlgorithm, ARefusedCallLeavesTheAlgorithmUsable) {
  SupervisedRun run("xy", CuttableRows());
  EXPECT_EQ(Error(120008), run.CreateBins({7}));
  EXPECT_EQ(OK(), run.CreateBins({0}));
  EXPECT_EQ((Numbers{4}), run.Cuts(0, 1));
}

TEST(BINAlgorithm, AnEmptyIteratorIsAnErrorThatCanBeTriedAgain) {
  SupervisedRun run("xy", CuttableRows());
  MemoryRecords empty({});
  EXPECT_EQ(Error(120004), run.Algorithm().CreateBins(empty, nullptr, nullptr));
  EXPECT_EQ(1u, empty.HasMoreCalls());
  EXPECT_EQ(0u, empty.NextCalls());
  EXPECT_EQ(nullptr, run.Algorithm().fPreparator);
  EXPECT_EQ(OK(), run.Algorithm().GetStatus());
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Numbers{4}), run.Cuts(0, 1));
}

// ------------------------------------------------------------------ another call

TEST(SecondCreateBins, ReusesTheDataAndTouchesNoRecords) {
  SupervisedRun run("xxy", Columns({k1To8, kReversed, kHalves}));
  EXPECT_EQ(OK(), run.CreateBins({0}));
  const std::size_t calls = run.records.HasMoreCalls() + run.records.NextCalls();
  MemoryRecords empty({});
  const Indices attributes{1};
  EXPECT_EQ(OK(), run.Algorithm().CreateBins(empty, &attributes, nullptr));
  EXPECT_EQ(0u, empty.HasMoreCalls() + empty.NextCalls());
  EXPECT_EQ(calls, run.records.HasMoreCalls() + run.records.NextCalls());
  EXPECT_EQ((Numbers{4}), run.Cuts(1, 2));
}

TEST(SecondCreateBins, AddsItsResultsAfterTheEarlierOnes) {
  SupervisedRun run("xxy", Columns({k1To8, kReversed, kHalves}));
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ(OK(), run.CreateBins({1, 0}));
  EXPECT_EQ((Indices{0, 1, 1, 0}), run.BinnedAttributes());
  std::vector<BINAttributeTargetResults> ofAttribute;
  EXPECT_EQ(OK(), run.Algorithm().GetBinningResults().GetAttributeCutPoints(0, ofAttribute));
  EXPECT_EQ(2u, ofAttribute.size());
}

TEST(SecondCreateBins, GivesTheSameResultsAgain) {
  SupervisedRun run("xxyc", Columns({k1To8, kScattered, kHalves, kAlternating}));
  EXPECT_EQ(Warning(120018), run.CreateBins());
  EXPECT_EQ(Warning(120018), run.CreateBins());
  const std::vector<BINAttributeTargetResults> results = run.Results();
  ASSERT_EQ(6u, results.size());
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(TextOf(results[i]), TextOf(results[i + 3]));
}

TEST(SecondCreateBins, ChecksItsOwnLists) {
  SupervisedRun run("xxy", Columns({k1To8, kReversed, kHalves}));
  EXPECT_EQ(OK(), run.CreateBins({9, 0, 9}));
  EXPECT_EQ(OK(), run.CreateBins({0, 1}, {2, 2}));
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Indices{9, 0, 9, 0, 1, 0, 1}), run.BinnedAttributes());
}

TEST(SecondCreateBins, ReadsTheNumberOfBinsAgain) {
  SupervisedRun run("xy", Columns({k1To8, {0, 0, 1, 1, 1, 1, 1, 1}}));
  ASSERT_TRUE(run.settings.SetNumDistinctValueThreshold(7));
  ASSERT_TRUE(run.settings.SetNumberOfBins(4));
  EXPECT_EQ(OK(), run.CreateBins());
  ASSERT_TRUE(run.Algorithm().fSettings.SetNumberOfBins(2));
  EXPECT_EQ(Warning(120018), run.CreateBins());  // the border 4.5 alone is no good cut
  EXPECT_EQ((Numbers{2.5}), run.Results().at(0).GetCutPoints());
  EXPECT_EQ(Warning(120017), run.Results().at(1).GetStatus());
}

TEST(SecondCreateBins, ARefusedCallKeepsTheResultsAndTheData) {
  SupervisedRun run("xy", CuttableRows());
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ(Error(120008), run.CreateBins({5}));
  EXPECT_EQ(1u, run.Results().size());
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ(2u, run.Results().size());
}

TEST(SecondCreateBins, AfterAPassWithoutACaseFailsAgain) {
  SupervisedRun run("xyw", Columns({k1To8, kHalves, kZeros}));
  EXPECT_EQ(Error(120004), run.CreateBins());
  EXPECT_EQ(Error(120004), run.CreateBins());
  EXPECT_EQ(Error(120004), run.CreateBins({0}));
  EXPECT_EQ(Error(120004), run.CreateBins({0}, {1}));
  EXPECT_TRUE(run.Results().empty());
  run.DeleteAlgorithm();
  EXPECT_TRUE(run.directory.IsEmpty());
}

TEST(SecondCreateBins, AfterAPassThatABadCodeEndedFailsAgain) {
  SupervisedRun run("xy", Columns({k1To8, {0, 0, 0, 0, 1, 1, 1, 300}}));
  TQStatus expected = Error(120012);
  expected.SetDiscreteDatum(0, 1);
  EXPECT_EQ(expected, run.CreateBins());
  EXPECT_EQ(expected, run.CreateBins());
  EXPECT_EQ(expected, run.CreateBins({0}));
  EXPECT_TRUE(run.Results().empty());
}

// More cases than the pass keeps in memory, so that it has to write in the middle.
TEST(SecondCreateBins, AfterAPassThatCouldNotWriteFailsAgain) {
  SupervisedRun run("xy", Rows(10001, {1, 0}));
  run.settings.SetTempDirName(run.directory.File("no/such"));
  EXPECT_EQ(Error(120021), run.CreateBins());
  EXPECT_EQ(Error(120021), run.CreateBins());
  EXPECT_TRUE(run.Results().empty());
}

TEST(SecondCreateBins, AfterAFailedPassStillChecksTheListsFirst) {
  SupervisedRun run("xyw", Columns({k1To8, kHalves, kZeros}));
  EXPECT_EQ(Error(120004), run.CreateBins());
  EXPECT_EQ(Error(120008), run.CreateBins({7}));
}

// ----------------------------------------------------------------------- display

TEST(BINAlgorithm, DisplayShowsRecordCountPreparatorAndResults) {
  SupervisedRun run("xy", Columns({{1, 2, 3, kMissing}, {0, 0, 1, 1}}));
  EXPECT_EQ(OK(), run.CreateBins());
  const OpenAlgorithm& algorithm = run.Algorithm();
  const std::string text = TextOf(algorithm);
  const std::string before = "Start of BINAlgorithm display\nRecord count: 3\nout result: ";
  const std::string parts = TextOf(*algorithm.fPreparator) + TextOf(algorithm.fOutput);
  const std::string after = "End of BINAlgorithm display\n";
  EXPECT_NE(std::string::npos, text.find(before));
  EXPECT_NE(std::string::npos, text.find(parts));
  EXPECT_LE(text.find(before) + before.size(), text.find(parts));
  ASSERT_GE(text.size(), after.size());
  EXPECT_EQ(after, text.substr(text.size() - after.size()));
}

TEST(BINAlgorithm, DisplayReturnsTheStream) {
  SupervisedRun run("xy", CuttableRows());
  EXPECT_EQ(OK(), run.CreateBins());
  std::ostringstream os;
  EXPECT_EQ(&os, &run.Algorithm().Display(os));
}

// ------------------------------------------------------- pre-binning and missing cases

// Half of the valid weight lies at 4.5; half of all weight would lie at the end.
TEST(PreBinning, PercentilesAreOfTheValidWeight) {
  Rows rows = CuttableRows();
  for (int i = 0; i < 8; ++i) rows.push_back({kMissing, 0});
  SupervisedRun run("xy", rows);
  ASSERT_TRUE(run.settings.SetNumDistinctValueThreshold(2));
  EXPECT_EQ(OK(), run.CreateBins());
  EXPECT_EQ((Numbers{4.5}), run.Cuts(0, 1));
}

}  // namespace
