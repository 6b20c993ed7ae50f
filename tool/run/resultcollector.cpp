#include "run/resultcollector.h"

#include <cstddef>

namespace TQTool {
namespace {

// What the results of both methods have.
template <class LibraryResult>
BinnedAttribute CollectCommon(const LibraryResult& from, const BINVarList& list) {
  BinnedAttribute result;
  result.name = list.GetVarAt(from.GetAttributeIndex())->GetVariableName();
  result.status = from.GetStatus();
  result.cuts = from.GetCutPoints();
  result.numDistinct = from.GetNDistinctValues();
  result.valid.weight = from.GetTotalWeight();
  result.total.weight = from.GetTotalWeightWithMissing();
  result.minimum = from.GetMinimum();
  result.maximum = from.GetMaximum();
  return result;
}

}  // namespace

BinnedAttribute CollectResult(const BINAttributeTargetResults& from, const BINVarList& list,
                              const std::vector<std::size_t>& categoryOrder, int prebinThreshold) {
  BinnedAttribute result = CollectCommon(from, list);
  result.entropy = from.GetModelEntropy();
  const auto threshold = static_cast<unsigned int>(prebinThreshold);
  result.isPreBinned = threshold != 0 && result.numDistinct > threshold;
  const std::vector<std::vector<double>>& counts = from.GetCellCounts();
  if (counts.empty() || counts.front().empty()) return result;  // nothing was binned
  result.bins = EmptyBins(result.cuts);
  for (std::size_t b = 0; b < counts.size(); ++b) {
    const std::vector<double>& row = counts[b];  // weight, then weight per category
    Bin& bin = result.bins.at(b);
    bin.count.weight = row.at(0);
    // Categories seen without a value of this attribute may lie beyond the row.
    for (const std::size_t c : categoryOrder) {
      bin.categories.emplace_back().weight = c + 1 < row.size() ? row[c + 1] : 0.0;
    }
  }
  return result;
}

BinnedAttribute CollectResult(const BINAttributeResults& from, const BINVarList& list) {
  BinnedAttribute result = CollectCommon(from, list);
  const std::vector<double>& counts = from.GetCellCounts();
  if (counts.empty()) return result;  // nothing was binned
  result.bins = EmptyBins(result.cuts);
  for (std::size_t b = 0; b < result.bins.size(); ++b) {
    Bin& bin = result.bins[b];
    if (b < counts.size()) {
      bin.count.weight = counts[b];
    } else if (bin.lower >= result.maximum) {
      bin.count.weight = 0.0;  // the library counts no bin above a cut at the maximum
    }
  }
  return result;
}

std::vector<std::string> CategoriesOf(const BINVarList& list, int index) {
  const auto* const encoder = dynamic_cast<const BINStringEncoder*>(list.GetEncoderAt(index));
  std::vector<std::string> categories;
  categories.reserve(static_cast<std::size_t>(encoder->GetNumberOfCategories()));
  for (int code = 0; code < encoder->GetNumberOfCategories(); ++code) {
    categories.push_back(encoder->Decode(code));
  }
  return categories;
}

}  // namespace TQTool
