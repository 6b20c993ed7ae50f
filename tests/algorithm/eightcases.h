#pragma once

#include "algorithm/binningrun.h"
#include "support/memoryrecords.h"

// Columns of eight cases each, of which the tests of the drivers are made.
namespace support {

inline const Numbers k1To8{1, 2, 3, 4, 5, 6, 7, 8};
inline const Numbers kHalves{0, 0, 0, 0, 1, 1, 1, 1};    // cut by k1To8 at 4
inline const Numbers kReversed{8, 7, 6, 5, 4, 3, 2, 1};  // cut by kHalves at 4 as well
inline const Numbers kAlternating{0, 1, 0, 1, 0, 1, 0, 1};
inline const Numbers kScattered{1, 5, 2, 6, 3, 7, 4, 8};  // kHalves cannot be told from it
inline const Numbers kConstant(8, 3.0);
inline const Numbers kNothing(8, kMissing);
inline const Numbers kZeros(8, 0.0);

// One attribute of eight values.
inline Rows EightCases() { return Columns({k1To8}); }

// One attribute that can be cut, and its target.
inline Rows CuttableRows() { return Columns({k1To8, kHalves}); }

}  // namespace support
