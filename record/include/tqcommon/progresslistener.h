#pragma once

#include "tqcommon/export.h"

class ProgressReport;

// Receives the progress of a run, derived by the host and borrowed by the run.
class TQCOMMON_EXPORT ProgressListener {
 public:
  virtual ~ProgressListener();

  // Called on the thread of the run each time a report is due.  `report` is
  // valid during the call only and must not be kept.
  virtual void Report(ProgressReport* report) = 0;
};
