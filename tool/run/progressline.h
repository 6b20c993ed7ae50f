#pragma once

#include <chrono>
#include <cstddef>

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

  void Report(ProgressReport* report) override;

 private:
  using Clock = std::chrono::steady_clock;

  const RecordFeed& fRecords;
  ProgressKind fKind;                       // never kAuto
  std::size_t fNumBinned = 0;               // columns, once for each target
  Clock::time_point fStart = Clock::now();  // of reading, then of binning
  Clock::time_point fLast = fStart;         // of the report before
};

}  // namespace TQTool
