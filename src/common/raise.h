#pragma once

#include "tqbinning/tqstatus.h"

// How the library raises a status: by name and severity rather than by a bare
// number and a bare bool.
namespace TQBinning {

inline TQStatus Error(StatusCode code) { return TQStatus(code, false); }
inline TQStatus Warning(StatusCode code) { return TQStatus(code, true); }

// The same with an index in discrete datum 0 that tells where.
inline TQStatus WithDatum(TQStatus status, long datum) {
  status.SetDiscreteDatum(0, datum);
  return status;
}

}  // namespace TQBinning
