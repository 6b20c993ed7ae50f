#pragma once

#include "input/missingtokens.h"
#include "run/binningoptions.h"
#include "run/recordfeed.h"

namespace TQTool {

// What the options say about the weight.  For a scale of "mean" this reads the input
// once, from the beginning.  Throws ToolError: kUsage when the input can be read only
// once, kInput for weights that are no numbers or too large to be added up.
WeightRule FindWeightRule(const BinningOptions& options, const MissingTokens& missing);

}  // namespace TQTool
