#include "algorithm/wholeweightrows.h"

#include <algorithm>
#include <limits>
#include <map>
#include <utility>

#include "algorithm/entropykernel.h"

namespace TQBinning {

namespace {

constexpr double kLowest = std::numeric_limits<double>::lowest();
constexpr double kHighest = std::numeric_limits<double>::max();
constexpr std::uint64_t kLargestExactSum = std::uint64_t{1} << 53;
constexpr std::uint64_t kLargestEntry = std::numeric_limits<std::uint32_t>::max();

bool IsInside(double value, double border, bool rightClosed) {
  return rightClosed ? value <= border : value < border;
}

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
  // Everything on the right.
  SplitSum(Lookup nLogN, std::span<const std::uint64_t> weights) : fNLogN(nLogN) {
    for (const std::uint64_t weight : weights) {
      fClasses.push_back({weight, 0, nLogN(weight)});
      fTotal += weight;
      fOfClasses += nLogN(weight);
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

bool WholeWeightRows::Start(std::span<const BINDataTuple> tuples, std::size_t rows,
                            std::size_t classes, bool rightClosed) {
  // A NaN stands last; a value that no border covers fails here as well.
  if (tuples.empty() || !IsInside(tuples.back().value, kHighest, rightClosed)) return false;
  if (!rightClosed && tuples.front().value <= kLowest) return false;  // stands for the first row
  if (tuples.size() >= kLargestEntry || classes == 0) return false;
  fClasses = classes;
  fRightClosed = rightClosed;
  fTotalWeight = 0;
  const std::size_t entries = std::min(tuples.size(), rows * classes);
  fEntryClasses.clear();
  fEntryClasses.reserve(entries);
  fEntryWeights.clear();
  fEntryWeights.reserve(entries);
  fRowEntries.clear();
  fRowEntries.reserve(rows);
  fRowTuples.clear();
  fRowTuples.reserve(rows);
  fIsBoundary.clear();
  fIsBoundary.reserve(rows);
  fWeightInRow.assign(classes, 0);
  fClassesInRow.clear();
  return true;
}

bool WholeWeightRows::IsCountable(const BINDataTuple& tuple) const {
  return tuple.weight >= 1.0 && tuple.weight <= Exact(kLargestEntry) &&
         Exact(static_cast<std::uint64_t>(tuple.weight)) == tuple.weight && tuple.target < fClasses;
}

// Adds to the row that is being filled; false for what cannot be counted.
bool WholeWeightRows::AddTuple(const BINDataTuple& tuple) {
  if (!IsCountable(tuple)) return false;
  std::uint64_t& weight = fWeightInRow[tuple.target];
  if (weight == 0) fClassesInRow.push_back(tuple.target);
  weight += static_cast<std::uint64_t>(tuple.weight);
  return true;
}

// Makes a row of what has been added since the last one; false when a class of it has
// grown too heavy.
bool WholeWeightRows::AddRow(std::size_t tuples) {
  bool isCountable = true;
  for (const unsigned char c : fClassesInRow) {
    isCountable = AddEntry(c, std::exchange(fWeightInRow[c], 0)) && isCountable;
  }
  fClassesInRow.clear();
  EndRow(tuples, true);
  return isCountable;
}

bool WholeWeightRows::AddEntry(unsigned char target, std::uint64_t weight) {
  fTotalWeight += weight;
  fEntryClasses.push_back(target);
  fEntryWeights.push_back(static_cast<std::uint32_t>(weight));
  return weight <= kLargestEntry;
}

void WholeWeightRows::EndRow(std::size_t tuples, bool isBoundary) {
  fRowEntries.push_back(static_cast<std::uint32_t>(fEntryClasses.size()));
  fRowTuples.push_back(static_cast<std::uint32_t>(tuples));
  fIsBoundary.push_back(isBoundary ? 1 : 0);
}

// Values in a sequence that are pure in one class.  Of the positions inside only one is
// ever looked at, that after the first value (closed on the right) or before the last
// one (open): this value, the edge, is a row of its own, and all others share one.
class WholeWeightRows::Run {
 public:
  explicit Run(WholeWeightRows& rows) : fRows(rows) {}

  // Tuples first..end-1, of one value and of one class.
  void AddValue(unsigned char target, std::uint64_t weight, std::size_t first, std::size_t end) {
    if (fValues > 0 && target != fTarget) Close();
    fTarget = target;
    if (fRows.fRightClosed && fValues > 0) {
      fOthers += weight;
    } else {
      fOthers += std::exchange(fEdge, weight);
      fBorder = fRows.fRightClosed ? end : first;
    }
    fEnd = end;
    ++fValues;
  }

  void Close() {
    if (fValues > 1) AddRow(fRows.fRightClosed ? fEdge : fOthers, fBorder, false);
    if (fValues > 0) AddRow(fRows.fRightClosed && fValues > 1 ? fOthers : fEdge, fEnd, true);
    fValues = 0;
    fEdge = 0;
    fOthers = 0;
  }

  // False once a row has grown too heavy to be counted.
  bool IsCountable() const { return fIsCountable; }

 private:
  void AddRow(std::uint64_t weight, std::size_t end, bool isBoundary) {
    fIsCountable = fRows.AddEntry(fTarget, weight) && fIsCountable;
    fRows.EndRow(end, isBoundary);
  }

  WholeWeightRows& fRows;
  unsigned char fTarget = 0;
  std::size_t fValues = 0;
  std::uint64_t fEdge = 0;
  std::uint64_t fOthers = 0;
  std::size_t fBorder = 0;  // between the tuples of the edge and of the others
  std::size_t fEnd = 0;
  bool fIsCountable = true;
};

bool WholeWeightRows::FillByValue(std::span<const BINDataTuple> tuples, std::size_t distinct,
                                  std::size_t classes, bool rightClosed) {
  if (!Start(tuples, distinct, classes, rightClosed)) return false;
  Run run(*this);
  std::size_t end = 0;
  for (std::size_t first = 0; first < tuples.size(); first = end) {
    const BINDataTuple& tuple = tuples[first];
    end = first + 1;
    if (end == tuples.size() || tuples[end].value != tuple.value) {
      if (!IsCountable(tuple)) return false;
      run.AddValue(tuple.target, static_cast<std::uint64_t>(tuple.weight), first, end);
      continue;
    }
    for (end = first; end < tuples.size() && tuples[end].value == tuple.value; ++end) {
      if (!AddTuple(tuples[end])) return false;
    }
    if (fClassesInRow.size() == 1) {
      run.AddValue(tuple.target, std::exchange(fWeightInRow[tuple.target], 0), first, end);
      fClassesInRow.clear();
    } else {
      run.Close();
      if (!AddRow(end)) return false;
    }
  }
  run.Close();
  return run.IsCountable() && fTotalWeight <= kLargestExactSum;
}

// No boundary: a row and the next are pure in one and the same class.
void WholeWeightRows::FindBoundaries() {
  for (int row = 0; row + 1 < Count(); ++row) {
    const std::size_t entry = FirstEntryOf(row);
    const std::size_t next = EndEntryOf(row);
    fIsBoundary[static_cast<std::size_t>(row)] = next - entry != 1 ||
                                                 EndEntryOf(row + 1) - next != 1 ||
                                                 fEntryClasses[entry] != fEntryClasses[next];
  }
}

bool WholeWeightRows::FillByBorders(std::span<const BINDataTuple> tuples, std::size_t classes,
                                    bool rightClosed, std::span<const double> borders) {
  if (!Start(tuples, borders.size() - 1, classes, rightClosed)) return false;
  std::size_t border = 1;
  for (std::size_t i = 0; i < tuples.size(); ++i) {
    for (; !IsInside(tuples[i].value, borders[border], rightClosed); ++border) {
      if (!AddRow(i)) return false;
    }
    if (!AddTuple(tuples[i])) return false;
  }
  if (border + 1 != borders.size()) return false;  // the tuples do not reach the last bin
  if (!AddRow(tuples.size())) return false;
  FindBoundaries();
  return fTotalWeight <= kLargestExactSum;
}

// The positions that can have the least split entropy, ascending.
template <typename Lookup>
std::vector<WholeWeightRows::Candidate> WholeWeightRows::FindCandidates(
    const Interval& interval, Lookup nLogN, std::int64_t tolerance) const {
  std::vector<Candidate> candidates;
  SplitSum<Lookup> sum(nLogN, interval.weights);
  std::int64_t least = std::numeric_limits<std::int64_t>::max() - tolerance;
  std::size_t entry = FirstEntryOf(interval.first);
  const auto moveRow = [&](int row) {
    for (const std::size_t end = EndEntryOf(row); entry < end; ++entry) {
      sum.MoveToTheLeft(fEntryClasses[entry], fEntryWeights[entry]);
    }
  };
  bool followsBoundary = false;
  for (int p = interval.first; p <= interval.last; ++p) {
    const bool isBoundary = p < interval.last && fIsBoundary[static_cast<std::size_t>(p)] != 0;
    const bool isEvaluated = isBoundary || followsBoundary;
    followsBoundary = isBoundary;
    if (fRightClosed) moveRow(p);
    const std::int64_t value = sum.Value();
    if (static_cast<int>(isEvaluated) & static_cast<int>(value <= least + tolerance)) {
      if (value < least - tolerance) candidates.clear();
      least = std::min(least, value);
      candidates.push_back({p, value});
    }
    if (!fRightClosed) moveRow(p);
  }
  std::erase_if(candidates,
                [&](const Candidate& candidate) { return candidate.sum > least + tolerance; });
  return candidates;
}

std::vector<WholeWeightRows::Candidate> WholeWeightRows::FindCandidates(const Interval& interval,
                                                                        const NLogN& nLogN) const {
  std::uint64_t total = 0;
  for (const std::uint64_t weight : interval.weights) total += weight;
  const std::int64_t tolerance = nLogN.ToleranceFor(total, fClasses);
  // A table that reaches far enough needs no look at where it ends.
  if (const std::int64_t* const table = nLogN.TableUpTo(total)) {
    return FindCandidates(
        interval, [table](std::uint64_t n) { return table[n]; }, tolerance);
  }
  return FindCandidates(
      interval, [&nLogN](std::uint64_t n) { return nLogN(n); }, tolerance);
}

WholeWeightRows::Weights WholeWeightRows::SumRows(int first, int last) const {
  Weights weights(fClasses, 0);
  if (first > last) return weights;
  const std::size_t end = EndEntryOf(last);
  for (std::size_t e = FirstEntryOf(first); e < end; ++e) {
    weights[fEntryClasses[e]] += fEntryWeights[e];
  }
  return weights;
}

// The weights of an interval's rows up to `lastLeft`, from the nearer end.
WholeWeightRows::Weights WholeWeightRows::LeftWeights(const Interval& interval,
                                                      int lastLeft) const {
  if (lastLeft < interval.first) return Weights(fClasses, 0);
  if (lastLeft - interval.first <= interval.last - lastLeft) {
    return SumRows(interval.first, lastLeft);
  }
  return Difference(interval.weights, SumRows(lastLeft + 1, interval.last));
}

// The best position by the plain formula, and the weights of its left part.
int WholeWeightRows::ChooseCandidate(const Interval& interval,
                                     const std::vector<Candidate>& candidates,
                                     Weights& left) const {
  // Nothing was evaluated: position 0, in this interval or not.
  int best = candidates.empty() ? 0 : candidates.front().position;
  left = LeftWeights(interval, LastLeftRow(best));
  if (candidates.size() < 2) return best;

  Weights counts = left;
  int next = LastLeftRow(best) + 1;
  double least = 0.0;
  for (const Candidate& candidate : candidates) {
    const int lastLeft = LastLeftRow(candidate.position);
    const Weights added = SumRows(next, lastLeft);
    for (std::size_t c = 0; c < fClasses; ++c) counts[c] += added[c];
    next = lastLeft + 1;
    const double entropy =
        SplitEntropy(ClassCounts(counts), ClassCounts(Difference(interval.weights, counts)));
    const bool isFirst = &candidate == &candidates.front();
    if (isFirst || entropy < least) {  // strict: the leftmost of equals stays
      best = candidate.position;
      least = entropy;
      left = counts;
    }
  }
  return best;
}

WholeWeightRows::Bins WholeWeightRows::Split(const NLogN& nLogN) const {
  Bins bins;
  std::map<int, Interval> leaves;  // what is not split any further, by first row
  std::vector<Interval> pending;   // a stack
  pending.push_back({0, Count() - 1, SumRows(0, Count() - 1)});
  while (!pending.empty()) {
    Interval interval = std::move(pending.back());
    pending.pop_back();
    bool isSplit = false;
    if (interval.last > interval.first) {
      Weights left;
      const int position = ChooseCandidate(interval, FindCandidates(interval, nLogN), left);
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
  addBin(Count() - 1);
  return bins;
}

}  // namespace TQBinning
