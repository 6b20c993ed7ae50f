#pragma once

#include <iosfwd>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "tqbinning/export.h"
#include "tqbinning/tqstatus.h"

// The outcome of binning one attribute against one target.  A value: copies are
// deep.  Filled by BINOutput alone.
class TQBINNING_EXPORT BINAttributeTargetResults final {
 public:
  // OK, no bins, indices -1, numbers 0.
  BINAttributeTargetResults();
  BINAttributeTargetResults(const BINAttributeTargetResults&);
  BINAttributeTargetResults& operator=(const BINAttributeTargetResults&);
  ~BINAttributeTargetResults();

  TQBinning::TQStatus GetStatus() const;            // how binning this pair ended
  int GetAttributeIndex() const;                    // variable list indices
  int GetTargetIndex() const;                       // the same
  const std::vector<double>& GetCutPoints() const;  // strictly ascending
  // One row per bin, so one more than cut points: the bin's total weight, then
  // its weight in each target category.
  const std::vector<std::vector<double>>& GetCellCounts() const;
  unsigned int GetNDistinctValues() const;   // of the cases binned
  double GetTotalWeight() const;             // weight of the cases binned
  double GetTotalWeightWithMissing() const;  // and of those with a missing value
  double GetMinimum() const;                 // of the cases binned
  double GetMaximum() const;                 // of the cases binned
  double GetModelEntropy() const;            // bits; weighted mean entropy of the bins

  virtual std::ostream& Display(std::ostream& os) const;  // for people to read

 private:
  friend class BINOutput;

  TQBinning::TQStatus fStatus;
  int fAttributeIndex;
  int fTargetIndex;
  std::vector<double> fCutPoints;
  std::vector<std::vector<double>> fCellCounts;
  unsigned int fNDistinctValues;
  double fTotalWeight;
  double fTotalWeightWithMissing;
  double fMinimum;
  double fMaximum;
  double fModelEntropy;
};

// The results of a supervised run, in the order in which they were stored.  Only
// grows: a pair that is stored twice is kept twice.  Copies are deep.
class TQBINNING_EXPORT BINOutput {
 public:
  BINOutput();                             // nothing stored
  BINOutput(const BINOutput&);             // a copy
  BINOutput& operator=(const BINOutput&);  // a copy
  virtual ~BINOutput();

  // Stores one pair's outcome, `status` being part of it.  `cellCounts` is flat,
  // bin after bin; a remainder that fills no row is dropped.  Error 120013, with
  // nothing stored: a negative index, or equal indices.
  TQBinning::TQStatus SetAttributeTargetResults(TQBinning::TQStatus status,
                                                const std::set<double>& cutPoints,
                                                const std::vector<double>& cellCounts,
                                                int attributeIndex, int targetIndex,
                                                unsigned int nDistinctValues, double totalWeight,
                                                double totalWeightWithMissing, double minimum,
                                                double maximum, double modelEntropy);

  // Copies the first value stored for a pair into `out` and returns that value's
  // own status.  Error 120013, with `out` unchanged: bad indices, nothing stored.
  TQBinning::TQStatus GetAttributeTargetCutPoints(int attributeIndex, int targetIndex,
                                                  BINAttributeTargetResults& out) const;
  // Appends every value of an attribute to `out` and returns the last one's status.
  // Error 120013: a negative index, or nothing stored for it.
  TQBinning::TQStatus GetAttributeCutPoints(int attributeIndex,
                                            std::vector<BINAttributeTargetResults>& out) const;
  // Replaces `out` by all values.  Error 120020, with `out` unchanged: none stored.
  TQBinning::TQStatus GetAllCutPoints(std::vector<BINAttributeTargetResults>& out) const;

  virtual std::ostream& Display(std::ostream& os) const;  // for people to read

 private:
  std::vector<BINAttributeTargetResults> fResults;
  std::map<std::pair<int, int>, std::size_t> fIndex;  // pair -> first position
};
