#include "model/recount.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace TQTool {
namespace {

using testing::ElementsAre;

constexpr double kUnknown = -1.0;

// Bins between the cut points 1, 2 and 3, of 1, 2, 4 and 8 rows.
std::vector<Bin> CountedBins() {
  std::vector<Bin> bins = EmptyBins({1.0, 2.0, 3.0});
  for (std::size_t b = 0; b < bins.size(); ++b) bins[b].count.rows = static_cast<double>(1U << b);
  return bins;
}

// The rows of the bins between new cut points.
std::vector<double> RowsBetween(const std::vector<double>& cuts) {
  std::vector<double> rows;
  for (const Bin& bin : MergeBins(CountedBins(), cuts)) {
    rows.push_back(bin.count.rows == TQMV::gMissingValue ? kUnknown : bin.count.rows);
  }
  return rows;
}

TEST(MergeBins, CutPointsTakenOutAddTheirBins) {
  EXPECT_THAT(RowsBetween({1.0, 2.0, 3.0}), ElementsAre(1.0, 2.0, 4.0, 8.0));
  EXPECT_THAT(RowsBetween({2.0}), ElementsAre(3.0, 12.0));
  EXPECT_THAT(RowsBetween({}), ElementsAre(15.0));
}

TEST(MergeBins, OnlyTheBinsBesideAMovedCutPointAreUnknown) {
  EXPECT_THAT(RowsBetween({0.5, 2.0, 3.0}), ElementsAre(kUnknown, kUnknown, 4.0, 8.0));
  EXPECT_THAT(RowsBetween({1.0, 2.5, 3.0}), ElementsAre(1.0, kUnknown, kUnknown, 8.0));
  EXPECT_THAT(RowsBetween({1.0, 2.0, 9.0}), ElementsAre(1.0, 2.0, kUnknown, kUnknown));
  EXPECT_THAT(RowsBetween({1.0, 1.5, 2.0, 3.0}), ElementsAre(1.0, kUnknown, kUnknown, 4.0, 8.0));
}

TEST(MergeBins, NothingIsKnownWithoutCounts) { EXPECT_EQ(EmptyBins({1.0}), MergeBins({}, {1.0})); }

}  // namespace
}  // namespace TQTool
