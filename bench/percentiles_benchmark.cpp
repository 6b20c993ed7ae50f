// How long does the walk to the equal-frequency cut points take?
#include <algorithm>
#include <functional>
#include <numeric>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/support/preparedcolumns.h"
#include "bench/support/workload.h"

namespace {

using bench::Columns;
using bench::Shape;

Columns ColumnsOf(benchmark::State& state) {
  const auto distinct = static_cast<int>(state.range(1));
  return MakeColumns(
      bench::ShapedWorkload{.shape = distinct > 0 ? Shape::kDistinct : Shape::kShuffled,
                            .rows = static_cast<std::size_t>(state.range(0)),
                            .distinct = distinct});
}

// Whether cuts ascend and are as many as bins and distinct values allow.
bool ArePlausible(const std::vector<double>& cuts, benchmark::State& state) {
  const auto most = static_cast<std::size_t>(state.range(2) - 1);
  const bool ascend = std::is_sorted(cuts.begin(), cuts.end(), std::less_equal<>());
  return ascend && !cuts.empty() &&
         (state.range(1) > 0 ? cuts.size() <= most : cuts.size() == most);
}

// Arguments: rows, distinct values (0: all), bins.
void BM_PercentilesSupervised(benchmark::State& state) {
  const Columns columns = ColumnsOf(state);
  bench::PreparedColumns prepared(columns, true);
  std::vector<BINDataTuple>& tuples = prepared.SupervisedTuples(0);
  BINEFPreProcess preProcess(static_cast<int>(state.range(2)), true);
  std::vector<double> cuts;
  std::vector<double> frequencies;
  bool isOK = true;
  for (auto _ : state) {
    cuts.clear();
    isOK = preProcess.EFCreatePercentileCutPts(&tuples, cuts, frequencies,
                                               static_cast<double>(state.range(0))) &&
           isOK;
  }
  if (!isOK || !ArePlausible(cuts, state)) state.SkipWithError("wrong cuts");
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_Percentiles(benchmark::State& state) {
  const Columns columns = ColumnsOf(state);
  bench::PreparedColumns prepared(columns, false);
  std::vector<EFBINDataTuple>& tuples = prepared.Tuples(0);
  BINEFPreProcess preProcess(static_cast<int>(state.range(2)), true);
  std::vector<double> cuts;
  std::vector<double> frequencies;
  bool isOK = true;
  for (auto _ : state) {
    cuts.clear();
    frequencies.clear();
    isOK = preProcess.EFCreatePercentileCutPts(&tuples, cuts, frequencies,
                                               static_cast<double>(state.range(0))) &&
           isOK;
  }
  const double sum = std::accumulate(frequencies.begin(), frequencies.end(), 0.0);
  if (!isOK || !ArePlausible(cuts, state) || frequencies.size() != cuts.size() + 1 ||
      sum != static_cast<double>(state.range(0))) {
    state.SkipWithError("wrong cuts");
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Cases(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"rows", "distinct", "bins"})->Unit(benchmark::kMillisecond);
  for (const int distinct : {0, 1000}) {
    for (const int bins : {10, 1000, 100000}) benchmark->Args({1000000, distinct, bins});
  }
}
BENCHMARK(BM_PercentilesSupervised)->Apply(Cases);
BENCHMARK(BM_Percentiles)->Apply(Cases);

}  // namespace

BENCHMARK_MAIN();
