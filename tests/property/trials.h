#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "property/libraryrun.h"
#include "property/outcomes.h"
#include "property/problemgenerator.h"
#include "property/problemtext.h"
#include "property/problemwords.h"
#include "property/random.h"
#include "support/memoryrecords.h"
#include "support/scratchdirectory.h"
#include "tqbinning/tqbinning.h"

// What the properties share: questions about a problem, and runs of it.
namespace property {

using reference::Call;
using reference::Outcome;
using reference::PairResult;
using reference::Problem;
using reference::Variable;

inline constexpr double kLargest = std::numeric_limits<double>::max();

// How many of the generated problems a property is tried on, at least.
inline constexpr int kTrials = PROPERTY_TRIALS;

// ------------------------------------------------------------ about a problem

inline bool IsKind(const Variable& variable, Variable::Kind kind) { return variable.kind == kind; }

inline int FindWeight(const Problem& problem) {
  for (std::size_t k = 0; k < problem.variables.size(); ++k) {
    if (IsKind(problem.variables[k], Variable::Kind::kWeight)) return static_cast<int>(k);
  }
  return -1;
}

inline int FindTarget(const Problem& problem) {
  for (std::size_t k = 0; k < problem.variables.size(); ++k) {
    const Variable& variable = problem.variables[k];
    if (IsKind(variable, Variable::Kind::kCategorical) && variable.role == reference::kRoleTarget) {
      return static_cast<int>(k);
    }
  }
  return -1;
}

inline bool HasCategorical(const Problem& problem) {
  return std::ranges::any_of(problem.variables, [](const Variable& variable) {
    return IsKind(variable, Variable::Kind::kCategorical);
  });
}

// The weight with which a record counts; the missing value when it does not.
inline double WeightOf(const Problem& problem, const std::vector<double>& record) {
  const int weight = FindWeight(problem);
  if (weight < 0) return 1.0;
  const auto w = static_cast<std::size_t>(weight);
  return reference::EncodeWeight(problem.variables[w], record[w], kMissing);
}

inline bool EveryWeight(const Problem& problem, const std::function<bool(double)>& holds) {
  return std::ranges::all_of(problem.records, [&](const std::vector<double>& record) {
    const double weight = WeightOf(problem, record);
    return weight == kMissing || holds(weight);
  });
}

// Whole and small enough for every sum of them to be exact.
inline bool HasWholeWeights(const Problem& problem) {
  return EveryWeight(problem,
                     [](double weight) { return weight == std::floor(weight) && weight < 0x1p40; });
}

inline bool EveryValue(const Problem& problem, Variable::Kind kind,
                       const std::function<bool(double)>& holds) {
  for (const std::vector<double>& record : problem.records) {
    for (std::size_t k = 0; k < record.size(); ++k) {
      if (IsKind(problem.variables[k], kind) && !holds(record[k])) return false;
    }
  }
  return true;
}

inline bool IsCodeOrMissing(double value) {
  return value == kMissing || value == -1.0 || (value >= 0.0 && value < 256.0);
}

// No column is lost in the middle of the data pass.  (One that is ends at that case,
// and so depends on the order of the cases.)
inline bool HasUsableCodes(const Problem& problem) {
  return EveryValue(problem, Variable::Kind::kCategorical, IsCodeOrMissing);
}

inline bool HasNoNaN(const Problem& problem) {
  return EveryValue(problem, Variable::Kind::kContinuous, [](double v) { return !std::isnan(v); });
}

// Whether tuples of an earlier attribute may stand behind those of a later one, and
// show: only where equal-frequency attributes have fewer cases than were kept, which the
// totals tell unless one weight swallows another.
inline bool MayHaveTails(const Problem& problem, const Outcome& outcome) {
  if (problem.supervised) return false;
  if (!HasUsableCodes(problem) || !HasWholeWeights(problem)) return true;
  return std::ranges::any_of(outcome.results, [](const PairResult& result) {
    return result.totalWeight != result.totalWeightWithMissing;
  });
}

// ------------------------------------------------------------------ whole runs

// Runs problems in a directory of its own.
class Properties : public testing::Test {
 protected:
  Outcome Run(const Problem& problem) {
    const LibraryOutcome run = RunLibrary(problem, fDirectory.Path());
    EXPECT_EQ("", run.complaint);
    return run.outcome;
  }

  // Tries `property` on generated problems until it has applied to kTrials of them.
  // It returns false for a problem that it says nothing about.
  void ForProblems(const std::function<bool(const Problem&, Random&)>& property) {
    int applied = 0;
    for (std::uint64_t seed = 1; applied < kTrials; ++seed) {
      ASSERT_LT(seed, static_cast<std::uint64_t>(kTrials) * 100) << "applied to " << applied;
      const GeneratedProblem generated = Generate(seed);
      if (generated.kind == Kind::kManyRecords) continue;
      Random random(seed);
      SCOPED_TRACE("seed " + std::to_string(seed));
      applied += property(generated.problem, random) ? 1 : 0;
      if (HasFailure()) return;
    }
  }

  // The same outcome, or the problems that make the difference.
  static void ExpectSame(const Outcome& expected, const Outcome& actual, const Problem& problem) {
    EXPECT_EQ("", Difference(expected, actual)) << TextOf(problem);
  }

  support::ScratchDirectory fDirectory;
};

}  // namespace property
