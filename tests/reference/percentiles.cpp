#include "reference/reference.h"

#include <algorithm>
#include <cmath>

// Equal-frequency cut points.
namespace reference {
namespace {

constexpr double kPercentTolerance = 2.220446049250313e-14;
constexpr double kWeightTolerance = 2.220446049250313e-16;

double TargetWeight(double percent, double totalWeight) {
  if (std::fabs(percent - 100.0) <= kPercentTolerance) return totalWeight;
  return percent / 100.0 * totalWeight;
}

// Two zeros or two infinities give no quotient, and so do not count as met.
bool IsMet(double cumulative, double target) {
  const double difference = std::fabs(cumulative - target);
  return difference / std::max(cumulative, target) <= kWeightTolerance;
}

// How far one step of the walk went.
struct Advance {
  std::size_t index = 0;
  std::size_t runs = 0;  // runs of equal values taken
  double after = 0.0;    // cumulative weight at the end
  double before = 0.0;   // and before the last run; `after` when met
  bool met = false;      // ended on the target, with a tuple left
};

Advance TakeRuns(std::span<const Tuple> tuples, double target, const Walk& walk) {
  Advance advance;
  advance.index = walk.index;
  advance.after = walk.cumulative;
  advance.before = walk.cumulative;
  while (advance.index < tuples.size()) {
    if (IsMet(advance.after, target)) {
      advance.met = true;
      advance.before = advance.after;
      break;
    }
    if (!(advance.after < target)) break;
    advance.before = advance.after;
    const double value = tuples[advance.index].value;
    // The first tuple belongs to its run even if it is a NaN.
    do {
      advance.after += tuples[advance.index].weight;
      ++advance.index;
    } while (advance.index < tuples.size() && tuples[advance.index].value == value);
    ++advance.runs;
  }
  return advance;
}

double CutAt(std::span<const Tuple> tuples, const Advance& advance, double missing) {
  const std::size_t index = advance.index;
  if (index == 0) return missing;  // no value to stand on
  if (advance.met) return (tuples[index - 1].value + tuples[index].value) / 2.0;
  if (advance.runs > 0) return tuples[index - 1].value;
  return missing;
}

// Bins closed on the right: the run at the cut belongs to the closing bin.
void PushClosedOnTheRight(const Walk& entry, const Advance& advance, double target,
                          double totalWeight, std::vector<double>& frequencies) {
  const bool overshot = !advance.met && advance.after > target;
  if (overshot || target == totalWeight) {
    frequencies.push_back(advance.after - entry.cumulative);
  } else if (advance.before != 0.0) {
    frequencies.push_back(advance.before - entry.cumulative);
  }
}

// Bins closed on the left: the run at the cut opens the next bin.
void PushClosedOnTheLeft(const Walk& entry, const Advance& advance, double target,
                         double totalWeight, std::vector<double>& frequencies) {
  if (advance.before == 0.0) {
    const bool push = advance.runs >= 2 || entry.index != 0;
    frequencies.push_back(push ? advance.after : 0.0);
    return;
  }
  if (target == totalWeight) {
    frequencies.push_back(advance.after - entry.previousCumulative);
    return;
  }
  frequencies.push_back(advance.before - entry.previousCumulative);
  if (advance.after == totalWeight) {
    frequencies.push_back(advance.after - advance.before);
  }
}

}  // namespace

double PercentileStep(std::span<const Tuple> tuples, const std::vector<double>& cuts,
                      double percent, double totalWeight, bool includeUpper, double missing,
                      Walk& walk, std::vector<double>* frequencies) {
  const double target = TargetWeight(percent, totalWeight);
  // One heavy run may span several percentiles: all of them share its cut.
  if (walk.cumulative >= target && walk.index > 0 && !cuts.empty() &&
      tuples[walk.index - 1].value == cuts.back()) {
    return tuples[walk.index - 1].value;
  }
  const Advance advance = TakeRuns(tuples, target, walk);
  if (frequencies != nullptr) {
    if (includeUpper) {
      PushClosedOnTheRight(walk, advance, target, totalWeight, *frequencies);
    } else {
      PushClosedOnTheLeft(walk, advance, target, totalWeight, *frequencies);
    }
    walk.previousCumulative = advance.before;
  }
  walk.index = advance.index;
  walk.cumulative = advance.after;  // also where the target was met: both alike
  return CutAt(tuples, advance, missing);
}

namespace {

// A cut on the edge of the data separates nothing.
void RemoveOuterCut(std::span<const Tuple> tuples, bool includeUpper, Percentiles& percentiles) {
  std::vector<double>& cuts = percentiles.cuts;
  std::vector<double>& frequencies = percentiles.frequencies;
  if (cuts.empty()) return;
  if (includeUpper) {
    // The weight of the last bin stays: it is the bin below the removed cut.
    if (cuts.back() == tuples.back().value) cuts.pop_back();
  } else if (cuts.front() == tuples.front().value) {
    cuts.erase(cuts.begin());
    if (!frequencies.empty()) frequencies.erase(frequencies.begin());
  }
}

// Drops the bins of weight zero, each with the cut that closes it, the last one
// with the last cut kept.
void DropEmptyBins(Percentiles& percentiles) {
  const std::vector<double> cuts = std::move(percentiles.cuts);
  const std::vector<double> frequencies = std::move(percentiles.frequencies);
  percentiles.cuts.clear();
  percentiles.frequencies.clear();
  const std::size_t paired = std::min(cuts.size(), frequencies.size());
  for (std::size_t i = 0; i < paired; ++i) {
    if (frequencies[i] == 0.0) continue;
    percentiles.cuts.push_back(cuts[i]);
    percentiles.frequencies.push_back(frequencies[i]);
  }
  if (frequencies.size() <= cuts.size()) return;
  const double last = frequencies[cuts.size()];
  if (last != 0.0) {
    percentiles.frequencies.push_back(last);
  } else if (!percentiles.cuts.empty()) {
    percentiles.cuts.pop_back();
  }
}

}  // namespace

Percentiles PercentileCuts(std::span<const Tuple> tuples, int bins, bool includeUpper,
                           bool withFrequencies, double totalWeight, double missing) {
  Percentiles percentiles;
  if (bins < 1 || tuples.empty() || !(totalWeight > 0.0)) return percentiles;
  percentiles.computed = true;

  Walk walk;
  for (int i = 0; i < bins; ++i) {
    const double percent = std::min((i + 1.0) * (100.0 / bins), 100.0);
    const double cut =
        PercentileStep(tuples, percentiles.cuts, percent, totalWeight, includeUpper, missing, walk,
                       withFrequencies ? &percentiles.frequencies : nullptr);
    if (i == bins - 1) break;  // only completes the frequencies
    if (i > 0 && cut == percentiles.cuts.back()) continue;
    percentiles.cuts.push_back(cut);
  }
  if (!withFrequencies) return percentiles;

  RemoveOuterCut(tuples, includeUpper, percentiles);
  if (percentiles.cuts.empty() && percentiles.frequencies.empty()) {
    percentiles.frequencies.push_back(totalWeight);
  }
  DropEmptyBins(percentiles);
  return percentiles;
}

}  // namespace reference
