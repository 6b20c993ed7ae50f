#include "run/jobs.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <numeric>
#include <system_error>
#include <thread>
#include <utility>

#include <unistd.h>

#include <fmt/format.h>

#include "base/notes.h"
#include "base/signals.h"
#include "run/heldcases.h"

namespace TQTool {
namespace {

constexpr int kCasesPerReport = 50000;

// What the library takes for a case while it bins a column, besides the case itself.
constexpr std::size_t kBytesPerCaseAndJob = 64;

// Hands out held cases and then those that have not been read yet.
class HeldThenFed : public TQCommon::RecordIterator {
 public:
  HeldThenFed(HeldCasesReader& held, RecordFeed& feed) : fHeld(held), fFeed(feed) {}

  bool HasMore() override { return fHeld.HasMore() || fFeed.HasMore(); }
  const TQCommon::Record* Next() override { return fHeld.HasMore() ? fHeld.Next() : fFeed.Next(); }

 private:
  HeldCasesReader& fHeld;
  RecordFeed& fFeed;
};

// Ends the other jobs when one has failed.
class JobQuery : public SignalQuery {
 public:
  bool IsCancelled() override { return fHasFailed || SignalQuery::IsCancelled(); }

  // To be called where an exception is being handled; the first one is kept.
  void Fail() {
    const std::lock_guard lock(fMutex);
    if (fError == nullptr) fError = std::current_exception();
    fHasFailed = true;
  }

  // After all jobs: throws what was kept, if anything.
  void RethrowError() const {
    if (fError != nullptr) std::rethrow_exception(fError);
  }

 private:
  std::atomic<bool> fHasFailed{false};
  std::mutex fMutex;
  std::exception_ptr fError;
};

// What is binned in one run: indices of pairs, attribute by attribute.
using Share = std::vector<std::size_t>;

Share AllPairs(const Columns& columns) {
  Share all(columns.pairs.size());
  std::iota(all.begin(), all.end(), 0U);
  return all;
}

// Deals out the attributes in turn, each with all its pairs.
std::vector<Share> DealOut(const Columns& columns, std::size_t jobs) {
  std::vector<Share> shares(jobs);
  for (std::size_t i = 0; i < columns.pairs.size(); ++i) {
    shares[columns.pairs[i].attribute % jobs].push_back(i);
  }
  return shares;
}

// The variables that a share needs: all targets and the weight, so that these keep their
// places, and its own attributes.
std::vector<int> VariablesOf(const Columns& columns, const Share& share) {
  std::vector<int> variables(static_cast<std::size_t>(AttributeVariable(columns, 0)));
  std::iota(variables.begin(), variables.end(), 0);
  for (const std::size_t i : share) {
    const int variable = AttributeVariable(columns, columns.pairs[i].attribute);
    if (variables.empty() || variables.back() != variable) variables.push_back(variable);
  }
  return variables;
}

// The library's run for a share of the pairs, whose list holds these variables.
LibraryResult RunPairs(const BinningTask& task, const Share& share,
                       const std::vector<int>& variables, LibraryWork work) {
  for (const std::size_t i : share) {
    const ColumnPair& pair = task.columns.pairs[i];
    if (!pair.target.has_value()) continue;
    const int variable = AttributeVariable(task.columns, pair.attribute);
    const auto place = std::lower_bound(variables.begin(), variables.end(), variable);
    work.attributes.push_back(static_cast<int>(place - variables.begin()));
    work.targets.push_back(TargetVariable(*pair.target));
  }
  LibraryResult result = RunLibrary(work);
  result.pairs = share;
  return result;
}

// The one run for everything.
LibraryResult RunWhole(const BinningTask& task, TQCommon::RecordIterator& cases,
                       ProgressLine& progress) {
  SignalQuery query;
  const Share share = AllPairs(task.columns);
  return RunPairs(task, share, VariablesOf(task.columns, share),
                  {.options = task.options,
                   .inputName = task.inputName,
                   .feed = task.feed,
                   .query = query,
                   .progress = progress,
                   .casesPerReport = kCasesPerReport,
                   .list = task.list,
                   .cases = cases,
                   .directory = task.directory.GetPath()});
}

// The run for one share of the pairs.
LibraryResult RunShare(const BinningTask& task, const Share& share, const HeldCases& held,
                       const std::string& directory, JobQuery& query, ProgressLine& progress) {
  const std::vector<int> variables = VariablesOf(task.columns, share);
  BINVarList list(task.list);
  for (int v = list.Size() - 1; v >= 0; --v) {
    if (!std::binary_search(variables.begin(), variables.end(), v)) list.RemoveVar(v);
  }
  HeldCasesReader cases(held, variables);
  return RunPairs(task, share, variables,
                  {.options = task.options,
                   .inputName = task.inputName,
                   .feed = task.feed,
                   .query = query,
                   .progress = progress,
                   .casesPerReport = 0,
                   .list = list,
                   .cases = cases,
                   .directory = directory});
}

// One thread for each share but the first, which is the caller's.
std::vector<LibraryResult> RunShares(const BinningTask& task, const std::vector<Share>& shares,
                                     const HeldCases& held, ProgressLine& progress) {
  std::vector<std::string> directories;
  for (std::size_t i = 0; i < shares.size(); ++i) {
    directories.push_back(task.directory.MakeSubdirectory(std::to_string(i + 1)));
  }
  JobQuery query;
  std::vector<LibraryResult> results(shares.size());
  const auto run = [&](std::size_t i) {
    try {
      results[i] = RunShare(task, shares[i], held, directories[i], query, progress);
    } catch (...) {
      query.Fail();
    }
  };
  {
    std::vector<std::jthread> threads;  // joined at the end of this block
    threads.reserve(shares.size());
    for (std::size_t i = 1; i < shares.size(); ++i) {
      try {
        threads.emplace_back(run, i);
      } catch (const std::system_error&) {
        run(i);  // no thread is to be had
      }
    }
    run(0);
  }
  query.RethrowError();
  return results;
}

// Reads until the cases end or nothing more can be held.
void Hold(RecordFeed& feed, HeldCases& held, ProgressLine& progress) {
  while (feed.HasMore() && !held.IsFull()) {
    const TQCommon::Record* const record = feed.Next();
    if (record == nullptr) continue;
    held.Add(*record);
    if (held.Count() % kCasesPerReport != 0) continue;
    ThrowIfCancelled();
    progress.ShowRows(held.Count());
  }
}

// As many as are asked for, and as there is work for.
std::size_t CountJobs(const BinningTask& task) {
  const std::size_t asked =
      task.options.jobs == 0 ? std::thread::hardware_concurrency() : task.options.jobs;
  return std::clamp<std::size_t>(asked, 1, task.columns.attributes.size());
}

}  // namespace

std::size_t MemoryForJobs() {
  constexpr std::size_t kShare = 4;
  const long pages = sysconf(_SC_PHYS_PAGES);
  const long pageSize = sysconf(_SC_PAGESIZE);
  if (pages <= 0 || pageSize <= 0) return 0;
  return static_cast<std::size_t>(pages) / kShare * static_cast<std::size_t>(pageSize);
}

std::vector<LibraryResult> RunJobs(const BinningTask& task, ProgressLine& progress) {
  const std::size_t jobs = CountJobs(task);
  if (jobs == 1) return {RunWhole(task, task.feed, progress)};

  const auto variables = static_cast<std::size_t>(task.list.Size());
  const std::size_t bytesPerCase = sizeof(double) * variables + kBytesPerCaseAndJob * jobs;
  HeldCases held(task.list.Size(),
                 task.options.memoryForJobs.value_or(MemoryForJobs()) / bytesPerCase);
  Hold(task.feed, held, progress);
  task.feed.RethrowError();
  if (!task.feed.HasMore()) {
    return RunShares(task, DealOut(task.columns, jobs), held, progress);
  }

  if (task.options.input.isVerbose) {
    PrintNote(
        fmt::format("{}: more than {} rows do not fit into the memory for {} jobs; going on "
                    "with one",
                    task.inputName, held.Count(), jobs));
  }
  HeldCasesReader first(held, VariablesOf(task.columns, AllPairs(task.columns)));
  HeldThenFed cases(first, task.feed);
  return {RunWhole(task, cases, progress)};
}

}  // namespace TQTool
