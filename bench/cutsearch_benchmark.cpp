// How long does it take to find the best cut of an interval, and all accepted ones?
#include <algorithm>
#include <cmath>
#include <set>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/support/random.h"
#include "tqbinning/tqbinning.h"

namespace {

using bench::Random;

BINVarList OneAttribute() {
  BINVarList list;
  list.AddContVar("x", "", IBINVariable::kAttribute);
  return list;
}

// The search alone, for a given number of classes.
class CutSearch : public BINAlgorithm {
 public:
  CutSearch(BINSettings settings, BINVarList list, int classes) : BINAlgorithm(settings, list) {
    fNumCategories = static_cast<unsigned int>(classes);
  }
};

// A table of class weights with one row per value.
struct Table {
  Table(int rows, int numberOfClasses, bool isPure);

  std::vector<double> TotalsOf(int first, int last) const;  // the sum, then per class

  int classes;
  std::vector<double> values;
  std::vector<double> counts;
  int LastRow() const { return static_cast<int>(values.size()) - 1; }
};

// The classes' shares change in eight steps, so that there are cuts to find.  Pure
// rows hold one case, others several whole weights.
Table::Table(int rows, int numberOfClasses, bool isPure) : classes(numberOfClasses) {
  Random random(4711, static_cast<std::uint64_t>(rows));
  const auto width = static_cast<std::size_t>(classes);
  counts.assign(static_cast<std::size_t>(rows) * width, 0.0);
  for (int row = 0; row < rows; ++row) {
    values.push_back(row);
    const int favourite = row / (rows / 8 + 1) % classes;
    const int cases = isPure ? 1 : 1 + random.Below(4);
    for (int i = 0; i < cases; ++i) {
      const int any = random.Below(classes);
      const int chosen = random.Uniform() < 0.3 ? favourite : any;
      counts[static_cast<std::size_t>(row) * width + static_cast<std::size_t>(chosen)] +=
          isPure ? 1.0 : 1.0 + random.Below(5);
    }
  }
}

std::vector<double> Table::TotalsOf(int first, int last) const {
  const auto width = static_cast<std::size_t>(classes);
  std::vector<double> totals(width + 1, 0.0);
  for (auto row = static_cast<std::size_t>(first); row <= static_cast<std::size_t>(last); ++row) {
    for (std::size_t j = 0; j < width; ++j) {
      totals[j + 1] += counts[row * width + j];
      totals[0] += counts[row * width + j];
    }
  }
  return totals;
}

// Weight times entropy, by another formula than the library's.
double Description(const std::vector<double>& totals) {
  double sum = totals[0] > 0.0 ? totals[0] * std::log2(totals[0]) : 0.0;
  for (std::size_t j = 1; j < totals.size(); ++j) {
    if (totals[j] > 0.0) sum -= totals[j] * std::log2(totals[j]);
  }
  return sum;
}

// The least split entropy that a look at every position finds.
double LeastSplitEntropy(const Table& table) {
  std::vector<double> right = table.TotalsOf(0, table.LastRow());
  std::vector<double> left(right.size(), 0.0);
  const double weight = right[0];
  double least = Description(right);
  for (int row = 0; row < table.LastRow(); ++row) {
    const std::vector<double> moved = table.TotalsOf(row, row);
    for (std::size_t j = 0; j < moved.size(); ++j) {
      left[j] += moved[j];
      right[j] -= moved[j];
    }
    least = std::min(least, Description(left) + Description(right));
  }
  return least / weight;
}

// Arguments: rows of the table, classes, pure rows (0 or 1).
Table TableOf(benchmark::State& state) {
  return Table(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
               state.range(2) != 0);
}

void BM_FindBestCutPoint(benchmark::State& state) {
  const Table table = TableOf(state);
  const CutSearch search(BINSettings(), OneAttribute(), table.classes);
  const std::vector<double> totals = table.TotalsOf(0, table.LastRow());
  std::vector<double> left;
  std::vector<double> right;
  int position = 0;
  for (auto _ : state) {
    left.assign(totals.size(), 0.0);
    right = totals;
    position = search.FindBestCutPoint(&table.counts, 0, table.LastRow(), &left, &right);
    benchmark::DoNotOptimize(position);
  }
  const double entropy = search.ComputeEntropy(&left, &right);
  if (left != table.TotalsOf(0, position) || std::fabs(entropy - LeastSplitEntropy(table)) > 1e-9) {
    state.SkipWithError("wrong cut");
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_MDLPCut(benchmark::State& state) {
  const Table table = TableOf(state);
  const CutSearch search(BINSettings(), OneAttribute(), table.classes);
  std::vector<double> left(static_cast<std::size_t>(table.classes) + 1, 0.0);
  std::vector<double> right = table.TotalsOf(0, table.LastRow());
  const int best = search.FindBestCutPoint(&table.counts, 0, table.LastRow(), &left, &right);
  std::set<double> cuts;
  bool isOK = true;
  for (auto _ : state) {
    cuts.clear();
    isOK = search.MDLPCut(&table.values, &table.counts, 0, table.LastRow(), cuts).IsOK() && isOK;
  }
  // Where classes change slice by slice, the best cut of all is an accepted one.
  const bool isFound = cuts.count(table.values[static_cast<std::size_t>(best)]) == 1;
  if (!isOK || (table.LastRow() >= 9999 && !isFound)) state.SkipWithError("wrong cuts");
  state.counters["cuts"] = static_cast<double>(cuts.size());
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Cases(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"rows", "classes", "pure"})->Unit(benchmark::kMicrosecond);
  for (const int isPure : {1, 0}) {
    for (const int classes : {2, 5, 256}) {
      for (const int rows : {1000, 10000, 100000}) benchmark->Args({rows, classes, isPure});
    }
    for (const int classes : {2, 5}) benchmark->Args({1000000, classes, isPure});
  }
}
BENCHMARK(BM_FindBestCutPoint)->Apply(Cases);
BENCHMARK(BM_MDLPCut)->Apply(Cases);

}  // namespace

BENCHMARK_MAIN();
