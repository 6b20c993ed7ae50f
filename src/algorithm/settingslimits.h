#pragma once

namespace TQBinning {

// Stores a setting unless it is below the least value that makes sense; whether it
// was stored.
inline bool SetAtLeast(int least, int value, int& field) {
  if (value < least) return false;
  field = value;
  return true;
}

// What settings of both families have in common.
constexpr int kFewestBins = 2;
constexpr int kNumberOfBinsNotSet = -1;  // CreateBins refuses it
constexpr int kDefaultSkippedCasesReports = 100000;

}  // namespace TQBinning
