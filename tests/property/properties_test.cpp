#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <vector>

#include <gtest/gtest.h>

#include "property/trials.h"

// Changes to a problem that must not matter, or must matter in a known way.  Each
// compares two whole runs of the library; no other implementation is involved.
namespace {

using namespace property;

// Every total is a sum of whole numbers, so exact in any order; ties of equal value
// count together; and what an attribute leaves behind its successors' tuples is put in
// the order of value and weight.
TEST_F(Properties, RowOrderDoesNotMatterForWholeNumberWeights) {
  ForProblems([this](const Problem& problem, Random& random) {
    if (!HasWholeWeights(problem) || !HasUsableCodes(problem)) return false;
    Problem shuffled = problem;
    random.Shuffle(shuffled.records);
    ExpectSame(Run(problem), Run(shuffled), shuffled);
    return true;
  });
}

// A frequency weight stands for so many equal cases.  Not where tuples of an earlier
// attribute stand behind those of a later one: there it is rows that count.  Nor for
// NaN, each of which is a distinct value.
TEST_F(Properties, AWeightEqualsTheRowGivenThatManyTimes) {
  ForProblems([this](const Problem& problem, Random&) {
    const int weight = FindWeight(problem);
    if (weight < 0 || !HasWholeWeights(problem) || !HasNoNaN(problem)) return false;
    if (!EveryWeight(problem, [](double w) { return w <= 50.0; })) return false;
    const auto w = static_cast<std::size_t>(weight);
    Problem repeated = problem;
    repeated.variables[w].missingValues.clear();
    repeated.variables[w].missingInterval.reset();
    repeated.records.clear();
    for (std::vector<double> record : problem.records) {
      const double times = WeightOf(problem, record);
      record[w] = 1.0;
      for (double i = 0.0; i < times; ++i) repeated.records.push_back(record);
    }
    const Outcome outcome = Run(problem);
    if (MayHaveTails(problem, outcome)) return false;
    ExpectSame(outcome, Run(repeated), repeated);
    return true;
  });
}

// A power of two changes exponents only, so comparisons, equalities and midpoints stay
// what they are.  Values are kept far from overflow and underflow.
TEST_F(Properties, ScalingByAPowerOfTwoScalesTheCutsAndNothingElse) {
  const auto isMiddling = [](double value) {
    const double size = std::fabs(value);
    return value == kMissing || !std::isfinite(value) || size == 0.0 ||
           (size > 0x1p-400 && size < 0x1p400);
  };
  ForProblems([&](const Problem& problem, Random& random) {
    if (!EveryValue(problem, Variable::Kind::kContinuous, isMiddling)) return false;
    // Codes are not scaled, and would stand unscaled behind scaled values.
    if (!problem.supervised && HasCategorical(problem)) return false;
    const int exponent = random.Between(-100, 100);
    const auto scale = [exponent](double value) {
      return std::fabs(value) == kLargest ? value : std::ldexp(value, exponent);
    };
    Problem scaled = problem;
    for (std::size_t k = 0; k < problem.variables.size(); ++k) {
      Variable& variable = scaled.variables[k];
      if (!IsKind(variable, Variable::Kind::kContinuous)) continue;
      for (double& value : variable.missingValues) value = scale(value);
      if (variable.missingInterval) {
        auto& [left, right] = *variable.missingInterval;
        left = scale(left);
        right = scale(right);
      }
      for (std::vector<double>& record : scaled.records) record[k] = scale(record[k]);
    }
    Outcome expected = Run(problem);
    for (PairResult& result : expected.results) {
      const Variable& attribute = problem.variables[static_cast<std::size_t>(
          std::min(result.attribute, static_cast<int>(problem.variables.size()) - 1))];
      if (!IsKind(attribute, Variable::Kind::kContinuous)) continue;
      for (double& cut : result.cuts) cut = scale(cut);
      result.minimum = scale(result.minimum);
      result.maximum = scale(result.maximum);
    }
    ExpectSame(expected, Run(scaled), scaled);
    return true;
  });
}

// --------------------------------------------------------------- single results

// Every valid case is in exactly one bin.  Weights are whole, so the sums are exact.
TEST_F(Properties, SupervisedCellCountsAddUpToTheTotals) {
  ForProblems([this](const Problem& problem, Random&) {
    if (!problem.supervised || !HasWholeWeights(problem)) return false;
    bool applied = false;
    for (const PairResult& result : Run(problem).results) {
      if (result.cellCounts.empty()) continue;
      const std::size_t width = result.cellCounts.size() / (result.cuts.size() + 1);
      double total = 0.0;
      for (std::size_t start = 0; start < result.cellCounts.size(); start += width) {
        double inCategories = 0.0;
        for (std::size_t j = 1; j < width; ++j) inCategories += result.cellCounts[start + j];
        EXPECT_EQ(result.cellCounts[start], inCategories);
        total += result.cellCounts[start];
      }
      EXPECT_EQ(result.totalWeight, total);
      applied = true;
    }
    return applied;
  });
}

// The same for equal frequency, as long as no tuple of an earlier attribute stands
// behind the attribute's own (a last run may go on into those), and midpoints lie
// between their values: one that is rounded to a value can meet the next cut, and then
// there are more counts than bins.
TEST_F(Properties, EqualFrequencyCountsAddUpToTheTotal) {
  const auto hasExactMidpoints = [](double value) {
    const double inUnits = value * 1024.0;
    return value == kMissing || (std::fabs(value) < 0x1p30 && inUnits == std::floor(inUnits));
  };
  ForProblems([&](const Problem& problem, Random&) {
    if (problem.supervised || !HasWholeWeights(problem) ||
        !EveryValue(problem, Variable::Kind::kContinuous, hasExactMidpoints)) {
      return false;
    }
    bool applied = false;
    const Outcome outcome = Run(problem);
    if (MayHaveTails(problem, outcome)) return false;
    for (const PairResult& result : outcome.results) {
      if (result.cellCounts.empty()) continue;
      EXPECT_EQ(result.totalWeight,
                std::accumulate(result.cellCounts.begin(), result.cellCounts.end(), 0.0))
          << property::TextOf(problem);
      applied = true;
    }
    return applied;
  });
}

// Bins do not overlap.  A NaN has no place in any order, and the midpoint of infinities
// is one.
TEST_F(Properties, CutsAscendStrictly) {
  ForProblems([this](const Problem& problem, Random&) {
    if (!EveryValue(problem, Variable::Kind::kContinuous,
                    [](double v) { return std::isfinite(v); })) {
      return false;
    }
    bool applied = false;
    for (const PairResult& result : Run(problem).results) {
      EXPECT_EQ(result.cuts.end(),
                std::ranges::adjacent_find(result.cuts, std::greater_equal<double>()))
          << property::TextOf(result.cuts) << property::TextOf(problem);
      applied = applied || result.cuts.size() > 1;
    }
    return applied;
  });
}

// Splitting looks at the order of the values and at the cases of each; cuts are values.
TEST_F(Properties, WithoutPreBinningOnlyTheOrderOfTheValuesCounts) {
  ForProblems([this](const Problem& problem, Random&) {
    if (!problem.supervised || problem.distinctThreshold > 0 || !HasNoNaN(problem)) return false;
    Problem ranked = problem;
    std::vector<std::vector<double>> valuesOf(problem.variables.size());
    for (std::size_t k = 0; k < problem.variables.size(); ++k) {
      Variable& variable = ranked.variables[k];
      if (!IsKind(variable, Variable::Kind::kContinuous)) continue;
      // What is declared missing is made missing, so that ranks cannot run into it.
      const Variable original = variable;
      variable.missingValues.clear();
      variable.missingInterval.reset();
      const auto isMissing = [&original](double value) {
        return value == kMissing ||
               std::ranges::find(original.missingValues, value) != original.missingValues.end() ||
               (original.missingInterval && original.missingInterval->first <= value &&
                value <= original.missingInterval->second);
      };
      std::vector<double>& values = valuesOf[k];
      for (const std::vector<double>& record : problem.records) {
        if (!isMissing(record[k])) values.push_back(record[k]);
      }
      std::ranges::sort(values);
      values.erase(std::unique(values.begin(), values.end()), values.end());
      for (std::vector<double>& record : ranked.records) {
        const bool missing = isMissing(record[k]);
        const auto rank = std::ranges::lower_bound(values, record[k]) - values.begin();
        record[k] = missing ? kMissing : static_cast<double>(rank);
      }
      // These have no place between the outer borders, whose values they may share.
      if (!values.empty() && !(values.front() > -kLargest && values.back() < kLargest))
        return false;
    }
    Outcome expected = Run(problem);
    for (PairResult& result : expected.results) {
      if (result.status.IsError()) continue;
      const std::vector<double>& values = valuesOf[static_cast<std::size_t>(result.attribute)];
      if (values.empty()) continue;
      const auto rank = [&values](double value) {
        const auto place = std::ranges::lower_bound(values, value);
        return place == values.end() || *place != value
                   ? value
                   : static_cast<double>(place - values.begin());
      };
      for (double& cut : result.cuts) cut = rank(cut);
      result.minimum = rank(result.minimum);
      result.maximum = rank(result.maximum);
    }
    ExpectSame(expected, Run(ranked), ranked);
    return true;
  });
}

// ---------------------------------------------------------------- several calls

// The data are read once and binned as often as asked; a supervised pair depends on
// nothing that was binned before.  (An equal-frequency attribute with missing values
// does: on what stands behind its tuples.)
TEST_F(Properties, ASecondCallGivesWhatTheFirstGave) {
  ForProblems([this](const Problem& problem, Random&) {
    Problem once = problem;
    once.calls.resize(1);
    Problem twice = once;
    twice.calls.push_back(once.calls.front());
    Outcome expected = Run(once);
    if (MayHaveTails(problem, expected)) return false;
    if (!expected.callStatuses.empty()) {
      expected.callStatuses.push_back(expected.callStatuses.front());
    }
    const std::vector<PairResult> results = expected.results;
    expected.results.insert(expected.results.end(), results.begin(), results.end());
    ExpectSame(expected, Run(twice), twice);
    return true;
  });
}

// For the same reason the order of pairs is the order of results and nothing more.
TEST_F(Properties, PairsAreBinnedIndependently) {
  ForProblems([this](const Problem& problem, Random&) {
    if (!problem.supervised) return false;
    Problem forward = problem;
    forward.calls.resize(1);
    Call& call = forward.calls.front();
    if (!call.attributes || (call.targets && call.targets->size() != call.attributes->size())) {
      return false;
    }
    Problem backward = forward;
    std::ranges::reverse(*backward.calls.front().attributes);
    if (call.targets) std::ranges::reverse(*backward.calls.front().targets);
    const Outcome expected = Run(forward);
    Outcome actual = Run(backward);
    if (expected.callStatuses.empty()) return false;  // the variable list was refused
    std::ranges::reverse(actual.results);
    // The standing status is that of the pair that came last.
    EXPECT_EQ(expected.callStatuses.front().code, actual.callStatuses.front().code);
    actual.finalStatus = expected.finalStatus;
    actual.callStatuses = expected.callStatuses;
    ExpectSame(expected, actual, backward);
    return true;
  });
}

// ----------------------------------------------------- cases and variables added

// A case without target and attributes is counted and otherwise skipped.
TEST_F(Properties, ACaseOfMissingValuesAddsToTheTotalWithMissingOnly) {
  ForProblems([this](const Problem& problem, Random& random) {
    if (!problem.supervised || !HasWholeWeights(problem)) return false;
    Problem longer = problem;
    std::vector<double> nothing(problem.variables.size(), kMissing);
    const int weight = FindWeight(problem);
    if (weight >= 0) nothing[static_cast<std::size_t>(weight)] = 3.0;
    const double added = WeightOf(problem, nothing);
    Outcome expected = Run(problem);
    // A pass that kept no case keeps this one.
    if (added == kMissing || expected.results.empty()) return false;
    const int place = random.Between(0, static_cast<int>(problem.records.size()));
    longer.records.insert(longer.records.begin() + place, nothing);
    for (PairResult& result : expected.results) {
      if (!result.status.IsError()) result.totalWeightWithMissing += added;
    }
    // A column lost in the middle of the pass is read as zeros behind its end.
    if (!HasUsableCodes(problem)) return false;
    ExpectSame(expected, Run(longer), longer);
    return true;
  });
}

// What nobody asks for is never read.
TEST_F(Properties, AnAttributeThatIsNotListedChangesNothing) {
  ForProblems([this](const Problem& problem, Random& random) {
    const bool allListed = std::ranges::all_of(
        problem.calls, [](const Call& call) { return call.attributes.has_value(); });
    if (!allListed) return false;
    const auto added = static_cast<int>(problem.variables.size());
    for (const Call& call : problem.calls) {
      for (const auto& list : {call.attributes, call.targets}) {
        if (list && std::ranges::find(*list, added) != list->end()) return false;
      }
    }
    Problem wider = problem;
    wider.variables.push_back(property::Continuous());
    for (std::vector<double>& record : wider.records) record.push_back(random.Between(0, 9));
    ExpectSame(Run(problem), Run(wider), wider);
    return true;
  });
}

}  // namespace
