#pragma once

#include <iosfwd>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "tqbinning/bincancelinfo.h"
#include "tqbinning/bindatatuple.h"
#include "tqbinning/binoutput.h"
#include "tqbinning/binsettings.h"
#include "tqbinning/binvarlist.h"
#include "tqbinning/export.h"
#include "tqbinning/tqstatus.h"

class BINDataPreparator;
class BINDataSet;
class BINEFPreProcess;
class ProgressListener;
class TQQueryCancel;

namespace TQCommon {
class RecordIterator;
}

// Supervised binning as a host sees it: made by BINFactory, deleted by the host.
// Not thread-safe but for Cancel, which may be called from any thread.
class TQBINNING_EXPORT IBINAlgorithm {
 public:
  virtual ~IBINAlgorithm();
  // "Supervised Binning Component Ver. 1.0" and an ownership notice.
  virtual std::string GetComponentVersion() const = 0;
  // Bins attributes against targets, pair by pair, and adds to the results.  The
  // lists hold variable indices, and are of equal length; without targets each
  // attribute goes against the list's target; without either list every variable
  // but target and weight does.  The first call reads `records` (borrowed during
  // the call); later calls reuse those data.  OK; warning 120018 when a pair ended
  // not OK (each pair's status is in its result); or an error: 1, 3, 120004,
  // 120008, 120009, 120010, 120012, 120021.
  virtual TQBinning::TQStatus CreateBins(TQCommon::RecordIterator& records,
                                         const std::vector<int>* attributes,
                                         const std::vector<int>* targets) = 0;
  virtual void SetCancelPtr(TQQueryCancel* query) = 0;  // borrowed, may be null
  virtual void Cancel() = 0;  // ends the run at its next polling point, for good
  virtual void SetProgressListener(ProgressListener* listener) = 0;  // borrowed
  virtual const BINOutput& GetBinningResults() const = 0;
  // The last pair's status that was not OK, or code 1 once cancelled.
  virtual TQBinning::TQStatus GetStatus() = 0;
  virtual const BINSettings& GetSettings() const = 0;  // the algorithm's own copy
  // To be called only after a CreateBins that has read the data.
  virtual std::ostream& Display(std::ostream& os) const = 0;
};

// The supervised algorithm: recursive minimum-entropy splitting with the MDL stop
// rule (Fayyad and Irani, 1993), optional equal-frequency pre-binning before it
// and merging of small bins after it.
class TQBINNING_EXPORT BINAlgorithm : public IBINAlgorithm {
 public:
  // Copies both; the status is OK.
  BINAlgorithm(BINSettings& settings, BINVarList& varList);
  BINAlgorithm(const BINAlgorithm&) = delete;
  BINAlgorithm& operator=(const BINAlgorithm&) = delete;
  ~BINAlgorithm() override;  // removes the temporary files

  std::string GetComponentVersion() const override;
  TQBinning::TQStatus CreateBins(TQCommon::RecordIterator& records,
                                 const std::vector<int>* attributes,
                                 const std::vector<int>* targets) override;
  void SetCancelPtr(TQQueryCancel* query) override;
  void Cancel() override;
  void SetProgressListener(ProgressListener* listener) override;
  const BINOutput& GetBinningResults() const override;
  TQBinning::TQStatus GetStatus() override;
  const BINSettings& GetSettings() const override;
  std::ostream& Display(std::ostream& os) const override;
  virtual const BINVarList& GetVarList() const;  // the algorithm's own copy

  // The arithmetic of a pair.  K is the number of target categories of the pair
  // being binned; class counts are K+1 numbers, the total weight and then the
  // weight per category; a counts table has one row of K weights per value.
  // Logarithms are to base 2, computed as the natural one / 0.6931471805599453.

  // Class entropy in bits: the sum of -p log2 p; 0 for no weight or K = 0.
  double Entropy(const std::vector<double>* classCounts) const;
  // The weighted mean entropy of the two parts of a split.
  double ComputeEntropy(const std::vector<double>* left, const std::vector<double>* right) const;
  // The description length of a split beyond its data: log2(3^k - 2) - (k E(all) -
  // k1 E(left) - k2 E(right)), k1 and k2 being the numbers of categories present in
  // the parts and k their sum.
  double ComputeDelta(const std::vector<double>* left, const std::vector<double>* right,
                      double entropyAll) const;
  // The position of least split entropy in rows first..last, the leftmost of
  // equals; 0 when none qualifies.  On entry `left` is zero and `right` the whole
  // interval; afterwards they are the parts of the chosen split.
  int FindBestCutPoint(const std::vector<double>* counts, int first, int last,
                       std::vector<double>* left, std::vector<double>* right) const;
  // Splits rows first..last as long as the MDL test accepts (Fayyad and Irani,
  // 1993) and inserts the cut values.  Error 120002: null or ill-sized tables.
  TQBinning::TQStatus MDLPCut(const std::vector<double>* values, const std::vector<double>* counts,
                              int first, int last, std::set<double>& cuts) const;
  // Cuts, cell counts (bin after bin, K+1 numbers each) and model entropy of the
  // current attribute over its distinct values, or over pre-bins whose borders are
  // given (and modified).  Warning 120017: no cut accepted, one bin; 120002 as from
  // BINDataSet::CreateBinTable, with nothing produced.
  TQBinning::TQStatus MDLP(const std::vector<BINDataTuple>* tuples, std::set<double>& cuts,
                           std::vector<double>& cellCounts, double& modelEntropy) const;
  TQBinning::TQStatus MDLP(const std::vector<BINDataTuple>* tuples,
                           std::vector<double>& percentileCuts, std::set<double>& cuts,
                           std::vector<double>& cellCounts, double& modelEntropy) const;
  // Merges inner bins that weigh less than the small-bin threshold times their
  // lighter neighbour, each with the neighbour that leaves less entropy.
  void ProcessLittleBins(std::vector<double>* cellCounts, std::set<double>& cuts) const;
  // The weighted mean of the bins' entropies, over the attribute's valid weight.
  void ComputeModelEntropy(const std::vector<double>& cellCounts, double& modelEntropy) const;

 protected:
  void DoCancel();
  bool CheckVariableIndices(const std::vector<int>* attributes, const std::vector<int>* targets,
                            std::vector<TQBinning::TQStatus>& statuses);
  TQBinning::TQStatus DoCreateBins(const std::vector<int>* attributes,
                                   const std::vector<int>* targets);
  TQBinning::TQStatus RunAlgorithm(unsigned int attribute, unsigned int target);

  TQBinning::TQStatus CheckPair(int attribute, int target) const;
  TQBinning::TQStatus CheckAttribute(int attribute) const;
  TQBinning::TQStatus BinCurrentPair(unsigned int attribute, unsigned int target,
                                     std::set<double>& cuts, std::vector<double>& cellCounts,
                                     double& modelEntropy);
  TQBinning::TQStatus BinTuples(std::set<double>& cuts, std::vector<double>& cellCounts,
                                double& modelEntropy);
  TQBinning::TQStatus BinRows(std::vector<double>& borders, std::set<double>& cuts,
                              std::vector<double>& cellCounts, double& modelEntropy) const;
  TQBinning::TQStatus FinishBins(std::set<double>& cuts, std::vector<double>& cellCounts,
                                 double& modelEntropy) const;

  unsigned long fRecordCount;   // valid cases of the current pair
  unsigned int fNumCategories;  // K of the current pair
  bool fRightBorderClosed;
  int fNumberOfBins;
  BINSettings fSettings;
  BINVarList fVarList;
  TQBinning::TQStatus fStatus;
  BINCancelInfo fCancelInfo;
  std::unique_ptr<BINDataPreparator> fPreparator;  // null until the data pass
  std::unique_ptr<BINDataSet> fDataSet;            // null until the data pass
  std::unique_ptr<BINEFPreProcess> fPreProcess;    // exists during DoCreateBins
  std::vector<TQBinning::TQStatus> fPairStatuses;  // one per requested pair
  int fDefaultTargetIndex;
  int fWeightIndex;
  std::vector<BINDataTuple>* fTuples;  // the data set's, of the current pair
  BINOutput fOutput;
};
