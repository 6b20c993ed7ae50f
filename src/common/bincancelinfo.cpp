#include "tqbinning/bincancelinfo.h"

#include <atomic>

#include "tqcommon/querycancel.h"

// The flag may be set from another thread than the one that polls it.  It is
// reached through atomic_ref because the field itself is a plain bool.
BINCancelInfo::BINCancelInfo(TQQueryCancel* query) : fQuery(query), fCancelled(false) {}

void BINCancelInfo::SetCancelPtr(TQQueryCancel* query) { fQuery = query; }

void BINCancelInfo::SetCancel() {
  std::atomic_ref<bool>(fCancelled).store(true, std::memory_order_relaxed);
}

bool BINCancelInfo::IsCancel() {
  if (std::atomic_ref<bool>(fCancelled).load(std::memory_order_relaxed)) return true;
  if (fQuery == nullptr || !fQuery->IsCancelled()) return false;
  SetCancel();
  return true;
}
