#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "model/measures.h"
#include "model/model.h"

namespace TQTool {

// An attribute of the model on its way to the page.  The model outlives it.
struct ReportEntry {
  const BinnedAttribute* attribute;
  const Target* target;  // null without
  std::string id;        // its section's on the page
  std::optional<Measures> measures;
};

// The attributes in the order in which they are worth looking at: target by target, in
// each by falling information gain.  Without a target those come first whose fullest bin
// holds the greatest share, for they are the least even.  Those about which neither is
// known come last, and equals stay in the model's order.
std::vector<ReportEntry> RankedEntries(const Model& model);

// The share of the fullest bin of the cases with a value; gMissingValue when not known.
double FullestShareOf(const BinnedAttribute& attribute);

}  // namespace TQTool
