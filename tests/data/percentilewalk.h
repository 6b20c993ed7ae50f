#pragma once

#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "data/sortedvalues.h"
#include "support/memoryrecords.h"
#include "support/random.h"
#include "tqbinning/binefpreprocess.h"

// What the tests of the percentile cut points share.
namespace data {

using support::kMissing;
using support::kNaN;
using Doubles = std::vector<double>;
using Tuples = std::vector<EFBINDataTuple>;      // {value, weight}
using TargetTuples = std::vector<BINDataTuple>;  // {value, target, weight}

inline constexpr bool kRightClosed = true;  // a run at a cut belongs to the lower bin
inline constexpr bool kLeftClosed = false;  // ... to the upper bin
inline constexpr double kEpsilon = std::numeric_limits<double>::epsilon();  // 2^-52

// The whole numbers from 1 to n, each of weight 1.
inline Tuples OneTo(int n) {
  Tuples tuples;
  for (int i = 1; i <= n; ++i) tuples.push_back({static_cast<double>(i), 1.0});
  return tuples;
}

inline TargetTuples WithTarget(const Tuples& tuples) {
  TargetTuples result;
  for (const EFBINDataTuple& tuple : tuples) result.push_back({tuple.value, 0, tuple.weight});
  return result;
}

struct Cuts {
  Doubles points;
  Doubles frequencies;
  bool found = false;
};

// Works for tuples of either kind.
template <typename Vector>
inline Cuts FindCuts(int bins, bool includeUpper, Vector tuples, double totalWeight) {
  BINEFPreProcess process(bins, includeUpper);
  Cuts cuts;
  cuts.found =
      process.EFCreatePercentileCutPts(&tuples, cuts.points, cuts.frequencies, totalWeight);
  return cuts;
}

// A walk over tuples that can be set up in its middle and taken step by step.
template <typename Vector>
class Walk {
 public:
  // A total of 0 finds nothing but leaves the tuples in place.
  Walk(bool includeUpper, const Vector& tuples) : fTuples(tuples), fProcess(2, includeUpper) {
    EXPECT_FALSE(fProcess.EFCreatePercentileCutPts(&fTuples, cutPoints, frequencies, 0.0));
  }

  double Step(double percent, double totalWeight) {
    return fProcess.GetPercentile(cutPoints, frequencies, percent, index, cumulative,
                                  previousCumulative, totalWeight);
  }

  unsigned int index = 0;
  double cumulative = 0.0;
  double previousCumulative = 0.0;
  Doubles cutPoints;
  Doubles frequencies;

 private:
  Vector fTuples;
  BINEFPreProcess fProcess;
};

}  // namespace data
