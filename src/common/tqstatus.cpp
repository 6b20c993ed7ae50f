#include "tqbinning/tqstatus.h"

namespace TQBinning {

TQStatus::TQStatus() : fErrorCode(kOK), fSeverity(0), fDiscreteData{}, fScaleData{} {}

TQStatus::TQStatus(long code, bool isWarning)
    : fErrorCode(code),
      fSeverity(static_cast<short>(isWarning ? 1 : -1)),
      fDiscreteData{},
      fScaleData{} {}

long TQStatus::GetErrorCode() const { return fErrorCode; }

bool TQStatus::IsOK() const { return fSeverity == 0; }
bool TQStatus::IsError() const { return fSeverity < 0; }
bool TQStatus::IsWarning() const { return fSeverity > 0; }

long TQStatus::GetDiscreteDatum(unsigned int i) const { return fDiscreteData[i]; }
void TQStatus::SetDiscreteDatum(unsigned int i, long value) { fDiscreteData[i] = value; }
double TQStatus::GetScaleDatum(unsigned int i) const { return fScaleData[i]; }
void TQStatus::SetScaleDatum(unsigned int i, double value) { fScaleData[i] = value; }

bool TQStatus::operator==(const TQStatus& other) const {
  if (fErrorCode != other.fErrorCode || fSeverity != other.fSeverity) return false;
  for (int i = 0; i < 3; ++i) {
    if (fDiscreteData[i] != other.fDiscreteData[i]) return false;
    if (!(fScaleData[i] == other.fScaleData[i])) return false;
  }
  return true;
}

}  // namespace TQBinning
