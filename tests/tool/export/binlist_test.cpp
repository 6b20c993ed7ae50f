#include "export/binlist.h"

#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/toolerror.h"
#include "modeltesting.h"

namespace TQTool {
namespace {

using testing::ElementsAre;

TEST(BinList, TheOuterBinsEndBeforeTheNumbersThatAreMissing) {
  const ExportColumn column = ListBins(SmallModel(), {}).columns.at(0);
  ASSERT_EQ(2u, column.bins.size());
  EXPECT_EQ(-kNumberLimit, column.bins[0].lower);
  EXPECT_FALSE(column.bins[0].isLowerClosed);
  EXPECT_EQ(2.5, column.bins[0].upper);
  EXPECT_EQ(2.5, column.bins[1].lower);
  EXPECT_EQ(kNumberLimit, column.bins[1].upper);
  EXPECT_FALSE(column.bins[1].isUpperClosed);
  EXPECT_THAT(CutsOf(column), ElementsAre(2.5));
}

TEST(BinList, ACutPointBelongsToTheClosedSide) {
  Model model = SmallModel();
  for (const bool isRightClosed : {true, false}) {
    model.attributes[0].isRightClosed = isRightClosed;
    const std::vector<ExportBin> bins = ListBins(model, {}).columns.at(0).bins;
    EXPECT_EQ(isRightClosed, bins[0].isUpperClosed);
    EXPECT_EQ(!isRightClosed, bins[1].isLowerClosed);
  }
}

TEST(BinList, BinsAreNamedAsTheOptionsSay) {
  Model model = SmallModel();
  model.attributes[0].labels = {"low", "high"};
  ExportOptions options;
  const auto texts = [&] {
    const std::vector<ExportBin> bins = ListBins(model, options).columns.at(0).bins;
    return bins[0].text + "|" + bins[1].text;
  };
  EXPECT_EQ("low|high", texts());
  options.binText = BinText::kInterval;
  EXPECT_EQ("(-inf, 2.5]|(2.5, inf)", texts());
  options.binText = BinText::kIndex;
  EXPECT_EQ("0|1", texts());
}

TEST(BinList, AMissingRangeHasTwoEnds) {
  Model model = SmallModel();
  model.attributes[0].missing.range.emplace();
  const ClosedRange range = *ListBins(model, {}).columns.at(0).missing.range;
  EXPECT_EQ((ClosedRange{-kNumberLimit, kNumberLimit}), range);
}

TEST(BinList, ColumnsOfSeveralTargetsAreToldApart) {
  Model model = SmallModel();
  model.targets.push_back({"late", {"no", "yes"}, 0, {}});
  model.attributes.push_back(model.attributes[0]);
  model.attributes[1].target = 1;
  const BinList list = ListBins(model, {});
  EXPECT_EQ("income_by_paid_bin", list.columns.at(0).binsName);
  EXPECT_EQ("income_by_late_bin", list.columns.at(1).binsName);
  EXPECT_THAT(FunctionNames(list), ElementsAre("bin_of_income", "bin_of_income_2"));
}

TEST(BinList, FunctionNamesAreWords) {
  Model model = SmallModel();
  model.attributes[0].name = "1 \"\xC3\xA4\"";
  EXPECT_THAT(FunctionNames(ListBins(model, {})), ElementsAre("bin_of_1_____"));
}

TEST(BinList, BinsWithTheNameOfAColumnAreRefused) {
  Model model = SmallModel();
  model.attributes.push_back(model.attributes[0]);
  model.attributes[1].name = "income_bin";
  EXPECT_THROW(ListBins(model, {}), ToolError);
}

TEST(BinList, NumbersReadBackTheSame) {
  EXPECT_EQ("0.1, -5e-324, 1e+100, 3",
            JoinNumbers({0.1, -std::numeric_limits<double>::denorm_min(), 1e100, 3.0}));
}

}  // namespace
}  // namespace TQTool
