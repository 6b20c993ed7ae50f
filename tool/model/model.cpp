#include "model/model.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <string_view>

#include <fmt/format.h>

namespace TQTool {

bool MissingRule::Contains(double number) const {
  if (range.has_value() && range->lower <= number && number <= range->upper) return true;
  return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

std::size_t Model::CountColumns() const {
  std::set<std::string_view> names;
  for (const BinnedAttribute& attribute : attributes) names.insert(attribute.name);
  return names.size();
}

const char* NameOf(Method method) {
  return method == Method::kSupervised ? "supervised" : "equal-frequency";
}

std::string IntervalText(const BinnedAttribute& attribute, std::size_t bin) {
  const bool isFirst = bin == 0;
  const bool isLast = bin == attribute.cuts.size();
  const std::string lower = isFirst ? "-inf" : fmt::format("{}", attribute.cuts[bin - 1]);
  const std::string upper = isLast ? "inf" : fmt::format("{}", attribute.cuts[bin]);
  return fmt::format("{}{}, {}{}", attribute.isRightClosed || isFirst ? '(' : '[', lower, upper,
                     attribute.isRightClosed && !isLast ? ']' : ')');
}

std::string LabelOf(const BinnedAttribute& attribute, std::size_t bin) {
  return attribute.labels.empty() ? IntervalText(attribute, bin) : attribute.labels.at(bin);
}

std::size_t BinOf(const BinnedAttribute& attribute, double value) {
  const std::vector<double>& cuts = attribute.cuts;
  const auto cut = attribute.isRightClosed ? std::lower_bound(cuts.begin(), cuts.end(), value)
                                           : std::upper_bound(cuts.begin(), cuts.end(), value);
  return static_cast<std::size_t>(cut - cuts.begin());
}

std::vector<Bin> EmptyBins(const std::vector<double>& cuts) {
  std::vector<Bin> bins(cuts.size() + 1);
  for (std::size_t b = 0; b < cuts.size(); ++b) {
    bins[b].upper = cuts[b];
    bins[b + 1].lower = cuts[b];
  }
  return bins;
}

}  // namespace TQTool
