#include "run/rowcount.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/scratchdirectory.h"

namespace TQTool {
namespace {

using testing::ElementsAre;

// A target with the categories b, then a, as the feed met them; a weight; one attribute.
struct Counting {
  support::ScratchDirectory directory;
  CaseSpool cases{directory.Path(), 3};
  Columns columns = {{0}, 1, {2}, {{0, 0}}};
  BINVarList list;
  std::vector<BinnedAttribute> attributes;

  Counting() {
    list.AddCatVar("t", "", 2, IBINVariable::kStringCategorical, IBINVariable::kTarget);
    list.AddWeightVar("w", "", IBINVariable::kRoundToClosest);
    list.AddContVar("x", "", IBINVariable::kAttribute);
    auto* const encoder = dynamic_cast<BINStringEncoder*>(list.GetEncoderAt(0));
    for (const char* const text : {"b", "a"}) encoder->Encode(text);
    BinnedAttribute& attribute = attributes.emplace_back();
    attribute.cuts = {2.0};
    attribute.bins = EmptyBins(attribute.cuts);
    for (Bin& bin : attribute.bins) bin.categories.resize(2);
  }

  // Counts cases of these numbers: code, weight, value.
  void Count(const std::vector<std::vector<double>>& rows) {
    TQCommon::Record record(3);
    for (const std::vector<double>& row : rows) {
      for (int i = 0; i < 3; ++i) record[i] = row[static_cast<std::size_t>(i)];
      cases.Add(record);
    }
    CountRows(cases, columns, list, attributes);
  }

  std::vector<double> RowsOf(std::size_t bin) const {
    const Bin& one = attributes[0].bins[bin];
    return {one.count.rows, one.categories[0].rows, one.categories[1].rows};
  }
};

TEST(CountRows, CountsARowOnceWhateverItsWeight) {
  Counting counting;
  counting.Count({{0, 5, 1}, {1, 7, 2}, {0, 9, 3}});
  EXPECT_THAT(counting.RowsOf(0), ElementsAre(2, 1, 1));
  EXPECT_THAT(counting.RowsOf(1), ElementsAre(1, 0, 1)) << "b is the second by name";
  EXPECT_EQ(3.0, counting.attributes[0].valid.rows);
  EXPECT_EQ(3.0, counting.attributes[0].total.rows);
}

TEST(CountRows, CutPointGoesToTheClosedSide) {
  Counting counting;
  counting.attributes[0].isRightClosed = false;
  counting.Count({{0, 5, 2}});
  EXPECT_THAT(counting.RowsOf(0), ElementsAre(0, 0, 0));
  EXPECT_THAT(counting.RowsOf(1), ElementsAre(1, 0, 1));
}

TEST(CountRows, CasesWithoutValueOrCategoryAreInNoBin) {
  Counting counting;
  counting.Count({{0, 1, TQMV::gMissingValue}, {-1, 1, 1}, {1, 1, 1}});
  EXPECT_THAT(counting.RowsOf(0), ElementsAre(1, 1, 0));
  EXPECT_EQ(1.0, counting.attributes[0].valid.rows);
  EXPECT_EQ(3.0, counting.attributes[0].total.rows);
}

TEST(CountRows, AttributeWithoutBinsHasOnlyTotals) {
  Counting counting;
  counting.attributes[0].cuts.clear();
  counting.attributes[0].bins.clear();
  counting.Count({{0, 1, TQMV::gMissingValue}});
  EXPECT_EQ(0.0, counting.attributes[0].valid.rows);
  EXPECT_EQ(1.0, counting.attributes[0].total.rows);
}

TEST(CountRows, WithoutTargetBinsHaveRowsOnly) {
  Counting counting;
  counting.columns.pairs = {{0, std::nullopt}};
  for (Bin& bin : counting.attributes[0].bins) bin.categories.clear();
  counting.Count({{-1, 1, 5}, {0, 1, 1}, {0, 2, 1}});
  EXPECT_EQ(2.0, counting.attributes[0].bins[0].count.rows);
  EXPECT_EQ(1.0, counting.attributes[0].bins[1].count.rows);
}

}  // namespace
}  // namespace TQTool
