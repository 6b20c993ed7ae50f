#pragma once

#include <utility>
#include <vector>

#include "tqbinning/binprogressreporter.h"
#include "tqcommon/tqcommon.h"

// A host's cancel query and progress listener.
namespace support {

// Says yes at the nth poll (from 1), and only then; never, for 0.
class CancelAtPoll : public TQQueryCancel {
 public:
  explicit CancelAtPoll(int n) : fPoll(n) {}
  bool IsCancelled() override { return ++fPolls == fPoll; }
  int Polls() const { return fPolls; }

 private:
  int fPoll;
  int fPolls = 0;
};

// Keeps what every report said: (IndexVar, elapsedTime).
class RecordingListener : public ProgressListener {
 public:
  void Report(ProgressReport* report) override {
    fReports.emplace_back(report->DiscreteMeasure("IndexVar"), report->ScaleMeasure("elapsedTime"));
  }
  const std::vector<std::pair<int, double>>& Reports() const { return fReports; }
  std::vector<int> Indices() const {
    std::vector<int> indices;
    for (const auto& report : fReports) indices.push_back(report.first);
    return indices;
  }

 private:
  std::vector<std::pair<int, double>> fReports;
};

}  // namespace support
