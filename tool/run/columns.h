#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include <tqbinning/tqbinning.h>

#include "input/missingtokens.h"
#include "input/source.h"
#include "run/binningoptions.h"

namespace TQTool {

// An attribute and the target that it is binned against, none for equal frequency:
// indices into Columns::attributes and Columns::targets.
struct ColumnPair {
  std::size_t attribute;
  std::optional<std::size_t> target;

  bool operator==(const ColumnPair&) const = default;
};

// The columns of a table that take part in a run.
struct Columns {
  std::vector<std::size_t> targets;
  std::optional<std::size_t> weight;
  std::vector<std::size_t> attributes;  // to be binned; at least one
  std::vector<ColumnPair> pairs;        // what is binned, attribute by attribute
};

// How many categories a target may have: the codes that the library takes are 0 to 255.
inline constexpr int kMaxTargetCategories = 256;

// Where the library's list of variables, and so a record, has the columns.
inline int TargetVariable(std::size_t target) { return static_cast<int>(target); }
inline int WeightVariable(const Columns& columns) {
  return static_cast<int>(columns.targets.size());
}
inline int AttributeVariable(const Columns& columns, std::size_t attribute) {
  return WeightVariable(columns) + (columns.weight.has_value() ? 1 : 0) +
         static_cast<int>(attribute);
}

// Finds the columns that the options name or, when they name no attribute, takes
// every column that holds numbers in the first rows, but targets and weight; what
// it leaves out it says on standard error.  Pairs every attribute with every target
// unless the options name the pairs.  Afterwards the table's next row is its
// first one.  Throws ToolError: kInput for a name that is not there, a table
// without rows or without numeric column; kUsage for a column in two roles.
Columns ChooseColumns(Source& table, const BinningOptions& options, const MissingTokens& missing);

// Describes the columns to the library: targets, weight and attributes, in this
// order, with their user-missing values; those of the weight are left to the feed.  Throws
// ToolError (kInput) for a user-missing value of a column that takes no part.
BINVarList MakeVarList(const Source& table, const Columns& columns, const BinningOptions& options);

}  // namespace TQTool
