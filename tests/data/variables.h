#pragma once

#include <string>

#include "tqbinning/binvarlist.h"
#include "tqbinning/tqstatus.h"

// Variable lists in one word, and the statuses to compare with.
namespace support {

// One variable per letter, named by its letter and index: A a continuous and C a
// categorical attribute, T a categorical target, W the weight (rounded to the
// closest), U a continuous variable without role.  Categorical variables are
// numeric and declare `categories` categories.
inline BINVarList Variables(const std::string& kinds, int categories = 256) {
  BINVarList list;
  for (const char kind : kinds) {
    const std::string name = kind + std::to_string(list.Size());
    switch (kind) {
      case 'A': list.AddContVar(name, "", IBINVariable::kAttribute); break;
      case 'U': list.AddContVar(name, "", IBINVariable::kUndefinedRole); break;
      case 'W': list.AddWeightVar(name, "", IBINVariable::kRoundToClosest); break;
      default:
        list.AddCatVar(name, "", categories, IBINVariable::kNumericCategorical,
                       kind == 'T' ? IBINVariable::kTarget : IBINVariable::kAttribute);
    }
  }
  return list;
}

inline TQBinning::TQStatus Error(long code, long datum0 = 0) {
  TQBinning::TQStatus status(code, false);
  status.SetDiscreteDatum(0, datum0);
  return status;
}

inline TQBinning::TQStatus Warning(long code, long datum0 = 0) {
  TQBinning::TQStatus status(code, true);
  status.SetDiscreteDatum(0, datum0);
  return status;
}

}  // namespace support
