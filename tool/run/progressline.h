#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>

#include <tqbinning/tqbinning.h>
#include <tqcommon/tqcommon.h>

#include "output/progresskind.h"
#include "run/recordfeed.h"

namespace TQTool {

// Tells on standard error how far the run is: in one line that is written over and wiped
// out at the end, in lines of JSON, or, where nobody wants it, not at all.
class ProgressLine : public ProgressListener {
 public:
  // `records` (borrowed) tells whether the run is still reading.
  ProgressLine(const RecordFeed& records, ProgressKind kind);
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;
  ~ProgressLine() override;

  // May be called by several threads once the rows are read.
  void Report(ProgressReport* report) override;

  // Tells how many rows are read; fewer than before are no news.
  void ShowRows(std::uint64_t rows);

 private:
  using Clock = std::chrono::steady_clock;

  void ShowBinned();

  const RecordFeed& fRecords;
  ProgressKind fKind;  // never kAuto
  std::mutex fMutex;
  std::uint64_t fNumRead = 0;               // rows
  std::size_t fNumBinned = 0;               // columns, once for each target
  Clock::time_point fStart = Clock::now();  // of reading, then of binning
  Clock::time_point fLast = fStart;         // of the report before
};

}  // namespace TQTool
