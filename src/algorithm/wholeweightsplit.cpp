#include "algorithm/wholeweightsplit.h"

#include <algorithm>
#include <limits>
#include <map>
#include <span>
#include <utility>

#include "algorithm/entropykernel.h"

namespace TQBinning {

namespace {

double Exact(std::uint64_t weight) { return static_cast<double>(weight); }

// Class counts as the entropy kernel has them: the total, then the weight per class.
std::vector<double> ClassCounts(std::span<const std::uint64_t> weights) {
  std::vector<double> counts{0.0};
  for (const std::uint64_t weight : weights) {
    counts.push_back(Exact(weight));
    counts[0] += Exact(weight);
  }
  return counts;
}

std::vector<std::uint64_t> Difference(std::span<const std::uint64_t> all,
                                      std::span<const std::uint64_t> part) {
  std::vector<std::uint64_t> rest(all.begin(), all.end());
  for (std::size_t c = 0; c < rest.size(); ++c) rest[c] -= part[c];
  return rest;
}

// The sum over the parts of a split that falls and rises with its entropy: n log n of
// both totals less that of every class in either part.
template <typename Lookup>
class SplitSum {
 public:
  SplitSum(Lookup nLogN, std::span<const std::uint64_t> weights) : fNLogN(nLogN) {
    for (const std::uint64_t weight : weights) fClasses.push_back({weight, 0, 0});
    for (const std::uint64_t weight : weights) fTotal += weight;
  }

  // The split with these class weights on the left.
  void SetLeft(std::span<const std::uint64_t> weights) {
    fLeft = 0;
    fOfClasses = 0;
    for (std::size_t c = 0; c < fClasses.size(); ++c) {
      fClasses[c].left = 0;
      fClasses[c].sum = 0;
      MoveToTheLeft(c, weights[c]);
    }
  }

  void MoveToTheLeft(std::size_t c, std::uint64_t weight) {
    Class& moved = fClasses[c];
    moved.left += weight;
    fLeft += weight;
    const std::int64_t sum = fNLogN(moved.left) + fNLogN(moved.total - moved.left);
    fOfClasses += sum - moved.sum;
    moved.sum = sum;
  }

  std::int64_t Value() const { return fNLogN(fLeft) + fNLogN(fTotal - fLeft) - fOfClasses; }

  // The least of the splits that have moved all or nothing of each class, from class c on.
  std::int64_t LeastAtCorners(std::span<const std::uint64_t> moves, std::size_t c = 0) {
    if (c == moves.size()) return Value();
    const std::int64_t least = LeastAtCorners(moves, c + 1);
    if (moves[c] == 0) return least;
    MoveToTheLeft(c, moves[c]);
    const std::int64_t leastMoved = LeastAtCorners(moves, c + 1);
    MoveToTheLeft(c, -moves[c]);  // back
    return std::min(least, leastMoved);
  }

 private:
  struct Class {
    std::uint64_t total;
    std::uint64_t left;
    std::int64_t sum;  // of its two parts
  };

  Lookup fNLogN;
  std::vector<Class> fClasses;
  std::uint64_t fTotal = 0;
  std::uint64_t fLeft = 0;
  std::int64_t fOfClasses = 0;
};

}  // namespace

// Finds the positions of one interval that can have the least split entropy.  Stretches of
// rows that cannot hold one are not looked into.
template <typename Lookup>
class WholeWeightSplit::Search {
 public:
  Search(const WholeWeightRows& rows, const Interval& interval, Lookup nLogN,
         std::int64_t tolerance)
      : fRows(rows),
        fInterval(interval),
        fTolerance(tolerance),
        fSum(nLogN, interval.weights),
        fLeast(std::numeric_limits<std::int64_t>::max() - 2 * tolerance) {}

  // Ascending by position.
  std::vector<Candidate> Run() {
    BoundStretches();
    const auto best =
        std::min_element(fStretches.begin(), fStretches.end(),
                         [](const Stretch& a, const Stretch& b) { return a.bound < b.bound; });
    // The most promising one first: most others then are beyond what can be the least.
    Scan(*best);
    for (auto stretch = fStretches.begin(); stretch != fStretches.end(); ++stretch) {
      if (stretch != best && stretch->bound <= fLeast + 2 * fTolerance) Scan(*stretch);
    }
    std::erase_if(fCandidates, [this](const Candidate& candidate) {
      return candidate.sum > fLeast + fTolerance;
    });
    std::sort(fCandidates.begin(), fCandidates.end(),
              [](const Candidate& a, const Candidate& b) { return a.position < b.position; });
    return std::move(fCandidates);
  }

 private:
  // The corners of so many classes take a sixth of the moves that the rows of a stretch
  // take, and nearly twice as much with each class more.
  static constexpr std::size_t kMostClasses = 6;

  // Rows first..last, of which no position has a sum less than the bound, but for rounding.
  struct Stretch {
    int first;
    int last;
    std::int64_t bound;
  };

  // The class weights between the interval's first row and `row`.
  void SumLeftOf(int row, Weights& weights) {
    fRows.SumBefore(row, weights);
    for (std::size_t c = 0; c < weights.size(); ++c) weights[c] -= fBefore[c];
  }

  void BoundStretches() {
    fRows.SumBefore(fInterval.first, fBefore);
    const int length = fRows.RowsInStretch();
    if (fRows.Classes() > kMostClasses || fInterval.last - fInterval.first < length) {
      fStretches.push_back({fInterval.first, fInterval.last, 0});
      return;
    }
    Weights left(fRows.Classes(), 0);
    Weights leftAtEnd;
    for (int first = fInterval.first; first <= fInterval.last;) {
      const int end = std::min((first / length + 1) * length, fInterval.last + 1);
      SumLeftOf(end, leftAtEnd);
      fSum.SetLeft(left);
      fStretches.push_back({first, end - 1, fSum.LeastAtCorners(Difference(leftAtEnd, left))});
      left.swap(leftAtEnd);
      first = end;
    }
  }

  void MoveRow(int row) {
    const std::size_t end = fRows.EndEntryOf(row);
    for (std::size_t entry = fRows.FirstEntryOf(row); entry < end; ++entry) {
      fSum.MoveToTheLeft(fRows.EntryClass(entry), fRows.EntryWeight(entry));
    }
  }

  void Scan(const Stretch& stretch) {
    Weights left;
    SumLeftOf(stretch.first, left);
    fSum.SetLeft(left);
    bool followsBoundary = stretch.first > fInterval.first && fRows.IsBoundary(stretch.first - 1);
    for (int p = stretch.first; p <= stretch.last; ++p) {
      const bool isBoundary = p < fInterval.last && fRows.IsBoundary(p);
      const bool isEvaluated = isBoundary || followsBoundary;
      followsBoundary = isBoundary;
      if (fRows.IsRightClosed()) MoveRow(p);
      const std::int64_t value = fSum.Value();
      if (static_cast<int>(isEvaluated) & static_cast<int>(value <= fLeast + fTolerance)) {
        if (value < fLeast - fTolerance) fCandidates.clear();
        fLeast = std::min(fLeast, value);
        fCandidates.push_back({p, value});
      }
      if (!fRows.IsRightClosed()) MoveRow(p);
    }
  }

  const WholeWeightRows& fRows;
  const Interval& fInterval;
  std::int64_t fTolerance;
  SplitSum<Lookup> fSum;
  std::int64_t fLeast;  // so far; at first the most that tolerances can be added to
  Weights fBefore;
  std::vector<Stretch> fStretches;
  std::vector<Candidate> fCandidates;
};

std::vector<WholeWeightSplit::Candidate> WholeWeightSplit::FindCandidates(
    const Interval& interval) const {
  std::uint64_t total = 0;
  for (const std::uint64_t weight : interval.weights) total += weight;
  const std::int64_t tolerance = fNLogN.ToleranceFor(total, fRows.Classes());
  // A table that reaches far enough needs no look at where it ends.
  if (const std::int64_t* const table = fNLogN.TableUpTo(total)) {
    const auto lookup = [table](std::uint64_t n) { return table[n]; };
    return Search(fRows, interval, lookup, tolerance).Run();
  }
  const auto compute = [this](std::uint64_t n) { return fNLogN(n); };
  return Search(fRows, interval, compute, tolerance).Run();
}

WholeWeightSplit::Weights WholeWeightSplit::SumRows(int first, int last) const {
  Weights before;
  Weights weights;
  fRows.SumBefore(first, before);
  fRows.SumBefore(std::max(first, last + 1), weights);
  return Difference(weights, before);
}

// The best position by the plain formula, and the weights of its left part.
int WholeWeightSplit::ChooseCandidate(const Interval& interval,
                                      const std::vector<Candidate>& candidates,
                                      Weights& left) const {
  if (candidates.size() < 2) {
    // Nothing was evaluated: position 0, in this interval or not.
    const int only = candidates.empty() ? 0 : candidates.front().position;
    left = SumRows(interval.first, LastLeftRow(only));
    return only;
  }
  int best = 0;
  double least = 0.0;
  for (const Candidate& candidate : candidates) {
    Weights counts = SumRows(interval.first, LastLeftRow(candidate.position));
    const double entropy =
        SplitEntropy(ClassCounts(counts), ClassCounts(Difference(interval.weights, counts)));
    const bool isFirst = &candidate == &candidates.front();
    if (isFirst || entropy < least) {  // strict: the leftmost of equals stays
      best = candidate.position;
      least = entropy;
      left = std::move(counts);
    }
  }
  return best;
}

WholeWeightSplit::Bins WholeWeightSplit::Split() const {
  Bins bins;
  std::map<int, Interval> leaves;  // what is not split any further, by first row
  std::vector<Interval> pending;   // a stack
  const int lastRow = fRows.Count() - 1;
  pending.push_back({0, lastRow, SumRows(0, lastRow)});
  while (!pending.empty()) {
    Interval interval = std::move(pending.back());
    pending.pop_back();
    bool isSplit = false;
    if (interval.last > interval.first) {
      Weights left;
      const int position = ChooseCandidate(interval, FindCandidates(interval), left);
      Weights right = Difference(interval.weights, left);
      const std::vector<double> whole = ClassCounts(interval.weights);
      if (IsWorthSplitting(ClassCounts(left), ClassCounts(right), Entropy(whole), whole[0])) {
        bins.cutRows.insert(position);
        const int lastLeft = LastLeftRow(position);
        isSplit = interval.first <= lastLeft && lastLeft < interval.last;  // separates something
        if (isSplit) {
          pending.push_back({lastLeft + 1, interval.last, std::move(right)});
          pending.push_back({interval.first, lastLeft, std::move(left)});
        }
      }
    }
    if (!isSplit) leaves.emplace(interval.first, std::move(interval));
  }

  int first = 0;
  const auto addBin = [&](int last) {
    const auto leaf = leaves.find(first);
    const bool isLeaf = leaf != leaves.end() && leaf->second.last == last;
    const std::vector<double> counts =
        ClassCounts(isLeaf ? leaf->second.weights : SumRows(first, last));
    bins.cellCounts.insert(bins.cellCounts.end(), counts.begin(), counts.end());
    first = last + 1;
  };
  for (const int row : bins.cutRows) addBin(LastLeftRow(row));
  addBin(lastRow);
  return bins;
}

}  // namespace TQBinning
