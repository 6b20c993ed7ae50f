#include "run/resultcollector.h"

#include <cstddef>
#include <limits>
#include <utility>

namespace TQTool {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// What the results of both methods have.
template <class LibraryResult>
AttributeResult CollectCommon(const LibraryResult& from, const BINVarList& list) {
  AttributeResult result;
  result.name = list.GetVarAt(from.GetAttributeIndex())->GetVariableName();
  result.status = from.GetStatus();
  result.cuts = from.GetCutPoints();
  result.numDistinct = from.GetNDistinctValues();
  result.weight = from.GetTotalWeight();
  result.weightWithMissing = from.GetTotalWeightWithMissing();
  result.minimum = from.GetMinimum();
  result.maximum = from.GetMaximum();
  return result;
}

// The ends of bin `b`, whose weights are still to be filled in.
Bin MakeBin(const std::vector<double>& cuts, std::size_t b) {
  double lower = -kInfinity;
  double upper = kInfinity;
  if (b > 0) lower = cuts[b - 1];
  if (b < cuts.size()) upper = cuts[b];
  return {lower, upper, TQMV::gMissingValue, {}};
}

}  // namespace

AttributeResult CollectResult(const BINAttributeTargetResults& from, const BINVarList& list,
                              const std::vector<std::size_t>& categoryOrder, int prebinThreshold) {
  AttributeResult result = CollectCommon(from, list);
  result.entropy = from.GetModelEntropy();
  const auto threshold = static_cast<unsigned int>(prebinThreshold);
  result.isPreBinned = threshold != 0 && result.numDistinct > threshold;
  const std::vector<std::vector<double>>& counts = from.GetCellCounts();
  for (std::size_t b = 0; b < counts.size(); ++b) {
    const std::vector<double>& row = counts[b];  // weight, then weight per category
    if (row.empty()) continue;                   // nothing was binned
    Bin bin = MakeBin(result.cuts, b);
    bin.weight = row[0];
    // Categories seen without a value of this attribute may lie beyond the row.
    for (const std::size_t c : categoryOrder) {
      bin.classWeights.push_back(c + 1 < row.size() ? row[c + 1] : 0.0);
    }
    result.bins.push_back(std::move(bin));
  }
  return result;
}

AttributeResult CollectResult(const BINAttributeResults& from, const BINVarList& list) {
  AttributeResult result = CollectCommon(from, list);
  const std::vector<double>& counts = from.GetCellCounts();
  if (counts.empty()) return result;  // nothing was binned
  for (std::size_t b = 0; b <= result.cuts.size(); ++b) {
    Bin bin = MakeBin(result.cuts, b);
    if (b < counts.size()) {
      bin.weight = counts[b];
    } else if (bin.lower >= result.maximum) {
      bin.weight = 0.0;  // the library counts no bin above a cut at the maximum
    }
    result.bins.push_back(std::move(bin));
  }
  return result;
}

std::vector<std::string> CategoriesOf(const BINVarList& list) {
  const auto* const encoder =
      dynamic_cast<const BINStringEncoder*>(list.GetEncoderAt(list.GetTargetIndex()));
  std::vector<std::string> categories;
  categories.reserve(static_cast<std::size_t>(encoder->GetNumberOfCategories()));
  for (int code = 0; code < encoder->GetNumberOfCategories(); ++code) {
    categories.push_back(encoder->Decode(code));
  }
  return categories;
}

}  // namespace TQTool
