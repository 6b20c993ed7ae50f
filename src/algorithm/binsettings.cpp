#include "tqbinning/binsettings.h"

#include <ostream>

#include "algorithm/settingslimits.h"
#include "algorithm/temporarydirectory.h"
#include "common/lineend.h"

using TQBinning::LineEnd;
using TQBinning::SetAtLeast;

BINSettings::BINSettings()
    : fProgressListener(nullptr),
      fNSkippedAttReports(0),
      fNSkippedCasesReports(TQBinning::kDefaultSkippedCasesReports),
      fCancelPointer(nullptr),
      fRightBorderClosed(true),
      fNumDistinctValueThreshold(-1),
      fNumberOfBins(TQBinning::kNumberOfBinsNotSet),
      fTempDirName(TQBinning::DefaultTemporaryDirectory()),
      fSmallBinDetectionThreshold(0.0) {}

BINSettings::BINSettings(const BINSettings&) = default;
BINSettings& BINSettings::operator=(const BINSettings&) = default;
BINSettings::~BINSettings() = default;

void BINSettings::SetProgressListener(ProgressListener* listener) { fProgressListener = listener; }
ProgressListener* BINSettings::GetProgressListener() const { return fProgressListener; }

bool BINSettings::SetNSkippedAttReports(int n) { return SetAtLeast(0, n, fNSkippedAttReports); }
int BINSettings::GetNSkippedAttReports() const { return fNSkippedAttReports; }

bool BINSettings::SetNSkippedCasesReports(int n) { return SetAtLeast(0, n, fNSkippedCasesReports); }
int BINSettings::GetNSkippedCasesReports() const { return fNSkippedCasesReports; }

void BINSettings::SetCancelPointer(TQQueryCancel* query) { fCancelPointer = query; }
TQQueryCancel* BINSettings::GetCancelPointer() const { return fCancelPointer; }

void BINSettings::SetRightBorderClosed(bool closed) { fRightBorderClosed = closed; }
bool BINSettings::IsRightBorderClosed() const { return fRightBorderClosed; }

bool BINSettings::SetNumDistinctValueThreshold(int threshold) {
  return SetAtLeast(0, threshold, fNumDistinctValueThreshold);
}
int BINSettings::GetNumDistinctValueThreshold() const { return fNumDistinctValueThreshold; }

bool BINSettings::SetNumberOfBins(int bins) {
  return SetAtLeast(TQBinning::kFewestBins, bins, fNumberOfBins);
}
int BINSettings::GetNumberOfBins() const { return fNumberOfBins; }

void BINSettings::SetTempDirName(const std::string& directory) { fTempDirName = directory; }
std::string BINSettings::GetTempDirName() const { return fTempDirName; }

bool BINSettings::SetSmallBinDetectionThreshold(double threshold) {
  if (!(0.0 <= threshold && threshold <= 1.0)) return false;  // NaN is refused here
  fSmallBinDetectionThreshold = threshold;
  return true;
}
double BINSettings::GetSmallBinDetectionThreshold() const { return fSmallBinDetectionThreshold; }

bool BINSettings::operator==(const BINSettings& other) const {
  return fNSkippedAttReports == other.fNSkippedAttReports &&
         fNSkippedCasesReports == other.fNSkippedCasesReports &&
         fRightBorderClosed == other.fRightBorderClosed &&
         fNumDistinctValueThreshold == other.fNumDistinctValueThreshold &&
         fNumberOfBins == other.fNumberOfBins;
}

std::ostream& BINSettings::Display(std::ostream& os) const {
  os << "Start of BINSettings display" << LineEnd;
  os << "Number of progress reports to skip when create bins for attribute = "
     << fNSkippedAttReports << LineEnd;
  os << "Number of progress reports to skip when read data file = " << fNSkippedCasesReports
     << LineEnd;
  os << "if use EF as proprecess = " << fRightBorderClosed << LineEnd;  // the label hosts know
  os << "Number of distinct value = " << fNumDistinctValueThreshold << LineEnd;
  os << "Number of bins for EF = " << fNumberOfBins << LineEnd;
  return os << "End of BINSettings display" << LineEnd;
}
