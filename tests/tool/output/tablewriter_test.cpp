#include "output/tablewriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "modeltesting.h"

namespace TQTool {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(TableWriter, WritesASupervisedResult) {
  EXPECT_EQ(
      "loans.csv: 1 column binned by paid\n"
      "12 rows\n"
      "\n"
      "income: 2 bins\n"
      "  5 distinct values from -0.1 to 1000000; entropy within the bins 0.4140 bits\n"
      "  information gain 0.5568 bits; information value 2.9012\n"
      "  bin          rows  share  no  yes    rate     WoE\n"
      "  (-inf, 2.5]     7  58.3%   6    1   14.3%  -1.386\n"
      "  (2.5, inf)      3  25.0%   0    3  100.0%   2.351\n"
      "  total          10  83.3%   6    4\n"
      "  missing         2  16.7%\n",
      WriteTable(SmallModel()));
}

TEST(TableWriter, WritesAnEqualFrequencyResult) {
  EXPECT_EQ(
      "loans.csv: 1 column cut into 3 bins of equal frequency\n"
      "12 rows\n"
      "\n"
      "income: 2 bins instead of 3, because equal values stay together\n"
      "  5 distinct values from -0.1 to 1000000\n"
      "  bin          rows  share\n"
      "  (-inf, 2.5]     7  58.3%\n"
      "  (2.5, inf)      3  25.0%\n"
      "  total          10  83.3%\n"
      "  missing         2  16.7%\n",
      WriteTable(SmallEqualFrequencyModel()));
}

TEST(TableWriter, ClosedSideShowsInTheIntervals) {
  Model model = SmallModel();
  model.attributes[0].isRightClosed = false;
  EXPECT_THAT(WriteTable(model), HasSubstr("(-inf, 2.5) "));
  EXPECT_THAT(WriteTable(model), HasSubstr("[2.5, inf) "));
}

TEST(TableWriter, InnerBinsAreClosedOnOneSide) {
  Model model = SmallEqualFrequencyModel();
  model.attributes[0].cuts = {1.0, 2.0};
  model.attributes[0].bins = EmptyBins({1.0, 2.0});
  EXPECT_THAT(WriteTable(model), HasSubstr("(1, 2] "));
  model.attributes[0].isRightClosed = false;
  EXPECT_THAT(WriteTable(model), HasSubstr("[1, 2) "));
}

TEST(TableWriter, StatusComesWithReasonAndRemedy) {
  Model model = SmallModel();
  model.attributes[0].status = TQBinning::TQStatus(TQBinning::kNoValidCase, true);
  model.attributes[0].bins.clear();
  model.attributes[0].numDistinct = 0;
  EXPECT_THAT(WriteTable(model),
              HasSubstr("\nincome: not binned: every value is missing, or its row's target is\n"
                        "  what to do: check the column, --missing-token and --user-missing "
                        "(library code 120015)\n"
                        "  no value that counts\n"));
}

TEST(TableWriter, WeightsAreNamedAndFractionsShort) {
  Model model = SmallModel();
  model.settings.weight = "n";
  model.input.rows = 15;
  model.input.droppedWeightMissing = 2;
  model.input.droppedWeightRoundedAway = 1;
  model.input.weight = 12.0;
  model.attributes[0].bins[0].count.weight = 7.123456;
  model.attributes[0].bins[1].count.weight = 0.0001234;
  const std::string text = WriteTable(model);
  EXPECT_THAT(text, HasSubstr("\n15 rows of total weight 12 by n; left out: 2 with a missing "
                              "weight, 1 with a weight that was rounded to zero\n"));
  EXPECT_THAT(text, HasSubstr(" weight  rows  share "));
  EXPECT_THAT(text, HasSubstr(" 7.123     7 "));
  EXPECT_THAT(text, HasSubstr(" 0.000123 "));
}

TEST(TableWriter, BigWholeNumbersAreWritten) {
  Model model = SmallModel();
  model.attributes[0].bins[0].count.weight = 6179373392.0;
  EXPECT_THAT(WriteTable(model), HasSubstr(" 6179373392 "));
}

TEST(TableWriter, RowsWithoutTargetAreCounted) {
  Model model = SmallModel();
  model.targets[0].missingCases = 2;
  EXPECT_THAT(WriteTable(model), HasSubstr("\n12 rows; 2 without target\n"));
}

TEST(TableWriter, PreBinningIsSaid) {
  Model model = SmallModel();
  model.attributes[0].isPreBinned = true;
  EXPECT_THAT(WriteTable(model), HasSubstr("2 bins, cut between 1000 equal-frequency pre-bins"));
}

TEST(TableWriter, NothingMissingNeedsNoLine) {
  Model model = SmallModel();
  model.attributes[0].total.weight = 10.0;
  EXPECT_THAT(WriteTable(model), Not(HasSubstr("missing")));
}

TEST(TableWriter, NamesCannotSteerATerminal) {
  Model model = SmallModel();
  model.attributes[0].name = "a\x1b[2J";
  model.targets[0].categories[0] = "n\to";
  model.targets[0].name = "p\n";
  const std::string text = WriteTable(model);
  EXPECT_THAT(text, HasSubstr("\na\\x1b[2J: "));
  EXPECT_THAT(text, HasSubstr(" n\\to "));
  EXPECT_THAT(text, HasSubstr("by p\\n\n"));
}

TEST(TableWriter, UnknownWeightIsAQuestionMark) {
  Model model = SmallEqualFrequencyModel();
  model.attributes[0].bins[1].count.weight = TQMV::gMissingValue;
  EXPECT_THAT(WriteTable(model), HasSubstr("(2.5, inf)      ?      ?\n"));
}

TEST(TableWriter, EveryPairOfSeveralTargetsIsNamed) {
  Model model = SmallModel();
  model.targets.push_back({"late", {"no", "yes"}, 1, {}});
  model.attributes.push_back(model.attributes[0]);
  model.attributes[1].target = 1;
  const std::string text = WriteTable(model);
  EXPECT_THAT(text, HasSubstr("binned by paid, late\n"));
  EXPECT_THAT(text, HasSubstr("; 1 without target late\n"));
  EXPECT_THAT(text, HasSubstr("\nincome by paid: 2 bins\n"));
  EXPECT_THAT(text, HasSubstr("\nincome by late: 2 bins\n"));
}

TEST(TableWriter, CountsOfEditedBinsMayBeUnknown) {
  Model model = SmallModel();
  model.attributes[0].isEdited = true;
  model.attributes[0].bins[0].categories[1] = {};
  EXPECT_THAT(WriteTable(model), HasSubstr("income: 2 bins, edited"));
  EXPECT_THAT(WriteTable(model), HasSubstr("  (-inf, 2.5]     7  58.3%   6    ?\n"));
}

TEST(TableWriter, ColoursMarkTheNamesAndWhatWentWrong) {
  Model model = SmallModel();
  EXPECT_THAT(WriteTable(model, {0, true}), HasSubstr("\n\x1b[1mincome\x1b[0m: 2 bins\n"));
  EXPECT_THAT(WriteTable(model), Not(HasSubstr("\x1b")));
  model.attributes[0].status = TQBinning::TQStatus(TQBinning::kOneDistinctValue, true);
  EXPECT_THAT(WriteTable(model, {0, true}), HasSubstr("\x1b[33m"));
}

TEST(TableWriter, TableKeepsToTheWidth) {
  EXPECT_THAT(WriteTable(SmallModel(), {30, false}), HasSubstr("  (2.5, inf)      3  25.0%   0\n"));
}

}  // namespace
}  // namespace TQTool
