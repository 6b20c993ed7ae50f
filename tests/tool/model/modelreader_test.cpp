#include "model/modelreader.h"

#include <cmath>
#include <functional>
#include <limits>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "model/modelwriter.h"
#include "modeltesting.h"
#include "tooltesting.h"

namespace TQTool {
namespace {

using Json = nlohmann::ordered_json;
using testing::ElementsAre;
using testing::HasSubstr;

// A model with something in every field.
Model FullModel() {
  Model model = SmallModel();
  model.created = "2026-01-02T03:04:05Z";
  model.input = {{"a.csv", "b.csv"}, 20, 12, 12.5, 5, 2, 1};
  model.settings.prebinThreshold = 50;
  model.settings.minBinFactor = 0.25;
  model.settings.isRightClosed = false;
  model.settings.weight = "n";
  model.settings.weightRounding = "down";
  model.settings.weightScale = kMeanScale;
  model.settings.weightDivisor = 2.5;
  model.settings.weightMissing.numbers = {-9.0};
  model.targets[0].missing.texts = {"?"};
  model.targets.push_back({"late", {"0"}, 3, {}});
  model.status = TQBinning::TQStatus(120018, true);
  model.attributes.push_back(model.attributes[0]);
  BinnedAttribute& late = model.attributes[1];
  late.target = 1;
  late.status = TQBinning::TQStatus(120016, true);
  late.isRightClosed = false;
  late.labels = {"low", "high"};
  late.missing = {{9.0, 99.0}, ClosedRange{-kInfinity, -1.0}, {}};
  late.isPreBinned = true;
  for (Bin& bin : late.bins) bin.categories.pop_back();
  return model;
}

// The small model after a change of its file.
Model Edited(const std::function<void(Json&)>& edit) {
  Json document = Json::parse(WriteModel(SmallModel()));
  edit(document);
  return ReadModel(document.dump(), "m.json");
}

std::string ErrorAfter(const std::function<void(Json&)>& edit) {
  return ErrorOf([&] { Edited(edit); });
}

std::string ErrorOfText(const std::string& text) {
  return ErrorOf([&text] { ReadModel(text, "m.json"); });
}

TEST(ModelReader, GivesBackWhatWasWritten) {
  for (const Model& model : {SmallModel(), SmallEqualFrequencyModel(), FullModel()}) {
    EXPECT_EQ(model, ReadModel(WriteModel(model), "m.json"));
  }
}

TEST(ModelReader, DoublesComeBackAsTheyWere) {
  for (const double number : {0.1, 1.0 / 3.0, 5e-324, 1.7976931348623155e308, 123456789012345680.0,
                              -2.2250738585072014e-308, 5e-310}) {
    Model model = SmallModel();
    model.attributes[0].minimum = number;
    EXPECT_EQ(model, ReadModel(WriteModel(model), "m.json"));
  }
}

TEST(ModelReader, NumbersThatMeanMissingOrNoBoundAreRefused) {
  const double largest = std::numeric_limits<double>::max();
  for (const double number : {largest, -largest}) {
    EXPECT_THAT(ErrorAfter([number](Json& m) { m["attributes"][0]["cuts"] = {number}; }),
                HasSubstr("attributes[0].cuts[0]: '" + std::string(number < 0 ? "-" : "") +
                          "1.7976931348623157e+308' where a number between the two doubles "
                          "farthest from zero is expected"));
  }
}

TEST(ModelReader, NegativeZeroIsZero) {
  const Model model = Edited([](Json& m) { m["attributes"][0]["minimum"] = -0.0; });
  EXPECT_FALSE(std::signbit(model.attributes[0].minimum));
}

TEST(ModelReader, CutPointTakenOutJoinsItsBins) {
  const Model model = Edited([](Json& m) { m["attributes"][0]["cuts"] = Json::array(); });
  const BinnedAttribute& income = model.attributes[0];
  EXPECT_TRUE(income.isEdited);
  ASSERT_EQ(1U, income.bins.size());
  EXPECT_EQ((Count{10.0, 10.0}), income.bins[0].count);
  EXPECT_THAT(income.bins[0].categories, ElementsAre(Count{6.0, 6.0}, Count{4.0, 4.0}));
  EXPECT_EQ(TQMV::gMissingValue, income.entropy);
}

TEST(ModelReader, CountsBesideAMovedCutPointAreUnknown) {
  const Model model = Edited([](Json& m) { m["attributes"][0]["cuts"][0] = 3; });
  EXPECT_THAT(model.attributes[0].cuts, ElementsAre(3.0));
  ASSERT_EQ(2U, model.attributes[0].bins.size());
  EXPECT_EQ(3.0, model.attributes[0].bins[0].upper);
  EXPECT_EQ(Count(), model.attributes[0].bins[0].count);
  EXPECT_THAT(model.attributes[0].bins[1].categories, ElementsAre(Count(), Count()));
}

TEST(ModelReader, OtherClosedSideMakesCountsUnknown) {
  const Model model = Edited([](Json& m) { m["attributes"][0]["closed"] = "left"; });
  EXPECT_TRUE(model.attributes[0].isEdited);
  EXPECT_FALSE(model.attributes[0].isRightClosed);
  EXPECT_EQ(Count(), model.attributes[0].bins[0].count);
}

TEST(ModelReader, EditedModelReadsBackAsItself) {
  const Model model = Edited([](Json& m) { m["attributes"][0]["cuts"] = {1, 2.5, 4}; });
  EXPECT_EQ(model, ReadModel(WriteModel(model), "m.json"));
}

TEST(ModelReader, TextThatIsNoJsonIsPlaced) {
  EXPECT_THAT(ErrorOfText(""), HasSubstr("3: m.json:1:1: not usable JSON: "));
  EXPECT_THAT(ErrorOfText("{\n  \"a\": 1,,\n}"), HasSubstr("3: m.json:2:10: not usable JSON: "));
  EXPECT_THAT(ErrorOfText("{\"a\": 1, \"a\": 2}"), HasSubstr("has the key 'a' twice"));
  EXPECT_THAT(ErrorOfText(std::string(50, '[')), HasSubstr("nested more than 20 deep"));
  EXPECT_THAT(ErrorOfText("{\"a\": 1e999}"),
              HasSubstr("3: m.json:1:11: not usable JSON: number overflow parsing '1e999'"));
}

TEST(ModelReader, ObjectOfVeryManyKeysIsRefused) {
  Json document;
  for (int i = 0; i < 1001; ++i) document["k" + std::to_string(i)] = i;
  EXPECT_EQ("3: m.json: an object has more than 1000 keys; expected a file that tqbin wrote",
            ErrorOfText(document.dump()));
}

TEST(ModelReader, TruncatedModelIsRefusedWhereverItEnds) {
  const std::string text = WriteModel(SmallModel());
  for (std::size_t size = 0; size < text.size() - 2; size += 7) {
    EXPECT_THAT(ErrorOfText(text.substr(0, size)), HasSubstr("3: m.json")) << size;
  }
}

TEST(ModelReader, OtherFormatsAndVersionsAreRefused) {
  EXPECT_THAT(ErrorOfText("{}"), HasSubstr("no \"format\": \"tqbin-model\""));
  EXPECT_THAT(ErrorOfText("[]"), HasSubstr("'array' where an object is expected"));
  EXPECT_THAT(ErrorAfter([](Json& m) { m["version"] = 2; }),
              HasSubstr("m.json: version: version 2 of the model format; this tqbin knows"));
}

// Members that earlier files do not have.
const std::set<std::string> kOptional = {"divisor",    "information_gain",   "information_value",
                                         "event_rate", "weight_of_evidence", "share"};

// Every member is needed, or was not yet there earlier, and nothing else than its kind of
// value is taken for it.
void ExpectEveryMemberNeeded(const Json& document, const Json::json_pointer& place) {
  for (const auto& item : document[place].items()) {
    SCOPED_TRACE((place / item.key()).to_string());
    Json damaged = document;
    damaged[place].erase(item.key());
    EXPECT_EQ(kOptional.contains(item.key()), ErrorOfText(damaged.dump()) == "none");
    const std::string path = place.to_string();
    const bool isExplanation = item.key() == "words" || item.key() == "reason" ||
                               item.key() == "remedy" || path == "/tool";
    if (isExplanation) continue;
    damaged = document;
    damaged[place][item.key()] = Json::array({true});
    EXPECT_NE("none", ErrorOfText(damaged.dump()));
  }
}

TEST(ModelReader, EveryMemberIsNeededAndChecked) {
  const Json document = Json::parse(WriteModel(FullModel()));
  ASSERT_EQ("none", ErrorOfText(document.dump()));
  for (const char* const place :
       {"", "/input", "/input/dropped", "/settings", "/settings/weight", "/targets/0",
        "/attributes/0", "/attributes/0/missing", "/attributes/0/bins/0"}) {
    ExpectEveryMemberNeeded(document, Json::json_pointer(place));
  }
}

TEST(ModelReader, MeasureThatIsNotOfTheCountsIsRefused) {
  EXPECT_THAT(ErrorAfter([](Json& m) { m["attributes"][0]["information_gain"] = 0.5; }),
              HasSubstr("attributes[0].information_gain: 0.5 is not what the counts come to (0.5"));
  for (const char* const key : {"share", "event_rate", "weight_of_evidence", "information_value"}) {
    EXPECT_THAT(ErrorAfter([key](Json& m) { m["attributes"][0]["bins"][1][key] = 0.2; }),
                HasSubstr("attributes[0].bins[1]." + std::string(key) + ": 0.2 is not what"));
  }
  EXPECT_THAT(ErrorAfter([](Json& m) {
                for (Json& bin : m["attributes"][0]["bins"]) bin["category_weights"][0] = nullptr;
              }),
              HasSubstr("is not what the counts come to (nothing)"));
}

TEST(ModelReader, MeasureOfAnotherMachinesLogarithmIsTaken) {
  const Model model = Edited([](Json& m) {
    const double gain = m["attributes"][0]["information_gain"];
    m["attributes"][0]["information_gain"] = gain * (1.0 + 1e-15);
  });
  EXPECT_EQ(SmallModel(), model);
}

TEST(ModelReader, MisspelledKeyIsNamedWithTheNearestOne) {
  EXPECT_EQ("3: m.json: attributes[0]: the key 'lables' is not known here; did you mean labels?",
            ErrorAfter([](Json& m) { m["attributes"][0]["lables"] = nullptr; }));
}

TEST(ModelReader, ContradictionsAreNamedWithTheirPlace) {
  EXPECT_THAT(ErrorAfter([](Json& m) {
                m["attributes"][0]["cuts"] = {3, 2};
              }),
              HasSubstr("attributes[0].cuts[1]: 2 is not above 3, the cut point before it"));
  EXPECT_THAT(ErrorAfter([](Json& m) { m["attributes"][0]["cuts"] = {"x"}; }),
              HasSubstr("attributes[0].cuts[0]: '\"x\"' where a number is expected"));
  EXPECT_THAT(ErrorAfter([](Json& m) { m["attributes"][0]["labels"] = {"a"}; }),
              HasSubstr("attributes[0].labels: 1 labels for 2 bins"));
  EXPECT_THAT(ErrorAfter([](Json& m) { m["attributes"][0]["closed"] = "both"; }),
              HasSubstr("attributes[0].closed: 'both' is no side"));
  EXPECT_THAT(ErrorAfter([](Json& m) { m["attributes"][0]["target"] = "late"; }),
              HasSubstr("attributes[0].target: 'late' is no target of the model"));
  EXPECT_THAT(ErrorAfter([](Json& m) { m["attributes"].push_back(m["attributes"][0]); }),
              HasSubstr("attributes[1]: a second entry for 'income'"));
  EXPECT_THAT(ErrorAfter([](Json& m) {
                m["attributes"][0]["missing"]["range"] = {2, 1};
              }),
              HasSubstr("attributes[0].missing.range: the range ends before it begins"));
  EXPECT_THAT(ErrorAfter([](Json& m) { m["attributes"][0]["bins"][1]["category_rows"] = {1}; }),
              HasSubstr("attributes[0].bins[1].category_rows: 1 numbers for 2 categories"));
  EXPECT_THAT(ErrorAfter([](Json& m) { m["method"] = "magic"; }),
              HasSubstr("method: 'magic' is no method"));
  EXPECT_THAT(ErrorAfter([](Json& m) { m["status"]["severity"] = "error"; }),
              HasSubstr("status.severity: 'error' does not go with code 0"));
  EXPECT_THAT(ErrorAfter([](Json& m) {
                m["status"] = {{"code", 9223372036854775808U}, {"severity", "warning"}};
              }),
              HasSubstr("status.code: the number is too large"));
  EXPECT_THAT(ErrorAfter([](Json& m) { m["targets"] = Json::array(); }),
              HasSubstr("targets: expected a target"));
  EXPECT_THAT(ErrorAfter([](Json& m) { m["targets"][0]["categories"] = Json::array(); }),
              HasSubstr("targets[0].categories: expected a category at least"));
  EXPECT_THAT(ErrorAfter([](Json& m) {
                m["settings"]["weight"] = {{"column", ""}, {"rounding", "none"}, {"scale", "mean"}};
              }),
              HasSubstr("settings.weight.column: expected a name, or null for no weight"));
}

}  // namespace
}  // namespace TQTool
