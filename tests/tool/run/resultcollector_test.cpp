#include "run/resultcollector.h"

#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tqcommon/tqcommon.h>

#include "modeltesting.h"

namespace TQTool {
namespace {

using testing::ElementsAre;
using TQBinning::TQStatus;

BINVarList TwoVariables() {
  BINVarList list;
  list.AddCatVar("t", "", 256, IBINVariable::kStringCategorical, IBINVariable::kTarget);
  list.AddContVar("a", "", IBINVariable::kAttribute);
  return list;
}

// A supervised result of variable 1 with these cuts and (flat) cell counts.
BinnedAttribute Supervised(const std::set<double>& cuts, const std::vector<double>& cellCounts,
                           const std::vector<std::size_t>& order, int prebinThreshold = 0) {
  BINOutput output;
  EXPECT_TRUE(output
                  .SetAttributeTargetResults(TQStatus(120017, true), cuts, cellCounts, 1, 0, 5,
                                             10.0, 12.0, -1.0, 9.0, 0.5)
                  .IsOK());
  std::vector<BINAttributeTargetResults> all;
  EXPECT_TRUE(output.GetAllCutPoints(all).IsOK());
  return CollectResult(all.at(0), TwoVariables(), order, prebinThreshold);
}

std::vector<double> WeightsOf(const std::vector<Count>& counts) {
  std::vector<double> weights;
  for (const Count& count : counts) weights.push_back(count.weight);
  return weights;
}

BinnedAttribute EqualFrequency(const std::vector<double>& cuts, const std::vector<double>& counts) {
  EFBINOutput output;
  EXPECT_TRUE(
      output.SetAttributeResults(TQStatus(), cuts, counts, 1, 5, 10.0, 12.0, -1.0, 9.0).IsOK());
  std::vector<BINAttributeResults> all;
  EXPECT_TRUE(output.GetAllCutPoints(all).IsOK());
  return CollectResult(all.at(0), TwoVariables());
}

TEST(CollectResult, TakesTheNumbersOver) {
  const BinnedAttribute result = Supervised({}, {10.0, 6.0, 4.0}, {0, 1});
  EXPECT_EQ("a", result.name);
  EXPECT_EQ(TQStatus(120017, true), result.status);
  EXPECT_EQ(5U, result.numDistinct);
  EXPECT_EQ(10.0, result.valid.weight);
  EXPECT_EQ(12.0, result.total.weight);
  EXPECT_EQ(-1.0, result.minimum);
  EXPECT_EQ(9.0, result.maximum);
  EXPECT_EQ(0.5, result.entropy);
}

TEST(CollectResult, BinsLieBetweenTheCutsAndCategoriesInTheirOrder) {
  const BinnedAttribute result = Supervised({2.0, 4.0}, {6, 1, 5, 3, 3, 0, 1, 0, 1}, {1, 0});
  EXPECT_THAT(result.cuts, ElementsAre(2.0, 4.0));
  ASSERT_EQ(3U, result.bins.size());
  EXPECT_EQ(-kInfinity, result.bins[0].lower);
  EXPECT_EQ(2.0, result.bins[0].upper);
  EXPECT_EQ(2.0, result.bins[1].lower);
  EXPECT_EQ(4.0, result.bins[1].upper);
  EXPECT_EQ(kInfinity, result.bins[2].upper);
  EXPECT_EQ(6.0, result.bins[0].count.weight);
  EXPECT_THAT(WeightsOf(result.bins[0].categories), ElementsAre(5.0, 1.0));
  EXPECT_THAT(WeightsOf(result.bins[2].categories), ElementsAre(1.0, 0.0));
}

TEST(CollectResult, CategoryBeyondTheRowWeighsNothing) {
  EXPECT_THAT(WeightsOf(Supervised({}, {10.0, 6.0, 4.0}, {2, 0, 1}).bins[0].categories),
              ElementsAre(0.0, 6.0, 4.0));
}

TEST(CollectResult, NothingBinnedMeansNoBin) {
  EXPECT_TRUE(Supervised({}, {}, {0, 1}).bins.empty());
  EXPECT_TRUE(EqualFrequency({}, {}).bins.empty());
}

TEST(CollectResult, PreBinningDependsOnTheThreshold) {
  EXPECT_FALSE(Supervised({}, {1, 1}, {0}, 0).isPreBinned);
  EXPECT_TRUE(Supervised({}, {1, 1}, {0}, 4).isPreBinned);
  EXPECT_FALSE(Supervised({}, {1, 1}, {0}, 5).isPreBinned);
}

TEST(CollectResult, EqualFrequencyBinsHaveWeightsOnly) {
  const BinnedAttribute result = EqualFrequency({2.0}, {6.0, 4.0});
  ASSERT_EQ(2U, result.bins.size());
  EXPECT_EQ(4.0, result.bins[1].count.weight);
  EXPECT_TRUE(result.bins[1].categories.empty());
  EXPECT_EQ(TQMV::gMissingValue, result.entropy);
}

TEST(CollectResult, BinAboveACutAtTheMaximumIsEmpty) {
  const BinnedAttribute result = EqualFrequency({9.0}, {10.0});
  ASSERT_EQ(2U, result.bins.size());
  EXPECT_EQ(0.0, result.bins[1].count.weight);
}

TEST(CollectResult, WeightThatIsNotThereIsUnknown) {
  EXPECT_EQ(TQMV::gMissingValue, EqualFrequency({2.0}, {10.0}).bins[1].count.weight);
}

TEST(CategoriesOf, ListsThemByCode) {
  BINVarList list = TwoVariables();
  auto* const encoder = dynamic_cast<BINStringEncoder*>(list.GetEncoderAt(0));
  for (const char* const text : {"b", "a", "b", ""}) encoder->Encode(text);
  EXPECT_THAT(CategoriesOf(list, list.GetTargetIndex()), ElementsAre("b", "a", ""));
}

}  // namespace
}  // namespace TQTool
