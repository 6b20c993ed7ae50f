#include "tqbinning/efbinsettings.h"

#include <ostream>

#include "algorithm/settingslimits.h"
#include "algorithm/temporarydirectory.h"
#include "common/lineend.h"

using TQBinning::LineEnd;
using TQBinning::SetAtLeast;

EFBINSettings::EFBINSettings()
    : fProgressListener(nullptr),
      fNSkippedAttReports(0),
      fNSkippedCasesReports(TQBinning::kDefaultSkippedCasesReports),
      fCancelPointer(nullptr),
      fRightBorderClosed(true),
      fNumberOfBins(TQBinning::kNumberOfBinsNotSet),
      fTempDirName(TQBinning::DefaultTemporaryDirectory()) {}

EFBINSettings::EFBINSettings(const EFBINSettings&) = default;
EFBINSettings& EFBINSettings::operator=(const EFBINSettings&) = default;
EFBINSettings::~EFBINSettings() = default;

void EFBINSettings::SetProgressListener(ProgressListener* listener) {
  fProgressListener = listener;
}
ProgressListener* EFBINSettings::GetProgressListener() const { return fProgressListener; }

bool EFBINSettings::SetNSkippedAttReports(int n) { return SetAtLeast(0, n, fNSkippedAttReports); }
int EFBINSettings::GetNSkippedAttReports() const { return fNSkippedAttReports; }

bool EFBINSettings::SetNSkippedCasesReports(int n) {
  return SetAtLeast(0, n, fNSkippedCasesReports);
}
int EFBINSettings::GetNSkippedCasesReports() const { return fNSkippedCasesReports; }

void EFBINSettings::SetCancelPointer(TQQueryCancel* query) { fCancelPointer = query; }
TQQueryCancel* EFBINSettings::GetCancelPointer() const { return fCancelPointer; }

void EFBINSettings::SetRightBorderClosed(bool closed) { fRightBorderClosed = closed; }
bool EFBINSettings::IsRightBorderClosed() const { return fRightBorderClosed; }

bool EFBINSettings::SetNumberOfBins(int bins) {
  return SetAtLeast(TQBinning::kFewestBins, bins, fNumberOfBins);
}
int EFBINSettings::GetNumberOfBins() const { return fNumberOfBins; }

void EFBINSettings::SetTempDirName(const std::string& directory) { fTempDirName = directory; }
std::string EFBINSettings::GetTempDirName() const { return fTempDirName; }

bool EFBINSettings::operator==(const EFBINSettings& other) const {
  return fNSkippedAttReports == other.fNSkippedAttReports &&
         fNSkippedCasesReports == other.fNSkippedCasesReports &&
         fRightBorderClosed == other.fRightBorderClosed && fNumberOfBins == other.fNumberOfBins;
}

std::ostream& EFBINSettings::Display(std::ostream& os) const {
  os << LineEnd;
  os << "Start of EFBINSettings display" << LineEnd;
  os << "Number of progress reports to skip when create bins for attribute = "
     << fNSkippedAttReports << LineEnd;
  os << "Number of progress reports to skip when read data file = " << fNSkippedCasesReports
     << LineEnd;
  os << fRightBorderClosed << LineEnd;  // without a label, as hosts know it
  os << "Number of bins for EF = " << fNumberOfBins << LineEnd;
  return os << "End of EFBINSettings display" << LineEnd;
}
