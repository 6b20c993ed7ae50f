#include "bench/support/binningrun.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <numeric>
#include <stdexcept>

namespace bench {

namespace {

using TQBinning::TQStatus;

// Small numbers of bins that are never used still have to be given.
constexpr int kUnusedBins = 2;

[[noreturn]] void Throw(const std::string& what, const TQStatus& status) {
  throw std::runtime_error(what + " ended with code " + std::to_string(status.GetErrorCode()));
}

// Attributes of their own may end with a warning, which their outcomes tell.
void CheckRun(const TQStatus& status) {
  const bool someNotOK = status.IsWarning() && status.GetErrorCode() == TQBinning::kSomeNotOK;
  if (!status.IsOK() && !someNotOK) Throw("CreateBins", status);
}

template <typename Results>
AttributeOutcome Summarise(const Results& results) {
  AttributeOutcome outcome;
  outcome.code = results.GetStatus().GetErrorCode();
  outcome.cuts = results.GetCutPoints();
  outcome.distinctValues = results.GetNDistinctValues();
  outcome.totalWeight = results.GetTotalWeight();
  outcome.totalWeightWithMissing = results.GetTotalWeightWithMissing();
  outcome.minimum = results.GetMinimum();
  outcome.maximum = results.GetMaximum();
  return outcome;
}

std::vector<AttributeOutcome> RunSupervised(const Columns& columns, int bins,
                                            const std::string& directory) {
  BINVarList list = MakeVarList(columns, true);
  BINSettings settings;
  settings.SetTempDirName(directory);
  settings.SetNumberOfBins(bins > 0 ? bins : kUnusedBins);
  if (bins > 0) settings.SetNumDistinctValueThreshold(bins);
  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, list));
  if (algorithm == nullptr) Throw("CreateBINAlgorithm", factory.GetStatus());
  ColumnRecords records(columns, true);
  CheckRun(algorithm->CreateBins(records, nullptr, nullptr));
  return OutcomesOf(algorithm->GetBinningResults());
}

std::vector<AttributeOutcome> RunEqualFrequency(const Columns& columns, int bins,
                                                const std::string& directory) {
  BINVarList list = MakeVarList(columns, false);
  EFBINSettings settings;
  settings.SetTempDirName(directory);
  settings.SetNumberOfBins(bins);
  EFBINFactory factory;
  const std::unique_ptr<IEFBINAlgorithm> algorithm(factory.CreateEFBINAlgorithm(settings, list));
  if (algorithm == nullptr) Throw("CreateEFBINAlgorithm", factory.GetStatus());
  ColumnRecords records(columns, false);
  CheckRun(algorithm->CreateBins(records, nullptr));
  return OutcomesOf(algorithm->GetBinningResults());
}

double Sum(const std::vector<double>& values) {
  return std::accumulate(values.begin(), values.end(), 0.0);
}

// Noise has no cut that pays, and one value nothing to cut between.
bool IsExplained(const AttributeOutcome& outcome) {
  switch (outcome.code) {
    case TQBinning::kOK: return !outcome.cuts.empty();
    case TQBinning::kNoCutAccepted:
    case TQBinning::kNoCutPoint: return outcome.cuts.empty();
    case TQBinning::kOneDistinctValue: return outcome.distinctValues == 1;
    default: return false;
  }
}

// Counts again what every bin, and every class in it, should weigh.
bool HasCountedWeights(const AttributeOutcome& outcome, const Columns& columns,
                       const std::vector<double>& values) {
  const std::size_t bins = outcome.cuts.size() + 1;
  const auto classes = static_cast<std::size_t>(columns.classes);
  std::vector<double> binWeights(bins, 0.0);
  std::vector<double> classWeights(bins * classes, 0.0);
  for (std::size_t row = 0; row < values.size(); ++row) {
    const auto cut = std::lower_bound(outcome.cuts.begin(), outcome.cuts.end(), values[row]);
    const auto bin = static_cast<std::size_t>(cut - outcome.cuts.begin());
    const double weight = columns.weights.empty() ? 1.0 : columns.weights[row];
    binWeights[bin] += weight;
    classWeights[bin * classes + static_cast<std::size_t>(columns.target[row])] += weight;
  }
  return outcome.binWeights == binWeights &&
         (outcome.classWeights.empty() || outcome.classWeights == classWeights);
}

std::string ComplaintAbout(const AttributeOutcome& outcome, const Columns& columns,
                           const std::vector<double>& values, double totalWeight) {
  if (!IsExplained(outcome)) return "has status " + std::to_string(outcome.code);
  if (outcome.totalWeight != totalWeight || outcome.totalWeightWithMissing != totalWeight) {
    return "has lost cases";
  }
  const auto [low, high] = std::minmax_element(values.begin(), values.end());
  if (outcome.minimum != *low || outcome.maximum != *high) return "has wrong extremes";
  if (!std::is_sorted(outcome.cuts.begin(), outcome.cuts.end(), std::less_equal<>())) {
    return "has cuts out of order";
  }
  if (!HasCountedWeights(outcome, columns, values)) return "has bins of the wrong weight";
  return {};
}

}  // namespace

std::vector<AttributeOutcome> OutcomesOf(const BINOutput& output) {
  std::vector<BINAttributeTargetResults> all;
  if (const TQStatus status = output.GetAllCutPoints(all); status.IsError()) {
    Throw("GetAllCutPoints", status);
  }
  std::vector<AttributeOutcome> outcomes;
  for (const BINAttributeTargetResults& results : all) {
    AttributeOutcome& outcome = outcomes.emplace_back(Summarise(results));
    outcome.modelEntropy = results.GetModelEntropy();
    for (const std::vector<double>& row : results.GetCellCounts()) {
      outcome.binWeights.push_back(row.front());
      outcome.classWeights.insert(outcome.classWeights.end(), row.begin() + 1, row.end());
    }
  }
  return outcomes;
}

std::vector<AttributeOutcome> OutcomesOf(const EFBINOutput& output) {
  std::vector<BINAttributeResults> all;
  if (const TQStatus status = output.GetAllCutPoints(all); status.IsError()) {
    Throw("GetAllCutPoints", status);
  }
  std::vector<AttributeOutcome> outcomes;
  for (const BINAttributeResults& results : all) {
    outcomes.push_back(Summarise(results));
    outcomes.back().binWeights = results.GetCellCounts();
  }
  return outcomes;
}

BINVarList MakeVarList(const Columns& columns, bool withTarget) {
  BINVarList list;
  for (std::size_t i = 0; i < columns.attributes.size(); ++i) {
    list.AddContVar("x" + std::to_string(i), "", IBINVariable::kAttribute);
  }
  if (withTarget) {
    // Encoded in this order, a code stands for itself.
    std::vector<double> codes(static_cast<std::size_t>(columns.classes));
    std::iota(codes.begin(), codes.end(), 0.0);
    list.AddCatVar("y", "", codes, IBINVariable::kTarget);
  }
  if (!columns.weights.empty()) list.AddWeightVar("w", "", IBINVariable::kRoundToClosest);
  return list;
}

std::vector<AttributeOutcome> RunBinning(const Columns& columns, const RunSettings& settings,
                                         const std::string& directory) {
  return settings.task == Task::kSupervised ? RunSupervised(columns, settings.bins, directory)
                                            : RunEqualFrequency(columns, settings.bins, directory);
}

std::string ComplaintAbout(const std::vector<AttributeOutcome>& outcomes, const Columns& columns) {
  if (outcomes.size() != columns.attributes.size()) return "not every attribute was binned";
  const double totalWeight =
      columns.weights.empty() ? static_cast<double>(columns.Rows()) : Sum(columns.weights);
  for (std::size_t i = 0; i < outcomes.size(); ++i) {
    const std::string complaint =
        ComplaintAbout(outcomes[i], columns, columns.attributes[i], totalWeight);
    if (!complaint.empty()) return "x" + std::to_string(i) + " " + complaint;
  }
  return {};
}

}  // namespace bench
