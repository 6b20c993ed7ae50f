#pragma once

#include <vector>

#include "tqbinning/bindatatuple.h"
#include "tqbinning/export.h"

namespace TQBinning {
struct SortedValues;
}

// Equal-frequency cut points of a sorted tuple vector: a cut wherever the
// cumulative weight reaches the next multiple of 100 / bins percent of the total.
// A run of equal values is never split.  Owns nothing.
class TQBINNING_EXPORT BINEFPreProcess {
 public:
  // `includeUpper`: bins are closed on the right, so that the run at a cut belongs
  // to the bin that ends there; otherwise it opens the next bin.
  BINEFPreProcess(int numberOfBins, bool includeUpper);
  virtual ~BINEFPreProcess();

  // Keeps the tuple pointer (borrowed, may be null) and finds the cuts as
  // FindCutPts does.
  bool EFCreatePercentileCutPts(std::vector<BINDataTuple>* tuples, std::vector<double>& cutPoints,
                                std::vector<double>& frequencies, double totalWeight);
  bool EFCreatePercentileCutPts(std::vector<EFBINDataTuple>* tuples, std::vector<double>& cutPoints,
                                std::vector<double>& frequencies, double totalWeight);

  // Appends the cuts, ascending, and for unsupervised tuples the weight of every
  // bin; tuples with a target leave `frequencies` alone.  `totalWeight` is the
  // weight of the attribute's valid cases.  Unsupervised tuples go first when both
  // kinds are set.  False, with nothing written: no tuples, no bins, or a total
  // that is not above 0.
  bool FindCutPts(std::vector<double>& cutPoints, std::vector<double>& frequencies,
                  double totalWeight);

  // One step of that walk: the cut for `percent`, from the tuple at `index` on.
  // Moves `index` past the runs taken, `cumulative` to their weight and, for
  // unsupervised tuples, `previousCumulative` to the weight before the last run,
  // and appends to `frequencies`.  TQMV::gMissingValue when no run was taken.
  double GetPercentile(std::vector<double>& cutPoints, std::vector<double>& frequencies,
                       double percent, unsigned int& index, double& cumulative,
                       double& previousCumulative, const double& totalWeight);

 protected:
  friend class EFBINAlgorithm;

  // The same as FindCutPts finds in the unsupervised tuples of these values, with the weight 1
  // each.  False, with nothing written: no values or no bins.
  TQBINNING_HIDDEN bool FindCutPts(const TQBinning::SortedValues& sorted,
                                   std::vector<double>& cutPoints,
                                   std::vector<double>& frequencies) const;

 private:
  bool fIncludeUpper;
  int fNumberOfBins;
  std::vector<EFBINDataTuple>* fUnsupervisedTuples;  // borrowed, null until given
  std::vector<BINDataTuple>* fSupervisedTuples;      // borrowed, null until given
};
