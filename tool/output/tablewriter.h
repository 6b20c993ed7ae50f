#pragma once

#include <string>

#include "run/runresult.h"

namespace TQTool {

// The result as text for people: one table of bins per column.
std::string WriteTable(const RunResult& result);

}  // namespace TQTool
