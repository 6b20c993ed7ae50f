#pragma once

// Results for the tests of the writers, made by hand.

#include <limits>

#include "run/runresult.h"

namespace TQTool {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// One column cut at 2.5 into two bins over the categories no and yes; 12 rows, of
// which 2 have no value.
inline RunResult SmallResult() {
  RunResult result;
  result.options.target = "paid";
  result.options.missingTokens = {"NA"};
  result.inputName = "loans.csv";
  result.fed.rows = 12;
  result.fed.cases = 12;
  result.fed.weight = 12.0;
  result.categories = {"no", "yes"};
  AttributeResult& income = result.attributes.emplace_back();
  income.name = "income";
  income.cuts = {2.5};
  income.bins = {{-kInfinity, 2.5, 7.0, {6.0, 1.0}}, {2.5, kInfinity, 3.0, {0.0, 3.0}}};
  income.numDistinct = 5;
  income.weight = 10.0;
  income.weightWithMissing = 12.0;
  income.minimum = -0.1;
  income.maximum = 1e6;
  income.entropy = 0.414;
  return result;
}

// The same as the result of equal-frequency binning.
inline RunResult SmallEqualFrequencyResult() {
  RunResult result = SmallResult();
  result.options.method = Method::kEqualFrequency;
  result.options.target.clear();
  result.options.bins = 3;
  result.categories.clear();
  result.attributes[0].entropy = TQMV::gMissingValue;
  for (Bin& bin : result.attributes[0].bins) bin.classWeights.clear();
  return result;
}

}  // namespace TQTool
