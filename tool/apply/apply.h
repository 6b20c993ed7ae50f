#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "apply/applyoptions.h"
#include "input/source.h"
#include "model/model.h"

namespace TQTool {

// Takes a piece of the output; false when no more is wanted.
using TakeText = std::function<bool(std::string_view)>;

// Reads all rows of `data` and writes them with a bin column per attribute of the model
// behind the data's own columns.  The rules, in this order:
//   - a missing-value text, a number that the attribute's rule takes for missing, and,
//     where options.notNumber says so, a text that is no number: the missing text (null
//     in JSON);
//   - a number below the minimum or above the maximum of the data that the model was
//     made of: as options.outOfRange says, by default the first or last bin, which have
//     no bound;
//   - any other number: its bin.
// Returns the number of rows.  Throws ToolError (kInput) for an attribute that the data
// lack, a name that a bin column and the data share, and what is to be refused.
std::uint64_t ApplyModel(const Model& model, Source& data, const ApplyOptions& options,
                         const TakeText& take);

}  // namespace TQTool
