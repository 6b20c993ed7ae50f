#pragma once

#include <iosfwd>
#include <string>

#include "tqbinning/export.h"

class ProgressListener;
class TQQueryCancel;

// What a host can tune for supervised binning.  Setters that validate return
// false, and keep the old value, when they refuse.  Copies share the listener and
// the cancel query, which are borrowed.
class TQBINNING_EXPORT BINSettings {
 public:
  BINSettings();                               // the defaults
  BINSettings(const BINSettings&);             // a copy
  BINSettings& operator=(const BINSettings&);  // a copy
  ~BINSettings();

  // Receives progress reports; null (the default) for none.
  void SetProgressListener(ProgressListener* listener);
  ProgressListener* GetProgressListener() const;

  // Attributes to pass over between two reports while binning; 0 at least, and by
  // default.
  bool SetNSkippedAttReports(int n);
  int GetNSkippedAttReports() const;

  // Cases from one report to the next while reading the data; 0 (never) at least,
  // 100000 by default.
  bool SetNSkippedCasesReports(int n);
  int GetNSkippedCasesReports() const;

  // Asked whether to stop; null (the default) for never.
  void SetCancelPointer(TQQueryCancel* query);
  TQQueryCancel* GetCancelPointer() const;

  // Whether a cut value belongs to the lower bin (true, the default) or the upper.
  void SetRightBorderClosed(bool closed);
  bool IsRightBorderClosed() const;

  // Attributes with more distinct values than this are pre-binned; 0 at least; 0
  // and the default, -1, mean never.
  bool SetNumDistinctValueThreshold(int threshold);
  int GetNumDistinctValueThreshold() const;

  // How many equal-frequency bins pre-binning makes; 2 at least.  Must be set: the
  // default, -1, makes CreateBins fail.
  bool SetNumberOfBins(int bins);
  int GetNumberOfBins() const;

  // Where temporary column files are written; by default the directory that the
  // system proposes for temporary names.  Not validated.  Give every run a private
  // directory: two runs that share one may pick the same file names.
  void SetTempDirName(const std::string& directory);
  std::string GetTempDirName() const;

  // The factor below which an inner bin is merged: when it weighs less than this
  // times its lighter neighbour.  0 (the default, no merging) to 1; not NaN.
  bool SetSmallBinDetectionThreshold(double threshold);
  double GetSmallBinDetectionThreshold() const;

  // Equal report counts, border side, distinct threshold and number of bins;
  // nothing else is compared.
  bool operator==(const BINSettings& other) const;
  std::ostream& Display(std::ostream& os) const;

 private:
  ProgressListener* fProgressListener;
  int fNSkippedAttReports;
  int fNSkippedCasesReports;
  TQQueryCancel* fCancelPointer;
  bool fRightBorderClosed;
  int fNumDistinctValueThreshold;
  int fNumberOfBins;
  std::string fTempDirName;
  double fSmallBinDetectionThreshold;
};
