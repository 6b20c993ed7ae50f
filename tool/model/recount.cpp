#include "model/recount.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace TQTool {
namespace {

// The sum of two numbers of which either may not be known.
double Sum(double a, double b) {
  return a == TQMV::gMissingValue || b == TQMV::gMissingValue ? TQMV::gMissingValue : a + b;
}

}  // namespace

Count Sum(const Count& a, const Count& b) { return {Sum(a.weight, b.weight), Sum(a.rows, b.rows)}; }

Bin Sum(const Bin& a, const Bin& b) {
  Bin sum = {std::min(a.lower, b.lower), std::max(a.upper, b.upper), Sum(a.count, b.count), {}};
  for (std::size_t c = 0; c < a.categories.size(); ++c) {
    sum.categories.push_back(Sum(a.categories[c], b.categories.at(c)));
  }
  return sum;
}

Count MissingOf(const BinnedAttribute& attribute) {
  const auto less = [](double all, double part) {
    return all == TQMV::gMissingValue || part == TQMV::gMissingValue ? TQMV::gMissingValue
                                                                     : all - part;
  };
  return {less(attribute.total.weight, attribute.valid.weight),
          less(attribute.total.rows, attribute.valid.rows)};
}

bool FitCuts(const std::vector<Bin>& bins, const std::vector<double>& cuts) {
  const std::vector<Bin> wanted = EmptyBins(cuts);
  return std::equal(
      bins.begin(), bins.end(), wanted.begin(), wanted.end(),
      [](const Bin& a, const Bin& b) { return a.lower == b.lower && a.upper == b.upper; });
}

std::vector<Bin> MergeBins(const std::vector<Bin>& counted, const std::vector<double>& cuts) {
  std::vector<Bin> bins = EmptyBins(cuts);
  auto first = counted.begin();  // both ascend
  for (Bin& bin : bins) {
    first =
        std::find_if(first, counted.end(), [&](const Bin& one) { return one.lower >= bin.lower; });
    const auto last =
        std::find_if(first, counted.end(), [&](const Bin& one) { return one.upper >= bin.upper; });
    if (!counted.empty()) bin.categories.resize(counted.front().categories.size());
    if (last == counted.end() || first->lower != bin.lower || last->upper != bin.upper) continue;
    bin = std::accumulate(first + 1, last + 1, *first,
                          [](const Bin& sum, const Bin& one) { return Sum(sum, one); });
  }
  return bins;
}

}  // namespace TQTool
