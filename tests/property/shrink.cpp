#include "property/shrink.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

#include "property/outcomes.h"
#include "property/problemtext.h"

namespace property {
namespace {

using reference::Call;
using reference::Problem;
using reference::Variable;

template <typename T>
void EraseAt(std::vector<T>& elements, std::size_t position, std::size_t count = 1) {
  const auto first = elements.begin() + static_cast<std::ptrdiff_t>(position);
  elements.erase(first, first + static_cast<std::ptrdiff_t>(count));
}

class Shrinker {
 public:
  Shrinker(Problem problem, const std::function<bool(const Problem&)>& isBad)
      : fProblem(std::move(problem)), fIsBad(isBad) {}

  Problem Run() {
    do {
      fChanged = false;
      DropRecords();
      DropCalls();
      DropVariables();
      DropListEntries();
      SimplifySettings();
      SimplifyVariables();
      SimplifyValues();
    } while (fChanged);
    return fProblem;
  }

 private:
  // Takes the candidate over if it is another problem and still bad.
  bool Try(const Problem& candidate) {
    if (TextOf(candidate) == TextOf(fProblem) || !fIsBad(candidate)) return false;
    fProblem = candidate;
    fChanged = true;
    return true;
  }

  // Applies `change` to a copy.
  template <typename Change>
  bool TryChange(Change change) {
    Problem candidate = fProblem;
    change(candidate);
    return Try(candidate);
  }

  void DropRecords() {
    for (std::size_t chunk = std::max<std::size_t>(fProblem.records.size() / 2, 1);; chunk /= 2) {
      std::size_t start = 0;
      while (start < fProblem.records.size()) {
        const std::size_t count = std::min(chunk, fProblem.records.size() - start);
        const bool dropped =
            TryChange([&](Problem& problem) { EraseAt(problem.records, start, count); });
        if (!dropped) start += count;
      }
      if (chunk <= 1) return;
    }
  }

  void DropCalls() {
    for (std::size_t i = fProblem.calls.size(); i-- > 0 && fProblem.calls.size() > 1;) {
      TryChange([&](Problem& problem) { EraseAt(problem.calls, i); });
    }
  }

  void DropVariables() {
    for (std::size_t k = fProblem.variables.size(); k-- > 0 && fProblem.variables.size() > 1;) {
      TryChange([&](Problem& problem) {
        EraseAt(problem.variables, k);
        for (std::vector<double>& record : problem.records) EraseAt(record, k);
        for (Call& call : problem.calls) ForgetVariable(static_cast<int>(k), call);
      });
    }
  }

  // Takes the entries (or pairs) that name the variable out and moves later ones down.
  static void ForgetVariable(int variable, Call& call) {
    for (std::optional<std::vector<int>>* list : {&call.attributes, &call.targets}) {
      if (!*list) continue;
      for (std::size_t i = (*list)->size(); i-- > 0;) {
        if ((**list)[i] == variable) DropEntry(i, call);
      }
    }
    for (std::optional<std::vector<int>>* list : {&call.attributes, &call.targets}) {
      if (!*list) continue;
      for (int& index : **list) index -= index > variable ? 1 : 0;
    }
  }

  static void DropEntry(std::size_t position, Call& call) {
    if (call.attributes && position < call.attributes->size()) EraseAt(*call.attributes, position);
    if (call.targets && position < call.targets->size()) EraseAt(*call.targets, position);
  }

  void DropListEntries() {
    for (std::size_t c = 0; c < fProblem.calls.size(); ++c) {
      TryChange([&](Problem& problem) { problem.calls[c] = Call{}; });
      TryChange([&](Problem& problem) { problem.calls[c].targets.reset(); });
      const Call& call = fProblem.calls[c];
      const std::size_t length = std::max(call.attributes ? call.attributes->size() : 0,
                                          call.targets ? call.targets->size() : 0);
      for (std::size_t i = length; i-- > 0;) {
        TryChange([&](Problem& problem) { DropEntry(i, problem.calls[c]); });
      }
    }
  }

  // Sets a field to its plainest value, or at least to a plainer one.
  template <typename T, typename Access>
  void Simplify(const std::vector<T>& candidates, Access access) {
    for (const T& candidate : candidates) {
      if (access(fProblem) == candidate) return;
      if (TryChange([&](Problem& problem) { access(problem) = candidate; })) return;
    }
  }

  void SimplifySettings() {
    Simplify<double>({0.0, 1.0, 0.5}, [](Problem& p) -> double& { return p.smallBinThreshold; });
    Simplify<int>({-1, 1, 2, 3}, [](Problem& p) -> int& { return p.distinctThreshold; });
    Simplify<int>({2, 3, 4, 5, 6}, [](Problem& p) -> int& { return p.numberOfBins; });
    Simplify<bool>({true}, [](Problem& p) -> bool& { return p.rightClosed; });
  }

  void SimplifyVariables() {
    for (std::size_t k = 0; k < fProblem.variables.size(); ++k) {
      TryChange([&](Problem& problem) { problem.variables[k].missingInterval.reset(); });
      TryChange([&](Problem& problem) { problem.variables[k].missingValues.clear(); });
      // Of what a variable does not use, the initial value is the plainest.
      Simplify<int>({2, 3, 4, 5}, [k](Problem& p) -> int& { return p.variables[k].categories; });
      Simplify<int>({2}, [k](Problem& p) -> int& { return p.variables[k].level; });
      Simplify<int>({1, 2}, [k](Problem& p) -> int& { return p.variables[k].rounding; });
    }
  }

  void SimplifyValues() {
    for (std::size_t k = 0; k < fProblem.variables.size(); ++k) {
      RankColumn(k);
      for (std::size_t i = 0; i < fProblem.records.size(); ++i) {
        const double value = fProblem.records[i][k];
        for (const double candidate : {0.0, 1.0, 2.0, 3.0, 4.0}) {
          if (SameNumber(candidate, value)) break;
          if (TryChange([&](Problem& p) { p.records[i][k] = candidate; })) break;
        }
      }
    }
  }

  // Replaces the values of a column by 0, 1, ... in the same order.  Like the simpler
  // values above, ranks never grow from one round to the next: the rounds end.
  void RankColumn(std::size_t k) {
    std::vector<double> values;
    for (const std::vector<double>& record : fProblem.records) values.push_back(record[k]);
    std::erase_if(values,
                  [this](double value) { return std::isnan(value) || value == fProblem.missing; });
    std::ranges::sort(values);
    values.erase(std::unique(values.begin(), values.end()), values.end());
    Problem candidate = fProblem;
    bool differs = false;
    for (std::vector<double>& record : candidate.records) {
      const auto place = std::ranges::lower_bound(values, record[k]);
      if (place == values.end() || *place != record[k]) continue;
      const double rank = static_cast<double>(std::distance(values.begin(), place));
      differs = differs || rank != record[k];
      record[k] = rank;
    }
    if (differs) Try(candidate);
  }

  Problem fProblem;
  const std::function<bool(const Problem&)>& fIsBad;
  bool fChanged = false;
};

}  // namespace

Problem Shrink(Problem problem, const std::function<bool(const Problem&)>& isBad) {
  return Shrinker(std::move(problem), isBad).Run();
}

}  // namespace property
