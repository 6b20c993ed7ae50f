#pragma once

#include <iosfwd>
#include <string>
#include <valarray>
#include <vector>

#include "tqbinning/binvariable.h"
#include "tqbinning/export.h"

// Writers of human-readable dumps, used by every class's Display.  A line end is
// a newline followed by a flush.  Each returns the stream that it was given.
namespace TQBinning {

// The name, " = ", the value ("<missing>" for TQMV::gMissingValue), a line end.
TQBINNING_EXPORT std::ostream& Display(std::ostream& os, std::string name, double value);
// "Yes" or "No", without a line end.
TQBINNING_EXPORT std::ostream& Display(std::ostream& os, bool value);
// The enumerator in words, and a line end.
TQBINNING_EXPORT std::ostream& Display(std::ostream& os, IBINVariable::BINWRoundingOption option);
TQBINNING_EXPORT std::ostream& Display(std::ostream& os, IBINVariable::VariableRole role);
TQBINNING_EXPORT std::ostream& Display(std::ostream& os, IBINVariable::MeasureLevel level);

// A list: a header with the name and the count, then the elements, several to a
// line.  Widths, precision and line lengths differ between the forms on purpose.
TQBINNING_EXPORT std::ostream& DisplayD(std::ostream& os, const double* values, int n,
                                        const std::string& name);
TQBINNING_EXPORT std::ostream& DisplayD(std::ostream& os, const std::valarray<double>& values,
                                        const std::string& name);
TQBINNING_EXPORT std::ostream& DisplayD(std::ostream& os, const std::vector<double>& values,
                                        const std::string& name);
TQBINNING_EXPORT std::ostream& DisplayI(std::ostream& os, const std::valarray<int>& values,
                                        const std::string& name);
TQBINNING_EXPORT std::ostream& DisplayI(std::ostream& os, const std::vector<int>& values,
                                        const std::string& name);
TQBINNING_EXPORT std::ostream& DisplayB(std::ostream& os, const std::valarray<bool>& values,
                                        const std::string& name);

// A square matrix of n rows, stored row by row.
TQBINNING_EXPORT std::ostream& DisplayMI(std::ostream& os, const int* matrix, unsigned int n,
                                         const std::string& name);
TQBINNING_EXPORT std::ostream& DisplayMD(std::ostream& os, const double* matrix, unsigned int n,
                                         const std::string& name);

}  // namespace TQBinning
