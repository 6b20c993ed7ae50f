// How long does the data pass take, from the host's records to the column files?
#include <cstddef>

#include <benchmark/benchmark.h>

#include "bench/support/binningrun.h"
#include "bench/support/timing.h"
#include "bench/support/workload.h"
#include "support/scratchdirectory.h"

namespace {

using bench::Columns;

// Whether the files hold every value of the attributes, in order.
bool HoldColumns(const BINDataPreparator& preparator, const Columns& columns) {
  for (std::size_t i = 0; i < columns.attributes.size(); ++i) {
    const auto column = static_cast<std::size_t>(preparator.GetVariableIndex()[i]);
    if (support::ReadColumn(preparator.GetFileNames()[column]) != columns.attributes[i]) {
      return false;
    }
  }
  return true;
}

// Arguments: rows, attributes, target (0 or 1), weight (0 or 1), tests against
// user-missing values (0 or 1).
void BM_DataPass(benchmark::State& state) {
  const bool withTarget = state.range(2) != 0;
  const Columns columns =
      MakeColumns(bench::ShapedWorkload{.rows = static_cast<std::size_t>(state.range(0)),
                                        .attributes = static_cast<int>(state.range(1)),
                                        .isWeighted = state.range(3) != 0});
  BINVarList list = MakeVarList(columns, withTarget);
  for (int i = 0; i < state.range(1) && state.range(4) != 0; ++i) {
    list.SetMissingInterval(i, 2.0, 3.0);  // no value lies there
  }
  BINCancelInfo cancelInfo(nullptr);
  const support::ScratchDirectory directory;

  bool isComplete = true;
  for (auto _ : state) {
    bench::ColumnRecords records(columns, withTarget);
    BINDataPreparator preparator(list, cancelInfo, directory.Path(), nullptr, 0);
    bool isOK = false;
    bench::TimeIteration(state, [&] { isOK = preparator.ProcessSource(records).IsOK(); });
    isComplete = isComplete && isOK && preparator.GetNumberOfKeptCases() == columns.Rows();
    if (state.iterations() == 0) isComplete = isComplete && HoldColumns(preparator, columns);
  }
  if (!isComplete) state.SkipWithError("wrong column files");
  if (!directory.IsEmpty()) state.SkipWithError("column files stayed behind");
  const long values = state.range(1) + state.range(2) + state.range(3);
  state.SetItemsProcessed(state.iterations() * state.range(0) * values);
}
BENCHMARK(BM_DataPass)
    ->ArgNames({"rows", "attributes", "target", "weight", "missing"})
    ->Args({100000, 10, 0, 0, 0})
    ->Args({100000, 10, 1, 0, 0})
    ->Args({100000, 10, 1, 1, 0})
    ->Args({100000, 10, 1, 1, 1})
    ->Args({100000, 1, 1, 0, 0})
    ->Args({10000, 1000, 1, 0, 0})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
