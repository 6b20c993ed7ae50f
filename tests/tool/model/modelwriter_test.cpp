#include "model/modelwriter.h"

#include <cmath>
#include <limits>
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "model/measures.h"
#include "modeltesting.h"

namespace TQTool {
namespace {

using Json = nlohmann::json;
using testing::HasSubstr;

Json Document(const Model& model) { return Json::parse(WriteModel(model)); }

TEST(ModelWriter, SaysWhatItIs) {
  const Json document = Document(SmallModel());
  EXPECT_EQ("tqbin-model", document["format"]);
  EXPECT_EQ(1, document["version"]);
  EXPECT_EQ("1.0.0", document["tool"]["version"]);
  EXPECT_EQ(nullptr, document["created"]);
  EXPECT_EQ("supervised", document["method"]);
  EXPECT_EQ("equal-frequency", Document(SmallEqualFrequencyModel())["method"]);
}

TEST(ModelWriter, HoldsInputTargetsAndStatus) {
  Model model = SmallModel();
  model.targets[0].missing.texts = {"?"};
  const Json document = Document(model);
  EXPECT_EQ(Json({"loans.csv"}), document["input"]["names"]);
  EXPECT_EQ(12, document["input"]["rows"]);
  EXPECT_EQ(Json::array({Json{{"name", "paid"},
                              {"categories", {"no", "yes"}},
                              {"missing_cases", 0},
                              {"missing", {{"values", {"?"}}}}}}),
            document["targets"]);
  EXPECT_EQ("ok", document["status"]["severity"]);
  EXPECT_TRUE(Document(SmallEqualFrequencyModel())["targets"].empty());
}

TEST(ModelWriter, HoldsTheBins) {
  const Json attribute = Document(SmallModel())["attributes"][0];
  EXPECT_EQ("paid", attribute["target"]);
  EXPECT_EQ(Json({2.5}), attribute["cuts"]);
  EXPECT_EQ((Json{{"lower", nullptr},
                  {"upper", 2.5},
                  {"closed", "right"},
                  {"weight", 7.0},
                  {"rows", 7.0},
                  {"share", 7.0 / 12.0},
                  {"category_weights", {6.0, 1.0}},
                  {"category_rows", {6.0, 1.0}},
                  {"event_rate", 1.0 / 7.0},
                  {"weight_of_evidence", std::log((1.0 / 4.0) / (6.0 / 6.0))},
                  {"information_value", -0.75 * std::log(0.25)}}),
            attribute["bins"][0]);
  EXPECT_FALSE(
      Document(SmallEqualFrequencyModel())["attributes"][0]["bins"][0].contains("category_rows"));
}

TEST(ModelWriter, HoldsTheMeasuresOfAColumn) {
  const Json attribute = Document(SmallModel())["attributes"][0];
  const std::optional<Measures> measures = MeasuresOf(SmallModel().attributes[0]);
  EXPECT_EQ(measures->informationGain, attribute["information_gain"]);
  EXPECT_EQ(measures->informationValue, attribute["information_value"]);
  EXPECT_EQ(nullptr, Document(SmallEqualFrequencyModel())["attributes"][0]["information_gain"]);
}

TEST(ModelWriter, WeightHasTheDivisorThatItsMeanWas) {
  Model model = SmallModel();
  model.settings.weight = "n";
  EXPECT_EQ(nullptr, Document(model)["settings"]["weight"]["divisor"]);
  model.settings.weightScale = kMeanScale;
  model.settings.weightDivisor = 2.5;
  EXPECT_EQ(2.5, Document(model)["settings"]["weight"]["divisor"]);
}

TEST(ModelWriter, UnknownNumbersAreNull) {
  Model model = SmallModel();
  model.attributes[0].minimum = TQMV::gMissingValue;
  model.attributes[0].entropy = std::numeric_limits<double>::quiet_NaN();
  const Json attribute = Document(model)["attributes"][0];
  EXPECT_EQ(nullptr, attribute["minimum"]);
  EXPECT_EQ(nullptr, attribute["entropy"]);
}

TEST(ModelWriter, StatusHasCodeSeverityAndWords) {
  Model model = SmallModel();
  model.attributes[0].status = TQBinning::TQStatus(120017, true);
  const Json status = Document(model)["attributes"][0]["status"];
  EXPECT_EQ(120017, status["code"]);
  EXPECT_EQ("warning", status["severity"]);
  EXPECT_EQ("not cut", status["words"]);
}

TEST(ModelWriter, CutPointsStandOnOneLineToBeEdited) {
  Model model = SmallModel();
  model.attributes[0].cuts = {0.1, 1e22};
  EXPECT_THAT(WriteModel(model), HasSubstr("\n      \"cuts\": [0.1, 1e+22],\n"));
}

TEST(ModelWriter, TextThatIsNoUtf8IsReplaced) {
  Model model = SmallModel();
  model.attributes[0].name = "gr\xFC\xDF";
  EXPECT_EQ("gr\xEF\xBF\xBD\xEF\xBF\xBD", Document(model)["attributes"][0]["name"]);
}

}  // namespace
}  // namespace TQTool
