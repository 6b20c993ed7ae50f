// How long does it take to put a case into the data cache, and to empty a block?
#include <benchmark/benchmark.h>

#include "tqbinning/bindatacache.h"

namespace {

constexpr int kCapacity = 10000;  // cases of a block, as in a data pass

// Fills a block case by case, as a data pass does, and empties it.
void BM_FillAndFlush(benchmark::State& state) {
  const int columns = static_cast<int>(state.range(0));
  BINDataCache cache(columns, kCapacity);
  bool isFull = true;
  bool isEmpty = true;
  for (auto _ : state) {
    for (int i = 0; i < kCapacity; ++i) {
      for (int column = 0; column < columns; ++column) cache.AddElem(column, i + 0.25);
    }
    isFull = isFull && cache.IsAvailable() && cache.GetRowSize(columns - 1) == kCapacity;
    cache.Flush();
    isEmpty = isEmpty && !cache.IsAvailable() && cache.GetRowSize(0) == 0;
    benchmark::DoNotOptimize(cache.GetRowPtr(0));
  }
  const double last = cache.GetElem(columns - 1, kCapacity - 1);  // a flush leaves the data
  if (!isFull || !isEmpty || last != kCapacity - 1 + 0.25) state.SkipWithError("wrong contents");
  state.SetItemsProcessed(state.iterations() * columns * kCapacity);
}
BENCHMARK(BM_FillAndFlush)->Arg(1)->Arg(3)->Arg(12)->Arg(100)->Unit(benchmark::kMicrosecond);

// Emptying alone: it must not touch the data.
void BM_Flush(benchmark::State& state) {
  BINDataCache cache(static_cast<int>(state.range(0)), kCapacity);
  for (auto _ : state) {
    cache.AddElem(0, 1.0);
    cache.Flush();
    benchmark::DoNotOptimize(cache.GetRowPtr(0));
  }
  if (cache.GetRowSize(0) != 0 || cache.GetElem(0, 0) != 1.0) state.SkipWithError("wrong contents");
}
BENCHMARK(BM_Flush)->Arg(12)->Arg(1000);

}  // namespace

BENCHMARK_MAIN();
