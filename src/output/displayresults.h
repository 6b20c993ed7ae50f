#pragma once

#include <ostream>
#include <vector>

#include "common/lineend.h"
#include "tqbinning/tqstatus.h"

// The lines that the results of both families have in common.
namespace TQBinning {

inline void DisplayAttributeIndex(std::ostream& os, int attributeIndex) {
  // The leading label is part of the text that hosts know.
  os << "BINDataTuple   attribute = " << attributeIndex << LineEnd;
}

inline void DisplaySummary(std::ostream& os, unsigned int nDistinctValues, double totalWeight,
                           double totalWeightWithMissing, double minimum, double maximum) {
  os << "Number of distinct values = " << nDistinctValues << LineEnd;
  os << "Total weight = " << totalWeight << LineEnd;
  os << "Total weight with missing = " << totalWeightWithMissing << LineEnd;
  os << "Minimum = " << minimum << LineEnd;
  os << "Maximum = " << maximum << LineEnd;
}

inline void DisplayFailure(std::ostream& os, const TQStatus& status) {
  if (!status.IsOK()) os << "Status has error code " << status.GetErrorCode() << LineEnd;
}

inline void DisplayCutPoints(std::ostream& os, const std::vector<double>& cutPoints) {
  os << "Number of cutpoints = " << cutPoints.size();
  if (!cutPoints.empty()) os << ", the cutpoints:";
  os << LineEnd;
  for (const double cut : cutPoints) os << cut << LineEnd;
}

inline void DisplayCounts(std::ostream& os, const std::vector<double>& counts) {
  for (const double count : counts) os << count << "  ";
  os << LineEnd;
}

template <typename Results>
std::ostream& DisplayResults(std::ostream& os, const char* className,
                             const std::vector<Results>& results) {
  os << LineEnd << "Start of " << className << " display" << LineEnd << "cut point :";
  for (const Results& value : results) value.Display(os);
  return os << LineEnd << "End of " << className << " display" << LineEnd;
}

}  // namespace TQBinning
