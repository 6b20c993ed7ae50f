#pragma once

#include <string>
#include <vector>

#include "model/model.h"

namespace TQTool {

// What is worth a second look in a model that could be read, one line each: edited
// bins, cut points beyond the data, labels that two bins share.
std::vector<std::string> FindDoubts(const Model& model);

}  // namespace TQTool
