#include "output/tablewriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "writertesting.h"

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
      "  bin          rows  share  no  yes\n"
      "  (-inf, 2.5]     7  58.3%   6    1\n"
      "  (2.5, inf)      3  25.0%   0    3\n"
      "  total          10  83.3%   6    4\n"
      "  missing         2  16.7%\n",
      WriteTable(SmallResult()));
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
      WriteTable(SmallEqualFrequencyResult()));
}

TEST(TableWriter, ClosedSideShowsInTheIntervals) {
  RunResult result = SmallResult();
  result.options.isRightClosed = false;
  EXPECT_THAT(WriteTable(result), HasSubstr("(-inf, 2.5) "));
  EXPECT_THAT(WriteTable(result), HasSubstr("[2.5, inf) "));
}

TEST(TableWriter, InnerBinsAreClosedOnOneSide) {
  RunResult result = SmallEqualFrequencyResult();
  result.attributes[0].bins.push_back({1.0, 2.0, 0.0, {}});
  EXPECT_THAT(WriteTable(result), HasSubstr("(1, 2] "));
  result.options.isRightClosed = false;
  EXPECT_THAT(WriteTable(result), HasSubstr("[1, 2) "));
}

TEST(TableWriter, StatusComesWithReasonAndRemedy) {
  RunResult result = SmallResult();
  result.attributes[0].status = TQBinning::TQStatus(TQBinning::kNoValidCase, true);
  result.attributes[0].bins.clear();
  result.attributes[0].numDistinct = 0;
  EXPECT_THAT(WriteTable(result),
              HasSubstr("\nincome: not binned: every value is missing, or its row's target is\n"
                        "  what to do: check the column, --missing-token and --user-missing "
                        "(library code 120015)\n"
                        "  no value that counts\n"));
}

TEST(TableWriter, WeightsAreNamedAndFractionsShort) {
  RunResult result = SmallResult();
  result.options.weight = "n";
  result.fed.rows = 15;
  result.fed.weight = 12.0;
  result.attributes[0].bins[0].weight = 7.123456;
  result.attributes[0].bins[1].weight = 0.0001234;
  const std::string text = WriteTable(result);
  EXPECT_THAT(text, HasSubstr("\n15 rows of total weight 12 by n; 3 left out, weight missing or "
                              "not above zero\n"));
  EXPECT_THAT(text, HasSubstr(" weight  share "));
  EXPECT_THAT(text, HasSubstr(" 7.123 "));
  EXPECT_THAT(text, HasSubstr(" 0.000123 "));
}

TEST(TableWriter, BigWholeNumbersAreWritten) {
  RunResult result = SmallResult();
  result.attributes[0].bins[0].weight = 6179373392.0;
  EXPECT_THAT(WriteTable(result), HasSubstr(" 6179373392 "));
}

TEST(TableWriter, RowsWithoutTargetAreCounted) {
  RunResult result = SmallResult();
  result.fed.withoutTarget = 2;
  EXPECT_THAT(WriteTable(result), HasSubstr("\n12 rows; 2 without target\n"));
}

TEST(TableWriter, PreBinningIsSaid) {
  RunResult result = SmallResult();
  result.attributes[0].isPreBinned = true;
  EXPECT_THAT(WriteTable(result), HasSubstr("2 bins, cut between 1000 equal-frequency pre-bins"));
}

TEST(TableWriter, NothingMissingNeedsNoLine) {
  RunResult result = SmallResult();
  result.attributes[0].weightWithMissing = 10.0;
  EXPECT_THAT(WriteTable(result), Not(HasSubstr("missing")));
}

TEST(TableWriter, NamesCannotSteerATerminal) {
  RunResult result = SmallResult();
  result.attributes[0].name = "a\x1b[2J";
  result.categories[0] = "n\to";
  result.options.target = "p\n";
  const std::string text = WriteTable(result);
  EXPECT_THAT(text, HasSubstr("\na\\x1b[2J: "));
  EXPECT_THAT(text, HasSubstr(" n\\to "));
  EXPECT_THAT(text, HasSubstr("by p\\n\n"));
}

TEST(TableWriter, UnknownWeightIsAQuestionMark) {
  RunResult result = SmallEqualFrequencyResult();
  result.attributes[0].bins[1].weight = TQMV::gMissingValue;
  EXPECT_THAT(WriteTable(result), HasSubstr("(2.5, inf)      ?      ?\n"));
}

}  // namespace
}  // namespace TQTool
