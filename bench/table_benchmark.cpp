// How long does it take to count the classes of every row of the table?
#include <limits>
#include <numeric>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/support/preparedcolumns.h"
#include "bench/support/workload.h"

namespace {

using bench::Columns;
using bench::Shape;

constexpr double kHighest = std::numeric_limits<double>::max();

// From the lowest double to the highest, with every value between them but the last.
std::vector<double> BordersOf(int distinct) {
  std::vector<double> borders(static_cast<std::size_t>(distinct) + 1);
  std::iota(borders.begin() + 1, borders.end(), 0.0);
  borders.front() = -kHighest;
  borders.back() = kHighest;
  return borders;
}

// Arguments: rows, distinct values, classes.  Every value gets a row of its own.
void BM_CreateBinTable(benchmark::State& state) {
  const auto distinct = static_cast<int>(state.range(1));
  const Columns columns =
      MakeColumns(bench::ShapedWorkload{.shape = Shape::kDistinct,
                                        .rows = static_cast<std::size_t>(state.range(0)),
                                        .classes = static_cast<int>(state.range(2)),
                                        .distinct = distinct});
  bench::PreparedColumns prepared(columns, true);
  prepared.SupervisedTuples(0);
  const std::vector<double> borders = BordersOf(distinct);
  std::vector<double> table;
  bool isOK = true;
  for (auto _ : state) {
    isOK = prepared.DataSet().CreateBinTable(&borders, true, table).IsOK() && isOK;
    benchmark::DoNotOptimize(table.data());
  }
  std::vector<double> expected(table.size(), 0.0);
  for (std::size_t i = 0; i < columns.Rows(); ++i) {
    const double row = columns.attributes[0][i];
    expected[static_cast<std::size_t>(row * columns.classes + columns.target[i])] += 1.0;
  }
  if (!isOK || table != expected) state.SkipWithError("wrong table");
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_CreateBinTable)
    ->ArgNames({"rows", "distinct", "classes"})
    ->Args({1000000, 100, 2})
    ->Args({1000000, 100, 256})
    ->Args({1000000, 10000, 2})
    ->Args({1000000, 10000, 5})
    ->Args({1000000, 10000, 256})
    ->Args({1000000, 500000, 2})
    ->Args({1000000, 500000, 5})
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
