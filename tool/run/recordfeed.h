#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <tqbinning/tqbinning.h>
#include <tqcommon/tqcommon.h>

#include "input/missingtokens.h"
#include "input/numbertext.h"
#include "input/readahead.h"
#include "input/source.h"
#include "model/model.h"
#include "run/columns.h"

namespace TQTool {

class CaseSpool;

// What was handed to the library, added up case by case as the library does, so
// that its results can be held against it to the last bit.
struct FedPair {
  double validWeight = 0.0;  // of the cases with target and value
  double minimum = TQMV::gMissingValue;
  double maximum = TQMV::gMissingValue;
};
struct FedData {
  std::uint64_t rows = 0;   // in the input
  std::uint64_t cases = 0;  // with a weight above zero, so that they count
  // Why the other rows do not count.
  std::uint64_t droppedWeightMissing = 0;
  std::uint64_t droppedWeightNotPositive = 0;
  std::uint64_t droppedWeightRoundedAway = 0;  // above zero, but not when made whole
  double weight = 0.0;                         // of all cases
  std::vector<std::uint64_t> withoutTarget;    // per target: cases where it is missing
  std::vector<FedPair> pairs;                  // as the columns'
};

// What becomes of a weight before the library sees it.
struct WeightRule {
  MissingRule missing;  // of the weight as it was read
  // By these it is multiplied and divided; one of them is 1.
  double factor = 1.0;
  double divisor = 1.0;
};

// The rows of a source as the library's cases, one variable after another as
// MakeVarList lists them, with missing values as the library has them.  Learns the
// targets' categories in passing, through the list's encoders.  No exception leaves it: an error
// ends the cases and is kept. From the first Next until the cases are done, a thread reads ahead:
// source and list are then its own, and what was fed is not yet to be asked for.
class RecordFeed : public TQCommon::RecordIterator {
 public:
  // All are borrowed but the rule; `list` is the one that MakeVarList made of the columns.
  RecordFeed(Source& source, const Columns& columns, const MissingTokens& missing, BINVarList& list,
             WeightRule weightRule = {});

  // Adds every case that counts to `spool` (borrowed); to be said before the first Next.
  void KeepCasesIn(CaseSpool& spool) { fSpool = &spool; }

  bool HasMore() override { return !fIsDone; }
  const TQCommon::Record* Next() override {
    if (fPosition == fCount && !NextBlock()) return nullptr;
    return fRecords + fPosition++;
  }

  // Throws the error that ended the cases early, if one did.
  void RethrowError() const;

  bool IsDone() const { return fIsDone; }
  const FedData& GetFedData() const { return fFed; }

 private:
  bool NextBlock();
  void FillBlock(RecordBlock& block);
  bool ReadRow(TQCommon::Record& record);
  double ReadTarget(std::size_t target);
  double ReadValue(std::size_t column);
  double ReadAttribute(std::size_t attribute);
  double ReadWeight();
  [[noreturn]] void FailAtValue(std::size_t column, NumberText found) const;
  void AccountDropped(double weight);
  void Account(const TQCommon::Record& record, double weight);

  Source& fSource;
  const Columns& fColumns;
  const MissingTokens& fMissing;
  std::vector<BINStringEncoder*> fTargetEncoders;  // the list's
  std::vector<double> fNumCategories;              // per target, that were met so far
  const BINRoundEncoder* fWeightEncoder;           // the list's; null without weight
  WeightRule fWeightRule;
  // The list's, per attribute: what is missing besides missing texts; null for nothing.
  std::vector<const BINNumericUserMissing*> fUserMissing;
  CaseSpool* fSpool = nullptr;  // null when nobody wants the cases again
  int fRecordSize;
  std::string fCategory;
  FedData fFed;
  bool fIsDone;
  bool fIsLastBlock;
  std::exception_ptr fError;
  const TQCommon::Record* fRecords;  // of the current block
  std::size_t fPosition;             // in it
  std::size_t fCount;
  std::unique_ptr<ReadAhead> fReadAhead;  // last: its thread uses the rest
};

}  // namespace TQTool
