#pragma once

#include <string>

#include "tqbinning/export.h"

// What a ProgressListener is shown: named measures of a run's progress.
class TQBINNING_EXPORT ProgressReport {
 public:
  virtual ~ProgressReport();
  // A count or an index by name; -1 for a name that the report does not have.
  virtual int DiscreteMeasure(const std::string& name) = 0;
  // A real number by name; TQMV::gMissingValue for an unknown name.
  virtual double ScaleMeasure(const std::string& name) = 0;
};

// The library's own report: what was finished last ("IndexVar": the index of an
// attribute, or the number of cases) and the processor seconds since the run's
// step began ("elapsedTime").  Names are case-sensitive.
class TQBINNING_EXPORT BINProgressReporter : public ProgressReport {
 public:
  // Index 0, elapsed time TQMV::gMissingValue.
  BINProgressReporter();
  ~BINProgressReporter() override;

  void SetValues(unsigned int index, double elapsedSeconds);  // for the next report
  int DiscreteMeasure(const std::string& name) override;
  double ScaleMeasure(const std::string& name) override;

 private:
  unsigned int fIndex;
  double fElapsedTime;  // processor seconds
};
