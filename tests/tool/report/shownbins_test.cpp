#include "report/shownbins.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "modeltesting.h"

namespace TQTool {
namespace {

using testing::ElementsAre;

// A column of bins with one case each, in category 0 of two.
BinnedAttribute ManyBins(std::size_t number) {
  BinnedAttribute attribute;
  for (std::size_t c = 1; c < number; ++c) attribute.cuts.push_back(static_cast<double>(c));
  attribute.bins = EmptyBins(attribute.cuts);
  for (Bin& bin : attribute.bins) {
    bin.count = {1.0, 1.0};
    bin.categories = {{1.0, 1.0}, {0.0, 0.0}};
  }
  return attribute;
}

// One bin of so many categories, category c having c cases.
BinnedAttribute ManyCategories(std::size_t number) {
  BinnedAttribute attribute;
  attribute.bins.resize(1);
  for (std::size_t c = 0; c < number; ++c) {
    attribute.bins[0].categories.push_back({static_cast<double>(c), static_cast<double>(c)});
  }
  return attribute;
}

Target TargetOfMany(std::size_t number) {
  Target target;
  for (std::size_t c = 0; c < number; ++c) target.categories.push_back("c" + std::to_string(c));
  return target;
}

TEST(ShownBins, FewBinsAndCategoriesAreShownAsTheyAre) {
  const Model model = SmallModel();
  const ShownBins shown = Condense(model.attributes[0], &model.targets[0], 2);
  EXPECT_EQ(model.attributes[0], shown.attribute);
  EXPECT_EQ(1U, shown.joined);
  EXPECT_EQ(0U, shown.summedUp);
  EXPECT_THAT(shown.categories, ElementsAre("no", "yes"));
}

TEST(ShownBins, NeighboursAreJoinedWhereThereAreTooManyBins) {
  const ShownBins shown = Condense(ManyBins(5), nullptr, 4);
  EXPECT_EQ(2U, shown.joined);
  EXPECT_THAT(shown.attribute.cuts, ElementsAre(2.0, 4.0));
  ASSERT_EQ(3U, shown.attribute.bins.size());
  EXPECT_EQ((Count{2.0, 2.0}), shown.attribute.bins[0].count);
  EXPECT_EQ((Count{2.0, 2.0}), shown.attribute.bins[1].categories[0]);
  EXPECT_EQ((Count{1.0, 1.0}), shown.attribute.bins[2].count);
}

TEST(ShownBins, JoinedBinsAreNeverMoreThanFit) {
  for (std::size_t bins = 2; bins < 50; ++bins) {
    for (std::size_t most = 2; most < 20; ++most) {
      const ShownBins shown = Condense(ManyBins(bins), nullptr, most);
      EXPECT_LE(shown.attribute.bins.size(), most) << bins;
      EXPECT_EQ(shown.attribute.cuts.size() + 1, shown.attribute.bins.size());
      EXPECT_EQ(static_cast<double>(bins), shown.TotalOf(0)) << most;
    }
  }
}

TEST(ShownBins, LabelsOfJoinedBinsAreDropped) {
  BinnedAttribute attribute = ManyBins(4);
  attribute.labels = {"a", "b", "c", "d"};
  EXPECT_TRUE(Condense(attribute, nullptr, 2).attribute.labels.empty());
  EXPECT_EQ(4U, Condense(attribute, nullptr, 4).attribute.labels.size());
}

TEST(ShownBins, RareCategoriesAreSummedUpBehindTheOthers) {
  const Target target = TargetOfMany(10);
  const ShownBins shown = Condense(ManyCategories(10), &target, 2);
  EXPECT_THAT(shown.categories, ElementsAre("c3", "c4", "c5", "c6", "c7", "c8", "c9", "3 others"));
  EXPECT_EQ(3U, shown.summedUp);
  EXPECT_EQ((Count{3.0, 3.0}), shown.attribute.bins[0].categories[0]);
  EXPECT_EQ((Count{0.0 + 1.0 + 2.0, 3.0}), shown.attribute.bins[0].categories[7]);
}

TEST(ShownBins, AsManyCategoriesAsColoursNeedNoSum) {
  const Target target = TargetOfMany(kMaxCategories);
  EXPECT_EQ(0U, Condense(ManyCategories(kMaxCategories), &target, 2).summedUp);
}

TEST(ShownBins, UnknownCountMakesTotalsUnknown) {
  Model model = SmallModel();
  model.attributes[0].bins[0].categories[1] = {};
  const ShownBins shown = Condense(model.attributes[0], &model.targets[0], 9);
  EXPECT_EQ(6.0, shown.TotalOf(0));
  EXPECT_EQ(TQMV::gMissingValue, shown.TotalOf(1));
}

}  // namespace
}  // namespace TQTool
