#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "bench/support/columns.h"

// Data sets on disk: a directory with a file of raw little-endian doubles for each
// column (x0.f64, x1.f64, ..., y.f64 for the target's codes, w.f64 for weights) and
// the same data as data.csv, whose header is x0,x1,...,y[,w].  Failures are thrown
// as std::runtime_error.
namespace bench {

// Writes the column files, and the CSV file when asked.  A file appears under its
// name only once it is whole.
void WriteDataSet(const Columns& columns, const std::string& directory, bool withCsv);

// Reads the first `rows` rows of the first `attributes` attributes, the target and,
// when asked, the weights.
Columns ReadDataSet(const std::string& directory, std::size_t rows, int attributes,
                    bool withWeights);

}  // namespace bench
