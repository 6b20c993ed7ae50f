#pragma once

#include <string>

#include "model/model.h"

namespace TQTool {

// A model as an HTML page for people, which is complete in itself: an overview that ranks
// the attributes, and of each its chart and table.  It refers to nothing outside, and its
// security policy allows neither scripts nor styles but its own.
std::string WriteReport(const Model& model);

}  // namespace TQTool
