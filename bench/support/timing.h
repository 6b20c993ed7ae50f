#pragma once

#include <chrono>

#include <benchmark/benchmark.h>

namespace bench {

// For benchmarks that UseManualTime: times one call, so that what has to be made
// ready before each iteration does not count.
template <typename Function>
void TimeIteration(benchmark::State& state, const Function& function) {
  const auto start = std::chrono::steady_clock::now();
  function();
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  state.SetIterationTime(elapsed.count());
}

}  // namespace bench
