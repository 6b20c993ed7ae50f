#include "algorithm/progresspacer.h"

#include "tqcommon/progresslistener.h"

namespace TQBinning {

ProgressPacer::ProgressPacer(ProgressListener* listener, int skipped)
    : fListener(listener), fSkipped(skipped), fCountdown(skipped) {}

void ProgressPacer::Finished(unsigned int attribute, const TQStatus& status) {
  if (fListener == nullptr) return;
  if (fCountdown > 0) {
    --fCountdown;
    return;
  }
  if (status.IsError()) return;  // still due; the countdown stays where it is
  fReporter.SetValues(attribute, fClock.ElapsedSeconds());
  fListener->Report(&fReporter);
  fCountdown = fSkipped;
}

}  // namespace TQBinning
