#pragma once

#include "common/processorclock.h"
#include "tqbinning/binprogressreporter.h"
#include "tqbinning/tqstatus.h"

class ProgressListener;

namespace TQBinning {

// Paces the reports of a binning loop: one after every (skipped + 1)-th attribute
// that did not end in error.  The clock starts when it is made.
class ProgressPacer {
 public:
  // `listener` is borrowed; null for no reports.
  ProgressPacer(ProgressListener* listener, int skipped);

  // To be called after each attribute that was run.
  void Finished(unsigned int attribute, const TQStatus& status);

 private:
  ProgressListener* fListener;
  int fSkipped;
  int fCountdown;
  BINProgressReporter fReporter;
  ProcessorClock fClock;
};

}  // namespace TQBinning
