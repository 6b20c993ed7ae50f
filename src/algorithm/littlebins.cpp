#include "algorithm/littlebins.h"

#include <algorithm>
#include <span>

#include "algorithm/entropykernel.h"

namespace TQBinning {

namespace {

// Bins' class counts, one after another.
class Bins {
 public:
  Bins(std::vector<double>& cells, std::size_t width)
      : fCells(cells), fWidth(width), fCount(cells.size() / width) {}

  std::size_t Count() const { return fCount; }
  double Weight(std::size_t bin) const { return fCells[bin * fWidth]; }
  std::span<double> At(std::size_t bin) const {
    return std::span(fCells).subspan(bin * fWidth, fWidth);
  }
  void Move(std::size_t from, std::size_t to) {
    std::copy_n(At(from).begin(), fWidth, At(to).begin());
  }
  void Add(std::size_t from, std::size_t to) {
    for (std::size_t j = 0; j < fWidth; ++j) At(to)[j] += At(from)[j];
  }
  void Truncate(std::size_t count) { fCells.resize(count * fWidth); }

 private:
  std::vector<double>& fCells;
  std::size_t fWidth;
  std::size_t fCount;
};

std::vector<double> Sum(std::span<const double> a, std::span<const double> b) {
  std::vector<double> sum(a.begin(), a.end());
  for (std::size_t j = 0; j < sum.size(); ++j) sum[j] += b[j];
  return sum;
}

// The cut to remove for a small bin: the one on its left, unless joining the right
// neighbour leaves less entropy (or the comparison is unordered).
std::size_t CutToRemove(const Bins& bins, std::size_t bin) {
  const double leftMerge = SplitEntropy(Sum(bins.At(bin - 1), bins.At(bin)), bins.At(bin + 1));
  const double rightMerge = SplitEntropy(Sum(bins.At(bin), bins.At(bin + 1)), bins.At(bin - 1));
  return rightMerge >= leftMerge ? bin - 1 : bin;
}

// Decided on the bins as they are before any merge, so that two small bins side by
// side may both be merged.
std::vector<std::size_t> CutsToRemove(const Bins& bins, double threshold) {
  std::vector<std::size_t> removals;
  for (std::size_t bin = 1; bin + 1 < bins.Count(); ++bin) {
    const double lighter = std::min(bins.Weight(bin - 1), bins.Weight(bin + 1));
    if (bins.Weight(bin) < threshold * lighter) removals.push_back(CutToRemove(bins, bin));
  }
  return removals;
}

}  // namespace

void MergeLittleBins(std::vector<double>& cellCounts, std::set<double>& cuts, std::size_t classes,
                     double threshold) {
  Bins bins(cellCounts, classes + 1);
  const std::vector<std::size_t> removals = CutsToRemove(bins, threshold);

  // The merged bins are a stack in place: positions below `kept` are done, `next` is
  // the first bin that has not been looked at, and every merge joins the top two.
  std::vector<double> keptCuts;
  std::size_t kept = 0;
  std::size_t next = 0;
  auto cut = cuts.begin();
  const auto keepNext = [&] {
    if (next > 0) keptCuts.push_back(*cut++);
    bins.Move(next++, kept++);
  };
  for (std::size_t merges = 0; merges < removals.size(); ++merges) {
    // Each earlier merge has moved the later bins and cuts down by one place.
    const std::size_t position = removals[merges] - merges;
    while (kept < position + 2) keepNext();
    bins.Add(kept - 1, kept - 2);
    --kept;
    keptCuts.pop_back();
  }
  while (next < bins.Count()) keepNext();
  bins.Truncate(kept);
  cuts = std::set<double>(keptCuts.begin(), keptCuts.end());
}

}  // namespace TQBinning
