// How long does it take to sort an attribute's tuples, and does their order matter?
#include <algorithm>
#include <cmath>
#include <span>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/support/timing.h"
#include "bench/support/workload.h"
#include "data/tuplesort.h"
#include "tqbinning/bindatatuple.h"

namespace {

using bench::Columns;
using bench::Shape;

template <typename Tuple>
std::vector<Tuple> TuplesOf(const Columns& columns) {
  std::vector<Tuple> tuples(columns.Rows());
  for (std::size_t i = 0; i < tuples.size(); ++i) {
    tuples[i].value = columns.attributes[0][i];
    tuples[i].weight = columns.weights[i];
    if constexpr (requires { tuples[i].target; }) {
      tuples[i].target = static_cast<unsigned char>(columns.target[i]);
    }
  }
  return tuples;
}

// The values in ascending order, by other means.
std::vector<double> SortedValues(const Columns& columns) {
  std::vector<double> values = columns.attributes[0];
  std::sort(values.begin(), values.end());
  return values;
}

// Sums over values, classes and weights that notice a tuple torn apart.
template <typename Tuple>
double Fingerprint(const std::vector<Tuple>& tuples) {
  long double sum = 0.0L;  // the order of the terms must not matter
  for (const Tuple& tuple : tuples) {
    double factor = tuple.weight;
    if constexpr (requires { tuple.target; }) factor += 8.0 * tuple.target;
    sum += std::floor(tuple.value * 1024.0) * factor;
  }
  return static_cast<double>(sum);
}

template <typename Tuple>
void SortTuples(benchmark::State& state, Shape shape, int distinct) {
  const Columns columns =
      MakeColumns(bench::ShapedWorkload{.shape = shape,
                                        .rows = static_cast<std::size_t>(state.range(0)),
                                        .distinct = distinct,
                                        .isWeighted = true});
  const std::vector<Tuple> unsorted = TuplesOf<Tuple>(columns);
  std::vector<Tuple> tuples;
  TQBinning::SortMemory memory;
  for (auto _ : state) {
    tuples = unsorted;
    bench::TimeIteration(state, [&] { TQBinning::SortByValue(std::span<Tuple>(tuples), memory); });
    benchmark::DoNotOptimize(tuples.data());
  }
  const std::vector<double> values = SortedValues(columns);
  const bool isSorted = std::equal(tuples.begin(), tuples.end(), values.begin(), values.end(),
                                   [](const Tuple& t, double value) { return t.value == value; });
  if (!isSorted || Fingerprint(tuples) != Fingerprint(unsorted)) state.SkipWithError("wrong order");
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void RegisterShape(Shape shape, int distinct) {
  std::string name = bench::NameOf(shape);
  if (distinct > 0) name += std::to_string(distinct);
  const auto configure = [](benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(10000)->Arg(1000000)->UseManualTime()->Unit(benchmark::kMillisecond);
  };
  configure(benchmark::RegisterBenchmark(("BM_SortSupervised/" + name).c_str(),
                                         SortTuples<BINDataTuple>, shape, distinct));
  configure(benchmark::RegisterBenchmark(("BM_Sort/" + name).c_str(), SortTuples<EFBINDataTuple>,
                                         shape, distinct));
}

}  // namespace

int main(int argc, char** argv) {
  for (const Shape shape : {Shape::kShuffled, Shape::kPresorted, Shape::kReversed,
                            Shape::kOrganPipe, Shape::kAllEqual, Shape::kSawtooth}) {
    RegisterShape(shape, 0);
  }
  for (const int distinct : {2, 100, 100000}) RegisterShape(Shape::kDistinct, distinct);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
