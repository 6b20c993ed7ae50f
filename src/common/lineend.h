#pragma once

#include <ostream>

namespace TQBinning {

// Ends a line of a display: a newline followed by a flush, so that a dump is
// complete on the screen up to the point where a program stops.
inline std::ostream& LineEnd(std::ostream& os) { return os.put('\n').flush(); }

}  // namespace TQBinning
