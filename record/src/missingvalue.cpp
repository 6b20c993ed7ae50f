#include "tqcommon/missingvalue.h"

#include <limits>

namespace TQMV {
const double gMissingValue = std::numeric_limits<double>::lowest();
}  // namespace TQMV
