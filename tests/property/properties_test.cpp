// Changes to a problem that must not matter, or must matter in a known way.  Each
// compares two whole runs of the library; no other implementation is involved.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <numeric>
#include <sstream>
#include <string>
#include <utility>
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

namespace {

using property::kMissing;
using property::Random;
using property::SameNumber;
using reference::Call;
using reference::Outcome;
using reference::PairResult;
using reference::Problem;
using reference::Variable;

constexpr double kLargest = std::numeric_limits<double>::max();

// How many of the generated problems a property is tried on, at least.
constexpr int kTrials = PROPERTY_TRIALS;

// ------------------------------------------------------------ about a problem

bool IsKind(const Variable& variable, Variable::Kind kind) { return variable.kind == kind; }

int FindWeight(const Problem& problem) {
  for (std::size_t k = 0; k < problem.variables.size(); ++k) {
    if (IsKind(problem.variables[k], Variable::Kind::kWeight)) return static_cast<int>(k);
  }
  return -1;
}

int FindTarget(const Problem& problem) {
  for (std::size_t k = 0; k < problem.variables.size(); ++k) {
    const Variable& variable = problem.variables[k];
    if (IsKind(variable, Variable::Kind::kCategorical) && variable.role == reference::kRoleTarget) {
      return static_cast<int>(k);
    }
  }
  return -1;
}

bool HasCategorical(const Problem& problem) {
  return std::ranges::any_of(problem.variables, [](const Variable& variable) {
    return IsKind(variable, Variable::Kind::kCategorical);
  });
}

// The weight with which a record counts; the missing value when it does not.
double WeightOf(const Problem& problem, const std::vector<double>& record) {
  const int weight = FindWeight(problem);
  if (weight < 0) return 1.0;
  const auto w = static_cast<std::size_t>(weight);
  return reference::EncodeWeight(problem.variables[w], record[w], kMissing);
}

bool EveryWeight(const Problem& problem, const std::function<bool(double)>& holds) {
  return std::ranges::all_of(problem.records, [&](const std::vector<double>& record) {
    const double weight = WeightOf(problem, record);
    return weight == kMissing || holds(weight);
  });
}

// Whole and small enough for every sum of them to be exact.
bool HasWholeWeights(const Problem& problem) {
  return EveryWeight(problem,
                     [](double weight) { return weight == std::floor(weight) && weight < 0x1p40; });
}

bool EveryValue(const Problem& problem, Variable::Kind kind,
                const std::function<bool(double)>& holds) {
  for (const std::vector<double>& record : problem.records) {
    for (std::size_t k = 0; k < record.size(); ++k) {
      if (IsKind(problem.variables[k], kind) && !holds(record[k])) return false;
    }
  }
  return true;
}

bool IsCodeOrMissing(double value) {
  return value == kMissing || value == -1.0 || (value >= 0.0 && value < 256.0);
}

// No column is lost in the middle of the data pass.  (One that is ends at that case,
// and so depends on the order of the cases.)
bool HasUsableCodes(const Problem& problem) {
  return EveryValue(problem, Variable::Kind::kCategorical, IsCodeOrMissing);
}

bool HasNoNaN(const Problem& problem) {
  return EveryValue(problem, Variable::Kind::kContinuous, [](double v) { return !std::isnan(v); });
}

// Whether tuples of an earlier attribute may stand behind those of a later one, and
// show: only where equal-frequency attributes have fewer cases than were kept, which the
// totals tell unless one weight swallows another.
bool MayHaveTails(const Problem& problem, const Outcome& outcome) {
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
    const property::LibraryOutcome run = property::RunLibrary(problem, fDirectory.Path());
    EXPECT_EQ("", run.complaint);
    return run.outcome;
  }

  // Tries `property` on generated problems until it has applied to kTrials of them.
  // It returns false for a problem that it says nothing about.
  void ForProblems(const std::function<bool(const Problem&, Random&)>& property) {
    int applied = 0;
    for (std::uint64_t seed = 1; applied < kTrials; ++seed) {
      ASSERT_LT(seed, static_cast<std::uint64_t>(kTrials) * 100) << "applied to " << applied;
      const property::GeneratedProblem generated = property::Generate(seed);
      if (generated.kind == property::Kind::kManyRecords) continue;
      Random random(seed);
      SCOPED_TRACE("seed " + std::to_string(seed));
      applied += property(generated.problem, random) ? 1 : 0;
      if (HasFailure()) return;
    }
  }

  // The same outcome, or the problems that make the difference.
  static void ExpectSame(const Outcome& expected, const Outcome& actual, const Problem& problem) {
    EXPECT_EQ("", property::Difference(expected, actual)) << property::TextOf(problem);
  }

  support::ScratchDirectory fDirectory;
};

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

// ------------------------------------------------------------ renamed categories

// The codes of the target that occur among the cases kept; empty without a target, or
// when one of its codes is not plain.
std::vector<int> TargetCodes(const Problem& problem) {
  const int target = FindTarget(problem);
  std::vector<int> codes;
  if (target < 0) return codes;
  for (const std::vector<double>& record : problem.records) {
    const double code = record[static_cast<std::size_t>(target)];
    if (!IsCodeOrMissing(code) || (code >= 0.0 && code != std::floor(code))) return {};
    if (WeightOf(problem, record) == kMissing || code == kMissing || code < 0.0) continue;
    codes.push_back(static_cast<int>(code));
  }
  std::ranges::sort(codes);
  codes.erase(std::unique(codes.begin(), codes.end()), codes.end());
  return codes;
}

// The problem with the target's code c renamed to newCodes[c].
Problem Rename(const Problem& problem, const std::vector<int>& newCodes) {
  Problem renamed = problem;
  const auto target = static_cast<std::size_t>(FindTarget(problem));
  renamed.variables[target].categories = 256;
  for (std::vector<double>& record : renamed.records) {
    double& code = record[target];
    if (code >= 0.0) code = newCodes[static_cast<std::size_t>(code)];
  }
  return renamed;
}

// Moves the columns of cell counts along; `width` is the number of columns afterwards.
void RenameColumns(const std::vector<int>& newCodes, std::size_t width, PairResult& result) {
  if (result.cellCounts.empty()) return;
  const std::size_t bins = result.cuts.size() + 1;
  const std::size_t oldWidth = result.cellCounts.size() / bins;
  std::vector<double> counts(bins * width, 0.0);
  for (std::size_t b = 0; b < bins; ++b) {
    counts[b * width] = result.cellCounts[b * oldWidth];
    for (std::size_t c = 0; c + 1 < oldWidth; ++c) {
      const auto to = static_cast<std::size_t>(newCodes[c]) + 1;
      if (to < width) counts[b * width + to] = result.cellCounts[b * oldWidth + c + 1];
    }
  }
  result.cellCounts = counts;
}

// Whether only the target's own categories are at stake: no list of indices can make it
// an attribute, and whole weights make all sums of counts exact.
bool CanRename(const Problem& problem) {
  return problem.supervised && HasWholeWeights(problem) && TargetCodes(problem).size() >= 2 &&
         std::ranges::all_of(problem.calls,
                             [](const Call& call) { return !call.attributes && !call.targets; });
}

// An entropy is a sum over the categories in the order of their codes, started at zero:
// only its first two terms can change places without another rounding.  So the codes 0
// and 1 are exchanged, which for two categories is every renaming there is.
TEST_F(Properties, ExchangingTheFirstTwoCategoriesExchangesTheirCountsOnly) {
  ForProblems([this](const Problem& problem, Random&) {
    if (!CanRename(problem)) return false;
    const std::vector<int> codes = TargetCodes(problem);
    // The largest code decides how many categories there are, and must stay.
    if (codes.back() == 1 && codes.front() != 0) return false;
    std::vector<int> newCodes(256);
    std::iota(newCodes.begin(), newCodes.end(), 0);
    std::swap(newCodes[0], newCodes[1]);
    Problem plain = problem;
    plain.variables[static_cast<std::size_t>(FindTarget(problem))].categories = 256;
    const Problem renamed = Rename(problem, newCodes);
    Outcome expected = Run(plain);
    const auto width = static_cast<std::size_t>(codes.back()) + 2;
    for (PairResult& result : expected.results) RenameColumns(newCodes, width, result);
    ExpectSame(expected, Run(renamed), renamed);
    return true;
  });
}

// Renaming that keeps the order of the categories keeps the order of every sum; codes
// that no case has add nothing to it, and a column of zeros to the counts.
TEST_F(Properties, CodesWithoutCasesAddEmptyColumnsOnly) {
  ForProblems([this](const Problem& problem, Random& random) {
    if (!CanRename(problem)) return false;
    const std::vector<int> codes = TargetCodes(problem);
    if (codes.back() > 100) return false;
    std::vector<int> newCodes;
    int next = 0;
    for (int code = 0; code <= 100; ++code) {
      if (random.Chance(200)) ++next;
      newCodes.push_back(next++);
    }
    Problem plain = problem;
    plain.variables[static_cast<std::size_t>(FindTarget(problem))].categories = 256;
    const Problem renamed = Rename(problem, newCodes);
    Outcome expected = Run(plain);
    const auto width =
        static_cast<std::size_t>(newCodes[static_cast<std::size_t>(codes.back())]) + 2;
    for (PairResult& result : expected.results) RenameColumns(newCodes, width, result);
    ExpectSame(expected, Run(renamed), renamed);
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

// ------------------------------------------------------------------------ copies

template <typename Shown>
std::string TextOf(const Shown& shown) {
  std::ostringstream os;
  os.precision(17);
  shown.Display(os);
  return os.str();
}

// Changes every part of a list that can be changed.
void ChangeEverything(BINVarList& list) {
  for (int i = 0; i < list.Size(); ++i) {
    IBINVariable* variable = list.GetVarAt(i);
    variable->SetVariableLabel("changed");
    list.SetMissingInterval(i, -5.0, -4.0);
    list.AddDiscreteUserMissing(i, 12345.0, "twelve");
    list.AddDiscreteUserMissing(i, "n/a", "not there");
    IBINEncoder* encoder = list.GetEncoderAt(i);
    if (auto* numeric = dynamic_cast<BINCatNumEncoder*>(encoder)) numeric->Encode(777.0);
    if (auto* string = dynamic_cast<BINStringEncoder*>(encoder)) string->Encode("new");
    if (encoder != nullptr) encoder->SetValueLabel(0, "zero");
    variable->SetVariableRole(IBINVariable::kUndefinedRole);
  }
  list.UpdateNumbersOfCategories();
  list.AddContVar("added", "", IBINVariable::kAttribute);
  list.RemoveVar(0);
}

// A list with every kind of variable, encoders that have seen values included.
BINVarList FullList(const Problem& problem) {
  std::string complaint;
  BINVarList list = property::MakeVarList(problem, complaint);
  EXPECT_EQ("", complaint);
  list.AddCatVar("numbers", "", std::vector<double>{3.0, 1.0, 2.0}, {"c", "a", "b"},
                 IBINVariable::kAttribute);
  list.AddCatVar("strings", "", std::vector<std::string>{"x", "y"}, {"ex", "why"},
                 IBINVariable::kAttribute);
  return list;
}

// A copy is as good as the original and has nothing in common with it.
TEST_F(Properties, ACopiedListEqualsItsSourceAndSharesNothing) {
  ForProblems([](const Problem& problem, Random&) {
    auto source = std::make_unique<BINVarList>(FullList(problem));
    const std::string text = TextOf(*source);
    BINVarList copy(*source);
    Problem other;
    other.variables = {property::Weight(0)};
    BINVarList assigned = FullList(other);
    assigned = *source;
    for (const BINVarList* list : {&copy, &assigned}) {
      EXPECT_EQ(text, TextOf(*list));
      EXPECT_EQ(source->GetWeightIndex(), list->GetWeightIndex());
      EXPECT_EQ(source->GetTargetIndex(), list->GetTargetIndex());
      EXPECT_EQ(source->GetNumAttributeVars(), list->GetNumAttributeVars());
      EXPECT_EQ(source->GetNTargetCats(), list->GetNTargetCats());
    }
    ChangeEverything(copy);
    EXPECT_NE(text, TextOf(copy));
    EXPECT_EQ(text, TextOf(*source));
    EXPECT_EQ(text, TextOf(assigned));
    ChangeEverything(*source);
    EXPECT_EQ(text, TextOf(assigned));
    source.reset();
    EXPECT_EQ(text, TextOf(assigned));
    return true;
  });
}

// The algorithm works on copies of its own: the host's objects may change, or go, once
// it has been made.
TEST_F(Properties, TheHostsListAndSettingsMayChangeOnceTheAlgorithmIsMade) {
  ForProblems([this](const Problem& problem, Random&) {
    const Outcome expected = Run(problem);
    if (problem.supervised || expected.results.empty()) return false;
    std::string complaint;
    auto list = std::make_unique<BINVarList>(property::MakeVarList(problem, complaint));
    auto settings = std::make_unique<EFBINSettings>();
    settings->SetTempDirName(fDirectory.Path());
    settings->SetRightBorderClosed(problem.rightClosed);
    settings->SetNumberOfBins(problem.numberOfBins);
    EFBINFactory factory;
    const std::unique_ptr<IEFBINAlgorithm> algorithm(
        factory.CreateEFBINAlgorithm(*settings, *list));
    settings->SetRightBorderClosed(!problem.rightClosed);
    settings->SetNumberOfBins(problem.numberOfBins + 1);
    settings->SetTempDirName("/nowhere");
    ChangeEverything(*list);
    settings.reset();
    list.reset();

    support::MemoryRecords records(problem.records);
    for (const Call& call : problem.calls) {
      // Its status is compared below, with all the others.
      static_cast<void>(
          algorithm->CreateBins(records, call.attributes ? &*call.attributes : nullptr));
    }
    std::vector<BINAttributeResults> results;
    EXPECT_TRUE(algorithm->GetBinningResults().GetAllCutPoints(results).IsOK());
    if (results.size() != expected.results.size()) {
      ADD_FAILURE() << results.size() << " results";
      return true;
    }
    for (std::size_t i = 0; i < results.size(); ++i) {
      EXPECT_EQ(expected.results[i].status.code, results[i].GetStatus().GetErrorCode());
      EXPECT_TRUE(
          std::ranges::equal(expected.results[i].cuts, results[i].GetCutPoints(), SameNumber));
      EXPECT_TRUE(std::ranges::equal(expected.results[i].cellCounts, results[i].GetCellCounts(),
                                     SameNumber));
    }
    return true;
  });
}

// Results that were copied outlive the algorithm, and keep what they held while the
// original goes on growing.
TEST_F(Properties, CopiedResultsEqualTheirSourceAndSurviveIt) {
  ForProblems([this](const Problem& problem, Random&) {
    if (!problem.supervised) return false;
    std::string complaint;
    BINVarList list = property::MakeVarList(problem, complaint);
    BINSettings settings;
    settings.SetTempDirName(fDirectory.Path());
    settings.SetNumberOfBins(3);
    BINFactory factory;
    std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, list));
    if (algorithm == nullptr || !HasUsableCodes(problem)) return false;
    support::MemoryRecords records(problem.records);
    static_cast<void>(algorithm->CreateBins(records, nullptr, nullptr));  // seen in the results
    const std::string text = TextOf(algorithm->GetBinningResults());
    const BINOutput copy(algorithm->GetBinningResults());
    BINOutput assigned;
    static_cast<void>(assigned.SetAttributeTargetResults({}, {1.0}, {1.0, 2.0}, 7, 8, 1, 1.0, 1.0,
                                                         0.0, 1.0, 0.5));
    assigned = copy;
    EXPECT_EQ(text, TextOf(copy));
    EXPECT_EQ(text, TextOf(assigned));
    EXPECT_TRUE(
        assigned.SetAttributeTargetResults({}, {1.0}, {1.0, 2.0}, 7, 8, 1, 1.0, 1.0, 0.0, 1.0, 0.5)
            .IsOK());
    EXPECT_NE(text, TextOf(assigned));
    EXPECT_EQ(text, TextOf(copy));
    static_cast<void>(algorithm->CreateBins(records, nullptr, nullptr));
    EXPECT_EQ(text, TextOf(copy));
    algorithm.reset();
    EXPECT_EQ(text, TextOf(copy));
    return true;
  });
}

}  // namespace
