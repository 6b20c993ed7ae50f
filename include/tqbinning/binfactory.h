#pragma once

#include "tqbinning/export.h"
#include "tqbinning/tqstatus.h"

class BINSettings;
class BINVarList;
class IBINAlgorithm;

// Makes supervised algorithms.
class TQBINNING_EXPORT BINFactory {
 public:
  BINFactory();  // status OK

  // A new algorithm on copies of both arguments, owned by the caller; or null with
  // an error in GetStatus: 120003 for an invalid variable list (datum 1: an
  // offending variable, or -1), 3 when it cannot be made, 1 when the settings'
  // cancel query already says cancel.
  IBINAlgorithm* CreateBINAlgorithm(BINSettings& settings, BINVarList& varList);

  TQBinning::TQStatus GetStatus() const;  // of the last creation

 private:
  TQBinning::TQStatus fStatus;
};
