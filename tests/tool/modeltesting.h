#pragma once

// Models for the tests of whatever works with one, made by hand.

#include <limits>

#include "model/model.h"

namespace TQTool {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// One column cut at 2.5 into two bins over the categories no and yes; 12 rows, of
// which 2 have no value.
inline Model SmallModel() {
  Model model;
  model.toolVersion = "1.0.0";
  model.input = {{"loans.csv"}, 12, 12, 12.0, 0, 0, 0};
  model.settings.missingTokens = {"NA"};
  model.targets = {{"paid", {"no", "yes"}, 0, {}}};
  BinnedAttribute& income = model.attributes.emplace_back();
  income.name = "income";
  income.target = 0;
  income.cuts = {2.5};
  income.bins = {{-kInfinity, 2.5, {7.0, 7.0}, {{6.0, 6.0}, {1.0, 1.0}}},
                 {2.5, kInfinity, {3.0, 3.0}, {{0.0, 0.0}, {3.0, 3.0}}}};
  income.numDistinct = 5;
  income.valid = {10.0, 10.0};
  income.total = {12.0, 12.0};
  income.minimum = -0.1;
  income.maximum = 1e6;
  income.entropy = 0.414;
  return model;
}

// The same as the result of equal-frequency binning.
inline Model SmallEqualFrequencyModel() {
  Model model = SmallModel();
  model.method = Method::kEqualFrequency;
  model.settings.bins = 3;
  model.targets.clear();
  model.attributes[0].target.reset();
  model.attributes[0].entropy = TQMV::gMissingValue;
  for (Bin& bin : model.attributes[0].bins) bin.categories.clear();
  return model;
}

}  // namespace TQTool
