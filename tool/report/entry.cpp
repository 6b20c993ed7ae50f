#include "report/entry.h"

#include <algorithm>
#include <limits>

#include <fmt/format.h>

namespace TQTool {
namespace {

// By what entries of one target are ranked; less than any other when it is not known.
double RankingOf(const ReportEntry& entry) {
  const double unknown = -std::numeric_limits<double>::infinity();
  if (entry.attribute->cuts.empty()) return unknown;
  if (entry.measures.has_value()) return entry.measures->informationGain;
  if (entry.target != nullptr) return unknown;
  const double share = FullestShareOf(*entry.attribute);
  return share == TQMV::gMissingValue ? unknown : share;
}

}  // namespace

double FullestShareOf(const BinnedAttribute& attribute) {
  double most = 0.0;
  for (const Bin& bin : attribute.bins) {
    if (bin.count.weight == TQMV::gMissingValue) return TQMV::gMissingValue;
    most = std::max(most, bin.count.weight);
  }
  const double whole = attribute.valid.weight;
  return whole > 0.0 ? most / whole : TQMV::gMissingValue;
}

std::vector<ReportEntry> RankedEntries(const Model& model) {
  std::vector<ReportEntry> entries;
  entries.reserve(model.attributes.size());
  for (const BinnedAttribute& attribute : model.attributes) {
    entries.push_back({&attribute, model.TargetOf(attribute),
                       fmt::format("a{}", entries.size() + 1), MeasuresOf(attribute)});
  }
  std::stable_sort(entries.begin(), entries.end(), [](const ReportEntry& a, const ReportEntry& b) {
    if (a.attribute->target != b.attribute->target)
      return a.attribute->target < b.attribute->target;
    return RankingOf(a) > RankingOf(b);
  });
  return entries;
}

}  // namespace TQTool
