#pragma once

#include <span>
#include <string>

#include "report/entry.h"

namespace TQTool {

// The ranked entries of one target, or of none (at least one entry), as an HTML table that leads to
// their sections.
std::string WriteOverview(std::span<const ReportEntry> entries);

}  // namespace TQTool
