#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <tqbinning/tqbinning.h>
#include <tqcommon/tqcommon.h>

#include "input/numbertext.h"
#include "input/readahead.h"
#include "input/source.h"
#include "run/columns.h"

namespace TQTool {

// What was handed to the library, added up case by case as the library does, so
// that its results can be held against it to the last bit.
struct FedAttribute {
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
  std::uint64_t withoutTarget = 0;             // cases whose target is missing
  double weight = 0.0;                         // of all cases
  std::vector<FedAttribute> attributes;
};

// The rows of a source as the library's cases, one variable after another as
// MakeVarList lists them.  Learns the target's categories in passing, through the
// list's encoder.  No exception leaves it: an error ends the cases and is kept.
// From the first Next until the cases are done, a thread reads ahead: source and
// list are then its own, and what was fed is not yet to be asked for.
class RecordFeed : public TQCommon::RecordIterator {
 public:
  // All are borrowed; `list` is the one that MakeVarList made of the columns.
  RecordFeed(Source& source, const Columns& columns, const MissingTokens& missing,
             BINVarList& list);

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
  // One attribute's column, and what is missing in it besides missing texts.
  struct Attribute {
    std::size_t column;
    const BINNumericUserMissing* userMissing;  // null when none; the list's
  };

  bool NextBlock();
  void FillBlock(RecordBlock& block);
  bool ReadRow(TQCommon::Record& record);
  double ReadTarget();
  double ReadValue(std::size_t column);
  [[noreturn]] void FailAtValue(std::size_t column, NumberText found) const;
  void AccountDropped(double givenWeight);
  void Account(const TQCommon::Record& record, double target, double weight);

  Source& fSource;
  const Columns& fColumns;
  const MissingTokens& fMissing;
  BINStringEncoder* fTargetEncoder;       // the list's; null without target
  const BINRoundEncoder* fWeightEncoder;  // the list's; null without weight
  std::vector<Attribute> fAttributes;
  int fFirstAttribute;  // its field in the record
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
