// How long does one attribute take, from its column file to its result?
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/support/binningrun.h"
#include "bench/support/workload.h"
#include "support/scratchdirectory.h"

namespace {

using bench::Columns;
using bench::Source;

constexpr std::size_t kRows = 1000000;

// One attribute of a standard workload: "W1" of distinct values, 2 classes; "W2" the
// same, 5 classes; "W3" in hundredths, weighted.
Columns AttributeOf(const char* name) {
  for (const bench::Workload& standard : bench::StandardWorkloads()) {
    if (standard.name != name) continue;
    bench::Workload workload = standard;
    workload.rows = kRows;
    workload.attributes = {standard.isWeighted ? Source::kMixedHundredths : Source::kMixed};
    return MakeColumns(workload);
  }
  throw std::invalid_argument("no such workload");
}

// Every run stored one outcome, and all must be the same.
void CheckOutcomes(benchmark::State& state, const std::vector<bench::AttributeOutcome>& outcomes,
                   const Columns& columns) {
  for (const bench::AttributeOutcome& outcome : outcomes) {
    if (outcome != outcomes.front()) state.SkipWithError("the result changed");
  }
  const std::string complaint = ComplaintAbout({outcomes.front()}, columns);
  if (!complaint.empty()) state.SkipWithError(complaint.c_str());
  state.counters["cuts"] = static_cast<double>(outcomes.front().cuts.size());
  state.SetItemsProcessed(state.iterations() * static_cast<long>(kRows));
}

// Later runs of an algorithm reuse its column files, so that only reading, sorting
// and binning are timed.  `preBins` is 0 for none.
void BM_Supervised(benchmark::State& state, const char* workload, int preBins) {
  const Columns columns = AttributeOf(workload);
  const support::ScratchDirectory directory;
  BINVarList list = bench::MakeVarList(columns, true);
  BINSettings settings;
  settings.SetTempDirName(directory.Path());
  settings.SetNumberOfBins(preBins > 0 ? preBins : 2);
  settings.SetNumDistinctValueThreshold(preBins);
  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, list));
  bench::ColumnRecords records(columns, true);
  const std::vector<int> attributes = {0};
  bool isOK = algorithm->CreateBins(records, &attributes, nullptr).IsOK();
  for (auto _ : state) {
    isOK = algorithm->CreateBins(records, &attributes, nullptr).IsOK() && isOK;
  }
  if (!isOK) state.SkipWithError("wrong status");
  CheckOutcomes(state, bench::OutcomesOf(algorithm->GetBinningResults()), columns);
}
BENCHMARK_CAPTURE(BM_Supervised, W1, "W1", 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Supervised, W2, "W2", 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Supervised, W3, "W3", 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Supervised, W1_1000PreBins, "W1", 1000)->Unit(benchmark::kMillisecond);

void BM_EqualFrequency(benchmark::State& state, const char* workload, int bins) {
  const Columns columns = AttributeOf(workload);
  const support::ScratchDirectory directory;
  BINVarList list = bench::MakeVarList(columns, false);
  EFBINSettings settings;
  settings.SetTempDirName(directory.Path());
  settings.SetNumberOfBins(bins);
  EFBINFactory factory;
  const std::unique_ptr<IEFBINAlgorithm> algorithm(factory.CreateEFBINAlgorithm(settings, list));
  bench::ColumnRecords records(columns, false);
  const std::vector<int> attributes = {0};
  bool isOK = algorithm->CreateBins(records, &attributes).IsOK();
  for (auto _ : state) isOK = algorithm->CreateBins(records, &attributes).IsOK() && isOK;
  if (!isOK) state.SkipWithError("wrong status");
  CheckOutcomes(state, bench::OutcomesOf(algorithm->GetBinningResults()), columns);
}
BENCHMARK_CAPTURE(BM_EqualFrequency, W1_10Bins, "W1", 10)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_EqualFrequency, W1_1000Bins, "W1", 1000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_EqualFrequency, W3_10Bins, "W3", 10)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
