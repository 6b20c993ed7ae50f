#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "report/shownbins.h"

namespace TQTool {

// Where the parts of an attribute's chart stand.  Bins stand side by side, each as wide
// as the others: above bars of their weights, below each bin's categories, one on the
// other.  Heights and widths are parts of the whole, from 0 to 1.
struct ChartLayout {
  // A text at a place of an axis.
  struct Label {
    double position;  // from below, or from the left
    std::string text;
    bool isOnlyForWide = false;  // left out where the page is narrow
  };

  std::vector<double> heights;    // of the bins' bars; 0 for an unknown weight
  std::vector<Label> weightAxis;  // round numbers; the last one not below any bar
  // Of each category shown, from below: its upper edge in every bin.  All edges of a bin
  // are 0 when it is empty or a weight is unknown.
  std::vector<std::vector<double>> edges;
  std::vector<std::size_t> order;  // the category of each of `edges`
  std::vector<Label> cutAxis;      // cut points, as many as can be read
};

// The event, the second of two categories, stands below, so that its edge is the event
// rate; of other numbers of categories the first one does.
ChartLayout LayOut(const ShownBins& shown);

}  // namespace TQTool
