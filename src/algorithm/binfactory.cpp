#include "tqbinning/binfactory.h"

#include "algorithm/createalgorithm.h"
#include "tqbinning/binalgorithm.h"

BINFactory::BINFactory() = default;

IBINAlgorithm* BINFactory::CreateBINAlgorithm(BINSettings& settings, BINVarList& varList) {
  return TQBinning::CreateAlgorithm<BINAlgorithm>(settings, varList, fStatus).release();
}

TQBinning::TQStatus BINFactory::GetStatus() const { return fStatus; }
