#pragma once

#include <memory>

#include "tqbinning/export.h"
#include "tqbinning/tqstatus.h"

class BINVarList;
class EFBINSettings;
class IEFBINAlgorithm;

// Makes equal-frequency algorithms.  Not copyable.
class TQBINNING_EXPORT EFBINFactory {
 public:
  EFBINFactory();  // status OK
  EFBINFactory(const EFBINFactory&) = delete;
  EFBINFactory& operator=(const EFBINFactory&) = delete;
  ~EFBINFactory();

  // A new algorithm on copies of both arguments, owned by the caller; or null with
  // an error in GetStatus: 120003 for an invalid variable list (datum 1: an
  // offending variable, or -1), 3 when it cannot be made, 1 when the settings'
  // cancel query already says cancel.
  IEFBINAlgorithm* CreateEFBINAlgorithm(EFBINSettings& settings, BINVarList& varList);

  TQBinning::TQStatus GetStatus() const;  // of the last creation

 private:
  TQBinning::TQStatus fStatus;
  std::unique_ptr<IEFBINAlgorithm> fAlgorithm;  // held during a creation only
};
