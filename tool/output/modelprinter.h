#pragma once

#include <string>

#include "model/model.h"
#include "output/outputoptions.h"

namespace TQTool {

// A model in the format that is asked for; as a table for people, in the width and with
// the colours that standard output can show.
std::string PrintModel(const Model& model, const OutputOptions& options);

}  // namespace TQTool
