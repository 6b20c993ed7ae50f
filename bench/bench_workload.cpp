// Runs one workload as a whole and prints one tab-separated row about it:
//
//   bench_workload DIR ef|mdl ROWS COLS BINS mem|csv REPS WEIGHTED [TOOL]
//
// name, workload, task, rows, columns, bins, mode, median seconds, peak MB of the
// process, repetitions, cuts=number of cuts of each attribute, library_mb=peak beyond
// what was held before the first run, bytes_per_case=the same per row.
//
// mem: the columns are read from DIR first; timed is a whole run of the library over
// them, from the variable list to the removal of its temporary files.  csv: timed is
// a run of tqbin (TOOL, by default the one that was built along) over DIR/data.csv,
// from its start to its exit; the peak is then the tool's.  BINS is the number of bins
// for ef; for mdl the number of equal-frequency bins into which attributes with more
// distinct values are first cut, 0 for none.  WEIGHTED is 1 to use the weights.
//
// Every repetition must give the same answer, and an answer that its data allow;
// otherwise nothing is printed and the exit code is 1.

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "bench/support/binningrun.h"
#include "bench/support/columnfiles.h"
#include "bench/support/processmemory.h"
#include "bench/support/toolrun.h"
#include "support/scratchdirectory.h"

namespace {

using bench::AttributeOutcome;
using bench::Columns;
using bench::RunSettings;
using bench::Task;
using Clock = std::chrono::steady_clock;

constexpr double kMegabyte = 1024.0 * 1024.0;

constexpr const char* kUsage =
    "usage: bench_workload DIR ef|mdl ROWS COLS BINS mem|csv REPS WEIGHTED [TOOL]";

struct Order {
  std::string directory;
  RunSettings settings;
  std::size_t rows = 0;
  int attributes = 0;
  bool fromCsv = false;
  int repetitions = 0;
  bool isWeighted = false;
  std::string tool;
};

struct Measurement {
  std::vector<double> seconds;  // one per repetition
  std::vector<std::size_t> cutCounts;
  double peakBytes = 0.0;
  double libraryBytes = -1.0;  // -1: not known
};

int NumberAtLeast(int least, const char* text, const char* what) {
  char* end = nullptr;
  const long number = std::strtol(text, &end, 10);
  if (end == text || *end != '\0' || number < least || number > 1000000000L) {
    throw std::invalid_argument(std::string(text) + " is no number of " + what);
  }
  return static_cast<int>(number);
}

// The one of two words that was given; true for the second.
bool IsSecond(const std::string& word, const char* first, const char* second) {
  if (word != first && word != second) {
    throw std::invalid_argument(word + " is neither " + first + " nor " + second);
  }
  return word == second;
}

Order ParseOrder(int argc, char** argv) {
  if (argc < 9 || argc > 10) throw std::invalid_argument(kUsage);
  Order order;
  order.directory = argv[1];
  while (order.directory.size() > 1 && order.directory.back() == '/') order.directory.pop_back();
  const bool isSupervised = IsSecond(argv[2], "ef", "mdl");
  order.settings.task = isSupervised ? Task::kSupervised : Task::kEqualFrequency;
  order.rows = static_cast<std::size_t>(NumberAtLeast(1, argv[3], "rows"));
  order.attributes = NumberAtLeast(1, argv[4], "columns");
  order.settings.bins = NumberAtLeast(isSupervised ? 0 : 2, argv[5], "bins");
  if (order.settings.bins == 1) throw std::invalid_argument("1 is no number of bins");
  order.fromCsv = IsSecond(argv[6], "mem", "csv");
  order.repetitions = NumberAtLeast(1, argv[7], "repetitions");
  order.isWeighted = IsSecond(argv[8], "0", "1");
  order.tool = argc == 10 ? argv[9] : TQBIN_PATH;
  return order;
}

void Refuse(const std::string& complaint) {
  if (!complaint.empty()) throw std::runtime_error("wrong answer: " + complaint);
}

Measurement MeasureLibrary(const Order& order, const std::string& scratch) {
  const Columns columns =
      bench::ReadDataSet(order.directory, order.rows, order.attributes, order.isWeighted);
  Measurement measurement;
  const bool knowsPeak = bench::ResetPeakResidentBytes();
  const double hostBytes = bench::ResidentBytes();
  std::vector<AttributeOutcome> first;
  for (int i = 0; i < order.repetitions; ++i) {
    const auto start = Clock::now();
    std::vector<AttributeOutcome> outcomes = bench::RunBinning(columns, order.settings, scratch);
    measurement.seconds.push_back(std::chrono::duration<double>(Clock::now() - start).count());
    if (i == 0)
      first = std::move(outcomes);
    else if (outcomes != first)
      Refuse("it changed from one repetition to another");
  }
  measurement.peakBytes = bench::PeakResidentBytes();
  if (knowsPeak) measurement.libraryBytes = measurement.peakBytes - hostBytes;
  Refuse(bench::ComplaintAbout(first, columns));
  for (const AttributeOutcome& outcome : first)
    measurement.cutCounts.push_back(outcome.cuts.size());
  return measurement;
}

Measurement MeasureTool(const Order& order, const std::string& scratch) {
  if (order.tool.empty()) throw std::invalid_argument("tqbin was not built along; name it");
  const bench::ToolRun run = {order.directory + "/data.csv", order.attributes, order.isWeighted,
                              order.settings};
  Measurement measurement;
  std::string first;
  for (int i = 0; i < order.repetitions; ++i) {
    const bench::ToolResult result = bench::RunTool(order.tool, run, scratch);
    measurement.seconds.push_back(result.seconds);
    measurement.peakBytes = std::max(measurement.peakBytes, result.peakBytes);
    if (i == 0) {
      Refuse(ComplaintAbout(result, run, order.rows, &measurement.cutCounts));
      first = result.json;
    } else if (result.json != first) {
      Refuse("it changed from one repetition to another");
    }
  }
  return measurement;
}

void Print(const Order& order, Measurement measurement) {
  std::vector<double>& seconds = measurement.seconds;
  std::sort(seconds.begin(), seconds.end());
  const std::string workload = order.directory.substr(order.directory.rfind('/') + 1);
  std::printf("%s\t%s\t%s\t%zu\t%d\t%d\t%s%s\t%.4f\t%.0f\t%d\tcuts=",
              order.fromCsv ? "tqbin" : "tqbinning", workload.c_str(),
              order.settings.task == Task::kSupervised ? "mdl" : "ef", order.rows, order.attributes,
              order.settings.bins, order.fromCsv ? "csv" : "mem", order.isWeighted ? "+w" : "",
              seconds[seconds.size() / 2], measurement.peakBytes / kMegabyte, order.repetitions);
  for (const std::size_t count : measurement.cutCounts) std::printf("%zu,", count);
  if (measurement.libraryBytes >= 0.0) {
    std::printf("\tlibrary_mb=%.1f\tbytes_per_case=%.1f", measurement.libraryBytes / kMegabyte,
                measurement.libraryBytes / static_cast<double>(order.rows));
  }
  std::printf("\n");
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const Order order = ParseOrder(argc, argv);
    const support::ScratchDirectory scratch;
    Print(order, order.fromCsv ? MeasureTool(order, scratch.Path())
                               : MeasureLibrary(order, scratch.Path()));
  } catch (const std::invalid_argument& error) {
    std::fprintf(stderr, "bench_workload: %s\n", error.what());
    return 2;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "bench_workload: %s\n", error.what());
    return 1;
  }
  return 0;
}
