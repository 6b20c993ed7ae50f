#pragma once

#include <climits>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "reference/reference.h"

// Words to write problems with; those that a disagreement is reported in.
namespace property {

inline constexpr double kMissing = std::numeric_limits<double>::lowest();
inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

using Interval = std::optional<std::pair<double, double>>;

// A continuous attribute, with what is declared missing of it.
inline reference::Variable Continuous(std::vector<double> missingValues = {},
                                      Interval missingInterval = {}) {
  reference::Variable variable;
  variable.missingValues = std::move(missingValues);
  variable.missingInterval = missingInterval;
  return variable;
}

// A categorical attribute of so many declared categories.
inline reference::Variable Categorical(int categories,
                                       int level = reference::kLevelNumericCategorical,
                                       std::vector<double> missingValues = {}) {
  reference::Variable variable;
  variable.kind = reference::Variable::Kind::kCategorical;
  variable.categories = categories;
  variable.level = level;
  variable.missingValues = std::move(missingValues);
  return variable;
}

// The same as the target.
inline reference::Variable Target(int categories, int level = reference::kLevelNumericCategorical,
                                  std::vector<double> missingValues = {}) {
  reference::Variable variable = Categorical(categories, level, std::move(missingValues));
  variable.role = reference::kRoleTarget;
  return variable;
}

// The frequency weight: 0 rounds down, 1 to the closest, anything else not at all.
inline reference::Variable Weight(int rounding, std::vector<double> missingValues = {},
                                  Interval missingInterval = {}) {
  reference::Variable variable = Continuous(std::move(missingValues), missingInterval);
  variable.kind = reference::Variable::Kind::kWeight;
  variable.role = reference::kRoleWeight;
  variable.rounding = rounding;
  return variable;
}

// Calls of CreateBins: without lists, with one and with two; and the odd one out.
inline reference::Call All() { return reference::Call(); }
inline reference::Call Attributes(std::vector<int> attributes) {
  reference::Call call;
  call.attributes = std::move(attributes);
  return call;
}
inline reference::Call Pairs(std::vector<int> attributes, std::vector<int> targets) {
  reference::Call call = Attributes(std::move(attributes));
  call.targets = std::move(targets);
  return call;
}
inline reference::Call TargetsOnly(std::vector<int> targets) {
  reference::Call call;
  call.targets = std::move(targets);
  return call;
}

}  // namespace property
