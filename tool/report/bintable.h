#pragma once

#include <string>

#include "report/entry.h"
#include "report/shownbins.h"

namespace TQTool {

// The bins of an attribute as an HTML table: counts, shares, categories, and for a target
// of two of them event rate, weight of evidence and information value.
std::string WriteBinTable(const ReportEntry& entry, const ShownBins& shown, const Model& model);

}  // namespace TQTool
