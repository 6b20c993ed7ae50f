#pragma once

#include "tqcommon/export.h"

// The host's answer to "shall the run stop?", derived by the host and borrowed
// by whoever polls it, on the thread of the run.
class TQCOMMON_EXPORT TQQueryCancel {
 public:
  virtual ~TQQueryCancel();

  // True when the host wants the run to end.  Called often (once a case), so it
  // should be cheap; not called again once it has answered true.
  virtual bool IsCancelled() = 0;
};
