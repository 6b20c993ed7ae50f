#pragma once

#include <tqbinning/tqbinning.h>
#include <tqcommon/tqcommon.h>

#include "input/recordfeed.h"

namespace TQTool {

// One line on standard error that tells how far the run is; nothing at all when
// standard error is no terminal.  Wiped out at the end.
class ProgressLine : public ProgressListener {
 public:
  // `records` (borrowed) tells whether the run is still reading.
  explicit ProgressLine(const RecordFeed& records);
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;
  ~ProgressLine() override;

  void Report(ProgressReport* report) override;

 private:
  const RecordFeed& fRecords;
  bool fIsTerminal;
  int fNumBinned;  // columns, once for each target
};

}  // namespace TQTool
