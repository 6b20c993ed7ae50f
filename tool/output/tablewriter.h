#pragma once

#include <string>

#include "model/model.h"

namespace TQTool {

// The result as text for people: one table of bins per column.
std::string WriteTable(const Model& model);

}  // namespace TQTool
