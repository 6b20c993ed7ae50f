#include "output/jsonwriter.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "writertesting.h"

namespace TQTool {
namespace {

using Json = nlohmann::json;

Json Document(const RunResult& result) { return Json::parse(WriteJson(result)); }

TEST(JsonWriter, SaysWhatItIs) {
  const Json document = Document(SmallResult());
  EXPECT_EQ("tqbin-bins", document["format"]);
  EXPECT_EQ(1, document["version"]);
  EXPECT_EQ("tqbin", document["tool"]["name"]);
  EXPECT_EQ("supervised", document["method"]);
  EXPECT_EQ("equal-frequency", Document(SmallEqualFrequencyResult())["method"]);
}

TEST(JsonWriter, HoldsInputTargetAndStatus) {
  const Json document = Document(SmallResult());
  EXPECT_EQ((Json{{"name", "loans.csv"}, {"rows", 12}, {"cases", 12}, {"weight", 12.0}}),
            document["input"]);
  EXPECT_EQ((Json{{"name", "paid"}, {"categories", {"no", "yes"}}, {"missing_cases", 0}}),
            document["target"]);
  EXPECT_EQ("ok", document["status"]["severity"]);
  EXPECT_FALSE(Document(SmallEqualFrequencyResult()).contains("target"));
}

TEST(JsonWriter, HoldsTheBins) {
  const Json attribute = Document(SmallResult())["attributes"][0];
  EXPECT_EQ("income", attribute["name"]);
  EXPECT_EQ(Json({2.5}), attribute["cuts"]);
  EXPECT_EQ((Json{{{"lower", nullptr},
                   {"upper", 2.5},
                   {"closed", "right"},
                   {"weight", 7.0},
                   {"category_weights", {6.0, 1.0}}},
                  {{"lower", 2.5},
                   {"upper", nullptr},
                   {"closed", "right"},
                   {"weight", 3.0},
                   {"category_weights", {0.0, 3.0}}}}),
            attribute["bins"]);
  EXPECT_EQ(10.0, attribute["weight"]);
  EXPECT_EQ(2.0, attribute["missing_weight"]);
  EXPECT_EQ(-0.1, attribute["minimum"]);
  EXPECT_EQ(1e6, attribute["maximum"]);
  EXPECT_EQ(5, attribute["distinct_values"]);
  EXPECT_EQ(0.414, attribute["entropy"]);
  EXPECT_EQ(false, attribute["prebinned"]);
}

TEST(JsonWriter, EqualFrequencyHasNoCategoriesAndNoEntropy) {
  const Json attribute = Document(SmallEqualFrequencyResult())["attributes"][0];
  EXPECT_FALSE(attribute.contains("entropy"));
  EXPECT_FALSE(attribute["bins"][0].contains("category_weights"));
}

TEST(JsonWriter, HoldsTheSettings) {
  RunResult result = SmallResult();
  result.options.weight = "n";
  result.options.weightRounding = "down";
  result.options.isRightClosed = false;
  result.options.prebinThreshold = 50;
  result.options.userMissing = {{"income", {9.0}, {}, BINNumericInterval(0.0, true)},
                                {"paid", {}, {"?"}, std::nullopt}};
  EXPECT_EQ((Json{{"prebin_threshold", 50},
                  {"prebin_bins", 1000},
                  {"min_bin_factor", 0.0},
                  {"closed", "left"},
                  {"weight", "n"},
                  {"weight_rounding", "down"},
                  {"missing_tokens", {"NA"}},
                  {"user_missing",
                   {{{"column", "income"}, {"values", {9.0}}, {"range", {nullptr, 0.0}}},
                    {{"column", "paid"}, {"values", {"?"}}, {"range", nullptr}}}}}),
            Document(result)["settings"]);
  EXPECT_EQ(3, Document(SmallEqualFrequencyResult())["settings"]["bins"]);
}

TEST(JsonWriter, DoublesReadBackAsTheSame) {
  for (const double number : {0.1, 1.0 / 3.0, 5e-324, 1.7976931348623155e308, 123456789012345680.0,
                              -2.2250738585072014e-308}) {
    RunResult result = SmallResult();
    result.attributes[0].cuts = {number};
    EXPECT_EQ(number, Document(result)["attributes"][0]["cuts"][0].get<double>());
  }
  RunResult result = SmallResult();
  result.attributes[0].cuts = {0.1};
  EXPECT_NE(std::string::npos, WriteJson(result).find("\n        0.1\n"));
}

TEST(JsonWriter, UnknownAndInfiniteNumbersAreNull) {
  RunResult result = SmallResult();
  result.attributes[0].minimum = TQMV::gMissingValue;
  result.attributes[0].entropy = std::numeric_limits<double>::quiet_NaN();
  result.attributes[0].cuts = {kInfinity};
  const Json attribute = Document(result)["attributes"][0];
  EXPECT_EQ(nullptr, attribute["minimum"]);
  EXPECT_EQ(nullptr, attribute["entropy"]);
  EXPECT_EQ(nullptr, attribute["cuts"][0]);
}

TEST(JsonWriter, StatusHasCodeSeverityAndWords) {
  RunResult result = SmallResult();
  result.attributes[0].status = TQBinning::TQStatus(120017, true);
  const Json status = Document(result)["attributes"][0]["status"];
  EXPECT_EQ(120017, status["code"]);
  EXPECT_EQ("warning", status["severity"]);
  EXPECT_EQ("not cut", status["words"]);
  EXPECT_NE("", status["reason"]);
  EXPECT_NE("", status["remedy"]);
}

TEST(JsonWriter, TextThatIsNoUtf8IsReplaced) {
  RunResult result = SmallResult();
  result.attributes[0].name = "gr\xFC\xDF";
  EXPECT_EQ("gr\xEF\xBF\xBD\xEF\xBF\xBD", Document(result)["attributes"][0]["name"]);
}

}  // namespace
}  // namespace TQTool
