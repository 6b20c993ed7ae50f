#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include <tqbinning/tqbinning.h>
#include <tqcommon/tqcommon.h>

#include "input/numbertext.h"
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
  std::uint64_t rows = 0;           // in the input
  std::uint64_t cases = 0;          // with a weight above zero, so that they count
  std::uint64_t withoutTarget = 0;  // cases whose target is missing
  double weight = 0.0;              // of all cases
  std::vector<FedAttribute> attributes;
};

// The rows of a source as the library's cases, one variable after another as
// MakeVarList lists them.  Learns the target's categories in passing, through the
// list's encoder.  No exception leaves it: an error ends the cases and is kept.
class RecordFeed : public TQCommon::RecordIterator {
 public:
  // All are borrowed; `list` is the one that MakeVarList made of the columns.
  RecordFeed(Source& source, const Columns& columns, const MissingTokens& missing,
             BINVarList& list);

  bool HasMore() override { return !fIsDone; }
  const TQCommon::Record* Next() override;

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

  bool ReadRow();
  double ReadTarget();
  double ReadValue(std::size_t column);
  [[noreturn]] void FailAtValue(std::size_t column, NumberText found) const;
  void Account(double target, double weight);

  Source& fSource;
  const Columns& fColumns;
  const MissingTokens& fMissing;
  BINStringEncoder* fTargetEncoder;       // the list's; null without target
  const BINRoundEncoder* fWeightEncoder;  // the list's; null without weight
  std::vector<Attribute> fAttributes;
  int fFirstAttribute;  // its field in the record
  TQCommon::Record fRecord;
  std::string fCategory;
  FedData fFed;
  bool fIsDone;
  std::exception_ptr fError;
};

}  // namespace TQTool
