#pragma once

#include "tqcommon/missingvalue.h"

namespace TQBinning {

// Whether a datum is system-missing: ordinary equality, so a NaN is not.
inline bool IsMissing(double value) { return value == TQMV::gMissingValue; }

}  // namespace TQBinning
