#include "apply/apply.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "input/csvsource.h"
#include "modeltesting.h"
#include "tooltesting.h"

namespace TQTool {
namespace {

using testing::HasSubstr;

// What applying a model to a CSV text writes.
std::string Applied(const Model& model, const std::string& data, const ApplyOptions& options = {}) {
  CsvSource source(ReaderOf(data));
  std::string written;
  ApplyModel(model, source, options, [&written](std::string_view text) {
    written += text;
    return true;
  });
  return written;
}

// The same with the index of the bins alone.
std::string Indices(const Model& model, const std::string& data, ApplyOptions options = {}) {
  options.binText = BinText::kIndex;
  options.areBinsOnly = true;
  options.missingText = "-";
  return Applied(model, data, options);
}

TEST(ApplyModel, AddsAColumnOfBinsAndKeepsTheOthers) {
  EXPECT_EQ(
      "id,income,income_bin\n"
      "a,2.5,\"(-inf, 2.5]\"\n"
      "\"b,c\",3,\"(2.5, inf)\"\n",
      Applied(SmallModel(), "id,income\na,2.5\n\"b,c\",3\n"));
}

TEST(ApplyModel, LabelsStandForIntervals) {
  Model model = SmallModel();
  model.attributes[0].labels = {"low", "high"};
  EXPECT_EQ("income,income_bin\n1,low\n", Applied(model, "income\n1\n"));
  ApplyOptions options;
  options.binText = BinText::kInterval;
  EXPECT_EQ("income,income_bin\n1,\"(-inf, 2.5]\"\n", Applied(model, "income\n1\n", options));
}

TEST(ApplyModel, MissingTextsAndUserMissingNumbersHaveNoBin) {
  Model model = SmallModel();
  model.attributes[0].missing = {{9.0}, ClosedRange{-kInfinity, -1.0}, {}};
  EXPECT_EQ("income_bin\n-\n-\n-\n-\n0\n", Indices(model, "income\nNA\n9\n-1\n-1e9\n-0.05\n"));
  EXPECT_EQ("income,income_bin\nNA,\n", Applied(model, "income\nNA\n"));
}

TEST(ApplyModel, OtherMissingTokensReplaceTheModels) {
  ApplyOptions options;
  options.missingTokens = {"x"};
  EXPECT_EQ("income_bin\n-\n", Indices(SmallModel(), "income\nx\n", options));
  EXPECT_THAT(ErrorOf([&] { Indices(SmallModel(), "income\nNA\n", options); }),
              HasSubstr("'NA' in column 'income' is not a finite number"));
}

TEST(ApplyModel, ValuesOutOfRangeFollowTheRule) {
  const std::string data = "income\n-0.1\n-0.2\n1000000\n1000001\n";
  ApplyOptions options;
  EXPECT_EQ("income_bin\n0\n0\n1\n1\n", Indices(SmallModel(), data, options));
  options.outOfRange = OddValue::kMissing;
  EXPECT_EQ("income_bin\n0\n-\n1\n-\n", Indices(SmallModel(), data, options));
  options.outOfRange = OddValue::kRefuse;
  EXPECT_EQ(
      "3: f.csv:3:1: '-0.2' in column 'income' lies outside -0.1 to 1000000, the values that the "
      "model was made of; correct it, or choose another --out-of-range",
      ErrorOf([&] { Indices(SmallModel(), data, options); }));
}

TEST(ApplyModel, TextThatIsNoNumberFollowsTheRule) {
  const std::string data = "income\n1\nabc\ninf\n";
  EXPECT_THAT(ErrorOf([&] { Indices(SmallModel(), data); }),
              HasSubstr("3: f.csv:3:1: 'abc' in column 'income' is not a finite number"));
  ApplyOptions options;
  options.notNumber = OddValue::kMissing;
  EXPECT_EQ("income_bin\n0\n-\n-\n", Indices(SmallModel(), data, options));
}

TEST(ApplyModel, SeveralTargetsNameTheirColumns) {
  Model model = SmallModel();
  model.targets.push_back({"late", {"no", "yes"}, 0, {}});
  model.attributes.push_back(model.attributes[0]);
  model.attributes[1].target = 1;
  EXPECT_EQ("income_by_paid_bin,income_by_late_bin\n0,0\n", Indices(model, "income\n1\n"));
}

TEST(ApplyModel, NamesMustBeThereAndFree) {
  EXPECT_THAT(ErrorOf([] { Indices(SmallModel(), "incme,b\n1,2\n"); }),
              HasSubstr("did you mean 'incme'?"));
  EXPECT_THAT(ErrorOf([] { Applied(SmallModel(), "income,income_bin\n1,2\n"); }),
              HasSubstr("there is a column 'income_bin' already"));
  ApplyOptions options;
  options.attributes = {"age"};
  EXPECT_THAT(ErrorOf([&] { Indices(SmallModel(), "income\n1\n", options); }),
              HasSubstr("2: --attribute: the model has no bins of 'age'"));
}

TEST(ApplyModel, JsonLinesHoldTextsIndicesAndNull) {
  ApplyOptions options;
  options.format = RowFormat::kNdjson;
  EXPECT_EQ(
      "{\"id\":\"a\\\"b\",\"income\":\"1\",\"income_bin\":\"(-inf, 2.5]\"}\n"
      "{\"id\":\"\",\"income\":\"NA\",\"income_bin\":null}\n",
      Applied(SmallModel(), "id,income\n\"a\"\"b\",1\n,NA\n", options));
}

TEST(ApplyModel, StopsWhenNoMoreIsWanted) {
  std::string data = "income\n";
  for (int i = 0; i < 100000; ++i) data += "1\n";
  CsvSource source(ReaderOf(data));
  int taken = 0;
  const std::uint64_t rows = ApplyModel(SmallModel(), source, {}, [&taken](std::string_view) {
    ++taken;
    return false;
  });
  EXPECT_EQ(1, taken);
  EXPECT_LT(rows, 100000U);
}

TEST(ApplyModel, NoRowsGiveAHeader) {
  EXPECT_EQ("income,income_bin\n", Applied(SmallModel(), "income\n"));
}

}  // namespace
}  // namespace TQTool
