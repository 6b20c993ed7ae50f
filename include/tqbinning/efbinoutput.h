#pragma once

#include <iosfwd>
#include <vector>

#include "tqbinning/export.h"
#include "tqbinning/tqstatus.h"

// The outcome of equal-frequency binning of one attribute.  A value: copies are
// deep.  Filled by EFBINOutput alone.
class TQBINNING_EXPORT BINAttributeResults final {
 public:
  // OK, no bins, index -1, numbers 0.
  BINAttributeResults();
  BINAttributeResults(const BINAttributeResults&);
  BINAttributeResults& operator=(const BINAttributeResults&);
  ~BINAttributeResults();

  TQBinning::TQStatus GetStatus() const;             // how binning this attribute ended
  int GetAttributeIndex() const;                     // variable list index
  const std::vector<double>& GetCutPoints() const;   // ascending
  const std::vector<double>& GetCellCounts() const;  // weight of each bin
  unsigned int GetNDistinctValues() const;           // of the cases binned
  double GetTotalWeight() const;                     // weight of the cases binned
  double GetTotalWeightWithMissing() const;          // and of those with a missing value
  double GetMinimum() const;                         // of the cases binned
  double GetMaximum() const;                         // of the cases binned

  virtual std::ostream& Display(std::ostream& os) const;  // for people to read

 private:
  friend class EFBINOutput;

  TQBinning::TQStatus fStatus;
  int fAttributeIndex;
  std::vector<double> fCutPoints;
  std::vector<double> fCellCounts;
  unsigned int fNDistinctValues;
  double fTotalWeight;
  double fTotalWeightWithMissing;
  double fMinimum;
  double fMaximum;
};

// The results of an equal-frequency run, in the order in which they were stored.
// Only grows: an attribute that is stored twice is kept twice.  Copies are deep.
class TQBINNING_EXPORT EFBINOutput {
 public:
  EFBINOutput();                               // nothing stored
  EFBINOutput(const EFBINOutput&);             // a copy
  EFBINOutput& operator=(const EFBINOutput&);  // a copy
  virtual ~EFBINOutput();

  // Stores one attribute's outcome as it is, `status` being part of it.  Error
  // 120011, with nothing stored: a negative index.
  TQBinning::TQStatus SetAttributeResults(TQBinning::TQStatus status,
                                          const std::vector<double>& cutPoints,
                                          const std::vector<double>& cellCounts, int attributeIndex,
                                          unsigned int nDistinctValues, double totalWeight,
                                          double totalWeightWithMissing, double minimum,
                                          double maximum);

  // Copies the first value stored for an attribute into `out` and returns that
  // value's own status.  Error 120013, with `out` unchanged: a negative index, or
  // nothing stored for it.
  TQBinning::TQStatus GetAttributeCutPoints(int attributeIndex, BINAttributeResults& out) const;
  // Replaces `out` by all values.  Error 120020, with `out` unchanged: none stored.
  TQBinning::TQStatus GetAllCutPoints(std::vector<BINAttributeResults>& out) const;

  virtual std::ostream& Display(std::ostream& os) const;  // for people to read

 private:
  std::vector<BINAttributeResults> fResults;
};
