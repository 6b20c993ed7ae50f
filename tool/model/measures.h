#pragma once

#include <optional>
#include <vector>

#include "model/model.h"

namespace TQTool {

// What the bins of a column tell about a target; the formulas are in docs/measures.md.
struct Measures {
  double informationGain = 0.0;  // in bits

  // For a target of two categories only, of which the second is the event.
  struct OfBin {
    double eventRate = TQMV::gMissingValue;  // not known for an empty bin
    double weightOfEvidence = 0.0;           // above 0: more events than on the whole
    double informationValue = 0.0;           // what the bin adds to the column's
  };
  std::vector<OfBin> bins;        // empty for another number of categories
  double informationValue = 0.0;  // the sum over the bins
};

// The part of all cases' weight that is in a bin; gMissingValue when it is not known.
double ShareOf(const Bin& bin, const BinnedAttribute& attribute);

// The measures of an attribute from its bins' weights; none without a target, without
// bins, or when a count is not known.
std::optional<Measures> MeasuresOf(const BinnedAttribute& attribute);

}  // namespace TQTool
