// Progress, and cancellation from a second thread: the records here never end, so only
// a cancellation ends the run.
#include <condition_variable>
#include <iostream>
#include <memory>
#include <mutex>
#include <thread>

#include <tqbinning/tqbinning.h>
#include <tqcommon/tqcommon.h>

#include "privatedirectory.h"

class EndlessRecords : public TQCommon::RecordIterator {
 public:
  bool HasMore() override { return true; }
  const TQCommon::Record* Next() override {
    fRecord[0] += 1;
    return &fRecord;
  }

 private:
  TQCommon::Record fRecord{1};
};

// Is told on the run's thread how many cases have been read; others may wait for some.
class Watcher : public ProgressListener {
 public:
  void Report(ProgressReport* report) override {
    const std::lock_guard<std::mutex> lock(fMutex);
    fCases = report->DiscreteMeasure("IndexVar");
    fChanged.notify_all();
  }
  void WaitForCases(int cases) {
    std::unique_lock<std::mutex> lock(fMutex);
    fChanged.wait(lock, [&] { return fCases >= cases; });
  }

 private:
  std::mutex fMutex;
  std::condition_variable fChanged;
  int fCases = 0;
};

int main() {
  BINVarList variables;
  variables.AddContVar("counter", "", IBINVariable::kAttribute);
  Watcher watcher;
  const PrivateDirectory directory;
  EFBINSettings settings;
  settings.SetNumberOfBins(4);
  settings.SetTempDirName(directory.path);
  settings.SetProgressListener(&watcher);
  settings.SetNSkippedCasesReports(1000);
  EFBINFactory factory;
  const std::unique_ptr<IEFBINAlgorithm> algorithm(
      factory.CreateEFBINAlgorithm(settings, variables));
  if (algorithm == nullptr) return 1;  // factory.GetStatus() tells why

  std::thread second([&] {
    watcher.WaitForCases(20000);
    std::cout << "second thread: enough\n";
    algorithm->Cancel();  // the one operation that any thread may call
  });
  EndlessRecords records;
  const TQBinning::TQStatus status = algorithm->CreateBins(records, nullptr);
  second.join();
  const bool wasCancelled = status.GetErrorCode() == TQBinning::kCancelled;
  std::cout << "run: " << (wasCancelled ? "cancelled" : "not cancelled") << '\n';
}
