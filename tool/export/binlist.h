#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "export/exportoptions.h"
#include "model/model.h"

namespace TQTool {

// Numbers lie strictly between minus and plus this one, as `apply` reads them: what is
// not, infinities and NaN with it, is missing.
inline constexpr double kNumberLimit = std::numeric_limits<double>::max();

// A bin, ready to be written in any language.
struct ExportBin {
  std::size_t index;  // from 0, ascending
  std::string text;   // what the bin is called
  double lower;       // -kNumberLimit, open, for the first bin
  double upper;       // kNumberLimit, open, for the last bin
  bool isLowerClosed;
  bool isUpperClosed;
};

// The bins of a column.
struct ExportColumn {
  std::string name;      // where the numbers come from
  std::string binsName;  // what the column of the bins is called
  bool isRightClosed;
  MissingRule missing;  // its range has finite ends
  std::vector<ExportBin> bins;
};

// All that is written of a model.
struct BinList {
  std::vector<ExportColumn> columns;
  std::vector<std::string> missingTexts;  // in every column, without blanks around them
  bool areIndexes;                        // the bins' texts are their indexes
  std::string table;
};

// The bins of every attribute of a model.  Throws ToolError (kInput) when the bins of two
// attributes would have one name, or that of a column.
BinList ListBins(const Model& model, const ExportOptions& options);

// The columns' cut points: the upper ends of all bins but the last.
std::vector<double> CutsOf(const ExportColumn& column);

// Names of functions, one per column: "bin_of_" and the letters and digits of the name,
// any other character an underscore, with a number behind it where it would come twice.
std::vector<std::string> FunctionNames(const BinList& list);

// "1.5, 2, 1e+100": as each reads back to the same double.
std::string JoinNumbers(const std::vector<double>& numbers);

}  // namespace TQTool
