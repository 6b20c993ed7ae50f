#include "report/shownbins.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include <fmt/format.h>

#include "model/recount.h"

namespace TQTool {
namespace {

// Joins neighbours, so many to a bin.
void JoinNeighbours(BinnedAttribute& attribute, std::size_t number) {
  std::vector<double> cuts;
  for (std::size_t c = number - 1; c < attribute.cuts.size(); c += number) {
    cuts.push_back(attribute.cuts[c]);
  }
  attribute.bins = MergeBins(attribute.bins, cuts);
  attribute.cuts = std::move(cuts);
  attribute.labels.clear();
}

double TotalWeight(const BinnedAttribute& attribute, std::size_t category) {
  Count total = {0.0, 0.0};
  for (const Bin& bin : attribute.bins) total = Sum(total, bin.categories.at(category));
  return total.weight;
}

// The most frequent categories, in their own order.
std::vector<std::size_t> MostFrequent(const BinnedAttribute& attribute, std::size_t categories,
                                      std::size_t number) {
  std::vector<double> totals;
  for (std::size_t c = 0; c < categories; ++c) totals.push_back(TotalWeight(attribute, c));
  std::vector<std::size_t> order(categories);
  std::iota(order.begin(), order.end(), 0U);
  std::stable_sort(order.begin(), order.end(),
                   [&totals](std::size_t a, std::size_t b) { return totals[a] > totals[b]; });
  order.resize(number);
  std::sort(order.begin(), order.end());
  return order;
}

// The counts of the kept categories, and behind them what the others hold together.
std::vector<Count> SumUp(const std::vector<Count>& counts, const std::vector<std::size_t>& kept) {
  std::vector<Count> result;
  result.reserve(kMaxCategories);
  for (const std::size_t c : kept) result.push_back(counts.at(c));
  Count others = {0.0, 0.0};
  for (std::size_t c = 0; c < counts.size(); ++c) {
    if (!std::binary_search(kept.begin(), kept.end(), c)) others = Sum(others, counts[c]);
  }
  result.push_back(others);
  return result;
}

void SumUpCategories(ShownBins& shown) {
  const std::size_t number = shown.categories.size();
  const std::vector<std::size_t> kept = MostFrequent(shown.attribute, number, kMaxCategories - 1);
  for (Bin& bin : shown.attribute.bins) bin.categories = SumUp(bin.categories, kept);
  std::vector<std::string> names;
  names.reserve(kMaxCategories);
  for (const std::size_t c : kept) names.push_back(shown.categories[c]);
  shown.summedUp = number - kept.size();
  names.push_back(fmt::format("{} others", shown.summedUp));
  shown.categories = std::move(names);
}

}  // namespace

double ShownBins::TotalOf(std::size_t category) const { return TotalWeight(attribute, category); }

ShownBins Condense(const BinnedAttribute& attribute, const Target* target, std::size_t maxBins) {
  ShownBins shown;
  shown.attribute = attribute;
  shown.joined = std::max<std::size_t>(1, (attribute.bins.size() + maxBins - 1) / maxBins);
  if (shown.joined > 1) JoinNeighbours(shown.attribute, shown.joined);
  if (target == nullptr) return shown;
  shown.categories = target->categories;
  if (shown.categories.size() > kMaxCategories) SumUpCategories(shown);
  return shown;
}

}  // namespace TQTool
