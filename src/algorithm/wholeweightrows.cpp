#include "algorithm/wholeweightrows.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "algorithm/entropykernel.h"

namespace TQBinning {

namespace {

constexpr double kLowest = std::numeric_limits<double>::lowest();
constexpr double kHighest = std::numeric_limits<double>::max();
constexpr std::uint64_t kLargestExactSum = std::uint64_t{1} << 53;
constexpr std::uint64_t kLargestEntry = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint32_t kNoEntry = std::numeric_limits<std::uint32_t>::max();

bool IsInside(double value, double border, bool rightClosed) {
  return rightClosed ? value <= border : value < border;
}

double Exact(std::uint64_t weight) { return static_cast<double>(weight); }

// The sum over the parts of a split that falls and rises with its entropy: n log n of
// both totals less that of every class in either part.
class SplitSum {
 public:
  // Everything on the right.
  SplitSum(const NLogN& nLogN, const std::vector<std::uint64_t>& weights)
      : fNLogN(nLogN), fLeft(weights.size()), fRight(weights.size()) {
    for (std::size_t c = 0; c < weights.size(); ++c) {
      fRight[c] = {weights[c], nLogN(weights[c])};
      fRightTotal.weight += weights[c];
      fSum -= fRight[c].nLogN;
    }
    fRightTotal.nLogN = nLogN(fRightTotal.weight);
    fSum += fRightTotal.nLogN;
  }

  void MoveToTheLeft(std::size_t c, std::uint64_t weight) {
    fSum += Change(fLeftTotal, fLeftTotal.weight + weight);
    fSum += Change(fRightTotal, fRightTotal.weight - weight);
    fSum -= Change(fLeft[c], fLeft[c].weight + weight);
    fSum -= Change(fRight[c], fRight[c].weight - weight);
  }

  std::int64_t Value() const { return fSum; }

 private:
  struct Term {
    std::uint64_t weight = 0;
    std::int64_t nLogN = 0;
  };

  std::int64_t Change(Term& term, std::uint64_t weight) const {
    const std::int64_t nLogN = fNLogN(weight);
    const std::int64_t change = nLogN - term.nLogN;
    term = {weight, nLogN};
    return change;
  }

  const NLogN& fNLogN;
  std::vector<Term> fLeft;
  std::vector<Term> fRight;
  Term fLeftTotal;
  Term fRightTotal;
  std::int64_t fSum = 0;
};

}  // namespace

bool WholeWeightRows::Start(std::span<const BINDataTuple> tuples, std::size_t classes,
                            bool rightClosed) {
  // A NaN stands last; a value that no border covers fails here as well.
  if (tuples.empty() || !IsInside(tuples.back().value, kHighest, rightClosed)) return false;
  if (!rightClosed && tuples.front().value <= kLowest) return false;  // stands for the first row
  if (tuples.size() >= kNoEntry || classes == 0) return false;
  fClasses = classes;
  fRightClosed = rightClosed;
  fRows = 0;
  fTotalWeight = 0;
  fEntryClasses.clear();
  fEntryWeights.clear();
  fRowEntries.clear();
  fRowTuples.clear();
  fEntryOfClass.assign(classes, kNoEntry);
  return true;
}

bool WholeWeightRows::AddTuple(const BINDataTuple& tuple) {
  if (!(tuple.weight >= 1.0 && tuple.weight <= Exact(kLargestEntry))) return false;
  const auto weight = static_cast<std::uint64_t>(tuple.weight);
  if (Exact(weight) != tuple.weight || tuple.target >= fClasses) return false;
  fTotalWeight += weight;

  const std::size_t firstOfRow = fRows == 0 ? 0 : fRowEntries.back();
  const std::uint32_t entry = fEntryOfClass[tuple.target];
  if (entry != kNoEntry && entry >= firstOfRow) {
    const std::uint64_t sum = fEntryWeights[entry] + weight;
    if (sum > kLargestEntry) return false;
    fEntryWeights[entry] = static_cast<std::uint32_t>(sum);
    return true;
  }
  fEntryOfClass[tuple.target] = static_cast<std::uint32_t>(fEntryClasses.size());
  fEntryClasses.push_back(tuple.target);
  fEntryWeights.push_back(static_cast<std::uint32_t>(weight));
  return true;
}

void WholeWeightRows::EndRow(std::size_t tuples) {
  fRowEntries.push_back(static_cast<std::uint32_t>(fEntryClasses.size()));
  fRowTuples.push_back(static_cast<std::uint32_t>(tuples));
  ++fRows;
}

bool WholeWeightRows::FillByValue(std::span<const BINDataTuple> tuples, std::size_t classes,
                                  bool rightClosed) {
  if (!Start(tuples, classes, rightClosed)) return false;
  for (std::size_t i = 0; i < tuples.size(); ++i) {
    if (i > 0 && tuples[i].value != tuples[i - 1].value) EndRow(i);
    if (!AddTuple(tuples[i])) return false;
  }
  EndRow(tuples.size());
  return fTotalWeight <= kLargestExactSum;
}

bool WholeWeightRows::FillByBorders(std::span<const BINDataTuple> tuples, std::size_t classes,
                                    bool rightClosed, std::span<const double> borders) {
  if (!Start(tuples, classes, rightClosed)) return false;
  std::size_t border = 1;
  for (std::size_t i = 0; i < tuples.size(); ++i) {
    for (; !IsInside(tuples[i].value, borders[border], rightClosed); ++border) EndRow(i);
    if (!AddTuple(tuples[i])) return false;
  }
  if (border + 1 != borders.size()) return false;  // the tuples do not reach the last bin
  EndRow(tuples.size());
  return fTotalWeight <= kLargestExactSum;
}

bool WholeWeightRows::IsBoundary(int row) const {
  // No boundary: this row and the next are pure in one and the same class.
  const std::size_t entry = FirstEntryOf(row);
  const std::size_t next = EndEntryOf(row);
  return next - entry != 1 || EndEntryOf(row + 1) - next != 1 ||
         fEntryClasses[entry] != fEntryClasses[next];
}

// The positions that can have the least split entropy, ascending.
void WholeWeightRows::FindCandidates(const Interval& interval, const NLogN& nLogN) {
  fCandidates.clear();
  SplitSum sum(nLogN, interval.weights);
  std::uint64_t total = 0;
  for (const std::uint64_t weight : interval.weights) total += weight;
  const std::int64_t tolerance = nLogN.ToleranceFor(total, fClasses);
  std::int64_t least = std::numeric_limits<std::int64_t>::max() - tolerance;

  const auto moveRow = [&](int row) {
    for (std::size_t e = FirstEntryOf(row); e < EndEntryOf(row); ++e) {
      sum.MoveToTheLeft(fEntryClasses[e], fEntryWeights[e]);
    }
  };
  bool followsBoundary = false;
  for (int p = interval.first; p <= interval.last; ++p) {
    const bool isBoundary = p < interval.last && IsBoundary(p);
    const bool isEvaluated = isBoundary || followsBoundary;
    followsBoundary = isBoundary;
    if (fRightClosed) moveRow(p);
    if (isEvaluated && sum.Value() <= least + tolerance) {
      if (sum.Value() < least - tolerance) fCandidates.clear();
      least = std::min(least, sum.Value());
      fCandidates.push_back({p, sum.Value()});
    }
    if (!fRightClosed) moveRow(p);
  }
  std::erase_if(fCandidates,
                [&](const Candidate& candidate) { return candidate.sum > least + tolerance; });
}

// The best position by the plain formula, and its parts.
int WholeWeightRows::ChooseCandidate(const Interval& interval, std::vector<double>& left,
                                     std::vector<double>& right) const {
  const auto lastLeft = [this](int position) { return fRightClosed ? position : position - 1; };
  Weights counts(fClasses, 0);
  int next = interval.first;
  const auto partsAt = [&](int position) {
    for (; next <= lastLeft(position); ++next) {
      for (std::size_t e = FirstEntryOf(next); e < EndEntryOf(next); ++e) {
        counts[fEntryClasses[e]] += fEntryWeights[e];
      }
    }
    left[0] = right[0] = 0.0;
    for (std::size_t c = 0; c < fClasses; ++c) {
      left[c + 1] = Exact(counts[c]);
      right[c + 1] = Exact(interval.weights[c] - counts[c]);
      left[0] += left[c + 1];
      right[0] += right[c + 1];
    }
  };
  if (fCandidates.empty()) {  // nothing was evaluated: position 0, in this interval or not
    partsAt(0);
    return 0;
  }
  if (fCandidates.size() == 1) {
    partsAt(fCandidates.front().position);
    return fCandidates.front().position;
  }
  int best = 0;
  double least = 0.0;
  std::vector<double> bestLeft;
  std::vector<double> bestRight;
  for (const Candidate& candidate : fCandidates) {
    partsAt(candidate.position);
    const double entropy = SplitEntropy(left, right);
    if (bestLeft.empty() || entropy < least) {  // strict: the leftmost of equals stays
      best = candidate.position;
      least = entropy;
      bestLeft = left;
      bestRight = right;
    }
  }
  left.swap(bestLeft);
  right.swap(bestRight);
  return best;
}

void WholeWeightRows::CountRows(int first, int last, std::span<double> counts) const {
  std::fill(counts.begin(), counts.end(), 0.0);
  if (first > last) return;
  for (std::size_t e = FirstEntryOf(first); e < EndEntryOf(last); ++e) {
    counts[fEntryClasses[e] + 1U] += fEntryWeights[e];
    counts[0] += fEntryWeights[e];
  }
}

std::set<int> WholeWeightRows::Split(NLogN& nLogN) {
  std::vector<double> left(fClasses + 1);
  std::vector<double> right(fClasses + 1);
  CountRows(0, fRows - 1, right);
  Weights all(fClasses);
  for (std::size_t c = 0; c < fClasses; ++c) all[c] = static_cast<std::uint64_t>(right[c + 1]);

  std::set<int> cutRows;
  std::vector<Interval> pending;  // a stack
  pending.push_back({0, fRows - 1, std::move(all)});
  while (!pending.empty()) {
    const Interval interval = std::move(pending.back());
    pending.pop_back();
    if (interval.last - interval.first < 1) continue;

    std::vector<double> whole(fClasses + 1, 0.0);
    for (std::size_t c = 0; c < fClasses; ++c) {
      whole[c + 1] = Exact(interval.weights[c]);
      whole[0] += whole[c + 1];
    }
    FindCandidates(interval, nLogN);
    const int position = ChooseCandidate(interval, left, right);
    if (!IsWorthSplitting(left, right, Entropy(whole), whole[0])) continue;

    cutRows.insert(position);
    const int lastLeft = fRightClosed ? position : position - 1;
    if (lastLeft < interval.first || lastLeft >= interval.last) continue;  // separates nothing
    Interval rightPart{lastLeft + 1, interval.last, Weights(fClasses)};
    Interval leftPart{interval.first, lastLeft, Weights(fClasses)};
    for (std::size_t c = 0; c < fClasses; ++c) {
      leftPart.weights[c] = static_cast<std::uint64_t>(left[c + 1]);
      rightPart.weights[c] = interval.weights[c] - leftPart.weights[c];
    }
    pending.push_back(std::move(rightPart));
    pending.push_back(std::move(leftPart));
  }
  return cutRows;
}

}  // namespace TQBinning
