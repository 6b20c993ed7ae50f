#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include <tqbinning/tqbinning.h>

#include "cli/options.h"
#include "input/numbertext.h"
#include "input/source.h"

namespace TQTool {

// The columns of a table that take part in a run.
struct Columns {
  std::optional<std::size_t> target;
  std::optional<std::size_t> weight;
  std::vector<std::size_t> attributes;  // to be binned; at least one
};

// Finds the columns that the options name or, when they name no attribute, takes
// every column that holds numbers in the first rows, but target and weight; what
// it leaves out it says on standard error.  Afterwards the table's next row is its
// first one.  Throws ToolError: kInput for a name that is not there, a table
// without rows or without numeric column; kUsage for a column in two roles.
Columns ChooseColumns(Source& table, const Options& options, const MissingTokens& missing);

// Describes the columns to the library: target, weight and attributes, in this
// order, with their user-missing values.  Throws ToolError (kInput) for a
// user-missing value of a column that takes no part.
BINVarList MakeVarList(const Source& table, const Columns& columns, const Options& options);

}  // namespace TQTool
