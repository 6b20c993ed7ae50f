#include "tqbinning/efbinfactory.h"

#include "algorithm/createalgorithm.h"
#include "tqbinning/efbinalgorithm.h"

EFBINFactory::EFBINFactory() = default;
EFBINFactory::~EFBINFactory() = default;

IEFBINAlgorithm* EFBINFactory::CreateEFBINAlgorithm(EFBINSettings& settings, BINVarList& varList) {
  fAlgorithm = TQBinning::CreateAlgorithm<EFBINAlgorithm>(settings, varList, fStatus);
  return fAlgorithm.release();  // from here on the caller's
}

TQBinning::TQStatus EFBINFactory::GetStatus() const { return fStatus; }
