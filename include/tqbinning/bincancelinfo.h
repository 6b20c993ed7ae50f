#pragma once

#include "tqbinning/export.h"

class TQQueryCancel;

// Whether a run is to stop: the host's query, asked at every polling point, and
// a flag that stays set once the query, or SetCancel, has set it.  SetCancel may
// be called from another thread than the one that polls.  Copies share the
// query, which is borrowed.
class TQBINNING_EXPORT BINCancelInfo {
 public:
  // `query` may be null: then only SetCancel cancels.
  explicit BINCancelInfo(TQQueryCancel* query);

  // Replaces the query (borrowed, may be null); the flag stays as it is.
  void SetCancelPtr(TQQueryCancel* query);
  // Sets the flag, for good.
  void SetCancel();
  // True when the flag is set; otherwise asks the query, if there is one, and
  // keeps its answer.  The query is never asked again after it has said true.
  bool IsCancel();

 private:
  TQQueryCancel* fQuery;
  bool fCancelled;
};
