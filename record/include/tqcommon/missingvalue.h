#pragma once

#include "tqcommon/export.h"

namespace TQMV {

// The system-missing value: marks a missing datum in records, and an unknown
// number in results and progress reports.  Compared with ordinary equality.  It
// is the most negative finite double, which no measurement takes.
TQCOMMON_EXPORT extern const double gMissingValue;

}  // namespace TQMV
