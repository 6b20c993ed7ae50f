#include "reference/reference.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "reference/words.h"

// Entropy, and the splits that separate a target's categories.
namespace reference {

double Entropy(const std::vector<double>& classCounts) {
  if (classCounts.size() < 2 || classCounts[0] == 0.0) return 0.0;
  double entropy = 0.0;
  for (std::size_t j = 1; j < classCounts.size(); ++j) {
    const double p = classCounts[j] / classCounts[0];
    if (p != 0.0) entropy -= p * Log2(p);
  }
  return entropy;
}

double SplitEntropy(const std::vector<double>& left, const std::vector<double>& right) {
  return (left[0] * Entropy(left) + right[0] * Entropy(right)) / (left[0] + right[0]);
}

namespace {

int CountCategoriesPresent(const std::vector<double>& classCounts) {
  int count = 0;
  for (std::size_t j = 1; j < classCounts.size(); ++j) {
    if (classCounts[j] != 0.0) ++count;
  }
  return count;
}

// A table of class weights, row by row.
class Table {
 public:
  Table(const std::vector<double>& counts, std::size_t categories)
      : fCounts(counts), fCategories(categories) {}

  std::size_t Categories() const { return fCategories; }

  double At(int row, std::size_t category) const {
    return fCounts.at(Position(row) * fCategories + category);
  }

  std::vector<double> NoCounts() const { return std::vector<double>(fCategories + 1, 0.0); }

  // The class counts of rows first to last, entry 0 their sum.
  std::vector<double> Sum(int first, int last) const {
    std::vector<double> sum = NoCounts();
    for (int row = first; row <= last; ++row) {
      for (std::size_t j = 0; j < fCategories; ++j) sum[j + 1] += At(row, j);
    }
    SumUp(sum);
    return sum;
  }

  static void SumUp(std::vector<double>& classCounts) {
    classCounts[0] = 0.0;
    for (std::size_t j = 1; j < classCounts.size(); ++j) {
      classCounts[0] += classCounts[j];
    }
  }

  // Takes a row from `right` and gives it to `left`.
  void MoveRow(int row, std::vector<double>& left, std::vector<double>& right) const {
    for (std::size_t j = 0; j < fCategories; ++j) {
      const double weight = At(row, j);
      left[j + 1] += weight;
      left[0] += weight;
      right[j + 1] -= weight;
      right[0] -= weight;
    }
  }

  // The one category present in the row; nothing if there are none or several.
  std::optional<std::size_t> OnlyCategory(int row) const {
    std::optional<std::size_t> only;
    for (std::size_t j = 0; j < fCategories; ++j) {
      if (At(row, j) == 0.0) continue;
      if (only) return std::nullopt;
      only = j;
    }
    return only;
  }

  // Two rows that are pure in the same category have no boundary between them.
  bool IsBoundary(int row, int last) const {
    if (row >= last) return false;
    const std::optional<std::size_t> here = OnlyCategory(row);
    return !here || here != OnlyCategory(row + 1);
  }

 private:
  const std::vector<double>& fCounts;
  const std::size_t fCategories;
};

std::vector<double> Difference(const std::vector<double>& all, const std::vector<double>& part) {
  std::vector<double> rest(all.size(), 0.0);
  for (std::size_t j = 1; j < all.size(); ++j) rest[j] = all[j] - part[j];
  Table::SumUp(rest);
  return rest;
}

// The last row on the left of a cut at `position`.
int LastLeftRow(int position, bool rightClosed) { return rightClosed ? position : position - 1; }

// The leftmost position of least entropy; 0 when none was worth a look.
int BestPosition(const Table& table, int first, int last, bool rightClosed) {
  std::vector<double> left = table.NoCounts();
  std::vector<double> right = table.Sum(first, last);
  int nextRow = first;  // the first row still in `right`
  std::optional<double> best;
  int bestPosition = 0;
  bool previousIsBoundary = false;
  for (int position = first; position <= last; ++position) {
    const bool boundary = table.IsBoundary(position, last);
    // With bins closed on the left, the split between two rows is made at the
    // second one: hence one position more after each boundary.
    const bool evaluate = boundary || previousIsBoundary;
    previousIsBoundary = boundary;
    if (!evaluate) continue;
    for (; nextRow <= LastLeftRow(position, rightClosed); ++nextRow) {
      table.MoveRow(nextRow, left, right);
    }
    const double entropy = SplitEntropy(left, right);
    if (!best || entropy < *best) {
      best = entropy;
      bestPosition = position;
    }
  }
  return bestPosition;
}

}  // namespace

double Delta(const std::vector<double>& left, const std::vector<double>& right, double entropyAll) {
  const double leftCategories = CountCategoriesPresent(left);
  const double rightCategories = CountCategoriesPresent(right);
  const double categories = leftCategories + rightCategories;
  return Log2(std::pow(3.0, categories) - 2.0) -
         (categories * entropyAll - leftCategories * Entropy(left) -
          rightCategories * Entropy(right));
}

Split BestSplit(const std::vector<double>& counts, std::size_t categories, int first, int last,
                bool rightClosed) {
  const Table table(counts, categories);
  Split split;
  split.position = BestPosition(table, first, last, rightClosed);

  // Built anew, from the shorter side, so that no error of the many moves is
  // left in the counts.
  const std::vector<double> all = table.Sum(first, last);
  const int lastLeft = LastLeftRow(split.position, rightClosed);
  const double middle = (static_cast<double>(first) + last) * 0.5;
  if (middle < split.position) {
    split.right = table.Sum(lastLeft + 1, last);
    split.left = Difference(all, split.right);
  } else {
    split.left = table.Sum(first, lastLeft);
    split.right = Difference(all, split.left);
  }
  return split;
}

// ------------------------------------------------------------------------ MDLP

namespace {

void InsertCut(std::vector<double>& cuts, double cut) {
  const auto place = std::lower_bound(cuts.begin(), cuts.end(), cut, NumberLess);
  const bool present = place != cuts.end() && !NumberLess(cut, *place);
  if (!present) cuts.insert(place, cut);
}

// A comparison with NaN rejects, and so does equality.
bool IsAccepted(const Split& split, const std::vector<double>& all) {
  const double weight = all[0];
  const double entropyAll = Entropy(all);
  const double gain = entropyAll - SplitEntropy(split.left, split.right);
  const double delta = Delta(split.left, split.right, entropyAll);
  return gain > delta / weight + Log2(weight - 1.0) / weight;
}

}  // namespace

Status MdlpCut(const std::vector<double>& values, const std::vector<double>& counts,
               std::size_t categories, int first, int last, bool rightClosed,
               std::vector<double>& cuts) {
  if (categories == 0 || counts.size() / categories != values.size()) {
    return Error(kBadTable);
  }
  const Table table(counts, categories);
  std::vector<std::pair<int, int>> intervals = {{first, last}};
  while (!intervals.empty()) {
    const auto [low, high] = intervals.back();
    intervals.pop_back();
    if (high - low < 1) continue;
    const Split split = BestSplit(counts, categories, low, high, rightClosed);
    if (!IsAccepted(split, table.Sum(low, high))) continue;
    InsertCut(cuts, values[Position(split.position)]);
    const int lastLeft = LastLeftRow(split.position, rightClosed);
    // A side without rows: splitting on would never end.
    if (lastLeft < low || lastLeft >= high) continue;
    intervals.push_back({lastLeft + 1, high});
    intervals.push_back({low, lastLeft});
  }
  return Status();
}

Status CreateBinTable(std::span<const Tuple> tuples, const std::vector<double>& borders,
                      std::size_t categories, bool rightClosed, std::vector<double>& table) {
  if (borders.empty()) return Warning(kBadTable);
  const std::size_t bins = borders.size() - 1;
  table.assign(bins * categories, 0.0);
  std::vector<double> row(categories, 0.0);
  std::size_t bin = 1;  // counted from 1: border `bin` ends it

  const auto storeRow = [&] {
    const std::size_t start = (bin - 1) * categories;
    for (std::size_t j = 0; j < categories; ++j) table[start + j] = row[j];
    row.assign(categories, 0.0);
  };
  const auto belongs = [&](double value) {
    return rightClosed ? value <= borders[bin] : value < borders[bin];
  };

  for (const Tuple& tuple : tuples) {
    while (bin <= bins && !belongs(tuple.value)) {
      storeRow();
      ++bin;
    }
    if (bin > bins) break;
    row.at(Position(tuple.target)) += tuple.weight;
  }
  if (bin != bins) return Warning(kBadTable);
  storeRow();
  return Status();
}

namespace {

// The class counts of one bin.
std::vector<double> BinAt(const std::vector<double>& cellCounts, std::size_t categories,
                          std::size_t bin) {
  const auto width = static_cast<std::ptrdiff_t>(categories + 1);
  const auto start = cellCounts.begin() + static_cast<std::ptrdiff_t>(bin) * width;
  return std::vector<double>(start, start + width);
}

std::vector<double> Together(std::vector<double> a, const std::vector<double>& b) {
  for (std::size_t j = 0; j < a.size(); ++j) a[j] += b[j];
  return a;
}

// The bins to merge with the bin above each, judged before anything is merged.
std::vector<std::size_t> FindMerges(double threshold,
                                    const std::vector<std::vector<double>>& bins) {
  std::vector<std::size_t> merges;
  for (std::size_t b = 1; b + 1 < bins.size(); ++b) {
    const std::vector<double>& before = bins[b - 1];
    const std::vector<double>& after = bins[b + 1];
    const double lighter = after[0] < before[0] ? after[0] : before[0];
    if (!(bins[b][0] < threshold * lighter)) continue;
    const double withLeft = SplitEntropy(Together(before, bins[b]), after);
    const double withRight = SplitEntropy(Together(bins[b], after), before);
    // A tie goes to the left, a comparison with NaN to the right.
    merges.push_back(withLeft <= withRight ? b - 1 : b);
  }
  return merges;
}

}  // namespace

void MergeSmallBins(double threshold, std::size_t categories, std::vector<double>& cellCounts,
                    std::vector<double>& cuts) {
  std::vector<std::vector<double>> bins;
  for (std::size_t b = 0; b <= cuts.size(); ++b) {
    bins.push_back(BinAt(cellCounts, categories, b));
  }
  // Whether the lower bin is given to the upper or the other way round, the two
  // leave one bin with both their weights in the place of the lower one.
  std::size_t merged = 0;
  for (const std::size_t found : FindMerges(threshold, bins)) {
    const std::size_t lower = found - merged;
    const auto offset = static_cast<std::ptrdiff_t>(lower);
    bins[lower] = Together(bins[lower], bins[lower + 1]);
    bins.erase(bins.begin() + offset + 1);
    cuts.erase(cuts.begin() + offset);
    ++merged;
  }
  cellCounts.clear();
  for (const std::vector<double>& bin : bins) {
    cellCounts.insert(cellCounts.end(), bin.begin(), bin.end());
  }
}

double ModelEntropy(const std::vector<double>& cellCounts, std::size_t categories,
                    double totalWeight) {
  double sum = 0.0;
  const std::size_t bins = cellCounts.size() / (categories + 1);
  for (std::size_t b = 0; b < bins; ++b) {
    const std::vector<double> bin = BinAt(cellCounts, categories, b);
    sum += bin[0] * Entropy(bin);
  }
  return sum / totalWeight;
}

namespace {

// Adds the rows of the table up, from cut to cut.
std::vector<double> CellCounts(const std::vector<double>& values, const std::vector<double>& counts,
                               const std::vector<double>& cuts, std::size_t categories,
                               bool rightClosed) {
  const std::size_t width = categories + 1;
  std::vector<double> cells((cuts.size() + 1) * width, 0.0);
  std::size_t row = 0;
  for (std::size_t bin = 0; bin <= cuts.size(); ++bin) {
    while (row < values.size()) {
      const bool atCut = bin < cuts.size() && values[row] == cuts[bin];
      if (atCut && !rightClosed) break;  // the row opens the next bin
      for (std::size_t j = 0; j < categories; ++j) {
        const double weight = counts[row * categories + j];
        cells[bin * width + j + 1] += weight;
        cells[bin * width] += weight;
      }
      ++row;
      if (atCut) break;
    }
  }
  return cells;
}

MdlpResult MdlpBetween(std::span<const Tuple> tuples, const std::vector<double>& innerBorders,
                       const MdlpOptions& options) {
  MdlpResult result;
  result.modelEntropy = options.missing;

  constexpr double kLargest = std::numeric_limits<double>::max();
  std::vector<double> borders = {-kLargest};
  borders.insert(borders.end(), innerBorders.begin(), innerBorders.end());
  borders.push_back(kLargest);
  std::vector<double> table;
  result.status = CreateBinTable(tuples, borders, options.categories, options.rightClosed, table);
  if (!result.status.IsOk()) return result;

  // A row is known by the border that belongs to it.
  std::vector<double> values = borders;
  if (options.rightClosed) {
    values.erase(values.begin());
  } else {
    values.pop_back();
  }
  const int rows = static_cast<int>(table.size() / options.categories);
  result.status =
      MdlpCut(values, table, options.categories, 0, rows - 1, options.rightClosed, result.cuts);
  if (result.cuts.empty()) result.status = Warning(kNoCutAccepted);
  if (result.status.IsError()) return result;

  result.cellCounts =
      CellCounts(values, table, result.cuts, options.categories, options.rightClosed);
  if (options.smallBinThreshold > 0.0 && result.cuts.size() > 1) {
    MergeSmallBins(options.smallBinThreshold, options.categories, result.cellCounts, result.cuts);
  }
  result.modelEntropy = ModelEntropy(result.cellCounts, options.categories, options.totalWeight);
  return result;
}

}  // namespace

MdlpResult MdlpOverValues(std::span<const Tuple> tuples, const MdlpOptions& options) {
  std::vector<double> distinct = {tuples.front().value};
  for (const Tuple& tuple : tuples.subspan(1)) {
    if (tuple.value != distinct.back()) distinct.push_back(tuple.value);
  }
  if (options.rightClosed) {
    distinct.pop_back();
  } else {
    distinct.erase(distinct.begin());
  }
  return MdlpBetween(tuples, distinct, options);
}

MdlpResult MdlpOverPercentiles(std::span<const Tuple> tuples,
                               const std::vector<double>& percentileCuts,
                               const MdlpOptions& options) {
  std::vector<double> inner = percentileCuts;
  if (!inner.empty()) {
    if (options.rightClosed && inner.back() == tuples.back().value) {
      inner.pop_back();
    } else if (!options.rightClosed && inner.front() == tuples.front().value) {
      inner.erase(inner.begin());
    }
  }
  return MdlpBetween(tuples, inner, options);
}

}  // namespace reference
