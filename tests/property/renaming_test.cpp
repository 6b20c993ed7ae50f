#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "property/trials.h"

// Renaming a target's categories renames the columns of the counts, and nothing else.
namespace {

using namespace property;

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

}  // namespace
