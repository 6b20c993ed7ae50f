#pragma once

#include <string>

#include "report/shownbins.h"

namespace TQTool {

// What a chart says besides its bins.
struct ChartWords {
  std::string id;           // of the chart on the page
  std::string title;        // what it shows, plain text
  std::string description;  // for those who do not see it, plain text
  std::string unit;         // what the bars count: "rows" or "weight"
  std::string target;       // whose categories are shown; empty without
};

// An SVG picture of the bins, which must not be none: bars of their counts, and below, if
// there is a target, the shares of its categories.  It is as wide as there is room, its
// text stays in the page's size, and the page's stylesheet colours it.
std::string DrawChart(const ShownBins& shown, const ChartWords& words);

// What its colours mean, from below, with the categories' shares of all; "" without target.
std::string DrawLegend(const ShownBins& shown);

// A bin in a line of plain text: its count and the shares of its categories.
std::string DescribeBin(const ShownBins& shown, std::size_t bin, const std::string& unit);

}  // namespace TQTool
