#include "tqbinning/binefpreprocess.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "tqcommon/missingvalue.h"

namespace {

// Percentages this close to 100 ask for the whole weight: 100 ulps of 1.
constexpr double kPercentTolerance = 2.220446049250313e-14;
// A cumulative weight meets its target within one ulp of 1, relative to the larger.
constexpr double kWeightTolerance = 2.220446049250313e-16;

bool Meets(double cumulative, double target) {
  return std::fabs(cumulative - target) / std::max(cumulative, target) <= kWeightTolerance;
}

// The state of the walk through the sorted tuples, and what one step found.
template <typename Tuple>
class PercentileWalk {
 public:
  PercentileWalk(std::span<const Tuple> tuples, std::size_t index, double cumulative)
      : fTuples(tuples), fIndex(index), fCumulative(cumulative), fBeforeLastRun(cumulative) {}

  // Takes whole runs of equal values until the weight reaches the target.
  void WalkTo(double target) {
    // Far enough below the target nothing needs to be divided to see that it is not met.
    const double farBelow = target * (1.0 - 8 * kWeightTolerance);
    while (target > 0.0 && fCumulative < farBelow && fIndex < fTuples.size()) TakeRun();
    while (fIndex < fTuples.size()) {
      fMetTarget = fIndex > 0 && Meets(fCumulative, target);
      if (fMetTarget || !(fCumulative < target)) return;
      TakeRun();
    }
  }

  // Half-way to the next distinct value when the target was met; else the value of
  // the run that crossed it (or of the last run that there was).
  double Cut() const {
    if (fMetTarget) return (ValueBefore() + fTuples[fIndex].value) / 2;
    return fRunsTaken > 0 ? ValueBefore() : TQMV::gMissingValue;
  }

  // The value just before the current index; the index is above 0.
  double ValueBefore() const { return fTuples[fIndex - 1].value; }

  std::size_t Index() const { return fIndex; }
  double Cumulative() const { return fCumulative; }
  double BeforeLastRun() const { return fMetTarget ? fCumulative : fBeforeLastRun; }
  bool TookSeveralRuns() const { return fRunsTaken > 1; }

 private:
  // Takes a run; the first tuple belongs to it even if it is NaN, which equals nothing.
  void TakeRun() {
    const double value = fTuples[fIndex].value;
    fBeforeLastRun = fCumulative;
    do {
      fCumulative += fTuples[fIndex].weight;
      ++fIndex;
    } while (fIndex < fTuples.size() && fTuples[fIndex].value == value);
    ++fRunsTaken;
  }

  std::span<const Tuple> fTuples;
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

  unsigned int index = 0;
  double cumulative = 0.0;
  double previousCumulative = 0.0;
  for (int i = 0; i < fNumberOfBins; ++i) {
    const double percent = std::min((i + 1) * (100.0 / fNumberOfBins), 100.0);
    const double cut = GetPercentile(cutPoints, frequencies, percent, index, cumulative,
                                     previousCumulative, totalWeight);
    const bool isLastStep = i == fNumberOfBins - 1;  // only completes the weights
    const bool isRepeated = i > 0 && !cutPoints.empty() && cut == cutPoints.back();
    if (!isLastStep && !isRepeated) cutPoints.push_back(cut);
  }
  if (fUnsupervisedTuples == nullptr) return true;

  RemoveEdgeCut(fIncludeUpper, fUnsupervisedTuples->front().value,
                fUnsupervisedTuples->back().value, cutPoints, frequencies);
  if (cutPoints.empty() && frequencies.empty()) frequencies.push_back(totalWeight);
  DropEmptyBins(cutPoints, frequencies);
  return true;
}

double BINEFPreProcess::GetPercentile(std::vector<double>& cutPoints,
                                      std::vector<double>& frequencies, double percent,
                                      unsigned int& index, double& cumulative,
                                      double& previousCumulative, const double& totalWeight) {
  const double target = TargetWeight(percent, totalWeight);

  const auto step = [&](const auto& tuples, bool keepsWeights) {
    using Tuple = typename std::decay_t<decltype(tuples)>::value_type;
    PercentileWalk<Tuple> walk(tuples, index, cumulative);
    // One heavy run may span several percentiles: the cut stays where it is.
    if (cumulative >= target && index > 0 && !cutPoints.empty() &&
        walk.ValueBefore() == cutPoints.back()) {
      return cutPoints.back();
    }
    walk.WalkTo(target);
    if (keepsWeights) {
      const CutWeights weights{walk.Cumulative(),
                               walk.BeforeLastRun(),
                               cumulative,
                               previousCumulative,
                               target,
                               totalWeight,
                               walk.TookSeveralRuns() || index != 0};
      fIncludeUpper ? CloseBinOnTheRight(weights, frequencies)
                    : CloseBinOnTheLeft(weights, frequencies);
      previousCumulative = walk.BeforeLastRun();
    }
    index = static_cast<unsigned int>(walk.Index());
    cumulative = walk.Cumulative();
    return walk.Cut();
  };

  if (fUnsupervisedTuples != nullptr) return step(*fUnsupervisedTuples, true);
  if (fSupervisedTuples != nullptr) return step(*fSupervisedTuples, false);
  return TQMV::gMissingValue;
}
