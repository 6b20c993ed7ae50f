#include "property/observations.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <limits>
#include <set>
#include <span>
#include <utility>

#include "property/outcomes.h"

namespace property {
namespace {

using reference::Call;
using reference::Outcome;
using reference::PairResult;
using reference::Percentiles;
using reference::Problem;
using reference::Tuple;
using reference::Variable;

constexpr double kLargest = std::numeric_limits<double>::max();
constexpr std::size_t kBlock = 10000;  // cases that the data pass keeps in memory

class Observer {
 public:
  Observer(const Problem& problem, const Outcome& outcome) : fProblem(problem), fOutcome(outcome) {
    for (std::size_t k = 0; k < problem.variables.size(); ++k) {
      const Variable& variable = problem.variables[k];
      if (variable.kind == Variable::Kind::kWeight) {
        fWeight = static_cast<int>(k);
      } else if (variable.role == reference::kRoleTarget) {
        fTarget = static_cast<int>(k);
      }
    }
  }

  std::vector<std::string> Run() {
    ObserveStatuses();
    ObserveRequests();
    ObserveRecords();
    for (const PairResult& result : fOutcome.results) ObserveResult(result);
    if (fProblem.smallBinThreshold > 0.0) ObserveMerging();
    return {fNames.begin(), fNames.end()};
  }

 private:
  void See(const std::string& name) { fNames.insert(name); }
  void SeeIf(bool seen, const std::string& name) {
    if (seen) See(name);
  }

  // ------------------------------------------------------------ the whole run

  void ObserveStatuses() {
    for (const auto& status : fOutcome.callStatuses) See("call " + std::to_string(status.code));
    for (const PairResult& result : fOutcome.results) {
      See("result " + std::to_string(result.status.code));
    }
    See("final " + std::to_string(fOutcome.finalStatus.code));
  }

  void ObserveRequests() {
    SeeIf(fProblem.calls.size() > 1, "several calls on one object");
    SeeIf(!fProblem.rightClosed, "bins closed on the left");
    SeeIf(!fProblem.supervised && fTarget >= 0, "equal frequency with a target in the list");
    std::set<int> targets;
    std::set<std::pair<int, int>> pairs;
    for (const PairResult& result : fOutcome.results) {
      if (result.status.IsError()) continue;
      SeeIf(!pairs.insert({result.attribute, result.target}).second, "pair binned twice");
      if (result.target >= 0) targets.insert(result.target);
      SeeIf(fProblem.supervised && result.attribute == fTarget, "own target as attribute");
    }
    SeeIf(targets.size() > 1, "target switched");
    SeeIf(fProblem.supervised && fTarget < 0 && !targets.empty(), "pairs without an own target");
    for (const Call& call : fProblem.calls) {
      SeeIf(!call.attributes && call.targets, "targets without attributes");
      SeeIf(call.attributes && call.targets && call.attributes->size() != call.targets->size(),
            "lists of unequal length");
      SeeIf(call.attributes && call.attributes->empty(), "empty list");
    }
  }

  void ObserveRecords() {
    std::size_t kept = 0;
    for (const std::vector<double>& record : fProblem.records) {
      const double weight = WeightOf(record);
      const bool dropped = weight == fProblem.missing;
      SeeIf(dropped, "case dropped by its weight");
      if (dropped) continue;
      ++kept;
      SeeIf(std::isnan(weight), "weight NaN");
      SeeIf(std::isinf(weight), "weight infinite");
      SeeIf(weight >= 0x1p53, "weight beyond 2^53");
      SeeIf(weight != std::floor(weight), "weight fractional");
      for (std::size_t k = 0; k < record.size(); ++k) {
        const Variable& variable = fProblem.variables[k];
        if (variable.kind != Variable::Kind::kContinuous) continue;
        const double value = record[k];
        SeeIf(std::isnan(value), "value NaN");
        SeeIf(std::isinf(value), "value infinite");
        SeeIf(value == 0.0 && std::signbit(value), "value negative zero");
        SeeIf(std::fpclassify(value) == FP_SUBNORMAL, "value subnormal");
        SeeIf(value != fProblem.missing && IsUserMissing(variable, value), "value user-missing");
      }
    }
    SeeIf(kept > kBlock, "more cases than one block");
  }

  // --------------------------------------------------------------- one result

  void ObserveResult(const PairResult& result) {
    if (result.status.IsError()) return;
    const Variable& attribute = fProblem.variables[static_cast<std::size_t>(result.attribute)];
    if (attribute.kind != Variable::Kind::kContinuous) {
      See("categorical attribute");
      return;
    }
    const std::vector<Tuple> tuples = TuplesOf(result);
    if (tuples.empty()) return;
    if (fProblem.supervised) {
      ObserveSupervised(result, tuples);
    } else if (fTarget < 0) {
      ObserveEqualFrequency(result, tuples);
    }
  }

  // The valid cases of the result's attribute, sorted.
  std::vector<Tuple> TuplesOf(const PairResult& result) const {
    const auto a = static_cast<std::size_t>(result.attribute);
    std::vector<Tuple> tuples;
    for (const std::vector<double>& record : fProblem.records) {
      Tuple tuple{record[a], WeightOf(record), 0};
      if (tuple.weight == fProblem.missing || tuple.value == fProblem.missing) continue;
      if (IsUserMissing(fProblem.variables[a], tuple.value)) continue;
      if (result.target >= 0) {
        const double code = record[static_cast<std::size_t>(result.target)];
        // No case of a usable target has another code.
        if (code == fProblem.missing || !(code > -1.0 && code < 256.0)) continue;
        tuple.target = static_cast<int>(code);
      }
      tuples.push_back(tuple);
    }
    std::ranges::stable_sort(tuples, [](const Tuple& a1, const Tuple& a2) {
      if (reference::NumberLess(a1.value, a2.value)) return true;
      return !reference::NumberLess(a2.value, a1.value) &&
             reference::NumberLess(a1.weight, a2.weight);
    });
    return tuples;
  }

  void ObserveEqualFrequency(const PairResult& result, std::span<const Tuple> tuples) {
    const auto bins = static_cast<std::size_t>(fProblem.numberOfBins);
    SeeIf(HasMidpoint(result, tuples), "percentile met exactly");
    SeeIf(result.nDistinct > 1 && result.cuts.size() + 1 < bins, "percentiles collapsed");
    SeeIf(result.cuts.size() + 1 != result.cellCounts.size(), "cell counts do not match the cuts");
    SeeIf(std::ranges::find(result.cuts, result.maximum) != result.cuts.end(),
          "cut at the largest value");
    // What the attribute would give if nothing stood behind its own tuples.
    const Percentiles trimmed =
        reference::PercentileCuts(tuples, fProblem.numberOfBins, fProblem.rightClosed, true,
                                  result.totalWeight, fProblem.missing);
    PairResult clean = result;
    clean.cuts = trimmed.cuts;
    clean.cellCounts = trimmed.frequencies;
    SeeIf(!Difference(clean, result).empty(), "stale tail shows in a result");
  }

  void ObserveSupervised(const PairResult& result, std::span<const Tuple> tuples) {
    const auto threshold = static_cast<unsigned>(fProblem.distinctThreshold);
    const bool preBinned = threshold != 0 && result.nDistinct > threshold;
    SeeIf(result.nDistinct == threshold, "as many distinct values as the threshold");
    SeeIf(result.nDistinct == threshold + 1 && threshold != 0, "one distinct value too many");
    SeeIf(preBinned, "pre-binned");
    SeeIf(preBinned && !result.cuts.empty(), "pre-binned with cuts");
    SeeIf(preBinned && HasMidpoint(result, tuples), "pre-binned, cut between values");
    SeeIf(preBinned && result.cellCounts.empty(), "pre-binned without percentiles");
    SeeIf(result.cuts.size() >= 3, "three cuts or more");
    SeeIf(!result.cuts.empty() &&
              (result.cuts.front() == -kLargest || result.cuts.back() == kLargest),
          "cut at an outer border");
    SeeIf(result.cellCounts.size() / (result.cuts.size() + 1) > 4, "four categories or more");
    SeeIf(!preBinned && !result.cuts.empty() && HasEqualBestSplits(tuples), "equal best splits");
    SeeIf(
        std::ranges::all_of(tuples, [&](const Tuple& t) { return t.target == tuples[0].target; }) &&
            tuples[0].target > 0,
        "one class, with a code above 0");
  }

  static bool HasMidpoint(const PairResult& result, std::span<const Tuple> tuples) {
    return std::ranges::any_of(result.cuts, [&](double cut) {
      return std::fabs(cut) < kLargest &&
             std::ranges::none_of(tuples, [cut](const Tuple& tuple) { return tuple.value == cut; });
    });
  }

  // Whether the first split of all had a rival of the same entropy.
  bool HasEqualBestSplits(std::span<const Tuple> tuples) const {
    const auto last = std::ranges::max_element(tuples, {}, &Tuple::target);
    const auto width = static_cast<std::size_t>(last->target) + 2;
    std::vector<double> left(width, 0.0);
    std::vector<double> right(width, 0.0);
    for (const Tuple& tuple : tuples) Move(tuple, 1.0, right);
    double best = kLargest;
    int count = 0;
    for (std::size_t i = 0; i + 1 < tuples.size(); ++i) {
      Move(tuples[i], 1.0, left);
      Move(tuples[i], -1.0, right);
      if (tuples[i].value == tuples[i + 1].value) continue;
      const double entropy = reference::SplitEntropy(left, right);
      if (entropy < best) count = 0;
      if (entropy <= best) ++count;
      best = std::min(best, entropy);
    }
    return count > 1;
  }

  static void Move(const Tuple& tuple, double sign, std::vector<double>& classCounts) {
    classCounts[0] += sign * tuple.weight;
    classCounts[static_cast<std::size_t>(tuple.target) + 1] += sign * tuple.weight;
  }

  // Without the threshold, what was merged has more cuts.
  void ObserveMerging() {
    Problem unmerged = fProblem;
    unmerged.smallBinThreshold = 0.0;
    const Outcome before = reference::Run(unmerged);
    for (std::size_t i = 0; i < std::min(before.results.size(), fOutcome.results.size()); ++i) {
      const std::size_t lost = before.results[i].cuts.size() - fOutcome.results[i].cuts.size();
      SeeIf(lost > 0, "bins merged");
      SeeIf(lost > 1, "several bins merged");
    }
  }

  // ------------------------------------------------------------------- cases

  double WeightOf(const std::vector<double>& record) const {
    if (fWeight < 0) return 1.0;
    const auto w = static_cast<std::size_t>(fWeight);
    return reference::EncodeWeight(fProblem.variables[w], record[w], fProblem.missing);
  }

  static bool IsUserMissing(const Variable& variable, double value) {
    return std::ranges::find(variable.missingValues, value) != variable.missingValues.end() ||
           (variable.missingInterval && variable.missingInterval->first <= value &&
            value <= variable.missingInterval->second);
  }

  const Problem& fProblem;
  const Outcome& fOutcome;
  int fTarget = -1;
  int fWeight = -1;
  std::set<std::string> fNames;
};

// What generated problems have to show.
constexpr const char* kRequired[] = {"call 0",
                                     "call 120004",
                                     "call 120008",
                                     "call 120009",
                                     "call 120010",
                                     "call 120011",
                                     "call 120012",
                                     "call 120018",
                                     "result 0",
                                     "result 120002",
                                     "result 120005",
                                     "result 120006",
                                     "result 120010",
                                     "result 120011",
                                     "result 120013",
                                     "result 120014",
                                     "result 120015",
                                     "result 120016",
                                     "result 120017",
                                     "result 120019",
                                     "final 0",
                                     "final 120003",
                                     "as many distinct values as the threshold",
                                     "bins closed on the left",
                                     "bins merged",
                                     "case dropped by its weight",
                                     "categorical attribute",
                                     "cell counts do not match the cuts",
                                     "cut at an outer border",
                                     "cut at the largest value",
                                     "empty list",
                                     "equal best splits",
                                     "equal frequency with a target in the list",
                                     "four categories or more",
                                     "lists of unequal length",
                                     "more cases than one block",
                                     "one class, with a code above 0",
                                     "one distinct value too many",
                                     "own target as attribute",
                                     "pair binned twice",
                                     "pairs without an own target",
                                     "percentile met exactly",
                                     "percentiles collapsed",
                                     "pre-binned",
                                     "pre-binned with cuts",
                                     "pre-binned without percentiles",
                                     "pre-binned, cut between values",
                                     "several bins merged",
                                     "several calls on one object",
                                     "stale tail shows in a result",
                                     "target switched",
                                     "targets without attributes",
                                     "three cuts or more",
                                     "value NaN",
                                     "value infinite",
                                     "value negative zero",
                                     "value subnormal",
                                     "value user-missing",
                                     "weight NaN",
                                     "weight beyond 2^53",
                                     "weight fractional",
                                     "weight infinite"};

}  // namespace

std::vector<std::string> Observe(const Problem& problem, const Outcome& outcome) {
  return Observer(problem, outcome).Run();
}

const std::vector<std::string>& RequiredObservations() {
  static const std::vector<std::string> names(std::begin(kRequired), std::end(kRequired));
  return names;
}

}  // namespace property
