#include "tqbinning/binefpreprocess.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "data/sortedvalues.h"
#include "tqcommon/missingvalue.h"

using namespace TQBinning;

namespace {

// Percentages this close to 100 ask for the whole weight: 100 ulps of 1.
constexpr double kPercentTolerance = 2.220446049250313e-14;
// A cumulative weight meets its target within one ulp of 1, relative to the larger.
constexpr double kWeightTolerance = 2.220446049250313e-16;

bool Meets(double cumulative, double target) {
  return std::fabs(cumulative - target) / std::max(cumulative, target) <= kWeightTolerance;
}

// Sorted cases, given as tuples.
template <typename Tuple>
class TupleCases {
 public:
  static constexpr bool kWeighOne = false;

  explicit TupleCases(const std::vector<Tuple>& tuples) : fTuples(tuples) {}
  std::size_t Count() const { return fTuples.size(); }
  double Value(std::size_t i) const { return fTuples[i].value; }
  double Weight(std::size_t i) const { return fTuples[i].weight; }

 private:
  std::span<const Tuple> fTuples;
};

// Sorted cases of weight 1.
class ValueCases {
 public:
  static constexpr bool kWeighOne = true;

  explicit ValueCases(std::span<const double> values) : fValues(values) {}
  std::size_t Count() const { return fValues.size(); }
  double Value(std::size_t i) const { return fValues[i]; }
  double Weight(std::size_t) const { return 1.0; }

  // The first case from `first` on that has the value of case i, which is not before it.
  std::size_t RunStart(std::size_t first, std::size_t i) const {
    const double* const values = fValues.data();
    return static_cast<std::size_t>(std::lower_bound(values + first, values + i, values[i]) -
                                    values);
  }

 private:
  std::span<const double> fValues;
};

// The state of the walk through the sorted cases, and what one step found.
template <typename Cases>
class PercentileWalk {
 public:
  PercentileWalk(const Cases& cases, std::size_t index, double cumulative)
      : fCases(cases), fIndex(index), fCumulative(cumulative), fBeforeLastRun(cumulative) {}

  // Takes whole runs of equal values until the weight reaches the target.
  void WalkTo(double target) {
    // Far enough below the target nothing needs to be divided to see that it is not met.
    const double farBelow = target * (1.0 - 8 * kWeightTolerance);
    if constexpr (Cases::kWeighOne) JumpTowards(farBelow);
    while (target > 0.0 && fCumulative < farBelow && fIndex < fCases.Count()) TakeRun();
    while (fIndex < fCases.Count()) {
      fMetTarget = fIndex > 0 && Meets(fCumulative, target);
      if (fMetTarget || !(fCumulative < target)) return;
      TakeRun();
    }
  }

  // Half-way to the next distinct value when the target was met; else the value of
  // the run that crossed it (or of the last run that there was).
  double Cut() const {
    if (fMetTarget) return (ValueBefore() + fCases.Value(fIndex)) / 2;
    return fRunsTaken > 0 ? ValueBefore() : TQMV::gMissingValue;
  }

  // The value just before the current index; the index is above 0.
  double ValueBefore() const { return fCases.Value(fIndex - 1); }

  std::size_t Index() const { return fIndex; }
  double Cumulative() const { return fCumulative; }
  double BeforeLastRun() const { return fMetTarget ? fCumulative : fBeforeLastRun; }
  bool TookSeveralRuns() const { return fRunsTaken > 1; }

 private:
  // Takes all runs at once before the one that reaches `weight`, if there are any: as every case
  // weighs one, the weight of the cases before a case is its index, to the last bit.  They need
  // not be counted: whether several were taken matters only where nothing weighs before the last.
  void JumpTowards(double weight) {
    if (!(weight > fCumulative + 1.0)) return;
    const auto last = static_cast<std::size_t>(std::ceil(weight) - 1.0);  // the total weighs more
    fIndex = fCases.RunStart(fIndex, last);
    fCumulative = static_cast<double>(fIndex);
  }

  // Takes a run; the first tuple belongs to it even if it is NaN, which equals nothing.
  void TakeRun() {
    const double value = fCases.Value(fIndex);
    fBeforeLastRun = fCumulative;
    do {
      fCumulative += fCases.Weight(fIndex);
      ++fIndex;
    } while (fIndex < fCases.Count() && fCases.Value(fIndex) == value);
    ++fRunsTaken;
  }

  Cases fCases;
  std::size_t fIndex;
  double fCumulative;
  double fBeforeLastRun;
  std::size_t fRunsTaken = 0;
  bool fMetTarget = false;
};

// What one step means for the bins: the weights around the cut.
struct CutWeights {
  double after;          // cumulative weight after the walk
  double beforeRun;      // before the run at the cut
  double previousAfter;  // the same two at the previous cut
  double previousBefore;
  double target;
  double total;
  bool hasEarlierValue;  // a value stands before the run at the cut
};

// The run at the cut belongs to the bin that closes.
void CloseBinOnTheRight(const CutWeights& w, std::vector<double>& frequencies) {
  if (w.after > w.target || w.target == w.total) {
    frequencies.push_back(w.after - w.previousAfter);
  } else if (w.beforeRun != 0.0) {
    frequencies.push_back(w.beforeRun - w.previousAfter);
  }
}

// The run at the cut opens the next bin.
void CloseBinOnTheLeft(const CutWeights& w, std::vector<double>& frequencies) {
  if (w.beforeRun == 0.0) {
    frequencies.push_back(w.hasEarlierValue ? w.after : 0.0);
    return;
  }
  const bool isLastStep = w.target == w.total;
  frequencies.push_back((isLastStep ? w.after : w.beforeRun) - w.previousBefore);
  if (!isLastStep && w.after == w.total) frequencies.push_back(w.after - w.beforeRun);
}

double TargetWeight(double percent, double total) {
  return std::fabs(percent - 100.0) <= kPercentTolerance ? total : percent / 100 * total;
}

// Removes the outer cut that coincides with the data's edge and so separates
// nothing.  On the right the frequencies stay as they are, on purpose.
void RemoveEdgeCut(bool includeUpper, double smallest, double largest,
                   std::vector<double>& cutPoints, std::vector<double>& frequencies) {
  if (cutPoints.empty()) return;
  if (includeUpper) {
    if (cutPoints.back() == largest) cutPoints.pop_back();
  } else if (cutPoints.front() == smallest) {
    cutPoints.erase(cutPoints.begin());
    if (!frequencies.empty()) frequencies.erase(frequencies.begin());
  }
}

void DropEmptyBins(std::vector<double>& cutPoints, std::vector<double>& frequencies) {
  std::vector<double> keptCuts;
  std::vector<double> keptFrequencies;
  for (std::size_t i = 0; i < std::min(cutPoints.size(), frequencies.size()); ++i) {
    if (frequencies[i] == 0.0) continue;
    keptCuts.push_back(cutPoints[i]);
    keptFrequencies.push_back(frequencies[i]);
  }
  if (cutPoints.size() < frequencies.size()) {
    const double last = frequencies[cutPoints.size()];  // above the last cut
    if (last != 0.0) {
      keptFrequencies.push_back(last);
    } else if (!keptCuts.empty()) {
      keptCuts.pop_back();
    }
  }
  cutPoints.swap(keptCuts);
  frequencies.swap(keptFrequencies);
}

// What moves on from step to step.
struct WalkState {
  unsigned int& index;
  double& cumulative;
  double& previousCumulative;
};

// One step of the walk, to `percent` of the total; with weights of the bins or without.
template <typename Cases>
double StepTo(double percent, const Cases& cases, bool includeUpper, bool keepsWeights,
              WalkState state, double totalWeight, std::vector<double>& cutPoints,
              std::vector<double>& frequencies) {
  const double target = TargetWeight(percent, totalWeight);
  PercentileWalk<Cases> walk(cases, state.index, state.cumulative);
  // One heavy run may span several percentiles: the cut stays where it is.
  if (state.cumulative >= target && state.index > 0 && !cutPoints.empty() &&
      walk.ValueBefore() == cutPoints.back()) {
    return cutPoints.back();
  }
  walk.WalkTo(target);
  if (keepsWeights) {
    const CutWeights weights{walk.Cumulative(),
                             walk.BeforeLastRun(),
                             state.cumulative,
                             state.previousCumulative,
                             target,
                             totalWeight,
                             walk.TookSeveralRuns() || state.index != 0};
    includeUpper ? CloseBinOnTheRight(weights, frequencies)
                 : CloseBinOnTheLeft(weights, frequencies);
    state.previousCumulative = walk.BeforeLastRun();
  }
  state.index = static_cast<unsigned int>(walk.Index());
  state.cumulative = walk.Cumulative();
  return walk.Cut();
}

// Walks through all percentiles; `step(percent, state)` takes one step.
template <typename Step>
void WalkPercentiles(int bins, std::vector<double>& cutPoints, Step step) {
  unsigned int index = 0;
  double cumulative = 0.0;
  double previousCumulative = 0.0;
  for (int i = 0; i < bins; ++i) {
    const double percent = std::min((i + 1) * (100.0 / bins), 100.0);
    const double cut = step(percent, WalkState{index, cumulative, previousCumulative});
    const bool isLastStep = i == bins - 1;  // only completes the weights
    const bool isRepeated = i > 0 && !cutPoints.empty() && cut == cutPoints.back();
    if (!isLastStep && !isRepeated) cutPoints.push_back(cut);
  }
}

// What follows the walk where bins have weights.
void FinishBins(bool includeUpper, double smallest, double largest, double totalWeight,
                std::vector<double>& cutPoints, std::vector<double>& frequencies) {
  RemoveEdgeCut(includeUpper, smallest, largest, cutPoints, frequencies);
  if (cutPoints.empty() && frequencies.empty()) frequencies.push_back(totalWeight);
  DropEmptyBins(cutPoints, frequencies);
}

}  // namespace

BINEFPreProcess::BINEFPreProcess(int numberOfBins, bool includeUpper)
    : fIncludeUpper(includeUpper),
      fNumberOfBins(numberOfBins),
      fUnsupervisedTuples(nullptr),
      fSupervisedTuples(nullptr) {}

BINEFPreProcess::~BINEFPreProcess() = default;

bool BINEFPreProcess::EFCreatePercentileCutPts(std::vector<BINDataTuple>* tuples,
                                               std::vector<double>& cutPoints,
                                               std::vector<double>& frequencies,
                                               double totalWeight) {
  fSupervisedTuples = tuples;
  return FindCutPts(cutPoints, frequencies, totalWeight);
}

bool BINEFPreProcess::EFCreatePercentileCutPts(std::vector<EFBINDataTuple>* tuples,
                                               std::vector<double>& cutPoints,
                                               std::vector<double>& frequencies,
                                               double totalWeight) {
  fUnsupervisedTuples = tuples;
  return FindCutPts(cutPoints, frequencies, totalWeight);
}

bool BINEFPreProcess::FindCutPts(std::vector<double>& cutPoints, std::vector<double>& frequencies,
                                 double totalWeight) {
  const bool hasTuples = fUnsupervisedTuples != nullptr ? !fUnsupervisedTuples->empty()
                         : fSupervisedTuples != nullptr ? !fSupervisedTuples->empty()
                                                        : false;
  if (fNumberOfBins < 1 || !hasTuples || !(totalWeight > 0.0)) return false;

  WalkPercentiles(fNumberOfBins, cutPoints, [&](double percent, WalkState state) {
    return GetPercentile(cutPoints, frequencies, percent, state.index, state.cumulative,
                         state.previousCumulative, totalWeight);
  });
  if (fUnsupervisedTuples == nullptr) return true;

  FinishBins(fIncludeUpper, fUnsupervisedTuples->front().value, fUnsupervisedTuples->back().value,
             totalWeight, cutPoints, frequencies);
  return true;
}

bool BINEFPreProcess::FindCutPts(const SortedValues& sorted, std::vector<double>& cutPoints,
                                 std::vector<double>& frequencies) const {
  const std::span<const double> values = sorted.values;
  if (fNumberOfBins < 1 || values.empty()) return false;

  const ValueCases cases(values);
  const auto totalWeight = static_cast<double>(values.size());
  WalkPercentiles(fNumberOfBins, cutPoints, [&](double percent, WalkState state) {
    return StepTo(percent, cases, fIncludeUpper, true, state, totalWeight, cutPoints, frequencies);
  });
  FinishBins(fIncludeUpper, values.front(), values.back(), totalWeight, cutPoints, frequencies);
  return true;
}

double BINEFPreProcess::GetPercentile(std::vector<double>& cutPoints,
                                      std::vector<double>& frequencies, double percent,
                                      unsigned int& index, double& cumulative,
                                      double& previousCumulative, const double& totalWeight) {
  const WalkState state{index, cumulative, previousCumulative};
  const auto step = [&](const auto& tuples, bool keepsWeights) {
    return StepTo(percent, TupleCases(tuples), fIncludeUpper, keepsWeights, state, totalWeight,
                  cutPoints, frequencies);
  };
  if (fUnsupervisedTuples != nullptr) return step(*fUnsupervisedTuples, true);
  if (fSupervisedTuples != nullptr) return step(*fSupervisedTuples, false);
  return TQMV::gMissingValue;
}
