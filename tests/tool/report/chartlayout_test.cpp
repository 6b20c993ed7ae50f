#include "report/chartlayout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "modeltesting.h"

namespace TQTool {
namespace {

using testing::DoubleEq;
using testing::ElementsAre;

// Bins with these weights, between the cut points 10, 20, 30 ...
ShownBins BinsOf(const std::vector<double>& weights) {
  ShownBins shown;
  for (std::size_t c = 1; c < weights.size(); ++c) {
    shown.attribute.cuts.push_back(10.0 * static_cast<double>(c));
  }
  shown.attribute.bins = EmptyBins(shown.attribute.cuts);
  for (std::size_t b = 0; b < weights.size(); ++b) {
    shown.attribute.bins[b].count = {weights[b], weights[b]};
  }
  return shown;
}

// One bin of these categories.
ShownBins CategoriesOf(const std::vector<double>& weights) {
  ShownBins shown = BinsOf({1.0});
  for (const double weight : weights) {
    shown.attribute.bins[0].categories.push_back({weight, weight});
    shown.categories.push_back("c" + std::to_string(shown.categories.size()));
  }
  return shown;
}

std::vector<std::string> TextsOf(const std::vector<ChartLayout::Label>& labels) {
  std::vector<std::string> texts;
  for (const ChartLayout::Label& label : labels) texts.push_back(label.text);
  return texts;
}

TEST(ChartLayout, BarsArePartsOfTheAxis) {
  const ChartLayout layout = LayOut(BinsOf({1500.0, 3000.0, 0.0, 4000.0}));
  EXPECT_THAT(TextsOf(layout.weightAxis), ElementsAre("0", "1,000", "2,000", "3,000", "4,000"));
  EXPECT_EQ(0.25, layout.weightAxis[1].position);
  EXPECT_THAT(layout.heights, ElementsAre(0.375, 0.75, 0.0, 1.0));
}

TEST(ChartLayout, AxisHasFewRoundStepsAndHoldsEveryBar) {
  for (double highest = 0.003; highest < 1e12; highest *= 1.37) {
    const ChartLayout layout = LayOut(BinsOf({highest, highest / 2.0}));
    EXPECT_LE(layout.weightAxis.size(), 5U) << highest;
    EXPECT_GE(layout.weightAxis.size(), 3U) << highest;
    EXPECT_EQ(1.0, layout.weightAxis.back().position);
    EXPECT_LE(layout.heights[0], 1.0) << highest;
    EXPECT_GT(layout.heights[0], 0.45) << highest;
    EXPECT_DOUBLE_EQ(layout.heights[0] / 2.0, layout.heights[1]);
  }
}

TEST(ChartLayout, EmptyAndUnknownBinsHaveNoBar) {
  const ChartLayout layout = LayOut(BinsOf({0.0, TQMV::gMissingValue}));
  EXPECT_THAT(layout.heights, ElementsAre(0.0, 0.0));
  EXPECT_TRUE(layout.weightAxis.empty());
}

TEST(ChartLayout, CategoriesStandOnEachOtherUpToTheTop) {
  const ChartLayout layout = LayOut(CategoriesOf({2.0, 5.0, 3.0}));
  EXPECT_THAT(layout.order, ElementsAre(0U, 1U, 2U));
  EXPECT_THAT(layout.edges[0], ElementsAre(DoubleEq(0.2)));
  EXPECT_THAT(layout.edges[1], ElementsAre(DoubleEq(0.7)));
  EXPECT_THAT(layout.edges[2], ElementsAre(1.0));
}

TEST(ChartLayout, EventStandsBelowSoThatItsEdgeIsTheRate) {
  const ChartLayout layout = LayOut(CategoriesOf({3.0, 1.0}));
  EXPECT_THAT(layout.order, ElementsAre(1U, 0U));
  EXPECT_THAT(layout.edges[0], ElementsAre(0.25));
  EXPECT_THAT(layout.edges[1], ElementsAre(1.0));
}

TEST(ChartLayout, BinWithAnUnknownCategoryShowsNone) {
  const ChartLayout layout = LayOut(CategoriesOf({3.0, TQMV::gMissingValue, 2.0}));
  for (const std::vector<double>& edges : layout.edges) EXPECT_THAT(edges, ElementsAre(0.0));
}

TEST(ChartLayout, FewCutPointsAreAllLabelledWhereTheyAre) {
  const ChartLayout layout = LayOut(BinsOf({1.0, 1.0, 1.0, 1.0}));
  EXPECT_THAT(TextsOf(layout.cutAxis), ElementsAre("10", "20", "30"));
  EXPECT_EQ(0.25, layout.cutAxis[0].position);
  EXPECT_EQ(0.75, layout.cutAxis[2].position);
  for (const ChartLayout::Label& label : layout.cutAxis) EXPECT_FALSE(label.isOnlyForWide);
}

TEST(ChartLayout, LabelsNeverTouchHoweverManyBinsThereAre) {
  constexpr double kCharacter = 6.6;  // a digit of the labels' size, in pixels
  for (const std::size_t bins : {2U, 9U, 30U, 77U, 300U, 1000U, 5000U}) {
    const ChartLayout layout = LayOut(BinsOf(std::vector<double>(bins, 1.0)));
    for (const double width : {290.0, 640.0}) {
      double end = -1e9;
      for (const ChartLayout::Label& label : layout.cutAxis) {
        if (width < 300.0 && label.isOnlyForWide) continue;
        const double half = kCharacter * static_cast<double>(label.text.size()) / 2.0;
        EXPECT_GT(label.position * width - half, end) << bins << " bins, " << label.text;
        end = label.position * width + half;
      }
      EXPECT_TRUE(bins > 1000 || end > 0.0) << bins;
    }
  }
}

TEST(ChartLayout, LongCutPointsAreRoundedOnTheAxis) {
  ShownBins shown = BinsOf({1.0, 1.0});
  shown.attribute.cuts[0] = 0.30000000000000004;
  EXPECT_THAT(TextsOf(LayOut(shown).cutAxis), ElementsAre("0.3"));
}

}  // namespace
}  // namespace TQTool
