#pragma once

#include "common/raise.h"
#include "tqbinning/bincancelinfo.h"

namespace TQBinning {

// The course of CreateBins, the same for both families.  `check` tells whether what was
// asked for makes sense, `prepare` reads the data (or knows how that ended), `bin` bins
// what was asked for; each returns a status, and an error of the first two ends the run.
// `lasting` is the algorithm's own status, `cancel` sets it to cancelled.
//
// No exception crosses the library's boundary: whatever is thrown (no memory, or a host
// object that throws) becomes error 3.
template <typename Check, typename Prepare, typename Bin, typename Cancel>
TQStatus RunCreateBins(int numberOfBins, BINCancelInfo& cancelInfo, const TQStatus& lasting,
                       Check check, Prepare prepare, Bin bin, Cancel cancel) {
  try {
    if (numberOfBins < 1) return Error(kInvalidNumberOfBins);
    TQStatus status = check();
    if (status.IsError()) return status;

    if (!cancelInfo.IsCancel()) {
      status = prepare();
      if (status.IsError()) return status;
      status = bin();
    }
    if (!lasting.IsOK()) status = Warning(kSomeNotOK);
    if (cancelInfo.IsCancel()) {
      cancel();
      return lasting;
    }
    return status;
  } catch (...) {
    return Error(kResourceFailure);
  }
}

}  // namespace TQBinning
