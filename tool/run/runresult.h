#pragma once

#include <string>
#include <vector>

#include <tqbinning/tqbinning.h>

#include "cli/options.h"
#include "input/recordfeed.h"

namespace TQTool {

// One bin of a column.  The cut points are its ends; which of the two belongs to
// it, the options tell.
struct Bin {
  double lower;  // minus infinity for the first bin
  double upper;  // plus infinity for the last one
  double weight;
  std::vector<double> classWeights;  // one per category; empty without target
};

// What came of one column, in the library's numbers.  A number that is not known
// is TQMV::gMissingValue.
struct AttributeResult {
  std::string name;
  TQBinning::TQStatus status;
  std::vector<double> cuts;
  std::vector<Bin> bins;  // one more than cuts; none when there was nothing to bin
  unsigned int numDistinct = 0;
  double weight = 0.0;             // of the cases binned
  double weightWithMissing = 0.0;  // of all cases
  double minimum = 0.0;
  double maximum = 0.0;
  double entropy = TQMV::gMissingValue;  // weighted mean of the bins' class entropies, in bits
  bool isPreBinned = false;              // so its cuts are borders of pre-bins
};

// What came of a run.
struct RunResult {
  Options options;
  std::string inputName;
  FedData fed;
  std::vector<std::string> categories;  // of the target, sorted; empty without target
  TQBinning::TQStatus status;
  std::vector<AttributeResult> attributes;
};

}  // namespace TQTool
