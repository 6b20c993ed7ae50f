#include "model/modelreader.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

#include <fmt/format.h>

#include "base/files.h"
#include "base/plaintext.h"
#include "base/statuswords.h"
#include "model/jsonnode.h"
#include "model/measures.h"
#include "model/modelformat.h"
#include "model/recount.h"

namespace TQTool {
namespace {

constexpr std::size_t kMaxFileSize = std::size_t{1} << 28;  // more than any model has

std::string TextOrEmpty(const JsonNode& node) { return node.IsNull() ? "" : node.Text(); }

// A number that files of earlier tools do not have; gMissingValue without one.
double OptionalNumber(const JsonNode& node, const char* key) {
  return node.Has(key) ? node.At(key).NumberOr(TQMV::gMissingValue) : TQMV::gMissingValue;
}

bool ReadIsRightClosed(const JsonNode& node) {
  const std::string side = node.Text();
  if (side != "right" && side != "left") {
    node.Fail(fmt::format("{} is no side; expected \"right\" or \"left\"", Quoted(side)));
  }
  return side == "right";
}

// A whole number that is kept in a narrower type.
template <class Whole>
Whole ReadWhole(const JsonNode& node) {
  const std::uint64_t number = node.WholeNumber();
  if (!std::in_range<Whole>(number)) node.Fail("the number is too large");
  return static_cast<Whole>(number);
}

TQBinning::TQStatus ReadStatus(const JsonNode& node) {
  node.AllowOnly({"code", "severity", "words", "reason", "remedy"});
  const auto code = ReadWhole<long>(node.At("code"));
  const std::string severity = node.At("severity").Text();
  const TQBinning::TQStatus ok;
  for (const TQBinning::TQStatus& status :
       {code == 0 ? ok : TQBinning::TQStatus(code, true), TQBinning::TQStatus(code, false)}) {
    if (severity == SeverityOf(status) && (code == 0) == status.IsOK()) return status;
  }
  node.At("severity")
      .Fail(fmt::format("{} does not go with code {}; expected \"ok\" with code 0, "
                        "\"warning\" or \"error\" with another",
                        Quoted(severity), code));
}

MissingRule ReadNumericRule(const JsonNode& node) {
  node.AllowOnly({"values", "range"});
  MissingRule rule;
  rule.numbers = node.At("values").Numbers();
  const JsonNode range = node.At("range");
  if (range.IsNull()) return rule;
  const std::vector<JsonNode> ends = range.Items();
  if (ends.size() != 2) range.Fail("expected two ends, each a number or null, or null for none");
  rule.range.emplace();
  rule.range->lower = ends[0].NumberOr(rule.range->lower);
  rule.range->upper = ends[1].NumberOr(rule.range->upper);
  if (rule.range->lower > rule.range->upper) range.Fail("the range ends before it begins");
  return rule;
}

InputSummary ReadInput(const JsonNode& node) {
  node.AllowOnly({"names", "rows", "cases", "weight", "dropped"});
  const JsonNode dropped = node.At("dropped");
  dropped.AllowOnly({"weight_missing", "weight_not_positive", "weight_rounded_away"});
  InputSummary input;
  input.names = node.At("names").Texts();
  input.rows = node.At("rows").WholeNumber();
  input.cases = node.At("cases").WholeNumber();
  input.weight = node.At("weight").NumberOr(TQMV::gMissingValue);
  input.droppedWeightMissing = dropped.At("weight_missing").WholeNumber();
  input.droppedWeightNotPositive = dropped.At("weight_not_positive").WholeNumber();
  input.droppedWeightRoundedAway = dropped.At("weight_rounded_away").WholeNumber();
  return input;
}

std::string ReadRounding(const JsonNode& node) {
  std::string rounding = node.Text();
  for (const char* const known : {"closest", "down", "none"}) {
    if (rounding == known) return rounding;
  }
  node.Fail(fmt::format("{} is no rounding; expected \"closest\", \"down\" or \"none\"",
                        Quoted(rounding)));
}

void ReadWeight(const JsonNode& node, Settings& settings) {
  if (node.IsNull()) return;
  node.AllowOnly({"column", "rounding", "scale", "divisor", "missing"});
  settings.weight = node.At("column").Text();
  if (settings.weight.empty()) node.At("column").Fail("expected a name, or null for no weight");
  settings.weightRounding = ReadRounding(node.At("rounding"));
  settings.weightScale = TextOrEmpty(node.At("scale"));
  settings.weightDivisor = OptionalNumber(node, "divisor");
  settings.weightMissing = ReadNumericRule(node.At("missing"));
}

Settings ReadSettings(const JsonNode& node, Method method) {
  Settings settings;
  if (method == Method::kSupervised) {
    node.AllowOnly({"prebin_threshold", "prebin_bins", "min_bin_factor", "closed", "weight",
                    "missing_tokens"});
    settings.prebinThreshold = ReadWhole<int>(node.At("prebin_threshold"));
    settings.prebinBins = ReadWhole<int>(node.At("prebin_bins"));
    settings.minBinFactor = node.At("min_bin_factor").Number();
  } else {
    node.AllowOnly({"bins", "closed", "weight", "missing_tokens"});
    settings.bins = ReadWhole<int>(node.At("bins"));
  }
  settings.isRightClosed = ReadIsRightClosed(node.At("closed"));
  ReadWeight(node.At("weight"), settings);
  settings.missingTokens = node.At("missing_tokens").Texts();
  return settings;
}

Target ReadTarget(const JsonNode& node) {
  node.AllowOnly({"name", "categories", "missing_cases", "missing"});
  node.At("missing").AllowOnly({"values"});
  Target target;
  target.name = node.At("name").Text();
  target.categories = node.At("categories").Texts();
  if (target.categories.empty()) node.At("categories").Fail("expected a category at least");
  target.missingCases = node.At("missing_cases").WholeNumber();
  target.missing.texts = node.At("missing").At("values").Texts();
  return target;
}

// A list of counts, one per category.
std::vector<double> ReadCounts(const JsonNode& node, std::size_t size) {
  const std::vector<JsonNode> items = node.Items();
  if (items.size() != size) {
    node.Fail(fmt::format("{} numbers for {} categories; expected one per category of the target",
                          items.size(), size));
  }
  std::vector<double> counts;
  counts.reserve(items.size());
  for (const JsonNode& item : items) counts.push_back(item.NumberOr(TQMV::gMissingValue));
  return counts;
}

Bin ReadBin(const JsonNode& node, const Target* target) {
  node.AllowOnly({"lower", "upper", "closed", "weight", "rows", "share", "category_weights",
                  "category_rows", "event_rate", "weight_of_evidence", "information_value"});
  Bin bin;
  bin.lower = node.At("lower").NumberOr(bin.lower);
  bin.upper = node.At("upper").NumberOr(bin.upper);
  bin.count.weight = node.At("weight").NumberOr(TQMV::gMissingValue);
  bin.count.rows = node.At("rows").NumberOr(TQMV::gMissingValue);
  if (target == nullptr) return bin;
  const std::size_t size = target->categories.size();
  const std::vector<double> weights = ReadCounts(node.At("category_weights"), size);
  const std::vector<double> rows = ReadCounts(node.At("category_rows"), size);
  for (std::size_t c = 0; c < size; ++c) bin.categories.push_back({weights[c], rows[c]});
  return bin;
}

std::vector<double> ReadCuts(const JsonNode& node) {
  std::vector<double> cuts = node.Numbers();
  for (std::size_t i = 1; i < cuts.size(); ++i) {
    if (cuts[i] > cuts[i - 1]) continue;
    node.Items()[i].Fail(
        fmt::format("{} is not above {}, the cut point before it; expected "
                    "ascending cut points; reorder them, or remove one",
                    cuts[i], cuts[i - 1]));
  }
  return cuts;
}

std::vector<std::string> ReadLabels(const JsonNode& node, std::size_t numBins) {
  if (node.IsNull()) return {};
  std::vector<std::string> labels = node.Texts();
  if (labels.size() != numBins) {
    node.Fail(
        fmt::format("{} labels for {} bins; expected one per bin, so one more than cut "
                    "points, or null",
                    labels.size(), numBins));
  }
  return labels;
}

// Refuses a measure that is there and not what the counts make of it.
void CheckMeasure(const JsonNode& node, const char* key, double counted) {
  constexpr double kTolerance = 1e-9;  // logarithms differ a little from machine to machine
  const double found = OptionalNumber(node, key);
  if (found == TQMV::gMissingValue) return;
  if (std::abs(found - counted) <= kTolerance * std::max(1.0, std::abs(counted))) return;
  node.At(key).Fail(
      fmt::format("{} is not what the counts come to ({}); correct the counts, or set it to null",
                  found, counted == TQMV::gMissingValue ? "nothing" : fmt::format("{}", counted)));
}

// Refuses measures that are not those of the attribute's bins, as they were counted.
void CheckMeasures(const JsonNode& node, const BinnedAttribute& attribute) {
  const double unknown = TQMV::gMissingValue;
  const std::optional<Measures> measures = MeasuresOf(attribute);
  const bool hasEvents = measures.has_value() && !measures->bins.empty();
  CheckMeasure(node, "information_gain", measures ? measures->informationGain : unknown);
  CheckMeasure(node, "information_value", hasEvents ? measures->informationValue : unknown);
  const std::vector<JsonNode> bins = node.At("bins").Items();
  const Measures::OfBin none = {unknown, unknown, unknown};
  for (std::size_t b = 0; b < bins.size(); ++b) {
    const Measures::OfBin& measured = hasEvents ? measures->bins[b] : none;
    CheckMeasure(bins[b], "share", ShareOf(attribute.bins[b], attribute));
    CheckMeasure(bins[b], "event_rate", measured.eventRate);
    CheckMeasure(bins[b], "weight_of_evidence", measured.weightOfEvidence);
    CheckMeasure(bins[b], "information_value", measured.informationValue);
  }
}

// The bins of an attribute whose cut points and closed side have been read.
void ReadBins(const JsonNode& node, const Target* target, BinnedAttribute& attribute) {
  bool isSideKept = true;
  for (const JsonNode& item : node.At("bins").Items()) {
    attribute.bins.push_back(ReadBin(item, target));
    isSideKept = isSideKept && ReadIsRightClosed(item.At("closed")) == attribute.isRightClosed;
  }
  CheckMeasures(node, attribute);
  const bool hasNone = attribute.bins.empty() && attribute.cuts.empty();
  if (hasNone || (isSideKept && FitCuts(attribute.bins, attribute.cuts))) return;
  attribute.isEdited = true;
  attribute.entropy = TQMV::gMissingValue;
  // On the other closed side every bin may have lost or gained cases.
  const std::vector<Bin> counted = isSideKept ? attribute.bins : std::vector<Bin>();
  attribute.bins = MergeBins(counted, attribute.cuts);
  for (Bin& bin : attribute.bins) {
    bin.categories.resize(target == nullptr ? 0 : target->categories.size());
  }
}

// The index of the target that an attribute names; none for null.
std::optional<std::size_t> ReadTargetIndex(const JsonNode& node,
                                           const std::vector<Target>& targets) {
  if (node.IsNull() && targets.empty()) return std::nullopt;
  const std::string name = TextOrEmpty(node);
  const auto found = std::find_if(targets.begin(), targets.end(),
                                  [&](const Target& target) { return target.name == name; });
  if (found == targets.end()) {
    node.Fail(fmt::format("{} is no target of the model; expected one that \"targets\" describes",
                          Quoted(name)));
  }
  return static_cast<std::size_t>(found - targets.begin());
}

BinnedAttribute ReadAttribute(const JsonNode& node, const std::vector<Target>& targets) {
  node.AllowOnly({"name",
                  "target",
                  "kind",
                  "status",
                  "closed",
                  "cuts",
                  "labels",
                  "missing",
                  "minimum",
                  "maximum",
                  "distinct_values",
                  "entropy",
                  "information_gain",
                  "information_value",
                  "prebinned",
                  "edited",
                  "weight",
                  "rows",
                  "total_weight",
                  "total_rows",
                  "bins"});
  if (node.At("kind").Text() != "continuous") {
    node.At("kind").Fail("expected \"continuous\", the only kind of column that has bins");
  }
  BinnedAttribute attribute;
  attribute.name = node.At("name").Text();
  attribute.target = ReadTargetIndex(node.At("target"), targets);
  attribute.status = ReadStatus(node.At("status"));
  attribute.isRightClosed = ReadIsRightClosed(node.At("closed"));
  attribute.cuts = ReadCuts(node.At("cuts"));
  attribute.labels = ReadLabels(node.At("labels"), attribute.cuts.size() + 1);
  attribute.missing = ReadNumericRule(node.At("missing"));
  attribute.valid.weight = node.At("weight").NumberOr(TQMV::gMissingValue);
  attribute.valid.rows = node.At("rows").NumberOr(TQMV::gMissingValue);
  attribute.total.weight = node.At("total_weight").NumberOr(TQMV::gMissingValue);
  attribute.total.rows = node.At("total_rows").NumberOr(TQMV::gMissingValue);
  attribute.minimum = node.At("minimum").NumberOr(TQMV::gMissingValue);
  attribute.maximum = node.At("maximum").NumberOr(TQMV::gMissingValue);
  attribute.numDistinct = node.At("distinct_values").WholeNumber();
  attribute.entropy = node.At("entropy").NumberOr(TQMV::gMissingValue);
  attribute.isPreBinned = node.At("prebinned").Flag();
  attribute.isEdited = node.At("edited").Flag();
  const Target* const target = targets.empty() ? nullptr : &targets[*attribute.target];
  ReadBins(node, target, attribute);
  return attribute;
}

// Makes sure that no attribute stands twice against one target.
void CheckPairs(const JsonNode& node, const std::vector<BinnedAttribute>& attributes) {
  std::set<std::pair<std::string, std::optional<std::size_t>>> seen;
  for (std::size_t i = 0; i < attributes.size(); ++i) {
    if (seen.emplace(attributes[i].name, attributes[i].target).second) continue;
    node.Items()[i].Fail(
        fmt::format("a second entry for {} against the same target; expected "
                    "one; remove one of the two",
                    Quoted(attributes[i].name)));
  }
}

void CheckFormat(const JsonNode& document) {
  const char* const remedy =
      "expected a model file that \"tqbin supervised\" or \"tqbin "
      "equal-frequency\" wrote with --format json";
  if (!document.Has("format") || document.At("format").Text() != kModelFormat) {
    document.Fail(fmt::format("no \"format\": \"{}\"; {}", kModelFormat, remedy));
  }
  const std::uint64_t version = document.At("version").WholeNumber();
  if (version != kModelVersion) {
    document.At("version").Fail(
        fmt::format("version {} of the model format; this tqbin knows "
                    "version {}; use a tqbin that knows it, or bin anew",
                    version, kModelVersion));
  }
}

Method ReadMethod(const JsonNode& node) {
  const std::string name = node.Text();
  for (const Method method : {Method::kSupervised, Method::kEqualFrequency}) {
    if (name == NameOf(method)) return method;
  }
  node.Fail(
      fmt::format("{} is no method; expected \"supervised\" or \"equal-frequency\"", Quoted(name)));
}

}  // namespace

Model ReadModel(const std::string& text, const std::string& name) {
  const Json json = ParseJson(text, name);
  const JsonNode document(json, name);
  CheckFormat(document);
  document.AllowOnly({"format", "version", "tool", "created", "method", "input", "settings",
                      "targets", "status", "attributes"});
  document.At("tool").AllowOnly({"name", "version"});
  Model model;
  model.toolVersion = document.At("tool").At("version").Text();
  model.created = TextOrEmpty(document.At("created"));
  model.method = ReadMethod(document.At("method"));
  model.input = ReadInput(document.At("input"));
  model.settings = ReadSettings(document.At("settings"), model.method);
  for (const JsonNode& node : document.At("targets").Items()) {
    model.targets.push_back(ReadTarget(node));
  }
  if (model.targets.empty() == (model.method == Method::kSupervised)) {
    document.At("targets").Fail("expected a target for the method supervised, none for another");
  }
  model.status = ReadStatus(document.At("status"));
  const JsonNode attributes = document.At("attributes");
  for (const JsonNode& node : attributes.Items()) {
    model.attributes.push_back(ReadAttribute(node, model.targets));
  }
  CheckPairs(attributes, model.attributes);
  return model;
}

Model LoadModel(const std::string& path) {
  const std::string name = path == "-" ? "standard input" : Printable(path);
  return ReadModel(ReadWholeFile(path, kMaxFileSize), name);
}

}  // namespace TQTool
