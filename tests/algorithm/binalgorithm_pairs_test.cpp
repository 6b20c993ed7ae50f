#include "tqbinning/binalgorithm.h"

#include <vector>

#include <gtest/gtest.h>

#include "algorithm/eightcases.h"

// Which pairs the supervised driver accepts, and how they end.
namespace {

using namespace support;

// ------------------------------------------------------------ checking the indices

std::vector<TQStatus> CheckedPairs(SupervisedRun& run, const Indices& attributes,
                                   const Indices& targets, bool anyValid) {
  std::vector<TQStatus> statuses;
  EXPECT_EQ(anyValid, run.Algorithm().CheckVariableIndices(&attributes, &targets, statuses));
  return statuses;
}

std::vector<TQStatus> CheckedAttributes(SupervisedRun& run, const Indices& attributes,
                                        bool anyValid) {
  std::vector<TQStatus> statuses(9, Error(1));
  EXPECT_EQ(anyValid, run.Algorithm().CheckVariableIndices(&attributes, nullptr, statuses));
  return statuses;
}

using Statuses = std::vector<TQStatus>;

TEST(CheckVariableIndices, RefusesPairIndicesOutOfRange) {
  SupervisedRun run("xyw", {});
  EXPECT_EQ((Statuses(4, Error(120013))), CheckedPairs(run, {-1, 3, 0, 0}, {1, 1, -1, 3}, false));
  EXPECT_EQ((Statuses{Error(120013)}), CheckedPairs(run, {-1}, {-1}, false));
}

TEST(CheckVariableIndices, RefusesATargetThatIsNotCategorical) {
  SupervisedRun run("xyxw", {});
  EXPECT_EQ((Statuses(4, Error(120006))), CheckedPairs(run, {0, 0, 0, 3}, {2, 0, 3, 3}, false));
}

TEST(CheckVariableIndices, RefusesAPairOfOneVariableOrWithTheWeight) {
  SupervisedRun run("xyw", {});
  EXPECT_EQ((Statuses(2, Error(120005))), CheckedPairs(run, {1, 2}, {1, 1}, false));
}

TEST(CheckVariableIndices, AcceptsANumericAndAStringTarget) {
  SupervisedRun run("xy", {});
  ASSERT_EQ(2, run.list.AddCatVar("s", "", 2, IBINVariable::kStringCategorical,
                                  IBINVariable::kAttribute));
  EXPECT_EQ((Statuses(2)), CheckedPairs(run, {0, 0}, {1, 2}, true));
}

TEST(CheckVariableIndices, AcceptsTheListsTargetAsAnAttributeOfAPair) {
  SupervisedRun run("xyc", {});
  EXPECT_EQ((Statuses(1)), CheckedPairs(run, {1}, {2}, true));
}

TEST(CheckVariableIndices, OneValidPairIsEnough) {
  SupervisedRun run("xyw", {});
  EXPECT_EQ((Statuses{Error(120013), OK(), Error(120006)}),
            CheckedPairs(run, {9, 0, 1}, {1, 1, 0}, true));
}

TEST(CheckVariableIndices, RefusesAttributesThatCannotBeOne) {
  SupervisedRun run("xyw", {});
  EXPECT_EQ((Statuses{Error(120011), Error(120011), Error(120005), Error(120005)}),
            CheckedAttributes(run, {-1, 3, 1, 2}, false));
}

TEST(CheckVariableIndices, OneValidAttributeIsEnough) {
  SupervisedRun run("xyw", {});
  EXPECT_EQ((Statuses{Error(120011), OK()}), CheckedAttributes(run, {99, 0}, true));
}

TEST(CheckVariableIndices, WithoutTargetAndWeightEveryVariableCanBeAnAttribute) {
  SupervisedRun run("xc", {});
  EXPECT_EQ((Statuses{OK(), OK(), Error(120011)}), CheckedAttributes(run, {0, 1, -1}, true));
}

TEST(CheckVariableIndices, RefusesListsThatDoNotFitTogether) {
  SupervisedRun run("xy", {});
  const Indices one{0}, two{1, 1}, target{1};
  Statuses statuses;
  EXPECT_FALSE(run.Algorithm().CheckVariableIndices(nullptr, &target, statuses));
  EXPECT_FALSE(run.Algorithm().CheckVariableIndices(&one, &two, statuses));
}

// --------------------------------------------------------- pairs that are rejected

void ExpectEmptyResult(const BINAttributeTargetResults& result, TQStatus status) {
  EXPECT_EQ(status, result.GetStatus());
  EXPECT_TRUE(result.GetCutPoints().empty());
  EXPECT_EQ(Table(1), result.GetCellCounts());
  EXPECT_EQ(0u, result.GetNDistinctValues());
  EXPECT_EQ(0.0, result.GetTotalWeight());
  EXPECT_EQ(0.0, result.GetTotalWeightWithMissing());
  EXPECT_EQ(0.0, result.GetMinimum());
  EXPECT_EQ(0.0, result.GetMaximum());
}

TEST(RejectedPairs, AContinuousTargetIsStoredWithItsErrorAndDoesNotSpoilTheRun) {
  SupervisedRun run("xyx", Columns({k1To8, kHalves, kReversed}));
  EXPECT_EQ(OK(), run.CreateBins({0, 0}, {2, 1}));
  ExpectEmptyResult(run.Result(0, 2), Error(120006));
  EXPECT_EQ(0.0, run.Result(0, 2).GetModelEntropy());
  EXPECT_EQ((Numbers{4}), run.Cuts(0, 1));
  EXPECT_EQ(OK(), run.Algorithm().GetStatus());
}

TEST(RejectedPairs, AnIndexBeyondTheListIsStoredWithItsError) {
  SupervisedRun run("xy", CuttableRows());
  EXPECT_EQ(OK(), run.CreateBins({9, 0, 0}, {1, 1, 9}));
  ASSERT_EQ((Indices{9, 0, 0}), run.BinnedAttributes());
  ExpectEmptyResult(run.Result(9, 1), Error(120013));
  ExpectEmptyResult(run.Result(0, 9), Error(120013));
}

TEST(RejectedPairs, TheWeightIsStoredWithItsErrorAgainstTheListsTarget) {
  SupervisedRun run("xyw", Columns({k1To8, kHalves, Numbers(8, 1.0)}));
  EXPECT_EQ(OK(), run.CreateBins({2, 0, 7}));
  ASSERT_EQ((Indices{2, 0, 7}), run.BinnedAttributes());
  ExpectEmptyResult(run.Result(2, 1), Error(120005));
  EXPECT_EQ(0.0, run.Result(2, 1).GetModelEntropy());
  ExpectEmptyResult(run.Result(7, 1), Error(120011));
}

// The results have no place for them.
TEST(RejectedPairs, NegativeAndEqualIndicesLeaveNoResult) {
  SupervisedRun run("xy", CuttableRows());
  EXPECT_EQ(OK(), run.CreateBins({-1, 0, 1, 0}, {1, 1, 1, -1}));
  EXPECT_EQ((Indices{0}), run.BinnedAttributes());
  SupervisedRun attributes("xy", CuttableRows());
  EXPECT_EQ(OK(), attributes.CreateBins({-1, 1, 0}));
  EXPECT_EQ((Indices{0}), attributes.BinnedAttributes());
}

TEST(RejectedPairs, ARejectedLastPairDoesNotHideAnEarlierWarning) {
  SupervisedRun run("xy", Columns({kConstant, kHalves}));
  EXPECT_EQ(Warning(120018), run.CreateBins({0, 9}));
}

// ---------------------------------------------------------- pairs that end not OK

TEST(PairStatus, OneDistinctValueIsAWarningThatNamesTheAttribute) {
  SupervisedRun run("xxy", Columns({k1To8, kConstant, kHalves}));
  EXPECT_EQ(Warning(120018), run.CreateBins());
  const BINAttributeTargetResults result = run.Result(1, 2);
  EXPECT_EQ(Warning(120014, 1), result.GetStatus());
  EXPECT_TRUE(result.GetCutPoints().empty());
  EXPECT_EQ((Table{{8, 4, 4}}), result.GetCellCounts());
  EXPECT_EQ(1.0, result.GetModelEntropy());
  EXPECT_EQ(1u, result.GetNDistinctValues());
  EXPECT_EQ(3.0, result.GetMinimum());
  EXPECT_EQ(3.0, result.GetMaximum());
  EXPECT_EQ(OK(), run.Result(0, 2).GetStatus());
}

TEST(PairStatus, NoValidCaseIsAWarningWithoutCutsAndCounts) {
  SupervisedRun run("xy", Columns({kNothing, kHalves}));
  EXPECT_EQ(Warning(120018), run.CreateBins());
  const BINAttributeTargetResults result = run.Result(0, 1);
  EXPECT_EQ(Warning(120015), result.GetStatus());
  EXPECT_TRUE(result.GetCutPoints().empty());
  EXPECT_EQ(Table(1), result.GetCellCounts());
  EXPECT_EQ(0u, result.GetNDistinctValues());
  EXPECT_EQ(0.0, result.GetTotalWeight());
  EXPECT_EQ(8.0, result.GetTotalWeightWithMissing());
  EXPECT_EQ(kMissing, result.GetMinimum());
  EXPECT_EQ(kMissing, result.GetMaximum());
  EXPECT_EQ(kMissing, result.GetModelEntropy());
  EXPECT_EQ(0u, run.Algorithm().fRecordCount);
}

TEST(PairStatus, OneTargetClassIsAWarningThatNamesTheTarget) {
  SupervisedRun run("xy", Columns({k1To8, kZeros}));
  EXPECT_EQ(Warning(120018), run.CreateBins());
  const BINAttributeTargetResults result = run.Result(0, 1);
  EXPECT_EQ(Warning(120016, 1), result.GetStatus());  // and not 120017
  EXPECT_TRUE(result.GetCutPoints().empty());
  EXPECT_EQ((Table{{8, 8}}), result.GetCellCounts());
  EXPECT_EQ(0.0, result.GetModelEntropy());
}

TEST(PairStatus, ATargetOfASingleClassThatIsNotTheFirstHasTwoClasses) {
  SupervisedRun run("xy", Columns({k1To8, Numbers(8, 1.0)}));
  EXPECT_EQ(Warning(120018), run.CreateBins());
  EXPECT_EQ(Warning(120017), run.Result(0, 1).GetStatus());
  EXPECT_EQ((Table{{8, 0, 8}}), run.Result(0, 1).GetCellCounts());
}

TEST(PairStatus, OneTargetClassReplacesOneDistinctValue) {
  SupervisedRun run("xy", Columns({kConstant, kZeros}));
  EXPECT_EQ(Warning(120018), run.CreateBins());
  EXPECT_EQ(Warning(120016, 1), run.Result(0, 1).GetStatus());
}

TEST(PairStatus, OneTargetClassReplacesNoValidCase) {
  SupervisedRun run("xy", Columns({kNothing, kZeros}));
  EXPECT_EQ(Warning(120018), run.CreateBins());
  EXPECT_EQ(Warning(120016, 1), run.Result(0, 1).GetStatus());
}

TEST(PairStatus, NoAcceptedCutIsAWarningWithOneBin) {
  SupervisedRun run("xy", Columns({kScattered, kHalves}));
  EXPECT_EQ(Warning(120018), run.CreateBins());
  const BINAttributeTargetResults result = run.Result(0, 1);
  EXPECT_EQ(Warning(120017), result.GetStatus());
  EXPECT_EQ((Table{{8, 4, 4}}), result.GetCellCounts());
  EXPECT_EQ(1.0, result.GetModelEntropy());
}

TEST(PairStatus, AValueBeyondAllBordersIsAWarningWithoutCounts) {
  SupervisedRun run("xy", Columns({{1, 2, 3, support::kInfinity}, {0, 0, 1, 1}}));
  EXPECT_EQ(Warning(120018), run.CreateBins());
  const BINAttributeTargetResults result = run.Result(0, 1);
  EXPECT_EQ(Warning(120002), result.GetStatus());
  EXPECT_EQ(Table(1), result.GetCellCounts());
  EXPECT_EQ(kMissing, result.GetModelEntropy());
  EXPECT_EQ(support::kInfinity, result.GetMaximum());
}

TEST(PairStatus, OneInfiniteValueIsStillOneDistinctValue) {
  SupervisedRun run("xy", Columns({Numbers(8, support::kInfinity), kHalves}));
  EXPECT_EQ(Warning(120018), run.CreateBins());
  EXPECT_EQ(Warning(120014, 0), run.Result(0, 1).GetStatus());
}

TEST(PairStatus, RunAlgorithmReturnsThePairsStatus) {
  SupervisedRun run("xxy", Columns({k1To8, kConstant, kHalves}));
  EXPECT_EQ(OK(), run.CreateBins({0}));
  EXPECT_EQ(Warning(120014, 1), run.Algorithm().RunAlgorithm(1, 2));
  EXPECT_EQ(OK(), run.Algorithm().RunAlgorithm(0, 2));
}

TEST(PairStatus, TheLastOneThatIsNotOKIsTheAlgorithmsOwn) {
  SupervisedRun run("xxxxy", Columns({kConstant, kScattered, kNothing, k1To8, kHalves}));
  EXPECT_EQ(Warning(120018), run.CreateBins({0, 1, 3}));
  EXPECT_EQ(Warning(120017), run.Algorithm().GetStatus());
  EXPECT_EQ(Warning(120018), run.CreateBins({2, 0, 3}));
  EXPECT_EQ(Warning(120014, 0), run.Algorithm().GetStatus());
}

TEST(PairStatus, AWarningOnceStaysAndIsReportedByEveryLaterCall) {
  SupervisedRun run("xxy", Columns({k1To8, kConstant, kHalves}));
  EXPECT_EQ(Warning(120018), run.CreateBins({1}));
  EXPECT_EQ(Warning(120018), run.CreateBins({0}));
  EXPECT_EQ(OK(), run.Result(0, 2).GetStatus());
  EXPECT_EQ(Warning(120014, 1), run.Algorithm().GetStatus());
}

// -------------------------------------------------------- targets that are unusable

TEST(UnusableTarget, WithoutListsAndTargetNothingCanBeBinned) {
  SupervisedRun run("xc", CuttableRows());
  EXPECT_EQ(Error(120010), run.CreateBins());
  EXPECT_TRUE(run.Results().empty());
  EXPECT_EQ(OK(), run.Algorithm().GetStatus());
}

// There is no target under which a result could be stored.
TEST(UnusableTarget, AttributesWithoutAnyTargetLeaveNoResult) {
  SupervisedRun run("xc", CuttableRows());
  EXPECT_EQ(Warning(120018), run.CreateBins({0}));
  EXPECT_TRUE(run.Results().empty());
  EXPECT_EQ(Error(120010), run.Algorithm().GetStatus());
}

TEST(UnusableTarget, WithoutListsATargetBeyondItsCategoriesEndsTheCall) {
  SupervisedRun run("xy", Columns({k1To8, {0, 0, 0, 0, 2, 2, 2, 2}}));  // two are declared
  EXPECT_EQ(Error(120010), run.CreateBins());
  EXPECT_TRUE(run.Results().empty());
  EXPECT_EQ(OK(), run.Algorithm().GetStatus());
}

TEST(UnusableTarget, APairWithItIsStoredWithZeroNumbersAndWithoutEntropy) {
  SupervisedRun run("xyc", Columns({k1To8, kHalves, {0, 0, 0, 0, 2, 2, 2, 2}}));
  EXPECT_EQ(Warning(120018), run.CreateBins({0, 0}, {2, 1}));
  ExpectEmptyResult(run.Result(0, 2), Error(120010));
  EXPECT_EQ(kMissing, run.Result(0, 2).GetModelEntropy());
  EXPECT_EQ(OK(), run.Result(0, 1).GetStatus());
  EXPECT_EQ(Error(120010), run.Algorithm().GetStatus());
}

TEST(UnusableTarget, AttributesAgainstItAreStoredEachWithTheError) {
  SupervisedRun run("xxy", Columns({k1To8, kReversed, {0, 0, 0, 0, 2, 2, 2, 2}}));
  EXPECT_EQ(Warning(120018), run.CreateBins({0, 1}));
  ASSERT_EQ((Indices{0, 1}), run.BinnedAttributes());
  ExpectEmptyResult(run.Result(0, 2), Error(120010));
  ExpectEmptyResult(run.Result(1, 2), Error(120010));
}

TEST(UnusableTarget, IsReportedAsSomeNotOKOnceAPairHasEndedSo) {
  SupervisedRun run("xy", Columns({k1To8, {0, 0, 0, 0, 2, 2, 2, 2}}));
  EXPECT_EQ(Warning(120018), run.CreateBins({0}));
  EXPECT_EQ(Warning(120018), run.CreateBins());
}

TEST(UnusableTarget, ATargetCodeOutOfRangeEndsThePass) {
  SupervisedRun run("xy", Columns({k1To8, {0, 0, 0, 0, 1, 1, 1, 300}}));
  TQStatus expected = Error(120012);
  expected.SetDiscreteDatum(0, 1);
  EXPECT_EQ(expected, run.CreateBins());
  EXPECT_TRUE(run.Results().empty());
}

TEST(UnusableTarget, AmongOtherCategoricalVariablesACodeOutOfRangeSpoilsOnlyTheTarget) {
  SupervisedRun run("xyc", Columns({k1To8, {0, 0, 0, 0, 1, 1, 1, 300}, kHalves}));
  EXPECT_EQ(Warning(120018), run.CreateBins({0, 0}, {1, 2}));
  ExpectEmptyResult(run.Result(0, 1), Error(120010));
  EXPECT_EQ((Numbers{4}), run.Cuts(0, 2));
}

// ---------------------------------------------------- a weight of a target's level

class WeightIndexAlgorithm : public OpenAlgorithm {
 public:
  using OpenAlgorithm::fWeightIndex;
  using OpenAlgorithm::OpenAlgorithm;
};

// A list's own weight has a level that no target has, and is refused for that.
TEST(CheckVariableIndices, AWeightOfATargetsLevelMayBeNeitherTargetNorAttribute) {
  BINSettings settings;
  BINVarList list = support::VarList("xyc");
  WeightIndexAlgorithm algorithm(settings, list);
  algorithm.fWeightIndex = 2;
  std::vector<TQStatus> statuses;
  const Indices attributes{0, 2, 0};
  const Indices targets{2, 1, 1};
  EXPECT_TRUE(algorithm.CheckVariableIndices(&attributes, &targets, statuses));
  EXPECT_EQ((std::vector<TQStatus>{Error(120005), Error(120005), OK()}), statuses);
}

}  // namespace
