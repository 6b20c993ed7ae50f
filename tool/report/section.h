#pragma once

#include <cstddef>
#include <string>

#include "report/entry.h"

namespace TQTool {

// All about one attribute as a section of HTML: its status with the reason, its numbers,
// a chart of its bins and their table.  Of more than `maxBins` bins neighbours are joined.
std::string WriteSection(const ReportEntry& entry, const Model& model, std::size_t maxBins);

}  // namespace TQTool
