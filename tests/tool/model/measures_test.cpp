#include "model/measures.h"

#include <cmath>

#include <gtest/gtest.h>

#include "modeltesting.h"

namespace TQTool {
namespace {

// Bins with the weights of two categories each.
BinnedAttribute BinsOf(const std::vector<std::pair<double, double>>& weights) {
  BinnedAttribute attribute;
  for (const auto& [without, with] : weights) {
    Bin& bin = attribute.bins.emplace_back();
    bin.categories = {{without, without}, {with, with}};
  }
  return attribute;
}

TEST(MeasuresOf, TwoCategoriesByHand) {
  // Of 40 non-events and 10 events, 30 and 2 are in the first bin.
  const Measures measures = MeasuresOf(BinsOf({{30, 2}, {10, 8}})).value();
  ASSERT_EQ(2U, measures.bins.size());
  EXPECT_DOUBLE_EQ(2.0 / 32.0, measures.bins[0].eventRate);
  EXPECT_DOUBLE_EQ(std::log((2.0 / 10.0) / (30.0 / 40.0)), measures.bins[0].weightOfEvidence);
  EXPECT_DOUBLE_EQ(std::log((8.0 / 10.0) / (10.0 / 40.0)), measures.bins[1].weightOfEvidence);
  const double value = (0.2 - 0.75) * std::log(0.2 / 0.75) + (0.8 - 0.25) * std::log(0.8 / 0.25);
  EXPECT_DOUBLE_EQ(value, measures.informationValue);
}

TEST(MeasuresOf, GainIsAllForPureBinsAndNothingForEqualOnes) {
  EXPECT_DOUBLE_EQ(1.0, MeasuresOf(BinsOf({{5, 0}, {0, 5}}))->informationGain);
  EXPECT_NEAR(0.0, MeasuresOf(BinsOf({{3, 6}, {1, 2}}))->informationGain, 1e-15);
}

TEST(MeasuresOf, EmptyCellGetsHalfACase) {
  const Measures measures = MeasuresOf(BinsOf({{5, 0}, {5, 10}})).value();
  EXPECT_EQ(0.0, measures.bins[0].eventRate);
  EXPECT_DOUBLE_EQ(std::log((0.5 / 10.0) / (5.5 / 10.0)), measures.bins[0].weightOfEvidence);
  EXPECT_TRUE(std::isfinite(measures.informationValue));
}

TEST(MeasuresOf, EmptyBinSaysNothing) {
  const Measures measures = MeasuresOf(BinsOf({{5, 5}, {0, 0}})).value();
  EXPECT_EQ(TQMV::gMissingValue, measures.bins[1].eventRate);
  EXPECT_EQ(0.0, measures.bins[1].weightOfEvidence);
}

TEST(MeasuresOf, WithoutEventsThereIsARateAndNoEvidence) {
  const Measures measures = MeasuresOf(BinsOf({{5, 0}, {3, 0}})).value();
  EXPECT_EQ(0.0, measures.bins[0].eventRate);
  EXPECT_EQ(0.0, measures.bins[0].weightOfEvidence);
  EXPECT_EQ(0.0, measures.informationValue);
}

TEST(MeasuresOf, ThreeCategoriesHaveAGainOnly) {
  BinnedAttribute attribute = BinsOf({{5, 0}, {0, 5}});
  for (Bin& bin : attribute.bins) bin.categories.push_back({1.0, 1.0});
  EXPECT_TRUE(MeasuresOf(attribute)->bins.empty());
}

TEST(MeasuresOf, UnknownCountsHaveNoMeasures) {
  BinnedAttribute attribute = BinsOf({{5, 0}, {0, 5}});
  attribute.bins[1].categories[0] = {};
  EXPECT_FALSE(MeasuresOf(attribute).has_value());
  EXPECT_FALSE(MeasuresOf(SmallEqualFrequencyModel().attributes[0]).has_value());
  EXPECT_FALSE(MeasuresOf(BinnedAttribute()).has_value());
}

}  // namespace
}  // namespace TQTool
