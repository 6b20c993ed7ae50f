#pragma once

#include <vector>

#include <tqbinning/tqbinning.h>

#include "model/model.h"
#include "run/casespool.h"
#include "run/columns.h"

namespace TQTool {

// Counts the rows in the bins of each pair of columns, which the library only weighs.
// `list` is the one that MakeVarList made of the columns, with the categories that the
// feed found; `attributes` are the results of the columns' pairs, in this order.
void CountRows(CaseSpool& cases, const Columns& columns, const BINVarList& list,
               std::vector<BinnedAttribute>& attributes);

}  // namespace TQTool
