// How long does it take to read a column file back, value by value and as tuples?
#include <cstddef>
#include <numeric>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/support/preparedcolumns.h"
#include "bench/support/workload.h"

namespace {

using bench::Columns;

double Sum(const std::vector<double>& values) {
  return std::accumulate(values.begin(), values.end(), 0.0);
}

Columns ColumnsOf(benchmark::State& state, bool isWeighted) {
  return MakeColumns(bench::ShapedWorkload{.rows = static_cast<std::size_t>(state.range(0)),
                                           .isWeighted = isWeighted});
}

void BM_Next(benchmark::State& state) {
  const Columns columns = ColumnsOf(state, false);
  const bench::PreparedColumns prepared(columns, false);
  TQBinning::BinaryRecordIterator reader(prepared.FileOf(0));
  double sum = 0.0;
  for (auto _ : state) {
    sum = 0.0;
    reader.NewPass();
    while (reader.HasMore()) sum += reader.Next();
    benchmark::DoNotOptimize(sum);
  }
  if (sum != Sum(columns.attributes[0])) state.SkipWithError("wrong values");
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_Next)->Arg(1000000)->Unit(benchmark::kMillisecond);

// Arguments: rows, target (0 or 1), weight (0 or 1).
void BM_ReadNextAttribute(benchmark::State& state) {
  const Columns columns = ColumnsOf(state, state.range(2) != 0);
  bench::PreparedColumns prepared(columns, state.range(1) != 0);
  BINDataSet& dataSet = prepared.DataSet();
  bool isOK = true;
  for (auto _ : state) isOK = dataSet.ReadNextAttribute(prepared.ColumnOf(0)).IsOK() && isOK;

  const double weight =
      columns.weights.empty() ? static_cast<double>(state.range(0)) : Sum(columns.weights);
  if (!isOK || dataSet.GetNumberOfValidTuples() != state.range(0) ||
      dataSet.GetValidWeightTotal() != weight || dataSet.GetWeightTotal() != weight) {
    state.SkipWithError("wrong tuples");
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ReadNextAttribute)
    ->ArgNames({"rows", "target", "weight"})
    ->Args({1000000, 0, 0})
    ->Args({1000000, 1, 0})
    ->Args({1000000, 0, 1})
    ->Args({1000000, 1, 1})
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
