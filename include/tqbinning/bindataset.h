#pragma once

#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "tqbinning/binaryrecorditerator.h"
#include "tqbinning/bindatatuple.h"
#include "tqbinning/export.h"
#include "tqbinning/tqstatus.h"

class BINDataPreparator;

namespace TQBinning {
class CaseSorter;
struct SortMemory;
struct SortedValues;
}  // namespace TQBinning

namespace TQCommon {
class RecordIterator;
}

// Reads the preparator's column files back, one attribute at a time, as tuples
// sorted by value, with the attribute's counts, extremes and weight totals.  One
// tuple vector of the length of the kept cases serves the whole run: only its
// first GetNumberOfValidTuples() elements belong to the current attribute, the
// rest is what earlier attributes left there.  Borrows source and preparator.
class TQBINNING_EXPORT BINDataSet {
 public:
  BINDataSet(TQCommon::RecordIterator& source, BINDataPreparator& preparator);  // reads nothing yet
  BINDataSet(const BINDataSet&) = delete;
  BINDataSet& operator=(const BINDataSet&) = delete;
  ~BINDataSet();

  // Runs the data pass and prepares reading.  Errors: the pass's own, or 3 when
  // the tuple vector cannot be had.
  TQBinning::TQStatus HandleDataFile();

  // Above how many distinct values an attribute is to be pre-binned; 0 is ignored.
  void SetThresholdDistinct(unsigned int threshold);
  // Sets the number of cases, from which tuple vectors are sized; false for 0.
  bool SetNumberOfCases(unsigned long n);

  // Whether a variable (by list index) can serve as target.  Errors: 120010 for a
  // negative index, 120013 for a variable without a file.
  TQBinning::TQStatus IsValidTarget(int target, bool& isValid);
  // Reads a column's valid cases into the tuples, in case order.  Always OK.
  TQBinning::TQStatus ReadNextAttribute(unsigned int column);

  // The attribute's tuples, sorted by value, for variables given by list index.
  // `tuples` points at the data set's vector, overwritten by the next call.  The
  // first form hands out null when the list has a target (it then keeps tuples
  // with targets only); the second returns error 120010, and null, when the
  // target is not a usable column.  Both return error 3, and null, when the disk fails.
  TQBinning::TQStatus GetAttribute(unsigned int attribute, std::vector<EFBINDataTuple>*& tuples);
  TQBinning::TQStatus GetAttribute(unsigned int attribute, unsigned int target,
                                   std::vector<BINDataTuple>*& tuples);

  // Class weights per bin of the current attribute: bin b (from 0), class c at
  // b * GetNumberOfClasses() + c, for the bins between `boundaries` (ascending;
  // the first is never compared).  Warning 120002: no boundaries, or tuples that
  // they do not cover; the table is then filled as far as it went.
  TQBinning::TQStatus CreateBinTable(const std::vector<double>* boundaries, bool rightClosed,
                                     std::vector<double>& table);

  // About the current attribute and target.
  int GetNumberOfClasses() const;  // largest code of the target's column + 1
  unsigned int GetNumberOfValidTuples() const;
  unsigned int GetNumberOfDistinctValues() const;
  double GetValidWeightTotal() const;  // weights of the valid tuples
  double GetWeightTotal() const;       // those of cases with missing values as well
  bool ExceedsThreshold() const;
  double GetMinimum() const;  // TQMV::gMissingValue without a tuple
  double GetMaximum() const;  // TQMV::gMissingValue without a tuple

 protected:
  // A reader is deleted as what it is: its class has no virtual destructor.
  struct ReaderDeleter {
    void operator()(TQBinning::BinaryRecordIterator* reader) const;
  };
  using Reader = std::unique_ptr<TQBinning::BinaryRecordIterator, ReaderDeleter>;

  friend class EFBINAlgorithm;

  // As GetAttribute, for a caller to whom sorted values are enough: where they say the same as
  // tuples (all cases valid, of weight 1, without a target) these are not written, and `sorted`
  // is not empty.  It is valid until the next call.
  TQBINNING_HIDDEN TQBinning::TQStatus GetSorted(unsigned int attribute,
                                                 std::vector<EFBINDataTuple>*& tuples,
                                                 TQBinning::SortedValues& sorted);
  TQBINNING_HIDDEN bool WriteTuples();
  TQBINNING_HIDDEN void WriteTail(const TQBinning::SortMemory& memory);
  int ColumnOf(unsigned int variable) const;
  Reader OpenColumn(int column) const;
  TQBinning::TQStatus AllocateTuples();
  TQBINNING_HIDDEN bool ReadTuples(unsigned int column);
  TQBINNING_HIDDEN bool TakeIn(TQBinning::CaseSorter& sorter, unsigned int column);
  template <typename Intake>
  TQBINNING_HIDDEN bool TakeInValues(Intake& intake, unsigned int column);
  template <typename Tuple>
  TQBINNING_HIDDEN bool SortInto(std::vector<Tuple>& tuples, unsigned int column,
                                 TQBinning::CaseSorter& sorter, TQBinning::SortMemory& memory);
  TQBINNING_HIDDEN void ForgetAttribute();
  template <typename Store>
  TQBINNING_HIDDEN bool ReadColumn(unsigned int column, Store store);
  template <typename Tuple>
  TQBINNING_HIDDEN bool ReadSorted(unsigned int column, std::vector<Tuple>* tuples);

  int fNumberOfClasses;
  bool fHasWeight;
  bool fHasTarget;
  std::unique_ptr<std::vector<BINDataTuple>> fSupervisedTuples;
  std::unique_ptr<std::vector<EFBINDataTuple>> fUnsupervisedTuples;
  Reader fTargetReader;  // stays open from attribute to attribute
  Reader fWeightReader;
  TQCommon::RecordIterator& fSource;
  BINDataPreparator& fPreparator;
  bool fThresholdSet;
  std::vector<std::string> fFileNames;
  const std::vector<int>* fVariableIndex;  // the preparator's
  unsigned int fNumberOfValidTuples;
  unsigned int fNumberOfDistinctValues;
  unsigned long fNumberOfCases;
  double fValidWeightTotal;
  double fWeightTotal;
  unsigned int fDistinctThreshold;
  bool fExceedsThreshold;
  int fTargetColumn;
  int fWeightColumn;  // -1 without a weight
  double fMinimum;
  double fMaximum;
  int fUnwrittenColumn;  // whose sorted values fUnsupervisedTuples stands for; -1: none
};
