#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "model/model.h"

namespace TQTool {

// What a page shows of an attribute: its bins and categories, brought to numbers that
// can be looked at.
struct ShownBins {
  BinnedAttribute attribute;            // its bins, neighbours joined where there are too many
  std::vector<std::string> categories;  // of every bin; empty without target
  std::size_t joined = 1;               // how many neighbours make one of the bins shown
  std::size_t summedUp = 0;             // how many categories the last one stands for; 0: itself

  // Of the bins together; not known when a bin's is not.
  double TotalOf(std::size_t category) const;
};

// As many categories as there are colours that people tell apart.
inline constexpr std::size_t kMaxCategories = 8;

// The attribute with at most `maxBins` bins (>= 2), of equal numbers of neighbours, and
// at most kMaxCategories categories: of more, the most frequent ones stay and the others
// are summed up behind them.  `target` is the attribute's, or null.
ShownBins Condense(const BinnedAttribute& attribute, const Target* target, std::size_t maxBins);

}  // namespace TQTool
