#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "tqbinning/bindatacache.h"
#include "tqbinning/binvariable.h"
#include "tqbinning/export.h"
#include "tqbinning/tqstatus.h"

class BINCancelInfo;
class BINRoundEncoder;
class BINVarList;
class IBINUserMissing;
class ProgressListener;

namespace TQCommon {
class Record;
class RecordIterator;
}  // namespace TQCommon

// Makes the one pass over the host's cases: filters them and spools them column
// by column to temporary files, which it removes when it is destroyed.  Column 0
// is the target (when there is one), the next the weight (when there is one),
// then the attributes in list order.  Borrows list, cancellation and listener.
class TQBINNING_EXPORT BINDataPreparator {
 public:
  // Lays the columns out; reads nothing.  `tempDirectory` may be empty (the
  // working directory); `listener` may be null; `progressInterval` is the number
  // of iterator steps from one report to the next (0: never).
  BINDataPreparator(BINVarList& varList, BINCancelInfo& cancelInfo, std::string tempDirectory,
                    ProgressListener* listener, int progressInterval);
  BINDataPreparator(const BINDataPreparator&) = delete;
  BINDataPreparator& operator=(const BINDataPreparator&) = delete;
  ~BINDataPreparator();

  // The whole pass.  Errors: 1 cancelled; 3 no memory for the cache; 120004 no
  // case was kept; 120012 a target code outside 0..255 when the list has no other
  // categorical variable (datum 0: target index); 120021 a file cannot be written.
  TQBinning::TQStatus ProcessSource(TQCommon::RecordIterator& source);
  // Builds one processed record in `out` (as many fields as there are columns), or
  // marks the case to be dropped because its weight is missing.  Warning or error
  // 120012 as above (datum 0 of a warning: target index or attribute column).
  TQBinning::TQStatus ProcessRecord(const TQCommon::Record& in, TQCommon::Record& out);
  // Sizes the cache and chooses unused file names.  Errors: 1, 3.
  TQBinning::TQStatus SetUpTempFiles();
  // Appends every cache row to its file and empties the cache, even on failure.
  // Error: 120021.
  TQBinning::TQStatus TransferData();
  // Whether a column is still usable.  Error 120013, with `isValid` left alone,
  // for a column out of range.
  TQBinning::TQStatus IsValidTarget(int column, bool& isValid);

  // The lasting status: why the prepared data cannot be used, else OK.
  TQBinning::TQStatus GetStatus() const;
  BINVarList& GetVarList() const;
  // One name per column; names beyond the number of variables are empty.
  const std::vector<std::string>& GetFileNames() const;

  unsigned long GetNumberOfKeptCases() const;  // read and not dropped
  // The column of each variable of the list, -1 for none.
  const std::vector<int>& GetVariableIndex() const;
  // The largest category code met in a column, 0 at first.
  int GetLargestCode(int column) const;
  // Records why the pass ended, when its data cannot be used.
  void KeepFailure(const TQBinning::TQStatus& status);

  std::ostream& Display(std::ostream& os) const;  // for people to read

 protected:
  void AddVariable(int k);
  template <typename Put>
  TQBinning::TQStatus ProcessCase(const TQCommon::Record& in, Put put);
  template <typename Put>
  TQBinning::TQStatus ProcessTarget(double value, Put put);
  TQBinning::TQStatus ReadCases(TQCommon::RecordIterator& source);
  void StopLostColumns(unsigned int cases, std::vector<bool>& isGrowing);
  TQBinning::TQStatus TransferBlock(unsigned int cases);
  void InvalidateUndeclaredColumns();
  TQBinning::TQStatus NameTempFiles();
  void RemoveTempFiles();

  std::string fTempDirectory;
  ProgressListener* fListener;  // borrowed, may be null
  int fProgressInterval;
  std::vector<int> fVariableIndex;  // column of each variable, -1 for none
  std::vector<int> fInputIndices;   // list positions of the attributes
  int fTargetIndex;                 // list position, -1 when none
  int fWeightOriginalIndex;         // list position, -1 when none
  int fWeightNewIndex;              // above 0 when there is a weight
  std::vector<IBINVariable::MeasureLevel> fMeasureLevels;
  std::vector<IBINVariable::VariableRole> fRoles;
  std::vector<IBINUserMissing*> fUserMissing;  // borrowed, null when none
  BINVarList& fVarList;
  std::vector<int> fLargestCodes;     // one per column
  std::vector<bool> fPossibleInputs;  // one per column
  TQBinning::TQStatus fStatus;
  double fTwoToThe64;  // 2^64; part of the layout, not used by this class
  bool fDropCase;
  int fOrigRecSize;   // number of variables and of temporary files
  int fProcRecSize;   // number of columns
  int fInputRecSize;  // number of attributes
  BINCancelInfo& fCancelInfo;
  BINRoundEncoder* fWeightEncoder;  // borrowed, null without a weight
  std::vector<std::string> fFileNames;
  BINDataCache fCache;  // a row per column, a column per case
  int fCacheCapacity;   // cases per row
  unsigned long fKeptCases;
  int fHasWeight;  // 0 or 1
  int fHasTarget;  // 0 or 1
};
