#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "tqbinning/bincancelinfo.h"
#include "tqbinning/bindatatuple.h"
#include "tqbinning/binvarlist.h"
#include "tqbinning/efbinoutput.h"
#include "tqbinning/efbinsettings.h"
#include "tqbinning/export.h"
#include "tqbinning/tqstatus.h"

class BINDataPreparator;
class BINDataSet;
class BINEFPreProcess;
class ProgressListener;
class TQQueryCancel;

namespace TQBinning {
struct SortedValues;
}

namespace TQCommon {
class RecordIterator;
}

// Equal-frequency binning as a host sees it: made by EFBINFactory, deleted by the
// host.  Not thread-safe but for Cancel, which may be called from any thread.
class TQBINNING_EXPORT IEFBINAlgorithm {
 public:
  virtual ~IEFBINAlgorithm();
  // "Supervised Binning Component Ver. 1.0" and an ownership notice.
  virtual std::string GetComponentVersion() const = 0;
  // Bins the attributes (variable indices), or every variable but the weight when
  // the list is null, and adds to the results.  The first call reads `records`
  // (borrowed during the call); later calls reuse those data.  OK; warning 120018
  // when an attribute ended not OK (its status is in its result); or an error: 1,
  // 3, 120004, 120009, 120011, 120012, 120021.
  virtual TQBinning::TQStatus CreateBins(TQCommon::RecordIterator& records,
                                         const std::vector<int>* attributeIndices) = 0;
  virtual void SetCancelPtr(TQQueryCancel* query) = 0;  // borrowed, may be null
  virtual void Cancel() = 0;  // ends the run at its next polling point, for good
  virtual void SetProgressListener(ProgressListener* listener) = 0;  // borrowed
  virtual const EFBINOutput& GetBinningResults() const = 0;
  // The last attribute's status that was not OK, or code 1 once cancelled.
  virtual TQBinning::TQStatus GetStatus() = 0;
  virtual const EFBINSettings& GetSettings() const = 0;  // the algorithm's own copy
  // To be called only after a CreateBins that has read the data.
  virtual std::ostream& Display(std::ostream& os) const = 0;
};

// The equal-frequency algorithm: each attribute is cut into bins of about equal
// case weight.
class TQBINNING_EXPORT EFBINAlgorithm : public IEFBINAlgorithm {
 public:
  // Copies both; the status is OK.
  EFBINAlgorithm(EFBINSettings& settings, BINVarList& varList);
  EFBINAlgorithm(const EFBINAlgorithm&) = delete;
  EFBINAlgorithm& operator=(const EFBINAlgorithm&) = delete;
  ~EFBINAlgorithm() override;  // removes the temporary files

  std::string GetComponentVersion() const override;
  TQBinning::TQStatus CreateBins(TQCommon::RecordIterator& records,
                                 const std::vector<int>* attributeIndices) override;
  void SetCancelPtr(TQQueryCancel* query) override;
  void Cancel() override;
  void SetProgressListener(ProgressListener* listener) override;
  const EFBINOutput& GetBinningResults() const override;
  TQBinning::TQStatus GetStatus() override;
  const EFBINSettings& GetSettings() const override;
  std::ostream& Display(std::ostream& os) const override;
  virtual const BINVarList& GetVarList() const;  // the algorithm's own copy

 protected:
  void DoCancel();
  bool CheckVariableIndices(const std::vector<int>* indices,
                            std::vector<TQBinning::TQStatus>& statuses);
  TQBinning::TQStatus DoCreateBins(const std::vector<int>* indices);
  TQBinning::TQStatus RunAlgorithm(unsigned int attributeIndex);

  TQBinning::TQStatus CheckAttribute(int attribute) const;
  TQBINNING_HIDDEN TQBinning::TQStatus BinCurrentAttribute(unsigned int attributeIndex,
                                                           const TQBinning::SortedValues& sorted,
                                                           std::vector<double>& cutPoints,
                                                           std::vector<double>& counts);

  unsigned long fRecordCount;  // valid cases of the current attribute
  bool fRightBorderClosed;
  int fNumberOfBins;
  EFBINSettings fSettings;
  BINVarList fVarList;
  TQBinning::TQStatus fStatus;
  BINCancelInfo fCancelInfo;
  std::unique_ptr<BINDataPreparator> fPreparator;   // null until the data pass
  std::unique_ptr<BINDataSet> fDataSet;             // null until the data pass
  std::unique_ptr<BINEFPreProcess> fPreProcess;     // exists during DoCreateBins
  std::vector<TQBinning::TQStatus> fIndexStatuses;  // one per requested index
  int fWeightIndex;
  std::vector<EFBINDataTuple>* fTuples;  // the data set's, of the current attribute
  EFBINOutput fOutput;
};
