#pragma once

#include <string>
#include <vector>

#include <tqbinning/tqbinning.h>

#include "model/model.h"

namespace TQTool {

// One column's result as the library reports it.  `list` names the variables;
// `categoryOrder` are the codes of the categories in the target's order.
BinnedAttribute CollectResult(const BINAttributeTargetResults& from, const BINVarList& list,
                              const std::vector<std::size_t>& categoryOrder, int prebinThreshold);
BinnedAttribute CollectResult(const BINAttributeResults& from, const BINVarList& list);

// A target's categories in the order of their codes; `index` is the target's in the list.
std::vector<std::string> CategoriesOf(const BINVarList& list, int index);

}  // namespace TQTool
