// How does the time of a whole run grow with rows, attributes, classes, bins and
// distinct values, whatever the order of the data?
#include <cstddef>
#include <string>
#include <utility>

#include <benchmark/benchmark.h>

#include "bench/support/binningrun.h"
#include "bench/support/workload.h"
#include "support/scratchdirectory.h"

namespace {

using bench::Columns;
using bench::RunSettings;
using bench::Shape;
using bench::ShapedWorkload;
using bench::Task;

constexpr Shape kShapes[] = {Shape::kShuffled,  Shape::kPresorted, Shape::kReversed,
                             Shape::kOrganPipe, Shape::kAllEqual,  Shape::kSawtooth};

// Runs a whole binning over and over; `n` is what the time is to be a function of.
void MeasureRun(benchmark::State& state, const ShapedWorkload& workload,
                const RunSettings& settings, long n) {
  const Columns columns = MakeColumns(workload);
  const support::ScratchDirectory directory;
  std::string complaint;
  for (auto _ : state) {
    const auto outcomes = RunBinning(columns, settings, directory.Path());
    state.PauseTiming();
    if (complaint.empty()) complaint = ComplaintAbout(outcomes, columns);
    state.ResumeTiming();
  }
  if (!complaint.empty()) state.SkipWithError(complaint.c_str());
  state.SetComplexityN(n);
}

std::size_t Rows(const benchmark::State& state) { return static_cast<std::size_t>(state.range(0)); }

void BM_Rows(benchmark::State& state, Shape shape, RunSettings settings) {
  MeasureRun(state, {.shape = shape, .rows = Rows(state)}, settings, state.range(0));
}

// Blocks of one class, then of the other: the best cut is always one that takes the
// outermost block away, so that as many intervals have to be searched as there are
// blocks, each hardly shorter than the one before.
void BM_Blocks(benchmark::State& state) {
  constexpr std::size_t kBlock = 100;  // large enough for the stop rule to accept
  MeasureRun(state, {.shape = Shape::kPresorted, .rows = Rows(state), .block = kBlock},
             {Task::kSupervised, 0}, state.range(0));
}

void BM_Attributes(benchmark::State& state, RunSettings settings) {
  MeasureRun(state, {.rows = 10000, .attributes = static_cast<int>(state.range(0))}, settings,
             state.range(0));
}

void BM_Classes(benchmark::State& state, int distinct) {
  MeasureRun(state,
             {.shape = distinct > 0 ? Shape::kDistinct : Shape::kShuffled,
              .rows = 100000,
              .classes = static_cast<int>(state.range(0)),
              .distinct = distinct},
             {Task::kSupervised, 0}, state.range(0));
}

void BM_Bins(benchmark::State& state, Task task) {
  MeasureRun(state, {.rows = 1000000}, {task, static_cast<int>(state.range(0))}, state.range(0));
}

void BM_Distinct(benchmark::State& state, RunSettings settings) {
  MeasureRun(
      state,
      {.shape = Shape::kDistinct, .rows = 1000000, .distinct = static_cast<int>(state.range(0))},
      settings, state.range(0));
}

template <typename... Args>
benchmark::internal::Benchmark* Register(const std::string& name, Args&&... args) {
  return benchmark::RegisterBenchmark(name.c_str(), std::forward<Args>(args)...)
      ->Unit(benchmark::kMillisecond)
      ->RangeMultiplier(10);
}

void RegisterAll() {
  const std::pair<const char*, RunSettings> runs[] = {
      {"Supervised/", {Task::kSupervised, 0}}, {"EqualFrequency/", {Task::kEqualFrequency, 10}}};
  for (const auto& [prefix, settings] : runs) {
    for (const Shape shape : kShapes) {
      // Distinct values in no order are the hardest, and go furthest.
      const long mostRows = shape == Shape::kShuffled ? 10000000 : 1000000;
      Register(std::string(prefix) + "Rows/" + bench::NameOf(shape), BM_Rows, shape, settings)
          ->Range(10000, mostRows)
          ->Complexity(benchmark::oNLogN);
    }
    Register(std::string(prefix) + "Attributes", BM_Attributes, settings)
        ->Range(1, 1000)
        ->Complexity(benchmark::oN);
    Register(std::string(prefix) + "Distinct", BM_Distinct, settings)
        ->Range(1, 1000000)
        ->Complexity();
  }
  Register("Supervised/Rows/blocks", BM_Blocks)->Range(1000, 100000)->Complexity();
  // Every class more is a number more in every row of the table: linear, with a share
  // per case that does not grow.
  Register("Supervised/Classes/distinct", BM_Classes, 0)
      ->RangeMultiplier(4)
      ->Range(2, 256)
      ->Complexity(benchmark::oN);
  Register("Supervised/Classes/1000values", BM_Classes, 1000)
      ->RangeMultiplier(4)
      ->Range(2, 256)
      ->Complexity(benchmark::oN);
  Register("EqualFrequency/Bins", BM_Bins, Task::kEqualFrequency)
      ->Arg(2)
      ->Range(10, 1000000)
      ->Complexity();
  Register("Supervised/PreBins", BM_Bins, Task::kSupervised)
      ->Arg(2)
      ->Range(10, 100000)
      ->Complexity();
}

}  // namespace

int main(int argc, char** argv) {
  RegisterAll();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
