#include "model/measures.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace TQTool {
namespace {

constexpr double kAddedToEmpty = 0.5;  // to both cells of a bin of which one is empty

// Whether the weight of every category of every bin is known.
bool HasAllWeights(const BinnedAttribute& attribute) {
  return std::all_of(attribute.bins.begin(), attribute.bins.end(), [](const Bin& bin) {
    return std::none_of(bin.categories.begin(), bin.categories.end(),
                        [](const Count& count) { return count.weight == TQMV::gMissingValue; });
  });
}

double SumOf(const std::vector<double>& weights) {
  double sum = 0.0;
  for (const double weight : weights) sum += weight;
  return sum;
}

// The entropy, in bits, of categories with these weights.
double EntropyOf(const std::vector<double>& weights) {
  const double total = SumOf(weights);
  double entropy = 0.0;
  for (const double weight : weights) {
    if (weight > 0.0) entropy -= weight / total * std::log2(weight / total);
  }
  return entropy;
}

std::vector<double> WeightsOf(const Bin& bin) {
  std::vector<double> weights;
  for (const Count& count : bin.categories) weights.push_back(count.weight);
  return weights;
}

// Adds the measures of a target with these two weights in all.
void MeasureEvents(const BinnedAttribute& attribute, double nonEvents, double events,
                   Measures& measures) {
  for (const Bin& bin : attribute.bins) {
    double without = bin.categories[0].weight;
    double with = bin.categories[1].weight;
    Measures::OfBin& measured = measures.bins.emplace_back();
    if (!(without + with > 0.0)) continue;
    measured.eventRate = with / (without + with);
    if (!(nonEvents > 0.0) || !(events > 0.0)) continue;
    if (without == 0.0 || with == 0.0) {
      without += kAddedToEmpty;
      with += kAddedToEmpty;
    }
    measured.weightOfEvidence = std::log((with / events) / (without / nonEvents));
    measured.informationValue = (with / events - without / nonEvents) * measured.weightOfEvidence;
    measures.informationValue += measured.informationValue;
  }
}

}  // namespace

double ShareOf(const Bin& bin, const BinnedAttribute& attribute) {
  const bool isKnown = bin.count.weight != TQMV::gMissingValue && attribute.total.weight > 0.0;
  return isKnown ? bin.count.weight / attribute.total.weight : TQMV::gMissingValue;
}

std::optional<Measures> MeasuresOf(const BinnedAttribute& attribute) {
  if (attribute.bins.empty() || attribute.bins[0].categories.empty()) return std::nullopt;
  if (!HasAllWeights(attribute)) return std::nullopt;
  std::vector<double> totals(attribute.bins[0].categories.size(), 0.0);
  double within = 0.0;  // weighted sum of the bins' entropies
  for (const Bin& bin : attribute.bins) {
    const std::vector<double> weights = WeightsOf(bin);
    within += SumOf(weights) * EntropyOf(weights);
    for (std::size_t c = 0; c < totals.size(); ++c) totals[c] += weights[c];
  }
  const double total = SumOf(totals);
  Measures measures;
  if (total > 0.0) measures.informationGain = EntropyOf(totals) - within / total;
  if (totals.size() == 2) MeasureEvents(attribute, totals[0], totals[1], measures);
  return measures;
}

}  // namespace TQTool
