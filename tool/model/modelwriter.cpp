#include "model/modelwriter.h"

#include <cmath>
#include <cstddef>
#include <optional>

#include "base/statuswords.h"
#include "model/jsontext.h"
#include "model/measures.h"
#include "model/modelformat.h"

namespace TQTool {
namespace {

Json Number(double number) {
  if (number == TQMV::gMissingValue || !std::isfinite(number)) return nullptr;
  return number;
}

Json Numbers(const std::vector<double>& numbers) {
  Json result = Json::array();
  for (const double number : numbers) result.push_back(Number(number));
  return result;
}

// A text that may be absent.
Json Text(const std::string& text) { return text.empty() ? Json(nullptr) : Json(text); }

const char* SideText(bool isRightClosed) { return isRightClosed ? "right" : "left"; }

Json StatusJson(const TQBinning::TQStatus& status) {
  const StatusWords& words = WordsOf(status.GetErrorCode());
  return {{"code", status.GetErrorCode()},
          {"severity", SeverityOf(status)},
          {"words", words.words},
          {"reason", words.reason},
          {"remedy", words.remedy}};
}

Json NumericRuleJson(const MissingRule& rule) {
  Json range = nullptr;
  if (rule.range.has_value()) range = {Number(rule.range->lower), Number(rule.range->upper)};
  return {{"values", Numbers(rule.numbers)}, {"range", range}};
}

Json InputJson(const InputSummary& input) {
  return {{"names", input.names},
          {"rows", input.rows},
          {"cases", input.cases},
          {"weight", Number(input.weight)},
          {"dropped",
           {{"weight_missing", input.droppedWeightMissing},
            {"weight_not_positive", input.droppedWeightNotPositive},
            {"weight_rounded_away", input.droppedWeightRoundedAway}}}};
}

Json WeightJson(const Settings& settings) {
  if (settings.weight.empty()) return nullptr;
  return {{"column", settings.weight},
          {"rounding", settings.weightRounding},
          {"scale", Text(settings.weightScale)},
          {"divisor", Number(settings.weightDivisor)},
          {"missing", NumericRuleJson(settings.weightMissing)}};
}

Json SettingsJson(const Settings& settings, Method method) {
  // An object from the start: without memory to become one, null crashes when it ends.
  Json result = Json::object();
  if (method == Method::kSupervised) {
    result["prebin_threshold"] = settings.prebinThreshold;
    result["prebin_bins"] = settings.prebinBins;
    result["min_bin_factor"] = settings.minBinFactor;
  } else {
    result["bins"] = settings.bins;
  }
  result["closed"] = SideText(settings.isRightClosed);
  result["weight"] = WeightJson(settings);
  result["missing_tokens"] = settings.missingTokens;
  return result;
}

Json TargetJson(const Target& target) {
  return {{"name", target.name},
          {"categories", target.categories},
          {"missing_cases", target.missingCases},
          {"missing", {{"values", target.missing.texts}}}};
}

// What a bin tells about a target of two categories.
void AddEvents(const Measures::OfBin& measured, Json& bin) {
  bin["event_rate"] = Number(measured.eventRate);
  bin["weight_of_evidence"] = Number(measured.weightOfEvidence);
  bin["information_value"] = Number(measured.informationValue);
}

Json BinJson(const Bin& bin, const BinnedAttribute& attribute) {
  Json result = {{"lower", Number(bin.lower)},
                 {"upper", Number(bin.upper)},
                 {"closed", SideText(attribute.isRightClosed)},
                 {"weight", Number(bin.count.weight)},
                 {"rows", Number(bin.count.rows)},
                 {"share", Number(ShareOf(bin, attribute))}};
  if (bin.categories.empty()) return result;
  Json& weights = result["category_weights"] = Json::array();
  Json& rows = result["category_rows"] = Json::array();
  for (const Count& count : bin.categories) {
    weights.push_back(Number(count.weight));
    rows.push_back(Number(count.rows));
  }
  return result;
}

Json AttributeJson(const BinnedAttribute& attribute, const Target* target) {
  const double unknown = TQMV::gMissingValue;
  const std::optional<Measures> measures = MeasuresOf(attribute);
  const bool hasEvents = measures.has_value() && !measures->bins.empty();
  const double gain = measures.has_value() ? measures->informationGain : unknown;
  Json result = {{"name", attribute.name},
                 {"target", target == nullptr ? Json(nullptr) : Json(target->name)},
                 {"kind", "continuous"},
                 {"status", StatusJson(attribute.status)},
                 {"closed", SideText(attribute.isRightClosed)},
                 {"cuts", Numbers(attribute.cuts)},
                 {"labels", attribute.labels.empty() ? Json(nullptr) : Json(attribute.labels)},
                 {"missing", NumericRuleJson(attribute.missing)},
                 {"minimum", Number(attribute.minimum)},
                 {"maximum", Number(attribute.maximum)},
                 {"distinct_values", attribute.numDistinct},
                 {"entropy", Number(attribute.entropy)},
                 {"information_gain", Number(gain)},
                 {"information_value", Number(hasEvents ? measures->informationValue : unknown)},
                 {"prebinned", attribute.isPreBinned},
                 {"edited", attribute.isEdited},
                 {"weight", Number(attribute.valid.weight)},
                 {"rows", Number(attribute.valid.rows)},
                 {"total_weight", Number(attribute.total.weight)},
                 {"total_rows", Number(attribute.total.rows)}};
  Json& bins = result["bins"] = Json::array();
  for (std::size_t b = 0; b < attribute.bins.size(); ++b) {
    bins.push_back(BinJson(attribute.bins[b], attribute));
    if (hasEvents) AddEvents(measures->bins[b], bins.back());
  }
  return result;
}

}  // namespace

std::string WriteModel(const Model& model) {
  Json document = {{"format", kModelFormat}, {"version", kModelVersion}};
  document["tool"] = {{"name", "tqbin"}, {"version", model.toolVersion}};
  document["created"] = Text(model.created);
  document["method"] = NameOf(model.method);
  document["input"] = InputJson(model.input);
  document["settings"] = SettingsJson(model.settings, model.method);
  Json& targets = document["targets"] = Json::array();
  for (const Target& target : model.targets) targets.push_back(TargetJson(target));
  document["status"] = StatusJson(model.status);
  Json& attributes = document["attributes"] = Json::array();
  for (const BinnedAttribute& attribute : model.attributes) {
    attributes.push_back(AttributeJson(attribute, model.TargetOf(attribute)));
  }
  return PrintJson(document);
}

std::string WriteAttributes(const Model& model) {
  std::string text;
  for (const BinnedAttribute& attribute : model.attributes) {
    text += PrintJsonLine(AttributeJson(attribute, model.TargetOf(attribute)));
  }
  return text;
}

}  // namespace TQTool
