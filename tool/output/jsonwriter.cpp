#include "output/jsonwriter.h"

#include <cmath>

#include <nlohmann/json.hpp>

#include "base/statuswords.h"
#include "base/version.h"

namespace TQTool {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kFormatVersion = 1;

Json Number(double number) {
  if (number == TQMV::gMissingValue || !std::isfinite(number)) return nullptr;
  return number;
}

Json Numbers(const std::vector<double>& numbers) {
  Json result = Json::array();
  for (const double number : numbers) result.push_back(Number(number));
  return result;
}

// The same for names and paths that may be absent.
Json Text(const std::string& text) { return text.empty() ? Json(nullptr) : Json(text); }

Json Status(const TQBinning::TQStatus& status) {
  const StatusWords& words = WordsOf(status.GetErrorCode());
  return {{"code", status.GetErrorCode()},
          {"severity", SeverityOf(status)},
          {"words", words.words},
          {"reason", words.reason},
          {"remedy", words.remedy}};
}

const char* ClosedSide(const Options& options) { return options.isRightClosed ? "right" : "left"; }

Json UserMissingValues(const UserMissing& definition) {
  Json result = {{"column", definition.column}};
  result["values"] =
      definition.texts.empty() ? Numbers(definition.numbers) : Json(definition.texts);
  result["range"] = nullptr;
  if (definition.range.has_value()) {
    const BINNumericInterval& range = *definition.range;
    result["range"] = {range.IsLeftEndInfinite() ? Json(nullptr) : Number(range.GetLeftEnd()),
                       range.IsRightEndInfinite() ? Json(nullptr) : Number(range.GetRightEnd())};
  }
  return result;
}

Json Settings(const Options& options) {
  Json settings;
  if (options.method == Method::kSupervised) {
    settings["prebin_threshold"] = options.prebinThreshold;
    settings["prebin_bins"] = options.prebinBins;
    settings["min_bin_factor"] = options.minBinFactor;
  } else {
    settings["bins"] = options.bins;
  }
  settings["closed"] = ClosedSide(options);
  settings["weight"] = Text(options.weight);
  settings["weight_rounding"] = Text(options.weight.empty() ? "" : options.weightRounding);
  settings["missing_tokens"] = options.missingTokens;
  settings["user_missing"] = Json::array();
  for (const UserMissing& definition : options.userMissing) {
    settings["user_missing"].push_back(UserMissingValues(definition));
  }
  return settings;
}

Json OneBin(const Bin& bin, const Options& options) {
  Json result = {{"lower", Number(bin.lower)},
                 {"upper", Number(bin.upper)},
                 {"closed", ClosedSide(options)},
                 {"weight", Number(bin.weight)}};
  if (options.method == Method::kSupervised) {
    result["category_weights"] = Numbers(bin.classWeights);
  }
  return result;
}

Json Attribute(const AttributeResult& attribute, const Options& options) {
  Json result = {{"name", attribute.name}, {"status", Status(attribute.status)}};
  result["cuts"] = Numbers(attribute.cuts);
  result["bins"] = Json::array();
  for (const Bin& bin : attribute.bins) result["bins"].push_back(OneBin(bin, options));
  result["weight"] = Number(attribute.weight);
  result["missing_weight"] = Number(attribute.weightWithMissing - attribute.weight);
  result["minimum"] = Number(attribute.minimum);
  result["maximum"] = Number(attribute.maximum);
  result["distinct_values"] = attribute.numDistinct;
  if (options.method == Method::kSupervised) {
    result["entropy"] = Number(attribute.entropy);
    result["prebinned"] = attribute.isPreBinned;
  }
  return result;
}

}  // namespace

std::string WriteJson(const RunResult& result) {
  const Options& options = result.options;
  const bool isSupervised = options.method == Method::kSupervised;
  Json document = {{"format", "tqbin-bins"}, {"version", kFormatVersion}};
  document["tool"] = {{"name", "tqbin"}, {"version", kVersion}};
  document["method"] = isSupervised ? "supervised" : "equal-frequency";
  document["input"] = {{"name", result.inputName},
                       {"rows", result.fed.rows},
                       {"cases", result.fed.cases},
                       {"weight", Number(result.fed.weight)}};
  document["settings"] = Settings(options);
  if (isSupervised) {
    document["target"] = {{"name", options.target},
                          {"categories", result.categories},
                          {"missing_cases", result.fed.withoutTarget}};
  }
  document["status"] = Status(result.status);
  document["attributes"] = Json::array();
  for (const AttributeResult& attribute : result.attributes) {
    document["attributes"].push_back(Attribute(attribute, options));
  }
  return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace TQTool
